// SPDX-License-Identifier: MIT
#include "gui/export_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QVBoxLayout>

namespace vt::gui {
namespace {

using convert::WordWidthChoice;

const char* const kAreaTexts[] = {"Export Full size Work Canvas",
                                  "Export Upper Half of Work Canvas",
                                  "Export Lower Half of Work Canvas", "Export Area of Work Canvas",
                                  "Export Selected Subdivision >"};
const struct {
  WordWidthChoice choice;
  const char* text;
} kWordWidths[] = {{WordWidthChoice::Bits8, "8 bits"},
                   {WordWidthChoice::Bits16, "16 bits"},
                   {WordWidthChoice::Bits32, "32 bits "},
                   {WordWidthChoice::IntelHex, "Intel Hex"}};

QCheckBox* Box(const char* text, const char* name) {
  auto* box = new QCheckBox(QString::fromLatin1(text));
  box->setObjectName(QString::fromLatin1(name));
  return box;
}

}  // namespace

ExportDialog::ExportDialog(const app::ExportDialogSetup& setup, QWidget* parent)
    : QDialog(parent), base_(setup.request), intelHexEnabled_(setup.intelHexGroupEnabled) {
  setWindowTitle(QStringLiteral("Export Work Canvas To Data"));
  setObjectName(QStringLiteral("ExportToDataForm"));
  auto* layout = new QVBoxLayout(this);

  auto* areaBox = new QGroupBox(QStringLiteral("Full / Partial"));
  areaBox->setObjectName(QStringLiteral("RadioGroup1"));
  auto* areaLayout = new QVBoxLayout(areaBox);
  area_ = new QButtonGroup(this);
  for (int i = 0; i < 5; ++i) {
    auto* radio = new QRadioButton(QString::fromLatin1(kAreaTexts[i]));
    area_->addButton(radio, i);
    if (i < 4) {
      areaLayout->addWidget(radio);
    } else {
      subdivision_ = new QComboBox;
      subdivision_->setObjectName(QStringLiteral("SubDivComboBox"));
      for (int n = 1; n <= setup.request.subdivisions.size(); ++n) {
        subdivision_->addItem(QString::number(n), n);
      }
      auto* row = new QHBoxLayout;
      row->addWidget(radio);
      row->addWidget(subdivision_, 1);
      areaLayout->addLayout(row);
    }
  }
  areaBox->setEnabled(!setup.areaLocked);
  layout->addWidget(areaBox);

  auto* options = new QGroupBox(QStringLiteral("Options"));
  auto* optionsLayout = new QVBoxLayout(options);
  autoFraming_ = Box("Effective Bitmap Size ( Auto Framing )", "EffectiveSizeCheckBox");
  compression_ = Box("Monochrome Data Compression ", "CompressionCheckBox");
  rearrange_ = Box("Rearrange Data Bits (Settings)", "CheckBox2");
  interleaved_ =
      Box("Interleaved Data ( If Height=64p , Line 0,32,1,33,2... )", "InterleavedCheckBox");
  searchReplace_ = Box("Search and Replace", "CheckBox1");
  postProcess_ = Box("Text Post-Processing", "PostProcessingCheckBox");
  compression_->setEnabled(setup.compressionEnabled);
  postProcess_->setEnabled(setup.postProcessingEnabled);
  for (QCheckBox* box :
       {autoFraming_, compression_, rearrange_, interleaved_, searchReplace_, postProcess_}) {
    optionsLayout->addWidget(box);
  }
  connect(autoFraming_, &QCheckBox::toggled, this, [this, areaBox](bool on) {
    if (on) area_->button(app::kAreaFull)->setChecked(true);
    areaBox->setEnabled(!on);
  });
  layout->addWidget(options);

  auto* labels = new QVBoxLayout;
  for (const QString& text :
       {setup.compressionLabel, setup.activeBatch, setup.postProcessingNote}) {
    if (text.isEmpty()) continue;
    auto* label = new QLabel(text);
    if (text == setup.compressionLabel)
      label->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold"));
    labels->addWidget(label);
  }
  layout->addLayout(labels);

  auto* widthBox = new QGroupBox(QStringLiteral("Word Bits"));
  widthBox->setObjectName(QStringLiteral("WordBits"));
  auto* widthLayout = new QHBoxLayout(widthBox);
  wordWidth_ = new QButtonGroup(this);
  for (const auto& w : kWordWidths) {
    auto* radio = new QRadioButton(QString::fromLatin1(w.text));
    wordWidth_->addButton(radio, static_cast<int>(w.choice));
    widthLayout->addWidget(radio);
  }
  layout->addWidget(widthBox);

  intelHex_ = new QGroupBox(QStringLiteral("Intel Hex"));
  auto* hexLayout = new QFormLayout(intelHex_);
  bytesPerLine_ = new QSpinBox;
  bytesPerLine_->setRange(1, 255);
  addressDigits_ = new QComboBox;
  for (const int digits : {4, 6, 8}) addressDigits_->addItem(QString::number(digits), digits);
  bytesPerLine_->setObjectName(QStringLiteral("BytesPerLine"));
  addressDigits_->setObjectName(QStringLiteral("AddressDigits"));
  addressOffset_ = new QLineEdit;
  addressOffset_->setObjectName(QStringLiteral("AddressOffset"));
  addressOffset_->setValidator(new QRegularExpressionValidator(
      QRegularExpression(QStringLiteral("[0-9A-Fa-f]{0,8}")), addressOffset_));
  hexLayout->addRow(QStringLiteral("Bytes per line"), bytesPerLine_);
  hexLayout->addRow(QStringLiteral("Address digits"), addressDigits_);
  hexLayout->addRow(QStringLiteral("Address offset"), addressOffset_);
  connect(addressDigits_, &QComboBox::currentIndexChanged, this, [this] {
    addressOffset_->setText(QString(addressDigits_->currentData().toInt(), QLatin1Char('0')));
  });
  connect(wordWidth_, &QButtonGroup::idToggled, this, [this] { FollowWordWidth(); });
  layout->addWidget(intelHex_);

  auto* buttons = new QHBoxLayout;
  auto* reset = new QPushButton(QStringLiteral("Reset ALL special settings"));
  reset->setObjectName(QStringLiteral("ResetButton"));
  exportButton_ = new QPushButton(QStringLiteral("Export To Editor now"));
  exportButton_->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("No / Cancel "));
  buttons->addWidget(reset);
  buttons->addStretch(1);
  buttons->addWidget(exportButton_);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(reset, &QPushButton::clicked, this, [this] {
    app::ExportRequest request = Request();
    app::ResetSpecialSettings(request);
    Load(request);
  });
  connect(exportButton_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

  Load(setup.request);
}

void ExportDialog::Load(const app::ExportRequest& r) {
  if (QAbstractButton* b = area_->button(r.AreaChoice)) b->setChecked(true);
  subdivision_->setCurrentIndex(subdivision_->findData(r.SubdivisionNumber));
  autoFraming_->setChecked(r.AutoFraming);
  compression_->setChecked(r.Compression && compression_->isEnabled());
  rearrange_->setChecked(r.Rearrange);
  interleaved_->setChecked(r.Interleaved);
  searchReplace_->setChecked(r.RunSearchReplace);
  postProcess_->setChecked(r.RunPostProcess && postProcess_->isEnabled());
  for (QAbstractButton* b : wordWidth_->buttons()) b->setChecked(false);
  if (QAbstractButton* b = wordWidth_->button(static_cast<int>(r.WordWidth))) b->setChecked(true);
  bytesPerLine_->setValue(r.BytesPerLine);
  addressDigits_->setCurrentIndex(qMax(0, addressDigits_->findData(r.AddressDigits)));
  addressOffset_->setText(r.AddressOffset);
  FollowWordWidth();
}

void ExportDialog::FollowWordWidth() {
  intelHex_->setEnabled(intelHexEnabled_ ||
                        wordWidth_->checkedId() == static_cast<int>(WordWidthChoice::IntelHex));
}

app::ExportRequest ExportDialog::Request() const {
  app::ExportRequest r = base_;
  r.AreaChoice = qMax(0, area_->checkedId());
  r.SubdivisionNumber = subdivision_->currentData().toInt();
  r.AutoFraming = autoFraming_->isChecked();
  r.Compression = compression_->isChecked();
  r.Rearrange = rearrange_->isChecked();
  r.Interleaved = interleaved_->isChecked();
  r.RunSearchReplace = searchReplace_->isChecked();
  r.RunPostProcess = postProcess_->isChecked();
  // No checked button keeps what the settings held (the binary file output).
  if (wordWidth_->checkedId() >= 0)
    r.WordWidth = static_cast<WordWidthChoice>(wordWidth_->checkedId());
  r.BytesPerLine = bytesPerLine_->value();
  r.AddressDigits = addressDigits_->currentData().toInt();
  r.AddressOffset = addressOffset_->text();
  return r;
}

}  // namespace vt::gui
