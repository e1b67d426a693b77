// SPDX-License-Identifier: MIT
#include "gui/batch_panel.h"

#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBlock>
#include <QVBoxLayout>

#include "app/batch_commands.h"
#include "app/messages.h"
#include "app/modes.h"
#include "app/state.h"
#include "batch/batch_templates.h"
#include "gui/escape_poll.h"

namespace vt::gui {

BatchPanel::BatchPanel(app::AppState& state, app::Services& services,
                       std::function<void(const QString&, const std::function<void()>&)> runCommand,
                       QWidget* parent)
    : QDockWidget(QStringLiteral("Batch Processing"), parent),
      state_(state),
      services_(services),
      runCommand_(std::move(runCommand)) {
  setObjectName(QStringLiteral("BatchPanel"));
  auto* body = new QWidget(this);
  auto* layout = new QVBoxLayout(body);

  active_ = new QLabel(QStringLiteral("Active Text Processing batch is < none >"), body);
  layout->addWidget(active_);
  auto* choose = new QHBoxLayout;
  batches_ = new QComboBox(body);
  batches_->setObjectName(QStringLiteral("PPComboBox"));
  batches_->setMinimumContentsLength(24);
  auto* activate = new QPushButton(QStringLiteral("Activate"), body);
  activate->setToolTip(QStringLiteral("Activate this Processing Batch"));
  connect(activate, &QPushButton::clicked, this, [this] { SelectActiveBatchButtonClick(); });
  choose->addWidget(batches_, 1);
  choose->addWidget(activate);
  layout->addLayout(choose);

  auto* commands = new QHBoxLayout;
  const struct {
    const char* caption;
    void (BatchPanel::*slot)();
    bool editOnly;
  } buttons[] = {
      {"New", &BatchPanel::CreateNewPPButtonClick, false},
      {"Edit", &BatchPanel::EditPPButtonClick, false},
      {"Save", &BatchPanel::SavePPbuttonClick, true},
      {"Quit Edition", &BatchPanel::QuitPostClick, true},
      {"Run", &BatchPanel::ApplyPostProButtonClick, false},
      {"Run on Folder", &BatchPanel::RunMultipleButtonClick, false},
  };
  for (const auto& b : buttons) {
    auto* button = new QPushButton(QString::fromLatin1(b.caption), body);
    connect(button, &QPushButton::clicked, this, b.slot);
    commands->addWidget(button);
    if (b.editOnly) editButtons_ << button;
  }
  layout->addLayout(commands);

  modeLabel_ = new QLabel(QStringLiteral("View Mode"), body);
  layout->addWidget(modeLabel_);
  pages_ = new QTabBar(body);
  for (const batch::TemplatePage& page : batch::TemplatePages()) pages_->addTab(page.name);
  layout->addWidget(pages_);
  auto* boxes = new QHBoxLayout;
  conditions_ = new QComboBox(body);
  conditions_->setObjectName(QStringLiteral("ComboBox2"));
  conditions_->setToolTip(QStringLiteral("If < > Conditions"));
  conditions_->setPlaceholderText(QStringLiteral("Condition"));
  functions_ = new QComboBox(body);
  functions_->setObjectName(QStringLiteral("ComboBox1"));
  functions_->setToolTip(QStringLiteral("Then functions"));
  functions_->setPlaceholderText(QStringLiteral("Function"));
  boxes->addWidget(conditions_);
  boxes->addWidget(functions_);
  layout->addLayout(boxes);
  auto* fields = new QHBoxLayout;
  index_ = new QLineEdit(QStringLiteral("index"), body);
  index_->setObjectName(QStringLiteral("PPIndexEdit"));
  text_ = new QLineEdit(QStringLiteral("text"), body);
  text_->setObjectName(QStringLiteral("PPtextEdit"));
  comment_ = new QLineEdit(QStringLiteral("comment"), body);
  comment_->setObjectName(QStringLiteral("PPcommentEdit"));
  fields->addWidget(index_, 1);
  fields->addWidget(text_, 3);
  fields->addWidget(comment_, 3);
  layout->addLayout(fields);

  tabs_ = new QTabWidget(body);
  editor_ = new QPlainTextEdit(body);
  editor_->setObjectName(QStringLiteral("BatchEditor"));
  editor_->setLineWrapMode(QPlainTextEdit::NoWrap);
  editor_->setFont(QFont(QStringLiteral("Monospace")));
  editor_->setReadOnly(true);
  report_ = new QPlainTextEdit(body);
  report_->setObjectName(QStringLiteral("BatchReport"));
  report_->setReadOnly(true);
  report_->setLineWrapMode(QPlainTextEdit::NoWrap);
  report_->setFont(QFont(QStringLiteral("Monospace")));
  tabs_->addTab(editor_, QStringLiteral("Batch"));
  tabs_->addTab(report_, QStringLiteral("Report"));
  layout->addWidget(tabs_, 1);
  setWidget(body);

  connect(pages_, &QTabBar::currentChanged, this, [this](int page) { FillTemplates(page); });
  const auto chosen = [this](QComboBox* box) {
    connect(box, &QComboBox::activated, this, [this, box](int index) {
      if (index >= 0) ChooseTemplate(box->itemText(index));
    });
  };
  chosen(conditions_);
  chosen(functions_);
  connect(editor_, &QPlainTextEdit::cursorPositionChanged, this, [this] { ReadPostString(); });
  connect(editor_, &QPlainTextEdit::textChanged, this, [this] { EditorChanged(); });
  for (QLineEdit* field : {index_, text_, comment_}) {
    connect(field, &QLineEdit::textEdited, this, [this] { RewriteLine(); });
  }
  pages_->setCurrentIndex(1);  // "Text"
  FillTemplates(1);
  Refresh();
}

void BatchPanel::FillTemplates(int page) {
  const QList<batch::TemplatePage>& pages = batch::TemplatePages();
  if (page < 0 || page >= pages.size()) return;
  conditions_->clear();
  functions_->clear();
  conditions_->addItems(pages[page].conditions);
  functions_->addItems(pages[page].functions);
  conditions_->setCurrentIndex(-1);
  functions_->setCurrentIndex(-1);
}

void BatchPanel::ChooseTemplate(const QString& item) {
  if (!state_.modes.BatchEditActive) return;  // templates write only in Batch Edition
  const QString line = batch::TemplateLine(item);
  index_->setText(QStringLiteral("index"));
  text_->setText(item.contains(QLatin1String("'file'")) ? QStringLiteral("file")
                                                        : QStringLiteral("text"));
  comment_->setText(QStringLiteral("comment"));
  QTextCursor cursor = editor_->textCursor();
  const bool pastEnd = cursor.block().next().isValid() == false && !cursor.block().text().isEmpty();
  if (pastEnd) {
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("\n") + line);
  } else {
    cursor.movePosition(QTextCursor::StartOfBlock);
    cursor.insertText(line + QStringLiteral("\n"));
    cursor.movePosition(QTextCursor::PreviousBlock);
  }
  editor_->setTextCursor(cursor);
  ReadPostString();
  state_.log.StatusBarAndLog(item);
}

