// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "app/exceptions.h"
#include "app/state.h"

namespace vt::gui {

/// Runs `command` from a Qt slot, the top of the event loop, where no exception may pass. What
/// the command lets through goes to app::MyExceptionHandler, with the active window and the
/// focused widget named as form and control (object name, else class name). Returns the
/// handler's verdict, or nothing when the command finished.
std::optional<app::ExceptionOutcome> RunAtTop(app::AppState& state, platform::Dialogs& dialogs,
                                              const std::function<void()>& command);

}  // namespace vt::gui
