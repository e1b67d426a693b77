// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <tuple>

#include "canvas/auto_framing.h"
#include "canvas/zoom.h"
#include "pictures.h"
#include "settings/pixel_modes.h"

namespace vt::canvas {
namespace {

/// A `w` x `h` picture of `background` with the pixels `marks` in `mark`.
QImage Marked(int w, int h, Color background, std::initializer_list<QPoint> marks,
              Color mark = kBlack) {
  QImage image = MakeRaster(QSize(w, h), background);
  for (const QPoint& p : marks) FillRect(image, QRect(p, QSize(1, 1)), mark);
  return image;
}

TEST(AutoFrameBounds, WholeBytesAlongTheScanAndTheFullSideWithoutBcd) {
  const double c8 = settings::kColors8PixelsPerByte;
  const std::tuple<const char*, QImage, FramingRule, SelectionRect> cases[] = {
      {"white canvas", Marked(16, 2, kWhite, {}), {true, 8, false}, {}},
      {"white canvas, BCD", Marked(16, 2, kWhite, {}), {true, 8, true}, {}},
      {"horizontal, BCD", Marked(16, 3, kWhite, {{9, 1}}), {true, 8, true}, {8, 1, 16, 2}},
      {"horizontal", Marked(16, 3, kWhite, {{9, 1}}), {true, 8, false}, {0, 1, 16, 2}},
      {"vertical, BCD", Marked(3, 16, kWhite, {{1, 9}}), {false, 8, true}, {1, 8, 2, 16}},
      {"vertical", Marked(3, 16, kWhite, {{1, 9}}), {false, 8, false}, {1, 0, 2, 16}},
      {"two pixels a byte", Marked(10, 4, kWhite, {{3, 1}, {6, 2}}), {true, 2, true}, {2, 1, 8, 3}},
      {"8 pixels in 3 bytes", Marked(24, 2, kWhite, {{9, 0}}), {true, c8, true}, {8, 0, 16, 1}},
      {"background of pixel (0,0)",
       Marked(5, 2, kBlack, {{3, 1}}, kWhite),
       {true, 1, true},
       {3, 1, 4, 2}},
      {"rounded up no further than the edge",
       Marked(12, 1, kWhite, {{10, 0}}),
       {true, 8, true},
       {8, 0, 12, 1}}};
  for (const auto& [name, picture, rule, expected] : cases) {
    EXPECT_EQ(AutoFrameBounds(picture, rule), expected) << name;
  }
}

TEST(ComputeZoomScale, FitsTheScreenThenTakesTheUserOffset) {
  const std::tuple<QSize, QSize, int, bool, ZoomScale> cases[] = {
      {{1920, 1080}, {128, 64}, 0, false, {6, 3}},   // capped at 6
      {{1366, 768}, {320, 240}, 0, false, {2, 1}},   // lowered for the height
      {{1920, 1080}, {128, 64}, 1, false, {7, 3}},   // the user's zoom in
      {{800, 600}, {128, 64}, 0, false, {5, 2}},     // 6 * 128 + 70 > 800
      {{1366, 768}, {1024, 768}, 0, false, {1, 0}},  // never below 1
      {{1920, 1080}, {128, 64}, 2, true, {1, 0}},    // NOMAT
  };
  for (const auto& [screen, canvas, offset, noMatrix, expected] : cases) {
    EXPECT_EQ(ComputeZoomScale(screen, canvas, offset, noMatrix), expected)
        << canvas.width() << "x" << canvas.height() << " offset " << offset;
  }
}

}  // namespace
}  // namespace vt::canvas
