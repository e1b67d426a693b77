// SPDX-License-Identifier: MIT
#include "convert/fast_walk.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "convert/bits.h"
#include "convert/color_packers.h"
#include "convert/data_text.h"
#include "convert/reorder.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

using settings::PixelMode;
using settings::ScanDirection;

int Trunc(double value) { return static_cast<int>(std::trunc(value)); }

/// A byte of the walk's buffer. Not a character type, so that writing one cannot change the
/// walk's own fields, which the loops then keep in registers.
enum class Octet : std::uint8_t {};

/// How one packer call reads and packs, by mode.
enum class Kind { Mono, Levels4, Nibbles, Colors8, Index, Levels32, C4096, C65536, C262k, C16M };

/// Pixels one packer call of `kind` reads along its axis.
int PixelsPerCall(Kind kind) {
  switch (kind) {
    case Kind::Mono:
    case Kind::Colors8:
      return 8;
    case Kind::Levels4:
      return 4;
    case Kind::Nibbles:
      return 2;
    default:
      return 1;
  }
}

/// The rectangle of the pixels a walk reads, as the walk plans it.
struct Reach {
  int minX = 0, maxX = -1, minY = 0, maxY = -1;
  bool any = false;
  void Add(int x0, int x1, int y0, int y1) {
    if (x0 > x1 || y0 > y1) return;
    if (!any) {
      minX = x0, maxX = x1, minY = y0, maxY = y1;
      any = true;
      return;
    }
    minX = std::min(minX, x0), maxX = std::max(maxX, x1);
    minY = std::min(minY, y0), maxY = std::max(maxY, y1);
  }
};

/// One walk in progress.
class FastWalk {
 public:
  FastWalk(const WalkRequest& request, const ImagePixelSource& image, DataTextWriter& writer,
           const ReorderProgram* reorder, ConversionCursor& cursor, PixelMode mode, Kind kind,
           double p)
      : s_(request.settings),
        px_(request.settings.pixel),
        request_(request),
        writer_(writer),
        c_(cursor),
        mode_(mode),
        kind_(kind),
        k_(PixelsPerCall(kind)),
        p_(p),
        colors_(request.stages.colors),
        image_(image),
        width_(image.Width()),
        height_(image.Height()),
        stride_(image.Width() > 0 && image.Height() > 1 ? image.Row(1) - image.Row(0) : 0) {
    // Every value ends as the packers end it: reversed outside monochrome when MSB comes
    // last, then rearranged with dore. On a byte both come down to a table, which moves bits
    // (a swap or a byte exchange copies bits, none sets a bit of its own).
    const bool reverse = kind != Kind::Mono && !s_.scan.MSBF;
    for (int v = 0; v < 256; ++v) {
      int out = reverse ? ReverseByte(v) : v;
      if (s_.pixel.dore && reorder) out = reorder->Apply(out);
      final_[static_cast<std::size_t>(v)] = static_cast<Octet>(out & 0xFF);
    }
    if (colors_ != nullptr) lastIndex_ = colors_->Find(ColorOf(lastPixel_));
  }

  /// Plans the walk of `direction`; false when a read would fall outside the picture or past
  /// a bound of monochrome reading.
  bool Plan(ScanDirection direction) {
    direction_ = direction;
    Reach reach;
    const int k = k_;
    switch (direction) {
      case ScanDirection::td: {
        DownPages(pages_, step_);
        int top = c_.AreaTop;
        for (int page = 0; page < pages_; ++page) {
          reach.Add(c_.AreaLeft, c_.AreaRight - 1, top, top + k - 1);
          top += step_;
          if (top >= c_.AreaBottom) break;
        }
        break;
      }
      case ScanDirection::tu: {
        pages_ = Trunc(c_.AreaHeight / p_);
        step_ = Trunc(p_);
        int bottom = c_.AreaBottom - 1;
        for (int page = px_.C8 ? 2 : 1; page <= pages_ && bottom > -1; ++page) {
          reach.Add(c_.AreaLeft, c_.AreaRight - 1, bottom - k + 1, bottom);
          bottom -= step_;
        }
        break;
      }
      case ScanDirection::tda:
      case ScanDirection::tua: {
        pages_ = AllPagesPerColumn();
        if (c_.AreaWidth > 0 && pages_ > 0) {
          if (direction == ScanDirection::tda) {
            reach.Add(c_.AreaLeft, c_.AreaRight - 1, c_.AreaTop, c_.AreaTop + pages_ * k - 1);
          } else {
            reach.Add(c_.AreaLeft, c_.AreaRight - 1, c_.AreaBottom - pages_ * k, c_.AreaBottom - 1);
          }
        }
        break;
      }
      case ScanDirection::tr:
      case ScanDirection::tl: {
        const bool right = direction == ScanDirection::tr;
        pages_ = HorizontalBytesPerRow(right, false);
        if (pages_ > 0) {
          if (right) {
            reach.Add(c_.AreaLeft, c_.AreaLeft + pages_ * k - 1, c_.AreaTop, c_.AreaBottom - 1);
          } else {
            reach.Add(c_.AreaRight - pages_ * k, c_.AreaRight - 1, c_.AreaTop, c_.AreaBottom - 1);
          }
        }
        break;
      }
      case ScanDirection::tra:
      case ScanDirection::tla: {
        const bool right = direction == ScanDirection::tra;
        pages_ = HorizontalBytesPerRow(right, true);
        step_ = ByteColumnStep(right);
        if (pages_ > 0) {
          const int span = (pages_ - 1) * step_ + k;
          if (right) {
            reach.Add(c_.AreaLeft, c_.AreaLeft + span - 1, c_.AreaTop, c_.AreaBottom - 1);
          } else {
            reach.Add(c_.AreaRight - span, c_.AreaRight - 1, c_.AreaTop, c_.AreaBottom - 1);
          }
        }
        break;
      }
    }
    if (!reach.any) return true;
    if (reach.minX < 0 || reach.minY < 0 || reach.maxX >= width_ || reach.maxY >= height_) {
      return false;
    }
    // Monochrome reading stops at a coordinate past its bound: no read may reach one (the
    // leftward family tests none).
    if (kind_ == Kind::Mono) {
      const bool vertical = direction == ScanDirection::td || direction == ScanDirection::tu ||
                            direction == ScanDirection::tda || direction == ScanDirection::tua;
      if (vertical && reach.maxY > c_.LimitY) return false;
      if ((direction == ScanDirection::tr || direction == ScanDirection::tra) &&
          reach.maxX > c_.LimitX) {
        return false;
      }
    }
    return true;
  }

