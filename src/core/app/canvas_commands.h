// SPDX-License-Identifier: MIT
#pragma once

// The user's commands on the canvas stores: undo, redo, paste, discard, the Transfer Layer and
// clear. Each logs its status lines through the state's log, asks through the message
// routines; whether a layer is floating is the canvas's own to say (SelectionPending). A
// failure is caught, counted as a handled exception and shown in the status bar with the command's
// fixed error text; the state stays as it was. The callers skip undo, redo and the original reload
// while an animation plays, and update the LCD viewer after a push or a restore.

#include <QImage>
#include <functional>

namespace vt::app {
struct AppState;
struct Services;
}  // namespace vt::app

namespace vt::app {

/// CopyCanvasToSaveTable: composes and pushes the undo state; the picture is no longer the
/// unchanged original (ArtworkFresh off). A full stack shows "Error during Copy To Save Table !".
bool PushUndo(AppState& state);

/// Undo: drops the selection, shows "Last canvas reloaded from stack", restores one state back.
void UndoButtonClick(AppState& state);
/// Redo: with UndoTop at 0 only disables redo; else shows "Next canvas status reloaded from
/// stack" and restores one state forward.
void RedoButtonClick(AppState& state);
/// OriginalImagelButtonClick: drops the selection, restores entry 0, shows "Original image
/// reloaded from stack ".
void OriginalImagelButtonClick(AppState& state);
/// OriginalImageButtonClick: flashes entry 0 into the bitmap, the position staying at the top.
void OriginalImageButtonClick(AppState& state);

/// EnableSelection, after a tool, an import or text has made a layer float: shows the corners
/// ("X1,Y1,X2-1,Y2-1") and "Drag/Paste selection layer", and marks the selection pending.
void EnableSelection(AppState& state);

/// The conversions that a paste may ask for in monochrome mode, both acting on the layer in
/// place: the dithering set up in the Dithering menu, and the threshold at the middle of the
/// slider range.
struct LayerConversion {
  std::function<void(QImage&)> dither;
  std::function<void(QImage&)> thresholdMiddle;
};

/// DoPaste (button or Ctrl+V). In monochrome mode a layer not yet converted first asks, with
/// the buttons "Ok", "Cancel", "Dithering"; Dithering or Ok converts the layer and the paste
/// goes on, Cancel shows "Canceled !" and leaves the layer floating with the threshold on.
/// The paste draws the layer into the bitmap, pushes the undo state, drops the layer and shows
/// "Selection pasted ". Returns whether the layer was pasted.
bool DoPaste(AppState& state, Services& services, const LayerConversion& conversion);
/// Paste Multiple: pastes and keeps the layer floating for the next stamp. Refuses, with the
/// title "Pending Image conversion", while a monochrome conversion is outstanding.
bool PasteMultiple(AppState& state, Services& services);

/// What a tool, a menu or a mode change does when it meets a floating layer: asks " Floating
/// Selection layer has not been pasted ..." with "Paste now", "Discard", "Cancel". Paste now
/// runs DoPaste, Discard drops the layer. Returns true when the caller may go on: no layer was
/// floating, it was pasted, or it was discarded.
bool ResolveFloatingSelection(AppState& state, Services& services,
                              const LayerConversion& conversion);

/// Escape on a selection: drops the layer or the area being dragged and shows "Aborted
/// selection (escape)". Nothing happens without a selection.
void EscapeSelection(AppState& state);
/// Clear on a floating layer: drops it and shows "Selection Layer deleted".
void DeleteSelectionLayer(AppState& state);

/// CalqueButtonClick with Create Transfer Layer: fills the layer from the floating selection or
/// from the whole canvas (which is cleared), shows "Transfer layer created" and "Transfer layer
/// visible".
void CalqueButtonClick(AppState& state);
/// The spacebar: shows or hides an existing Transfer Layer ("Transfer layer visible",
/// "Transfer layer hidden").
void ToggleTransferLayer(AppState& state);
/// Clear on a visible Transfer Layer: after the question of the title "Clear Transfer Layer",
/// the layer is white again. Returns whether it was cleared.
bool ClearTransferLayer(AppState& state, Services& services);
/// Clear on the canvas: after the question of the title "Confirmation", fills the bitmap with
/// white, pushes the undo state and shows "Canvas cleared". Returns whether it was cleared.
bool ClearWorkCanvas(AppState& state, Services& services);

}  // namespace vt::app
