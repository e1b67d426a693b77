// SPDX-License-Identifier: MIT
#include "gui/settings_panel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include "app/display_commands.h"
#include "app/modes.h"
#include "app/shell_commands.h"
#include "convert/constant_format.h"
#include "convert/reorder_preview.h"
#include "gui/reorder_preview_view.h"
#include "settings/geometry.h"
#include "settings/key_lookup.h"
#include "settings/pixel_modes.h"

namespace vt::gui {
namespace {

using convert::WordWidthChoice;
const struct {
  WordWidthChoice choice;
  const char* caption;
  const char* key;  ///< the settings key the choice sets
} kWidths[] = {{WordWidthChoice::Bits8, "8 bits", "D8bc"},
               {WordWidthChoice::Bits16, "16 bits", "D16bc"},
               {WordWidthChoice::Bits32, "32 bits", "D32bc"},
               {WordWidthChoice::Binary, "Binary file", "DHec"},
               {WordWidthChoice::IntelHex, "Intel Hex", "DIHec"}};

/// The descriptions of the settings keys `keys`, one line each: the tooltip of a control that
/// edits them.
QString KeysHelp(const QStringList& keys) {
  QStringList lines;
  for (const QString& key : keys) {
    if (const auto found = settings::FindKey(key)) lines << found->Description();
  }
  return lines.join(QLatin1Char('\n'));
}

/// Gives item `index` of `box` the tooltip of the keys it sets.
void SetItemHelp(QComboBox* box, int index, const QStringList& keys) {
  box->setItemData(index, KeysHelp(keys), Qt::ToolTipRole);
}

/// The box shows the tooltip of its current item.
void ShowCurrentItemHelp(QComboBox* box) {
  if (box->currentIndex() >= 0) {
    box->setToolTip(box->itemData(box->currentIndex(), Qt::ToolTipRole).toString());
  }
}

QComboBox* Combo(const char* name) {
  auto* box = new QComboBox;
  box->setObjectName(QString::fromLatin1(name));
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(14);
  return box;
}

void Select(QComboBox* box, const QVariant& data) { box->setCurrentIndex(box->findData(data)); }

}  // namespace

SettingsPanel::SettingsPanel(app::AppState& state, app::Services& services, RunCommand run,
                             QWidget* parent)
    : QDockWidget(QStringLiteral("Output Settings"), parent),
      state_(state),
      services_(services),
      run_(std::move(run)) {
  setObjectName(QStringLiteral("GridsForm"));
  auto* body = new QWidget;
  auto* form = new QFormLayout(body);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);

