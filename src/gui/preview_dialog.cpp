// SPDX-License-Identifier: MIT
#include "gui/preview_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/graphic_import.h"
#include "canvas/dithering.h"
#include "canvas/graphic_loading.h"
#include "platform/file_picker.h"

namespace vt::gui {
namespace {

constexpr canvas::DitherMethod kMethods[] = {
    canvas::DitherMethod::FloydSteinberg, canvas::DitherMethod::Nearest,
    canvas::DitherMethod::Stucki,         canvas::DitherMethod::Sierra,
    canvas::DitherMethod::JaJuNi,         canvas::DitherMethod::SteveArche,
    canvas::DitherMethod::Burkes};
constexpr canvas::DitherReduction kReductions[] = {canvas::DitherReduction::Monochrome,
                                                   canvas::DitherReduction::GrayScale};

}  // namespace

PreviewPane::PreviewPane(canvas::GraphicPreview& preview, QWidget* parent)
    : QWidget(parent), preview_(preview) {
  setObjectName(QStringLiteral("PreviewPane"));
  setMinimumSize(240, 180);
}

QRect PreviewPane::PictureRect() const {
  if (!preview_.HasPicture()) return {};
  const QSize picture = preview_.Picture().size();
  double scale = std::min(double(width()) / picture.width(), double(height()) / picture.height());
  if (scale >= 1) scale = std::floor(scale);  // small pictures in whole pixels
  const QSize shown(std::max(1, int(picture.width() * scale)),
                    std::max(1, int(picture.height() * scale)));
  return QRect(QPoint((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown);
}

QPoint PreviewPane::ToPicture(QPoint panePosition) const {
  const QRect shown = PictureRect();
  if (shown.isEmpty()) return {};
  const QSize picture = preview_.Picture().size();
  const int x =
      int(std::floor(double(panePosition.x() - shown.x()) * picture.width() / shown.width()));
  const int y =
      int(std::floor(double(panePosition.y() - shown.y()) * picture.height() / shown.height()));
  return {std::clamp(x, 0, picture.width() - 1), std::clamp(y, 0, picture.height() - 1)};
}

void PreviewPane::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().dark());
  const QRect shown = PictureRect();
  if (shown.isEmpty()) return;
  painter.drawImage(shown, preview_.Picture());
  const QRect area = preview_.Area();
  if (area.isEmpty()) return;
  const double sx = double(shown.width()) / preview_.Picture().width();
  const double sy = double(shown.height()) / preview_.Picture().height();
  const QRect outline(shown.x() + int(area.x() * sx), shown.y() + int(area.y() * sy),
                      std::max(1, int(area.width() * sx)), std::max(1, int(area.height() * sy)));
  painter.setPen(QPen(Qt::red, 1, Qt::DashLine));
  painter.drawRect(outline.adjusted(0, 0, -1, -1));
}

void PreviewPane::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !preview_.HasPicture()) return;
  const QPoint at = ToPicture(event->position().toPoint());
  if (selecting_) {
    drag_ = Drag::Drawing;
    preview_.SelectArea(at, at);
  } else if (preview_.Area().contains(at)) {
    drag_ = Drag::Moving;
  } else {
    return;
  }
  anchor_ = at;
  update();
}

void PreviewPane::mouseMoveEvent(QMouseEvent* event) {
  if (drag_ == Drag::None) return;
  const QPoint at = ToPicture(event->position().toPoint());
  if (drag_ == Drag::Drawing) {
    preview_.SelectArea(anchor_, at);
  } else {
    // The anchor follows what the area really did, so that it stays under the mouse when the
    // area stops at an edge.
    const QPoint before = preview_.Area().topLeft();
    preview_.MoveArea(at - anchor_);
    anchor_ += preview_.Area().topLeft() - before;
  }
  update();
}

void PreviewPane::mouseReleaseEvent(QMouseEvent*) {
  if (drag_ == Drag::None) return;
  drag_ = Drag::None;
  Q_EMIT areaChanged();
}

