// SPDX-License-Identifier: MIT
#pragma once

// What the rearrangement settings panel shows (RenumberingNormalGrid): the output width, packing,
// data size and bytes-per-pixel texts, and a 16 by 16 grid that numbers the pixels of the corner
// of the display in the order the data walks them.

#include <QString>
#include <array>
#include <optional>

#include "settings/settings.h"

namespace vt::convert {

/// The panel's content. Cells are numbered from 1 in walk order; 0 is an empty cell.
struct ReorderPreview {
  static constexpr int kSize = 16;
  QString outputWidth;      ///< "8 bit", "16 bit", "32 bit" or "Binary File"
  QString packing;          ///< "Unpacked Data" or "Packed Data"
  bool gridVisible = true;  ///< false for two horizontal 16-gray pixels in a vertical walk
  int pixelsPerByte = 8;    ///< n, the pixels of one byte
  QString dataSize;         ///< "Data Size (bytes) :" and the count, or "compressed"
  QString bytesPerPixels;   ///< " 1 Byte = 8 pixels" and the like
  int windowLeft = 0;       ///< display column of the grid's first column
  int windowTop = 0;        ///< display row of the grid's first row
  std::array<std::array<int, kSize>, kSize> cells{};  ///< [row][column]

  /// The number shown at display position (x, y), or 0 when the cell is empty or outside.
  int NumberAt(int x, int y) const;
};

/// The byte count the panel shows for the whole display: GWI*GHI div 8 in monochrome ((GWI div
/// 6 + 1)*GHI in 6-bit mode), GWI*ceiling(GHI/8)*4 for ST7528 slices, else trunc(GWI*GHI/p)
/// with the multipliers of the multi-byte modes.
long long PreviewByteCount(const settings::Settings& settings);

/// RenumberingNormalGrid after a change of mode, direction, corner, width or size. Empty when
/// no pixel mode is set (the panel then stays as it was). The grid is numbered by walking the
/// display of GWI x GHI through the packers and counting each pixel the first time it is read;
/// the window is the 16 by 16 corner of the origin corner.
std::optional<ReorderPreview> RenumberingNormalGrid(const settings::Settings& settings);

}  // namespace vt::convert
