// SPDX-License-Identifier: MIT
#include "gui/batch_panel.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTextBlock>

#include "app/state.h"
#include "gui/main_window.h"
#include "gui_test_app.h"
#include "support/temp_folders.h"
#include "util/atomic_write.h"

namespace vt::gui {
namespace {

class BatchPanelTest : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }
  /// Picks `item` of `box` as the user would.
  static void Choose(QComboBox* box, const QString& item) {
    const int index = box->findText(item);
    ASSERT_GE(index, 0) << item.toStdString();
    box->activated(index);
  }
  test::TestServices platform;
};

TEST_F(BatchPanelTest, ANewBatchIsWrittenFromTemplatesSavedActivatedAndRun) {
  MainWindow window(platform.services, {});
  app::AppState& state = window.State();
  BatchPanel* panel = window.Batches();
  ASSERT_NE(panel, nullptr);
  window.Command(QStringLiteral("batch.create"))->trigger();
  ASSERT_TRUE(state.modes.BatchEditActive);
  EXPECT_EQ(QFileInfo(state.batch.editPath).fileName(), QStringLiteral("NewTextPro1.SPP"));

  // Templates write at the caret: a condition, then an action with its fields filled in.
  Choose(panel->Conditions(), QStringLiteral("if 'text'"));
  panel->findChild<QLineEdit*>(QStringLiteral("PPtextEdit"))->setText(QStringLiteral("const"));
  panel->findChild<QLineEdit*>(QStringLiteral("PPtextEdit"))->textEdited(QStringLiteral("const"));
  QTextCursor end = panel->Editor()->textCursor();
  end.movePosition(QTextCursor::End);
  panel->Editor()->setTextCursor(end);
  Choose(panel->Functions(), QStringLiteral("then insert (index)'text'"));
  auto* index = panel->findChild<QLineEdit*>(QStringLiteral("PPIndexEdit"));
  auto* text = panel->findChild<QLineEdit*>(QStringLiteral("PPtextEdit"));
  index->setText(QStringLiteral("1"));
  index->textEdited(QStringLiteral("1"));
  text->setText(QStringLiteral("static "));
  text->textEdited(QStringLiteral("static "));
  EXPECT_EQ(panel->Editor()->toPlainText(),
            QStringLiteral("if 'const'\n      then insert (1)'static '\n"));

  if (const QByteArray shot = qgetenv("VT_BATCH_SCREENSHOT"); !shot.isEmpty()) {
    window.resize(1280, 800);
    window.show();
    panel->raise();
    QApplication::processEvents();
    window.grab().save(QString::fromLocal8Bit(shot));
  }

  // Leaving saves after the question; the batch becomes the active one and runs.
  platform.dialogs.Answer(platform::Answer::Yes);
  window.Command(QStringLiteral("batch.exit"))->trigger();
  EXPECT_FALSE(state.modes.BatchEditActive);
  ASSERT_TRUE(QFile::exists(state.batch.editPath));
  EXPECT_EQ(test::ReadAll(state.batch.editPath),
            "if 'const'\r\n      then insert (1)'static '\r\n\r\n");
  auto* list = panel->findChild<QComboBox*>(QStringLiteral("PPComboBox"));
  list->setCurrentText(QStringLiteral("NewTextPro1.SPP"));
  window.Command(QStringLiteral("batch.activate"))->trigger();
  EXPECT_EQ(state.settings.post.pprof, QStringLiteral("NewTextPro1.SPP"));

  state.text.Clear();
  state.text.AddLine(QStringLiteral("const int a;"));
  platform.dialogs.Answer(platform::Answer::No);  // "View Report"
  window.Command(QStringLiteral("batch.run"))->trigger();
  EXPECT_EQ(state.text.Lines(), QStringList{QStringLiteral("static const int a;")});
  EXPECT_TRUE(panel->Report()->toPlainText().contains(QStringLiteral("0: if 'const' = True")));
}

}  // namespace
}  // namespace vt::gui
