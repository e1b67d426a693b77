// SPDX-License-Identifier: MIT
#include "gui/exception_boundary.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QVBoxLayout>
#include <stdexcept>

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

TEST_F(ExceptionBoundaryTest, ACommandThatFinishesLeavesNoTrace) {
  bool ran = false;
  EXPECT_FALSE(RunAtTop(state, dialogs, [&] { ran = true; }).has_value());
  EXPECT_TRUE(ran);
  EXPECT_EQ(state.log.ExceptionNumber, 0);
  EXPECT_TRUE(state.log.Lines().isEmpty());
}

TEST_F(ExceptionBoundaryTest, NamesTheActiveWindowAndTheFocusedControl) {
  QWidget form;
  form.setObjectName(QStringLiteral("ExploForm"));
  auto* layout = new QVBoxLayout(&form);
  auto* edit = new QLineEdit(&form);
  edit->setObjectName(QStringLiteral("FileNameEdit"));
  layout->addWidget(edit);
  form.show();
  form.activateWindow();
  QApplication::setActiveWindow(&form);
  edit->setFocus();
  QCoreApplication::processEvents();
  ASSERT_EQ(QApplication::focusWidget(), edit);

  const auto outcome =
      RunAtTop(state, dialogs, [] { throw std::out_of_range("List index out of bounds (7)"); });
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(*outcome, app::ExceptionOutcome::Reported);
  EXPECT_EQ(state.log.LastForm, QStringLiteral("ExploForm"));
  EXPECT_EQ(state.log.LastControl, QStringLiteral("FileNameEdit"));
  EXPECT_EQ(state.log.LastErrorText, QStringLiteral("LI Error =(ExploForm[FileNameEdit])"));
  EXPECT_EQ(state.log.ExceptionNumber, 1);
}

TEST_F(ExceptionBoundaryTest, PassesTheClassNameOfWhatWasThrown) {
  const auto outcome = RunAtTop(state, dialogs, [] {
    throw Failure(
        Error{Error::Kind::Io, QStringLiteral("x.bin"), 0, 0, QStringLiteral("disk full")});
  });
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(*outcome, app::ExceptionOutcome::Reported);
  EXPECT_TRUE(state.log.LastErrorText.startsWith(QStringLiteral("vt::Failure(")))
      << state.log.LastErrorText.toStdString();
}

TEST_F(ExceptionBoundaryTest, HiddenExceptionsShowNothing) {
  const auto outcome =
      RunAtTop(state, dialogs, [] { throw std::domain_error("Division by zero"); });
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(*outcome, app::ExceptionOutcome::Hidden);
  EXPECT_TRUE(dialogs.shown.isEmpty());
  EXPECT_EQ(state.log.ExceptionNumber, 1);
}

TEST_F(ExceptionBoundaryTest, AnythingThrownIsCaught) {
  const auto outcome = RunAtTop(state, dialogs, [] { throw 42; });
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(*outcome, app::ExceptionOutcome::Reported);
  EXPECT_EQ(state.log.ExceptionNumber, 1);
}

}  // namespace
}  // namespace vt::gui
