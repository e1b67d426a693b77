// SPDX-License-Identifier: MIT
// The fast loops against the walkers and packers: the same pictures through both, over the
// modes, directions, corners and the keys that change bytes or text, must give the same text
// and counts.
#include "convert/fast_walk.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>

#include "canvas/color_reduction.h"
#include "convert/array_writer.h"
#include "convert/color_packers.h"
#include "convert/data_text.h"
#include "convert/reorder.h"
#include "convert_test_util.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

using settings::PixelMode;
using settings::ScanDirection;

/// A picture of `width` x `height` in colours of `mode`'s search table (black and white in
/// monochrome, any colour in 16M), drawn from `seed`; `stray` (when not 0) puts a colour the
/// table lacks at one pixel.
QImage RandomPicture(PixelMode mode, int width, int height, unsigned seed, QRgb stray = 0) {
  std::mt19937 random(seed);
  static std::map<PixelMode, canvas::Palette> tables;
  if (!tables.count(mode)) tables[mode] = canvas::DefaultSearchTable(mode);
  const canvas::Palette& table = tables[mode];
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      canvas::Color c = 0;
      if (settings::IsMonochromeMode(mode)) {
        c = random() % 2 ? 0xFFFFFF : 0;
      } else if (table.empty()) {
        c = random() & 0xFFFFFF;
      } else {
        // Runs of one colour now and then, as pictures have them.
        c = table[random() % table.size()];
      }
      image.setPixel(x, y, canvas::ToQRgb(c));
      if (x > 0 && random() % 4 == 0) image.setPixel(x, y, image.pixel(x - 1, y));
    }
  }
  if (stray != 0) image.setPixel(width / 2, height / 2, stray);
  return image;
}

/// The search of `mode` as the export builds it: the index of the mode's palette, and the
/// black slot after it in 32 gray and 262k colours. The index is built once per mode.
struct TableSearch {
  std::shared_ptr<const canvas::ColorIndexer> index;
  int blackSlot = -1;
};
TableSearch TableIndex(PixelMode mode) {
  static std::map<PixelMode, TableSearch> searches;
  TableSearch& search = searches[mode];
  if (!search.index) {
    canvas::Palette table = canvas::DefaultSearchTable(mode);
    const int entries = canvas::PaletteInfoOf(mode).entries;
    if (entries == 32 || entries == 0x40000) {
      table.pop_back();
      search.blackSlot = int(table.size());
    }
    search.index = std::make_shared<const canvas::ColorIndexer>(table);
  }
  return search;
}

/// Everything a walk leaves that the export uses.
struct Outcome {
  QString text;
  bool completed = false;
  bool aborted = false;
  double byteCount = 0;
  int pages = 0, bytesPerRow = 0;
  long long values = 0;
  std::optional<std::int64_t> notFound;
};

bool operator==(const Outcome& a, const Outcome& b) {
  return a.text == b.text && a.completed == b.completed && a.aborted == b.aborted &&
         a.byteCount == b.byteCount && a.pages == b.pages && a.bytesPerRow == b.bytesPerRow &&
         a.values == b.values && a.notFound == b.notFound;
}

void PrintTo(const Outcome& o, std::ostream* out) {
  *out << "completed " << o.completed << " aborted " << o.aborted << " bytes " << o.byteCount
       << " pages " << o.pages << " per row " << o.bytesPerRow << " values " << o.values << "\n"
       << o.text.left(600).toStdString();
}

/// Walks `area` of `image` the general way or the fast way (`covered` tells whether the fast
/// way took it), Escape pressed at poll `escapeAt` (0: never), values rearranged by `grid`.
Outcome Walk(const settings::Settings& s, const QImage& image, AreaBounds area, bool fast,
             bool* covered = nullptr, int escapeAt = 0, const ReorderGrid* grid = nullptr,
             const TableSearch* table = nullptr) {
  platform::TextBuffer text;
  const long long count = DataByteCount(s, area.right - area.left, area.bottom - area.top);
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), count});
  const TableSearch search = table ? *table : TableIndex(canvas::ModeOf(s));
  ColorSearch colors(search.index, search.blackSlot);
  std::optional<GridReorderStage> reorder;
  if (grid) reorder.emplace(*grid, s);
  // Without a press the walk may skip the poll: a poll that cannot report one lets it.
  test::EscapeOnPoll pressing(escapeAt);
  platform::NoKeyPoll never;
  platform::KeyPoll& keys = escapeAt > 0 ? static_cast<platform::KeyPoll&>(pressing) : never;
  const ImagePixelSource source(image);
  const WalkRequest request{
      .settings = s,
      .source = source,
      .stages = PackerStages{writer, nullptr, reorder ? &*reorder : nullptr, &colors},
      .keyPoll = keys,
      .area = area};
  ConversionCursor cursor;
  Outcome o;
  if (fast) {
    const std::optional<bool> done =
        FastWalkArea(request, source, writer, reorder ? &reorder->Program() : nullptr, cursor);
    if (covered) *covered = done.has_value();
    if (!done) return o;
    o.completed = *done;
  } else {
    o.completed = WalkArea(request, cursor);
  }
  if (o.completed) writer.WriteDataEnd(HeaderText{}, DataEndInfo{});
  o.text = text.Text() + QLatin1Char('|') + writer.Line();
  o.aborted = cursor.Aborted;
  o.byteCount = cursor.ByteCount;
  o.pages = cursor.PagesPerColumn;
  o.bytesPerRow = cursor.BytesPerRow;
  o.values = writer.ValueCount();
  o.notFound = colors.notFound;
  return o;
}

