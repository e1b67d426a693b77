// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPushButton>
#include <QTextBlock>
#include <QTextLayout>
#include <QTreeWidget>

#include "app/configuration.h"
#include "app/display_commands.h"
#include "app/startup.h"
#include "gui/escape_poll.h"
#include "gui/explorer.h"
#include "gui/export_dialog.h"
#include "gui/main_window.h"
#include "gui/settings_panel.h"
#include "gui/source_editor.h"
#include "gui_test_app.h"
#include "settings/geometry.h"
#include "support/temp_folders.h"

namespace vt::gui {
namespace {

namespace Answer = platform::Answer;

class ShellWindow : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }

  /// A 16 x 8 picture, black in the left half of the first row only.
  QString Picture() {
    QImage image(16, 8, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = 0; x < 8; ++x) image.setPixel(x, 0, qRgb(0, 0, 0));
    const QString path = platform.folders.Path(QStringLiteral("pic.png"));
    EXPECT_TRUE(image.save(path));
    return path;
  }

  /// Picks entry `index` of a settings box as the user would.
  static void Pick(QComboBox* box, int index) { box->activated(index); }

  test::TestServices platform;
};

TEST_F(ShellWindow, ExportFromTheRibbonLeavesTheArrayInTheEditorAndTheOutputFolder) {
  MainWindow window(platform.services, {});
  app::SetDisplaySize(window.State(), 16, 8);
  window.LoadPicture(Picture());
  window.Command(QStringLiteral("canvas.paste"))->trigger();
  QAction* command = window.Command(QStringLiteral("file.exportToData"));
  ASSERT_NE(command, nullptr);
  bool dialogSeen = false;
  window.exportDialogShown = [&](ExportDialog& dialog) {
    dialogSeen =
        dialog.isVisible() && dialog.windowTitle() == QStringLiteral("Export Work Canvas To Data");
    dialog.ExportButton()->click();
  };
  command->trigger();
  EXPECT_TRUE(dialogSeen);

  QString data = QStringLiteral(" 0xFF");
  for (int i = 1; i < 16; ++i) data += QStringLiteral(" , 0x00");
  const QString text = window.Editors()->Source()->toPlainText();
  EXPECT_TRUE(text.contains(QStringLiteral("const uint8_t  pic [] PROGMEM = {")));
  EXPECT_TRUE(text.contains(data + QLatin1Char('\n'))) << text.toStdString();
  EXPECT_EQ(window.Editors()->tabText(0), QStringLiteral("pic.h"));
  const QString saved = window.State().settings.folder.OFP + QStringLiteral("/pic.h");
  EXPECT_EQ(QString::fromUtf8(test::ReadAll(saved)).remove(QLatin1Char('\r')), text);
  const QStringList& log = window.State().log.Lines();
  // The command logs its caption, the driver its own entry: the two fold into one line.
  const qsizetype caption = log.indexOf(QStringLiteral("Export Work Canvas to Data  x 1"));
  EXPECT_GE(caption, 0);
  EXPECT_EQ(log.indexOf(QStringLiteral("Data saved to ") + saved), caption + 1);  // caption first
  EXPECT_FALSE(window.State().text.Modified());
  window.Editors()->Source()->appendPlainText(QStringLiteral("// mine"));  // the user types
  EXPECT_TRUE(window.State().text.Modified());
  EXPECT_EQ(window.State().text.LastLine(), QStringLiteral("// mine"));
  // Work not in this version is shown, greyed, and says so.
  QAction* planned = window.Command(QStringLiteral("vectors.runScript"));
  ASSERT_NE(planned, nullptr);
  EXPECT_FALSE(planned->isEnabled());
  EXPECT_TRUE(planned->toolTip().contains(MainWindow::NotAvailableText()));
  // The file list beside the ribbon: recent files here, its own caption on the fonts page.
  auto* files = window.Ribbon()->findChild<QComboBox*>(QStringLiteral("FilesCombo"));
  ASSERT_NE(files, nullptr);
  ASSERT_EQ(files->count(), 2);
  EXPECT_EQ(files->itemText(1), QFileInfo(platform.folders.Path("pic.png")).absoluteFilePath());
  window.Ribbon()->setCurrentIndex(4);
  EXPECT_EQ(files->itemText(0), QStringLiteral("All Font Scripts >  < Editable Scripts"));
}

