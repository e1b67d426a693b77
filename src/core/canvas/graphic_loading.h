// SPDX-License-Identifier: MIT
#pragma once

// Taking a picture file onto the Work Canvas: decoding (with limits, so that a truncated,
// corrupt or enormous file is refused and the canvas stays as it was), sizing to the canvas or
// the drawn selection frame, and the floating layer the picture arrives in.

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <optional>

#include "app/state.h"
#include "util/error.h"

namespace vt::canvas {

/// Pictures larger than this many pixels are refused before any pixel is decoded.
inline constexpr qint64 kMaxGraphicPixels = 64LL * 1024 * 1024;

/// A decoded picture file: one frame, or the frames of a GIF with their delays.
struct DecodedGraphic {
  QString ImportExtension;  ///< upper-case extension with its dot: ".PNG"
  QList<QImage> frames;     ///< 24-bit (Format_RGB32), at least one
  QList<int> delays;        ///< GIF only: milliseconds per frame
};

/// Decodes `path` by its extension: GIF (every frame), JPEG, PNG, ICO, BMP, TIFF through the
/// image readers, SVG rendered at `svgSize`. Transparent pixels become white. Fails with the
/// file in the error for an unknown extension, an unreadable or truncated file, or a picture of
/// more than kMaxGraphicPixels.
Result<DecodedGraphic> DecodeGraphic(const QString& path, QSize svgSize);
/// The same over bytes already read; `suffix` chooses the decoder, `path` names the errors.
Result<DecodedGraphic> DecodeGraphicBytes(const QByteArray& bytes, const QString& suffix,
                                          QSize svgSize, const QString& path);
/// Whether the loader takes files of this extension (without its dot, any case).
bool IsGraphicExtension(const QString& suffix);

/// The picture scaled by the smaller of width/picture width and height/picture height, aspect
/// kept, smoothed, standing at 0,0.
QImage PropotionalResize(const QImage& picture, QSize limit);

/// RotateImport: the picture turned `angle` degrees clockwise about its centre, on a white
/// ground large enough to hold all of it. A turn whose picture would pass kMaxGraphicPixels
/// gives nothing (the caller keeps the picture as it was).
std::optional<QImage> RotateImport(const QImage& picture, int angle);

/// ImportImageMDIChild: "Newfile.bmp" gives an empty picture of the canvas size; a folder says
/// " Please select file to import in the File List ! "; an unknown extension
/// "<name> is is not a valid graphic file ! ", a failing decoder "Graphic loading Error", both
/// under "Loading a Graphic Error". The decoded picture (the first frame of a GIF) goes on
/// through AssignInPutBitmap and the file becomes the last canvas file. A GIF of one frame then
/// tells " Single layered GIF loaded, no animation ! " under "Info"; of several, the log says
/// that only the first was taken. False when the canvas was left as it was.
bool ImportImageMDIChild(app::AppState& state, app::Services& services, const QString& path,
                         bool isFolder);

/// AssignInPutBitmap: turns the picture by the import angle first (RotateImport; not a GIF or
/// an SVG, told by the state's ImportExtension; a turn too large warns
/// " Picture too large for rotation \r " under "Warning" and the picture stays as it was), then
/// dithers it when dithering on load is on (with the
/// preview's method and reduction), hides the threshold tool, sizes the picture to the drawn
/// selection frame or the canvas (asking whether to resize when it is larger), checks it
/// against the pixel mode (CheckColorsSelection: in monochrome a picture that is not black and
/// white floats unconverted with the threshold tool open), and makes it the floating layer at
/// the frame's corner.
void AssignInPutBitmap(app::AppState& state, app::Services& services, QImage picture,
                       bool fromFile);

/// The load of a graphic file onto the canvas, as the load dialog, the explorer and the recent
/// files do it: the mode gate (CheckMode), a layer still floating is pasted or discarded first
/// (or the load stops), then ImportImageMDIChild; a loaded file goes to the recent files.
/// Returns whether the picture was loaded.
bool LoadGraphicFile(app::AppState& state, app::Services& services, const QString& path);

/// ReloadLastCanvasButtonClick: loads again, by LoadGraphicFile, the graphic file last loaded
/// onto the canvas (in a new run: the newest picture of the recent files). Without one: " No
/// graphic file has been loaded onto the Work Canvas yet ! "; a file since gone: its path and " not
/// found ! "; both under "Reload Last Canvas File".
bool ReloadLastCanvasButtonClick(app::AppState& state, app::Services& services);

/// CalcCloseCrop: the smallest rectangle holding every pixel that is not of the colour of
/// pixel (0,0). Only 24 and 32-bit pictures; others fail with
/// "Incorrect bit depth, bitmap must be 24-bit!".
Result<QRect> CalcCloseCrop(const QImage& picture);

}  // namespace vt::canvas
