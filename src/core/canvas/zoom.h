// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

namespace vt::canvas {

/// The integer zoom of the view and the half of it that the grid uses.
struct ZoomScale {
  int scale = 1;
  int half = 0;  ///< scale / 2, rounded toward zero
  friend bool operator==(const ZoomScale&, const ZoomScale&) = default;
};

/// The zoom for a canvas of `canvas` pixels on a screen of `screen` pixels: the screen width
/// over the canvas width, at most 6, lowered while the canvas does not fit the screen height
/// less 150, plus the user's offset (`userOffset`, the engi key), then one less if the canvas
/// and 70 pixels do not fit the screen width. With `noMatrix` (NOMAT) the scale is 1. The scale
/// never goes below 1.
ZoomScale ComputeZoomScale(QSize screen, QSize canvas, int userOffset, bool noMatrix);

}  // namespace vt::canvas
