// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>

#include "app/configuration.h"
#include "app/modes.h"
#include "app/shell_commands.h"
#include "app/startup.h"
#include "temp_folders.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
using settings::PixelMode;

class Shell : public ::testing::Test {
 protected:
  void SetUp() override { StartUp(state, t.services); }
  test::TestServices t;
  AppState state;
};

// The gate: which flag asks what, and what each answer leaves behind.
TEST_F(Shell, CheckModeAsksTheFirstActiveModeAndActsOnTheAnswer) {
  struct Case {
    SpecialMode mode;
    int requested;
    int answer;
    const char* text;  // nullptr: no question
    bool stops;
    bool stillActive;
  } cases[] = {
      {SpecialMode::Animation, 0, Answer::Ok, nullptr, false, true},  // the one asymmetry
      {SpecialMode::Animation, 1, Answer::Cancel,
       "Animation creation mode is active ! \rQuit Animation or Cancel ", true, true},
      {SpecialMode::TouchPanel, 0, Answer::Ok,
       "Touch panel script creation mode is active ! \rQuit script creation or Cancel ", true,
       false},
      {SpecialMode::TouchPanel, 1, Answer::Ok, nullptr, false, true},
      {SpecialMode::FontScript, 0, Answer::Retry,
       "Font Script creation mode is active ! \rQuit script creation or Cancel ", true, false},
      {SpecialMode::VectorDesign, 7, Answer::Cancel,
       "Vectors Work Canvas mode is active ! \rQuit Vector Design Mode or Cancel ", true, true},
      {SpecialMode::VectorDesign, 6, Answer::Cancel,
       "Vector Programming mode is active ! \rQuit Vector Programming or Cancel ", true, true},
  };
  for (const Case& c : cases) {
    AppState s;
    ModeFlag(s.modes, c.mode) = s.modes.SpecialModeActive = true;
    t.dialogs.shown.clear();
    if (c.text) t.dialogs.Answer(c.answer);
    EXPECT_EQ(CheckMode(s, t.services, c.requested), c.stops) << Info(c.mode).name;
    EXPECT_EQ(ModeFlag(s.modes, c.mode), c.stillActive) << Info(c.mode).name;
    if (c.text) {
      ASSERT_FALSE(t.dialogs.shown.isEmpty());
      EXPECT_EQ(t.dialogs.shown[0].text, QString::fromLatin1(c.text));
    } else {
      EXPECT_TRUE(t.dialogs.shown.isEmpty());
    }
    if (!c.stillActive) {
      EXPECT_EQ(s.log.StatusText(), kNormalModeText);
    }
  }
  // "No Saves" leaves Vector Design without its save question.
  AppState s;
  ASSERT_TRUE(EnterMode(s, t.services, SpecialMode::VectorDesign));
  EXPECT_TRUE(s.modes.ModeChangeDisabled);
  t.dialogs.shown.clear();
  t.dialogs.Answer(Answer::Retry);
  EXPECT_TRUE(CheckMode(s, t.services, 0 + 7));
  EXPECT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_FALSE(s.modes.VectorModeActive || s.modes.ModeChangeDisabled || s.modes.QuitNoSave);
}

TEST_F(Shell, ExitMenuAndQuitOrderAndToggles) {
  ExitmenuButtonClick(state, t.services);
  ASSERT_EQ(t.dialogs.Texts(), QStringList{"No special mode active"});
  ExitSpecialMode1Click(state, t.services);
  EXPECT_EQ(t.dialogs.shown.size(), 1);
  ASSERT_TRUE(ToggleMode(state, t.services, SpecialMode::Animation));
  ModeFlag(state.modes, SpecialMode::BatchEdition) = true;
  ExitmenuButtonClick(state, t.services);  // batch edition goes first
  EXPECT_FALSE(state.modes.BatchEditActive);
  EXPECT_TRUE(state.modes.AnimationActive);
  ASSERT_TRUE(ToggleMode(state, t.services, SpecialMode::Animation));
  EXPECT_FALSE(state.modes.AnimationActive || state.modes.SpecialModeActive);
}

// A pixel mode change: an animation is not stopped by the gate but by the colour mode check.
TEST_F(Shell, PixelModeCommandsRefuseThroughTheColourModeCheck) {
  const char* animationText =
      "Mode change not possible while an animation is active, first save artwork, quit "
      "animation mode ";
  for (const int answer : {Answer::Ok, Answer::Cancel}) {  // "OK", "Quit Mode"
    AppState s;
    StartUp(s, t.services);
    ToggleMode(s, t.services, SpecialMode::Animation);
    t.dialogs.shown.clear();
    t.dialogs.Answer(answer);
    const bool set = PixelModeMenuClick(s, t.services, PixelMode::Gray256);
    EXPECT_EQ(set, answer == Answer::Cancel);
    ASSERT_EQ(t.dialogs.shown.size(), 1);
    EXPECT_EQ(t.dialogs.shown[0].text, QString::fromLatin1(animationText));
    EXPECT_EQ(t.dialogs.shown[0].customCaptions, (QStringList{"OK", "Quit Mode"}));
    EXPECT_EQ(s.modes.AnimationActive, answer == Answer::Ok);
  }
  state.modes.FontScriptActive = true;
  EXPECT_FALSE(SelectOutputWidth(state, t.services, convert::WordWidthChoice::Bits16));
  EXPECT_EQ(t.dialogs.shown.last().caption, QStringLiteral("Warning"));
  state.modes.FontScriptActive = false;
  EXPECT_TRUE(SelectOutputWidth(state, t.services, convert::WordWidthChoice::Binary));
  EXPECT_EQ(state.files.OutputFileName, QStringLiteral("NewBitmap.bin"));
}

