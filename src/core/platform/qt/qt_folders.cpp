// SPDX-License-Identifier: MIT
#include "platform/qt/qt_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace vt::platform {
namespace {

QString Location(QStandardPaths::StandardLocation where) {
  QString path = QStandardPaths::writableLocation(where);
  if (path.isEmpty()) path = QDir::homePath();
  return QDir::cleanPath(path);
}

}  // namespace


QString QtFolders::Documents() const { return Location(QStandardPaths::DocumentsLocation); }
QString QtFolders::Pictures() const { return Location(QStandardPaths::PicturesLocation); }
QString QtFolders::ProgramData() const {
  return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/samples"));
}

}  // namespace vt::platform
