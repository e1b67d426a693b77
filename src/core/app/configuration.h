// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

class QLockFile;

#include "app/state.h"
#include "settings/settings_file.h"

namespace vt::app {

/// Name of the init file that records the active settings file.
inline const QString kInitFileName = QStringLiteral("Vantorelle.ini");
/// Name of the default project's settings file in the init folder.
inline const QString kDefaultSettingsName = QStringLiteral("default.LCD");
/// Name of the saved log in the init folder.
inline const QString kLogFileName = QStringLiteral("L.LOG");

/// The init folder: "<Documents>/Vantorelle inits<version suffix>/", with a trailing separator.
QString InitFolderPath(const platform::Folders& folders);
/// The folders a first run creates under Documents, as folder-key defaults.
settings::FolderDefaults FirstRunFolders(const platform::Folders& folders);

/// Finds the init folder and the active settings file at start. A missing init file means a first
/// run: the init folder, the init file naming default.LCD and the project folders are created and
/// the samples copied. Sets `state.files.SettingsFile`, `InitFolder`, `FirstRun`.
void LoadFolders(AppState& state, Services& services);

/// Copies the init folder, whole, to "<Documents>/Vantorelle inits xfer", from where the first
/// start of a later version (whose init folder has another suffix) takes its settings.
bool TransfertInits(AppState& state, Services& services);

/// Rewrites the init file with the active settings file. False, after telling the user, when the
/// init file is held by another program or cannot be written.
bool SaveFolders(AppState& state, Services& services);

/// Loads the active settings file into the records. A missing file is first written with the
/// factory settings. Then the stored pixel mode is selected again and the canvas takes the
/// display size. False, with the records unchanged, when the file is held by another program,
/// or cannot be taken (not a regular file, too large, a NUL byte: the message names the file and
/// the line); such a file is marked so that no save replaces it.
bool LoadConfigurationX(AppState& state, Services& services);

/// Saves the records to the active settings file, keeping keys it does not know, under the
/// settings lock. Refused, after telling why, for a file that could not be read at its load or
/// now, one held by another program, or one whose lock another run holds. A failed write is
/// logged as a handled exception and the old file stays. False on failure.
bool SaveConfigurationX(AppState& state, Services& services);

/// The advisory lock of the active settings file ("<file>.lock"), held for its lifetime so that
/// runs changing the file at the same time take their turns: each reads, changes and writes it
/// whole. Locks of one state nest; the outermost takes and frees the file's lock. A lock left
/// by a run that died is taken over after 30 seconds; waiting gives up after 10. Where no lock
/// file can be made at all, the lock counts as held.
class SettingsFileLock {
 public:
  explicit SettingsFileLock(AppState& state);
  ~SettingsFileLock();
  SettingsFileLock(const SettingsFileLock&) = delete;
  SettingsFileLock& operator=(const SettingsFileLock&) = delete;
  /// Whether the lock is held (false: another run kept it past the wait).
  bool Held() const;

 private:
  AppState& state_;
  std::unique_ptr<QLockFile> lock_;
  bool locked_ = false;  ///< this object took the file's lock
};

QString CurrentSettingsFile(const AppState& state);
void SetCurrentSettingsFile(AppState& state, const QString& path);
/// Folder of the current settings file, with a trailing separator.
QString DefaultsFolder(const AppState& state);

/// "Quit and Restore Factory Settings": asks, backs the settings folder up under a dated name and
/// deletes the init file, so that the next start is a first run. True when the program must now
/// terminate.
bool RestoreDefaultSettings1Click(AppState& state, Services& services);

}  // namespace vt::app
