// SPDX-License-Identifier: MIT
#pragma once

namespace vt::convert {

/// The state of one walk over an area: where the walk stands, the byte being built and the
/// counts the walker computed. The walker sets the area, limits and counts at the start of a
/// walk; the packers move X and Y and build Value. A default-constructed cursor is the cleared
/// state an export starts from.
struct ConversionCursor {
  int X = 0;           ///< current pixel column; walkers set it at each byte start, packers move it
  int Y = 0;           ///< current pixel row
  int AreaLeft = 0;    ///< first column of the area
  int AreaTop = 0;     ///< first row of the area
  int AreaRight = 0;   ///< one past the last column
  int AreaBottom = 0;  ///< one past the last row
  int AreaWidth = 0;   ///< AreaRight - AreaLeft
  int AreaHeight = 0;  ///< AreaBottom - AreaTop
  /// Bounds for monochrome bit reading: a bit whose coordinate exceeds them is not read.
  /// Normally the display size GWI and GHI.
  int LimitX = 0;
  int LimitY = 0;
  int Value = 0;           ///< the byte being built
  int SecondValue = 0;     ///< the other plane in two-page gray, the held part in packed modes
  double ByteCount = 0.0;  ///< bytes emitted so far (a real: some modes count 1.5 per value)
  int PagesPerColumn = 0;  ///< bytes down one column, computed by the walker
  int BytesPerRow = 0;     ///< bytes along one row, computed by the walker
  int PackedPhase = 0;     ///< position in the repeating group of packed modes: 0..3
  /// True while the font generator drives the packers: compression is bypassed.
  bool FontMode = false;
  /// Set by a failed colour search; the walk stops at once.
  bool Aborted = false;
};

}  // namespace vt::convert
