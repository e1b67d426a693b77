// SPDX-License-Identifier: MIT
#include "app/color_check.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/display_commands.h"
#include "app/pixel_mode_commands.h"
#include "app/state.h"
#include "canvas/color_reduction.h"
#include "canvas/pictures.h"
#include "settings/geometry.h"
#include "temp_folders.h"

namespace vt::app {
namespace {

using namespace canvas;

using settings::PixelMode;
namespace Answer = platform::Answer;

constexpr int kReduce = Answer::Ok;  // the three captions answer 1, 2 and 4
constexpr int kConvert = Answer::Cancel;
constexpr int kCancel = Answer::Retry;

/// One row of `count` grays: 0x10, 0x1C, 0x28 ... and white last.
QImage GrayRow(int count) {
  QImage image = MakeRaster(QSize(count, 1));
  for (int x = 0; x + 1 < count; ++x)
    image.setPixel(x, 0, qRgb(0x10 + 12 * x, 0x10 + 12 * x, 0x10 + 12 * x));
  image.setPixel(count - 1, 0, qRgb(255, 255, 255));
  return image;
}

/// 300 colours: red and green walk apart, blue fixed.
QImage ColourRow() {
  QImage image = MakeRaster(QSize(300, 1));
  for (int x = 0; x < 300; ++x) image.setPixel(x, 0, qRgb(x % 256, x / 2, 40));
  return image;
}

class ColorCheckTest : public ::testing::Test {
 protected:
  ColorCheck Check(PixelMode mode, QImage& picture, std::optional<int> answer = {}) {
    (void)app::SelectPixelMode(state, t.services, mode);  // false when already set
    EXPECT_EQ(ModeOf(state.settings), mode);
    t.dialogs.shown.clear();
    state.log.Clear();
    if (answer) t.dialogs.Answer(*answer);
    return CheckColorsSelection(state, t.services, picture);
  }
  bool AllInPalette(const QImage& picture) {
    return CountUnknownColors(picture, state.palettes.Colors()) == 0;
  }
  vt::test::TestServices t;
  app::AppState state;
};

TEST_F(ColorCheckTest, GrayModesAskReduceConvertCancelAboveTheirLevels) {
  const QString question =
      QStringLiteral("Convert or Reduce to Grayscale Palette \r16 gray levels");
  const QString done = QStringLiteral(" Picture has been converted to 16 grey levels");
  // 0x10 and white, read through the map rule (quarter windows, the top quarter never tried)
  // or the engine's plain nearest level.
  const struct {
    int answer;
    ColorCheck result;
    QStringList texts;
    QRgb first, last;
  } cases[] = {
      {kCancel, ColorCheck::Cancelled, {question}, 0xFF101010, 0xFFFFFFFF},
      {kConvert, ColorCheck::Converted, {question, done}, 0xFF111111, 0xFF999999},
      {kReduce, ColorCheck::Reduced, {question, done}, 0xFF111111, 0xFFFFFFFF},
  };
  state.blackWhite.Dither.method = DitherMethod::Nearest;
  for (const auto& c : cases) {
    QImage picture = GrayRow(20);
    EXPECT_EQ(Check(PixelMode::Gray16Vertical, picture, c.answer), c.result) << c.answer;
    EXPECT_EQ(t.dialogs.Texts(), c.texts) << c.answer;
    EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("Convert to Grayscale"));
    EXPECT_EQ(t.dialogs.shown[0].customCaptions,
              (QStringList{QStringLiteral("Reduce"), QStringLiteral("Convert"),
                           QStringLiteral("Cancel")}));
    if (c.texts.size() > 1) EXPECT_EQ(t.dialogs.shown[1].caption, QStringLiteral("Info"));
    EXPECT_EQ(picture.pixel(0, 0), c.first) << c.answer;
    EXPECT_EQ(picture.pixel(19, 0), c.last) << c.answer;
    EXPECT_TRUE(state.log.Lines().contains(QStringLiteral("Found = 20")));
    EXPECT_EQ(state.log.Lines().contains(QStringLiteral("Converted to Grayscale")),
              c.result != ColorCheck::Cancelled);
  }
}

TEST_F(ColorCheckTest, ColourModesTellWhatEachAnswerMadeOfThePicture) {
  const QString question = QStringLiteral("Convert or Reduce to Color Palette \r256 colors");
  for (const int answer : {kCancel, kConvert, kReduce}) {
    QImage picture = ColourRow();
    const QImage before = picture;
    const ColorCheck result = Check(PixelMode::Colors256, picture, answer);
    ASSERT_EQ(t.dialogs.shown.size(), 2) << answer;
    EXPECT_EQ(t.dialogs.shown[0].text, question);
    EXPECT_EQ(t.dialogs.shown[0].caption, QString());  // the gray title is the gray modes' own
    EXPECT_EQ(t.dialogs.shown[1].caption, QStringLiteral("Info"));
    const QString told = t.dialogs.shown[1].text;
    if (answer == kCancel) {
      EXPECT_EQ(result, ColorCheck::Cancelled);
      EXPECT_EQ(told, QStringLiteral(" Picture has 300 colors"));
      EXPECT_EQ(picture, before);
      continue;
    }
    EXPECT_TRUE(AllInPalette(picture)) << answer;
    EXPECT_EQ(told, answer == kConvert
                        ? QStringLiteral(" Picture has been converted to 256 colors")
                        : QStringLiteral(" Picture has been converted from 300 to %1 colors")
                              .arg(CountPictureColors(picture)));
  }
}

TEST_F(ColorCheckTest, PicturesThatFitAreKeptWithoutAQuestion) {
  const struct {
    PixelMode mode;
    const char* rows;
    ColorCheck result;
    QRgb first;  // pixel (0,0) afterwards
  } cases[] = {
      // Up to the levels a gray mode only makes the picture gray: red gives 255*77 >> 8 = 76.
      {PixelMode::Gray16Vertical, "r.", ColorCheck::Kept, 0xFF4C4C4C},
      {PixelMode::Colors8, "rgb.#", ColorCheck::Kept, 0xFFFF0000},
      {PixelMode::Colors16M, "rgb.#", ColorCheck::Kept, 0xFFFF0000},
      {PixelMode::Monochrome, "#.", ColorCheck::Kept, 0xFF000000},
      {PixelMode::Monochrome, "r.", ColorCheck::ThresholdPending, 0xFFFF0000},
  };
  for (const auto& c : cases) {
    QImage picture = canvas::test::Picture(QString::fromLatin1(c.rows));
    EXPECT_EQ(Check(c.mode, picture), c.result) << c.rows;
    EXPECT_TRUE(t.dialogs.shown.isEmpty()) << c.rows;
    EXPECT_EQ(picture.pixel(0, 0), c.first) << c.rows;
  }
}

TEST(ReduceToPalette, DiffusesTheErrorOverTheModesOwnColours) {
  // A flat gray half way between two of the four levels comes out as a mix of the two.
  PaletteState palettes;
  palettes.SmallPalette = DefaultPalette(PixelMode::Gray4);
  palettes.SmallPaletteMode = true;
  QImage flat = MakeRaster(QSize(8, 8), 0x808080);
  ReduceToPalette(flat, palettes, PixelMode::Gray4, DitherMethod::FloydSteinberg);
  QList<QRgb> seen;
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x)
      if (!seen.contains(flat.pixel(x, y))) seen << flat.pixel(x, y);
  std::sort(seen.begin(), seen.end());
  EXPECT_EQ(seen, (QList<QRgb>{0xFF555555, 0xFFAAAAAA}));
}

}  // namespace
}  // namespace vt::app