TEST_F(ShellWindow, ModeAndDirectionChangesAreRefusedThroughTheDialogs) {
  MainWindow window(platform.services, {});
  SettingsPanel* panel = window.Settings();
  window.Command(QStringLiteral("animation.enter"))->trigger();
  EXPECT_TRUE(window.State().modes.AnimationActive);

  platform.dialogs.shown.clear();
  Pick(panel->PixelModeBox(), panel->PixelModeBox()->findData(int(settings::PixelMode::Gray256)));
  EXPECT_EQ(platform.dialogs.shown.size(), 1);  // "OK": the mode stays
  EXPECT_EQ(panel->PixelModeBox()->currentData().toInt(), int(settings::PixelMode::Monochrome));

  // Entering touch while animating: the gate asks, "Quit" leaves the animation, the command stops.
  window.Command(QStringLiteral("touch.enter"))->trigger();
  EXPECT_EQ(platform.dialogs.shown.size(), 2);
  EXPECT_FALSE(window.State().modes.AnimationActive || window.State().modes.TouchScriptActive);

  app::SetDisplaySize(window.State(), 128, 100);
  window.Refresh();
  Pick(panel->DirectionBox(), panel->DirectionBox()->findData(int(settings::ScanDirection::td)));
  ASSERT_EQ(platform.dialogs.shown.size(), 3);
  EXPECT_EQ(platform.dialogs.shown[2].caption, QStringLiteral("Error"));
  EXPECT_EQ(panel->DirectionBox()->currentData().toInt(), int(settings::ScanDirection::tr));
  EXPECT_EQ(window.State().log.Lines().last(), window.State().log.StatusText());
}

TEST_F(ShellWindow, ClosingWithUnsavedArtworkAsksThenSavesSettingsAndLog) {
  MainWindow window(platform.services, {});
  window.show();
  app::SetDisplaySize(window.State(), 16, 8);
  window.LoadPicture(Picture());
  window.Command(QStringLiteral("canvas.paste"))->trigger();
  const QString logFile = window.State().files.InitFolder + app::kLogFileName;
  platform.dialogs.Answer(Answer::Cancel);
  EXPECT_FALSE(window.close());
  EXPECT_EQ(platform.dialogs.shown.size(), 1);
  EXPECT_FALSE(window.IsShutDown());
  EXPECT_FALSE(QFile::exists(logFile));

  window.move(40, 30);
  platform.dialogs.Answer(Answer::Retry);  // "Quit"
  EXPECT_TRUE(window.close());
  EXPECT_TRUE(window.IsShutDown());
  EXPECT_TRUE(test::ReadAll(logFile).contains("Do not save and Quit Vantorelle"));
  // The run ends once: closing again neither asks nor logs.
  const qsizetype lines = window.State().log.Lines().size();
  window.show();
  EXPECT_TRUE(window.close());
  EXPECT_EQ(window.State().log.Lines().size(), lines);
  EXPECT_EQ(platform.dialogs.shown.size(), 2);
  app::AppState next;
  app::StartUp(next, platform.services);
  EXPECT_EQ(next.settings.layout.mfl, QString::number(window.x()));
  EXPECT_EQ(next.settings.display.GWI, 16);
}

TEST_F(ShellWindow, EscapeStopsLongWorkAndTheHexViewShowsRows) {
  EscapePoll poll;
  int polls = 0;
  poll.onPoll = [&polls] { ++polls; };
  QWidget target;
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  EXPECT_FALSE(poll.EscapePressed());
  QApplication::sendEvent(&target, &escape);
  EXPECT_TRUE(poll.EscapePressed());
  EXPECT_FALSE(poll.EscapePressed()) << "one press stops once";
  EXPECT_EQ(polls, 3);

  const QStringList rows =
      HexView::Format(QByteArray("AB\x01", 3) + QByteArray(16, 'z')).split('\n');
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[0],
            QStringLiteral(
                "00000000  41 42 01 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A  AB.zzzzzzzzzzzzz"));
  EXPECT_TRUE(rows[1].startsWith(QStringLiteral("00000010  7A 7A 7A ")));
  EXPECT_TRUE(rows[1].endsWith(QStringLiteral("  zzz")));
}

