// SPDX-License-Identifier: MIT
#include "canvas/dithering.h"

#include <gtest/gtest.h>

#include "pictures.h"

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

}  // namespace
}  // namespace vt::canvas
