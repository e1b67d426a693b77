// SPDX-License-Identifier: MIT
#include "platform/console/console_dialogs.h"

namespace vt::platform {

int ConsoleAnswer(const DialogRequest& request) {
  if (!request.customCaptions.isEmpty()) {
    const QList<DialogButton> buttons = ButtonsOf(request);
    return buttons.isEmpty() ? Answer::Ok : buttons.first().answer;
  }
  return (request.buttons & Buttons::Ok) ? Answer::Ok : Answer::Yes;
}

int ConsoleDialogs::Show(const DialogRequest& request) {
  const QString caption =
      CaptionOf(request);
  // The system breaks message lines with a carriage return; a terminal needs line feeds.
  QString text = request.text;
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  out_ << caption << ": " << text << '\n';
  out_.flush();
  return ConsoleAnswer(request);
}

}  // namespace vt::platform
