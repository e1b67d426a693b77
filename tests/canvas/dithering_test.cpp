// SPDX-License-Identifier: MIT
#include "canvas/dithering.h"

#include <gtest/gtest.h>

#include "canvas/threshold.h"
#include "pictures.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::canvas {
namespace {

using test::RowsOf;

/// A picture of gray levels; rows parted by '|' in `rows`, each a list of levels.
QImage Grays(std::initializer_list<std::initializer_list<int>> rows) {
  QImage image = MakeRaster(QSize(int(rows.begin()->size()), int(rows.size())));
  int y = 0;
  for (const auto& row : rows) {
    int x = 0;
    for (int g : row) image.setPixel(x++, y, qRgb(g, g, g));
    ++y;
  }
  return image;
}

TEST(DitherRaster, SmallGradientsGiveTheHandWorkedPatterns) {
  using M = DitherMethod;
  // Ramp 0, 36 .. 252 and flat 128; black below 32513 / 256, so 127 is black and 128 white.
  const struct {
    M method;
    const char* ramp;
    const char* flat;
  } cases[] = {
      {M::Nearest, "####....", "........"}, {M::FloydSteinberg, "###.#...", ".#.#.#.#"},
      {M::Stucki, "####....", ".#.#.#.#"},  {M::Sierra, "####....", ".#.#.#.#"},
      {M::JaJuNi, "####....", ".#.#.#.#"},  {M::SteveArche, "####....", "..##..##"},
      {M::Burkes, "###.#...", ".#.#.#.#"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(DitherMethodName(c.method).toStdString());
    QImage ramp = Grays({{0, 36, 72, 108, 144, 180, 216, 252}});
    QImage flat = Grays({{128, 128, 128, 128, 128, 128, 128, 128}});
    DitherRaster(ramp, {c.method, DitherReduction::Monochrome});
    DitherRaster(flat, {c.method, DitherReduction::Monochrome});
    EXPECT_EQ(RowsOf(ramp), c.ramp);
    EXPECT_EQ(RowsOf(flat), c.flat);
  }
  // Error going down: Floyd-Steinberg gives 5/16 to the pixel below, Stevenson-Arce 26/200 two
  // rows below; a 2 x 2 square of 128 takes 7, 3, 5 and 1 sixteenths.
  QImage column = Grays({{128}, {128}, {128}, {128}});
  QImage column2 = column.copy();
  QImage square = Grays({{128, 128}, {128, 128}});
  DitherRaster(column, {M::FloydSteinberg, DitherReduction::Monochrome});
  DitherRaster(column2, {M::SteveArche, DitherReduction::Monochrome});
  DitherRaster(square, {M::FloydSteinberg, DitherReduction::Monochrome});
  EXPECT_EQ(RowsOf(column), ".|#|.|#");
  EXPECT_EQ(RowsOf(column2), ".|.|#|#");
  EXPECT_EQ(RowsOf(square), ".#|#.");
  // Every kernel's weights add up to its published sum.
  const int sums[] = {1, 16, 42, 32, 48, 200, 32};
  for (int m = 0; m < 7; ++m) {
    const DitherKernel& kernel = KernelOf(static_cast<M>(m));
    int total = m == 0 ? 1 : 0;
    for (const KernelCell& cell : kernel.cells) total += cell.weight;
    EXPECT_EQ(kernel.sum, sums[m]);
    EXPECT_EQ(total, sums[m]) << m;
  }
}

TEST(DitherRaster, GrayReductionSpreadsEachChannelsError) {
  EXPECT_EQ(MonochromeLookup(127, 127, 127), kBlack);
  EXPECT_EQ(MonochromeLookup(128, 128, 128), kWhite);
  EXPECT_EQ(GrayLookup(255, 0, 0), 0x4C4C4Cu);  // 255 * 77 >> 8 = 76
  // (200,100,50) is gray 124, leaving errors 76, -24, -74; the next black pixel gets 7/16 of
  // them: (33, 0, 0) after clamping, gray 33 * 77 >> 8 = 9.
  QImage image = MakeRaster(QSize(2, 1), kBlack);
  image.setPixel(0, 0, qRgb(200, 100, 50));
  DitherRaster(image, {DitherMethod::FloydSteinberg, DitherReduction::GrayScale});
  EXPECT_EQ(image.pixel(0, 0), qRgb(124, 124, 124));
  EXPECT_EQ(image.pixel(1, 0), qRgb(9, 9, 9));
  EXPECT_EQ(DitherMethodFromName("JaJuNi"), DitherMethod::JaJuNi);
  EXPECT_FALSE(DitherMethodFromName("atkinson"));
}

struct Mono {
  vt::test::TestServices ts;
  app::AppState state;
  explicit Mono(settings::PixelMode mode = settings::PixelMode::Monochrome) {
    settings::ApplyModeFlags(state.settings.pixel, settings::Info(mode).flags);
    state.canvas.Resize(5, 1);
  }
  QString Layer() const { return RowsOf(state.canvas.Selection().Layer()); }
};

TEST(Threshold, AGrayBecomesBlackOnlyAboveItsOwnPositionAndColourImportsAreGrayedFirst) {
  // Levels 0, 100, 255, 100 and pure blue, whose gray is 255 * 29 >> 8 = 28.
  QImage picture = Grays({{0, 100, 255, 100, 0}});
  picture.setPixel(4, 0, qRgb(0, 0, 255));
  const struct {
    int position;
    const char* layer;
  } cases[] = {{0, "....."},   {28, "#...."},  {29, "#...#"},
               {100, "#...#"}, {101, "##.##"}, {255, "##.##"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.position);
    Mono f;
    f.state.canvas.Selection().Float(picture, {0, 0}, true);
    BWTrackBarChange(f.state, c.position);
    EXPECT_EQ(f.Layer(), c.layer);
    EXPECT_FALSE(f.state.canvas.Selection().ConversionPending());
    EXPECT_EQ(f.state.log.Lines().last(), texts::kBalanceChanged);
  }
  // Taken from the canvas, blue is compared as it is: 0xFF0000 is above 101 * 65792.
  Mono f;
  Draw(f.state.canvas.EditBitmap(), picture, {0, 0}, Blend::Copy);
  BWTrackBarChange(f.state, 101);  // no layer: the whole canvas is taken
  EXPECT_EQ(f.Layer(), "##.#.");
  EXPECT_EQ(f.state.canvas.Selection().Rect().StatusText(), "0,0,4,0");
  BWTrackBarChange(f.state, 0, /*mouseDown=*/true);  // only the number moves
  EXPECT_EQ(f.state.blackWhite.Position, 0);
  EXPECT_EQ(f.Layer(), "##.#.");
  EXPECT_TRUE(DoPaste(f.state, f.ts.services, BlackWhiteConversions(f.state)));
  EXPECT_EQ(RowsOf(f.state.canvas.Bitmap()), "##.#.");
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
}

TEST(Threshold, OutsideMonochromeTheMasterIsCopied) {
  Mono f(settings::PixelMode::Gray4);
  f.state.canvas.Selection().Float(test::Picture("#.b"), {0, 0}, false);
  BWTrackBarChange(f.state, 200);
  EXPECT_EQ(f.Layer(), "#.b");
}

TEST(PerformDithering, WithoutSelectionAsksAndNoChangesNothing) {
  Mono f(settings::PixelMode::Gray256);
  Draw(f.state.canvas.EditBitmap(), Grays({{128, 128, 128, 128, 128}}), {0, 0}, Blend::Copy);
  const QImage before = f.state.canvas.Bitmap().copy();
  f.ts.dialogs.Answer(platform::Answer::No);
  EXPECT_FALSE(PerformDithering(f.state, f.ts.services));
  ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
  EXPECT_EQ(f.ts.dialogs.shown[0].text,
            " No area selected \r Select Whole Work Canvas and perform Dithering ? ");
  EXPECT_EQ(f.ts.dialogs.shown[0].caption, "Dithering");
  EXPECT_EQ(f.state.canvas.Bitmap(), before);
  EXPECT_FALSE(f.state.canvas.Selection().IsFloating());
  EXPECT_EQ(settings::CurrentPixelMode(f.state.settings), settings::PixelMode::Gray256);

  // Yes: everything selected, the mode monochrome, the layer dithered and converted.
  f.ts.dialogs.Answer(platform::Answer::Yes);
  EXPECT_TRUE(PerformDithering(f.state, f.ts.services));
  EXPECT_EQ(settings::CurrentPixelMode(f.state.settings), settings::PixelMode::Monochrome);
  EXPECT_EQ(f.Layer(), ".#.#.");
  EXPECT_FALSE(f.state.canvas.Selection().ConversionPending());
  BWTrackBarChange(f.state, 0);  // the echo of the dithering is skipped
  EXPECT_EQ(f.Layer(), ".#.#.");
}

}  // namespace
}  // namespace vt::canvas
