// SPDX-License-Identifier: MIT
#pragma once

// The export driver: "Export Work Canvas to Data". It takes the answers of the export dialog,
// runs the checks of the command in their fixed order, converts a scratch copy of the Work
// Canvas, writes the array into the text editor and saves it to the output folder. The Work
// Canvas is the same afterwards, pixel for pixel; the stored settings are the same except for
// the keys the dialog sets and the silent change of direction for a size that does not fit.

#include <QImage>
#include <QList>
#include <QString>
#include <optional>

#include "convert/compression.h"
#include "convert/header_template.h"
#include "convert/intel_hex.h"
#include "convert/output_width.h"
#include "convert/scan_walker.h"
#include "settings/settings.h"
#include "util/error.h"

namespace vt::app {

struct AppState;
struct Services;

using convert::AreaBounds;
using convert::CompressionCounters;
using convert::HalfExport;
using convert::HeaderText;
using convert::IntelHexState;
using convert::WordWidthChoice;

/// The choices of the "Full / Partial" group of the export dialog.
enum AreaChoiceValue {
  kAreaFull = 0,         ///< "Export Full size Work Canvas"
  kAreaUpperHalf = 1,    ///< "Export Upper Half of Work Canvas"
  kAreaLowerHalf = 2,    ///< "Export Lower Half of Work Canvas"
  kAreaSelected = 3,     ///< "Export Area of Work Canvas"
  kAreaSubdivision = 4,  ///< "Export Selected Subdivision >"
};

/// A selection on the Work Canvas: X1, Y1 inclusive, X2, Y2 one past the last pixel.
struct CanvasSelection {
  int X1 = 0;
  int Y1 = 0;
  int X2 = 0;
  int Y2 = 0;
  bool SelectionActive = false;  ///< a rectangle is selected
  bool SelectionPasted = true;   ///< its layer lies on the canvas (false: still floating)
  bool fromSubdivision = false;  ///< the selection is a canvas subdivision
};

/// What the export dialog fills in, and what the caller knows of the canvas and the tools
/// around it until they hold it themselves.
struct ExportRequest {
  // The dialog ("Export Work Canvas To Data").
  int AreaChoice = kAreaFull;     ///< an AreaChoiceValue
  int SubdivisionNumber = 0;      ///< 1 .. the number of subdivisions; 0 when none is chosen
  bool AutoFraming = false;       ///< "Effective Bitmap Size ( Auto Framing )", key AFF
  bool Compression = false;       ///< "Monochrome Data Compression ", key ccomp
  bool Rearrange = false;         ///< "Rearrange Data Bits (Settings)", key dore
  bool Interleaved = false;       ///< lines 0, 32, 1, 33 ... for a height of 64; not kept
  bool RunSearchReplace = false;  ///< key asrg
  bool RunPostProcess = false;    ///< key Autop
  WordWidthChoice WordWidth = WordWidthChoice::Bits8;
  int BytesPerLine = 16;                           ///< Intel Hex record length
  int AddressDigits = 4;                           ///< Intel Hex address digits: 4, 6 or 8
  QString AddressOffset = QStringLiteral("0000");  ///< hexadecimal

  // The canvas and the tools.
  CanvasSelection selection;
  QList<AreaBounds> subdivisions;    ///< the canvas subdivisions, numbered from 1
  bool batchRunning = false;         ///< a batch drives the export: no question about the area
  bool explorerFileEditing = false;  ///< a file is open for editing in the file explorer

  // Where the finished text goes.
  QString savePath;         ///< not empty: saved here, whatever Dnask says
  bool saveAlways = false;  ///< save to OFP + "/" + OutputFileName even without Dnask

