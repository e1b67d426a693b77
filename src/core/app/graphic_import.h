// SPDX-License-Identifier: MIT
#pragma once

// Taking a picture onto the Work Canvas as a command: the load of a file, the reload of the last
// one, the picture of the preview dialog, each sized, checked against the pixel mode and left
// floating as the selection layer.

#include <QImage>
#include <QString>

#include "canvas/graphic_preview.h"

namespace vt::app {

struct AppState;
struct Services;

/// ImportImageMDIChild: "Newfile.bmp" gives an empty picture of the canvas size; a folder says
/// " Please select file to import in the File List ! "; an unknown extension
/// "<name> is is not a valid graphic file ! ", a failing decoder "Graphic loading Error", both
/// under "Loading a Graphic Error". The decoded picture (the first frame of a GIF) goes on
/// through AssignInPutBitmap and the file becomes the last canvas file. A GIF of one frame then
/// tells " Single layered GIF loaded, no animation ! " under "Info"; of several, the log says
/// that only the first was taken. False when the canvas was left as it was.
bool ImportImageMDIChild(AppState& state, Services& services, const QString& path, bool isFolder);

/// AssignInPutBitmap: turns the picture by the import angle first (RotateImport; not a GIF or
/// an SVG, told by the state's ImportExtension; a turn too large warns
/// " Picture too large for rotation \r " under "Warning" and the picture stays as it was), then
/// dithers it when dithering on load is on (with the
/// preview's method and reduction), hides the threshold tool, sizes the picture to the drawn
/// selection frame or the canvas (asking whether to resize when it is larger), checks it
/// against the pixel mode (CheckColorsSelection: in monochrome a picture that is not black and
/// white floats unconverted with the threshold tool open), and makes it the floating layer at
/// the frame's corner.
void AssignInPutBitmap(AppState& state, Services& services, QImage picture, bool fromFile);

/// The load of a graphic file onto the canvas, as the load dialog, the explorer and the recent
/// files do it: the mode gate (CheckMode), a layer still floating is pasted or discarded first
/// (or the load stops), then ImportImageMDIChild; a loaded file goes to the recent files.
/// Returns whether the picture was loaded.
bool LoadGraphicFile(AppState& state, Services& services, const QString& path);

/// ReloadLastCanvasButtonClick: loads again, by LoadGraphicFile, the graphic file last loaded
/// onto the canvas (in a new run: the newest picture of the recent files). Without one: " No
/// graphic file has been loaded onto the Work Canvas yet ! "; a file since gone: its path and " not
/// found ! "; both under "Reload Last Canvas File".
bool ReloadLastCanvasButtonClick(AppState& state, Services& services);

/// ShowPreview: opens `path` in the preview. A file that does not decode leaves the preview as
/// it was, with "Graphic loading Error" under "Loading a Graphic Error" (the reason is logged).
bool ShowPreview(AppState& state, Services& services, canvas::GraphicPreview& preview,
                 const QString& path);

/// Tells "Please select the graphic file to import" under "No Graphic Selected" when the
/// preview shows no picture. Returns whether one is shown.
bool CheckPreviewPicture(AppState& state, Services& services,
                         const canvas::GraphicPreview& preview);

/// The preview's import: without a picture CheckPreviewPicture tells why and nothing happens.
/// Otherwise the mode gate (CheckMode), a layer still floating is pasted or discarded first,
/// the artwork takes the file's name, and the selected part goes through AssignInPutBitmap.
/// Returns whether it was taken.
bool ImportGraphicPreview(AppState& state, Services& services,
                          const canvas::GraphicPreview& preview);

}  // namespace vt::app
