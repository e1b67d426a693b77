// SPDX-License-Identifier: MIT
#pragma once

// A settings file changed or read without a window, as a job: a query of keys, assignments,
// the selection of a pixel mode, a direction, a corner or a display size with all their checks.
// The file is loaded first (a missing file is created with the factory settings) and saved
// after a change, so that it holds what a load of it sees.

#include <QSize>
#include <QString>
#include <QStringList>

#include "app/export_job.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::app {

struct AppState;
struct Services;

struct SettingsJob {
  enum class Command { Get, Set, Mode, Direction, Corner, Size, Describe };
  QString settingsFile;
  Command command = Command::Get;
  /// Get and Describe: key names ("KEY" or "SECTION.KEY"); Set: "KEY=VALUE" assignments.
  QStringList keys;
  settings::PixelMode mode = settings::PixelMode::Monochrome;
  settings::ScanDirection direction = settings::ScanDirection::tr;
  settings::OriginCorner corner = settings::OriginCorner::CORN1;
  QSize size;  ///< a preset size, or a user size through the user-size edits

  /// Runs the command. Get answers "KEY=VALUE" lines (a key the program does not use as the
  /// file holds it; an unknown key is an error and the others are still answered). Set writes
  /// the keys as given, then loads and saves the file, so that keys which do not read back
  /// return to their defaults. Describe answers "SECTION.KEY (type, default "TEXT"): what it
  /// controls" and needs no settings file. A refused change leaves the file as it was.
  JobOutcome Run(AppState& state, Services& services) const;
};

}  // namespace vt::app
