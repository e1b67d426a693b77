// SPDX-License-Identifier: MIT
#include "convert/color_packers.h"

#include <gtest/gtest.h>

#include "convert/scan_walker.h"
#include "convert_test_util.h"

namespace vt::convert {
namespace {

using test::Hex;
using test::With;

/// A picture from rows of characters: a hexadecimal digit is an index of the mode's built-in
/// palette; r, g, b, w, x, y are red, green, blue, white,
/// (1,2,3) and (0x11,0x22,0x33).
QImage Indexed(settings::PixelMode mode, std::initializer_list<const char*> rows) {
  const canvas::Palette palette = canvas::DefaultPalette(mode);
  QImage image(int(qstrlen(*rows.begin())), int(rows.size()), QImage::Format_RGB32);
  int y = 0;
  for (const char* row : rows) {
    for (int x = 0; row[x]; ++x) {
      const char ch = row[x];
      const canvas::Color c = ch == 'r'   ? 0x0000FF
                              : ch == 'g' ? 0x00FF00
                              : ch == 'b' ? 0xFF0000
                              : ch == 'w' ? 0xFFFFFF
                              : ch == 'x' ? 0x030201
                              : ch == 'y' ? 0x332211
                                          : palette.at(QString(QChar(ch)).toInt(nullptr, 16));
      image.setPixel(x, y, canvas::ToQRgb(c));
    }
    ++y;
  }
  return image;
}

struct Walked {
  QString bytes;
  std::optional<std::int64_t> notFound;
};

Walked WalkAll(const settings::Settings& s, const QImage& image, int areaWidth = 0) {
  test::RecordingSink sink;
  ColorSearch colors(canvas::DefaultSearchTable(*settings::CurrentPixelMode(s)));
  platform::NoKeyPoll keys;
  const ImagePixelSource source(image);
  ConversionCursor cursor;
  WalkArea({.settings = s,
            .source = source,
            .stages = PackerStages{sink, nullptr, nullptr, &colors},
            .keyPoll = keys,
            .area = {0, 0, areaWidth ? areaWidth : image.width(), image.height()}},
           cursor);
  return {Hex(sink.values), colors.notFound};
}

TEST(ColorPackers, EachModeGivesItsHandWorkedBytesInEachDirection) {
  using M = settings::PixelMode;
  const QImage gray4 = Indexed(M::Gray4, {"0123", "3210", "0033", "1111"});
  const QImage gray16 = Indexed(M::Gray16Vertical, {"1F", "A0"});
  const QImage colors8 = Indexed(M::Colors8, {"12345670"});
  QImage colors8Column(1, 8, QImage::Format_RGB32);
  for (int y = 0; y < 8; ++y) colors8Column.setPixel(0, y, colors8.pixel(y, 0));
  const struct {
    const char* keys;
    QImage picture;
    const char* bytes;
  } cases[] = {
      // 4 gray: two bits a pixel, the first pixel on top.
      {"mode=gray4", gray4, "1B E4 0F 55"},
      {"mode=gray4|MSBF=0", gray4, "D8 27 F0 AA"},
      {"mode=gray4|tr=0|tl=1|CORN1=0|CORN2=1", gray4, "E4 1B F0 55"},
      {"mode=gray4|tr=0|tra=1", gray4, "1B E4 0F 55"},
      {"mode=gray4|tr=0|tda=1", gray4, "31 61 9D CD"},
      {"mode=gray4|tr=0|td=1", gray4, "31 61 9D CD"},
      {"mode=gray4|tr=0|tu=1|CORN1=0|CORN4=1", gray4, "4C 49 76 73"},
      // Two pages in td: eight pixels down, two planes, never reversed.
      {"mode=gray4-2pages|tr=0|td=1", Indexed(M::Gray4, {"0", "1", "2", "3", "3", "2", "1", "0"}),
       "1B E4"},
      {"mode=gray4-2pages|tr=0|td=1|MSBF=0",
       Indexed(M::Gray4, {"0", "1", "2", "3", "3", "2", "1", "0"}), "1B E4"},
      // 16 gray and 16 colours: two nibbles, the first pixel high (low with snib).
      {"mode=gray16-v|tr=0|td=1", gray16, "1A F0"},
      {"mode=gray16-v|tr=0|td=1|snib=1", gray16, "A1 0F"},
      {"mode=gray16-v", gray16, "1F A0"},
      {"mode=gray16-v|tr=0|tl=1|CORN1=0|CORN2=1", gray16, "F1 0A"},
      {"mode=gray16-v|tr=0|tu=1|CORN1=0|CORN4=1", gray16, "A1 0F"},
      {"mode=gray16-h|tr=0|tda=1", gray16, "1F A0"},
      {"mode=gray16-h|tr=0|tda=1|CORN1=0|CORN2=1", gray16, "F1 0A"},
      {"mode=colors16", Indexed(M::Colors16, {"94"}), "94"},
      // ST7528: four pairs per slice of 8 rows, slices one after the other.
      {"mode=gray16-slices|tr=0|td=1",
       Indexed(M::Gray16Slices,
               {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "A", "B", "C", "D", "E", "F"}),
       "01 23 45 67 89 AB CD EF"},
      {"mode=gray16-slices|tr=0|tda=1",
       Indexed(M::Gray16Slices,
               {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "A", "B", "C", "D", "E", "F"}),
       "01 23 45 67 89 AB CD EF"},
      {"mode=gray16-slices|tr=0|td=1", Indexed(M::Gray16Slices, {"1", "2", "r", "3"}),
       "12 00 00 00"},
      // 8 colours: 001 010 011 100 101 110 111 000.
      {"mode=colors8", colors8, "29 CB B8"},
      {"mode=colors8|tr=0|tl=1|CORN1=0|CORN2=1", colors8, "1F 58 D1"},
      {"mode=colors8|tr=0|tda=1", colors8Column, "29 CB B8"},
      // 256: blue 2, green 3, red 3 bits; 32 gray: levels 1, 13, 15.
      {"mode=colors256", Indexed(M::Colors256, {"rgb"}), "07 38 C0"},
      {"mode=colors256|MSBF=0", Indexed(M::Colors256, {"rgb"}), "E0 1C 03"},
      {"mode=gray32-r", Indexed(M::Gray32RUnpacked, {"1DF"}), "01 0D 0F"},
      {"mode=gray32-l", Indexed(M::Gray32RUnpacked, {"1DF"}), "08 68 78"},
      {"mode=gray32-packed", Indexed(M::Gray32RUnpacked, {"1DF"}), "09 AF"},
      // 4096: (0x11, 0x22, 0x33) is 0x123, red 0xF00.
      {"mode=colors4096", Indexed(M::Colors4096, {"yr"}), "01 23 0F 00"},
      {"mode=colors4096|rgb2=1", Indexed(M::Colors4096, {"yr"}), "23 01 00 0F"},
      {"mode=colors4096-packed", Indexed(M::Colors4096, {"yry"}), "12 3F 00"},
      // 65536: RGB565, red and blue changed with SWRG.
      {"mode=colors65536", Indexed(M::Colors65536, {"rgbw"}), "F8 00 07 E0 00 1F FF FF"},
      {"mode=colors65536|SWRG=1", Indexed(M::Colors65536, {"rb"}), "00 1F F8 00"},
      // 262k: red 0x3F000; (1,2,3) is not in the table and goes out raw, exchanged.
      {"mode=colors262k-packed", Indexed(M::Colors262k, {"rx"}), "03 F0 00 00 12 30"},
      {"mode=colors262k-packed|rgb2=1", Indexed(M::Colors262k, {"r"}), "00 F0 03"},
      {"mode=colors262k", Indexed(M::Colors262k, {"r"}), "3F 00 00"},
      // 16M: the colour itself, red first.
      {"mode=colors16m", Indexed(M::Colors16M, {"r"}), "00 FF 00 00"},
      {"mode=colors16m|RGBA=1", Indexed(M::Colors16M, {"r"}), "FF 00 00 00"},
      {"mode=colors16m|rgb2=1", Indexed(M::Colors16M, {"r"}), "00 00 00 FF"},
      {"mode=colors16m|RGBA=1|rgb2=1", Indexed(M::Colors16M, {"r"}), "00 00 FF"},
      {"mode=colors16m-packed", Indexed(M::Colors16M, {"r"}), "FF 00 00"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.keys);
    const Walked w = WalkAll(With(c.keys), c.picture);
    EXPECT_EQ(w.bytes, QLatin1String(c.bytes));
    EXPECT_FALSE(w.notFound);
  }
}

TEST(ColorPackers, AColourNotFoundEndsTheWalkButOutsideIsBlackInTheNibbleModes) {
  using M = settings::PixelMode;
  const Walked red = WalkAll(With("mode=gray4"), Indexed(M::Gray4, {"000r", "0000"}));
  EXPECT_EQ(red.bytes, QString());
  EXPECT_EQ(red.notFound, 0x0000FF);
  // An area wider than the picture reads -1 past its edge.
  const Walked outside = WalkAll(With("mode=gray4"), Indexed(M::Gray4, {"0123"}), 8);
  EXPECT_EQ(outside.bytes, QLatin1String("1B"));
  EXPECT_EQ(outside.notFound, -1);
  EXPECT_EQ(WalkAll(With("mode=colors16"), Indexed(M::Colors16, {"F9"}), 4).bytes,
            QLatin1String("F9 00"));
  EXPECT_EQ(ColorNotFoundText(-1), QLatin1String(" Color not found in Palette! \r Check if Heigth "
                                                 "or Width matches with pixels per byte format "));
  EXPECT_EQ(ColorNotFoundText(5), QLatin1String(" Color not found in Palette! \r "));
}

}  // namespace
}  // namespace vt::convert
