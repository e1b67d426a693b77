// SPDX-License-Identifier: MIT
#pragma once

#include <QTextStream>

#include "platform/dialogs.h"

namespace vt::platform {

/// Dialogs for runs without windows: each message is printed as its caption and its text, and
/// answered at once as nobody is there to choose: the first button when the captions are the
/// caller's own, else Ok when the set offers it, else Yes.
class ConsoleDialogs final : public Dialogs {
 public:
  /// Prints to `out` (standard error in the command-line tool); the stream must outlive this.
  explicit ConsoleDialogs(QTextStream& out) : out_(out) {}
  int Show(const DialogRequest& request) override;

 private:
  QTextStream& out_;
};

/// The answer a console gives to `request` (see ConsoleDialogs).
int ConsoleAnswer(const DialogRequest& request);


}  // namespace vt::platform