  bool Run() {
    return request_.keyPoll.CanReportPress() ? RunPolling<true>() : RunPolling<false>();
  }

 private:
  static constexpr std::size_t kFlushAt = 4096;

  template <bool Poll>
  bool RunPolling() {
    bool completed = true;
    switch (kind_) {
      case Kind::Mono:
        completed = RunAs<Kind::Mono, Poll>();
        break;
      case Kind::Levels4:
        completed = RunAs<Kind::Levels4, Poll>();
        break;
      case Kind::Nibbles:
        completed = RunAs<Kind::Nibbles, Poll>();
        break;
      case Kind::Colors8:
        completed = RunAs<Kind::Colors8, Poll>();
        break;
      case Kind::Index:
        completed = RunAs<Kind::Index, Poll>();
        break;
      case Kind::Levels32:
        completed = RunAs<Kind::Levels32, Poll>();
        break;
      case Kind::C4096:
        completed = RunAs<Kind::C4096, Poll>();
        break;
      case Kind::C65536:
        completed = RunAs<Kind::C65536, Poll>();
        break;
      case Kind::C262k:
        completed = RunAs<Kind::C262k, Poll>();
        break;
      case Kind::C16M:
        completed = RunAs<Kind::C16M, Poll>();
        break;
    }
    Flush();
    c_.ByteCount = static_cast<double>(values_) * ValueStep();
    return completed;
  }

  // ---- The counts, as the walkers take them ----------------------------------------------

  void DownPages(int& pages, int& step) const {
    const double p = px_.G42 ? 8.0 : p_;
    pages = Trunc(c_.AreaHeight / p);
    if (px_.C8) {
      pages = c_.AreaHeight / 8;
    } else if (px_.G32) {
      pages = c_.AreaHeight;
    }
    step = Trunc(p);
  }

  int AllPagesPerColumn() const {
    const int h = c_.AreaHeight;
    if (px_.C8) return h / 8;
    if (px_.G16) return h / 2;
    if (px_.G4 || px_.G42) return h / 4;
    if (px_.G32) return h;
    return Trunc(h / p_);
  }

  int HorizontalBytesPerRow(bool right, bool byteColumns) const {
    const int w = c_.AreaWidth;
    if (px_.C8) return w / 8;
    if (px_.G16) return w / 2;
    if (px_.G32) return byteColumns && !right && px_.PM ? w / 2 : w;
    if (byteColumns && (px_.G4 || px_.G42)) return w / 4;
    return Trunc(w / p_);
  }

  int ByteColumnStep(bool right) const {
    if (kind_ == Kind::Mono || px_.C8) return 8;
    if (px_.G16) return 2;
    if (px_.G32) return !right && px_.PM ? 2 : 1;
    if (px_.G4 || px_.G42) return 4;
    if (px_.C16) return 2;
    return 1;
  }

  /// ByteCount's rise for each value of the mode.
  double ValueStep() const {
    switch (kind_) {
      case Kind::C4096:
        return px_.PM ? 1.5 : 2.0;
      case Kind::C65536:
        return 2.0;
      case Kind::C262k:
        return 3.0;
      case Kind::C16M:
        return px_.PM ? 3.0 : 4.0;
      default:
        return 1.0;
    }
  }

  // ---- The walks ---------------------------------------------------------------------------

  /// The walk of the planned direction, with the packer of kind K.
  template <Kind K, bool Poll>
  bool RunAs() {
    switch (direction_) {
      case ScanDirection::td:
        return Down<K, Poll>();
      case ScanDirection::tu:
        return Up<K, Poll>();
      case ScanDirection::tda:
        return AllColumns<K, Poll, 0, 1>(s_.scan.CORN1);
      case ScanDirection::tua:
        return AllColumns<K, Poll, 0, -1>(s_.scan.CORN4);
      case ScanDirection::tr:
        return Rows<K, Poll, 1>(s_.scan.CORN1);
      case ScanDirection::tl:
        return Rows<K, Poll, -1>(s_.scan.CORN2);
      case ScanDirection::tra:
        return ByteColumns<K, Poll, 1>(s_.scan.CORN1);
      case ScanDirection::tla:
        return ByteColumns<K, Poll, -1>(s_.scan.CORN2);
    }
    return true;
  }

  void GroupStart(Octet*& out) {
    if (!s_.block.ColRx) return;
    out_ = out;
    Flush();
    writer_.GroupStart();
    out = out_;
  }

  // The loops keep the output place, the bounds and the picture's rows in locals: the writer
  // is called between bytes, and members would be read again after each call.

  template <Kind K, bool Poll>
  bool Down() {
    c_.PagesPerColumn = pages_;
    c_.BytesPerRow = c_.AreaWidth;
    const bool leftToRight = s_.scan.CORN1;
    const int left = c_.AreaLeft, right = c_.AreaRight, bottom = c_.AreaBottom;
    const int xStart = leftToRight ? left : right - 1;
    const int dx = leftToRight ? 1 : -1;
    const int pages = pages_, step = step_;
    Octet* out = out_;
    int pageTop = c_.AreaTop;
    for (int page = 0; page < pages; ++page) {
      GroupStart(out);
      const QRgb* row = image_.Row(pageTop);
      for (int x = xStart; x >= left && x < right; x += dx) {
        if (!Byte<K, Poll, 0, 1>(row + x, out)) return Stop(out);
      }
      pageTop += step;
      if (pageTop >= bottom) break;
    }
    out_ = out;
    return true;
  }

  template <Kind K, bool Poll>
  bool Up() {
    c_.PagesPerColumn = pages_;
    c_.BytesPerRow = c_.AreaWidth;
    const bool leftToRight = s_.scan.CORN4;
    const int left = c_.AreaLeft, right = c_.AreaRight;
    const int xStart = leftToRight ? left : right - 1;
    const int dx = leftToRight ? 1 : -1;
    const int pages = pages_, step = step_;
    Octet* out = out_;
    int pageBottom = c_.AreaBottom - 1;
    for (int page = px_.C8 ? 2 : 1; page <= pages && pageBottom > -1; ++page) {
      GroupStart(out);
      const QRgb* row = image_.Row(pageBottom);
      for (int x = xStart; x >= left && x < right; x += dx) {
        if (!Byte<K, Poll, 0, -1>(row + x, out)) return Stop(out);
      }
      pageBottom -= step;
    }
    out_ = out;
    return true;
  }

