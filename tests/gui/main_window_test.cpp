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

  test::TestServices platform;
};

TEST_F(MainWindowTest, IsTitledWithTheProgramAndItsVersion) {
  MainWindow window(platform.services, {});
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Vantorelle" VT_VERSION_SUFFIX));
  EXPECT_TRUE(window.windowTitle().startsWith(QStringLiteral("Vantorelle V")));
}

TEST_F(MainWindowTest, OpensWithTheLogWindowVisible) {
  MainWindow window(platform.services, {});
  window.show();
  Settle();
  ASSERT_NE(window.LogWindowForm(), nullptr);
  EXPECT_TRUE(window.LogWindowForm()->isVisible());
  EXPECT_EQ(window.LogWindowForm()->windowTitle(), QStringLiteral("Log Window"));
  EXPECT_EQ(window.HideLogWindowAction()->text(), QStringLiteral("Hide Log Window"));
}

TEST_F(MainWindowTest, TheToggleHidesAndShowsTheLogWindowAndSaysWhatItWillDoNext) {
  MainWindow window(platform.services, {});
  window.show();
  Settle();
  QAction* toggle = window.HideLogWindowAction();

  toggle->trigger();
  Settle();
  EXPECT_FALSE(window.LogWindowForm()->isVisible());
  EXPECT_EQ(toggle->text(), QStringLiteral("Show Log Window"));
  EXPECT_TRUE(window.State().log.Lines().contains(QStringLiteral("Hide Log Window")));

  toggle->trigger();
  Settle();
  EXPECT_TRUE(window.LogWindowForm()->isVisible());
  EXPECT_EQ(toggle->text(), QStringLiteral("Hide Log Window"));
  EXPECT_TRUE(window.State().log.Lines().contains(QStringLiteral("Show Log Window")));
}

TEST_F(MainWindowTest, ClosingTheLogWindowItselfTurnsTheToggleToShow) {
  MainWindow window(platform.services, {});
  window.show();
  Settle();
  window.LogWindowForm()->close();
  Settle();
  EXPECT_EQ(window.HideLogWindowAction()->text(), QStringLiteral("Show Log Window"));
}

TEST_F(MainWindowTest, StartsWithTheLogWindowHiddenWhenAsked) {
  MainWindow window(platform.services, {.hideLogWindow = true});
  window.show();
  Settle();
  EXPECT_FALSE(window.LogWindowForm()->isVisible());
  EXPECT_EQ(window.HideLogWindowAction()->text(), QStringLiteral("Show Log Window"));

  window.HideLogWindowAction()->trigger();
  Settle();
  EXPECT_TRUE(window.LogWindowForm()->isVisible());
}

TEST_F(MainWindowTest, StartsTheRunWhileItIsBuilt) {
  MainWindow window(platform.services, {});
  // The init folder is known only once the folders were loaded.
  EXPECT_FALSE(window.State().files.InitFolder.isEmpty());
  EXPECT_TRUE(window.State().files.InitFolder.startsWith(platform.folders.Documents()));
  EXPECT_EQ(window.State().log.Laction, QStringLiteral("Application has started"));
}

TEST_F(MainWindowTest, ClosingEndsTheRunOnceAndSavesTheLog) {
  MainWindow window(platform.services, {});
  window.show();
  Settle();
  const QString logFile = window.State().files.InitFolder + QStringLiteral("L.LOG");
  EXPECT_FALSE(window.IsShutDown());
  EXPECT_FALSE(QFile::exists(logFile));

  EXPECT_TRUE(window.close());
  EXPECT_TRUE(window.IsShutDown());
  ASSERT_TRUE(QFile::exists(logFile));
  EXPECT_TRUE(
      QString::fromUtf8(test::ReadAll(logFile)).contains(QStringLiteral("Quit Vantorelle")));

  const qsizetype linesAfterFirstClose = window.State().log.Lines().size();
  window.show();
  window.close();
  EXPECT_EQ(window.State().log.Lines().size(), linesAfterFirstClose);
}

TEST_F(MainWindowTest, TheStatusBarShowsTheLastStatusText) {
  MainWindow window(platform.services, {});
  window.State().log.StatusBarAndLog(QStringLiteral("Canvas redraw"));
  window.Refresh();
  EXPECT_EQ(window.StatusText(), QStringLiteral("Canvas redraw"));
}

