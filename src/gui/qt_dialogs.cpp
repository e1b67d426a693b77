// SPDX-License-Identifier: MIT
#include "gui/qt_dialogs.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QGuiApplication>
#include <QHash>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>

namespace vt::gui {
namespace {

namespace Answer = platform::Answer;
using platform::DialogType;

QMessageBox::Icon IconOf(DialogType type) {
  switch (type) {
    case DialogType::Warning:
      return QMessageBox::Warning;
    case DialogType::Error:
      return QMessageBox::Critical;
    case DialogType::Information:
      return QMessageBox::Information;
    case DialogType::Confirmation:
      return QMessageBox::Question;
  }
  return QMessageBox::NoIcon;
}

bool IsCancelCaption(const QString& caption) {
  QString plain = caption;
  plain.remove(QLatin1Char('&'));
  return plain.trimmed().compare(QLatin1String("Cancel"), Qt::CaseInsensitive) == 0;
}

/// Where the box stands: the centre of the desktop, of the main window, or of the screen the
/// main window is on.
void Place(QMessageBox& box, const platform::DialogRequest& request, QWidget* parent) {
  box.adjustSize();
  QRect around;
  if (request.desktopCentered) {
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
      around = screen->virtualGeometry();
    }
  } else if (request.centerOnMainWindow && parent) {
    around = parent->window()->frameGeometry();
  } else {
    const QScreen* screen = parent ? parent->window()->screen() : QGuiApplication::primaryScreen();
    if (screen) around = screen->availableGeometry();
  }
  if (around.isValid()) box.move(around.center() - box.rect().center());
}

}  // namespace

QString QtDialogs::DisplayText(const QString& text) {
  QString shown = text;
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return shown;
}

int QtDialogs::Show(const platform::DialogRequest& request) {
  QMessageBox box(parent_.data());
  box.setWindowTitle(platform::CaptionOf(request));
  box.setTextFormat(Qt::PlainText);
  box.setText(DisplayText(request.text));
  box.setIcon(IconOf(request.type));

  auto* centred = new QCheckBox(QStringLiteral("*"), &box);
  centred->setToolTip(QStringLiteral("Desktop centered = checked"));
  centred->setChecked(request.desktopCentered);
  box.setCheckBox(centred);

  // Every button takes the same role, so that the box keeps the system's order; Escape is wired
  // explicitly below.
  QHash<QAbstractButton*, int> answers;
  QPushButton* first = nullptr;
  QPushButton* cancel = nullptr;
  QPushButton* no = nullptr;
  for (const platform::DialogButton& button : platform::ButtonsOf(request)) {
    if (button.caption.isEmpty()) continue;
    QPushButton* pushButton = box.addButton(button.caption, QMessageBox::AcceptRole);
    answers.insert(pushButton, button.answer);
    if (!first) first = pushButton;
    const bool isCancel = request.customCaptions.isEmpty() ? button.answer == Answer::Cancel
                                                           : IsCancelCaption(button.caption);
    if (isCancel && !cancel) cancel = pushButton;
    if (button.answer == Answer::No && request.customCaptions.isEmpty()) no = pushButton;
  }
  if (!first) {  // an empty set must still be closable
    first = box.addButton(platform::StandardCaption(Answer::Ok), QMessageBox::AcceptRole);
    answers.insert(first, Answer::Ok);
  }
  QPushButton* escape = cancel ? cancel : no;
  if (!escape && answers.size() == 1) escape = first;

  box.setDefaultButton(first);
  if (escape) box.setEscapeButton(escape);
  Place(box, request, parent_.data());
  box.exec();
  lastDesktopCentered_ = centred->isChecked();
  return answers.value(box.clickedButton(), Answer::Cancel);
}

}  // namespace vt::gui
