// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <memory>
#include <ostream>

/// Readable failure messages for QString comparisons (found by argument lookup).
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace vt::test {

/// The one QApplication of the GUI test binary, made on first use (the binary's main comes from
/// gtest_main). Tests run with QT_QPA_PLATFORM=offscreen.
inline QApplication& GuiApp() {
  // QApplication keeps references to argc and argv: they live in the same object.
  struct Holder {
    int argc = 1;
    char name[13] = "vt_gui_tests";
    char* argv[2] = {name, nullptr};
    QApplication app{argc, argv};
  };
  // Never destroyed: at exit Qt's own static data is gone before function-local objects are, and
  // a QApplication torn down then crashes. The process ends right after the tests anyway.
  static Holder* const holder = new Holder;
  return holder->app;
}

/// What a message box showed, read while it was up.
struct SeenBox {
  bool shown = false;
  QString title;
  QString text;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  QStringList buttons;  ///< captions, in the order the box holds them
  QString checkBoxText;
  QString checkBoxToolTip;
  bool checkBoxChecked = false;
  bool clicked = false;  ///< the requested button existed and was clicked
};

/// Waits for the next modal message box, records what it shows, then lets `act` answer it. When
/// `act` leaves the box open (or the box never has the wanted button), the box is closed with
/// done() so that the test cannot hang. Keep the returned timer alive until the box has run.
inline std::unique_ptr<QTimer> WhenBoxShows(SeenBox& seen, std::function<bool(QMessageBox&)> act) {
  auto timer = std::make_unique<QTimer>();
  timer->setInterval(5);
  QTimer* raw = timer.get();
  QObject::connect(raw, &QTimer::timeout, raw, [raw, &seen, act] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box || !box->isVisible()) return;
    raw->stop();
    seen.shown = true;
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.icon = box->icon();
    for (QAbstractButton* button : box->buttons()) seen.buttons << button->text();
    if (QCheckBox* check = box->checkBox()) {
      seen.checkBoxText = check->text();
      seen.checkBoxToolTip = check->toolTip();
      seen.checkBoxChecked = check->isChecked();
    }
    seen.clicked = act(*box);
    if (box->isVisible()) box->done(-1);
  });
  timer->start();
  return timer;
}

/// An action for WhenBoxShows that clicks the button captioned `caption`.
inline std::function<bool(QMessageBox&)> Click(const QString& caption) {
  return [caption](QMessageBox& box) {
    for (QAbstractButton* button : box.buttons()) {
      if (button->text() == caption) {
        button->click();
        return true;
      }
    }
    return false;
  };
}

}  // namespace vt::test
