// SPDX-License-Identifier: MIT
#include "gui/commands.h"

#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <iterator>

#include "app/canvas_commands.h"
#include "app/display_commands.h"
#include "app/graphic_import.h"
#include "app/modes.h"
#include "app/threshold_commands.h"
#include "canvas/dithering.h"
#include "gui/batch_panel.h"
#include "gui/canvas_view.h"
#include "gui/log_window.h"
#include "gui/main_window.h"
#include "gui/settings_panel.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::gui {
namespace {

using app::RibbonPage;

const QString kFile = QStringLiteral("&File");
const QString kOutput = QStringLiteral("&Output+Settings");
const QString kPixelModes = QStringLiteral("&Output+Settings/Pixel Mode");
const QString kOutputFormats = QStringLiteral("&Output+Settings/Output Format");
const QString kDithering = QStringLiteral("&Dithering");
const QString kWindows = QStringLiteral("&Windows");

/// Runs `work` on the window's state and services.
template <typename Work>
std::function<void(MainWindow&)> OnState(Work work) {
  return [work](MainWindow& w) { work(w.State(), w.Services()); };
}

/// A command whose work is not in this version, on ribbon page `page`.
CommandRow Planned(const char* id, RibbonPage page, const char* caption, const char* handler) {
  return {.id = id,
          .caption = caption,
          .handler = handler,
          .page = page,
          .availability = Availability::NotYet};
}

/// A command of the batch panel: the panel comes forward and runs it as a command of its own
/// (it logs, catches and refreshes itself).
CommandRow Batch(const char* id, const char* caption, const char* handler,
                 void (BatchPanel::*command)()) {
  return {.id = id,
          .caption = caption,
          .handler = handler,
          .page = RibbonPage::BatchProcessing,
          .run =
              [command](MainWindow& w) {
                w.Batches()->show();
                w.Batches()->raise();
                (w.Batches()->*command)();
              },
          .runsAlone = true};
}

/// The command that enters `mode` (or toggles it, for the modes that toggle).
CommandRow Enter(const char* id, RibbonPage page, const char* caption, const char* handler,
                 app::SpecialMode mode) {
  return {.id = id,
          .caption = caption,
          .handler = handler,
          .page = page,
          .run = OnState([mode](app::AppState& state, app::Services& services) {
            if (app::Info(mode).toggle) {
              app::ToggleMode(state, services, mode);
            } else {
              app::EnterMode(state, services, mode);
            }
          })};
}

/// The command that leaves the special mode of its page.
CommandRow Exit(const char* id, RibbonPage page, const char* caption) {
  return {.id = id,
          .caption = caption,
          .handler = "ExitmenuButton",
          .page = page,
          .run = OnState(app::ExitmenuButtonClick)};
}

/// The id part of a pixel mode: its command-line name.
QString ModeIdName(const settings::PixelModeInfo& info) {
  if (*info.cliName) return QString::fromLatin1(info.cliName);
  // The one mode the command line does not offer: 256 colours on a palette of one's own.
  return QStringLiteral("colors256-own-palette");
}

/// Output+Settings > Pixel Mode: one command per mode, greyed while a mode holds the pixel mode.
void AddPixelModes(std::vector<CommandRow>& rows) {
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const settings::PixelMode mode = info.mode;
    rows.push_back({.id = QStringLiteral("output.mode.") + ModeIdName(info),
                    .caption = info.menuCaption,
                    .handler = "PixelModeMenu",
                    .menu = kPixelModes,
                    .availability = Availability::WhilePixelModeMayChange,
                    .run = OnState([mode](app::AppState& state, app::Services& services) {
                      app::PixelModeMenuClick(state, services, mode);
                    })});
  }
}

