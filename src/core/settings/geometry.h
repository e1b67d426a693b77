// SPDX-License-Identifier: MIT
#pragma once

// Display geometry: the data direction (scan direction), the origin corner, the display size,
// the 6-bit byte width, the bit order and the page grid that all size checks use. The
// direction and the corner are stored as boolean keys of which exactly one is true.

#include <QSize>
#include <QString>
#include <optional>
#include <span>

#include "settings/settings.h"

namespace vt::platform {
class Messenger;
}  // namespace vt::platform

namespace vt::settings {

/// The eight data directions, named after their keys.
enum class ScanDirection { tr, tra, tl, tla, td, tda, tu, tua };

/// The four origin corners, named after their keys: CORN1 top left, CORN2 top right,
/// CORN3 bottom right, CORN4 bottom left.
enum class OriginCorner { CORN1, CORN2, CORN3, CORN4 };

/// One row of the direction table.
struct ScanDirectionInfo {
  ScanDirection direction;
  const char* key;          ///< settings key, section B3
  const char* controlHint;  ///< hint of the direction button
  const char* logText;      ///< status line on selection; empty for none
  OriginCorner corner;      ///< corner set on selection
  bool horizontal;          ///< tr, tra, tl, tla
};

/// The direction table, in the order of the ScanDirection enum.
std::span<const ScanDirectionInfo> ScanDirectionTable();
const ScanDirectionInfo& Info(ScanDirection direction);

/// The direction whose key is true, tested in the order of the walkers: td, tu, tda, tua, tr,
/// tl, tra, tla. Empty when none is set.
std::optional<ScanDirection> CurrentScanDirection(const Settings& settings);
/// The corner whose key is true, CORN1 first; empty when none is set.
std::optional<OriginCorner> CurrentOriginCorner(const Settings& settings);

/// True when tl, tr, tla or tra is set.
bool IsHorizontalScan(const Settings& settings);
/// The complement of IsHorizontalScan.
bool IsVerticalScan(const Settings& settings);

/// Option of SelectScanDirection: a running font definition keeps the origin corner fixed.
enum class CornerRule { SetDirectionCorner, KeepCorner };

/// Selects a data direction. In 32 gray mode td, tu, tla, tra fall through to tda, tua, tl, tr.
/// With ST7 on, tl and tla are ignored. A vertical direction sets bw8. Unless NOMAT, the size
/// must fit the page grid of the direction, else the direction's error text is shown (title
/// "Error"). On acceptance the eight keys are cleared, the chosen one and its corner are set and
/// the direction's log line is written. Returns whether the direction was accepted; a refusal
/// leaves mode, direction, corner and size as they were.
bool SelectScanDirection(Settings& settings, platform::Messenger& messenger,
                         ScanDirection direction,
                         CornerRule cornerRule = CornerRule::SetDirectionCorner);

/// Selects the origin corner: clears the other three keys and logs "Origin corner top left" or
/// its like.
void SelectOriginCorner(Settings& settings, platform::Messenger& messenger, OriginCorner corner);
/// The text of a corner, "Origin corner top left" and so on.
QString OriginCornerText(OriginCorner corner);

/// The two texts of the paging hint: the size rule and the scheme.
struct PagingHintText {
  QString sizeRule;  ///< "( Width = free , Height = free )" and its like
  QString scheme;    ///< "Vertical paging scheme" or "Horizontal paging scheme"
};
/// The paging hint of the current mode and direction.
PagingHintText PagingHint(const Settings& settings);

/// A real number as the system prints it: general format, at most 15 significant digits,
/// no trailing zeros, '.' as the decimal separator (8 -> "8", the 8 colour value ->
/// "2.66666666").
QString FormatGeneralReal(double value);

/// Floating remainder of `size` by `pixelsPerByte`, as the size checks take it: a size of 0
/// (or below) counts as 1 first.
double SizeRemainder(int size, double pixelsPerByte);

/// Number of pages (bytes down one column) for an area of `sizeAlongScan` pixels across the
/// pages, as the page walk counts them: trunc(size / PixelsPerByte), except ceiling(size / 8)
/// for the ST7528 slices, size div 8 in 8 colour mode, size itself in 32 gray mode, p = 8 for
/// two-page 4 gray with td, and p = 1 under NOMAT.
int PageCount(const Settings& settings, int sizeAlongScan);

/// Switches between 8 data bits per byte (`eightBits` true) and the T6963 6-bit mode. The 6-bit
/// mode is allowed in monochrome with a horizontal direction only; otherwise the message
/// "Operation allowed in monochrome mode only !" is shown and nothing changes. Logs
/// "6 bit format enabled" or "8 bit format enabled". Returns whether bw8 now holds the request.
bool SelectByteWidth(Settings& settings, platform::Messenger& messenger, bool eightBits);

/// Bit order texts: menu caption, and log line of each setting of MSBF.
QString BitOrderCaption(bool msbFirst);
QString BitOrderLogText(bool msbFirst);
/// The hint of the big endian control.
QString BigEndianHint();
/// Sets MSBF and logs "MSB first" or "MSB last".
void SelectBitOrder(Settings& settings, platform::Messenger& messenger, bool msbFirst);
/// The two control flags kept beside MSBF.
inline bool BigEndianBits(const Settings& settings) { return settings.scan.MSBF; }
inline bool LittleEndianBits(const Settings& settings) { return !settings.scan.MSBF; }

/// The preset display sizes, width by height, in menu order (96x40 ... 1024x768).
std::span<const QSize> PresetSizes();

/// Menu caption of a remembered user size: "Custom <w> x <h>".
QString CustomSizeCaption(QSize size);
/// Remembers `size` in the custom size slots (cs<n>w, cs<n>h). A size already remembered keeps
/// its slot; otherwise the first free slot (0 x 0, or any empty size) takes it, and with all
/// sixteen taken the last slot is overwritten. Returns the slot index.
int AddCustomSize(Settings& settings, QSize size);
/// Captions of the remembered sizes in slot order, free slots left out.
QStringList CustomSizeCaptions(const Settings& settings);

inline constexpr int kMaxUserHeight = 768;
inline constexpr int kMaxUserWidth = 1024;

/// What the user-size edit shows after a keystroke.
struct TypedSize {
  QString editText;   ///< text the edit is rewritten with
  bool beep = false;  ///< the value was cut to its limit
};
/// A height typed into the user-size edit. A text that is no whole number of at least 1
/// restores the last good value (MATH); a number is stored into MATH, cut to 768 with a beep.
/// Only when cut, the cut value is no multiple of PixelsPerByte and the direction is tu or td,
/// " In vertical mode, height must be a multiple of <p> and <= 768 !" is shown.
TypedSize LCDmatrixHeightEditChange(Settings& settings, platform::Messenger& messenger,
                                    const QString& text);
/// The same for the width: MATW, 1024, directions tl or tr, and
/// " In horizontal mode, width must be a multiple of <p> and <= 1024 !".
TypedSize LCDmatrixWidthEditChange(Settings& settings, platform::Messenger& messenger,
                                   const QString& text);

/// PixelsPerByte as the user-size confirmation computes it: 2 for G16, C16 and C8, 4 for G4, G42
/// and G32, 8 for Monc, 1 for every other mode.
double UserSizePixelsPerByte(const Settings& settings);

/// True when `size` is a whole multiple of `pixelsPerByte` (0 counts as one).
bool IsMultipleOf(int size, double pixelsPerByte);

/// True when the selection X1..X2 x Y1..Y2 (right and bottom exclusive) lies on the page grid:
/// its left and right edges for a horizontal direction, its top and bottom edges for a vertical
/// one, are multiples of PixelsPerByte.
bool AreaFitsPagingGrid(const Settings& settings, int x1, int y1, int x2, int y2);
/// The page button's check before a selected area is exported: refuses an area off the page
/// grid with " Area does not fit in the paging scheme! Please select again with displayed
/// paging grid ! " (title "Error !"). Returns whether the export may go on.
bool PageButtonClick(const Settings& settings, platform::Messenger& messenger, int x1, int y1,
                     int x2, int y2);

}  // namespace vt::settings
