// SPDX-License-Identifier: MIT
#include "app/startup.h"

#include <QFileInfo>

#include "app/configuration.h"

namespace vt::app {

void StartUp(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Main Form Create");
  LoadFolders(state, services);
  LoadConfigurationX(state, services);
  state.log.Laction = QStringLiteral("Application has started");
}

void ShutDown(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Quit Program");
  state.log.StatusBarAndLog(QStringLiteral("Quit Vantorelle"));
  state.log.Laction = QStringLiteral("Quit Program Save Config");
  SaveConfigurationX(state, services);
  state.log.Laction = QStringLiteral("Quit Program Save Folder");
  SaveFolders(state, services);
  if (QFileInfo(state.files.InitFolder).isDir()) {
    state.log.SaveLog(state.files.InitFolder + kLogFileName);
  }
}

}  // namespace vt::app
