// SPDX-License-Identifier: MIT
#pragma once

namespace vt::app {

/// Which tool owns the Work Canvas and the editors, plus the few run-wide switches that many
/// commands read. All false at start except the two artwork flags.
struct ModeFlags {
  bool SpecialModeActive = false;
  bool AnimationActive = false;
  bool VectorModeActive = false;  ///< also written to the settings key wve
  bool TouchScriptActive = false;
  bool FontScriptActive = false;
  bool SegmentedFontActive = false;  ///< reserved: tested by the mode gate, never set
  bool EditableFontActive = false;
  bool FieldsScriptActive = false;
  bool HeaderEditActive = false;
  bool BatchEditActive = false;
  bool SelectionPending = false;
  bool ArtworkSaved = true;
  bool ArtworkFresh = true;
  bool QuitInProgress = false;
  bool ConsoleMode = false;  ///< no windows: dialogs answer by themselves (headless runs)
  bool ExitOnRepeat = false;  ///< console: the same message twice in a row ends the run
  bool QuitNoSave = false;
  bool SettingsLoadInProgress = false;  ///< mode selectors skip their "already active" exit
};

}  // namespace vt::app
