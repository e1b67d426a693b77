// SPDX-License-Identifier: MIT
#include "gui/explorer.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "app/configuration.h"
#include "platform/text_prompt.h"

namespace vt::gui {

Explorer::Explorer(app::AppState& state, app::Services& services, QWidget* parent)
    : QWidget(parent), state_(state), services_(services) {
  setObjectName(QStringLiteral("TExploForm"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);

  activeLabel_ = new QLabel(this);
  activeLabel_->setStyleSheet(QStringLiteral("font-weight: bold"));
  layout->addWidget(activeLabel_);

  auto* splitter = new QSplitter(Qt::Vertical, this);
  layout->addWidget(splitter, 1);

  auto* projectPane = new QWidget(splitter);
  auto* projectLayout = new QVBoxLayout(projectPane);
  projectLayout->setContentsMargins(0, 0, 0, 0);
  projects_ = new QListWidget(projectPane);
  projects_->setToolTip(QStringLiteral("Project (Set of Settings)"));
  projectLayout->addWidget(projects_);
  auto* buttons = new QHBoxLayout;
  const auto button = [&](const QString& caption, auto slot) {
    auto* b = new QPushButton(caption, projectPane);
    connect(b, &QPushButton::clicked, this, slot);
    buttons->addWidget(b);
  };
  button(QStringLiteral("Activate"), [this] { ActivateSelected(); });
  button(QStringLiteral("Create New Project"), [this] { CreateProject(); });
  button(QStringLiteral("Delete"), [this] { DeleteSelected(); });
  projectLayout->addLayout(buttons);
  connect(projects_, &QListWidget::itemDoubleClicked, this, [this] { ActivateSelected(); });
  rename_ = new QAction(QStringLiteral("Rename Project"), projects_);
  rename_->setShortcut(Qt::Key_F2);
  rename_->setShortcutContext(Qt::WidgetShortcut);
  projects_->addAction(rename_);
  projects_->setContextMenuPolicy(Qt::ActionsContextMenu);
  projects_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  connect(rename_, &QAction::triggered, this, [this] { RenameSelected(); });
  // The edit's end: a changed name is the rename; an edit left unchanged or cancelled leaves it.
  connect(projects_, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
    if (renaming_.isEmpty() || item->text() == renaming_) return;
    const QString from = std::exchange(renaming_, QString());
    if (!app::RenameProjectTo(state_, from, item->text())) {
      const QSignalBlocker block(projects_);
      item->setText(from);
    }
    Reload();
  });
  connect(projects_->itemDelegate(), &QAbstractItemDelegate::closeEditor, this,
          [this] { renaming_.clear(); });

  folders_ = new QTreeWidget(splitter);
  folders_->setHeaderHidden(true);
  folders_->setRootIsDecorated(false);
  connect(folders_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item) ShowFolder(static_cast<app::FolderRole>(item->data(0, Qt::UserRole).toInt()));
  });

  files_ = new QTreeWidget(splitter);
  files_->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Type"), QStringLiteral("Size")});
  files_->setRootIsDecorated(false);
  files_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  connect(files_, &QTreeWidget::itemActivated, this,
          [this](QTreeWidgetItem* item) { OpenFile(item); });
  splitter->setStretchFactor(2, 1);

  // The list follows files added, removed or renamed in the folder it shows.
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] { ListFiles(); });
  Reload();
}

void Explorer::Reload() {
  const app::ProjectList list = app::ListAllProjects(state_);
  activeLabel_->setText(list.activeLabel);
  projects_->clear();
  projects_->addItems(list.names);
  const QString active = QFileInfo(app::CurrentSettingsFile(state_)).fileName();
  for (int i = 0; i < projects_->count(); ++i) {
    if (projects_->item(i)->text().compare(active, Qt::CaseInsensitive) == 0) {
      projects_->setCurrentRow(i);
    }
  }
  folders_->clear();
  for (const app::FolderRole role : app::kFolderRoles) {
    const QString path = app::FolderOf(state_.settings, role);
    auto* item = new QTreeWidgetItem(folders_, {QString::fromLatin1(app::Info(role).treeLabel) +
                                                QDir::toNativeSeparators(path)});
    item->setData(0, Qt::UserRole, static_cast<int>(role));
    item->setToolTip(0, QString::fromLatin1(app::Info(role).command));
  }
  ShowFolder(app::FolderRole::Graphics);
}

void Explorer::ShowFolder(app::FolderRole role) {
  if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
  shownFolder_ = app::FolderOf(state_.settings, role);
  if (QFileInfo(shownFolder_).isDir()) watcher_.addPath(shownFolder_);
  ListFiles();
}

void Explorer::ListFiles() {
  files_->clear();
  const QDir dir(shownFolder_);
  for (const QFileInfo& f : dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot,
                                              QDir::DirsFirst | QDir::Name | QDir::IgnoreCase)) {
    auto* item = new QTreeWidgetItem(
        files_, {f.fileName(), app::FileTypeDescription(f.fileName(), f.isDir()),
                 f.isDir() ? QString() : QLocale().formattedDataSize(f.size())});
    item->setData(0, Qt::UserRole, f.absoluteFilePath());
    item->setData(1, Qt::UserRole, f.isDir());
  }
}

void Explorer::OpenFile(QTreeWidgetItem* item) {
  if (!item) return;
  const QString path = item->data(0, Qt::UserRole).toString();
  const bool isFolder = item->data(1, Qt::UserRole).toBool();
  state_.log.StatusBarAndLog(QStringLiteral("Listview Click"));
  const app::LoadDispatch dispatch = app::Loadfile(state_, services_, path, isFolder);
  if (dispatch.target == app::LoadTarget::Folder) {
    if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
    shownFolder_ = path;
    watcher_.addPath(path);
    ListFiles();
    return;
  }
  if (dispatch.target != app::LoadTarget::None) Q_EMIT loadRequested(path, dispatch);
}

QString Explorer::SelectedProject() const {
  const QListWidgetItem* item = projects_->currentItem();
  return item && item->isSelected() ? item->text() : QString();
}

void Explorer::ActivateSelected() {
  state_.log.StatusBarAndLog(QStringLiteral("Activate Selected Project"));
  if (app::ActivateProject(state_, services_, SelectedProject())) {
    Reload();
    Q_EMIT projectActivated();
  }
}

void Explorer::CreateProject(QString name) {
  if (name.isEmpty()) {
    name = services_.textPrompt
               .Ask({QStringLiteral("Create New Project"), QStringLiteral("Project name :"), {}})
               .value_or(QString());
  }
  if (!name.isEmpty() && app::SaveAsNewProject(state_, services_, name)) Reload();
}

void Explorer::DeleteSelected() {
  if (app::DeleteProject(state_, services_, SelectedProject())) Reload();
}

void Explorer::RenameSelected() {
  const QString name = SelectedProject();
  if (!app::MenuItem5Click(state_, services_, name)) return;
  QListWidgetItem* item = projects_->currentItem();
  renaming_ = name;
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  projects_->editItem(item);
}

void Explorer::DefineShownFolderAs(app::FolderRole role) {
  if (app::DefineProjectFolder(state_, services_, role, shownFolder_)) Reload();
}

}  // namespace vt::gui
