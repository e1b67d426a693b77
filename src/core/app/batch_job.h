// SPDX-License-Identifier: MIT
#pragma once

// A text batch run as a job: on one text file, or on every matching file of a folder as
// "Run Actve batch on multiple files" does. The front end parses and prints.

#include <QString>

#include "app/export_job.h"

namespace vt::app {

/// The run of a text batch over files.
struct BatchJob {
  QString batch;         ///< the .SPP file
  QString settingsFile;  ///< empty: the desktop program's active project
  QString target;        ///< a text file, or a folder
  QString extension;     ///< a folder run: the files' extension; empty: the setting mext
  QString output;        ///< one file: where the result goes
  bool inPlace = false;  ///< one file: rewrite it, keeping the old one as FILE.bak

  /// Loads the settings, reads the batch and runs it. One file: read (it must be UTF-8 text),
  /// run, written atomically to `output` or, in place, over the file after a copy to FILE.bak.
  /// A folder: each matching file into `<folder>/_Processed`; a file that cannot be read is
  /// named in the errors and the others go on. The report is the output. Refused, with nothing
  /// written for the file in hand, when the batch is missing or one of its blocks never ends.
  JobOutcome Run(AppState& state, Services& services) const;
};

}  // namespace vt::app
