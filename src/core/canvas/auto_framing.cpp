// SPDX-License-Identifier: MIT
#include "canvas/auto_framing.h"

#include <algorithm>
#include <cmath>

#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::canvas {
namespace {

/// The fewest pixels that fill whole bytes: PixelsPerByte itself when it is a whole number,
/// else the pixels of the smallest group of bytes (8 for the 8 colour mode's 8 pixels in 3).
int PixelsPerByteGroup(double pixelsPerByte) {
  if (pixelsPerByte <= 1) return 1;
  for (int n = 1; n <= 64; ++n) {
    const double bytes = n / pixelsPerByte;
    if (bytes >= 1 && std::abs(bytes - std::round(bytes)) < 1e-6) return n;
  }
  return static_cast<int>(std::ceil(pixelsPerByte));
}

/// Widens [lo, hi) outward to multiples of `step`, staying within [0, limit].
void RoundOut(int& lo, int& hi, int step, int limit) {
  lo = lo / step * step;
  hi = std::min(limit, (hi + step - 1) / step * step);
}

}  // namespace

FramingRule FramingRuleOf(const settings::Settings& settings) {
  return {settings::IsHorizontalScan(settings),
          settings.display.NOMAT ? 1.0 : settings::PixelsPerByte(settings), settings.block.BCD};
}

SelectionRect AutoFrameBounds(const QImage& bitmap, const FramingRule& rule) {
  if (bitmap.isNull()) return {};
  const int w = bitmap.width();
  const int h = bitmap.height();
  const QRgb background = reinterpret_cast<const QRgb*>(bitmap.constScanLine(0))[0];
  const auto differs = [background](QRgb v) { return ((v ^ background) & 0x00FFFFFFu) != 0; };
  int left = w, right = 0, top = h, bottom = 0;
  for (int y = 0; y < h; ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(bitmap.constScanLine(y));
    const auto* first = std::find_if(row, row + w, differs);
    if (first == row + w) continue;
    const auto last =
        std::find_if(std::make_reverse_iterator(row + w), std::make_reverse_iterator(row), differs);
    left = std::min(left, static_cast<int>(first - row));
    right = std::max(right, static_cast<int>(last.base() - row));  // one past the last
    top = std::min(top, y);
    bottom = y + 1;
  }
  if (bottom == 0) return {};
  const int step = PixelsPerByteGroup(rule.pixelsPerByte);
  if (rule.horizontalScan) {
    RoundOut(left, right, step, w);
    if (!rule.coordinateDescriptors) left = 0, right = w;
  } else {
    RoundOut(top, bottom, step, h);
    if (!rule.coordinateDescriptors) top = 0, bottom = h;
  }
  return {left, top, right, bottom};
}

}  // namespace vt::canvas
