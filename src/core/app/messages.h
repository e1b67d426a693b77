// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "platform/dialogs.h"
#include "platform/messenger.h"

namespace vt::app {

struct AppState;

/// The central message routine: logs "Message :" and the text, shows it through `dialogs`
/// (or answers by itself in console mode), logs the answer and returns its code, which is also
/// kept in ModeChoice. `buttons` is a Buttons mask, `helpContext` is always 0.
/// An error dialog's text is kept in Log::ErrorMessages unless Log::NoLogErrorOnce is set (the
/// flag is cleared either way). In console mode the message goes to Log::Report, nothing is
/// shown, and the answer is Ok when the set holds Ok, else Yes; the same text twice in a row
/// writes the report into the init folder and, with ExitOnRepeat, sets Log::TerminateRequested.
int MessageDlgA(AppState& state, platform::Dialogs& dialogs, const QString& text,
                const QString& caption, int helpContext, int buttons, platform::DialogType type);

/// The same with button captions of the caller's choosing, logged as "Message Dialog :" and the
/// text. The captions replace those of the set's buttons in order (see platform::ButtonsOf), so
/// with the sets 12 and 44 the first caption answers 1, the second 2, the third 4.
/// `lastCaptionIndex` is the index of the last caption used; later buttons stay without one.
/// `title` names the window; empty gives the title of `type`.
int MyMessageDialog(AppState& state, platform::Dialogs& dialogs, const QString& text,
                    platform::DialogType type, int lastCaptionIndex, const QStringList& captions,
                    int buttons, const QString& title = QString());

/// The messenger of the lower layers over the application state: messages go through
/// MessageDlgA and MyMessageDialog above, log lines to `state.log`. It refers to both; it lives
/// no longer than the command that made it.
class AppMessenger final : public platform::Messenger {
 public:
  AppMessenger(AppState& state, platform::Dialogs& dialogs) : state_(state), dialogs_(dialogs) {}

  int MessageDlgA(const QString& text, const QString& caption, int helpContext, int buttons,
                  platform::DialogType type) override;
  int MyMessageDialog(const QString& text, platform::DialogType type, int lastCaptionIndex,
                      const QStringList& captions, int buttons, const QString& title) override;
  void StatusBarAndLog(const QString& text) override;
  void AppendLog(const QString& line) override;
  void SetLaction(const QString& action) override;
  void HandledExcept(const QString& shortText) override;

 private:
  AppState& state_;
  platform::Dialogs& dialogs_;
};

}  // namespace vt::app