void BatchPanel::ReadPostString() {
  if (updating_) return;
  const batch::BatchLineFields f = batch::ReadPostString(editor_->textCursor().block().text());
  updating_ = true;
  if (f.hasIndex) index_->setText(f.index);
  if (f.hasText) text_->setText(f.text);
  comment_->setText(f.comment.isEmpty() ? QStringLiteral("comment") : f.comment);
  updating_ = false;
}

void BatchPanel::RewriteLine() {
  if (!state_.modes.BatchEditActive) return;
  QTextCursor cursor = editor_->textCursor();
  batch::BatchLineFields f = batch::ReadPostString(cursor.block().text());
  if (f.keyword.isEmpty()) return;
  if (f.hasIndex) f.index = index_->text();
  if (f.hasText) f.text = text_->text();
  f.comment = comment_->text() == QLatin1String("comment") ? QString() : comment_->text();
  updating_ = true;
  cursor.select(QTextCursor::BlockUnderCursor);
  const bool first = cursor.block().blockNumber() == 0;
  cursor.insertText((first ? QString() : QStringLiteral("\n")) + batch::WriteBatchLine(f));
  updating_ = false;
  EditorChanged();
}

void BatchPanel::EditorChanged() {
  if (updating_ || !editing_) return;
  state_.batch.editLines = editor_->toPlainText().split(QLatin1Char('\n'));
  state_.batch.editChanged = true;
}

