// SPDX-License-Identifier: MIT
#include "gui/explorer.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDeadlineTimer>
#include <QListWidget>
#include <QTreeWidget>

#include "app/configuration.h"
#include "app/startup.h"
#include "gui_test_app.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::gui {
namespace {

QStringList Column(const QTreeWidget* tree, int column) {
  QStringList texts;
  for (int i = 0; i < tree->topLevelItemCount(); ++i) texts << tree->topLevelItem(i)->text(column);
  return texts;
}

class ExplorerTest : public ::testing::Test {
 protected:
  ExplorerTest() {
    test::GuiApp();
    app::StartUp(state, t.services);
  }
  test::TestServices t;
  app::AppState state;
};

TEST_F(ExplorerTest, ListsProjectsAndFoldersAndActivatesTheChosenProject) {
  Explorer explorer(state, t.services);
  explorer.CreateProject(QStringLiteral("Board"));
  ASSERT_EQ(explorer.Projects()->count(), 2);
  EXPECT_EQ(Column(explorer.Folders(), 0).first(),
            QStringLiteral("GRAPHICS    : ") + QDir::toNativeSeparators(state.settings.folder.BFP));

  int activated = 0;
  QObject::connect(&explorer, &Explorer::projectActivated, [&] { ++activated; });
  explorer.Projects()->setCurrentRow(0);  // Board.LCD, sorted first
  explorer.ActivateSelected();
  EXPECT_EQ(activated, 1);
  EXPECT_EQ(QFileInfo(app::CurrentSettingsFile(state)).fileName(), QStringLiteral("Board.LCD"));

  // A change made in the project goes with it: away to the default project and back again.
  state.settings.format.FXHB = QStringLiteral("H");
  explorer.Projects()->setCurrentRow(1);
  explorer.ActivateSelected();
  EXPECT_EQ(QFileInfo(app::CurrentSettingsFile(state)).fileName(), QStringLiteral("default.LCD"));
  EXPECT_NE(state.settings.format.FXHB, QStringLiteral("H"));
  explorer.Projects()->setCurrentRow(0);
  explorer.ActivateSelected();
  EXPECT_EQ(state.settings.format.FXHB, QStringLiteral("H"));
  EXPECT_EQ(activated, 3);
}

// F2 (or the list's context menu) puts the item into edit mode after the checks; the end of the
// edit renames the file. The default project refuses before any edit.
TEST_F(ExplorerTest, RenameEditsTheProjectsNameInTheList) {
  Explorer explorer(state, t.services);
  explorer.CreateProject(QStringLiteral("Board"));
  const QString folder = QFileInfo(app::CurrentSettingsFile(state)).absolutePath();
  explorer.Projects()->setCurrentRow(1);  // default.LCD
  explorer.RenameAction()->trigger();
  EXPECT_EQ(t.dialogs.Texts(),
            QStringList{QStringLiteral("This default project can not be renamed !")});
  EXPECT_FALSE(explorer.Projects()->item(1)->flags() & Qt::ItemIsEditable);

  explorer.Projects()->setCurrentRow(0);
  explorer.RenameAction()->trigger();
  QListWidgetItem* item = explorer.Projects()->item(0);
  ASSERT_TRUE(item->flags() & Qt::ItemIsEditable);
  item->setText(QStringLiteral("Panel"));  // what the editor commits
  EXPECT_TRUE(QFileInfo::exists(folder + QStringLiteral("/Panel.LCD")));
  EXPECT_FALSE(QFileInfo::exists(folder + QStringLiteral("/Board.LCD")));
  EXPECT_EQ(explorer.Projects()->item(1)->text(), QStringLiteral("Panel.LCD"));
  EXPECT_EQ(t.dialogs.shown.size(), 1);
}

TEST_F(ExplorerTest, TheFileListShowsTypesFollowsTheDiskAndDispatchesLoads) {
  const QString folder = state.settings.folder.OFP;
  ASSERT_TRUE(WriteFileAtomically(folder + QStringLiteral("/logo.bin"), "x").ok());
  Explorer explorer(state, t.services);
  explorer.ShowFolder(app::FolderRole::Output);
  EXPECT_EQ(Column(explorer.Files(), 1), QStringList{QStringLiteral("Binary File")});

  // A file made behind the explorer's back appears once the watcher tells of it.
  ASSERT_TRUE(WriteFileAtomically(folder + QStringLiteral("/a.png"),
                                  QByteArray::fromHex("89504e470d0a1a0a"))
                  .ok());
  const QDeadlineTimer deadline(5000);
  while (explorer.Files()->topLevelItemCount() < 2 && !deadline.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  }
  ASSERT_EQ(Column(explorer.Files(), 0),
            (QStringList{QStringLiteral("a.png"), QStringLiteral("logo.bin")}));

  QString requested;
  QObject::connect(&explorer, &Explorer::loadRequested,
                   [&](const QString& path, app::LoadDispatch d) {
                     if (d.target == app::LoadTarget::Png) requested = path;
                   });
  Q_EMIT explorer.Files()->itemActivated(explorer.Files()->topLevelItem(0), 0);
  EXPECT_EQ(QFileInfo(requested).fileName(), QStringLiteral("a.png"));
}

// Without a name the command asks for one; a cancel or an empty line creates nothing.
TEST_F(ExplorerTest, CreateProjectAsksForTheNameOfTheNewProject) {
  Explorer explorer(state, t.services);
  const QString folder = QFileInfo(app::CurrentSettingsFile(state)).absolutePath();
  const struct {
    std::optional<QString> typed;
    int projects;
  } cases[] = {{std::nullopt, 1}, {QString(), 1}, {QStringLiteral("Bench"), 2}};
  for (const auto& c : cases) {
    if (c.typed) {
      t.textPrompt.Type(*c.typed);
    } else {
      t.textPrompt.Cancel();
    }
    explorer.CreateProject();
    EXPECT_EQ(explorer.Projects()->count(), c.projects)
        << c.typed.value_or("(cancel)").toStdString();
  }
  EXPECT_TRUE(QFileInfo::exists(folder + QStringLiteral("/Bench.LCD")));
  ASSERT_EQ(t.textPrompt.requests.size(), 3);
  EXPECT_EQ(t.textPrompt.requests[0].caption, QStringLiteral("Create New Project"));
  EXPECT_EQ(t.textPrompt.requests[0].label, QStringLiteral("Project name :"));
  EXPECT_EQ(t.textPrompt.requests[0].defaultText, QString());
}

}  // namespace
}  // namespace vt::gui