/// Output+Settings > Output Format.
void AddOutputFormats(std::vector<CommandRow>& rows) {
  const struct {
    const char* id;
    const char* caption;
    const char* handler;
    convert::WordWidthChoice width;
  } formats[] = {
      {"output.format.8bits", "8 bits format", "N8bitformat", convert::WordWidthChoice::Bits8},
      {"output.format.16bits", "16 bits format", "N16bitformat", convert::WordWidthChoice::Bits16},
      {"output.format.32bits", "32 bits format", "N32bitformat", convert::WordWidthChoice::Bits32},
      {"output.format.binary", "Binary file output", "HexOutput1",
       convert::WordWidthChoice::Binary},
      {"output.format.intelHex", "Intel Hex output", "IntelHexOutput",
       convert::WordWidthChoice::IntelHex},
  };
  for (const auto& f : formats) {
    const convert::WordWidthChoice width = f.width;
    rows.push_back({.id = f.id,
                    .caption = f.caption,
                    .handler = f.handler,
                    .menu = kOutputFormats,
                    .run = OnState([width](app::AppState& state, app::Services& services) {
                      app::SelectOutputWidth(state, services, width);
                    })});
  }
}

/// The Dithering menu's methods and colour reductions: one of each group checked, as the
/// state has it.
void AddDitherChoices(std::vector<CommandRow>& rows) {
  for (const canvas::DitherMethod method :
       {canvas::DitherMethod::FloydSteinberg, canvas::DitherMethod::Nearest,
        canvas::DitherMethod::Stucki, canvas::DitherMethod::Sierra, canvas::DitherMethod::JaJuNi,
        canvas::DitherMethod::SteveArche, canvas::DitherMethod::Burkes}) {
    const QString caption = canvas::DitherMethodCaption(method);
    rows.push_back(
        {.id = QStringLiteral("dithering.method.") + canvas::DitherMethodName(method),
         .caption = caption,
         .handler = QString(caption).remove(QLatin1Char(' ')),  // "FloydSteinberg"
         .menu = kDithering,
         .group = QStringLiteral("dithering.method"),
         .checked =
             [method](const app::AppState& state) {
               return state.blackWhite.Dither.method == method;
             },
         .run = [method](MainWindow& w) { w.State().blackWhite.Dither.method = method; }});
  }
  const struct {
    const char* id;
    const char* handler;
    canvas::DitherReduction reduction;
  } reductions[] = {
      {"dithering.reduction.monochrome", "MonochromeColorReduction",
       canvas::DitherReduction::Monochrome},
      {"dithering.reduction.gray", "GrayscaleColorReduction", canvas::DitherReduction::GrayScale},
  };
  for (const auto& r : reductions) {
    const canvas::DitherReduction reduction = r.reduction;
    rows.push_back(
        {.id = r.id,
         .caption = canvas::DitherReductionCaption(reduction),
         .handler = r.handler,
         .menu = kDithering,
         .separatorBefore = &r == &reductions[0],
         .group = QStringLiteral("dithering.reduction"),
         .checked =
             [reduction](const app::AppState& state) {
               return state.blackWhite.Dither.reduction == reduction;
             },
         .run = [reduction](MainWindow& w) { w.State().blackWhite.Dither.reduction = reduction; }});
  }
}

}  // namespace

