// SPDX-License-Identifier: MIT
#include "app/graphic_import.h"

#include <QFileInfo>
#include <algorithm>

#include "app/canvas_commands.h"
#include "app/color_check.h"
#include "app/messages.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/shell_commands.h"
#include "app/state.h"
#include "app/threshold_commands.h"
#include "canvas/graphic_loading.h"

namespace vt::app {
namespace {

using namespace canvas;
using platform::DialogType;
namespace Buttons = platform::Buttons;
namespace Answer = platform::Answer;

const QString kLoadErrorTitle = QStringLiteral("Loading a Graphic Error");

QString SizeText(int h, int w) { return QStringLiteral("H : %1 W : %2").arg(h).arg(w); }

}  // namespace

using namespace canvas;

bool ImportImageMDIChild(AppState& state, Services& services, const QString& path, bool isFolder) {
  state.log.Laction = QStringLiteral("Import Image MDI Child");
  const auto refuse = [&](const QString& text) {
    MessageDlgA(state, services.dialogs, text, kLoadErrorTitle, 0, Buttons::Ok, DialogType::Error);
    return false;
  };
  if (isFolder) return refuse(QStringLiteral(" Please select file to import in the File List ! "));
  QImage picture;
  int frames = 1;
  bool gif = false;
  const bool newFile =
      QFileInfo(path).fileName().compare(QStringLiteral("Newfile.bmp"), Qt::CaseInsensitive) == 0;
  if (newFile) {
    picture = QImage(state.canvas.Width(), state.canvas.Height(), QImage::Format_RGB32);
    picture.fill(Qt::white);
  } else {
    const Result<DecodedGraphic> decoded =
        DecodeGraphic(path, QSize(state.canvas.Width(), state.canvas.Height()));
    if (!decoded) {
      if (decoded.error().kind == Error::Kind::Refused) {
        return refuse(QFileInfo(path).fileName() +
                      QStringLiteral(" is is not a valid graphic file ! "));
      }
      state.log.StatusBarAndLog(decoded.error().ToString());
      return refuse(QStringLiteral("Graphic loading Error"));
    }
    picture = decoded.value().frames.first();
    frames = int(decoded.value().frames.size());
    gif = decoded.value().ImportExtension == QLatin1String(".GIF");
  }
  state.files.ImportExtension = QLatin1Char('.') + QFileInfo(path).suffix().toUpper();
  state.settings.output.nbmfn = QFileInfo(path).fileName();
  defineOutputFileName(state);
  AssignInPutBitmap(state, services, picture, true);
  if (!newFile) {
    state.files.LastCanvasFile = QFileInfo(path).absoluteFilePath();
    if (!state.files.SourcePictures.contains(state.files.LastCanvasFile)) {
      state.files.SourcePictures << state.files.LastCanvasFile;
    }
  }
  if (gif && frames == 1) {
    MessageDlgA(state, services.dialogs,
                QStringLiteral(" Single layered GIF loaded, no animation ! "),
                QStringLiteral("Info"), 0, Buttons::Ok, DialogType::Information);
  } else if (gif) {
    // Until animations exist, a GIF of several frames loads as its first frame.
    state.log.StatusBarAndLog(
        QStringLiteral("%1 layers in loaded GIF, animation not available yet: first layer loaded")
            .arg(frames));
  }
  return true;
}

bool LoadGraphicFile(AppState& state, Services& services, const QString& path) {
  if (CheckMode(state, services, 0)) return false;
  if (!ResolveFloatingSelection(state, services, BlackWhiteConversions(state))) return false;
  if (!ImportImageMDIChild(state, services, path, QFileInfo(path).isDir())) return false;
  AddMRUF(state, QFileInfo(path).absoluteFilePath());
  return true;
}

bool ReloadLastCanvasButtonClick(AppState& state, Services& services) {
  QString path = state.files.LastCanvasFile;
  if (path.isEmpty()) {
    // A new run knows the last picture from the recent files, which the settings keep.
    const auto picture =
        std::find_if(state.MRUList.cbegin(), state.MRUList.cend(),
                     [](const QString& f) { return IsGraphicExtension(QFileInfo(f).suffix()); });
    if (picture != state.MRUList.cend()) path = *picture;
  }
  const QString title = QStringLiteral("Reload Last Canvas File");
  if (path.isEmpty()) {
    MessageDlgA(state, services.dialogs,
                QStringLiteral(" No graphic file has been loaded onto the Work Canvas yet ! "),
                title, 0, Buttons::Ok, DialogType::Information);
    return false;
  }
  if (!QFileInfo(path).isFile()) {
    MessageDlgA(state, services.dialogs, path + QStringLiteral(" not found ! "), title, 0,
                Buttons::Ok, DialogType::Warning);
    return false;
  }
  return LoadGraphicFile(state, services, path);
}

void AssignInPutBitmap(AppState& state, Services& services, QImage picture, bool fromFile) {
  state.log.Laction = QStringLiteral("Assign Input Bitmap");
  picture = picture.convertToFormat(QImage::Format_RGB32);
  const QString kind = state.files.ImportExtension;
  if (state.ImportAngle != 0 && kind != QLatin1String(".GIF") && kind != QLatin1String(".SVG")) {
    if (std::optional<QImage> turned = RotateImport(picture, state.ImportAngle)) {
      picture = std::move(*turned);
    } else {
      state.log.StatusBarAndLog(QStringLiteral("Error Import Rotation : Angle= ") +
                                QString::number(state.ImportAngle));
      MessageDlgA(state, services.dialogs, QStringLiteral(" Picture too large for rotation \r "),
                  QStringLiteral("Warning"), 0, Buttons::Ok, DialogType::Warning);
    }
  }
  if (state.blackWhite.DitherOnLoad) DitherRaster(picture, state.blackWhite.PreviewDither);
  ThresholdOFF(state);
  FloatingSelection& selection = state.canvas.Selection();
  const SelectionRect frame = selection.Rect();
  const bool toFrame = !frame.IsEmpty();
  const QSize limit = toFrame ? QSize(frame.Width(), frame.Height())
                              : QSize(state.canvas.Width(), state.canvas.Height());
  if (picture.width() > limit.width() || picture.height() > limit.height()) {
    state.log.StatusBarAndLog(QStringLiteral("Image size larger than Work Canvas Dialog"));
    const QString pictureSize = SizeText(picture.height(), picture.width());
    const QString text =
        toFrame
            ? QStringLiteral(" Selection Frame Size = ") + SizeText(limit.height(), limit.width()) +
                  QStringLiteral("\r Image size larger than Selection Frame \r Image Size = ") +
                  pictureSize + QStringLiteral("\r Resize graphic to fit Work Canvas ? ")
        : fromFile
            ? QStringLiteral(" Picture size larger than Work Canvas   \r \r Picture Size = ") +
                  pictureSize + QStringLiteral("\r Resize Graphic to fit Work Canvas ? ")
            : QStringLiteral(" Work Canvas Size = ") + SizeText(limit.height(), limit.width()) +
                  QStringLiteral("\r Image size larger than Work Canvas   \r Image Size = ") +
                  pictureSize + QStringLiteral("\r Resize graphic to fit Work Canvas ? ");
    const int answer = MessageDlgA(state, services.dialogs, text, QStringLiteral("Warning"), 0,
                                   Buttons::Yes | Buttons::No, DialogType::Warning);
    if (answer == Answer::Yes) picture = PropotionalResize(picture, limit);
  }
  const bool needsConversion =
      CheckColorsSelection(state, services, picture) == ColorCheck::ThresholdPending;
  selection.Float(picture, toFrame ? QPoint(frame.X1, frame.Y1) : QPoint(0, 0), needsConversion);
  if (needsConversion) ThresholdON(state);
  EnableSelection(state);
  state.canvas.CopyBitmapToCanvas();
}

bool ShowPreview(AppState& state, Services& services, GraphicPreview& preview,
                 const QString& path) {
  const Result<bool> opened =
      preview.Open(path, QSize(state.canvas.Width(), state.canvas.Height()));
  if (opened) return true;
  state.log.StatusBarAndLog(opened.error().ToString());
  MessageDlgA(state, services.dialogs, QStringLiteral("Graphic loading Error"),
              QStringLiteral("Loading a Graphic Error"), 0, platform::Buttons::Ok,
              platform::DialogType::Error);
  return false;
}

bool CheckPreviewPicture(AppState& state, Services& services, const GraphicPreview& preview) {
  if (preview.HasPicture()) return true;
  MessageDlgA(state, services.dialogs, QString::fromLatin1(canvas::texts::kSelectGraphicFile),
              QString::fromLatin1(canvas::texts::kNoGraphicSelectedTitle), 0, platform::Buttons::Ok,
              platform::DialogType::Warning);
  return false;
}

bool ImportGraphicPreview(AppState& state, Services& services, const GraphicPreview& preview) {
  if (!CheckPreviewPicture(state, services, preview)) return false;
  if (CheckMode(state, services, 0)) return false;
  if (!ResolveFloatingSelection(state, services, BlackWhiteConversions(state))) return false;
  state.settings.output.nbmfn = QFileInfo(preview.Path()).fileName();
  const QString source = QFileInfo(preview.Path()).absoluteFilePath();
  if (!state.files.SourcePictures.contains(source)) state.files.SourcePictures << source;
  state.files.ImportExtension = QLatin1Char('.') + QFileInfo(preview.Path()).suffix().toUpper();
  defineOutputFileName(state);
  AssignInPutBitmap(state, services, preview.Selected(), false);
  return true;
}

}  // namespace vt::app
