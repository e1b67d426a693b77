// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "canvas/pixel_marks.h"
#include "canvas/raster.h"
#include "canvas/selection.h"
#include "canvas/transfer_layer.h"
#include "canvas/undo_stack.h"

namespace vt::canvas {

/// Pen and brush of the drawing tools. The brush is also the fill colour and what a cut leaves.
struct PenState {
  Color pen = kBlack;    ///< "FG"
  Color brush = kWhite;  ///< "BG"
  int width = 1;         ///< 1 to 10
  bool round = false;    ///< round rather than square pen
  int cornerRadius = 3;  ///< 1 to 10
};

/// What a paste of the floating layer came to.
enum class PasteResult {
  Pasted,
  PastedPushFailed,   ///< drawn into the bitmap, but the undo push failed
  NotFloating,        ///< there was no floating layer: nothing changed
  ConversionPending,  ///< monochrome mode and the layer still holds colours: nothing changed
};

/// The Work Canvas: the picture (`Bitmap`, 24 bits, exactly the display size), the display frame
/// composed from it and its layers, the floating selection, the Transfer Layer, the undo stack
/// and the per-pixel mark tables. Tools draw into Bitmap and call CopyBitmapToCanvas after.
/// Invariant: Bitmap, DisplayBitmap, and the Transfer Layer when it exists, share one size.
class WorkCanvas {
 public:
  WorkCanvas();

  // --- The picture ------------------------------------------------------------------------
  /// Rebuilds every store for `width` x `height` (each at least 1): the bitmap and the display
  /// frame white, the selection dropped, the Transfer Layer gone, the mark tables cleared. The
  /// undo stack stays.
  void Resize(int width, int height);
  /// Fills the whole bitmap with `color`.
  void Fill(Color color);
  /// Sets one pixel; outside the bitmap nothing happens. For rare single-pixel tools only.
  void SetPixel(int x, int y, Color color);
  /// The pixel at (x, y), which must lie inside.
  Color Pixel(int x, int y) const;
  int Width() const { return bitmap_.width(); }
  int Height() const { return bitmap_.height(); }
  const QImage& Bitmap() const { return bitmap_; }
  /// The bitmap for tools that write its rows. Its size and format must not change.
  QImage& EditBitmap() { return bitmap_; }
  /// Number of distinct colours, counting at most `limit` (the count stops there).
  int CountColors(int limit = 1 << 24) const;
  /// True when every pixel is black or white.
  bool IsBlackAndWhite() const;
  /// ClearBitmap: fills the bitmap with white.
  void Clear() { Fill(kWhite); }

  // --- Composition ------------------------------------------------------------------------
  enum class Layers { All, WithoutTransferLayer };
  /// Composes DisplayBitmap from the bitmap, the Transfer Layer (when visible and `layers` is
  /// All) and the floating layer at (X1, Y1). Never changes the bitmap; allocates no raster.
  void CopyBitmapToCanvas(Layers layers = Layers::All);
  /// Takes the display frame, composed without the Transfer Layer, back into the bitmap, then
  /// composes again with it. The caller skips this while an animation frame is replayed.
  void CopyCanvasToBitmap();
  /// The composed frame, before zoom.
  const QImage& DisplayBitmap() const { return display_; }

  // --- Undo -------------------------------------------------------------------------------
  /// Composes, then pushes a copy of the bitmap. False when the stack is full (see
  /// UndoStack::Push); the position stays advanced.
  [[nodiscard]] bool CopyCanvasToSaveTable();
  /// Restores the entry at UndoPosition (clamped); an empty slot leaves the bitmap as it is.
  void CopySaveTableToCanvas();
  /// One state back (stops at 0) and restores it.
  void Undo();
  /// One state forward and restores it; false when UndoTop is 0 (nothing happens then).
  bool Redo();
  /// Goes to entry 0 and restores it; redo leaves it again.
  void ReloadOriginal();
  /// Shows entry 0 in the bitmap and leaves the position at the top of the stack.
  void FlashOriginal();
  const UndoStack& SaveTable() const { return undo_; }
  UndoStack& SaveTable() { return undo_; }

  // --- Floating selection -----------------------------------------------------------------
  FloatingSelection& Selection() { return selection_; }
  const FloatingSelection& Selection() const { return selection_; }
  /// Snapshot of the bitmap for the selection to be cut from; in cut mode the selected area
  /// of the bitmap is then filled with the brush colour and the view recomposed.
  void UpdateTable();
  /// Cuts the layer at the selection rectangle from the snapshot and makes it float.
  void SelectionToBitmap();
  /// Draws the floating layer into the bitmap at (X1, Y1), by AND in copy-transparent mode,
  /// and pushes the undo state. Unless `keepFloating` the layer is dropped and the rectangle
  /// reset to 0,0,0,0. With `monochrome` a layer still to be converted is refused.
  PasteResult PasteSelection(bool keepFloating, bool monochrome);
  /// Drops the floating layer or the area being dragged, without pasting, and recomposes.
  void DisableSelection();
  /// Fills the selected area of the bitmap with white.
  void ClearFullSelection();
  /// Fills the bitmap outside the selected area with white.
  void ClearOutsideSelection();

  // --- Transfer Layer ---------------------------------------------------------------------
  TransferLayer& Transfer() { return transfer_; }
  const TransferLayer& Transfer() const { return transfer_; }
  /// Creates the layer (white) if needed and fills it: from the floating layer at its place,
  /// which then stops floating, or else from the whole bitmap, which is then cleared. The layer
  /// becomes visible.
  void CreateTransferLayer();

  // --- Scratch copy for a conversion run ----------------------------------------------------
  /// A copy of the bitmap that Restore puts back.
  QImage Snapshot() const { return bitmap_.copy(); }
  /// Puts a snapshot back as the bitmap and recomposes.
  void Restore(const QImage& snapshot);

  // --- Tool state -------------------------------------------------------------------------
  PenState Pen;
  PixelMarks SelPixelTable;     ///< marks of a contiguous-pixel selection
  PixelMarks FillVisitedTable;  ///< cells visited by a flood fill
  PixelMarks SelEdgeTable;      ///< outline of the selection

 private:
  QImage bitmap_;
  QImage display_;
  FloatingSelection selection_;
  TransferLayer transfer_;
  UndoStack undo_;
};

}  // namespace vt::canvas
