// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QScreen>

#include "gui/main_window.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Vantorelle"));

  // Any non-empty first argument starts quietly: no log window. The argument is not read
  // further; no file is opened from the command line.
  const QStringList args = QApplication::arguments();
  vt::gui::MainWindow::Options options;
  options.hideLogWindow = args.size() > 1 && !args.at(1).isEmpty();

  vt::gui::MainWindow window(options);
  if (window.IsTerminated()) return 1;  // a second instance, or the start failed

  // A window left in normal state comes back where it was; otherwise it fills the screen.
  if (window.State().settings.layout.MainWs && !window.State().settings.layout.mft.isEmpty()) {
    window.show();
  } else {
    if (const QScreen* screen = QApplication::primaryScreen()) {
      window.resize(screen->availableGeometry().size() * 4 / 5);
    }
    window.showMaximized();
  }
  return app.exec();
}