/// Settings for `mode` walked in `direction` from corner `corner` (1 to 4) over `image`.
settings::Settings For(PixelMode mode, ScanDirection direction, int corner, const QImage& image,
                       const std::string& keys) {
  settings::Settings s =
      test::With(("tr=0|CORN1=0|" + std::string(settings::Info(direction).key) + "=1|CORN" +
                  std::to_string(corner) + "=1|GWI=" + std::to_string(image.width()) +
                  "|GHI=" + std::to_string(image.height()) + "|Noonts=1|BSD=0")
                     .c_str());
  settings::ApplyModeFlags(s.pixel, settings::Info(mode).flags);
  return test::With(keys.c_str(), s);
}

TEST(FastWalk, GivesTheBytesOfTheWalkersInEveryModeDirectionAndCorner) {
  // Keys that change how bytes are read, packed or spelled; each mode takes those of its own.
  const char* const common[] = {"",
                                "MSBF=0",
                                "Neg=1|ORGC=3",
                                "ORGC=1|Nodcom=1",
                                "ColRx=1|fpar11={|fpar12=}|ORGC=5",
                                "bits=16|ORGC=4",
                                "FXHB=+D+|ORGC=7",
                                "NOMAT=1"};
  const char* const own[] = {"PPB=5",       "PPB=7|MSBF=0",      "snib=1", "PM=1",
                             "PM=0",        "GRL32=1",           "rgb2=1", "SWRG=1",
                             "RGBA=1|PM=0", "RGBA=1|rgb2=1|PM=0"};
  ReorderGrid grid;
  grid.SetRow(0, "SWAP BITS", 0, 7);
  grid.SetRow(1, "SWAP BITS", 2, 5);
  int covered = 0, walks = 0;
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const PixelMode mode = info.mode;
    const QImage wide = RandomPicture(mode, 24, 16, 11 + unsigned(mode));
    const QImage odd = RandomPicture(mode, 19, 13, 29 + unsigned(mode));
    for (const settings::ScanDirectionInfo& d : settings::ScanDirectionTable()) {
      for (int corner = 1; corner <= 4; ++corner) {
        struct Run {
          const QImage& image;
          AreaBounds area;
          std::string keys;
          bool rearranged;
        };
        std::vector<Run> runs;
        for (const char* keys : common) runs.push_back({wide, {0, 0, 24, 16}, keys, false});
        for (const char* keys : own) runs.push_back({wide, {0, 0, 24, 16}, keys, false});
        runs.push_back({wide, {0, 0, 24, 16}, "dore=1", true});
        runs.push_back({odd, {0, 0, 19, 13}, "", false});
        runs.push_back({odd, {2, 1, 18, 12}, "MSBF=0", false});
        runs.push_back({wide, {8, 8, 24, 16}, "", false});  // the lower right quarter
        for (const Run& run : runs) {
          const settings::Settings s = For(mode, d.direction, corner, run.image, run.keys);
          const ReorderGrid* g = run.rearranged ? &grid : nullptr;
          bool taken = false;
          const Outcome fast = Walk(s, run.image, run.area, true, &taken, 0, g);
          ++walks;
          if (!taken) continue;
          ++covered;
          SCOPED_TRACE(info.cliName + std::string(" ") + d.key + " CORN" + std::to_string(corner) +
                       " " + run.keys);
          EXPECT_EQ(fast, Walk(s, run.image, run.area, false, nullptr, 0, g));
        }
      }
    }
  }
  // Most walks take the fast way; the rest are the cases it leaves to the walkers.
  EXPECT_GT(covered, walks / 2) << covered << " of " << walks;
}

TEST(FastWalk, CoversTheDefaultWalkOfEveryModeButSixBitBytes) {
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const QImage picture = RandomPicture(info.mode, 24, 16, 3);
    for (const char* keys : {"", "bw8=0"}) {
      const settings::Settings s = For(info.mode, ScanDirection::tr, 1, picture, keys);
      bool taken = false;
      Walk(s, picture, {0, 0, 24, 16}, true, &taken);
      const bool sixBits = settings::IsMonochromeMode(info.mode) && !s.pixel.bw8;
      EXPECT_EQ(taken, !sixBits) << info.cliName << " " << keys;
    }
  }
}

