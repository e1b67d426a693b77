// SPDX-License-Identifier: MIT
#include "app/configuration.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include "app/messages.h"
#include "app/pixel_mode_commands.h"
#include "batch/sample_batches.h"
#include "convert/header_template.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/folders.h"
#include "settings/key_table.h"
#include "settings/pixel_modes.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

namespace Buttons = platform::Buttons;
using platform::DialogType;

const QString kProjectRoot = QStringLiteral("Vantorelle Project");
const QString kTransferFolder = QStringLiteral("Vantorelle inits xfer");
const QString kInitInUse = QStringLiteral(" Init file is opened by another application ! ");
const QString kInitInUseAtSave =
    QStringLiteral(" Init file is opened by another application or was deleted ! ");
const QString kSettingsInUse = QStringLiteral(" Settings file is opened by another application ! ");
const QString kErrorTitle = QStringLiteral("Error");

QString Join(const QString& folder, const QString& name) {
  return QDir::cleanPath(folder + QLatin1Char('/') + name);
}

void ShowError(AppState& state, Services& services, const QString& text) {
  MessageDlgA(state, services.dialogs, text, kErrorTitle, 0, Buttons::Ok, DialogType::Error);
}

void MakeWritable(const QString& path) {
  QFileInfo info(path);
  if (info.exists() && !info.isWritable()) {
    QFile::setPermissions(
        path, QFile::permissions(path) | QFileDevice::WriteOwner | QFileDevice::WriteUser);
  }
}

bool CopyFolder(const QString& from, const QString& to) {
  QDir source(from);
  if (!source.exists() || !QDir().mkpath(to)) return false;
  bool ok = true;
  QDirIterator it(from, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden,
                  QDirIterator::Subdirectories);
  while (it.hasNext()) {
    const QString path = it.next();
    const QString target = Join(to, source.relativeFilePath(path));
    if (it.fileInfo().isDir()) {
      ok = QDir().mkpath(target) && ok;
    } else {
      QFile::remove(target);
      ok = QFile::copy(path, target) && ok;
    }
  }
  return ok;
}

void CreateProjectFolders(const settings::FolderDefaults& folders, const QString& documents) {
  QDir().mkpath(Join(documents, kProjectRoot));
  for (const QString& f : {folders.OFP, folders.FontFP, folders.tfp1, folders.PFP, folders.bfpa}) {
    QDir().mkpath(f);
  }
}

// Copies the sample files of one kind from the program's folder into the role's folder.
void ImportSamples(const QString& programData, const QStringList& patterns, const QString& to) {
  QDir source(programData);
  if (!source.exists()) return;
  for (const QFileInfo& f : source.entryInfoList(patterns, QDir::Files)) {
    const QString target = Join(to, f.fileName());
    if (!QFileInfo::exists(target)) QFile::copy(f.filePath(), target);
  }
}

QString ReadFirstLine(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  QByteArray line = file.readLine(64 * 1024);
  while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
  return QString::fromUtf8(line);
}

}  // namespace

bool TransfertInits(AppState& state, Services& services) {
  const QString transfer = Join(services.folders.Documents(), kTransferFolder);
  QDir(transfer).removeRecursively();
  const bool copied = CopyFolder(InitFolderPath(services.folders), transfer);
  if (!copied) state.log.HandledExcept(QStringLiteral("Transfert Inits"));
  return copied;
}

QString InitFolderPath(const platform::Folders& folders) {
  return Join(folders.Documents(), QStringLiteral("Vantorelle inits" VT_VERSION_SUFFIX)) +
         QLatin1Char('/');
}

settings::FolderDefaults FirstRunFolders(const platform::Folders& folders) {
  const QString root = Join(folders.Documents(), kProjectRoot);
  settings::FolderDefaults f;
  f.PFP = Join(root, QStringLiteral("Documents"));
  f.BFP = QDir::cleanPath(folders.Pictures());
  f.OFP = Join(root, QStringLiteral("Output Files"));
  f.FontFP = Join(root, QStringLiteral("Fonts"));
  f.tfp1 = Join(root, QStringLiteral("Touch Panel"));
  f.bfpa = Join(root, QStringLiteral("Batch Files"));
  return f;
}

