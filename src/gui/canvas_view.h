// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QWidget>

namespace vt::canvas {
class WorkCanvas;
}
class QPainter;

namespace vt::gui {

/// Shows the Work Canvas enlarged by a whole-number zoom, one square per pixel, with a light
/// grid between the pixels from zoom 4 on, and the selection rectangle dashed over them. What
/// it shows is the composed frame: the bitmap with the Transfer Layer and the floating layer.
/// The widget is exactly the enlarged canvas in size. It never changes the bitmap; a floating
/// layer can be dragged with the mouse, also past the canvas edges when it is larger.
class CanvasView final : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kMinZoom = 1;
  static constexpr int kMaxZoom = 64;
  /// The first zoom that draws the grid.
  static constexpr int kGridZoom = 4;
  /// Drawn over the pixels, so that it shows on dark and light pixels alike.
  static constexpr QColor kGridColor{128, 128, 128, 96};

  explicit CanvasView(canvas::WorkCanvas& canvas, QWidget* parent = nullptr);

  /// Sets the zoom, clamped to kMinZoom..kMaxZoom, and resizes the widget to match.
  void SetZoom(int zoom);
  int Zoom() const { return zoom_; }
  /// The pixel grid: off hides it at every zoom.
  void SetGridVisible(bool visible);
  bool GridVisible() const { return gridVisible_; }
  /// Follows a change of the canvas size or content: composes the frame again and repaints.
  void Refresh();

  QSize sizeHint() const override;

 Q_SIGNALS:
  /// A drag of the floating layer ended with the layer at a new place.
  void layerMoved();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void DrawGrid(QPainter& painter, int x0, int y0, int x1, int y1);

  canvas::WorkCanvas& canvas_;
  int zoom_ = kGridZoom;
  bool gridVisible_ = true;
  bool dragging_ = false;
  QPoint dragStart_;     ///< widget position where the drag began
  QPoint layerAtStart_;  ///< the layer's top-left corner then, in canvas pixels
};

}  // namespace vt::gui
