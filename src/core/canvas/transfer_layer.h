// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "canvas/raster.h"

namespace vt::canvas {

/// The Transfer Layer (CalqueBitmap): a canvas-sized store created on demand, white, shown over
/// or under the work canvas but never part of it.
class TransferLayer {
 public:
  bool Exists() const { return !image_.isNull(); }
  /// Creates the layer, `size` and white, unless it exists.
  void Ensure(QSize size) {
    if (!Exists()) image_ = MakeRaster(size, kWhite);
  }
  /// Forgets the layer and its flags.
  void Drop() { *this = TransferLayer(); }
  QImage& Image() { return image_; }
  const QImage& Image() const { return image_; }

  bool Visible = false;
  bool Transparent = false;  ///< "Transfer Layer Transparent": laid over by AND
  bool Lowest = false;       ///< "Transfer layer as Lowest layer": the canvas is ANDed over it

 private:
  QImage image_;
};

}  // namespace vt::canvas