TEST_F(MainWindowTest, TheCanvasFollowsTheWorkCanvasSize) {
  MainWindow window(platform.services, {});
  window.State().canvas.Resize(20, 10);
  window.Refresh();
  const int zoom = window.Canvas()->Zoom();
  EXPECT_EQ(window.Canvas()->size(), QSize(20 * zoom, 10 * zoom));
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
  EXPECT_EQ(window.State().log.Lines().last(), QStringLiteral("Save Log to File"));
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());  // cancelled: nothing saved, nothing said
  EXPECT_EQ(window.LogWindowForm()->ShownText().section(QLatin1Char('\n'), -1),
            QStringLiteral("Save Log to File"));
}

class LogWindowTest : public MainWindowTest {
 protected:
  /// The log as it should be shown: one line per line.
  static QString Expected(const app::Log& log) { return log.Lines().join(QLatin1Char('\n')); }
};

TEST_F(LogWindowTest, MirrorsTheLogThroughAppendsFoldsAndClears) {
  app::AppState state;
  LogWindow view(state, platform.services);
  EXPECT_EQ(view.ShownText(), QString());

  state.log.StatusBarAndLog(QStringLiteral("Load Configuration"));
  state.log.StatusBarAndLog(QStringLiteral("Canvas redraw"));
  view.Refresh();
  EXPECT_EQ(view.ShownText(), Expected(state.log));

  // Repeats fold into the last line: the view must rewrite that line, not add one.
  state.log.StatusBarAndLog(QStringLiteral("Canvas redraw"));
  view.Refresh();
  state.log.StatusBarAndLog(QStringLiteral("Canvas redraw"));
  state.log.StatusBarAndLog(QStringLiteral("Export"));
  view.Refresh();
  EXPECT_EQ(view.ShownText(), Expected(state.log));
  EXPECT_EQ(view.ShownText().count(QLatin1Char('\n')), state.log.Lines().size() - 1);

  state.log.Clear();
  state.log.StatusBarAndLog(QStringLiteral("After clear"));
  view.Refresh();
  EXPECT_EQ(view.ShownText(), Expected(state.log));
}

TEST_F(LogWindowTest, IsReadOnly) {
  app::AppState state;
  LogWindow view(state, platform.services);
  auto* editor = view.findChild<QPlainTextEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_TRUE(editor->isReadOnly());
}

TEST_F(LogWindowTest, SavesTheLogAndSaysWhere) {
  app::AppState state;
  LogWindow view(state, platform.services);
  state.log.StatusBarAndLog(QStringLiteral("first"));
  state.log.StatusBarAndLog(QStringLiteral("second"));
  const QString path = platform.folders.Path(QStringLiteral("saved.log"));

  EXPECT_TRUE(view.SaveLogTo(path));
  const QString saved = QString::fromUtf8(test::ReadAll(path));
  EXPECT_TRUE(saved.startsWith(QStringLiteral("first")));
  EXPECT_TRUE(saved.contains(QStringLiteral("second")));
  ASSERT_EQ(platform.dialogs.shown.size(), 1);
  EXPECT_EQ(platform.dialogs.shown[0].text,
            QStringLiteral(" Log data saved to ") + QDir::toNativeSeparators(path));
  EXPECT_EQ(platform.dialogs.shown[0].caption, QStringLiteral("Log file saved!"));
  // The message is logged too, and the view already shows it.
  EXPECT_EQ(view.ShownText(), Expected(state.log));
}

TEST_F(LogWindowTest, TellsTheUserWhenTheLogCannotBeSaved) {
  app::AppState state;
  LogWindow view(state, platform.services);
  state.log.StatusBarAndLog(QStringLiteral("first"));
  const QString path = platform.folders.Path(QStringLiteral("missing/folder/L.LOG"));

  EXPECT_FALSE(view.SaveLogTo(path));
  EXPECT_FALSE(QFile::exists(path));
  ASSERT_EQ(platform.dialogs.shown.size(), 1);
  EXPECT_EQ(platform.dialogs.shown[0].type, platform::DialogType::Error);
  EXPECT_TRUE(platform.dialogs.shown[0].text.contains(QDir::toNativeSeparators(path)));
}

}  // namespace
}  // namespace vt::gui
