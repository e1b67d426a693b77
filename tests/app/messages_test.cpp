// SPDX-License-Identifier: MIT
#include "app/messages.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "app/state.h"
#include "platform/console/console_dialogs.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folders.h"

namespace vt::app {
namespace {

namespace Buttons = platform::Buttons;
namespace Answer = platform::Answer;
using platform::DialogType;

// ---- Standard captions and buttons -------------------------------------------------------

TEST(StandardCaption, EveryCodeHasItsFixedCaption) {
  const std::pair<int, const char*> table[] = {
      {0, "&None"},  {1, "&Ok"},         {2, "&Cancel"},     {3, "Abort"},
      {4, "&Retry"}, {5, "&Ignore"},     {6, "&Yes"},        {7, "&No"},
      {12, "&All"},  {13, "Not to all"}, {14, "Yes to all"}, {8, ""}};
  for (const auto& [code, caption] : table) {
    EXPECT_EQ(platform::StandardCaption(code), caption) << code;
  }
}

struct ButtonsCase {
  int set;
  QStringList customCaptions;
  QList<int> answers;
  QStringList captions;
};

void PrintTo(const ButtonsCase& c, std::ostream* os) { *os << "set " << c.set; }

class ButtonsOfSet : public testing::TestWithParam<ButtonsCase> {};

TEST_P(ButtonsOfSet, ListsTheButtonsInDialogOrder) {
  platform::DialogRequest request;
  request.buttons = GetParam().set;
  request.customCaptions = GetParam().customCaptions;
  QList<int> answers;
  QStringList captions;
  for (const auto& button : platform::ButtonsOf(request)) {
    answers << button.answer;
    captions << button.caption;
  }
  EXPECT_EQ(answers, GetParam().answers);
  EXPECT_EQ(captions, GetParam().captions);
}

INSTANTIATE_TEST_SUITE_P(
    SetsInUse, ButtonsOfSet,
    testing::Values(ButtonsCase{4, {}, {1}, {"&Ok"}}, ButtonsCase{3, {}, {6, 7}, {"&Yes", "&No"}},
                    ButtonsCase{9, {}, {6, 2}, {"&Yes", "&Cancel"}},
                    ButtonsCase{11, {}, {6, 7, 2}, {"&Yes", "&No", "&Cancel"}},
                    ButtonsCase{12, {}, {1, 2}, {"&Ok", "&Cancel"}},
                    ButtonsCase{44, {}, {1, 2, 4}, {"&Ok", "&Cancel", "&Retry"}},
                    ButtonsCase{44,
                                {"Quit Script", "Cancel", "No Saves"},
                                {1, 2, 4},
                                {"Quit Script", "Cancel", "No Saves"}},
                    ButtonsCase{44, {"Quit", "Cancel"}, {1, 2, 4}, {"Quit", "Cancel", ""}}));

// ---- MessageDlgA -------------------------------------------------------------------------

struct AnswerCase {
  int set;
  int answer;
  const char* line;  ///< expected answer line; empty when none is logged
};

void PrintTo(const AnswerCase& c, std::ostream* os) {
  *os << "set " << c.set << " answer " << c.answer;
}

class MessageAnswer : public testing::TestWithParam<AnswerCase> {};

TEST_P(MessageAnswer, LogsTextThenAnswerAndKeepsTheChoice) {
  AppState state;
  test::ScriptedDialogs dialogs;
  dialogs.Answer(GetParam().answer);
  const int result = MessageDlgA(state, dialogs, " Quit Vantorelle ?", "Quit ?", 0, GetParam().set,
                                 DialogType::Confirmation);
  EXPECT_EQ(result, GetParam().answer);
  EXPECT_EQ(state.ModeChoice, GetParam().answer);
  QStringList expected = {"Message : Quit Vantorelle ?", " Quit Vantorelle ?"};
  if (*GetParam().line) expected << GetParam().line;
  EXPECT_EQ(state.log.Lines(), expected);
}

INSTANTIATE_TEST_SUITE_P(Answers, MessageAnswer,
                         testing::Values(AnswerCase{3, Answer::Yes, "Dialog Button Yes"},
                                         AnswerCase{3, Answer::No, "Dialog Button No"},
                                         AnswerCase{4, Answer::Ok, "Dialog Button OK"},
                                         AnswerCase{12, Answer::Cancel, "Dialog Button Cancel"},
                                         AnswerCase{44, Answer::Retry, "Dialog Button Retry"},
                                         AnswerCase{16, Answer::Abort, ""},
                                         AnswerCase{64, Answer::Ignore, ""}));

TEST(MessageDlgA, PassesTheRequestAsGivenWithThePlacementSettings) {
  AppState state;
  state.settings.other.Cendes = true;
  state.settings.other.CendeM = true;
  test::ScriptedDialogs dialogs;
  MessageDlgA(state, dialogs, " Init file is opened by another application ! ", "Error", 0,
              Buttons::Ok, DialogType::Error);
  ASSERT_EQ(dialogs.shown.size(), 1);
  const auto& request = dialogs.shown.first();
  EXPECT_EQ(request.text, " Init file is opened by another application ! ");
  EXPECT_EQ(request.caption, "Error");
  EXPECT_EQ(request.type, DialogType::Error);
  EXPECT_EQ(request.buttons, Buttons::Ok);
  EXPECT_TRUE(request.customCaptions.isEmpty());
  EXPECT_TRUE(request.desktopCentered);
  EXPECT_TRUE(request.centerOnMainWindow);
}

TEST(MessageDlgA, KeepsTheDesktopCenteredBoxWhenTheDialogReportsIt) {
  for (const std::optional<bool> box : {std::optional<bool>(), std::optional<bool>(false)}) {
    AppState state;
    state.settings.other.Cendes = true;
    test::ScriptedDialogs dialogs;
    dialogs.desktopCentered = box;
    MessageDlgA(state, dialogs, "text", "Info", 0, Buttons::Ok, DialogType::Information);
    EXPECT_EQ(state.settings.other.Cendes, box.value_or(true));
  }
}

struct ErrorListCase {
  DialogType type;
  bool noLogErrorOnce;
  int kept;
};

void PrintTo(const ErrorListCase& c, std::ostream* os) {
  *os << "type " << static_cast<int>(c.type) << (c.noLogErrorOnce ? " skipped once" : "");
}

class ErrorMessageList : public testing::TestWithParam<ErrorListCase> {};

TEST_P(ErrorMessageList, KeepsErrorTextsUnlessSkippedOnce) {
  AppState state;
  test::ScriptedDialogs dialogs;
  state.log.NoLogErrorOnce = GetParam().noLogErrorOnce;
  MessageDlgA(state, dialogs, "Specified File not found !", "Error", 0, Buttons::Ok,
              GetParam().type);
  EXPECT_EQ(state.log.ErrorMessages.size(), GetParam().kept);
  EXPECT_FALSE(state.log.NoLogErrorOnce);
  EXPECT_TRUE(state.log.Lines().contains("Specified File not found !"));
}

INSTANTIATE_TEST_SUITE_P(Types, ErrorMessageList,
                         testing::Values(ErrorListCase{DialogType::Error, false, 1},
                                         ErrorListCase{DialogType::Error, true, 0},
                                         ErrorListCase{DialogType::Warning, false, 0},
                                         ErrorListCase{DialogType::Information, true, 0},
                                         ErrorListCase{DialogType::Confirmation, false, 0}));

TEST(MessageDlgA, NoLogErrorOnceSkipsOnlyTheNextError) {
  AppState state;
  test::ScriptedDialogs dialogs;
  state.log.NoLogErrorOnce = true;
  for (const char* text : {"first", "second", "third"})
    MessageDlgA(state, dialogs, text, "Error", 0, Buttons::Ok, DialogType::Error);
  EXPECT_EQ(state.log.ErrorMessages, (QStringList{"second", "third"}));
}

// ---- MyMessageDialog ---------------------------------------------------------------------

TEST(MyMessageDialog, ShowsTheCaptionsUpToTheLastIndex) {
  const QStringList captions = {"Save+Quit", "Cancel", "Quit"};
  const std::pair<int, QStringList> table[] = {
      {2, {"Save+Quit", "Cancel", "Quit"}},
      {1, {"Save+Quit", "Cancel", ""}},
      {0, {"Save+Quit", "", ""}},
  };
  for (const auto& [lastIndex, shownCaptions] : table) {
    AppState state;
    test::ScriptedDialogs dialogs;
    MyMessageDialog(state, dialogs, " Quit Vantorelle ? \r Artwork has not been saved ! ",
                    DialogType::Confirmation, lastIndex, captions, 44);
    ASSERT_EQ(dialogs.shown.size(), 1);
    QStringList seen;
    for (const auto& button : platform::ButtonsOf(dialogs.shown.first())) seen << button.caption;
    EXPECT_EQ(seen, shownCaptions) << lastIndex;
    EXPECT_EQ(dialogs.shown.first().buttons, 44);
  }
}

struct CustomAnswerCase {
  int answer;
  const char* line;
};

void PrintTo(const CustomAnswerCase& c, std::ostream* os) { *os << "answer " << c.answer; }

class MyMessageAnswer : public testing::TestWithParam<CustomAnswerCase> {};

TEST_P(MyMessageAnswer, LogsTextThenTheCustomAnswerLine) {
  AppState state;
  test::ScriptedDialogs dialogs;
  dialogs.Answer(GetParam().answer);
  const int result =
      MyMessageDialog(state, dialogs, " Floating Selection layer has not been pasted ! ",
                      DialogType::Warning, 2, {"Paste Now", "Cancel", "Move "}, 44);
  EXPECT_EQ(result, GetParam().answer);
  EXPECT_EQ(state.ModeChoice, GetParam().answer);
  QStringList expected = {"Message Dialog : Floating Selection layer has not been pasted ! "};
  if (*GetParam().line) expected << GetParam().line;
  EXPECT_EQ(state.log.Lines(), expected);
}

INSTANTIATE_TEST_SUITE_P(Answers, MyMessageAnswer,
                         testing::Values(CustomAnswerCase{1, "Dialog Button Paste Now"},
                                         CustomAnswerCase{4, "Dialog Button Move "},
                                         CustomAnswerCase{2, "Dialog Button Cancel"},
                                         CustomAnswerCase{6, ""}));

// ---- Console mode ------------------------------------------------------------------------

enum class Routine { Standard, Custom };

int Ask(Routine routine, AppState& state, platform::Dialogs& dialogs, const QString& text,
        int set) {
  if (routine == Routine::Standard)
    return MessageDlgA(state, dialogs, text, "Warning", 0, set, DialogType::Warning);
  return MyMessageDialog(state, dialogs, text, DialogType::Warning, 1, {"Quit", "Cancel"}, set);
}

struct ConsoleCase {
  Routine routine;
  int set;
  int answer;
};

void PrintTo(const ConsoleCase& c, std::ostream* os) {
  *os << (c.routine == Routine::Standard ? "MessageDlgA" : "MyMessageDialog") << " set " << c.set;
}

class ConsoleMessage : public testing::TestWithParam<ConsoleCase> {};

TEST_P(ConsoleMessage, AnswersByItselfAndWritesTheReport) {
  AppState state;
  state.modes.ConsoleMode = true;
  test::ScriptedDialogs dialogs;
  EXPECT_EQ(Ask(GetParam().routine, state, dialogs, "Processing File not found !", GetParam().set),
            GetParam().answer);
  EXPECT_EQ(state.ModeChoice, GetParam().answer);
  EXPECT_TRUE(dialogs.shown.isEmpty());
  EXPECT_EQ(state.log.Report,
            (QStringList{">> Message Dialog :", "Processing File not found !", ""}));
  EXPECT_EQ(state.LastMessageText, "Processing File not found !");
  EXPECT_TRUE(state.log.ErrorMessages.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sets, ConsoleMessage,
                         testing::Values(ConsoleCase{Routine::Standard, 4, Answer::Ok},
                                         ConsoleCase{Routine::Standard, 12, Answer::Ok},
                                         ConsoleCase{Routine::Standard, 44, Answer::Ok},
                                         ConsoleCase{Routine::Standard, 3, Answer::Yes},
                                         ConsoleCase{Routine::Standard, 9, Answer::Yes},
                                         ConsoleCase{Routine::Custom, 12, Answer::Ok},
                                         ConsoleCase{Routine::Custom, 3, Answer::Yes}));

TEST(ConsoleMessage, LogLinesNameTheRoutineButNoAnswer) {
  AppState state;
  state.modes.ConsoleMode = true;
  test::ScriptedDialogs dialogs;
  Ask(Routine::Standard, state, dialogs, "one", 4);
  Ask(Routine::Custom, state, dialogs, "two", 12);
  EXPECT_EQ(state.log.Lines(), (QStringList{"Message :one", "Message Dialog :two"}));
}

QStringList ReportFiles(const QString& folder) {
  return QDir(folder).entryList({"Report *.txt"}, QDir::Files);
}

TEST(ConsoleMessage, DifferentMessagesWriteNoReport) {
  QTemporaryDir dir;
  AppState state;
  state.modes.ConsoleMode = true;
  state.modes.ExitOnRepeat = true;
  state.files.InitFolder = dir.path() + "/";
  test::ScriptedDialogs dialogs;
  for (const char* text : {"A", "B", "A"}) Ask(Routine::Standard, state, dialogs, text, 3);
  EXPECT_TRUE(ReportFiles(dir.path()).isEmpty());
  EXPECT_FALSE(state.log.TerminateRequested);
}

TEST(ConsoleMessage, ARepeatWritesTheReportAndEndsTheRunOnlyWithExitOnRepeat) {
  for (const bool exitOnRepeat : {false, true}) {
    for (const Routine routine : {Routine::Standard, Routine::Custom}) {
      QTemporaryDir dir;
      AppState state;
      state.modes.ConsoleMode = true;
      state.modes.ExitOnRepeat = exitOnRepeat;
      state.files.InitFolder = dir.path() + "/";
      test::ScriptedDialogs dialogs;
      Ask(routine, state, dialogs, "Specified File not found !", 3);
      const int second = Ask(routine, state, dialogs, "Specified File not found !", 3);
      EXPECT_EQ(second, exitOnRepeat ? Answer::Ok : Answer::Yes);
      EXPECT_EQ(state.log.TerminateRequested, exitOnRepeat);
      const QStringList files = ReportFiles(dir.path());
      ASSERT_EQ(files.size(), 1);
      EXPECT_EQ(test::ReadAll(QDir(dir.path()).filePath(files.first())),
                ">> Message Dialog :\nSpecified File not found !\n\n"
                ">> Message Dialog :\nSpecified File not found !\n\n");
    }
  }
}

// ---- Console dialogs ---------------------------------------------------------------------

struct ConsoleDialogCase {
  const char* caption;
  DialogType type;
  int set;
  QStringList customCaptions;
  const char* printed;
  int answer;
};

void PrintTo(const ConsoleDialogCase& c, std::ostream* os) {
  *os << "set " << c.set << " with " << c.customCaptions.size() << " captions";
}

class ConsoleDialogsShow : public testing::TestWithParam<ConsoleDialogCase> {};

TEST_P(ConsoleDialogsShow, PrintsCaptionAndTextAndAnswersAlone) {
  QString printed;
  QTextStream out(&printed);
  platform::ConsoleDialogs dialogs(out);
  platform::DialogRequest request;
  request.text = " Quit Vantorelle ? \r Artwork has not been saved ! ";
  request.caption = GetParam().caption;
  request.type = GetParam().type;
  request.buttons = GetParam().set;
  request.customCaptions = GetParam().customCaptions;
  EXPECT_EQ(dialogs.Show(request), GetParam().answer);
  EXPECT_EQ(printed, GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, ConsoleDialogsShow,
    testing::Values(
        ConsoleDialogCase{"Quit ?",
                          DialogType::Confirmation,
                          12,
                          {},
                          "Quit ?:  Quit Vantorelle ? \n Artwork has not been saved ! \n",
                          1},
        ConsoleDialogCase{"",
                          DialogType::Confirmation,
                          3,
                          {},
                          "Confirm:  Quit Vantorelle ? \n Artwork has not been saved ! \n",
                          6},
        ConsoleDialogCase{"",
                          DialogType::Warning,
                          9,
                          {},
                          "Warning:  Quit Vantorelle ? \n Artwork has not been saved ! \n",
                          6},
        ConsoleDialogCase{"",
                          DialogType::Error,
                          4,
                          {},
                          "Error:  Quit Vantorelle ? \n Artwork has not been saved ! \n",
                          1},
        ConsoleDialogCase{"",
                          DialogType::Information,
                          3,
                          {"Save+Quit", "Quit"},
                          "Information:  Quit Vantorelle ? \n Artwork has not been saved ! \n",
                          6},
        ConsoleDialogCase{"",
                          DialogType::Information,
                          44,
                          {"Save+Quit", "Cancel", "Quit"},
                          "Information:  Quit Vantorelle ? \n Artwork has not been saved ! \n",
                          1}));

}  // namespace
}  // namespace vt::app
