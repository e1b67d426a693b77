// SPDX-License-Identifier: MIT
#include "app/text_buffer.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "support/temp_folders.h"

namespace vt::app {
namespace {

TEST(TextBuffer, LinesAreAddressedFromZero) {
  TextBuffer text;
  text.AddLine("first");
  text.AddLine("second");
  text.AddLine("third");
  EXPECT_EQ(text.Count(), 3);
  EXPECT_EQ(text.Line(0), "first");
  EXPECT_EQ(text.Line(2), "third");
  EXPECT_EQ(text.LastLine(), "third");
  EXPECT_EQ(text.Line(3), "");
  EXPECT_EQ(text.Line(-1), "");
}

TEST(TextBuffer, ReplaceAndDeleteKeepTheOtherLines) {
  TextBuffer text;
  text.SetText("a\nb\nc\n");
  text.ReplaceLine(1, "B");
  text.DeleteLine(0);
  EXPECT_EQ(text.Lines(), (QStringList{"B", "c"}));
  text.DeleteLine(5);  // out of range: nothing
  text.ReplaceLine(-1, "x");
  EXPECT_EQ(text.Lines(), (QStringList{"B", "c"}));
  text.ReplaceLine(2, "d");  // one past the end appends
  EXPECT_EQ(text.Lines(), (QStringList{"B", "c", "d"}));
}

TEST(TextBuffer, TextEndsEveryLineWithTheBreak) {
  TextBuffer text;
  EXPECT_EQ(text.Text(), "");
  text.AddLine("x");
  text.AddLine("");
  EXPECT_EQ(text.Text(), "x\n\n");
  EXPECT_EQ(text.Text("\r\n"), "x\r\n\r\n");
}

TEST(TextBuffer, SetTextAcceptsEveryLineBreak) {
  TextBuffer text;
  text.SetText("a\r\nb\rc\nd");
  EXPECT_EQ(text.Lines(), (QStringList{"a", "b", "c", "d"}));
  text.SetText("only\r\n");
  EXPECT_EQ(text.Lines(), QStringList{"only"});
}

TEST(TextBuffer, ModifiedFlagFollowsChangesClearAndSave) {
  QTemporaryDir dir;
  TextBuffer text;
  EXPECT_FALSE(text.Modified());
  text.AddLine("a");
  EXPECT_TRUE(text.Modified());
  ASSERT_TRUE(text.SaveToFile(dir.filePath("out.h"), true).ok());
  EXPECT_FALSE(text.Modified());
  text.ReplaceLine(0, "b");
  EXPECT_TRUE(text.Modified());
  text.Clear();
  EXPECT_FALSE(text.Modified());
  EXPECT_EQ(text.Count(), 0);
  text.AddLine("c");
  text.DeleteLine(0);
  EXPECT_TRUE(text.Modified());
}

struct SaveCase {
  const char* name;
  bool crlf;
  QByteArray expected;
};

class TextBufferSave : public testing::TestWithParam<SaveCase> {};

TEST_P(TextBufferSave, WritesEachLineWithTheChosenBreak) {
  QTemporaryDir dir;
  TextBuffer text;
  text.AddLine(" 0x00 , 0x01,");
  text.AddLine("");
  text.AddLine("};");
  const QString path = dir.filePath("sub/NewBitmap.h");
  ASSERT_TRUE(text.SaveToFile(path, GetParam().crlf).ok());
  EXPECT_EQ(test::ReadAll(path), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(LineBreaks, TextBufferSave,
                         testing::Values(SaveCase{"Crlf", true, " 0x00 , 0x01,\r\n\r\n};\r\n"},
                                         SaveCase{"Lf", false, " 0x00 , 0x01,\n\n};\n"}),
                         [](const testing::TestParamInfo<SaveCase>& info) {
                           return std::string(info.param.name);
                         });

TEST(TextBuffer, FailedSaveNamesThePathAndKeepsTheFlag) {
  QTemporaryDir dir;
  TextBuffer text;
  text.AddLine("data");
  // A folder stands where the file should go: the write cannot succeed.
  const QString path = dir.filePath("taken");
  ASSERT_TRUE(QDir().mkpath(path));
  const Result<bool> saved = text.SaveToFile(path, true);
  ASSERT_FALSE(saved.ok());
  EXPECT_EQ(saved.error().path, path);
  EXPECT_TRUE(text.Modified());
}

}  // namespace
}  // namespace vt::app
