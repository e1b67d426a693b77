// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTabBar;
class QTabWidget;

namespace vt::app {
struct AppState;
struct Services;
}  // namespace vt::app

namespace vt::gui {

/// The batch panel: the active batch and the list to choose it from, the batch editor of Batch
/// Edition with its template boxes and fields, and the report of the last run. Its buttons call
/// the batch commands; `runCommand` wraps each as the main window runs its commands (log,
/// exception boundary, refresh).
class BatchPanel final : public QDockWidget {
  Q_OBJECT
 public:
  BatchPanel(app::AppState& state, app::Services& services,
             std::function<void(const QString&, const std::function<void()>&)> runCommand,
             QWidget* parent = nullptr);

  /// Brings the panel up to date with the state: the active batch, the list, the editor's lines
  /// when Batch Edition starts or ends, the report.
  void Refresh();

  /// The commands of the ribbon.
  void CreateNewPPButtonClick();
  void EditPPButtonClick();
  void SavePPbuttonClick();
  void SelectActiveBatchButtonClick();
  void ApplyPostProButtonClick();
  void RunMultipleButtonClick();
  void QuitPostClick();

  QPlainTextEdit* Editor() const { return editor_; }
  QPlainTextEdit* Report() const { return report_; }
  QComboBox* Conditions() const { return conditions_; }
  QComboBox* Functions() const { return functions_; }
  QTabBar* Pages() const { return pages_; }

 private:
  void FillTemplates(int page);
  /// Writes the chosen item's line at the caret, or at the end when the caret is past it.
  void ChooseTemplate(const QString& item);
  /// ReadPostString: the caret's line into the fields.
  void ReadPostString();
  /// A field changed: the caret's line is written again from the fields.
  void RewriteLine();
  void EditorChanged();
  /// The progress of a run, shown over the panel with the wait cursor; Escape stops the run.
  QProgressBar* ShowProgress();
  void HideProgress(QProgressBar* bar);

  app::AppState& state_;
  app::Services& services_;
  std::function<void(const QString&, const std::function<void()>&)> runCommand_;
  QLabel* active_ = nullptr;
  QLabel* modeLabel_ = nullptr;
  QComboBox* batches_ = nullptr;
  QTabBar* pages_ = nullptr;
  QComboBox* conditions_ = nullptr;
  QComboBox* functions_ = nullptr;
  QLineEdit* index_ = nullptr;
  QLineEdit* text_ = nullptr;
  QLineEdit* comment_ = nullptr;
  QPlainTextEdit* editor_ = nullptr;
  QPlainTextEdit* report_ = nullptr;
  QTabWidget* tabs_ = nullptr;
  QList<QPushButton*> editButtons_;
  bool editing_ = false;   ///< the editor shows a batch of Batch Edition
  bool updating_ = false;  ///< the panel writes its own widgets: no echo into the state
};

}  // namespace vt::gui
