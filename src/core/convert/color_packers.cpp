// SPDX-License-Identifier: MIT
#include "convert/color_packers.h"

#include <array>

#include "convert/bits.h"
#include "convert/reorder.h"

namespace vt::convert {
namespace {

using settings::PixelMode;

/// One call of a gray or colour packer: reads pixels along the family's axis from the cursor.
class ColorPack {
 public:
  ColorPack(PackContext& context, PackFamily family)
      : ctx_(context),
        c_(context.cursor),
        px_(context.settings.pixel),
        dx_(family == PackFamily::Right  ? 1
            : family == PackFamily::Left ? -1
                                         : 0),
        dy_(family == PackFamily::Down ? 1
            : family == PackFamily::Up ? -1
                                       : 0),
        vertical_(dy_ != 0) {}

  void Run() {
    switch (ctx_.mode) {
      case PixelMode::Gray4:
      case PixelMode::Gray4TwoPages:
        if (px_.G42 && dy_ > 0 && ctx_.settings.scan.td) return TwoPages();
        return Levels4();
      case PixelMode::Gray16Slices:
        if (vertical_) return Slices();
        return Nibbles(false);
      case PixelMode::Gray16Horizontal:
        return Nibbles(vertical_);
      case PixelMode::Gray16Vertical:
      case PixelMode::Colors16:
        return Nibbles(false);
      case PixelMode::Colors8:
        return Colors8();
      case PixelMode::Gray256:
      case PixelMode::Colors256:
      case PixelMode::Colors256OwnPalette: {
        const auto i = Index(Read(), false);
        if (!i) return Fail();
        Emit(int(Reorder256Output(*i)), true, 1.0, true);
        return;
      }
      case PixelMode::Gray32Packed:
      case PixelMode::Gray32RUnpacked:
      case PixelMode::Gray32LUnpacked:
        return Levels32();
      case PixelMode::Colors4096Packed:
      case PixelMode::Colors4096:
        return Colors4096();
      case PixelMode::Colors65536:
        return Colors65536();
      case PixelMode::Colors262kPacked:
      case PixelMode::Colors262k:
        return Colors262k();
      case PixelMode::Colors16MPacked:
      case PixelMode::Colors16M:
        return Colors16M();
      default:
        return;
    }
  }

 private:
  std::int64_t Read() {
    const std::int64_t color = ctx_.source.PixelAt(c_.X, c_.Y);
    c_.X += dx_;
    c_.Y += dy_;
    lastColor_ = color;
    return color;
  }

  /// The table index of `color`; with `outsideAsBlack` a pixel outside the bitmap is black.
  std::optional<int> Index(std::int64_t color, bool outsideAsBlack) const {
    if (color == -1 && outsideAsBlack) color = 0;
    if (ctx_.stages.colors == nullptr) return std::nullopt;
    return ctx_.stages.colors->IndexOf(color);
  }

  /// ColorNotFound: the conversion ends.
  void Fail() {
    if (ctx_.stages.colors != nullptr) ctx_.stages.colors->notFound = lastColor_;
    c_.Aborted = true;
  }

  /// One value of the pixel (or pixels) being packed: a new comment unless it is the first
  /// value of the call, then the common end.
  void Emit(int value, bool endOfPixel, double step, bool first) {
    if (!first) ctx_.stages.sink.StartComment();
    c_.Value = value & 0xFF;
    DeliverValue(ctx_, endOfPixel, step);
  }

  /// The bytes of one pixel, in order, the last ending the pixel.
  void EmitPixel(const int* bytes, int count, double step) {
    for (int k = 0; k < count; ++k) Emit(bytes[k], k == count - 1, step, k == 0);
  }

  void Levels4() {
    int value = 0;
    for (int i = 0; i < 4; ++i) {
      const auto idx = Index(Read(), false);
      if (!idx) return Fail();
      value += *idx;
      if (i < 3) value <<= 2;
    }
    Emit(value, true, 1.0, true);
  }

