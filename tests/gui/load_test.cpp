// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QToolBar>

#include "app/display_commands.h"
#include "app/pixel_mode_commands.h"
#include "gui/main_window.h"
#include "gui/preview_dialog.h"
#include "gui/threshold_tool.h"
#include "gui_test_app.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::gui {
namespace {

namespace Answer = platform::Answer;

class LoadTest : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }

  /// A picture one row high per gray of `grays`, repeated over `rows` rows, saved as PNG.
  QString Grays(const QList<int>& grays, int rows = 1) {
    QImage image(int(grays.size()), rows, QImage::Format_RGB32);
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < grays.size(); ++x)
        image.setPixel(x, y, qRgb(grays[x], grays[x], grays[x]));
    const QString path = platform.folders.Path(QStringLiteral("grays.png"));
    EXPECT_TRUE(image.save(path));
    return path;
  }
  /// The gray of each pixel of row `y`.
  static QList<int> Row(const QImage& image, int y = 0) {
    QList<int> row;
    for (int x = 0; x < image.width(); ++x) row << qRed(image.pixel(x, y));
    return row;
  }

  test::TestServices platform;
};

TEST_F(LoadTest, AMonochromeLoadWaitsForTheSliderThenPastesBlackAndWhite) {
  MainWindow window(platform.services, {});
  app::SetDisplaySize(window.State(), 8, 4);
  window.LoadPicture(Grays({0, 32, 64, 96, 128, 160, 192, 224}, 4));
  ThresholdTool* tool = window.Threshold();
  ASSERT_TRUE(window.ThresholdToolShown());
  EXPECT_TRUE(window.CanvasToolBar()->isHidden());
  EXPECT_EQ(tool->TrackBar()->value(), 127);
  EXPECT_EQ(window.StatusText(), QStringLiteral("Drag/Paste selection layer"));

  // A gray below the position times 65792 turns black; while the mouse holds the slider only
  // the number follows, the layer is redone on release.
  const struct {
    int position;
    bool held;
    QList<int> layer;
  } steps[] = {
      {100, false, {0, 0, 0, 0, 255, 255, 255, 255}},
      {200, true, {0, 0, 0, 0, 255, 255, 255, 255}},
      {200, false, {0, 0, 0, 0, 0, 0, 0, 255}},
  };
  for (const auto& s : steps) {
    tool->TrackBar()->setSliderDown(s.held);
    tool->TrackBar()->setValue(s.position);
    EXPECT_EQ(tool->Edit()->value(), s.position);
    EXPECT_EQ(Row(window.State().canvas.Selection().Layer(), 3), s.layer) << s.position << s.held;
  }
  EXPECT_EQ(window.StatusText(),
            QStringLiteral("Black/white balance changed, paste selection when ready"));

  tool->PasteButton()->click();
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());  // converted: the paste asks nothing
  EXPECT_FALSE(window.ThresholdToolShown());
  EXPECT_FALSE(window.State().canvas.Selection().IsFloating());
  for (int y = 0; y < 4; ++y) {
    EXPECT_EQ(Row(window.State().canvas.Bitmap(), y), (QList<int>{0, 0, 0, 0, 0, 0, 0, 255}));
  }
}

// Above the mode's levels the load asks; Reduce takes the method of the menu: "Nearest" gives
// the nearest of the four levels, no error spread.
TEST_F(LoadTest, AGrayLoadIsReducedWithTheMenusMethodAndPasted) {
  MainWindow window(platform.services, {});
  app::SetDisplaySize(window.State(), 8, 8);
  ASSERT_TRUE(app::SelectPixelMode(window.State(), platform.services, settings::PixelMode::Gray4));
  window.Command(QStringLiteral("dithering.method.nearest"))->trigger();
  const QList<int> reduced = {0x00, 0x55, 0x55, 0xAA, 0xAA, 0xFF};
  platform.dialogs.Answer(Answer::Ok);  // Reduce
  window.LoadPicture(Grays({0x00, 0x30, 0x60, 0x90, 0xC0, 0xFF}));
  EXPECT_FALSE(platform.dialogs.shown.isEmpty());
  EXPECT_EQ(Row(window.State().canvas.Selection().Layer()), reduced);
  EXPECT_FALSE(window.ThresholdToolShown());
  window.Command(QStringLiteral("canvas.paste"))->trigger();
  EXPECT_EQ(Row(window.State().canvas.Bitmap()).mid(0, 6), reduced);
}

/// Sends a left-button mouse event to `widget` at `at`.
void Mouse(QWidget* widget, QEvent::Type type, QPoint at) {
  QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton,
                    type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(widget, &event);
}

