// SPDX-License-Identifier: MIT
#include "temp_folders.h"

#include <QDir>
#include <QFile>

namespace vt::test {

TempFolders::TempFolders() {
  QDir root(root_.path());
  root.mkpath(QStringLiteral("Documents"));
  root.mkpath(QStringLiteral("Pictures"));
  root.mkpath(QStringLiteral("Program"));
}

QString TempFolders::Documents() const { return Path(QStringLiteral("Documents")); }
QString TempFolders::Pictures() const { return Path(QStringLiteral("Pictures")); }
QString TempFolders::ProgramData() const { return Path(QStringLiteral("Program")); }
QString TempFolders::Path(const QString& relative) const {
  return root_.path() + QLatin1Char('/') + relative;
}

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return file.readAll();
}

}  // namespace vt::test
