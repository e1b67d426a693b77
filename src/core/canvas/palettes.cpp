// SPDX-License-Identifier: MIT
#include "canvas/palettes.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vt::canvas {
namespace {

using settings::PixelMode;

/// A channel of `bits` bits widened to 8 by repeating its top bits.
int Widen(int v, int bits) {
  int out = 0;
  for (int filled = 0; filled < 8; filled += bits) {
    const int shift = 8 - bits - filled;
    out |= shift >= 0 ? v << shift : v >> -shift;
  }
  return out & 0xFF;
}

Color Rgb(int r, int g, int b) { return Color(r) | (Color(g) << 8) | (Color(b) << 16); }

/// The widened values of the levels of a channel of `bits` bits.
std::vector<Color> Levels(int bits) {
  std::vector<Color> levels(std::size_t(1) << bits);
  for (int v = 0; v < int(levels.size()); ++v) levels[std::size_t(v)] = Color(Widen(v, bits));
  return levels;
}

/// Every colour of rR gG bB bits, red varying fastest.
Palette EveryColor(int rBits, int gBits, int bBits) {
  const std::vector<Color> red = Levels(rBits), green = Levels(gBits), blue = Levels(bBits);
  Palette p;
  p.reserve(std::size_t(1) << (rBits + gBits + bBits));
  for (const Color b : blue) {
    for (const Color g : green) {
      for (const Color r : red) p.push_back(r | (g << 8) | (b << 16));
    }
  }
  return p;
}

Palette Grays(int bits) {
  Palette p;
  for (int v = 0; v < (1 << bits); ++v) {
    const int w = Widen(v, bits);
    p.push_back(Rgb(w, w, w));
  }
  return p;
}

}  // namespace

std::optional<std::array<int, 3>> GridBitsOf(std::span<const Color> table) {
  // The built-in large palettes, sorted: 256, 4096, 65536 and 262144 colours.
  for (const std::array<int, 3> bits : {std::to_array({3, 3, 2}), std::to_array({4, 4, 4}),
                                        std::to_array({5, 6, 5}), std::to_array({6, 6, 6})}) {
    if (table.size() != (std::size_t(1) << (bits[0] + bits[1] + bits[2]))) continue;
    const std::vector<Color> red = Levels(bits[0]), green = Levels(bits[1]), blue = Levels(bits[2]);
    std::size_t i = 0;
    for (const Color b : blue) {
      for (const Color g : green) {
        const Color high = (g << 8) | (b << 16);
        for (const Color r : red) {
          if (table[i++] != (high | r)) return std::nullopt;
        }
      }
    }
    return bits;
  }
  return std::nullopt;
}

PaletteInfo PaletteInfoOf(PixelMode mode) {
  switch (mode) {
    case PixelMode::Gray4:
    case PixelMode::Gray4TwoPages:
      return {4, false, "", "", 16};
    case PixelMode::Gray32Packed:
    case PixelMode::Gray32RUnpacked:
    case PixelMode::Gray32LUnpacked:
      return {32, false, "", "", 16};
    case PixelMode::Gray16Vertical:
    case PixelMode::Gray16Horizontal:
    case PixelMode::Gray16Slices:
      return {16, false, "", "", 16};
    case PixelMode::Colors8:
      return {8, false, "default_8_Colors_palette.pal", "", 16};
    case PixelMode::Colors16:
      return {16, false, "default_16_Colors_palette.pal", "", 16};
    case PixelMode::Gray256:
      return {256, true, "default_grayscale_256_Colors_palette.pal", "_256.pal", 16};
    case PixelMode::Colors256:
    case PixelMode::Colors256OwnPalette:
      return {256, true, "default_256_Colors_palette.pal", "_256.pal", 16};
    case PixelMode::Colors4096Packed:
    case PixelMode::Colors4096:
      return {4096, true, "default_4096_Colors_palette.pal", "_4096.pal", 16};
    case PixelMode::Colors65536:
      return {0x10000, true, "default_65536_Colors_palette.pal", "_65536.pal", 16};
    case PixelMode::Colors262kPacked:
    case PixelMode::Colors262k:
      return {0x40000, true, "default_262144_Colors_palette.pal", "_262144.pal", 18};
    default:
      return {};
  }
}

