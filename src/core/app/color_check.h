// SPDX-License-Identifier: MIT
#pragma once

// The check of an imported picture against the pixel mode, before it floats as the selection
// layer: monochrome leaves a picture that is not black and white to the threshold tool, gray
// and colour modes offer to convert or reduce a picture with more colours than the palette.

#include <QImage>

namespace vt::app {
struct AppState;
struct Services;
}  // namespace vt::app

namespace vt::app {

namespace texts {
inline constexpr char kConvertToGrayscaleTitle[] = "Convert to Grayscale";
inline constexpr char kConvertedToGrayscale[] = "Converted to Grayscale";
inline constexpr char kInfoTitle[] = "Info";
}  // namespace texts

/// What the check did to the picture.
enum class ColorCheck {
  Kept,              ///< nothing to do: the picture fits the mode (gray modes: made gray)
  ThresholdPending,  ///< monochrome: the picture waits for the threshold or a dithering
  Converted,         ///< "Convert": gray conversion in gray modes, then ConvertToMyColor
  Reduced,           ///< "Reduce": the dither engine onto the mode's palette
  Cancelled,         ///< "Cancel": the picture stays as it came
};

/// CheckColorsSelection on a picture about to float.
///  - Monochrome: a pixel neither black nor white gives ThresholdPending; the picture is kept.
///  - 16M colours: Kept.
///  - Gray modes: the colours are counted (CheckGray256). Up to the mode's levels the picture is
///    made gray (DoGrayscale). Above, the question "Convert or Reduce to Grayscale Palette \r" + n
///    + " gray levels" under "Convert to Grayscale" with the buttons Reduce, Convert, Cancel.
///    Convert and Reduce make the picture gray first, then map it (ConvertToMyColor) or dither
///    it with the Dithering menu's method onto the levels; both end with the status "Converted
///    to Grayscale" and " Picture has been converted to " + n + " grey levels" under "Info".
///  - Colour modes: the same question as "Convert or Reduce to Color Palette \r" + n + " colors";
///    Convert tells " Picture has been converted to " + n + " colors", Reduce " Picture has
///    been converted from " + a + " to " + b + " colors", Cancel " Picture has " + a + " colors",
///    all under "Info".
/// An Escape during the map stops it with " Processing interrupted by escape !"; the picture
/// stays as far as it came.
ColorCheck CheckColorsSelection(AppState& state, Services& services, QImage& picture);

/// CheckGray256: counts the distinct colours of `picture` and reports "Found = " + n in the
/// status bar. Returns n.
int CheckGray256(AppState& state, const QImage& picture);

}  // namespace vt::app
