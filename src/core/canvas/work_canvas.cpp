// SPDX-License-Identifier: MIT
#include "canvas/work_canvas.h"

#include <algorithm>
#include <unordered_set>

namespace vt::canvas {
namespace {

// QImage keeps 0xAARRGGBB; the system's colour values are 0x00BBGGRR.
QRgb ToQRgb(Color c) { return qRgb(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF); }
Color FromQRgb(QRgb v) {
  return Color(qRed(v)) | (Color(qGreen(v)) << 8) | (Color(qBlue(v)) << 16);
}

}  // namespace

WorkCanvas::WorkCanvas() { Resize(128, 64); }

void WorkCanvas::Resize(int width, int height) {
  bitmap_ = QImage(std::max(1, width), std::max(1, height), QImage::Format_RGB32);
  Clear();
}

void WorkCanvas::Fill(Color color) { bitmap_.fill(ToQRgb(color)); }

void WorkCanvas::SetPixel(int x, int y, Color color) {
  if (x < 0 || y < 0 || x >= Width() || y >= Height()) return;
  reinterpret_cast<QRgb*>(bitmap_.scanLine(y))[x] = ToQRgb(color);
}

Color WorkCanvas::Pixel(int x, int y) const {
  return FromQRgb(reinterpret_cast<const QRgb*>(bitmap_.constScanLine(y))[x]);
}

int WorkCanvas::CountColors(int limit) const {
  std::unordered_set<QRgb> seen;
  for (int y = 0; y < Height(); ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(bitmap_.constScanLine(y));
    for (int x = 0; x < Width(); ++x) {
      seen.insert(row[x] | 0xFF000000u);
      if (static_cast<int>(seen.size()) >= limit) return limit;
    }
  }
  return static_cast<int>(seen.size());
}

bool WorkCanvas::IsBlackAndWhite() const {
  for (int y = 0; y < Height(); ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(bitmap_.constScanLine(y));
    for (int x = 0; x < Width(); ++x) {
      const QRgb v = row[x] & 0x00FFFFFFu;
      if (v != 0 && v != 0x00FFFFFFu) return false;
    }
  }
  return true;
}

}  // namespace vt::canvas
