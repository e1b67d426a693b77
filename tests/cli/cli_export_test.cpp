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

/// 128 x 64 black and white, without symmetry: a direction or bit order taken wrongly shows.
QImage Pattern() {
  QImage image(128, 64, QImage::Format_RGB32);
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 128; ++x) {
      const bool black = (x * 7 + y * 13 + (x * y) % 5) % 3 == 0 || (x < 5 && y < 2);
      image.setPixel(x, y, black ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
  }
  return image;
}

/// The bytes a direction gives, straight from its definition, with the corner the direction
/// selects and the most significant bit first: 8 pixels from (x, y) stepping by (dx, dy), the
/// first pixel the top bit.
std::vector<int> Reference(const QImage& image, const QString& direction) {
  auto byteAt = [&](int x, int y, int dx, int dy) {
    int value = 0;
    for (int i = 0; i < 8; ++i) {
      if ((image.pixel(x + i * dx, y + i * dy) & 0xFFFFFF) == 0) value |= 0x80 >> i;
    }
    return value;
  };
  std::vector<int> bytes;
  const int w = image.width(), h = image.height();
  if (direction == QLatin1String("tr")) {  // rows from the top, bytes from the left
    for (int y = 0; y < h; ++y)
      for (int b = 0; b < w / 8; ++b) bytes.push_back(byteAt(8 * b, y, 1, 0));
  } else if (direction == QLatin1String("tl")) {  // rows from the top, bytes from the right
    for (int y = 0; y < h; ++y)
      for (int b = 0; b < w / 8; ++b) bytes.push_back(byteAt(w - 1 - 8 * b, y, -1, 0));
  } else if (direction == QLatin1String("tra")) {  // byte columns from the left, all rows
    for (int b = 0; b < w / 8; ++b)
      for (int y = 0; y < h; ++y) bytes.push_back(byteAt(8 * b, y, 1, 0));
  } else if (direction == QLatin1String("tla")) {  // byte columns from the right, all rows
    for (int b = 0; b < w / 8; ++b)
      for (int y = 0; y < h; ++y) bytes.push_back(byteAt(w - 1 - 8 * b, y, -1, 0));
  } else if (direction == QLatin1String("td")) {  // pages from the top, columns from the left
    for (int p = 0; p < h / 8; ++p)
      for (int x = 0; x < w; ++x) bytes.push_back(byteAt(x, 8 * p, 0, 1));
  } else if (direction == QLatin1String("tda")) {  // columns, all pages from the top
    for (int x = 0; x < w; ++x)
      for (int p = 0; p < h / 8; ++p) bytes.push_back(byteAt(x, 8 * p, 0, 1));
  } else if (direction == QLatin1String("tu")) {  // pages from the bottom, read upwards
    for (int p = 0; p < h / 8; ++p)
      for (int x = 0; x < w; ++x) bytes.push_back(byteAt(x, h - 1 - 8 * p, 0, -1));
  } else if (direction == QLatin1String("tua")) {  // columns, pages from the bottom
    for (int x = 0; x < w; ++x)
      for (int p = 0; p < h / 8; ++p) bytes.push_back(byteAt(x, h - 1 - 8 * p, 0, -1));
  }
  return bytes;
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
  CliExport() { EXPECT_TRUE(Pattern().save(picture)); }
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

TEST_F(CliExport, EveryDirectionWritesTheBytesOfItsWalk) {
  const QImage image = Pattern();
  for (const char* key : {"tr", "tl", "tra", "tla", "td", "tda", "tu", "tua"}) {
    SCOPED_TRACE(key);
    QFile::remove(output);
    ASSERT_EQ(
        Exec({picture, QStringLiteral("--settings"), settingsFile, QStringLiteral("--direction"),
              QString::fromLatin1(key), QStringLiteral("-o"), output}),
        0)
        << err.toStdString();
    EXPECT_EQ(out, output + QLatin1Char('\n'));
    const std::vector<int> expected = Reference(image, QString::fromLatin1(key));
    ASSERT_EQ(expected.size(), 1024u);
    EXPECT_EQ(Constants(test::ReadAll(output)), expected);
  }
}

TEST_F(CliExport, TheLoadersFormatsWorkHeadless) {
  // 16 x 8, black in the left half: each row gives FF 00 in the default walk.
  QImage half(16, 8, QImage::Format_RGB32);
  half.fill(Qt::white);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) half.setPixel(x, y, qRgb(0, 0, 0));
  const QString svg = folders.Path(QStringLiteral("half.svg"));
  QFile file(svg);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(
      "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='8'>"
      "<rect width='16' height='8' fill='white'/><rect width='8' height='8'/></svg>");
  file.close();
  const QString tif = folders.Path(QStringLiteral("half.tif"));
  const QString bmp = folders.Path(QStringLiteral("half.bmp"));
  ASSERT_TRUE(half.save(tif) && half.save(bmp));
  std::vector<int> expected;
  for (int y = 0; y < 8; ++y) expected.insert(expected.end(), {0xFF, 0x00});
  for (const QString& path : {svg, tif, bmp}) {
    QFile::remove(output);
    ASSERT_EQ(
        Exec({path, QStringLiteral("--settings"), settingsFile, QStringLiteral("-o"), output}), 0)
        << path.toStdString() << err.toStdString();
    EXPECT_EQ(Constants(test::ReadAll(output)), expected) << path.toStdString();
  }
}

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
  // Without -o the array goes to the output folder, named after the picture without "-".
  const QString written = o.trimmed();
  EXPECT_TRUE(written.endsWith(QStringLiteral("/Output Files/splash1.h"))) << written.toStdString();
  EXPECT_EQ(test::ReadAll(written), state.text.Text(QStringLiteral("\r\n")).toUtf8());
  EXPECT_TRUE(state.text.Text().contains(QStringLiteral(" splash1 ")));
  EXPECT_TRUE(test::ReadAll(settingsFile).contains("\r\ntr=1\r\n"));  // td was for this run
}

