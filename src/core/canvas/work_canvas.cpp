// SPDX-License-Identifier: MIT
#include "canvas/work_canvas.h"

#include <algorithm>
#include <unordered_set>

namespace vt::canvas {

WorkCanvas::WorkCanvas() { Resize(128, 64); }

void WorkCanvas::Resize(int width, int height) {
  bitmap_ = MakeRaster(QSize(width, height), kWhite);
  display_ = MakeRaster(bitmap_.size(), kWhite);
  selection_.Drop();
  transfer_.Drop();
  for (PixelMarks* marks : {&SelPixelTable, &FillVisitedTable, &SelEdgeTable}) {
    marks->Resize(Width(), Height());
  }
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
  const int width = Width(), height = Height();
  bool any = false;
  QRgb last = 0;
  for (int y = 0; y < height; ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(bitmap_.constScanLine(y));
    for (int x = 0; x < width; ++x) {
      const QRgb c = row[x] | 0xFF000000u;
      if (any && c == last) continue;  // a run of one colour is counted once
      any = true;
      last = c;
      seen.insert(c);
      if (static_cast<int>(seen.size()) >= limit) return limit;
    }
  }
  return static_cast<int>(seen.size());
}

bool WorkCanvas::IsBlackAndWhite() const { return canvas::IsBlackAndWhite(bitmap_); }

void WorkCanvas::Restore(const QImage& snapshot) {
  bitmap_ = snapshot.copy();
  if (display_.size() != bitmap_.size()) display_ = MakeRaster(bitmap_.size(), kWhite);
  CopyBitmapToCanvas();
}

}  // namespace vt::canvas
