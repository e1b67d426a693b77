// SPDX-License-Identifier: MIT
#include "gui/canvas_view.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "canvas/work_canvas.h"

namespace vt::gui {

CanvasView::CanvasView(canvas::WorkCanvas& canvas, QWidget* parent)
    : QWidget(parent), canvas_(canvas) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  Refresh();
}

void CanvasView::SetZoom(int zoom) {
  zoom_ = std::clamp(zoom, kMinZoom, kMaxZoom);
  Refresh();
}

void CanvasView::SetGridVisible(bool visible) {
  gridVisible_ = visible;
  update();
}

void CanvasView::Refresh() {
  canvas_.CopyBitmapToCanvas();
  setFixedSize(sizeHint());
  update();
}

QSize CanvasView::sizeHint() const { return QSize(canvas_.Width(), canvas_.Height()) * zoom_; }

void CanvasView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
  const QImage& bitmap = canvas_.DisplayBitmap();
  // Only the pixels the exposed rectangle touches are drawn: large zooms stay cheap.
  const QRect exposed = event->rect();
  const int x0 = std::max(0, exposed.left() / zoom_);
  const int y0 = std::max(0, exposed.top() / zoom_);
  const int x1 = std::min(bitmap.width(), exposed.right() / zoom_ + 1);
  const int y1 = std::min(bitmap.height(), exposed.bottom() / zoom_ + 1);
  if (x0 >= x1 || y0 >= y1) return;
  const QRect source(x0, y0, x1 - x0, y1 - y0);
  painter.drawImage(QRect(source.topLeft() * zoom_, source.size() * zoom_), bitmap, source);

  DrawGrid(painter, x0, y0, x1, y1);
  const canvas::SelectionRect& selection = canvas_.Selection().Rect();
  if (!selection.IsEmpty()) {
    painter.setPen(QPen(Qt::red, 1, Qt::DashLine));
    const QRect r = selection.ToQRect();
    painter.drawRect(QRect(r.topLeft() * zoom_, r.size() * zoom_).adjusted(0, 0, -1, -1));
  }
}

void CanvasView::mousePressEvent(QMouseEvent* event) {
  dragging_ = event->button() == Qt::LeftButton && canvas_.Selection().IsFloating();
  if (!dragging_) return QWidget::mousePressEvent(event);
  dragStart_ = event->position().toPoint();
  layerAtStart_ = {canvas_.Selection().Rect().X1, canvas_.Selection().Rect().Y1};
  setCursor(Qt::ClosedHandCursor);
}

void CanvasView::mouseMoveEvent(QMouseEvent* event) {
  if (!dragging_ || !canvas_.Selection().IsFloating()) return QWidget::mouseMoveEvent(event);
  // Whole pixels of the canvas: the layer moves in steps of the zoom.
  const QPoint delta = (event->position().toPoint() - dragStart_) / zoom_;
  const QPoint to = layerAtStart_ + delta;
  const canvas::SelectionRect& r = canvas_.Selection().Rect();
  if (to == QPoint(r.X1, r.Y1)) return;
  canvas_.Selection().MoveTo(to.x(), to.y());
  canvas_.CopyBitmapToCanvas();
  update();
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event) {
  if (!dragging_) return QWidget::mouseReleaseEvent(event);
  dragging_ = false;
  unsetCursor();
  const canvas::SelectionRect& r = canvas_.Selection().Rect();
  if (canvas_.Selection().IsFloating() && QPoint(r.X1, r.Y1) != layerAtStart_) Q_EMIT layerMoved();
}

void CanvasView::DrawGrid(QPainter& painter, int x0, int y0, int x1, int y1) {
  if (zoom_ < kGridZoom || !gridVisible_) return;
  // One line at the left and top edge of each pixel but the first: the outer edge stays clean.
  painter.setPen(QPen(kGridColor, 1));
  for (int x = std::max(1, x0); x < x1; ++x) {
    painter.drawLine(x * zoom_, y0 * zoom_, x * zoom_, y1 * zoom_ - 1);
  }
  for (int y = std::max(1, y0); y < y1; ++y) {
    painter.drawLine(x0 * zoom_, y * zoom_, x1 * zoom_ - 1, y * zoom_);
  }
}

}  // namespace vt::gui
