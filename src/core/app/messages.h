// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "platform/dialogs.h"

namespace vt::app {

struct AppState;

/// The central message routine: logs "Message :" and the text, shows it through `dialogs`
/// (or answers by itself in console mode), logs the answer and returns its code.
/// `buttons` is a Buttons mask, `helpContext` is always 0.
int MessageDlgA(AppState& state, platform::Dialogs& dialogs, const QString& text,
                const QString& caption, int helpContext, int buttons, platform::DialogType type);

/// The same with button captions of the caller's choosing: the first caption answers 1, the
/// second 2, the third 4. `lastCaptionIndex` is the index of the last caption used.
int MyMessageDialog(AppState& state, platform::Dialogs& dialogs, const QString& text,
                    platform::DialogType type, int lastCaptionIndex, const QStringList& captions,
                    int buttons);

}  // namespace vt::app