Palette DefaultPalette(PixelMode mode) {
  switch (mode) {
    case PixelMode::Gray4:
    case PixelMode::Gray4TwoPages:
      return Grays(2);
    case PixelMode::Gray32Packed:
    case PixelMode::Gray32RUnpacked:
    case PixelMode::Gray32LUnpacked:
      return Grays(5);
    case PixelMode::Gray16Vertical:
    case PixelMode::Gray16Horizontal:
    case PixelMode::Gray16Slices:
      return Grays(4);
    case PixelMode::Gray256:
      return Grays(8);
    case PixelMode::Colors8: {
      Palette p;
      for (int i = 0; i < 8; ++i)
        p.push_back(Rgb(i & 4 ? 255 : 0, i & 2 ? 255 : 0, i & 1 ? 255 : 0));
      return p;
    }
    case PixelMode::Colors16: {
      Palette p;
      for (int i = 0; i < 16; ++i) {
        const int on = i & 8 ? 255 : 128;
        p.push_back(Rgb(i & 4 ? on : 0, i & 2 ? on : 0, i & 1 ? on : 0));
      }
      p[7] = Rgb(192, 192, 192);
      p[8] = Rgb(128, 128, 128);
      return p;
    }
    case PixelMode::Colors256:
    case PixelMode::Colors256OwnPalette:
      return EveryColor(3, 3, 2);
    case PixelMode::Colors4096Packed:
    case PixelMode::Colors4096:
      return EveryColor(4, 4, 4);
    case PixelMode::Colors65536:
      return EveryColor(5, 6, 5);
    case PixelMode::Colors262kPacked:
    case PixelMode::Colors262k:
      return EveryColor(6, 6, 6);
    default:
      return {};
  }
}

void SortPalette(Palette& palette) {
  if (!std::is_sorted(palette.begin(), palette.end())) std::sort(palette.begin(), palette.end());
}

Palette SearchTable(PixelMode mode, const Palette& palette) {
  Palette table = palette;
  const PaletteInfo info = PaletteInfoOf(mode);
  if (info.entries == 32 || info.entries == 0x40000) table.push_back(0);  // the black slot
  return table;
}

Palette DefaultSearchTable(PixelMode mode) {
  Palette palette = DefaultPalette(mode);
  if (PaletteInfoOf(mode).large) SortPalette(palette);
  return SearchTable(mode, palette);
}

// ---- Index of a search table ----------------------------------------------------------------

bool ColorIndexer::TakeGrid(std::span<const Color> table) {
  const std::optional<std::array<int, 3>> bits = GridBitsOf(table);
  if (!bits) return false;
  for (int channel = 0; channel < 3; ++channel) {
    std::fill(std::begin(channels_[channel]), std::end(channels_[channel]), std::int16_t(-1));
    for (int v = 0; v < (1 << (*bits)[channel]); ++v) {
      channels_[channel][Widen(v, (*bits)[channel])] = std::int16_t(v);
    }
  }
  shiftGreen_ = (*bits)[0];
  shiftBlue_ = (*bits)[0] + (*bits)[1];
  grid_ = true;
  return true;
}

ColorIndexer::ColorIndexer(std::span<const Color> table, bool linearSearch)
    : size_(int(table.size())) {
  if (linearSearch) {
    table_.assign(table.begin(), table.end());
    return;
  }
  if (TakeGrid(table)) return;
  // A table of grays (the gray modes) is indexed by level.
  const bool grays = !table.empty() && std::all_of(table.begin(), table.end(), [](Color c) {
    return (c & 0xFF) == ((c >> 8) & 0xFF) && (c & 0xFF) == ((c >> 16) & 0xFF) && c <= 0xFFFFFF;
  });
  if (grays) {
    grays_.assign(256, -1);
    for (std::size_t index = table.size(); index-- > 0;) grays_[table[index] & 0xFF] = int(index);
    return;
  }
  std::size_t capacity = 16;
  int bits = 4;
  while (capacity < table.size() + table.size() / 3 + 1) capacity *= 2, ++bits;
  slots_.assign(capacity, kEmpty);
  mask_ = capacity - 1;
  shift_ = 64 - bits;
  for (std::size_t index = 0; index < table.size(); ++index) {
    const Color c = table[index];
    std::size_t i = Slot(c);
    while (slots_[i] != kEmpty && Color(slots_[i] >> 32) != c) i = (i + 1) & mask_;
    // The first entry of a colour keeps its slot: the answer of a linear search.
    if (slots_[i] == kEmpty) slots_[i] = (std::uint64_t(c) << 32) | std::uint64_t(index);
  }
}

