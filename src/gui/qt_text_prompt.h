// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "platform/text_prompt.h"

class QInputDialog;

namespace vt::gui {

/// Lines of text asked with a Qt input dialog. The dialog stands over the modal dialog that is
/// up, else over the active window, else over the parent given here.
class QtTextPrompt final : public platform::TextPrompt {
 public:
  /// `parent` may be null and may be set later.
  explicit QtTextPrompt(QWidget* parent = nullptr) : parent_(parent) {}
  void SetParent(QWidget* parent) { parent_ = parent; }

  /// Runs the dialog of `request` modally: the line confirmed, or none when it was cancelled.
  std::optional<QString> Ask(const platform::TextRequest& request) override;

  /// The dialog Ask runs for `request`, not yet shown.
  static std::unique_ptr<QInputDialog> MakeDialog(const platform::TextRequest& request,
                                                  QWidget* parent);

 private:
  QPointer<QWidget> parent_;
};

}  // namespace vt::gui
