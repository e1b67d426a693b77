// SPDX-License-Identifier: MIT
#include "convert/bits.h"

#include <gtest/gtest.h>

#include <vector>

namespace vt::convert {
namespace {

TEST(Bits, ReverseByteMirrorsTheEightBits) {
  struct Case {
    int in;
    int out;
  };
  const Case cases[] = {
      {0x00, 0x00},  {0xFF, 0xFF}, {0x01, 0x80},  // bit 0 becomes bit 7
      {0x80, 0x01},  {0xF0, 0x0F}, {0x12, 0x48},  // 0001 0010 -> 0100 1000
      {0xA5, 0xA5},                               // 1010 0101 reads the same both ways
      {0x1C3, 0xC3},  // bits above 7 are ignored: 1100 0011 mirrored is itself
      {0x06, 0x60},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ReverseByte(c.in), c.out) << "input " << c.in;
    EXPECT_EQ(ReverseByte(ReverseByte(c.in)), c.in & 0xFF) << "input " << c.in;
  }
}

TEST(Bits, SetClearAndTestAddressOneBitEach) {
  struct Case {
    std::int64_t value;
    int bit;
    bool isSet;
    std::int64_t afterSet;
    std::int64_t afterClear;
  };
  const Case cases[] = {
      {0x00, 0, false, 0x01, 0x00},
      {0x81, 7, true, 0x81, 0x01},
      {0x81, 3, false, 0x89, 0x81},
      {0xFFFFFF, 23, true, 0xFFFFFF, 0x7FFFFF},  // a colour's top bit
      {0x100000, 20, true, 0x100000, 0x000000},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TestBit(c.value, c.bit), c.isSet) << c.value << " bit " << c.bit;
    EXPECT_EQ(SetBit(c.value, c.bit), c.afterSet) << c.value << " bit " << c.bit;
    EXPECT_EQ(ClearBit(c.value, c.bit), c.afterClear) << c.value << " bit " << c.bit;
  }
}

TEST(Bits, BinaryTextShowsTheLowDigitsMostSignificantFirst) {
  struct Case {
    std::int64_t value;
    int digits;
    const char* text;
  };
  const Case cases[] = {
      {5, 8, "00000101"},
      {5, 4, "0101"},
      {0x3F, 6, "111111"},
      {0x1FF, 8, "11111111"},  // the ninth bit is not shown
      {0x8001, 16, "1000000000000001"},
      {0, 0, ""},
      {1, 1, "1"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToBinaryText(c.value, c.digits), QString::fromLatin1(c.text));
  }
}

TEST(Bits, ColorIndexFindsTheFirstPositionWithinTheCount) {
  const std::vector<std::int64_t> table = {0x000000, 0x555555, 0xAAAAAA, 0x555555, 0xFFFFFF};
  EXPECT_EQ(ColorIndex(0x000000, table, 5), 0);
  EXPECT_EQ(ColorIndex(0x555555, table, 5), 1) << "the first of two equal entries";
  EXPECT_EQ(ColorIndex(0xFFFFFF, table, 5), 4);
  EXPECT_EQ(ColorIndex(0xFFFFFF, table, 4), std::nullopt)
      << "entries past the count are not searched";
  EXPECT_EQ(ColorIndex(0xFFFFFF, table, 99), 4) << "a count past the table stops at its end";
  EXPECT_EQ(ColorIndex(0x123456, table, 5), std::nullopt);
  EXPECT_EQ(ColorIndex(-1, table, 5), std::nullopt) << "a pixel outside the bitmap is no colour";
  EXPECT_EQ(ColorIndex(0x000000, {}, 5), std::nullopt);
}

}  // namespace
}  // namespace vt::convert
