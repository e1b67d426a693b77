// SPDX-License-Identifier: MIT
#include "app/projects.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "app/configuration.h"
#include "app/startup.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

class Projects : public ::testing::Test {
 protected:
  Projects() { StartUp(state, t.services); }
  QString Folder() const { return DefaultsFolder(state); }
  QStringList TakeTexts() {
    const QStringList texts = t.dialogs.Texts();
    t.dialogs.shown.clear();
    return texts;
  }

  test::TestServices t;
  AppState state;
};

TEST_F(Projects, ANewProjectKeepsItsSettingsAcrossActivations) {
  state.settings.display.GWI = 200;
  ASSERT_TRUE(SaveAsNewProject(state, t.services, QStringLiteral("Board")));
  EXPECT_FALSE(SaveAsNewProject(state, t.services, QStringLiteral("Board.LCD")));
  EXPECT_EQ(TakeTexts(), QStringList{Folder() + QStringLiteral("Board.LCD already exists !")});
  EXPECT_EQ(ListAllProjects(state).names,
            (QStringList{QStringLiteral("Board.LCD"), QStringLiteral("default.LCD")}));

  // The default project is saved (with 64) before Board is loaded (with 200).
  state.settings.display.GWI = 64;
  ASSERT_TRUE(ActivateProject(state, t.services, QStringLiteral("Board.LCD")));
  EXPECT_EQ(state.settings.display.GWI, 200);
  EXPECT_EQ(ListAllProjects(state).activeLabel, QStringLiteral("Active Project : Board.LCD"));
  EXPECT_TRUE(state.log.Lines().contains(QStringLiteral("Project Board.LCD Activated")));
  ASSERT_TRUE(ActivateProject(state, t.services, QStringLiteral("default.LCD")));
  EXPECT_EQ(state.settings.display.GWI, 64);

  // A renamed project keeps its content; the active one follows its rename.
  ASSERT_TRUE(ActivateProject(state, t.services, QStringLiteral("Board.LCD")));
  ASSERT_TRUE(
      RenameProject(state, t.services, QStringLiteral("Board.LCD"), QStringLiteral("Panel")));
  EXPECT_EQ(QFileInfo(CurrentSettingsFile(state)).fileName(), QStringLiteral("Panel.LCD"));
  ASSERT_TRUE(ActivateProject(state, t.services, QStringLiteral("default.LCD")));
  ASSERT_TRUE(DeleteProject(state, t.services, QStringLiteral("Panel.LCD")));
  EXPECT_EQ(TakeTexts(), QStringList{QStringLiteral("Project has been deleted !")});

  EXPECT_EQ(ListAllProjects(state).names, QStringList{QStringLiteral("default.LCD")});
}

TEST_F(Projects, RefusalsTellWhyAndChangeNothing) {
  ASSERT_TRUE(SaveAsNewProject(state, t.services, QStringLiteral("Board")));
  t.fileUse.busy.insert(Folder() + QStringLiteral("Board.LCD"));
  const struct {
    std::function<bool()> command;
    const char* text;
  } cases[] = {
      {[&] { return ActivateProject(state, t.services, {}); }, "Please select a project first "},
      {[&] {
         return RenameProject(state, t.services, QStringLiteral("default.LCD"),
                              QStringLiteral("x"));
       },
       "This default project can not be renamed !"},
      {[&] { return RenameProject(state, t.services, {}, QStringLiteral("x")); },
       "Please select the project to rename in the list !"},
      {[&] {
         return RenameProject(state, t.services, QStringLiteral("Board.LCD"), QStringLiteral("x"));
       },
       "File is in use (or acess was denied) and can not be renamed !"},
      {[&] { return DeleteProject(state, t.services, {}); }, "Select a project to delete first!"},
      {[&] { return DeleteProject(state, t.services, QStringLiteral("default.LCD")); },
       "This project can not be deleted !"},
  };
  for (const auto& c : cases) {
    EXPECT_FALSE(c.command()) << c.text;
    EXPECT_EQ(TakeTexts(), QStringList{QString::fromLatin1(c.text)});
  }
  t.fileUse.busy.clear();
  ASSERT_TRUE(ActivateProject(state, t.services, QStringLiteral("Board.LCD")));
  EXPECT_FALSE(DeleteProject(state, t.services, QStringLiteral("Board.LCD")));
  EXPECT_EQ(TakeTexts(), QStringList{QStringLiteral("Active project can not be deleted !")});
  EXPECT_EQ(ListAllProjects(state).names.size(), 2);
}

TEST_F(Projects, FoldersAreDefinedOnlyWhereTheyCanBeWritten) {
  const QString good = t.folders.Path(QStringLiteral("art"));
  QDir().mkpath(good);
  ASSERT_TRUE(DefineProjectFolder(state, t.services, FolderRole::Graphics, good));
  EXPECT_EQ(state.settings.folder.BFP, good);
  EXPECT_EQ(state.log.Lines().last(), QStringLiteral("Graphics folder defined"));
  EXPECT_FALSE(QFileInfo::exists(good + QStringLiteral("/chk.tmp")));

  const QString missing = t.folders.Path(QStringLiteral("none"));
  EXPECT_FALSE(DefineProjectFolder(state, t.services, FolderRole::Batch, missing));
  EXPECT_EQ(TakeTexts(),
            QStringList{missing + QStringLiteral(" cannot be defined : Access denied ! ")});
  EXPECT_NE(state.settings.folder.bfpa, missing);
}

