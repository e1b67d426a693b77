// SPDX-License-Identifier: MIT
#include "app/startup.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>

#include "app/canvas_commands.h"
#include "app/configuration.h"
#include "app/messages.h"
#include "app/output_naming.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
using platform::DialogType;
namespace Buttons = platform::Buttons;

const QString kArtworkNotSaved =
    QStringLiteral(" Quit Vantorelle ? \r Artwork has not been saved ! ");

/// " Quit Vantorelle ? \r Artwork has not been saved ! " with "Save+Quit", "Cancel", "Quit".
/// True when the quit goes on; "Save+Quit" saves first.
bool AskAboutArtwork(AppState& state, Services& services, bool logAnswers) {
  const QStringList captions{QStringLiteral("Save+Quit"), QStringLiteral("Cancel"),
                             QStringLiteral("Quit")};
  const int answer =
      MyMessageDialog(state, services.dialogs, kArtworkNotSaved, DialogType::Confirmation, 2,
                      captions, Buttons::Ok | Buttons::Cancel | Buttons::Retry);
  if (answer == Answer::Cancel) {
    state.log.StatusBarAndLog(logAnswers ? QStringLiteral("Cancel Quit Vantorelle")
                                         : QStringLiteral("Canceled !"));
    return false;
  }
  if (answer == Answer::Ok) {
    if (logAnswers) state.log.StatusBarAndLog(QStringLiteral("Save & Quit Vantorelle"));
    if (state.shellHooks.saveArtwork) state.shellHooks.saveArtwork(state, services);
    if (logAnswers) state.log.StatusBarAndLog(QStringLiteral("Artwork Saved"));
  }
  return true;
}

/// The mode gate before a quit: a mode that stops asks `question` with "Quit ?"; anything but
/// Cancel leaves the mode. False when the user cancelled.
bool LeaveModesForQuit(AppState& state, Services& services, const QString& question) {
  if (CheckMode(state, services, 0)) {
    const int answer = MessageDlgA(state, services.dialogs, question, QStringLiteral("Quit ?"), 0,
                                   Buttons::Ok | Buttons::Cancel, DialogType::Confirmation);
    if (answer == Answer::Cancel) return false;
  }
  return QuitModeButtonClick(state, services);
}

}  // namespace

SingleInstance::SingleInstance(const QString& folder, const QString& title)
    : folder_(folder),
      lock_(std::make_unique<QLockFile>(QDir(folder).filePath(title + QStringLiteral(".lock")))) {
  lock_->setStaleLockTime(0);  // a lock left by a crash is taken over once its process is gone
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::TryLock() {
  if (lock_->isLocked()) return true;
  QDir().mkpath(folder_);
  // Only a lock held by another run refuses; a folder that cannot take the lock checks nothing.
  return lock_->tryLock(0) || lock_->error() != QLockFile::LockFailedError;
}

bool StartUp(AppState& state, Services& services, SingleInstance* instance) {
  Log& log = state.log;
  log.Laction = QStringLiteral("Main Form Create");
  log.StartPhase = 1;
  log.StartPhase = 2;
  log.Laction = QStringLiteral("APP is not alread running 1");
  if (instance && !instance->TryLock()) {
    log.Laction = QStringLiteral("APP is already running");
    MessageDlgA(state, services.dialogs,
                QStringLiteral(" Another instance of Vantorelle is already running !"),
                QStringLiteral("Message"), 0, Buttons::Ok, DialogType::Information);
    log.StatusBarAndLog(QStringLiteral("Another instance of Vantorelle is already running !"));
    return false;
  }
  for (int step = 2; step <= 4; ++step) {
    log.Laction = QStringLiteral("APP is not alread running %1").arg(step);
  }
  for (int phase = 3; phase <= 8; ++phase) log.StartPhase = phase;
  state.settings.output.nbmfn = QStringLiteral("NewBitmap.bmp");
  state.settings.display.GWI = 128;  // until the settings load
  state.settings.display.GHI = 128;
  log.Laction = QStringLiteral("load folders");
  LoadFolders(state, services);
  LoadConfigurationX(state, services);
  defineOutputFileName(state);  // FilesInMenu
  for (const int phase : {9, 10, 12, 14}) log.StartPhase = phase;
  return true;
}

void StartFinished(AppState& state) {
  state.log.StartPhase = 24;
  state.log.Laction = QStringLiteral("Application has started");
}

void ShutDown(AppState& state, Services& services) {
  QString marker = QStringLiteral("0");
  try {
    state.log.Laction = QStringLiteral("Quit Program Save Config");
    SaveConfigurationX(state, services);
    marker = QStringLiteral("1");
    state.log.Laction = QStringLiteral("Quit Program Save Folder");
    if (!state.modes.NoSaveOnQuit) {
      SaveFolders(state, services);
      marker = QStringLiteral("3");
      if (QFileInfo(state.files.InitFolder).isDir()) {
        state.log.SaveLog(state.files.InitFolder + kLogFileName);
      }
      marker = QStringLiteral("4");
    }
  } catch (const std::exception&) {
    state.log.StatusBarAndLog(QStringLiteral("Error While Closing Program => ") + marker);
    state.log.HandledExcept(QStringLiteral("Error While Closing Program => ") + marker);
  }
}

bool PMSys_Quitter(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Quit Program");
  if (state.shellHooks.formPositions) state.shellHooks.formPositions(state);
  state.log.StatusBarAndLog(QStringLiteral("Quit Vantorelle"));
  if (!(state.modes.ArtworkSaved && state.modes.ArtworkFresh)) {
    state.log.Laction = QStringLiteral("Quit Program Dialog");
    if (!AskAboutArtwork(state, services, /*logAnswers=*/true)) return false;
  }
  state.log.StatusBarAndLog(QStringLiteral("Do not save and Quit Vantorelle"));
  state.modes.QuitInProgress = true;
  if (state.shellHooks.closeForms) state.shellHooks.closeForms(state);
  ShutDown(state, services);
  return true;
}

bool FileExit1Execute(AppState& state, Services& services) {
  state.log.StatusBarAndLog(QStringLiteral("Quit Vantorelle Main Menu Item"));
  if (!LeaveModesForQuit(state, services, QStringLiteral(" Quit Vantorelle ? "))) return false;
  if (SelectionPending(state)) {
    const int answer = MessageDlgA(
        state, services.dialogs,
        QStringLiteral(" Selection Layer has not been pasted ! \r Discard Selection ? "), QString(),
        0, Buttons::Ok | Buttons::Cancel, DialogType::Confirmation);
    if (answer != Answer::Cancel) EscapeSelection(state);
    return false;
  }
  return PMSys_Quitter(state, services);
}

bool FormCloseQuery(AppState& state, Services& services) {
  Log& log = state.log;
  log.Laction = QStringLiteral("Main Form close query 1");
  if (!LeaveModesForQuit(state, services, QStringLiteral(" Quit Vantorelle ?"))) return false;
  log.Laction = QStringLiteral("Main Form close query 2");
  if (!state.modes.QuitInProgress) {
    log.Laction = QStringLiteral("Main Form close query 3");
    FileExit1Execute(state, services);
    return false;
  }
  log.Laction = QStringLiteral("Main Form close query 4");
  log.StatusBarAndLog(QStringLiteral("Close Query Vantorelle"));
  if (!state.modes.ArtworkSaved) {
    log.Laction = QStringLiteral("Main Form close query 5");
    if (!AskAboutArtwork(state, services, /*logAnswers=*/false)) return false;
  }
  log.Laction = QStringLiteral("Main Form close query 8");
  return true;
}

}  // namespace vt::app
