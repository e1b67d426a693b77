// SPDX-License-Identifier: MIT
#pragma once

// The palette commands of the menu and the canvas colour conversions, with their messages.

#include <QString>

#include "app/export_driver.h"
#include "util/error.h"

namespace vt::app {

struct AppState;
struct Services;

/// canvas::LoadModePalette for the state's settings file and palettes.
bool LoadModePalette(AppState& state, Services& services, bool force = false);

/// "Load A Custom Color Palette": checks that `path` is a palette of the current mode's size,
/// copies it to the custom file of the settings file and loads it.
Result<bool> LoadCustomColorPalette(AppState& state, Services& services, const QString& path);

/// "Export RGB Palette to text file": the current mode's palette as a palette file.
Result<bool> ExportPaletteToText(AppState& state, Services& services, const QString& path);

/// The canvas to the nearest colours of the palette (ConvertToNearestColor), or through the
/// map (ConvertToMyColor); an Escape tells " Processing interrupted by escape !".
void ConvertCanvasToNearestColor(AppState& state, Services& services);
void ConvertCanvasToMyColor(AppState& state, Services& services);
/// "Count colors": "Number Of Colors :" + n under "Count Colors", status "Count Colors : " + n.
int CountColorsCommand(AppState& state, Services& services);
/// "Check colors": "Test successful !" or n + " unknown color(s) found !"; in 16M
/// "24Bit colors Mode !". Returns the unknown pixel count (0 in 16M).
long long CheckColorsButtonClick(AppState& state, Services& services);

/// "Export RGB to Color Look Up table": the palette of the current mode as an array of colour
/// constants in the text editor, in place of the picture data (convert::ColorLutLine). The
/// command: the checks of an export (compression that cannot run here is cleared with
/// "Data compression has been disabled !", title "Confirm"; a floating selection stops it with
/// " Please paste selected area before doing the canvas encoding ! ", title "Warning"), then the
/// editor is cleared and receives the preamble and header of the array "COLORLUT", one line per
/// colour of the mode's palette (LevelCount entries from the first; none in 16M), the array end
/// (Endst) and, unless Noonts, "/* End of Color Look-Up Table (CLUT)  */" (with another comment
/// style: CommentText + " End of Color Look-Up Table (CLUT)  */"). Returns false when stopped.
bool TranslatePalette(AppState& state, Services& services, const CanvasSelection& selection = {});

}  // namespace vt::app
