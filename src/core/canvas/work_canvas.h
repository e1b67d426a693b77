// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace vt::canvas {

/// Colour value with blue in the high byte of the three: 0x00BBGGRR.
using Color = quint32;
inline constexpr Color kBlack = 0x000000;
inline constexpr Color kWhite = 0xFFFFFF;

/// The Work Canvas: a 24-bit raster of exactly the display size. For now it holds the bitmap
/// and answers the questions the pixel mode selector asks of it.
class WorkCanvas {
 public:
  WorkCanvas();
  /// Resizes to `width` x `height` (each at least 1) and fills with the clear colour.
  void Resize(int width, int height);
  /// Fills the whole bitmap with `color`.
  void Fill(Color color);
  void SetPixel(int x, int y, Color color);
  Color Pixel(int x, int y) const;
  int Width() const { return bitmap_.width(); }
  int Height() const { return bitmap_.height(); }
  const QImage& Bitmap() const { return bitmap_; }

  /// Number of distinct colours, counting at most `limit` (the count stops there).
  int CountColors(int limit = 1 << 24) const;
  /// True when every pixel is black or white.
  bool IsBlackAndWhite() const;
  /// Clears to the clear colour (white).
  void Clear() { Fill(kWhite); }

 private:
  QImage bitmap_;
};

}  // namespace vt::canvas
