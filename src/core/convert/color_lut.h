// SPDX-License-Identifier: MIT
#pragma once

// "Export RGB to Color Look Up table": the palette of the current mode as an array of colour
// constants in the text editor, in place of the picture data.

#include <QString>

#include "canvas/raster.h"
#include "settings/settings.h"

namespace vt::convert {

/// One line of the table: the colour as a constant (hexadecimal with 6 digits, "0x" in front for
/// "X", "0" in front and "h" after for "H", VALpref and VALSUF round them for "+H+"; decimal in
/// the decimal and binary formats, VALpref and VALSUF round it for "+B+" and "+D+"), the end
/// mark unless `last` with dellas, and unless Nodcom the index comment: "   //" + index with C
/// comments, "   " + CommentText + index otherwise.
QString ColorLutLine(const settings::Settings& settings, canvas::Color color, int index, bool last);

}  // namespace vt::convert