// A floating layer keeps the mode in all three answers; "Discard" drops it. Quitting with it
// drops it too, and the user quits again.
TEST_F(Shell, AFloatingLayerHoldsTheModeChangeAndTheQuit) {
  for (const int answer : {Answer::Ok, Answer::Cancel, Answer::Retry}) {  // No Action, Discard, Cancel
    state.canvas.Selection().Float(QImage(4, 4, QImage::Format_RGB32), QPoint(1, 1), false);
    t.dialogs.shown.clear();
    t.dialogs.Answer(answer);
    EXPECT_TRUE(ResetAndCheckColorMode(state, t.services));
    ASSERT_EQ(t.dialogs.shown.size(), 1);
    EXPECT_EQ(t.dialogs.shown[0].customCaptions, (QStringList{"No Action", "Discard", "Cancel"}));
    EXPECT_EQ(SelectionPending(state), answer != Answer::Cancel);
  }
  t.dialogs.Answer(Answer::Ok);
  EXPECT_FALSE(FileExit1Execute(state, t.services));
  EXPECT_EQ(t.dialogs.shown.last().text,
            QStringLiteral(" Selection Layer has not been pasted ! \r Discard Selection ? "));
  EXPECT_FALSE(SelectionPending(state));
  EXPECT_FALSE(state.modes.QuitInProgress);
}

// The stop: unsaved artwork asks; Cancel keeps the run, Quit saves settings, init file and log.
TEST_F(Shell, QuitAsksAboutUnsavedArtworkThenSavesSettingsAndLog) {
  int saves = 0;
  state.shellHooks.saveArtwork = [&saves](AppState&, Services&) { return ++saves > 0; };
  state.modes.ArtworkFresh = false;
  const QString logFile = state.files.InitFolder + kLogFileName;
  for (const int answer : {Answer::Cancel, Answer::Ok}) {  // "Cancel", "Save+Quit"
    t.dialogs.shown.clear();
    t.dialogs.Answer(answer);
    EXPECT_EQ(FormCloseQuery(state, t.services), false);
    ASSERT_EQ(t.dialogs.shown.size(), 1);
    EXPECT_EQ(t.dialogs.shown[0].text,
              QStringLiteral(" Quit Vantorelle ? \r Artwork has not been saved ! "));
    EXPECT_EQ(t.dialogs.shown[0].customCaptions, (QStringList{"Save+Quit", "Cancel", "Quit"}));
    EXPECT_EQ(state.modes.QuitInProgress, answer == Answer::Ok);
    EXPECT_EQ(QFile::exists(logFile), answer == Answer::Ok);
  }
  EXPECT_EQ(saves, 1);
  EXPECT_TRUE(state.log.Lines().contains(QStringLiteral("Cancel Quit Vantorelle")));
  EXPECT_TRUE(state.log.Lines().contains(QStringLiteral("Save & Quit Vantorelle")));
}

TEST_F(Shell, SecondInstanceIsRefusedAndRecentFilesKeepTheirPlace) {
  SingleInstance first(t.folders.Documents(), QStringLiteral("Vantorelle"));
  SingleInstance second(t.folders.Documents(), QStringLiteral("Vantorelle"));
  AppState a, b;
  EXPECT_TRUE(StartUp(a, t.services, &first));
  t.dialogs.shown.clear();
  EXPECT_FALSE(StartUp(b, t.services, &second));
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].text,
            QStringLiteral(" Another instance of Vantorelle is already running !"));
  EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("Message"));

  const QString one = t.folders.Path("one.bmp"), two = t.folders.Path("two.c");
  QFile(one).open(QIODevice::WriteOnly);
  for (const QString& p : {one, two, one, t.folders.Path("x/original_image.bmp")}) AddMRUF(state, p);
  EXPECT_EQ(state.MRUList, (QStringList{two, one}));
  EXPECT_TRUE(UpdateMRUFs(state).isEmpty()) << "two.c is gone: the list ends there";
  DeleteMRUF(state, two);
  EXPECT_EQ(UpdateMRUFs(state), QStringList{"&1 " + one});
  EXPECT_EQ(RecentFileActionFor("a.H", "lib"), RecentFileAction::LoadHex);
  EXPECT_EQ(RecentFileActionFor("a.LiB", "lib"), RecentFileAction::LoadSource);
  EXPECT_EQ(FileListCaptions(RibbonPage::TextHexEditors), QStringList{"All Source Code >"});
  EXPECT_EQ(FileListCaptions(RibbonPage::Connectivity), QStringList{"Recent Files >"});
}

}  // namespace
}  // namespace vt::app
