// SPDX-License-Identifier: MIT
#pragma once

// The palettes of the pixel modes: which colours the Work Canvas may hold in each mode, the
// default palettes, the search tables of the packers and the nearest-colour rule.

#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "canvas/raster.h"
#include "settings/pixel_modes.h"

namespace vt::canvas {

using Palette = std::vector<Color>;

/// Marks "no colour" in colour searches.
inline constexpr Color kNoColor = 0x1000000;

/// What a mode's palette is and where its files are.
struct PaletteInfo {
  int entries = 0;                ///< 0: the mode has no palette (monochrome, 16M)
  bool large = false;             ///< LargePalette (sorted) rather than SmallPalette
  const char* defaultFile = "";   ///< file name in the program folder; empty: built in only
  const char* customSuffix = "";  ///< appended to the settings file's base; empty: none
  /// Depth named in the "not found" message: 16 or 18.
  int messageBits = 16;
};

/// The palette description of `mode`.
PaletteInfo PaletteInfoOf(settings::PixelMode mode);

/// The built-in palette of `mode` in file order (the large ones are sorted on load anyway):
///  - 4, 16 and 32 gray: levels from black to white, each level widened to 8 bits by repeating
///    its bits (0x00, 0x55, 0xAA, 0xFF; n * 0x11; v << 3 | v >> 2);
///  - 8 colours: index bits R G B (0 black, 1 blue, 2 green ... 7 white);
///  - 16 colours: index bits I R G B, the dark half at 0x80, light gray 0xC0 at 7, dark gray
///    0x80 at 8;
///  - 256 gray: the 256 grays; 256 colours: every R3G3B2 colour;
///  - 4096, 65536, 262144: every R4G4B4, R5G6B5, R6G6B6 colour;
/// every channel widened to 8 bits by repeating its top bits (a 5-bit v becomes v<<3 | v>>2).
/// Empty for monochrome and 16M.
Palette DefaultPalette(settings::PixelMode mode);

/// SortPalettes: ascending as plain 0x00BBGGRR integers.
void SortPalette(Palette& palette);

/// The table the packers search for `mode`, built from the mode's palette: the palette itself
/// for the small modes, with a 33rd black slot for 32 gray; the sorted palette for the large
/// ones, with a 262145th black slot for 262k.
Palette SearchTable(settings::PixelMode mode, const Palette& palette);

/// The search table of `mode` over its built-in palette (sorted when large).
Palette DefaultSearchTable(settings::PixelMode mode);

/// The bits of red, green and blue when `table` is every colour of those bits in ascending
/// order (the built-in palettes of 256 colours and more, sorted); none for any other table.
std::optional<std::array<int, 3>> GridBitsOf(std::span<const Color> table);

/// Index of a colour in a search table, equal to the first match of a linear search from
/// entry 0: a hash of (colour, first index) pairs, open addressing over a power-of-two table
/// at most three quarters full. A table that is every colour of some bits per channel in
/// ascending order (the built-in large palettes, sorted) needs no hash: the index is made of
/// the channels' own indexes; a table of grays is indexed by level. The reference form is the
/// linear search itself. It keeps no reference to the table it was built from.
class ColorIndexer {
 public:
  /// The index of `table`; with `linearSearch` (the reference path) the table is searched
  /// entry by entry, and Grays and Grid give nothing.
  explicit ColorIndexer(std::span<const Color> table, bool linearSearch = false);
  std::optional<int> IndexOf(std::int64_t color) const {
    if (color < 0 || color > 0xFFFFFFFF) return std::nullopt;
    const int i = Find(static_cast<Color>(color));
    return i < 0 ? std::nullopt : std::optional<int>(i);
  }
  /// The first index of `c`, or -1 when the table does not hold it.
  int Find(Color c) const {
    if (!grays_.empty()) {
      const Color level = c & 0xFF;
      return c == (level | (level << 8) | (level << 16)) ? grays_[level] : -1;
    }
    if (grid_) {
      const int r = channels_[0][c & 0xFF], g = channels_[1][(c >> 8) & 0xFF],
                b = channels_[2][(c >> 16) & 0xFF];
      if ((r | g | b) < 0 || c > 0xFFFFFF) return -1;
      return (b << shiftBlue_) | (g << shiftGreen_) | r;
    }
    if (slots_.empty()) return Scan(c);  // the reference form
    std::size_t i = Slot(c);
    for (;;) {
      const std::uint64_t s = slots_[i];
      if (s == kEmpty) return -1;
      if (Color(s >> 32) == c) return static_cast<int>(s & 0xFFFFFFFFu);
      i = (i + 1) & mask_;
    }
  }
  int size() const { return size_; }

  /// The channel tables of a grid table: a channel value's level, or -1 when the grid lacks
  /// it; the index is blue << shiftBlue | green << shiftGreen | red.
  struct GridTables {
    const std::int16_t* red;
    const std::int16_t* green;
    const std::int16_t* blue;
    int shiftGreen;
    int shiftBlue;
  };
  /// For a table of grays only: each gray level's first index, or -1; null otherwise.
  const int* Grays() const { return grays_.empty() ? nullptr : grays_.data(); }
  /// The grid tables, when the table is a grid.
  std::optional<GridTables> Grid() const {
    if (!grid_) return std::nullopt;
    return GridTables{channels_[0], channels_[1], channels_[2], shiftGreen_, shiftBlue_};
  }

