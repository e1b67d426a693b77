// SPDX-License-Identifier: MIT
#include "app/palette_commands.h"

#include <QElapsedTimer>
#include <QLocale>

#include "app/messages.h"
#include "app/state.h"
#include "canvas/color_reduction.h"
#include "canvas/palette_files.h"
#include "convert/array_writer.h"
#include "convert/color_lut.h"
#include "convert/constant_format.h"
#include "convert/data_text.h"
#include "platform/clock.h"
#include "util/fast_paths.h"

namespace vt::app {
namespace {

using canvas::ConversionStatus;
using platform::DialogType;
using settings::PixelMode;
namespace Buttons = platform::Buttons;

void Tell(AppState& state, Services& services, const QString& text, const QString& caption,
          DialogType type) {
  MessageDlgA(state, services.dialogs, text, caption, 0, Buttons::Ok, type);
}

void TellInterrupted(AppState& state, Services& services) {
  Tell(state, services, QStringLiteral(" Processing interrupted by escape !"),
       QStringLiteral("Information"), DialogType::Information);
}

}  // namespace

bool LoadModePalette(AppState& state, Services& services, bool force) {
  AppMessenger messenger(state, services.dialogs);
  return canvas::LoadModePalette(state.settings, state.files.SettingsFile, state.palettes,
                                 messenger, force);
}

Result<bool> LoadCustomColorPalette(AppState& state, Services& services, const QString& path) {
  const PixelMode mode = canvas::ModeOf(state.settings);
  const QString target = canvas::CustomPaletteFile(state.files.SettingsFile, mode);
  if (target.isEmpty()) {
    return Error{Error::Kind::Refused, path, 0, 0,
                 QStringLiteral("the current pixel mode takes no custom palette")};
  }
  Result<canvas::Palette> read =
      canvas::ReadPaletteFile(path, canvas::PaletteInfoOf(mode).entries, ReferencePathsRequested());
  if (!read) return read.error();
  if (Result<bool> written = canvas::WritePaletteFile(target, read.value()); !written) {
    return written;
  }
  LoadModePalette(state, services, /*force=*/true);
  return true;
}

Result<bool> ExportPaletteToText(AppState& state, Services& services, const QString& path) {
  LoadModePalette(state, services);
  if (state.palettes.Colors().empty()) {
    return Error{Error::Kind::Refused, path, 0, 0,
                 QStringLiteral("the current pixel mode has no palette")};
  }
  return canvas::WritePaletteFile(path, state.palettes.Colors());
}

void ConvertCanvasToNearestColor(AppState& state, Services& services) {
  state.log.StatusBarAndLog(QStringLiteral("Processing Color Conversion ..."));
  LoadModePalette(state, services);
  const auto status =
      canvas::ConvertToNearestColor(state.canvas.EditBitmap(), state.palettes,
                                    canvas::ModeOf(state.settings), services.escape,
                                    ReferencePathsRequested());
  state.canvas.CopyBitmapToCanvas();
  if (status == ConversionStatus::Interrupted) TellInterrupted(state, services);
}

void ConvertCanvasToMyColor(AppState& state, Services& services) {
  state.log.StatusBarAndLog(QStringLiteral("Processing Color Conversion to Color Palette ..."));
  LoadModePalette(state, services);
  QElapsedTimer timer;
  timer.start();
  const auto status =
      canvas::ConvertToMyColor(state.canvas.EditBitmap(), state.palettes,
                               canvas::ModeOf(state.settings), services.escape,
                               ReferencePathsRequested());
  state.canvas.CopyBitmapToCanvas();
  if (status == ConversionStatus::Interrupted) {
    TellInterrupted(state, services);
  } else if (status == ConversionStatus::Done) {
    state.log.StatusBarAndLog(QStringLiteral("Colors Converted to Color Palette in  ") +
                              QString::number(timer.elapsed() / 1000.0));
  }
}

int CountColorsCommand(AppState& state, Services& services) {
  const int n = state.canvas.CountColors();
  state.log.StatusBarAndLog(QStringLiteral("Count Colors : ") + QString::number(n));
  Tell(state, services, QStringLiteral("Number Of Colors :") + QString::number(n),
       QStringLiteral("Count Colors"), DialogType::Information);
  return n;
}

long long CheckColorsButtonClick(AppState& state, Services& services) {
  const PixelMode mode = canvas::ModeOf(state.settings);
  if (mode == PixelMode::Colors16M || mode == PixelMode::Colors16MPacked) {
    Tell(state, services, QStringLiteral("24Bit colors Mode !"), QStringLiteral("Information"),
         DialogType::Information);
    return 0;
  }
  state.log.StatusBarAndLog(QStringLiteral("Test in progress..."));
  state.log.StatusBarAndLog(QStringLiteral("Processing colors check ..."));
  LoadModePalette(state, services);
  const canvas::Palette palette = settings::IsMonochromeMode(mode)
                                      ? canvas::Palette{canvas::kBlack, canvas::kWhite}
                                      : state.palettes.Colors();
  const long long unknown =
      canvas::CountUnknownColors(state.canvas.Bitmap(), palette, ReferencePathsRequested());
  Tell(state, services,
       unknown == 0 ? QStringLiteral("Test successful !")
                    : QString::number(unknown) + QStringLiteral(" unknown color(s) found !"),
       QStringLiteral("Information"), DialogType::Information);
  return unknown;
}

bool TranslatePalette(AppState& state, Services& services, const CanvasSelection& selection) {
  state.log.Laction = QStringLiteral("TranslatePalette");
  state.log.StatusBarAndLog(QStringLiteral("TranslatePalette"));
  settings::Settings& s = state.settings;
  if (s.pixel.ccomp && (s.block.ColRx || !s.pixel.bw8)) {
    MessageDlgA(state, services.dialogs, QStringLiteral("Data compression has been disabled !"),
                QStringLiteral("Confirm"), 0, platform::Buttons::Ok, DialogType::Confirmation);
    s.pixel.ccomp = false;
  }
  if (selection.SelectionActive && !selection.SelectionPasted) {
    MessageDlgA(state, services.dialogs,
                QStringLiteral(" Please paste selected area before doing the canvas encoding ! "),
                QStringLiteral("Warning"), 0, platform::Buttons::Ok, DialogType::Warning);
    return false;
  }
  LoadModePalette(state, services);
  const canvas::Palette& palette = state.palettes.Colors();
  const int entries = std::min<int>(int(palette.size()), settings::LevelCount(s));

  state.text.Clear();
  convert::HeaderRequest header;
  const QString templateFile =
      convert::HeaderFileName(state.files.SettingsFile, convert::HeaderKind::Graphics);
  header.templateText = convert::LoadHeaderTemplate(templateFile);
  header.templateFileName = templateFile;
  header.arrayName = QStringLiteral("COLORLUT");
  header.dataByteCount = entries;
  header.width = s.display.GWI;
  header.height = s.display.GHI;
  header.right = s.display.GWI - 1;
  header.bottom = s.display.GHI - 1;
  const convert::HeaderText built = convert::BuildHeader(s, header);
  {
    convert::DataTextWriter writer(s, state.text);
    convert::PreambleInfo preamble;
    preamble.version = convert::kGeneratedVersionText;
    preamble.dateText =
        QLocale::c().toString(services.clock.Now(), QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    writer.WriteDataPreamble(preamble, built);
  }
  for (int i = 0; i < entries; ++i) {
    state.text.AddLine(convert::ColorLutLine(s, palette[i], i, i == entries - 1));
  }
  state.text.AddLine(s.block.Endst);
  if (!s.comment.Noonts) {
    const convert::CommentStyle style = convert::CommentStyleOf(s.comment);
    state.text.AddLine(style.c ? QStringLiteral("/* End of Color Look-Up Table (CLUT)  */")
                               : style.opener +
                                     QStringLiteral(" End of Color Look-Up Table (CLUT)  */"));
  }
  state.text.SetModified(true);
  return true;
}

}  // namespace vt::app
