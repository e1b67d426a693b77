// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "platform/file_picker.h"

class QFileDialog;

namespace vt::gui {

/// File and folder choices as Qt file dialogs. The dialog stands over the modal dialog that is up,
/// else over the active window, else over the parent given here.
class QtFilePicker final : public platform::FilePicker {
 public:
  /// `parent` may be null and may be set later.
  explicit QtFilePicker(QWidget* parent = nullptr) : parent_(parent) {}
  void SetParent(QWidget* parent) { parent_ = parent; }

  /// Runs the dialog of `request` modally: the chosen paths, or none when it was cancelled.
  std::optional<QStringList> Pick(const platform::FileRequest& request) override;

  /// The dialog Pick runs for `request`, not yet shown.
  static std::unique_ptr<QFileDialog> MakeDialog(const platform::FileRequest& request,
                                                 QWidget* parent);

 private:
  QPointer<QWidget> parent_;
};

}  // namespace vt::gui
