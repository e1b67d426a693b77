// SPDX-License-Identifier: MIT
#pragma once

// The selection rectangle and the floating selection layer that is cut from the canvas, moved,
// transformed and finally pasted back.

#include <QImage>
#include <QRect>
#include <QString>

namespace vt::canvas {

/// The selection rectangle in canvas pixels: left and top included, right and bottom one past
/// the last pixel. Left and top may be negative while a floating layer is dragged past the
/// top-left edge.
struct SelectionRect {
  int X1 = 0;
  int Y1 = 0;
  int X2 = 0;
  int Y2 = 0;

  int Width() const { return X2 - X1; }
  int Height() const { return Y2 - Y1; }
  bool IsEmpty() const { return X2 <= X1 || Y2 <= Y1; }
  QRect ToQRect() const { return QRect(X1, Y1, Width(), Height()); }
  /// What the status bar shows, the last pixel included: "X1,Y1,X2-1,Y2-1".
  QString StatusText() const;
  /// The rectangle between two corners given in any order, each pair sorted, then clipped to
  /// a canvas of `width` x `height`.
  static SelectionRect Normalized(int xa, int ya, int xb, int yb, int width, int height);
  friend bool operator==(const SelectionRect&, const SelectionRect&) = default;
};

/// How a selection takes the canvas and how its layer covers it.
enum class CopyMode {
  Copy,             ///< "Copy mode active"
  Cut,              ///< "Cut mode active": the area is filled with the brush colour when taken
  CopyTransparent,  ///< "Copy transparent mode active": white in the layer does not cover
};

/// Where the selection stands. A pasted selection is back to None.
enum class SelectionState {
  None,
  Dragging,  ///< the area is being dragged out; there is no layer yet
  Floating,  ///< the layer is active and may be moved, transformed and pasted
};

/// The floating selection: the snapshot of the canvas it was cut from, the layer, and the
/// master copy that every resize starts from. Invariant: while Floating, the layer's size is
/// the rectangle's size.
class FloatingSelection {
 public:
  SelectionState State() const { return state_; }
  bool IsFloating() const { return state_ == SelectionState::Floating; }
  const SelectionRect& Rect() const { return rect_; }
  CopyMode Mode() const { return mode_; }
  void SetMode(CopyMode mode) { mode_ = mode; }

  /// The area being dragged out, corners in any order, clipped to the canvas.
  void SetArea(int xa, int ya, int xb, int yb, QSize canvas);
  /// Cuts the layer and its master from the snapshot at the rectangle and makes it float.
  void TakeFrom(const QImage& snapshot);
  /// Makes `picture` float with its top-left corner at `at`; `needsConversion` marks a colour
  /// picture still to be made black and white.
  void Float(const QImage& picture, QPoint at, bool needsConversion);
  /// Moves the floating layer so that its top-left corner is at (x1, y1); the size stays.
  void MoveTo(int x1, int y1);
  /// Puts a transformed picture in place of the layer (flip, rotate, resize from the master);
  /// the top-left corner stays and the rectangle takes the new size.
  void ReplaceLayer(const QImage& picture);
  /// Drops the layer and resets the rectangle to 0,0,0,0.
  void Drop();

  /// The layer (SelectionBitmap) for tools that change it in place, such as the threshold.
  QImage& Layer() { return layer_; }
  const QImage& Layer() const { return layer_; }
  /// The selection as first taken (SelectionOriginalBitmap).
  const QImage& Master() const { return master_; }
  QImage& Master() { return master_; }
  /// The copy of the canvas taken when the selection began (Selbmp).
  QImage& Snapshot() { return snapshot_; }

  /// True while the layer holds a colour picture that the monochrome mode has not converted.
  bool ConversionPending() const { return conversionPending_; }
  void MarkConverted() { conversionPending_ = false; }
  /// True when the layer came from a colour picture (an import still to be converted when it
  /// began floating), not from the canvas.
  bool ColorImport() const { return colorImport_; }
  /// The master of a colour import has been made gray for the threshold.
  bool MasterGrayed = false;
  /// The threshold slider acts on the layer.
  bool ThresholdOn = false;

 private:
  SelectionState state_ = SelectionState::None;
  SelectionRect rect_;
  CopyMode mode_ = CopyMode::Copy;
  QImage snapshot_;
  QImage layer_;
  QImage master_;
  bool conversionPending_ = false;
  bool colorImport_ = false;
};

}  // namespace vt::canvas
