// SPDX-License-Identifier: MIT
#include "settings/key_table.h"

#include <gtest/gtest.h>

#include <QSet>

namespace vt::settings {
namespace {

TEST(KeyTable, EachNameStandsOnceInItsSectionExceptTheDoubleWrite) {
  // Names of the file compare without case and blanks; a save writes Endst twice in a row
  // (graphics, then fonts), every other name, written or read, stands once.
  const struct {
    const char* side;
    QString (KeyRow::*section)() const;
    QString (KeyRow::*key)() const;
    unsigned skippedBy;
    QStringList repeated;
  } sides[] = {
      {"written", &KeyRow::WriteSection, &KeyRow::WriteKey, kNoWrite, {"s8.endst"}},
      {"read", &KeyRow::ReadSection, &KeyRow::ReadKey, kNoRead, {}},
  };
  for (const auto& side : sides) {
    QSet<QString> seen;
    QStringList repeated;
    for (const KeyRow& row : KeyTable()) {
      if (row.flags & side.skippedBy) continue;
      const QString id =
          ((row.*side.section)().trimmed() + QLatin1Char('.') + (row.*side.key)().trimmed())
              .toLower();
      if (seen.contains(id)) repeated << id;
      seen.insert(id);
    }
    EXPECT_EQ(repeated, side.repeated) << side.side;
  }
}

TEST(KeyTable, EveryKeyHasOneLineOfDescription) {
  for (const KeyRow& row : KeyTable()) {
    const QString text = QString::fromLatin1(row.description ? row.description : "");
    const QString id = row.WriteSection() + QLatin1Char('.') + row.WriteKey();
    EXPECT_GE(text.size(), 10) << id.toStdString();
    EXPECT_LE(text.size(), 100) << id.toStdString();
    EXPECT_TRUE(text.endsWith(QLatin1Char('.'))) << id.toStdString();
    EXPECT_EQ(text, text.trimmed()) << id.toStdString();
    for (QChar c : text) {
      EXPECT_TRUE(c.unicode() >= 0x20 && c.unicode() < 0x7F) << id.toStdString();
    }
  }
}

TEST(KeyTable, EachRowTypeIsTheTypeOfItsField) {
  Settings s;
  for (const KeyRow& row : KeyTable()) {
    const FieldRef field = row.field(s);
    const ValueType expected = std::holds_alternative<bool*>(field)  ? ValueType::Bool
                               : std::holds_alternative<int*>(field) ? ValueType::Int
                                                                     : ValueType::String;
    EXPECT_EQ(row.type, expected) << row.section << "." << row.key;
  }
}

const KeyRow& Row(const char* section, const char* key) {
  for (const KeyRow& row : KeyTable()) {
    if (qstrcmp(row.section, section) == 0 && qstrcmp(row.key, key) == 0) return row;
  }
  ADD_FAILURE() << section << "." << key;
  return KeyTable().front();
}

TEST(KeyTable, DefaultTextIsTheTextOfTheFieldInitialiser) {
  // Defaults of the key list: booleans 1 or 0, numbers in decimal, texts as they stand.
  const struct {
    const char* section;
    const char* key;
    const char* text;
  } cases[] = {{"B2", "GWI", "128"},       {"B2", "MSBF", "1"},    {"B1", "Neg", "0"},
               {"B10", "SCOL", "-1"},      {"S", "FXHB", "X"},     {"S2", "KERSUF", "[120][3]= "},
               {"S14", "vecp8T", "\""},    {"S", "CARK_s", "1"},   {"B7", "wiw_d", "1"},
               {"B7", "wih_d", "0"},       {"S13", "wew1", "900"}, {"S15", "chk", ""},
               {"I8", "ghco", "12639424"}, {"S", "PFP", ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(DefaultText(Row(c.section, c.key)), QString::fromLatin1(c.text))
        << c.section << "." << c.key;
  }
}

TEST(KeyTable, OnlyTheCheckMarkWritesOtherThanItsField) {
  // A factory file holds each key's default, except chk, which always reads "check".
  Settings defaults;
  Settings changed;
  changed.other.chk = QStringLiteral("loaded");
  QStringList differing;
  for (const KeyRow& row : KeyTable()) {
    if (WrittenText(row, defaults) != DefaultText(row)) {
      differing << QString::fromLatin1(row.key) + QLatin1Char('=') + WrittenText(row, changed);
    }
  }
  EXPECT_EQ(differing, QStringList{QStringLiteral("chk=check")});
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
