// SPDX-License-Identifier: MIT
#include "convert/compression.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <functional>

#include "app/display_commands.h"
#include "app/export_driver.h"
#include "app/state.h"
#include "convert/array_writer.h"
#include "convert_test_util.h"
#include "recording_messenger.h"
#include "settings/geometry.h"
#include "temp_folders.h"

namespace vt::convert {
namespace {

using test::Hex;
using test::With;
using Bytes = std::vector<int>;

/// What the firmware does with the two arrays: 1..127 copies that many data bytes, 128 + n
/// repeats the next data byte n times; it stops after `count` bytes. Every data byte is used.
Bytes Decode(const Bytes& data, const Bytes& pointers, size_t count) {
  Bytes out;
  size_t next = 0;
  for (int p : pointers) {
    if (out.size() >= count) break;
    if (p < 1 || p == 128 || p == 129 || p > 255 || next + (p < 128 ? p : 1) > data.size()) {
      ADD_FAILURE() << "pointer " << p << " invalid or past the data";
      break;
    }
    if (p < 128) {
      for (int i = 0; i < p; ++i) out.push_back(data[next++]);
    } else {
      out.insert(out.end(), p - 128, data[next++]);
    }
  }
  EXPECT_EQ(next, data.size()) << "unused data bytes";
  return out;
}

/// The bytes through CompressionStep, ByteCount from 1 and D one above the count: the data
/// bytes kept and the pointers.
std::pair<Bytes, Bytes> Compress(const Bytes& bytes) {
  settings::Settings s;
  PointerText text(s);
  DataCompressor compressor(static_cast<long long>(bytes.size()) + 1, text);
  Bytes data;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (!compressor.CompressionStep(bytes[i], double(i + 1))) data.push_back(bytes[i]);
  }
  return {data, Bytes(text.Values().begin(), text.Values().end())};
}

Bytes Same(int value, int n) { return Bytes(n, value); }
Bytes Distinct(int n, int from = 0) {
  Bytes b;
  for (int i = 0; i < n; ++i) b.push_back((from + i) % 256);
  return b;
}
Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}
/// Runs of pseudo-random lengths 1..300 and values 0..3: every kind of block border.
Bytes Mixed(unsigned seed, int count) {
  Bytes b;
  for (; static_cast<int>(b.size()) < count; seed = seed * 1103515245u + 12345u) {
    b.insert(b.end(), 1 + (seed >> 8) % 300, (seed >> 20) % 4);
  }
  b.resize(count);
  return b;
}

TEST(Compression, BlocksFollowTheRulesByHand) {
  struct Case {
    const char* name;
    Bytes bytes;
    const char* data;
    const char* pointers;
  } cases[] = {
      // A B C C C D E: the byte opening a run is kept as its first.
      {"example", {0xA, 0xB, 0xC, 0xC, 0xC, 0xD, 0xE}, "0A 0B 0C 0D 0E", "02 83 02"},
      {"one run", Same(0, 8), "00", "88"},
      {"run then one byte", {5, 5, 9}, "05 09", "82 01"},
      {"last equals its predecessor", {1, 2, 3, 3}, "01 02 03", "02 82"},
      // 1024 equal bytes: a block closes at 127 and keeps one data byte; 1024 = 8 * 127 + 8.
      {"1024 equal", Same(7, 1024), "07 07 07 07 07 07 07 07 07", "FF FF FF FF FF FF FF FF 88"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto [data, pointers] = Compress(c.bytes);
    EXPECT_EQ(Hex(data), QString::fromLatin1(c.data));
    EXPECT_EQ(Hex(pointers), QString::fromLatin1(c.pointers));
  }
}

TEST(Compression, StreamsDecodeBackAtEveryBlockEdge) {
  std::vector<Bytes> cases = {
      {1, 1, 2, 2, 3, 3, 4}, {9}, Join({Same(3, 254), {4}}), Join({Same(255, 200), Same(254, 3)})};
  for (int n : {126, 127, 128, 129, 254}) {
    cases.push_back(Distinct(n));
    cases.push_back(Same(3, n));
    cases.push_back(Join({Distinct(n, 10), Same(0, 5)}));
    cases.push_back(Join({Same(0xFF, n), Distinct(n, 1)}));
  }
  for (unsigned seed : {1u, 2u, 3u, 4u, 5u}) cases.push_back(Mixed(seed, 3000));
  for (size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(i);
    const auto [data, pointers] = Compress(cases[i]);
    EXPECT_EQ(Decode(data, pointers, cases[i].size()), cases[i]);
  }
}

/// The constants of the data array and of the pointer array: each from a line ending in "{"
/// to the next "};".
std::pair<Bytes, Bytes> Arrays(const QStringList& lines) {
  static const QRegularExpression array(QStringLiteral("\\{\\n(.*?)\\n\\};"),
                                        QRegularExpression::DotMatchesEverythingOption);
  static const QRegularExpression constant(QStringLiteral("0x([0-9A-F]{2})"));
  Bytes found[2];
  auto m = array.globalMatch(lines.join(QLatin1Char('\n')));
  for (Bytes& into : found) {
    const QString body = m.hasNext() ? m.next().captured(1) : QString();
    for (auto it = constant.globalMatch(body); it.hasNext();) {
      into.push_back(it.next().captured(1).toInt(nullptr, 16));
    }
  }
  return {found[0], found[1]};
}

struct Written {
  ArrayResult result;
  QStringList lines;
};

Written Write(const QImage& image, const settings::Settings& s) {
  const ImagePixelSource source(image);
  platform::NoKeyPoll keys;
  platform::TextBuffer text;
  const ArrayRequest request{s,
                             source,
                             AreaBounds{0, 0, image.width(), image.height()},
                             keys,
                             QStringLiteral("Pic.h"),
                             DefaultHeaderTemplate(HeaderKind::Graphics).join(QLatin1Char('\n')),
                             QStringLiteral("Pic.txt"),
                             QStringLiteral("date")};
  return {convert::WriteArray(request, text), text.Lines()};
}

QImage Draw(int w, int h, const std::function<bool(int, int)>& black) {
  QImage image(w, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) image.setPixel(x, y, black(x, y) ? 0xFF000000 : 0xFFFFFFFF);
  }
  return image;
}

