// SPDX-License-Identifier: MIT
#pragma once

// The gray and colour members of the packer families: every pixel mode but monochrome. A pixel
// becomes an index of the mode's search table (or, in 16M, stays its colour), the indexes of
// one byte or the bytes of one pixel are put together, and each value goes down the common end
// of the packers.

#include <QString>
#include <cstdint>
#include <optional>

#include "canvas/palettes.h"
#include "convert/packers.h"

namespace vt::convert {

/// The colour search of one export: the mode's search table, its index, and the colour that
/// was not found (ColorNotFound), which ends the conversion.
class ColorSearch {
 public:
  explicit ColorSearch(canvas::Palette table) : table_(std::move(table)), index_(table_) {}
  ColorSearch(const ColorSearch&) = delete;
  ColorSearch& operator=(const ColorSearch&) = delete;

  /// The first index of `color` in the table.
  std::optional<int> IndexOf(std::int64_t color) const { return index_.IndexOf(color); }
  const canvas::Palette& Table() const { return table_; }

  /// The colour whose search failed; empty while none did.
  std::optional<std::int64_t> notFound;

 private:
  canvas::Palette table_;
  canvas::ColorIndexer index_;
};

/// The text of ColorNotFound for `color`: " Color not found in Palette! \r" and, for -1 (a
/// pixel outside the bitmap), " Check if Heigth or Width matches with pixels per byte format ",
/// else " ". Its title is "Error Message".
QString ColorNotFoundText(std::int64_t color);


/// The gray or colour packer of the context's mode in `family`, reading from the cursor and
/// delivering each value through DeliverValue. Table indexes come from stages.colors (without
/// it every search fails). A failed search records the colour in stages.colors, sets Aborted
/// and delivers nothing more; the exceptions: 262k keeps the raw colour as its index, the
/// ST7528 slices give the value 0, two-page gray in td gives index 0, and in 8 and 16 colours
/// and 16 gray a pixel outside the bitmap (-1) is searched as black.
void PackColor(PackContext& context, PackFamily family);

}  // namespace vt::convert
