// SPDX-License-Identifier: MIT
#include "app/export_driver.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <cmath>
#include <cstring>
#include <optional>

#include "app/batch_commands.h"
#include "app/messages.h"
#include "app/output_naming.h"
#include "app/palette_commands.h"
#include "app/state.h"
#include "canvas/auto_framing.h"
#include "canvas/color_reduction.h"
#include "convert/array_writer.h"
#include "convert/color_packers.h"
#include "convert/constant_format.h"
#include "convert/data_text.h"
#include "convert/export_report.h"
#include "platform/clock.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "util/fast_paths.h"

namespace vt::app {

// The export drives the converters at every step.
using namespace convert;

namespace {

namespace Answer = platform::Answer;
using platform::DialogType;
namespace Buttons = platform::Buttons;

/// A notice with one Ok button.
void Tell(AppState& state, Services& services, const QString& text, const QString& caption,
          DialogType type) {
  MessageDlgA(state, services.dialogs, text, caption, 0, Buttons::Ok, type);
}

bool IsTextTarget(const settings::Settings& s) { return DataTargetOf(s.width) == DataTarget::Text; }

bool IsMonochrome(const settings::Settings& s) {
  const auto mode = settings::CurrentPixelMode(s);
  return !mode || settings::IsMonochromeMode(*mode);
}

double RunPixelsPerByte(const settings::Settings& s) {
  return s.display.NOMAT ? 1.0 : settings::PixelsPerByte(s);
}

WordWidthChoice WordWidthOf(const settings::OutputWidthSettings& w) {
  if (w.DHec) return WordWidthChoice::Binary;
  if (w.DIHec) return WordWidthChoice::IntelHex;
  if (w.D32bc) return WordWidthChoice::Bits32;
  if (w.D16bc) return WordWidthChoice::Bits16;
  return WordWidthChoice::Bits8;
}

void SetDirection(settings::ScanSettings& scan, settings::ScanDirection direction) {
  using settings::ScanDirection;
  scan.tr = direction == ScanDirection::tr;
  scan.tra = direction == ScanDirection::tra;
  scan.tl = direction == ScanDirection::tl;
  scan.tla = direction == ScanDirection::tla;
  scan.td = direction == ScanDirection::td;
  scan.tda = direction == ScanDirection::tda;
  scan.tu = direction == ScanDirection::tu;
  scan.tua = direction == ScanDirection::tua;
}

CanvasSelection SelectionOnCanvas(const canvas::WorkCanvas& canvas) {
  const canvas::FloatingSelection& floating = canvas.Selection();
  if (!floating.IsFloating() || floating.Rect().IsEmpty()) return {};
  const canvas::SelectionRect& r = floating.Rect();
  return CanvasSelection{r.X1, r.Y1, r.X2, r.Y2, true, false, false};
}

QString DateText(const platform::Clock& clock) {
  // dd/MM/yyyy HH:mm:ss, written out rather than through a format string.
  const QDateTime now = clock.Now();
  const QDate d = now.date();
  const QTime t = now.time();
  if (d.year() < 1000 || d.year() > 9999) {
    return QLocale::c().toString(now, QStringLiteral("dd/MM/yyyy HH:mm:ss"));
  }
  return QString::asprintf("%02d/%02d/%04d %02d:%02d:%02d", d.day(), d.month(), d.year(), t.hour(),
                           t.minute(), t.second());
}

ExportResult ResultOf(const ExportRun& run, ExportStatus status) {
  ExportResult result;
  result.status = status;
  result.OutputFileName = run.OutputFileName;
  result.ArrayName = run.ArrayName;
  result.DataByteCount = run.DataByteCount;
  result.area = run.area;
  return result;
}

ExportResult Ended(ExportStatus status) {
  ExportResult result;
  result.status = status;
  return result;
}

// The steps of the run that other subsystems own. The search and replace grid and the text
// post-processing batch are not built yet: their steps do nothing.

/// Colour reduction of the canvas to the palette of the mode, and the application's colour
/// table for 256 colours with more than 236 colours on the canvas.
void ReduceCanvasColors(AppState& state, Services& services, const ExportRun& run) {
  LoadModePalette(state, services);
  const bool colors256 = run.settings.pixel.C256 && !run.settings.pixel.G256;
  const bool referencePaths = run.request.referencePaths;
  // Nothing to convert: spare the copy (the reference path makes it and lets the reduction
  // find that out).
  if (!referencePaths && !colors256 &&
      !canvas::HasUnknownColor(state.canvas.Bitmap(),
                               *state.palettes.index.For(state.palettes.Colors()))) {
    return;
  }
  QImage bitmap = state.canvas.Snapshot();
  if (canvas::ReduceForExport(bitmap, state.palettes, canvas::ModeOf(run.settings), services.escape,
                              referencePaths) != canvas::ConversionStatus::NoConversion) {
    state.canvas.Restore(bitmap);
  }
}
/// The floating layer goes onto the canvas (with its undo step) and the selection counts as
/// pasted.
void PasteFloatingSelection(AppState& state, ExportRun& run) {
  state.canvas.PasteSelection(false, IsMonochrome(run.settings));
  run.selection.SelectionPasted = true;
}
/// The search and replace grid over the main editor (asrg, text output only).
void RunSearchReplaceGrid(AppState&, const ExportRun&) {}
/// The file the run saves to: the request's path, or OFP + "/" + OutputFileName.
QString OutputPath(const AppState& state, const ExportRun& run) {
  return run.request.savePath.isEmpty()
             ? state.settings.folder.OFP + QLatin1Char('/') + run.OutputFileName
             : run.request.savePath;
}

/// Intel Hex: the last partial record and ":00000001FF"; binary: the size in the status, and
/// the hex editor read-only with HexRo. Nothing for an export that stopped.
void FinishByteTarget(AppState& state, ExportRun& run) {
  if (run.ExportAbort || run.ExportCancelled) return;
  switch (DataTargetOf(run.settings.width)) {
    case DataTarget::IntelHex:
      FinishIntelHex(run.intelHex, state.text);
      state.log.StatusBarAndLog(QStringLiteral("Convert canvas to BIN file"));
      break;
    case DataTarget::Binary:
      state.log.StatusBarAndLog(QStringLiteral("%1 Bytes").arg(state.hex.Size()));
      if (run.settings.other.HexRo) state.hex.SetReadOnly(true);
      break;
    case DataTarget::Text:
      break;
  }
}
/// The export report document, PFP + "/" + the output name + ".rtf" (beside the data file when
/// the request names its path or no project folder is set). After post-processing it names the
/// batch and the count of its occurrences.
void WriteExportReport(AppState& state, Services& services, const ExportRun& run,
                       std::optional<std::pair<QString, int>> postProcessing = std::nullopt) {
  const settings::Settings& s = run.settings;
  const QString dataPath = OutputPath(state, run);
  const QString folder = run.request.savePath.isEmpty() && !s.folder.PFP.isEmpty()
                             ? s.folder.PFP
                             : QFileInfo(dataPath).absolutePath();
  ExportReportInfo info;
  info.version = kGeneratedVersionText;
  info.dateText = DateText(services.clock);
  info.outputFileName = run.OutputFileName;
  info.dataFilePath = dataPath;
  info.arrayName = run.ArrayName;
  info.fullScreen = run.area.left == 0 && run.area.top == 0 && run.area.right == s.display.GWI &&
                    run.area.bottom == s.display.GHI;
  info.trueOrigin = run.header.trueOrigin;
  info.xText = run.header.xText;
  info.yText = run.header.yText;
  info.rightText = run.header.rightText;
  info.bottomText = run.header.bottomText;
  info.width = std::max(0, run.area.right - run.area.left);
  info.height = std::max(0, run.area.bottom - run.area.top);
  info.bytes = run.valueCount;
  info.compression = run.compression;
  info.dataByteCount = run.DataByteCount;
  info.postProcessing = std::move(postProcessing);
  AppMessenger messenger(state, services.dialogs);
  convert::WriteExportReport(messenger, services.fileUse, s,
                             folder + QLatin1Char('/') +
                                 QFileInfo(run.OutputFileName).completeBaseName() +
                                 QStringLiteral(".rtf"),
                             info);
}
/// The text post-processing batch (Autop) with its notice. Returns what the batch did.
BatchRunOutcome RunPostProcessing(AppState& state, Services& services, const ExportRun& run) {
  return RunPostExportBatch(state, services, run.request.postProcessBatch);
}
/// The frame loop of an animation and its clip file.
bool ExportAnimationFrames(AppState&, Services&, ExportRun&) { return false; }

/// Saves the editor where the run asks: the request's path, or OFP + "/" + OutputFileName.
/// Returns the path written, or empty after telling of a failure.
QString SaveEditorText(AppState& state, Services& services, const ExportRun& run) {
  const QString path = OutputPath(state, run);
  QDir().mkpath(QFileInfo(path).absolutePath());
  const Result<bool> saved = DataTargetOf(run.settings.width) == DataTarget::Binary
                                 ? state.hex.SaveToFile(path)
                                 : state.text.SaveToFile(path, state.settings.output.crlf);
  if (!saved) {
    state.log.HandledExcept(QStringLiteral("Save exported data"));
    Tell(state, services, saved.error().ToString(), QStringLiteral("Error"), DialogType::Error);
    return {};
  }
  state.log.StatusBarAndLog(QStringLiteral("Data saved to ") + path);
  return path;
}

}  // namespace

ExportDialogSetup FillExportDialog(const AppState& state, ExportRequest previous) {
  const settings::Settings& s = state.settings;
  ExportDialogSetup setup;
  ExportRequest& r = setup.request;
  r = std::move(previous);
  if (!settings::IsHorizontalScan(s) &&
      (r.AreaChoice == kAreaUpperHalf || r.AreaChoice == kAreaLowerHalf)) {
    r.AreaChoice = kAreaFull;
  }
  setup.postProcessingNote = s.post.Autop ? QStringLiteral(" Text Post-Processing is active !")
                                          : QStringLiteral(" ( Without Text Post-Processing )");
  setup.activeBatch = QStringLiteral("Active Batch = ") + s.post.pprof;
  const bool textTarget = IsTextTarget(s);
  setup.compressionEnabled = IsMonochrome(s) && textTarget;
  setup.postProcessingEnabled = textTarget;
  r.Rearrange = s.pixel.dore;
  r.RunSearchReplace = s.post.asrg;
  r.Compression = s.pixel.ccomp && setup.compressionEnabled;
  r.RunPostProcess = s.post.Autop && setup.postProcessingEnabled;
  setup.compressionLabel =
      r.Compression ? QStringLiteral("DATA COMPRESSION IS ACTIVE !") : QString();
  if (r.SubdivisionNumber == 0 && !r.subdivisions.isEmpty()) r.SubdivisionNumber = 1;
  setup.intelHexGroupEnabled = s.width.DIHec;
  r.WordWidth = WordWidthOf(s.width);
  r.AutoFraming = s.block.AFF;
  setup.areaLocked = s.block.AFF;
  if (setup.areaLocked) r.AreaChoice = kAreaFull;
  if (r.AddressDigits != 6 && r.AddressDigits != 8) r.AddressDigits = 4;
  r.AddressOffset = QString(r.AddressDigits, QLatin1Char('0'));
  return setup;
}

void ResetSpecialSettings(ExportRequest& request) {
  request.Compression = false;
  request.Rearrange = false;
  request.Interleaved = false;
  request.AutoFraming = false;
  request.AreaChoice = kAreaFull;
  request.RunSearchReplace = false;
  request.RunPostProcess = false;
}

ExportResult EncodeButtonClick(AppState& state, Services& services, ExportRequest request,
                               bool confirmed) {
  state.log.StatusBarAndLog(QStringLiteral("Export Work Canvas to Data"));
  state.log.Laction = QStringLiteral("EncodeButtonClick");
  settings::Settings& s = state.settings;

  // Font creation owns the canvas; font and touch scripts convert themselves.
  if (state.modes.EditableFontActive || state.modes.SegmentedFontActive) {
    Tell(
        state, services,
        QStringLiteral(" A Font creation mode is still active ! Plase quit/exit this mode first !"),
        QStringLiteral("Font creation active"), DialogType::Warning);
    return Ended(ExportStatus::Stopped);
  }
  if (state.modes.FontScriptActive || state.modes.TouchScriptActive) {
    return Ended(ExportStatus::Diverted);
  }

  // The data of the last export has not been saved.
  if (state.text.Modified()) {
    const int answer = MyMessageDialog(
        state, services.dialogs,
        QStringLiteral("Data in Text Editor has not been saved to File ! \rOverwrite if not "
                       "Willing to Save\r< See File Explorer Window"),
        DialogType::Warning, 1, {QStringLiteral("Abort + Save"), QStringLiteral("Overwrite")},
        Buttons::Ok | Buttons::Cancel);
    if (answer != Answer::Cancel) return Ended(ExportStatus::Stopped);
    state.text.Clear();
  }

  // The byte targets take neither runs nor frames.
  const bool byteTarget = !IsTextTarget(s);
  if (byteTarget && (s.pixel.ccomp || state.modes.AnimationActive)) {
    Tell(state, services,
         QStringLiteral("Hex or Binay file data output is not available for animations or data "
                        "compression ! \rDisable Data Compression or choose 8/16/32 bits output"),
         QStringLiteral("Error "), DialogType::Error);
    return Ended(ExportStatus::Stopped);
  }

  // The editor tab of the target (the hex tab, cleared, for binary) is the window's.

  // The limits of the dialog: what cannot run here is switched off, key and box.
  if (!IsMonochrome(s) || byteTarget) {
    s.pixel.ccomp = false;
    request.Compression = false;
  }
  if (byteTarget) {
    s.post.Autop = false;
    request.RunPostProcess = false;
  }
  if (request.AutoFraming) request.AreaChoice = kAreaFull;

  // The dialog's stored position.
  if (s.layout.EXLE == 0) {
    s.layout.EXLE = 100;
    s.layout.EXTO = 50;
  }

  // The dialog's answer and its own checks; its boxes go to their keys.
  if (!confirmed) return Ended(ExportStatus::Cancelled);
  if ((request.AreaChoice == kAreaUpperHalf || request.AreaChoice == kAreaLowerHalf) &&
      (!settings::IsHorizontalScan(s) || (s.scan.tra && state.modes.AnimationActive))) {
    Tell(state, services,
         QStringLiteral("Upper and lower Display half data only \rin Horizontal Data Direction "
                        "Scheme ! \rand not in animation mode"),
         QString(), DialogType::Warning);
    request.AreaChoice = kAreaFull;
  }
  if (request.AreaChoice == kAreaSubdivision && request.subdivisions.isEmpty()) {
    Tell(state, services, QStringLiteral("No Work Canvas Subdivision defined \r \r "),
         QStringLiteral("Export Subdivision Error"), DialogType::Error);
    request.AreaChoice = kAreaFull;
  }
  if (request.explorerFileEditing) {
    Tell(state, services,
         QStringLiteral(" Please first Save File or Cancel in File Explorer Window \r "),
         QStringLiteral("File not saved"), DialogType::Warning);
    return Ended(ExportStatus::Cancelled);
  }
  if (WordWidthOf(s.width) != request.WordWidth) {
    ApplyWordWidth(s.width, request.WordWidth);
    if (!IsTextTarget(s)) {
      request.Compression = false;
      request.RunPostProcess = false;
    }
  }
  s.block.AFF = request.AutoFraming;
  s.pixel.ccomp = request.Compression;
  s.pixel.dore = request.Rearrange;
  s.post.asrg = request.RunSearchReplace;
  s.post.Autop = request.RunPostProcess;

  // A floating selection on the canvas is the selection of the export unless the caller
  // named one (a subdivision, a batch).
  if (!request.selection.SelectionActive) request.selection = SelectionOnCanvas(state.canvas);

  // The area selector, and the Intel Hex offset on a 16-byte boundary.
  if (request.AreaChoice == kAreaSelected && !request.selection.SelectionActive) {
    return Ended(ExportStatus::SelectArea);
  }
  bool offsetOk = false;
  const qulonglong offset = request.AddressOffset.trimmed().toULongLong(&offsetOk, 16);
  if (offsetOk) {
    request.AddressOffset =
        QStringLiteral("%1")
            .arg(offset & ~qulonglong(15), request.AddressDigits, 16, QLatin1Char('0'))
            .toUpper();
  }

  if (request.AreaChoice == kAreaSubdivision) {
    const int n = request.SubdivisionNumber;
    if (n < 1 || n > request.subdivisions.size()) {
      Tell(state, services, QStringLiteral(" No Work Canvas Subdivision Has Been Selected ! \r  "),
           QStringLiteral("Subdivision Selection Error"), DialogType::Error);
      return Ended(ExportStatus::Stopped);
    }
    const AreaBounds& b = request.subdivisions[n - 1];
    request.selection = CanvasSelection{b.left, b.top, b.right, b.bottom, true, true, true};
  }
  return TranslateCanvas(state, services, request);
}

ExportResult TranslateCanvas(AppState& state, Services& services, const ExportRequest& request) {
  state.log.Laction = QStringLiteral("TranslateCanvas");
  settings::Settings& stored = state.settings;
  const settings::PixelModeSettings& p = stored.pixel;
  const settings::ScanSettings& scan = stored.scan;
  ExportRun run;
  run.request = request;
  run.request.referencePaths = request.referencePaths || ReferencePathsRequested();
  run.selection = request.selection;

  if (p.ccomp && (stored.width.D16bc || stored.width.D32bc)) {
    Tell(state, services,
         QStringLiteral("Sorry, Data compression only works in the 8 bit output mode !"),
         QStringLiteral("Info"), DialogType::Information);
    return Ended(ExportStatus::Stopped);
  }
  // The output name from the artwork name, cleared of what no array name may hold. (The
  // cursor of each walk starts with the font flags off.)
  defineOutputFileName(state);
  const QString panelName =
      defineOutputFileNameEXT(state.files.OutputFileName, stored, stored.width.DHec);
  state.files.OutputFileName = CleanOutputFileName(QFileInfo(panelName).fileName());
  run.OutputFileName = state.files.OutputFileName;

  // Directions and modes that have no walk.
  if (p.G16 && p.gsch && (scan.tu || scan.td)) {
    Tell(state, services,
         QStringLiteral("Sorry this data orientation is yet not available in this grayscale "
                        "mode > 2 horizontal pixels"),
         QString(), DialogType::Error);
    return Ended(ExportStatus::Stopped);
  }
  if (p.C8 && (scan.tu || scan.td || scan.tla || scan.tra)) {
    Tell(state, services,
         QStringLiteral(" Sorry, this 3bpp color conversion scheme \r is under development "),
         QStringLiteral("Under Dev"), DialogType::Information);
    return Ended(ExportStatus::Stopped);
  }
  const bool binaryConstants = Info(CurrentConstantFormat(stored.format)).binaryFormat;
  if (p.G42 && !(!p.Neg && !state.modes.AnimationActive && !binaryConstants && stored.width.D8bc)) {
    Tell(state, services,
         QStringLiteral("Sorry, the 2 pages 4bpp grayscale conversion is only allowed when :  "
                        "\r8 bit mode, Hex data and no animation"),
         QString(), DialogType::Error);
    return Ended(ExportStatus::Stopped);
  }

  // No mode at all exports as monochrome.
  if (!settings::CurrentPixelMode(stored)) {
    settings::ApplyModeFlags(stored.pixel, settings::Info(settings::PixelMode::Monochrome).flags);
  }

  // The run's copy: its end-of-line working flags, and half the height for a half.
  run.settings = stored;
  if (request.AreaChoice == kAreaUpperHalf) run.half = HalfExport::Upper;
  if (request.AreaChoice == kAreaLowerHalf) run.half = HalfExport::Lower;
  if (run.half != HalfExport::None) run.settings.display.GHI /= 2;

  // A size off the page grid changes the direction rather than failing; this one stays.
  if (run.settings.pixel.bw8) {
    const double ppb = RunPixelsPerByte(run.settings);
    std::optional<settings::ScanDirection> fit;
    if (settings::IsVerticalScan(run.settings) &&
        settings::SizeRemainder(run.settings.display.GHI, ppb) != 0.0) {
      fit = settings::ScanDirection::tr;
    } else if (settings::IsHorizontalScan(run.settings) &&
               settings::SizeRemainder(run.settings.display.GWI, ppb) != 0.0) {
      fit = settings::ScanDirection::tda;
    }
    if (fit) {
      SetDirection(stored.scan, *fit);
      SetDirection(run.settings.scan, *fit);
    }
  }

  // The conversions of the run work on the canvas and are undone from the scratch copy.
  bool completed = false;
  for (int pass = 0; pass < 2; ++pass) {
    // A shared copy: the canvas bitmap is copied only when a conversion writes to it.
    const QImage scratch = state.canvas.Bitmap();
    if (!IsMonochrome(run.settings) && !run.settings.pixel.C16M) {
      ReduceCanvasColors(state, services, run);
    }
    if (request.Interleaved) state.canvas.Restore(InterlaceBitmap(state.canvas.Bitmap()));
    if (run.settings.width.D32bc && run.settings.format.OINT != 1) run.settings.format.OINT = 1;
    run.repeatAfterPaste = false;
    completed = ExportFrames(state, services, run);
    if (run.request.RunSearchReplace && IsTextTarget(run.settings)) {
      RunSearchReplaceGrid(state, run);
    }
    FinishByteTarget(state, run);
    if (state.canvas.Bitmap().cacheKey() != scratch.cacheKey()) state.canvas.Restore(scratch);
    if (!run.repeatAfterPaste || pass > 0) break;
    PasteFloatingSelection(state, run);
    run.selection = CanvasSelection{};  // the selection ends with the pass
    run.ExportAbort = false;
  }

  if (!completed || run.ExportAbort || run.ExportCancelled) {
    return ResultOf(run, run.ExportCancelled ? ExportStatus::Cancelled : ExportStatus::Stopped);
  }
  if (DataTargetOf(run.settings.width) != DataTarget::Binary) state.text.SetModified(true);
  ExportResult result = ResultOf(run, ExportStatus::Written);
  // A batch named for this export edits the text before it is saved; the project's batch runs
  // on the editor after the save.
  const bool batchFirst = stored.post.Autop && !request.postProcessBatch.isEmpty();
  std::optional<BatchRunOutcome> post;
  if (batchFirst) {
    post = RunPostProcessing(state, services, run);
    if (!post->ran) {
      result.status = ExportStatus::Stopped;
      result.batchError = post->error;
      return result;
    }
  }
  if (stored.output.Dnask || request.saveAlways || !request.savePath.isEmpty()) {
    result.savedPath = SaveEditorText(state, services, run);
    // A save that failed has told why; the export ends there, without its report.
    if (result.savedPath.isEmpty()) {
      result.status = ExportStatus::Stopped;
      return result;
    }
  }
  // The report tells of the finished export; with post-processing it follows the batch, names
  // it and its count, and is left out when the batch did not run.
  if (stored.post.Autop && !batchFirst) post = RunPostProcessing(state, services, run);
  if (!stored.post.Autop) {
    WriteExportReport(state, services, run);
  } else if (post && post->ran) {
    WriteExportReport(state, services, run,
                      std::pair{QFileInfo(post->batchPath).fileName(), post->result.Occurences});
  }
  return result;
}

bool ExportFrames(AppState& state, Services& services, ExportRun& run) {
  state.log.Laction = QStringLiteral("ExportFrames");
  settings::Settings& s = run.settings;

  // Compression that cannot run here.
  if (s.pixel.ccomp && (s.block.ColRx || !s.pixel.bw8)) {
    Tell(state, services,
         s.block.ColRx
             ? QStringLiteral("Data compression disabled in this mode !")
             : QStringLiteral("Data compression will be disabled for 6 bit wide mode encoding! "),
         QStringLiteral("Confirm"), DialogType::Confirmation);
    s.pixel.ccomp = false;
    state.settings.pixel.ccomp = false;
  }

  run.framed = false;
  if (run.request.AutoFraming && !run.selection.SelectionActive) {
    const canvas::SelectionRect frame =
        canvas::AutoFrameBounds(state.canvas.Bitmap(), canvas::FramingRuleOf(s));
    run.area = AreaBounds{frame.X1, frame.Y1, frame.X2, frame.Y2};
    run.framed = true;
  }

  run.ExportAbort = false;
  run.ExportCancelled = false;
  s.format.ORGC = s.format.OINT;

  if (state.modes.AnimationActive) {
    // The frames of an animation are not held yet: there is nothing to encode.
    Tell(state, services, QStringLiteral(" Animation is empty ! "), QString(), DialogType::Warning);
    run.ExportAbort = true;
    return false;
  }

  // ResetEncoderState: the area.
  const CanvasSelection& sel = run.selection;
  if (!run.framed) {
    run.area = sel.SelectionActive ? AreaBounds{sel.X1, sel.Y1, sel.X2, sel.Y2}
                                   : AreaBounds{0, 0, s.display.GWI, s.display.GHI};
  }

  // A floating layer.
  if (sel.SelectionActive && !sel.SelectionPasted) {
    if (sel.fromSubdivision) {
      PasteFloatingSelection(state, run);
    } else {
      if (IsMonochrome(s) && !state.canvas.IsBlackAndWhite()) {
        MyMessageDialog(
            state, services.dialogs,
            QStringLiteral("Conversion to Black and White has not been done !\r\r") +
                QStringLiteral(
                    " Abort and then perform Dithering (AUTO-Conversion to Black and White)") +
                QStringLiteral("\r") +
                QStringLiteral(" OR for MANUAL Conversion, move Threshold Slider located on top "
                               "of Work Canvas "),
            DialogType::Error, 0, {QStringLiteral("Abort")}, Buttons::Ok);
      } else {
        const int answer = MyMessageDialog(
            state, services.dialogs,
            QStringLiteral(" Floating Selection layer has not been pasted to Work Canvas !\r "
                           "Paste now or Abort Conversion ? "),
            DialogType::Warning, 1, {QStringLiteral("Paste Now"), QStringLiteral("Abort")},
            Buttons::Ok | Buttons::Cancel);
        run.repeatAfterPaste = answer == Answer::Ok;
      }
      run.ExportAbort = true;
      return false;
    }
  }

  // A pasted selection is confirmed.
  if (sel.SelectionActive && sel.SelectionPasted) {
    if (!run.request.batchRunning) {
      const QString question =
          state.modes.AnimationActive
              ? QStringLiteral(" Export Selected Animation Area to Data Array ? ")
          : sel.fromSubdivision
              ? QStringLiteral(" Export Selected Work Canvas Subdivision to Data Array ? ")
              : QStringLiteral(" Export Selected Area to Data Array ? ");
      const int answer = MessageDlgA(state, services.dialogs, question, QStringLiteral("Confirm"),
                                     0, Buttons::Yes | Buttons::No, DialogType::Confirmation);
      if (answer == Answer::No) {
        run.ExportAbort = true;
        return false;
      }
    }
    run.selectionCorners =
        QStringLiteral("%1,%2,%3,%4").arg(sel.X1).arg(sel.Y1).arg(sel.X2 - 1).arg(sel.Y2 - 1);
  }

  const int width = std::max(0, run.area.right - run.area.left);
  const int height = std::max(0, run.area.bottom - run.area.top);
  run.DataByteCount = DataByteCount(s, width, height);

  // Two-page gray has no sliced paging.
  if (s.pixel.G42 && (s.scan.tu || s.scan.tra || s.scan.tla || (s.scan.td && !s.scan.CORN1))) {
    Tell(state, services,
         QStringLiteral(" The sliced paging scheme is not implemented in this mode ! \rUse all "
                        "right,all left ,all up or all down direction"),
         QStringLiteral("Error"), DialogType::Error);
    run.ExportAbort = true;
    return false;
  }

  if (state.modes.AnimationActive) return ExportAnimationFrames(state, services, run);
  return WriteArray(state, services, run);
}

bool WriteArray(AppState& state, Services& services, ExportRun& run) {
  state.log.Laction = QStringLiteral("WriteArray");
  const settings::Settings& s = run.settings;
  const CanvasSelection& sel = run.selection;

  // Each array starts in an empty editor with a new line builder; binary output in an empty
  // hex editor.
  const DataTarget target = DataTargetOf(s.width);
  if (target == DataTarget::Binary) {
    state.hex.Clear();
  } else {
    state.text.Clear();
  }

  if (s.pixel.ST7 && !s.pixel.G16) {
    Tell(state, services,
         QStringLiteral(" The ST7528 special Mode is only working in 4bpp Grayscale mode ! "),
         QStringLiteral("Error"), DialogType::Error);
    run.ExportAbort = true;
    return false;
  }

  run.ExportAbort = false;
  if (sel.SelectionActive && !sel.SelectionPasted) {
    Tell(state, services,
         QStringLiteral(" Please paste selected area before running the encoding ! "),
         QStringLiteral("Warning"), DialogType::Warning);
    run.ExportAbort = true;
    return false;
  }

  if (sel.SelectionActive && !settings::AreaFitsPagingGrid(s, sel.X1, sel.Y1, sel.X2, sel.Y2)) {
    state.text.AddLine(QStringLiteral("Area selected out of"));
    state.text.AddLine(QStringLiteral("paging sheme sectors !"));
    run.ExportAbort = true;
    return false;
  }

  run.ArrayName = QFileInfo(run.OutputFileName).completeBaseName();
  const int width = std::max(0, run.area.right - run.area.left);
  const int height = std::max(0, run.area.bottom - run.area.top);
  run.DataByteCount = DataByteCount(s, width, height);
  const QString templateFile = HeaderFileName(state.files.SettingsFile, HeaderKind::Graphics);
  const ImagePixelSource source(state.canvas.Bitmap());
  HexEditorTarget binaryTarget(state.hex);
  IntelHexTarget intelHexTarget(run.intelHex, state.text);
  if (target == DataTarget::IntelHex) {
    run.intelHex = StartIntelHex(run.request.BytesPerLine, run.request.AddressDigits,
                                 run.request.AddressOffset);
  }
  HexByteTarget* hexTarget = nullptr;
  if (target == DataTarget::Binary) hexTarget = &binaryTarget;
  if (target == DataTarget::IntelHex) hexTarget = &intelHexTarget;
  LoadModePalette(state, services);
  const std::unique_ptr<ColorSearch> search =
      ModeColorSearch(state.palettes, canvas::ModeOf(s), run.request.referencePaths);
  ColorSearch& colors = *search;
  ArrayRequest request{s,
                       source,
                       run.area,
                       services.escape,
                       run.OutputFileName,
                       LoadHeaderTemplate(templateFile),
                       templateFile,
                       DateText(services.clock),
                       run.half,
                       hexTarget};
  request.colors = &colors;
  request.reorderGrid = &state.reorder;
  request.referencePaths = run.request.referencePaths;
  ArrayResult result = convert::WriteArray(request, state.text);
  if (result.completed && result.compressionFailed) {
    // Runs too short to pay for their pointers: the array is written again, uncompressed.
    Tell(state, services,
         QStringLiteral("No efficient data compression possible with this frame ! Uncompressed "
                        "data generated "),
         QStringLiteral("Warning"), DialogType::Warning);
    run.settings.pixel.ccomp = false;
    state.text.Clear();
    result = convert::WriteArray(request, state.text);
  }
  run.header = result.header;
  run.valueCount = result.valueCount;
  run.compression = result.compressionFailed ? std::nullopt : result.compression;
  if (!result.warning.isEmpty()) {
    Tell(state, services, result.warning, QStringLiteral("Warning"), DialogType::Warning);
  }
  if (colors.notFound) {
    Tell(state, services, ColorNotFoundText(*colors.notFound), QStringLiteral("Error Message"),
         DialogType::Error);
    run.ExportAbort = true;
    return false;
  }
  if (!result.completed) {
    run.ExportCancelled = true;
    return false;
  }
  return true;
}

QImage InterlaceBitmap(const QImage& bitmap) {
  const QImage source = bitmap.convertToFormat(QImage::Format_RGB32);
  QImage result(source.size(), QImage::Format_RGB32);
  const int h = source.height();
  const int half = (h + 1) / 2;
  const auto bytes = static_cast<size_t>(source.width()) * sizeof(QRgb);
  for (int y = 0; y < h; ++y) {
    const int from = y % 2 == 0 ? y / 2 : half + y / 2;
    std::memcpy(result.scanLine(y), source.constScanLine(from), bytes);
  }
  return result;
}

}  // namespace vt::app