  mode_ = Combo("PixelMode");
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    mode_->addItem(QString::fromLatin1(info.menuCaption), static_cast<int>(info.mode));
    SetItemHelp(mode_, mode_->count() - 1, settings::ModeFlagKeys(info.flags));
  }
  direction_ = Combo("Direction");
  for (const settings::ScanDirectionInfo& info : settings::ScanDirectionTable()) {
    direction_->addItem(QString::fromLatin1(info.key) + QStringLiteral("  ") +
                            QString::fromLatin1(info.controlHint),
                        static_cast<int>(info.direction));
    SetItemHelp(direction_, direction_->count() - 1, {QString::fromLatin1(info.key)});
  }
  corner_ = Combo("Corner");
  for (const auto c : {settings::OriginCorner::CORN1, settings::OriginCorner::CORN2,
                       settings::OriginCorner::CORN3, settings::OriginCorner::CORN4}) {
    corner_->addItem(settings::OriginCornerText(c), static_cast<int>(c));
    SetItemHelp(corner_, corner_->count() - 1,
                {QStringLiteral("CORN%1").arg(static_cast<int>(c) + 1)});
  }
  bitOrder_ = Combo("BitOrder");
  bitOrder_->addItem(settings::BitOrderCaption(true), true);
  bitOrder_->addItem(settings::BitOrderCaption(false), false);
  bitOrder_->setItemData(0, settings::BigEndianHint(), Qt::ToolTipRole);
  bitOrder_->setToolTip(KeysHelp({QStringLiteral("MSBF")}));
  size_ = Combo("DisplaySize");
  for (const QSize& s : settings::PresetSizes()) {
    size_->addItem(QStringLiteral("%1 x %2").arg(s.width()).arg(s.height()), s);
  }
  size_->setToolTip(KeysHelp({QStringLiteral("GWI"), QStringLiteral("GHI")}));
  width_px_ = new QSpinBox;
  height_px_ = new QSpinBox;
  for (QSpinBox* spin : {width_px_, height_px_}) spin->setRange(1, 4096);
  width_px_->setObjectName(QStringLiteral("CustomWidth"));
  height_px_->setObjectName(QStringLiteral("CustomHeight"));
  width_px_->setToolTip(KeysHelp({QStringLiteral("GWI")}));
  height_px_->setToolTip(KeysHelp({QStringLiteral("GHI")}));
  auto* custom = new QPushButton(QStringLiteral("Set"));
  auto* customRow = new QHBoxLayout;
  customRow->addWidget(width_px_, 1);
  customRow->addWidget(new QLabel(QStringLiteral("x")));
  customRow->addWidget(height_px_, 1);
  customRow->addWidget(custom);
  width_ = Combo("OutputWidth");
  for (const auto& w : kWidths) {
    width_->addItem(QString::fromLatin1(w.caption), static_cast<int>(w.choice));
    SetItemHelp(width_, width_->count() - 1, {QString::fromLatin1(w.key)});
  }
  format_ = Combo("ConstantFormat");
  for (const convert::ConstantFormatInfo& info : convert::ConstantFormatTable()) {
    format_->addItem(QString::fromLatin1(info.label), static_cast<int>(info.format));
  }
  format_->setToolTip(KeysHelp({QStringLiteral("FXHB")}));
  hint_ = new QLabel;
  hint_->setWordWrap(true);

  form->addRow(QStringLiteral("Pixel mode"), mode_);
  form->addRow(QStringLiteral("Data direction"), direction_);
  form->addRow(QStringLiteral("Origin corner"), corner_);
  form->addRow(QStringLiteral("Bit order"), bitOrder_);
  form->addRow(QStringLiteral("Display size"), size_);
  form->addRow(QStringLiteral("Custom size"), customRow);
  form->addRow(QStringLiteral("Output width"), width_);
  form->addRow(QStringLiteral("Data format"), format_);
  form->addRow(hint_);
  preview_ = new ReorderPreviewView;
  form->addRow(preview_);
  setWidget(body);

  Choose(mode_, [this](int i) {
    const auto mode = static_cast<settings::PixelMode>(mode_->itemData(i).toInt());
    run_(QString::fromLatin1(settings::Info(mode).menuCaption),
         [this, mode] { app::PixelModeMenuClick(state_, services_, mode); });
  });
  Choose(direction_, [this](int i) {
    const auto d = static_cast<settings::ScanDirection>(direction_->itemData(i).toInt());
    run_(QString::fromLatin1(settings::Info(d).controlHint),
         [this, d] { app::SelectScanDirection(state_, services_, d); });
  });
  Choose(corner_, [this](int i) {
    const auto c = static_cast<settings::OriginCorner>(corner_->itemData(i).toInt());
    run_(corner_->itemText(i), [this, c] { app::SelectOriginCorner(state_, services_, c); });
  });
  Choose(bitOrder_, [this](int i) {
    const bool msbFirst = bitOrder_->itemData(i).toBool();
    run_(bitOrder_->itemText(i),
         [this, msbFirst] { app::SelectBitOrder(state_, services_, msbFirst); });
  });
  const auto selectSize = [this](QSize s) {
    run_(QStringLiteral("Matrix%1x%2").arg(s.width()).arg(s.height()), [this, s] {
      if (!app::CheckMode(state_, services_, 0)) app::SelectPresetSize(state_, s);
    });
  };
  Choose(size_, [this, selectSize](int i) { selectSize(size_->itemData(i).toSize()); });
  connect(custom, &QPushButton::clicked, this,
          [this, selectSize] { selectSize(QSize(width_px_->value(), height_px_->value())); });
  Choose(width_, [this](int i) {
    const auto w = static_cast<WordWidthChoice>(width_->itemData(i).toInt());
    run_(width_->itemText(i), [this, w] { app::SelectOutputWidth(state_, services_, w); });
  });
  Choose(format_, [this](int i) {
    const auto f = static_cast<convert::ConstantFormat>(format_->itemData(i).toInt());
    run_(format_->itemText(i), [this, f] { app::SelectConstantFormat(state_, services_, f); });
  });
  Sync();
}

void SettingsPanel::Choose(QComboBox* box, const std::function<void(int)>& apply) {
  connect(box, &QComboBox::activated, this, [this, apply](int index) {
    if (syncing_) return;
    apply(index);
    Sync();  // a refused change falls back to what the settings hold
  });
}

void SettingsPanel::Sync() {
  syncing_ = true;
  const settings::Settings& s = state_.settings;
  const auto mode = settings::CurrentPixelMode(s);
  mode_->setCurrentIndex(mode ? mode_->findData(static_cast<int>(*mode)) : -1);
  mode_->setEnabled(!state_.modes.ModeChangeDisabled);
  const auto direction = settings::CurrentScanDirection(s);
  direction_->setCurrentIndex(direction ? direction_->findData(static_cast<int>(*direction)) : -1);
  const auto corner = settings::CurrentOriginCorner(s);
  corner_->setCurrentIndex(corner ? corner_->findData(static_cast<int>(*corner)) : -1);
  Select(bitOrder_, s.scan.MSBF);
  const QSize size(s.display.GWI, s.display.GHI);
  size_->setCurrentIndex(size_->findData(size));
  width_px_->setValue(size.width());
  height_px_->setValue(size.height());
  Select(width_, static_cast<int>(app::CurrentOutputWidth(s.width)));
  Select(format_, static_cast<int>(convert::CurrentConstantFormat(s.format)));
  for (QComboBox* box : {mode_, direction_, corner_, width_}) ShowCurrentItemHelp(box);
  const settings::PagingHintText hint = settings::PagingHint(s);
  hint_->setText(hint.scheme + QLatin1Char('\n') + hint.sizeRule);
  if (const auto preview = convert::RenumberingNormalGrid(s)) preview_->Show(*preview);
  syncing_ = false;
}

}  // namespace vt::gui
