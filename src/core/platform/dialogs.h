// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

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
  int buttons = Buttons::Ok;  ///< bit mask of Buttons
  QStringList customCaptions;  ///< when not empty, these captions replace the standard buttons
};

/// Shows modal messages. Implementations: Qt message boxes (GUI), the console (headless runs)
/// and a scripted one for tests that records every request and returns queued answers.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// Shows the request and returns one of the Answer codes.
  virtual int Show(const DialogRequest& request) = 0;
};

}  // namespace vt::platform
