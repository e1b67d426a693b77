// SPDX-License-Identifier: MIT
#include "util/atomic_write.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace vt {

// A new file beside the target, written unbuffered so that a short write (a full disk, a size
// limit) is seen as such, flushed to the disk when asked, closed, then renamed over the target
// (rename replaces a file in one step). QSaveFile is not used: its buffered write reports a
// short write as a success and the target is then replaced by the truncated file.
Result<bool> WriteFileAtomically(const QString& requested, const QByteArray& data,
                                 Durability durability) {
  QFileInfo info(requested);
  // Writing through a link replaces the file it points to, not the link.
  const QString path = info.isSymLink() ? info.symLinkTarget() : requested;
  info.setFile(path);
  if (info.exists() && !info.isWritable()) {
    QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
    info.refresh();
  }
  QDir().mkpath(info.absolutePath());
  auto failure = [&](const QString& why) -> Result<bool> {
    return Error{Error::Kind::Io, requested, 0, 0, why};
  };
  if (info.isDir()) return failure(QStringLiteral("is a folder"));

  QFile temporary;
  for (int attempt = 0; attempt < 8 && !temporary.isOpen(); ++attempt) {
    temporary.setFileName(
        QStringLiteral("%1.%2.tmp")
            .arg(path)
            .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0')));
    // A name taken already gives OpenError: try another one.
    if (!temporary.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered) &&
        temporary.error() != QFileDevice::OpenError) {
      break;
    }
  }
  if (!temporary.isOpen()) return failure(temporary.errorString());
  auto discard = [&](const QString& why) {
    temporary.close();
    temporary.remove();
    return failure(why);
  };
  if (temporary.write(data) != data.size()) {
    return discard(temporary.error() != QFileDevice::NoError
                       ? temporary.errorString()
                       : QStringLiteral("the disk took only part of the data"));
  }
  if (info.exists()) temporary.setPermissions(info.permissions());
  if (durability == Durability::Synced && ::fsync(temporary.handle()) != 0) {
    return discard(QString::fromLocal8Bit(std::strerror(errno)));
  }
  temporary.close();
  if (temporary.error() != QFileDevice::NoError) return discard(temporary.errorString());
  std::error_code error;
  std::filesystem::rename(std::filesystem::path(temporary.fileName().toStdU16String()),
                          std::filesystem::path(path.toStdU16String()), error);
  if (error) {
    temporary.remove();
    return failure(QString::fromStdString(error.message()));
  }
  return true;
}

}  // namespace vt