GraphicPreviewDialog::GraphicPreviewDialog(app::AppState& state, app::Services& services,
                                           QWidget* parent)
    : QDialog(parent), state_(state), services_(services) {
  setObjectName(QStringLiteral("LoadGraphicPreview"));
  setWindowTitle(QStringLiteral("Load Graphic with Preview"));
  auto* layout = new QHBoxLayout;

  // The graphic files of the project's graphics folder, or any file.
  auto* left = new QVBoxLayout;
  files_ = new QListWidget(this);
  files_->setMinimumWidth(180);
  const QDir folder(state_.settings.folder.BFP);
  for (const QFileInfo& f : folder.entryInfoList(QDir::Files, QDir::Name | QDir::IgnoreCase)) {
    if (!canvas::IsGraphicExtension(f.suffix())) continue;
    auto* item = new QListWidgetItem(f.fileName(), files_);
    item->setData(Qt::UserRole, f.absoluteFilePath());
  }
  connect(files_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
    if (item) OpenFile(item->data(Qt::UserRole).toString());
  });
  browse_ = new QPushButton(QStringLiteral("Browse..."), this);
  connect(browse_, &QPushButton::clicked, this, [this] {
    const std::optional<QString> path = services_.filePicker.OpenFile(
        windowTitle(), state_.settings.folder.BFP,
        {QStringLiteral("Pictures (*.bmp *.png *.jpg *.jpeg *.gif *.tif *.tiff *.ico *.svg)")});
    if (path) OpenFile(*path);
  });
  left->addWidget(files_, 1);
  left->addWidget(browse_);
  layout->addLayout(left);

  auto* middle = new QVBoxLayout;
  pane_ = new PreviewPane(preview_, this);
  size_ = new QLabel(this);
  hint_ = new QLabel(this);
  middle->addWidget(pane_, 1);
  middle->addWidget(size_);
  middle->addWidget(hint_);
  layout->addLayout(middle, 1);
  connect(pane_, &PreviewPane::areaChanged, this, [this] {
    if (selectArea_->isChecked()) selectArea_->setChecked(false);  // the next drag moves it
    pane_->SetSelecting(false);
    if (!preview_.Area().isEmpty()) {
      state_.log.StatusBarAndLog(QString::fromLatin1(canvas::texts::kMoveArea));
    }
    Sync();
  });

  auto* right = new QVBoxLayout;
  selectArea_ = new QPushButton(QStringLiteral("Select Area"), this);
  selectArea_->setCheckable(true);
  connect(selectArea_, &QPushButton::clicked, this, [this](bool checked) {
    state_.log.StatusBarAndLog(QString::fromLatin1(canvas::texts::kSelectAreaButton));
    if (!app::CheckPreviewPicture(state_, services_, preview_)) checked = false;
    selectArea_->setChecked(checked);
    pane_->SetSelecting(checked);
  });
  resize_ = new QPushButton(QStringLiteral("Resize to fit in Work Canvas"), this);
  connect(resize_, &QPushButton::clicked, this, [this] {
    state_.log.StatusBarAndLog(QString::fromLatin1(canvas::texts::kResizeToFitButton));
    if (!app::CheckPreviewPicture(state_, services_, preview_)) return;
    preview_.ResizeToFit(QSize(state_.canvas.Width(), state_.canvas.Height()));
    Sync();
  });
  right->addWidget(selectArea_);
  right->addWidget(resize_);

  ditherOnLoad_ = new QCheckBox(QStringLiteral("Dithering on load"), this);
  ditherOnLoad_->setChecked(state_.blackWhite.DitherOnLoad);
  right->addWidget(ditherOnLoad_);
  // The import angle (ImportTrackbarChanges): pictures other than GIF and SVG are turned by it
  // before they are sized to the canvas.
  auto* angleRow = new QHBoxLayout;
  angleRow->addWidget(new QLabel(QStringLiteral("Import rotation"), this));
  importAngle_ = new QSpinBox(this);
  importAngle_->setRange(-180, 180);
  importAngle_->setSuffix(QStringLiteral(" \u00b0"));
  importAngle_->setValue(state_.ImportAngle);
  angleRow->addWidget(importAngle_);
  right->addLayout(angleRow);
  const auto radioGroup = [this, right](const QString& title, QButtonGroup*& group) {
    auto* box = new QGroupBox(title, this);
    box->setLayout(new QVBoxLayout);
    group = new QButtonGroup(box);
    right->addWidget(box);
    return box;
  };
  const canvas::DitherParameters& chosen = state_.blackWhite.PreviewDither;
  QGroupBox* reductionBox = radioGroup(QStringLiteral("Reduction"), reductions_);
  for (const canvas::DitherReduction r : kReductions) {
    auto* radio = new QRadioButton(canvas::DitherReductionCaption(r), reductionBox);
    radio->setChecked(r == chosen.reduction);
    reductions_->addButton(radio, static_cast<int>(r));
    reductionBox->layout()->addWidget(radio);
  }
  QGroupBox* methodBox = radioGroup(QStringLiteral("Method"), methods_);
  for (const canvas::DitherMethod m : kMethods) {
    auto* radio = new QRadioButton(canvas::DitherMethodCaption(m), methodBox);
    radio->setChecked(m == chosen.method);
    methods_->addButton(radio, static_cast<int>(m));
    methodBox->layout()->addWidget(radio);
  }
  right->addStretch();
  layout->addLayout(right);

  auto* buttons = new QDialogButtonBox(this);
  import_ = buttons->addButton(QStringLiteral("Import"), QDialogButtonBox::AcceptRole);
  buttons->addButton(QDialogButtonBox::Cancel);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    if (!app::CheckPreviewPicture(state_, services_, preview_)) return;
    ApplyDitherChoices();
    accept();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* outer = new QVBoxLayout(this);
  outer->addLayout(layout, 1);
  outer->addWidget(buttons);
  Sync();
}

bool GraphicPreviewDialog::OpenFile(const QString& path) {
  const bool opened = app::ShowPreview(state_, services_, preview_, path);
  selectArea_->setChecked(false);
  pane_->SetSelecting(false);
  Sync();
  return opened;
}

void GraphicPreviewDialog::ApplyDitherChoices() {
  state_.blackWhite.DitherOnLoad = ditherOnLoad_->isChecked();
  state_.ImportAngle = importAngle_->value();
  state_.blackWhite.PreviewDither = {
      static_cast<canvas::DitherMethod>(methods_->checkedId()),
      static_cast<canvas::DitherReduction>(reductions_->checkedId())};
}

void GraphicPreviewDialog::Sync() {
  if (preview_.HasPicture()) {
    const QRect area = preview_.Area();
    QString text = QStringLiteral("%1 :  %2 x %3")
                       .arg(QFileInfo(preview_.Path()).fileName())
                       .arg(preview_.Picture().width())
                       .arg(preview_.Picture().height());
    if (!area.isEmpty()) {
      text += QStringLiteral("   area %1,%2,%3,%4")
                  .arg(area.left())
                  .arg(area.top())
                  .arg(area.right())
                  .arg(area.bottom());
    }
    size_->setText(text);
  } else {
    size_->setText(QString::fromLatin1(canvas::texts::kSelectGraphicFile));
  }
  hint_->setText(preview_.Area().isEmpty() ? QString()
                                           : QString::fromLatin1(canvas::texts::kMoveArea));
  pane_->update();
}

}  // namespace vt::gui
