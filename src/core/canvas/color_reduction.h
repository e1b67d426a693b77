// SPDX-License-Identifier: MIT
#pragma once

// Colour reduction of pictures to the palette of the pixel mode: loading the mode's palette
// (custom file, default file or the built-in default), the picture conversions, the gray
// conversion and the colour checks, and the palette commands of the menu.

#include <QImage>
#include <QString>

#include "canvas/dithering.h"
#include "canvas/palettes.h"
#include "platform/key_poll.h"
#include "settings/pixel_modes.h"
#include "util/error.h"

namespace vt::platform {
class Messenger;
}  // namespace vt::platform

namespace vt::canvas {

/// The mode of the settings, monochrome when none is set.
settings::PixelMode ModeOf(const settings::Settings& settings);

/// Base + suffix of the custom palette of `mode` beside `settingsFile` ("panel.LCD" gives
/// "panel_65536.pal"); empty when the mode has none.
QString CustomPaletteFile(const QString& settingsFile, settings::PixelMode mode);
/// The default palette file of `mode` in the folder of `settingsFile`; empty when none.
QString DefaultPaletteFile(const QString& settingsFile, settings::PixelMode mode);

/// Loads the palette of the mode of `settings` into `palettes` unless it is loaded already for
/// this mode and settings file. A large palette is the custom file beside `settingsFile` when
/// it exists ("Custom Color Palette loaded", "Current Palette is Custom"), else the default
/// file when it exists, else the built-in default ("Default Color Palette Loaded", for 256 gray
/// "Default Grayscale Color Palette Loaded", "Current Palette is Default"). A file with the
/// wrong number of lines is refused with " 12 bit palette file seem to be corrupted ! " (title
/// "Color Palette Error", log "12 bit Palette corrupted !"), a line that is no colour the same
/// way; the previous palette then stays if it has the mode's size, else the built-in default is
/// taken. Large palettes are sorted, and copied to SmallPalette. Returns false after a refusal.
bool LoadModePalette(const settings::Settings& settings, const QString& settingsFile,
                     PaletteState& palettes, platform::Messenger& messenger, bool force = false);

/// How a conversion ended.
enum class ConversionStatus { Done, Interrupted, NoConversion };

// Each conversion below takes `referencePaths`: true runs its plain reference form (the nearest
// colour by a scan of the window, the colour index by a linear search, the answers and the
// colour count kept in standard containers), which gives the same picture or count.

/// ConvertToNearestColor: every pixel of `image` (Format_RGB32) to its nearest palette colour,
/// by NearestColor in the large modes and by a search of the whole palette in the small ones;
/// each distinct colour is searched once. Monochrome and 16M: nothing is done. Escape is polled
/// once a row. palettes.lastIndex takes the index of the last answer.
ConversionStatus ConvertToNearestColor(QImage& image, PaletteState& palettes,
                                       settings::PixelMode mode, platform::KeyPoll& escape,
                                       bool referencePaths = false);
/// ConvertToMyColor: the map conversion, each distinct non-black colour through
/// NearestColorKill on the mode's palette (black stays black). 16M: nothing is done.
ConversionStatus ConvertToMyColor(QImage& image, const PaletteState& palettes,
                                  settings::PixelMode mode, platform::KeyPoll& escape,
                                  bool referencePaths = false);
/// DoGrayscale: Y = (R*77 + G*150 + B*29) >> 8 for every channel.
void DoGrayscale(QImage& image);
/// Number of pixels whose colour is not in `palette`.
long long CountUnknownColors(const QImage& image, const Palette& palette,
                             bool referencePaths = false);
/// The same through an index of the palette (whose form chooses the path).
long long CountUnknownColors(const QImage& image, const ColorIndexer& palette);
/// Whether some pixel's colour is not in the indexed palette; stops at the first.
bool HasUnknownColor(const QImage& image, const ColorIndexer& palette);

/// Number of distinct colours of a picture; the count stops above `limit`.
int CountPictureColors(const QImage& image, int limit = 1 << 24, bool referencePaths = false);

/// The reduction offered after an import: the error-diffusion engine with `method`, each value
/// going to its palette colour by the same rule as ConvertToNearestColor, so that the picture
/// ends holding palette colours only. Monochrome and 16M: nothing is done.
void ReduceToPalette(QImage& image, PaletteState& palettes, settings::PixelMode mode,
                     DitherMethod method, bool referencePaths = false);

/// A picture reduced the way loading reduces it: in a gray mode the gray conversion first;
/// then, when it holds more colours than the mode has, ConvertToNearestColor. Monochrome and
/// 16M pictures are left as they are.
void ReduceLikeLoading(QImage& image, PaletteState& palettes, settings::PixelMode mode,
                       platform::KeyPoll& escape, bool referencePaths = false);
/// The export's reduction: when the picture holds a colour outside the palette,
/// ConvertToNearestColor; then, in 256 colours with more than 236 colours, the same again
/// (which keeps a picture already in the palette).
ConversionStatus ReduceForExport(QImage& image, PaletteState& palettes, settings::PixelMode mode,
                                 platform::KeyPoll& escape, bool referencePaths = false);

/// The file conversions to 256, 4096, 65536 or 262144 colours (`colors`): the picture file
/// read, reduced by nearest colour to the built-in palette of that many colours, written to
/// `outPath` in the format of its extension.
Result<bool> ConvertPictureFileToColors(const QString& inPath, const QString& outPath, int colors,
                                        bool referencePaths = false);

}  // namespace vt::canvas
