// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QTabWidget>
#include <QTimer>

#include "gui/export_dialog.h"
#include "gui/main_window.h"
#include "gui/settings_panel.h"

namespace {

/// With VANTORELLE_SCREENSHOT=<file.png> set, the window fills the screen, saves a picture of
/// itself to that file once laid out, then pictures of the settings panel and the export dialog
/// beside it ("<file>-settings-panel.png", "<file>-export-dialog.png"), and closes. Used for the
/// documentation pictures; the command line stays as users know it.
constexpr char kScreenshotVariable[] = "VANTORELLE_SCREENSHOT";
/// With VANTORELLE_SCREENSHOT_PICTURE=<picture> the canvas shows that picture, exported.
constexpr char kPictureVariable[] = "VANTORELLE_SCREENSHOT_PICTURE";
/// With VANTORELLE_SCREENSHOT_PAGE=<n> the ribbon shows its page n (from 0).
constexpr char kPageVariable[] = "VANTORELLE_SCREENSHOT_PAGE";

QString Beside(const QString& file, const char* suffix) {
  const QFileInfo info(file);
  return info.path() + QLatin1Char('/') + info.completeBaseName() + QLatin1String(suffix) +
         QStringLiteral(".png");
}

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
  if (window.IsTerminated()) return 1;  // a second instance, or the start failed
  const QString screenshot = qEnvironmentVariable(kScreenshotVariable);
  if (!screenshot.isEmpty()) {
    if (const QScreen* screen = QApplication::primaryScreen()) {
      window.setGeometry(screen->availableGeometry());
    }
    window.show();
    window.Ribbon()->setCurrentIndex(qEnvironmentVariableIntValue(kPageVariable));
    const QString picture = qEnvironmentVariable(kPictureVariable);
    if (!picture.isEmpty()) {
      window.LoadPicture(picture);
      window.RunExport(vt::convert::FillExportDialog(window.State()).request, true);
    }
    QTimer::singleShot(700, &window, [&window, screenshot] {
      bool saved = window.grab().save(screenshot);
      saved = window.Settings()->grab().save(Beside(screenshot, "-settings-panel")) && saved;
      std::unique_ptr<vt::gui::ExportDialog> dialog = window.MakeExportDialog();
      dialog->show();
      QApplication::processEvents();
      dialog->adjustSize();
      saved = dialog->grab().save(Beside(screenshot, "-export-dialog")) && saved;
      dialog.reset();
      // A picture run leaves nothing behind and asks nothing.
      window.State().modes.NoSaveOnQuit = true;
      window.State().modes.ArtworkFresh = true;
      window.close();
      QApplication::exit(saved ? 0 : 1);
    });
    return app.exec();
  }

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
