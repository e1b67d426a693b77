// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

namespace vt::platform {

/// One request to the user for a line of text.
struct TextRequest {
  QString caption;      ///< window title
  QString label;        ///< what the line is for, shown beside it
  QString defaultText;  ///< the line as it stands at the start
};

/// Asks the user for a line of text. Implementations: a Qt input dialog (GUI), one that refuses
/// every request (headless runs), and a scripted one for tests.
class TextPrompt {
 public:
  virtual ~TextPrompt() = default;
  /// The line as the user confirmed it; none when the user cancelled.
  virtual std::optional<QString> Ask(const TextRequest& request) = 0;
};

/// A text prompt that refuses every request, as if the user cancelled: headless runs.
class NoTextPrompt final : public TextPrompt {
 public:
  std::optional<QString> Ask(const TextRequest&) override { return std::nullopt; }
};

}  // namespace vt::platform
