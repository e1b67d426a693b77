// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>
#include <QRegularExpression>

#include "cli/cli.h"
#include "settings/pixel_modes.h"
#include "temp_folders.h"

namespace vt::cli {
namespace {

class CliColorExport : public ::testing::Test {
 protected:
  /// Exports a picture of one row of `colors` (qRgb) in `mode`; the constants written, or the
  /// error text after a refusal.
  QString Export(const QString& mode, std::initializer_list<QRgb> colors, int height = 1) {
    QImage image(int(colors.size()), height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
      int x = 0;
      for (const QRgb c : colors) image.setPixel(x++, y, c);
    }
    const QString picture = folders.Path(QStringLiteral("pic.png"));
    const QString output = folders.Path(QStringLiteral("pic.h"));
    EXPECT_TRUE(image.save(picture));
    QString out, err;
    QTextStream o(&out), e(&err);
    const int status = RunCli({QStringLiteral("export"), picture, QStringLiteral("--settings"),
                               folders.Path(QStringLiteral("panel.LCD")), QStringLiteral("--mode"),
                               mode, QStringLiteral("-o"), output},
                              o, e, folders, fileUse);
    e.flush();
    if (status != 0) return QStringLiteral("status %1: ").arg(status) + err;
    QStringList constants;
    static const QRegularExpression constant(QStringLiteral("0x[0-9A-F]{2}\\b"));
    for (auto it = constant.globalMatch(QString::fromUtf8(test::ReadAll(output))); it.hasNext();) {
      constants << it.next().captured(0);
    }
    return constants.join(QLatin1Char(' '));
  }

  test::TempFolders folders;
  test::FakeFileUse fileUse;
};

TEST_F(CliColorExport, AnyPictureIsReducedToTheModesPalette) {
  // (254, 1, 0) is nearest to red; pure blue is 0x001F.
  EXPECT_EQ(Export(QStringLiteral("colors65536"), {qRgb(254, 1, 0), qRgb(0, 0, 255)}),
            QLatin1String("0xF8 0x00 0x00 0x1F"));
  // Grays 0, 255, 100 and 76 (red): levels 0, 3, 1, 1.
  EXPECT_EQ(Export(QStringLiteral("gray4"),
                   {qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(100, 100, 100), qRgb(255, 0, 0)}),
            QLatin1String("0x35"));
  // Every mode name of the settings command exports a black-and-white picture.
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const QString name = settings::PixelModeName(info.mode);
    if (name.isEmpty()) continue;
    const QString written = Export(name, {qRgb(0, 0, 0), qRgb(255, 255, 255), 0, 0, 0, 0, 0, 0}, 8);
    EXPECT_FALSE(written.startsWith(QLatin1String("status")))
        << name.toStdString() << ": " << written.toStdString();
  }
}

}  // namespace
}  // namespace vt::cli
