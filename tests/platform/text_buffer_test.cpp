// SPDX-License-Identifier: MIT
#include "platform/text_buffer.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <cstring>

#include "support/temp_folders.h"

namespace vt::platform {
namespace {

TEST(TextBuffer, LinesAreAddressedFromZeroAndEditedInPlace) {
  TextBuffer text;
  text.SetText("a\r\nb\rc\nd\n");  // every line break; a final one starts no line
  EXPECT_EQ(text.Lines(), (QStringList{"a", "b", "c", "d"}));
  EXPECT_EQ(text.Line(0) + text.Line(3) + text.LastLine(), "add");
  EXPECT_EQ(text.Line(4) + text.Line(-1), "");
  text.ReplaceLine(1, "B");
  text.DeleteLine(0);
  text.DeleteLine(5);         // out of range: nothing
  text.ReplaceLine(-1, "x");  // nothing
  text.ReplaceLine(3, "e");   // one past the end appends
  EXPECT_EQ(text.Lines(), (QStringList{"B", "c", "d", "e"}));
  EXPECT_EQ(text.Text(), "B\nc\nd\ne\n");
  text.Clear();
  EXPECT_EQ(text.Text(), "");
  text.AddLine("x");
  text.AddLine("");
  EXPECT_EQ(text.Text("\r\n"), "x\r\n\r\n");
}

TEST(TextBuffer, LinesWrittenInPlaceOrCopiedFromItselfStayWholeAsTheBlockGrows) {
  TextBuffer text;
  text.AddLine(QString(1000, QLatin1Char('a')));
  // Each copy of the last line doubles the text: the block moves while a line is copied from
  // it; a line is also written straight into the room at the end.
  for (int i = 0; i < 9; ++i) text.AddUtf8Line(text.Utf8Line(text.Count() - 1));
  char* room = text.LineRoom(5);
  std::memcpy(room, "x\xC3\xA9z", 4);  // "xez" with an accented e
  text.AddWrittenLine(4);
  text.ReplaceUtf8Line(3, text.Utf8Line(9));  // from a line after it
  ASSERT_EQ(text.Count(), 11);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(text.Line(i), QString(1000, QLatin1Char('a'))) << i;
  EXPECT_EQ(text.LastLine(), QString::fromUtf8("x\xC3\xA9z"));
  EXPECT_TRUE(text.Text().endsWith(QStringLiteral("a\n") + QString::fromUtf8("x\xC3\xA9z\n")));
}

TEST(TextBuffer, LinesWrittenTogetherInOneRoomStandEachOnItsOwn) {
  TextBuffer text;
  text.AddLine("head");
  // Three lines of three bytes, each written after the room left for the break of the last.
  char* room = text.LineRoom(3 * 4);
  for (int l = 0; l < 3; ++l) std::memcpy(room + 4 * l, l == 1 ? "B_b" : "a_a", 3);
  text.AddWrittenLines(3, 3);
  text.AddLine("tail");
  EXPECT_EQ(text.Lines(), (QStringList{"head", "a_a", "B_b", "a_a", "tail"}));
  EXPECT_EQ(text.Text(), "head\na_a\nB_b\na_a\ntail\n");
  text.ReplaceLine(2, "bb");
  EXPECT_EQ(text.Line(2), "bb");
  EXPECT_EQ(text.Line(3), "a_a");
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
  text.SetModified(false);
  text.DeleteLine(0);
  EXPECT_TRUE(text.Modified());
  text.SetModified(false);
  text.SetText("d");
  EXPECT_TRUE(text.Modified());
}

TEST(TextBuffer, SaveWritesEachLineWithTheChosenBreakOrNamesThePath) {
  QTemporaryDir dir;
  TextBuffer text;
  text.SetText(" 0x00 , 0x01,\n\n};");
  for (const bool crlf : {true, false}) {
    const QString path = dir.filePath(crlf ? "sub/crlf.h" : "lf.h");
    ASSERT_TRUE(text.SaveToFile(path, crlf).ok());
    EXPECT_EQ(test::ReadAll(path), crlf ? " 0x00 , 0x01,\r\n\r\n};\r\n" : " 0x00 , 0x01,\n\n};\n");
  }
  // A folder stands where the file should go: the write cannot succeed.
  const QString taken = dir.filePath("taken");
  ASSERT_TRUE(QDir().mkpath(taken));
  text.AddLine("more");
  const Result<bool> saved = text.SaveToFile(taken, true);
  ASSERT_FALSE(saved.ok());
  EXPECT_EQ(saved.error().path, taken);
  EXPECT_TRUE(text.Modified());
}

}  // namespace
}  // namespace vt::platform
