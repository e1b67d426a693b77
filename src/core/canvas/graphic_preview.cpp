// SPDX-License-Identifier: MIT
#include "canvas/graphic_preview.h"

#include <QFileInfo>
#include <algorithm>

#include "canvas/graphic_loading.h"

namespace vt::canvas {

Result<bool> GraphicPreview::Open(const QString& path, QSize canvas) {
  Result<DecodedGraphic> decoded = DecodeGraphic(path, canvas);
  if (!decoded) return decoded.error();
  path_ = path;
  picture_ = decoded.value().frames.first();
  area_ = QRect();
  return true;
}

void GraphicPreview::SelectArea(QPoint a, QPoint b) {
  if (!HasPicture()) return;
  const QRect between(QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
                      QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y())));
  area_ = between.intersected(picture_.rect());
}

void GraphicPreview::MoveArea(QPoint delta) {
  if (area_.isEmpty()) return;
  const QRect bounds = picture_.rect();
  const int x = std::clamp(area_.x() + delta.x(), 0, bounds.width() - area_.width());
  const int y = std::clamp(area_.y() + delta.y(), 0, bounds.height() - area_.height());
  area_.moveTo(x, y);
}

void GraphicPreview::ResizeToFit(QSize canvas) {
  if (!HasPicture()) return;
  picture_ = PropotionalResize(Selected(), canvas);
  area_ = QRect();
}

QImage GraphicPreview::Selected() const {
  return area_.isEmpty() ? picture_ : picture_.copy(area_);
}

}  // namespace vt::canvas
