// SPDX-License-Identifier: MIT
#include "gui/canvas_view.h"

#include <gtest/gtest.h>

#include <QMouseEvent>

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

// A floating layer larger than the canvas shows composed over it and moves with the mouse, in
// whole canvas pixels, also past the top-left edge.
TEST_F(CanvasViewTest, AFloatingLayerShowsAndIsDraggedPastTheEdge) {
  QImage layer = canvas::MakeRaster(QSize(6, 3));
  layer.setPixel(2, 0, qRgb(0, 0, 0));
  canvas.Selection().Float(layer, {0, 0}, false);
  EXPECT_EQ(Picture(2).pixelColor(3, 3), QColor(Qt::white));  // the bitmap's black (1,1), covered
  EXPECT_EQ(Picture(2).pixelColor(5, 1), QColor(Qt::black));  // the layer's (2,0)
  int moved = 0;
  QObject::connect(&view, &CanvasView::layerMoved, [&] { ++moved; });
  const auto send = [&](QEvent::Type type, QPoint at) {
    QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
  };
  send(QEvent::MouseButtonPress, {5, 5});
  send(QEvent::MouseMove, {1, 5});  // two pixels left at zoom 2
  send(QEvent::MouseButtonRelease, {1, 5});
  EXPECT_EQ(canvas.Selection().Rect(), (canvas::SelectionRect{-2, 0, 4, 3}));
  EXPECT_EQ(moved, 1);
  EXPECT_EQ(Picture(2).pixelColor(1, 1), QColor(Qt::black));  // layer (2,0) now at (0,0)
  EXPECT_EQ(canvas.Pixel(0, 0), canvas::kWhite);              // the bitmap itself is untouched
}

}  // namespace
}  // namespace vt::gui