void BatchPanel::Refresh() {
  updating_ = true;
  const QString pprof = state_.settings.post.pprof;
  active_->setText(pprof == QLatin1String("< No batch file selected >") || pprof.isEmpty()
                       ? QStringLiteral("Active Text Processing batch is < none >")
                       : QStringLiteral("Active Batch is ") + pprof);
  const QString current = batches_->currentText();
  batches_->clear();
  batches_->addItems(app::PopulateSPPcombobox(state_));
  batches_->setCurrentText(current.isEmpty() ? pprof : current);
  const bool editing = state_.modes.BatchEditActive;
  if (editing != editing_) {
    editing_ = editing;
    editor_->setReadOnly(!editing);
    if (editing) editor_->setPlainText(state_.batch.editLines.join(QLatin1Char('\n')));
    tabs_->setCurrentWidget(editor_);
  }
  modeLabel_->setText(editing ? QStringLiteral("Edit Mode : ") +
                                    QFileInfo(state_.batch.editPath).fileName()
                              : QStringLiteral("View Mode"));
  for (QPushButton* button : std::as_const(editButtons_)) button->setEnabled(editing);
  report_->setPlainText(state_.batch.report.join(QLatin1Char('\n')));
  if (state_.batch.showReport) {
    tabs_->setCurrentWidget(report_);
    state_.batch.showReport = false;
  }
  updating_ = false;
}

void BatchPanel::CreateNewPPButtonClick() {
  runCommand_(QStringLiteral("Create New Batch Button"),
              [this] { app::CreatePostProClick(state_, services_, true); });
}

void BatchPanel::EditPPButtonClick() {
  runCommand_(QStringLiteral("Edit Current Batch Button"),
              [this] { app::CreatePostProClick(state_, services_, false); });
}

void BatchPanel::SavePPbuttonClick() {
  runCommand_(QStringLiteral("Save Batch Button"), [this] {
    state_.batch.editLines = editor_->toPlainText().split(QLatin1Char('\n'));
    app::SavePPbuttonClick(state_, services_);
  });
}

void BatchPanel::QuitPostClick() {
  runCommand_(QStringLiteral("Quit Batch Edition"), [this] {
    state_.batch.editLines = editor_->toPlainText().split(QLatin1Char('\n'));
    app::QuitPostClick(state_, services_);
  });
}

void BatchPanel::SelectActiveBatchButtonClick() {
  const QString name = batches_->currentText();
  runCommand_(QStringLiteral("Activate this Processing Batch Button"), [this, name] {
    if (!name.isEmpty()) app::SelectActiveBatchButtonClick(state_, name);
  });
}

QProgressBar* BatchPanel::ShowProgress() {
  auto* bar = new QProgressBar(widget());
  bar->setObjectName(QStringLiteral("BatchProgress"));
  bar->setFormat(QStringLiteral("%v / %m   (Escape stops)"));
  bar->setGeometry(10, 10, std::max(200, widget()->width() - 20), 22);
  bar->show();
  QApplication::setOverrideCursor(Qt::WaitCursor);
  return bar;
}

void BatchPanel::HideProgress(QProgressBar* bar) {
  QApplication::restoreOverrideCursor();
  bar->hide();
  bar->deleteLater();
}

void BatchPanel::ApplyPostProButtonClick() {
  runCommand_(QStringLiteral("Run Batch Main Menu Button"), [this] {
    if (state_.settings.post.pprof == QLatin1String("< No batch file selected >")) {
      app::MessageDlgA(state_, services_.dialogs, QStringLiteral("No batch processing activated "),
                       QString(), 0, platform::Buttons::Ok, platform::DialogType::Information);
      return;
    }
    EscapePoll escape;
    app::Services services{services_.dialogs, services_.folders,    services_.fileUse,   escape,
                           services_.clock,   services_.filePicker, services_.textPrompt};
    QProgressBar* bar = ShowProgress();
    app::ApplyPostProButtonClick(state_, services, [bar](int value, int maximum) {
      bar->setRange(0, std::max(1, maximum));
      bar->setValue(std::min(value, maximum));
    });
    HideProgress(bar);
  });
}

void BatchPanel::RunMultipleButtonClick() {
  runCommand_(QStringLiteral("Run Active Batch on Multiple Files"), [this] {
    EscapePoll escape;
    app::Services services{services_.dialogs, services_.folders,    services_.fileUse,   escape,
                           services_.clock,   services_.filePicker, services_.textPrompt};
    QProgressBar* bar = ShowProgress();
    app::RunMultipleButtonClick(state_, services, [bar](int value, int maximum) {
      bar->setRange(0, std::max(1, maximum));
      bar->setValue(std::min(value, maximum));
    });
    HideProgress(bar);
  });
}

}  // namespace vt::gui
