// SPDX-License-Identifier: MIT
#include "gui/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <tuple>

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

DialogRequest Request(int buttons, QStringList customCaptions = {}) {
  DialogRequest request;
  request.text = "Question";
  request.caption = "Confirm";
  request.type = DialogType::Confirmation;
  request.buttons = buttons;
  request.customCaptions = std::move(customCaptions);
  return request;
}

/// Presses Escape in the box, as the user would.
bool PressEscape(QMessageBox& box) {
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(&box, &press);
  return true;
}

/// Leaves the box open: the driver then closes it with done().
bool LeaveOpen(QMessageBox&) { return false; }

class QtDialogsTest : public ::testing::Test {
 protected:
  void SetUp() override { test::GuiApp(); }

  /// Shows `request`, lets `act` answer it and returns the answer; `seen` tells what it showed.
  int Show(const DialogRequest& request, std::function<bool(QMessageBox&)> act, SeenBox& seen) {
    auto driver = WhenBoxShows(seen, std::move(act));
    return dialogs.Show(request);
  }

  QtDialogs dialogs;
};

// Each button set shows its captions in order and answers the code of the one clicked; custom
// captions take the places of Ok, Cancel and Retry, and buttons whose caption ran out are left
// out.
TEST_F(QtDialogsTest, ShowsTheCaptionsOfTheSetAndAnswersTheCodeOfTheOneClicked) {
  namespace A = platform::Answer;
  namespace B = platform::Buttons;
  const struct {
    int buttons;
    const char* captions;  // parted by '|'
    bool custom;           // the captions are the request's own
    QList<int> answers;
  } sets[] = {
      {B::Yes | B::No | B::Cancel, "&Yes|&No|&Cancel", false, {A::Yes, A::No, A::Cancel}},
      {B::Ok | B::Cancel | B::Retry, "&Ok|&Cancel|&Retry", false, {A::Ok, A::Cancel, A::Retry}},
      {B::Abort | B::Retry | B::Ignore,
       "Abort|&Retry|&Ignore",
       false,
       {A::Abort, A::Retry, A::Ignore}},
      {B::Ok | B::Cancel | B::Retry, "Save+Quit|Cancel|Quit", true, {A::Ok, A::Cancel, A::Retry}},
      {B::Ok | B::Cancel | B::Retry, "Quit Script|Cancel", true, {A::Ok, A::Cancel}}};
  for (const auto& set : sets) {
    const QStringList captions = QString::fromLatin1(set.captions).split(QLatin1Char('|'));
    for (qsizetype i = 0; i < captions.size(); ++i) {
      SeenBox seen;
      const int answer = Show(Request(set.buttons, set.custom ? captions : QStringList{}),
                              Click(captions.at(i)), seen);
      ASSERT_TRUE(seen.shown) << captions.at(i).toStdString();
      EXPECT_EQ(seen.buttons, captions) << captions.at(i).toStdString();
      EXPECT_TRUE(seen.clicked) << captions.at(i).toStdString();
      EXPECT_EQ(answer, set.answers.at(i)) << captions.at(i).toStdString();
    }
  }
}

TEST_F(QtDialogsTest, ShowsCarriageReturnsAsLineBreaksWithCaptionAndIconOfTheType) {
  const std::tuple<DialogType, const char*, QMessageBox::Icon, const char*> cases[] = {
      {DialogType::Error, "Quit ?", QMessageBox::Critical, "Quit ?"},
      {DialogType::Warning, "", QMessageBox::Warning, "Warning"},
      {DialogType::Information, "Info", QMessageBox::Information, "Info"},
      {DialogType::Confirmation, "", QMessageBox::Question, "Confirm"}};
  for (const auto& [type, caption, icon, title] : cases) {
    DialogRequest request = Request(Buttons::Ok);
    request.text = " Quit Vantorelle ? \r Artwork has not been saved ! \r\nEnd";
    request.caption = QString::fromLatin1(caption);
    request.type = type;
    SeenBox seen;
    Show(request, Click("&Ok"), seen);
    EXPECT_EQ(seen.title, QString::fromLatin1(title));
    EXPECT_EQ(seen.text, " Quit Vantorelle ? \n Artwork has not been saved ! \nEnd");
    EXPECT_EQ(seen.icon, icon) << title;
  }
}

TEST_F(QtDialogsTest, EscapePressesCancelElseNoOrClosingAnswersCancel) {
  const QStringList custom{"No Action", "Discard", "Cancel"};  // the third answers Retry
  SeenBox seen;
  EXPECT_EQ(Show(Request(Buttons::Yes | Buttons::No | Buttons::Cancel), PressEscape, seen),
            Answer::Cancel);
  EXPECT_EQ(Show(Request(Buttons::Yes | Buttons::No), PressEscape, seen), Answer::No);
  EXPECT_EQ(
      Show(Request(Buttons::Ok | Buttons::Cancel | Buttons::Retry, custom), PressEscape, seen),
      Answer::Retry);
  EXPECT_EQ(Show(Request(Buttons::Yes | Buttons::No), LeaveOpen, seen), Answer::Cancel);
}

TEST_F(QtDialogsTest, TheStarCheckBoxStartsFromTheRequestAndIsHandedBack) {
  EXPECT_FALSE(dialogs.LastDesktopCentered().has_value());
  DialogRequest request = Request(Buttons::Ok);
  request.desktopCentered = true;
  SeenBox seen;
  const auto uncheckAndClick = [](QMessageBox& box) {
    box.checkBox()->setChecked(false);
    return Click("&Ok")(box);
  };
  EXPECT_EQ(Show(request, uncheckAndClick, seen), Answer::Ok);
  EXPECT_EQ(seen.checkBoxText, "*");
  EXPECT_EQ(seen.checkBoxToolTip, "Desktop centered = checked");
  EXPECT_TRUE(seen.checkBoxChecked);
  EXPECT_EQ(dialogs.LastDesktopCentered(), false);
}

}  // namespace
}  // namespace vt::gui
