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

/// A single row of given colours; anything outside reads -1.
class RowSource final : public PixelSource {
 public:
  explicit RowSource(std::vector<std::int64_t> colors) : colors_(std::move(colors)) {}
  int Width() const override { return static_cast<int>(colors_.size()); }
  int Height() const override { return 1; }
  std::int64_t PixelAt(int x, int y) const override {
    if (y != 0 || x < 0 || x >= Width()) return -1;
    return colors_[x];
  }

 private:
  std::vector<std::int64_t> colors_;
};

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

/// One packer call at (x, y) with the given limits; returns the value delivered (-1: none).
struct PackRun {
  settings::Settings settings;
  ConversionCursor cursor;
  RecordingSink sink;

  int Run(const PixelSource& source, PackFamily family, int x, int y, int limitX = 1000,
          int limitY = 1000) {
    cursor.X = x;
    cursor.Y = y;
    cursor.LimitX = limitX;
    cursor.LimitY = limitY;
    cursor.Value = 0;
    PackContext context(settings, source, cursor, PackerStages{sink});
    switch (family) {
      case PackFamily::Down:
        PackDown(context);
        break;
      case PackFamily::Up:
        PackUp(context);
        break;
      case PackFamily::Left:
        PackLeft(context);
        break;
      case PackFamily::Right:
        PackRight(context);
        break;
    }
    return sink.values.empty() ? -1 : sink.values.back();
  }
};

// ---- Bit order and bounds -------------------------------------------------------------------

TEST(MonochromePacker, ReadsEightPixelsInBitOrderAndStopsAtTheBound) {
  const QImage column = Picture({"#", "#", "#", "#", "#", "#", "#", "#", "#", "#", "#", "#"});
  const QImage row = Picture({"############"});
  const ImagePixelSource columnSource(column);
  const ImagePixelSource rowSource(row);
  struct Case {
    const char* what;
    PackFamily family;
    bool msbFirst;
    int x, y, limitX, limitY;
    int value;  // worked out from which of the eight reads hit a black pixel
    int endX, endY;
  };
  const Case cases[] = {
      // Rows 0..3 are read (3 <= LimitY), row 4 exceeds it: the first four bits only.
      {"down, bound after 4", PackFamily::Down, true, 0, 0, 0, 3, 0xF0, 0, 4},
      {"down, bound after 4, MSB last", PackFamily::Down, false, 0, 0, 0, 3, 0x0F, 0, 4},
      // Row 12 is inside the bound but outside the bitmap: rows 8..11 black, 12..15 give -1.
      {"down, wide bound", PackFamily::Down, true, 0, 8, 0, 20, 0xF0, 0, 16},
      // Upward from row 3: rows 3, 2, 1, 0 black (bits 7..4), rows -1..-4 outside.
      {"up", PackFamily::Up, true, 0, 3, 0, 11, 0xF0, 0, -5},
      {"up, MSB last", PackFamily::Up, false, 0, 3, 0, 11, 0x0F, 0, -5},
      // Columns 6..9 are read, column 10 exceeds LimitX 9.
      {"right, bound after 4", PackFamily::Right, true, 6, 0, 9, 0, 0xF0, 10, 0},
      {"right, MSB last", PackFamily::Right, false, 6, 0, 9, 0, 0x0F, 10, 0},
      // Leftward reading has no bound: LimitX 0 is ignored, columns 3..0 black, -1..-4 outside.
      {"left ignores the bound", PackFamily::Left, true, 3, 0, 0, 0, 0xF0, -5, 0},
      {"left, MSB last", PackFamily::Left, false, 3, 0, 0, 0, 0x0F, -5, 0},
  };
  for (const Case& c : cases) {
    PackRun run;
    run.settings.scan.MSBF = c.msbFirst;
    const bool vertical = c.family == PackFamily::Down || c.family == PackFamily::Up;
    const PixelSource& source =
        vertical ? static_cast<const PixelSource&>(columnSource) : rowSource;
    EXPECT_EQ(run.Run(source, c.family, c.x, c.y, c.limitX, c.limitY), c.value) << c.what;
    EXPECT_EQ(run.cursor.X, c.endX) << c.what;
    EXPECT_EQ(run.cursor.Y, c.endY) << c.what;
  }
}

