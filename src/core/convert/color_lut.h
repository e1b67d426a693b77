// SPDX-License-Identifier: MIT
#pragma once

// "Export RGB to Color Look Up table": the palette of the current mode as an array of colour
// constants in the text editor, in place of the picture data.

#include <QString>

#include "canvas/raster.h"
#include "convert/export_driver.h"

namespace vt::convert {

/// One line of the table: the colour as a constant (hexadecimal with 6 digits, "0x" in front for
/// "X", "0" in front and "h" after for "H", VALpref and VALSUF round them for "+H+"; decimal in
/// the decimal and binary formats, VALpref and VALSUF round it for "+B+" and "+D+"), the end
/// mark unless `last` with dellas, and unless Nodcom the index comment: "   //" + index with C
/// comments, "   " + CommentText + index otherwise.
QString ColorLutLine(const settings::Settings& settings, canvas::Color color, int index, bool last);

/// The command: the checks of an export (compression that cannot run here is cleared with
/// "Data compression has been disabled !", title "Confirm"; a floating selection stops it with
/// " Please paste selected area before doing the canvas encoding ! ", title "Warning"), then the
/// editor is cleared and receives the preamble and header of the array "COLORLUT", one line per
/// colour of the mode's palette (LevelCount entries from the first; none in 16M), the array end
/// (Endst) and, unless Noonts, "/* End of Color Look-Up Table (CLUT)  */" (with another comment
/// style: CommentText + " End of Color Look-Up Table (CLUT)  */"). Returns false when stopped.
bool TranslatePalette(app::AppState& state, app::Services& services,
                      const CanvasSelection& selection = {});

}  // namespace vt::convert
