// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "platform/dialogs.h"

namespace vt::platform {

/// How the code below the application talks to the user: the central message routine, the
/// status line with the log, the breadcrumb of the last thing the system set out to do, and the
/// handled-exception convention. The application implements it over its state, so that every
/// message is logged, every answer kept and a headless run answers by itself; tests may use a
/// recording one. Routines take it instead of the whole application state.
class Messenger {
 public:
  virtual ~Messenger() = default;

  /// MessageDlgA: shows `text` modally with the Buttons mask `buttons` and returns the Answer
  /// code. `caption` empty gives the title of `type`; `helpContext` is always 0.
  virtual int MessageDlgA(const QString& text, const QString& caption, int helpContext, int buttons,
                          DialogType type) = 0;
  /// MyMessageDialog: the same with the caller's button captions (see ButtonsOf): the first
  /// caption answers the set's first button, and so on up to `lastCaptionIndex`.
  virtual int MyMessageDialog(const QString& text, DialogType type, int lastCaptionIndex,
                              const QStringList& captions, int buttons,
                              const QString& title = QString()) = 0;
  /// Shows `text` as the status and appends it to the log, folding repeats.
  virtual void StatusBarAndLog(const QString& text) = 0;
  /// Appends a line to the log as it stands, without folding.
  virtual void AppendLog(const QString& line) = 0;
  /// Laction: the last thing the system set out to do, for exception reports.
  virtual void SetLaction(const QString& action) = 0;
  /// The handled-exception convention: a short fixed text naming the routine is kept, the
  /// exception counter goes up and the error report gets the tag "Handled_Except".
  virtual void HandledExcept(const QString& shortText) = 0;
};

}  // namespace vt::platform