void LoadFolders(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("load folders");
  const QString initFolder = InitFolderPath(services.folders);
  const QString initFile = initFolder + kInitFileName;
  const QString defaultSettings = initFolder + kDefaultSettingsName;
  const settings::FolderDefaults folders = FirstRunFolders(services.folders);
  state.files.InitFolder = initFolder;
  state.files.StartFromDefaults = false;

  bool found = QFileInfo::exists(initFile);
  if (!found) {
    // A previous version may have left its init folder for transfer.
    const QString transfer = Join(services.folders.Documents(), kTransferFolder);
    if (QFileInfo(transfer).isDir() && CopyFolder(transfer, initFolder)) {
      QDir(transfer).removeRecursively();
      found = QFileInfo::exists(initFile);
    }
  }

  if (found) {
    state.files.FirstRun = false;
    CreateProjectFolders(folders, services.folders.Documents());
    QString active;
    if (services.fileUse.IsFileInUse(initFile)) {
      ShowError(state, services, kInitInUse);
    } else {
      active = ReadFirstLine(initFile);
    }
    const bool exists = !active.isEmpty() && QFileInfo(active).isFile();
    const bool isDriveRoot = active == QStringLiteral("C:\\");
    // The stored path is used only when it exists and is not the bare drive root; a relative
    // path cannot name a project here.
    if (exists == isDriveRoot || QDir::isRelativePath(active)) {
      active = defaultSettings;
      state.files.StartFromDefaults = true;
    }
    state.files.SettingsFile = active;
    return;
  }

  // First run.
  state.files.FirstRun = true;
  QDir().mkpath(initFolder);
  CreateProjectFolders(folders, services.folders.Documents());
  state.files.SettingsFile = defaultSettings;
  if (auto written = WriteFileAtomically(initFile, defaultSettings.toUtf8() + "\r\n"); !written) {
    state.log.HandledExcept(QStringLiteral("Load Folders"));
  }
  const QString samples = services.folders.ProgramData();
  ImportSamples(samples, {QStringLiteral("*.SPP"), QStringLiteral("*.spp")}, folders.bfpa);
  ImportSamples(samples, {QStringLiteral("*.GVS"), QStringLiteral("*.gvs")}, folders.PFP);
  ImportSamples(samples, {QStringLiteral("*.FSC"), QStringLiteral("*.fsc")}, folders.FontFP);
  ImportSamples(samples,
                {QStringLiteral("*.TSC"), QStringLiteral("*.tsc"), QStringLiteral("*.BTSC"),
                 QStringLiteral("*.btsc")},
                folders.tfp1);
  ImportSamples(samples,
                {QStringLiteral("*.EFF"), QStringLiteral("*.eff"), QStringLiteral("*.gif")},
                folders.FontFP);
  ImportSamples(samples, {QStringLiteral("wallpaper.jpg")}, initFolder);
  // The built-in sample batches, where the program's folder brought none of that name.
  for (const batch::SampleBatch& sample : batch::SampleBatches()) {
    const QString target = Join(folders.bfpa, sample.fileName);
    if (QFileInfo::exists(target)) continue;
    if (!WriteFileAtomically(target, (sample.lines.join(QStringLiteral("\r\n")) +
                                      QStringLiteral("\r\n"))
                                         .toUtf8())) {
      state.log.HandledExcept(QStringLiteral("Load Folders"));
    }
  }
}

bool SaveFolders(AppState& state, Services& services) {
  const QString initFile = state.files.InitFolder + kInitFileName;
  if (state.files.InitFolder.isEmpty() || services.fileUse.IsFileInUse(initFile)) {
    ShowError(state, services, kInitInUseAtSave);
    return false;
  }
  MakeWritable(initFile);
  if (!WriteFileAtomically(initFile, state.files.SettingsFile.toUtf8() + "\r\n")) {
    state.log.StatusBarAndLog(QStringLiteral("Quit - Save Folders Error"));
    state.log.HandledExcept(QStringLiteral("Quit - Save Folders Error"));
    return false;
  }
  return true;
}

namespace {

/// The settings file as a document, or why it cannot be: not a regular file, too large, a NUL
/// byte (each naming the file).
Result<settings::IniDocument> ReadSettingsFile(const QString& path) {
  if (const Result<bool> regular = CheckRegularOrMissing(path); !regular) return regular.error();
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return Error{Error::Kind::Io, path, 0, 0, file.errorString()};
  }
  return settings::IniDocument::Parse(file.read(settings::IniDocument::kMaxBytes + 1), path);
}

}  // namespace

SettingsFileLock::SettingsFileLock(AppState& state) : state_(state) {
  if (state_.files.SettingsLockDepth++ > 0) return;
  lock_ = std::make_unique<QLockFile>(state_.files.SettingsFile + QStringLiteral(".lock"));
  // A lock left by a run that died is taken over once it is this old.
  lock_->setStaleLockTime(30000);
  locked_ = lock_->tryLock(10000);
  // Where no lock file can be made (a folder that is not writable), the run goes on without one
  // and the write itself tells what is wrong; only another run's lock stops it.
  state_.files.SettingsLockHeld = locked_ || lock_->error() != QLockFile::LockFailedError;
}

SettingsFileLock::~SettingsFileLock() {
  if (--state_.files.SettingsLockDepth > 0) return;
  if (locked_) lock_->unlock();
  state_.files.SettingsLockHeld = false;
}

bool SettingsFileLock::Held() const { return state_.files.SettingsLockHeld; }

