// SPDX-License-Identifier: MIT
#include "gui/exception_boundary.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QVBoxLayout>
#include <functional>
#include <stdexcept>
#include <tuple>

#include "gui_test_app.h"
#include "support/scripted_dialogs.h"
#include "util/error.h"

namespace vt::gui {
namespace {

class ExceptionBoundaryTest : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }

  app::AppState state;
  test::ScriptedDialogs dialogs;
};

TEST_F(ExceptionBoundaryTest, AnythingThrownIsCaughtAndReportedOrHidden) {
  // The last error text starts with the class name of what was thrown; a command that finishes
  // leaves no trace.
  using Outcome = std::optional<app::ExceptionOutcome>;
  const std::tuple<std::function<void()>, Outcome, const char*> cases[] = {
      {[] {}, std::nullopt, ""},
      {[] { throw std::domain_error("Division by zero"); }, app::ExceptionOutcome::Hidden, ""},
      {[] {
         throw Failure(Error{Error::Kind::Io, "x.bin", 0, 0, "disk full"});
       },
       app::ExceptionOutcome::Reported, "vt::Failure("},
      {[] { throw 42; }, app::ExceptionOutcome::Reported, ""}};
  int number = 0;
  for (const auto& [command, outcome, errorTextStart] : cases) {
    EXPECT_EQ(RunAtTop(state, dialogs, command), outcome) << number;
    EXPECT_TRUE(state.log.LastErrorText.startsWith(QString::fromLatin1(errorTextStart)) ||
                (!outcome && state.log.LastErrorText.isEmpty()))
        << state.log.LastErrorText.toStdString();
    if (outcome) ++number;
    EXPECT_EQ(state.log.ExceptionNumber, number);
    if (outcome != app::ExceptionOutcome::Reported) {
      EXPECT_TRUE(dialogs.shown.isEmpty()) << "a hidden exception shows nothing";
    }
  }
}

TEST_F(ExceptionBoundaryTest, NamesTheActiveWindowAndTheFocusedControl) {
  QWidget form;
  form.setObjectName("ExploForm");
  auto* edit = new QLineEdit(&form);
  edit->setObjectName("FileNameEdit");
  (new QVBoxLayout(&form))->addWidget(edit);
  form.show();
  form.activateWindow();
  QApplication::setActiveWindow(&form);
  edit->setFocus();
  QCoreApplication::processEvents();
  ASSERT_EQ(QApplication::focusWidget(), edit);

  EXPECT_EQ(
      RunAtTop(state, dialogs, [] { throw std::out_of_range("List index out of bounds (7)"); }),
      app::ExceptionOutcome::Reported);
  EXPECT_EQ(state.log.LastForm, "ExploForm");
  EXPECT_EQ(state.log.LastControl, "FileNameEdit");
  EXPECT_EQ(state.log.LastErrorText, "LI Error =(ExploForm[FileNameEdit])");
  EXPECT_EQ(state.log.ExceptionNumber, 1);
}

}  // namespace
}  // namespace vt::gui
