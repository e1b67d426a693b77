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
/// The image must stay unchanged while the source is in use.
class ImagePixelSource final : public PixelSource {
 public:
  explicit ImagePixelSource(const QImage& image)
      : bits_(image.constBits()),
        bytesPerLine_(image.bytesPerLine()),
        width_(image.width()),
        height_(image.height()) {}
  int Width() const override { return width_; }
  int Height() const override { return height_; }
  std::int64_t PixelAt(int x, int y) const override {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return -1;
    return Color(Row(y)[x]);
  }
  /// The pixels of row `y` (0 <= y < Height()).
  const QRgb* Row(int y) const {
    return reinterpret_cast<const QRgb*>(bits_ + static_cast<qsizetype>(y) * bytesPerLine_);
  }
  /// A pixel as the canvas stores colours: 0x00BBGGRR.
  static std::uint32_t Color(QRgb v) {
    return ((v >> 16) & 0xFFu) | (v & 0xFF00u) | ((v & 0xFFu) << 16);
  }

 private:
  const uchar* bits_;
  qsizetype bytesPerLine_;
  int width_;
  int height_;
};

}  // namespace vt::convert
