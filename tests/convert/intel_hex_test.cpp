// SPDX-License-Identifier: MIT
#include "convert/intel_hex.h"

#include <gtest/gtest.h>

namespace vt::convert {
namespace {

/// Every record: ":" + length + address + "00" + data + checksum, the bytes after ":" adding up
/// to 0 modulo 256 (with an even number of address digits).
void ExpectValidRecord(const QString& record) {
  ASSERT_TRUE(record.startsWith(QLatin1Char(':'))) << record.toStdString();
  int sum = 0;
  for (qsizetype i = 1; i + 1 < record.size(); i += 2) sum += record.mid(i, 2).toInt(nullptr, 16);
  EXPECT_EQ(sum & 0xFF, 0) << record.toStdString();
}

TEST(IntelHex, RecordsAndChecksums) {
  // The length 0B, the address 0010 and eleven data bytes (0x43E) add up to 0x459;
  // 0x100 - 0x59 = 0xA7. 01 + 00 + 01 + 00 + FF = 0x101: 0xFF.
  EXPECT_EQ(IntelHexRecord(QStringLiteral("0010"), QStringLiteral("6164647265737320676170")),
            QStringLiteral(":0B0010006164647265737320676170A7"));
  EXPECT_EQ(IntelHexRecord(QStringLiteral("000100"), QStringLiteral("FF")),
            QStringLiteral(":0100010000FFFF"));
}

TEST(IntelHex, LinesAddressesAndTheEndRecord) {
  struct Case {
    int bytes, perLine, digits;
    const char* offset;
    const char* addresses;  // of the data records
    int lastLength;
  } cases[] = {
      {130, 16, 4, "0000", "0000 0010 0020 0030 0040 0050 0060 0070 0080", 2},
      {40, 8, 6, "12345", "012340 012348 012350 012358 012360", 8},
      {33, 32, 8, "", "00000000 00000020", 1},
      {48, 16, 4, "FFE7", "FFE0 FFF0 10000", 16},  // the address outgrows its digits
      {0, 16, 4, "0000", "", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes);
    platform::TextBuffer text;
    IntelHexState state = StartIntelHex(c.perLine, c.digits, QString::fromLatin1(c.offset));
    IntelHexTarget target(state, text);
    for (int i = 0; i < c.bytes; ++i)
      target.AppendHexByte(QStringLiteral("%1").arg(i % 256, 2, 16, QLatin1Char('0')).toUpper());
    FinishIntelHex(state, text);
    const QStringList addresses =
        QString::fromLatin1(c.addresses).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    ASSERT_EQ(text.Count(), addresses.size() + 1);
    EXPECT_EQ(text.LastLine(), QStringLiteral(":00000001FF"));
    for (int i = 0; i < addresses.size(); ++i) {
      const QString line = text.Line(i);
      EXPECT_EQ(line.mid(3, addresses[i].size()), addresses[i]);
      EXPECT_EQ(line.mid(1, 2).toInt(nullptr, 16),
                i + 1 < addresses.size() ? c.perLine : c.lastLength);
      if (addresses[i].size() % 2 == 0) ExpectValidRecord(line);
    }
  }
}

TEST(IntelHex, OffsetEditAndHexEditor) {
  EXPECT_EQ(AddressOffsetEditChange(QStringLiteral("12g4AbC-9"), 4), QStringLiteral("124A"));
  EXPECT_EQ(AddressOffsetEditChange(QStringLiteral("00FF00FF00"), 8), QStringLiteral("00FF00FF"));
  platform::HexBuffer hex;
  HexEditorTarget target(hex);
  for (const char* digits : {"00", "fF", "7A", "G1", "1", "123"}) {
    target.AppendHexByte(QString::fromLatin1(digits));
  }
  EXPECT_EQ(hex.Bytes(), QByteArray("\x00\xFF\x7A", 3));
  hex.SetReadOnly(true);
  EXPECT_FALSE(hex.Append(1));
  EXPECT_EQ(hex.Size(), 3);
}

}  // namespace
}  // namespace vt::convert
