// SPDX-License-Identifier: MIT
#include "convert/bits.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace vt::convert {
namespace {

TEST(Bits, ReverseByteMirrorsTheEightBits) {
  const std::pair<int, int> cases[] = {
      {0x00, 0x00},  {0xFF, 0xFF}, {0x01, 0x80},
      {0xF0, 0x0F},  {0x12, 0x48},  // 0001 0010 -> 0100 1000
      {0xA5, 0xA5},                 // 1010 0101 reads the same both ways
      {0x1C3, 0xC3},                // bits above 7 are ignored: 1100 0011 mirrored is itself
      {0x06, 0x60}};
  for (const auto& [in, out] : cases) {
    EXPECT_EQ(ReverseByte(in), out) << "input " << in;
    EXPECT_EQ(ReverseByte(out), in & 0xFF) << "input " << in;
  }
}

TEST(Bits, SetClearAndTestAddressOneBitEach) {
  const std::tuple<std::int64_t, int, bool, std::int64_t, std::int64_t> cases[] = {
      {0x00, 0, false, 0x01, 0x00},
      {0x81, 7, true, 0x81, 0x01},
      {0x81, 3, false, 0x89, 0x81},
      {0xFFFFFF, 23, true, 0xFFFFFF, 0x7FFFFF},  // a colour's top bit
  };
  for (const auto& [value, bit, isSet, afterSet, afterClear] : cases) {
    EXPECT_EQ(TestBit(value, bit), isSet) << value << " bit " << bit;
    EXPECT_EQ(SetBit(value, bit), afterSet) << value << " bit " << bit;
    EXPECT_EQ(ClearBit(value, bit), afterClear) << value << " bit " << bit;
  }
}

TEST(Bits, BinaryTextShowsTheLowDigitsMostSignificantFirst) {
  EXPECT_EQ(ToBinaryText(5, 8), "00000101");
  EXPECT_EQ(ToBinaryText(5, 4), "0101");
  EXPECT_EQ(ToBinaryText(0x1FF, 8), "11111111");  // the ninth bit is not shown
  EXPECT_EQ(ToBinaryText(0x8001, 16), "1000000000000001");
  EXPECT_EQ(ToBinaryText(1, 0), "");
}

TEST(Bits, ColorIndexFindsTheFirstPositionWithinTheCount) {
  const std::vector<std::int64_t> table = {0x000000, 0x555555, 0xAAAAAA, 0x555555, 0xFFFFFF};
  EXPECT_EQ(ColorIndex(0x000000, table, 5), 0);
  EXPECT_EQ(ColorIndex(0x555555, table, 5), 1) << "the first of two equal entries";
  EXPECT_EQ(ColorIndex(0xFFFFFF, table, 5), 4);
  EXPECT_EQ(ColorIndex(0xFFFFFF, table, 4), std::nullopt) << "entries past the count";
  EXPECT_EQ(ColorIndex(0xFFFFFF, table, 99), 4) << "a count past the table stops at its end";
  EXPECT_EQ(ColorIndex(0x123456, table, 5), std::nullopt);
  EXPECT_EQ(ColorIndex(-1, table, 5), std::nullopt) << "a pixel outside the bitmap is no colour";
  EXPECT_EQ(ColorIndex(0x000000, {}, 5), std::nullopt);
}

}  // namespace
}  // namespace vt::convert
