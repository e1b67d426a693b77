// SPDX-License-Identifier: MIT
#include "canvas/color_reduction.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "canvas/palette_files.h"
#include "platform/messenger.h"
#include "util/atomic_write.h"
#include "util/fast_paths.h"

namespace vt::canvas {
namespace {

using platform::DialogType;
using settings::PixelMode;
namespace Buttons = platform::Buttons;

const QString kPaletteError = QStringLiteral("Color Palette Error");

bool HasNoConversion(PixelMode mode) { return PaletteInfoOf(mode).entries == 0; }

QRgb* Row(QImage& image, int y) { return reinterpret_cast<QRgb*>(image.scanLine(y)); }

/// Slots of an open-addressing table for `entries` entries: a power of two, at least 64, never
/// more than 60% full, so probes stay short while the table stays small (the tables here are
/// made anew for every picture).
std::size_t OpenTableSize(std::size_t entries) {
  std::size_t size = 64;
  while (size * 3 < entries * 5) size *= 2;
  return size;
}

/// A memo from colour to colour: open addressing over a table big enough for every pixel of
/// the picture, so it never fills.
class ColorMemo {
 public:
  explicit ColorMemo(std::size_t colors) {
    const std::size_t size = OpenTableSize(colors);
    slots_.assign(size, kEmpty);
    mask_ = size - 1;
  }
  /// The slot of `c`: its answer when known (`found`), else where to put it.
  std::uint64_t& Slot(Color c, bool& found) {
    std::size_t i = (c * 0x9E3779B1u) & mask_;
    while (slots_[i] != kEmpty && Color(slots_[i] >> 32) != c) i = (i + 1) & mask_;
    found = slots_[i] != kEmpty;
    return slots_[i];
  }
  static std::uint64_t Entry(Color c, Color answer) { return (std::uint64_t(c) << 32) | answer; }

 private:
  static constexpr std::uint64_t kEmpty = ~std::uint64_t{0};
  std::vector<std::uint64_t> slots_;
  std::size_t mask_ = 0;
};

/// The reference form of ColorMemo: the same slots in a standard map.
class PlainColorMemo {
 public:
  std::uint64_t& Slot(Color c, bool& found) {
    const auto [at, added] = slots_.try_emplace(c, 0);
    found = !added;
    return at->second;
  }

 private:
  std::unordered_map<Color, std::uint64_t> slots_;
};

/// Replaces every pixel through `search`, asking it once per distinct colour, whose answer
/// `memo` keeps. Escape is polled once a row.
template <typename Memo, typename Search>
ConversionStatus MapPixelsWith(QImage& image, platform::KeyPoll& escape, Memo& memo,
                               Search search) {
  Color lastIn = 0xFFFFFFFF, lastOut = 0;
  for (int y = 0; y < image.height(); ++y) {
    if (escape.EscapePressed()) return ConversionStatus::Interrupted;
    QRgb* row = Row(image, y);
    for (int x = 0; x < image.width(); ++x) {
      const Color c = FromQRgb(row[x]);
      if (c != lastIn) {
        lastIn = c;
        bool found = false;
        std::uint64_t& slot = memo.Slot(c, found);
        if (!found) slot = ColorMemo::Entry(c, search(c));
        lastOut = Color(slot & 0xFFFFFFFF);
      }
      row[x] = ToQRgb(lastOut);
    }
  }
  return ConversionStatus::Done;
}

/// MapPixelsWith the open-addressing memo, or with `referencePaths` the plain one.
template <typename Search>
ConversionStatus MapPixels(QImage& image, platform::KeyPoll& escape, Search search,
                           bool referencePaths) {
  if (referencePaths) {
    PlainColorMemo memo;
    return MapPixelsWith(image, escape, memo, search);
  }
  ColorMemo memo(std::size_t(image.width()) * image.height());
  return MapPixelsWith(image, escape, memo, search);
}

QImage AsRgb32(const QImage& image) {
  return image.format() == QImage::Format_RGB32 ? image
                                                : image.convertToFormat(QImage::Format_RGB32);
}

/// The reference form of DistinctColors: a standard set.
int PlainDistinctColors(const QImage& image, int limit) {
  std::unordered_set<Color> seen;
  for (int y = 0; y < image.height(); ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      seen.insert(row[x] & 0x00FFFFFFu);
      if (int(seen.size()) > limit) return int(seen.size());
    }
  }
  return int(seen.size());
}

/// Distinct colours of `image`, counting stops above `limit`. The colours go into a set of
/// open addressing sized for the most the count can reach (the pixels, or the limit and one);
/// where that set would outgrow a bit per colour value (2 MB), the bits are used instead.
/// With `referencePaths`, PlainDistinctColors.
int DistinctColors(const QImage& image, int limit, bool referencePaths) {
  if (referencePaths) return PlainDistinctColors(image, limit);
  const int width = image.width(), height = image.height();
  const std::size_t pixels = std::size_t(std::max(width, 0)) * std::size_t(std::max(height, 0));
  const std::size_t most = std::min(std::size_t(std::max(limit, 0)) + 1, pixels);
  const std::size_t size = OpenTableSize(most);
  int count = 0;
  if (size * sizeof(std::uint32_t) < (std::size_t(1) << 21)) {
    std::vector<std::uint32_t> slots(size, 0xFFFFFFFFu);
    const std::size_t mask = size - 1;
    Color last = 0xFFFFFFFFu;
    for (int y = 0; y < height; ++y) {
      const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      for (int x = 0; x < width; ++x) {
        const Color c = row[x] & 0x00FFFFFFu;
        if (c == last) continue;
        last = c;
        std::size_t i = (c * 0x9E3779B1u) & mask;
        while (slots[i] != 0xFFFFFFFFu && slots[i] != c) i = (i + 1) & mask;
        if (slots[i] == c) continue;
        slots[i] = c;
        if (++count > limit) return count;
      }
    }
    return count;
  }
  // One bit per colour value, taken zeroed from the system, so that only the pages the
  // picture's colours fall in are ever touched.
  const std::unique_ptr<std::uint64_t[], decltype(&std::free)> bits(
      static_cast<std::uint64_t*>(std::calloc(std::size_t(1) << 18, sizeof(std::uint64_t))),
      &std::free);
  if (!bits) throw std::bad_alloc();
  std::uint64_t* const seen = bits.get();
  for (int y = 0; y < height; ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < width; ++x) {
      const Color c = row[x] & 0x00FFFFFFu;
      std::uint64_t& word = seen[c >> 6];
      const std::uint64_t bit = std::uint64_t{1} << (c & 63);
      if (word & bit) continue;
      word |= bit;
      if (++count > limit) return count;
    }
  }
  return count;
}

