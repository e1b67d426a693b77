// SPDX-License-Identifier: MIT
#include "settings/geometry.h"

#include <QtGlobal>
#include <array>
#include <cmath>
#include <exception>

#include "platform/messenger.h"
#include "settings/pixel_modes.h"

namespace vt::settings {
namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogType;

constexpr std::array<ScanDirectionInfo, 8> kDirections{{
    {ScanDirection::tr, "tr", "Horizontal from left to right", "", OriginCorner::CORN1, true},
    {ScanDirection::tra, "tra", "All horizontal from left (paging)", "", OriginCorner::CORN1, true},
    {ScanDirection::tl, "tl", "Horizontal from right to left", "", OriginCorner::CORN2, true},
    {ScanDirection::tla, "tla", "All horizontal from right to left (paging)", "Right to Left",
     OriginCorner::CORN2, true},
    {ScanDirection::td, "td", "Vertical downwards ", "Top down", OriginCorner::CORN1, false},
    {ScanDirection::tda, "tda", "All Vertical downwards (paging)", "", OriginCorner::CORN1, false},
    {ScanDirection::tu, "tu", "Vertical upwards", "", OriginCorner::CORN4, false},
    {ScanDirection::tua, "tua", "All vertical upwards (paging)", "", OriginCorner::CORN4, false},
}};

constexpr std::array<QSize, 22> kPresetSizes{{
    {96, 40},   {96, 64},   {100, 32},   {112, 64},   {120, 32},  {122, 32},
    {128, 32},  {128, 64},  {128, 96},   {132, 32},   {132, 64},  {128, 128},
    {144, 32},  {160, 32},  {160, 100},  {256, 128},  {480, 128}, {480, 272},
    {800, 480}, {864, 480}, {1024, 600}, {1024, 768},
}};

// The size check texts. Both say 8 whatever PixelsPerByte is. The texts are shared by groups of
// buttons: tr, tl, tla and td use the horizontal one, tra, tda, tua and tu the vertical one
// (td and tra swap the text against the size they check).
const QString kHorizontalSizeError = QStringLiteral(
    "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Horizontal size should "
    "be a multiple of 8 for horizontal conversion\r Use a vertical conversion direction  ");
const QString kVerticalSizeError = QStringLiteral(
    "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Vertical size should "
    "be a multiple of 8 for vertical conversion  \r Use a horizontal conversion direction");

bool& DirectionKey(ScanSettings& scan, ScanDirection direction) {
  switch (direction) {
    case ScanDirection::tr:
      return scan.tr;
    case ScanDirection::tra:
      return scan.tra;
    case ScanDirection::tl:
      return scan.tl;
    case ScanDirection::tla:
      return scan.tla;
    case ScanDirection::td:
      return scan.td;
    case ScanDirection::tda:
      return scan.tda;
    case ScanDirection::tu:
      return scan.tu;
    case ScanDirection::tua:
      return scan.tua;
  }
  Q_UNREACHABLE();
}

bool& CornerKey(ScanSettings& scan, OriginCorner corner) {
  switch (corner) {
    case OriginCorner::CORN1:
      return scan.CORN1;
    case OriginCorner::CORN2:
      return scan.CORN2;
    case OriginCorner::CORN3:
      return scan.CORN3;
    case OriginCorner::CORN4:
      return scan.CORN4;
  }
  Q_UNREACHABLE();
}

void SetCornerKeys(ScanSettings& scan, OriginCorner corner) {
  scan.CORN1 = scan.CORN2 = scan.CORN3 = scan.CORN4 = false;
  CornerKey(scan, corner) = true;
}

/// The 32 gray packer knows four directions only; the others are replaced by their neighbour.
ScanDirection Gray32Direction(ScanDirection direction) {
  switch (direction) {
    case ScanDirection::td:
      return ScanDirection::tda;
    case ScanDirection::tu:
      return ScanDirection::tua;
    case ScanDirection::tla:
      return ScanDirection::tl;
    case ScanDirection::tra:
      return ScanDirection::tr;
    default:
      return direction;
  }
}

/// The size check of one direction button: which size it measures and which text it shows.
struct SizeCheck {
  bool checksHeight;
  const QString* text;
};

SizeCheck SizeCheckOf(ScanDirection direction) {
  switch (direction) {
    case ScanDirection::tr:
    case ScanDirection::tl:
    case ScanDirection::tla:
      return {false, &kHorizontalSizeError};
    case ScanDirection::tra:
      return {false, &kVerticalSizeError};
    case ScanDirection::td:
      return {true, &kHorizontalSizeError};
    case ScanDirection::tda:
    case ScanDirection::tua:
    case ScanDirection::tu:
      return {true, &kVerticalSizeError};
  }
  Q_UNREACHABLE();
}

/// A typed user size: parse, cut to the limit, and the over-limit message.
TypedSize TypeUserSize(const Settings& settings, platform::Messenger& messenger,
                       const QString& text, int& stored, int limit, bool directionConcerned,
                       const QString& message) {
  bool ok = false;
  const int value = text.trimmed().toInt(&ok);
  if (!ok || value < 1) return {QString::number(stored), false};
  if (value <= limit) {
    stored = value;
    return {text, false};
  }
  stored = limit;
  const double p = PixelsPerByte(settings);
  if (!IsMultipleOf(limit, p) && directionConcerned) {
    messenger.MessageDlgA(message.arg(FormatGeneralReal(p)), QStringLiteral("Error"), 0,
                          Buttons::Ok, DialogType::Error);
  }
  return {QString::number(limit), true};
}

}  // namespace

