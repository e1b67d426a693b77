// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "platform/messenger.h"
#include "scripted_dialogs.h"

namespace vt::test {

/// A messenger for tests of the layers below the application: every log line is kept as it
/// came (no folding), every message goes to a ScriptedDialogs, which records it and answers
/// from its queue.
class RecordingMessenger final : public platform::Messenger {
 public:
  int MessageDlgA(const QString& text, const QString& caption, int, int buttons,
                  platform::DialogType type) override {
    platform::DialogRequest request;
    request.text = text;
    request.caption = caption;
    request.buttons = buttons;
    request.type = type;
    return dialogs.Show(request);
  }
  int MyMessageDialog(const QString& text, platform::DialogType type, int lastCaptionIndex,
                      const QStringList& captions, int buttons, const QString& title) override {
    platform::DialogRequest request;
    request.text = text;
    request.caption = title;
    request.buttons = buttons;
    request.type = type;
    request.customCaptions = captions.mid(0, lastCaptionIndex + 1);
    return dialogs.Show(request);
  }
  void StatusBarAndLog(const QString& text) override { lines << text; }
  void AppendLog(const QString& line) override { lines << line; }
  void SetLaction(const QString& action) override { laction = action; }
  void HandledExcept(const QString& shortText) override { handled << shortText; }

  ScriptedDialogs dialogs;
  QStringList lines;    ///< log lines in order
  QStringList handled;  ///< short texts of handled exceptions
  QString laction;      ///< the last breadcrumb
};

}  // namespace vt::test
