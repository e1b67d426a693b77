// SPDX-License-Identifier: MIT
#include "gui/qt_file_picker.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

namespace vt::gui {
namespace {

/// What the dialog chooses for each kind of request.
QFileDialog::FileMode ModeOf(platform::PickKind kind) {
  switch (kind) {
    case platform::PickKind::OpenFile:
      return QFileDialog::ExistingFile;
    case platform::PickKind::OpenFiles:
      return QFileDialog::ExistingFiles;
    case platform::PickKind::SaveFile:
      return QFileDialog::AnyFile;
    case platform::PickKind::Folder:
      return QFileDialog::Directory;
  }
  return QFileDialog::ExistingFile;
}

}  // namespace

std::unique_ptr<QFileDialog> QtFilePicker::MakeDialog(const platform::FileRequest& request,
                                                      QWidget* parent) {
  // A start path that names a file opens its folder with the file selected.
  const QString start =
      request.fileName.isEmpty() ? request.folder : QDir(request.folder).filePath(request.fileName);
  auto dialog = std::make_unique<QFileDialog>(parent, request.caption, start);
  dialog->setFileMode(ModeOf(request.kind));
  if (request.kind == platform::PickKind::SaveFile) dialog->setAcceptMode(QFileDialog::AcceptSave);
  if (request.kind == platform::PickKind::Folder) dialog->setOption(QFileDialog::ShowDirsOnly);
  if (!request.filters.isEmpty()) dialog->setNameFilters(request.filters);
  return dialog;
}

std::optional<QStringList> QtFilePicker::Pick(const platform::FileRequest& request) {
  QWidget* parent = QApplication::activeModalWidget();
  if (!parent) parent = QApplication::activeWindow();
  if (!parent) parent = parent_.data();
  const std::unique_ptr<QFileDialog> dialog = MakeDialog(request, parent);
  if (dialog->exec() != QDialog::Accepted) return std::nullopt;
  QStringList paths = dialog->selectedFiles();
  paths.removeAll(QString());
  if (paths.isEmpty()) return std::nullopt;
  return paths;
}

}  // namespace vt::gui
