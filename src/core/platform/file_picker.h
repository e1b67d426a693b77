// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace vt::platform {

/// What a file picker is asked to choose.
enum class PickKind {
  OpenFile,   ///< one existing file
  OpenFiles,  ///< one or more existing files
  SaveFile,   ///< a file to write, existing or not
  Folder,     ///< an existing folder
};

/// One request to the user for files or a folder.
struct FileRequest {
  PickKind kind = PickKind::OpenFile;
  QString caption;      ///< window title
  QString folder;       ///< where the picker starts
  QString fileName;     ///< the name proposed in `folder` (save), empty for none
  QStringList filters;  ///< "Pictures (*.png *.bmp)" entries; the first is chosen at the start
};

/// Asks the user for files or a folder. Implementations: Qt file dialogs (GUI), one that
/// refuses every request (headless runs), and a scripted one for tests.
class FilePicker {
 public:
  virtual ~FilePicker() = default;
  /// The chosen paths, absolute (one for every kind but OpenFiles); none when the user cancelled.
  virtual std::optional<QStringList> Pick(const FileRequest& request) = 0;

  /// One existing file to open.
  std::optional<QString> OpenFile(const QString& caption, const QString& folder,
                                  const QStringList& filters) {
    return First(Pick({PickKind::OpenFile, caption, folder, {}, filters}));
  }
  /// Existing files to open, at least one.
  std::optional<QStringList> OpenFiles(const QString& caption, const QString& folder,
                                       const QStringList& filters) {
    std::optional<QStringList> paths = Pick({PickKind::OpenFiles, caption, folder, {}, filters});
    if (paths && paths->isEmpty()) return std::nullopt;
    return paths;
  }
  /// A file to write, `fileName` proposed in `folder`.
  std::optional<QString> SaveFile(const QString& caption, const QString& folder,
                                  const QString& fileName, const QStringList& filters) {
    return First(Pick({PickKind::SaveFile, caption, folder, fileName, filters}));
  }
  /// An existing folder.
  std::optional<QString> ChooseFolder(const QString& caption, const QString& folder) {
    return First(Pick({PickKind::Folder, caption, folder, {}, {}}));
  }

 private:
  /// The first path of an answer; none for no answer or an empty one.
  static std::optional<QString> First(const std::optional<QStringList>& paths) {
    if (!paths || paths->isEmpty() || paths->first().isEmpty()) return std::nullopt;
    return paths->first();
  }
};

/// A file picker that refuses every request, as if the user cancelled: headless runs.
class NoFilePicker final : public FilePicker {
 public:
  std::optional<QStringList> Pick(const FileRequest&) override { return std::nullopt; }
};

}  // namespace vt::platform
