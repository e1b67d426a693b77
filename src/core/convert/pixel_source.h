// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <cstdint>

namespace vt::convert {

/// The bitmap a conversion reads: the Work Canvas or, for the font generator, a glyph bitmap.
/// Colours are 0x00BBGGRR; a pixel outside the bitmap reads as -1.
class PixelSource {
 public:
  virtual ~PixelSource() = default;
  virtual int Width() const = 0;
  virtual int Height() const = 0;
  /// The colour at (x, y), or -1 outside the bitmap.
  virtual std::int64_t PixelAt(int x, int y) const = 0;
};

/// A PixelSource over a 32-bit QImage (Format_RGB32 or ARGB32), reading scan lines directly.
class ImagePixelSource final : public PixelSource {
 public:
  explicit ImagePixelSource(const QImage& image) : image_(image) {}
  int Width() const override { return image_.width(); }
  int Height() const override { return image_.height(); }
  std::int64_t PixelAt(int x, int y) const override {
    if (x < 0 || y < 0 || x >= image_.width() || y >= image_.height()) return -1;
    const QRgb v = reinterpret_cast<const QRgb*>(image_.constScanLine(y))[x];
    return std::int64_t(qRed(v)) | (std::int64_t(qGreen(v)) << 8) |
           (std::int64_t(qBlue(v)) << 16);
  }

 private:
  const QImage& image_;
};

}  // namespace vt::convert
