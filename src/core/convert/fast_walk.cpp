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
enum class Packing { Mono, Levels4, Nibbles, Colors8, Index, Levels32, C4096, C65536, C262k, C16M };

/// Pixels one packer call of `packing` reads along its axis.
int PixelsPerCall(Packing packing) {
  switch (packing) {
    case Packing::Mono:
    case Packing::Colors8:
      return 8;
    case Packing::Levels4:
      return 4;
    case Packing::Nibbles:
      return 2;
    default:
      return 1;
  }
}

/// Whether one packer call of `packing` reads one pixel.
constexpr bool OnePixel(Packing packing) {
  return packing == Packing::Index || packing == Packing::Levels32 || packing == Packing::C4096 ||
         packing == Packing::C65536 || packing == Packing::C262k || packing == Packing::C16M;
}

/// The rectangle of the pixels a walk reads, as the walk plans it (all bounds inclusive).
struct Reach {
  int minX = 0, maxX = -1, minY = 0, maxY = -1;
  bool any = false;
  void Add(int left, int right, int top, int bottom) {
    if (left > right || top > bottom) return;
    if (!any) {
      minX = left, maxX = right, minY = top, maxY = bottom;
      any = true;
      return;
    }
    minX = std::min(minX, left), maxX = std::max(maxX, right);
    minY = std::min(minY, top), maxY = std::max(maxY, bottom);
  }
};

/// The canvas colour 0x00BBGGRR of a pixel.
std::uint32_t ColorOf(QRgb pixel) {
  return ((pixel >> 16) & 0xFFu) | (pixel & 0xFF00u) | ((pixel & 0xFFu) << 16);
}

/// The three bytes of a 262k colour of table index `index` (or of a colour outside the
/// table, its own value), first byte highest: the word exchange, then 6-bit or 8-bit
/// fields, first and last exchanged with rgb2.
std::uint32_t Word262k(int index, bool unpacked, bool rgb2) {
  const std::int64_t word = Reorder262kOutput(index);
  int first, middle, last;
  if (unpacked) {
    first = int((word >> 12) & 63), middle = int((word >> 6) & 63), last = int(word & 63);
  } else {
    first = int((word >> 16) & 255), middle = int((word >> 8) & 255), last = int(word & 255);
  }
  if (rgb2) std::swap(first, last);
  return std::uint32_t(first << 16 | middle << 8 | last);
}

/// Stores the low `Bytes` bytes of `word`, highest first; three bytes go as one store of
/// four (the buffer has room past its end), of which the fourth is written over next.
template <int Bytes>
[[gnu::always_inline]] inline Octet* PutWord(Octet* out, std::uint32_t word) {
  if constexpr (std::endian::native == std::endian::little && Bytes >= 2) {
    const std::uint32_t bigEndian = __builtin_bswap32(word << (8 * (4 - Bytes)));
    std::memcpy(out, &bigEndian, Bytes == 2 ? 2 : 4);
    return out + Bytes;
  } else {
    for (int shift = 8 * (Bytes - 1); shift >= 0; shift -= 8) *out++ = Octet(word >> shift);
    return out;
  }
}

#if defined(__SSE2__)
constexpr bool kLoadsReversed = true;
#else
constexpr bool kLoadsReversed = false;
#endif
/// Bit i set when pixel i along StepX from `from` is black (its colour, alpha aside, is 0);
/// read leftward with SSE2 (kLoadsReversed), bit 7 - i.
template <int StepX>
[[gnu::always_inline]] inline int BlackMask(const QRgb* from) {
#if defined(__SSE2__)
  const __m128i colour = _mm_set1_epi32(0xFFFFFF);
  const __m128i zero = _mm_setzero_si128();
  const QRgb* lowest = StepX > 0 ? from : from - 7;
  const __m128i firstFour = _mm_cmpeq_epi32(
      _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(lowest)), colour), zero);
  const __m128i lastFour = _mm_cmpeq_epi32(
      _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(lowest + 4)), colour), zero);
  return _mm_movemask_ps(_mm_castsi128_ps(firstFour)) |
         (_mm_movemask_ps(_mm_castsi128_ps(lastFour)) << 4);
#else
  int mask = 0;
  for (int i = 0; i < 8; ++i) mask |= int((from[StepX * i] & 0xFFFFFFu) == 0) << i;
  return mask;
#endif
}

/// What each channel level of a grid palette gives to the output word of a pixel: the bits
/// of its index field after the packing's word exchange and byte order (and, but in packed
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

/// The three channel tables of WordTables by their addresses: a copy in the loop's locals
/// keeps them in registers.
struct ChannelLookup {
  explicit ChannelLookup(const WordTables& tables)
      : red(tables.red.data()), green(tables.green.data()), blue(tables.blue.data()) {}
  /// The word of a pixel; kMissing set when a channel is off the grid.
  [[gnu::always_inline]] std::uint32_t WordOf(QRgb pixel) const {
    return red[(pixel >> 16) & 0xFF] | green[(pixel >> 8) & 0xFF] | blue[pixel & 0xFF];
  }
  const std::uint32_t* red;
  const std::uint32_t* green;
  const std::uint32_t* blue;
};

/// One walk in progress. Invariant: Plan has found every pixel the walk reads inside the
/// picture and inside the bounds of monochrome reading.
class FastWalk {
 public:
  FastWalk(const WalkRequest& request, const ImagePixelSource& image, DataTextWriter& writer,
           const ReorderProgram* reorder, ConversionCursor& cursor, Packing packing,
           double pixelsPerByte)
      : settings_(request.settings),
        pixel_(request.settings.pixel),
        request_(request),
        writer_(writer),
        cursor_(cursor),
        packing_(packing),
        pixelsPerCall_(PixelsPerCall(packing)),
        pixelsPerByte_(pixelsPerByte),
        colors_(request.stages.colors),
        image_(image),
        width_(image.Width()),
        height_(image.Height()),
        rowStride_(image.Width() > 0 && image.Height() > 1 ? image.Row(1) - image.Row(0) : 0) {
    // Every value ends as the packers end it: reversed outside monochrome when MSB comes
    // last, then rearranged with dore. On a byte both come down to a table, which moves bits
    // (a swap or a byte exchange copies bits, none sets a bit of its own).
    const bool reverse = packing != Packing::Mono && !settings_.scan.MSBF;
    for (int value = 0; value < 256; ++value) {
      int finished = reverse ? ReverseByte(value) : value;
      if (settings_.pixel.dore && reorder) finished = reorder->Apply(finished);
      finalBytes_[static_cast<std::size_t>(value)] = static_cast<Octet>(finished & 0xFF);
    }
    if (colors_ != nullptr) lastIndex_ = colors_->Find(ColorOf(lastPixel_));
  }

