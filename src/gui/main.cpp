// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QScreen>
#include <QTimer>

#include "gui/main_window.h"

namespace {

/// With VANTORELLE_SCREENSHOT=<file.png> set, the window shows at a fixed size, saves a picture
/// of itself to that file once the event loop has laid it out, and closes. Used for the
/// documentation pictures; the command line stays as users know it.
constexpr char kScreenshotVariable[] = "VANTORELLE_SCREENSHOT";
constexpr QSize kScreenshotSize(1100, 720);

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Vantorelle"));

  // Any non-empty first argument starts quietly: no log window. The argument is not read
  // further; no file is opened from the command line.
  const QStringList args = QApplication::arguments();
  vt::gui::MainWindow::Options options;
  options.hideLogWindow = args.size() > 1 && !args.at(1).isEmpty();

  vt::gui::MainWindow window(options);
  if (window.IsTerminated()) return 1;  // the start failed past saving
  const QString screenshot = qEnvironmentVariable(kScreenshotVariable);
  if (!screenshot.isEmpty()) {
    window.resize(kScreenshotSize);
    window.show();
    QTimer::singleShot(500, &window, [&window, screenshot] {
      const bool saved = window.grab().save(screenshot);
      window.close();
      QApplication::exit(saved ? 0 : 1);
    });
    return app.exec();
  }

  if (const QScreen* screen = QApplication::primaryScreen()) {
    window.resize(screen->availableGeometry().size() * 4 / 5);
  }
  window.showMaximized();
  return app.exec();
}
