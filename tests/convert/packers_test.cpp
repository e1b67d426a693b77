// SPDX-License-Identifier: MIT
#include "convert/packers.h"

#include <gtest/gtest.h>

#include <vector>

#include "convert/conversion_cursor.h"
#include "convert/pixel_source.h"
#include "convert_test_util.h"
#include "settings/pixel_modes.h"
#include "settings/settings.h"

namespace vt::convert {
namespace {

using test::Picture;
using test::RecordingSink;
using test::With;

/// Compression that swallows one chosen value and records what it was offered.
class SwallowingCompression final : public CompressionStage {
 public:
  explicit SwallowingCompression(int swallowed) : swallowed_(swallowed) {}
  bool CompressionStep(int value, double byteCount) override {
    offered.push_back(value);
    byteCounts.push_back(byteCount);
    return value == swallowed_;
  }
  std::vector<int> offered;
  std::vector<double> byteCounts;

 private:
  int swallowed_;
};

/// Rearrangement that flips the low nibble and records its inputs.
class FlipLowNibble final : public ReorderStage {
 public:
  int ReorderOutput(int value) override {
    inputs.push_back(value);
    return value ^ 0x0F;
  }
  std::vector<int> inputs;
};

/// One packer call of `family` at the cursor; returns the last value `sink` holds (-1: none).
int Pack(const settings::Settings& settings, const PixelSource& source, PackFamily family,
         ConversionCursor& cursor, RecordingSink& sink, PackerStages stages) {
  cursor.Value = 0;
  PackContext context(settings, source, cursor, stages);
  void (*const packers[])(PackContext&) = {PackDown, PackUp, PackLeft, PackRight};
  packers[static_cast<int>(family)](context);
  return sink.values.empty() ? -1 : sink.values.back();
}

TEST(MonochromePacker, ReadsEightPixelsInBitOrderWithinTheBoundsAndTheByteWidth) {
  // 12 x 12: row 0 black, row 1 "#.#...#.....", column 0 black in every row.
  const char* const other = "#...........";
  const QImage image = Picture({"############", "#.#...#.....", other, other, other, other, other,
                                other, other, other, other, other});
  const ImagePixelSource grid(image);
  using enum PackFamily;
  const struct {
    const char* keys;
    PackFamily family;
    int x, y, limitX, limitY;
    int value;  // worked out from which of the eight reads hit a black pixel
    int endX, endY;
  } cases[] = {
      // Column 0 downwards: rows 0..3 are read (3 <= LimitY), row 4 exceeds it.
      {"", Down, 0, 0, 0, 3, 0xF0, 0, 4},
      {"MSBF=0", Down, 0, 0, 0, 3, 0x0F, 0, 4},
      // Row 12 is inside the bound but outside the bitmap: rows 8..11 black, 12..15 give -1.
      {"", Down, 0, 8, 0, 20, 0xF0, 0, 16},
      // Upward from row 3: rows 3, 2, 1, 0 black (bits 7..4), rows -1..-4 outside.
      {"", Up, 0, 3, 0, 11, 0xF0, 0, -5},
      {"MSBF=0", Up, 0, 3, 0, 11, 0x0F, 0, -5},
      // Row 0 rightwards: columns 6..9 are read, column 10 exceeds LimitX 9.
      {"", Right, 6, 0, 9, 0, 0xF0, 10, 0},
      {"MSBF=0", Right, 6, 0, 9, 0, 0x0F, 10, 0},
      // Leftward reading has no bound: LimitX 0 is ignored, columns 3..0 black, -1..-4 outside.
      {"", Left, 3, 0, 0, 0, 0xF0, -5, 0},
      {"MSBF=0", Left, 3, 0, 0, 0, 0x0F, -5, 0},
      // 6-bit byte width on row 1, horizontal bytes only. Columns 0..5 as values 32, 16, 8, 4,
      // 2, 1 with MSB first, as 1, 2, 4 ... without: black 0 and 2 give 32 + 8 or 1 + 4.
      {"bw8=0", Right, 0, 1, 99, 99, 0x28, 6, 1},
      {"bw8=0|MSBF=0", Right, 0, 1, 99, 99, 0x05, 6, 1},
      // Columns 7..2 leftwards: black 6 is the second read (16, or 2), black 2 the sixth (1,
      // or 32).
      {"bw8=0", Left, 7, 1, 99, 99, 0x11, 1, 1},
      {"bw8=0|MSBF=0", Left, 7, 1, 99, 99, 0x22, 1, 1},
      {"bw8=0", Down, 0, 0, 99, 99, 0xFF, 0, 8},
      // PPB keeps the top PPB bits (4..7) of a horizontal byte of the black row 0, in either
      // bit order; vertical bytes are not cut.
      {"PPB=4", Right, 0, 0, 99, 99, 0xF0, 8, 0},
      {"PPB=5", Right, 0, 0, 99, 99, 0xF8, 8, 0},
      {"PPB=6", Right, 0, 0, 99, 99, 0xFC, 8, 0},
      {"PPB=7", Right, 0, 0, 99, 99, 0xFE, 8, 0},
      {"PPB=3", Right, 0, 0, 99, 99, 0xFF, 8, 0},
      {"PPB=4", Left, 7, 0, 99, 99, 0xF0, -1, 0},
      {"PPB=4|MSBF=0", Right, 0, 0, 99, 99, 0xF0, 8, 0},
      {"PPB=4", Down, 0, 0, 99, 99, 0xFF, 0, 8},
      {"PPB=4", Up, 0, 7, 99, 99, 0xFF, 0, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.keys << " family " << static_cast<int>(c.family)
                                    << " from " << c.x << "," << c.y);
    ConversionCursor cursor;
    cursor.X = c.x;
    cursor.Y = c.y;
    cursor.LimitX = c.limitX;
    cursor.LimitY = c.limitY;
    RecordingSink sink;
    EXPECT_EQ(Pack(With(c.keys), grid, c.family, cursor, sink, {sink}), c.value);
    EXPECT_EQ(cursor.X, c.endX);
    EXPECT_EQ(cursor.Y, c.endY);
  }
}

TEST(MonochromePacker, OnlyColourZeroSetsABitAndIsMarked) {
  // Black, near-black red, white, black, dark gray, black; columns 6 and 7 lie outside (-1).
  // Columns 0, 3, 5 are black: bits 7, 4, 2 with MSB first, bits 0, 3, 5 without.
  QImage row(6, 1, QImage::Format_RGB32);
  const QRgb colours[] = {qRgb(0, 0, 0), qRgb(1, 0, 0), qRgb(255, 255, 255),
                          qRgb(0, 0, 0), qRgb(1, 1, 1), qRgb(0, 0, 0)};
  for (int x = 0; x < 6; ++x) row.setPixel(x, 0, colours[x]);
  const ImagePixelSource source(row);
  for (const bool msbFirst : {true, false}) {
    ConversionCursor cursor;
    cursor.LimitX = 8;
    RecordingSink sink;
    EXPECT_EQ(Pack(With(msbFirst ? "" : "MSBF=0"), source, PackFamily::Right, cursor, sink, {sink}),
              msbFirst ? 0x94 : 0x29);
    EXPECT_EQ(sink.marks, (std::vector<std::vector<int>>{msbFirst ? std::vector{7, 4, 2}
                                                                  : std::vector{0, 3, 5}}));
  }
}

// ---- The common end: compression, reversal, rearrangement, sink -----------------------------

TEST(PackerEnd, CompressionMaySwallowAByteWhichThenGoesNoFurther) {
  const QImage image = Picture({"#.......", "........"});
  const ImagePixelSource source(image);
  RecordingSink sink;
  SwallowingCompression compression(0x00);
  FlipLowNibble reorder;
  ConversionCursor cursor;
  cursor.LimitX = 8;
  const settings::Settings s = With("dore=1");
  Pack(s, source, PackFamily::Right, cursor, sink, {sink, &compression, &reorder});  // 0x80
  cursor.X = 0;
  cursor.Y = 1;
  Pack(s, source, PackFamily::Right, cursor, sink, {sink, &compression, &reorder});  // 0x00

  EXPECT_EQ(compression.offered, (std::vector<int>{0x80, 0x00}));
  EXPECT_EQ(compression.byteCounts, (std::vector<double>{1.0, 2.0}))
      << "ByteCount already counts the byte offered, swallowed or not";
  EXPECT_EQ(reorder.inputs, (std::vector<int>{0x80}));
  EXPECT_EQ(sink.values, (std::vector<int>{0x8F}));  // 0x80 with its low nibble flipped
  EXPECT_EQ(cursor.ByteCount, 2.0);

  // The font generator bypasses compression.
  cursor = ConversionCursor{};
  cursor.LimitX = 8;
  cursor.FontMode = true;
  cursor.Y = 1;
  Pack(s, source, PackFamily::Right, cursor, sink, {sink, &compression});
  EXPECT_EQ(compression.offered.size(), 2u);
  EXPECT_EQ(sink.values, (std::vector<int>{0x8F, 0x00}));
  EXPECT_EQ(cursor.ByteCount, 1.0);
}

TEST(PackerEnd, OutsideMonochromeMsbLastReversesAfterCompressionAndBeforeRearrangementByDore) {
  const QImage image = Picture({"."});
  const ImagePixelSource source(image);
  settings::Settings s = With("mode=colors256|MSBF=0|dore=1");
  RecordingSink sink;
  SwallowingCompression compression(-1);
  FlipLowNibble reorder;
  ConversionCursor cursor;
  PackContext context(s, source, cursor, PackerStages{sink, &compression, &reorder});
  cursor.Value = 0x01;
  EXPECT_TRUE(DeliverValue(context, false, 1.5));
  EXPECT_EQ(compression.offered, (std::vector<int>{0x01}));  // before reversal
  EXPECT_EQ(reorder.inputs, (std::vector<int>{0x80}));       // reversed 0x01
  EXPECT_EQ(sink.values, (std::vector<int>{0x8F}));
  EXPECT_EQ(sink.endsOfPixel, (std::vector<bool>{false}));
  EXPECT_EQ(cursor.ByteCount, 1.5);

  s.scan.MSBF = true;
  PackContext msbFirst(s, source, cursor, PackerStages{sink, &compression, &reorder});
  cursor.Value = 0x01;
  EXPECT_TRUE(DeliverValue(msbFirst));
  EXPECT_EQ(reorder.inputs.back(), 0x01) << "MSB first keeps the value";
  EXPECT_EQ(cursor.ByteCount, 2.5);

  s = With("dore=0", s);
  PackContext noDore(s, source, cursor, PackerStages{sink, &compression, &reorder});
  cursor.Value = 0x01;
  EXPECT_TRUE(DeliverValue(noDore));
  EXPECT_EQ(sink.values.back(), 0x01);
  EXPECT_EQ(reorder.inputs.size(), 2u) << "without dore nothing is rearranged";
}

}  // namespace
}  // namespace vt::convert
