// SPDX-License-Identifier: MIT
#pragma once

#include <QFileSystemWatcher>
#include <QWidget>

#include "app/projects.h"
#include "app/state.h"

class QAction;
class QLabel;
class QListWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace vt::gui {

/// The projects explorer: the projects beside the active one (activate, create, rename,
/// delete), the six folders of the active project, and the files of the chosen folder with
/// their types. The file list follows the disk through a file system watcher. Loading a file
/// is the main window's: the explorer asks for it with `loadRequested`.
class Explorer final : public QWidget {
  Q_OBJECT

 public:
  Explorer(app::AppState& state, app::Services& services, QWidget* parent = nullptr);

  /// Lists the projects and the folders again, after anything changed the active project.
  void Reload();
  /// Shows the files of `role`'s folder.
  void ShowFolder(app::FolderRole role);

  QListWidget* Projects() const { return projects_; }
  QTreeWidget* Folders() const { return folders_; }
  QTreeWidget* Files() const { return files_; }
  QString ShownFolder() const { return shownFolder_; }

  /// "Activate Selected Project".
  void ActivateSelected();
  /// "Create New Project" under `name` (asked for when empty).
  void CreateProject(QString name = {});
  void DeleteSelected();
  /// "Rename Project" (context menu of the list, or F2): after the core's checks the item goes
  /// into edit mode; the rename is done when the edit ends.
  void RenameSelected();
  QAction* RenameAction() const { return rename_; }
  /// The Define command of `role`: the folder shown becomes the role's folder.
  void DefineShownFolderAs(app::FolderRole role);

 Q_SIGNALS:
  /// A file of the list was opened (double click or Enter), with its dispatch done.
  void loadRequested(const QString& path, app::LoadDispatch dispatch);
  /// The active project changed: settings, canvas size and editors were reloaded.
  void projectActivated();

 private:
  void ListFiles();
  void OpenFile(QTreeWidgetItem* item);
  QString SelectedProject() const;

  app::AppState& state_;
  app::Services& services_;
  QLabel* activeLabel_ = nullptr;
  QListWidget* projects_ = nullptr;
  QTreeWidget* folders_ = nullptr;
  QTreeWidget* files_ = nullptr;
  QAction* rename_ = nullptr;
  QString renaming_;  ///< the project whose name is being edited
  QFileSystemWatcher watcher_;
  QString shownFolder_;
};

}  // namespace vt::gui