/// The palette of `mode` from files or built in; the texts of the load go to `loadedText`.
struct Loaded {
  Palette palette;
  bool custom = false;
  QString text;
};

Result<Loaded> ReadModePalette(const QString& settingsFile, PixelMode mode, bool referencePaths) {
  const PaletteInfo info = PaletteInfoOf(mode);
  Loaded loaded;
  const QString custom = CustomPaletteFile(settingsFile, mode);
  const QString fallback = DefaultPaletteFile(settingsFile, mode);
  QString path;
  if (!custom.isEmpty() && QFileInfo(custom).isFile()) {
    path = custom;
    loaded.custom = true;
    loaded.text = QStringLiteral("Custom Color Palette loaded");
  } else {
    if (!fallback.isEmpty() && QFileInfo(fallback).isFile()) path = fallback;
    loaded.text = mode == PixelMode::Gray256
                      ? QStringLiteral("Default Grayscale Color Palette Loaded")
                      : QStringLiteral("Default Color Palette Loaded");
  }
  if (path.isEmpty()) {
    loaded.palette = DefaultPalette(mode);
  } else {
    Result<Palette> read = ReadPaletteFile(path, info.entries, referencePaths);
    if (!read) return read.error();
    loaded.palette = std::move(read).value();
  }
  return loaded;
}

void Install(PaletteState& p, PixelMode mode, Palette palette) {
  const PaletteInfo info = PaletteInfoOf(mode);
  p.SmallPaletteMode = !info.large && info.entries > 0;
  if (info.large) {
    SortPalette(palette);
    p.LargePalette = palette;
    p.SmallPalette = std::move(palette);
  } else {
    p.SmallPalette = std::move(palette);
    p.LargePalette.clear();
  }
}

}  // namespace

PixelMode ModeOf(const settings::Settings& settings) {
  return settings::CurrentPixelMode(settings).value_or(PixelMode::Monochrome);
}

QString CustomPaletteFile(const QString& settingsFile, PixelMode mode) {
  const PaletteInfo info = PaletteInfoOf(mode);
  if (settingsFile.isEmpty() || *info.customSuffix == 0) return {};
  const QFileInfo f(settingsFile);
  return f.absolutePath() + QLatin1Char('/') + f.completeBaseName() +
         QLatin1String(info.customSuffix);
}

QString DefaultPaletteFile(const QString& settingsFile, PixelMode mode) {
  const PaletteInfo info = PaletteInfoOf(mode);
  if (settingsFile.isEmpty() || *info.defaultFile == 0) return {};
  return QFileInfo(settingsFile).absolutePath() + QLatin1Char('/') +
         QLatin1String(info.defaultFile);
}