TEST(FileTypeDescription, ByUpperCaseExtension) {
  const struct {
    const char* path;
    bool folder;
    const char* description;
  } cases[] = {
      {"a/logo.gvs", false, "Vantorelle Vectors"},
      {"p.LCD", false, "Vantorelle Project"},
      {"x.Tiff", false, "TIFF Graphic"},
      {"x.pal", false, "Color Palette"},
      {"x.png", false, "Fichier .PNG"},
      {"sub", true, "DIRECTORY"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FileTypeDescription(QString::fromLatin1(c.path), c.folder),
              QString::fromLatin1(c.description))
        << c.path;
  }
}

TEST_F(Projects, LoadfileChecksTheHeaderOfBitmapsAndJpegsThenDispatches) {
  const auto file = [&](const char* name, const QByteArray& bytes) {
    const QString path = t.folders.Path(QString::fromLatin1(name));
    EXPECT_TRUE(WriteFileAtomically(path, bytes).ok());
    return path;
  };
  const struct {
    const char* name;
    QByteArray bytes;
    LoadTarget target;
    const char* message;
  } cases[] = {
      {"a.bmp", "BM\x36\0\0\0", LoadTarget::Bitmap, ""},
      {"b.BMP", "PK\3\4", LoadTarget::None, "This is not a valid bitmap file !\r"},
      {"c.jpeg", "\xFF\xD8\xFF\xE0", LoadTarget::Jpeg, ""},
      {"d.jpg", "GIF89a", LoadTarget::None, "This is not a valid Jpeg file !\r"},
      {"e.png", "", LoadTarget::Png, ""},
      {"f.tif", "", LoadTarget::Tiff, ""},
      {"g.gvs", "", LoadTarget::VectorScript, ""},
      {"h.wmv", "", LoadTarget::None, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Loadfile(state, t.services, file(c.name, c.bytes), false).target, c.target) << c.name;
    EXPECT_EQ(TakeTexts().join(QString()), QString::fromLatin1(c.message)) << c.name;
  }
  state.modes.AnimationActive = true;
  t.dialogs.Answer(platform::Answer::No);
  EXPECT_EQ(Loadfile(state, t.services, file("i.gif", "GIF89a"), false).target, LoadTarget::None);
  EXPECT_EQ(t.dialogs.shown.at(0).caption, QStringLiteral("Loading another GIF"));
}

TEST_F(Projects, SaveExtensionsAndTheirFolders) {
  EXPECT_TRUE(CheckTextSaveExtension(state, t.services, QStringLiteral("asm")));
  EXPECT_FALSE(CheckTextSaveExtension(state, t.services, QStringLiteral(".doc")));
  EXPECT_TRUE(CheckGraphicSaveExtension(state, t.services, QStringLiteral(".Png")));
  EXPECT_FALSE(CheckGraphicSaveExtension(state, t.services, QStringLiteral(".gif")));
  EXPECT_EQ(
      TakeTexts(),
      (QStringList{QStringLiteral("File Ext can only be one of these : H,C,BAS,ASM,TXT or RTF ! "),
                   QStringLiteral("File Ext can only be one of these : .BMP .PNG or .JPG")}));
  const settings::FolderSettings& f = state.settings.folder;
  EXPECT_EQ(SaveFolderFor(state.settings, QStringLiteral(".h")), f.OFP);
  EXPECT_EQ(SaveFolderFor(state.settings, QStringLiteral(".SPP")), f.bfpa);
  EXPECT_EQ(SaveFolderFor(state.settings, QStringLiteral(".bmp")), f.BFP);
}

TEST_F(Projects, SavedPicturesStandInTheProjectsFolderUnderTheGraphicName) {
  QImage red(3, 2, QImage::Format_RGB32);
  red.fill(qRgb(255, 0, 0));
  const QString lcd = CurrentSettingsFile(state);
  ASSERT_TRUE(SaveSavedPicture(lcd, QStringLiteral("logo.png"), 5, red));
  EXPECT_TRUE(QFileInfo::exists(Folder() + QStringLiteral("default/logo/Image[5].bmp")));
  const SavedPictures pictures = LoadSavedPictures(lcd, QStringLiteral("logo.bmp"));
  EXPECT_EQ(pictures[5].pixel(2, 1), qRgb(255, 0, 0));
  EXPECT_TRUE(pictures[0].isNull());
  EXPECT_FALSE(SaveSavedPicture(lcd, QStringLiteral("logo"), 8, red));
}

TEST_F(Projects, TransferredInitsStartTheNextVersion) {
  state.settings.display.GWI = 96;
  ASSERT_TRUE(SaveConfigurationX(state, t.services));
  ASSERT_TRUE(TransfertInits(state, t.services));
  // The next version finds no init folder of its own and takes the transferred one.
  QDir(InitFolderPath(t.folders)).removeRecursively();
  AppState next;
  StartUp(next, t.services);
  EXPECT_FALSE(next.files.FirstRun);
  EXPECT_EQ(next.settings.display.GWI, 96);
  EXPECT_FALSE(QFileInfo::exists(t.folders.Documents() + QStringLiteral("/Vantorelle inits xfer")));
}

}  // namespace
}  // namespace vt::app