TEST(FastWalk, StopsWhereTheWalkersStop) {
  // Escape at a poll inside the walk, and a colour the palette lacks (262k keeps it as its
  // own value): the same partial text, the same colour named.
  for (const PixelMode mode :
       {PixelMode::Monochrome, PixelMode::Gray4, PixelMode::Colors16, PixelMode::Colors256,
        PixelMode::Colors4096, PixelMode::Colors4096Packed, PixelMode::Colors65536,
        PixelMode::Colors262k, PixelMode::Gray32Packed}) {
    const QImage stray = RandomPicture(mode, 24, 16, 5, qRgb(1, 2, 3));
    for (const ScanDirection direction : {ScanDirection::tr, ScanDirection::tda}) {
      for (const int escapeAt : {0, 1, 9, 40}) {
        const settings::Settings s = For(mode, direction, 1, stray, "ORGC=4");
        bool taken = false;
        const Outcome fast = Walk(s, stray, {0, 0, 24, 16}, true, &taken, escapeAt);
        ASSERT_TRUE(taken) << settings::Info(mode).cliName;
        const Outcome general = Walk(s, stray, {0, 0, 24, 16}, false, nullptr, escapeAt);
        EXPECT_EQ(fast, general) << settings::Info(mode).cliName << " escape " << escapeAt;
        if (escapeAt == 0 && !settings::IsMonochromeMode(mode) && mode != PixelMode::Colors262k) {
          EXPECT_EQ(fast.notFound, std::optional<std::int64_t>(0x030201));
        }
      }
    }
  }
}

// A palette that is no longer a grid (one entry changed) is searched through its hash: the
// fast loops then look each colour up and pack it as the packers do, a colour off the table
// included (262k writes it as its own value).
TEST(FastWalk, GivesTheBytesOfTheWalkersOnAPaletteThatIsNoGrid) {
  for (const PixelMode mode :
       {PixelMode::Colors256, PixelMode::Colors4096, PixelMode::Colors4096Packed,
        PixelMode::Colors65536, PixelMode::Colors262k}) {
    canvas::Palette table = canvas::DefaultSearchTable(mode);
    TableSearch search;
    if (canvas::PaletteInfoOf(mode).entries == 0x40000) {
      table.pop_back();
      search.blackSlot = int(table.size());
    }
    table[3] = 0x123456;
    search.index = std::make_shared<const canvas::ColorIndexer>(table);
    ASSERT_FALSE(search.index->Grid()) << settings::Info(mode).cliName;
    const QImage picture =
        RandomPicture(mode, 19, 13, 31, mode == PixelMode::Colors262k ? qRgb(1, 2, 3) : 0);
    for (const char* keys : {"", "rgb2=1", "SWRG=1|MSBF=0", "PM=1", "PM=0|C18u=1"}) {
      for (const ScanDirection direction : {ScanDirection::tr, ScanDirection::tl}) {
        const settings::Settings s = For(mode, direction, 1, picture, keys);
        bool taken = false;
        const Outcome fast = Walk(s, picture, {0, 0, 19, 13}, true, &taken, 0, nullptr, &search);
        ASSERT_TRUE(taken) << settings::Info(mode).cliName << " " << keys;
        EXPECT_EQ(fast, Walk(s, picture, {0, 0, 19, 13}, false, nullptr, 0, nullptr, &search))
            << settings::Info(mode).cliName << " " << keys;
      }
    }
  }
}

TEST(FastWalk, LeavesReadsOutsideThePictureOrPastABoundToTheWalkers) {
  const QImage picture = RandomPicture(PixelMode::Monochrome, 16, 16, 9);
  const struct {
    const char* keys;
    AreaBounds area;
  } cases[] = {
      {"", {4, 0, 20, 16}},                  // the area runs past the right edge
      {"GWI=10", {0, 0, 16, 16}},            // LimitX cuts the second byte of each row
      {"tr=0|td=1|GHI=12", {0, 0, 16, 16}},  // LimitY cuts the second page
      {"tr=0|tl=1", {-4, 0, 12, 16}},        // the leftward walk reads left of the picture
  };
  for (const auto& c : cases) {
    settings::Settings s = For(PixelMode::Monochrome, ScanDirection::tr, 1, picture, "");
    s = test::With(c.keys, s);
    bool taken = true;
    Walk(s, picture, c.area, true, &taken);
    EXPECT_FALSE(taken) << c.keys;
  }
}

}  // namespace
}  // namespace vt::convert
