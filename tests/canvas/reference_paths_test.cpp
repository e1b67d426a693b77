// SPDX-License-Identifier: MIT
// The colour conversions in their plain reference forms against the fast ones: the same
// pictures, counts and answers over the palette of every mode.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "canvas/color_reduction.h"
#include "canvas/palettes.h"
#include "settings/pixel_modes.h"

namespace vt::canvas {
namespace {

using settings::PixelMode;

/// The palettes of `mode` as the application installs its built-in palette.
PaletteState PalettesOf(PixelMode mode) {
  const PaletteInfo info = PaletteInfoOf(mode);
  PaletteState palettes;
  palettes.SmallPaletteMode = !info.large && info.entries > 0;
  palettes.SmallPalette = DefaultPalette(mode);
  if (info.large) {
    SortPalette(palettes.SmallPalette);
    palettes.LargePalette = palettes.SmallPalette;
  }
  return palettes;
}

/// A picture of palette colours, colours next to them and colours anywhere, with runs.
QImage Colourful(int width, int height, unsigned seed, const Palette& palette) {
  std::mt19937 random(seed);
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      Color c = random() & 0xFFFFFF;
      if (random() % 3 == 0 && !palette.empty()) c = palette[random() % palette.size()];
      if (random() % 4 == 0) c ^= 1u << (random() % 24);
      image.setPixel(x, y, ToQRgb(c));
      if (x > 0 && random() % 4 == 0) image.setPixel(x, y, image.pixel(x - 1, y));
    }
  }
  return image;
}

/// A conversion run both ways on copies of one picture; each way with palettes of its own.
template <typename Convert>
void ExpectBothWaysAlike(const QImage& picture, PixelMode mode, const std::string& what,
                         Convert convert) {
  QImage fast = picture.copy(), plain = picture.copy();
  PaletteState fastPalettes = PalettesOf(mode), plainPalettes = PalettesOf(mode);
  const auto fastAnswer = convert(fast, fastPalettes, false);
  const auto plainAnswer = convert(plain, plainPalettes, true);
  SCOPED_TRACE(settings::Info(mode).cliName + std::string(" ") + what);
  EXPECT_EQ(fastAnswer, plainAnswer);
  EXPECT_EQ(fast, plain);
  EXPECT_EQ(fastPalettes.lastIndex, plainPalettes.lastIndex);
}

TEST(ReferencePaths, ColourConversionsGiveTheSamePicturesBothWays) {
  platform::NoKeyPoll keys;
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const PixelMode mode = info.mode;
    if (PaletteInfoOf(mode).entries == 0) continue;  // monochrome and 16M convert nothing
    const QImage picture = Colourful(23, 11, 5 + unsigned(mode), PalettesOf(mode).Colors());
    ExpectBothWaysAlike(picture, mode, "nearest colour",
                        [&](QImage& image, PaletteState& p, bool plain) {
                          return ConvertToNearestColor(image, p, mode, keys, plain);
                        });
    ExpectBothWaysAlike(picture, mode, "map", [&](QImage& image, PaletteState& p, bool plain) {
      return ConvertToMyColor(image, p, mode, keys, plain);
    });
    ExpectBothWaysAlike(picture, mode, "dithered", [&](QImage& image, PaletteState& p, bool plain) {
      ReduceToPalette(image, p, mode, DitherMethod::FloydSteinberg, plain);
      return 0;
    });
    ExpectBothWaysAlike(picture, mode, "loading", [&](QImage& image, PaletteState& p, bool plain) {
      ReduceLikeLoading(image, p, mode, keys, plain);
      return 0;
    });
    ExpectBothWaysAlike(picture, mode, "export", [&](QImage& image, PaletteState& p, bool plain) {
      return ReduceForExport(image, p, mode, keys, plain);
    });
  }
}

TEST(ReferencePaths, ColourCountsAndChecksGiveTheSameAnswersBothWays) {
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const PixelMode mode = info.mode;
    const Palette table = PalettesOf(mode).Colors();
    if (table.empty()) continue;
    QImage picture = Colourful(31, 9, 17 + unsigned(mode), table);
    for (const int limit : {0, 7, 100, 1 << 24}) {
      EXPECT_EQ(CountPictureColors(picture, limit, true), CountPictureColors(picture, limit, false))
          << info.cliName << " limit " << limit;
    }
    EXPECT_EQ(CountUnknownColors(picture, table, true), CountUnknownColors(picture, table, false))
        << info.cliName;
    // The picture check before and after a reduction, which leaves palette colours only.
    for (int pass = 0; pass < 2; ++pass) {
      const ColorIndexer fast(table), plain(table, true);
      const bool unknown = HasUnknownColor(picture, fast);
      EXPECT_EQ(HasUnknownColor(picture, plain), unknown) << info.cliName << " pass " << pass;
      EXPECT_EQ(unknown, pass == 0) << info.cliName << " pass " << pass;
      PaletteState palettes = PalettesOf(mode);
      platform::NoKeyPoll keys;
      ConvertToNearestColor(picture, palettes, mode, keys);
    }
  }
}

}  // namespace
}  // namespace vt::canvas
