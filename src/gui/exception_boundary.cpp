// SPDX-License-Identifier: MIT
#include "gui/exception_boundary.h"

#include <QApplication>
#include <QWidget>
#include <exception>

namespace vt::gui {
namespace {

QString NameOf(const QWidget* widget) {
  if (!widget) return QString();
  return widget->objectName().isEmpty() ? QString::fromLatin1(widget->metaObject()->className())
                                        : widget->objectName();
}

}  // namespace

std::optional<app::ExceptionOutcome> RunAtTop(app::AppState& state, platform::Dialogs& dialogs,
                                              const std::function<void()>& command) {
  const auto form = [] { return NameOf(QApplication::activeWindow()); };
  const auto control = [] { return NameOf(QApplication::focusWidget()); };
  try {
    command();
    return std::nullopt;
  } catch (const std::exception& e) {
    return app::MyExceptionHandler(state, dialogs, app::DescribeException(e, form(), control()));
  } catch (...) {
    return app::MyExceptionHandler(
        state, dialogs,
        app::ExceptionInfo{QStringLiteral("unknown exception"), QString(), form(), control()});
  }
}

}  // namespace vt::gui
