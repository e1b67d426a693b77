// SPDX-License-Identifier: MIT
#pragma once

// Row-wise operations on the 24-bit stores of the canvas. Every store is a Format_RGB32 QImage;
// these helpers work on scan lines and never touch single pixels through QImage::pixel().

#include <QImage>
#include <QPoint>
#include <QRect>

namespace vt::canvas {

/// Colour value with blue in the high byte of the three: 0x00BBGGRR.
using Color = quint32;
inline constexpr Color kBlack = 0x000000;
inline constexpr Color kWhite = 0xFFFFFF;

/// A colour value as QImage keeps it (0xFFRRGGBB).
inline QRgb ToQRgb(Color c) { return qRgb(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF); }
/// A QImage pixel as a colour value; alpha is dropped.
inline Color FromQRgb(QRgb v) {
  return Color(qRed(v)) | (Color(qGreen(v)) << 8) | (Color(qBlue(v)) << 16);
}

/// How a raster is laid over another. `And` is the bitwise AND of source and destination, so
/// that white in the source leaves the destination as it is (and colours over colours mix).
enum class Blend { Copy, And };

/// A new store of `size` (each side at least 1) filled with `fill`.
QImage MakeRaster(QSize size, Color fill = kWhite);
/// True when every pixel of a 32-bit picture is pure black or pure white.
bool IsBlackAndWhite(const QImage& picture);

/// Lays `src` over `dst` with its top-left corner at `at` (which may be negative), clipped to
/// `dst`. Both must be Format_RGB32.
void Draw(QImage& dst, const QImage& src, QPoint at, Blend blend);

/// Fills the part of `area` that lies in `dst` with `color`.
void FillRect(QImage& dst, const QRect& area, Color color);

/// Fills everything of `dst` outside `area` with `color`.
void FillOutside(QImage& dst, const QRect& area, Color color);

}  // namespace vt::canvas
