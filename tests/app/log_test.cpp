// SPDX-License-Identifier: MIT
#include "app/log.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "support/temp_folders.h"

namespace vt::app {
namespace {

TEST(Log, RepeatedTextsFoldIntoTheLastLine) {
  const std::pair<QStringList, QStringList> table[] = {
      {{"Canvas redraw"}, {"Canvas redraw"}},
      {{"Canvas redraw", "Canvas redraw"}, {"Canvas redraw  x 1"}},
      {{"Canvas redraw", "Canvas redraw", "Canvas redraw"}, {"Canvas redraw  x 2"}},
      {{"A", "B", "A"}, {"A", "B", "A"}},
      {{"A", "A", "A", "B", "A", "A"}, {"A  x 2", "B", "A  x 1"}},
      {{"A", "A", "B", "B", "B"}, {"A  x 1", "B  x 2"}},
      {{"A", "", ""}, {"A"}},
      {{"A", "", "A"}, {"A  x 1"}},  // an empty text does not break a run
      {{"", ""}, {}}};
  for (const auto& [calls, expected] : table) {
    Log log;
    for (const QString& text : calls) log.StatusBarAndLog(text);
    EXPECT_EQ(log.Lines(), expected) << calls.join('|').toStdString();
    EXPECT_EQ(log.StatusText(), calls.last()) << "the status follows every call";
  }
  // A text equal to an appended last line folds it too; Clear forgets the run.
  Log log;
  log.Append("Processing Done !");
  log.StatusBarAndLog("Processing Done !");
  EXPECT_EQ(log.Lines(), QStringList{"Processing Done !  x 1"});
  log.Clear();
  log.StatusBarAndLog("Processing Done !");
  EXPECT_EQ(log.Lines(), QStringList{"Processing Done !"});
}

TEST(Log, LogErrorAndHandledExcept) {
  Log log;
  log.StatusBarAndLog("Export Work Canvas to Data");
  log.LastForm = "TImageForm";
  log.LastControl = "PaintBox";
  log.LogError(">> EConvertError(TImageForm[PaintBox])");
  const QStringList lines = {"Export Work Canvas to Data", ">> EConvertError(TImageForm[PaintBox])",
                             "TImageForm[PaintBox])"};
  EXPECT_EQ(log.Lines(), lines);
  // The handled convention names, counts and tags without logging.
  log.HandledExcept("Update MRU 3 Error");
  log.HandledExcept("Load Folders");
  EXPECT_EQ(log.LastErrorText, "Load Folders");
  EXPECT_EQ(log.ExceptionNumber, 2);
  EXPECT_EQ(log.ReportTags, (QStringList{"Handled_Except", "Handled_Except"}));
  EXPECT_EQ(log.Lines(), lines);
}

TEST(Log, SaveLogWritesOneLinePerLogLineIntoAnExistingFolderOnly) {
  QTemporaryDir dir;
  const QString path = QDir(dir.path()).filePath("L.LOG");
  Log first;
  first.StatusBarAndLog("first run with a longer line");
  ASSERT_TRUE(first.SaveLog(path));
  Log log;
  for (const char* text : {"Main Form Create", "Canvas redraw", "Canvas redraw", "Quit Vantorelle"})
    log.StatusBarAndLog(text);
  ASSERT_TRUE(log.SaveLog(path));
  EXPECT_EQ(test::ReadAll(path), "Main Form Create\nCanvas redraw  x 1\nQuit Vantorelle\n");

  const QString missing = QDir(dir.path()).filePath("Vantorelle V01a");
  EXPECT_FALSE(log.SaveLog(QDir(missing).filePath("L.LOG")));
  EXPECT_FALSE(QDir(missing).exists());
}

TEST(Log, WriteReportNamesTheFileByDateAndTime) {
  EXPECT_EQ(Log::ReportFileName(QDateTime(QDate(2026, 3, 4), QTime(5, 9, 7))),
            "Report 04.03.26 05.09.07.txt");
  QTemporaryDir dir;
  Log log;
  log.Report << ">> Message Dialog :"
             << "Processing File not found !"
             << "";
  const QDateTime at(QDate(2026, 3, 14), QTime(15, 9, 26));
  ASSERT_TRUE(log.WriteReport(dir.path(), at));
  EXPECT_EQ(test::ReadAll(QDir(dir.path()).filePath("Report 14.03.26 15.09.26.txt")),
            ">> Message Dialog :\nProcessing File not found !\n\n");
  for (const QString& folder : {QString(), QDir(dir.path()).filePath("missing")}) {
    EXPECT_FALSE(log.WriteReport(folder, at)) << folder.toStdString();
  }
}

}  // namespace
}  // namespace vt::app