  /// Two-page gray in td: eight pixels down, the first four make the value of the first
  /// plane, the next four the second. A colour not found counts as index 0. The planes are not
  /// bit-reversed: the reversal of the common end is undone beforehand.
  void TwoPages() {
    int planes[2] = {0, 0};
    for (int i = 0; i < 8; ++i) {
      const int idx = Index(Read(), false).value_or(0);
      planes[i / 4] = (planes[i / 4] << 2) | idx;
    }
    c_.SecondValue = planes[1];
    for (int k = 0; k < 2; ++k) {
      Emit(ctx_.settings.scan.MSBF ? planes[k] : ReverseByte(planes[k]), k == 1, 1.0, true);
    }
  }

  /// Two pixels in a byte, the first in the high nibble (the low one with snib). With
  /// `horizontalPair` (16 gray, two horizontal pixels, vertical walk) the pair lies along the
  /// row: right of X with CORN1, else left; then the walk goes one row on.
  void Nibbles(bool horizontalPair) {
    int idx[2];
    if (horizontalPair) {
      const int side = ctx_.settings.scan.CORN1 ? 1 : -1;
      for (int i = 0; i < 2; ++i) {
        lastColor_ = ctx_.source.PixelAt(c_.X, c_.Y);
        const auto found = Index(lastColor_, true);
        if (!found) return Fail();
        idx[i] = *found;
        c_.X += i == 0 ? side : -side;
      }
      c_.Y += dy_;
    } else {
      for (int i = 0; i < 2; ++i) {
        const auto found = Index(Read(), true);
        if (!found) return Fail();
        idx[i] = *found;
      }
    }
    const int value = px_.snib ? (idx[1] << 4) | idx[0] : (idx[0] << 4) | idx[1];
    Emit(value, true, 1.0, true);
  }

  /// ST7528 slices: four pairs of pixels one above the other, four bytes for 8 rows of a
  /// column. A colour not found makes its byte 0. The packer leaves Y one row past the row
  /// after the slice, which the walker takes back.
  void Slices() {
    if (c_.AreaBottom % 8 != 0) c_.AreaBottom += 1;
    for (int round = 0; round < 4; ++round) {
      const auto a = Index(Read(), true);
      const auto b = Index(Read(), true);
      int value = 0;
      if (a && b) value = px_.snib ? (*b << 4) | *a : (*a << 4) | *b;
      Emit(value, round == 3, 1.0, round == 0);
    }
    c_.Y += dy_;
  }

  /// Eight pixels of 3 bits in three bytes.
  void Colors8() {
    int i[8];
    for (int k = 0; k < 8; ++k) {
      const auto found = Index(Read(), true);
      if (!found) return Fail();
      i[k] = *found;
    }
    const std::array<int, 3> bytes{
        i[0] * 32 + i[1] * 4 + (i[2] >> 1),
        ((i[2] * 128) & 0xFF) + i[3] * 16 + i[4] * 2 + (i[5] >> 2),
        ((i[5] * 64) & 0xFF) + i[6] * 8 + i[7],
    };
    EmitPixel(bytes.data(), 3, 1.0);
  }

  /// 32 gray: a 5-bit level. Packed, three pixels make two bytes through PackedPhase.
  void Levels32() {
    const auto idx = Index(Read(), false);
    if (!idx) return Fail();
    if (!px_.PM) {
      Emit(px_.GRL32 ? *idx * 8 : *idx, true, 1.0, true);
      return;
    }
    const int v = *idx * 8;
    c_.PackedPhase = c_.PackedPhase % 3 + 1;
    if (c_.PackedPhase == 1) {
      c_.SecondValue = v;
    } else if (c_.PackedPhase == 2) {
      const int out = c_.SecondValue + (v >> 6);
      c_.SecondValue = (v * 4) & 224;
      Emit(out, true, 1.0, true);
    } else {
      Emit(c_.SecondValue + (v >> 3), true, 1.0, true);
    }
  }

