// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFileDialog>
#include <QInputDialog>

#include "gui/qt_file_picker.h"
#include "gui/qt_text_prompt.h"
#include "gui_test_app.h"
#include "support/temp_folders.h"

namespace vt::gui {
namespace {

using platform::PickKind;

class QtPrompts : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }
  test::TempFolders folders;
};

// Each kind of request opens the dialog that chooses what it asks for, where it asks.
TEST_F(QtPrompts, AFileRequestBecomesTheDialogOfItsKind) {
  const QString start = folders.Documents();
  const QString logs = QStringLiteral("Log files (*.LOG *.log)");
  const QString all = QStringLiteral("All files (*)");
  const QStringList qtDefault = QFileDialog().nameFilters();  // no filters asked: Qt's own
  const struct {
    platform::FileRequest request;
    QFileDialog::FileMode mode;
    QFileDialog::AcceptMode accept;
    bool dirsOnly;
    QStringList filters;
  } cases[] = {
      // clang-format off
      {{PickKind::OpenFile, "Load Graphic", start, {}, {logs, all}},
       QFileDialog::ExistingFile, QFileDialog::AcceptOpen, false, {logs, all}},
      {{PickKind::OpenFiles, "Many", start, {}, {}},
       QFileDialog::ExistingFiles, QFileDialog::AcceptOpen, false, qtDefault},
      {{PickKind::SaveFile, "Save Log to File", start, "L.LOG", {logs}},
       QFileDialog::AnyFile, QFileDialog::AcceptSave, false, {logs}},
      {{PickKind::Folder, "Folder", start, {}, {}},
       QFileDialog::Directory, QFileDialog::AcceptOpen, true, qtDefault},
      // clang-format on
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.request.caption.toStdString());
    const std::unique_ptr<QFileDialog> dialog = QtFilePicker::MakeDialog(c.request, nullptr);
    EXPECT_EQ(dialog->windowTitle(), c.request.caption);
    EXPECT_EQ(dialog->fileMode(), c.mode);
    EXPECT_EQ(dialog->acceptMode(), c.accept);
    EXPECT_EQ(dialog->testOption(QFileDialog::ShowDirsOnly), c.dirsOnly);
    EXPECT_EQ(QDir(dialog->directory()).canonicalPath(), QDir(start).canonicalPath());
    EXPECT_EQ(dialog->nameFilters(), c.filters);
    if (!c.request.filters.isEmpty()) {
      EXPECT_EQ(dialog->selectedNameFilter(), c.request.filters.first());
    }
    EXPECT_FALSE(dialog->isVisible());
  }
  // The proposed name stands in the dialog, ready to be confirmed.
  const std::unique_ptr<QFileDialog> save =
      QtFilePicker::MakeDialog({PickKind::SaveFile, "Save", start, "L.LOG", {}}, nullptr);
  ASSERT_EQ(save->selectedFiles().size(), 1);
  EXPECT_EQ(QFileInfo(save->selectedFiles().first()).fileName(), QStringLiteral("L.LOG"));
}

TEST_F(QtPrompts, ATextRequestShowsItsCaptionLabelAndDefault) {
  QWidget parent;
  const std::unique_ptr<QInputDialog> dialog =
      QtTextPrompt::MakeDialog({"Define Artwork Name", "Artwork name", "NewBitmap.bmp"}, &parent);
  EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Define Artwork Name"));
  EXPECT_EQ(dialog->labelText(), QStringLiteral("Artwork name"));
  EXPECT_EQ(dialog->textValue(), QStringLiteral("NewBitmap.bmp"));
  EXPECT_EQ(dialog->inputMode(), QInputDialog::TextInput);
  EXPECT_EQ(dialog->textEchoMode(), QLineEdit::Normal);
  EXPECT_EQ(dialog->parentWidget(), &parent);
}

}  // namespace
}  // namespace vt::gui
