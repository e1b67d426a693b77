// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "convert/conversion_cursor.h"
#include "convert/pixel_source.h"
#include "convert/scan_walker.h"
#include "convert_test_util.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "settings/settings.h"

namespace vt::convert {
namespace {

using settings::OriginCorner;
using settings::PixelMode;
using settings::ScanDirection;
using test::Hex;
using test::Picture;
using test::RecordingSink;
using test::Repeat;

void SetDirection(settings::Settings& s, ScanDirection direction) {
  settings::ScanSettings& scan = s.scan;
  scan.tr = direction == ScanDirection::tr;
  scan.tra = direction == ScanDirection::tra;
  scan.tl = direction == ScanDirection::tl;
  scan.tla = direction == ScanDirection::tla;
  scan.td = direction == ScanDirection::td;
  scan.tda = direction == ScanDirection::tda;
  scan.tu = direction == ScanDirection::tu;
  scan.tua = direction == ScanDirection::tua;
}

void SetCorner(settings::Settings& s, OriginCorner corner) {
  s.scan.CORN1 = corner == OriginCorner::CORN1;
  s.scan.CORN2 = corner == OriginCorner::CORN2;
  s.scan.CORN3 = corner == OriginCorner::CORN3;
  s.scan.CORN4 = corner == OriginCorner::CORN4;
}

/// Settings for a walk over a `width` x `height` display in `mode`.
settings::Settings WalkSettings(ScanDirection direction, int width, int height,
                                PixelMode mode = PixelMode::Monochrome) {
  settings::Settings s;
  settings::ApplyModeFlags(s.pixel, settings::Info(mode).flags);
  s.display.GWI = width;
  s.display.GHI = height;
  SetDirection(s, direction);
  SetCorner(s, settings::Info(direction).corner);
  return s;
}

/// The outcome of one walk.
struct Walked {
  RecordingSink sink;
  ConversionCursor cursor;
  bool completed = false;
};

/// Walks `area` of `image` with `settings`; Escape is never pressed unless `keys` says so.
Walked Walk(const settings::Settings& settings, const QImage& image, AreaBounds area,
            platform::KeyPoll* keys = nullptr, bool lowerHalf = false) {
  Walked w;
  platform::NoKeyPoll noKeys;
  const ImagePixelSource source(image);
  const WalkRequest request{.settings = settings,
                            .source = source,
                            .stages = PackerStages{w.sink},
                            .keyPoll = keys ? *keys : noKeys,
                            .area = area,
                            .lowerHalf = lowerHalf};
  w.completed = WalkArea(request, w.cursor);
  return w;
}

Walked WalkWhole(const settings::Settings& settings, const QImage& image) {
  return Walk(settings, image, AreaBounds{0, 0, image.width(), image.height()});
}

// ---- Every direction, bit order and corner over one picture ---------------------------------

/// 16 x 16, black at: (0,0) (1,0) (2,0) (0,1) (0,2) in the top left corner, (10,4), (5,13) and
/// (15,15). No two orientations read it alike.
QImage Sample() {
  return Picture({
      "###.............",  // 0
      "#...............",  // 1
      "#...............",  // 2
      "................",  // 3
      "..........#.....",  // 4
      "................",  // 5
      "................",  // 6
      "................",  // 7
      "................",  // 8
      "................",  // 9
      "................",  // 10
      "................",  // 11
      "................",  // 12
      ".....#..........",  // 13
      "................",  // 14
      "...............#",  // 15
  });
}

struct OrientationCase {
  ScanDirection direction;
  bool msbFirst;
  std::vector<OriginCorner> corners;  ///< the corners that all give this stream
  std::vector<int> bytes;
};

constexpr OriginCorner C1 = OriginCorner::CORN1;
constexpr OriginCorner C2 = OriginCorner::CORN2;
constexpr OriginCorner C3 = OriginCorner::CORN3;
constexpr OriginCorner C4 = OriginCorner::CORN4;

// Notation in the comments: "rN" row N, "cN" column N, "pN" page N; a row of tr is two bytes
// (columns 0-7, 8-15); a page of td is rows 0-7 or 8-15. MSB first puts the first pixel read in
// bit 7 (0x80), MSB last in bit 0 (0x01).
const std::vector<OrientationCase>& OrientationCases() {
  static const std::vector<OrientationCase> cases = {
      // tr: rows from the top with CORN1. r0 reads c0 c1 c2 = 0x80+0x40+0x20; (10,4) is the
      // third pixel of r4's second byte (0x20); (5,13) the sixth of r13's first (0x04);
      // (15,15) the last of r15's second (0x01).
      {ScanDirection::tr, true, {C1}, {0xE0, 0,    0x80, 0, 0x80, 0, 0, 0,
                                       0,    0x20, 0,    0, 0,    0, 0, 0,  // r0-r7
                                       0,    0,    0,    0, 0,    0, 0, 0,
                                       0,    0,    0x04, 0, 0,    0, 0, 0x01}},  // r8-r15
      // MSB last: the same pixels as bits 0,1,2 / 2 / 5 / 7.
      {ScanDirection::tr, false, {C1}, {0x07, 0, 0x01, 0, 0x01, 0, 0, 0, 0, 0x04, 0,
                                        0,    0, 0,    0, 0,    0, 0, 0, 0, 0,    0,
                                        0,    0, 0,    0, 0x20, 0, 0, 0, 0, 0x80}},
      // Any other corner: rows from the bottom, r15 first.
      {ScanDirection::tr, true, {C2, C3, C4}, {0, 0x01, 0,    0, 0x04, 0, 0,    0,
                                               0, 0,    0,    0, 0,    0, 0,    0,  // r15-r8
                                               0, 0,    0,    0, 0,    0, 0,    0x20,
                                               0, 0,    0x80, 0, 0x80, 0, 0xE0, 0}},
      {ScanDirection::tr, false, {C2, C3, C4}, {0, 0x80, 0, 0, 0x20, 0, 0,    0, 0,    0, 0,
                                                0, 0,    0, 0, 0,    0, 0,    0, 0,    0, 0,
                                                0, 0x04, 0, 0, 0x01, 0, 0x01, 0, 0x07, 0}},

      // tl: rows from the top with CORN2, each row read from c15 leftwards: first byte c15-c8,
      // second c7-c0. r0: c2 c1 c0 are the last three read (0x04+0x02+0x01); (10,4) the sixth of
      // the first byte (0x04); (5,13) the third of the second (0x20); (15,15) the first (0x80).
      {ScanDirection::tl, true, {C2}, {0, 0x07, 0, 0x01, 0, 0x01, 0, 0, 0x04, 0, 0,
                                       0, 0,    0, 0,    0, 0,    0, 0, 0,    0, 0,
                                       0, 0,    0, 0,    0, 0x20, 0, 0, 0x80, 0}},
      {ScanDirection::tl, false, {C2}, {0, 0xE0, 0, 0x80, 0, 0x80, 0, 0, 0x20, 0, 0,
                                        0, 0,    0, 0,    0, 0,    0, 0, 0,    0, 0,
                                        0, 0,    0, 0,    0, 0x04, 0, 0, 0x01, 0}},
      {ScanDirection::tl, true, {C1, C3, C4}, {0x80, 0, 0, 0,    0, 0x20, 0,    0,
                                               0,    0, 0, 0,    0, 0,    0,    0,  // r15-r8
                                               0,    0, 0, 0,    0, 0,    0x04, 0,
                                               0,    0, 0, 0x01, 0, 0x01, 0,    0x07}},
      {ScanDirection::tl, false, {C1, C3, C4}, {0x01, 0, 0, 0, 0, 0x04, 0, 0,    0, 0,   0,
                                                0,    0, 0, 0, 0, 0,    0, 0,    0, 0,   0,
                                                0x20, 0, 0, 0, 0, 0x80, 0, 0x80, 0, 0xE0}},

      // tra: byte column c0-c7 down all rows, then c8-c15; rows from the top with CORN1.
      {ScanDirection::tra, true, {C1}, {0xE0, 0x80, 0x80, 0, 0,    0,    0, 0,
                                        0,    0,    0,    0, 0,    0x04, 0, 0,  // c0-c7, r0-r15
                                        0,    0,    0,    0, 0x20, 0,    0, 0,
                                        0,    0,    0,    0, 0,    0,    0, 0x01}},  // c8-c15
      {ScanDirection::tra, false, {C1}, {0x07, 0x01, 0x01, 0, 0, 0, 0, 0, 0, 0,    0,
                                         0,    0,    0x20, 0, 0, 0, 0, 0, 0, 0x04, 0,
                                         0,    0,    0,    0, 0, 0, 0, 0, 0, 0x80}},
      {ScanDirection::tra,
       true,
       {C2, C3, C4},
       {0,    0, 0x04, 0, 0, 0, 0, 0, 0, 0, 0, 0,    0, 0x80, 0x80, 0xE0,  // c0-c7, r15-r0
        0x01, 0, 0,    0, 0, 0, 0, 0, 0, 0, 0, 0x20, 0, 0,    0,    0}},
      {ScanDirection::tra, false, {C2, C3, C4}, {0, 0, 0x20, 0,    0,    0,    0, 0, 0, 0, 0,
                                                 0, 0, 0x01, 0x01, 0x07, 0x80, 0, 0, 0, 0, 0,
                                                 0, 0, 0,    0,    0,    0x04, 0, 0, 0, 0}},

      // tla: byte column c15-c8 (read leftwards) down all rows, then c7-c0; rows from the top
      // with CORN2.
      {ScanDirection::tla, true, {C2}, {0,    0,    0,    0, 0x04, 0,    0, 0,
                                        0,    0,    0,    0, 0,    0,    0, 0x80,  // c15-c8, r0-r15
                                        0x07, 0x01, 0x01, 0, 0,    0,    0, 0,
                                        0,    0,    0,    0, 0,    0x20, 0, 0}},
      {ScanDirection::tla, false, {C2}, {0, 0, 0, 0, 0x20, 0,    0,    0,    0, 0, 0,
                                         0, 0, 0, 0, 0x01, 0xE0, 0x80, 0x80, 0, 0, 0,
                                         0, 0, 0, 0, 0,    0,    0,    0x04, 0, 0}},
      {ScanDirection::tla, true, {C1, C3, C4}, {0x80, 0, 0,    0, 0,    0,    0,   0, 0,
                                                0,    0, 0x04, 0, 0,    0,    0,  // c15-c8, r15-r0
                                                0,    0, 0x20, 0, 0,    0,    0,   0, 0,
                                                0,    0, 0,    0, 0x01, 0x01, 0x07}},
      {ScanDirection::tla, false, {C1, C3, C4}, {0x01, 0, 0, 0, 0, 0, 0, 0,    0,    0,   0,
                                                 0x20, 0, 0, 0, 0, 0, 0, 0x04, 0,    0,   0,
                                                 0,    0, 0, 0, 0, 0, 0, 0x80, 0x80, 0xE0}},

      // td: page r0-r7 column by column, then page r8-r15; the top row is bit 7 with MSB
      // first. c0 holds r0 r1 r2 (0xE0); (10,4) is the fifth row of p0 (0x08); (5,13) the sixth
      // of p1 (0x04); (15,15) the last (0x01). Only CORN1 runs the columns left to right.
      {ScanDirection::td, true, {C1}, {0xE0, 0x80, 0x80, 0, 0, 0,    0, 0,
                                       0,    0,    0x08, 0, 0, 0,    0, 0,  // p0, c0-c15
                                       0,    0,    0,    0, 0, 0x04, 0, 0,
                                       0,    0,    0,    0, 0, 0,    0, 0x01}},  // p1
      {ScanDirection::td, false, {C1}, {0x07, 0x01, 0x01, 0, 0, 0, 0, 0, 0, 0,   0x10,
                                        0,    0,    0,    0, 0, 0, 0, 0, 0, 0,   0x20,
                                        0,    0,    0,    0, 0, 0, 0, 0, 0, 0x80}},
      {ScanDirection::td, true, {C2, C3, C4}, {0,    0, 0,    0, 0, 0x08, 0,    0,
                                               0,    0, 0,    0, 0, 0x80, 0x80, 0xE0,  // p0, c15-c0
                                               0x01, 0, 0,    0, 0, 0,    0,    0,
                                               0,    0, 0x04, 0, 0, 0,    0,    0}},
      {ScanDirection::td, false, {C2, C3, C4}, {0, 0, 0,    0,    0,    0x10, 0, 0, 0, 0, 0,
                                                0, 0, 0x01, 0x01, 0x07, 0x80, 0, 0, 0, 0, 0,
                                                0, 0, 0,    0,    0x20, 0,    0, 0, 0, 0}},

      // tda: each column with both its pages, p0 then p1.
      {ScanDirection::tda, true, {C1}, {0xE0, 0, 0x80, 0,    0x80, 0, 0, 0,
                                        0,    0, 0,    0x04, 0,    0, 0, 0,  // c0-c7
                                        0,    0, 0,    0,    0x08, 0, 0, 0,
                                        0,    0, 0,    0,    0,    0, 0, 0x01}},  // c8-c15
      {ScanDirection::tda, false, {C1}, {0x07, 0, 0x01, 0, 0x01, 0, 0, 0, 0, 0,    0,
                                         0x20, 0, 0,    0, 0,    0, 0, 0, 0, 0x10, 0,
                                         0,    0, 0,    0, 0,    0, 0, 0, 0, 0x80}},
      {ScanDirection::tda, true, {C2, C3, C4}, {0, 0x01, 0,    0, 0,    0,    0,    0,
                                                0, 0,    0x08, 0, 0,    0,    0,    0,  // c15-c8
                                                0, 0,    0,    0, 0,    0x04, 0,    0,
                                                0, 0,    0x80, 0, 0x80, 0,    0xE0, 0}},
      {ScanDirection::tda, false, {C2, C3, C4}, {0, 0x80, 0, 0, 0,    0, 0,    0, 0,    0, 0x10,
                                                 0, 0,    0, 0, 0,    0, 0,    0, 0,    0, 0x20,
                                                 0, 0,    0, 0, 0x01, 0, 0x01, 0, 0x07, 0}},

      // tu: page r15-r8 (read upwards from r15) column by column, then page r7-r0. With MSB
      // first the bottom row of a page is bit 7: (5,13) is the third read (0x20), (15,15) the
      // first (0x80); r2 r1 r0 of c0 are the last three (0x07); (10,4) the fourth (0x10). Only
      // CORN4 runs the columns left to right.
      {ScanDirection::tu, true, {C4}, {0,    0,    0,    0, 0, 0x20, 0, 0,
                                       0,    0,    0,    0, 0, 0,    0, 0x80,  // p r15-r8, c0-c15
                                       0x07, 0x01, 0x01, 0, 0, 0,    0, 0,
                                       0,    0,    0x10, 0, 0, 0,    0, 0}},  // p r7-r0
      {ScanDirection::tu, false, {C4}, {0, 0, 0, 0, 0,    0x04, 0,    0,    0, 0, 0,
                                        0, 0, 0, 0, 0x01, 0xE0, 0x80, 0x80, 0, 0, 0,
                                        0, 0, 0, 0, 0x08, 0,    0,    0,    0, 0}},
      {ScanDirection::tu, true, {C1, C2, C3}, {0x80, 0, 0,    0, 0, 0,    0,    0,
                                               0,    0, 0x20, 0, 0, 0,    0,    0,  // c15-c0
                                               0,    0, 0,    0, 0, 0x10, 0,    0,
                                               0,    0, 0,    0, 0, 0x01, 0x01, 0x07}},
      {ScanDirection::tu, false, {C1, C2, C3}, {0x01, 0, 0, 0, 0, 0, 0, 0,    0,    0,   0x04,
                                                0,    0, 0, 0, 0, 0, 0, 0,    0,    0,   0x08,
                                                0,    0, 0, 0, 0, 0, 0, 0x80, 0x80, 0xE0}},

      // tua: each column with both its pages from the bottom, r15-r8 then r7-r0.
      {ScanDirection::tua, true, {C4}, {0, 0x07, 0,    0x01, 0, 0x01, 0,    0,
                                        0, 0,    0x20, 0,    0, 0,    0,    0,  // c0-c7
                                        0, 0,    0,    0,    0, 0x10, 0,    0,
                                        0, 0,    0,    0,    0, 0,    0x80, 0}},  // c8-c15
      {ScanDirection::tua, false, {C4}, {0, 0xE0, 0, 0x80, 0, 0x80, 0, 0, 0,    0, 0x04,
                                         0, 0,    0, 0,    0, 0,    0, 0, 0,    0, 0x08,
                                         0, 0,    0, 0,    0, 0,    0, 0, 0x01, 0}},
      {ScanDirection::tua, true, {C1, C2, C3}, {0x80, 0, 0, 0,    0,    0,    0, 0,
                                                0,    0, 0, 0x10, 0,    0,    0, 0,  // c15-c8
                                                0,    0, 0, 0,    0x20, 0,    0, 0,
                                                0,    0, 0, 0x01, 0,    0x01, 0, 0x07}},
      {ScanDirection::tua, false, {C1, C2, C3}, {0x01, 0, 0, 0, 0, 0,    0, 0,    0, 0,    0,
                                                 0x08, 0, 0, 0, 0, 0,    0, 0,    0, 0x04, 0,
                                                 0,    0, 0, 0, 0, 0x80, 0, 0x80, 0, 0xE0}},
  };
  return cases;
}

struct OrientationParam {
  ScanDirection direction;
  bool msbFirst;
  OriginCorner corner;
  std::vector<int> bytes;
};

std::vector<OrientationParam> OrientationParams() {
  std::vector<OrientationParam> params;
  for (const OrientationCase& c : OrientationCases()) {
    for (OriginCorner corner : c.corners) {
      params.push_back({c.direction, c.msbFirst, corner, c.bytes});
    }
  }
  return params;
}

class Orientation : public ::testing::TestWithParam<OrientationParam> {};

TEST_P(Orientation, GivesTheStreamWorkedOutByHand) {
  const OrientationParam& p = GetParam();
  settings::Settings s = WalkSettings(p.direction, 16, 16);
  s.scan.MSBF = p.msbFirst;
  SetCorner(s, p.corner);
  const QImage image = Sample();
  const Walked w = WalkWhole(s, image);
  EXPECT_TRUE(w.completed);
  EXPECT_EQ(Hex(w.sink.values), Hex(p.bytes));
  EXPECT_EQ(w.cursor.ByteCount, 32.0);
  EXPECT_EQ(w.sink.startComments, 32);
}

INSTANTIATE_TEST_SUITE_P(AllDirections, Orientation, ::testing::ValuesIn(OrientationParams()),
                         [](const ::testing::TestParamInfo<OrientationParam>& info) {
                           const int corner = static_cast<int>(info.param.corner) + 1;
                           return std::string(settings::Info(info.param.direction).key) +
                                  (info.param.msbFirst ? "_MSBF_CORN" : "_LSBF_CORN") +
                                  std::to_string(corner);
                         });

TEST(ScanWalker, TheTableCoversEveryDirectionBitOrderAndCorner) {
  int combinations = 0;
  for (const OrientationCase& c : OrientationCases()) {
    combinations += static_cast<int>(c.corners.size());
    EXPECT_EQ(c.bytes.size(), 32u) << settings::Info(c.direction).key;
  }
  EXPECT_EQ(combinations, 8 * 2 * 4);
}

// ---- Groups ---------------------------------------------------------------------------------

TEST(ScanWalker, GroupModeStartsAGroupAtEachRowOrColumnOfTheWalk) {
  struct Case {
    ScanDirection direction;
    std::vector<int> groupsAt;  // values emitted before each GroupStart
  };
  const std::vector<int> everyTwo = {0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30};
  const Case cases[] = {
      {ScanDirection::tr, everyTwo},                                   // 16 rows of 2 bytes
      {ScanDirection::tl, everyTwo},  {ScanDirection::tra, {0, 16}},   // 2 byte columns of 16 rows
      {ScanDirection::tla, {0, 16}},  {ScanDirection::td, {0, 16}},    // 2 pages of 16 columns
      {ScanDirection::tu, {0, 16}},   {ScanDirection::tda, everyTwo},  // 16 columns of 2 pages
      {ScanDirection::tua, everyTwo},
  };
  const QImage image = Sample();
  for (const Case& c : cases) {
    settings::Settings s = WalkSettings(c.direction, 16, 16);
    s.block.ColRx = true;
    EXPECT_EQ(WalkWhole(s, image).sink.groupStarts, c.groupsAt) << settings::Info(c.direction).key;
    s.block.ColRx = false;
    EXPECT_TRUE(WalkWhole(s, image).sink.groupStarts.empty()) << settings::Info(c.direction).key;
  }
}

// ---- Byte widths and sizes off the byte grid ------------------------------------------------

TEST(ScanWalker, SixBitModeWidth128GivesTwentyTwoBytesPerRowTheLastWithTwoPixels) {
  std::string blackRow(128, '#');
  std::string sparseRow(128, '.');
  sparseRow[0] = sparseRow[5] = sparseRow[127] = '#';
  const QImage image = Picture({blackRow.c_str(), sparseRow.c_str()});
  for (const bool msbFirst : {true, false}) {
    settings::Settings s = WalkSettings(ScanDirection::tr, 128, 2);
    s.pixel.bw8 = false;
    s.scan.MSBF = msbFirst;
    const Walked w = WalkWhole(s, image);
    // 128 = 21 * 6 + 2. Six black pixels fill bits 5..0 (0x3F). The last byte holds columns
    // 126, 127 and then column 128, which is still within LimitX 128 but outside the bitmap;
    // 129 exceeds the bound. With MSB first columns 126, 127 are 0x20, 0x10; with MSB last
    // 0x01, 0x02. Row 1: column 0 is the first pixel and 5 the sixth of byte 0, 127 the second
    // of byte 21.
    const std::vector<int> expected =
        msbFirst ? Repeat(0x3F, 21, {0x30, 0x21}) : Repeat(0x3F, 21, {0x03, 0x21});
    std::vector<int> all = expected;
    all.insert(all.end(), 20, 0x00);
    all.push_back(msbFirst ? 0x10 : 0x02);
    EXPECT_EQ(Hex(w.sink.values), Hex(all)) << "MSBF " << msbFirst;
    EXPECT_EQ(w.cursor.BytesPerRow, 22);
  }
}

TEST(ScanWalker, Width100DropsTheLastFourPixelsOfEachRow) {
  std::string row(100, '.');
  row[88] = row[95] = '#';
  for (int x = 96; x < 100; ++x) row[x] = '#';
  const QImage image = Picture({row.c_str()});
  settings::Settings s = WalkSettings(ScanDirection::tr, 100, 1);
  const Walked w = WalkWhole(s, image);
  // 100 / 8 = 12.5: twelve bytes; the twelfth covers columns 88..95 (0x80 + 0x01), the black
  // columns 96..99 are never read.
  EXPECT_EQ(Hex(w.sink.values), Hex(Repeat(0x00, 11, {0x81})));
  EXPECT_EQ(w.cursor.BytesPerRow, 12);
}

TEST(ScanWalker, LeftwardWalkReadsPixelsLeftOfTheArea) {
  // 6-bit mode over columns 2..15: 14 / 6 is 2, plus one for the remainder: 3 bytes of 6
  // pixels read leftwards from column 15. The third byte reads 3, 2, 1, 0, -1, -2: the black
  // columns 1 and 0, outside the area, are its third and fourth pixels (8 + 4).
  const QImage image = Picture({"##.............."});
  settings::Settings s = WalkSettings(ScanDirection::tl, 16, 1);
  s.pixel.bw8 = false;
  const Walked w = Walk(s, image, AreaBounds{2, 0, 16, 1});
  EXPECT_EQ(Hex(w.sink.values), Hex({0x00, 0x00, 0x0C}));
}

// ---- Counts of the other modes --------------------------------------------------------------

TEST(ScanWalker, PageAndByteCountsFollowTheModeOfTheWalk) {
  struct Case {
    const char* what;
    ScanDirection direction;
    PixelMode mode;
    int width, height;
    int pagesPerColumn;  // bytes down a column (vertical walks)
    int bytesPerRow;     // bytes along a row, or columns of a vertical walk
  };
  const Case cases[] = {
      {"td 8 colours: height div 8, not 24 / 2.67", ScanDirection::td, PixelMode::Colors8, 4, 24, 3,
       4},
      {"td slices: ceiling of 20 / 8", ScanDirection::td, PixelMode::Gray16Slices, 4, 20, 3, 4},
      {"td 32 gray: one page per row", ScanDirection::td, PixelMode::Gray32Packed, 4, 10, 10, 4},
      {"td two-page gray: p is 8", ScanDirection::td, PixelMode::Gray4TwoPages, 4, 16, 2, 4},
      {"td 4 gray: p is 4", ScanDirection::td, PixelMode::Gray4, 4, 16, 4, 4},
      {"tda 2 horizontal pixels: every row, half the columns", ScanDirection::tda,
       PixelMode::Gray16Horizontal, 8, 10, 10, 4},
      {"tda 16 gray: height div 2", ScanDirection::tda, PixelMode::Gray16Vertical, 8, 10, 5, 8},
      {"tda 4 gray: height div 4", ScanDirection::tda, PixelMode::Gray4, 8, 12, 3, 8},
      {"tua 8 colours: height div 8", ScanDirection::tua, PixelMode::Colors8, 8, 20, 2, 8},
      {"tr 8 colours: width div 8", ScanDirection::tr, PixelMode::Colors8, 24, 2, 2, 3},
      {"tr 16 gray: width div 2", ScanDirection::tr, PixelMode::Gray16Horizontal, 10, 2, 2, 5},
      {"tr 65536: a byte per pixel", ScanDirection::tr, PixelMode::Colors65536, 10, 2, 2, 10},
      {"tra 32 gray packed: a byte column per pixel", ScanDirection::tra, PixelMode::Gray32Packed,
       12, 2, 2, 12},
      {"tla 32 gray packed: half as many", ScanDirection::tla, PixelMode::Gray32Packed, 12, 2, 2,
       6},
      {"tla 32 gray unpacked", ScanDirection::tla, PixelMode::Gray32RUnpacked, 12, 2, 2, 12},
      {"tra 4 gray: width div 4", ScanDirection::tra, PixelMode::Gray4, 12, 2, 2, 3},
  };
  const QImage blank = Picture({"."});
  for (const Case& c : cases) {
    settings::Settings s = WalkSettings(c.direction, c.width, c.height, c.mode);
    const Walked w = Walk(s, blank, AreaBounds{0, 0, c.width, c.height});
    EXPECT_EQ(w.cursor.PagesPerColumn, c.pagesPerColumn) << c.what;
    EXPECT_EQ(w.cursor.BytesPerRow, c.bytesPerRow) << c.what;
  }
}

TEST(ScanWalker, SixBitCountOfAllDownTestsTheWidthForItsExtraPage) {
  struct Case {
    int width, height, pages;
  };
  const Case cases[] = {
      {12, 12, 2},  // 12 div 6, width a multiple of 6
      {13, 12, 3},  // the width's remainder adds a page
      {12, 13, 2},  // the height's remainder does not
  };
  const QImage blank = Picture({"."});
  for (const Case& c : cases) {
    settings::Settings s = WalkSettings(ScanDirection::tda, c.width, c.height);
    s.pixel.bw8 = false;
    const Walked w = Walk(s, blank, AreaBounds{0, 0, c.width, c.height});
    EXPECT_EQ(w.cursor.PagesPerColumn, c.pages) << c.width << " x " << c.height;
  }
}

TEST(ScanWalker, UpwardWalkInEightColourModeWalksOnePageFewer) {
  // 24 / 2.6666665 gives a count of 9 pages; counting from 2 leaves 8 pages of rows.
  settings::Settings s = WalkSettings(ScanDirection::tu, 1, 24, PixelMode::Colors8);
  s.block.ColRx = true;
  const Walked colours8 = Walk(s, Picture({"."}), AreaBounds{0, 0, 1, 24});
  EXPECT_EQ(colours8.sink.groupStarts.size(), 8u);

  // 16 colours, p = 2, counts from 1: all 12 pages.
  settings::Settings s16 = WalkSettings(ScanDirection::tu, 1, 24, PixelMode::Colors16);
  s16.block.ColRx = true;
  const Walked colours16 = Walk(s16, Picture({"."}), AreaBounds{0, 0, 1, 24});
  EXPECT_EQ(colours16.sink.groupStarts.size(), 12u);
}

TEST(ScanWalker, NoSizeCheckWalksOneByteColumnPerPixel) {
  // Under NOMAT PixelsPerByte is 1: 16 bytes per row of 16, each read onwards from where the
  // last stopped. Byte 0 takes columns 0..7 (0xE0 for row 0), byte 1 columns 8..15, and
  // bytes 2.. start past LimitX 16 and read nothing.
  settings::Settings s = WalkSettings(ScanDirection::tr, 16, 16);
  s.display.NOMAT = true;
  const QImage image = Sample();
  const Walked w = Walk(s, image, AreaBounds{0, 0, 16, 1});
  EXPECT_EQ(Hex(w.sink.values), Hex({0xE0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(w.cursor.BytesPerRow, 16);
}

// ---- Stops ----------------------------------------------------------------------------------

TEST(ScanWalker, EscapeStopsTheWalkAtOnce) {
  struct Case {
    ScanDirection direction;
    int escapeAt;            // the poll that sees Escape
    std::vector<int> bytes;  // the bytes emitted before it
  };
  const Case cases[] = {
      {ScanDirection::tr, 3, {0xE0, 0x00}},        // r0 two bytes, stops before r1
      {ScanDirection::td, 4, {0xE0, 0x80, 0x80}},  // c0..c2 of the first page
      {ScanDirection::tda, 1, {}},                 // the very first poll
      {ScanDirection::tla, 17, Repeat(0x00, 4, {0x04, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x80})},
  };
  const QImage image = Sample();
  for (const Case& c : cases) {
    settings::Settings s = WalkSettings(c.direction, 16, 16);
    test::EscapeOnPoll escape(c.escapeAt);
    const Walked w = Walk(s, image, AreaBounds{0, 0, 16, 16}, &escape);
    const char* key = settings::Info(c.direction).key;
    EXPECT_FALSE(w.completed) << key;
    EXPECT_EQ(Hex(w.sink.values), Hex(c.bytes)) << key;
    EXPECT_EQ(escape.polls, c.escapeAt) << key << ": no poll after the stop";
    EXPECT_EQ(w.sink.startComments, c.escapeAt - 1) << key << ": no byte begun after the stop";
    EXPECT_FALSE(w.cursor.Aborted) << key;
  }
}

TEST(ScanWalker, AnAbortedCursorStopsBeforeTheFirstByte) {
  settings::Settings s = WalkSettings(ScanDirection::tr, 16, 16);
  const QImage image = Sample();
  Walked w;
  w.cursor.Aborted = true;
  platform::NoKeyPoll keys;
  const ImagePixelSource source(image);
  const WalkRequest request{.settings = s,
                            .source = source,
                            .stages = PackerStages{w.sink},
                            .keyPoll = keys,
                            .area = AreaBounds{0, 0, 16, 16}};
  EXPECT_FALSE(WalkArea(request, w.cursor));
  EXPECT_TRUE(w.sink.values.empty());
  EXPECT_EQ(w.sink.startComments, 0);
}

// ---- Half export ----------------------------------------------------------------------------

TEST(ScanWalker, LowerHalfMovesTheHorizontalWalksToTheRowsBelowTheHalvedHeight) {
  // The driver halves GHI to 8 and passes the upper half as the area; the lower half is rows
  // 8..15 of the 16-row picture.
  const QImage image = Sample();
  struct Case {
    ScanDirection direction;
    std::vector<int> bytes;
  };
  const Case cases[] = {
      // r8..r12 empty, r13 has (5,13) as 0x04 in its first byte, r15 has (15,15) as 0x01.
      {ScanDirection::tr, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x04, 0, 0, 0, 0, 0x01}},
      // Byte column c15-c8 over r8..r15: (15,15) is its first pixel, 0x80; then c7-c0: (5,13)
      // is its third, 0x20.
      {ScanDirection::tla, {0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0x20, 0, 0}},
      // Vertical walks ignore the half: page r0-r7 as in the full walk.
      {ScanDirection::td, {0xE0, 0x80, 0x80, 0, 0, 0, 0, 0, 0, 0, 0x08, 0, 0, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    settings::Settings s = WalkSettings(c.direction, 16, 8);
    const Walked w = Walk(s, image, AreaBounds{0, 0, 16, 8}, nullptr, true);
    EXPECT_EQ(Hex(w.sink.values), Hex(c.bytes)) << settings::Info(c.direction).key;
  }
  settings::Settings s = WalkSettings(ScanDirection::tr, 16, 8);
  const Walked w = Walk(s, image, AreaBounds{0, 0, 16, 8}, nullptr, true);
  EXPECT_EQ(w.cursor.AreaTop, 8);
  EXPECT_EQ(w.cursor.AreaBottom, 16);
}

}  // namespace
}  // namespace vt::convert