std::span<const ScanDirectionInfo> ScanDirectionTable() { return kDirections; }

const ScanDirectionInfo& Info(ScanDirection direction) {
  return kDirections[static_cast<std::size_t>(direction)];
}

std::optional<ScanDirection> CurrentScanDirection(const Settings& settings) {
  const ScanSettings& s = settings.scan;
  if (s.td) return ScanDirection::td;
  if (s.tu) return ScanDirection::tu;
  if (s.tda) return ScanDirection::tda;
  if (s.tua) return ScanDirection::tua;
  if (s.tr) return ScanDirection::tr;
  if (s.tl) return ScanDirection::tl;
  if (s.tra) return ScanDirection::tra;
  if (s.tla) return ScanDirection::tla;
  return std::nullopt;
}

std::optional<OriginCorner> CurrentOriginCorner(const Settings& settings) {
  const ScanSettings& s = settings.scan;
  if (s.CORN1) return OriginCorner::CORN1;
  if (s.CORN2) return OriginCorner::CORN2;
  if (s.CORN3) return OriginCorner::CORN3;
  if (s.CORN4) return OriginCorner::CORN4;
  return std::nullopt;
}

bool IsHorizontalScan(const Settings& settings) {
  const ScanSettings& s = settings.scan;
  return s.tl || s.tr || s.tla || s.tra;
}

bool IsVerticalScan(const Settings& settings) { return !IsHorizontalScan(settings); }

bool SelectScanDirection(Settings& settings, platform::Messenger& messenger,
                         ScanDirection direction, CornerRule cornerRule) {
  messenger.SetLaction(QStringLiteral("Select Data Direction"));
  if (settings.pixel.G32) direction = Gray32Direction(direction);
  // The ST7528 slices are walked downwards only.
  if ((direction == ScanDirection::tl || direction == ScanDirection::tla) && settings.pixel.ST7) {
    return false;
  }
  const ScanDirectionInfo& info = Info(direction);
  if (!info.horizontal) settings.pixel.bw8 = true;

  if (!settings.display.NOMAT) {
    const SizeCheck check = SizeCheckOf(direction);
    double remainder = 0.0;
    if (check.checksHeight) {
      remainder = SizeRemainder(settings.display.GHI, PixelsPerByte(settings));
    } else if (!settings.pixel.bw8 && info.horizontal) {
      remainder = SizeRemainder(settings.display.GWI, 6.0);
    } else {
      remainder = SizeRemainder(settings.display.GWI, PixelsPerByte(settings));
    }
    if (remainder != 0.0 && settings.pixel.bw8) {
      messenger.MessageDlgA(*check.text, QStringLiteral("Error"), 0, Buttons::Ok,
                            DialogType::Error);
      return false;
    }
  }

  ScanSettings& scan = settings.scan;
  scan.tr = scan.tra = scan.tl = scan.tla = scan.td = scan.tda = scan.tu = scan.tua = false;
  DirectionKey(scan, direction) = true;
  if (cornerRule == CornerRule::SetDirectionCorner) SetCornerKeys(scan, info.corner);
  if (*info.logText != '\0') messenger.StatusBarAndLog(QString::fromLatin1(info.logText));
  return true;
}

QString OriginCornerText(OriginCorner corner) {
  switch (corner) {
    case OriginCorner::CORN1:
      return QStringLiteral("Origin corner top left");
    case OriginCorner::CORN2:
      return QStringLiteral("Origin corner top right");
    case OriginCorner::CORN3:
      return QStringLiteral("Origin corner bottom right");
    case OriginCorner::CORN4:
      return QStringLiteral("Origin corner bottom left");
  }
  Q_UNREACHABLE();
}

void SelectOriginCorner(Settings& settings, platform::Messenger& messenger, OriginCorner corner) {
  SetCornerKeys(settings.scan, corner);
  messenger.StatusBarAndLog(OriginCornerText(corner));
}

QString FormatGeneralReal(double value) { return QString::number(value, 'g', 15); }

double SizeRemainder(int size, double pixelsPerByte) {
  return std::fmod(static_cast<double>(qMax(size, 1)), pixelsPerByte);
}

PagingHintText PagingHint(const Settings& settings) {
  const double p = PixelsPerByte(settings);
  const bool vertical = IsVerticalScan(settings);
  const QString scheme = vertical ? QStringLiteral("Vertical paging scheme")
                                  : QStringLiteral("Horizontal paging scheme");
  if (p <= 1.0) return {QStringLiteral("( Width = free , Height = free )"), scheme};
  const QString number = FormatGeneralReal(p);
  if (vertical) {
    return {QStringLiteral("( Height = multiple of %1 , Width = free )").arg(number), scheme};
  }
  return {QStringLiteral("( Width = multiple of %1 , Height = free )").arg(number), scheme};
}

