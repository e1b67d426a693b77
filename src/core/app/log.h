// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace vt::app {

/// The run's log: one list of lines without levels or time stamps, the status text, the
/// breadcrumb and the exception counters. Repeated lines are folded into "text  x N".
class Log {
 public:
  /// Shows `text` as the status and appends it to the log, folding repeats. An empty text only
  /// clears the remembered status.
  void StatusBarAndLog(const QString& text);
  /// Appends `text`, then the line "<LastForm>[<LastControl>])".
  void LogError(const QString& text);
  /// Appends a line as it stands, without folding (report lines, console output).
  void Append(const QString& line);

  const QStringList& Lines() const { return lines_; }
  QString StatusText() const { return statusText_; }
  void Clear();

  /// Writes the lines to `path` atomically, one per line. False when the folder is missing or
  /// the write fails.
  bool SaveLog(const QString& path) const;

  // Breadcrumbs and counters read by exception reports.
  QString Laction;  ///< the last thing the system set out to do; never logged by itself
  QString LastErrorText;
  QString LastForm;
  QString LastControl;
  int ExceptionNumber = 0;
  int StartPhase = 0;
  bool AsciiInitDone = false;
  QStringList ErrorMessages;  ///< text of every error dialog, kept apart
  QStringList ReportTags;     ///< tags passed to the error report ("Handled_Except", ...)

  /// The handled-exception convention: LastErrorText := `shortText`, ExceptionNumber + 1, and the
  /// tag "Handled_Except" goes to the error report.
  void HandledExcept(const QString& shortText);

 private:
  QStringList lines_;
  QString lastLogText_;
  int logRepeatCount_ = 0;
  QString statusText_;
};

}  // namespace vt::app
