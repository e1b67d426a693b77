// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QRegularExpression>

#include "app/display_commands.h"
#include "app/export_driver.h"
#include "app/palette_commands.h"
#include "app/state.h"
#include "convert/color_lut.h"
#include "convert/convert_test_util.h"
#include "convert/header_template.h"
#include "recording_messenger.h"
#include "settings/geometry.h"
#include "temp_folders.h"

namespace vt::app {
namespace {

using namespace convert;

using convert::test::Hex;
using convert::test::With;

class ColorExport : public ::testing::Test {
 protected:
  ColorExport() {
    state.files.SettingsFile = t.folders.Path(QStringLiteral("p.LCD"));
    vt::test::RecordingMessenger headerLog;
    EXPECT_TRUE(
        WriteDefaultHeaderFile(state.files.SettingsFile, HeaderKind::Graphics, true, headerLog)
            .ok());
  }
  /// Puts `colors` (0x00BBGGRR) on the canvas as each of `height` rows and exports it.
  ExportResult Run(const char* keys, std::vector<canvas::Color> colors, int height = 1) {
    state.settings = With(keys);
    state.settings.folder.OFP = t.folders.Path(QStringLiteral("out"));
    state.settings.output.nbmfn = QStringLiteral("Logo.png");
    app::SetDisplaySize(state, int(colors.size()), height);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < int(colors.size()); ++x) state.canvas.SetPixel(x, y, colors[x]);
    }
    state.text.Clear();
    t.dialogs.shown.clear();
    return TranslateCanvas(state, t.services, ExportRequest{});
  }
  QString Bytes() const {
    std::vector<int> bytes;
    static const QRegularExpression constant(QStringLiteral("0x([0-9A-F]{2})\\b"));
    for (auto it = constant.globalMatch(state.text.Text()); it.hasNext();) {
      bytes.push_back(it.next().captured(1).toInt(nullptr, 16));
    }
    return Hex(bytes);
  }

  vt::test::TestServices t;
  app::AppState state;
};

TEST_F(ColorExport, DefaultSixteenBitColoursAreTheRgb565Words) {
  EXPECT_EQ(Run("mode=colors65536", {0x0000FF, 0x00FF00, 0xFF0000, 0xFFFFFF}).status,
            ExportStatus::Written);
  EXPECT_EQ(Bytes(), QLatin1String("F8 00 07 E0 00 1F FF FF"));
  // Colours off the palette are reduced for the run only: (254, 1, 0) is red.
  EXPECT_EQ(Run("mode=colors65536", {0x0001FE}).status, ExportStatus::Written);
  EXPECT_EQ(Bytes(), QLatin1String("F8 00"));
  EXPECT_EQ(state.canvas.Pixel(0, 0), 0x0001FEu);
  EXPECT_EQ(Run("mode=colors4096", {0x0000FF, 0xFFFFFF}).status, ExportStatus::Written);
  EXPECT_EQ(Bytes(), QLatin1String("0F 00 0F FF"));
}

TEST_F(ColorExport, RefusedDirectionsGiveTheirMessages) {
  const char* const underDev = " Sorry, this 3bpp color conversion scheme \r is under development ";
  const char* const pairs =
      "Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal "
      "pixels";
  const char* const sliced =
      " The sliced paging scheme is not implemented in this mode ! \rUse all right,all left ,all "
      "up or all down direction";
  const struct {
    const char* keys;
    const char* text;
  } cases[] = {
      {"mode=colors8|tr=0|td=1", underDev},
      {"mode=colors8|tr=0|tu=1", underDev},
      {"mode=colors8|tr=0|tla=1", underDev},
      {"mode=colors8|tra=1|tr=0", underDev},
      {"mode=gray16-h|tr=0|td=1", pairs},
      {"mode=gray16-h|tr=0|tu=1", pairs},
      {"mode=gray4-2pages|tr=0|tu=1", sliced},
      {"mode=gray4-2pages|tr=0|tra=1", sliced},
      {"mode=gray4-2pages|tr=0|tla=1", sliced},
      {"mode=gray4-2pages|tr=0|td=1|CORN1=0|CORN2=1", sliced},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.keys);
    EXPECT_EQ(Run(c.keys, std::vector<canvas::Color>(8, 0), 8).status, ExportStatus::Stopped);
    EXPECT_EQ(t.dialogs.Texts(), QStringList{QString::fromUtf8(c.text)});
  }
}

TEST_F(ColorExport, ColourLookUpTableListsThePalette) {
  const struct {
    const char* keys;
    bool last;
    const char* line;
  } cases[] = {
      {"", false, "0xFF0000,   //1"},
      {"", true, "0xFF0000   //1"},
      {"FXHB=H", false, "0FF0000h,   //1"},
      {"FXHB=+D+|VALpref=#|VALSUF=u", false, "#16711680u,   //1"},
      {"FXHB=0B|Nodcom=1", false, "16711680,"},
      {"CCOM=0|VBACOM=1|dellas=0", true, "0xFF0000,   '1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ColorLutLine(With(c.keys), 0xFF0000, 1, c.last), QLatin1String(c.line)) << c.keys;
  }
  state.settings = With("mode=colors8");
  ASSERT_TRUE(TranslatePalette(state, t.services));
  const QStringList lines = state.text.Text().split(QLatin1Char('\n'));
  EXPECT_TRUE(state.text.Text().contains(QLatin1String("COLORLUT")));
  const qsizetype first = lines.indexOf(QStringLiteral("0x000000,   //0"));
  ASSERT_GE(first, 0);
  EXPECT_EQ(lines.mid(first + 6, 4), (QStringList{"0x00FFFF,   //6", "0xFFFFFF   //7", "};",
                                                  "/* End of Color Look-Up Table (CLUT)  */"}));
  EXPECT_FALSE(TranslatePalette(state, t.services, CanvasSelection{0, 0, 1, 1, true, false}));
  EXPECT_EQ(t.dialogs.Texts().last(),
            QLatin1String(" Please paste selected area before doing the canvas encoding ! "));
}

}  // namespace
}  // namespace vt::app
