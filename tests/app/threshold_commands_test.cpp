// SPDX-License-Identifier: MIT
#include "app/threshold_commands.h"

#include <gtest/gtest.h>

#include "app/state.h"
#include "canvas/pictures.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::app {
namespace {

using namespace canvas;
using canvas::test::RowsOf;

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
  f.state.canvas.Selection().Float(canvas::test::Picture("#.b"), {0, 0}, false);
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
}  // namespace vt::app
