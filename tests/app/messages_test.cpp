// SPDX-License-Identifier: MIT
#include "app/messages.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <tuple>

#include "app/state.h"
#include "platform/console/console_dialogs.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folders.h"

namespace vt::app {
namespace {

namespace Buttons = platform::Buttons;
namespace Answer = platform::Answer;
using platform::DialogType;

QStringList CaptionsOf(const platform::DialogRequest& request) {
  QStringList captions;
  for (const auto& button : platform::ButtonsOf(request)) captions << button.caption;
  return captions;
}

TEST(MessageDlgA, BothRoutinesLogTheTextThenTheAnswerAndKeepTheChoice) {
  const QString text = " Floating Selection layer has not been pasted ! ";
  const std::tuple<bool, int, int, const char*> rows[] = {
      {false, 3, Answer::Yes, "Dialog Button Yes"},
      {false, 3, Answer::No, "Dialog Button No"},
      {false, 4, Answer::Ok, "Dialog Button OK"},
      {false, 12, Answer::Cancel, "Dialog Button Cancel"},
      {false, 44, Answer::Retry, "Dialog Button Retry"},
      {false, 16, Answer::Abort, ""},
      {false, 64, Answer::Ignore, ""},
      {true, 44, 1, "Dialog Button Paste Now"},
      {true, 44, 4, "Dialog Button Move "},
      {true, 44, 2, "Dialog Button Cancel"},
      {true, 44, 6, ""}};
  for (const auto& [custom, set, answer, line] : rows) {
    AppState state;
    test::ScriptedDialogs dialogs;
    dialogs.Answer(answer);
    const int result =
        custom ? MyMessageDialog(state, dialogs, text, DialogType::Warning, 2,
                                 {"Paste Now", "Cancel", "Move "}, set)
               : MessageDlgA(state, dialogs, text, "Quit ?", 0, set, DialogType::Confirmation);
    EXPECT_EQ(result, answer);
    EXPECT_EQ(state.ModeChoice, answer);
    QStringList expected =
        custom ? QStringList{"Message Dialog :" + text} : QStringList{"Message :" + text, text};
    if (*line) expected << line;
    EXPECT_EQ(state.log.Lines(), expected) << custom << " " << answer;
  }
}

TEST(MessageDlgA, PassesTheRequestAsGivenAndKeepsTheDesktopCenteredBox) {
  for (const std::optional<bool> box : {std::optional<bool>(), std::optional<bool>(false)}) {
    AppState state;
    state.settings.other.Cendes = state.settings.other.CendeM = true;
    test::ScriptedDialogs dialogs;
    dialogs.desktopCentered = box;
    MessageDlgA(state, dialogs, " Init file is opened by another application ! ", "Error", 0,
                Buttons::Ok, DialogType::Error);
    ASSERT_EQ(dialogs.shown.size(), 1);
    const auto& request = dialogs.shown.first();
    EXPECT_EQ(request.text, " Init file is opened by another application ! ");
    EXPECT_EQ(request.caption, "Error");
    EXPECT_EQ(request.type, DialogType::Error);
    EXPECT_EQ(request.buttons, Buttons::Ok);
    EXPECT_TRUE(request.customCaptions.isEmpty());
    EXPECT_TRUE(request.desktopCentered && request.centerOnMainWindow);
    EXPECT_EQ(state.settings.other.Cendes, box.value_or(true));
  }
}

TEST(MessageDlgA, KeepsErrorTextsApartUnlessTheNextOneIsSkipped) {
  AppState state;
  test::ScriptedDialogs dialogs;
  const auto show = [&](const char* text, DialogType type, bool skipOnce = false) {
    state.log.NoLogErrorOnce = skipOnce;
    MessageDlgA(state, dialogs, text, "Error", 0, Buttons::Ok, type);
    EXPECT_FALSE(state.log.NoLogErrorOnce) << text;
  };
  show("info", DialogType::Information, true);  // the flag goes whatever the type
  show("warning", DialogType::Warning);
  show("question", DialogType::Confirmation);
  show("skipped", DialogType::Error, true);
  show("Specified File not found !", DialogType::Error);
  show("third", DialogType::Error);
  EXPECT_EQ(state.log.ErrorMessages, (QStringList{"Specified File not found !", "third"}));
  EXPECT_TRUE(state.log.Lines().contains("skipped"));
}

TEST(MyMessageDialog, ShowsTheCaptionsUpToTheLastIndex) {
  const QStringList captions = {"Save+Quit", "Cancel", "Quit"};
  const std::pair<int, QStringList> table[] = {{2, {"Save+Quit", "Cancel", "Quit"}},
                                               {1, {"Save+Quit", "Cancel", ""}},
                                               {0, {"Save+Quit", "", ""}}};
  for (const auto& [lastIndex, shownCaptions] : table) {
    AppState state;
    test::ScriptedDialogs dialogs;
    MyMessageDialog(state, dialogs, " Quit Vantorelle ? \r Artwork has not been saved ! ",
                    DialogType::Confirmation, lastIndex, captions, 44);
    ASSERT_EQ(dialogs.shown.size(), 1);
    EXPECT_EQ(CaptionsOf(dialogs.shown.first()), shownCaptions) << lastIndex;
    EXPECT_EQ(dialogs.shown.first().buttons, 44);
  }
}

/// Console mode with the init folder in `dir`.
struct Console {
  QTemporaryDir dir;
  AppState state;
  test::ScriptedDialogs dialogs;
  explicit Console(bool exitOnRepeat = false) {
    state.modes.ConsoleMode = true;
    state.modes.ExitOnRepeat = exitOnRepeat;
    state.files.InitFolder = dir.path() + "/";
  }
  int Ask(bool custom, const QString& text, int set) {
    if (!custom) return MessageDlgA(state, dialogs, text, "Warning", 0, set, DialogType::Warning);
    return MyMessageDialog(state, dialogs, text, DialogType::Warning, 1, {"Quit", "Cancel"}, set);
  }
  QStringList ReportFiles() const {
    return QDir(dir.path()).entryList({"Report *.txt"}, QDir::Files);
  }
};

TEST(ConsoleMessage, AnswersByItselfAndWritesTheReport) {
  const std::tuple<bool, int, int> rows[] = {{false, 12, Answer::Ok}, {false, 5, Answer::Ok},
                                             {false, 3, Answer::Yes}, {false, 9, Answer::Yes},
                                             {true, 12, Answer::Ok},  {true, 3, Answer::Yes}};
  for (const auto& [custom, set, answer] : rows) {
    SCOPED_TRACE(testing::Message() << (custom ? "custom" : "standard") << " set " << set);
    Console c;
    EXPECT_EQ(c.Ask(custom, "Processing File not found !", set), answer);
    EXPECT_EQ(c.state.ModeChoice, answer);
    EXPECT_TRUE(c.dialogs.shown.isEmpty());
    EXPECT_EQ(c.state.log.Report,
              (QStringList{">> Message Dialog :", "Processing File not found !", ""}));
    // The log names the routine but no answer.
    EXPECT_EQ(c.state.log.Lines(), QStringList{QString(custom ? "Message Dialog :" : "Message :") +
                                               "Processing File not found !"});
    EXPECT_EQ(c.state.LastMessageText, "Processing File not found !");
    EXPECT_TRUE(c.ReportFiles().isEmpty());
  }
}

TEST(ConsoleMessage, OnlyARepeatWritesTheReportAndEndsTheRunWithExitOnRepeat) {
  Console different(true);
  for (const char* text : {"A", "B", "A"}) different.Ask(false, text, 3);
  EXPECT_TRUE(different.ReportFiles().isEmpty());
  EXPECT_FALSE(different.state.log.TerminateRequested);

  for (const bool exitOnRepeat : {false, true}) {
    for (const bool custom : {false, true}) {
      Console c(exitOnRepeat);
      c.Ask(custom, "Specified File not found !", 3);
      EXPECT_EQ(c.Ask(custom, "Specified File not found !", 3),
                exitOnRepeat ? Answer::Ok : Answer::Yes);
      EXPECT_EQ(c.state.log.TerminateRequested, exitOnRepeat);
      const QStringList files = c.ReportFiles();
      ASSERT_EQ(files.size(), 1);
      EXPECT_EQ(test::ReadAll(QDir(c.dir.path()).filePath(files.first())),
                ">> Message Dialog :\nSpecified File not found !\n\n"
                ">> Message Dialog :\nSpecified File not found !\n\n");
    }
  }
}

TEST(ConsoleDialogs, PrintCaptionAndTextAndAnswerAlone) {
  const std::tuple<const char*, DialogType, int, QStringList, const char*, int> rows[] = {
      {"Quit ?", DialogType::Confirmation, 12, {}, "Quit ?", 1},
      {"", DialogType::Confirmation, 3, {}, "Confirm", 6},
      {"", DialogType::Warning, 9, {}, "Warning", 6},
      {"", DialogType::Error, 4, {}, "Error", 1},
      {"", DialogType::Information, 3, {"Save+Quit", "Quit"}, "Information", 6},
      {"", DialogType::Information, 44, {"Save+Quit", "Cancel", "Quit"}, "Information", 1}};
  for (const auto& [caption, type, set, custom, printedCaption, answer] : rows) {
    QString printed;
    QTextStream out(&printed);
    platform::ConsoleDialogs dialogs(out);
    platform::DialogRequest request;
    request.text = " Quit Vantorelle ? \r Artwork has not been saved ! ";
    request.caption = caption;
    request.type = type;
    request.buttons = set;
    request.customCaptions = custom;
    EXPECT_EQ(dialogs.Show(request), answer) << printedCaption << " " << set;
    EXPECT_EQ(printed, QString::fromLatin1(printedCaption) +
                           ":  Quit Vantorelle ? \n Artwork has not been saved ! \n");
  }
}

}  // namespace
}  // namespace vt::app
