// SPDX-License-Identifier: MIT
#include "gui/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QKeyEvent>

#include "gui_test_app.h"

namespace vt::gui {
namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogRequest;
using platform::DialogType;
using test::Click;
using test::SeenBox;
using test::WhenBoxShows;

class QtDialogsTest : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }

  /// Shows `request`, clicks `caption` and returns the answer; `seen` tells what the box showed.
  int ShowAndClick(const DialogRequest& request, const QString& caption, SeenBox& seen) {
    auto driver = WhenBoxShows(seen, Click(caption));
    return dialogs.Show(request);
  }

  QtDialogs dialogs;
};

DialogRequest Request(int buttons, QStringList customCaptions = {}) {
  DialogRequest request;
  request.text = QStringLiteral("Question");
  request.caption = QStringLiteral("Confirm");
  request.type = DialogType::Confirmation;
  request.buttons = buttons;
  request.customCaptions = std::move(customCaptions);
  return request;
}

/// One button set, the captions it must show in order, and the answer of each.
struct ButtonSetCase {
  int buttons;
  QStringList captions;
  QList<int> answers;
};

class QtDialogsButtonSet : public QtDialogsTest,
                           public ::testing::WithParamInterface<ButtonSetCase> {};

TEST_P(QtDialogsButtonSet, ShowsTheFixedCaptionsAndAnswersTheirCodes) {
  const ButtonSetCase& set = GetParam();
  ASSERT_EQ(set.captions.size(), set.answers.size());
  for (qsizetype i = 0; i < set.captions.size(); ++i) {
    SeenBox seen;
    const int answer = ShowAndClick(Request(set.buttons), set.captions.at(i), seen);
    ASSERT_TRUE(seen.shown);
    EXPECT_EQ(seen.buttons, set.captions);
    EXPECT_TRUE(seen.clicked) << set.captions.at(i).toStdString();
    EXPECT_EQ(answer, set.answers.at(i)) << set.captions.at(i).toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(
    SetsInUse, QtDialogsButtonSet,
    ::testing::Values(
        ButtonSetCase{Buttons::Ok, {"&Ok"}, {Answer::Ok}},
        ButtonSetCase{Buttons::Yes | Buttons::No, {"&Yes", "&No"}, {Answer::Yes, Answer::No}},
        ButtonSetCase{
            Buttons::Yes | Buttons::Cancel, {"&Yes", "&Cancel"}, {Answer::Yes, Answer::Cancel}},
        ButtonSetCase{Buttons::Yes | Buttons::No | Buttons::Cancel,
                      {"&Yes", "&No", "&Cancel"},
                      {Answer::Yes, Answer::No, Answer::Cancel}},
        ButtonSetCase{
            Buttons::Ok | Buttons::Cancel, {"&Ok", "&Cancel"}, {Answer::Ok, Answer::Cancel}},
        ButtonSetCase{Buttons::Ok | Buttons::Cancel | Buttons::Retry,
                      {"&Ok", "&Cancel", "&Retry"},
                      {Answer::Ok, Answer::Cancel, Answer::Retry}},
        ButtonSetCase{Buttons::Abort | Buttons::Retry | Buttons::Ignore,
                      {"Abort", "&Retry", "&Ignore"},
                      {Answer::Abort, Answer::Retry, Answer::Ignore}}));

TEST_F(QtDialogsTest, CustomCaptionsAnswerOneTwoAndFourInTheirOrder) {
  const QStringList captions{"Save+Quit", "Cancel", "Quit"};
  const QList<int> expected{Answer::Ok, Answer::Cancel, Answer::Retry};
  for (qsizetype i = 0; i < captions.size(); ++i) {
    SeenBox seen;
    const int answer = ShowAndClick(
        Request(Buttons::Ok | Buttons::Cancel | Buttons::Retry, captions), captions.at(i), seen);
    EXPECT_EQ(seen.buttons, captions);
    EXPECT_EQ(answer, expected.at(i)) << captions.at(i).toStdString();
  }
}

TEST_F(QtDialogsTest, ButtonsWhoseCaptionRanOutAreLeftOut) {
  SeenBox seen;
  const int answer = ShowAndClick(
      Request(Buttons::Ok | Buttons::Cancel | Buttons::Retry, {"Quit Script", "Cancel"}),
      QStringLiteral("Quit Script"), seen);
  EXPECT_EQ(seen.buttons, QStringList({"Quit Script", "Cancel"}));
  EXPECT_EQ(answer, Answer::Ok);
}

TEST_F(QtDialogsTest, ShowsCarriageReturnsAsLineBreaksWithCaptionAndIcon) {
  DialogRequest request = Request(Buttons::Ok);
  request.text = QStringLiteral(" Quit Vantorelle ? \r Artwork has not been saved ! \r\nEnd");
  request.caption = QStringLiteral("Quit ?");
  request.type = DialogType::Error;
  SeenBox seen;
  ShowAndClick(request, QStringLiteral("&Ok"), seen);
  EXPECT_EQ(seen.title, QStringLiteral("Quit ?"));
  EXPECT_EQ(seen.text, QStringLiteral(" Quit Vantorelle ? \n Artwork has not been saved ! \nEnd"));
  EXPECT_EQ(seen.icon, QMessageBox::Critical);
}

TEST_F(QtDialogsTest, IconFollowsTheDialogType) {
  const QList<QPair<DialogType, QMessageBox::Icon>> cases{
      {DialogType::Warning, QMessageBox::Warning},
      {DialogType::Error, QMessageBox::Critical},
      {DialogType::Information, QMessageBox::Information},
      {DialogType::Confirmation, QMessageBox::Question}};
  for (const auto& [type, icon] : cases) {
    DialogRequest request = Request(Buttons::Ok);
    request.type = type;
    SeenBox seen;
    ShowAndClick(request, QStringLiteral("&Ok"), seen);
    EXPECT_EQ(seen.icon, icon) << int(type);
  }
}

TEST_F(QtDialogsTest, AnEmptyCaptionTakesTheTitleOfTheType) {
  DialogRequest request = Request(Buttons::Ok);
  request.caption.clear();
  request.type = DialogType::Warning;
  EXPECT_EQ(platform::CaptionOf(request), QStringLiteral("Warning"));
  request.type = DialogType::Error;
  EXPECT_EQ(platform::CaptionOf(request), QStringLiteral("Error"));
  request.type = DialogType::Confirmation;
  SeenBox seen;
  ShowAndClick(request, QStringLiteral("&Ok"), seen);
  EXPECT_EQ(seen.title, QStringLiteral("Confirm"));
}

/// Presses Escape in the box, as the user would.
bool PressEscape(QMessageBox& box) {
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(&box, &press);
  return true;
}

TEST_F(QtDialogsTest, EscapePressesCancelElseNo) {
  SeenBox seen;
  auto driver = WhenBoxShows(seen, PressEscape);
  EXPECT_EQ(dialogs.Show(Request(Buttons::Yes | Buttons::No | Buttons::Cancel)), Answer::Cancel);

  SeenBox seenYesNo;
  auto driverYesNo = WhenBoxShows(seenYesNo, PressEscape);
  EXPECT_EQ(dialogs.Show(Request(Buttons::Yes | Buttons::No)), Answer::No);
}

TEST_F(QtDialogsTest, EscapePressesACustomCancelCaption) {
  SeenBox seen;
  auto driver = WhenBoxShows(seen, PressEscape);
  EXPECT_EQ(dialogs.Show(Request(Buttons::Ok | Buttons::Cancel | Buttons::Retry,
                                 {"No Action", "Discard", "Cancel"})),
            Answer::Retry);
}

TEST_F(QtDialogsTest, TheStarCheckBoxStartsFromTheRequestAndIsHandedBack) {
  EXPECT_FALSE(dialogs.LastDesktopCentered().has_value());

  DialogRequest request = Request(Buttons::Ok);
  request.desktopCentered = true;
  SeenBox seen;
  auto driver = WhenBoxShows(seen, [](QMessageBox& box) {
    box.checkBox()->setChecked(false);
    return Click(QStringLiteral("&Ok"))(box);
  });
  EXPECT_EQ(dialogs.Show(request), Answer::Ok);
  EXPECT_EQ(seen.checkBoxText, QStringLiteral("*"));
  EXPECT_EQ(seen.checkBoxToolTip, QStringLiteral("Desktop centered = checked"));
  EXPECT_TRUE(seen.checkBoxChecked);
  ASSERT_TRUE(dialogs.LastDesktopCentered().has_value());
  EXPECT_FALSE(*dialogs.LastDesktopCentered());
}

TEST_F(QtDialogsTest, ABoxClosedWithoutAClickAnswersCancel) {
  SeenBox seen;
  auto driver = WhenBoxShows(seen, [](QMessageBox&) { return false; });  // closed by done()
  EXPECT_EQ(dialogs.Show(Request(Buttons::Yes | Buttons::No)), Answer::Cancel);
  EXPECT_TRUE(seen.shown);
}

}  // namespace
}  // namespace vt::gui
