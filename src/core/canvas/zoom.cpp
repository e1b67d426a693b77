// SPDX-License-Identifier: MIT
#include "canvas/zoom.h"

#include <algorithm>

namespace vt::canvas {

ZoomScale ComputeZoomScale(QSize screen, QSize canvas, int userOffset, bool noMatrix) {
  int scale = 1;
  if (!noMatrix) {
    const int w = std::max(1, canvas.width());
    const int h = std::max(1, canvas.height());
    scale = std::min(screen.width() / w, 6);
    while (scale > 1 && screen.height() - 150 < scale * h) --scale;
    scale += userOffset;
    if (screen.width() < scale * w + 70) --scale;
    scale = std::max(1, scale);
  }
  return {scale, scale / 2};
}

}  // namespace vt::canvas
