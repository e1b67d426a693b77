// SPDX-License-Identifier: MIT
#include "app/log.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/temp_folders.h"

namespace vt::app {
namespace {

struct FoldCase {
  const char* name;
  QStringList calls;
  QStringList expected;
};

void PrintTo(const FoldCase& c, std::ostream* os) { *os << c.name; }

class LogFolding : public testing::TestWithParam<FoldCase> {};

TEST_P(LogFolding, RepeatedTextsFoldIntoTheLastLine) {
  Log log;
  for (const QString& text : GetParam().calls) log.StatusBarAndLog(text);
  EXPECT_EQ(log.Lines(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Sequences, LogFolding,
    testing::Values(
        FoldCase{"OneText", {"Canvas redraw"}, {"Canvas redraw"}},
        FoldCase{
            "TwiceCountsOneRepeat", {"Canvas redraw", "Canvas redraw"}, {"Canvas redraw  x 1"}},
        FoldCase{"ThreeTimesCountsTwoRepeats",
                 {"Canvas redraw", "Canvas redraw", "Canvas redraw"},
                 {"Canvas redraw  x 2"}},
        FoldCase{"RepeatAfterAnotherTextStartsAnew", {"A", "B", "A"}, {"A", "B", "A"}},
        FoldCase{"CountRestartsAfterAnotherText",
                 {"A", "A", "A", "B", "A", "A"},
                 {"A  x 2", "B", "A  x 1"}},
        FoldCase{"EachRunFoldsOnItsOwn", {"A", "A", "B", "B", "B"}, {"A  x 1", "B  x 2"}},
        FoldCase{"EmptyTextChangesNothing", {"A", "", ""}, {"A"}},
        FoldCase{"EmptyTextDoesNotBreakARun", {"A", "", "A"}, {"A  x 1"}},
        FoldCase{"OnlyEmptyTexts", {"", ""}, {}}),
    [](const testing::TestParamInfo<FoldCase>& info) { return std::string(info.param.name); });

TEST(Log, TextEqualToAnAppendedLastLineFoldsIt) {
  Log log;
  log.Append("Processing Done !");
  log.StatusBarAndLog("Processing Done !");
  EXPECT_EQ(log.Lines(), QStringList{"Processing Done !  x 1"});
}

TEST(Log, StatusTextFollowsEveryCallIncludingEmptyOnes) {
  Log log;
  log.StatusBarAndLog("Load Folders");
  EXPECT_EQ(log.StatusText(), "Load Folders");
  log.StatusBarAndLog("Load Folders");
  EXPECT_EQ(log.StatusText(), "Load Folders");
  log.StatusBarAndLog("");
  EXPECT_EQ(log.StatusText(), "");
  EXPECT_EQ(log.Lines(), QStringList{"Load Folders  x 1"});
}

TEST(Log, LogErrorAppendsTheTextAndTheFormAndControlLine) {
  Log log;
  log.StatusBarAndLog("Export Work Canvas to Data");
  log.LastForm = "TImageForm";
  log.LastControl = "PaintBox";
  log.LogError(">> EConvertError(TImageForm[PaintBox])");
  EXPECT_EQ(log.Lines(),
            (QStringList{"Export Work Canvas to Data", ">> EConvertError(TImageForm[PaintBox])",
                         "TImageForm[PaintBox])"}));
}

TEST(Log, ClearEmptiesTheLinesAndForgetsTheRun) {
  Log log;
  log.StatusBarAndLog("A");
  log.StatusBarAndLog("A");
  log.Clear();
  log.StatusBarAndLog("A");
  EXPECT_EQ(log.Lines(), QStringList{"A"});
}

TEST(Log, HandledExceptNamesCountsAndTagsWithoutLogging) {
  Log log;
  const QStringList names = {"Update MRU 3 Error", "Load Folders"};
  for (const QString& name : names) log.HandledExcept(name);
  EXPECT_EQ(log.LastErrorText, "Load Folders");
  EXPECT_EQ(log.ExceptionNumber, 2);
  EXPECT_EQ(log.ReportTags, (QStringList{"Handled_Except", "Handled_Except"}));
  EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(Log, SaveLogWritesOneLinePerLogLine) {
  QTemporaryDir dir;
  Log log;
  for (const char* text : {"Main Form Create", "Canvas redraw", "Canvas redraw", "Quit Vantorelle"})
    log.StatusBarAndLog(text);
  const QString path = QDir(dir.path()).filePath("L.LOG");
  ASSERT_TRUE(log.SaveLog(path));
  EXPECT_EQ(test::ReadAll(path), "Main Form Create\nCanvas redraw  x 1\nQuit Vantorelle\n");
}

TEST(Log, SaveLogReplacesAnOlderFile) {
  QTemporaryDir dir;
  const QString path = QDir(dir.path()).filePath("L.LOG");
  Log first;
  first.StatusBarAndLog("first run with a longer line");
  ASSERT_TRUE(first.SaveLog(path));
  Log second;
  second.StatusBarAndLog("second");
  ASSERT_TRUE(second.SaveLog(path));
  EXPECT_EQ(test::ReadAll(path), "second\n");
}

TEST(Log, SaveLogFailsWithoutCreatingAMissingFolder) {
  QTemporaryDir dir;
  const QString folder = QDir(dir.path()).filePath("Vantorelle V01a");
  Log log;
  log.StatusBarAndLog("Quit Vantorelle");
  EXPECT_FALSE(log.SaveLog(QDir(folder).filePath("L.LOG")));
  EXPECT_FALSE(QDir(folder).exists());
}

TEST(Log, ReportFileNameCarriesDateAndTime) {
  const QDateTime at(QDate(2026, 3, 4), QTime(5, 9, 7));
  EXPECT_EQ(Log::ReportFileName(at), "Report 04.03.26 05.09.07.txt");
}

TEST(Log, WriteReportWritesTheReportLinesIntoTheFolder) {
  QTemporaryDir dir;
  Log log;
  log.Report << ">> Message Dialog :"
             << "Processing File not found !"
             << "";
  const QDateTime at(QDate(2026, 3, 14), QTime(15, 9, 26));
  ASSERT_TRUE(log.WriteReport(dir.path(), at));
  EXPECT_EQ(test::ReadAll(QDir(dir.path()).filePath("Report 14.03.26 15.09.26.txt")),
            ">> Message Dialog :\nProcessing File not found !\n\n");
}

TEST(Log, WriteReportFailsWithoutAFolder) {
  QTemporaryDir dir;
  Log log;
  log.Report << "line";
  const QDateTime at(QDate(2026, 3, 14), QTime(15, 9, 26));
  for (const QString& folder : {QString(), QDir(dir.path()).filePath("missing")}) {
    EXPECT_FALSE(log.WriteReport(folder, at)) << folder.toStdString();
  }
}

}  // namespace
}  // namespace vt::app
