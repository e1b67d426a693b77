// SPDX-License-Identifier: MIT
#pragma once

// "Load Graphic with Preview": a picture file shown before it is taken, where the user may draw
// an area to take only that part, move the area, and resize the picture to fit the canvas. What
// is taken then goes onto the canvas as any loaded picture does.

#include <QImage>
#include <QRect>
#include <QString>

#include "util/error.h"

namespace vt::canvas {

namespace texts {
inline constexpr char kNoGraphicSelectedTitle[] = "No Graphic Selected";
inline constexpr char kSelectGraphicFile[] = "Please select the graphic file to import";
inline constexpr char kSelectAreaButton[] = "Select Area in Preview Button";
inline constexpr char kMoveArea[] = "Move the preselected area";
inline constexpr char kResizeToFitButton[] = "Resize to fit in Work Canvas Button ";
}  // namespace texts

/// The picture of the preview and the area drawn on it. Invariant: the area, when not empty,
/// lies inside the picture.
class GraphicPreview {
 public:
  /// Decodes the first frame of `path` (an SVG at `canvas` size). On failure the preview keeps
  /// what it showed and the error names the file.
  Result<bool> Open(const QString& path, QSize canvas);
  bool HasPicture() const { return !picture_.isNull(); }
  /// The picture as shown: the file's, or its resized part after ResizeToFit.
  const QImage& Picture() const { return picture_; }
  const QString& Path() const { return path_; }

  /// The area between two corners given in picture pixels, in any order, both inclusive,
  /// clipped to the picture. Empty when no picture is shown.
  void SelectArea(QPoint a, QPoint b);
  /// Moves the area by `delta`, stopping at the picture's edges; its size stays.
  void MoveArea(QPoint delta);
  void ClearArea() { area_ = QRect(); }
  QRect Area() const { return area_; }

  /// BMPresize: the area (or the whole picture) scaled by PropotionalResize to fit `canvas`
  /// becomes the picture shown; the area is cleared.
  void ResizeToFit(QSize canvas);
  /// What the import takes: the area when one is drawn, else the whole picture.
  QImage Selected() const;

 private:
  QString path_;
  QImage picture_;
  QRect area_;
};

}  // namespace vt::canvas
