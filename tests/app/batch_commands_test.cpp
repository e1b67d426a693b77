// SPDX-License-Identifier: MIT
#include "app/batch_commands.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "app/configuration.h"
#include "app/state.h"
#include "batch/sample_batches.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

const QByteArray kInvert =
    "// test\r\nset hex prefix as '0x'\r\nset hex suffix as ''\r\nwhile hex in line\r\n"
    "      XOR (FF)\r\n      then overwrite hex\r\n";

class BatchCommands : public ::testing::Test {
 protected:
  BatchCommands() {
    state.settings.folder.bfpa = t.folders.Path("batches");
    state.settings.folder.OFP = t.folders.Path("out");
    QDir().mkpath(state.settings.folder.bfpa);
    QDir().mkpath(state.settings.folder.OFP);
  }
  void WriteBatch(const QString& name, const QByteArray& text) {
    ASSERT_TRUE(WriteFileAtomically(state.settings.folder.bfpa + "/" + name, text));
  }
  void SetText(const QStringList& lines) {
    state.text.Clear();
    for (const QString& line : lines) state.text.AddLine(line);
  }

  vt::test::TestServices t;
  AppState state;
};

TEST_F(BatchCommands, EachCallerTakesItsBatchAndAConversionFallsBackOnTheActiveOne) {
  WriteBatch("mine.SPP", kInvert);
  state.settings.post.pprof = "mine.SPP";
  state.settings.post.ppfpf = "font.SPP";
  const QString folder = state.settings.folder.bfpa + "/";
  EXPECT_EQ(BatchFileFor(state, BatchCaller::Button), folder + "mine.SPP");
  EXPECT_EQ(BatchFileFor(state, BatchCaller::FontConversion), folder + "font.SPP");
  // The default "ConvertMultipleGraphicFiles.SPP" is missing: the active batch takes its place,
  // in the settings too.
  EXPECT_EQ(BatchFileFor(state, BatchCaller::Conversion), folder + "mine.SPP");
  EXPECT_EQ(state.settings.post.prpopr, "mine.SPP");
}

TEST_F(BatchCommands, ARunWithoutItsBatchTellsWhyAndDoesNothing) {
  const struct {
    QString pprof;
    BatchCaller caller;
    QString caption;
    QString text;
  } cases[] = {
      {"< No batch file selected >", BatchCaller::Button, "No Processing batch Active!",
       " No Processing Batch has been selected !"},
      {"", BatchCaller::Button, "No Processing batch Active!",
       " No Processing Batch has been selected !"},
      {"< No batch file selected >", BatchCaller::Conversion, "Post-Processing",
       " There is no post-processing batch file defined !  \r Active batch = < No batch file "
       "selected >"},
      {"gone.SPP", BatchCaller::Button, "SPP file not found !",
       " No Processing Batch File has been activated\ror Batch File not longer exists !\r" +
           state.settings.folder.bfpa + "/gone.SPP"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.toStdString());
    t.dialogs.shown.clear();
    state.settings.post.pprof = c.pprof;
    SetText({" 0x01"});
    const BatchRunOutcome outcome = RunTextBatch(state, t.services, c.caller);
    EXPECT_FALSE(outcome.ran);
    ASSERT_EQ(t.dialogs.shown.size(), 1);
    EXPECT_EQ(t.dialogs.shown[0].caption, c.caption);
    EXPECT_EQ(t.dialogs.shown[0].text, c.text);
    EXPECT_EQ(state.text.Lines(), QStringList{" 0x01"});
  }
}

TEST_F(BatchCommands, TheButtonRunsTheActiveBatchAndOffersTheReport) {
  WriteBatch("inv.SPP", kInvert);
  state.settings.post.pprof = "inv.SPP";
  SetText({"const x [] = {", " 0x01 , 0x80", "};"});
  t.dialogs.Answer(platform::Answer::No);  // the second caption, "View Report"
  const BatchRunOutcome outcome = ApplyPostProButtonClick(state, t.services);
  EXPECT_TRUE(outcome.ran);
  EXPECT_EQ(state.text.Lines(), (QStringList{"const x [] = {", " 0xFE , 0x7F", "};"}));
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].text,
            " Source file Processing done !\r 4 successful occurences found");
  EXPECT_EQ(t.dialogs.shown[0].customCaptions, (QStringList{"Ok", "View Report", "Cancel"}));
  EXPECT_TRUE(state.batch.showReport);
  EXPECT_EQ(state.batch.report.value(1),
            "/* " + state.settings.folder.bfpa + "/inv.SPP Batch Report      */");
  // The strings around a value stay for the next run.
  EXPECT_EQ(state.batch.hex.HexPrefix, "0x");
}

TEST_F(BatchCommands, AFolderRunTellsWhatItFoundOrWhyItCouldNotStart) {
  WriteBatch("inv.SPP", kInvert);
  const QString batch = state.settings.folder.bfpa + "/inv.SPP";
  const FolderRunOutcome missing =
      RunBatchOnFolder(state, t.services, batch, t.folders.Path("nowhere"), ".h");
  EXPECT_FALSE(missing.ran);
  EXPECT_EQ(t.dialogs.shown.value(0).caption, "Processing Folder Error!");

  QDir().mkpath(t.folders.Path("empty"));
  const FolderRunOutcome empty =
      RunBatchOnFolder(state, t.services, batch, t.folders.Path("empty"), ".h");
  EXPECT_TRUE(empty.ran);
  EXPECT_TRUE(empty.files.isEmpty());
  EXPECT_EQ(state.batch.report,
            (QStringList{"Processing batch :" + batch, "No matching files found !"}));
}

