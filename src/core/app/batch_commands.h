// SPDX-License-Identifier: MIT
#pragma once

// The commands of text batches: which batch a run takes and the checks before it, the run over
// the text editor, the run after an export, and the run over every file of a folder.

#include <QString>
#include <QStringList>
#include <optional>

#include "batch/text_batch.h"

namespace vt::app {

struct AppState;
struct Services;

/// Who runs a batch: the choice of the file depends on it.
enum class BatchCaller {
  Button,          ///< the user's command: the active batch, pprof
  Conversion,      ///< after an export: prpopr (pprof when prpopr is missing)
  FontConversion,  ///< after a font export: ppfpf
};

/// How a run ended.
struct BatchRunOutcome {
  bool ran = false;  ///< the batch was found and run
  batch::TextBatchResult result;
  QString batchPath;  ///< the file run
  /// An error for the front end: the batch file unreadable, or a block that never ends (with
  /// the batch and the line named).
  std::optional<Error> error;
};

/// Visits past the end of the text after which a run that Escape cannot stop ends a block.
inline constexpr int kEndlessVisitLimit = 1000;

/// The batch file of `caller` in the batch folder. For a conversion a missing prpopr takes the
/// name of pprof when that file exists (the setting changes with it).
QString BatchFileFor(AppState& state, BatchCaller caller);

/// RunTextBatch over the text editor: the checks (no batch selected, the file gone; each
/// message ends the run with ran false), the report's heading unless the run is silent, the run,
/// and the text edited in place. `batchFile` names the file for this run instead of the
/// settings. A run that Escape cannot stop ends a block that never ends after
/// kEndlessVisitLimit visits past the end of the text: the text is then left as it was.
BatchRunOutcome RunTextBatch(AppState& state, Services& services, BatchCaller caller,
                             const QString& batchFile = {},
                             const batch::BatchProgress& progress = {});

/// ApplyPostProButtonClick, the user's command: quits Batch Edition first, runs the active
/// batch and, unless the run is silent, tells the count of occurrences with the buttons "Ok",
/// "View Report" and "Cancel" ("View Report" sets state.batch.showReport).
BatchRunOutcome ApplyPostProButtonClick(AppState& state, Services& services,
                                        const batch::BatchProgress& progress = {});

/// The run after an export, with Autop: the project's batch for conversions (or `batchFile`),
/// and unless Sile its notice " Text Postprocessing done !". Returns the outcome.
BatchRunOutcome RunPostExportBatch(AppState& state, Services& services,
                                   const QString& batchFile = {},
                                   const batch::BatchProgress& progress = {});

/// One file of a folder run.
struct FolderFileOutcome {
  QString source;
  QString written;  ///< empty when nothing was written
  std::optional<Error> error;
  int Occurences = 0;
};

/// What a folder run did.
struct FolderRunOutcome {
  bool ran = false;  ///< false: a check stopped it before any file
  QList<FolderFileOutcome> files;
  std::optional<Error> error;  ///< what stopped the whole run (a block that never ends)
  bool aborted = false;        ///< Escape between files
};

/// The run of `batchFile` over every file of `folder` whose name ends with `extension`, each
/// loaded into the text editor, run silently and saved to `<folder>/_Processed/<name>`. The
/// report gathers "Source File : ", "Processed : ", "New file saved in : " for each. A file that
/// cannot be read is reported and left; the others go on. A block that never ends stops the run.
FolderRunOutcome RunBatchOnFolder(AppState& state, Services& services, const QString& batchFile,
                                  const QString& folder, const QString& extension,
                                  const batch::BatchProgress& progress = {});

/// RunMultipleButtonClick, "Run Actve batch on multiple files": the active batch over the
/// folder mpfo with the extension mext. A batch whose first line loads a graphic file is a
/// graphic batch and is refused here.
FolderRunOutcome RunMultipleButtonClick(AppState& state, Services& services,
                                        const batch::BatchProgress& progress = {});

/// SelectActiveBatchButtonClick: `fileName` (in the batch folder) becomes the active batch.
void SelectActiveBatchButtonClick(AppState& state, const QString& fileName);

/// PopulateSPPcombobox: the .SPP files of the batch folder, by name.
QStringList PopulateSPPcombobox(const AppState& state);

/// CreatePostProClick: Batch Edition on a batch of the batch folder. A new batch is named
/// "NewTextPro[n].SPP" with the first n free; else the active batch (named after the artwork
/// when none is active). An existing file is loaded into state.batch.editLines.
void CreatePostProClick(AppState& state, Services& services, bool newBatch);
/// QuitPostClick: leaves Batch Edition, asking to save changed lines first ("Overwrite
/// Processing batch to file ?\r" for an existing file, " Save batch to file ? " for a new one).
/// False when the user chose to stay in the mode.
bool QuitPostClick(AppState& state, Services& services);
/// SavePPbuttonClick: writes the edited lines to their file. False after telling why not.
bool SavePPbuttonClick(AppState& state, Services& services);

/// The lines of a text file for the editor, or an error naming it: a file that is not UTF-8
/// text is refused rather than changed by a round trip.
Result<QStringList> ReadTextFile(const QString& path);

}  // namespace vt::app
