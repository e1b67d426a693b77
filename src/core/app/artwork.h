// SPDX-License-Identifier: MIT
#pragma once

// Saving the artwork: the Work Canvas as a picture file named after the artwork.

#include <QString>

namespace vt::app {

struct AppState;
struct Services;

/// Where the artwork is saved: the pictures folder, under the artwork name (nbmfn).
QString ArtworkPath(const AppState& state, const Services& services);

/// SaveArtworkButtonClick (also the "Save+Quit" of the stop): writes the Work Canvas to
/// ArtworkPath atomically, in the format of the name's extension (BMP without one). A picture
/// loaded onto the canvas is never replaced without asking: when the path is one of them, the
/// user is asked " <path> \r is a picture the artwork was loaded from. \r Replace it with the
/// artwork ? " (title "Save Artwork"); No saves beside it under the first free name
/// "<name> (artwork <n>).<ext>". Logs "Artwork saved to " + path and sets ArtworkSaved.
/// False, after telling why, when the picture cannot be written.
bool SaveArtworkButtonClick(AppState& state, Services& services);

}  // namespace vt::app
