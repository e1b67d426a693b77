// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <functional>

#include "platform/key_poll.h"

namespace vt::gui {

/// The desktop's Escape poll for long loops. Each poll lets the event pump run now and then
/// (so that the window repaints and the progress moves) and reports an Escape pressed since
/// the previous poll. `onPoll` is told every poll, for the progress bar.
class EscapePoll final : public QObject, public platform::KeyPoll {
  Q_OBJECT
 public:
  EscapePoll();
  ~EscapePoll() override;
  bool EscapePressed() override;
  std::function<void()> onPoll;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QElapsedTimer sincePump_;
  bool pressed_ = false;
};

}  // namespace vt::gui
