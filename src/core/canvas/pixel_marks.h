// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace vt::canvas {

/// One byte of marks per pixel, (W+1) x (H+1), for the contiguous selection, the flood fill's
/// visited cells and the selection outline. Cells outside read as 0 and ignore writes.
class PixelMarks {
 public:
  void Resize(int width, int height) {
    stride_ = width + 1;
    rows_ = height + 1;
    cells_.assign(static_cast<size_t>(stride_) * rows_, 0);
  }
  void Clear() { std::fill(cells_.begin(), cells_.end(), 0); }
  std::uint8_t At(int x, int y) const { return Inside(x, y) ? cells_[Index(x, y)] : 0; }
  void Set(int x, int y, std::uint8_t mark) {
    if (Inside(x, y)) cells_[Index(x, y)] = mark;
  }

 private:
  bool Inside(int x, int y) const { return x >= 0 && y >= 0 && x < stride_ && y < rows_; }
  size_t Index(int x, int y) const { return static_cast<size_t>(y) * stride_ + x; }
  std::vector<std::uint8_t> cells_;
  int stride_ = 0;
  int rows_ = 0;
};

}  // namespace vt::canvas
