// SPDX-License-Identifier: MIT
#include "util/atomic_write.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vt {

Result<bool> WriteFileAtomically(const QString& path, const QByteArray& data) {
  QFileInfo info(path);
  if (info.exists() && !info.isWritable()) {
    QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
  }
  QDir().mkpath(info.absolutePath());
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) {
    return Error{Error::Kind::Io, path, 0, 0, file.errorString()};
  }
  if (file.write(data) != data.size()) {
    file.cancelWriting();
    return Error{Error::Kind::Io, path, 0, 0, file.errorString()};
  }
  if (!file.commit()) {
    return Error{Error::Kind::Io, path, 0, 0, file.errorString()};
  }
  return true;
}

}  // namespace vt
