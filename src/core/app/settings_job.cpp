// SPDX-License-Identifier: MIT
#include "app/settings_job.h"

#include <QFile>
#include <QFileInfo>
#include <optional>

#include "app/configuration.h"
#include "app/display_commands.h"
#include "app/pixel_mode_commands.h"
#include "app/state.h"
#include "settings/ini_document.h"
#include "settings/key_lookup.h"
#include "settings/key_names.h"
#include "settings/settings_file.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

using Status = JobOutcome::Status;

bool SameName(const QString& a, const QString& b) {
  return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

/// Makes `path` the settings file.
void Choose(AppState& state, const QString& path) {
  state.files.SettingsFile = QFileInfo(path).absoluteFilePath();
  state.files.InitFolder = QFileInfo(path).absolutePath() + QLatin1Char('/');
}

JobOutcome WithStatus(Status status, QStringList errors = {}) {
  JobOutcome outcome;
  outcome.status = status;
  outcome.errors = std::move(errors);
  return outcome;
}

/// Saves the settings after a change that was made; a refused change saves nothing.
JobOutcome SavedIf(bool changed, AppState& state, Services& services) {
  if (!changed) return WithStatus(Status::Refused);
  return WithStatus(SaveConfigurationX(state, services) ? Status::Done : Status::Refused);
}

JobOutcome Get(AppState& state, const QStringList& names) {
  JobOutcome outcome;
  const settings::IniDocument doc = settings::ReadSettingsDocument(state.files.SettingsFile);
  for (const QString& text : names) {
    const settings::KeyName name = settings::SplitKeyName(text);
    const QString shown = name.section.isEmpty() ? QString() : name.section + QLatin1Char('.');
    if (const auto key = settings::FindKey(name)) {
      outcome.output << shown + key->Key().trimmed() + QLatin1Char('=') + key->Text(state.settings);
      continue;
    }
    // A key the program does not use: as the file holds it.
    std::optional<QString> raw;
    for (const QString& fileSection : doc.Sections()) {
      if (!name.section.isEmpty() && !SameName(fileSection, name.section)) continue;
      raw = doc.Value(fileSection, name.key);
      if (raw) break;
    }
    if (raw) {
      outcome.output << shown + name.key + QLatin1Char('=') + *raw;
    } else {
      outcome.status = Status::Refused;
      outcome.errors << QStringLiteral("no key %1 in %2").arg(text, state.files.SettingsFile);
    }
  }
  return outcome;
}

/// One line per key: SECTION.KEY (type, default "TEXT"): what it controls.
JobOutcome Describe(const QStringList& names) {
  JobOutcome outcome;
  for (const QString& name : names) {
    if (const auto key = settings::FindKey(name)) {
      outcome.output << key->Summary();
    } else {
      outcome.status = Status::Refused;
      outcome.errors << QStringLiteral("unknown key ") + name.trimmed();
    }
  }
  return outcome;
}

JobOutcome Set(AppState& state, Services& services, const QStringList& assignments) {
  settings::IniDocument doc = settings::ReadSettingsDocument(state.files.SettingsFile);
  const Result<QStringList> applied = settings::ApplyKeyAssignments(assignments, doc);
  if (!applied) return WithStatus(Status::Usage, {applied.error().message});
  // Write the raw keys, then load and save so the file holds what a load of it sees.
  if (auto written = WriteFileAtomically(state.files.SettingsFile, doc.Serialize()); !written) {
    JobOutcome outcome = WithStatus(Status::Refused, {written.error().ToString()});
    outcome.warnings = applied.value();
    return outcome;
  }
  JobOutcome outcome = LoadConfigurationX(state, services) ? SavedIf(true, state, services)
                                                           : WithStatus(Status::Refused);
  outcome.warnings = applied.value();
  return outcome;
}

JobOutcome Size(AppState& state, Services& services, QSize size) {
  for (const QSize& preset : settings::PresetSizes()) {
    if (preset == size) {
      SelectPresetSize(state, size);
      return SavedIf(true, state, services);
    }
  }
  // Any other size goes through the user-size edits and their confirmation.
  const auto width = LCDmatrixWidthEditChange(state, services, QString::number(size.width()));
  const auto height = LCDmatrixHeightEditChange(state, services, QString::number(size.height()));
  if (width.beep || height.beep || size.width() < 1 || size.height() < 1) {
    return WithStatus(Status::Refused, {QStringLiteral("a display size is 1x1 to %1x%2, not %3x%4")
                                            .arg(settings::kMaxUserWidth)
                                            .arg(settings::kMaxUserHeight)
                                            .arg(size.width())
                                            .arg(size.height())});
  }
  return SavedIf(LCDmatrixSizeUserDefinedClick(state, services), state, services);
}

}  // namespace

JobOutcome SettingsJob::Run(AppState& state, Services& services) const {
  if (command == Command::Describe) return Describe(keys);  // needs no settings file
  Choose(state, settingsFile);
  // A change reads, changes and writes the file under its lock, so that runs at the same time
  // all land; a query reads it as it stands.
  std::optional<SettingsFileLock> lock;
  if (command != Command::Get) {
    lock.emplace(state);
    if (!lock->Held()) {
      return WithStatus(Status::Refused,
                        {state.files.SettingsFile +
                         QStringLiteral(": another run holds the settings file; nothing changed")});
    }
  }
  if (!LoadConfigurationX(state, services)) return WithStatus(Status::Refused);
  switch (command) {
    case Command::Get:
      return Get(state, keys);
    case Command::Set:
      return Set(state, services, keys);
    case Command::Mode:
      // A mode already active stays, and the file is saved all the same.
      return SavedIf(settings::CurrentPixelMode(state.settings) == mode ||
                         SelectPixelMode(state, services, mode),
                     state, services);
    case Command::Direction:
      return SavedIf(SelectScanDirection(state, services, direction), state, services);
    case Command::Corner:
      SelectOriginCorner(state, services, corner);
      return SavedIf(true, state, services);
    case Command::Size:
      return Size(state, services, size);
    case Command::Describe:
      break;
  }
  return WithStatus(Status::Usage);
}

}  // namespace vt::app
