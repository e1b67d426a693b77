// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include "cli/cli.h"
#include "temp_folders.h"

namespace vt::cli {
namespace {

class CliByteTargets : public ::testing::Test {
 protected:
  CliByteTargets() {
    // 40 x 26 by rows: 5 bytes a row, 130 bytes; row y, byte b holds y * 5 + b, the first pixel
    // the top bit.
    QImage image(40, 26, QImage::Format_RGB32);
    for (int y = 0; y < 26; ++y) {
      for (int x = 0; x < 40; ++x) {
        const bool black = ((y * 5 + x / 8) >> (7 - x % 8)) & 1;
        image.setPixel(x, y, black ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
      }
    }
    EXPECT_TRUE(image.save(picture));
  }
  int Exec(QStringList args, const QString& output) {
    err.clear();
    QString out;
    QTextStream o(&out), e(&err);
    args = QStringList{QStringLiteral("export"), picture, QStringLiteral("--settings"),
                       settingsFile, QStringLiteral("-o"), output} +
           args;
    const int status = RunCli(args, o, e, folders, fileUse);
    e.flush();
    return status;
  }

  test::TempFolders folders;
  test::FakeFileUse fileUse;
  QString settingsFile = folders.Path(QStringLiteral("p.LCD"));
  QString picture = folders.Path(QStringLiteral("rows.png"));
  QString err;
};

TEST_F(CliByteTargets, IntelHexReadsBackToTheBinaryFile) {
  QByteArray expected;
  for (int i = 0; i < 130; ++i) expected.append(static_cast<char>(i));
  const QString bin = folders.Path(QStringLiteral("rows.bin"));
  ASSERT_EQ(Exec({QStringLiteral("--output-width"), QStringLiteral("bin"), QStringLiteral("--set"),
                  QStringLiteral("Neg=1")},
                 bin),
            0)
      << err.toStdString();
  EXPECT_EQ(test::ReadAll(bin), expected);  // no Neg on the byte targets

  const QString objcopy = QStandardPaths::findExecutable(QStringLiteral("objcopy"));
  ASSERT_FALSE(objcopy.isEmpty()) << "binutils' objcopy is needed";
  const QString hex = folders.Path(QStringLiteral("rows.hex"));
  ASSERT_EQ(Exec({QStringLiteral("--output-width"), QStringLiteral("ihex")}, hex), 0)
      << err.toStdString();
  const QList<QByteArray> lines = test::ReadAll(hex).trimmed().split('\n');
  ASSERT_EQ(lines.size(), 10);  // 8 records of 16, one of 2, the end
  EXPECT_EQ(lines.last().trimmed(), QByteArray(":00000001FF"));
  const QString back = folders.Path(QStringLiteral("back.bin"));
  EXPECT_EQ(QProcess::execute(objcopy, {QStringLiteral("-I"), QStringLiteral("ihex"),
                                        QStringLiteral("-O"), QStringLiteral("binary"), hex, back}),
            0);
  EXPECT_EQ(test::ReadAll(back), test::ReadAll(bin));
}

TEST_F(CliByteTargets, TheSelectorRefusesWhatItCannotWrite) {
  const QString out = folders.Path(QStringLiteral("x.bin"));
  EXPECT_EQ(Exec({QStringLiteral("--output-width"), QStringLiteral("64")}, out), 2);
  EXPECT_TRUE(err.contains(QStringLiteral("8, 16, 32, bin or ihex")));
  EXPECT_EQ(Exec({QStringLiteral("--output-width"), QStringLiteral("bin"), QStringLiteral("--set"),
                  QStringLiteral("ccomp=1")},
                 out),
            1);
  EXPECT_TRUE(err.contains(QStringLiteral("Hex or Binay file data output is not available")))
      << err.toStdString();
  EXPECT_FALSE(QFile::exists(out));
}

}  // namespace
}  // namespace vt::cli