TEST(MonochromePacker, OnlyColourZeroSetsABitAndIsMarked) {
  // Black, near-black red, white, black, dark gray, black; columns 6 and 7 lie outside (-1).
  const RowSource source({0x000000, 0x000001, 0xFFFFFF, 0x000000, 0x010101, 0x000000});
  PackRun msb;
  // Columns 0, 3, 5 are black: bits 7, 4, 2 with MSB first.
  EXPECT_EQ(msb.Run(source, PackFamily::Right, 0, 0, 8), 0x94);
  ASSERT_EQ(msb.sink.marks.size(), 1u);
  EXPECT_EQ(msb.sink.marks[0], (std::vector<int>{7, 4, 2}));

  PackRun lsb;
  lsb.settings.scan.MSBF = false;
  // The same columns as bits 0, 3, 5.
  EXPECT_EQ(lsb.Run(source, PackFamily::Right, 0, 0, 8), 0x29);
  ASSERT_EQ(lsb.sink.marks.size(), 1u);
  EXPECT_EQ(lsb.sink.marks[0], (std::vector<int>{0, 3, 5}));
}

// ---- 6-bit byte width and PPB ---------------------------------------------------------------

TEST(MonochromePacker, SixBitModeFillsTheLowSixBitsOfHorizontalBytes) {
  const QImage row = Picture({"#.#...#."});
  const ImagePixelSource source(row);
  struct Case {
    PackFamily family;
    bool msbFirst;
    int startX;
    int value;
    int endX;
  };
  const Case cases[] = {
      // Columns 0..5 as values 32, 16, 8, 4, 2, 1: black 0 and 2 give 32 + 8.
      {PackFamily::Right, true, 0, 0x28, 6},
      // As values 1, 2, 4, 8, 16, 32: black 0 and 2 give 1 + 4.
      {PackFamily::Right, false, 0, 0x05, 6},
      // Columns 7..2 leftwards: black 6 (second, 16) and 2 (sixth, 1).
      {PackFamily::Left, true, 7, 0x11, 1},
      // Black 6 is the second (2), black 2 the sixth (32).
      {PackFamily::Left, false, 7, 0x22, 1},
  };
  for (const Case& c : cases) {
    PackRun run;
    run.settings.pixel.bw8 = false;
    run.settings.scan.MSBF = c.msbFirst;
    EXPECT_EQ(run.Run(source, c.family, c.startX, 0, 8), c.value)
        << "start " << c.startX << " MSBF " << c.msbFirst;
    EXPECT_EQ(run.cursor.X, c.endX);
  }

  // Downward bytes keep eight bits whatever the byte width: a black column gives all ones.
  const QImage column = Picture({"#", "#", "#", "#", "#", "#", "#", "#"});
  const ImagePixelSource columnSource(column);
  PackRun down;
  down.settings.pixel.bw8 = false;
  EXPECT_EQ(down.Run(columnSource, PackFamily::Down, 0, 0), 0xFF);
}

TEST(MonochromePacker, PixelsPerByteKeepsTheTopBitsOfHorizontalBytes) {
  const QImage row = Picture({"########"});
  const QImage column = Picture({"#", "#", "#", "#", "#", "#", "#", "#"});
  const ImagePixelSource rowSource(row);
  const ImagePixelSource columnSource(column);
  struct Case {
    int ppb;
    PackFamily family;
    bool msbFirst;
    int value;
  };
  const Case cases[] = {
      {4, PackFamily::Right, true, 0xF0},
      {5, PackFamily::Right, true, 0xF8},
      {6, PackFamily::Right, true, 0xFC},
      {7, PackFamily::Right, true, 0xFE},
      {8, PackFamily::Right, true, 0xFF},
      {3, PackFamily::Right, true, 0xFF},  // no mask
      {4, PackFamily::Left, true, 0xF0},
      {4, PackFamily::Right, false, 0xF0},  // the mask is on the top bits in either bit order
      {4, PackFamily::Down, true, 0xFF},    // vertical bytes are not cut
      {4, PackFamily::Up, true, 0xFF},
  };
  for (const Case& c : cases) {
    PackRun run;
    run.settings.pixel.PPB = c.ppb;
    run.settings.scan.MSBF = c.msbFirst;
    const bool vertical = c.family == PackFamily::Down || c.family == PackFamily::Up;
    const int start = c.family == PackFamily::Left || c.family == PackFamily::Up ? 7 : 0;
    const int value = vertical ? run.Run(columnSource, c.family, 0, start)
                               : run.Run(rowSource, c.family, start, 0);
    EXPECT_EQ(value, c.value) << "PPB " << c.ppb << " family " << static_cast<int>(c.family);
  }
}

// ---- The common end: compression, reversal, rearrangement, sink -----------------------------