  template <Kind K, bool Poll, int DX, int DY>
  bool AllColumns(bool leftToRight) {
    c_.PagesPerColumn = pages_;
    c_.BytesPerRow = c_.AreaWidth;
    const int dx = leftToRight ? 1 : -1;
    const int width = c_.AreaWidth, pages = pages_;
    const std::ptrdiff_t pageStep = std::ptrdiff_t(DY) * k_ * stride_;
    Octet* out = out_;
    int x = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    const QRgb* first = image_.Row(DY > 0 ? c_.AreaTop : c_.AreaBottom - 1);
    for (int column = 0; column < width; ++column, x += dx) {
      GroupStart(out);
      const QRgb* p = first + x;
      for (int page = 0; page < pages; ++page, p += pageStep) {
        if (!Byte<K, Poll, DX, DY>(p, out)) return Stop(out);
      }
    }
    out_ = out;
    return true;
  }

  template <Kind K, bool Poll, int DX>
  bool Rows(bool fromTop) {
    if constexpr (!Poll && K == Kind::C16M) return ChannelRows<DX>(fromTop);
    if constexpr (!Poll && OnePixel(K)) return IndexRows<K, DX>(fromTop);
    if constexpr (!Poll && K == Kind::Mono) return MonoRows<DX>(fromTop);
    c_.BytesPerRow = pages_;
    c_.PagesPerColumn = c_.AreaHeight;
    const int top = c_.AreaTop, bottom = c_.AreaBottom;
    const int first = fromTop ? top : bottom - 1;
    const int dy = fromTop ? 1 : -1;
    const int pages = pages_, k = k_;
    const int start = DX > 0 ? c_.AreaLeft : c_.AreaRight - 1;
    Octet* out = out_;
    for (int y = first; y >= top && y < bottom; y += dy) {
      GroupStart(out);
      const QRgb* p = image_.Row(y) + start;
      for (int b = 0; b < pages; ++b, p += DX * k) {
        if (!Byte<K, Poll, DX, 0>(p, out)) return Stop(out);
      }
    }
    out_ = out;
    return true;
  }

  /// Rows of monochrome bytes when Escape is not polled: each byte's eight pixels are tested
  /// together (with SSE2 four at a time) and their bits put in order through a table.
  template <int DX>
  bool MonoRows(bool fromTop) {
    // Bit i of the mask is the pixel i read; the byte takes it at 7 - i (MSB first) or i, and
    // PPB keeps the top bits of a horizontal byte.
    static constexpr int kMasks[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xF0, 0xF8, 0xFC, 0xFE};
    const int ppb = s_.pixel.PPB;
    const int keep = ppb >= 4 && ppb <= 7 ? kMasks[ppb] : 0xFF;
    const bool msbFirst = s_.scan.MSBF;
    std::array<Octet, 256> byteOf{};
    for (int mask = 0; mask < 256; ++mask) {
      const int pixels = kLoadsReversed && DX < 0 ? ReverseByte(mask) : mask;
      const int value = (msbFirst ? ReverseByte(pixels) : pixels) & keep;
      byteOf[std::size_t(mask)] = final_[std::size_t(value)];
    }
    return RowStretches<DX>(fromTop, 8, 1, [&](const QRgb* p, int n, Octet* out) {
      for (int b = 0; b < n; ++b, p += DX * 8) *out++ = byteOf[std::size_t(BlackMask<DX>(p))];
      return out;
    });
  }

  /// Walks the rows of the area from the top or the bottom, each in stretches of at most 256
  /// packer calls of `pixelsPerCall` pixels and at most `bytesPerCall` bytes:
  /// `pack(p, n, out)` packs the n calls from pixel `p` into `out` and returns the new end,
  /// or null after it stopped the walk (Stop). False when it stopped.
  template <int DX, typename Pack>
  [[gnu::always_inline]] bool RowStretches(bool fromTop, int pixelsPerCall, int bytesPerCall,
                                           Pack&& pack) {
    constexpr int kStretch = 256;
    c_.BytesPerRow = pages_;
    c_.PagesPerColumn = c_.AreaHeight;
    const int top = c_.AreaTop, bottom = c_.AreaBottom;
    const int first = fromTop ? top : bottom - 1;
    const int dy = fromTop ? 1 : -1;
    const int pages = pages_;
    const int start = DX > 0 ? c_.AreaLeft : c_.AreaRight - 1;
    const Octet* const flushAt = buffer_.data() + kFlushAt - bytesPerCall * kStretch;
    Octet* out = out_;
    for (int y = first; y >= top && y < bottom; y += dy) {
      GroupStart(out);
      const QRgb* p = image_.Row(y) + start;
      for (int done = 0; done < pages;) {
        const int n = std::min(kStretch, pages - done);
        out = pack(p, n, out);
        if (out == nullptr) return false;
        p += DX * pixelsPerCall * n;
        done += n;
        if (out >= flushAt) {
          out_ = out;
          Flush();
          out = out_;
        }
      }
    }
    out_ = out;
    return true;
  }

#if defined(__SSE2__)
  static constexpr bool kLoadsReversed = true;
#else
  static constexpr bool kLoadsReversed = false;
#endif
  /// Bit i set when pixel i along DX from `p` is black (its colour, alpha aside, is 0); read
  /// leftward with SSE2 (kLoadsReversed), bit 7 - i.
  template <int DX>
  [[gnu::always_inline]] static int BlackMask(const QRgb* p) {
#if defined(__SSE2__)
    const __m128i colour = _mm_set1_epi32(0xFFFFFF);
    const __m128i zero = _mm_setzero_si128();
    const QRgb* low = DX > 0 ? p : p - 7;
    const __m128i a = _mm_cmpeq_epi32(
        _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low)), colour), zero);
    const __m128i b = _mm_cmpeq_epi32(
        _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low + 4)), colour), zero);
    return _mm_movemask_ps(_mm_castsi128_ps(a)) | (_mm_movemask_ps(_mm_castsi128_ps(b)) << 4);
