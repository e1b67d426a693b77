// SPDX-License-Identifier: MIT
#pragma once

// The commands of the Output+Settings menu that the shell owns: the pixel mode commands with
// their gate, the output width commands, and the recent files list.

#include <QString>
#include <QStringList>

#include "convert/output_width.h"
#include "settings/pixel_modes.h"

namespace vt::app {

struct AppState;
struct Services;

/// A pixel mode command (MonochromeMenuClick, Colors65535MenuClick, ...): CheckMode with 0, the
/// already-active exit, the canvas question, ResetAndCheckColorMode, then the mode is set and
/// its line logged. True when the mode was set.
bool PixelModeMenuClick(AppState& state, Services& services, settings::PixelMode mode);

/// The output width commands (N8bitformatClick, N16bitformatClick, N32bitformatClick,
/// HexOutput1Click, IntelHexOutputClick): one of the five width keys, then the output names
/// follow (UpdateOutputFilename). Refused during font creation with "Please exit current Font
/// Creation before changing then Output format !" ("Warning"). True when the width was set.
bool SelectOutputWidth(AppState& state, Services& services, convert::WordWidthChoice width);
/// The width keys of `width` (ApplyWordWidth), then the output names follow the new target
/// (".bin", ".hex" or the source extension). No checks: the command is SelectOutputWidth.
void SetOutputWidth(AppState& state, convert::WordWidthChoice width);
/// The width the keys hold: Binary with DHec, IntelHex with DIHec, else the word bits.
convert::WordWidthChoice CurrentOutputWidth(const settings::OutputWidthSettings& width);

/// AddMRUF: puts `path` first in the recent files, unless it is already listed (it keeps its
/// place) or is one of the program's scratch pictures.
void AddMRUF(AppState& state, const QString& path);
/// DeleteMRUF: drops `path` from the list.
void DeleteMRUF(AppState& state, const QString& path);
/// UpdateMRUFs: the entries to show, "&1 path" ... at most 20, ending before the first entry
/// whose file is gone.
QStringList UpdateMRUFs(const AppState& state);
/// The path of a shown entry ("&3 /x/y.bmp" -> "/x/y.bmp").
QString MRUFPath(const QString& item);

/// What opening a recent file does, by its extension in upper case.
enum class RecentFileAction {
  LoadHex,
  LoadSource,
  OpenPicture,
  OpenEditableFont,
  LoadScript,
  None
};
RecentFileAction RecentFileActionFor(const QString& path, const QString& fexts);

/// The ribbon pages, in order.
enum class RibbonPage {
  Windows,
  GlcdGraphic,
  TextHexEditors,
  GlcdVectors,
  GlcdFonts,
  GlcdTouch,
  BatchProcessing,
  Animation,
  Connectivity,
  ColorPalette,
};
/// ToolBarPagerChange: the caption of the shared file list for the page shown ("Recent Files >"
/// on the pages without files of their own; the fonts page has a second, "< Editable Scripts").
QStringList FileListCaptions(RibbonPage page);

}  // namespace vt::app
