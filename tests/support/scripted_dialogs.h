// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <deque>
#include <optional>

#include "platform/dialogs.h"

namespace vt::test {

/// A dialog implementation for tests: records every request and answers from a queue. With an
/// empty queue it answers Ok when the set holds Ok, otherwise the first custom button (1), otherwise
/// Yes.
class ScriptedDialogs final : public platform::Dialogs {
 public:
  int Show(const platform::DialogRequest& request) override {
    shown.append(request);
    if (!answers_.empty()) {
      const int answer = answers_.front();
      answers_.pop_front();
      return answer;
    }
    if (!request.customCaptions.isEmpty()) return platform::Answer::Ok;
    if (request.buttons & platform::Buttons::Ok) return platform::Answer::Ok;
    return platform::Answer::Yes;
  }
  /// The "Desktop centered" check box as the user leaves it; none by default.
  std::optional<bool> LastDesktopCentered() const override { return desktopCentered; }
  /// Queues the answer for the next dialog.
  void Answer(int answer) { answers_.push_back(answer); }
  /// Texts of every dialog shown so far.
  QStringList Texts() const {
    QStringList texts;
    for (const auto& r : shown) texts << r.text;
    return texts;
  }

  QList<platform::DialogRequest> shown;
  std::optional<bool> desktopCentered;

 private:
  std::deque<int> answers_;
};

}  // namespace vt::test