#else
    int mask = 0;
    for (int i = 0; i < 8; ++i) mask |= int((p[DX * i] & 0xFFFFFFu) == 0) << i;
    return mask;
#endif
  }

  /// Whether one packer call of K reads one pixel.
  static constexpr bool OnePixel(Kind k) {
    return k == Kind::Index || k == Kind::Levels32 || k == Kind::C4096 || k == Kind::C65536 ||
           k == Kind::C262k || k == Kind::C16M;
  }

  /// Rows of one-pixel calls when Escape is not polled: each stretch of a row is looked up in
  /// a loop of its own, then packed, with the settings read into locals once. The bytes, and
  /// the stop at the first colour not found, are those of Byte pixel by pixel.
  template <Kind K, int DX>
  bool IndexRows(bool fromTop) {
    if constexpr (K == Kind::Index || K == Kind::C4096 || K == Kind::C65536) {
      if (std::optional<WordTables> words = GridWords<K>()) {
        if (words->bytes == 0) return GridPairRows<DX>(fromTop, *words);
        return words->bytes == 1 ? GridWordRows<K, DX, 1>(fromTop, *words)
                                 : GridWordRows<K, DX, 2>(fromTop, *words);
      }
    } else if constexpr (K == Kind::C262k) {
      if (std::optional<WordTables> words = GridWords<K>()) {
        return GridWordRows<K, DX, 3>(fromTop, *words);
      }
    }
    // Grid palettes took the word tables above; gray tables are read by level, any other
    // table through its search.
    std::array<int, 256> found;
    const ColorSearch* const colors = colors_;
    const int* const grays = colors != nullptr ? colors->Indexer().Grays() : nullptr;
    std::array<int, 256> grayIndex{};
    if (grays) {
      // Black is gray level 0: the black slot answers there when the table lacks it.
      std::copy(grays, grays + 256, grayIndex.begin());
      if (grayIndex[0] < 0) grayIndex[0] = colors->BlackSlot();
    }
    // 262k never stops: a colour off the table goes out as itself.
    constexpr bool kStops = K != Kind::C262k;
    QRgb lastPixel = lastPixel_;
    int lastIndex = lastIndex_;
    // At most 3 bytes a pixel.
    const bool completed = RowStretches<DX>(fromTop, 1, 3, [&](const QRgb* p, int n, Octet* out) {
      int stop = n;
      // Each loop ends at the first colour the table lacks, where the walk stops.
      if (grays) {
        for (int i = 0; i < n; ++i) {
          const QRgb v = p[DX * i];
          const unsigned level = v & 0xFF;
          const int index = (v & 0xFFFFFFu) == level * 0x010101u ? grayIndex[level] : -1;
          found[std::size_t(i)] = index;
          if (kStops && index < 0) {
            stop = i;
            break;
          }
        }
      } else {
        for (int i = 0; i < n; ++i) {
          const QRgb v = p[DX * i];
          if (v != lastPixel) {
            lastPixel = v;
            lastIndex = colors->Find(ColorOf(v));
          }
          found[std::size_t(i)] = lastIndex;
          if (kStops && lastIndex < 0) {
            stop = i;
            break;
          }
        }
      }
      out = PackStretch<K, DX>(p, found.data(), stop, out);
      if (stop < n) {
        colors_->notFound = std::int64_t(ColorOf(p[DX * stop]));
        c_.Aborted = true;
        Stop(out);
        return static_cast<Octet*>(nullptr);
      }
      return out;
    });
    lastPixel_ = lastPixel, lastIndex_ = lastIndex;
    return completed;
  }

  /// What each channel level of a grid palette gives to the output word of a pixel: the bits
  /// of its index field after the kind's word exchange and byte order (and, but in packed
  /// pairs, the final table), or kMissing when the level is not on the grid. Each bit of the word
  /// comes from one bit of the index (or from none), so the word of a pixel is the OR of its three
  /// channels' parts.
  struct WordTables {
    static constexpr std::uint32_t kMissing = 1u << 31;
    std::array<std::uint32_t, 256> red, green, blue;
    /// Bytes a pixel: 1 to 3, the word's bytes from the highest; 0 for the exchanged words of
    /// packed 4096 colours, two in three bytes.
    int bytes;
  };

  /// The word tables of K over a grid palette, for the packings that are a fixed exchange of
  /// the index bits: 256 colours, unpacked 4096 colours, 65536 colours, 262k colours. None
  /// otherwise (no grid, packed phases, a black slot outside 262k).
  template <Kind K>
  std::optional<WordTables> GridWords() const {
    if (colors_ == nullptr || (K != Kind::C262k && colors_->BlackSlot() >= 0)) {
      return std::nullopt;
    }
    const std::optional<canvas::ColorIndexer::GridTables> grid = colors_->Indexer().Grid();
    if (!grid) return std::nullopt;
    const bool pairs = K == Kind::C4096 && px_.PM;  // two exchanged words in three bytes
    const bool rgb2 = px_.rgb2, swrg = px_.SWRG, unpacked = px_.C18u;
    auto word = [&](int index) -> std::uint32_t {
      if constexpr (K == Kind::C262k) {
        return Word262k(index, unpacked, rgb2);
      } else if constexpr (K == Kind::Index) {
        return std::uint32_t(Reorder256Output(index)) & 0xFF;
      } else if constexpr (K == Kind::C4096) {
        const int v = Reorder4096Output(index);
        if (pairs) return std::uint32_t(v);
        const int high = (v >> 8) & 15, low = v & 255;
        return std::uint32_t(rgb2 ? (low << 8) | high : (high << 8) | low);
      } else {
        const int v = Reorder65kOutput(index);
        if (!swrg) return std::uint32_t(v) & 0xFFFF;
        // Red and blue fields trade places, green stays.
        return std::uint32_t(((v << 11) & 0xF800) | (v & 0x7E0) | ((v >> 11) & 0x1F));
      }
    };
    WordTables t;
    t.bytes = pairs ? 0 : K == Kind::Index ? 1 : K == Kind::C262k ? 3 : 2;
    // Each bit of the word comes from one bit of the index, and the final table (but in packed
    // pairs, which split their words over bytes and take it byte by byte) only moves bits: the
    // word of a channel's grid position is the OR of the words of its bits. So a channel's
    // positions are built up from one word a bit, and its 256 levels look them up.
    auto fill = [&](std::array<std::uint32_t, 256>& table, const std::int16_t* levels, int shift) {
      std::array<std::uint32_t, 256> byPosition;
      byPosition[0] = 0;
      std::size_t built = 1;  // positions worked out so far
      for (std::size_t level = 0; level < 256; ++level) {
        const int at = levels[level];
        if (at < 0) {
          table[level] = WordTables::kMissing;
          continue;
        }
        const std::size_t position = std::size_t(at) & 0xFF;  // a channel has 8 bits at most
        for (; built <= position; ++built) {
          const std::size_t rest = built & (built - 1);
          if (rest != 0) {
            byPosition[built] = byPosition[rest] | byPosition[built ^ rest];
          } else {
            const std::uint32_t w = word(int(built) << shift);
            byPosition[built] = pairs ? w : MapBytes(w);
          }
        }
        table[level] = byPosition[position];
      }
    };
    fill(t.red, grid->red, 0);
    fill(t.green, grid->green, grid->shiftGreen);
    fill(t.blue, grid->blue, grid->shiftBlue);
    return t;
  }

  /// The three bytes of a 262k colour of table index `index` (or of a colour outside the
  /// table, its own value), first byte highest: the word exchange, then 6-bit or 8-bit
  /// fields, first and last exchanged with rgb2.
  static std::uint32_t Word262k(int index, bool unpacked, bool rgb2) {
    const std::int64_t v = Reorder262kOutput(index);
    int b0, b1, b2;
    if (unpacked) {
      b0 = int((v >> 12) & 63), b1 = int((v >> 6) & 63), b2 = int(v & 63);
    } else {
      b0 = int((v >> 16) & 255), b1 = int((v >> 8) & 255), b2 = int(v & 255);
    }
    if (rgb2) std::swap(b0, b2);
    return std::uint32_t(b0 << 16 | b1 << 8 | b2);
  }

  /// Rows of one-pixel calls over a grid palette whose word is the OR of its channels' parts
  /// (GridWords): a table look-up a channel, the word's bytes stored as they stand. A colour
  /// off the grid stops the walk as the packers stop, but in 262k colours, where it goes out
  /// as its own value (black as the black slot).
  template <Kind K, int DX, int Bytes>
  bool GridWordRows(bool fromTop, const WordTables& t) {
    // The tables' addresses in locals, so that the loop keeps them in registers.
    const std::uint32_t *red = t.red.data(), *green = t.green.data(), *blue = t.blue.data();
    return RowStretches<DX>(fromTop, 1, Bytes, [&](const QRgb* p, int n, Octet* out) {
      // The stretch goes out unchecked; only when a colour was off the grid is it done again,
      // pixel by pixel.
      std::uint32_t seen = 0;
      Octet* at = out;
      const QRgb* q = p;
      for (int i = 0; i < n; ++i, q += DX) {
        const QRgb v = *q;
        const std::uint32_t w = red[(v >> 16) & 0xFF] | green[(v >> 8) & 0xFF] | blue[v & 0xFF];
        seen |= w;
        at = PutWord<Bytes>(at, w);
      }
      if (!(seen & WordTables::kMissing)) [[likely]]
        return at;
      for (int i = 0; i < n; ++i, p += DX) {
        const QRgb v = *p;
        std::uint32_t w = red[(v >> 16) & 0xFF] | green[(v >> 8) & 0xFF] | blue[v & 0xFF];
        if (w & WordTables::kMissing) {
          if constexpr (K == Kind::C262k) {
            const int index = colors_->Find(ColorOf(v));
            w = MapBytes(Word262k(index >= 0 ? index : int(ColorOf(v)), px_.C18u, px_.rgb2));
          } else {
            colors_->notFound = std::int64_t(ColorOf(v));
            c_.Aborted = true;
            Stop(out);
            return static_cast<Octet*>(nullptr);
          }
        }
        out = PutWord<Bytes>(out, w);
      }
      return out;
    });
  }

  /// The three low bytes of `word` each through the final table.
  std::uint32_t MapBytes(std::uint32_t word) const {
    std::uint32_t mapped = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      mapped |= std::uint32_t(final_[(word >> shift) & 0xFF]) << shift;
    }
    return mapped | (word & 0xFF000000u);
  }

  /// Stores the low `Bytes` bytes of `word`, highest first; three bytes go as one store of
  /// four (the buffer has room past its end), of which the fourth is written over next.
  template <int Bytes>
  [[gnu::always_inline]] static Octet* PutWord(Octet* out, std::uint32_t word) {
    if constexpr (std::endian::native == std::endian::little && Bytes >= 2) {
      const std::uint32_t big = __builtin_bswap32(word << (8 * (4 - Bytes)));
      std::memcpy(out, &big, Bytes == 2 ? 2 : 4);
      return out + Bytes;
    } else {
      for (int shift = 8 * (Bytes - 1); shift >= 0; shift -= 8) *out++ = Octet(word >> shift);
      return out;
    }
  }

  /// Rows of 16M colours: each byte of the output is one channel of the pixel (or a constant
  /// 0), so a table a channel, with the final table in it, gives the pixel's bytes as one word:
  /// four bytes unpacked (0 first, or last with RGBA), else three.
  template <int DX>
  bool ChannelRows(bool fromTop) {
    const bool unpacked = !px_.PM, rgba = px_.RGBA, rgb2 = px_.rgb2;
    const bool zeroFirst = unpacked && !rgba, zeroLast = unpacked && rgba && !rgb2;
    // Where each byte stands in the word, counted from its lowest byte.
    const int bytes = zeroFirst || zeroLast ? 4 : 3;
    const int lastAt = zeroLast ? 1 : 0;
    const int greenAt = lastAt + 1, firstAt = lastAt + 2;
    // rgb2 puts blue first and red last.
    const int redAt = rgb2 ? lastAt : firstAt, blueAt = rgb2 ? firstAt : lastAt;
    const std::uint32_t zero = std::uint32_t(final_[0]) << (zeroFirst ? 24 : 0);
    std::array<std::uint32_t, 256> red, green, blue;
    for (std::size_t level = 0; level < 256; ++level) {
      const std::uint32_t f = std::uint32_t(final_[level]);
      red[level] = f << (8 * redAt);
      green[level] = (f << (8 * greenAt)) | (zeroFirst || zeroLast ? zero : 0);
      blue[level] = f << (8 * blueAt);
    }
    const std::uint32_t *r = red.data(), *g = green.data(), *b = blue.data();
    auto rows = [&]<int Bytes>() {
      return RowStretches<DX>(fromTop, 1, Bytes, [&](const QRgb* p, int n, Octet* out) {
        for (int i = 0; i < n; ++i, p += DX) {
          const QRgb v = *p;
          out = PutWord<Bytes>(out, r[(v >> 16) & 0xFF] | g[(v >> 8) & 0xFF] | b[v & 0xFF]);
        }
        return out;
      });
    };
    return bytes == 4 ? rows.template operator()<4>() : rows.template operator()<3>();
  }

  /// Rows of packed 4096 colours over a grid palette: each pixel's exchanged word from the
  /// channel tables (GridWords); phase 1 holds a word, phase 2 writes both in three bytes. The
  /// phase goes on across rows, and a colour off the grid stops the walk as the packer stops.
  template <int DX>
  bool GridPairRows(bool fromTop, const WordTables& t) {
    // The tables' addresses in locals, so that the loop keeps them in registers.
    const std::uint32_t *red = t.red.data(), *green = t.green.data(), *blue = t.blue.data();
    int phase = phase_, held = held_;
    const bool completed = RowStretches<DX>(fromTop, 1, 2, [&](const QRgb* p, int n, Octet* out) {
      for (int i = 0; i < n; ++i, p += DX) {
        const QRgb v = *p;
        const std::uint32_t w = red[(v >> 16) & 0xFF] | green[(v >> 8) & 0xFF] | blue[v & 0xFF];
        if (w & WordTables::kMissing) [[unlikely]] {
          colors_->notFound = std::int64_t(ColorOf(v));
          c_.Aborted = true;
          Stop(out);
          return static_cast<Octet*>(nullptr);
        }
        const int word = int(w);
        if (phase != 1) {
          phase = 1, held = word;
          continue;
        }
        phase = 2;
        PutWordPair(out, held, word);
      }
      return out;
    });
    phase_ = phase, held_ = held;
    return completed;
  }

  /// Packs `n` one-pixel calls from `p` (table indexes in `found`) into `out`.
  template <Kind K, int DX>
  [[gnu::always_inline]] Octet* PackStretch(const QRgb* p, const int* found, int n, Octet* out) {
    const Octet* const final = final_.data();
    auto put = [&](int value) { *out++ = final[value & 0xFF]; };
    const bool pm = px_.PM, rgb2 = px_.rgb2;
    if constexpr (K == Kind::Index) {
      for (int i = 0; i < n; ++i) put(Reorder256Output(found[i]));
    } else if constexpr (K == Kind::Levels32) {
      if (!pm) {
        const int scale = px_.GRL32 ? 8 : 1;
        for (int i = 0; i < n; ++i) put(found[i] * scale);
        return out;
      }
      // Three 5-bit levels in two bytes: phase 1 holds a level, phase 2 ends the first
      // byte and holds the rest, phase 3 ends the second byte.
      int phase = phase_, held = held_;
      auto step = [&](int v) {
        phase = phase % 3 + 1;
        if (phase == 1) {
          held = v;
        } else if (phase == 2) {
          put(held + (v >> 6));
          held = (v * 4) & 224;
        } else {
          put(held + (v >> 3));
        }
      };
      int i = 0;
      for (; i < n && phase % 3 != 0; ++i) step(found[i] * 8);
      // Whole groups of three from phase 1 on; each leaves phase 3 and its middle level's
      // rest held.
      for (; i + 3 <= n; i += 3) {
        const int a = found[i] * 8, b = found[i + 1] * 8, c = found[i + 2] * 8;
        put(a + (b >> 6));
        held = (b * 4) & 224;
        put(held + (c >> 3));
        phase = 3;
      }
      for (; i < n; ++i) step(found[i] * 8);
      phase_ = phase, held_ = held;
    } else if constexpr (K == Kind::C4096) {
      if (!pm) {
        for (int i = 0; i < n; ++i) {
          const int v = Reorder4096Output(found[i]);
          const int high = (v >> 8) & 15, low = v & 255;
          put(rgb2 ? low : high);
          put(rgb2 ? high : low);
        }
        return out;
      }
      // Two 12-bit words in three bytes: phase 1 holds a word, phase 2 writes both.
      int phase = phase_, held = held_;
      int i = 0;
      if (n > 0 && phase == 1) {
        const int v = Reorder4096Output(found[i++]);
        phase = 2;
        PutWordPair(out, held, v);
      }
      for (; i + 2 <= n; i += 2) {
        const int a = Reorder4096Output(found[i]), b = Reorder4096Output(found[i + 1]);
        PutWordPair(out, a, b);
        held = a, phase = 2;
      }
      if (i < n) held = Reorder4096Output(found[i]), phase = 1;
      phase_ = phase, held_ = held;
    } else if constexpr (K == Kind::C65536) {
      if (px_.SWRG) {
        for (int i = 0; i < n; ++i) {
          const int v = Reorder65kOutput(found[i]);
          const int g = v & 0x7E0;
          put((((v << 11) & 0xF800) | g) >> 8);
          put(((v >> 11) & 0x1F) | (g & 255));
        }
      } else {
        for (int i = 0; i < n; ++i) {
          const int v = Reorder65kOutput(found[i]);
          put(v >> 8);
          put(v & 255);
        }
      }
    } else if constexpr (K == Kind::C262k) {
      const bool unpacked = px_.C18u;
      for (int i = 0; i < n; ++i) {
        // A colour outside the table goes out as its own value.
        const int index = found[i] >= 0 ? found[i] : int(ColorOf(p[DX * i]));
        const std::uint32_t w = Word262k(index, unpacked, rgb2);
        put(int(w >> 16));
        put(int(w >> 8));
        put(int(w));
      }
    }
    return out;
  }

  template <Kind K, bool Poll, int DX>
  bool ByteColumns(bool fromTop) {
    c_.BytesPerRow = pages_;
    c_.PagesPerColumn = c_.AreaHeight;
    const int top = c_.AreaTop, bottom = c_.AreaBottom;
    const int first = fromTop ? top : bottom - 1;
    const int dy = fromTop ? 1 : -1;
    const int pages = pages_, step = step_;
    const int left = c_.AreaLeft, right = c_.AreaRight;
    Octet* out = out_;
    for (int b = 0; b < pages; ++b) {
      const int x = DX > 0 ? left + b * step : right - 1 - b * step;
      GroupStart(out);
      for (int y = first; y >= top && y < bottom; y += dy) {
        if (!Byte<K, Poll, DX, 0>(image_.Row(y) + x, out)) return Stop(out);
      }
    }
    out_ = out;
    return true;
  }

  bool Stop(Octet* out) {
    out_ = out;
    return false;
  }

  // ---- One byte ----------------------------------------------------------------------------

  /// Pixel `i` along (DX, DY) from `p`.
  template <int DX, int DY>
  [[gnu::always_inline]] QRgb At(const QRgb* p, int i) const {
    return p[std::ptrdiff_t(DX) * i + std::ptrdiff_t(DY) * i * stride_];
  }
  /// The canvas colour 0x00BBGGRR of a pixel.
  static std::uint32_t ColorOf(QRgb v) {
    return ((v >> 16) & 0xFFu) | (v & 0xFF00u) | ((v & 0xFFu) << 16);
  }

  /// The table index of the colour of `v`, or -1; the last pixel's answer is kept.
  [[gnu::always_inline]] int Lookup(QRgb v) {
    if (v != lastPixel_) {
      lastPixel_ = v;
      lastIndex_ = colors_->Find(ColorOf(v));
    }
    return lastIndex_;
  }

  /// The table index of the colour of `v`, or -1 after recording a colour not found.
  [[gnu::always_inline]] int Index(QRgb v) {
    const int index = Lookup(v);
    if (index < 0) [[unlikely]] {
      colors_->notFound = std::int64_t(ColorOf(v));
      c_.Aborted = true;
    }
    return index;
  }

  [[gnu::always_inline]] void Put(Octet*& out, int value) const {
    *out++ = final_[static_cast<std::size_t>(value & 0xFF)];
  }
  /// Two exchanged 12-bit words of packed 4096 colours in three bytes.
  [[gnu::always_inline]] void PutWordPair(Octet*& out, int first, int second) const {
    Put(out, first >> 4);
    Put(out, ((first << 4) & 0xF0) + (second >> 8));
    Put(out, second & 255);
  }

  void Flush() {
    const std::size_t count = static_cast<std::size_t>(out_ - buffer_.data());
    if (count == 0) return;
    writer_.EmitValues(reinterpret_cast<const std::uint8_t*>(buffer_.data()), count);
    values_ += static_cast<long long>(count);
    out_ = buffer_.data();
  }

  /// Polls Escape, then packs the byte (or bytes) of one packer call at (x, y), the pixels
  /// read along (DX, DY). False when the walk must stop.
  template <Kind K, bool Poll, int DX, int DY>
  [[gnu::always_inline]] bool Byte(const QRgb* p, Octet*& out) {
    if (Poll && request_.keyPoll.EscapePressed()) return false;
    if (!Pack<K, DX, DY>(p, out)) return false;
    if (out >= bufferEnd_) [[unlikely]] {
      out_ = out;
      Flush();
      out = out_;
    }
    return true;
  }

  template <Kind K, int DX, int DY>
  [[gnu::always_inline]] bool Pack(const QRgb* p, Octet*& out) {
    switch (K) {
      case Kind::Mono: {
        const bool msbFirst = s_.scan.MSBF;
        int value = 0;
        for (int i = 0; i < 8; ++i) {
          if ((At<DX, DY>(p, i) & 0xFFFFFFu) == 0) value |= 1 << (msbFirst ? 7 - i : i);
        }
        // PPB keeps the top bits of a horizontal byte.
        if (DX != 0) {
          static constexpr int kMasks[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xF0, 0xF8, 0xFC, 0xFE};
          const int ppb = s_.pixel.PPB;
          if (ppb >= 4 && ppb <= 7) value &= kMasks[ppb];
        }
        Put(out, value);
        return true;
      }
      case Kind::Levels4: {
        int value = 0;
        for (int i = 0; i < 4; ++i) {
          const int idx = Index(At<DX, DY>(p, i));
          if (idx < 0) return false;
          value += idx;
          if (i < 3) value <<= 2;
        }
        Put(out, value);
        return true;
      }
      case Kind::Nibbles: {
        const int i0 = Index(*p);
        if (i0 < 0) return false;
        const int i1 = Index(At<DX, DY>(p, 1));
        if (i1 < 0) return false;
        Put(out, px_.snib ? (i1 << 4) | i0 : (i0 << 4) | i1);
        return true;
      }
      case Kind::Colors8: {
        int i[8];
        for (int n = 0; n < 8; ++n) {
          i[n] = Index(At<DX, DY>(p, n));
          if (i[n] < 0) return false;
        }
        Put(out, i[0] * 32 + i[1] * 4 + (i[2] >> 1));
        Put(out, ((i[2] * 128) & 0xFF) + i[3] * 16 + i[4] * 2 + (i[5] >> 2));
        Put(out, ((i[5] * 64) & 0xFF) + i[6] * 8 + i[7]);
        return true;
      }
      case Kind::Index: {
        const int idx = Index(*p);
        if (idx < 0) return false;
        Put(out, Reorder256Output(idx));
        return true;
      }
      case Kind::Levels32: {
        const int idx = Index(*p);
        if (idx < 0) return false;
        if (!px_.PM) {
          Put(out, px_.GRL32 ? idx * 8 : idx);
          return true;
        }
        const int v = idx * 8;
        phase_ = phase_ % 3 + 1;
        if (phase_ == 1) {
          held_ = v;
        } else if (phase_ == 2) {
          const int value = held_ + (v >> 6);
          held_ = (v * 4) & 224;
          Put(out, value);
        } else {
          Put(out, held_ + (v >> 3));
        }
        return true;
      }
      case Kind::C4096: {
        const int idx = Index(*p);
        if (idx < 0) return false;
        const int n = Reorder4096Output(idx);
        if (!px_.PM) {
          const int high = (n >> 8) & 15, low = n & 255;
          Put(out, px_.rgb2 ? low : high);
          Put(out, px_.rgb2 ? high : low);
          return true;
        }
        phase_ = phase_ % 2 + 1;
        if (phase_ == 1) {
          held_ = n;
          return true;
        }
        PutWordPair(out, held_, n);
        return true;
      }
      case Kind::C65536: {
        const int idx = Index(*p);
        if (idx < 0) return false;
        const int n = Reorder65kOutput(idx);
        if (px_.SWRG) {
          const int g = n & 0x7E0;
          Put(out, (((n << 11) & 0xF800) | g) >> 8);
          Put(out, ((n >> 11) & 0x1F) | (g & 255));
        } else {
          Put(out, n >> 8);
          Put(out, n & 255);
        }
        return true;
      }
      case Kind::C262k: {
        const QRgb pixel = *p;
        const int index = Lookup(pixel);
        // A colour outside the table goes out as its own value.
        const std::int64_t n = Reorder262kOutput(index >= 0 ? index : int(ColorOf(pixel)));
        std::array<int, 3> bytes{};
        if (px_.C18u) {
          bytes = {int((n >> 12) & 63), int((n >> 6) & 63), int(n & 63)};
        } else {
          bytes = {int((n >> 16) & 255), int((n >> 8) & 255), int(n & 255)};
        }
        if (px_.rgb2) std::swap(bytes[0], bytes[2]);
        for (int b : bytes) Put(out, b);
        return true;
      }
      case Kind::C16M: {
        const std::int64_t n = Reorder16MOutput(int(ColorOf(*p)));
        const bool unpacked = !px_.PM;
        if (unpacked && !px_.RGBA) Put(out, 0);
        const int rgb[3] = {int((n >> 16) & 255), int((n >> 8) & 255), int(n & 255)};
        for (int k = 0; k < 3; ++k) Put(out, rgb[px_.rgb2 ? 2 - k : k]);
        if (unpacked && px_.RGBA && !px_.rgb2) Put(out, 0);
        return true;
      }
    }
    return true;
  }

  const settings::Settings& s_;
  const settings::PixelModeSettings& px_;
  const WalkRequest& request_;
  DataTextWriter& writer_;
  ConversionCursor& c_;
  PixelMode mode_;
  Kind kind_;
  int k_;
  double p_;
  ColorSearch* colors_;
  const ImagePixelSource& image_;
  int width_;
  int height_;
  std::ptrdiff_t stride_;  // pixels from a row to the next
  ScanDirection direction_ = ScanDirection::tr;
  int pages_ = 0;  // pages (vertical walks) or bytes per row (horizontal ones)
  int step_ = 1;   // rows between pages, or pixels between byte columns
  std::array<Octet, 256> final_{};
  std::array<Octet, kFlushAt + 8> buffer_{};  // a call puts at most four bytes
  Octet* out_ = buffer_.data();
  const Octet* bufferEnd_ = buffer_.data() + kFlushAt;
  long long values_ = 0;
  QRgb lastPixel_ = 0;  // the last pixel looked up, and its answer
  int lastIndex_ = -1;
  int phase_ = 0;  // PackedPhase
  int held_ = 0;   // SecondValue
};