int ColorIndexer::Scan(Color c) const {
  const auto at = std::find(table_.begin(), table_.end(), c);
  return at == table_.end() ? -1 : int(at - table_.begin());
}

NearestColorSearch& NearestSearchCache::For(const Palette& sortedPalette, bool referencePaths) {
  if (!search_ || windowScan_ != referencePaths || search_->Colors() != sortedPalette) {
    search_ = std::make_shared<NearestColorSearch>(sortedPalette, referencePaths);
    windowScan_ = referencePaths;
  }
  return *search_;
}

std::shared_ptr<const ColorIndexer> PaletteIndexCache::For(const Palette& palette,
                                                           bool referencePaths) {
  if (!index_ || linear_ != referencePaths || indexed_ != palette) {
    index_ = std::make_shared<const ColorIndexer>(palette, referencePaths);
    indexed_ = palette;
    linear_ = referencePaths;
  }
  return index_;
}

// ---- Nearest colour ---------------------------------------------------------------------------

/// The entries of one window sorted into 16 x 16 x 16 cells of colour space (4 bits a channel),
/// each cell's indexes ascending.
struct NearestColorSearch::Grid {
  int lo = 0, hi = -1;
  std::vector<int> start;  // 4097 offsets into `indexes`
  std::vector<int> indexes;
};

namespace {
int CellOf(Color c) {
  return int((c >> 4) & 0xF) | (int((c >> 12) & 0xF) << 4) | (int((c >> 20) & 0xF) << 8);
}
/// Squared distance from `v` to the nearest value of cell `cell` on one axis.
int Gap(int v, int cell) {
  const int low = cell * 16, high = low + 15;
  const int g = v < low ? low - v : v > high ? v - high : 0;
  return g * g;
}
}  // namespace

NearestColorSearch::NearestColorSearch(Palette sortedPalette, bool windowScan)
    : p_(std::move(sortedPalette)), windowScan_(windowScan) {
  if (windowScan_) return;
  const std::optional<std::array<int, 3>> bits = GridBitsOf(p_);
  if (!bits) return;
  // Distances add up channel by channel: on a grid the nearest colour is the nearest level of
  // each channel, the lowest level where two are as near (which gives the lowest index).
  for (int channel = 0; channel < 3; ++channel) {
    const std::vector<Color> levels = Levels((*bits)[channel]);
    // The nearest level only rises with the value: move on while the next is nearer.
    std::size_t best = 0;
    for (int v = 0; v < 256; ++v) {
      while (best + 1 < levels.size() &&
             std::abs(int(levels[best + 1]) - v) < std::abs(int(levels[best]) - v)) {
        ++best;
      }
      nearestLevel_[channel][v] = std::int16_t(best);
    }
  }
  shiftGreen_ = (*bits)[0];
  shiftBlue_ = (*bits)[0] + (*bits)[1];
  grid_ = true;
}

NearestColorSearch::~NearestColorSearch() = default;

NearestColorSearch::Grid& NearestColorSearch::GridFor(int lo, int hi) {
  for (const auto& g : grids_) {
    if (g->lo == lo && g->hi == hi) return *g;
  }
  auto owned = std::make_unique<Grid>();
  Grid* grid = owned.get();
  grid->lo = lo;
  grid->hi = hi;
  grid->start.assign(4097, 0);
  for (int i = lo; i <= hi; ++i) ++grid->start[CellOf(p_[i]) + 1];
  for (int c = 0; c < 4096; ++c) grid->start[c + 1] += grid->start[c];
  grid->indexes.resize(std::max(0, hi - lo + 1));
  std::vector<int> fill(grid->start.begin(), grid->start.end() - 1);
  for (int i = lo; i <= hi; ++i) grid->indexes[fill[CellOf(p_[i])]++] = i;
  grids_.push_back(std::move(owned));
  return *grid;
}

