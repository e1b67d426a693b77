// SPDX-License-Identifier: MIT
// The floating selection and the Transfer Layer as they meet the bitmap.
#include "canvas/work_canvas.h"

namespace vt::canvas {

void WorkCanvas::UpdateTable() {
  selection_.Snapshot() = bitmap_.copy();
  if (selection_.Mode() == CopyMode::Cut) {
    FillRect(bitmap_, selection_.Rect().ToQRect(), Pen.brush);
    CopyBitmapToCanvas();
  }
}

void WorkCanvas::SelectionToBitmap() {
  if (selection_.Snapshot().isNull()) selection_.Snapshot() = bitmap_.copy();
  selection_.TakeFrom(selection_.Snapshot());
}

PasteResult WorkCanvas::PasteSelection(bool keepFloating, bool monochrome) {
  if (!selection_.IsFloating()) return PasteResult::NotFloating;
  if (monochrome && selection_.ConversionPending()) return PasteResult::ConversionPending;
  const SelectionRect& r = selection_.Rect();
  Draw(bitmap_, selection_.Layer(), {r.X1, r.Y1},
       selection_.Mode() == CopyMode::CopyTransparent ? Blend::And : Blend::Copy);
  const bool pushed = CopyCanvasToSaveTable();
  if (!keepFloating) DisableSelection();
  return pushed ? PasteResult::Pasted : PasteResult::PastedPushFailed;
}

void WorkCanvas::DisableSelection() {
  selection_.Drop();
  CopyBitmapToCanvas();
}

void WorkCanvas::ClearFullSelection() {
  FillRect(bitmap_, selection_.Rect().ToQRect(), kWhite);
  CopyBitmapToCanvas();
}

void WorkCanvas::ClearOutsideSelection() {
  FillOutside(bitmap_, selection_.Rect().ToQRect(), kWhite);
  CopyBitmapToCanvas();
}

void WorkCanvas::CreateTransferLayer() {
  transfer_.Ensure(bitmap_.size());
  if (selection_.IsFloating()) {
    const SelectionRect& r = selection_.Rect();
    Draw(transfer_.Image(), selection_.Layer(), {r.X1, r.Y1}, Blend::Copy);
    selection_.Drop();
  } else {
    Draw(transfer_.Image(), bitmap_, {0, 0}, Blend::Copy);
    Clear();
  }
  transfer_.Visible = true;
  CopyBitmapToCanvas();
}

}  // namespace vt::canvas
