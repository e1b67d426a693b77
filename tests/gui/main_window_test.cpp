// SPDX-License-Identifier: MIT
#include "gui/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>

#include "gui/canvas_view.h"
#include "gui/log_window.h"
#include "gui_test_app.h"
#include "support/temp_folders.h"

namespace vt::gui {
namespace {

class MainWindowTest : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }

  /// Lets the window system show, hide and lay out what the test asked for.
  static void Settle() { QCoreApplication::processEvents(); }

  /// The log as it should be shown: one line per line.
  static QString Shown(const app::Log& log) { return log.Lines().join(QLatin1Char('\n')); }

  test::TestServices platform;
};

TEST_F(MainWindowTest, StartsTheRunUnderItsTitleAndRefreshShowsStatusAndCanvas) {
  MainWindow window(platform.services, {});
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Vantorelle" VT_VERSION_SUFFIX));
  EXPECT_TRUE(window.windowTitle().startsWith("Vantorelle V"));
  // The init folder is known only once the folders were loaded.
  EXPECT_TRUE(window.State().files.InitFolder.startsWith(platform.folders.Documents()));
  EXPECT_EQ(window.State().log.Laction, "Application has started");

  // Refresh shows the last status and follows the canvas size.
  window.State().log.StatusBarAndLog("Canvas redraw");
  window.State().canvas.Resize(20, 10);
  window.Refresh();
  EXPECT_EQ(window.StatusText(), "Canvas redraw");
  const int zoom = window.Canvas()->Zoom();
  EXPECT_EQ(window.Canvas()->size(), QSize(20 * zoom, 10 * zoom));
}

// The toggle hides and shows the log window and says what it will do next; closing the log
// window itself turns it to "Show" as well.
TEST_F(MainWindowTest, TheLogWindowToggleFollowsWhateverHidOrShowedTheLogWindow) {
  for (const bool startHidden : {false, true}) {
    MainWindow window(platform.services, {.hideLogWindow = startHidden});
    window.show();
    Settle();
    LogWindow* log = window.LogWindowForm();
    QAction* toggle = window.HideLogWindowAction();
    ASSERT_NE(log, nullptr);
    EXPECT_EQ(log->windowTitle(), "Log Window");
    for (int step = 0; step < 3; ++step) {
      const bool visible = (step % 2 == 0) != startHidden;
      EXPECT_EQ(log->isVisible(), visible) << startHidden << step;
      EXPECT_EQ(toggle->text(), visible ? "Hide Log Window" : "Show Log Window");
      if (step > 0) {  // the command logs the caption it had
        EXPECT_EQ(window.State().log.Lines().last(),
                  visible ? "Show Log Window" : "Hide Log Window");
      }
      toggle->trigger();
      Settle();
    }
    if (log->isVisible()) {
      log->close();
      Settle();
      EXPECT_EQ(toggle->text(), "Show Log Window");
    }
  }
}

// The command asks for a file in the init folder, "L.LOG" proposed; a cancel saves and says
// nothing, a chosen file gets the log and a message.
TEST_F(MainWindowTest, SaveLogToFileIsACommandThatLogsItsCaptionAndAsksForAFile) {
  MainWindow window(platform.services, {});
  const QString chosen = platform.folders.Path("chosen.log");
  platform.filePicker.Cancel();
  platform.filePicker.Choose(chosen);

  window.LogWindowForm()->SaveLogAction()->trigger();
  ASSERT_EQ(platform.filePicker.requests.size(), 1);
  const platform::FileRequest& asked = platform.filePicker.requests[0];
  EXPECT_EQ(asked.kind, platform::PickKind::SaveFile);
  EXPECT_EQ(asked.caption, "Save Log to File");
  EXPECT_EQ(asked.folder, window.State().files.InitFolder);
  EXPECT_EQ(asked.fileName, "L.LOG");
  EXPECT_EQ(asked.filters, (QStringList{"Log files (*.LOG *.log)", "All files (*)"}));
  EXPECT_EQ(window.State().log.Lines().last(), "Save Log to File");
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());  // cancelled: nothing saved, nothing said
  EXPECT_FALSE(QFile::exists(chosen));
  EXPECT_EQ(window.LogWindowForm()->ShownText(), Shown(window.State().log));

  window.LogWindowForm()->SaveLogAction()->trigger();
  EXPECT_EQ(platform.filePicker.requests.size(), 2);
  EXPECT_TRUE(QString::fromUtf8(test::ReadAll(chosen)).contains("Save Log to File"));
  ASSERT_EQ(platform.dialogs.shown.size(), 1);
  EXPECT_EQ(platform.dialogs.shown[0].caption, "Log file saved!");
}

