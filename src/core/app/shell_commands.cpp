// SPDX-License-Identifier: MIT
#include "app/shell_commands.h"

#include <QFileInfo>

#include "app/messages.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/pixel_mode_commands.h"
#include "app/state.h"
#include "convert/output_width.h"

namespace vt::app {
namespace {

constexpr int kShownRecentFiles = 20;

}  // namespace

bool PixelModeMenuClick(AppState& state, Services& services, settings::PixelMode mode) {
  PixelModeGate gate;
  gate.editorForbidsChange = [](AppState& s, Services& sv) { return CheckMode(s, sv, 0); };
  gate.keepColorMode = [](AppState& s, Services& sv) { return ResetAndCheckColorMode(s, sv); };
  return SelectPixelMode(state, services, mode, gate);
}

convert::WordWidthChoice CurrentOutputWidth(const settings::OutputWidthSettings& w) {
  using convert::WordWidthChoice;
  if (w.DHec) return WordWidthChoice::Binary;
  if (w.DIHec) return WordWidthChoice::IntelHex;
  if (w.D32bc) return WordWidthChoice::Bits32;
  if (w.D16bc) return WordWidthChoice::Bits16;
  return WordWidthChoice::Bits8;
}

bool SelectOutputWidth(AppState& state, Services& services, convert::WordWidthChoice width) {
  if (state.modes.FontScriptActive) {
    MessageDlgA(
        state, services.dialogs,
        QStringLiteral("Please exit current Font Creation before changing then Output format !"),
        QStringLiteral("Warning"), 0, platform::Buttons::Ok, platform::DialogType::Warning);
    return false;
  }
  SetOutputWidth(state, width);
  return true;
}

void SetOutputWidth(AppState& state, convert::WordWidthChoice width) {
  convert::ApplyWordWidth(state.settings.width, width);
  defineOutputFileName(state);
}

void AddMRUF(AppState& state, const QString& path) {
  for (const char* scratch : {"/resized_image", "/original_image", "temp1298621.bmp"}) {
    if (path.contains(QLatin1String(scratch))) return;
  }
  if (state.MRUList.contains(path)) return;
  state.MRUList.prepend(path);
}

void DeleteMRUF(AppState& state, const QString& path) { state.MRUList.removeAll(path); }

QStringList UpdateMRUFs(const AppState& state) {
  QStringList items;
  for (int i = 0; i < kShownRecentFiles && i < state.MRUList.size(); ++i) {
    const QString item = QStringLiteral("&%1 %2").arg(i + 1).arg(state.MRUList.at(i));
    if (!QFileInfo::exists(MRUFPath(item))) break;
    items << item;
  }
  return items;
}

QString MRUFPath(const QString& item) {
  // "&1 " is three characters; from "&10 " on one more goes.
  QString path = item.mid(3);
  if (!QFileInfo::exists(path) && item.size() > 4 && item.at(3) == QLatin1Char(' ')) {
    path = item.mid(4);
  }
  return path;
}

RecentFileAction RecentFileActionFor(const QString& path, const QString& fexts) {
  const QString suffix = QFileInfo(path).suffix().toUpper();
  const QString ext = suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
  if (ext == QLatin1String(".HEX") || ext == QLatin1String(".BIN") || ext == QLatin1String(".H")) {
    return RecentFileAction::LoadHex;  // ".H" belongs here, not with the sources
  }
  if (ext == QLatin1Char('.') + fexts.toUpper() || ext == QLatin1String(".ASM") ||
      ext == QLatin1String(".C") || ext == QLatin1String(".BAS")) {
    return RecentFileAction::LoadSource;
  }
  for (const char* picture : {".SVG", ".BMP", ".PNG", ".JPG", ".JPEG", ".TIF", ".TIFF", ".ICO"}) {
    if (ext == QLatin1String(picture)) return RecentFileAction::OpenPicture;
  }
  if (ext == QLatin1String(".EFF")) return RecentFileAction::OpenEditableFont;
  if (ext == QLatin1String(".TSC") || ext == QLatin1String(".FSC")) {
    return RecentFileAction::LoadScript;
  }
  return RecentFileAction::None;
}

QStringList FileListCaptions(RibbonPage page) {
  switch (page) {
    case RibbonPage::GlcdVectors:
      return {QStringLiteral("All Vector Scripts >")};
    case RibbonPage::GlcdFonts:
      return {QStringLiteral("All Font Scripts >"), QStringLiteral("< Editable Scripts")};
    case RibbonPage::GlcdTouch:
      return {QStringLiteral("All Touch Scripts >")};
    case RibbonPage::TextHexEditors:
      return {QStringLiteral("All Source Code >")};
    case RibbonPage::BatchProcessing:
      return {QStringLiteral("All Batch Scripts >")};
    default:
      return {QStringLiteral("Recent Files >")};
  }
}

}  // namespace vt::app
