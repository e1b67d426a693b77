// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
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
  int StartPhase2 = 0;  ///< the second start counter, reported beside StartPhase
  bool AsciiInitDone = false;
  bool ExceptionOccurred = false;    ///< set by the exception handler
  bool InvalidGdiParameter = false;  ///< the handler met "Invalid Parameter for GDI+" on purpose
  bool NoLogErrorOnce = false;       ///< the next error dialog is not added to ErrorMessages
  bool TerminateRequested = false;   ///< console: a repeated message with ExitOnRepeat ends the run
  QStringList ErrorMessages;         ///< text of every error dialog, kept apart
  QStringList ReportTags;            ///< tags passed to the error report ("Handled_Except", ...)
  QStringList Report;  ///< console mode report: the messages answered without a window

  /// The handled-exception convention: LastErrorText := `shortText`, ExceptionNumber + 1, and the
  /// tag "Handled_Except" goes to the error report.
  void HandledExcept(const QString& shortText);
  /// The error report: keeps `tag` in ReportTags. Nothing leaves the machine.
  void ErrorReport(const QString& tag);

  /// Name of the console report written at `at`: "Report dd.mm.yy hh.mm.ss.txt".
  static QString ReportFileName(const QDateTime& at);
  /// Writes the console report into `folder` under ReportFileName(at). False when the folder is
  /// missing or the write fails.
  bool WriteReport(const QString& folder, const QDateTime& at) const;

 private:
  QStringList lines_;
  QString lastLogText_;
  int logRepeatCount_ = 0;
  QString statusText_;
};

}  // namespace vt::app
