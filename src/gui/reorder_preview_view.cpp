// SPDX-License-Identifier: MIT
#include "gui/reorder_preview_view.h"

#include <QPainter>

namespace vt::gui {

namespace {
constexpr int kTextLines = 2;
}

ReorderPreviewView::ReorderPreviewView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("ReorderPreview"));
  setToolTip(QStringLiteral("Order of the pixels in the data, at the origin corner"));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ReorderPreviewView::Show(const convert::ReorderPreview& preview) {
  preview_ = preview;
  update();
}

QSize ReorderPreviewView::sizeHint() const {
  const int grid = convert::ReorderPreview::kSize * kCell + 1;
  return {grid, grid + kTextLines * (fontMetrics().height() + 2) + 4};
}

void ReorderPreviewView::paintEvent(QPaintEvent*) {
  QPainter p(this);
  const int n = convert::ReorderPreview::kSize;
  const int grid = n * kCell;
  p.fillRect(QRect(0, 0, grid, grid), palette().base());
  // The font shrinks until the widest number of the grid fits its cell.
  int widest = 0;
  for (const auto& row : preview_.cells) {
    for (const int number : row) widest = std::max(widest, number);
  }
  const QString sample = QString::number(widest);
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.62);
  while (small.pointSizeF() > 4.0 && QFontMetrics(small).horizontalAdvance(sample) > kCell - 2) {
    small.setPointSizeF(small.pointSizeF() - 0.25);
  }
  p.setFont(small);
  for (int row = 0; row < n; ++row) {
    for (int column = 0; column < n; ++column) {
      const QRect cell(column * kCell, row * kCell, kCell, kCell);
      const int number = preview_.gridVisible ? preview_.cells[row][column] : 0;
      if (number > 0) {
        // Pixels of the first byte stand out; later bytes alternate in two shades.
        const int byte = (number - 1) / std::max(1, preview_.pixelsPerByte);
        p.fillRect(cell, byte == 0 ? QColor(255, 214, 150)
                                   : (byte % 2 ? QColor(214, 232, 255) : QColor(236, 244, 255)));
        p.setPen(palette().color(QPalette::Text));
        p.drawText(cell, Qt::AlignCenter, QString::number(number));
      }
      p.setPen(palette().color(QPalette::Mid));
      p.drawRect(cell);
    }
  }
  p.setFont(font());
  p.setPen(palette().color(QPalette::WindowText));
  const int line = fontMetrics().height() + 2;
  p.drawText(QRect(0, grid + 4, width(), line), Qt::AlignLeft,
             preview_.outputWidth + QStringLiteral(" , ") + preview_.packing);
  p.drawText(QRect(0, grid + 4 + line, width(), line), Qt::AlignLeft,
             preview_.dataSize + QStringLiteral(" ,") + preview_.bytesPerPixels);
}

}  // namespace vt::gui
