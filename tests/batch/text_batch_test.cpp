// SPDX-License-Identifier: MIT
#include "batch/text_batch.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/key_poll.h"
#include "print_qt.h"
#include "support/recording_messenger.h"
#include "util/atomic_write.h"

namespace vt::batch {
namespace {

/// One run over a small text, with a limit that ends blocks that never end.
struct BatchRun {
  explicit BatchRun(QStringList batch, QStringList text, HexDelimiters delimiters = {})
      : text(std::move(text)), hex(std::move(delimiters)) {
    options.batchName = "Batch Files/t.SPP";
    options.dateText = "14/03/2026 15:09:26";
    options.outputFolder = folder.path();
    options.endlessLimit = 50;
    result = RunTextBatch(batch, this->text, report, hex, messenger, escape, host, options);
  }
  /// The report without its three heading lines.
  QStringList Body() const { return report.mid(3); }

  QTemporaryDir folder;
  QStringList text;
  QStringList report;
  HexDelimiters hex;
  test::RecordingMessenger messenger;
  platform::NoKeyPoll escape;
  NoGraphicHost host;
  TextBatchOptions options;
  TextBatchResult result;
};

/// A batch whose first line is a comment, so that its first block is read once and the pass
/// after it starts on the block's second line.
QStringList Commented(QStringList lines) {
  lines.prepend("// test");
  return lines;
}

TEST(RunTextBatch, WritesTheReportHeadingAndLogsTheBatch) {
  BatchRun run({"if 'a'", "      then remove 'a'"}, {"abc"});
  EXPECT_EQ(run.report.mid(0, 3), (QStringList{"/* 14/03/2026 15:09:26 */",
                                               "/* Batch Files/t.SPP Batch Report      */", ""}));
  EXPECT_EQ(run.messenger.lines,
            (QStringList{"Run Postprocessor Batch", "if 'a'", "      then remove 'a'",
                         "Postprocessor Batch End Reached"}));
}

TEST(RunTextBatch, AFirstBlockParsedTwiceEndsTheRun) {
  // The first line stands twice among the conditions (and its "none" twice among the tasks):
  // tasks fall due at the end of the text, and the run ends after this first block.
  BatchRun run({"if 'const'", "      then insert (1)'static '", "", "if line number(2)",
                "      then delete line"},
               {"const int a;", "int b;", "const char c;"});
  EXPECT_EQ(run.text, (QStringList{"static const int a;", "int b;", "static const char c;"}));
  EXPECT_EQ(run.result.Occurences, 2);
  EXPECT_EQ(run.Body(), (QStringList{
                            "0: if 'const' = True   >> static ", "1: if 'const' = False ",
                            "2: if 'const' = True   >> static ",
                            "3: if 'const' = False ",  // the visit of the due tasks
                        }));
}

TEST(RunTextBatch, TheNextPassAfterABlankLineStartsOnTheBlocksSecondLine) {
  // Pass 1 reads "if 'const'" with its action. Pass 2 starts one line further, on the action,
  // which is read twice and joins the rows of the next block: on line 2 the action inserts
  // twice, then the line is deleted; the line that moves up is line 2 again.
  BatchRun run(Commented({"if 'const'", "      then insert (1)'static '", "", "if line number(2)",
                          "      then delete line"}),
               {"const int a;", "int b;", "const char c;"});
  EXPECT_EQ(run.text, (QStringList{"static const int a;"}));
  // 2 inserts in pass 1; in pass 2 twice two inserts and a deletion.
  EXPECT_EQ(run.result.Occurences, 8);
}

TEST(RunTextBatch, ACommentLineInsideABlockEndsIt) {
  // The block is the condition alone: its visit starts one line on, and the action below the
  // comment is never read.
  BatchRun ended(Commented({"if 'a'", "// note", "      then remove 'a'"}), {"abc"});
  EXPECT_EQ(ended.text, (QStringList{"abc"}));
  BatchRun whole(Commented({"if 'a'", "      then remove 'a'"}), {"abc"});
  EXPECT_EQ(whole.text, (QStringList{"bc"}));
  // The pass after it starts on the action line: a block without conditions, which has no
  // end test.
  EXPECT_TRUE(whole.result.endless.has_value());
}

/// A block of `conditions` with the action "then insert (1)'#'", over one line.
struct ConditionCase {
  QStringList conditions;
  QString line;
  QString result;
};

TEST(RunTextBatch, ConditionsDecideTheActions) {
  const ConditionCase cases[] = {
      {{"if 'b'"}, "abc", "#abc"},
      {{"if 'b'"}, "xyz", "xyz"},
      {{"if 'B'"}, "abc", "#abc"},  // case does not count by default
      {{"case sensitive on", "if 'B'"}, "abc", "abc"},
      {{"if not 'b'"}, "abc", "abc"},
      {{"if not 'b'"}, "xyz", "#xyz"},
      {{"if 'a'", "and 'c'"}, "abc", "#abc"},
      {{"if 'a'", "and 'z'"}, "abc", "abc"},
      {{"if 'z'", "or 'a'"}, "abc", "#abc"},
      {{"if 'z'", "or not 'q'"}, "abc", "#abc"},
      // "and not" after a false "if" makes the block true; its search is always case exact.
      {{"if 'z'", "and not 'q'"}, "abc", "#abc"},
      {{"if 'a'", "and not 'A'"}, "abc", "#abc"},
      {{"if 'a'", "and not 'a'"}, "abc", "abc"},
      {{"if unconditional"}, "abc", "#abc"},
      {{"if last line"}, "abc", "#abc"},
      {{"if line number(1)"}, "abc", "#abc"},
      {{"if line number(index)"}, "abc", "#abc"},
      {{"if line number(2)"}, "abc", "abc"},
      {{"if flag"}, "abc", "abc"},
      {{"if not flag"}, "abc", "#abc"},
      {{"if 'a'", "and flag"}, "abc", "abc"},
      {{"if 'a'", "and not flag"}, "abc", "#abc"},
      {{"if 'z'", "or not flag"}, "abc", "#abc"},
      {{"if 'z'", "or flag"}, "abc", "abc"},
      {{"if bit is set (0)"}, "0x01", "0x01"},  // no value was read
  };
  for (const ConditionCase& c : cases) {
    SCOPED_TRACE(c.conditions.join(" | ").toStdString() + " on " + c.line.toStdString());
    BatchRun run(c.conditions + QStringList{"      then insert (1)'#'"}, {c.line});
    EXPECT_EQ(run.text, (QStringList{c.result}));
  }
}

TEST(RunTextBatch, ABitTestWithoutAValueSaysSo) {
  BatchRun run(QStringList{"if bit is set (0)", "      then insert (1)'#'"}, {"0x01"});
  EXPECT_EQ(run.Body().first(), "0: bit is set0 '' GOT_No_Hex_Value = False ");
}

TEST(RunTextBatch, TheFlagOutlivesTheVisitThatSetIt) {
  BatchRun run(QStringList{"if flag", "or 'a'", "      then set flag", "      then insert (1)'#'"},
               {"x", "a", "y"});
  EXPECT_EQ(run.text, (QStringList{"x", "#a", "#y"}));
  // The flag is set again on the visit past the end, where the insertion finds no line.
  EXPECT_EQ(run.result.Occurences, 5);
}

TEST(RunTextBatch, WhileStaysOnTheLineAsLongAsItHolds) {
  BatchRun run(QStringList{"while 'a'", "      then remove 'a'"}, {"banana", "cat"});
  EXPECT_EQ(run.text, (QStringList{"bnn", "ct"}));
  EXPECT_EQ(run.result.Occurences, 4);
}

TEST(RunTextBatch, SearchFromTheEndFindsTheLastOccurrence) {
  BatchRun first(QStringList{"if 'an'", "      then overwrite (INDEX)'AN'"}, {"banana"});
  EXPECT_EQ(first.text, (QStringList{"bANana"}));
  BatchRun last(
      QStringList{"search back from line end", "if 'an'", "      then overwrite (INDEX)'AN'"},
      {"banana"});
  EXPECT_EQ(last.text, (QStringList{"banANa"}));
}

TEST(RunTextBatch, ThenSearchNotFoundStopsTheBlocksFurtherActions) {
  BatchRun missing(QStringList{"if 'a'", "      then search 'zzz'", "      then insert (1)'#'"},
                   {"a1", "b"});
  EXPECT_EQ(missing.text, (QStringList{"a1", "b"}));
  EXPECT_EQ(missing.Body().first(), "0: if 'a' = True     zzz >> not found 0");
  BatchRun found(QStringList{"if 'a'", "      then search 'b'", "      then insert (1)'#'"},
                 {"a1", "b"});
  EXPECT_EQ(found.text, (QStringList{"a1", "#b"}));
  EXPECT_EQ(found.Body().first(), "0: if 'a' = True     b >> found at line 1  >> #");
}

/// A batch over a few lines and what it leaves.
struct EditCase {
  QStringList batch;
  QStringList text;
  QStringList result;
};

TEST(RunTextBatch, ActionsEditTheLineTheyStandOn) {
  const EditCase cases[] = {
      {{"if unconditional", "      then remove 'b'"}, {"abcb"}, {"acb"}},
      {{"if unconditional", "      then remove 'B'"}, {"abcb"}, {"abcb"}},  // case exact
      // Padded with blanks to the index first.
      {{"if unconditional", "      then insert (3)'X'"}, {"v"}, {"v X "}},
      {{"if unconditional", "      then overwrite (2)'XY'"}, {"vbcd"}, {"vXYd"}},
      {{"if unconditional", "      then overwrite (6)'Z'"}, {"v"}, {"v    Z "}},
      // From the end of the match of "= " up to the ";" found after it.
      {{"if '= '", "      then delete until (3)';'"}, {"v = 5; // c"}, {"v = ; // c"}},
      {{"if 'v'", "      then get string (3)", "      then insert string (1)"},
       {"v = 7"},
       {"= 7v = 7"}},
      // "then insert integer" is "then insert": its text, empty, and no 9999.
      {{"if 'v'", "      then get integer (0)", "      then insert integer (2)"}, {"vab"}, {"vab"}},
      {{"if 'v'", "      then next line", "      then insert (1)'>'"}, {"v", "w"}, {"v", ">w"}},
  };
  for (const EditCase& c : cases) {
    SCOPED_TRACE(c.batch.join(" | ").toStdString());
    BatchRun run(c.batch, c.text);
    EXPECT_EQ(run.text, c.result);
  }
}

TEST(RunTextBatch, GetIntegerGives9999ForAnIndexPastTheNumbers) {
  BatchRun past(QStringList{"if 'n'", "      then get integer (5)"}, {"n 12 34"});
  EXPECT_EQ(past.Body().first(), "0: if 'n' = True  << 9999");
  EXPECT_EQ(past.result.Occurences, 2);  // one a number read
  BatchRun second(QStringList{"if 'n'", "      then get integer (1)"}, {"n 12 34"});
  EXPECT_EQ(second.Body().first(), "0: if 'n' = True  << 34");
  BatchRun tooLong(QStringList{"if 'n'", "      then get integer (0)"}, {"n 99999999999"});
  EXPECT_EQ(tooLong.Body().first(), "0: if 'n' = True  Not_found ");
}

TEST(RunTextBatch, GetFloatReadsRunsOfDigitsPointsAndSigns) {
  BatchRun run(QStringList{"if 'v'", "      then get float (1)", "      then insert float (1)"},
               {"v = 1,5; w = -2.25"});
  EXPECT_EQ(run.text.first(), "-2.25v = 1,5; w = -2.25");
  EXPECT_EQ(run.Body().first(), "0: if 'v' = True  << -2.25  >> -2.25");
}

TEST(GeneralFloatText, EightDigitsPlainOrWithAFourDigitExponent) {
  const struct {
    long double value;
    const char* text;
  } cases[] = {
      {0, "0"},
      {1.5, "1.5"},
      {-2.25, "-2.25"},
      {0.000012, "0.000012"},
      {1e-7, "1E-0007"},
      {123456789, "1.2345679E+0008"},
      {12345678, "12345678"},
      {1.0 / 3.0, "0.33333333"},
  };
  for (const auto& c : cases) EXPECT_EQ(GeneralFloatText(c.value), c.text);
}

TEST(RunTextBatch, DeletedLinesLetTheNextLineUpBeVisited) {
  BatchRun run({"if 'x'", "      then delete line"}, {"x1", "x2", "y"});
  EXPECT_EQ(run.text, (QStringList{"y"}));
  EXPECT_EQ(run.result.Occurences, 2);
}

TEST(RunTextBatch, InsertLineAndDeleteBetweenTwoMarks) {
  BatchRun inserted({"if 'b'", "      then insert line"}, {"a", "b"});
  EXPECT_EQ(inserted.text, (QStringList{"a", "", "b"}));
  BatchRun deleted({"if 'begin'", "or 'end'", "      then start delete", "      then stop delete"},
                   {"a", "begin", "b", "end", "c"});
  EXPECT_EQ(deleted.text, (QStringList{"a", "c"}));
}

TEST(RunTextBatch, AnEmptyTextIsVisitedOnceOnTheLinePastTheEnd) {
  BatchRun run({"if unconditional", "      then insert line"}, {});
  EXPECT_EQ(run.text, (QStringList{""}));
}

TEST(RunTextBatch, SavesTheTextAndLoadsAFileAboveTheLine) {
  BatchRun saved({"if 'a'", "      then save as 'out.txt'"}, {"a", "b"});
  QFile out(saved.folder.filePath("out.txt"));
  ASSERT_TRUE(out.open(QIODevice::ReadOnly));
  EXPECT_EQ(out.readAll(), "a\r\nb\r\n");
  EXPECT_TRUE(saved.result.FileWritten);

  QTemporaryDir folder;
  ASSERT_TRUE(WriteFileAtomically(folder.filePath("part.txt"), "p1\np2\n"));
  QStringList text{"a", "b"};
  QStringList report;
  HexDelimiters hex;
  test::RecordingMessenger messenger;
  platform::NoKeyPoll escape;
  NoGraphicHost host;
  TextBatchOptions options;
  options.outputFolder = folder.path();
  options.endlessLimit = 50;
  const TextBatchResult result = RunTextBatch({"if 'b'", "      then load and insert 'part.txt'"},
                                              text, report, hex, messenger, escape, host, options);
  EXPECT_EQ(text, (QStringList{"a", "p1", "p2", "b"}));
  EXPECT_TRUE(result.FileWritten);
  EXPECT_EQ(report.value(4), "1: if 'b' = True  << part.txt 2 lines");
}

const QStringList kHexTasks = {"set hex prefix as '0x'", "set hex suffix as ''"};

TEST(RunTextBatch, TasksSetTheHexStringsForTheRunAndAfterIt) {
  BatchRun run(Commented(kHexTasks + QStringList{"if hex in line", "      then get hex (0)"}),
               {"v = 0x1F;"});
  EXPECT_EQ(run.Body(),
            (QStringList{"Batch task : set hex prefix0x  >> 0x", "Batch task : set hex suffix  >> ",
                         "0: if hex in line ''  >> True = True  1F"}));
  EXPECT_EQ(run.hex.HexPrefix, "0x");
  EXPECT_EQ(run.hex.HexSuffix, "");
}

TEST(RunTextBatch, HexValuesAreReadPaddedAndCheckedForTheirWidth) {
  const struct {
    QString line;
    QString report;  // the end of the visit's report line
  } cases[] = {
      {"v = 0x5;", " 05"},                         // one digit gets a "0" before it
      {"v = 0x123456789;", " ERROR_32_bit_max "},  // nine digits: 36 bits
      {"v = 0x;", " No_Hex_Value"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line.toStdString());
    BatchRun run(QStringList{"if hex in line", "      then get hex (0)"}, {c.line}, {"0x", ""});
    EXPECT_TRUE(run.Body().first().endsWith(c.report)) << run.Body().first().toStdString();
  }
  // The nine digits stay in the value.
  BatchRun nine(
      QStringList{"if hex in line", "      then get hex (0)", "      then insert hex (1)"},
      {"v = 0x123456789;"}, {"0x", ""});
  EXPECT_EQ(nine.text.first(), "0x123456789v = 0x123456789;");
}

TEST(RunTextBatch, IfHexInLineNeedsAPrefixOrASuffixInTheirOrder) {
  const struct {
    HexDelimiters hex;
    QString line;
    QString report;
  } cases[] = {
      {{"", ""}, "0x12", "  >> Error : No hex Prefix AND No hex Suffix defined = False "},
      {{"0x", ""}, "a 0x12", "  >> True = True "},
      {{"0X", ""}, "a 0x12", "  >> True = True "},  // compared in upper case
      {{"0x", ","}, "0x12 ,", "  >> True = True "},
      {{"0x", ","}, ", 0x12", "  >> False = False "},  // the suffix stands first
      {{"", ","}, ", 0x12", "  >> True = True "},
      {{"0x", ""}, "a 12", "  >> False = False "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line.toStdString());
    BatchRun run(QStringList{"if hex in line", "      then set flag"}, {c.line}, c.hex);
    EXPECT_EQ(run.Body().first(), "0: if hex in line ''" + c.report);
  }
}

TEST(RunTextBatch, BitOperationsRewriteTheValue) {
  const struct {
    const char* operation;
    const char* result;
  } cases[] = {
      {"XOR (FF)", "0x7E"},
      {"XOR (10)", "0x8B"},  // a decimal-looking index is decimal: 10
      {"ORL (0F)", "0x8F"},
      {"ANDL (F0)", "0x80"},
      {"NOT", "0xFFFFFF7E"},  // complemented over 32 bits, cut to its first 8 characters
      {"shift right (1)", "0x40"},
      {"shift left (1)", "0x02"},
      {"rotate bits to right (1)", "0xC0"},
      {"rotate bits to left (1)", "0x03"},
      {"set bit (1)", "0x83"},
      {"clear bit (0)", "0x80"},
      {"toggle bit (7)", "0x01"},
      {"set bit (32)", "0x81"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.operation);
    BatchRun run(
        kHexTasks + QStringList{"if hex in line", "      then get hex (0)",
                                QStringLiteral("      ") + c.operation, "      then overwrite hex"},
        {"0x81"});
    EXPECT_EQ(run.text.first(), c.result);
  }
  BatchRun reported(
      kHexTasks + QStringList{"if hex in line", "      then get hex (0)", "      XOR (FF)"},
      {"0x81"});
  EXPECT_EQ(reported.Body().last(),
            "0: if hex in line ''  >> True = True  81  >> 10000001 >> "
            "01111110 0x7E");
  BatchRun tooHigh(
      kHexTasks + QStringList{"if hex in line", "      then get hex (0)", "      set bit (32)"},
      {"0x81"});
  EXPECT_TRUE(tooHigh.Body().last().endsWith(" Bit Number > 31"));
}

TEST(RunTextBatch, WhileHexInLineWalksEveryValueOfTheLine) {
  BatchRun run(Commented(kHexTasks + QStringList{"while hex in line", "      XOR (FF)",
                                                 "      then overwrite hex"}),
               {" 0xFF , 0x80 , 0x01", "};"});
  EXPECT_EQ(run.text, (QStringList{" 0x00 , 0x7F , 0xFE", "};"}));
  EXPECT_EQ(run.result.Occurences, 6);
}

TEST(RunTextBatch, AOneDigitValueIsWrittenBackWithTwo) {
  BatchRun run(kHexTasks + QStringList{"if hex in line", "      then get hex (0)", "      XOR (FF)",
                                       "      then overwrite hex"},
               {"x 0x5 y"});
  EXPECT_EQ(run.text.first(), "x 0xFAy");
}

TEST(RunTextBatch, ASuffixAloneFindsTheValuesItCloses) {
  BatchRun run(QStringList{"set hex suffix as 'h'", "set hex prefix as ''", "while hex in line",
                           "      XOR (FF)", "      then overwrite hex"},
               {"db 0FFh, 80h ; x"});
  // "DB" is read and passed over: no suffix closes it. "0FF" keeps its three digits.
  EXPECT_EQ(run.text.first(), "db 000h, 7Fh ; x");
}

TEST(RunTextBatch, ABlockWhoseLastRowIsNoLineConditionNeverEnds) {
  const struct {
    QStringList batch;
    int line;
  } cases[] = {
      {Commented({"      then insert (1)'x'"}), 2},
      {Commented({"if 'a'", "case sensitive on", "      then remove 'a'"}), 2},
  };
  for (const auto& c : cases) {
    BatchRun run(c.batch, {"abc"});
    ASSERT_TRUE(run.result.endless.has_value());
    EXPECT_EQ(run.result.endless->line, c.line);
    EXPECT_EQ(run.result.endless->text, c.batch[c.line - 1]);
  }
}

/// Reports Escape at its `at`-th poll.
class EscapeAt final : public platform::KeyPoll {
 public:
  explicit EscapeAt(int at) : at_(at) {}
  bool EscapePressed() override { return ++polls_ == at_; }

 private:
  int at_;
  int polls_ = 0;
};

TEST(RunTextBatch, EscapeEndsTheRunWithWhatItDidSoFar) {
  QStringList text{"a", "a", "a", "a"};
  QStringList report;
  HexDelimiters hex;
  test::RecordingMessenger messenger;
  EscapeAt escape(3);
  NoGraphicHost host;
  QList<int> progress;
  const TextBatchResult result = RunTextBatch(
      Commented({"      then insert (1)'x'", "if 'a'", "      then remove 'a'"}), text, report, hex,
      messenger, escape, host, {}, [&progress](int value, int) { progress << value; });
  EXPECT_TRUE(result.aborted);
  EXPECT_EQ(report.last(), "Processing Aborted by escape !");
  EXPECT_EQ(progress, (QList<int>{0, 1, 2}));
}

}  // namespace
}  // namespace vt::batch