TEST(Compression, CompressedArraysDecodeToThePicture) {
  auto noise = [](int x, int y) { return ((x * 7919 + y * 104729) ^ (x * y)) % 7 < 3; };
  const std::pair<const char*, QImage> pictures[] = {
      {"bands", Draw(64, 16, [](int, int y) { return y % 8 < 3; })},
      {"noise over runs", Draw(32, 32, [&](int x, int y) { return y < 8 && noise(x, y); })},
      {"127 equal rows", Draw(8, 127, [](int, int) { return true; })},
      {"128 equal rows", Draw(8, 128, [](int, int) { return true; })},
      {"128 different rows then a run",
       Draw(8, 160, [](int x, int y) { return y < 128 ? ((y * 37) >> (x % 8) & 1) != 0 : false; })},
  };
  for (const auto& [name, image] : pictures) {
    SCOPED_TRACE(name);
    settings::Settings s = With("tr=1");
    s.display.GWI = image.width();
    s.display.GHI = image.height();
    const Written plain = Write(image, s);
    s.pixel.ccomp = true;
    const Written packed = Write(image, s);
    ASSERT_FALSE(packed.result.compressionFailed);
    const Bytes expected = Arrays(plain.lines).first;
    ASSERT_EQ(expected.size(), size_t(image.width() / 8 * image.height()));
    const auto [data, pointers] = Arrays(packed.lines);
    EXPECT_EQ(Decode(data, pointers, expected.size()), expected);
    const CompressionCounters& c = *packed.result.compression;
    EXPECT_EQ(c.DataBytes, static_cast<long long>(data.size()));
    EXPECT_TRUE(
        packed.lines.contains(QStringLiteral("/* %1 Bytes */").arg(c.DataBytes + c.Pointers)));
  }
}

TEST(Compression, StatisticsOfOneWhitePicture) {
  // 8 x 8 white: eight 0x00, D = 9. One data byte and the pointer 136; the pointer counter
  // counts the different block closed (empty) when the run began. Saved 9 - 1 - 1 = 7; the
  // bytes in compression are the identical and different ones, 8 + 0;
  // ratio 700 / 9 = 77.77... cut to 77.77.
  settings::Settings s = With("ccomp=1|GWI=8|GHI=8");
  const Written w = Write(Draw(8, 8, [](int, int) { return false; }), s);
  const QStringList expected =
      QStringLiteral(
          "|/*  Compression statistics */|/*  -------------------------- */|"
          "/*  Number of bytes saved : 7 */|/*  Number of data bytes : 1 */|"
          "/*  Number of consecutive pointers : 1 */|/*  Number of identical bytes :8 */|"
          "/*  Number of different bytes : 0 */|/*  Number of bytes in compression: 8 */|"
          "/*  Compression ratio : 77.77% */")
          .split(QLatin1Char('|'));
  EXPECT_EQ(w.lines.mid(w.lines.size() - expected.size()), expected);
}

TEST(Compression, PointerTextTakesCprxAndEndsItsLastLine) {
  settings::Settings s = With("ORGC=3|CPRE=.db|cprx=.pt|FXHB=H|Addof=1|dellas=0|Neg=1");
  PointerText text(s);
  for (int p : {2, 131, 200, 5}) text.Add(p);
  // Never Neg; "H" with a leading 0 above 159; the last line is closed with its end mark.
  EXPECT_EQ(text.Finish(),
            (QStringList{QStringLiteral(".pt 02h, 83h , 0C8h ,"), QStringLiteral(".pt 05h,")}));
}

TEST(Compression, AnUnprofitableArrayIsWrittenAgainUncompressed) {
  vt::test::TestServices t;
  app::AppState state;
  state.files.SettingsFile = t.folders.Path(QStringLiteral("p.LCD"));
  vt::test::RecordingMessenger headerLog;
  ASSERT_TRUE(
      WriteDefaultHeaderFile(state.files.SettingsFile, HeaderKind::Graphics, true, headerLog).ok());
  state.settings = With("ccomp=1|Dnask=0|tr=1");
  app::SetDisplaySize(state, 16, 8);
  // No two neighbouring bytes alike but one pair: its pointers cost more than it saves.
  const QImage noise = Draw(16, 8, [](int x, int y) { return (x * 5 + y * 3) % 7 < 3; });
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 16; ++x)
      state.canvas.SetPixel(x, y, qRed(noise.pixel(x, y)) ? 0xFFFFFF : 0);
  EncodeButtonClick(state, t.services, FillExportDialog(state).request, true);
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].text,
            QStringLiteral("No efficient data compression possible with this frame ! "
                           "Uncompressed data generated "));
  EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("Warning"));
  settings::Settings plain = state.settings;
  plain.pixel.ccomp = false;
  const auto [data, pointers] = Arrays(state.text.Lines());
  EXPECT_EQ(data, Arrays(Write(noise, plain).lines).first);
  EXPECT_TRUE(pointers.empty());
}

}  // namespace
}  // namespace vt::convert
