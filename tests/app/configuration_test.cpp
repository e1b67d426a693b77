// SPDX-License-Identifier: MIT
#include "app/configuration.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/startup.h"
#include "settings/ini_document.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

class Configuration : public ::testing::Test {
 protected:
  QString InitFile() const { return InitFolderPath(t.folders) + kInitFileName; }
  QString DefaultLcd() const { return InitFolderPath(t.folders) + kDefaultSettingsName; }
  void Write(const QString& path, const QByteArray& bytes) {
    ASSERT_TRUE(WriteFileAtomically(path, bytes).ok());
  }
  std::optional<QString> KeyInFile(const QString& path, const char* section, const char* key) {
    return settings::IniDocument::Parse(test::ReadAll(path))
        .value()
        .Value(QString::fromLatin1(section), QString::fromLatin1(key));
  }

  test::TestServices t;
  AppState state;
};

TEST_F(Configuration, FirstRunCreatesTheInitFileTheFoldersTheDefaultProjectAndCopiesSamples) {
  for (const char* sample : {"Convert.SPP", "Panel.TSC", "wallpaper.jpg"}) {
    Write(t.folders.ProgramData() + "/" + sample, sample);
  }
  StartUp(state, t.services);
  EXPECT_TRUE(state.files.FirstRun);
  EXPECT_EQ(state.files.SettingsFile, DefaultLcd());
  EXPECT_EQ(test::ReadAll(InitFile()), (DefaultLcd() + "\r\n").toUtf8());
  const QString root = t.folders.Documents() + "/Vantorelle Project/";
  for (const char* sub : {"Output Files", "Fonts", "Touch Panel", "Documents", "Batch Files"}) {
    EXPECT_TRUE(QFileInfo(root + QString::fromLatin1(sub)).isDir()) << sub;
  }
  ASSERT_TRUE(QFileInfo::exists(DefaultLcd()));
  EXPECT_EQ(KeyInFile(DefaultLcd(), "S", "OFP"), root + "Output Files");
  EXPECT_EQ(KeyInFile(DefaultLcd(), "S", "BFP"), t.folders.Pictures());
  EXPECT_EQ(state.settings.folder.bfpa, root + "Batch Files");
  EXPECT_EQ(QSize(state.canvas.Width(), state.canvas.Height()), QSize(128, 64));
  EXPECT_EQ(test::ReadAll(state.settings.folder.bfpa + "/Convert.SPP"), "Convert.SPP");
  EXPECT_EQ(test::ReadAll(state.settings.folder.tfp1 + "/Panel.TSC"), "Panel.TSC");
  EXPECT_EQ(test::ReadAll(InitFolderPath(t.folders) + "wallpaper.jpg"), "wallpaper.jpg");
  // The header templates stand beside the new settings file.
  const QString base = InitFolderPath(t.folders) + "default";
  for (const char* suffix : {".txt", "_Raw.txt", "_Struct.txt", "_DMD.txt", "_Bloc.txt"}) {
    EXPECT_TRUE(QFileInfo::exists(base + QString::fromLatin1(suffix))) << suffix;
  }
  EXPECT_TRUE(test::ReadAll(base + ".txt").contains("[&NAME]"));
}

TEST_F(Configuration, LaterRunsOpenTheProjectTheInitFileNames) {
  const QString project = t.folders.Path("Work/panel.LCD");
  Write(project, "[B2]\r\nGWI=240\r\nGHI=160\r\n");
  Write(InitFile(), (project + "\r\n").toUtf8());
  StartUp(state, t.services);
  EXPECT_FALSE(state.files.FirstRun);
  EXPECT_EQ(state.files.SettingsFile, project);
  EXPECT_EQ(state.settings.display.GWI, 240);
  EXPECT_EQ(QSize(state.canvas.Width(), state.canvas.Height()), QSize(240, 160));
}

