// SPDX-License-Identifier: MIT
// Moving the bitmap in and out of the undo stack.
#include "canvas/work_canvas.h"

namespace vt::canvas {

bool WorkCanvas::CopyCanvasToSaveTable() {
  CopyBitmapToCanvas();
  return undo_.Push(bitmap_);
}

void WorkCanvas::CopySaveTableToCanvas() {
  // An entry of another size (pushed before a resize) is laid in at the top left: the bitmap
  // keeps the display size.
  if (const QImage* entry = undo_.Current()) Draw(bitmap_, *entry, {0, 0}, Blend::Copy);
  CopyBitmapToCanvas();
}

void WorkCanvas::Undo() {
  undo_.StepBack();
  CopySaveTableToCanvas();
}

bool WorkCanvas::Redo() {
  if (!undo_.StepForward()) return false;
  CopySaveTableToCanvas();
  return true;
}

void WorkCanvas::ReloadOriginal() {
  undo_.StepToOriginal();
  CopySaveTableToCanvas();
}

void WorkCanvas::FlashOriginal() {
  if (const QImage* original = undo_.Original()) Draw(bitmap_, *original, {0, 0}, Blend::Copy);
  undo_.ReturnToTop();
  CopyBitmapToCanvas();
}

}  // namespace vt::canvas
