// SPDX-License-Identifier: MIT
#include "gui/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
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

TEST_F(MainWindowTest, SaveLogToFileIsACommandThatLogsItsCaptionAndAsksForAFile) {
  MainWindow window(platform.services, {});
  window.show();
  Settle();
  bool asked = false;
  QTimer cancelFileDialog;
  cancelFileDialog.setInterval(5);
  QObject::connect(&cancelFileDialog, &QTimer::timeout, [&] {
    if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
      asked = true;
      cancelFileDialog.stop();
      dialog->reject();
    }
  });
  cancelFileDialog.start();

  window.LogWindowForm()->SaveLogAction()->trigger();
  EXPECT_TRUE(asked);
  EXPECT_EQ(window.State().log.Lines().last(), "Save Log to File");
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());  // cancelled: nothing saved, nothing said
  EXPECT_EQ(window.LogWindowForm()->ShownText(), Shown(window.State().log));
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

}  // namespace
}  // namespace vt::gui
