// SPDX-License-Identifier: MIT
#include "gui/escape_poll.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace vt::gui {
namespace {

constexpr int kPumpEveryMs = 40;

}  // namespace

EscapePoll::EscapePoll() {
  if (QCoreApplication* app = QCoreApplication::instance()) app->installEventFilter(this);
  sincePump_.start();
}

EscapePoll::~EscapePoll() {
  if (QCoreApplication* app = QCoreApplication::instance()) app->removeEventFilter(this);
}

bool EscapePoll::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    pressed_ = true;
  }
  return QObject::eventFilter(watched, event);
}

bool EscapePoll::EscapePressed() {
  if (onPoll) onPoll();
  if (sincePump_.elapsed() >= kPumpEveryMs) {
    // Input only: a command must not be re-entered from its own loop.
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    sincePump_.restart();
  }
  const bool pressed = pressed_;
  pressed_ = false;
  return pressed;
}

}  // namespace vt::gui