  void Colors4096() {
    const auto idx = Index(Read(), false);
    if (!idx) return Fail();
    const int n = int(Reorder4096Output(*idx));
    if (!px_.PM) {
      std::array<int, 2> bytes{(n >> 8) & 15, n & 255};
      if (px_.rgb2) std::swap(bytes[0], bytes[1]);
      return EmitPixel(bytes.data(), 2, 2.0);
    }
    // Two pixels in three bytes; the first waits for the second.
    c_.PackedPhase = c_.PackedPhase % 2 + 1;
    if (c_.PackedPhase == 1) {
      c_.SecondValue = n;
      return;
    }
    const int a = c_.SecondValue, b = n;
    const int bytes[3] = {a >> 4, ((a << 4) & 0xF0) + (b >> 8), b & 255};
    EmitPixel(bytes, 3, 1.5);
  }

  void Colors65536() {
    const auto idx = Index(Read(), false);
    if (!idx) return Fail();
    const int n = int(Reorder65kOutput(*idx));
    std::array<int, 2> bytes{n >> 8, n & 255};
    if (px_.SWRG) {
      const int g = n & 0x7E0;
      bytes = {((((n << 11) & 0xF800) | g) >> 8), ((n >> 11) & 0x1F) | (g & 255)};
    }
    EmitPixel(bytes.data(), 2, 2.0);
  }

  void Colors262k() {
    const std::int64_t color = Read();
    const auto idx = Index(color, false);
    const std::int64_t n = Reorder262kOutput(int(idx ? std::int64_t(*idx) : color));
    std::array<int, 3> bytes{};
    if (px_.C18u) {
      bytes = {int((n >> 12) & 63), int((n >> 6) & 63), int(n & 63)};
    } else {
      bytes = {int((n >> 16) & 255), int((n >> 8) & 255), int(n & 255)};
    }
    if (px_.rgb2) std::swap(bytes[0], bytes[2]);
    EmitPixel(bytes.data(), 3, 3.0);
  }

  void Colors16M() {
    const std::int64_t n = Reorder16MOutput(int(Read() & 0xFFFFFF));
    std::array<int, 4> bytes{};
    int count = 0;
    const bool unpacked = !px_.PM;
    if (unpacked && !px_.RGBA) bytes[count++] = 0;
    const int rgb[3] = {int((n >> 16) & 255), int((n >> 8) & 255), int(n & 255)};
    for (int k = 0; k < 3; ++k) bytes[count++] = rgb[px_.rgb2 ? 2 - k : k];
    if (unpacked && px_.RGBA && !px_.rgb2) bytes[count++] = 0;
    EmitPixel(bytes.data(), count, unpacked ? 4.0 : 3.0);
  }

  PackContext& ctx_;
  ConversionCursor& c_;
  const settings::PixelModeSettings& px_;
  const int dx_;
  const int dy_;
  const bool vertical_;
  std::int64_t lastColor_ = 0;
};

}  // namespace

std::unique_ptr<ColorSearch> ModeColorSearch(const canvas::PaletteState& palettes,
                                             settings::PixelMode mode, bool referencePaths) {
  const canvas::Palette& colors = palettes.Colors();
  const int entries = canvas::PaletteInfoOf(mode).entries;
  const bool blackSlot = entries == 32 || entries == 0x40000;
  return std::make_unique<ColorSearch>(palettes.index.For(colors, referencePaths),
                                       blackSlot ? int(colors.size()) : -1);
}

QString ColorNotFoundText(std::int64_t color) {
  return QStringLiteral(" Color not found in Palette! \r") +
         (color == -1
              ? QStringLiteral(" Check if Heigth or Width matches with pixels per byte format ")
              : QStringLiteral(" "));
}

void PackColor(PackContext& context, PackFamily family) { ColorPack(context, family).Run(); }

}  // namespace vt::convert
