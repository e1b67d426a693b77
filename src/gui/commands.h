// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "app/shell_commands.h"

class QAction;
class QMenu;

namespace vt::app {
struct AppState;
}

namespace vt::gui {

class MainWindow;

/// When a command may be used.
enum class Availability {
  Always,
  NotYet,                  ///< its work is not in this version: shown greyed, saying so
  WhilePixelModeMayChange  ///< greyed while a special mode holds the pixel mode
};

/// One command of the ribbon, the main menu and the canvas tool bar: where it stands, what it
/// shows and what it does.
struct CommandRow {
  /// Stable name by which the window, its tests and its tools find the command, such as
  /// "file.loadGraphic" or "output.mode.monochrome". Unique in the table.
  QString id{};
  /// The text of the menu item and the button.
  QString caption{};
  /// The object name of the action.
  QString handler{};
  /// The ribbon page the command stands on; none when it is not on the ribbon.
  std::optional<app::RibbonPage> page{};
  /// Stands first on its page, before the rows above it in the table.
  bool leadsPage = false;
  /// The menu the command stands in, its levels joined by "/" ("&Output+Settings/Pixel Mode");
  /// empty when it is in no menu.
  QString menu{};
  /// A separator comes before the command in its menu.
  bool separatorBefore = false;
  /// The command stands on the canvas tool bar, and its shortcut works over the whole window
  /// (also while the threshold tool stands in the tool bar's place).
  bool toolBar = false;
  QKeySequence shortcut{};
  /// Checkable commands of one group: exactly one of them is checked.
  QString group{};
  Availability availability = Availability::Always;
  /// For a checkable command: checked when the state says so. The views follow the state.
  std::function<bool(const app::AppState&)> checked{};
  /// The work. It runs as a command (its caption logged first, failures caught, the views
  /// refreshed afterwards) unless `runsAlone`.
  std::function<void(MainWindow&)> run{};
  /// The work runs by itself: it logs, catches and refreshes on its own terms.
  bool runsAlone = false;
  /// The command is an action another part of the window owns (a panel's show and hide).
  std::function<QAction*(MainWindow&)> action{};
  /// The command opens a menu: the menu `caption` under `menu` (or in the menu bar), whose
  /// items `fill` makes each time it opens, when given.
  bool opensMenu = false;
  std::function<void(MainWindow&, QMenu&)> fill{};
};

/// Every command, in menu order: each menu takes its rows in table order, and the menu bar takes
/// its menus in the order they first appear. Each ribbon page takes its rows in table order too,
/// a row that leads its page first.
std::vector<CommandRow> CommandTable();

/// The ribbon pages' captions, in page order.
QStringList RibbonPageCaptions();

}  // namespace vt::gui
