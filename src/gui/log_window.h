// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>

#include "app/state.h"

class QPlainTextEdit;
class QAction;

namespace vt::gui {

/// The "Log Window": a read-only, monospace view of the run's log with its own "Save Log to
/// File" menu item, whose command the owner runs (SaveLogtoFile1Click) so that it passes the
/// same command boundary as every other. It shows what `state.log` holds and keeps nothing of its
/// own but what it has already shown, so that a refresh with no new line costs one comparison.
class LogWindow final : public QDockWidget {
  Q_OBJECT

 public:
  LogWindow(app::AppState& state, app::Services& services, QWidget* parent = nullptr);

  /// Brings the view up to date with the log and scrolls to the last line. Appends new lines,
  /// rewrites a last line that was folded ("text  x 2"), and rebuilds after a clear.
  void Refresh();

  /// Saves the log to `path` and tells the user how it went. True when the file was written.
  bool SaveLogTo(const QString& path);

  /// The text shown, one log line per line.
  QString ShownText() const;
  /// File > Save Log to File.
  QAction* SaveLogAction() const { return saveLogAction_; }
  /// Asks for a file name, starting from L.LOG in the init folder, then saves there.
  void SaveLogtoFile1Click();

 private:
  app::AppState& state_;
  app::Services& services_;
  QPlainTextEdit* editor_ = nullptr;
  QAction* saveLogAction_ = nullptr;
  qsizetype shownCount_ = 0;
  QString shownLast_;
};

}  // namespace vt::gui
