// SPDX-License-Identifier: MIT
#include "settings/pixel_modes.h"

#include <array>

#include "settings/key_table.h"

namespace vt::settings {
namespace {

constexpr const char* kClear2bpp =
    " Clear the work canvas before to change to 2bpp grayscale mode ? ";
constexpr const char* kClear4bpp =
    " Clear the work canvas before to change to 4bpp grayscale mode ? ";
constexpr const char* kClear5bpp =
    " Clear the work canvas before to change to 5bpp grayscale mode ? ";
constexpr const char* kClear8 = " Clear the work canvas before to change to 8 colors mode ? ";
constexpr const char* kClear16 = " Clear the work canvas before to change to 16 colors mode ? ";
constexpr const char* kClear256 = " Clear the work canvas before to change to 256 colors mode ? ";
constexpr const char* kClear4096 = " Clear the work canvas before to change to 4096 colors mode ? ";
constexpr const char* kClear65536 =
    " Clear the work canvas before to change to 65536 colors mode ? ";
constexpr const char* kClear262k = " Clear the work canvas before to change to 262k colors mode ? ";

// Menu captions keep the column padding of the menu they come from.
constexpr std::array<PixelModeInfo, kPixelModeCount> kModes{{
    {PixelMode::Monochrome, "monochrome",
     "Monochrome  bitmap (1bpp)                           8 pixels/byte", kFlagMonc, 8.0, 2, 0, 8,
     "Monochrome", "Monochrome mode activated", ""},
    {PixelMode::MonochromeInverted, "monochrome-inverted",
     "Monochrome  bitmap (1bpp)   Inverted          8 pixels/byte",
     kFlagMonc | kFlagMoni | kFlagNeg, 8.0, 2, 0, 8, "Monochrome", "Negative output mode", ""},
    {PixelMode::Gray4, "gray4", "4 gray levels bitmap (2bpp)  Single Page         4 pixels/byte",
     kFlagG4, 4.0, 4, 0, 8, "4 levels grayscale", "4 levels grayscale mode activated", kClear2bpp},
    {PixelMode::Gray4TwoPages, "gray4-2pages",
     "4 gray levels bitmap (2bpp)  Two Pages           8 half pixels/byte", kFlagG42, 4.0, 4, 0, 8,
     "4 levels grayscale 2P", "4 levels grayscale two pages mode activated", kClear2bpp},
    {PixelMode::Gray32Packed, "gray32-packed",
     "32 gray levels bitmap (5bpp) 2B3P packed       3 pixels = 2 bytes", kFlagG32 | kFlagPM, 2.0,
     32, 0, 8, "32 levels grayscale", "32 levels grayscale packed mode activated", kClear5bpp},
    {PixelMode::Gray32RUnpacked, "gray32-r",
     "32 gray levels bitmap (5bpp) 3B3P R-Unpacked    1 pixel/byte", kFlagG32, 2.0, 32, 0, 8,
     "32 levels grayscale", "", kClear5bpp},
    {PixelMode::Gray32LUnpacked, "gray32-l",
     "32 gray levels bitmap (5bpp) 3B3P L-Unpacked    1 pixel/byte", kFlagG32 | kFlagGRL32, 2.0, 32,
     0, 8, "32 levels grayscale", "", kClear5bpp},
    {PixelMode::Gray16Vertical, "gray16-v",
     "16 gray levels bitmap (4bpp) 2 vertical pixels        2 pixels/byte", kFlagG16, 2.0, 16, 0, 8,
     "16 levels grayscale Vert.", "16 levels Vertical grayscale mode activated", kClear4bpp},
    {PixelMode::Gray16Horizontal, "gray16-h",
     "16 gray levels bitmap (4bpp) 2 horizontal pixels    2 pixels/byte ", kFlagG16 | kFlagGsch,
     2.0, 16, 0, 8, "16 levels grayscale Horiz.", "16 levels Horizontal grayscale mode activated",
     kClear4bpp},
    {PixelMode::Gray16Slices, "gray16-slices",
     "16 gray levels bitmap (4bpp) slices of 8 vertical pixels", kFlagG16 | kFlagST7, 2.0, 16, 0, 8,
     "16 gray 8 Pix Slices", "", kClear4bpp},
    {PixelMode::Colors8, "colors8",
     "8 colors (3bpp) packed                                 8 pixels/ 3 bytes", kFlagC8,
     kColors8PixelsPerByte, 8, 0, 8, "8 colors", "8 colors mode activated", kClear8},
    {PixelMode::Colors16, "colors16",
     "16 colors (4bpp)                                             2 pixels/byte", kFlagC16, 2.0,
     16, 0, 8, "16 colors", "16 colors mode activated", kClear16},
    {PixelMode::Gray256, "gray256",
     "256 gray shades (8 bpp)                                1 pixel/byte",
     kFlagC256 | kFlagC256NP | kFlagG256, 1.0, 256, 0, 8, "256 colors", "256 colors mode activated",
     kClear256},
    {PixelMode::Colors256, "colors256",
     "256 colors (8 bpp)                                          1 pixel/byte",
     kFlagC256 | kFlagC256NP, 1.0, 256, 0, 8, "256 colors", "256 colors mode activated", kClear256},
    // The same mode as above reached from the palette menu, which has no caption of its own.
    {PixelMode::Colors256OwnPalette, "",
     "256 colors (8 bpp)                                          1 pixel/byte", kFlagC256, 1.0,
     256, 0, 8, "256 colors", "256 colors mode activated", kClear256},
    {PixelMode::Colors4096Packed, "colors4096-packed",
     "4096 colors (12bpp) packed                            2 pixel = 3 bytes",
     kFlagC4096 | kFlagPM, 1.0, 4096, 1, 16, "4096 colors", "4096 colors packed mode activated",
     kClear4096},
    {PixelMode::Colors4096, "colors4096",
     "4096 colors (12bpp) unpacked                        1 pixel = 2 bytes", kFlagC4096, 1.0, 4096,
     1, 16, "4096 colors", "4096 colors unpacked mode activated", kClear4096},
    {PixelMode::Colors65536, "colors65536",
     "65536 colors (16bpp) R5 G6 B5                        1 pixel = 2 bytes", kFlagC65535, 1.0,
     65535, 1, 16, "65536 colors", "65536 colors mode activated", kClear65536},
    {PixelMode::Colors262kPacked, "colors262k-packed",
     "262k colors (18bpp)  packed                        1 pixel = 3 byte", kFlagC18 | kFlagPM, 1.0,
     262144, 2, 18, "262144 colors", "262144 colors mode activated", kClear262k},
    {PixelMode::Colors262k, "colors262k",
     "262k colors (18bpp) unpacked                     1 pixel = 3 byte", kFlagC18u | kFlagPM, 1.0,
     262144, 2, 18, "262144 colors Unpacked", "262144 colors unpacked mode activated", kClear262k},
    {PixelMode::Colors16MPacked, "colors16m-packed",
     "16M Colors RGB or BGR                                             24 bpp - 1 Pixel = 3 bytes",
     kFlagC16M | kFlagPM, 1.0, 16777215, 2, 24, "16M colors", "16M colors packed mode activated",
     ""},
    {PixelMode::Colors16M, "colors16m",
     "16M Colors RGBA or ARGB                                       32 bpp - 1 Pixel = 4 bytes",
     kFlagC16M, 1.0, 16777215, 2, 24, "16M colors", "16M colors unpacked mode activated", ""},
}};

/// The record field of each ModeFlag bit, bit 0 first.
constexpr std::array<bool PixelModeSettings::*, 21> kFlagFields{
    &PixelModeSettings::Monc, &PixelModeSettings::Moni,  &PixelModeSettings::Neg,
    &PixelModeSettings::G4,   &PixelModeSettings::G42,   &PixelModeSettings::G32,
    &PixelModeSettings::PM,   &PixelModeSettings::GRL32, &PixelModeSettings::G16,
    &PixelModeSettings::gsch, &PixelModeSettings::ST7,   &PixelModeSettings::C8,
    &PixelModeSettings::C16,  &PixelModeSettings::C256,  &PixelModeSettings::C256NP,
    &PixelModeSettings::G256, &PixelModeSettings::C4096, &PixelModeSettings::C65535,
    &PixelModeSettings::C18,  &PixelModeSettings::C18u,  &PixelModeSettings::C16M,
};

bool IsNibbleMode(PixelMode mode) {
  return mode == PixelMode::Gray16Vertical || mode == PixelMode::Gray16Horizontal ||
         mode == PixelMode::Gray16Slices || mode == PixelMode::Colors16;
}

/// The start-up order of tests. `honourNomat` makes the two monochrome tests fail under NOMAT,
/// as the re-selection at load does.
std::optional<PixelMode> ModeFromFlags(const Settings& settings, bool honourNomat) {
  const PixelModeSettings& p = settings.pixel;
  const bool monoAllowed = !(honourNomat && settings.display.NOMAT);
  if (p.Moni && monoAllowed) return PixelMode::MonochromeInverted;
  if (p.Monc && monoAllowed) return PixelMode::Monochrome;
  if (p.C256NP) return p.G256 ? PixelMode::Gray256 : PixelMode::Colors256;
  if (p.C256) return PixelMode::Colors256OwnPalette;
  if (p.C16) return PixelMode::Colors16;
  if (p.C8) return PixelMode::Colors8;
  if (p.C4096 && p.PM) return PixelMode::Colors4096Packed;
  if (p.C65535) return PixelMode::Colors65536;
  if (p.C18u) return PixelMode::Colors262k;
  if (p.C18) return PixelMode::Colors262kPacked;
  if (p.G16 && p.ST7) return PixelMode::Gray16Slices;
  if (p.G16 && !p.gsch) return PixelMode::Gray16Vertical;
  if (p.G16 && p.gsch) return PixelMode::Gray16Horizontal;
  if (p.G4) return PixelMode::Gray4;
  if (p.G42) return PixelMode::Gray4TwoPages;
  if (p.G32 && p.PM) return PixelMode::Gray32Packed;
  if (p.G32 && !p.PM) return p.GRL32 ? PixelMode::Gray32LUnpacked : PixelMode::Gray32RUnpacked;
  if (p.C4096 && !p.PM) return PixelMode::Colors4096;
  if (p.C16M && !p.PM) return PixelMode::Colors16M;
  if (p.C16M && p.PM) return PixelMode::Colors16MPacked;
  return std::nullopt;
}

}  // namespace

std::span<const PixelModeInfo> PixelModeTable() { return kModes; }

const PixelModeInfo& Info(PixelMode mode) { return kModes[static_cast<std::size_t>(mode)]; }

std::optional<PixelMode> CurrentPixelMode(const Settings& settings) {
  return ModeFromFlags(settings, false);
}

double PixelsPerByte(const Settings& settings) {
  return Info(CurrentPixelMode(settings).value_or(PixelMode::Monochrome)).pixelsPerByte;
}

int LevelCount(const Settings& settings) {
  return Info(CurrentPixelMode(settings).value_or(PixelMode::Monochrome)).levelCount;
}

bool IsMonochromeMode(PixelMode mode) {
  return mode == PixelMode::Monochrome || mode == PixelMode::MonochromeInverted;
}

bool IsGrayMode(PixelMode mode) {
  return (mode >= PixelMode::Gray4 && mode <= PixelMode::Gray16Slices) ||
         mode == PixelMode::Gray256;
}

QString PixelModeName(PixelMode mode) { return QString::fromLatin1(Info(mode).cliName); }

std::optional<PixelMode> PixelModeFromName(const QString& name) {
  if (name.isEmpty()) return std::nullopt;
  for (const PixelModeInfo& info : kModes) {
    if (name == QLatin1String(info.cliName)) return info.mode;
  }
  return std::nullopt;
}

void ApplyModeFlags(PixelModeSettings& pixel, std::uint32_t flags) {
  for (std::size_t bit = 0; bit < kFlagFields.size(); ++bit) {
    pixel.*kFlagFields[bit] = (flags & (1u << bit)) != 0;
  }
}

std::uint32_t ModeFlagsOf(const PixelModeSettings& pixel) {
  std::uint32_t flags = 0;
  for (std::size_t bit = 0; bit < kFlagFields.size(); ++bit) {
    if (pixel.*kFlagFields[bit]) flags |= 1u << bit;
  }
  return flags;
}

std::optional<PixelMode> StoredPixelMode(const Settings& settings) {
  return ModeFromFlags(settings, true);
}

QStringList ModeFlagKeys(std::uint32_t flags) {
  // The key table names the fields; the row of a bit is the one bound to its field.
  Settings probe;
  QStringList keys;
  for (std::size_t bit = 0; bit < kFlagFields.size(); ++bit) {
    if ((flags & (1u << bit)) == 0) continue;
    const bool* cell = &(probe.pixel.*kFlagFields[bit]);
    for (const KeyRow& row : KeyTable()) {
      const FieldRef field = row.field(probe);
      if (const auto* b = std::get_if<bool*>(&field); b != nullptr && *b == cell) {
        keys << row.WriteKey().trimmed();
        break;
      }
    }
  }
  return keys;
}


void ApplyPixelMode(PixelModeSettings& pixel, PixelMode mode) {
  pixel.Neg = false;
  pixel.ST7 = false;
  pixel.bw8 = true;
  ApplyModeFlags(pixel, Info(mode).flags);
  // Compression packs monochrome data only.
  if (!IsMonochromeMode(mode)) pixel.ccomp = false;
  // The nibble swap is offered by the 16 gray and 16 colour modes only: there it keeps the
  // value the user gave it (also through a settings load), every other mode turns it off.
  if (!IsNibbleMode(mode)) pixel.snib = false;
}

}  // namespace vt::settings