  /// The plain reference paths of every stage in place of the fast ones (the same output).
  /// TranslateCanvas also takes them when the environment asks for them
  /// (ReferencePathsRequested).
  bool referencePaths = false;
  /// With post-processing: this batch file for this export instead of the project's, run on
  /// the text before it is saved (the desktop program saves first and post-processes the
  /// editor after).
  QString postProcessBatch;
};

/// What the dialog shows when it opens: the request with its boxes taken from the keys and the
/// limits of the current mode and target applied, and the texts of its labels.
struct ExportDialogSetup {
  ExportRequest request;
  QString postProcessingNote;  ///< " Text Post-Processing is active !" or its negation
  QString activeBatch;         ///< "Active Batch = " + pprof
  QString compressionLabel;    ///< "DATA COMPRESSION IS ACTIVE !" or empty
  bool compressionEnabled = true;
  bool postProcessingEnabled = true;
  bool intelHexGroupEnabled = false;
  bool areaLocked = false;  ///< AFF holds the area at "Export Full size Work Canvas"
};

/// Fills the export dialog: `previous` gives the choices that are not kept in the settings
/// (area, subdivision, interleaving); the boxes follow their keys. Halves are offered only with
/// a horizontal direction, compression only in monochrome with a text target, post-processing
/// only with a text target.
ExportDialogSetup FillExportDialog(const AppState& state, ExportRequest previous = {});

/// "Reset ALL special settings": compression, rearrangement, interleaving and auto framing off,
/// the full canvas, no search and replace, no post-processing.
void ResetSpecialSettings(ExportRequest& request);

/// How an export ended.
enum class ExportStatus {
  Written,     ///< the array is complete in the text editor (and saved when asked)
  Stopped,     ///< a message stopped it (ExportAbort), or a save failed; nothing was saved
  Cancelled,   ///< the dialog was cancelled, or Escape stopped the walk (ExportCancelled)
  Diverted,    ///< a font or touch script is active: its own conversion is the command's
  SelectArea,  ///< "Export Area of Work Canvas" without a selection: the area selector opens
};

/// The working state of one export. The settings are the run's copy: the halved GHI of a half
/// export, ORGC taken from OINT and the end-of-line working flags live here, never in the
/// stored settings.
struct ExportRun {
  ExportRequest request;
  settings::Settings settings;
  HalfExport half = HalfExport::None;
  CanvasSelection selection;
  AreaBounds area;                ///< right and bottom exclusive
  bool framed = false;            ///< the area is the auto frame
  bool ExportAbort = false;       ///< a message was shown: stop quietly
  bool ExportCancelled = false;   ///< Escape
  bool repeatAfterPaste = false;  ///< "Paste Now": the export runs once more
  long long DataByteCount = 0;
  QString OutputFileName;  ///< no folder
  QString ArrayName;
  int EncodedFrame = 0;
  QString selectionCorners;  ///< "X1,Y1,X2,Y2" with the last pixel inclusive, for the report
  IntelHexState intelHex;    ///< the Intel Hex record builder
  HeaderText header;         ///< the header of the array written
  long long valueCount = 0;  ///< values the walk produced
  std::optional<CompressionCounters> compression;  ///< a compression that was kept
};

/// What an export left.
struct ExportResult {
  ExportStatus status = ExportStatus::Stopped;
  QString OutputFileName;
  QString ArrayName;
  long long DataByteCount = 0;
  AreaBounds area;
  QString savedPath;  ///< the file written; empty when nothing was written
  std::optional<Error> batchError;  ///< the post-processing batch could not run to its end
};

/// The command "Export Work Canvas to Data" after its dialog: `request` as the user left the
/// dialog, `confirmed` false for "No / Cancel ". Checks in this order, each stopping the
/// command with its message: a font creation running; unsaved data in the text editor
/// ("Abort + Save" stops, "Overwrite" clears it); binary or Intel Hex output with compression or
/// animation. Then the dialog's limits (compression and post-processing off where they cannot
/// run, which clears their keys; AFF keeps the full area), EXLE 0 becomes 100 and EXTO 50, and
/// the dialog's own checks: a file being edited in the explorer, halves without a horizontal
/// direction, a subdivision without subdivisions (both back to the full canvas). The word width
/// and the boxes go to their keys. A subdivision becomes a pasted selection. Then TranslateCanvas.
ExportResult EncodeButtonClick(AppState& state, Services& services, ExportRequest request,
                               bool confirmed);

/// The export of the canvas, also the entry of batches. Checks in this order: compression with
/// 16 or 32-bit output; the 16 gray horizontal-pair mode with tu or td; 8 colours with tu, td,
/// tla or tra; two-page gray unless Neg is off, no animation, no binary constant format and
/// 8-bit output. No mode set selects monochrome. A half export halves GHI for the run. A size
/// that does not fit the direction switches it silently and for good: a height off the page
/// grid with a vertical direction to tr, a width off the grid with a horizontal one to tda.
/// Then a scratch copy of the canvas is kept, the canvas is converted for the run (interleaved
/// lines), ExportFrames runs (once more after "Paste Now"), and the canvas is restored from the
/// copy. A complete array is saved atomically to OFP + "/" + OutputFileName when Dnask holds
/// (or where the request says); a failed save shows its error, leaves the old file and ends the
/// export. A finished export then runs the post-processing when Autop holds, and writes its
/// report; a stopped or cancelled one writes none.
ExportResult TranslateCanvas(AppState& state, Services& services, const ExportRequest& request);

/// The export proper on the run. Compression is refused with ColRx and in 6-bit mode (the key
/// is cleared, the export goes on); the auto frame is taken when asked and no selection is
/// active; ORGC := OINT; an animation without frames stops; the area is the selection or the
/// whole canvas; a floating selection is pasted when it is a subdivision, else stops the export
/// with the black-and-white or the paste question ("Paste Now" asks for a repeat); a pasted
/// selection is confirmed unless a batch runs; DataByteCount; the two-page gray direction check;
/// then WriteArray. Returns true when the array was completed.
bool ExportFrames(AppState& state, Services& services, ExportRun& run);

/// One array into the text editor, which is cleared first: ST7 outside the 16 gray mode
/// refuses; a floating selection refuses; a selection off the page grid writes "Area selected
/// out of" and "paging sheme sectors !" into the editor instead; ArrayName from the output file
/// name; the header from the graphics template beside the settings file (a missing template is
/// warned of), the preamble, the walk and the end of the array. Returns false when it stopped.
bool WriteArray(AppState& state, Services& services, ExportRun& run);

/// The lines of `bitmap` in interleaved order: line 0, then line h/2 (rounded up), then line 1,
/// and so on (0, 32, 1, 33, 2 ... for a height of 64).
QImage InterlaceBitmap(const QImage& bitmap);

}  // namespace vt::app
