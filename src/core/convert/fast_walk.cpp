// SPDX-License-Identifier: MIT
#include "convert/fast_walk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

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
        height_(image.Height()) {
    // Every value ends as the packers end it: reversed outside monochrome when MSB comes
    // last, then rearranged with dore. On a byte both come down to a table.
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
    bool completed = true;
    switch (kind_) {
      case Kind::Mono:
        completed = RunAs<Kind::Mono>();
        break;
      case Kind::Levels4:
        completed = RunAs<Kind::Levels4>();
        break;
      case Kind::Nibbles:
        completed = RunAs<Kind::Nibbles>();
        break;
      case Kind::Colors8:
        completed = RunAs<Kind::Colors8>();
        break;
      case Kind::Index:
        completed = RunAs<Kind::Index>();
        break;
      case Kind::Levels32:
        completed = RunAs<Kind::Levels32>();
        break;
      case Kind::C4096:
        completed = RunAs<Kind::C4096>();
        break;
      case Kind::C65536:
        completed = RunAs<Kind::C65536>();
        break;
      case Kind::C262k:
        completed = RunAs<Kind::C262k>();
        break;
      case Kind::C16M:
        completed = RunAs<Kind::C16M>();
        break;
    }
    Flush();
    c_.ByteCount = static_cast<double>(values_) * ValueStep();
    return completed;
  }

 private:
  static constexpr std::size_t kFlushAt = 4096;

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
  template <Kind K>
  bool RunAs() {
    switch (direction_) {
      case ScanDirection::td:
        return Down<K>();
      case ScanDirection::tu:
        return Up<K>();
      case ScanDirection::tda:
        return AllColumns<K, 0, 1>(s_.scan.CORN1);
      case ScanDirection::tua:
        return AllColumns<K, 0, -1>(s_.scan.CORN4);
      case ScanDirection::tr:
        return Rows<K, 1>(s_.scan.CORN1);
      case ScanDirection::tl:
        return Rows<K, -1>(s_.scan.CORN2);
      case ScanDirection::tra:
        return ByteColumns<K, 1>(s_.scan.CORN1);
      case ScanDirection::tla:
        return ByteColumns<K, -1>(s_.scan.CORN2);
    }
    return true;
  }

  void GroupStart() {
    if (!s_.block.ColRx) return;
    Flush();
    writer_.GroupStart();
  }

  template <Kind K>
  bool Down() {
    c_.PagesPerColumn = pages_;
    c_.BytesPerRow = c_.AreaWidth;
    const bool leftToRight = s_.scan.CORN1;
    const int xStart = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    const int dx = leftToRight ? 1 : -1;
    int pageTop = c_.AreaTop;
    for (int page = 0; page < pages_; ++page) {
      GroupStart();
      for (int x = xStart; x >= c_.AreaLeft && x < c_.AreaRight; x += dx) {
        if (!Byte<K, 0, 1>(x, pageTop)) return false;
      }
      pageTop += step_;
      if (pageTop >= c_.AreaBottom) break;
    }
    return true;
  }

  template <Kind K>
  bool Up() {
    c_.PagesPerColumn = pages_;
    c_.BytesPerRow = c_.AreaWidth;
    const bool leftToRight = s_.scan.CORN4;
    const int xStart = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    const int dx = leftToRight ? 1 : -1;
    int pageBottom = c_.AreaBottom - 1;
    for (int page = px_.C8 ? 2 : 1; page <= pages_ && pageBottom > -1; ++page) {
      GroupStart();
      for (int x = xStart; x >= c_.AreaLeft && x < c_.AreaRight; x += dx) {
        if (!Byte<K, 0, -1>(x, pageBottom)) return false;
      }
      pageBottom -= step_;
    }
    return true;
  }

  template <Kind K, int DX, int DY>
  bool AllColumns(bool leftToRight) {
    c_.PagesPerColumn = pages_;
    c_.BytesPerRow = c_.AreaWidth;
    const int dx = leftToRight ? 1 : -1;
    int x = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    for (int column = 0; column < c_.AreaWidth; ++column, x += dx) {
      GroupStart();
      int y = DY > 0 ? c_.AreaTop : c_.AreaBottom - 1;
      for (int page = 0; page < pages_; ++page, y += DY * k_) {
        if (!Byte<K, DX, DY>(x, y)) return false;
      }
    }
    return true;
  }

  template <Kind K, int DX>
  bool Rows(bool fromTop) {
    c_.BytesPerRow = pages_;
    c_.PagesPerColumn = c_.AreaHeight;
    const int first = fromTop ? c_.AreaTop : c_.AreaBottom - 1;
    const int dy = fromTop ? 1 : -1;
    for (int y = first; y >= c_.AreaTop && y < c_.AreaBottom; y += dy) {
      GroupStart();
      int x = DX > 0 ? c_.AreaLeft : c_.AreaRight - 1;
      for (int b = 0; b < pages_; ++b, x += DX * k_) {
        if (!Byte<K, DX, 0>(x, y)) return false;
      }
    }
    return true;
  }

  template <Kind K, int DX>
  bool ByteColumns(bool fromTop) {
    c_.BytesPerRow = pages_;
    c_.PagesPerColumn = c_.AreaHeight;
    const int first = fromTop ? c_.AreaTop : c_.AreaBottom - 1;
    const int dy = fromTop ? 1 : -1;
    for (int b = 0; b < pages_; ++b) {
      const int x = DX > 0 ? c_.AreaLeft + b * step_ : c_.AreaRight - 1 - b * step_;
      GroupStart();
      for (int y = first; y >= c_.AreaTop && y < c_.AreaBottom; y += dy) {
        if (!Byte<K, DX, 0>(x, y)) return false;
      }
    }
    return true;
  }

  // ---- One byte ----------------------------------------------------------------------------

  [[gnu::always_inline]] QRgb Pixel(int x, int y) const { return image_.Row(y)[x]; }
  /// The canvas colour 0x00BBGGRR of a pixel.
  static std::uint32_t ColorOf(QRgb v) {
    return ((v >> 16) & 0xFFu) | (v & 0xFF00u) | ((v & 0xFFu) << 16);
  }

  /// The table index of the colour of `v`, or -1 after recording a colour not found.
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

  [[gnu::always_inline]] void Put(int value) {
    *out_++ = final_[static_cast<std::size_t>(value & 0xFF)];
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
  template <Kind K, int DX, int DY>
  [[gnu::always_inline]] bool Byte(int x, int y) {
    if (request_.keyPoll.EscapePressed()) return false;
    if (!Pack<K, DX, DY>(x, y)) return false;
    if (out_ >= buffer_.data() + kFlushAt) Flush();
    return true;
  }

  template <Kind K, int DX, int DY>
  [[gnu::always_inline]] bool Pack(int x, int y) {
    switch (K) {
      case Kind::Mono: {
        const bool msbFirst = s_.scan.MSBF;
        int value = 0;
        for (int i = 0; i < 8; ++i) {
          if ((Pixel(x + DX * i, y + DY * i) & 0xFFFFFFu) == 0)
            value |= 1 << (msbFirst ? 7 - i : i);
        }
        // PPB keeps the top bits of a horizontal byte.
        if (DX != 0) {
          static constexpr int kMasks[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xF0, 0xF8, 0xFC, 0xFE};
          const int ppb = s_.pixel.PPB;
          if (ppb >= 4 && ppb <= 7) value &= kMasks[ppb];
        }
        Put(value);
        return true;
      }
      case Kind::Levels4: {
        int value = 0;
        for (int i = 0; i < 4; ++i) {
          const int idx = Index(Pixel(x + DX * i, y + DY * i));
          if (idx < 0) return false;
          value += idx;
          if (i < 3) value <<= 2;
        }
        Put(value);
        return true;
      }
      case Kind::Nibbles: {
        const int i0 = Index(Pixel(x, y));
        if (i0 < 0) return false;
        const int i1 = Index(Pixel(x + DX, y + DY));
        if (i1 < 0) return false;
        Put(px_.snib ? (i1 << 4) | i0 : (i0 << 4) | i1);
        return true;
      }
      case Kind::Colors8: {
        int i[8];
        for (int n = 0; n < 8; ++n) {
          i[n] = Index(Pixel(x + DX * n, y + DY * n));
          if (i[n] < 0) return false;
        }
        Put(i[0] * 32 + i[1] * 4 + (i[2] >> 1));
        Put(((i[2] * 128) & 0xFF) + i[3] * 16 + i[4] * 2 + (i[5] >> 2));
        Put(((i[5] * 64) & 0xFF) + i[6] * 8 + i[7]);
        return true;
      }
      case Kind::Index: {
        const int idx = Index(Pixel(x, y));
        if (idx < 0) return false;
        Put(Reorder256Output(idx));
        return true;
      }
      case Kind::Levels32: {
        const int idx = Index(Pixel(x, y));
        if (idx < 0) return false;
        if (!px_.PM) {
          Put(px_.GRL32 ? idx * 8 : idx);
          return true;
        }
        const int v = idx * 8;
        phase_ = phase_ % 3 + 1;
        if (phase_ == 1) {
          held_ = v;
        } else if (phase_ == 2) {
          const int out = held_ + (v >> 6);
          held_ = (v * 4) & 224;
          Put(out);
        } else {
          Put(held_ + (v >> 3));
        }
        return true;
      }
      case Kind::C4096: {
        const int idx = Index(Pixel(x, y));
        if (idx < 0) return false;
        const int n = Reorder4096Output(idx);
        if (!px_.PM) {
          const int high = (n >> 8) & 15, low = n & 255;
          Put(px_.rgb2 ? low : high);
          Put(px_.rgb2 ? high : low);
          return true;
        }
        phase_ = phase_ % 2 + 1;
        if (phase_ == 1) {
          held_ = n;
          return true;
        }
        Put(held_ >> 4);
        Put(((held_ << 4) & 0xF0) + (n >> 8));
        Put(n & 255);
        return true;
      }
      case Kind::C65536: {
        const int idx = Index(Pixel(x, y));
        if (idx < 0) return false;
        const int n = Reorder65kOutput(idx);
        if (px_.SWRG) {
          const int g = n & 0x7E0;
          Put((((n << 11) & 0xF800) | g) >> 8);
          Put(((n >> 11) & 0x1F) | (g & 255));
        } else {
          Put(n >> 8);
          Put(n & 255);
        }
        return true;
      }
      case Kind::C262k: {
        const QRgb pixel = Pixel(x, y);
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
        for (int b : bytes) Put(b);
        return true;
      }
      case Kind::C16M: {
        const std::int64_t n = Reorder16MOutput(int(ColorOf(Pixel(x, y))));
        const bool unpacked = !px_.PM;
        if (unpacked && !px_.RGBA) Put(0);
        const int rgb[3] = {int((n >> 16) & 255), int((n >> 8) & 255), int(n & 255)};
        for (int k = 0; k < 3; ++k) Put(rgb[px_.rgb2 ? 2 - k : k]);
        if (unpacked && px_.RGBA && !px_.rgb2) Put(0);
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
  ScanDirection direction_ = ScanDirection::tr;
  int pages_ = 0;  // pages (vertical walks) or bytes per row (horizontal ones)
  int step_ = 1;   // rows between pages, or pixels between byte columns
  std::array<Octet, 256> final_{};
  std::array<Octet, kFlushAt + 8> buffer_{};  // a call puts at most four bytes
  Octet* out_ = buffer_.data();
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
