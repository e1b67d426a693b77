// SPDX-License-Identifier: MIT
#include "batch/batch_templates.h"

#include <gtest/gtest.h>

#include "batch/batch_line.h"
#include "print_qt.h"

namespace vt::batch {
namespace {

TEST(TemplateLine, ActionsAndHexSettingsAreIndentedConditionsNot) {
  const struct {
    const char* item;
    const char* key;
    const char* line;
  } cases[] = {
      {"then insert (index)'text'", "then insert (index)", "      then insert (index)'text'"},
      {"if 'text'", "if ", "if 'text'"},
      {"if line number(index)", "if line number(index)", "if line number(index)"},
      {"set hex prefix as 'text'", "set hex prefix as ", "      set hex prefix as 'text'"},
      {"search back from line end", "search back from line end",
       "search back from line end (modal switch)"},
      {"AND (hex)", "AND (hex)", "      ANDL (hex)"},
      {"OR (hex)", "OR (hex)", "      ORL (hex)"},
      {"shift left (number)", "shift left (number)", "      shift left (number)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TemplateKey(c.item), c.key);
    EXPECT_EQ(TemplateLine(c.item), c.line);
  }
}

TEST(TemplateLine, EveryItemOfTheBitAndTextPagesWritesALineWithItsKeyword) {
  for (const TemplatePage& page : TemplatePages()) {
    if (page.name != "Text" && page.name != "Bit Manipulations") continue;
    for (const QString& item : page.conditions + page.functions) {
      if (item == "then insert integer (index)") continue;  // read as "then insert"
      SCOPED_TRACE(item.toStdString());
      EXPECT_FALSE(FindKeywords(KeywordPart(TemplateLine(item))).isEmpty());
    }
  }
}

TEST(ReadPostString, SplitsALineIntoItsFieldsAndWritesItBack) {
  const BatchLineFields f = ReadPostString("      then insert (1)'static '   // why");
  EXPECT_EQ(f.indent, "      ");
  EXPECT_EQ(f.keyword, "then insert");
  EXPECT_EQ(f.index, "1");
  EXPECT_EQ(f.text, "static ");
  EXPECT_EQ(f.comment, "why");
  EXPECT_EQ(WriteBatchLine(f), "      then insert (1)'static '   // why");
  BatchLineFields changed = f;
  changed.text = "extern ";
  changed.comment.clear();
  EXPECT_EQ(WriteBatchLine(changed), "      then insert (1)'extern '");
  EXPECT_EQ(WriteBatchLine(ReadPostString("if last line")), "if last line");
  EXPECT_EQ(WriteBatchLine(ReadPostString("if 'a'")), "if 'a'");
}

}  // namespace
}  // namespace vt::batch
