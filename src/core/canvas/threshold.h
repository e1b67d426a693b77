// SPDX-License-Identifier: MIT
#pragma once

// The state of the two roads from a picture to black and white: the manual threshold of the
// slider and the dithering of the Dithering menu. The commands that act on the floating layer
// are the application's (app/threshold_commands.h).

#include <QImage>

#include "canvas/dithering.h"

namespace vt::canvas {

namespace texts {
inline constexpr char kBalanceChanged[] = "Black/white balance changed, paste selection when ready";
inline constexpr char kDitheringTitle[] = "Dithering";
inline constexpr char kDitherWholeCanvas[] =
    " No area selected \r Select Whole Work Canvas and perform Dithering ? ";
inline constexpr char kUseTrackbar[] = "Use trackbar, move and then paste selection...";
}  // namespace texts

/// The threshold tool (BWAdjustementTool: BWTrackBar, BlackWhiteEdit, ">MID") and the dither
/// parameters of the Dithering menu.
struct BlackWhiteTools {
  static constexpr int kMaxPosition = 255;
  int Position = 127;          ///< BWTrackBar, 0 to 255; BlackWhiteEdit shows the same number
  double ThresholdValue = 0;   ///< the level in colour-integer units: Position * 65792
  bool Visible = false;        ///< the tool is shown in place of the canvas tool bar
  bool DitheringDone = false;  ///< a dithering has just run: the next slider change is skipped
  QImage Backup;               ///< the layer as it was before the first threshold
  DitherParameters Dither;     ///< the Dithering menu's radio groups
  /// The graphics preview's own radio groups, and its choice to dither every picture as it
  /// is loaded (before it is sized and checked).
  DitherParameters PreviewDither;
  bool DitherOnLoad = false;
};

/// ThresholdValue of a slider position: position * (16777215 / 255 - 1), that is * 65792.
double ThresholdValueOf(int position);

}  // namespace vt::canvas
