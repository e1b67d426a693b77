// SPDX-License-Identifier: MIT
#pragma once

// Selecting a pixel mode as a command: the gates of the shell, the question before a canvas
// that the new mode cannot hold is cleared, then the mode's keys and its log line.

#include <functional>
#include <optional>

#include "settings/pixel_modes.h"

namespace vt::app {

struct AppState;
struct Services;

/// Optional checks the application shell plugs into a mode selection. Each returns true when
/// the change must not happen. Empty functions allow the change.
struct PixelModeGate {
  /// Asked first: an editor or tool is in a state that forbids a change of mode.
  std::function<bool(AppState&, Services&)> editorForbidsChange;
  /// Asked after the canvas question, before any flag changes: the active tool keeps the mode.
  std::function<bool(AppState&, Services&)> keepColorMode;
};

/// Selects `mode`: the gate, the already-active exit (skipped while
/// `state.modes.SettingsLoadInProgress`), the canvas question of the mode ("Canvas not
/// cleared"; monochrome warns " Work Canvas will be cleared ! " when the canvas is not black
/// and white), then settings::ApplyPixelMode and the mode's log line. Returns true when the
/// mode was set; a refusal at any step leaves every setting unchanged.
bool SelectPixelMode(AppState& state, Services& services, settings::PixelMode mode,
                     const PixelModeGate& gate = {});

/// Selects the mode stored in the flags again (settings::StoredPixelMode), with the settings
/// load flag on. Returns the mode selected, or empty when no test matched (the flags then stay
/// as they are).
std::optional<settings::PixelMode> ReselectStoredPixelMode(AppState& state, Services& services);

}  // namespace vt::app
