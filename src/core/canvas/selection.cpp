// SPDX-License-Identifier: MIT
#include "canvas/selection.h"

#include <algorithm>

namespace vt::canvas {

QString SelectionRect::StatusText() const {
  return QStringLiteral("%1,%2,%3,%4").arg(X1).arg(Y1).arg(X2 - 1).arg(Y2 - 1);
}

SelectionRect SelectionRect::Normalized(int xa, int ya, int xb, int yb, int width, int height) {
  const auto clip = [](int v, int hi) { return std::clamp(v, 0, std::max(0, hi)); };
  return {clip(std::min(xa, xb), width), clip(std::min(ya, yb), height),
          clip(std::max(xa, xb), width), clip(std::max(ya, yb), height)};
}

void FloatingSelection::SetArea(int xa, int ya, int xb, int yb, QSize canvas) {
  rect_ = SelectionRect::Normalized(xa, ya, xb, yb, canvas.width(), canvas.height());
  state_ = SelectionState::Dragging;
}

void FloatingSelection::TakeFrom(const QImage& snapshot) {
  layer_ = snapshot.copy(rect_.ToQRect());
  master_ = layer_;
  conversionPending_ = false;
  colorImport_ = false;
  MasterGrayed = false;
  ThresholdOn = false;
  state_ = SelectionState::Floating;
}

void FloatingSelection::Float(const QImage& picture, QPoint at, bool needsConversion) {
  layer_ = picture.convertToFormat(QImage::Format_RGB32);
  master_ = layer_;
  rect_ = {at.x(), at.y(), at.x() + layer_.width(), at.y() + layer_.height()};
  conversionPending_ = needsConversion;
  colorImport_ = needsConversion;
  MasterGrayed = false;
  ThresholdOn = false;
  state_ = SelectionState::Floating;
}

void FloatingSelection::MoveTo(int x1, int y1) {
  rect_ = {x1, y1, x1 + rect_.Width(), y1 + rect_.Height()};
}

void FloatingSelection::ReplaceLayer(const QImage& picture) {
  layer_ = picture.convertToFormat(QImage::Format_RGB32);
  rect_.X2 = rect_.X1 + layer_.width();
  rect_.Y2 = rect_.Y1 + layer_.height();
}

void FloatingSelection::Drop() {
  state_ = SelectionState::None;
  rect_ = {};
  layer_ = QImage();
  master_ = QImage();
  conversionPending_ = false;
  colorImport_ = false;
  MasterGrayed = false;
  ThresholdOn = false;
}

}  // namespace vt::canvas
