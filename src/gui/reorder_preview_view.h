// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "convert/reorder_preview.h"

namespace vt::gui {

/// The 16 by 16 corner of the display, each pixel showing its number in the order the data
/// walks it, with the panel texts of the output width, packing, size and pixels per byte
/// underneath. Shows what `RenumberingNormalGrid` computed; holds no settings itself.
class ReorderPreviewView final : public QWidget {
  Q_OBJECT
 public:
  explicit ReorderPreviewView(QWidget* parent = nullptr);

  void Show(const convert::ReorderPreview& preview);
  const convert::ReorderPreview& Preview() const { return preview_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  static constexpr int kCell = 18;
  convert::ReorderPreview preview_;
};

}  // namespace vt::gui
