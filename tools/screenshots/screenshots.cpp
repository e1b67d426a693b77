// SPDX-License-Identifier: MIT
// Takes the documentation pictures of the main window: run it on a display (or under xvfb-run);
// tools/screenshots.sh makes every picture of docs/.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>
#include <optional>

#include "app/display_commands.h"
#include "gui/export_dialog.h"
#include "gui/main_window.h"
#include "gui/preview_dialog.h"
#include "gui/settings_panel.h"
#include "gui/threshold_tool.h"

namespace {

/// What one run pictures.
struct Shot {
  QString file;                  ///< the main window's picture; the others go beside it
  QString picture;               ///< a picture to load, empty for none
  std::optional<int> threshold;  ///< leave the picture floating with the slider there
  int page = 0;                  ///< the ribbon page shown
};

/// "<folder>/<name><suffix>.png" beside `file`.
QString Beside(const QString& file, const char* suffix) {
  const QFileInfo info(file);
  return info.path() + QLatin1Char('/') + info.completeBaseName() + QLatin1String(suffix) +
         QStringLiteral(".png");
}

/// Reads the arguments; none when they are wrong (the parser has said why).
std::optional<Shot> ParseArguments(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Pictures the main window filling the screen, then the settings panel and the export "
      "dialog beside it (<file>-settings-panel.png, <file>-export-dialog.png), and with a "
      "picture the load preview with an area drawn on it (<file>-load-preview.png)."));
  parser.addHelpOption();
  const QCommandLineOption picture(
      QStringLiteral("picture"),
      QStringLiteral("Size the display to the picture, load it, threshold it at the middle when "
                     "it needs it, paste it and export it."),
      QStringLiteral("file"));
  const QCommandLineOption threshold(
      QStringLiteral("threshold"),
      QStringLiteral("Leave the picture floating with the threshold tool up, its slider here."),
      QStringLiteral("position"));
  const QCommandLineOption page(QStringLiteral("page"),
                                QStringLiteral("The ribbon page shown, from 0."),
                                QStringLiteral("n"), QStringLiteral("0"));
  parser.addOptions({picture, threshold, page});
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The PNG file to write."));
  parser.process(arguments);
  if (parser.positionalArguments().size() != 1) {
    QTextStream(stderr) << parser.helpText();
    return std::nullopt;
  }
  Shot shot;
  shot.file = parser.positionalArguments().first();
  shot.picture = parser.value(picture);
  if (parser.isSet(threshold)) shot.threshold = parser.value(threshold).toInt();
  shot.page = parser.value(page).toInt();
  return shot;
}

/// Brings the window to what the pictures show.
void Prepare(vt::gui::MainWindow& window, const Shot& shot) {
  if (const QScreen* screen = QApplication::primaryScreen()) {
    window.setGeometry(screen->availableGeometry());
  }
  window.show();
  window.Ribbon()->setCurrentIndex(shot.page);
  if (shot.picture.isEmpty()) return;
  const QImage image(shot.picture);
  if (!image.isNull()) {
    vt::app::SetDisplaySize(window.State(), qMin(image.width(), 1024), qMin(image.height(), 768));
  }
  window.LoadPicture(shot.picture);
  if (shot.threshold) {
    window.Threshold()->TrackBar()->setValue(*shot.threshold);
    return;
  }
  if (window.ThresholdToolShown()) window.Threshold()->MidButton()->click();
  window.Command(QStringLiteral("canvas.paste"))->trigger();
  window.RunExport(vt::app::FillExportDialog(window.State()).request, true);
}

/// Saves the pictures; false when one could not be written.
bool Picture(vt::gui::MainWindow& window, const Shot& shot) {
  bool saved = window.grab().save(shot.file);
  saved = window.Settings()->grab().save(Beside(shot.file, "-settings-panel")) && saved;
  std::unique_ptr<vt::gui::ExportDialog> dialog = window.MakeExportDialog();
  dialog->show();
  QApplication::processEvents();
  dialog->adjustSize();
  saved = dialog->grab().save(Beside(shot.file, "-export-dialog")) && saved;
  dialog.reset();
  if (!shot.picture.isEmpty()) {
    window.dialogShown = [&saved, &shot](vt::gui::GraphicPreviewDialog& d) {
      d.resize(960, 560);
      // The picture is chosen in the list when it stands in the graphics folder.
      const auto listed =
          d.Files()->findItems(QFileInfo(shot.picture).fileName(), Qt::MatchExactly);
      if (!listed.isEmpty()) {
        d.Files()->setCurrentItem(listed.first());
      } else {
        d.OpenFile(shot.picture);
      }
      const QSize size = d.Preview().Picture().size();
      d.Preview().SelectArea({size.width() / 8, size.height() / 8},
                             {size.width() * 5 / 8, size.height() * 5 / 8});
      d.Sync();
      QApplication::processEvents();
      saved = d.grab().save(Beside(shot.file, "-load-preview")) && saved;
      d.reject();
    };
    window.LoadGraphicPreviewGlowButtonClick();
  }
  return saved;
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Vantorelle"));
  const std::optional<Shot> shot = ParseArguments(QApplication::arguments());
  if (!shot) return 2;

  vt::gui::MainWindow window(vt::gui::MainWindow::Options{});
  if (window.IsTerminated()) return 1;
  Prepare(window, *shot);
  // The pictures wait until the window has been laid out and painted.
  QTimer::singleShot(700, &window, [&window, &shot] {
    const bool saved = Picture(window, *shot);
    // A picture run leaves nothing behind and asks nothing.
    window.State().canvas.DisableSelection();
    window.State().modes.NoSaveOnQuit = true;
    window.State().modes.ArtworkFresh = true;
    window.close();
    QApplication::exit(saved ? 0 : 1);
  });
  return QApplication::exec();
}
