// SPDX-License-Identifier: MIT
#include "gui/commands.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QGridLayout>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

#include "gui/canvas_view.h"
#include "gui/log_window.h"
#include "gui/main_window.h"
#include "gui_test_app.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::gui {
namespace {

/// The items of `menu` as the user reads them: captions, "-" for a separator, a submenu's title
/// followed by " >".
QStringList Items(const QMenu* menu) {
  QStringList items;
  for (const QAction* action : menu->actions()) {
    if (action->isSeparator()) {
      items << QStringLiteral("-");
    } else if (action->menu()) {
      items << action->text() + QStringLiteral(" >");
    } else {
      items << action->text();
    }
  }
  return items;
}

/// The menu of the menu bar titled `title`; null when there is none.
QMenu* TopMenu(const MainWindow& window, const QString& title) {
  for (QAction* action : window.menuBar()->actions()) {
    if (action->text() == title) return action->menu();
  }
  return nullptr;
}

/// The item captioned `caption` in `menu`; null when there is none.
QAction* Item(const QMenu* menu, const QString& caption) {
  for (QAction* action : menu->actions()) {
    if (action->text() == caption) return action;
  }
  return nullptr;
}

/// The captions of ribbon page `page` in reading order: down each column of two, then right.
QStringList PageCaptions(const MainWindow& window, int page) {
  auto* grid = static_cast<QGridLayout*>(window.Ribbon()->widget(page)->layout());
  QMap<int, QString> ordered;
  for (int i = 0; i < grid->count(); ++i) {
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(i, &row, &column, &rows, &columns);
    if (auto* button = qobject_cast<QToolButton*>(grid->itemAt(i)->widget())) {
      ordered.insert(column * 2 + row, button->text());
    }
  }
  return ordered.values();
}

class Commands : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }
  test::TestServices platform;
};

TEST_F(Commands, EveryRowHasOneIdOfItsOwnAndAPlace) {
  QSet<QString> ids;
  int modes = 0;
  for (const CommandRow& row : CommandTable()) {
    SCOPED_TRACE(row.id.toStdString());
    EXPECT_FALSE(row.id.isEmpty());
    EXPECT_FALSE(ids.contains(row.id)) << "used twice";
    ids.insert(row.id);
    EXPECT_FALSE(row.caption.isEmpty());
    EXPECT_TRUE(row.page || !row.menu.isEmpty() || row.toolBar) << "shown nowhere";
    const bool hasWork = row.run || row.action || row.opensMenu;
    EXPECT_EQ(hasWork, row.availability != Availability::NotYet);
    EXPECT_EQ(!row.group.isEmpty(), bool(row.checked));
    if (row.id.startsWith(QStringLiteral("output.mode."))) ++modes;
  }
  EXPECT_EQ(modes, int(settings::PixelModeTable().size()));
}

// The menus as the user finds them, item by item.
TEST_F(Commands, TheMenusHoldTheirCommandsInOrder) {
  MainWindow window(platform.services, {});
  QStringList titles;
  for (const QAction* action : window.menuBar()->actions()) titles << action->text();
  EXPECT_EQ(titles, (QStringList{"&File", "&Output+Settings", "&Dithering", "&Windows"}));
  EXPECT_EQ(
      Items(TopMenu(window, "&File")),
      (QStringList{"Load Graphic Dialog", "Reload Last Canvas File", "Load Graphic with Preview",
                   "Define Artwork Name", "Export Work Canvas to Data", "Recent Files >", "-",
                   "Save Log to File", "-", "E&xit"}));
  EXPECT_EQ(
      Items(TopMenu(window, "&Output+Settings")),
      (QStringList{"Pixel Mode >", "Output Format >", settings::BitOrderCaption(true),
                   settings::BitOrderCaption(false), "-", "Output Settings", "Exit Special Mode"}));
  EXPECT_EQ(Items(TopMenu(window, "&Dithering")),
            (QStringList{"Floyd Steinberg", "Nearest", "Stucki", "Sierra", "JaJuNi", "Steve Arche",
                         "Burkes", "-", "Color Reduction Monochrome",
                         "Color Reduction 256 Gray Shades", "-", "Perform Dithering",
                         "Convert Work Canvas to Black and White by Dithering"}));
  EXPECT_EQ(
      Items(TopMenu(window, "&Windows")),
      (QStringList{"Hide Log Window", "Zoom In", "Zoom Out", "Pixel Grid", "Projects Explorer"}));
  const QMenu* formats = Item(TopMenu(window, "&Output+Settings"), "Output Format")->menu();
  EXPECT_EQ(Items(formats), (QStringList{"8 bits format", "16 bits format", "32 bits format",
                                         "Binary file output", "Intel Hex output"}));
  const QMenu* modes = Item(TopMenu(window, "&Output+Settings"), "Pixel Mode")->menu();
  ASSERT_EQ(modes->actions().size(), qsizetype(settings::PixelModeTable().size()));
  EXPECT_EQ(modes->actions().first()->text(),
            QString::fromLatin1(settings::Info(settings::PixelMode::Monochrome).menuCaption));
  // The canvas tool bar: paste, undo, redo and the Dithering menu.
  QStringList tools;
  for (const QAction* action : window.CanvasToolBar()->actions()) tools << action->text();
  EXPECT_EQ(tools, (QStringList{"Paste Selection", "Undo", "Redo", "&Dithering"}));
}

