// SPDX-License-Identifier: MIT
#pragma once

// The fixed texts the canvas commands show and log. Spaces and line breaks are part of them.

namespace vt::canvas::texts {

inline constexpr char kUndo[] = "Last canvas reloaded from stack";
inline constexpr char kRedo[] = "Next canvas status reloaded from stack";
inline constexpr char kOriginal[] = "Original image reloaded from stack ";
inline constexpr char kPushError[] = "Error during Copy To Save Table !";
inline constexpr char kUndoError[] = "Undo Error";
inline constexpr char kRedoError[] = "Redo Error";
inline constexpr char kOriginalError[] = "Original Image Error";
inline constexpr char kPasteError[] = "Paste Error !";
inline constexpr char kUpdateTableError[] = "Error during Update Table !";
inline constexpr char kFormRedrawError[] = "Form Redraw Error !";
inline constexpr char kEscapeError[] = "Error during Escape function !";

inline constexpr char kDragPaste[] = "Drag/Paste selection layer";
inline constexpr char kPasted[] = "Selection pasted ";
inline constexpr char kCanceled[] = "Canceled !";
inline constexpr char kPasteConversion[] =
    " Image conversion to monochrome has not been done !\r  \rPerform Dithering "
    "(AUTO-Conversion to Black and White)\ror for MANUAL Conversion, move Threshold Slider "
    "located on top of Work Canvas ";
inline constexpr char kPendingConversionTitle[] = "Pending Image conversion";
inline constexpr char kPendingConversion[] =
    "Image conversion to monochrome  \rhas not been done !  \rPerform defined dithering in "
    "Dithering Menu or use\r or Threshold Slider located on top of Work Canvas ";
inline constexpr char kFloatingNotPasted[] =
    " Floating Selection layer has not been pasted to Work Canvas !\r Paste now, Discard "
    "selection or Cancel ? ";

inline constexpr char kStrokeAborted[] = "Action aborted by escape";
inline constexpr char kSelectionAborted[] = "Aborted selection (escape)";
inline constexpr char kTextSelectionAborted[] = "Aborted text selection (escape)";
inline constexpr char kSelectionDeleted[] = "Selection Layer deleted";

inline constexpr char kCopyMode[] = "Copy mode active";
inline constexpr char kCutMode[] = "Cut mode active";
inline constexpr char kCopyTransparentMode[] = "Copy transparent mode active";

inline constexpr char kTransferCreated[] = "Transfer layer created";
inline constexpr char kTransferVisible[] = "Transfer layer visible";
inline constexpr char kTransferHidden[] = "Transfer layer hidden";
inline constexpr char kClearTransferTitle[] = "Clear Transfer Layer";
inline constexpr char kClearTransfer[] = " Are you sure to want to clear the Transfer Layer ? ";
inline constexpr char kClearCanvasTitle[] = "Confirmation";
inline constexpr char kClearCanvas[] = " Are you sure to want to clear the work canvas ? ";
inline constexpr char kCanvasCleared[] = "Canvas cleared";

}  // namespace vt::canvas::texts