int NearestColorSearch::SearchWindow(Color c, int lo, int hi) {
  lo = std::max(lo, 0);
  hi = std::min(hi, int(p_.size()) - 1);
  if (lo > hi) return -1;
  if (grid_) {
    // The window lies in the box of all colours whose blue level is between those of its
    // ends. Distances add up channel by channel, so the box's nearest colour is the nearest
    // level of each channel, blue kept inside the box; when the window holds it, it is the
    // window's nearest too.
    const int blue =
        std::clamp(int(nearestLevel_[2][(c >> 16) & 0xFF]), lo >> shiftBlue_, hi >> shiftBlue_);
    const int i = (blue << shiftBlue_) | (nearestLevel_[1][(c >> 8) & 0xFF] << shiftGreen_) |
                  nearestLevel_[0][c & 0xFF];
    if (i >= lo && i <= hi) return i;
  }
  // A short window is scanned (every window, in the reference form); a long one is looked up
  // through its grid.
  if (windowScan_ || hi - lo < 256) {
    int best = std::numeric_limits<int>::max(), bestIndex = -1;
    for (int i = lo; i <= hi; ++i) {
      const int d = ColorDistance(c, p_[i]);
      if (d < best) best = d, bestIndex = i;
    }
    return bestIndex;
  }
  const Grid& grid = GridFor(lo, hi);
  const int r = int(c & 0xFF), g = int((c >> 8) & 0xFF), b = int((c >> 16) & 0xFF);
  const int cr = r >> 4, cg = g >> 4, cb = b >> 4;
  int best = std::numeric_limits<int>::max();
  int bestIndex = -1;
  for (int s = 0; s < 16; ++s) {
    // Every cell of this shell lies at least 16s - 15 away on some axis.
    if (s > 0 && best < (16 * s - 15) * (16 * s - 15)) break;
    for (int kb = std::max(0, cb - s); kb <= std::min(15, cb + s); ++kb) {
      for (int kg = std::max(0, cg - s); kg <= std::min(15, cg + s); ++kg) {
        auto visit = [&](int kr) {
          if (Gap(r, kr) + Gap(g, kg) + Gap(b, kb) > best) return;
          const int cell = kr | (kg << 4) | (kb << 8);
          for (int k = grid.start[cell]; k < grid.start[cell + 1]; ++k) {
            const int i = grid.indexes[k];
            const int d = ColorDistance(c, p_[i]);
            if (d < best || (d == best && i < bestIndex)) {
              best = d;
              bestIndex = i;
            }
          }
        };
        // On a face of the shell every red cell belongs to it; inside, only the two at red
        // distance s.
        if (std::max(std::abs(kb - cb), std::abs(kg - cg)) == s) {
          for (int kr = std::max(0, cr - s); kr <= std::min(15, cr + s); ++kr) visit(kr);
        } else {
          if (cr - s >= 0) visit(cr - s);
          if (cr + s <= 15) visit(cr + s);
        }
      }
    }
  }
  return bestIndex;
}

Color NearestColorSearch::NearestColor(Color c) {
  if (c == 0 || c == kNoColor) return c;
  const int n = int(p_.size());
  if (n == 0) return c;
  int lo, hi;
  if (c > p_[(n / 4) * 3]) {
    lo = (n / 4) * 3, hi = n - 1;
  } else if (c > p_[n / 2]) {
    lo = n / 2, hi = ((n - 1) / 4) * 3;
  } else if (c > p_[n / 4]) {
    lo = n / 4, hi = (n - 1) / 2;
  } else {
    lo = 0, hi = (n - 1) / 4;
  }
  const int i = SearchWindow(c, lo, hi);
  if (i < 0) return 0;
  lastIndex_ = i;
  return p_[i];
}

Color NearestColorSearch::NearestColorKill(Color c) {
  const int n = int(p_.size());
  if (n == 0) return 0;
  int lo, hi;
  if (c > p_[n / 2]) {
    lo = n / 2, hi = 3 * ((n - 1) / 4);
  } else if (c > p_[n / 4]) {
    lo = n / 4, hi = (n - 1) / 2;
  } else {
    lo = 0, hi = (n - 1) / 4;
  }
  const int i = SearchWindow(c, lo, hi);
  return i < 0 ? 0 : p_[i];
}

Color NearestSmallColor(Color c, std::span<const Color> palette) {
  int best = std::numeric_limits<int>::max();
  Color answer = c;
  for (const Color entry : palette) {
    const int d = ColorDistance(c, entry);
    if (d < best) {
      best = d;
      answer = entry;
    }
  }
  return answer;
}

}  // namespace vt::canvas
