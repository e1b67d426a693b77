// SPDX-License-Identifier: MIT
#include "settings/key_names.h"

#include <gtest/gtest.h>

namespace vt::settings {
namespace {

TEST(ApplyKeyAssignments, EachKeyLandsWhereTheFileHoldsIt) {
  const struct {
    const char* assignment;
    const char* section;
    const char* key;
    const char* value;
  } rows[] = {
      {"GWI=240", "B2", "GWI", "240"},           // a table key, by its written name
      {"gwi =96", "B2", "GWI", "96"},            // names compare without case and blanks
      {"B10.HCO=3", "B10", "HCO", "3"},          // the section picks one of two rows
      {"HCO=1", "B2", "HCO", "1"},               // without it, the first in file order
      {"vew1=77", "S13", "wew1", "77"},          // found by the name a load reads
      {"mru3=/x.bmp", "S18", "mru3", "/x.bmp"},  // a slot of a numbered list
      {"Mine.note=a=b", "Mine", "note", "a=b"},  // a key of the user's own; "=" in a value
      {"FXHB=", "S", "FXHB", ""},                // an empty value
  };
  for (const auto& row : rows) {
    IniDocument doc;
    const Result<QStringList> applied = ApplyKeyAssignments({row.assignment}, doc);
    ASSERT_TRUE(applied.ok()) << row.assignment;
    EXPECT_TRUE(applied.value().isEmpty()) << row.assignment;
    EXPECT_EQ(doc.Value(row.section, row.key), QString(row.value)) << row.assignment;
    EXPECT_EQ(doc.Sections(), QStringList{row.section}) << row.assignment;
  }
}

TEST(ApplyKeyAssignments, MalformedAssignmentsAreUsageErrorsAndANumberKeyOnlyWarns) {
  const struct {
    const char* assignment;
    const char* message;
  } refused[] = {
      {"GWI", "expected KEY=VALUE, got 'GWI'"},
      {"=5", "expected KEY=VALUE, got '=5'"},
      {"nosuch=1", "unknown key nosuch; name its section (SECTION.KEY) to add a key of your own"},
      {"Mine.note=two\nlines",
       "the value of note holds a line break; a settings file cannot keep it"},
      {"GWI=1\r", "the value of GWI holds a line break; a settings file cannot keep it"},
  };
  for (const auto& row : refused) {
    IniDocument doc;
    const Result<QStringList> applied = ApplyKeyAssignments({row.assignment}, doc);
    ASSERT_FALSE(applied.ok()) << row.assignment;
    EXPECT_EQ(applied.error().kind, Error::Kind::Usage);
    EXPECT_EQ(applied.error().message, row.message);
  }
  IniDocument doc;
  const Result<QStringList> warned = ApplyKeyAssignments({"GWI=wide", "MSBF=x"}, doc);
  ASSERT_TRUE(warned.ok());
  EXPECT_EQ(warned.value(), (QStringList{"GWI holds a number; 'wide' will read as its default",
                                         "MSBF holds a number; 'x' will read as its default"}));
  EXPECT_EQ(doc.Value("B2", "GWI"), "wide");
}

}  // namespace
}  // namespace vt::settings