/// The kind of packer call of `mode` in the family of `direction`; none when the fast walk
/// does not cover it.
std::optional<Kind> KindOf(const settings::Settings& s, PixelMode mode, ScanDirection direction) {
  const settings::PixelModeSettings& px = s.pixel;
  const bool vertical = direction == ScanDirection::td || direction == ScanDirection::tu ||
                        direction == ScanDirection::tda || direction == ScanDirection::tua;
  const bool down = direction == ScanDirection::td || direction == ScanDirection::tda;
  // The slices and the horizontal pairs change the walk itself; six-bit bytes read past the
  // area; two-page gray in td packs two planes.
  if (px.G16 && (px.ST7 || px.gsch) && vertical) return std::nullopt;
  if (px.G42 && down && s.scan.td) return std::nullopt;
  if (vertical && (mode == PixelMode::Gray16Horizontal || mode == PixelMode::Gray16Slices)) {
    return std::nullopt;
  }
  switch (mode) {
    case PixelMode::Monochrome:
    case PixelMode::MonochromeInverted:
      if (!px.bw8) return std::nullopt;
      return Kind::Mono;
    case PixelMode::Gray4:
    case PixelMode::Gray4TwoPages:
      return Kind::Levels4;
    case PixelMode::Gray16Vertical:
    case PixelMode::Gray16Horizontal:
    case PixelMode::Gray16Slices:
    case PixelMode::Colors16:
      return Kind::Nibbles;
    case PixelMode::Colors8:
      return Kind::Colors8;
    case PixelMode::Gray256:
    case PixelMode::Colors256:
    case PixelMode::Colors256OwnPalette:
      return Kind::Index;
    case PixelMode::Gray32Packed:
    case PixelMode::Gray32RUnpacked:
    case PixelMode::Gray32LUnpacked:
      return Kind::Levels32;
    case PixelMode::Colors4096Packed:
    case PixelMode::Colors4096:
      return Kind::C4096;
    case PixelMode::Colors65536:
      return Kind::C65536;
    case PixelMode::Colors262kPacked:
    case PixelMode::Colors262k:
      return Kind::C262k;
    case PixelMode::Colors16MPacked:
    case PixelMode::Colors16M:
      return Kind::C16M;
  }
  return std::nullopt;
}

}  // namespace

