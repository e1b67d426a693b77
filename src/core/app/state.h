// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "app/log.h"
#include "app/mode_flags.h"
#include "app/modes.h"
#include "batch/text_batch.h"
#include "canvas/palettes.h"
#include "canvas/threshold.h"
#include "canvas/work_canvas.h"
#include "convert/reorder.h"
#include "platform/hex_buffer.h"
#include "platform/text_buffer.h"
#include "settings/settings.h"

namespace vt::platform {
class Dialogs;
class Folders;
class FileUse;
class KeyPoll;
class Clock;
class FilePicker;
class TextPrompt;
}  // namespace vt::platform

namespace vt::app {

/// File names of the current run.
struct FileNames {
  QString OutputFileName;      ///< name of the file export writes, no folder
  QString SourceFileName;      ///< text source name with its language's extension
  QString SourceFileExtUpper;  ///< that extension in upper case
  QString SettingsFile;        ///< the active .LCD file (CurrentSettingsFile)
  QString InitFolder;          ///< folder of the init file, with a trailing separator
  QString LastCanvasFile;      ///< the graphic file last loaded onto the canvas, full path
  QStringList SourcePictures;  ///< every picture file loaded onto the canvas, full paths
  QString ImportExtension;     ///< upper-case extension, with its dot, of the picture last read
  bool SettingsUnreadable = false;  ///< the settings file could not be taken: never saved over
  int SettingsLockDepth = 0;        ///< settings locks nested in this state (SettingsFileLock)
  bool SettingsLockHeld = false;    ///< the outermost of them holds the file's lock
  bool FirstRun = false;
  bool StartFromDefaults = false;  ///< the init file named no usable project
};

/// The text batches' state of the application: what outlives a run and what the windows show.
struct BatchState {
  batch::HexDelimiters hex;  ///< HexPrefix and HexSuffix, set by a batch for the next runs too
  QStringList report;        ///< the "Report" tab of the editors
  bool BatchSilent = false;  ///< a run over many files: no report per line, no notice
  bool BatchRunning = false;
  bool showReport = false;  ///< "View Report" was chosen: the editors show the Report tab
  // Batch Edition: the batch file in the editor and its lines as last written there.
  QString editPath;
  QStringList editLines;
  bool editChanged = false;
};

/// Everything of application scope: one per window, per command-line run, per test.
struct AppState {
  settings::Settings settings;
  ModeFlags modes;
  canvas::WorkCanvas canvas;
  canvas::BlackWhiteTools blackWhite;  ///< threshold slider and dither parameters
  int ImportAngle = 0;           ///< the import rotation slider, degrees clockwise, -180 to 180
  convert::ReorderGrid reorder;  ///< the "Data Bits Rearrangement" table
  FileNames files;
  Log log;
  platform::TextBuffer text;      ///< the text editor's current document
  platform::HexBuffer hex;        ///< the hex editor's bytes (binary output)
  canvas::PaletteState palettes;  ///< the palettes of the current pixel mode
  int ModeChoice = 0;             ///< answer code of the last dialog
  QString LastMessageText;        ///< console mode: the previous message, to detect repeats
  ModeRoutineTable modeRoutines;  ///< enter and leave routines the tools plug in, by SpecialMode
  ShellHooks shellHooks;          ///< what the stop sequence asks of the windows
  QString PaletteCaption = kDefaultPaletteCaption;
  QString ThirdEditorTabName = QStringLiteral("Script");  ///< a mode names it after its script
  QStringList MRUList;  ///< recent files, full paths, newest first
  BatchState batch;
};

/// A floating selection layer is not yet pasted to the Work Canvas. Asked of the canvas itself,
/// so that it can never disagree with the layer.
inline bool SelectionPending(const AppState& state) {
  return state.canvas.Selection().IsFloating();
}

/// The platform, injected.
struct Services {
  platform::Dialogs& dialogs;
  platform::Folders& folders;
  platform::FileUse& fileUse;
  platform::KeyPoll& escape;
  platform::Clock& clock;
  platform::FilePicker& filePicker;  ///< files and folders the user chooses
  platform::TextPrompt& textPrompt;  ///< lines of text the user types
};

}  // namespace vt::app
