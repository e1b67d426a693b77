// SPDX-License-Identifier: MIT
#include "canvas/palettes.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <random>

#include "canvas/color_reduction.h"
#include "canvas/palette_files.h"
#include "temp_folders.h"

namespace vt::canvas {
namespace {

using settings::PixelMode;

Palette Sorted(PixelMode mode) {
  Palette p = DefaultPalette(mode);
  SortPalette(p);
  return p;
}

TEST(Palettes, DefaultsWidenEachChannelByRepeatingItsTopBits) {
  const struct {
    PixelMode mode;
    std::size_t size;
    Color second;  // entry 1: the lowest step of red (or of gray)
  } cases[] = {
      {PixelMode::Gray4, 4, 0x555555},
      {PixelMode::Gray16Vertical, 16, 0x111111},
      {PixelMode::Gray32Packed, 32, 0x080808},
      {PixelMode::Colors8, 8, 0xFF0000},
      {PixelMode::Colors16, 16, 0x800000},
      {PixelMode::Gray256, 256, 0x010101},
      {PixelMode::Colors256, 256, 0x000024},
      {PixelMode::Colors4096, 4096, 0x000011},
      {PixelMode::Colors65536, 0x10000, 0x000008},
      {PixelMode::Colors262k, 0x40000, 0x000004},
  };
  for (const auto& c : cases) {
    const Palette p = DefaultPalette(c.mode);
    EXPECT_EQ(p.size(), c.size);
    EXPECT_EQ(p.at(1), c.second);
  }
  // Sorted as 0x00BBGGRR, a 16-bit index is blue, green, red: red is index 31, white the last.
  const Palette p = Sorted(PixelMode::Colors65536);
  EXPECT_EQ(p[31], 0x0000FFu);
  EXPECT_EQ(p[0xFFFF], 0xFFFFFFu);
  EXPECT_EQ(DefaultPalette(PixelMode::Colors16)[7], 0xC0C0C0u);
  EXPECT_TRUE(DefaultPalette(PixelMode::Colors16M).empty());
}

TEST(Palettes, IndexIsTheFirstMatchOfALinearSearch) {
  const Palette unsorted{5, 3, 5, 0};
  const Palette slot{1, 2, 2, 3, 0};  // sorted, with a black slot at its end
  const ColorIndexer a(unsorted), b(slot);
  EXPECT_EQ(a.IndexOf(5), 0);
  EXPECT_EQ(a.IndexOf(0), 3);
  EXPECT_FALSE(a.IndexOf(7));
  EXPECT_FALSE(a.IndexOf(-1));
  EXPECT_EQ(b.IndexOf(2), 1);
  EXPECT_EQ(b.IndexOf(0), 4);
  EXPECT_EQ(DefaultSearchTable(PixelMode::Colors262k).size(), 0x40001u);
  EXPECT_EQ(DefaultSearchTable(PixelMode::Gray32Packed).size(), 33u);
}

// The large palettes are indexed from their channels, any other table through its hash: both
// must answer as a scan from entry 0 does, for colours in the table and next to them.
TEST(Palettes, IndexOfLargeAndChangedPalettesIsTheFirstMatchOfALinearSearch) {
  auto scan = [](const Palette& table, Color c) {
    const auto at = std::find(table.begin(), table.end(), c);
    return at == table.end() ? -1 : int(at - table.begin());
  };
  std::vector<Palette> tables;
  for (const PixelMode mode : {PixelMode::Colors256, PixelMode::Colors4096, PixelMode::Colors65536,
                               PixelMode::Colors262k, PixelMode::Gray256}) {
    tables.push_back(Sorted(mode));
  }
  // One entry changed, another repeated: the channels no longer tell the index.
  Palette changed = Sorted(PixelMode::Colors4096);
  changed[5] = 0x123456;
  changed[4000] = changed[7];
  tables.push_back(changed);
  // Grays are indexed by level: a level that stands twice answers its first place.
  Palette grays = Sorted(PixelMode::Gray16Vertical);
  grays[9] = grays[3];
  tables.push_back(grays);
  tables.push_back(Sorted(PixelMode::Gray4));
  std::mt19937 random(3);
  for (const Palette& table : tables) {
    const ColorIndexer index(table), linear(table, true);
    EXPECT_FALSE(linear.Grid() || linear.Grays()) << table.size();
    for (int n = 0; n < 200; ++n) {
      const Color entry = table[random() % table.size()];
      for (const Color c :
           {entry, entry ^ 1u, entry ^ 0x100u, entry ^ 0x10000u, entry | 0x1000000u}) {
        EXPECT_EQ(index.Find(c), scan(table, c)) << table.size() << " " << std::hex << c;
        EXPECT_EQ(linear.Find(c), scan(table, c)) << table.size() << " " << std::hex << c;
      }
    }
    if (table.size() > 7) EXPECT_EQ(index.Find(table[7]), 7) << table.size();
  }
}

// Grid and gray tables check a picture a row at a time; a colour off the table anywhere, one
// channel off or a gray turned colour, is found as the pixel-by-pixel count finds it.
TEST(Palettes, PictureCheckFindsAColourOffTheTableWhereverItStands) {
  Palette changed = Sorted(PixelMode::Colors4096);
  changed[5] = 0x123456;  // no grid: searched through the hash
  const Palette tables[] = {Sorted(PixelMode::Colors256),      Sorted(PixelMode::Colors65536),
                            Sorted(PixelMode::Colors262k),     Sorted(PixelMode::Gray256),
                            Sorted(PixelMode::Gray16Vertical), changed};
  std::mt19937 random(5);
  for (const Palette& table : tables) {
    const ColorIndexer index(table);
    QImage picture(13, 7, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const Color c = table[random() % table.size()];
        picture.setPixel(x, y, qRgb(int(c & 0xFF), int((c >> 8) & 0xFF), int(c >> 16)));
      }
    }
    EXPECT_FALSE(HasUnknownColor(picture, index)) << table.size();
    for (const QPoint at : {QPoint(0, 0), QPoint(12, 6), QPoint(5, 3)}) {
      for (const QRgb off : {qRgb(1, 2, 3), qRgb(0x80, 0x80, 0x81), qRgb(0xFF, 0xFF, 0xFE)}) {
        QImage stray = picture;
        stray.setPixel(at, off);
        // None of these colours is in any of the tables.
        EXPECT_TRUE(HasUnknownColor(stray, index)) << table.size() << " " << std::hex << off;
        EXPECT_EQ(CountUnknownColors(stray, index), 1) << table.size() << " " << std::hex << off;
      }
    }
  }
}

TEST(Palettes, ColourCountIsExactUpToItsLimitOnEitherKindOfSet) {
  // Pictures of `distinct` colours, each colour k at pixels k, k + distinct, ... (colours
  // spread over the whole colour space by reversing the 24 bits of k, repeated after a while
  // or not at all).
  struct Case {
    int width, height, distinct, limit, expected;
  } cases[] = {{1, 1, 1, 1 << 24, 1},
               {16, 8, 7, 1 << 24, 7},
               {16, 8, 128, 100, 101},              // stops one above the limit
               {16, 8, 128, 128, 128},              // exactly at the limit
               {320, 240, 300, 236, 237},           // few colours, a small limit
               {320, 240, 76800, 65536, 65537},     // a large limit: the set is the pixels' size
               {640, 480, 307200, 262144, 262145},  // a set that would outgrow the bits
               {640, 480, 307200, 1 << 24, 307200},
               {640, 480, 5000, 1 << 24, 5000},
               {0, 0, 1, 10, 0}};
  for (const Case& c : cases) {
    QImage picture(c.width, c.height, QImage::Format_RGB32);
    for (int y = 0; y < c.height; ++y) {
      for (int x = 0; x < c.width; ++x) {
        const std::uint32_t k = std::uint32_t((y * c.width + x) % c.distinct);
        std::uint32_t reversed = 0;
        for (int bit = 0; bit < 24; ++bit) reversed |= ((k >> bit) & 1u) << (23 - bit);
        picture.setPixel(x, y, 0xFF000000u | reversed);
      }
    }
    EXPECT_EQ(CountPictureColors(picture, c.limit), c.expected)
        << c.width << "x" << c.height << " " << c.distinct << " limit " << c.limit;
  }
}

TEST(Palettes, WindowSearchEqualsAScanOfTheWindow) {
  std::mt19937 random(7);
  std::vector<Palette> palettes;
  for (const bool grays : {false, true}) {  // many equal entries; or all far from most colours
    Palette p;
    for (int i = 0; i < 3000; ++i) {
      p.push_back(grays ? (random() & 0xFF) * 0x010101 : random() & 0xF0F0F0);
    }
    SortPalette(p);
    palettes.push_back(p);
  }
  // The built-in grids, searched channel by channel when the window holds the answer; colours
  // half way between two levels test the lowest index among equal distances.
  palettes.push_back(Sorted(PixelMode::Colors256));
  palettes.push_back(Sorted(PixelMode::Colors4096));
  palettes.push_back(Sorted(PixelMode::Colors65536));
  // Half way between two levels: 3-bit (18, 91), 5-bit (4, 12) and 6-bit (2, 6) channels.
  const Color ties[] = {18, 91, 4, 12, 2, 6};
  for (const Palette& p : palettes) {
    // The reference form scans every window: it must agree too.
    NearestColorSearch search(p), scanning(p, true);
    const int n = int(p.size());
    for (int k = 0; k < 400; ++k) {
      const Color c = k % 2 == 0
                          ? ties[random() % 6] | ties[random() % 6] << 8 | ties[random() % 6] << 16
                          : random() & 0xFFFFFF;
      const int lo = int(random() % n), hi = lo + int(random() % (k % 2 ? 800 : n));
      int best = 1 << 30, want = -1;
      for (int i = lo; i <= std::min(hi, n - 1); ++i) {
        if (ColorDistance(c, p[i]) < best) best = ColorDistance(c, p[i]), want = i;
      }
      ASSERT_EQ(search.SearchWindow(c, lo, hi), want) << n << " " << c;
      ASSERT_EQ(scanning.SearchWindow(c, lo, hi), want) << n << " " << c;
    }
  }
}

TEST(Palettes, NearestColorSearchesOnlyItsQuarter) {
  const Palette p = Sorted(PixelMode::Colors65536);
  NearestColorSearch search(p);
  // Pure blue 0xC6 equals P[n/4*3] and so falls to the window below, which ends at blue 0xBD.
  EXPECT_EQ(search.NearestColor(0xC60000), 0xBD0000u);
  EXPECT_EQ(search.NearestColor(0xC60001), 0xC60000u);
  EXPECT_EQ(search.NearestColor(0x0000FE), 0x0000FFu);
  EXPECT_EQ(search.NearestColor(0), 0u);
  EXPECT_EQ(search.NearestColor(kNoColor), kNoColor);
  // The map form never tries the top quarter; with 4 entries its upper window is empty.
  // Blue 23 with green 63 and red 31 lies just past the window: green 62 is the nearest then.
  EXPECT_EQ(search.NearestColorKill(0xFFFFFF), 0xBDFBFFu);
  const Palette gray4 = DefaultPalette(PixelMode::Gray4);
  EXPECT_EQ(NearestColorSearch(gray4).NearestColorKill(0xFFFFFF), 0u);
  EXPECT_EQ(NearestSmallColor(0x808080, gray4), 0xAAAAAAu);  // 0x80 is nearer 0xAA than 0x55
}

TEST(Palettes, ReductionsAndGray) {
  PaletteState palettes;
  palettes.SmallPalette = DefaultPalette(PixelMode::Gray4);
  palettes.SmallPaletteMode = true;
  // Five grays after the gray conversion (76, 200, 0, 10, 100): more than the palette holds.
  const QRgb in[] = {qRgb(255, 0, 0), qRgb(200, 200, 200), 0, qRgb(10, 10, 10),
                     qRgb(100, 100, 100)};
  const Color out[] = {0x555555, 0xAAAAAA, 0, 0, 0x555555};
  QImage image(5, 1, QImage::Format_RGB32);
  for (int x = 0; x < 5; ++x) image.setPixel(x, 0, in[x]);
  platform::NoKeyPoll keys;
  ReduceLikeLoading(image, palettes, PixelMode::Gray4, keys);
  for (int x = 0; x < 5; ++x) EXPECT_EQ(image.pixel(x, 0) & 0xFFFFFF, out[x]);
  EXPECT_EQ(CountUnknownColors(image, palettes.SmallPalette), 0);
  image.setPixel(2, 0, qRgb(255, 255, 255));
  ConvertToMyColor(image, palettes, PixelMode::Gray4, keys);  // white: empty window, 0
  EXPECT_EQ(image.pixel(2, 0) & 0xFFFFFF, 0u);

  // A large palette's search is kept between conversions; another palette is searched anew.
  PaletteState large;
  large.LargePalette = Sorted(PixelMode::Colors256);
  QImage orange(1, 1, QImage::Format_RGB32);
  for (const PixelMode mode : {PixelMode::Colors256, PixelMode::Colors4096, PixelMode::Colors256}) {
    large.LargePalette = Sorted(mode);
    orange.setPixel(0, 0, qRgb(250, 130, 10));
    ConvertToNearestColor(orange, large, mode, keys);
    // 3-bit red and green levels 255 and 146, blue 0 of 2 bits; 4-bit levels 255, 136, 17.
    EXPECT_EQ(orange.pixel(0, 0) & 0xFFFFFF, mode == PixelMode::Colors256 ? 0xFF9200u : 0xFF8811u);
  }
}

// In 256 colours the export converts a picture of more than 236 colours again, even when
// they are all in the palette; up to 236 it leaves the picture alone. Runs of one colour and
// colours seen before count once.
TEST(Palettes, ExportReductionIn256ColoursCountsUpTo236Colours) {
  PaletteState palettes;
  palettes.LargePalette = Sorted(PixelMode::Colors256);
  palettes.SmallPalette = palettes.LargePalette;
  platform::NoKeyPoll keys;
  for (const int colours : {1, 236, 237, 256}) {
    // Each colour twice in a row and once more at the end of the picture.
    QImage image(colours * 2 + colours, 1, QImage::Format_RGB32);
    for (int i = 0; i < colours; ++i) {
      const QRgb c = ToQRgb(palettes.LargePalette[std::size_t(i)]);
      image.setPixel(2 * i, 0, c);
      image.setPixel(2 * i + 1, 0, c);
      image.setPixel(2 * colours + i, 0, c);
    }
    const QImage before = image.copy();
    const ConversionStatus status = ReduceForExport(image, palettes, PixelMode::Colors256, keys);
    EXPECT_EQ(status, colours > 236 ? ConversionStatus::Done : ConversionStatus::NoConversion)
        << colours;
    if (colours <= 236) {
      EXPECT_EQ(image, before) << colours;
    }
  }
}

TEST(PaletteFiles, RoundTripsAndBadLinesNameFileAndLine) {
  EXPECT_EQ(ParseColorText(QStringLiteral(" $000000FF ")), 0xFFu);
  EXPECT_EQ(ParseColorText(QStringLiteral("255")), 0xFFu);
  EXPECT_EQ(ParseColorText(QStringLiteral("clRed")), 0xFFu);
  EXPECT_EQ(ParseColorText(QStringLiteral("White")), 0xFFFFFFu);
  EXPECT_FALSE(ParseColorText(QStringLiteral("$1000000")));
  EXPECT_FALSE(ParseColorText(QStringLiteral("reddish")));

  const Palette p = DefaultPalette(PixelMode::Colors8);
  const QString text = QString::fromLatin1(PaletteFileText(p));
  EXPECT_TRUE(text.startsWith(QLatin1String("$00000000\r\n$00FF0000\r\n")));
  EXPECT_EQ(ParsePaletteText(text, QStringLiteral("p.pal"), 8).value(), p);
  const auto extra = ParsePaletteText(text + QStringLiteral("0\r\n"), QStringLiteral("p.pal"), 8);
  ASSERT_FALSE(extra);
  EXPECT_EQ(extra.error().ToString(),
            QLatin1String("p.pal: 9 lines where the palette has 8 colours"));
  const auto bad = ParsePaletteText(QStringLiteral("0\n$FF\nteal-ish\n"), QStringLiteral("q.pal"));
  ASSERT_FALSE(bad);
  EXPECT_EQ(bad.error().line, 3);
  EXPECT_EQ(bad.error().path, QLatin1String("q.pal"));

  const std::vector<ColorListEntry> list{{QStringLiteral("Tomato"), 255, 99, 71, {"Red"}},
                                         {QStringLiteral("Navy"), 0, 0, 128, {}}};
  for (const ColorListKind kind : {ColorListKind::Hex, ColorListKind::Rgb}) {
    const QString written = QString::fromUtf8(ColorListText(list, kind));
    const auto back = ParseColorList(written, kind, QStringLiteral("c"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back.value()[0].GridRow(6), (QStringList{"Tomato", "255", "99", "71", "Red", "0"}));
    EXPECT_EQ(back.value()[1].color(), 0x800000u);
    EXPECT_EQ(FilterColorList(back.value(), kind, QStringLiteral("TOM")).size(), 1u);
  }
  EXPECT_TRUE(QString::fromUtf8(ColorListText(list, ColorListKind::Hex))
                  .startsWith("Tomato;#FF6347;Red\r\n"));
  const auto wrong = ParseColorList(QStringLiteral("A;1;2;3\n\nB;1;300;3\n"), ColorListKind::Rgb,
                                    QStringLiteral("x.csvrgb"));
  ASSERT_FALSE(wrong);
  EXPECT_EQ(wrong.error().line, 3);
  EXPECT_FALSE(ParseColorList(QStringLiteral("A;FF0000"), ColorListKind::Hex, QString()));
}

// A file is read from its bytes, the usual lines quickly; it must give what the text parser
// gives, colours or the fault with its line.
TEST(PaletteFiles, ReadingAFileGivesWhatTheTextParserGives) {
  QTemporaryDir dir;
  const struct {
    const char* text;
    int entries;
  } cases[] = {
      {"$00000000\r\n$00ff0000\r\n $0000FFFF\t\r\n", 3},
      {"0\n255\n 00016777215 \n", 3},
      {"clRed\r\nWhite\n$FF\n", 0},
      {"$1\n\n$2\n", 0},       // an empty line is no colour
      {"$1\r\n$2\r", 2},       // a lone CR ends the text
      {"$1\n$2\n", 3},         // too few lines
      {"$1000000\n", 1},       // past 24 bits
      {"$000000001\n", 1},     // nine digits
      {"$0x12\n+5\n-5\n", 0},  // forms only the text parser knows, or refuses
      {"99999999999999999999\n", 1},
      {"$12\n12 34\n", 2},
      {"", 0},
  };
  for (const auto& c : cases) {
    const QString path = dir.path() + QStringLiteral("/p.pal");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(c.text);
    file.close();
    const Result<Palette> parsed = ParsePaletteText(QString::fromUtf8(c.text), path, c.entries);
    // The bytes read in the written forms, and the reference path's whole text parsed.
    for (const bool referencePaths : {false, true}) {
      const Result<Palette> read = ReadPaletteFile(path, c.entries, referencePaths);
      ASSERT_EQ(read.ok(), parsed.ok()) << c.text << referencePaths;
      if (read.ok()) {
        EXPECT_EQ(read.value(), parsed.value()) << c.text << referencePaths;
      } else {
        EXPECT_EQ(read.error().ToString(), parsed.error().ToString()) << c.text << referencePaths;
      }
    }
  }
}

}  // namespace
}  // namespace vt::canvas

namespace vt::canvas {
namespace {}  // namespace
}  // namespace vt::canvas
