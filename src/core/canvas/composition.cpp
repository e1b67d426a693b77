// SPDX-License-Identifier: MIT
// The order in which the stores are laid over each other for the screen.
#include "canvas/work_canvas.h"

namespace vt::canvas {

void WorkCanvas::CopyBitmapToCanvas(Layers layers) {
  const bool withTransfer = layers == Layers::All && transfer_.Visible && transfer_.Exists();
  if (withTransfer && transfer_.Lowest) {
    Draw(display_, transfer_.Image(), {0, 0}, Blend::Copy);
    Draw(display_, bitmap_, {0, 0}, Blend::And);
  } else {
    Draw(display_, bitmap_, {0, 0}, Blend::Copy);
    if (withTransfer) {
      Draw(display_, transfer_.Image(), {0, 0}, transfer_.Transparent ? Blend::And : Blend::Copy);
    }
  }
  if (selection_.IsFloating()) {
    const SelectionRect& r = selection_.Rect();
    Draw(display_, selection_.Layer(), {r.X1, r.Y1},
         selection_.Mode() == CopyMode::CopyTransparent ? Blend::And : Blend::Copy);
  }
}

void WorkCanvas::CopyCanvasToBitmap() {
  CopyBitmapToCanvas(Layers::WithoutTransferLayer);
  Draw(bitmap_, display_, {0, 0}, Blend::Copy);
  CopyBitmapToCanvas();
}

}  // namespace vt::canvas