bool LoadModePalette(const settings::Settings& settings, const QString& settingsFile,
                     PaletteState& p, platform::Messenger& messenger, bool force) {
  const PixelMode mode = ModeOf(settings);
  if (!force && p.loadedMode == mode && p.loadedSettingsFile == settingsFile) return true;
  const PaletteInfo info = PaletteInfoOf(mode);
  p.loadedMode = mode;
  p.loadedSettingsFile = settingsFile;
  Result<Loaded> loaded = ReadModePalette(settingsFile, mode, ReferencePathsRequested());
  if (!loaded) {
    messenger.StatusBarAndLog(QStringLiteral("12 bit Palette corrupted !"));
    messenger.AppendLog(loaded.error().ToString());
    messenger.MessageDlgA(QStringLiteral(" 12 bit palette file seem to be corrupted ! "),
                          kPaletteError, 0, Buttons::Ok, DialogType::Error);
    if (int(p.Colors().size()) != info.entries) Install(p, mode, DefaultPalette(mode));
    return false;
  }
  Install(p, mode, std::move(loaded.value().palette));
  p.custom = loaded.value().custom;
  p.caption = p.custom ? QStringLiteral("Current Palette is Custom")
                       : QStringLiteral("Current Palette is Default");
  if (info.entries > 0) messenger.StatusBarAndLog(loaded.value().text);
  return true;
}

ConversionStatus ConvertToNearestColor(QImage& image, PaletteState& palettes, PixelMode mode,
                                       platform::KeyPoll& escape, bool referencePaths) {
  if (HasNoConversion(mode) || palettes.Colors().empty()) return ConversionStatus::NoConversion;
  if (palettes.SmallPaletteMode) {
    const Palette& small = palettes.SmallPalette;
    return MapPixels(
        image, escape, [&](Color c) { return NearestSmallColor(c, small); }, referencePaths);
  }
  NearestColorSearch& search = palettes.nearest.For(palettes.LargePalette, referencePaths);
  search.ClearLastIndex();
  const ConversionStatus status = MapPixels(
      image, escape, [&](Color c) { return search.NearestColor(c); }, referencePaths);
  palettes.lastIndex = search.LastIndex();
  return status;
}

ConversionStatus ConvertToMyColor(QImage& image, const PaletteState& palettes, PixelMode mode,
                                  platform::KeyPoll& escape, bool referencePaths) {
  if (HasNoConversion(mode) || palettes.Colors().empty()) return ConversionStatus::NoConversion;
  NearestColorSearch search(palettes.Colors(), referencePaths);
  return MapPixels(
      image, escape, [&](Color c) { return c == 0 ? Color(0) : search.NearestColorKill(c); },
      referencePaths);
}

int CountPictureColors(const QImage& image, int limit, bool referencePaths) {
  return DistinctColors(AsRgb32(image), limit, referencePaths);
}

void ReduceToPalette(QImage& image, PaletteState& palettes, PixelMode mode, DitherMethod method,
                     bool referencePaths) {
  if (HasNoConversion(mode) || palettes.Colors().empty()) return;
  const auto rgb = [](int r, int g, int b) { return Color(r) | Color(g) << 8 | Color(b) << 16; };
  if (palettes.SmallPaletteMode) {
    const Palette& small = palettes.SmallPalette;
    DitherRasterWith(image, method,
                     [&](int r, int g, int b) { return NearestSmallColor(rgb(r, g, b), small); });
    return;
  }
  NearestColorSearch search(palettes.LargePalette, referencePaths);
  DitherRasterWith(image, method,
                   [&](int r, int g, int b) { return search.NearestColor(rgb(r, g, b)); });
  palettes.lastIndex = search.LastIndex();
}

void DoGrayscale(QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    QRgb* row = Row(image, y);
    for (int x = 0; x < image.width(); ++x) {
      const int v = (qRed(row[x]) * 77 + qGreen(row[x]) * 150 + qBlue(row[x]) * 29) >> 8;
      row[x] = qRgb(v, v, v);
    }
  }
}

namespace {

/// Calls `unknown()` for each pixel whose colour `palette` lacks, row by row, until it
/// returns false. Runs of one colour are looked up once.
template <typename Unknown>
void ForEachUnknown(const QImage& image, const ColorIndexer& palette, Unknown unknown) {
  const QImage& rgb = image;
  QRgb last = 0;
  bool lastKnown = false;
  bool started = false;
  const int width = rgb.width(), height = rgb.height();
  for (int y = 0; y < height; ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
    for (int x = 0; x < width; ++x) {
      if (!started || row[x] != last) {
        started = true;
        last = row[x];
        lastKnown = palette.Find(FromQRgb(last)) >= 0;
      }
      if (!lastKnown && !unknown()) return;
    }
  }
}

}  // namespace

