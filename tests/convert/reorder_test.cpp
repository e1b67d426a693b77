// SPDX-License-Identifier: MIT
#include "convert/reorder.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include "convert/array_writer.h"
#include "convert/reorder_preview.h"
#include "convert_test_util.h"
#include "platform/key_poll.h"

namespace vt::convert {
namespace {

using test::With;

ReorderGrid Grid(std::initializer_list<std::tuple<const char*, const char*, const char*>> rows) {
  ReorderGrid grid;
  int row = 0;
  for (const auto& [command, a, b] : rows) {
    grid.SetReorderData(0, row, command);
    grid.SetReorderData(1, row, a);
    grid.SetReorderData(2, row++, b);
  }
  return grid;
}

TEST(ReorderOutput, SwapsReadTheIncomingValueAndTheListEndsWhereItSays) {
  const struct {
    ReorderGrid grid;
    int limit;
    int in;
    int out;
  } cases[] = {
      {Grid({{"SWAP BITS", "0", "7"}}), 31, 0x01, 0x80},
      {Grid({{"swap bits", "0", "7"}, {"SWAP BITS", "7", "3"}}), 31, 0x01, 0x00},  // no chaining
      {Grid({{"SWAP BITS", "0", "32"}, {"SWAP BITS", "1", "2"}}), 31, 0x02, 0x04},
      {Grid({{"SWAP BITS", "0", "9"}}), 8, 0x01, 0x01},  // above the rgb2 limit
      {Grid({{"SWAP BITS", "x", "1"}, {"FLIP", "0", "1"}, {"SWAP BITS", "0", "1"}}), 31, 1, 2},
      {Grid({{"Swap Bytes 16 Bits", "", ""}, {"SWAP BITS", "0", "1"}}), 31, 0x12345, 0x4523},
      {Grid({{"", "", ""}, {"SWAP BITS", "0", "7"}}), 31, 0x01, 0x01},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in);
    EXPECT_EQ(ReorderOutput(c.grid, c.in, c.limit), c.out);
  }
  EXPECT_EQ(ReorderBitLimit(With("rgb2=1")), 8);
  EXPECT_EQ(ReorderBitLimit(With("mode=colors262k|rgb2=1")), 18);
  EXPECT_EQ(ReorderBitLimit(With("mode=colors262k")), 31);
  EXPECT_EQ(DoReorderStatus(true), "[ON]");
}

TEST(ReorderOutput, FixedExchangesMoveRedToTheHighBits) {
  EXPECT_EQ(Reorder4096Output(0x00F), 0xF00);
  EXPECT_EQ(Reorder4096Output(0x0F0), 0x0F0);
  EXPECT_EQ(Reorder65kOutput(0x001F), 0xF800);
  EXPECT_EQ(Reorder65kOutput(0x07E0), 0x07E0);
  EXPECT_EQ(Reorder262kOutput(0x0003F), 0x3F000);
  EXPECT_EQ(Reorder16MOutput(0x0000FF), 0xFF0000);
  EXPECT_EQ(Reorder16MOutput(0x00FF00), 0x00FF00);
  EXPECT_EQ(Reorder65kOutput(0x001F, 8), 0x001F);   // a depth word of 8 reaches no pair
  EXPECT_EQ(Reorder65kOutput(0x0001, 13), 0x0800);  // 14 reaches 11-0 ... 14-3, not 15-4
  EXPECT_EQ(Reorder65kOutput(0x0010, 13), 0x0010);
  EXPECT_EQ(Reorder65kOutput(0x0008, 13), 0x4000);
  // Each bit goes to its partner, in order, and bits outside the pairs stay: 15 to 4 and 0 to
  // 11, 17 to 5 and 0 to 12 with bit 20 kept, 11 to 3 and 1 to 9.
  EXPECT_EQ(Reorder65kOutput(0x8001), 0x0810);
  EXPECT_EQ(Reorder262kOutput(0x120001), 0x101020);
  EXPECT_EQ(Reorder4096Output(0x802), 0x208);
}

TEST(ReorderOutput, AnArrayWithDoreOnPassesEachByteThroughTheTable) {
  // Rows of 16 pixels give FF FF | FF 00 | 80 00 | 00 01 | F0 00 | AA AA | 00 00 | 00 80;
  // exchanging bits 7 and 0: F0 -> 71, AA -> 2B.
  const QImage image = test::Picture({"################", "########........", "#...............",
                                      "...............#", "####............", "#.#.#.#.#.#.#.#.",
                                      "................", "........#......."});
  const ReorderGrid grid = Grid({{"swap bits", "7", "0"}});
  ImagePixelSource source(image);
  platform::NoKeyPoll keys;
  for (const char* dore : {"dore=0", "dore=1"}) {
    const settings::Settings s = With((QByteArray("GWI=16|GHI=8|") + dore).constData());
    platform::TextBuffer text;
    ArrayRequest request{
        s,         source,   AreaBounds{0, 0, 16, 8}, keys, QStringLiteral("Logo.h"), std::nullopt,
        QString(), QString()};
    request.reorderGrid = &grid;
    ASSERT_TRUE(WriteArray(request, text).completed);
    std::vector<int> bytes;
    static const QRegularExpression constant(QStringLiteral("0x([0-9A-F]{2})(?![0-9A-F])"));
    for (auto it = constant.globalMatch(text.Text()); it.hasNext();)
      bytes.push_back(it.next().captured(1).toInt(nullptr, 16));
    EXPECT_EQ(test::Hex(bytes), dore == QLatin1String("dore=0")
                                    ? "FF FF FF 00 80 00 00 01 F0 00 AA AA 00 00 00 80"
                                    : "FF FF FF 00 01 00 00 80 71 00 2B 2B 00 00 00 01");
  }
}

TEST(RenumberingNormalGrid, NumbersTheCornerInWalkOrder) {
  const struct {
    const char* keys;
    int x, y, number;
  } cases[] = {
      {"GWI=32|GHI=16", 0, 0, 1},
      {"GWI=32|GHI=16", 15, 0, 16},
      {"GWI=32|GHI=16", 0, 1, 33},
      {"GWI=32|GHI=16", 15, 15, 496},
      {"GWI=32|GHI=16|tr=0|tra=1", 7, 1, 16},
      {"GWI=32|GHI=16|tr=0|tra=1", 8, 0, 129},
      {"GWI=32|GHI=16|tr=0|td=1", 1, 0, 9},
      {"GWI=32|GHI=16|tr=0|td=1", 0, 8, 257},
      {"GWI=32|GHI=32|CORN1=0|CORN4=1", 0, 31, 1},
      {"GWI=32|GHI=32|CORN1=0|CORN4=1", 0, 30, 33},
      {"GWI=32|GHI=32|CORN1=0|CORN4=1", 0, 15, 0},  // above the window
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.keys) + " " + std::to_string(c.x) + "," + std::to_string(c.y));
    const auto preview = RenumberingNormalGrid(With(c.keys));
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->NumberAt(c.x, c.y), c.number);
  }
}

