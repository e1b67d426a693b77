// SPDX-License-Identifier: MIT
#include "app/palette_commands.h"

#include <gtest/gtest.h>

#include <QFile>

#include "app/state.h"
#include "canvas/color_reduction.h"
#include "canvas/palette_files.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::app {
namespace {

using namespace canvas;
using settings::PixelMode;

TEST(PaletteCommands, ModePaletteLoadsCustomThenDefaultAndRefusesABadFile) {
  vt::test::TestServices t;
  app::AppState state;
  state.files.SettingsFile = t.folders.Path(QStringLiteral("panel.LCD"));
  settings::ApplyModeFlags(state.settings.pixel, settings::Info(PixelMode::Colors4096).flags);
  ASSERT_TRUE(LoadModePalette(state, t.services));
  EXPECT_EQ(state.palettes.caption, QLatin1String("Current Palette is Default"));
  EXPECT_EQ(state.log.StatusText(), QLatin1String("Default Color Palette Loaded"));

  // A custom palette: every entry black but one, loaded and sorted.
  Palette custom(4096, 0);
  custom[0] = 0x123456;
  const QString source = t.folders.Path(QStringLiteral("mine.pal"));
  ASSERT_TRUE(WritePaletteFile(source, custom));
  ASSERT_TRUE(LoadCustomColorPalette(state, t.services, source));
  EXPECT_TRUE(QFile::exists(t.folders.Path(QStringLiteral("panel_4096.pal"))));
  EXPECT_EQ(state.palettes.caption, QLatin1String("Current Palette is Custom"));
  EXPECT_EQ(state.palettes.LargePalette.back(), 0x123456u);

  // One line too many: refused, the loaded palette stays.
  QFile file(t.folders.Path(QStringLiteral("panel_4096.pal")));
  ASSERT_TRUE(file.open(QIODevice::Append));
  file.write("0\r\n");
  file.close();
  EXPECT_FALSE(LoadModePalette(state, t.services, true));
  EXPECT_EQ(t.dialogs.shown.back().text,
            QLatin1String(" 12 bit palette file seem to be corrupted ! "));
  EXPECT_EQ(state.palettes.LargePalette.back(), 0x123456u);
  EXPECT_FALSE(LoadCustomColorPalette(state, t.services, t.folders.Path("panel_4096.pal")));

  const QString exported = t.folders.Path(QStringLiteral("out.pal"));
  ASSERT_TRUE(ExportPaletteToText(state, t.services, exported));
  EXPECT_EQ(ReadPaletteFile(exported, 4096).value(), state.palettes.LargePalette);
}

TEST(PaletteCommands, CountCheckAndFileConversion) {
  vt::test::TestServices t;
  app::AppState state;
  state.files.SettingsFile = t.folders.Path(QStringLiteral("panel.LCD"));
  state.canvas.Resize(2, 1);
  state.canvas.SetPixel(0, 0, 0x0001FE);  // not in the 65536 palette; white is
  EXPECT_EQ(CountColorsCommand(state, t.services), 2);
  for (const auto& [mode, text] :
       {std::pair{PixelMode::Colors65536, "1 unknown color(s) found !"},
        std::pair{PixelMode::Colors16M, "24Bit colors Mode !"},
        std::pair{PixelMode::Monochrome, "1 unknown color(s) found !"}}) {
    settings::ApplyModeFlags(state.settings.pixel, settings::Info(mode).flags);
    CheckColorsButtonClick(state, t.services);
    EXPECT_EQ(t.dialogs.shown.back().text, QLatin1String(text));
  }
  EXPECT_EQ(t.dialogs.Texts().first(), QLatin1String("Number Of Colors :2"));
  settings::ApplyModeFlags(state.settings.pixel, settings::Info(PixelMode::Colors65536).flags);
  ConvertCanvasToNearestColor(state, t.services);
  CheckColorsButtonClick(state, t.services);
  EXPECT_EQ(t.dialogs.shown.back().text, QLatin1String("Test successful !"));
  EXPECT_EQ(state.canvas.Pixel(0, 0), 0x0000FFu);

  QImage picture(1, 1, QImage::Format_RGB32);
  picture.setPixel(0, 0, qRgb(254, 1, 0));
  const QString in = t.folders.Path(QStringLiteral("in.png")), out = t.folders.Path("out.png");
  ASSERT_TRUE(picture.save(in));
  ASSERT_TRUE(ConvertPictureFileToColors(in, out, 4096));
  EXPECT_EQ(QImage(out).pixel(0, 0), qRgb(255, 0, 0));
  EXPECT_FALSE(ConvertPictureFileToColors(in, out, 300));
  EXPECT_FALSE(ConvertPictureFileToColors(t.folders.Path("none.png"), out, 256));
}

}  // namespace
}  // namespace vt::app
