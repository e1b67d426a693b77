// SPDX-License-Identifier: MIT
#pragma once

// The table of modes and the mode gate. One mode at a time owns the Work Canvas and the editors;
// Normal Mode is the state with none active. The tools that own a mode plug their enter and
// leave routines into AppState::modeRoutines; without them a mode is entered and left with the
// shell's own part only (flags, status, mode-change lock).

#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <span>

#include "app/mode_flags.h"

namespace vt::app {

struct AppState;
struct Services;

enum class SpecialMode {
  VectorDesign,
  FontScript,
  EditableFont,
  TouchPanel,
  Fields,
  Animation,
  HeaderEdit,
  BatchEdition,
};
inline constexpr int kSpecialModeCount = 8;

/// One row of the table of modes.
struct ModeInfo {
  SpecialMode mode;
  const char* name;          ///< "Vector Design", ...
  int checkModeRequest;      ///< what the entering command passes to CheckMode; -1: no check
  bool toggle;               ///< one command enters and leaves (Animation, Header Edit)
  const char* enterHandler;  ///< the command that enters it
  const char* leaveHandler;  ///< its quit routine
};

std::span<const ModeInfo> ModeTable();
const ModeInfo& Info(SpecialMode mode);
/// The flag of `mode` in the shared flags.
bool& ModeFlag(ModeFlags& flags, SpecialMode mode);
bool ModeFlag(const ModeFlags& flags, SpecialMode mode);

/// What a tool plugs in for its mode. Both routines may be empty.
struct ModeRoutines {
  /// Runs after the shell's checks, before the flag is set; false keeps Normal Mode.
  std::function<bool(AppState&, Services&)> enter;
  /// The tool's own leaving: asks to save unless QuitNoSave, and so on. False when the user
  /// cancelled: the mode stays.
  std::function<bool(AppState&, Services&)> leave;
};
using ModeRoutineTable = std::array<ModeRoutines, kSpecialModeCount>;

/// What the shell asks of the rest of the program at the stop and in the vector quit question.
struct ShellHooks {
  /// SaveArtworkButtonClick: saves the canvas picture; false when it failed or was cancelled.
  std::function<bool(AppState&, Services&)> saveArtwork;
  /// FormPositions: writes the window positions into the settings.
  std::function<void(AppState&)> formPositions;
  /// Closes the tool palette, the explorer, the grids form and the canvas window, in this order.
  std::function<void(AppState&)> closeForms;
};

/// Enters `mode` after CheckMode with the mode's request (a stop ends it): the tool's enter
/// routine, then the flag and SpecialModeActive; Vector Design locks the pixel mode commands.
/// Returns whether the mode is now active.
bool EnterMode(AppState& state, Services& services, SpecialMode mode);
/// Leaves `mode` by its quit routine: the tool's leave routine (Vector Design has the shell's
/// own question when no tool plugged one in); then the flag and SpecialModeActive go false,
/// QuitNoSave is cleared, the status shows "Normal Mode" and the third editor tab is "Script"
/// again. False when the user cancelled.
bool LeaveMode(AppState& state, Services& services, SpecialMode mode);
/// The toggles (AnimationModeButtonClick, EditHeaderButtonClick): leaves an active mode, else
/// enters it.
bool ToggleMode(AppState& state, Services& services, SpecialMode mode);
/// The active mode, in the order QuitModeButtonClick tests them; empty in Normal Mode.
std::optional<SpecialMode> ActiveMode(const ModeFlags& flags);

/// The mode gate. `requested` names the mode the caller wants to stay in or enter: 0 none,
/// 1 touch, 2 font script, 4 segmented font, 5 editable font, 6 vector design, 7 vector
/// programming, 10 entering vectors. True means the caller must stop. The first button of a
/// question quits the mode (the caller still stops), "No Saves" quits without questions, "Load
/// File" lets a load go ahead inside Vector Design (false, VectorLoadFile set).
bool CheckMode(AppState& state, Services& services, int requested);

/// Leaves whatever mode is active, testing batch edition, font script, fields, touch, editable
/// font, header edit, animation, vector design in this order. False when the user cancelled.
bool QuitModeButtonClick(AppState& state, Services& services);
/// "Exit Special Mode" of the main menu: "No special mode active" when none is.
void ExitmenuButtonClick(AppState& state, Services& services);
/// The same without the message.
void ExitSpecialMode1Click(AppState& state, Services& services);

/// Asked by a pixel mode command after the canvas question. True means the pixel mode must not
/// change: an animation, a batch edition, a font script or a touch script is active ("OK"), or
/// a floating selection is still to be pasted. "Quit Mode" leaves the mode and lets the change
/// go on.
bool ResetAndCheckColorMode(AppState& state, Services& services);

/// Grey or free the pixel mode commands of the Output+Settings menu.
void DisableModeChange(AppState& state);
void EnableModeChange(AppState& state);

/// Texts of the table of modes' status.
inline const QString kNormalModeText = QStringLiteral("Normal Mode");
inline const QString kDefaultPaletteCaption = QStringLiteral("Current Palette is Default");

}  // namespace vt::app