int PageCount(const Settings& settings, int sizeAlongScan) {
  const PixelModeSettings& pixel = settings.pixel;
  if (pixel.ST7 && pixel.G16) return (sizeAlongScan + 7) / 8;
  if (pixel.C8) return sizeAlongScan / 8;
  if (pixel.G32) return sizeAlongScan;
  double p = PixelsPerByte(settings);
  if (pixel.G42 && settings.scan.td) p = 8.0;
  if (settings.display.NOMAT) p = 1.0;
  return static_cast<int>(std::trunc(sizeAlongScan / p));
}

bool SelectByteWidth(Settings& settings, platform::Messenger& messenger, bool eightBits) {
  if (!eightBits) {
    const std::optional<PixelMode> mode = CurrentPixelMode(settings);
    const bool monochrome = !mode || IsMonochromeMode(*mode);
    if (!monochrome || !IsHorizontalScan(settings)) {
      messenger.MessageDlgA(QStringLiteral("Operation allowed in monochrome mode only !"),
                            QString(), 0, Buttons::Ok, DialogType::Warning);
      return false;
    }
  }
  settings.pixel.bw8 = eightBits;
  messenger.StatusBarAndLog(eightBits ? QStringLiteral("8 bit format enabled")
                                      : QStringLiteral("6 bit format enabled"));
  return true;
}

QString BitOrderCaption(bool msbFirst) {
  return msbFirst ? QStringLiteral("Most Significant Bit First             (big endian)")
                  : QStringLiteral("Most Significant Bit Last        (little endian)");
}

QString BitOrderLogText(bool msbFirst) {
  return msbFirst ? QStringLiteral("MSB first") : QStringLiteral("MSB last");
}

QString BigEndianHint() { return QStringLiteral("Big Endian (MSB first)"); }

void SelectBitOrder(Settings& settings, platform::Messenger& messenger, bool msbFirst) {
  settings.scan.MSBF = msbFirst;
  messenger.StatusBarAndLog(BitOrderLogText(msbFirst));
}

std::span<const QSize> PresetSizes() { return kPresetSizes; }

QString CustomSizeCaption(QSize size) {
  return QStringLiteral("Custom %1 x %2").arg(size.width()).arg(size.height());
}

int AddCustomSize(Settings& settings, QSize size) {
  auto& slots = settings.customSizes;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i] == size) return static_cast<int>(i);
  }
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i].isEmpty()) {
      slots[i] = size;
      return static_cast<int>(i);
    }
  }
  slots.back() = size;
  return static_cast<int>(slots.size()) - 1;
}

QStringList CustomSizeCaptions(const Settings& settings) {
  QStringList captions;
  for (const QSize& size : settings.customSizes) {
    if (size.isEmpty()) continue;
    captions << CustomSizeCaption(size);
  }
  return captions;
}

TypedSize LCDmatrixHeightEditChange(Settings& settings, platform::Messenger& messenger,
                                    const QString& text) {
  const ScanSettings& scan = settings.scan;
  return TypeUserSize(
      settings, messenger, text, settings.display.MATH, kMaxUserHeight, scan.tu || scan.td,
      QStringLiteral(" In vertical mode, height must be a multiple of %1 and <= 768 !"));
}

TypedSize LCDmatrixWidthEditChange(Settings& settings, platform::Messenger& messenger,
                                   const QString& text) {
  const ScanSettings& scan = settings.scan;
  return TypeUserSize(
      settings, messenger, text, settings.display.MATW, kMaxUserWidth, scan.tl || scan.tr,
      QStringLiteral(" In horizontal mode, width must be a multiple of %1 and <= 1024 !"));
}

bool IsMultipleOf(int size, double pixelsPerByte) {
  return std::fmod(static_cast<double>(size), pixelsPerByte) == 0.0;
}

double UserSizePixelsPerByte(const Settings& settings) {
  const PixelModeSettings& pixel = settings.pixel;
  if (pixel.G16 || pixel.C16 || pixel.C8) return 2.0;
  if (pixel.G4 || pixel.G42 || pixel.G32) return 4.0;
  if (pixel.Monc) return 8.0;
  return 1.0;
}

bool AreaFitsPagingGrid(const Settings& settings, int x1, int y1, int x2, int y2) {
  if (settings.display.NOMAT) return true;
  const double p = PixelsPerByte(settings);
  if (IsHorizontalScan(settings)) return IsMultipleOf(x1, p) && IsMultipleOf(x2, p);
  return IsMultipleOf(y1, p) && IsMultipleOf(y2, p);
}

bool PageButtonClick(const Settings& settings, platform::Messenger& messenger, int x1, int y1,
                     int x2, int y2) {
  if (AreaFitsPagingGrid(settings, x1, y1, x2, y2)) return true;
  messenger.MessageDlgA(QStringLiteral(" Area does not fit in the paging scheme! Please select "
                                       "again with displayed paging grid ! "),
                        QStringLiteral("Error !"), 0, Buttons::Ok, DialogType::Error);
  return false;
}

}  // namespace vt::settings