long long CountUnknownColors(const QImage& image, const Palette& palette, bool referencePaths) {
  return CountUnknownColors(image, ColorIndexer(palette, referencePaths));
}

long long CountUnknownColors(const QImage& image, const ColorIndexer& palette) {
  long long unknown = 0;
  ForEachUnknown(image, palette, [&] { return ++unknown, true; });
  return unknown;
}

bool HasUnknownColor(const QImage& image, const ColorIndexer& palette) {
  const int width = image.width(), height = image.height();
  // Grid and gray tables answer a row at a time: a level the table lacks reads negative, and
  // the levels of a row are joined before one test.
  if (const std::optional<ColorIndexer::GridTables> grid = palette.Grid()) {
    const std::int16_t *red = grid->red, *green = grid->green, *blue = grid->blue;
    for (int y = 0; y < height; ++y) {
      const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      int levels = 0;
      for (int x = 0; x < width; ++x) {
        const QRgb v = row[x];
        levels |= red[(v >> 16) & 0xFF] | green[(v >> 8) & 0xFF] | blue[v & 0xFF];
      }
      if (levels < 0) return true;
    }
    return false;
  }
  if (const int* grays = palette.Grays()) {
    for (int y = 0; y < height; ++y) {
      const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      int levels = 0;
      for (int x = 0; x < width; ++x) {
        const QRgb v = row[x];
        const unsigned level = v & 0xFF;
        levels |= (v & 0xFFFFFFu) == level * 0x010101u ? grays[level] : -1;
      }
      if (levels < 0) return true;
    }
    return false;
  }
  bool found = false;
  ForEachUnknown(image, palette, [&] { return found = true, false; });
  return found;
}

void ReduceLikeLoading(QImage& image, PaletteState& palettes, PixelMode mode,
                       platform::KeyPoll& escape, bool referencePaths) {
  const PaletteInfo info = PaletteInfoOf(mode);
  if (info.entries == 0) return;
  if (settings::IsGrayMode(mode)) DoGrayscale(image);
  // A picture of no more pixels than the palette has entries has no more colours either.
  const long long pixels = static_cast<long long>(image.width()) * image.height();
  if (pixels > info.entries && DistinctColors(image, info.entries, referencePaths) > info.entries) {
    ConvertToNearestColor(image, palettes, mode, escape, referencePaths);
  }
}

ConversionStatus ReduceForExport(QImage& image, PaletteState& palettes, PixelMode mode,
                                 platform::KeyPoll& escape, bool referencePaths) {
  if (HasNoConversion(mode) || palettes.Colors().empty()) return ConversionStatus::NoConversion;
  ConversionStatus status = ConversionStatus::NoConversion;
  if (HasUnknownColor(image, *palettes.index.For(palettes.Colors(), referencePaths))) {
    status = ConvertToNearestColor(image, palettes, mode, escape, referencePaths);
    if (status == ConversionStatus::Interrupted) return status;
  }
  const bool colors256 = mode == PixelMode::Colors256 || mode == PixelMode::Colors256OwnPalette;
  if (colors256 && DistinctColors(image, 236, referencePaths) > 236) {
    status = ConvertToNearestColor(image, palettes, mode, escape, referencePaths);
  }
  return status;
}

Result<bool> ConvertPictureFileToColors(const QString& inPath, const QString& outPath, int colors,
                                        bool referencePaths) {
  PixelMode mode;
  switch (colors) {
    case 256:
      mode = PixelMode::Colors256;
      break;
    case 4096:
      mode = PixelMode::Colors4096;
      break;
    case 65536:
      mode = PixelMode::Colors65536;
      break;
    case 262144:
      mode = PixelMode::Colors262k;
      break;
    default:
      return Error{Error::Kind::Refused, inPath, 0, 0,
                   QStringLiteral("pictures convert to 256, 4096, 65536 or 262144 colours")};
  }
  QImageReader reader(inPath);
  QImage image = reader.read();
  if (image.isNull()) {
    return Error{Error::Kind::Parse, inPath, 0, 0,
                 QStringLiteral("not a picture that can be read: ") + reader.errorString()};
  }
  image = AsRgb32(image);
  PaletteState palettes;
  Install(palettes, mode, DefaultPalette(mode));
  platform::NoKeyPoll never;
  ConvertToNearestColor(image, palettes, mode, never, referencePaths);
  QByteArray bytes;
  {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, QFileInfo(outPath).suffix().toLatin1());
    if (!writer.write(image)) {
      return Error{Error::Kind::Io, outPath, 0, 0, writer.errorString()};
    }
  }
  return WriteFileAtomically(outPath, bytes);
}

}  // namespace vt::canvas
