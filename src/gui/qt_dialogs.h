// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>

#include "platform/dialogs.h"

namespace vt::gui {

/// Modal messages as Qt message boxes. The buttons carry the system's own captions whatever the
/// language of the desktop, and each answers the code the rest of the system expects
/// (platform::ButtonsOf). A small check box "*" in the corner says whether the box centres on the
/// desktop; its last state is handed back through LastDesktopCentered().
class QtDialogs final : public platform::Dialogs {
 public:
  /// `parent` owns the boxes; it may be null and may be set later.
  explicit QtDialogs(QWidget* parent = nullptr) : parent_(parent) {}
  void SetParent(QWidget* parent) { parent_ = parent; }

  /// Runs the box modally and returns the Answer code of the clicked button. Escape presses
  /// Cancel (else No, else a lone button); a box closed without any click answers Cancel.
  /// Buttons whose custom caption ran out are left out.
  int Show(const platform::DialogRequest& request) override;
  std::optional<bool> LastDesktopCentered() const override { return lastDesktopCentered_; }

  /// The text as the box shows it: the system breaks lines with "\r" (or "\r\n").
  static QString DisplayText(const QString& text);

 private:
  QPointer<QWidget> parent_;
  std::optional<bool> lastDesktopCentered_;
};

}  // namespace vt::gui
