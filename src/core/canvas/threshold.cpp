// SPDX-License-Identifier: MIT
#include "canvas/threshold.h"

namespace vt::canvas {

double ThresholdValueOf(int position) { return position * (16777215.0 / 255.0 - 1.0); }

}  // namespace vt::canvas
