// SPDX-License-Identifier: MIT
#pragma once

// The two roads from a picture to black and white, both acting on the floating selection layer
// (or on the whole canvas taken as one selection), which is then pasted: the manual threshold
// of the slider and the dithering of the Dithering menu.

#include "app/canvas_commands.h"
#include "canvas/threshold.h"

namespace vt::app {

struct AppState;
struct Services;

/// Makes the whole canvas the floating selection (SelectionIsFullImage): the layer and its
/// master are taken afresh from the bitmap.
void SelectWholeCanvas(AppState& state);

/// BWTrackBarChange: the slider moved to `position` (clamped to 0..255). Skipped once after a
/// dithering. Without a floating layer the whole canvas becomes the selection. While
/// `mouseDown` only the number is shown; otherwise the layer is redone from its master by
/// BalanceGreyScale and "Black/white balance changed, paste selection when ready" is shown.
void BWTrackBarChange(AppState& state, int position, bool mouseDown = false);

/// BalanceGreyScale: a colour import not yet grayed has its master grayed once; the layer is
/// cleared to white; in monochrome each master pixel whose colour integer (0x00BBGGRR) is below
/// ThresholdValue is black in the layer. In other modes the master is copied to the layer.
void BalanceGreyScale(AppState& state);

/// ">MID": the slider to the middle (Max/2) and the threshold step.
void ThresholdMiddle(AppState& state);

/// Opens the threshold tool over a floating layer that waits for its conversion: the tool shows
/// in place of the canvas tool bar, the slider acts on the layer, and the status bar says
/// "Use trackbar, move and then paste selection...".
void ThresholdON(AppState& state);

/// ThresholdOFF: hides the threshold tool.
void ThresholdOFF(AppState& state);

/// PerformDitheringParametersbelow1Click ("Perform Dithering"). Nothing in animation mode.
/// Without a floating layer asks " No area selected \r Select Whole Work Canvas and perform
/// Dithering ? " (title "Dithering"); No changes nothing, Yes selects everything and sets the
/// monochrome mode. The layer then goes through the engine with the menu's method and
/// reduction; the monochrome reduction marks it converted. Returns whether it was dithered.
bool PerformDithering(AppState& state, Services& services);

/// "Convert Work Canvas to Black and White by Dithering": the whole canvas is selected,
/// dithered to black and white with the menu's method, and pasted. Returns whether it was.
bool DitherWorkCanvas(AppState& state, Services& services);

/// The conversions DoPaste offers for a layer still to be converted: "Dithering" runs the
/// menu's method to monochrome, "Ok" the threshold at the middle of the slider.
LayerConversion BlackWhiteConversions(AppState& state);

}  // namespace vt::app
