// SPDX-License-Identifier: MIT
#include "convert/constant_spelling.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "convert/two_page_dealing.h"
#include "convert_test_util.h"

namespace vt::convert {
namespace {

using test::With;

TEST(ConstantSpelling, PiecesTakeTheTextsOfTheirPlace) {
  const struct {
    const char* keys;
    LinePlace place;
    int value;
    const char* piece;  // with a separator following
  } cases[] = {
      {"ORGC=1", LinePlace::One, 0x1F, " 0x1F,"},
      {"ORGC=3", LinePlace::First, 0x1F, " 0x1F ,"},
      {"ORGC=3", LinePlace::Middle, 0x1F, " 0x1F ,"},
      {"ORGC=3", LinePlace::Last, 0x1F, " 0x1F"},  // the line's end mark follows instead
      {"ORGC=3|COMAh=0", LinePlace::First, 0x1F, " 0x1F "},
      {"ORGC=3|COMAv=0|COMAS=1|sepst=;", LinePlace::Middle, 0x1F, " 0x1F ;"},
      {"ORGC=3|FXHB=H", LinePlace::First, 0xAB, " ABh,"},
      {"ORGC=3|FXHB=H", LinePlace::Middle, 0xAB, " ABh ,"},
      {"ORGC=3|FXHB=H|Addof=1", LinePlace::Middle, 0xA0, " 0A0h ,"},
      {"ORGC=3|FXHB=H|Addof=1", LinePlace::Middle, 0x9F, " 9Fh ,"},
      {"ORGC=1|FXHB=H", LinePlace::One, 0x05, " 05h ,"},
      {"ORGC=3|FXHB=+D+|VALpref=#|VALSUF=d", LinePlace::First, 7, "#7  d, "},
      {"ORGC=3|FXHB=+D+|VALpref=#|VALSUF=d|WithSp=0", LinePlace::Middle, 255, "#255d,"},
      {"ORGC=3|FXHB=+D+|VALpref=#|VALSUF=d", LinePlace::Last, 42, "#42 d"},
      {"ORGC=3|FXHB=0B", LinePlace::First, 5, " 0b00000101, "},
      {"ORGC=3|FXHB=0B", LinePlace::Middle, 5, " 0b00000101 , "},
      {"ORGC=2|FXHB=B", LinePlace::Last, 0x81, " 10000001b"},
      {"ORGC=2|FXHB=+H+|VALpref=$|VALSUF=", LinePlace::First, 0xC3, "$C3, "},
  };
  for (const auto& c : cases) {
    const ConstantSpelling spelling(With(c.keys), ",");
    EXPECT_EQ(spelling.Piece(c.place, c.value), c.piece) << c.keys;
  }
}

TEST(ConstantSpelling, WordsAreWrittenInTheirByteOrder) {
  const struct {
    const char* keys;
    std::vector<int> parts;  // in the order received
    const char* digits;
    int zeros;  // leading zeros added
  } cases[] = {
      {"", {0x12, 0x34}, "1234", 0},
      {"MSBF=0", {0x12, 0x34}, "3412", 0},
      {"", {0x12, 0x34, 0x56, 0x78}, "12345678  ", 0},  // a 32-bit word takes 10 places
      {"FXHB=+D+", {0, 0, 1, 0}, "256       ", 0},
      {"FXHB=+D+", {1, 2}, "258", 0},
      {"FXHB=B", {0x80, 0x01}, "1000000000000001", 0},
      {"FXHB=H|Addof=1", {0xA0}, "0A0", 1},
      {"FXHB=+H+|Addof=1|MSBF=0", {0x01, 0xF0}, "0F001", 1},
      {"FXHB=X|Addof=1", {0xA0}, "A0", 0},  // only H and +H+ take the zero
  };
  for (const auto& c : cases) {
    const ConstantSpelling spelling(With(c.keys), ",");
    std::string out = "left over";
    EXPECT_EQ(spelling.SpellWord(c.parts.data(), int(c.parts.size()), out), c.zeros) << c.keys;
    EXPECT_EQ(out, c.digits) << c.keys;
  }
}

TEST(ConstantSpelling, LinesStartWithTheirHeadAndEndWithTheMark) {
  std::string head;
  ConstantSpelling(With("CPRE=L|LineN=1|cpfr=:"), ",").AppendHead(head, 12);
  EXPECT_EQ(head, "L12:");
  head.clear();
  ConstantSpelling(With("CPRE=\t.db |cpfr=>"), ",").AppendHead(head, 12);
  EXPECT_EQ(head, "\t.db >");

  const struct {
    const char* keys;
    const char* endMark;
    const char* line;
    const char* finished;
  } cases[] = {
      // One constant a line: the mark goes before the gap that leads to the picture.
      {"ORGC=1", ",", " 0x12     //  ___#____", " 0x12,     //  ___#____"},
      {"ORGC=1", ";", " 0x12", " 0x12;"},
      // Several: a run of four blanks is a decimal's padding, the mark goes at the end.
      {"ORGC=3", ",", " 1    , 2", " 1    , 2,"},
      {"ORGC=3", "", " 0x12 #", " 0x12 "},  // a final "#" is dropped
      {"ORGC=3", "#", " 0x12", " 0x12"},
  };
  for (const auto& c : cases) {
    std::string line = c.line;
    ConstantSpelling(With(c.keys), c.endMark).FinishLine(line);
    EXPECT_EQ(line, c.finished) << c.keys << " " << c.line;
  }
}

TEST(ConstantSpelling, PlacesFollowTheCountOnTheLine) {
  const ConstantSpelling one(With("ORGC=1"), ","), three(With("ORGC=3"), ",");
  EXPECT_EQ(one.PlaceOf(0), LinePlace::One);
  EXPECT_EQ(three.PlaceOf(0), LinePlace::First);
  EXPECT_EQ(three.PlaceOf(1), LinePlace::Middle);
  EXPECT_EQ(three.PlaceOf(2), LinePlace::Last);
  EXPECT_EQ(ConstantSpelling(With("ORGC=0"), ",").PerLine(), 1);
}

TEST(TwoPageDealing, OddBitsOfAPairMakeTheMainByteAndEvenBitsTheSecond) {
  const struct {
    int first, second;  // the pair: first value high
    bool msbFirst;
    int main, plane;
  } cases[] = {
      {0xC0, 0x00, true, 0x80, 0x80},                                   // bits 15 and 14: k = 7
      {0xC0, 0x00, false, 0x01, 0x01},                                  // bit 7 - k
      {0x00, 0x02, true, 0x01, 0x00},                                   // bit 1: odd, k = 0
      {0x00, 0x02, false, 0x80, 0x00}, {0x00, 0x01, true, 0x00, 0x01},  // bit 0: even
      {0x02, 0x00, true, 0x10, 0x00},                                   // bit 9: k = 4
      {0x01, 0x00, false, 0x00, 0x08},                                  // bit 8: k = 4, 7 - k = 3
      {0xAA, 0xAA, true, 0xFF, 0x00},  {0x55, 0x55, false, 0x00, 0xFF},
  };
  for (const auto& c : cases) {
    TwoPageDealing dealing(c.msbFirst);
    EXPECT_FALSE(dealing.Take(c.first));
    EXPECT_TRUE(dealing.Pending());
    const std::optional<TwoPageDealing::Dealt> dealt = dealing.Take(c.second);
    ASSERT_TRUE(dealt);
    EXPECT_FALSE(dealing.Pending());
    EXPECT_EQ(dealt->main, c.main) << std::hex << c.first << " " << c.second;
    EXPECT_EQ(dealt->second, c.plane) << std::hex << c.first << " " << c.second;

    // A block of pairs deals each as Take does.
    const std::uint8_t values[4] = {std::uint8_t(c.first), std::uint8_t(c.second), 0x00, 0xFF};
    std::uint8_t main[2], plane[2];
    dealing.DealPairs(values, 2, main, plane);
    EXPECT_EQ(main[0], c.main);
    EXPECT_EQ(plane[0], c.plane);
    // 0x00FF: odd bits 7, 5, 3, 1 and even bits 6, 4, 2, 0 give k 3, 2, 1, 0 in each byte.
    EXPECT_EQ(main[1], c.msbFirst ? 0x0F : 0xF0);
    EXPECT_EQ(plane[1], c.msbFirst ? 0x0F : 0xF0);
  }
}

}  // namespace
}  // namespace vt::convert
