// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include "cli/cli.h"
#include "temp_folders.h"

namespace vt::cli {
namespace {

TEST(CliByteTargets, IntelHexReadsBackToTheBinaryFile) {
  test::TempFolders folders;
  test::FakeFileUse fileUse;
  // 40 x 26 by rows: 5 bytes a row, 130 bytes; row y, byte b holds y * 5 + b, the first pixel
  // the top bit.
  const QString picture = folders.Path(QStringLiteral("rows.png"));
  QImage image(40, 26, QImage::Format_RGB32);
  QByteArray expected;
  for (int y = 0; y < 26; ++y) {
    for (int x = 0; x < 40; ++x) {
      const bool black = ((y * 5 + x / 8) >> (7 - x % 8)) & 1;
      image.setPixel(x, y, black ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
    for (int b = 0; b < 5; ++b) expected.append(static_cast<char>(y * 5 + b));
  }
  ASSERT_TRUE(image.save(picture));
  QString out, err;
  auto exec = [&](const char* width, const QString& output) {
    out.clear();
    err.clear();
    QTextStream o(&out), e(&err);
    return RunCli({QStringLiteral("export"), picture, QStringLiteral("--settings"),
                   folders.Path(QStringLiteral("p.LCD")), QStringLiteral("-o"), output,
                   QStringLiteral("--output-width"), QString::fromLatin1(width),
                   QStringLiteral("--set"), QStringLiteral("Neg=1")},
                  o, e, folders, fileUse);
  };
  const QString bin = folders.Path(QStringLiteral("rows.bin"));
  const QString hex = folders.Path(QStringLiteral("rows.hex"));
  ASSERT_EQ(exec("bin", bin), 0) << err.toStdString();
  EXPECT_EQ(test::ReadAll(bin), expected);  // no Neg on the byte targets
  ASSERT_EQ(exec("ihex", hex), 0) << err.toStdString();
  const QList<QByteArray> lines = test::ReadAll(hex).trimmed().split('\n');
  ASSERT_EQ(lines.size(), 10);  // 8 records of 16, one of 2, the end
  EXPECT_EQ(lines.last().trimmed(), QByteArray(":00000001FF"));

  const QString objcopy = QStandardPaths::findExecutable(QStringLiteral("objcopy"));
  ASSERT_FALSE(objcopy.isEmpty()) << "binutils' objcopy is needed";
  const QString back = folders.Path(QStringLiteral("back.bin"));
  EXPECT_EQ(QProcess::execute(objcopy, {QStringLiteral("-I"), QStringLiteral("ihex"),
                                        QStringLiteral("-O"), QStringLiteral("binary"), hex, back}),
            0);
  EXPECT_EQ(test::ReadAll(back), expected);

  EXPECT_EQ(exec("64", bin), 2);
  EXPECT_EQ(err,
            QStringLiteral("vantorelle-cli: --output-width is 8, 16, 32, bin or ihex, not '64'\n"));
  EXPECT_TRUE(out.isEmpty());
}

}  // namespace
}  // namespace vt::cli
