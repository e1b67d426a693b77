// SPDX-License-Identifier: MIT
#pragma once

#include "app/state.h"

namespace vt::app {

/// The start of a run: LoadFolders (init folder, init file, first-run folders), then
/// LoadConfigurationX (the active settings file with every default, and the stored pixel mode,
/// direction and corner re-selected).
void StartUp(AppState& state, Services& services);

/// The end of a run: save the settings, SaveFolders (the init file), SaveLog (L.LOG).
void ShutDown(AppState& state, Services& services);

}  // namespace vt::app
