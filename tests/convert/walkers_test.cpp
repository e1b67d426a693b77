// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "convert/conversion_cursor.h"
#include "convert/pixel_source.h"
#include "convert/scan_walker.h"
#include "convert/color_packers.h"
#include "convert_test_util.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "settings/settings.h"

namespace vt::convert {
namespace {

using settings::PixelMode;
using settings::ScanDirection;
using test::Hex;
using test::Picture;
using test::RecordingSink;
using test::Sparse;

/// Settings for a walk in `direction` from `corner` (0: the direction's own) over a `width` x
/// `height` display in `mode`, with `keys` set on top.
settings::Settings WalkSettings(ScanDirection direction, int width, int height,
                                const char* keys = "", PixelMode mode = PixelMode::Monochrome,
                                int corner = 0) {
  if (corner == 0) corner = static_cast<int>(settings::Info(direction).corner) + 1;
  settings::Settings s =
      test::With((std::string("tr=0|CORN1=0|") + settings::Info(direction).key + "=1|CORN" +
                  std::to_string(corner) + "=1|GWI=" + std::to_string(width) +
                  "|GHI=" + std::to_string(height))
                     .c_str());
  settings::ApplyModeFlags(s.pixel, settings::Info(mode).flags);
  return test::With(keys, s);
}

/// The outcome of one walk.
struct Walked {
  RecordingSink sink;
  ConversionCursor cursor;
  bool completed = false;
};

/// Walks `area` of `image` (the whole image when empty); Escape is pressed only by `keys`.
Walked Walk(const settings::Settings& settings, const QImage& image, AreaBounds area = {},
            platform::KeyPoll* keys = nullptr, bool lowerHalf = false, bool aborted = false) {
  if (area.right == 0) area = AreaBounds{0, 0, image.width(), image.height()};
  Walked w;
  w.cursor.Aborted = aborted;
  platform::NoKeyPoll noKeys;
  const ImagePixelSource source(image);
  ColorSearch colors(canvas::DefaultSearchTable(
      settings::CurrentPixelMode(settings).value_or(settings::PixelMode::Monochrome)));
  const WalkRequest request{.settings = settings,
                            .source = source,
                            .stages = PackerStages{w.sink, nullptr, nullptr, &colors},
                            .keyPoll = keys ? *keys : noKeys,
                            .area = area,
                            .lowerHalf = lowerHalf};
  w.completed = WalkArea(request, w.cursor);
  return w;
}

/// 16 x 16, black at: (0,0) (1,0) (2,0) (0,1) (0,2) in the top left corner, (10,4), (5,13) and
/// (15,15). No two orientations read it alike.
QImage Sample() {
  const std::string blank(16, '.');
  return Picture({"###.............", "#...............", "#...............", blank.c_str(),
                  "..........#.....", blank.c_str(), blank.c_str(), blank.c_str(), blank.c_str(),
                  blank.c_str(), blank.c_str(), blank.c_str(), blank.c_str(), ".....#..........",
                  blank.c_str(), "...............#"});
}

// The 32 bytes of the sample in every direction, bit order and corner, as "index:byte" for the
// bytes that are not 0. A row of tr is two bytes (columns 0-7, 8-15); a page of td is rows 0-7
// or 8-15. MSB first puts the first pixel read in bit 7 (0x80), MSB last in bit 0 (0x01).
TEST(ScanWalker, EveryOrientationGivesTheStreamWorkedOutByHand) {
  // Direction, MSB first, the corners that all give this stream, its bytes.
  const std::tuple<ScanDirection, bool, const char*, const char*> cases[] = {
      // tr: rows from the top with CORN1. Row 0 reads columns 0 1 2 = 0x80+0x40+0x20; (10,4)
      // is the third pixel of row 4's second byte (0x20); (5,13) the sixth of row 13's first
      // (0x04); (15,15) the last of row 15's second (0x01). Other corners: rows from the bottom.
      {ScanDirection::tr, true, "1", "0:E0 2:80 4:80 9:20 26:04 31:01"},
      {ScanDirection::tr, false, "1", "0:07 2:01 4:01 9:04 26:20 31:80"},
      {ScanDirection::tr, true, "234", "1:01 4:04 23:20 26:80 28:80 30:E0"},
      {ScanDirection::tr, false, "234", "1:80 4:20 23:04 26:01 28:01 30:07"},
      // tl: rows from the top with CORN2, each read from column 15 leftwards: first byte
      // columns 15-8, second 7-0; columns 2 1 0 are the last three read of row 0.
      {ScanDirection::tl, true, "2", "1:07 3:01 5:01 8:04 27:20 30:80"},
      {ScanDirection::tl, false, "2", "1:E0 3:80 5:80 8:20 27:04 30:01"},
      {ScanDirection::tl, true, "134", "0:80 5:20 22:04 27:01 29:01 31:07"},
      {ScanDirection::tl, false, "134", "0:01 5:04 22:20 27:80 29:80 31:E0"},
      // tra: byte column 0-7 down all rows, then 8-15; rows from the top with CORN1.
      {ScanDirection::tra, true, "1", "0:E0 1:80 2:80 13:04 20:20 31:01"},
      {ScanDirection::tra, false, "1", "0:07 1:01 2:01 13:20 20:04 31:80"},
      {ScanDirection::tra, true, "234", "2:04 13:80 14:80 15:E0 16:01 27:20"},
      {ScanDirection::tra, false, "234", "2:20 13:01 14:01 15:07 16:80 27:04"},
      // tla: byte column 15-8 (read leftwards) down all rows, then 7-0; from the top with CORN2.
      {ScanDirection::tla, true, "2", "4:04 15:80 16:07 17:01 18:01 29:20"},
      {ScanDirection::tla, false, "2", "4:20 15:01 16:E0 17:80 18:80 29:04"},
      {ScanDirection::tla, true, "134", "0:80 11:04 18:20 29:01 30:01 31:07"},
      {ScanDirection::tla, false, "134", "0:01 11:20 18:04 29:80 30:80 31:E0"},
      // td: page 0 (rows 0-7) column by column, then page 1; the top row is bit 7 with MSB
      // first: (10,4) is the fifth row of page 0 (0x08). Only CORN1 runs the columns rightwards.
      {ScanDirection::td, true, "1", "0:E0 1:80 2:80 10:08 21:04 31:01"},
      {ScanDirection::td, false, "1", "0:07 1:01 2:01 10:10 21:20 31:80"},
      {ScanDirection::td, true, "234", "5:08 13:80 14:80 15:E0 16:01 26:04"},
      {ScanDirection::td, false, "234", "5:10 13:01 14:01 15:07 16:80 26:20"},
      // tda: each column with both its pages, page 0 then page 1.
      {ScanDirection::tda, true, "1", "0:E0 2:80 4:80 11:04 20:08 31:01"},
      {ScanDirection::tda, false, "1", "0:07 2:01 4:01 11:20 20:10 31:80"},
      {ScanDirection::tda, true, "234", "1:01 10:08 21:04 26:80 28:80 30:E0"},
      {ScanDirection::tda, false, "234", "1:80 10:10 21:20 26:01 28:01 30:07"},
      // tu: page rows 15-8 (read upwards) column by column, then rows 7-0; with MSB first the
      // bottom row of a page is bit 7: (5,13) is the third read (0x20). Only CORN4 runs the
      // columns rightwards.
      {ScanDirection::tu, true, "4", "5:20 15:80 16:07 17:01 18:01 26:10"},
      {ScanDirection::tu, false, "4", "5:04 15:01 16:E0 17:80 18:80 26:08"},
      {ScanDirection::tu, true, "123", "0:80 10:20 21:10 29:01 30:01 31:07"},
      {ScanDirection::tu, false, "123", "0:01 10:04 21:08 29:80 30:80 31:E0"},
      // tua: each column with both its pages from the bottom, rows 15-8 then 7-0.
      {ScanDirection::tua, true, "4", "1:07 3:01 5:01 10:20 21:10 30:80"},
      {ScanDirection::tua, false, "4", "1:E0 3:80 5:80 10:04 21:08 30:01"},
      {ScanDirection::tua, true, "123", "0:80 11:10 20:20 27:01 29:01 31:07"},
      {ScanDirection::tua, false, "123", "0:01 11:08 20:04 27:80 29:80 31:E0"}};
  int combinations = 0;
  for (const auto& [direction, msbFirst, corners, bytes] : cases) {
    for (const char* corner = corners; *corner; ++corner, ++combinations) {
      const settings::Settings s = WalkSettings(direction, 16, 16, msbFirst ? "" : "MSBF=0",
                                                PixelMode::Monochrome, *corner - '0');
      SCOPED_TRACE(std::string(settings::Info(direction).key) + (msbFirst ? " MSBF" : " LSBF") +
                   " CORN" + *corner);
      const Walked w = Walk(s, Sample());
      EXPECT_TRUE(w.completed);
      EXPECT_EQ(Hex(w.sink.values), Hex(Sparse(32, bytes)));
      EXPECT_EQ(w.cursor.ByteCount, 32.0);
      EXPECT_EQ(w.sink.startComments, 32);
    }
  }
  EXPECT_EQ(combinations, 8 * 2 * 4);
}

TEST(ScanWalker, GroupModeStartsAGroupAtEachRowOrColumnOfTheWalk) {
  const std::vector<int> everyTwo = {0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30};
  // Direction, values emitted before each GroupStart.
  const std::tuple<ScanDirection, std::vector<int>> cases[] = {
      {ScanDirection::tr, everyTwo},  {ScanDirection::tl, everyTwo},   // 16 rows of 2 bytes
      {ScanDirection::tra, {0, 16}},  {ScanDirection::tla, {0, 16}},   // 2 byte columns of 16
      {ScanDirection::td, {0, 16}},   {ScanDirection::tu, {0, 16}},    // 2 pages of 16 columns
      {ScanDirection::tda, everyTwo}, {ScanDirection::tua, everyTwo},  // 16 columns of 2 pages
  };
  for (const auto& [direction, groupsAt] : cases) {
    const char* key = settings::Info(direction).key;
    const Walked groups = Walk(WalkSettings(direction, 16, 16, "ColRx=1"), Sample());
    EXPECT_EQ(groups.sink.groupStarts, groupsAt) << key;
    EXPECT_TRUE(Walk(WalkSettings(direction, 16, 16), Sample()).sink.groupStarts.empty()) << key;
  }
}

TEST(ScanWalker, SixBitModeWidth128GivesTwentyTwoBytesPerRowTheLastWithTwoPixels) {
  std::string blackRow(128, '#');
  std::string sparseRow(128, '.');
  sparseRow[0] = sparseRow[5] = sparseRow[127] = '#';
  const QImage image = Picture({blackRow.c_str(), sparseRow.c_str()});
  for (const bool msbFirst : {true, false}) {
    const Walked w =
        Walk(WalkSettings(ScanDirection::tr, 128, 2, msbFirst ? "bw8=0" : "bw8=0|MSBF=0"), image);
    // 128 = 21 * 6 + 2. Six black pixels fill bits 5..0 (0x3F). The last byte holds columns
    // 126, 127 and then column 128, which is still within LimitX 128 but outside the bitmap;
    // 129 exceeds the bound. With MSB first columns 126, 127 are 0x20, 0x10; with MSB last
    // 0x01, 0x02. Row 1: column 0 is the first pixel and 5 the sixth of byte 0 (0x21 either
    // way), 127 the second of byte 21.
    std::vector<int> all(44, 0x00);
    std::fill_n(all.begin(), 21, 0x3F);
    all[21] = msbFirst ? 0x30 : 0x03;
    all[22] = 0x21;
    all[43] = msbFirst ? 0x10 : 0x02;
    EXPECT_EQ(Hex(w.sink.values), Hex(all)) << "MSBF " << msbFirst;
    EXPECT_EQ(w.cursor.BytesPerRow, 22);
  }
}

TEST(ScanWalker, Width100DropsTheLastFourPixelsOfEachRow) {
  std::string row(100, '.');
  row[88] = row[95] = '#';
  for (int x = 96; x < 100; ++x) row[x] = '#';
  const Walked w = Walk(WalkSettings(ScanDirection::tr, 100, 1), Picture({row.c_str()}));
  // 100 / 8 = 12.5: twelve bytes; the twelfth covers columns 88..95 (0x80 + 0x01), the black
  // columns 96..99 are never read.
  EXPECT_EQ(Hex(w.sink.values), Hex(Sparse(12, "11:81")));
  EXPECT_EQ(w.cursor.BytesPerRow, 12);
}

TEST(ScanWalker, LeftwardWalkReadsPixelsLeftOfTheArea) {
  // 6-bit mode over columns 2..15: 14 / 6 is 2, plus one for the remainder: 3 bytes of 6
  // pixels read leftwards from column 15. The third byte reads 3, 2, 1, 0, -1, -2: the black
  // columns 1 and 0, outside the area, are its third and fourth pixels (8 + 4).
  const Walked w = Walk(WalkSettings(ScanDirection::tl, 16, 1, "bw8=0"),
                        Picture({"##.............."}), AreaBounds{2, 0, 16, 1});
  EXPECT_EQ(Hex(w.sink.values), Hex({0x00, 0x00, 0x0C}));
}

TEST(ScanWalker, NoSizeCheckWalksOneByteColumnPerPixel) {
  // Under NOMAT PixelsPerByte is 1: 16 bytes per row of 16, each read onwards from where the
  // last stopped. Byte 0 takes columns 0..7 (0xE0 for row 0), byte 1 columns 8..15, and
  // bytes 2.. start past LimitX 16 and read nothing.
  const Walked w =
      Walk(WalkSettings(ScanDirection::tr, 16, 16, "NOMAT=1"), Sample(), AreaBounds{0, 0, 16, 1});
  EXPECT_EQ(Hex(w.sink.values), Hex(Sparse(16, "0:E0")));
  EXPECT_EQ(w.cursor.BytesPerRow, 16);
}

TEST(ScanWalker, PageAndByteCountsFollowTheModeOfTheWalk) {
  using enum ScanDirection;
  using enum PixelMode;
  const struct {
    const char* what;
    ScanDirection direction;
    PixelMode mode;
    int width, height;
    int pagesPerColumn;  // bytes down a column (vertical walks)
    int bytesPerRow;     // bytes along a row, or columns of a vertical walk
    const char* keys = "";
  } cases[] = {{"height div 8, not 24 / 2.67", td, Colors8, 4, 24, 3, 4},
               {"ceiling of 20 / 8", td, Gray16Slices, 4, 20, 3, 4},
               {"a page per row", td, Gray32Packed, 4, 10, 10, 4},
               {"p is 8", td, Gray4TwoPages, 4, 16, 2, 4},
               {"p is 4", td, Gray4, 4, 16, 4, 4},
               {"every row, half the columns", tda, Gray16Horizontal, 8, 10, 10, 4},
               {"height div 2", tda, Gray16Vertical, 8, 10, 5, 8},
               {"height div 4", tda, Gray4, 8, 12, 3, 8},
               {"height div 8", tua, Colors8, 8, 20, 2, 8},
               {"width div 8", tr, Colors8, 24, 2, 2, 3},
               {"width div 2", tr, Gray16Horizontal, 10, 2, 2, 5},
               {"a byte per pixel", tr, Colors65536, 10, 2, 2, 10},
               {"a byte column per pixel", tra, Gray32Packed, 12, 2, 2, 12},
               {"half as many", tla, Gray32Packed, 12, 2, 2, 6},
               {"unpacked: all", tla, Gray32RUnpacked, 12, 2, 2, 12},
               {"width div 4", tra, Gray4, 12, 2, 2, 3},
               // 6-bit mode in tda: the width's remainder adds a page, the height's does not.
               {"6 bit", tda, Monochrome, 12, 12, 2, 12, "bw8=0"},
               {"6 bit", tda, Monochrome, 13, 12, 3, 13, "bw8=0"},
               {"6 bit", tda, Monochrome, 12, 13, 2, 12, "bw8=0"}};
  for (const auto& c : cases) {
    const Walked w = Walk(WalkSettings(c.direction, c.width, c.height, c.keys, c.mode),
                          Picture({"."}), AreaBounds{0, 0, c.width, c.height});
    SCOPED_TRACE(testing::Message() << settings::Info(c.direction).key << " "
                                    << settings::PixelModeName(c.mode).toStdString() << " "
                                    << c.width << " x " << c.height << ": " << c.what);
    EXPECT_EQ(w.cursor.PagesPerColumn, c.pagesPerColumn);
    EXPECT_EQ(w.cursor.BytesPerRow, c.bytesPerRow);
  }
}

TEST(ScanWalker, UpwardWalkInEightColourModeWalksOnePageFewer) {
  // 24 / 2.6666665 gives a count of 9 pages; counting from 2 leaves 8 pages of rows. With 16
  // colours, p = 2, counting from 1: all 12 pages.
  const std::pair<PixelMode, unsigned> cases[] = {{PixelMode::Colors8, 8},
                                                  {PixelMode::Colors16, 12}};
  for (const auto& [mode, pages] : cases) {
    const Walked w = Walk(WalkSettings(ScanDirection::tu, 1, 24, "ColRx=1", mode), Picture({"."}),
                          AreaBounds{0, 0, 1, 24});
    EXPECT_EQ(w.sink.groupStarts.size(), pages);
  }
}

TEST(ScanWalker, EscapeOrAnAbortedCursorStopsTheWalkAtOnce) {
  // Direction, the poll that sees Escape, the bytes emitted before it.
  const std::tuple<ScanDirection, int, const char*> cases[] = {
      {ScanDirection::tr, 3, "E0 00"},     // row 0 with its two bytes, stops before row 1
      {ScanDirection::td, 4, "E0 80 80"},  // columns 0..2 of the first page
      {ScanDirection::tda, 1, ""},         // the very first poll
      {ScanDirection::tla, 17, "00 00 00 00 04 00 00 00 00 00 00 00 00 00 00 80"}};
  for (const auto& [direction, escapeAt, bytes] : cases) {
    const char* key = settings::Info(direction).key;
    test::EscapeOnPoll escape(escapeAt);
    const Walked w = Walk(WalkSettings(direction, 16, 16), Sample(), {}, &escape);
    EXPECT_FALSE(w.completed) << key;
    EXPECT_EQ(Hex(w.sink.values), bytes) << key;
    EXPECT_EQ(escape.polls, escapeAt) << key << ": no poll after the stop";
    EXPECT_EQ(w.sink.startComments, escapeAt - 1) << key << ": no byte begun after the stop";
    EXPECT_FALSE(w.cursor.Aborted) << key;
  }
  test::EscapeOnPoll never(0);
  const Walked aborted =
      Walk(WalkSettings(ScanDirection::tr, 16, 16), Sample(), {}, &never, false, true);
  EXPECT_FALSE(aborted.completed);
  EXPECT_EQ(aborted.sink.startComments + never.polls, 0);
}

TEST(ScanWalker, LowerHalfMovesTheHorizontalWalksToTheRowsBelowTheHalvedHeight) {
  // The driver halves GHI to 8 and passes the upper half as the area; the lower half is rows
  // 8..15 of the 16-row picture.
  const std::tuple<ScanDirection, const char*> cases[] = {
      // Rows 8..12 empty, row 13 has (5,13) as 0x04 in its first byte, row 15 (15,15) as 0x01.
      {ScanDirection::tr, "10:04 15:01"},
      // Byte column 15-8 over rows 8..15: (15,15) is its first pixel, 0x80; then columns 7-0:
      // (5,13) is its third, 0x20.
      {ScanDirection::tla, "7:80 13:20"},
      // Vertical walks ignore the half: page 0 (rows 0-7) as in the full walk.
      {ScanDirection::td, "0:E0 1:80 2:80 10:08"}};
  for (const auto& [direction, bytes] : cases) {
    const Walked w =
        Walk(WalkSettings(direction, 16, 8), Sample(), AreaBounds{0, 0, 16, 8}, nullptr, true);
    EXPECT_EQ(Hex(w.sink.values), Hex(Sparse(16, bytes))) << settings::Info(direction).key;
    if (direction == ScanDirection::tr) {
      EXPECT_EQ(w.cursor.AreaTop, 8);
      EXPECT_EQ(w.cursor.AreaBottom, 16);
    }
  }
}

}  // namespace
}  // namespace vt::convert