TEST(PackerEnd, CompressionMaySwallowAByteWhichThenGoesNoFurther) {
  const QImage row = Picture({"#.......", "........"});
  settings::Settings settings;
  settings.pixel.dore = true;
  RecordingSink sink;
  SwallowingCompression compression(0x00);
  FlipLowNibble reorder;
  ConversionCursor cursor;
  cursor.LimitX = 8;
  const ImagePixelSource source(row);
  PackContext context(settings, source, cursor, PackerStages{sink, &compression, &reorder});

  PackRight(context);  // row 0: 0x80 passes
  cursor.X = 0;
  cursor.Y = 1;
  cursor.Value = 0;
  PackRight(context);  // row 1: 0x00 is swallowed

  EXPECT_EQ(compression.offered, (std::vector<int>{0x80, 0x00}));
  EXPECT_EQ(compression.byteCounts, (std::vector<double>{1.0, 2.0}))
      << "ByteCount already counts the byte offered, swallowed or not";
  EXPECT_EQ(reorder.inputs, (std::vector<int>{0x80}));
  EXPECT_EQ(sink.values, (std::vector<int>{0x8F}));  // 0x80 with its low nibble flipped
  EXPECT_EQ(cursor.ByteCount, 2.0);
}

TEST(PackerEnd, FontModeBypassesCompression) {
  const QImage row = Picture({"........"});
  const ImagePixelSource source(row);
  settings::Settings settings;
  RecordingSink sink;
  SwallowingCompression compression(0x00);
  ConversionCursor cursor;
  cursor.LimitX = 8;
  cursor.FontMode = true;
  PackContext context(settings, source, cursor, PackerStages{sink, &compression});
  PackRight(context);
  EXPECT_TRUE(compression.offered.empty());
  EXPECT_EQ(sink.values, (std::vector<int>{0x00}));
  EXPECT_EQ(cursor.ByteCount, 1.0);
}

TEST(PackerEnd, RearrangementRunsOnlyWithDore) {
  const QImage row = Picture({"##......"});
  const ImagePixelSource source(row);
  for (const bool dore : {false, true}) {
    settings::Settings settings;
    settings.pixel.dore = dore;
    settings.scan.MSBF = false;  // monochrome: already in bit order, no reversal
    RecordingSink sink;
    FlipLowNibble reorder;
    ConversionCursor cursor;
    cursor.LimitX = 8;
    PackContext context(settings, source, cursor, PackerStages{sink, nullptr, &reorder});
    PackRight(context);
    // Columns 0 and 1 as bits 0 and 1: 0x03; rearranged: 0x0C.
    EXPECT_EQ(sink.values, (std::vector<int>{dore ? 0x0C : 0x03})) << "dore " << dore;
    EXPECT_EQ(reorder.inputs.size(), dore ? 1u : 0u);
  }
}

TEST(PackerEnd, OutsideMonochromeMsbLastReversesAfterCompressionAndBeforeRearrangement) {
  const QImage none = Picture({"."});
  const ImagePixelSource source(none);
  settings::Settings settings;
  settings::ApplyModeFlags(settings.pixel, settings::Info(settings::PixelMode::Colors256).flags);
  settings.scan.MSBF = false;
  settings.pixel.dore = true;
  RecordingSink sink;
  SwallowingCompression compression(-1);
  FlipLowNibble reorder;
  ConversionCursor cursor;
  PackContext context(settings, source, cursor, PackerStages{sink, &compression, &reorder});

  cursor.Value = 0x01;
  EXPECT_TRUE(DeliverValue(context, false, 1.5));
  EXPECT_EQ(compression.offered, (std::vector<int>{0x01}));  // before reversal
  EXPECT_EQ(reorder.inputs, (std::vector<int>{0x80}));       // reversed 0x01
  EXPECT_EQ(sink.values, (std::vector<int>{0x8F}));
  EXPECT_EQ(sink.endsOfPixel, (std::vector<bool>{false}));
  EXPECT_EQ(cursor.ByteCount, 1.5);

  settings.scan.MSBF = true;
  PackContext msbFirst(settings, source, cursor, PackerStages{sink, &compression, &reorder});
  cursor.Value = 0x01;
  EXPECT_TRUE(DeliverValue(msbFirst));
  EXPECT_EQ(reorder.inputs.back(), 0x01) << "MSB first keeps the value";
  EXPECT_EQ(cursor.ByteCount, 2.5);
}

}  // namespace
}  // namespace vt::convert
