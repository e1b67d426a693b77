// SPDX-License-Identifier: MIT
#include "canvas/graphic_preview.h"

#include <QFileInfo>
#include <algorithm>

#include "app/messages.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/state.h"
#include "canvas/graphic_loading.h"
#include "canvas/threshold.h"

namespace vt::canvas {

Result<bool> GraphicPreview::Open(const QString& path, QSize canvas) {
  Result<DecodedGraphic> decoded = DecodeGraphic(path, canvas);
  if (!decoded) return decoded.error();
  path_ = path;
  picture_ = decoded.value().frames.first();
  area_ = QRect();
  return true;
}

void GraphicPreview::SelectArea(QPoint a, QPoint b) {
  if (!HasPicture()) return;
  const QRect between(QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
                      QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y())));
  area_ = between.intersected(picture_.rect());
}

void GraphicPreview::MoveArea(QPoint delta) {
  if (area_.isEmpty()) return;
  const QRect bounds = picture_.rect();
  const int x = std::clamp(area_.x() + delta.x(), 0, bounds.width() - area_.width());
  const int y = std::clamp(area_.y() + delta.y(), 0, bounds.height() - area_.height());
  area_.moveTo(x, y);
}

void GraphicPreview::ResizeToFit(QSize canvas) {
  if (!HasPicture()) return;
  picture_ = PropotionalResize(Selected(), canvas);
  area_ = QRect();
}

QImage GraphicPreview::Selected() const {
  return area_.isEmpty() ? picture_ : picture_.copy(area_);
}

bool ShowPreview(app::AppState& state, app::Services& services, GraphicPreview& preview,
                 const QString& path) {
  const Result<bool> opened =
      preview.Open(path, QSize(state.canvas.Width(), state.canvas.Height()));
  if (opened) return true;
  state.log.StatusBarAndLog(opened.error().ToString());
  app::MessageDlgA(state, services.dialogs, QStringLiteral("Graphic loading Error"),
                   QStringLiteral("Loading a Graphic Error"), 0, platform::Buttons::Ok,
                   platform::DialogType::Error);
  return false;
}

bool CheckPreviewPicture(app::AppState& state, app::Services& services,
                         const GraphicPreview& preview) {
  if (preview.HasPicture()) return true;
  app::MessageDlgA(state, services.dialogs, QString::fromLatin1(texts::kSelectGraphicFile),
                   QString::fromLatin1(texts::kNoGraphicSelectedTitle), 0, platform::Buttons::Ok,
                   platform::DialogType::Warning);
  return false;
}

bool ImportGraphicPreview(app::AppState& state, app::Services& services,
                          const GraphicPreview& preview) {
  if (!CheckPreviewPicture(state, services, preview)) return false;
  if (app::CheckMode(state, services, 0)) return false;
  if (!ResolveFloatingSelection(state, services, BlackWhiteConversions(state))) return false;
  state.settings.output.nbmfn = QFileInfo(preview.Path()).fileName();
  state.files.ImportExtension = QLatin1Char('.') + QFileInfo(preview.Path()).suffix().toUpper();
  app::defineOutputFileName(state);
  AssignInPutBitmap(state, services, preview.Selected(), false);
  return true;
}

}  // namespace vt::canvas