bool LoadConfigurationX(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Load Configuration");
  const QString path = state.files.SettingsFile;
  state.files.SettingsUnreadable = false;
  const bool missing = !QFileInfo::exists(path);
  if (!missing && services.fileUse.IsFileInUse(path)) {
    ShowError(state, services, kSettingsInUse);
    return false;
  }
  const settings::FolderDefaults folders = FirstRunFolders(services.folders);

  settings::IniDocument doc;
  if (missing) {
    settings::WriteSettings(settings::DefaultSettings(folders), doc);
    if (auto written = WriteFileAtomically(path, doc.Serialize()); !written) {
      ShowError(state, services, written.error().ToString());
      state.log.HandledExcept(QStringLiteral("Load Configuration"));
    }
    // A new settings file gets the five default header templates beside it; templates the user
    // already has there are kept.
    AppMessenger messenger(state, services.dialogs);
    for (convert::HeaderKind kind :
         {convert::HeaderKind::Graphics, convert::HeaderKind::Raw, convert::HeaderKind::Struct,
          convert::HeaderKind::Dmd, convert::HeaderKind::Bloc}) {
      convert::WriteDefaultHeaderFile(path, kind, false, messenger);
    }
  } else {
    MakeWritable(path);
    Result<settings::IniDocument> read = ReadSettingsFile(path);
    if (!read) {
      // The file is not taken, and no save may replace it by factory settings: the user's file
      // stays as it is until it is mended or another one is chosen.
      state.files.SettingsUnreadable = true;
      ShowError(state, services, read.error().ToString());
      state.log.HandledExcept(QStringLiteral("Load Configuration"));
      return false;
    }
    doc = std::move(read).value();
  }
  settings::ReadSettings(doc, state.settings, folders);
  state.files.OutputFileName = QStringLiteral("NewBitmap.h");
  state.modes.VectorModeActive = false;
  state.canvas.Resize(state.settings.display.GWI, state.settings.display.GHI);
  // The stored mode is selected again with all its steps, as if the user chose it.
  state.modes.SettingsLoadInProgress = true;
  ReselectStoredPixelMode(state, services);
  state.modes.SettingsLoadInProgress = false;
  return true;
}

bool SaveConfigurationX(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Save Configuration");
  const QString path = state.files.SettingsFile;
  if (state.files.SettingsUnreadable) {
    ShowError(state, services,
              path + QStringLiteral(": could not be read, so it is not saved over"));
    return false;
  }
  if (QFileInfo::exists(path) && services.fileUse.IsFileInUse(path)) {
    ShowError(state, services, kSettingsInUse);
    return false;
  }
  // Other runs may change the file at the same time: read, change and write it as one step.
  SettingsFileLock lock(state);
  if (!lock.Held()) {
    ShowError(state, services,
              path + QStringLiteral(": another run holds the settings file; not saved"));
    return false;
  }
  MakeWritable(path);
  // Keys this program does not know stay in the file: start from what is there.
  settings::IniDocument doc;
  if (QFileInfo::exists(path)) {
    Result<settings::IniDocument> read = ReadSettingsFile(path);
    if (!read) {
      ShowError(state, services, read.error().ToString());
      return false;
    }
    doc = std::move(read).value();
  }
  state.settings.vector.wve = state.modes.VectorModeActive;
  settings::WriteSettings(state.settings, doc);
  if (auto written = WriteFileAtomically(path, doc.Serialize()); !written) {
    state.log.StatusBarAndLog(QStringLiteral("Error while saving configuration 3 !"));
    state.log.HandledExcept(QStringLiteral("Error while saving configuration 3 !"));
    return false;
  }
  state.log.Laction = QStringLiteral("Config Saved");
  return true;
}

QString CurrentSettingsFile(const AppState& state) { return state.files.SettingsFile; }

void SetCurrentSettingsFile(AppState& state, const QString& path) {
  state.files.SettingsFile = path;
  state.files.StartFromDefaults = false;
}

QString DefaultsFolder(const AppState& state) {
  return QFileInfo(state.files.SettingsFile).absolutePath() + QLatin1Char('/');
}

bool RestoreDefaultSettings1Click(AppState& state, Services& services) {
  const int answer = MessageDlgA(
      state, services.dialogs,
      QStringLiteral(" Are you sure to want to quit and restore the factory settings ? "),
      QStringLiteral("Confirm"), 0, Buttons::Yes | Buttons::No, DialogType::Confirmation);
  if (answer != platform::Answer::Yes) return false;
  const QString path = state.files.SettingsFile;
  if (QFileInfo::exists(path)) {
    if (services.fileUse.IsFileInUse(path)) {
      ShowError(state, services, kSettingsInUse);
      return false;
    }
    const QDateTime now = services.clock.Now();
    const QString backup =
        Join(services.folders.Documents(),
             QStringLiteral("Vantorelle inits") + QStringLiteral(VT_VERSION_SUFFIX) +
                 QLatin1Char(' ') + now.toString(QStringLiteral("dd-MM-yy")) + QLatin1Char(' ') +
                 now.toString(QStringLiteral("hh-mm-ss")));
    CopyFolder(QFileInfo(path).absolutePath(), backup);
  }
  const QString initFile = InitFolderPath(services.folders) + kInitFileName;
  if (QFileInfo::exists(initFile) && !QFile::remove(initFile)) {
    ShowError(state, services, QStringLiteral(" Restoring factory settings has failed ! "));
  }
  return true;
}

}  // namespace vt::app