  /// Plans the walk of `direction`; false when a read would fall outside the picture or past
  /// a bound of monochrome reading.
  bool Plan(ScanDirection direction) {
    direction_ = direction;
    Reach reach;
    const int perCall = pixelsPerCall_;
    const int left = cursor_.AreaLeft, right = cursor_.AreaRight;
    const int top = cursor_.AreaTop, bottom = cursor_.AreaBottom;
    switch (direction) {
      case ScanDirection::td: {
        DownPages(pages_, step_);
        int pageTop = top;
        for (int page = 0; page < pages_; ++page) {
          reach.Add(left, right - 1, pageTop, pageTop + perCall - 1);
          pageTop += step_;
          if (pageTop >= bottom) break;
        }
        break;
      }
      case ScanDirection::tu: {
        pages_ = Trunc(cursor_.AreaHeight / pixelsPerByte_);
        step_ = Trunc(pixelsPerByte_);
        int pageBottom = bottom - 1;
        for (int page = pixel_.C8 ? 2 : 1; page <= pages_ && pageBottom > -1; ++page) {
          reach.Add(left, right - 1, pageBottom - perCall + 1, pageBottom);
          pageBottom -= step_;
        }
        break;
      }
      case ScanDirection::tda:
      case ScanDirection::tua: {
        pages_ = AllPagesPerColumn();
        if (cursor_.AreaWidth > 0 && pages_ > 0) {
          const int span = pages_ * perCall;
          if (direction == ScanDirection::tda) {
            reach.Add(left, right - 1, top, top + span - 1);
          } else {
            reach.Add(left, right - 1, bottom - span, bottom - 1);
          }
        }
        break;
      }
      case ScanDirection::tr:
      case ScanDirection::tl: {
        const bool rightward = direction == ScanDirection::tr;
        pages_ = HorizontalBytesPerRow(rightward, false);
        if (pages_ > 0) {
          const int span = pages_ * perCall;
          if (rightward) {
            reach.Add(left, left + span - 1, top, bottom - 1);
          } else {
            reach.Add(right - span, right - 1, top, bottom - 1);
          }
        }
        break;
      }
      case ScanDirection::tra:
      case ScanDirection::tla: {
        const bool rightward = direction == ScanDirection::tra;
        pages_ = HorizontalBytesPerRow(rightward, true);
        step_ = ByteColumnStep(rightward);
        if (pages_ > 0) {
          const int span = (pages_ - 1) * step_ + perCall;
          if (rightward) {
            reach.Add(left, left + span - 1, top, bottom - 1);
          } else {
            reach.Add(right - span, right - 1, top, bottom - 1);
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
    if (packing_ == Packing::Mono) {
      const bool vertical = direction == ScanDirection::td || direction == ScanDirection::tu ||
                            direction == ScanDirection::tda || direction == ScanDirection::tua;
      if (vertical && reach.maxY > cursor_.LimitY) return false;
      if ((direction == ScanDirection::tr || direction == ScanDirection::tra) &&
          reach.maxX > cursor_.LimitX) {
        return false;
      }
    }
    return true;
  }

  /// Walks as planned; false when Escape or a colour not found stopped the walk.
  bool Run() {
    return request_.keyPoll.CanReportPress() ? RunPolling<true>() : RunPolling<false>();
  }

 private:
  static constexpr std::size_t kFlushAt = 4096;

  template <bool Polls>
  bool RunPolling() {
    bool completed = true;
    switch (packing_) {
      case Packing::Mono:
        completed = RunAs<Packing::Mono, Polls>();
        break;
      case Packing::Levels4:
        completed = RunAs<Packing::Levels4, Polls>();
        break;
      case Packing::Nibbles:
        completed = RunAs<Packing::Nibbles, Polls>();
        break;
      case Packing::Colors8:
        completed = RunAs<Packing::Colors8, Polls>();
        break;
      case Packing::Index:
        completed = RunAs<Packing::Index, Polls>();
        break;
      case Packing::Levels32:
        completed = RunAs<Packing::Levels32, Polls>();
        break;
      case Packing::C4096:
        completed = RunAs<Packing::C4096, Polls>();
        break;
      case Packing::C65536:
        completed = RunAs<Packing::C65536, Polls>();
        break;
      case Packing::C262k:
        completed = RunAs<Packing::C262k, Polls>();
        break;
      case Packing::C16M:
        completed = RunAs<Packing::C16M, Polls>();
        break;
    }
    Flush();
    cursor_.ByteCount = static_cast<double>(values_) * ValueStep();
    return completed;
  }

  // ---- The counts, as the walkers take them ----------------------------------------------

  void DownPages(int& pages, int& step) const {
    const double perByte = pixel_.G42 ? 8.0 : pixelsPerByte_;
    pages = Trunc(cursor_.AreaHeight / perByte);
    if (pixel_.C8) {
      pages = cursor_.AreaHeight / 8;
    } else if (pixel_.G32) {
      pages = cursor_.AreaHeight;
    }
    step = Trunc(perByte);
  }

  int AllPagesPerColumn() const {
    const int height = cursor_.AreaHeight;
    if (pixel_.C8) return height / 8;
    if (pixel_.G16) return height / 2;
    if (pixel_.G4 || pixel_.G42) return height / 4;
    if (pixel_.G32) return height;
    return Trunc(height / pixelsPerByte_);
  }

  int HorizontalBytesPerRow(bool rightward, bool byteColumns) const {
    const int width = cursor_.AreaWidth;
    if (pixel_.C8) return width / 8;
    if (pixel_.G16) return width / 2;
    if (pixel_.G32) return byteColumns && !rightward && pixel_.PM ? width / 2 : width;
    if (byteColumns && (pixel_.G4 || pixel_.G42)) return width / 4;
    return Trunc(width / pixelsPerByte_);
  }

  int ByteColumnStep(bool rightward) const {
    if (packing_ == Packing::Mono || pixel_.C8) return 8;
    if (pixel_.G16) return 2;
    if (pixel_.G32) return !rightward && pixel_.PM ? 2 : 1;
    if (pixel_.G4 || pixel_.G42) return 4;
    if (pixel_.C16) return 2;
    return 1;
  }

  /// ByteCount's rise for each value of the mode.
  double ValueStep() const {
    switch (packing_) {
      case Packing::C4096:
        return pixel_.PM ? 1.5 : 2.0;
      case Packing::C65536:
        return 2.0;
      case Packing::C262k:
        return 3.0;
      case Packing::C16M:
        return pixel_.PM ? 3.0 : 4.0;
      default:
        return 1.0;
    }
  }

  // ---- The walks ---------------------------------------------------------------------------

  /// The walk of the planned direction, with the packer of `Kind`.
  template <Packing Kind, bool Polls>
  bool RunAs() {
    switch (direction_) {
      case ScanDirection::td:
        return Down<Kind, Polls>();
      case ScanDirection::tu:
        return Up<Kind, Polls>();
      case ScanDirection::tda:
        return AllColumns<Kind, Polls, 0, 1>(settings_.scan.CORN1);
      case ScanDirection::tua:
        return AllColumns<Kind, Polls, 0, -1>(settings_.scan.CORN4);
      case ScanDirection::tr:
        return Rows<Kind, Polls, 1>(settings_.scan.CORN1);
      case ScanDirection::tl:
        return Rows<Kind, Polls, -1>(settings_.scan.CORN2);
      case ScanDirection::tra:
        return ByteColumns<Kind, Polls, 1>(settings_.scan.CORN1);
      case ScanDirection::tla:
        return ByteColumns<Kind, Polls, -1>(settings_.scan.CORN2);
    }
    return true;
  }

  void GroupStart(Octet*& out) {
    if (!settings_.block.ColRx) return;
    out_ = out;
    Flush();
    writer_.GroupStart();
    out = out_;
  }

  // The loops keep the output place, the bounds and the picture's rows in locals: the writer
  // is called between bytes, and members would be read again after each call.

  template <Packing Kind, bool Polls>
  bool Down() {
    cursor_.PagesPerColumn = pages_;
    cursor_.BytesPerRow = cursor_.AreaWidth;
    const bool leftToRight = settings_.scan.CORN1;
    const int left = cursor_.AreaLeft, right = cursor_.AreaRight, bottom = cursor_.AreaBottom;
    const int firstX = leftToRight ? left : right - 1;
    const int stepX = leftToRight ? 1 : -1;
    const int pages = pages_, step = step_;
    Octet* out = out_;
    int pageTop = cursor_.AreaTop;
    for (int page = 0; page < pages; ++page) {
      GroupStart(out);
      const QRgb* row = image_.Row(pageTop);
      for (int x = firstX; x >= left && x < right; x += stepX) {
        if (!PackCall<Kind, Polls, 0, 1>(row + x, out)) return Stop(out);
      }
      pageTop += step;
      if (pageTop >= bottom) break;
    }
    out_ = out;
    return true;
  }

  template <Packing Kind, bool Polls>
  bool Up() {
    cursor_.PagesPerColumn = pages_;
    cursor_.BytesPerRow = cursor_.AreaWidth;
    const bool leftToRight = settings_.scan.CORN4;
    const int left = cursor_.AreaLeft, right = cursor_.AreaRight;
    const int firstX = leftToRight ? left : right - 1;
    const int stepX = leftToRight ? 1 : -1;
    const int pages = pages_, step = step_;
    Octet* out = out_;
    int pageBottom = cursor_.AreaBottom - 1;
    for (int page = pixel_.C8 ? 2 : 1; page <= pages && pageBottom > -1; ++page) {
      GroupStart(out);
      const QRgb* row = image_.Row(pageBottom);
      for (int x = firstX; x >= left && x < right; x += stepX) {
        if (!PackCall<Kind, Polls, 0, -1>(row + x, out)) return Stop(out);
      }
      pageBottom -= step;
    }
    out_ = out;
    return true;
  }

  template <Packing Kind, bool Polls, int StepX, int StepY>
  bool AllColumns(bool leftToRight) {
    cursor_.PagesPerColumn = pages_;
    cursor_.BytesPerRow = cursor_.AreaWidth;
    const int stepX = leftToRight ? 1 : -1;
    const int width = cursor_.AreaWidth, pages = pages_;
    const std::ptrdiff_t pageStep = std::ptrdiff_t(StepY) * pixelsPerCall_ * rowStride_;
    Octet* out = out_;
    int x = leftToRight ? cursor_.AreaLeft : cursor_.AreaRight - 1;
    const QRgb* firstRow = image_.Row(StepY > 0 ? cursor_.AreaTop : cursor_.AreaBottom - 1);
    for (int column = 0; column < width; ++column, x += stepX) {
      GroupStart(out);
      const QRgb* pixel = firstRow + x;
      for (int page = 0; page < pages; ++page, pixel += pageStep) {
        if (!PackCall<Kind, Polls, StepX, StepY>(pixel, out)) return Stop(out);
      }
    }
    out_ = out;
    return true;
  }

  template <Packing Kind, bool Polls, int StepX>
  bool Rows(bool fromTop) {
    if constexpr (!Polls && Kind == Packing::C16M) return ChannelRows<StepX>(fromTop);
    if constexpr (!Polls && OnePixel(Kind)) return IndexRows<Kind, StepX>(fromTop);
    if constexpr (!Polls && Kind == Packing::Mono) return MonoRows<StepX>(fromTop);
    cursor_.BytesPerRow = pages_;
    cursor_.PagesPerColumn = cursor_.AreaHeight;
    const int top = cursor_.AreaTop, bottom = cursor_.AreaBottom;
    const int firstY = fromTop ? top : bottom - 1;
    const int stepY = fromTop ? 1 : -1;
    const int calls = pages_, perCall = pixelsPerCall_;
    const int firstX = StepX > 0 ? cursor_.AreaLeft : cursor_.AreaRight - 1;
    Octet* out = out_;
    for (int y = firstY; y >= top && y < bottom; y += stepY) {
      GroupStart(out);
      const QRgb* pixel = image_.Row(y) + firstX;
      for (int call = 0; call < calls; ++call, pixel += StepX * perCall) {
        if (!PackCall<Kind, Polls, StepX, 0>(pixel, out)) return Stop(out);
      }
    }
    out_ = out;
    return true;
  }

  template <Packing Kind, bool Polls, int StepX>
  bool ByteColumns(bool fromTop) {
    cursor_.BytesPerRow = pages_;
    cursor_.PagesPerColumn = cursor_.AreaHeight;
    const int top = cursor_.AreaTop, bottom = cursor_.AreaBottom;
    const int firstY = fromTop ? top : bottom - 1;
    const int stepY = fromTop ? 1 : -1;
    const int columns = pages_, step = step_;
    const int left = cursor_.AreaLeft, right = cursor_.AreaRight;
    Octet* out = out_;
    for (int column = 0; column < columns; ++column) {
      const int x = StepX > 0 ? left + column * step : right - 1 - column * step;
      GroupStart(out);
      for (int y = firstY; y >= top && y < bottom; y += stepY) {
        if (!PackCall<Kind, Polls, StepX, 0>(image_.Row(y) + x, out)) return Stop(out);
      }
    }
    out_ = out;
    return true;
  }

  bool Stop(Octet* out) {
    out_ = out;
    return false;
  }

  // ---- Whole rows, when Escape is not polled -----------------------------------------------

  /// Walks the rows of the area from the top or the bottom, each in stretches of at most 256
  /// packer calls of `pixelsPerCall` pixels and at most `bytesPerCall` bytes:
  /// `pack(from, calls, out)` packs `calls` calls from pixel `from` into `out` and returns the
  /// new end, or null after it stopped the walk (Stop). False when it stopped.
  template <int StepX, typename Pack>
  [[gnu::always_inline]] bool RowStretches(bool fromTop, int pixelsPerCall, int bytesPerCall,
                                           Pack&& pack) {
    constexpr int kStretch = 256;
    cursor_.BytesPerRow = pages_;
    cursor_.PagesPerColumn = cursor_.AreaHeight;
    const int top = cursor_.AreaTop, bottom = cursor_.AreaBottom;
    const int firstY = fromTop ? top : bottom - 1;
    const int stepY = fromTop ? 1 : -1;
    const int callsPerRow = pages_;
    const int firstX = StepX > 0 ? cursor_.AreaLeft : cursor_.AreaRight - 1;
    const Octet* const flushAt = buffer_.data() + kFlushAt - bytesPerCall * kStretch;
    Octet* out = out_;
    for (int y = firstY; y >= top && y < bottom; y += stepY) {
      GroupStart(out);
      const QRgb* from = image_.Row(y) + firstX;
      for (int done = 0; done < callsPerRow;) {
        const int calls = std::min(kStretch, callsPerRow - done);
        out = pack(from, calls, out);
        if (out == nullptr) return false;
        from += StepX * pixelsPerCall * calls;
        done += calls;
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

  /// Rows of monochrome bytes: each byte's eight pixels are tested together (with SSE2 four
  /// at a time) and their bits put in order through a table.
  template <int StepX>
  bool MonoRows(bool fromTop) {
    // Bit i of the mask is the pixel i read; the byte takes it at 7 - i (MSB first) or i, and
    // PPB keeps the top bits of a horizontal byte.
    static constexpr int kKeptBits[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xF0, 0xF8, 0xFC, 0xFE};
    const int ppb = settings_.pixel.PPB;
    const int keep = ppb >= 4 && ppb <= 7 ? kKeptBits[ppb] : 0xFF;
    const bool msbFirst = settings_.scan.MSBF;
    std::array<Octet, 256> byteOfMask{};
    for (int mask = 0; mask < 256; ++mask) {
      const int pixels = kLoadsReversed && StepX < 0 ? ReverseByte(mask) : mask;
      const int value = (msbFirst ? ReverseByte(pixels) : pixels) & keep;
      byteOfMask[std::size_t(mask)] = finalBytes_[std::size_t(value)];
    }
    return RowStretches<StepX>(fromTop, 8, 1, [&](const QRgb* from, int calls, Octet* out) {
      for (int call = 0; call < calls; ++call, from += StepX * 8) {
        *out++ = byteOfMask[std::size_t(BlackMask<StepX>(from))];
      }
      return out;
    });
  }

  /// Rows of one-pixel calls: each stretch of a row is looked up in a loop of its own, then
  /// packed (PackStretch), with the settings read into locals once. The bytes, and the stop at
  /// the first colour not found, are those of PackCall pixel by pixel. Grid palettes take
  /// their word tables instead (GridWordRows, GridPairRows).
  template <Packing Kind, int StepX>
  bool IndexRows(bool fromTop) {
    if constexpr (Kind == Packing::Index || Kind == Packing::C4096 || Kind == Packing::C65536) {
      if (std::optional<WordTables> words = GridWords<Kind>()) {
        if (words->bytes == 0) return GridPairRows<StepX>(fromTop, *words);
        return words->bytes == 1 ? GridWordRows<Kind, StepX, 1>(fromTop, *words)
                                 : GridWordRows<Kind, StepX, 2>(fromTop, *words);
      }
    } else if constexpr (Kind == Packing::C262k) {
      if (std::optional<WordTables> words = GridWords<Kind>()) {
        return GridWordRows<Kind, StepX, 3>(fromTop, *words);
      }
    }
    // Gray tables are read by level, any other table through its search.
    std::array<int, 256>& found = found_;
    const ColorSearch* const colors = colors_;
    const int* const grays = colors != nullptr ? colors->Indexer().Grays() : nullptr;
    std::array<int, 256>& grayIndex = grayIndex_;
    if (grays) {
      // Black is gray level 0: the black slot answers there when the table lacks it.
      std::copy(grays, grays + 256, grayIndex.begin());
      if (grayIndex[0] < 0) grayIndex[0] = colors->BlackSlot();
    }
    // 262k never stops: a colour off the table goes out as itself.
    constexpr bool kStops = Kind != Packing::C262k;
    QRgb lastPixel = lastPixel_;
    int lastIndex = lastIndex_;
    // At most 3 bytes a pixel.
    const bool completed =
        RowStretches<StepX>(fromTop, 1, 3, [&](const QRgb* from, int calls, Octet* out) {
          int stop = calls;
          // Each loop ends at the first colour the table lacks, where the walk stops.
          if (grays) {
            for (int i = 0; i < calls; ++i) {
              const QRgb pixel = from[StepX * i];
              const unsigned level = pixel & 0xFF;
              const bool gray = (pixel & 0xFFFFFFu) == level * 0x010101u;
              const int index = gray ? grayIndex[level] : -1;
              found[std::size_t(i)] = index;
              if (kStops && index < 0) {
                stop = i;
                break;
              }
            }
          } else {
            for (int i = 0; i < calls; ++i) {
              const QRgb pixel = from[StepX * i];
              if (pixel != lastPixel) {
                lastPixel = pixel;
                lastIndex = colors->Find(ColorOf(pixel));
              }
              found[std::size_t(i)] = lastIndex;
              if (kStops && lastIndex < 0) {
                stop = i;
                break;
              }
            }
          }
          out = PackStretch<Kind, StepX>(from, found.data(), stop, out);
          if (stop < calls) {
            colors_->notFound = std::int64_t(ColorOf(from[StepX * stop]));
            cursor_.Aborted = true;
            Stop(out);
            return static_cast<Octet*>(nullptr);
          }
          return out;
        });
    lastPixel_ = lastPixel, lastIndex_ = lastIndex;
    return completed;
  }

  /// The word tables of `Kind` over a grid palette, for the packings that are a fixed exchange
  /// of the index bits: 256 colours, unpacked 4096 colours, 65536 colours, 262k colours. None
  /// otherwise (no grid, packed phases, a black slot outside 262k).
  template <Packing Kind>
  std::optional<WordTables> GridWords() const {
    if (colors_ == nullptr || (Kind != Packing::C262k && colors_->BlackSlot() >= 0)) {
      return std::nullopt;
    }
    const std::optional<canvas::ColorIndexer::GridTables> grid = colors_->Indexer().Grid();
    if (!grid) return std::nullopt;
    const bool pairs = Kind == Packing::C4096 && pixel_.PM;  // two exchanged words in three bytes
    const bool rgb2 = pixel_.rgb2, swrg = pixel_.SWRG, unpacked = pixel_.C18u;
    auto wordOf = [&](int index) -> std::uint32_t {
      if constexpr (Kind == Packing::C262k) {
        return Word262k(index, unpacked, rgb2);
      } else if constexpr (Kind == Packing::Index) {
        return std::uint32_t(Reorder256Output(index)) & 0xFF;
      } else if constexpr (Kind == Packing::C4096) {
        const int word = Reorder4096Output(index);
        if (pairs) return std::uint32_t(word);
        const int high = (word >> 8) & 15, low = word & 255;
        return std::uint32_t(rgb2 ? (low << 8) | high : (high << 8) | low);
      } else {
        const int word = Reorder65kOutput(index);
        if (!swrg) return std::uint32_t(word) & 0xFFFF;
        // Red and blue fields trade places, green stays.
        return std::uint32_t(((word << 11) & 0xF800) | (word & 0x7E0) | ((word >> 11) & 0x1F));
      }
    };
    WordTables tables;
    tables.bytes = pairs ? 0 : Kind == Packing::Index ? 1 : Kind == Packing::C262k ? 3 : 2;
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
          const std::size_t lowerBits = built & (built - 1);
          if (lowerBits != 0) {
            byPosition[built] = byPosition[lowerBits] | byPosition[built ^ lowerBits];
          } else {
            const std::uint32_t word = wordOf(int(built) << shift);
            byPosition[built] = pairs ? word : MapBytes(word);
          }
        }
        table[level] = byPosition[position];
      }
    };
    fill(tables.red, grid->red, 0);
    fill(tables.green, grid->green, grid->shiftGreen);
    fill(tables.blue, grid->blue, grid->shiftBlue);
    return tables;
  }

  /// Rows of one-pixel calls over a grid palette whose word is the OR of its channels' parts
  /// (GridWords): a table look-up a channel, the word's bytes stored as they stand. A colour
  /// off the grid stops the walk as the packers stop, but in 262k colours, where it goes out
  /// as its own value (black as the black slot).
  template <Packing Kind, int StepX, int Bytes>
  bool GridWordRows(bool fromTop, const WordTables& tables) {
    const ChannelLookup channels(tables);
    return RowStretches<StepX>(fromTop, 1, Bytes, [&](const QRgb* from, int calls, Octet* out) {
      // The stretch goes out unchecked; only when a colour was off the grid is it done again,
      // pixel by pixel.
      std::uint32_t seen = 0;
      Octet* at = out;
      const QRgb* pixel = from;
      for (int i = 0; i < calls; ++i, pixel += StepX) {
        const std::uint32_t word = channels.WordOf(*pixel);
        seen |= word;
        at = PutWord<Bytes>(at, word);
      }
      if (!(seen & WordTables::kMissing)) [[likely]]
        return at;
      pixel = from;
      for (int i = 0; i < calls; ++i, pixel += StepX) {
        std::uint32_t word = channels.WordOf(*pixel);
        if (word & WordTables::kMissing) {
          if constexpr (Kind == Packing::C262k) {
            const int index = colors_->Find(ColorOf(*pixel));
            const int value = index >= 0 ? index : int(ColorOf(*pixel));
            word = MapBytes(Word262k(value, pixel_.C18u, pixel_.rgb2));
          } else {
            colors_->notFound = std::int64_t(ColorOf(*pixel));
            cursor_.Aborted = true;
            Stop(out);
            return static_cast<Octet*>(nullptr);
          }
        }
        out = PutWord<Bytes>(out, word);
      }
      return out;
    });
  }

  /// The three low bytes of `word` each through the final table.
  std::uint32_t MapBytes(std::uint32_t word) const {
    std::uint32_t mapped = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      mapped |= std::uint32_t(finalBytes_[(word >> shift) & 0xFF]) << shift;
    }
    return mapped | (word & 0xFF000000u);
  }

  /// Rows of 16M colours: each byte of the output is one channel of the pixel (or a constant
  /// 0), so a table a channel, with the final table in it, gives the pixel's bytes as one word:
  /// four bytes unpacked (0 first, or last with RGBA), else three.
  template <int StepX>
  bool ChannelRows(bool fromTop) {
    const bool unpacked = !pixel_.PM, rgba = pixel_.RGBA, rgb2 = pixel_.rgb2;
    const bool zeroFirst = unpacked && !rgba, zeroLast = unpacked && rgba && !rgb2;
    // Where each byte stands in the word, counted from its lowest byte.
    const int bytes = zeroFirst || zeroLast ? 4 : 3;
    const int lastAt = zeroLast ? 1 : 0;
    const int greenAt = lastAt + 1, firstAt = lastAt + 2;
    // rgb2 puts blue first and red last.
    const int redAt = rgb2 ? lastAt : firstAt, blueAt = rgb2 ? firstAt : lastAt;
    const std::uint32_t zero = std::uint32_t(finalBytes_[0]) << (zeroFirst ? 24 : 0);
    WordTables tables;
    tables.bytes = bytes;
    for (std::size_t level = 0; level < 256; ++level) {
      const std::uint32_t finalByte = std::uint32_t(finalBytes_[level]);
      tables.red[level] = finalByte << (8 * redAt);
      tables.green[level] = (finalByte << (8 * greenAt)) | (zeroFirst || zeroLast ? zero : 0);
      tables.blue[level] = finalByte << (8 * blueAt);
    }
    const ChannelLookup channels(tables);
    auto rows = [&]<int Bytes>() {
      return RowStretches<StepX>(fromTop, 1, Bytes, [&](const QRgb* from, int calls, Octet* out) {
        for (int i = 0; i < calls; ++i, from += StepX)
          out = PutWord<Bytes>(out, channels.WordOf(*from));
        return out;
      });
    };
    return bytes == 4 ? rows.template operator()<4>() : rows.template operator()<3>();
  }

  /// Rows of packed 4096 colours over a grid palette: each pixel's exchanged word from the
  /// channel tables (GridWords); phase 1 holds a word, phase 2 writes both in three bytes. The
  /// phase goes on across rows, and a colour off the grid stops the walk as the packer stops.
  template <int StepX>
  bool GridPairRows(bool fromTop, const WordTables& tables) {
    const ChannelLookup channels(tables);
    int phase = phase_, held = held_;
    const bool completed =
        RowStretches<StepX>(fromTop, 1, 2, [&](const QRgb* from, int calls, Octet* out) {
          for (int i = 0; i < calls; ++i, from += StepX) {
            const std::uint32_t word = channels.WordOf(*from);
            if (word & WordTables::kMissing) [[unlikely]] {
              colors_->notFound = std::int64_t(ColorOf(*from));
              cursor_.Aborted = true;
              Stop(out);
              return static_cast<Octet*>(nullptr);
            }
            if (phase != 1) {
              phase = 1, held = int(word);
              continue;
            }
            phase = 2;
            PutWordPair(out, held, int(word));
          }
          return out;
        });
    phase_ = phase, held_ = held;
    return completed;
  }

  // ---- Stretches of one-pixel calls ---------------------------------------------------------

  /// Packs `calls` one-pixel calls from `from` (their table indexes in `found`) into `out`.
  template <Packing Kind, int StepX>
  [[gnu::always_inline]] Octet* PackStretch(const QRgb* from, const int* found, int calls,
                                            Octet* out) {
    if constexpr (Kind == Packing::Index) {
      const Octet* const finalBytes = finalBytes_.data();
      for (int i = 0; i < calls; ++i) *out++ = finalBytes[Reorder256Output(found[i]) & 0xFF];
      return out;
    } else if constexpr (Kind == Packing::Levels32) {
      return StretchLevels32(found, calls, out);
    } else if constexpr (Kind == Packing::C4096) {
      return StretchColors4096(found, calls, out);
    } else if constexpr (Kind == Packing::C65536) {
      for (int i = 0; i < calls; ++i) PutColor65536(out, found[i]);
      return out;
    } else if constexpr (Kind == Packing::C262k) {
      for (int i = 0; i < calls; ++i) {
        // A colour outside the table goes out as its own value.
        const int index = found[i] >= 0 ? found[i] : int(ColorOf(from[StepX * i]));
        const std::uint32_t word = Word262k(index, pixel_.C18u, pixel_.rgb2);
        Put(out, int(word >> 16));
        Put(out, int(word >> 8));
        Put(out, int(word));
      }
      return out;
    } else {
      return out;
    }
  }

  /// 32 gray levels: a byte a level unpacked; packed, three 5-bit levels in two bytes.
  [[gnu::always_inline]] Octet* StretchLevels32(const int* found, int calls, Octet* out) {
    // The final table's address in a local, so that the loops keep it in a register.
    const Octet* const finalBytes = finalBytes_.data();
    auto put = [&](int value) { *out++ = finalBytes[value & 0xFF]; };
    if (!pixel_.PM) {
      const int scale = pixel_.GRL32 ? 8 : 1;
      for (int i = 0; i < calls; ++i) put(found[i] * scale);
      return out;
    }
    // Phase 1 holds a level, phase 2 ends the first byte and holds the rest, phase 3 ends the
    // second byte.
    int phase = phase_, held = held_;
    auto step = [&](int level) {
      phase = phase % 3 + 1;
      if (phase == 1) {
        held = level;
      } else if (phase == 2) {
        put(held + (level >> 6));
        held = (level * 4) & 224;
      } else {
        put(held + (level >> 3));
      }
    };
    int i = 0;
    for (; i < calls && phase % 3 != 0; ++i) step(found[i] * 8);
    // Whole groups of three from phase 1 on; each leaves phase 3 and its middle level's rest
    // held.
    for (; i + 3 <= calls; i += 3) {
      const int first = found[i] * 8, middle = found[i + 1] * 8, last = found[i + 2] * 8;
      put(first + (middle >> 6));
      held = (middle * 4) & 224;
      put(held + (last >> 3));
      phase = 3;
    }
    for (; i < calls; ++i) step(found[i] * 8);
    phase_ = phase, held_ = held;
    return out;
  }

  /// 4096 colours: two bytes a word unpacked; packed, two 12-bit words in three bytes.
  [[gnu::always_inline]] Octet* StretchColors4096(const int* found, int calls, Octet* out) {
    if (!pixel_.PM) {
      for (int i = 0; i < calls; ++i) PutColor4096(out, found[i]);
      return out;
    }
    // Phase 1 holds a word, phase 2 writes both.
    int phase = phase_, held = held_;
    int i = 0;
    if (calls > 0 && phase == 1) {
      PutWordPair(out, held, Reorder4096Output(found[i++]));
      phase = 2;
    }
    for (; i + 2 <= calls; i += 2) {
      const int first = Reorder4096Output(found[i]), second = Reorder4096Output(found[i + 1]);
      PutWordPair(out, first, second);
      held = first, phase = 2;
    }
    if (i < calls) held = Reorder4096Output(found[i]), phase = 1;
    phase_ = phase, held_ = held;
    return out;
  }

  // ---- One packer call ----------------------------------------------------------------------

  /// Pixel `i` along (StepX, StepY) from `from`.
  template <int StepX, int StepY>
  [[gnu::always_inline]] QRgb PixelAlong(const QRgb* from, int i) const {
    return from[std::ptrdiff_t(StepX) * i + std::ptrdiff_t(StepY) * i * rowStride_];
  }

  /// The table index of the colour of `pixel`, or -1; the last pixel's answer is kept.
  [[gnu::always_inline]] int Lookup(QRgb pixel) {
    if (pixel != lastPixel_) {
      lastPixel_ = pixel;
      lastIndex_ = colors_->Find(ColorOf(pixel));
    }
    return lastIndex_;
  }

  /// The table index of the colour of `pixel`, or -1 after recording a colour not found.
  [[gnu::always_inline]] int Index(QRgb pixel) {
    const int index = Lookup(pixel);
    if (index < 0) [[unlikely]] {
      colors_->notFound = std::int64_t(ColorOf(pixel));
      cursor_.Aborted = true;
    }
    return index;
  }

  /// Puts `value` through the final table.
  [[gnu::always_inline]] void Put(Octet*& out, int value) const {
    *out++ = finalBytes_[static_cast<std::size_t>(value & 0xFF)];
  }
  /// Two exchanged 12-bit words of packed 4096 colours in three bytes.
  [[gnu::always_inline]] void PutWordPair(Octet*& out, int first, int second) const {
    Put(out, first >> 4);
    Put(out, ((first << 4) & 0xF0) + (second >> 8));
    Put(out, second & 255);
  }
  /// The two bytes of unpacked 4096 colours of table index `index`: the high nibble byte
  /// first, or last with rgb2.
  [[gnu::always_inline]] void PutColor4096(Octet*& out, int index) const {
    const int word = Reorder4096Output(index);
    const int high = (word >> 8) & 15, low = word & 255;
    Put(out, pixel_.rgb2 ? low : high);
    Put(out, pixel_.rgb2 ? high : low);
  }
  /// The two bytes of 65536 colours of table index `index`; SWRG trades the red and blue
  /// fields.
  [[gnu::always_inline]] void PutColor65536(Octet*& out, int index) const {
    const int word = Reorder65kOutput(index);
    if (pixel_.SWRG) {
      const int green = word & 0x7E0;
      Put(out, (((word << 11) & 0xF800) | green) >> 8);
      Put(out, ((word >> 11) & 0x1F) | (green & 255));
    } else {
      Put(out, word >> 8);
      Put(out, word & 255);
    }
  }

  void Flush() {
    const std::size_t count = static_cast<std::size_t>(out_ - buffer_.data());
    if (count == 0) return;
    writer_.EmitValues(reinterpret_cast<const std::uint8_t*>(buffer_.data()), count);
    values_ += static_cast<long long>(count);
    out_ = buffer_.data();
  }

  /// Polls Escape, then packs the byte (or bytes) of one packer call from `from`, the pixels
  /// read along (StepX, StepY). False when the walk must stop.
  template <Packing Kind, bool Polls, int StepX, int StepY>
  [[gnu::always_inline]] bool PackCall(const QRgb* from, Octet*& out) {
    if (Polls && request_.keyPoll.EscapePressed()) return false;
    if (!Pack<Kind, StepX, StepY>(from, out)) return false;
    if (out >= bufferEnd_) [[unlikely]] {
      out_ = out;
      Flush();
      out = out_;
    }
    return true;
  }

  /// The packer of `Kind` on the pixels from `from`; false after a colour not found.
  template <Packing Kind, int StepX, int StepY>
  [[gnu::always_inline]] bool Pack(const QRgb* from, Octet*& out) {
    if constexpr (Kind == Packing::Mono) {
      return PackMono<StepX, StepY>(from, out);
    } else if constexpr (Kind == Packing::Levels4) {
      return PackLevels4<StepX, StepY>(from, out);
    } else if constexpr (Kind == Packing::Nibbles) {
      return PackNibbles<StepX, StepY>(from, out);
    } else if constexpr (Kind == Packing::Colors8) {
      return PackColors8<StepX, StepY>(from, out);
    } else if constexpr (Kind == Packing::C16M) {
      return PackColors16M(*from, out);
    } else if constexpr (Kind == Packing::C262k) {
      return PackColors262k(*from, out);
    } else {
      // One pixel, one table index.
      const int index = Index(*from);
      if (index < 0) return false;
      if constexpr (Kind == Packing::Index) {
        Put(out, Reorder256Output(index));
      } else if constexpr (Kind == Packing::Levels32) {
        PackLevel32(index, out);
      } else if constexpr (Kind == Packing::C4096) {
        PackColor4096(index, out);
      } else if constexpr (Kind == Packing::C65536) {
        PutColor65536(out, index);
      }
      return true;
    }
  }

  /// Eight black-or-white pixels: the first is bit 7 by MSBF, else bit 0; PPB keeps the top
  /// bits of a horizontal byte.
  template <int StepX, int StepY>
  [[gnu::always_inline]] bool PackMono(const QRgb* from, Octet*& out) {
    const bool msbFirst = settings_.scan.MSBF;
    int value = 0;
    for (int i = 0; i < 8; ++i) {
      if ((PixelAlong<StepX, StepY>(from, i) & 0xFFFFFFu) == 0) {
        value |= 1 << (msbFirst ? 7 - i : i);
      }
    }
    if (StepX != 0) {
      static constexpr int kKeptBits[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xF0, 0xF8, 0xFC, 0xFE};
      const int ppb = settings_.pixel.PPB;
      if (ppb >= 4 && ppb <= 7) value &= kKeptBits[ppb];
    }
    Put(out, value);
    return true;
  }

  /// Four 2-bit levels, the first highest.
  template <int StepX, int StepY>
  [[gnu::always_inline]] bool PackLevels4(const QRgb* from, Octet*& out) {
    int value = 0;
    for (int i = 0; i < 4; ++i) {
      const int index = Index(PixelAlong<StepX, StepY>(from, i));
      if (index < 0) return false;
      value += index;
      if (i < 3) value <<= 2;
    }
    Put(out, value);
    return true;
  }

  /// Two 4-bit indexes, the first in the high nibble (the low one with snib).
  template <int StepX, int StepY>
  [[gnu::always_inline]] bool PackNibbles(const QRgb* from, Octet*& out) {
    const int first = Index(*from);
    if (first < 0) return false;
    const int second = Index(PixelAlong<StepX, StepY>(from, 1));
    if (second < 0) return false;
    Put(out, pixel_.snib ? (second << 4) | first : (first << 4) | second);
    return true;
  }

  /// Eight 3-bit indexes in three bytes.
  template <int StepX, int StepY>
  [[gnu::always_inline]] bool PackColors8(const QRgb* from, Octet*& out) {
    int indexes[8];
    for (int i = 0; i < 8; ++i) {
      indexes[i] = Index(PixelAlong<StepX, StepY>(from, i));
      if (indexes[i] < 0) return false;
    }
    Put(out, indexes[0] * 32 + indexes[1] * 4 + (indexes[2] >> 1));
    Put(out, ((indexes[2] * 128) & 0xFF) + indexes[3] * 16 + indexes[4] * 2 + (indexes[5] >> 2));
    Put(out, ((indexes[5] * 64) & 0xFF) + indexes[6] * 8 + indexes[7]);
    return true;
  }

  /// A 32 gray level: a byte unpacked; packed, three levels make two bytes through the phase.
  [[gnu::always_inline]] void PackLevel32(int index, Octet*& out) {
    if (!pixel_.PM) {
      Put(out, pixel_.GRL32 ? index * 8 : index);
      return;
    }
    const int level = index * 8;
    phase_ = phase_ % 3 + 1;
    if (phase_ == 1) {
      held_ = level;
    } else if (phase_ == 2) {
      const int value = held_ + (level >> 6);
      held_ = (level * 4) & 224;
      Put(out, value);
    } else {
      Put(out, held_ + (level >> 3));
    }
  }

  /// A 4096 colour: two bytes unpacked; packed, the first word of a pair waits for the second.
  [[gnu::always_inline]] void PackColor4096(int index, Octet*& out) {
    if (!pixel_.PM) {
      PutColor4096(out, index);
      return;
    }
    const int word = Reorder4096Output(index);
    phase_ = phase_ % 2 + 1;
    if (phase_ == 1) {
      held_ = word;
      return;
    }
    PutWordPair(out, held_, word);
  }

  /// A 262k colour in three bytes; a colour outside the table goes out as its own value.
  [[gnu::always_inline]] bool PackColors262k(QRgb pixel, Octet*& out) {
    const int index = Lookup(pixel);
    const std::int64_t word = Reorder262kOutput(index >= 0 ? index : int(ColorOf(pixel)));
    std::array<int, 3> bytes{};
    if (pixel_.C18u) {
      bytes = {int((word >> 12) & 63), int((word >> 6) & 63), int(word & 63)};
    } else {
      bytes = {int((word >> 16) & 255), int((word >> 8) & 255), int(word & 255)};
    }
    if (pixel_.rgb2) std::swap(bytes[0], bytes[2]);
    for (const int byte : bytes) Put(out, byte);
    return true;
  }

  /// A 16M colour: its three channels, red first (blue first with rgb2); unpacked, a 0 byte
  /// before them, or after them with RGBA (not with rgb2).
  [[gnu::always_inline]] bool PackColors16M(QRgb pixel, Octet*& out) {
    const std::int64_t word = Reorder16MOutput(int(ColorOf(pixel)));
    const bool unpacked = !pixel_.PM;
    if (unpacked && !pixel_.RGBA) Put(out, 0);
    const int channels[3] = {int((word >> 16) & 255), int((word >> 8) & 255), int(word & 255)};
    for (int k = 0; k < 3; ++k) Put(out, channels[pixel_.rgb2 ? 2 - k : k]);
    if (unpacked && pixel_.RGBA && !pixel_.rgb2) Put(out, 0);
    return true;
  }

  const settings::Settings& settings_;
  const settings::PixelModeSettings& pixel_;
  const WalkRequest& request_;
  DataTextWriter& writer_;
  ConversionCursor& cursor_;
  Packing packing_;
  int pixelsPerCall_;
  double pixelsPerByte_;
  ColorSearch* colors_;
  const ImagePixelSource& image_;
  int width_;
  int height_;
  std::ptrdiff_t rowStride_;  // pixels from a row to the next
  ScanDirection direction_ = ScanDirection::tr;
  int pages_ = 0;  // pages (vertical walks) or bytes per row (horizontal ones)
  int step_ = 1;   // rows between pages, or pixels between byte columns
  // The index rows' look-ups: the table index of each pixel of a stretch, and a gray
  // table's index by level. They stand here, beside the output buffer, rather than on the
  // stack, so that their addresses keep one distance from the buffer's whatever the stack
  // holds (loads that share the low address bits of a recent store wait for it).
  std::array<int, 256> grayIndex_{};
  std::array<int, 256> found_{};
  std::array<Octet, 256> finalBytes_{};       // each byte value as it goes out (MSBF, dore)
  std::array<Octet, kFlushAt + 8> buffer_{};  // a call puts at most four bytes
  Octet* out_ = buffer_.data();
  const Octet* bufferEnd_ = buffer_.data() + kFlushAt;
  long long values_ = 0;
  QRgb lastPixel_ = 0;  // the last pixel looked up, and its answer
  int lastIndex_ = -1;
  int phase_ = 0;  // PackedPhase
  int held_ = 0;   // SecondValue
};

/// The packing of `mode` in the family of `direction`; none when the fast walk does not cover
/// it.
std::optional<Packing> PackingOf(const settings::Settings& settings, PixelMode mode,
                                 ScanDirection direction) {
  const settings::PixelModeSettings& pixel = settings.pixel;
  const bool vertical = direction == ScanDirection::td || direction == ScanDirection::tu ||
                        direction == ScanDirection::tda || direction == ScanDirection::tua;
  const bool down = direction == ScanDirection::td || direction == ScanDirection::tda;
  // The slices and the horizontal pairs change the walk itself; six-bit bytes read past the
  // area; two-page gray in td packs two planes.
  if (pixel.G16 && (pixel.ST7 || pixel.gsch) && vertical) return std::nullopt;
  if (pixel.G42 && down && settings.scan.td) return std::nullopt;
  if (vertical && (mode == PixelMode::Gray16Horizontal || mode == PixelMode::Gray16Slices)) {
    return std::nullopt;
  }
  switch (mode) {
    case PixelMode::Monochrome:
    case PixelMode::MonochromeInverted:
      if (!pixel.bw8) return std::nullopt;
      return Packing::Mono;
    case PixelMode::Gray4:
    case PixelMode::Gray4TwoPages:
      return Packing::Levels4;
    case PixelMode::Gray16Vertical:
    case PixelMode::Gray16Horizontal:
    case PixelMode::Gray16Slices:
    case PixelMode::Colors16:
      return Packing::Nibbles;
    case PixelMode::Colors8:
      return Packing::Colors8;
    case PixelMode::Gray256:
    case PixelMode::Colors256:
    case PixelMode::Colors256OwnPalette:
      return Packing::Index;
    case PixelMode::Gray32Packed:
    case PixelMode::Gray32RUnpacked:
    case PixelMode::Gray32LUnpacked:
      return Packing::Levels32;
    case PixelMode::Colors4096Packed:
    case PixelMode::Colors4096:
      return Packing::C4096;
    case PixelMode::Colors65536:
      return Packing::C65536;
    case PixelMode::Colors262kPacked:
    case PixelMode::Colors262k:
      return Packing::C262k;
    case PixelMode::Colors16MPacked:
    case PixelMode::Colors16M:
      return Packing::C16M;
  }
  return std::nullopt;
}

}  // namespace

std::optional<bool> FastWalkArea(const WalkRequest& request, const ImagePixelSource& image,
                                 DataTextWriter& writer, const ReorderProgram* reorder,
                                 ConversionCursor& cursor) {
  const settings::Settings& settings = request.settings;
  const std::optional<ScanDirection> direction = settings::CurrentScanDirection(settings);
  if (!direction || request.fontMode || request.stages.compression != nullptr ||
      writer.DrawsPictures() || cursor.Aborted) {
    return std::nullopt;
  }
  const PixelMode mode = settings::CurrentPixelMode(settings).value_or(PixelMode::Monochrome);
  const std::optional<Packing> packing = PackingOf(settings, mode, *direction);
  if (!packing) return std::nullopt;
  if (*packing != Packing::Mono && *packing != Packing::C16M && request.stages.colors == nullptr) {
    return std::nullopt;
  }

  // The cursor as WalkArea sets it up; it is given back unchanged when the walk is not
  // covered after all.
  const ConversionCursor before = cursor;
  const double pixelsPerByte = StartWalk(request, direction, cursor);
  FastWalk walk(request, image, writer, reorder, cursor, *packing, pixelsPerByte);
  if (!walk.Plan(*direction)) {
    cursor = before;
    return std::nullopt;
  }
  return walk.Run();
}

}  // namespace vt::convert
