// SPDX-License-Identifier: MIT
#include "app/artwork.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>

#include "app/messages.h"
#include "app/state.h"
#include "platform/folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogType;

/// The same file, whatever links or relative parts lead to it.
QString Canonical(const QString& path) {
  const QString canonical = QFileInfo(path).canonicalFilePath();
  return canonical.isEmpty() ? QFileInfo(path).absoluteFilePath() : canonical;
}

bool IsSourcePicture(const AppState& state, const QString& path) {
  const QString target = Canonical(path);
  for (const QString& source : state.files.SourcePictures) {
    if (Canonical(source) == target) return true;
  }
  return false;
}

/// "<folder>/<name> (artwork <n>).<ext>" with the first n that names no file.
QString FreeNameBeside(const QString& path) {
  const QFileInfo info(path);
  const QString suffix = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
  for (int n = 1;; ++n) {
    const QString candidate = info.absolutePath() + QLatin1Char('/') + info.completeBaseName() +
                              QStringLiteral(" (artwork %1)").arg(n) + suffix;
    if (!QFileInfo::exists(candidate)) return candidate;
  }
}

}  // namespace

QString ArtworkPath(const AppState& state, const Services& services) {
  return services.folders.Pictures() + QLatin1Char('/') + state.settings.output.nbmfn;
}

bool SaveArtworkButtonClick(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Save Artwork");
  QString path = ArtworkPath(state, services);
  if (IsSourcePicture(state, path)) {
    const int answer = MessageDlgA(
        state, services.dialogs,
        QStringLiteral(" %1 \r is a picture the artwork was loaded from. \r Replace it with the "
                       "artwork ? ")
            .arg(path),
        QStringLiteral("Save Artwork"), 0, Buttons::Yes | Buttons::No, DialogType::Confirmation);
    if (answer != Answer::Yes) path = FreeNameBeside(path);
  }
  const QString suffix = QFileInfo(path).suffix().isEmpty() ? QStringLiteral("bmp")
                                                            : QFileInfo(path).suffix().toLower();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, suffix.toLatin1());
  Result<bool> written = true;
  if (!writer.write(state.canvas.Bitmap())) {
    written = Error{Error::Kind::Io, path, 0, 0, writer.errorString()};
  } else {
    written = WriteFileAtomically(path, bytes);
  }
  if (!written) {
    MessageDlgA(state, services.dialogs, written.error().ToString(), QStringLiteral("Error"), 0,
                Buttons::Ok, DialogType::Error);
    return false;
  }
  state.log.StatusBarAndLog(QStringLiteral("Artwork saved to ") + path);
  state.modes.ArtworkSaved = true;
  return true;
}

}  // namespace vt::app