/// Reports Escape once a file exists: the user presses it when the first result shows.
class EscapeOnceWritten final : public platform::KeyPoll {
 public:
  explicit EscapeOnceWritten(QString path) : path_(std::move(path)) {}
  bool EscapePressed() override { return QFile::exists(path_); }

 private:
  QString path_;
};

TEST_F(BatchCommands, EscapeBetweenFilesEndsAFolderRunWithTheFilesDone) {
  WriteBatch("inv.SPP", kInvert);
  const QString folder = t.folders.Path("src");
  QDir().mkpath(folder);
  ASSERT_TRUE(WriteFileAtomically(folder + "/a.h", " 0x01\r\n"));
  ASSERT_TRUE(WriteFileAtomically(folder + "/b.h", " 0x02\r\n"));
  EscapeOnceWritten escape(folder + "/_Processed/a.h");
  Services services{t.dialogs, t.folders, t.fileUse, escape, t.clock, t.filePicker, t.textPrompt};
  const FolderRunOutcome outcome =
      RunBatchOnFolder(state, services, state.settings.folder.bfpa + "/inv.SPP", folder, ".h");
  EXPECT_TRUE(outcome.aborted);
  ASSERT_EQ(outcome.files.size(), 1);
  EXPECT_EQ(vt::test::ReadAll(folder + "/_Processed/a.h"), " 0xFE\r\n");
  EXPECT_FALSE(QFile::exists(folder + "/_Processed/b.h"));
  EXPECT_FALSE(state.batch.BatchSilent);
}

TEST_F(BatchCommands, AnEndlessBlockLeavesTheTextAsItWasAndNamesItsLine) {
  WriteBatch("loop.SPP", "// x\r\nif 'a'\r\ncase sensitive on\r\n      then remove 'a'\r\n");
  state.settings.post.pprof = "loop.SPP";
  SetText({"abc"});
  const BatchRunOutcome outcome = RunTextBatch(state, t.services, BatchCaller::Button);
  EXPECT_FALSE(outcome.ran);
  ASSERT_TRUE(outcome.error.has_value());
  EXPECT_EQ(outcome.error->line, 2);
  EXPECT_EQ(state.text.Lines(), QStringList{"abc"});
}

TEST_F(BatchCommands, TheSamplesWrittenAtFirstRunDoWhatTheySay) {
  vt::test::TestServices fresh;
  AppState first;
  LoadFolders(first, fresh.services);
  ASSERT_TRUE(first.files.FirstRun);
  const QString folder = FirstRunFolders(fresh.folders).bfpa;
  const struct {
    QString name;
    QStringList text;
    QStringList result;
  } cases[] = {
      {"InvertHexBytes.SPP",
       {"a [] = {", " 0xFF , 0x80 , 0x0F"},
       {"a [] = {", " 0x00 , 0x7F , 0xF0"}},
      {"AddStaticToConst.SPP", {"const int a;", "int b;"}, {"static const int a;", "int b;"}},
      {"RemoveProgmem.SPP",
       {"const uint8_t  logo [] PROGMEM = {", "};"},
       {"const uint8_t  logo [] = {", "};"}},
  };
  ASSERT_EQ(batch::SampleBatches().size(), std::size(cases));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name.toStdString());
    ASSERT_TRUE(QFile::exists(folder + "/" + c.name));
    SetText(c.text);
    const BatchRunOutcome outcome =
        RunTextBatch(state, t.services, BatchCaller::Button, folder + "/" + c.name);
    EXPECT_TRUE(outcome.ran);
    EXPECT_EQ(state.text.Lines(), c.result);
  }
}

TEST(ReadTextFile, RefusesWhatItCannotTakeBackUnchanged) {
  QTemporaryDir dir;
  ASSERT_TRUE(WriteFileAtomically(dir.filePath("ok.h"), "a\r\nb\n"));
  ASSERT_TRUE(WriteFileAtomically(dir.filePath("latin.h"), "caf\xE9\r\n"));
  ASSERT_TRUE(QFile::link("missing.h", dir.filePath("gone.h")));
  EXPECT_EQ(ReadTextFile(dir.filePath("ok.h")).value(), (QStringList{"a", "b"}));
  const struct {
    const char* name;
    const char* message;
  } refused[] = {
      {"latin.h", "not UTF-8 text; left as it is"},
      {"gone.h", "a link to a file that does not exist"},
      {"none.h", "no such file"},
  };
  for (const auto& r : refused) {
    const Result<QStringList> read = ReadTextFile(dir.filePath(r.name));
    ASSERT_FALSE(read) << r.name;
    EXPECT_EQ(read.error().message, r.message);
  }
}

}  // namespace
}  // namespace vt::app
