// SPDX-License-Identifier: MIT
#pragma once

// Pixel modes: how many levels a pixel of the Work Canvas may take and how pixels become bytes.
// The mode is not stored as such: it is the combination of the boolean mode keys (Monc, G16,
// C4096, PM, ...) of the settings, and this file is the one place that knows the combinations.

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <span>

#include "settings/settings.h"

namespace vt::settings {

/// Every pixel mode the system offers, one per menu command.
enum class PixelMode {
  Monochrome,
  MonochromeInverted,
  Gray4,             ///< 4 gray levels, one page
  Gray4TwoPages,     ///< 4 gray levels as two bit planes
  Gray32Packed,      ///< 3 pixels in 2 bytes
  Gray32RUnpacked,   ///< 1 pixel per byte, value in the low 5 bits
  Gray32LUnpacked,   ///< 1 pixel per byte, value in the high 5 bits
  Gray16Vertical,    ///< 2 vertical pixels per byte
  Gray16Horizontal,  ///< 2 horizontal pixels per byte
  Gray16Slices,      ///< ST7528 slices of 8 vertical pixels
  Colors8,           ///< 8 pixels in 3 bytes
  Colors16,
  Gray256,
  Colors256,
  Colors256OwnPalette,  ///< the 256 colour mode as reached by the palette menu: C256 alone
  Colors4096Packed,     ///< 2 pixels in 3 bytes
  Colors4096,           ///< 1 pixel in 2 bytes
  Colors65536,
  Colors262kPacked,  ///< 18 bits contiguous in 3 bytes
  Colors262k,        ///< three bytes of 6 bits
  Colors16MPacked,   ///< 3 bytes per pixel
  Colors16M,         ///< 4 bytes per pixel
};

inline constexpr int kPixelModeCount = 22;

/// Bits naming the boolean mode keys that a mode sets. All of them are cleared by a mode
/// selection; exactly the mode's bits are then set.
enum ModeFlag : std::uint32_t {
  kFlagMonc = 1u << 0,
  kFlagMoni = 1u << 1,
  kFlagNeg = 1u << 2,  ///< section B1
  kFlagG4 = 1u << 3,
  kFlagG42 = 1u << 4,
  kFlagG32 = 1u << 5,
  kFlagPM = 1u << 6,
  kFlagGRL32 = 1u << 7,
  kFlagG16 = 1u << 8,
  kFlagGsch = 1u << 9,  ///< section B1
  kFlagST7 = 1u << 10,  ///< section B1
  kFlagC8 = 1u << 11,
  kFlagC16 = 1u << 12,
  kFlagC256 = 1u << 13,
  kFlagC256NP = 1u << 14,
  kFlagG256 = 1u << 15,
  kFlagC4096 = 1u << 16,
  kFlagC65535 = 1u << 17,
  kFlagC18 = 1u << 18,
  kFlagC18u = 1u << 19,
  kFlagC16M = 1u << 20,
};

/// The value of PixelsPerByte in 8 colour mode: the double nearest to the 80-bit real the
/// system has always used (mantissa 0xAAAAAAA38225B49A, exponent 0x4000), which is exactly
/// the decimal 2.66666666, hex float 0x1.55555547044b7p+1. It lies about 6.7e-9 below 8/3, so
/// that a size divided by it and truncated gives the whole number of bytes (24 / p -> 9) rather
/// than one less; the exact fraction must not be used.
inline constexpr double kColors8PixelsPerByte = 0x1.55555547044b7p+1;

/// One row of the mode table. Texts are 7-bit ASCII.
struct PixelModeInfo {
  PixelMode mode;
  const char* cliName;      ///< command-line name; empty when the mode has none
  const char* menuCaption;  ///< caption of the menu command
  std::uint32_t flags;      ///< ModeFlag bits set by the mode
  double pixelsPerByte;     ///< PixelsPerByte while the mode is active
  int levelCount;           ///< number of colours, drives colour reduction
  int dataSizeClass;        ///< 0 one byte per value, 1 for 4096 and 65536, 2 for 262k and 16M
  int colorDepthWord;       ///< colour depth of the canvas bitmap: 8, 16, 18 or 24
  const char* modeLabel;    ///< short text of the settings panel
  const char* logText;      ///< status line written on activation; empty for none
  /// Question asked before a non-empty canvas is cleared for this mode; empty when the mode
  /// asks nothing (16M) or warns instead (monochrome).
  const char* clearQuestion;
};

/// The whole mode table, in the order of the PixelMode enum.
std::span<const PixelModeInfo> PixelModeTable();
/// The row of `mode`.
const PixelModeInfo& Info(PixelMode mode);

/// The mode the flags describe, tested in the order of the start-up re-selection, the first
/// match winning. NOMAT does not matter here. Empty when no mode key is set.
std::optional<PixelMode> CurrentPixelMode(const Settings& settings);

/// PixelsPerByte of the current mode (8 when no mode key is set, as an export then falls back
/// to monochrome). A real number: 8, 4, 2, 1 or kColors8PixelsPerByte.
double PixelsPerByte(const Settings& settings);
/// Number of colours of the current mode (2 when no mode key is set).
int LevelCount(const Settings& settings);

/// True for Monochrome and Monochrome inverted.
bool IsMonochromeMode(PixelMode mode);
/// True for the gray modes: 4, 16 and 32 levels in all their forms, and 256 grays.
bool IsGrayMode(PixelMode mode);

/// Command-line name of `mode` ("monochrome", "gray16-h", ...); empty for the own-palette
/// 256 colour mode, which no command-line name reaches.
QString PixelModeName(PixelMode mode);
/// The mode of a command-line name, compared exactly; empty for an unknown name.
std::optional<PixelMode> PixelModeFromName(const QString& name);

/// Sets the mode keys of `flags` and clears every other mode key (Monc ... C16M, Neg, gsch, ST7).
void ApplyModeFlags(PixelModeSettings& pixel, std::uint32_t flags);
/// The ModeFlag bits currently set in the record.
std::uint32_t ModeFlagsOf(const PixelModeSettings& pixel);
/// The settings keys of the ModeFlag bits in `flags`, lowest bit first ("Monc", "Moni", "Neg").
QStringList ModeFlagKeys(std::uint32_t flags);

/// The mode the flags hold as the start-up re-selection tests them: Moni and Monc count only
/// without NOMAT. Empty when no test matches.
std::optional<PixelMode> StoredPixelMode(const Settings& settings);

/// Sets the keys of `mode` as its selection does: Neg and ST7 off, bw8 on, exactly the mode's
/// flags, compression off outside monochrome, snib off outside the nibble modes (they keep it).
void ApplyPixelMode(PixelModeSettings& pixel, PixelMode mode);

}  // namespace vt::settings
