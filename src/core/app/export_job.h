// SPDX-License-Identifier: MIT
#pragma once

// The export of one picture file as a job: what the command line fills in from its arguments,
// and any other front end from its own controls. The job does the work in its fixed order; the
// front end only parses and reports.

#include <QString>
#include <QStringList>
#include <optional>

#include "canvas/dithering.h"
#include "convert/output_width.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::app {

struct AppState;
struct Services;

/// How a job ended.
struct JobOutcome {
  enum class Status { Done, Refused, Usage };
  Status status = Status::Done;
  /// What to tell for Refused or Usage, one line each; empty when a message of the run has told
  /// it already.
  QStringList errors;
  QStringList warnings;  ///< problems that did not stop the job
  QStringList output;    ///< the job's answer, one line each (the values a query asked for)
  QString writtenPath;   ///< the file written, when Done
};

/// The export of a picture file, as "Export Work Canvas to Data" with the dialog confirmed as it
/// opens. Names are resolved by the front end; the job takes typed choices.
struct ExportJob {
  QString image;         ///< the picture file
  QString settingsFile;  ///< empty: the desktop program's active project
  std::optional<settings::PixelMode> mode;
  std::optional<settings::ScanDirection> direction;
  std::optional<settings::OriginCorner> corner;
  QStringList assignments;  ///< "KEY=VALUE", for this run only
  std::optional<convert::WordWidthChoice> outputWidth;
  std::optional<int> threshold;                ///< monochrome: threshold slider position 0..255
  std::optional<canvas::DitherMethod> dither;  ///< monochrome: dithering method
  QString output;                              ///< empty: OFP under the output name
  QString batch;  ///< a text batch run on the generated text before it is saved; empty: none

  /// Runs the export: loads the settings (a missing file is created with the factory settings),
  /// reads the picture (its size checked on the file's header first), gives the display the
  /// picture's size, applies the mode, the direction, the corner and the assignments in that
  /// order with their checks (the settings file is not written), then the output width; puts the
  /// picture on the canvas (monochrome: thresholded or dithered when asked, else it must be black
  /// and white; gray and colour: reduced to the palette as loading does), names the artwork after
  /// the file and exports. The text is written atomically to `output`, or to OFP under the output
  /// name. With a batch, the batch edits the text first (text output only), and the export
  /// report names it. Refused when a message stopped it, the picture is unreadable or the batch
  /// could not run to its end: nothing is written.
  JobOutcome Run(AppState& state, Services& services) const;
};

}  // namespace vt::app
