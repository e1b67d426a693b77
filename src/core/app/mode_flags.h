// SPDX-License-Identifier: MIT
#pragma once

namespace vt::app {

/// Which tool owns the Work Canvas and the editors, plus the few run-wide switches that many
/// commands read. All false at start except the two artwork flags. Whether a floating selection
/// waits to be pasted is not kept here: the canvas knows it (SelectionPending below).
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
  bool AnimationPlaying = false;  ///< the animation player runs: undo and redo wait
  bool ArtworkSaved = true;
  bool ArtworkFresh = true;
  bool QuitInProgress = false;
  bool ConsoleMode = false;   ///< no windows: dialogs answer by themselves (headless runs)
  bool ExitOnRepeat = false;  ///< console: the same message twice in a row ends the run
  bool QuitNoSave = false;    ///< the next quit routine asks nothing ("No Saves")
  bool NoSaveOnQuit = false;  ///< the stop saves neither folders nor log
  bool SettingsLoadInProgress = false;  ///< mode selectors skip their "already active" exit
  bool ModeChangeDisabled = false;      ///< the pixel mode commands are greyed (DisableModeChange)
  bool VectorLoadFile = false;          ///< "Load File" inside Vector Design: the load goes ahead
  bool ExportRunning = false;           ///< an export writes the editor: its tab name stays
};

}  // namespace vt::app
