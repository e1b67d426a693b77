// SPDX-License-Identifier: MIT
#include "app/messages.h"

#include <QDateTime>

#include "app/state.h"

namespace vt::app {

namespace {

namespace Answer = platform::Answer;
using platform::DialogRequest;
using platform::DialogType;

// The log line of a standard answer; empty for the answers that leave none.
QString StandardAnswerLine(int answer) {
  switch (answer) {
    case Answer::No:
      return QStringLiteral("Dialog Button No");
    case Answer::Yes:
      return QStringLiteral("Dialog Button Yes");
    case Answer::Ok:
      return QStringLiteral("Dialog Button OK");
    case Answer::Cancel:
      return QStringLiteral("Dialog Button Cancel");
    case Answer::Retry:
      return QStringLiteral("Dialog Button Retry");
    default:
      return {};
  }
}

// The log line of an answer to a dialog with custom captions.
QString CustomAnswerLine(int answer) {
  switch (answer) {
    case Answer::Ok:
      return QStringLiteral("Dialog Button Paste Now");
    case Answer::Retry:
      return QStringLiteral("Dialog Button Move ");
    case Answer::Cancel:
      return QStringLiteral("Dialog Button Cancel");
    default:
      return {};
  }
}

// Without windows nobody answers: the message goes to the report and the answer is Ok when the
// set offers it, else Yes. The same message twice in a row writes the report and, with
// ExitOnRepeat, asks the run to end.
int AnswerInConsole(AppState& state, const QString& text, int buttons) {
  Log& log = state.log;
  log.Report << QStringLiteral(">> Message Dialog :") << text << QString();
  if (text == state.LastMessageText) {
    log.WriteReport(state.files.InitFolder, QDateTime::currentDateTime());
    if (state.modes.ExitOnRepeat) {
      log.TerminateRequested = true;
      return Answer::Ok;
    }
  }
  state.LastMessageText = text;
  return (buttons & platform::Buttons::Ok) ? Answer::Ok : Answer::Yes;
}

// Keeps the text of an error dialog apart, unless the caller asked to skip it once.
void KeepErrorMessage(Log& log, const QString& text, DialogType type) {
  if (type == DialogType::Error && !log.NoLogErrorOnce) log.ErrorMessages.append(text);
  log.NoLogErrorOnce = false;
}

DialogRequest BuildRequest(const AppState& state, const QString& text, const QString& caption,
                           int buttons, DialogType type) {
  DialogRequest request;
  request.text = text;
  request.caption = caption;
  request.type = type;
  request.buttons = buttons;
  request.desktopCentered = state.settings.other.Cendes;
  request.centerOnMainWindow = state.settings.other.CendeM;
  return request;
}

// Shows the request and keeps what the user chose: the answer and the "*" check box.
int ShowAndKeep(AppState& state, platform::Dialogs& dialogs, const DialogRequest& request) {
  const int answer = dialogs.Show(request);
  if (const auto centred = dialogs.LastDesktopCentered()) {
    state.settings.other.Cendes = *centred;
  }
  return answer;
}

// Logs `line` unless it is empty.
void LogIfAny(Log& log, const QString& line) {
  if (!line.isEmpty()) log.StatusBarAndLog(line);
}

// The captions of the buttons up to `lastCaptionIndex`; the buttons after them stay empty.
QStringList UsedCaptions(const QStringList& captions, int lastCaptionIndex) {
  QStringList used = captions.mid(0, qMax(0, lastCaptionIndex + 1));
  if (used.isEmpty()) used << QString();  // keeps the request in custom-caption form
  return used;
}

}  // namespace

int MessageDlgA(AppState& state, platform::Dialogs& dialogs, const QString& text,
                const QString& caption, int helpContext, int buttons, DialogType type) {
  state.log.StatusBarAndLog(QStringLiteral("Message :") + text);
  if (state.modes.ConsoleMode) {
    state.ModeChoice = AnswerInConsole(state, text, buttons);
    return state.ModeChoice;
  }
  KeepErrorMessage(state.log, text, type);
  state.log.StatusBarAndLog(text);
  const int answer = ShowAndKeep(state, dialogs, BuildRequest(state, text, caption, buttons, type));
  LogIfAny(state.log, StandardAnswerLine(answer));
  state.ModeChoice = answer;
  return answer;
}

int MyMessageDialog(AppState& state, platform::Dialogs& dialogs, const QString& text,
                    DialogType type, int lastCaptionIndex, const QStringList& captions, int buttons,
                    const QString& title) {
  state.log.StatusBarAndLog(QStringLiteral("Message Dialog :") + text);
  if (state.modes.ConsoleMode) {
    state.ModeChoice = AnswerInConsole(state, text, buttons);
    return state.ModeChoice;
  }
  KeepErrorMessage(state.log, text, type);
  DialogRequest request = BuildRequest(state, text, title, buttons, type);
  request.customCaptions = UsedCaptions(captions, lastCaptionIndex);
  const int answer = ShowAndKeep(state, dialogs, request);
  LogIfAny(state.log, CustomAnswerLine(answer));
  state.ModeChoice = answer;
  return answer;
}

int AppMessenger::MessageDlgA(const QString& text, const QString& caption, int helpContext,
                              int buttons, DialogType type) {
  return app::MessageDlgA(state_, dialogs_, text, caption, helpContext, buttons, type);
}

int AppMessenger::MyMessageDialog(const QString& text, DialogType type, int lastCaptionIndex,
                                  const QStringList& captions, int buttons, const QString& title) {
  return app::MyMessageDialog(state_, dialogs_, text, type, lastCaptionIndex, captions, buttons,
                              title);
}

void AppMessenger::StatusBarAndLog(const QString& text) { state_.log.StatusBarAndLog(text); }
void AppMessenger::AppendLog(const QString& line) { state_.log.Append(line); }
void AppMessenger::SetLaction(const QString& action) { state_.log.Laction = action; }
void AppMessenger::HandledExcept(const QString& shortText) { state_.log.HandledExcept(shortText); }

}  // namespace vt::app
