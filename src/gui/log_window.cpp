// SPDX-License-Identifier: MIT
#include "gui/log_window.h"

#include <QDir>
#include <QFontDatabase>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QVBoxLayout>

#include "app/messages.h"
#include "platform/file_picker.h"
#include "platform/folders.h"

namespace vt::gui {

LogWindow::LogWindow(app::AppState& state, app::Services& services, QWidget* parent)
    : QDockWidget(QStringLiteral("Log Window"), parent), state_(state), services_(services) {
  setObjectName(QStringLiteral("LogWindow"));
  auto* body = new QWidget(this);
  auto* layout = new QVBoxLayout(body);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);

  auto* menuBar = new QMenuBar(body);
  QMenu* fileMenu = menuBar->addMenu(QStringLiteral("&File"));
  saveLogAction_ = fileMenu->addAction(QStringLiteral("Save Log to File"));
  layout->setMenuBar(menuBar);

  editor_ = new QPlainTextEdit(body);
  editor_->setReadOnly(true);
  editor_->setLineWrapMode(QPlainTextEdit::NoWrap);
  editor_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  editor_->setUndoRedoEnabled(false);
  layout->addWidget(editor_);
  setWidget(body);
  Refresh();
}

void LogWindow::Refresh() {
  const QStringList& lines = state_.log.Lines();
  const qsizetype count = lines.size();
  if (count == shownCount_ && (count == 0 || lines.last() == shownLast_)) return;

  if (count < shownCount_) {
    editor_->setPlainText(lines.join(QLatin1Char('\n')));
  } else {
    qsizetype next = shownCount_;
    if (shownCount_ > 0 && lines.at(shownCount_ - 1) != shownLast_) {
      // Folding rewrites the line shown last: replace the last block in place.
      QTextCursor cursor(editor_->document()->lastBlock());
      cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
      cursor.insertText(lines.at(shownCount_ - 1));
    }
    for (; next < count; ++next) editor_->appendPlainText(lines.at(next));
  }
  shownCount_ = count;
  shownLast_ = count > 0 ? lines.last() : QString();
  editor_->verticalScrollBar()->setValue(editor_->verticalScrollBar()->maximum());
}

QString LogWindow::ShownText() const { return editor_->toPlainText(); }

bool LogWindow::SaveLogTo(const QString& path) {
  const QString name = QDir::toNativeSeparators(path);
  const bool saved = state_.log.SaveLog(path);
  if (saved) {
    app::MessageDlgA(state_, services_.dialogs, QStringLiteral(" Log data saved to ") + name,
                     QStringLiteral("Log file saved!"), 0, platform::Buttons::Ok,
                     platform::DialogType::Information);
  } else {
    app::MessageDlgA(state_, services_.dialogs, QStringLiteral(" Log data not saved to ") + name,
                     QStringLiteral("Error"), 0, platform::Buttons::Ok,
                     platform::DialogType::Error);
  }
  Refresh();
  return saved;
}

void LogWindow::SaveLogtoFile1Click() {
  const QString folder =
      state_.files.InitFolder.isEmpty() ? services_.folders.Documents() : state_.files.InitFolder;
  const std::optional<QString> path = services_.filePicker.SaveFile(
      QStringLiteral("Save Log to File"), folder, QStringLiteral("L.LOG"),
      {QStringLiteral("Log files (*.LOG *.log)"), QStringLiteral("All files (*)")});
  if (path) SaveLogTo(*path);
}

}  // namespace vt::gui
