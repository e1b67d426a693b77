// SPDX-License-Identifier: MIT
#include "batch/batch_line.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "print_qt.h"
#include "util/atomic_write.h"

namespace vt::batch {
namespace {

using Rows = QList<BatchRow>;

/// One batch line read with an empty block in the condition phase.
struct LineCase {
  const char* line;
  Rows conditions;
  Rows tasks;
  Rows actions;
  bool valid;
};

const BatchRow kNone{QStringLiteral("none"), {}, {}};

class ParseBatchLineRows : public ::testing::TestWithParam<LineCase> {};

TEST_P(ParseBatchLineRows, GivesTheRowsOfTheLine) {
  const LineCase& c = GetParam();
  BatchParser parser({QString::fromUtf8(c.line)});
  BlockRows rows;
  EXPECT_EQ(parser.ParseBatchLine(0, false, rows), c.valid);
  EXPECT_EQ(rows.conditions, c.conditions);
  EXPECT_EQ(rows.tasks, c.tasks);
  EXPECT_EQ(rows.actions, c.actions);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ParseBatchLineRows,
    ::testing::Values(
        // Conditions: the stored name, the text between the first and the last quote.
        LineCase{"if 'const'", {{"if", "const", ""}}, {kNone}, {}, true},
        LineCase{"if 'it's'", {{"if", "it's", ""}}, {kNone}, {}, true},
        LineCase{"if line number(3)", {{"if line", "", "3"}}, {kNone}, {}, true},
        LineCase{"if last line", {{"if last line", "", ""}}, {kNone}, {}, true},
        LineCase{"if not flag", {{"if not flag", "", ""}}, {kNone}, {}, true},
        LineCase{"and not flag", {{"and not flag", "", ""}}, {kNone}, {}, true},
        LineCase{"and not 'x'", {{"and not", "x", ""}}, {kNone}, {}, true},
        LineCase{"or 'x'", {{"or", "x", ""}}, {kNone}, {}, true},
        LineCase{"or not 'x'", {{"or not", "x", ""}}, {kNone}, {}, true},
        LineCase{"if not input 'k1'", {{"if not input", "k1", ""}}, {kNone}, {}, true},
        LineCase{"while hex in line", {{"while hex in line", "", ""}}, {kNone}, {}, true},
        LineCase{"if bit is set (3)", {{"bit is set", "", "3"}}, {kNone}, {}, true},
        LineCase{
            "if bit is cleared(number)", {{"bit is cleared", "", "number"}}, {kNone}, {}, true},
        LineCase{"if unconditional", {{"if unconditional", "", ""}}, {kNone}, {}, true},
        // A condition that needs a text is not valid without one; its row stands all the same.
        LineCase{"if", {{"if", "", ""}}, {kNone}, {}, false},
        // Modal switches are written as conditions.
        LineCase{"search back from line end", {{"search from end", "", ""}}, {kNone}, {}, true},
        LineCase{"search from line begin", {{"search from begin", "", ""}}, {kNone}, {}, true},
        LineCase{"case sensitive on", {{"case sensitive", "", ""}}, {kNone}, {}, true},
        LineCase{"case sensitive off", {{"case sensitive off", "", ""}}, {kNone}, {}, true},
        // Tasks take their text; they are no conditions.
        LineCase{"set hex prefix as '0x'", {}, {{"set hex prefix", "0x", ""}}, {}, true},
        LineCase{"set hex suffix as ''", {}, {{"set hex suffix", "", ""}}, {}, true},
        LineCase{"load graphic 'logo.bmp'", {}, {{"load graphic", "logo.bmp", ""}}, {}, true},
        LineCase{"overwrite data file", {}, {{"overwrite data file", "", ""}}, {}, true},
        // Actions, with the names they are stored under.
        LineCase{"      then insert (1)'static '", {}, {}, {{"Insert", "static ", "1"}}, true},
        LineCase{"      then delete line", {}, {}, {{"Delete Line", "", ""}}, true},
        LineCase{"      then insert line", {}, {}, {{"Insert line", "", ""}}, true},
        LineCase{"      then overwrite hex ", {}, {}, {{"Overwrite hex", "", ""}}, true},
        LineCase{
            "      then overwrite (INDEX)'abc'", {}, {}, {{"Overwrite", "abc", "INDEX"}}, true},
        LineCase{
            "      then search 'abc' // look for it", {}, {}, {{"search text", "abc", ""}}, true},
        LineCase{"      then reset flag", {}, {}, {{"reset flag", "", ""}}, true},
        LineCase{"      then save copy as 'c.h'", {}, {}, {{"Save Copy", "c.h", ""}}, true},
        LineCase{"      then get integer (1)", {}, {}, {{"get integer", "", "1"}}, true},
        LineCase{"      XOR (FF)", {}, {}, {{"XOR", "", "FF"}}, true},
        LineCase{"      ORL (0F)", {}, {}, {{"OR", "", "0F"}}, true},
        LineCase{"      ANDL (F0)", {}, {}, {{"AND", "", "F0"}}, true},
        LineCase{"      log 'hello'", {}, {}, {{"log", "hello", ""}}, true},
        // "then insert integer" is no keyword here: it reads as "then insert" with its index,
        // and without a text it is not valid.
        LineCase{"      then insert integer (2)", {}, {}, {{"Insert", "", "2"}}, false},
        // A longer keyword hides the shorter one it holds: no "and" in "load and insert", no
        // "if" in "shift", no "log " in "analog".
        LineCase{
            "      then load and insert 'part.h'", {}, {}, {{"Load File", "part.h", ""}}, true},
        LineCase{"      shift right (4)", {}, {}, {{"shift right", "", "4"}}, true},
        LineCase{
            "      [U] get analog input 'a0'", {}, {}, {{"[U] get analog input", "a0", ""}}, true},
        // A quote before a parenthesis cuts the keyword part there; the index is still read.
        LineCase{"      then insert 'x' (2)", {}, {}, {{"Insert", "x", "2"}}, true},
        // A line without a keyword adds nothing; it is valid when it has a text.
        LineCase{"      unknown words 'x'", {}, {}, {}, true},
        LineCase{"      frobnicate", {}, {}, {}, false}));

TEST(ParseBatchLine, BlankLinesEndTheBlockOfTheirPhase) {
  const struct {
    const char* line;
    bool actionPhase;
  } cases[] = {
      {"", false},
      {"    ", true},
      {"// a comment", false},
      {"   // an indented comment", true},
      {"'quoted first' then delete line", false},
      {"(3) then delete line", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    BatchParser parser({QString::fromUtf8(c.line)});
    BlockRows rows;
    EXPECT_FALSE(parser.ParseBatchLine(0, c.actionPhase, rows));
    EXPECT_TRUE(rows.Empty());
    EXPECT_TRUE(parser.LastWasBoundary);
    EXPECT_EQ(parser.EndOfBlockAction, c.actionPhase);
    EXPECT_EQ(parser.EndOfBlockCondition, !c.actionPhase);
  }
}

TEST(ParseBatchLine, ReadsPastTheEndAsABlankLineAndMarksOnlyConditionsAsBoundaries) {
  BatchParser parser({"if 'a'", "      then remove 'a'"});
  BlockRows rows;
  EXPECT_TRUE(parser.ParseBatchLine(0, false, rows));
  EXPECT_TRUE(parser.LastWasBoundary);
  EXPECT_TRUE(parser.ParseBatchLine(1, false, rows));
  EXPECT_FALSE(parser.LastWasBoundary);
  EXPECT_FALSE(parser.ParseBatchLine(2, true, rows));
  EXPECT_TRUE(parser.EndOfBlockAction);
  // Rows gather in one block, in the order the lines came.
  EXPECT_EQ(rows.conditions, (Rows{{"if", "a", ""}}));
  EXPECT_EQ(rows.actions, (Rows{{"Remove", "a", ""}}));
}

TEST(KeywordPart, CutsAtMostAHundredCharactersAtAQuoteParenthesisOrComment) {
  const QString longIndex = QString(99, QLatin1Char('F'));
  const struct {
    QString line;
    QString part;
  } cases[] = {
      {"if 'a(b)'", "if "},
      {"      then insert (1)'x'", "      then insert "},
      {"if last line // why", "if last line "},
      // "(" and 99 digits are the hundred characters cut: what follows stays.
      {"XOR (" + longIndex + ") then delete line", "XOR ) then delete line"},
  };
  for (const auto& c : cases) EXPECT_EQ(KeywordPart(c.line), c.part) << c.line.toStdString();

  // So a long index lets the rest of the line be read as keywords too. Rows come in the order
  // of the keyword table; the index goes to the keyword that takes one.
  BatchParser parser({"XOR (" + longIndex + ") then delete line"});
  BlockRows rows;
  EXPECT_TRUE(parser.ParseBatchLine(0, false, rows));
  EXPECT_EQ(rows.actions, (Rows{{"Delete Line", "", ""}, {"XOR", "", longIndex}}));
}

TEST(NormaliseBatchLines, DropsLeadingActionsAndTheSecondOfTwoConditionLines) {
  const struct {
    QStringList in;
    QStringList out;
    QList<int> origins;
  } cases[] = {
      {{"      then delete line", "if 'a'", "      then x"}, {"if 'a'", "      then x"}, {1, 2}},
      {{"      then a", "      then b", "if 'x'"}, {"if 'x'"}, {2}},
      {{"if 'a'", "if 'b'", "while 'c'", "      then delete line"},
       {"if 'a'", "      then delete line"},
       {0, 3}},
      // "and" is no "if"; "shift" holds "if" only as letters; texts and comments do not count.
      {{"if 'a'", "and 'b'"}, {"if 'a'", "and 'b'"}, {0, 1}},
      {{"while 'a'", "      shift left (1)"}, {"while 'a'", "      shift left (1)"}, {0, 1}},
      {{"// then a comment", "if 'a'"}, {"// then a comment", "if 'a'"}, {0, 1}},
      {{"if 'a'", "      then insert (1)'if'"}, {"if 'a'", "      then insert (1)'if'"}, {0, 1}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in.join(" | ").toStdString());
    QList<int> origins;
    EXPECT_EQ(NormaliseBatchLines(c.in, &origins), c.out);
    EXPECT_EQ(origins, c.origins);
  }
}

TEST(ReadBatchFile, ReadsTheWholeFileAtEveryLineBreakAndNamesAMissingOne) {
  QTemporaryDir dir;
  const QString path = dir.filePath("a.SPP");
  ASSERT_TRUE(WriteFileAtomically(path, "if 'a'\r\n      then remove 'a'\n\rend\r\n"));
  const Result<QStringList> read = ReadBatchFile(path);
  ASSERT_TRUE(read);
  EXPECT_EQ(read.value(), (QStringList{"if 'a'", "      then remove 'a'", "", "end"}));

  const Result<QStringList> missing = ReadBatchFile(dir.filePath("none.SPP"));
  ASSERT_FALSE(missing);
  EXPECT_EQ(missing.error().path, dir.filePath("none.SPP"));
}

}  // namespace
}  // namespace vt::batch