// Each page lists its commands down two rows; the export leads its page, greyed work follows.
TEST_F(Commands, TheRibbonPagesHoldTheirCommandsInOrder) {
  MainWindow window(platform.services, {});
  const struct {
    int page;
    QStringList captions;
  } pages[] = {
      {0,
       {"Hide Log Window", "Zoom In", "Zoom Out", "Pixel Grid", "Output Settings",
        "Save Log to File"}},
      {1,
       {"Export Work Canvas to Data", "Load Graphic Dialog", "Reload Last Canvas File",
        "Load Graphic with Preview", "Define Artwork Name", "Export Work Canvas to Hex",
        "Export Selected Area to Data", "Text Field Editor", "Rotated Text"}},
      {2, {"Load Source Into Editor"}},
      {6,
       {"Exit Batch Edition", "Run Batch", "Run Batch Multiple", "List of all Batches",
        "Activate Current Batch", "Create New Batch", "Edit Current Batch"}},
      {7, {"Enter Animation", "Exit Animation Mode", "Reload Recent Animation"}},
  };
  for (const auto& p : pages) {
    EXPECT_EQ(PageCaptions(window, p.page), p.captions) << p.page;
  }
  EXPECT_EQ(window.Ribbon()->tabText(9), QStringLiteral("Color Palette"));
}

TEST_F(Commands, WorkNotInThisVersionIsGreyedAndCannotBeTriggered) {
  MainWindow window(platform.services, {});
  int planned = 0;
  for (const CommandRow& row : CommandTable()) {
    QAction* action = window.Command(row.id);
    ASSERT_NE(action, nullptr) << row.id.toStdString();
    if (row.availability != Availability::NotYet) continue;
    ++planned;
    EXPECT_FALSE(action->isEnabled()) << row.id.toStdString();
    EXPECT_EQ(action->toolTip(), row.caption + QStringLiteral(" - Not available yet"));
    const qsizetype lines = window.State().log.Lines().size();
    EXPECT_FALSE(window.Trigger(row.id));
    EXPECT_EQ(window.State().log.Lines().size(), lines);
  }
  EXPECT_EQ(planned, 25);  // the six batch commands work
  EXPECT_EQ(window.Command(QStringLiteral("no.such.command")), nullptr);
  EXPECT_FALSE(window.Trigger(QStringLiteral("no.such.command")));
}

// A command triggered by its id is the menu's item: same action, same work, its caption logged.
TEST_F(Commands, TriggeringAnIdDoesWhatItsMenuItemDoes) {
  MainWindow window(platform.services, {});
  window.show();
  app::AppState& state = window.State();
  const int zoom = window.Canvas()->Zoom();
  const struct {
    const char* id;
    QStringList menuPath;  ///< titles from the menu bar down to the item
    std::function<bool()> done;
  } cases[] = {
      {"output.mode.gray4",
       {"&Output+Settings", "Pixel Mode", settings::Info(settings::PixelMode::Gray4).menuCaption},
       [&] { return settings::CurrentPixelMode(state.settings) == settings::PixelMode::Gray4; }},
      {"output.format.intelHex",
       {"&Output+Settings", "Output Format", "Intel Hex output"},
       [&] { return state.files.OutputFileName.endsWith(QStringLiteral(".hex")); }},
      {"dithering.method.nearest",
       {"&Dithering", "Nearest"},
       [&] {
         return state.blackWhite.Dither.method == canvas::DitherMethod::Nearest &&
                window.Command(QStringLiteral("dithering.method.nearest"))->isChecked() &&
                !window.Command(QStringLiteral("dithering.method.floyd-steinberg"))->isChecked();
       }},
      {"windows.zoomIn",
       {"&Windows", "Zoom In"},
       [&] { return window.Canvas()->Zoom() == zoom * 2; }},
      {"windows.logWindow",
       {"&Windows", "Hide Log Window"},
       [&] {
         return window.LogWindowForm()->isHidden() &&
                window.HideLogWindowAction()->text() == QStringLiteral("Show Log Window");
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    const QMenu* menu = TopMenu(window, c.menuPath.first());
    ASSERT_NE(menu, nullptr);
    for (const QString& title : c.menuPath.mid(1, c.menuPath.size() - 2)) {
      ASSERT_NE(Item(menu, title), nullptr);
      menu = Item(menu, title)->menu();
    }
    QAction* item = Item(menu, c.menuPath.last());
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(window.Command(QString::fromLatin1(c.id)), item);
    EXPECT_FALSE(c.done());
    const qsizetype before = state.log.Lines().size();
    EXPECT_TRUE(window.Trigger(QString::fromLatin1(c.id)));
    EXPECT_TRUE(c.done());
    // The caption is logged first (a repeat folds into the line before).
    const QString logged = state.log.Lines().value(before, state.log.Lines().last());
    EXPECT_TRUE(logged.startsWith(c.menuPath.last())) << logged.toStdString();
  }
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());
}

}  // namespace
}  // namespace vt::gui
