// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "app/startup.h"
#include "gui/export_dialog.h"
#include "gui/reorder_preview_view.h"
#include "gui/settings_panel.h"
#include "gui_test_app.h"
#include "settings/geometry.h"
#include "settings/key_lookup.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::gui {
namespace {

template <typename T>
T* Named(QWidget& parent, const char* name) {
  T* child = parent.findChild<T*>(QString::fromLatin1(name));
  EXPECT_NE(child, nullptr) << name;
  return child;
}

QRadioButton* Radio(QWidget& parent, const QString& text) {
  for (QRadioButton* radio : parent.findChildren<QRadioButton*>()) {
    if (radio->text() == text) return radio;
  }
  ADD_FAILURE() << text.toStdString();
  return nullptr;
}

class ExportAndSettings : public ::testing::Test {
 protected:
  void SetUp() override {
    test::GuiApp();
    app::StartUp(state, t.services);
  }
  test::TestServices t;
  app::AppState state;
};

TEST_F(ExportAndSettings, TheExportDialogHandsBackEveryChoice) {
  ExportDialog dialog(app::FillExportDialog(state));
  EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Export Work Canvas To Data"));
  auto* intelHex = dialog.findChildren<QGroupBox*>().last();
  EXPECT_FALSE(intelHex->isEnabled()) << "8 bits: no Intel Hex group";
  Radio(dialog, QStringLiteral("Intel Hex"))->click();
  EXPECT_TRUE(intelHex->isEnabled());
  Named<QComboBox>(dialog, "AddressDigits")->setCurrentIndex(1);
  EXPECT_EQ(Named<QLineEdit>(dialog, "AddressOffset")->text(), QStringLiteral("000000"));
  Radio(dialog, QStringLiteral("Export Lower Half of Work Canvas"))->click();
  Named<QCheckBox>(dialog, "InterleavedCheckBox")->setChecked(true);
  app::ExportRequest r = dialog.Request();
  EXPECT_EQ(r.WordWidth, convert::WordWidthChoice::IntelHex);
  EXPECT_EQ(r.AddressDigits, 6);
  EXPECT_EQ(r.AreaChoice, app::kAreaLowerHalf);
  EXPECT_TRUE(r.Interleaved);

  Named<QCheckBox>(dialog, "EffectiveSizeCheckBox")->setChecked(true);  // locks the full area
  EXPECT_EQ(dialog.Request().AreaChoice, app::kAreaFull);
  Named<QPushButton>(dialog, "ResetButton")->click();
  r = dialog.Request();
  EXPECT_FALSE(r.AutoFraming || r.Interleaved);
  EXPECT_EQ(r.WordWidth, convert::WordWidthChoice::IntelHex) << "the reset keeps the word width";
}

TEST_F(ExportAndSettings, EachSettingsBoxRunsItsSelectorAsACommand) {
  QStringList captions;
  SettingsPanel panel(state, t.services,
                      [&](const QString& caption, const std::function<void()>& w) {
                        captions << caption;
                        w();
                      });
  const struct {
    QComboBox* box;
    int index;
    std::function<bool()> done;
    const char* caption;  // nullptr: the box's own text
  } cases[] = {
      {panel.BitOrderBox(), 0,
       [&] {  // the default walk, rows of 128 pixels, numbers the corner row by row
         const auto& cells = panel.Preview()->Preview().cells;
         return cells[0][7] == 8 && cells[1][0] == 129;
       },
       nullptr},
      {panel.WidthBox(), 3, [&] { return state.files.OutputFileName == "NewBitmap.bin"; }, nullptr},
      {panel.FormatBox(), 1, [&] { return state.settings.format.FXHB == "H"; }, nullptr},
      {panel.BitOrderBox(), 1, [&] { return !state.settings.scan.MSBF; }, nullptr},
      {panel.CornerBox(), 2, [&] { return state.settings.scan.CORN3; }, nullptr},
      {panel.SizeBox(), 0,
       [&] { return state.canvas.Width() == 96 && state.canvas.Height() == 40; }, "Matrix96x40"},
  };
  for (const auto& c : cases) {
    c.box->activated(c.index);
    EXPECT_TRUE(c.done()) << c.box->objectName().toStdString();
    EXPECT_EQ(c.box->currentIndex(), c.index) << "the box shows the accepted setting";
    EXPECT_EQ(captions.last(),
              c.caption ? QString::fromLatin1(c.caption) : c.box->itemText(c.index));
  }
  EXPECT_TRUE(state.log.Lines().contains(QStringLiteral("Constant format is data+h")));
}

TEST_F(ExportAndSettings, EachSettingsControlTellsWhatItsKeyControls) {
  SettingsPanel panel(state, t.services,
                      [](const QString&, const std::function<void()>& w) { w(); });
  auto help = [](const char* key) {
    return settings::FindKey(QString::fromLatin1(key))->Description();
  };
  auto item = [](QComboBox* box, int index) {
    return box->itemData(index, Qt::ToolTipRole).toString();
  };
  auto modeItem = [&](settings::PixelMode mode) {
    return item(panel.PixelModeBox(), panel.PixelModeBox()->findData(static_cast<int>(mode)));
  };
  const struct {
    const char* what;
    QString shown;
    QString expected;
  } cases[] = {
      {"custom width", Named<QSpinBox>(panel, "CustomWidth")->toolTip(),
       QStringLiteral("Display width in pixels (1 to 1024).")},
      {"custom height", Named<QSpinBox>(panel, "CustomHeight")->toolTip(),
       QStringLiteral("Display height in pixels (1 to 768).")},
      {"display size", panel.SizeBox()->toolTip(), help("GWI") + QLatin1Char('\n') + help("GHI")},
      {"data format", panel.FormatBox()->toolTip(), help("FXHB")},
      {"bit order", panel.BitOrderBox()->toolTip(), help("MSBF")},
      {"big endian item", item(panel.BitOrderBox(), 0), QStringLiteral("Big Endian (MSB first)")},
      {"corner item 3", item(panel.CornerBox(), 2), help("CORN3")},
      {"binary item", item(panel.WidthBox(), 3), help("DHec")},
      {"inverted mode item", modeItem(settings::PixelMode::MonochromeInverted),
       help("Monc") + QLatin1Char('\n') + help("Moni") + QLatin1Char('\n') + help("Neg")},
      {"current direction", panel.DirectionBox()->toolTip(), help("tr")},
      {"current width", panel.WidthBox()->toolTip(), help("D8bc")},
  };
  for (const auto& c : cases) {
    EXPECT_FALSE(c.expected.isEmpty()) << c.what;
    EXPECT_EQ(c.shown, c.expected) << c.what;
  }
  // A new choice brings the help of its key.
  const int td = panel.DirectionBox()->findData(static_cast<int>(settings::ScanDirection::td));
  panel.DirectionBox()->activated(td);
  EXPECT_EQ(panel.DirectionBox()->toolTip(), help("td"));
}

}  // namespace
}  // namespace vt::gui