 private:
  static constexpr std::uint64_t kEmpty = ~std::uint64_t{0};
  /// Whether the table is a grid (see GridBitsOf); sets up the channel indexes when it is.
  bool TakeGrid(std::span<const Color> table);
  std::size_t Slot(Color c) const {
    return static_cast<std::size_t>((std::uint64_t(c) * 0x9E3779B97F4A7C15ull) >> shift_);
  }
  /// The first index of `c` in the table kept by the linear form, or -1.
  int Scan(Color c) const;
  std::vector<Color> table_;  // the linear form: the table itself, else empty
  std::vector<int> grays_;    // a table of grays: by level (256 entries), else empty
  std::vector<std::uint64_t> slots_;
  std::size_t mask_ = 0;
  int shift_ = 63;
  int size_ = 0;
  bool grid_ = false;
  std::int16_t channels_[3][256] = {};  // a channel value's index, or -1 (grid tables)
  int shiftGreen_ = 0, shiftBlue_ = 0;
};

/// The index of a palette kept between exports: built again only when the palette differs
/// from the one it was built for (compared entry by entry, far cheaper than a build), or the
/// other form is asked for.
class PaletteIndexCache {
 public:
  /// The index of `palette`, in its linear reference form with `referencePaths`.
  std::shared_ptr<const ColorIndexer> For(const Palette& palette, bool referencePaths = false);

 private:
  Palette indexed_;
  bool linear_ = false;
  std::shared_ptr<const ColorIndexer> index_;
};

/// The nearest-colour rule of the large palettes, on a sorted palette P of n entries.
/// NearestColor searches one quarter window, chosen by comparing the colour as an integer with
/// P[(n/4)*3], P[n/2] and P[n/4]; NearestColorKill only with P[n/2] and P[n/4], so that the top
/// quarter is never tried. In a window the least squared RGB distance wins, the lowest index of
/// equal distances first. A near colour outside the window is not found: that is the rule.
/// The windows are indexed by a grid of colour cells, so each search looks at a few cells only,
/// with answers identical to a scan of the window; on a palette of every colour of some bits
/// per channel, the nearest level of each channel answers at once. The reference form scans
/// the window.
class NearestColorSearch {
 public:
  /// Searches a copy of `sortedPalette`; with `windowScan` (the reference path) each window is
  /// scanned entry by entry.
  explicit NearestColorSearch(Palette sortedPalette, bool windowScan = false);
  /// The palette searched.
  const Palette& Colors() const { return p_; }
  ~NearestColorSearch();
  NearestColorSearch(const NearestColorSearch&) = delete;
  NearestColorSearch& operator=(const NearestColorSearch&) = delete;

  /// 0 gives 0, kNoColor gives kNoColor; otherwise the palette colour of the window search
  /// (0 for an empty window).
  Color NearestColor(Color c);
  /// The plain form of the map conversion; an empty window gives 0.
  Color NearestColorKill(Color c);
  /// Index of the last answer of NearestColor (for the status bar); 0 before any.
  int LastIndex() const { return lastIndex_; }
  /// Forgets the last answer, as a new search starts.
  void ClearLastIndex() { lastIndex_ = 0; }

  /// The index of the nearest entry in [lo, hi] (inclusive), or -1 when the window is empty.
  int SearchWindow(Color c, int lo, int hi);

 private:
  struct Grid;
  Grid& GridFor(int lo, int hi);

  const Palette p_;
  const bool windowScan_;
  std::vector<std::unique_ptr<Grid>> grids_;
  int lastIndex_ = 0;
  bool grid_ = false;  // the palette is a grid: the nearest level of each channel
  std::int16_t nearestLevel_[3][256] = {};
  int shiftGreen_ = 0, shiftBlue_ = 0;
};

/// The nearest-colour search of a palette kept between conversions, with the cell grids it
/// built: made again only when the palette differs from the one it searches.
class NearestSearchCache {
 public:
  /// The search of `sortedPalette`, scanning its windows with `referencePaths`.
  NearestColorSearch& For(const Palette& sortedPalette, bool referencePaths = false);

 private:
  std::shared_ptr<NearestColorSearch> search_;
  bool windowScan_ = false;
};

/// The nearest entry of a small palette, the whole palette searched, the first of equal
/// distances winning (the small modes' own search).
Color NearestSmallColor(Color c, std::span<const Color> palette);

/// Squared RGB distance of two colour values.
inline int ColorDistance(Color a, Color b) {
  const int dr = int(a & 0xFF) - int(b & 0xFF);
  const int dg = int((a >> 8) & 0xFF) - int((b >> 8) & 0xFF);
  const int db = int((a >> 16) & 0xFF) - int((b >> 16) & 0xFF);
  return dr * dr + dg * dg + db * db;
}

/// The palettes of the current mode, as the application holds them.
struct PaletteState {
  Palette SmallPalette;  ///< small modes: the palette; large modes: a copy of LargePalette
  Palette LargePalette;  ///< sorted
  bool SmallPaletteMode = false;
  /// The mode and settings file the palettes were loaded for; empty: not loaded.
  std::optional<settings::PixelMode> loadedMode;
  QString loadedSettingsFile;
  bool custom = false;  ///< "Current Palette is Custom"
  QString caption;      ///< "Current Palette is Default" or "... Custom"
  int lastIndex = 0;    ///< index of the last nearest colour, for the status bar
  /// The index of Colors() for colour searches; a cache, rebuilt when the palette changes.
  mutable PaletteIndexCache index;
  /// The nearest-colour search of LargePalette; a cache, made again when the palette changes.
  mutable NearestSearchCache nearest;

  /// The palette colours of the mode (SmallPalette in small modes, LargePalette otherwise).
  const Palette& Colors() const { return SmallPaletteMode ? SmallPalette : LargePalette; }
};

}  // namespace vt::canvas
