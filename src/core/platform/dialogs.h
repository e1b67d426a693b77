// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace vt::platform {

/// Kinds of modal message: the number is the code the rest of the system passes around.
enum class DialogType { Warning = 0, Error = 1, Information = 2, Confirmation = 3 };

/// Button sets are bit masks of these.
namespace Buttons {
constexpr int Yes = 1;
constexpr int No = 2;
constexpr int Ok = 4;
constexpr int Cancel = 8;
constexpr int Abort = 16;
constexpr int Retry = 32;
constexpr int Ignore = 64;
}  // namespace Buttons

/// Answer codes a dialog returns. A custom caption list answers 1, 2, 4 for its first, second
/// and third button.
namespace Answer {
constexpr int None = 0;
constexpr int Ok = 1;
constexpr int Cancel = 2;
constexpr int Abort = 3;
constexpr int Retry = 4;
constexpr int Ignore = 5;
constexpr int Yes = 6;
constexpr int No = 7;
}  // namespace Answer

/// One modal question or notice as the user sees it.
struct DialogRequest {
  QString text;
  QString caption;  ///< window title; empty means the platform's title for `type`
  DialogType type = DialogType::Information;
  int buttons = Buttons::Ok;        ///< bit mask of Buttons
  QStringList customCaptions;       ///< when not empty, these captions replace the standard buttons
  bool desktopCentered = false;     ///< centre on the desktop (the "*" check box, setting Cendes)
  bool centerOnMainWindow = false;  ///< else centre on the main window (setting CendeM)
};

/// The window title of a request: its caption, or the title of its type when it has none.
inline QString CaptionOf(const DialogRequest& request) {
  if (!request.caption.isEmpty()) return request.caption;
  switch (request.type) {
    case DialogType::Warning: return QStringLiteral("Warning");
    case DialogType::Error: return QStringLiteral("Error");
    case DialogType::Information: return QStringLiteral("Information");
    case DialogType::Confirmation: return QStringLiteral("Confirm");
  }
  return {};
}

/// The fixed caption of an answer code, whatever the language of the platform: 1 "&Ok",
/// 6 "&Yes"... Codes without a caption give an empty text.
inline QString StandardCaption(int code) {
  switch (code) {
    case 0:
      return QStringLiteral("&None");
    case 1:
      return QStringLiteral("&Ok");
    case 2:
      return QStringLiteral("&Cancel");
    case 3:
      return QStringLiteral("Abort");
    case 4:
      return QStringLiteral("&Retry");
    case 5:
      return QStringLiteral("&Ignore");
    case 6:
      return QStringLiteral("&Yes");
    case 7:
      return QStringLiteral("&No");
    case 12:
      return QStringLiteral("&All");
    case 13:
      return QStringLiteral("Not to all");
    case 14:
      return QStringLiteral("Yes to all");
    default:
      return {};
  }
}

/// One button of a dialog: the code it answers and the caption it shows.
struct DialogButton {
  int answer = Answer::Ok;
  QString caption;
};

/// The buttons of `request` in the order they are shown: the bits of the set in the order Yes,
/// No, Ok, Cancel, Abort, Retry, Ignore. Each answers its standard code and shows its standard
/// caption, unless custom captions are given: then the n-th button shows the n-th custom caption
/// (empty once the list runs out) and still answers its standard code, so that the set 44 gives
/// 1, 2 and 4 for the first, second and third caption.
inline QList<DialogButton> ButtonsOf(const DialogRequest& request) {
  static constexpr int kOrder[][2] = {
      {Buttons::Yes, Answer::Yes},       {Buttons::No, Answer::No},
      {Buttons::Ok, Answer::Ok},         {Buttons::Cancel, Answer::Cancel},
      {Buttons::Abort, Answer::Abort},   {Buttons::Retry, Answer::Retry},
      {Buttons::Ignore, Answer::Ignore},
  };
  QList<DialogButton> result;
  for (const auto& [bit, answer] : kOrder) {
    if (!(request.buttons & bit)) continue;
    const qsizetype index = result.size();
    QString caption = request.customCaptions.isEmpty() ? StandardCaption(answer)
                                                       : request.customCaptions.value(index);
    result.append(DialogButton{answer, caption});
  }
  return result;
}

/// Shows modal messages. Implementations: Qt message boxes (GUI), the console (headless runs)
/// and a scripted one for tests that records every request and returns queued answers.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// Shows the request and returns one of the Answer codes.
  virtual int Show(const DialogRequest& request) = 0;
  /// The state of the "Desktop centered" check box after the last Show, for the caller to keep;
  /// none when the implementation shows no such box.
  virtual std::optional<bool> LastDesktopCentered() const { return std::nullopt; }
};

}  // namespace vt::platform
