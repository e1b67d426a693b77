// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "canvas/selection.h"

namespace vt::settings {
struct Settings;
}

namespace vt::canvas {

/// What auto framing needs to know of the scan.
struct FramingRule {
  bool horizontalScan = true;          ///< bytes run along the rows (tr, tl, tra, tla)
  double pixelsPerByte = 8;            ///< 1 under NOMAT
  bool coordinateDescriptors = false;  ///< BCD: keep the frame tight across the bytes
};

/// The rule of the current settings: direction, PixelsPerByte (1 with NOMAT) and BCD.
FramingRule FramingRuleOf(const settings::Settings& settings);

/// The smallest area holding every pixel that differs from pixel (0,0), right and bottom
/// exclusive. Along the bytes the bounds go out to whole bytes: left and right for a horizontal
/// scan, top and bottom for a vertical one, to multiples of the pixels one byte (or, when
/// PixelsPerByte is no whole number, one group of bytes) holds, within the bitmap. Without BCD
/// that axis then spans the whole bitmap. A bitmap of one colour gives the empty frame 0,0,0,0.
SelectionRect AutoFrameBounds(const QImage& bitmap, const FramingRule& rule);

}  // namespace vt::canvas
