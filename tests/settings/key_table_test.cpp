// SPDX-License-Identifier: MIT
#include "settings/key_table.h"

#include <gtest/gtest.h>

#include <QSet>

namespace vt::settings {
namespace {

TEST(KeyTable, EveryWrittenKeyIsUniqueInItsSectionExceptTheDoubleWrite) {
  QSet<QString> seen;
  QStringList repeated;
  for (const KeyRow& row : KeyTable()) {
    if (row.flags & kNoWrite) continue;
    const QString id = (row.WriteSection() + QLatin1Char('.') + row.WriteKey()).trimmed().toLower();
    if (seen.contains(id)) repeated << id;
    seen.insert(id);
  }
  // Endst is written twice in a row: graphics first, then fonts.
  EXPECT_EQ(repeated, QStringList{QStringLiteral("s8.endst")});
}

TEST(KeyTable, DefaultTextAgreesWithTheRecordInitialisers) {
  Settings defaults;
  for (const KeyRow& row : KeyTable()) {
    if (row.flags & kConstant) continue;
    EXPECT_EQ(FieldText(row.field(defaults)), QString::fromLatin1(row.defaultText))
        << row.section << "." << row.key;
  }
}

TEST(KeyTable, EachRowBindsItsOwnFieldOrAnIntendedShare) {
  // Two rows writing the same cell would lose a value silently; only none are expected.
  Settings s;
  QSet<const void*> cells;
  for (const KeyRow& row : KeyTable()) {
    const void* cell = std::visit([](auto* p) -> const void* { return p; }, row.field(s));
    EXPECT_FALSE(cells.contains(cell)) << row.section << "." << row.key;
    cells.insert(cell);
  }
}

TEST(IniInteger, ParsesLikeTheIniReader) {
  const std::pair<const char*, std::optional<int>> cases[] = {
      {"0", 0},     {"128", 128},  {"-1", -1},          {" 42 ", 42}, {"+7", 7},   {"$FF", 255},
      {"0x10", 16}, {"0XfF", 255}, {"$FFFFFFFF", -1},   {"", {}},     {"abc", {}}, {"12a", {}},
      {"1.5", {}},  {"$", {}},     {"99999999999", {}}, {"--1", {}},  {"true", {}}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(ParseIniInteger(QString::fromLatin1(text)), expected) << text;
  }
}

TEST(FieldFromText, NonNumericBooleansTakeTheirDefault) {
  bool flag = false;
  bool flagDefault = true;
  SetFieldFromText(FieldRef(&flag), QStringLiteral("yes"), FieldRef(&flagDefault));
  EXPECT_TRUE(flag);
  SetFieldFromText(FieldRef(&flag), QStringLiteral("0"), FieldRef(&flagDefault));
  EXPECT_FALSE(flag);
  SetFieldFromText(FieldRef(&flag), QStringLiteral("-3"), FieldRef(&flagDefault));
  EXPECT_TRUE(flag);  // any number but zero is true
  EXPECT_EQ(FieldText(FieldRef(&flag)), QStringLiteral("1"));
}

}  // namespace
}  // namespace vt::settings