TEST(RenumberingNormalGrid, PanelTextsFollowTheMode) {
  const struct {
    const char* keys;
    const char* size;
    const char* bytes;
    const char* packing;
  } cases[] = {
      {"", "1024", " 1 Byte = 8 pixels", "Unpacked Data"},
      {"ccomp=1", "compressed", " 1 Byte = 8 pixels", "Unpacked Data"},
      {"bw8=0", "1408", " 1 Byte = 8 pixels", "Unpacked Data"},
      {"mode=colors65536", "16384", " 2 Bytes = 1 pixel", "Unpacked Data"},
      {"mode=colors4096-packed", "12288", " 3 Bytes = 2 pixel", "Packed Data"},
      {"mode=gray32-packed", "5460", " 2 Bytes = 3 pixels", "Packed Data"},
      {"mode=gray16-slices", "4096", " 1 Byte = 2 pixels", "Unpacked Data"},
      {"mode=colors262k", "24576", " 3 Bytes = 1 pixel", "Unpacked Data"},
      {"mode=colors16m", "32768", " 4 Bytes = 1 pixel", "Unpacked Data"},
      {"mode=gray4", "2048", " 1 Byte = 4 pixels", "Unpacked Data"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.keys);
    const auto preview = RenumberingNormalGrid(With(c.keys));
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->dataSize, QStringLiteral("Data Size (bytes) : ") + c.size);
    EXPECT_EQ(preview->bytesPerPixels, c.bytes);
    EXPECT_EQ(preview->packing, c.packing);
  }
  EXPECT_EQ(RenumberingNormalGrid(With("bits=16"))->outputWidth, "16 bit");
  EXPECT_EQ(RenumberingNormalGrid(With("D8bc=0|DHec=1"))->outputWidth, "Binary File");
  EXPECT_FALSE(RenumberingNormalGrid(With("mode=gray16-h|tr=0|td=1"))->gridVisible);
  EXPECT_EQ(RenumberingNormalGrid(With("mode=gray4-2pages"))->bytesPerPixels,
            " 1 Byte = 8 pixels > 2 Pages");
  EXPECT_FALSE(RenumberingNormalGrid(With("Monc=0")));
}

}  // namespace
}  // namespace vt::convert
