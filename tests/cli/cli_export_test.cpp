// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QRegularExpression>

#include "app/state.h"
#include "cli/cli.h"
#include "temp_folders.h"

namespace vt::cli {
namespace {

/// 16 x 16, black in the left half. By rows it gives FF 00 a row; downwards by pages (td) each
/// of the two pages gives eight columns of FF then eight of 00; by columns with all their pages
/// (tda) sixteen FF then sixteen 00.
QImage HalfBlack() {
  QImage image(16, 16, QImage::Format_RGB32);
  image.fill(Qt::white);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 8; ++x) image.setPixel(x, y, qRgb(0, 0, 0));
  return image;
}

std::vector<int> Constants(const QByteArray& text) {
  std::vector<int> bytes;
  static const QRegularExpression constant(QStringLiteral("0x([0-9A-F]{2})"));
  for (auto it = constant.globalMatch(QString::fromUtf8(text)); it.hasNext();) {
    bytes.push_back(it.next().captured(1).toInt(nullptr, 16));
  }
  return bytes;
}

class CliExport : public ::testing::Test {
 protected:
  CliExport() { EXPECT_TRUE(HalfBlack().save(picture)); }
  int Exec(const QStringList& args) {
    out.clear();
    err.clear();
    QTextStream o(&out);
    QTextStream e(&err);
    const int status = RunCli(QStringList{QStringLiteral("export")} + args, o, e, folders, fileUse);
    o.flush();
    e.flush();
    return status;
  }