std::optional<bool> FastWalkArea(const WalkRequest& request, const ImagePixelSource& image,
                                 DataTextWriter& writer, const ReorderProgram* reorder,
                                 ConversionCursor& cursor) {
  const settings::Settings& s = request.settings;
  const std::optional<ScanDirection> direction = settings::CurrentScanDirection(s);
  if (!direction || request.fontMode || request.stages.compression != nullptr ||
      writer.DrawsPictures() || cursor.Aborted) {
    return std::nullopt;
  }
  const PixelMode mode = settings::CurrentPixelMode(s).value_or(PixelMode::Monochrome);
  const std::optional<Kind> kind = KindOf(s, mode, *direction);
  if (!kind) return std::nullopt;
  if (*kind != Kind::Mono && *kind != Kind::C16M && request.stages.colors == nullptr) {
    return std::nullopt;
  }

  // The cursor as WalkArea sets it up; it is given back unchanged when the walk is not
  // covered after all.
  const ConversionCursor before = cursor;
  ConversionCursor& c = cursor;
  const double p = StartWalk(request, direction, c);
  FastWalk walk(request, image, writer, reorder, c, mode, *kind, p);
  if (!walk.Plan(*direction)) {
    cursor = before;
    return std::nullopt;
  }
  return walk.Run();
}

}  // namespace vt::convert