TEST_F(Configuration, AnUnusableInitLineFallsBackToTheDefaultProject) {
  for (const QString& line :
       QStringList{t.folders.Path("gone/deleted.LCD"), "C:\\", QString(), "relative.LCD"}) {
    AppState fresh;
    Write(InitFile(), (line + "\r\n").toUtf8());
    LoadFolders(fresh, t.services);
    EXPECT_EQ(fresh.files.SettingsFile, DefaultLcd()) << line.toStdString();
    EXPECT_TRUE(fresh.files.StartFromDefaults) << line.toStdString();
  }
}

TEST_F(Configuration, AnInitFileHeldByAnotherProgramLeavesTheDefaults) {
  Write(InitFile(), "/somewhere/x.LCD\r\n");
  t.fileUse.busy.insert(InitFile());
  LoadFolders(state, t.services);
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].text, " Init file is opened by another application ! ");
  EXPECT_EQ(t.dialogs.shown[0].caption, "Error");
  EXPECT_EQ(state.files.SettingsFile, DefaultLcd());
  EXPECT_FALSE(SaveFolders(state, t.services));
  EXPECT_EQ(t.dialogs.shown.last().text,
            " Init file is opened by another application or was deleted ! ");
}

TEST_F(Configuration, AHeldSettingsFileIsRefusedAndTheRecordsStay) {
  const QString project = t.folders.Path("p.LCD");
  Write(project, "[B2]\r\nGWI=96\r\n");
  state.files.SettingsFile = project;
  state.settings.display.GWI = 200;
  t.fileUse.busy.insert(project);
  EXPECT_FALSE(LoadConfigurationX(state, t.services));
  EXPECT_EQ(state.settings.display.GWI, 200);
  EXPECT_FALSE(SaveConfigurationX(state, t.services));
  EXPECT_EQ(t.dialogs.Texts(),
            QStringList(2, " Settings file is opened by another application ! "));
  EXPECT_EQ(test::ReadAll(project), "[B2]\r\nGWI=96\r\n");
}

TEST_F(Configuration, AnEmptyOrMissingFileLoadsTheFactorySettings) {
  const QString empty = t.folders.Path("empty.LCD");
  Write(empty, "");
  for (const QString& path : {empty, t.folders.Path("missing.LCD")}) {
    AppState fresh;
    fresh.settings.display.GWI = 7;
    fresh.files.SettingsFile = path;
    ASSERT_TRUE(LoadConfigurationX(fresh, t.services)) << path.toStdString();
    EXPECT_EQ(fresh.settings.display.GWI, 128);
    EXPECT_TRUE(fresh.settings.scan.tr);
  }
  // The missing one was written with every key.
  EXPECT_EQ(KeyInFile(t.folders.Path("missing.LCD"), "S18", "mru19"), "_");
}

TEST_F(Configuration, AReadOnlySettingsFileIsMadeWritableAndSaved) {
  const QString path = t.folders.Path("ro.LCD");
  Write(path, "[B2]\r\nGWI=96\r\n");
  QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadUser);
  state.files.SettingsFile = path;
  ASSERT_TRUE(LoadConfigurationX(state, t.services));
  EXPECT_TRUE(QFileInfo(path).isWritable());
  state.settings.display.GWI = 112;
  ASSERT_TRUE(SaveConfigurationX(state, t.services));
  EXPECT_EQ(KeyInFile(path, "B2", "GWI"), "112");
}

TEST_F(Configuration, ACorruptSettingsFileIsReportedWithItsPlaceAndLeftAlone) {
  const QString path = t.folders.Path("bad.LCD");
  const QByteArray corrupt("[B2]\r\nGWI=9\0\0\r\n", 14);
  Write(path, corrupt);
  state.files.SettingsFile = path;
  EXPECT_FALSE(LoadConfigurationX(state, t.services));
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].text, path + ":2:6: NUL byte in a settings file");
  EXPECT_EQ(state.settings.display.GWI, 128);
  EXPECT_EQ(state.log.ExceptionNumber, 1);
  // No save replaces the file it could not read by factory settings.
  state.settings.display.GWI = 64;
  EXPECT_FALSE(SaveConfigurationX(state, t.services));
  EXPECT_EQ(t.dialogs.shown.last().text, path + ": could not be read, so it is not saved over");
  EXPECT_EQ(test::ReadAll(path), corrupt);
}

