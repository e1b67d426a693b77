// SPDX-License-Identifier: MIT
#pragma once

// The gray and colour members of the packer families: every pixel mode but monochrome. A pixel
// becomes an index of the mode's search table (or, in 16M, stays its colour), the indexes of
// one byte or the bytes of one pixel are put together, and each value goes down the common end
// of the packers.

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "canvas/palettes.h"
#include "convert/packers.h"

namespace vt::convert {

/// The colour search of one export: the mode's search table through its index, and the colour
/// that was not found (ColorNotFound), which ends the conversion. The last answer is
/// remembered, so runs of one colour cost one comparison.
class ColorSearch {
 public:
  /// Searches `table`, indexed here (searched entry by entry with `referencePaths`).
  explicit ColorSearch(const canvas::Palette& table, bool referencePaths = false)
      : index_(std::make_shared<const canvas::ColorIndexer>(table, referencePaths)) {}
  /// Searches a palette through its `index`, followed by a black slot at position
  /// `blackSlot` when that is not negative (the search tables of 32 gray and 262k).
  ColorSearch(std::shared_ptr<const canvas::ColorIndexer> index, int blackSlot)
      : index_(std::move(index)), blackSlot_(blackSlot) {}
  ColorSearch(const ColorSearch&) = delete;
  ColorSearch& operator=(const ColorSearch&) = delete;

  /// The first index of `color` in the table.
  std::optional<int> IndexOf(std::int64_t color) const {
    if (color != lastColor_) {
      lastColor_ = color;
      lastIndex_ = color < 0 || color > 0xFFFFFFFF ? -1 : Find(canvas::Color(color));
    }
    return lastIndex_ < 0 ? std::nullopt : std::optional<int>(lastIndex_);
  }
  /// The first index of `c`, or -1.
  int Find(canvas::Color c) const {
    const int i = index_->Find(c);
    return i < 0 && c == 0 && blackSlot_ >= 0 ? blackSlot_ : i;
  }

  /// The index searched, and the black slot (-1: none).
  const canvas::ColorIndexer& Indexer() const { return *index_; }
  int BlackSlot() const { return blackSlot_; }

  /// The colour whose search failed; empty while none did.
  std::optional<std::int64_t> notFound;

 private:
  std::shared_ptr<const canvas::ColorIndexer> index_;
  int blackSlot_ = -1;
  mutable std::int64_t lastColor_ = -2;
  mutable int lastIndex_ = -1;
};

/// The search of `mode` over `palettes` (its cached index, and the black slot of 32 gray and
/// 262k), as SearchTable(mode, palettes.Colors()) would be searched; with `referencePaths`
/// the index is the linear search.
std::unique_ptr<ColorSearch> ModeColorSearch(const canvas::PaletteState& palettes,
                                             settings::PixelMode mode, bool referencePaths = false);

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
