// SPDX-License-Identifier: MIT
#include "gui/threshold_tool.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include "app/canvas_commands.h"
#include "app/threshold_commands.h"
#include "canvas/threshold.h"

namespace vt::gui {

ThresholdTool::ThresholdTool(app::AppState& state, app::Services& services, Runner run,
                             QWidget* parent)
    : QWidget(parent), state_(state), services_(services), run_(std::move(run)) {
  setObjectName(QStringLiteral("BWAdjustementTool"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(4, 2, 4, 2);

  autoPart_ = new QWidget(this);
  auto* autoLayout = new QHBoxLayout(autoPart_);
  autoLayout->setContentsMargins(0, 0, 0, 0);
  dithering_ = new QPushButton(QStringLiteral("Dithering"), autoPart_);
  dithering_->setToolTip(QStringLiteral("AUTO-Conversion to Black and White"));
  autoLayout->addWidget(dithering_);

  manualPart_ = new QWidget(this);
  auto* manualLayout = new QHBoxLayout(manualPart_);
  manualLayout->setContentsMargins(0, 0, 0, 0);
  trackBar_ = new QSlider(Qt::Horizontal, manualPart_);
  trackBar_->setObjectName(QStringLiteral("BWTrackBar"));
  trackBar_->setRange(0, canvas::BlackWhiteTools::kMaxPosition);
  trackBar_->setMinimumWidth(200);
  edit_ = new QSpinBox(manualPart_);
  edit_->setObjectName(QStringLiteral("BlackWhiteEdit"));
  edit_->setRange(0, canvas::BlackWhiteTools::kMaxPosition);
  mid_ = new QPushButton(QStringLiteral(">MID"), manualPart_);
  manualLayout->addWidget(trackBar_, 1);
  manualLayout->addWidget(edit_);
  manualLayout->addWidget(mid_);

  toggle_ = new QPushButton(this);
  paste_ = new QPushButton(QStringLiteral("OK Paste Layer"), this);
  layout->addWidget(toggle_);
  layout->addWidget(autoPart_);
  layout->addWidget(manualPart_, 1);
  layout->addWidget(paste_);
  layout->addStretch();

  connect(trackBar_, &QSlider::valueChanged, this, [this](int position) {
    // While the mouse holds the slider only the number follows; the work waits for release.
    SliderMoved(position, !trackBar_->isSliderDown());
  });
  connect(trackBar_, &QSlider::sliderReleased, this,
          [this] { SliderMoved(trackBar_->value(), true); });
  connect(edit_, &QSpinBox::valueChanged, this, [this](int position) {
    if (!syncing_) trackBar_->setValue(position);
  });
  connect(mid_, &QPushButton::clicked, this, [this] {
    run_(QStringLiteral("B/W Threshold zero Button"), [this] { app::ThresholdMiddle(state_); });
  });
  connect(paste_, &QPushButton::clicked, this, [this] {
    run_(paste_->text(),
         [this] { app::DoPaste(state_, services_, app::BlackWhiteConversions(state_)); });
  });
  connect(dithering_, &QPushButton::clicked, this, [this] {
    run_(QStringLiteral("Perform Dithering"), [this] { app::PerformDithering(state_, services_); });
  });
  connect(toggle_, &QPushButton::clicked, this, [this] { ShowManual(!manual_); });
  ShowManual(true);
  Sync();
}

void ThresholdTool::SliderMoved(int position, bool released) {
  if (syncing_) return;
  run_(QString(),
       [this, position, released] { app::BWTrackBarChange(state_, position, !released); });
}

void ThresholdTool::ShowManual(bool manual) {
  manual_ = manual;
  manualPart_->setVisible(manual);
  autoPart_->setVisible(!manual);
  // The toggle names the other side, the arrow pointing where it goes.
  toggle_->setText(manual ? QStringLiteral("<< Auto") : QStringLiteral("Manual >> "));
}

void ThresholdTool::Sync() {
  syncing_ = true;
  const QSignalBlocker blockSlider(trackBar_);
  const QSignalBlocker blockEdit(edit_);
  if (!trackBar_->isSliderDown()) trackBar_->setValue(state_.blackWhite.Position);
  edit_->setValue(trackBar_->isSliderDown() ? trackBar_->value() : state_.blackWhite.Position);
  syncing_ = false;
}

}  // namespace vt::gui
