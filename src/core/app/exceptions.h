// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <exception>
#include <functional>

#include "platform/dialogs.h"

namespace vt::app {

struct AppState;
class Log;

/// What the exception handler made of an exception that reached the top.
enum class ExceptionOutcome {
  Hidden,       ///< counted and logged, nothing shown (tag "Hid Except")
  Named,        ///< LastErrorText holds a fixed name (tag "Handled_Except")
  Reported,     ///< counted and logged with LogError (tag "Except" or "AV Except")
  LaunchError,  ///< an access violation during start: " Application Launch Error " was shown,
                ///< the program goes on
  Terminate,    ///< the program must end now
};

/// An exception as the handler sees it: its class name and message, and the names of the form
/// and control that were active when it was raised.
struct ExceptionInfo {
  QString className;
  QString message;
  QString form;
  QString control;
};

/// Sorts an exception that reached the event loop, by substring of its message, into those to
/// hide, to name, to report and those that end the program. Updates the counters, LastErrorText,
/// LastForm, LastControl and the log of `state.log`; any dialog goes through MessageDlgA.
ExceptionOutcome MyExceptionHandler(AppState& state, platform::Dialogs& dialogs,
                                    const ExceptionInfo& exception);

/// An exception nobody needs to see: ExceptionNumber + 1, LogError(">> " + text), tag
/// "Hid Except".
void HiddenExcept(Log& log, const QString& text);

/// Runs `body` at a command boundary. When it throws, the exception is swallowed by the
/// handled-exception convention with `shortText` (such as "Load Folders") and the result is
/// false; true when `body` finished.
bool RunHandled(Log& log, const QString& shortText, const std::function<void()>& body);

/// The handler's view of a caught exception: its demangled type name and what() text.
ExceptionInfo DescribeException(const std::exception& exception, const QString& form,
                                const QString& control);

}  // namespace vt::app