TEST_F(Configuration, ASettingsPathThatIsNoFileIsRefusedAndLeftAlone) {
  const QString fifo = t.folders.Path("pipe.LCD");
  ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
  for (const QString& path : {fifo, t.folders.Path(QString())}) {
    state.files.SettingsFile = path;
    EXPECT_FALSE(LoadConfigurationX(state, t.services));  // and does not wait on the pipe
    EXPECT_FALSE(SaveConfigurationX(state, t.services));
  }
  EXPECT_EQ(t.dialogs.Texts().first(), fifo + ": is not a regular file");
  struct stat status {};
  ASSERT_EQ(::stat(QFile::encodeName(fifo).constData(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(Configuration, SavingKeepsForeignKeysAndFailsWithoutTouchingTheFile) {
  const QString path = t.folders.Path("keep.LCD");
  Write(path, "[Mine]\r\nnote=hello\r\n[B2]\r\nGWI=96\r\n");
  state.files.SettingsFile = path;
  ASSERT_TRUE(LoadConfigurationX(state, t.services));
  ASSERT_TRUE(SaveConfigurationX(state, t.services));
  EXPECT_EQ(KeyInFile(path, "Mine", "note"), "hello");
  EXPECT_TRUE(test::ReadAll(path).startsWith("[Mine]\r\nnote=hello\r\n[B2]\r\nGWI=96\r\n"));

  // A settings file that cannot be written (its folder is a plain file): the failure is
  // logged as handled and the records stay in memory.
  const QString blocker = t.folders.Path("blocker");
  Write(blocker, "not a folder");
  state.files.SettingsFile = blocker + "/p.LCD";
  state.settings.display.GWI = 77;
  EXPECT_FALSE(SaveConfigurationX(state, t.services));
  EXPECT_EQ(state.log.LastErrorText, "Error while saving configuration 3 !");
  EXPECT_EQ(state.log.ExceptionNumber, 1);
  EXPECT_EQ(state.settings.display.GWI, 77);
  EXPECT_EQ(test::ReadAll(blocker), "not a folder");
}

TEST_F(Configuration, ShutDownSavesSettingsInitFileAndLog) {
  StartUp(state, t.services);
  state.settings.display.GWI = 96;
  state.log.StatusBarAndLog("Canvas redraw");
  ShutDown(state, t.services);
  EXPECT_EQ(KeyInFile(DefaultLcd(), "B2", "GWI"), "96");
  const QByteArray log = test::ReadAll(InitFolderPath(t.folders) + kLogFileName);
  EXPECT_TRUE(log.contains("Canvas redraw")) << log.toStdString();
  AppState next;
  StartUp(next, t.services);
  EXPECT_FALSE(next.files.FirstRun);
  EXPECT_EQ(next.settings.display.GWI, 96);
}

TEST_F(Configuration, RestoringFactorySettingsBacksUpAndForgetsTheInitFile) {
  StartUp(state, t.services);
  t.dialogs.Answer(platform::Answer::No);
  EXPECT_FALSE(RestoreDefaultSettings1Click(state, t.services));
  EXPECT_TRUE(QFileInfo::exists(InitFile()));

  t.dialogs.Answer(platform::Answer::Yes);
  EXPECT_TRUE(RestoreDefaultSettings1Click(state, t.services));
  EXPECT_EQ(t.dialogs.shown[1].text,
            " Are you sure to want to quit and restore the factory settings ? ");
  EXPECT_FALSE(QFileInfo::exists(InitFile()));
  // The clock of the test services says 14 March 2026, 15:09:26.
  const QString backup = t.folders.Documents() + QStringLiteral("/Vantorelle inits") +
                         QStringLiteral(VT_VERSION_SUFFIX) + " 14-03-26 15-09-26";
  EXPECT_TRUE(QFileInfo::exists(backup + QLatin1Char('/') + kDefaultSettingsName));
  AppState next;
  StartUp(next, t.services);
  EXPECT_TRUE(next.files.FirstRun);
}

}  // namespace
}  // namespace vt::app