TEST_F(MainWindowTest, TheLogWindowMirrorsTheLogThroughAppendsFoldsClearsAndSaves) {
  app::AppState state;
  LogWindow view(state, platform.services);
  ASSERT_NE(view.findChild<QPlainTextEdit*>(), nullptr);
  EXPECT_TRUE(view.findChild<QPlainTextEdit*>()->isReadOnly());
  EXPECT_EQ(view.ShownText(), QString());

  state.log.StatusBarAndLog("Load Configuration");
  state.log.StatusBarAndLog("Canvas redraw");
  view.Refresh();
  EXPECT_EQ(view.ShownText(), Shown(state.log));
  // Repeats fold into the last line: the view must rewrite that line, not add one.
  state.log.StatusBarAndLog("Canvas redraw");
  view.Refresh();
  state.log.StatusBarAndLog("Canvas redraw");
  state.log.StatusBarAndLog("Export");
  view.Refresh();
  EXPECT_EQ(view.ShownText(), Shown(state.log));
  EXPECT_EQ(view.ShownText().count(QLatin1Char('\n')), state.log.Lines().size() - 1);

  state.log.Clear();
  state.log.StatusBarAndLog("After clear");
  view.Refresh();
  EXPECT_EQ(view.ShownText(), Shown(state.log));

  // Saving the log says where it went, or what failed.
  state.log.StatusBarAndLog("second");
  const QString path = platform.folders.Path("saved.log");
  EXPECT_TRUE(view.SaveLogTo(path));
  const QString saved = QString::fromUtf8(test::ReadAll(path));
  EXPECT_TRUE(saved.startsWith("After clear\nsecond")) << saved.toStdString();
  ASSERT_EQ(platform.dialogs.shown.size(), 1);
  EXPECT_EQ(platform.dialogs.shown[0].text,
            QStringLiteral(" Log data saved to ") + QDir::toNativeSeparators(path));
  EXPECT_EQ(platform.dialogs.shown[0].caption, "Log file saved!");
  EXPECT_EQ(view.ShownText(), Shown(state.log));  // the message is logged and shown too

  const QString missing = platform.folders.Path("missing/folder/L.LOG");
  EXPECT_FALSE(view.SaveLogTo(missing));
  EXPECT_FALSE(QFile::exists(missing));
  ASSERT_EQ(platform.dialogs.shown.size(), 2);
  EXPECT_EQ(platform.dialogs.shown[1].type, platform::DialogType::Error);
  EXPECT_TRUE(platform.dialogs.shown[1].text.contains(QDir::toNativeSeparators(missing)));
}

// The prompt starts from the name in use; what the user confirms is trimmed and names the
// output, while a cancel or a blank line keeps the name.
TEST_F(MainWindowTest, DefineArtworkNameAsksForTheNameAndRenamesTheOutput) {
  MainWindow window(platform.services, {});
  QAction* define = window.Command(QStringLiteral("file.defineArtworkName"));
  ASSERT_NE(define, nullptr);
  const struct {
    std::optional<QString> typed;
    QString name;
    QString source;
  } cases[] = {
      {std::nullopt, "NewBitmap.bmp", "NewBitmap.h"},
      {QStringLiteral("   "), "NewBitmap.bmp", "NewBitmap.h"},
      {QStringLiteral("  panel.bmp "), "panel.bmp", "panel.h"},
      {std::nullopt, "panel.bmp", "panel.h"},
  };
  QStringList offered;
  for (const auto& c : cases) {
    if (c.typed) {
      platform.textPrompt.Type(*c.typed);
    } else {
      platform.textPrompt.Cancel();
    }
    define->trigger();
    ASSERT_FALSE(platform.textPrompt.requests.isEmpty());
    offered << platform.textPrompt.requests.last().defaultText;
    EXPECT_EQ(window.State().settings.output.nbmfn, c.name);
    EXPECT_EQ(window.State().files.SourceFileName, c.source) << c.name.toStdString();
  }
  EXPECT_EQ(offered, (QStringList{"NewBitmap.bmp", "NewBitmap.bmp", "NewBitmap.bmp", "panel.bmp"}));
  EXPECT_EQ(platform.textPrompt.requests[0].caption, "Define Artwork Name");
  EXPECT_EQ(platform.textPrompt.requests[0].label, "Artwork name");
  EXPECT_TRUE(window.State().log.Lines().last().startsWith("Define Artwork Name"));
}

}  // namespace
}  // namespace vt::gui