std::vector<CommandRow> CommandTable() {
  std::vector<CommandRow> rows = {
      // The File menu; the graphic commands also stand on the GLCD Graphic page.
      {.id = "file.loadGraphic",
       .caption = "Load Graphic Dialog",
       .handler = "LoadGraphicToolButton",
       .page = RibbonPage::GlcdGraphic,
       .menu = kFile,
       .run = [](MainWindow& w) { w.LoadGraphicToolButtonClick(); }},
      {.id = "file.reloadLastCanvas",
       .caption = "Reload Last Canvas File",
       .handler = "ReloadLastCanvasButton",
       .page = RibbonPage::GlcdGraphic,
       .menu = kFile,
       .run = OnState(app::ReloadLastCanvasButtonClick)},
      {.id = "file.loadGraphicPreview",
       .caption = "Load Graphic with Preview",
       .handler = "LoadGraphicPreviewGlowButton",
       .page = RibbonPage::GlcdGraphic,
       .menu = kFile,
       .run = [](MainWindow& w) { w.LoadGraphicPreviewGlowButtonClick(); }},
      {.id = "file.defineArtworkName",
       .caption = "Define Artwork Name",
       .handler = "DefineArtworkToolbutton",
       .page = RibbonPage::GlcdGraphic,
       .menu = kFile,
       .run = [](MainWindow& w) { w.DefineArtworkToolbuttonClick(); }},
      {.id = "file.exportToData",
       .caption = "Export Work Canvas to Data",
       .handler = "ConvertToDataToolButton",
       .page = RibbonPage::GlcdGraphic,
       .leadsPage = true,
       .menu = kFile,
       .run = [](MainWindow& w) { w.ConvertToDataToolButtonClick(); }},
      {.id = "file.recentFiles",
       .caption = "Recent Files",
       .menu = kFile,
       .opensMenu = true,
       .fill = [](MainWindow& w, QMenu& menu) { w.FillRecentFilesMenu(menu); }},
  };
  // The Output+Settings menu.
  AddPixelModes(rows);
  AddOutputFormats(rows);
  for (const bool msbFirst : {true, false}) {
    rows.push_back({.id = msbFirst ? "output.bitOrder.msbFirst" : "output.bitOrder.lsbFirst",
                    .caption = settings::BitOrderCaption(msbFirst),
                    .handler = msbFirst ? "MostSignificantBitLeft" : "MostSignificantBitRight",
                    .menu = kOutput,
                    .run = OnState([msbFirst](app::AppState& state, app::Services& services) {
                      app::SelectBitOrder(state, services, msbFirst);
                    })});
  }
  // The Dithering menu, also on the canvas tool bar.
  AddDitherChoices(rows);
  const CommandRow more[] = {
      {.id = "dithering.perform",
       .caption = "Perform Dithering",
       .handler = "PerformDitheringParametersbelow1",
       .menu = kDithering,
       .separatorBefore = true,
       .run = OnState(app::PerformDithering)},
      {.id = "dithering.convertCanvas",
       .caption = "Convert Work Canvas to Black and White by Dithering",
       .handler = "ConvertWorkCanvastoBlackandWhitebyDithering1",
       .menu = kDithering,
       .run = OnState(app::DitherWorkCanvas)},

      // The Windows page; its commands stand in the menus too.
      {.id = "windows.logWindow",
       .caption = "Hide Log Window",  // "Show Log Window" while the log window is hidden
       .handler = "HideLogWindow1",
       .page = RibbonPage::Windows,
       .menu = kWindows,
       .run = [](MainWindow& w) { w.HideLogWindow1Click(); }},
      {.id = "windows.zoomIn",
       .caption = "Zoom In",
       .handler = "ZoomIn",
       .page = RibbonPage::Windows,
       .menu = kWindows,
       .shortcut = QKeySequence(QKeySequence::ZoomIn),
       .run = [](MainWindow& w) { w.Canvas()->SetZoom(w.Canvas()->Zoom() * 2); }},
      {.id = "windows.zoomOut",
       .caption = "Zoom Out",
       .handler = "ZoomOut",
       .page = RibbonPage::Windows,
       .menu = kWindows,
       .shortcut = QKeySequence(QKeySequence::ZoomOut),
       .run = [](MainWindow& w) { w.Canvas()->SetZoom(w.Canvas()->Zoom() / 2); }},
      {.id = "windows.pixelGrid",
       .caption = "Pixel Grid",
       .handler = "PixelGrid",
       .page = RibbonPage::Windows,
       .menu = kWindows,
       .run = [](MainWindow& w) { w.Canvas()->SetGridVisible(!w.Canvas()->GridVisible()); }},
      {.id = "output.settingsPanel",
       .caption = "Output Settings",
       .page = RibbonPage::Windows,
       .menu = kOutput,
       .separatorBefore = true,
       .action = [](MainWindow& w) { return w.Settings()->toggleViewAction(); }},
      {.id = "file.saveLog",
       .caption = "Save Log to File",
       .handler = "SaveLogtoFile1",
       .page = RibbonPage::Windows,
       .menu = kFile,
       .separatorBefore = true,
       .run = [](MainWindow& w) { w.LogWindowForm()->SaveLogtoFile1Click(); }},

      // The ends of the menus.
      {.id = "file.exit",
       .caption = "E&xit",
       .handler = "FileExit1",
       .menu = kFile,
       .separatorBefore = true,
       .run = [](MainWindow& w) { w.FileExit1Click(); },
       .runsAlone = true},  // it ends the run: no caption logged
      {.id = "output.exitSpecialMode",
       .caption = "Exit Special Mode",
       .handler = "ExitSpecialMode1",
       .menu = kOutput,
       .run = OnState(app::ExitSpecialMode1Click)},
      {.id = "windows.projectsExplorer",
       .caption = "Projects Explorer",
       .menu = kWindows,
       .action = [](MainWindow& w) { return w.ExplorerDock()->toggleViewAction(); }},

      // The canvas tool bar.
      {.id = "canvas.paste",
       .caption = "Paste Selection",
       .handler = "PasteButton",
       .toolBar = true,
       .shortcut = QKeySequence(QKeySequence::Paste),
       .run = OnState([](app::AppState& state, app::Services& services) {
         app::DoPaste(state, services, app::BlackWhiteConversions(state));
       })},
      {.id = "canvas.undo",
       .caption = "Undo",
       .handler = "UndoButton",
       .toolBar = true,
       .shortcut = QKeySequence(QKeySequence::Undo),
       .run = [](MainWindow& w) { app::UndoButtonClick(w.State()); }},
      {.id = "canvas.redo",
       .caption = "Redo",
       .handler = "RedoButton",
       .toolBar = true,
       .shortcut = QKeySequence(QKeySequence::Redo),
       .run = [](MainWindow& w) { app::RedoButtonClick(w.State()); }},
      {.id = "canvas.dithering", .caption = kDithering, .toolBar = true, .opensMenu = true},

      // The special modes, entered and left from their pages.
      Enter("vectors.enter", RibbonPage::GlcdVectors, "Enter Vector Design Mode",
            "VectorDesignToolButton", app::SpecialMode::VectorDesign),
      Exit("vectors.exit", RibbonPage::GlcdVectors, "Exit Vector Mode"),
      Enter("fonts.enter", RibbonPage::GlcdFonts, "Enter Font Script Mode", "EnterFontToolButton",
            app::SpecialMode::FontScript),
      Exit("fonts.exit", RibbonPage::GlcdFonts, "Exit Font Script Mode"),
      Enter("touch.enter", RibbonPage::GlcdTouch, "Enter Touch Panel Mode",
            "Createtouchpanelscript1", app::SpecialMode::TouchPanel),
      Exit("touch.exit", RibbonPage::GlcdTouch, "Exit Touch Panel Mode"),
      Exit("batch.exit", RibbonPage::BatchProcessing, "Exit Batch Edition"),
      Enter("animation.enter", RibbonPage::Animation, "Enter Animation", "AnimationButton",
            app::SpecialMode::Animation),
      Exit("animation.exit", RibbonPage::Animation, "Exit Animation Mode"),

      // Not in this version: shown greyed on their pages.
      Planned("graphic.exportToHex", RibbonPage::GlcdGraphic, "Export Work Canvas to Hex",
              "ConvertdataTOHExButton"),
      Planned("graphic.exportArea", RibbonPage::GlcdGraphic, "Export Selected Area to Data",
              "ExportanAreaoftheWorkCanvas1"),
      Planned("graphic.textField", RibbonPage::GlcdGraphic, "Text Field Editor", "extField1"),
      Planned("graphic.rotatedText", RibbonPage::GlcdGraphic, "Rotated Text", "Rotatedtext1"),
      Planned("editors.loadSource", RibbonPage::TextHexEditors, "Load Source Into Editor",
              "LoadSourceToolButton"),
      Planned("vectors.toScript", RibbonPage::GlcdVectors, "Vectors to script",
              "AddvectorToolButton"),
      Planned("vectors.runScript", RibbonPage::GlcdVectors, "Run Vector Script",
              "RunVectorsButton"),
      Planned("vectors.reloadScript", RibbonPage::GlcdVectors, "Reload Last Vector Script",
              "ReloadRecentVecScriptButton"),
      Planned("vectors.exportCanvas", RibbonPage::GlcdVectors, "Export Canvas to Text Editor",
              "ExportToVectorsButton"),
      Planned("fonts.openEditable", RibbonPage::GlcdFonts, "Open Editable Font",
              "OpenEditableMenuButton"),
      Planned("fonts.scriptToEditable", RibbonPage::GlcdFonts, "Font Script to Editable Font",
              "TranslateFontMenuButton"),
      Planned("fonts.reloadEditable", RibbonPage::GlcdFonts, "Reload Editable Font",
              "ReloadEFFMenuButton"),
      Planned("fonts.fromScratch", RibbonPage::GlcdFonts, "Editable From Scratch",
              "FromScratchMenuButton"),
      Planned("fonts.exportScript", RibbonPage::GlcdFonts, "Export Font Script To Data",
              "ConvertFontMenuToolButton"),
      Planned("touch.canvasAsBackground", RibbonPage::GlcdTouch, "Current Canvas As Background",
              "WorkCanvasAsBackground1"),
      Planned("touch.exportRegions", RibbonPage::GlcdTouch, "Export Regions To Data",
              "ConvertTouchToolButton"),
      Batch("batch.run", "Run Batch", "RunBatchToolButton", &BatchPanel::ApplyPostProButtonClick),
      Batch("batch.runMultiple", "Run Batch Multiple", "RunBatchonalldefinedfilesindefinedfolder1",
            &BatchPanel::RunMultipleButtonClick),
      {.id = "batch.list",
       .caption = "List of all Batches",
       .handler = "ListAllBatchesGlowButton",
       .page = RibbonPage::BatchProcessing,
       .action = [](MainWindow& w) { return w.Batches()->toggleViewAction(); }},
      Batch("batch.activate", "Activate Current Batch", "ActivateBatchGlowButton",
            &BatchPanel::SelectActiveBatchButtonClick),
      Batch("batch.create", "Create New Batch", "CreateNewBarchGlowButton",
            &BatchPanel::CreateNewPPButtonClick),
      Batch("batch.edit", "Edit Current Batch", "EditCurrentBatchGlowButton",
            &BatchPanel::EditPPButtonClick),
      Planned("animation.reloadRecent", RibbonPage::Animation, "Reload Recent Animation",
              "ReloadlastOpenedAnimationToolButton"),
      Planned("connectivity.settings", RibbonPage::Connectivity, "Connectivity Settings",
              "SerialSetup1"),
      Planned("palette.convert256", RibbonPage::ColorPalette, "Convert File to 256 colors",
              "Convertagraphicto256Colors1"),
      Planned("palette.convert4096", RibbonPage::ColorPalette, "Convert File to 4096 colors",
              "ConvertaGraphicasfileto4096colors1"),
      Planned("palette.convert65536", RibbonPage::ColorPalette, "Convert File to 65536 colors",
              "ConvertaGraphicFileto65536Colors1"),
      Planned("palette.convert262144", RibbonPage::ColorPalette, "Convert File to 262144 colors",
              "ConvertaGraphictothe262144ColorsPalette"),
      Planned("palette.exportRgb", RibbonPage::ColorPalette, "Export RGB Palette to text file",
              "ExportPalettecolors3"),
      Planned("palette.loadCustom", RibbonPage::ColorPalette, "Load A Custom Color Palette",
              "LoadColorPalette"),
      Planned("palette.exportLookUpTable", RibbonPage::ColorPalette,
              "Export RGB to Color Look Up table", "ExportColorPaletteAsArray3"),
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
  return rows;
}

QStringList RibbonPageCaptions() {
  return {QStringLiteral("Windows"),          QStringLiteral("GLCD Graphic"),
          QStringLiteral("Text+Hex Editors"), QStringLiteral("GLCD Vectors"),
          QStringLiteral("GLCD Fonts"),       QStringLiteral("GLCD Touch"),
          QStringLiteral("Batch Processing"), QStringLiteral("Animation"),
          QStringLiteral("Connectivity"),     QStringLiteral("Color Palette")};
}

}  // namespace vt::gui
