// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <deque>
#include <optional>

#include "platform/file_picker.h"

namespace vt::test {

/// A file picker for tests: records every request and answers from a queue. With an empty queue
/// it answers as a user who cancels.
class ScriptedFilePicker final : public platform::FilePicker {
 public:
  std::optional<QStringList> Pick(const platform::FileRequest& request) override {
    requests.append(request);
    if (answers_.empty()) return std::nullopt;
    const Answer answer = answers_.front();
    answers_.pop_front();
    if (!answer.chosen) return std::nullopt;
    return answer.paths;
  }
  /// Queues one chosen path (a file or a folder) for the next request.
  void Choose(const QString& path) { answers_.push_back({true, {path}}); }
  /// Queues several chosen files for the next request.
  void ChooseFiles(const QStringList& paths) { answers_.push_back({true, paths}); }
  /// Queues a cancel for the next request.
  void Cancel() { answers_.push_back({false, {}}); }

  QList<platform::FileRequest> requests;

 private:
  struct Answer {
    bool chosen = false;  ///< false: the user cancels
    QStringList paths;
  };
  std::deque<Answer> answers_;
};

}  // namespace vt::test
