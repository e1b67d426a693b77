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

/// CalcCloseCrop: the smallest rectangle holding every pixel that is not of the colour of
/// pixel (0,0). Only 24 and 32-bit pictures; others fail with
/// "Incorrect bit depth, bitmap must be 24-bit!".
Result<QRect> CalcCloseCrop(const QImage& picture);

}  // namespace vt::canvas
