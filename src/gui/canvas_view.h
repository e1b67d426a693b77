// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QWidget>

namespace vt::canvas {
class WorkCanvas;
}
class QPainter;

namespace vt::gui {

/// Shows the Work Canvas bitmap enlarged by a whole-number zoom, one square per pixel, with a
/// light grid between the pixels from zoom 4 on, and the selection rectangle dashed over them. The widget is exactly the enlarged bitmap in
/// size; it reads the canvas at each paint and never changes it.
class CanvasView final : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kMinZoom = 1;
  static constexpr int kMaxZoom = 64;
  /// The first zoom that draws the grid.
  static constexpr int kGridZoom = 4;
  /// Drawn over the pixels, so that it shows on dark and light pixels alike.
  static constexpr QColor kGridColor{128, 128, 128, 96};

  explicit CanvasView(const canvas::WorkCanvas& canvas, QWidget* parent = nullptr);

  /// Sets the zoom, clamped to kMinZoom..kMaxZoom, and resizes the widget to match.
  void SetZoom(int zoom);
  int Zoom() const { return zoom_; }
  /// The pixel grid: off hides it at every zoom.
  void SetGridVisible(bool visible);
  bool GridVisible() const { return gridVisible_; }
  /// Follows a change of the canvas size or content.
  void Refresh();

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void DrawGrid(QPainter& painter, int x0, int y0, int x1, int y1);

  const canvas::WorkCanvas& canvas_;
  int zoom_ = kGridZoom;
  bool gridVisible_ = true;
};

}  // namespace vt::gui