// The colouring: each row names a line, a character in it and whether it is coloured as a
// comment (italic), a number or a keyword (bold), and the gutter grows with the line count.
TEST_F(ShellWindow, TheSourceEditorColoursCAndAssemblerAndNumbersItsLines) {
  CodeEditor editor;
  editor.setPlainText(
      QStringLiteral("/* one\ntwo */ 0x1F\nconst uint8_t a = 12;\n  db 0FFh ; asm"));
  QCoreApplication::processEvents();
  const struct {
    int line, column;
    bool italic, bold;
    bool coloured;
  } cases[] = {{0, 2, true, false, true},  {1, 1, true, false, true},    {1, 8, false, false, true},
               {2, 0, false, true, true},  {2, 14, false, false, false}, {3, 3, false, true, true},
               {3, 6, false, false, true}, {3, 13, true, false, true}};
  for (const auto& c : cases) {
    const QTextBlock block = editor.document()->findBlockByNumber(c.line);
    QTextCharFormat format;
    bool found = false;
    for (const QTextLayout::FormatRange& r : block.layout()->formats()) {
      if (c.column >= r.start && c.column < r.start + r.length) format = r.format, found = true;
    }
    EXPECT_EQ(found, c.coloured) << c.line << ":" << c.column;
    EXPECT_EQ(format.fontItalic(), c.italic) << c.line << ":" << c.column;
    EXPECT_EQ(format.fontWeight() == QFont::Bold, c.bold) << c.line << ":" << c.column;
  }
  const int narrow = editor.GutterWidth();
  editor.setPlainText(QString(1200, QLatin1Char('\n')));
  EXPECT_GT(editor.GutterWidth(), narrow);
}

TEST_F(ShellWindow, AFileTheLoaderRefusesLeavesTheCanvasAndTheExplorerLoadsPictures) {
  MainWindow window(platform.services, {});
  window.LoadPicture(Picture());
  const QImage before = window.State().canvas.Snapshot();
  const QString broken = platform.folders.Path(QStringLiteral("broken.png"));
  QFile file(broken);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("\x89PNG\r\n\x1a\n-truncated");
  file.close();
  window.LoadPicture(broken);  // the layer still floating is pasted first ("Paste now")
  ASSERT_EQ(platform.dialogs.shown.size(), 2);
  EXPECT_EQ(platform.dialogs.shown[1].text, QStringLiteral("Graphic loading Error"));
  EXPECT_FALSE(window.State().canvas.Selection().IsFloating());
  const QImage pasted = window.State().canvas.Snapshot();
  EXPECT_EQ(pasted.copy(0, 0, 16, 8), QImage(Picture()).convertToFormat(QImage::Format_RGB32));
  EXPECT_NE(pasted, before);
  // The reload takes the picture again, not the file that failed.
  window.Command(QStringLiteral("file.reloadLastCanvas"))->trigger();
  EXPECT_EQ(window.State().canvas.Selection().Layer().size(), QSize(16, 8));
  EXPECT_EQ(window.State().canvas.Snapshot(), pasted);

  // The explorer's list opens a picture of the graphics folder through the same load.
  const QString folder = window.State().settings.folder.BFP;
  QImage wide(24, 8, QImage::Format_RGB32);
  wide.fill(Qt::black);
  ASSERT_TRUE(QDir().mkpath(folder));
  ASSERT_TRUE(wide.save(folder + QStringLiteral("/wide.png")));
  Explorer* explorer = window.ProjectsExplorer();
  explorer->ShowFolder(app::FolderRole::Graphics);
  const auto items = explorer->Files()->findItems(QStringLiteral("wide.png"), Qt::MatchExactly);
  ASSERT_EQ(items.size(), 1);
  Q_EMIT explorer->Files()->itemActivated(items.first(), 0);
  EXPECT_EQ(window.State().canvas.Selection().Layer().size(), QSize(24, 8));
  EXPECT_EQ(window.State().settings.output.nbmfn, QStringLiteral("wide.png"));
}

}  // namespace
}  // namespace vt::gui
