// SPDX-License-Identifier: MIT
#include "settings/key_lookup.h"

#include <gtest/gtest.h>

namespace vt::settings {
namespace {

/// "SECTION.KEY" of what FindKey found, with the file's blanks; empty for nothing.
QString Found(const char* name) {
  const auto found = FindKey(QString::fromLatin1(name));
  return found ? found->Section() + QLatin1Char('.') + found->Key() : QString();
}

TEST(KeyName, SplitsAtTheFirstDotAndTrimsEachPart) {
  const struct {
    const char* text;
    const char* section;
    const char* key;
  } cases[] = {{"GWI", "", "GWI"},   {" B2 . gwi ", "B2", "gwi"}, {"Mine.a.b", "Mine", "a.b"},
               {".GWI", "", ".GWI"}, {"B2.", "B2", ""},           {"  ", "", ""}};
  for (const auto& c : cases) {
    const KeyName name = SplitKeyName(QString::fromLatin1(c.text));
    EXPECT_EQ(name.section, QString::fromLatin1(c.section)) << c.text;
    EXPECT_EQ(name.key, QString::fromLatin1(c.key)) << c.text;
  }
}

TEST(FindKey, FindsRowsByWrittenNameThenReadNameFirstInFileOrder) {
  const struct {
    const char* name;
    const char* found;  // SECTION.KEY as the file spells it; empty: no such key
  } cases[] = {
      {"GWI", "B2.GWI"},
      {"gwi", "B2.GWI"},
      {" b2 . GWI ", "B2.GWI"},
      {"S.GWI", ""},      // a section must be the key's own
      {"HCO", "B2.HCO"},  // the boolean stands first in the file
      {"B10.HCO", "B10.HCO"},
      {"mfw", "S6.mfw"},
      {"i13.MFW", "I13.mfw"},
      {"vew1", "S13.wew1"},  // the names a load reads
      {"S13.vew1", "S13.wew1"},
      {"vecin", "S14.vecini"},
      {"B1.descsz_r", "B7.descsz_r"},
      {"Endst", "S8.Endst"},
      {"Logws", "B1.Logws "},  // blanks of the file are kept in the key
      {"VecReOn", "B1. VecReOn"},
      {"B18.achb", "b18.achb"},
      {"chk", "S15.chk"},
      {"NoSuchKey", ""},
      {"", ""},
      {"B2.", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Found(c.name), QString::fromLatin1(c.found)) << c.name;
}

TEST(FindKey, KnowsTheNumberedListsAndTheirSlotCounts) {
  const struct {
    const char* name;
    const char* found;
  } cases[] = {
      {"mru0", "S18.mru0"},
      {"MRU19", "S18.mru19"},
      {"mru20", ""},
      {"S18.mru3", "S18.mru3"},
      {"B1.mru3", ""},
      {"mru03", ""},
      {"mru-1", ""},
      {"mru", ""},
      {"mru3x", ""},
      {"fmru10", "S19.fmru10"},
      {"fmru11", ""},
      {"ext0", "FS0.ext0"},
      {"ext20", "FS0.ext20"},
      {"ext21", ""},
      {"cs0w", "I2.cs0w"},
      {"CS15H", "I2.cs15h"},
      {"cs16w", ""},
      {"cs3x", ""},
      {"cs3", ""},
      {"i2.cs7h", "I2.cs7h"},
      {"S19.mru1", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Found(c.name), QString::fromLatin1(c.found)) << c.name;
}

TEST(FindKey, EveryRowIsFoundByItsSectionAndNameSaveTheSecondEndst) {
  int misses = 0;
  for (const KeyRow& row : KeyTable()) {
    const auto found = FindKey(row.WriteSection() + QLatin1Char('.') + row.WriteKey());
    ASSERT_TRUE(found.has_value()) << row.section << "." << row.key;
    if (found->row != &row) {
      ++misses;
      EXPECT_EQ(found->row->WriteKey(), row.WriteKey()) << "an earlier row of the same name";
    }
  }
  EXPECT_EQ(misses, 1) << "only the font Endst, found by its read name EndstF";
  EXPECT_EQ(FindKey(QStringLiteral("EndstF"))->DefaultText(), QStringLiteral("};"));
}

TEST(FindKey, TellsTypeDefaultAndValueOfRowsAndListSlots) {
  Settings s;
  s.block.Endst = QStringLiteral("graphics");
  s.font.EndstF = QStringLiteral("fonts");
  s.display.GWI = 240;
  s.scan.MSBF = false;
  s.mru[4] = QStringLiteral("/p/a.bmp");
  s.ext[2] = QStringLiteral(".GVS");
  s.customSizes[5] = QSize(320, 200);
  const struct {
    const char* name;
    ValueType type;
    const char* defaultText;
    const char* value;
  } cases[] = {
      {"GWI", ValueType::Int, "128", "240"},        {"MSBF", ValueType::Bool, "1", "0"},
      {"FXHB", ValueType::String, "X", "X"},        {"Endst", ValueType::String, "};", "graphics"},
      {"EndstF", ValueType::String, "};", "fonts"}, {"mru4", ValueType::String, "_", "/p/a.bmp"},
      {"fmru0", ValueType::String, "_", "_"},       {"ext2", ValueType::String, "", ".GVS"},
      {"cs5w", ValueType::Int, "0", "320"},         {"cs5h", ValueType::Int, "0", "200"},
  };
  for (const auto& c : cases) {
    const auto found = FindKey(QString::fromLatin1(c.name));
    ASSERT_TRUE(found.has_value()) << c.name;
    EXPECT_EQ(found->Type(), c.type) << c.name;
    EXPECT_EQ(found->DefaultText(), QString::fromLatin1(c.defaultText)) << c.name;
    EXPECT_EQ(found->Text(s), QString::fromLatin1(c.value)) << c.name;
  }
}

TEST(FindKey, SummaryNamesSectionTypeDefaultAndMeaning) {
  const struct {
    const char* name;
    const char* summary;
  } cases[] = {
      {"gwi", "B2.GWI (number, default \"128\"): Display width in pixels (1 to 1024)."},
      {"MSBF",
       "B2.MSBF (boolean, default \"1\"): Bit order: most significant bit first (big endian); "
       "off: MSB last."},
      {"mru3",
       "S18.mru3 (text, default \"_\"): Recently used file in slot 3 (0 to 19); \"_\" when free."},
      {"cs15h",
       "I2.cs15h (number, default \"0\"): Height in pixels of user display size 15 (0 to 15); 0 "
       "when the slot is free."},
      {"ext20",
       "FS0.ext20 (text, default \"\"): File extension 20 (0 to 20) of the explorer filter; empty "
       "when unset."},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FindKey(QString::fromLatin1(c.name))->Summary(), QString::fromLatin1(c.summary))
        << c.name;
  }
  // The key's own blanks do not show.
  EXPECT_TRUE(FindKey(QStringLiteral("Logws"))->Summary().startsWith(QStringLiteral("B1.Logws (")));
}

}  // namespace
}  // namespace vt::settings