TEST_F(LoadTest, ThePreviewTakesTheAreaDrawnAndMovedWithTheMouse) {
  MainWindow window(platform.services, {});
  app::SetDisplaySize(window.State(), 8, 4);
  const QString path = Grays({0, 40, 80, 120, 160, 200, 240, 255}, 2);
  window.dialogShown = [&](GraphicPreviewDialog& dialog) {
    dialog.OpenFile(path);
    PreviewPane* pane = dialog.Pane();
    const QRect shown = pane->PictureRect();
    const auto centre = [&](int x, int y) {
      return QPoint(shown.x() + (2 * x + 1) * shown.width() / 16,
                    shown.y() + (2 * y + 1) * shown.height() / 4);
    };
    dialog.SelectAreaButton()->click();
    Mouse(pane, QEvent::MouseButtonPress, centre(1, 0));
    Mouse(pane, QEvent::MouseMove, centre(2, 1));
    Mouse(pane, QEvent::MouseButtonRelease, centre(2, 1));
    EXPECT_EQ(dialog.Preview().Area(), QRect(1, 0, 2, 2));
    EXPECT_EQ(dialog.Hint()->text(), QStringLiteral("Move the preselected area"));
    // The next drag inside the area moves it three pixels right.
    Mouse(pane, QEvent::MouseButtonPress, centre(1, 1));
    Mouse(pane, QEvent::MouseMove, centre(4, 1));
    Mouse(pane, QEvent::MouseButtonRelease, centre(4, 1));
    dialog.ImportAngleBox()->setValue(180);  // the area comes in upside down
    dialog.ImportButton()->click();
  };
  window.Command(QStringLiteral("file.loadGraphicPreview"))->trigger();
  EXPECT_EQ(Row(window.State().canvas.Selection().Layer()), (QList<int>{200, 160}));
  EXPECT_EQ(window.State().ImportAngle, 180);
  EXPECT_TRUE(window.State().log.Lines().contains(QStringLiteral("Select Area in Preview Button")));
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());
}

// Both ask for a picture file: the load command in the pictures folder, the preview's Browse
// in the graphics folder. A cancel loads nothing; a chosen file is loaded or previewed.
TEST_F(LoadTest, TheLoadDialogAndThePreviewsBrowseLoadThePictureChosen) {
  MainWindow window(platform.services, {});
  app::SetDisplaySize(window.State(), 8, 1);
  const QString path = Grays({0, 0, 0, 0, 255, 255, 255, 255});
  const QStringList pictures = {
      QStringLiteral("Pictures (*.bmp *.png *.jpg *.jpeg *.gif *.tif *.tiff *.ico *.svg)")};
  platform.filePicker.Cancel();
  platform.filePicker.Choose(path);
  QAction* load = window.Command(QStringLiteral("file.loadGraphic"));
  ASSERT_NE(load, nullptr);
  load->trigger();
  EXPECT_FALSE(window.State().canvas.Selection().IsFloating());
  load->trigger();
  EXPECT_EQ(window.State().canvas.Selection().Layer().size(), QSize(8, 1));
  EXPECT_EQ(window.State().files.LastCanvasFile, QFileInfo(path).absoluteFilePath());
  ASSERT_EQ(platform.filePicker.requests.size(), 2);
  for (const platform::FileRequest& asked : platform.filePicker.requests) {
    EXPECT_EQ(asked.kind, platform::PickKind::OpenFile);
    EXPECT_EQ(asked.caption, QStringLiteral("Load Graphic"));
    EXPECT_EQ(asked.folder, platform.folders.Pictures());
    EXPECT_EQ(asked.filters, pictures);
  }

  window.Threshold()->PasteButton()->click();
  platform.filePicker.requests.clear();
  platform.filePicker.Choose(path);
  QSize previewed;
  window.dialogShown = [&](GraphicPreviewDialog& dialog) {
    dialog.BrowseButton()->click();
    previewed = dialog.Preview().Picture().size();
    dialog.reject();
  };
  window.LoadGraphicPreviewGlowButtonClick();
  EXPECT_EQ(previewed, QSize(8, 1));
  ASSERT_EQ(platform.filePicker.requests.size(), 1);
  EXPECT_EQ(platform.filePicker.requests[0].caption, QStringLiteral("Load Graphic with Preview"));
  EXPECT_EQ(platform.filePicker.requests[0].folder, window.State().settings.folder.BFP);
  EXPECT_EQ(platform.filePicker.requests[0].filters, pictures);
  EXPECT_TRUE(platform.dialogs.shown.isEmpty());
}

}  // namespace
}  // namespace vt::gui
