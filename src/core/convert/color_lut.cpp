// SPDX-License-Identifier: MIT
#include "convert/color_lut.h"

#include <QLocale>

#include "app/messages.h"
#include "app/state.h"
#include "canvas/color_reduction.h"
#include "convert/array_writer.h"
#include "convert/constant_format.h"
#include "convert/data_text.h"
#include "platform/clock.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

using platform::DialogType;

QString Hex6(canvas::Color color) {
  return QStringLiteral("%1").arg(color & 0xFFFFFF, 6, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

QString ColorLutLine(const settings::Settings& s, canvas::Color color, int index, bool last) {
  const settings::DataFormatSettings& f = s.format;
  QString value;
  switch (CurrentConstantFormat(f)) {
    case ConstantFormat::X:
      value = QStringLiteral("0x") + Hex6(color);
      break;
    case ConstantFormat::H:
      value = QStringLiteral("0") + Hex6(color) + QStringLiteral("h");
      break;
    case ConstantFormat::PlusHPlus:
      value = f.VALpref + Hex6(color) + f.VALSUF;
      break;
    case ConstantFormat::PlusBPlus:
    case ConstantFormat::PlusDPlus:
      value = f.VALpref + QString::number(color) + f.VALSUF;
      break;
    case ConstantFormat::ZeroB:
    case ConstantFormat::B:
      value = QString::number(color);
      break;
  }
  const EndOfLineFlags eol = EndOfLineFlagsOf(f);
  if (!(last && f.dellas)) {
    value += eol.EolStr   ? eol.eolst
             : eol.Eolcom ? QStringLiteral(",")
             : eol.EolSem ? QStringLiteral(";")
                          : QString();
  }
  if (!s.comment.Nodcom) {
    const CommentStyle style = CommentStyleOf(s.comment);
    value += style.c ? QStringLiteral("   //") : QStringLiteral("   ") + style.opener;
    value += QString::number(index);
  }
  return value;
}

bool TranslatePalette(app::AppState& state, app::Services& services,
                      const CanvasSelection& selection) {
  state.log.Laction = QStringLiteral("TranslatePalette");
  state.log.StatusBarAndLog(QStringLiteral("TranslatePalette"));
  settings::Settings& s = state.settings;
  if (s.pixel.ccomp && (s.block.ColRx || !s.pixel.bw8)) {
    app::MessageDlgA(state, services.dialogs,
                     QStringLiteral("Data compression has been disabled !"),
                     QStringLiteral("Confirm"), 0, platform::Buttons::Ok, DialogType::Confirmation);
    s.pixel.ccomp = false;
  }
  if (selection.SelectionActive && !selection.SelectionPasted) {
    app::MessageDlgA(
        state, services.dialogs,
        QStringLiteral(" Please paste selected area before doing the canvas encoding ! "),
        QStringLiteral("Warning"), 0, platform::Buttons::Ok, DialogType::Warning);
    return false;
  }
  canvas::LoadModePalette(state, services);
  const canvas::Palette& palette = state.palettes.Colors();
  const int entries = std::min<int>(int(palette.size()), settings::LevelCount(s));

  state.text.Clear();
  HeaderRequest header;
  const QString templateFile = HeaderFileName(state.files.SettingsFile, HeaderKind::Graphics);
  header.templateText = LoadHeaderTemplate(templateFile);
  header.templateFileName = templateFile;
  header.arrayName = QStringLiteral("COLORLUT");
  header.dataByteCount = entries;
  header.width = s.display.GWI;
  header.height = s.display.GHI;
  header.right = s.display.GWI - 1;
  header.bottom = s.display.GHI - 1;
  const HeaderText built = BuildHeader(s, header);
  {
    DataTextWriter writer(s, state.text);
    PreambleInfo preamble;
    preamble.version = kGeneratedVersionText;
    preamble.dateText =
        QLocale::c().toString(services.clock.Now(), QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    writer.WriteDataPreamble(preamble, built);
  }
  for (int i = 0; i < entries; ++i) {
    state.text.AddLine(ColorLutLine(s, palette[i], i, i == entries - 1));
  }
  state.text.AddLine(s.block.Endst);
  if (!s.comment.Noonts) {
    const CommentStyle style = CommentStyleOf(s.comment);
    state.text.AddLine(style.c ? QStringLiteral("/* End of Color Look-Up Table (CLUT)  */")
                               : style.opener +
                                     QStringLiteral(" End of Color Look-Up Table (CLUT)  */"));
  }
  state.text.SetModified(true);
  return true;
}

}  // namespace vt::convert
