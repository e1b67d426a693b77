// SPDX-License-Identifier: MIT
#include "convert/array_writer.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "golden.h"
#include "platform/key_poll.h"

namespace vt::convert {
namespace {

// 16 x 8, rows as '#' black and '.' white. Read by rows, most significant bit first, the bytes
// are: FF FF | FF 00 | 80 00 | 00 01 | F0 00 | AA AA | 00 00 | 00 80.
const char* const kPicture[] = {
    "################", "########........", "#...............", "...............#",
    "####............", "#.#.#.#.#.#.#.#.", "................", "........#.......",
};

QImage Picture() {
  QImage image(16, 8, QImage::Format_RGB32);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 16; ++x) {
      image.setPixel(x, y, kPicture[y][x] == '#' ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
  }
  return image;
}

TEST(WriteArray, DefaultSettingsGiveTheWholeSourceText) {
  settings::Settings settings;
  settings.display.GWI = 16;
  settings.display.GHI = 8;
  const QImage image = Picture();
  ImagePixelSource source(image);
  platform::NoKeyPoll keys;
  platform::TextBuffer text;
  const ArrayResult result =
      WriteArray({settings, source, AreaBounds{0, 0, 16, 8}, keys, QStringLiteral("Logo.h"),
                  QStringList(DefaultHeaderTemplate(HeaderKind::Graphics)).join(QStringLiteral("\r\n")),
                  QStringLiteral("default.txt"), QStringLiteral("14/03/2026 15:09:26")},
                 text);
  ASSERT_TRUE(result.completed);
  EXPECT_EQ(result.arrayName, QStringLiteral("Logo"));
  EXPECT_EQ(result.bytes, 16);
  EXPECT_TRUE(result.warning.isEmpty());
  EXPECT_TRUE(test::MatchesGolden(text.Text(QStringLiteral("\n")).toUtf8(),
                                  QStringLiteral("convert/array_default_16x8/expected.h")));
}

TEST(WriteArray, MissingTemplateWarnsAndStillWritesTheData) {
  settings::Settings settings;
  settings.display.GWI = 16;
  settings.display.GHI = 8;
  const QImage image = Picture();
  ImagePixelSource source(image);
  platform::NoKeyPoll keys;
  platform::TextBuffer text;
  const ArrayResult result = WriteArray({settings, source, AreaBounds{0, 0, 16, 8}, keys,
                                         QStringLiteral("Logo.h"), std::nullopt,
                                         QStringLiteral("p.txt"), QStringLiteral("today")},
                                        text);
  EXPECT_TRUE(result.warning.contains(QStringLiteral("p.txt"))) << result.warning.toStdString();
  EXPECT_TRUE(text.Text().contains(QStringLiteral(" 0xFF , 0xFF , 0xFF , 0x00 , 0x80")));
}

TEST(DataByteCount, IsOneMoreThanTheWholeBytesInTheSimpleModes) {
  settings::Settings s;
  EXPECT_EQ(DataByteCount(s, 16, 8), 17);
  EXPECT_EQ(DataByteCount(s, 100, 10), 126);  // 1000 / 8 = 125
  s.pixel.bw8 = false;
  EXPECT_EQ(DataByteCount(s, 128, 2), (128 / 6 + 1) * 2 + 1);
}

}  // namespace
}  // namespace vt::convert
