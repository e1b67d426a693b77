// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QFileInfo>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QTabWidget>
#include <QTimer>

#include "app/display_commands.h"
#include "gui/export_dialog.h"
#include "gui/main_window.h"
#include "gui/preview_dialog.h"
#include "gui/settings_panel.h"
#include "gui/threshold_tool.h"
#include "settings/geometry.h"

namespace {

/// With VANTORELLE_SCREENSHOT=<file.png> set, the window fills the screen, saves a picture of
/// itself to that file once laid out, then pictures of the settings panel and the export dialog
/// beside it ("<file>-settings-panel.png", "<file>-export-dialog.png"), and closes. Used for the
/// documentation pictures; the command line stays as users know it.
constexpr char kScreenshotVariable[] = "VANTORELLE_SCREENSHOT";
/// With VANTORELLE_SCREENSHOT_PICTURE=<picture> the display takes the picture's size and shows
/// it loaded, thresholded at the middle when it needs it, pasted and exported; a picture of the
/// load preview with that picture and an area drawn on it goes to "<file>-load-preview.png".
constexpr char kPictureVariable[] = "VANTORELLE_SCREENSHOT_PICTURE";
/// With VANTORELLE_SCREENSHOT_THRESHOLD=<position> the picture is left floating with the
/// threshold tool up, its slider at that position.
constexpr char kThresholdVariable[] = "VANTORELLE_SCREENSHOT_THRESHOLD";
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
      const QImage image(picture);
      if (!image.isNull()) {
        vt::app::SetDisplaySize(window.State(), qMin(image.width(), 1024),
                                qMin(image.height(), 768));
      }
      window.LoadPicture(picture);
      if (qEnvironmentVariableIsSet(kThresholdVariable)) {
        window.Threshold()->TrackBar()->setValue(qEnvironmentVariableIntValue(kThresholdVariable));
      } else {
        if (window.ThresholdToolShown()) window.Threshold()->MidButton()->click();
        window.Command(QStringLiteral("Paste Selection"))->trigger();
        window.RunExport(vt::app::FillExportDialog(window.State()).request, true);
      }
    }
    QTimer::singleShot(700, &window, [&window, screenshot, picture] {
      bool saved = window.grab().save(screenshot);
      saved = window.Settings()->grab().save(Beside(screenshot, "-settings-panel")) && saved;
      std::unique_ptr<vt::gui::ExportDialog> dialog = window.MakeExportDialog();
      dialog->show();
      QApplication::processEvents();
      dialog->adjustSize();
      saved = dialog->grab().save(Beside(screenshot, "-export-dialog")) && saved;
      dialog.reset();
      if (!picture.isEmpty()) {
        window.dialogShown = [&saved, screenshot, picture](vt::gui::GraphicPreviewDialog& d) {
          d.resize(960, 560);
          // The picture is chosen in the list when it stands in the graphics folder.
          const auto listed = d.Files()->findItems(QFileInfo(picture).fileName(), Qt::MatchExactly);
          if (!listed.isEmpty()) {
            d.Files()->setCurrentItem(listed.first());
          } else {
            d.OpenFile(picture);
          }
          const QSize size = d.Preview().Picture().size();
          d.Preview().SelectArea({size.width() / 8, size.height() / 8},
                                 {size.width() * 5 / 8, size.height() * 5 / 8});
          d.Sync();
          QApplication::processEvents();
          saved = d.grab().save(Beside(screenshot, "-load-preview")) && saved;
          d.reject();
        };
        window.LoadGraphicPreviewGlowButtonClick();
      }
      // A picture run leaves nothing behind and asks nothing.
      window.State().canvas.DisableSelection();
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