  test::TempFolders folders;
  test::FakeFileUse fileUse;
  QString settingsFile = folders.Path(QStringLiteral("panel.LCD"));
  QString picture = folders.Path(QStringLiteral("splash-1.png"));
  QString output = folders.Path(QStringLiteral("result.h"));
  QString out;
  QString err;
};

TEST_F(CliExport, TheFileIsTheDriversTextAndTheSettingsFileKeepsItsDirection) {
  test::TestServices t;
  app::AppState state;
  QString o, e;
  QTextStream outStream(&o), errStream(&e);
  ASSERT_EQ(RunExport({picture, QStringLiteral("--settings"), settingsFile,
                       QStringLiteral("--direction"), QStringLiteral("td")},
                      state, t.services, outStream, errStream),
            0)
      << e.toStdString();
  outStream.flush();
  errStream.flush();
  // Without -o the array goes to the output folder, named after the picture without "-".
  const QString written =
      t.folders.Documents() + QStringLiteral("/Vantorelle Project/Output Files/splash1.h");
  EXPECT_EQ(o, written + QLatin1Char('\n'));
  EXPECT_TRUE(e.isEmpty()) << e.toStdString();
  EXPECT_EQ(test::ReadAll(written), state.text.Text(QStringLiteral("\r\n")).toUtf8());
  EXPECT_TRUE(state.text.Text().contains(QStringLiteral(" splash1 ")));
  std::vector<int> downwards;
  for (int page = 0; page < 2; ++page) {
    downwards.insert(downwards.end(), 8, 0xFF);
    downwards.insert(downwards.end(), 8, 0x00);
  }
  EXPECT_EQ(Constants(test::ReadAll(written)), downwards);
  EXPECT_TRUE(test::ReadAll(settingsFile).contains("\r\ntr=1\r\n"));  // td was for this run
}

TEST_F(CliExport, RefusalsNameTheirCauseAndWriteNothing) {
  QFile corrupt(folders.Path(QStringLiteral("corrupt.png")));
  ASSERT_TRUE(corrupt.open(QIODevice::WriteOnly));
  corrupt.write("\x89PNG\r\n\x1a\n not really");
  corrupt.close();
  const QString huge = folders.Path(QStringLiteral("huge.png"));
  QImage(1100, 8, QImage::Format_Mono).save(huge);
  QImage colour = HalfBlack();
  colour.setPixel(3, 3, qRgb(200, 0, 0));
  const QString coloured = folders.Path(QStringLiteral("colour.png"));
  colour.save(coloured);
  const QString none = folders.Path(QStringLiteral("none.png"));
  struct Case {
    QStringList args;
    int status;
    QString message;  // the whole of standard error
  } cases[] = {
      {{none}, 1, "vantorelle-cli: " + none + ": no such file\n"},
      // The decoder's own words for a broken file.
      {{corrupt.fileName()},
       1,
       "vantorelle-cli: " + corrupt.fileName() + ": Unable to read image data\n"},
      {{huge},
       1,
       "vantorelle-cli: " + huge +
           ": the picture is 1100x8 pixels; a display is at most 1024x768\n"},
      {{coloured},
       1,
       "Error: Conversion to Black and White has not been done !\n\n"
       " Abort and then perform Dithering (AUTO-Conversion to Black and White)\n"
       " OR for MANUAL Conversion, move Threshold Slider located on top of Work Canvas \n"},
      {{coloured, QStringLiteral("--threshold"), QStringLiteral("256")},
       2,
       "vantorelle-cli: --threshold is a slider position from 0 to 255, not '256'\n"},
      {{coloured, QStringLiteral("--dither"), QStringLiteral("atkinson")},
       2,
       "vantorelle-cli: unknown dithering method 'atkinson'; one of nearest, floyd-steinberg, "
       "stucki, sierra, jajuni, steve-arche, burkes\n"},
      {{picture, QStringLiteral("--mode"), QStringLiteral("gray4"), QStringLiteral("--threshold"),
        QStringLiteral("9")},
       2,
       "vantorelle-cli: --threshold and --dither apply to the monochrome modes only\n"},
      {{picture, QStringLiteral("--direction"), QStringLiteral("up")},
       2,
       "vantorelle-cli: unknown direction 'up'; one of tr, tl, tra, tla, td, tda, tu, tua\n"},
      {{picture, QStringLiteral("--set"), QStringLiteral("ccomp=1"), QStringLiteral("--set"),
        QStringLiteral("D8bc=0"), QStringLiteral("--set"), QStringLiteral("D16bc=1")},
       1,
       "Info: Sorry, Data compression only works in the 8 bit output mode !\n"},
      {{},
       2,
       "vantorelle-cli: usage: vantorelle-cli export IMAGE [--settings FILE] [--mode NAME] "
       "[--direction KEY] [--corner N] [--set KEY=VALUE]... [--output-width 8|16|32|bin|ihex] "
       "[--threshold N | --dither METHOD] [--batch BATCH.SPP] [-o OUTPUT]\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message.toStdString());
    EXPECT_EQ(Exec(c.args + QStringList{QStringLiteral("--settings"), settingsFile,
                                        QStringLiteral("-o"), output}),
              c.status);
    EXPECT_EQ(err, c.message);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_FALSE(QFile::exists(output));
  }
}

TEST_F(CliExport, ThresholdAndDitherTurnAGradientIntoBlackAndWhite) {
  // Row 0: grays 0, 32, 64, 96, pure blue (gray 255 * 29 >> 8 = 28), 160, 192, 224; row 1:
  // 255, 200, 150, 127, 128, 100, 50, 0. At position N a gray Y is black when Y * 65793 is
  // below N * 65792: Y < N. The nearest lookup takes 127 as black and 128 as white.
  const int levels[2][8] = {{0, 32, 64, 96, -1, 160, 192, 224},
                            {255, 200, 150, 127, 128, 100, 50, 0}};
  QImage gradient(8, 2, QImage::Format_RGB32);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 8; ++x) {
      const int g = levels[y][x];
      gradient.setPixel(x, y, g < 0 ? qRgb(0, 0, 255) : qRgb(g, g, g));
    }
  const QString file = folders.Path(QStringLiteral("ramp.png"));
  ASSERT_TRUE(gradient.save(file));
  const struct {
    const char* option;
    const char* value;
    std::vector<int> bytes;
  } cases[] = {{"--threshold", "128", {0xF8, 0x17}},
               {"--threshold", "0", {0x00, 0x00}},
               {"--threshold", "255", {0xFF, 0x7F}},
               {"--dither", "nearest", {0xF8, 0x17}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.option) + " " + c.value);
    ASSERT_EQ(Exec({file, QStringLiteral("--settings"), settingsFile, QString::fromLatin1(c.option),
                    QString::fromLatin1(c.value), QStringLiteral("-o"), output}),
              0)
        << err.toStdString();
    EXPECT_EQ(Constants(test::ReadAll(output)), c.bytes);
  }
}

}  // namespace
}  // namespace vt::cli
