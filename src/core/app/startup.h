// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "app/state.h"

class QLockFile;

namespace vt::app {

/// The single instance: a lock named after the application title. Only one holder at a time;
/// the lock goes with the object.
class SingleInstance {
 public:
  /// `folder` holds the lock file "<title>.lock".
  SingleInstance(const QString& folder, const QString& title);
  ~SingleInstance();
  /// True unless another run holds the lock. The folder is made when missing.
  bool TryLock();

 private:
  QString folder_;
  std::unique_ptr<QLockFile> lock_;
};

/// The forms created at start, in their order, each announced by its breadcrumb.
inline constexpr const char* kFormCreationSteps[] = {
    "Create Export To Data Form", "Create Grids Form",      "Create Image Form",
    "Create Adjustments Form",    "Create Pixel Form",      "Create Welcome Form",
    "Create LogWin Form",         "Create Exploform2 Form", "Create Exploform Form",
    "Create SplashScreen",        "Create About Box",       "Create Presentation Form",
};

/// The start of the main form (FormCreate): breadcrumbs and start phases, the single instance
/// (`instance` may be null: no check), the artwork name "NewBitmap.bmp", LoadFolders, then
/// LoadConfigurationX (the active settings file with every default, and the stored pixel mode,
/// direction and corner re-selected). False when another instance runs: that was said and
/// logged, and the run must end without saving anything.
bool StartUp(AppState& state, Services& services, SingleInstance* instance = nullptr);

/// The forms exist: StartPhase 24 and the breadcrumb "Application has started".
void StartFinished(AppState& state);

/// The last saves of a run: the settings, SaveFolders (the init file), SaveLog (L.LOG), unless
/// NoSaveOnQuit. A failing step logs "Error While Closing Program => " and its marker ("0"
/// before the settings save, "1" after it, "3" after SaveFolders, "4" after SaveLog) and counts
/// as a handled exception; the run ends all the same.
void ShutDown(AppState& state, Services& services);

/// PMSys_Quitter: window positions, the question about unsaved artwork (" Quit Vantorelle ? \r
/// Artwork has not been saved ! " with "Save+Quit", "Cancel", "Quit"), QuitInProgress, the
/// forms closed, then ShutDown. False when the user cancelled: the run goes on.
bool PMSys_Quitter(AppState& state, Services& services);

/// The Exit command of the main menu: the mode gate (" Quit Vantorelle ? "), a floating
/// selection (discarded, and the user quits again), then PMSys_Quitter. True when the run ends.
bool FileExit1Execute(AppState& state, Services& services);

/// The close box of the main window. True allows the close. Before the quit has started it
/// refuses and runs FileExit1Execute instead, whose outcome QuitInProgress tells.
bool FormCloseQuery(AppState& state, Services& services);

}  // namespace vt::app
