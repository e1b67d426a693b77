// SPDX-License-Identifier: MIT
#include "app/pixel_mode_commands.h"

#include "app/messages.h"
#include "app/state.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogType;
using settings::PixelMode;
using settings::PixelModeInfo;

/// The canvas question of a mode change. False when the user refused, which stops the
/// selection.
bool ConfirmCanvasClear(AppState& state, Services& services, const PixelModeInfo& info) {
  canvas::WorkCanvas& canvas = state.canvas;
  if (settings::IsMonochromeMode(info.mode)) {
    if (canvas.IsBlackAndWhite()) return true;
    const int answer = MessageDlgA(
        state, services.dialogs, QStringLiteral(" Work Canvas will be cleared ! "),
        QStringLiteral("Warning"), 0, Buttons::Ok | Buttons::Cancel, DialogType::Warning);
    if (answer != Answer::Ok) {
      state.log.StatusBarAndLog(QStringLiteral("Canceled !"));
      return false;
    }
    canvas.Clear();
    return true;
  }
  if (*info.clearQuestion == '\0') return true;  // the 16M modes take any picture
  const int colors = canvas.CountColors(2);
  const bool blank = colors == 0 || (colors == 1 && canvas.Pixel(0, 0) == canvas::kWhite);
  if (blank) return true;
  const int answer = MessageDlgA(state, services.dialogs, QString::fromLatin1(info.clearQuestion),
                                 QStringLiteral("Canvas not cleared"), 0,
                                 Buttons::Yes | Buttons::No, DialogType::Confirmation);
  if (answer != Answer::Yes) return false;
  canvas.Clear();
  return true;
}

}  // namespace

bool SelectPixelMode(AppState& state, Services& services, PixelMode mode,
                     const PixelModeGate& gate) {
  const PixelModeInfo& info = settings::Info(mode);
  state.log.Laction = QStringLiteral("Select Pixel Mode");
  if (gate.editorForbidsChange && gate.editorForbidsChange(state, services)) return false;
  if (!state.modes.SettingsLoadInProgress && settings::CurrentPixelMode(state.settings) == mode) {
    return false;
  }
  // PixelsPerByte follows from the flags set below, so there is nothing to store beforehand.
  if (!ConfirmCanvasClear(state, services, info)) return false;
  if (gate.keepColorMode && gate.keepColorMode(state, services)) return false;
  settings::ApplyPixelMode(state.settings.pixel, mode);
  if (*info.logText != '\0') state.log.StatusBarAndLog(QString::fromLatin1(info.logText));
  return true;
}

std::optional<PixelMode> ReselectStoredPixelMode(AppState& state, Services& services) {
  const std::optional<PixelMode> stored = settings::StoredPixelMode(state.settings);
  if (!stored) return std::nullopt;
  const bool wasLoading = state.modes.SettingsLoadInProgress;
  state.modes.SettingsLoadInProgress = true;
  const bool selected = SelectPixelMode(state, services, *stored);
  state.modes.SettingsLoadInProgress = wasLoading;
  if (!selected) return std::nullopt;
  return stored;
}

}  // namespace vt::app
