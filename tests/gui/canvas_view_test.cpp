// SPDX-License-Identifier: MIT
#include "gui/canvas_view.h"

#include <gtest/gtest.h>

#include "canvas/work_canvas.h"
#include "gui_test_app.h"

namespace vt::gui {
namespace {

class CanvasViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    canvas.Resize(4, 3);
    canvas.SetPixel(1, 1, canvas::kBlack);
    canvas.SetPixel(3, 2, 0x0000FF);  // red in 0x00BBGGRR
  }

  /// What the view shows at `zoom`.
  QImage Picture(int zoom) {
    view.SetZoom(zoom);
    return view.grab().toImage();
  }

  QApplication& app = test::GuiApp();  // before any widget
  canvas::WorkCanvas canvas;
  CanvasView view{canvas};
};

TEST_F(CanvasViewTest, IsTheBitmapTimesTheZoomWithinItsLimits) {
  view.SetZoom(5);
  EXPECT_EQ(view.size(), QSize(20, 15));
  canvas.Resize(10, 2);
  view.Refresh();
  EXPECT_EQ(view.size(), QSize(50, 10));
  view.SetZoom(0);
  EXPECT_EQ(view.Zoom(), CanvasView::kMinZoom);
  view.SetZoom(1000);
  EXPECT_EQ(view.Zoom(), CanvasView::kMaxZoom);
}

TEST_F(CanvasViewTest, EachPixelBecomesASquareOfItsColourAndFollowsRefresh) {
  const QImage picture = Picture(8);
  ASSERT_EQ(picture.size(), QSize(32, 24));
  // Inside each square, away from the grid line on its left and top edge.
  EXPECT_EQ(picture.pixelColor(8 + 4, 8 + 4), QColor(Qt::black));
  EXPECT_EQ(picture.pixelColor(8 + 7, 8 + 7), QColor(Qt::black));
  EXPECT_EQ(picture.pixelColor(4, 4), QColor(Qt::white));
  EXPECT_EQ(picture.pixelColor(24 + 4, 16 + 4), QColor(Qt::red));
  EXPECT_EQ(picture.pixelColor(16 + 1, 8 + 1), QColor(Qt::white));  // next to the black square
  canvas.SetPixel(0, 0, canvas::kBlack);
  view.Refresh();
  EXPECT_EQ(Picture(2).pixelColor(1, 1), QColor(Qt::black));
}

TEST_F(CanvasViewTest, DrawsALightGridFromZoomFourOnly) {
  QImage picture = Picture(CanvasView::kGridZoom);
  const QColor onWhite = picture.pixelColor(4, 2);  // left edge of pixel (1, 0)
  const QColor onBlack = picture.pixelColor(4, 6);  // left edge of pixel (1, 1)
  EXPECT_LT(onWhite.red(), 255);
  EXPECT_GT(onWhite.red(), 160);  // light: closer to white than to black
  EXPECT_EQ(onWhite.red(), onWhite.green());
  EXPECT_EQ(onWhite.red(), onWhite.blue());
  EXPECT_GT(onBlack.red(), 0);
  // The outer edge stays clean.
  EXPECT_EQ(picture.pixelColor(0, 2), QColor(Qt::white));
  EXPECT_EQ(picture.pixelColor(2, 0), QColor(Qt::white));

  picture = Picture(CanvasView::kGridZoom - 1);
  EXPECT_EQ(picture.pixelColor(3, 1), QColor(Qt::white));  // would be the edge of pixel (1, 0)
  EXPECT_EQ(picture.pixelColor(3, 4), QColor(Qt::black));  // first column of pixel (1, 1)
}

}  // namespace
}  // namespace vt::gui
