// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <deque>
#include <optional>

#include "platform/text_prompt.h"

namespace vt::test {

/// A text prompt for tests: records every request and answers from a queue. With an empty queue
/// it answers as a user who cancels.
class ScriptedTextPrompt final : public platform::TextPrompt {
 public:
  std::optional<QString> Ask(const platform::TextRequest& request) override {
    requests.append(request);
    if (answers_.empty()) return std::nullopt;
    std::optional<QString> answer = answers_.front();
    answers_.pop_front();
    return answer;
  }
  /// Queues the line the user confirms at the next request.
  void Type(const QString& line) { answers_.push_back(line); }
  /// Queues a cancel for the next request.
  void Cancel() { answers_.push_back(std::nullopt); }

  QList<platform::TextRequest> requests;

 private:
  std::deque<std::optional<QString>> answers_;
};

}  // namespace vt::test
