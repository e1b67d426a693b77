// SPDX-License-Identifier: MIT
#include "canvas/raster.h"

#include <algorithm>
#include <cstring>

namespace vt::canvas {

QImage MakeRaster(QSize size, Color fill) {
  QImage image(std::max(1, size.width()), std::max(1, size.height()), QImage::Format_RGB32);
  image.fill(ToQRgb(fill));
  return image;
}

bool IsBlackAndWhite(const QImage& picture) {
  for (int y = 0; y < picture.height(); ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb v = row[x] & 0x00FFFFFFu;
      if (v != 0 && v != 0x00FFFFFFu) return false;
    }
  }
  return true;
}

void Draw(QImage& dst, const QImage& src, QPoint at, Blend blend) {
  Q_ASSERT(dst.format() == QImage::Format_RGB32 && src.format() == QImage::Format_RGB32);
  const QRect target = QRect(at, src.size()).intersected(dst.rect());
  if (target.isEmpty()) return;
  const int srcX = target.left() - at.x();
  const int width = target.width();
  for (int y = target.top(); y <= target.bottom(); ++y) {
    auto* d = reinterpret_cast<QRgb*>(dst.scanLine(y)) + target.left();
    const auto* s = reinterpret_cast<const QRgb*>(src.constScanLine(y - at.y())) + srcX;
    if (blend == Blend::Copy) {
      std::memcpy(d, s, sizeof(QRgb) * width);
    } else {
      for (int x = 0; x < width; ++x) d[x] &= s[x];
    }
  }
}

void FillRect(QImage& dst, const QRect& area, Color color) {
  const QRect target = area.intersected(dst.rect());
  if (target.isEmpty()) return;
  const QRgb value = ToQRgb(color);
  for (int y = target.top(); y <= target.bottom(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(dst.scanLine(y));
    std::fill(row + target.left(), row + target.left() + target.width(), value);
  }
}

void FillOutside(QImage& dst, const QRect& area, Color color) {
  const QRect keep = area.intersected(dst.rect());
  if (keep.isEmpty()) {
    dst.fill(ToQRgb(color));
    return;
  }
  const int w = dst.width();
  FillRect(dst, QRect(0, 0, w, keep.top()), color);
  FillRect(dst, QRect(0, keep.bottom() + 1, w, dst.height() - keep.bottom() - 1), color);
  FillRect(dst, QRect(0, keep.top(), keep.left(), keep.height()), color);
  FillRect(dst, QRect(keep.right() + 1, keep.top(), w - keep.right() - 1, keep.height()), color);
}

}  // namespace vt::canvas
