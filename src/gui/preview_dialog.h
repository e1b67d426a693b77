// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QList>

#include "app/state.h"
#include "canvas/graphic_preview.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QSpinBox;

namespace vt::gui {

/// The picture of a graphics preview fitted into the pane, with the drawn area outlined. While
/// selecting, a drag draws the area; otherwise a drag that starts inside the area moves it.
class PreviewPane final : public QWidget {
  Q_OBJECT

 public:
  explicit PreviewPane(canvas::GraphicPreview& preview, QWidget* parent = nullptr);

  /// Whether a drag draws a new area ("Select Area" is down).
  void SetSelecting(bool selecting) { selecting_ = selecting; }
  /// Where the picture stands in the pane, in pane pixels.
  QRect PictureRect() const;
  /// The picture pixel under a pane position, clamped to the picture.
  QPoint ToPicture(QPoint panePosition) const;

  QSize sizeHint() const override { return {420, 300}; }

 Q_SIGNALS:
  /// The area was drawn or moved.
  void areaChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  enum class Drag { None, Drawing, Moving };
  canvas::GraphicPreview& preview_;
  bool selecting_ = false;
  Drag drag_ = Drag::None;
  QPoint anchor_;  ///< picture pixel where the drag began (or was last moved to)
};

/// "Load Graphic with Preview": the graphic files of the project's graphics folder (or any file
/// through "Browse..."), the preview of the chosen one, "Select Area" to draw the part to take,
/// "Resize to fit in Work Canvas", and the dithering on load with its own method and reduction.
/// "Import" closes it accepted once a picture is shown; the caller then imports the preview.
/// The logic is the core's GraphicPreview; this is its view.
class GraphicPreviewDialog final : public QDialog {
  Q_OBJECT

 public:
  GraphicPreviewDialog(app::AppState& state, app::Services& services, QWidget* parent = nullptr);

  canvas::GraphicPreview& Preview() { return preview_; }
  /// Shows `path` in the preview (a file that does not decode is told of).
  bool OpenFile(const QString& path);

  QListWidget* Files() const { return files_; }
  PreviewPane* Pane() const { return pane_; }
  /// "Browse...": a picture from any folder.
  QPushButton* BrowseButton() const { return browse_; }
  QPushButton* SelectAreaButton() const { return selectArea_; }
  QPushButton* ResizeButton() const { return resize_; }
  QPushButton* ImportButton() const { return import_; }
  QCheckBox* DitherOnLoadBox() const { return ditherOnLoad_; }
  QSpinBox* ImportAngleBox() const { return importAngle_; }
  QLabel* Hint() const { return hint_; }

  /// Applies the dithering choices of the dialog to the state (the preview's radio groups and
  /// the dithering on load). Done when the dialog is accepted.
  void ApplyDitherChoices();
  /// Follows the preview: the picture, its size and area, the hint.
  void Sync();

 private:
  app::AppState& state_;
  app::Services& services_;
  canvas::GraphicPreview preview_;
  QListWidget* files_ = nullptr;
  PreviewPane* pane_ = nullptr;
  QPushButton* browse_ = nullptr;
  QPushButton* selectArea_ = nullptr;
  QPushButton* resize_ = nullptr;
  QPushButton* import_ = nullptr;
  QCheckBox* ditherOnLoad_ = nullptr;
  QSpinBox* importAngle_ = nullptr;
  QButtonGroup* methods_ = nullptr;
  QButtonGroup* reductions_ = nullptr;
  QLabel* hint_ = nullptr;
  QLabel* size_ = nullptr;
};

}  // namespace vt::gui
