// SPDX-License-Identifier: MIT
#include "settings/key_table.h"

#include <gtest/gtest.h>

#include <QSet>
#include <algorithm>
#include <tuple>

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

TEST(KeyTable, HoldsTheKnownFileLayoutLandmarks) {
  const auto table = KeyTable();
  ASSERT_GT(table.size(), 600u);
  EXPECT_STREQ(table.front().section, "S");
  EXPECT_STREQ(table.front().key, "CARK_r");
  EXPECT_STREQ(table.back().key, "achb");
  const std::tuple<const char*, const char*, ValueType, const char*> expects[] = {
      {"GWI", "B2", ValueType::Int, "128"},
      {"GHI", "B2", ValueType::Int, "64"},
      {"tr", "B3", ValueType::Bool, "1"},
      {"MSBF", "B2", ValueType::Bool, "1"},
      {"bw8", "B1", ValueType::Bool, "1"},
      {"PPB", "B11", ValueType::Int, "8"},
      {"FXHB", "S", ValueType::String, "X"},
      {"OINT", "I11", ValueType::Int, "16"},
      {"usco", "S12", ValueType::String, "_"},
      {"nbmfn", "S8", ValueType::String, "NewBitmap.bmp"},
      {"EXLE", "B10", ValueType::Int, "120"},
      {"SCOL", "B10", ValueType::Int, "-1"},
      {"vecp8T", "S14", ValueType::String, "\""},
      {"SaAf", "B1", ValueType::String, ".BMP"},
      {"COMAh", "S", ValueType::Bool, "1"},
      {"Monc", "S4", ValueType::Bool, "1"},
      {"INCSYN", "S3", ValueType::String, "#include "},
      {"KERSUF", "S2", ValueType::String, "[120][3]= "}};
  for (const auto& [key, section, type, def] : expects) {
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const KeyRow& r) { return qstrcmp(r.key, key) == 0; });
    ASSERT_NE(row, table.end()) << key;
    EXPECT_STREQ(row->section, section) << key;
    EXPECT_EQ(row->type, type) << key;
    EXPECT_STREQ(row->defaultText, def) << key;
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

TEST(FieldFromText, NonNumericIntegersAndBooleansTakeTheirDefault) {
  int value = 5;
  int fallback = 128;
  SetFieldFromText(FieldRef(&value), QStringLiteral("wide"), FieldRef(&fallback));
  EXPECT_EQ(value, 128);
  SetFieldFromText(FieldRef(&value), QStringLiteral("240"), FieldRef(&fallback));
  EXPECT_EQ(value, 240);

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