TEST_F(CliExport, RefusalsNameTheirCauseAndWriteNothing) {
  QFile corrupt(folders.Path(QStringLiteral("corrupt.png")));
  ASSERT_TRUE(corrupt.open(QIODevice::WriteOnly));
  corrupt.write("\x89PNG\r\n\x1a\n not really");
  corrupt.close();
  const QString huge = folders.Path(QStringLiteral("huge.png"));
  QImage(1100, 8, QImage::Format_Mono).save(huge);
  QImage colour = Pattern();
  colour.setPixel(3, 3, qRgb(200, 0, 0));
  const QString coloured = folders.Path(QStringLiteral("colour.png"));
  colour.save(coloured);
  struct Case {
    QStringList args;
    int status;
    const char* message;
  } cases[] = {
      {{folders.Path(QStringLiteral("none.png"))}, 1, "none.png"},
      {{corrupt.fileName()}, 1, "corrupt.png"},
      {{huge}, 1, "at most 1024x768"},
      {{coloured}, 1, "Conversion to Black and White has not been done !"},
      {{coloured, QStringLiteral("--threshold"), QStringLiteral("256")}, 2, "0 to 255"},
      {{coloured, QStringLiteral("--dither"), QStringLiteral("atkinson")}, 2, "steve-arche"},
      {{picture, QStringLiteral("--mode"), QStringLiteral("gray4"), QStringLiteral("--threshold"),
        QStringLiteral("9")},
       2,
       "monochrome modes only"},
      {{picture, QStringLiteral("--direction"), QStringLiteral("up")}, 2, "unknown direction"},
      {{picture, QStringLiteral("--set"), QStringLiteral("ccomp=1"), QStringLiteral("--set"),
        QStringLiteral("D8bc=0"), QStringLiteral("--set"), QStringLiteral("D16bc=1")},
       1,
       "Sorry, Data compression only works in the 8 bit output mode !"},
      {{}, 2, "usage"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    EXPECT_EQ(Exec(c.args + QStringList{QStringLiteral("--settings"), settingsFile,
                                        QStringLiteral("-o"), output}),
              c.status);
    EXPECT_TRUE(err.contains(QString::fromUtf8(c.message))) << err.toStdString();
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
