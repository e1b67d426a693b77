// SPDX-License-Identifier: MIT
#include "app/exceptions.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "app/state.h"
#include "support/scripted_dialogs.h"
#include "util/error.h"

namespace vt::app {
namespace {

using Outcome = ExceptionOutcome;

const char* const kWhere = "TImageForm[PaintBox])";

struct HandlerCase {
  const char* name;
  const char* className;
  const char* message;
  Outcome outcome;
  const char* lastErrorText;
  int exceptionNumber;
  QStringList tags;
  QStringList log;
  QStringList dialogs;
  const char* laction = "Export Work Canvas to Data";
  int startPhase = 24;
  bool asciiInitDone = true;
};

void PrintTo(const HandlerCase& c, std::ostream* os) { *os << c.name; }

class MyExceptionHandlerRows : public testing::TestWithParam<HandlerCase> {};

TEST_P(MyExceptionHandlerRows, SortsByMessage) {
  const HandlerCase& c = GetParam();
  AppState state;
  state.log.Laction = c.laction;
  state.log.StartPhase = c.startPhase;
  state.log.AsciiInitDone = c.asciiInitDone;
  test::ScriptedDialogs dialogs;
  const Outcome outcome =
      MyExceptionHandler(state, dialogs, {c.className, c.message, "TImageForm", "PaintBox"});
  EXPECT_EQ(outcome, c.outcome);
  EXPECT_EQ(state.log.LastErrorText, c.lastErrorText);
  EXPECT_EQ(state.log.ExceptionNumber, c.exceptionNumber);
  EXPECT_EQ(state.log.ReportTags, c.tags);
  EXPECT_EQ(state.log.Lines(), c.log);
  EXPECT_EQ(dialogs.Texts(), c.dialogs);
  EXPECT_EQ(state.log.LastForm, "TImageForm");
  EXPECT_EQ(state.log.LastControl, "PaintBox");
  EXPECT_TRUE(state.log.ExceptionOccurred);
}

const QString kOleText = "OLE error 80004002 \rNO SUCH INTERFACE SUPPORTED\rCheck Windows Update ";

INSTANTIATE_TEST_SUITE_P(
    Table, MyExceptionHandlerRows,
    testing::Values(HandlerCase{"FrenchOutOfMemory",
                                "EOutOfMemory",
                                "Mémoire insuffisante",
                                Outcome::Named,
                                "Out of memory !",
                                0,
                                {"Handled_Except"},
                                {},
                                {}},
                    HandlerCase{"FrenchFileAccess",
                                "EInOutError",
                                "Accès au fichier refusé: C:\\x.bmp",
                                Outcome::Named,
                                "File access refused !",
                                0,
                                {"Handled_Except"},
                                {},
                                {}},
                    HandlerCase{"FrenchFileName",
                                "EInOutError",
                                "Nom de fichier non valide",
                                Outcome::Named,
                                "Invalid File Name !",
                                0,
                                {"Handled_Except"},
                                {},
                                {}},
                    HandlerCase{"EnglishOutOfMemoryIsReported",
                                "EOutOfMemory",
                                "Out of memory",
                                Outcome::Reported,
                                "EOutOfMemory(TImageForm[PaintBox])",
                                1,
                                {"Except"},
                                {">> EOutOfMemory(TImageForm[PaintBox])", kWhere},
                                {}},
                    HandlerCase{"HiddenWithMessage",
                                "EInvalidOperation",
                                "Cannot focus a disabled or invisible window",
                                Outcome::Hidden,
                                "EInvalidOperation(TImageForm[PaintBox])",
                                1,
                                {"Hid Except"},
                                {">> Cannot focus a disabled or invisible window", kWhere},
                                {}},
                    HandlerCase{"ScanLineNamesTheBreadcrumb",
                                "EInvalidGraphicOperation",
                                "Scan line index out of range",
                                Outcome::Hidden,
                                "EInvalidGraphicOperation(TImageForm[PaintBox])",
                                1,
                                {"Hid Except"},
                                {">> Rotate Canvas Scan line index out of range", kWhere},
                                {},
                                "Rotate Canvas"},
                    HandlerCase{"OleNoInterfaceTerminates",
                                "EOleSysError",
                                "OLE error 80004002",
                                Outcome::Terminate,
                                "EOleSysError(TImageForm[PaintBox])",
                                0,
                                {"OLE Except"},
                                {"Windows Update OLE 80004002", "NO SUCH INTERFACE SUPPORTED",
                                 "Message :" + kOleText, kOleText, "Dialog Button OK", "Shut Down",
                                 "Message :Application Shut Down", "Application Shut Down",
                                 "Dialog Button OK", "Application Terminate"},
                                {kOleText, "Application Shut Down"}},
                    HandlerCase{"OleNotImplementedIsLoggedAndHidden",
                                "EOleSysError",
                                "OLE error 80004001",
                                Outcome::Hidden,
                                "EOleSysError(TImageForm[PaintBox])",
                                1,
                                {"Hid Except"},
                                {"OLE error 80004001", ">> OLE error 80004001", kWhere},
                                {}},
                    HandlerCase{"PrivilegedInstruction",
                                "EPrivilege",
                                "Privileged instruction",
                                Outcome::Hidden,
                                "EPrivilege(TImageForm[PaintBox])",
                                1,
                                {"Hid Except"},
                                {"Privileged instruction", ">> Privileged instruction", kWhere},
                                {}},
                    HandlerCase{"DivisionByZeroIsNotShown",
                                "EZeroDivide",
                                "Division by zero",
                                Outcome::Hidden,
                                "EZeroDivide(TImageForm[PaintBox])",
                                1,
                                {"Hid Except"},
                                {"Division by zero", ">> Division by zero", kWhere},
                                {}},
                    HandlerCase{"FrenchDivisionSortedLikeEnglish",
                                "EZeroDivide",
                                "Division par zéro",
                                Outcome::Hidden,
                                "EZeroDivide(TImageForm[PaintBox])",
                                1,
                                {"Hid Except"},
                                {"Division par zéro", ">> Division par zéro", kWhere},
                                {}},
                    HandlerCase{"OtherLanguageGoesToDefault",
                                "EZeroDivide",
                                "Division durch Null",
                                Outcome::Reported,
                                "EZeroDivide(TImageForm[PaintBox])",
                                1,
                                {"Except"},
                                {">> EZeroDivide(TImageForm[PaintBox])", kWhere},
                                {}},
                    HandlerCase{"ListIndex",
                                "EStringListError",
                                "List index out of bounds (7)",
                                Outcome::Reported,
                                "LI Error =(TImageForm[PaintBox])",
                                1,
                                {"Except"},
                                {">> List index out of bounds (7)", kWhere},
                                {}},
                    HandlerCase{"InterfaceNotSupported",
                                "EIntfCastError",
                                "Interface not supported",
                                Outcome::Named,
                                "Interface not supported(TImageForm[PaintBox])",
                                0,
                                {"Handled_Except"},
                                {},
                                {}},
                    HandlerCase{"GdiParameterOnPurpose",
                                "EGdiException",
                                "Invalid Parameter for GDI+",
                                Outcome::Named,
                                "EGdiException(TImageForm[PaintBox])",
                                0,
                                {"Handled_Except"},
                                {},
                                {},
                                "Invalid Parameter for GDI"},
                    HandlerCase{"GdiParameterElsewhereIsReported",
                                "EGdiException",
                                "Invalid Parameter for GDI+",
                                Outcome::Reported,
                                "EGdiException(TImageForm[PaintBox])",
                                1,
                                {"Except"},
                                {">> EGdiException(TImageForm[PaintBox])", kWhere},
                                {}},
                    HandlerCase{"AccessViolationAfterStart",
                                "EAccessViolation",
                                "Access violation at address 00405A3C",
                                Outcome::Reported,
                                "VA Error = OK 24 0 Access violation at address 00405A3C",
                                1,
                                {"AV Except"},
                                {"VA Error = OK 24 0 Access violation at address 00405A3C", kWhere},
                                {}},
                    HandlerCase{"AccessViolationAtPhase13",
                                "EAccessViolation",
                                "ACCESS VIOLATION",
                                Outcome::Reported,
                                "VA Error = OK 13 0 ACCESS VIOLATION",
                                1,
                                {"AV Except"},
                                {"VA Error = OK 13 0 ACCESS VIOLATION", kWhere},
                                {},
                                "",
                                13},
                    HandlerCase{"AccessViolationDuringStart",
                                "EAccessViolation",
                                "Access violation",
                                Outcome::LaunchError,
                                "VA Error = NOT OK 12 0 Access violation",
                                1,
                                {"AV Except"},
                                {"VA Error = NOT OK 12 0 Access violation", kWhere,
                                 "Message : Application Launch Error 12 0",
                                 " Application Launch Error 12 0", "Dialog Button Yes"},
                                {" Application Launch Error 12 0"},
                                "",
                                12,
                                false},
                    HandlerCase{"UnknownIsReported",
                                "EConvertError",
                                "'abc' is not a number",
                                Outcome::Reported,
                                "EConvertError(TImageForm[PaintBox])",
                                1,
                                {"Except"},
                                {">> EConvertError(TImageForm[PaintBox])", kWhere},
                                {}}),
    [](const testing::TestParamInfo<HandlerCase>& info) { return std::string(info.param.name); });

// Every message of the rows that only hide: counted, logged with the message, never shown.
class HiddenMessages : public testing::TestWithParam<const char*> {};

TEST_P(HiddenMessages, AreCountedButNeverShown) {
  AppState state;
  state.log.StartPhase = 5;  // even during the start nothing is shown
  test::ScriptedDialogs dialogs;
  const QString message = QString("Error: ") + GetParam() + " at 0";
  EXPECT_EQ(MyExceptionHandler(state, dialogs, {"Exception", message, "F", "C"}), Outcome::Hidden);
  EXPECT_TRUE(dialogs.shown.isEmpty());
  EXPECT_EQ(state.log.ExceptionNumber, 1);
  EXPECT_EQ(state.log.ReportTags, QStringList{"Hid Except"});
  EXPECT_TRUE(state.log.Lines().contains(">> " + message));
}

INSTANTIATE_TEST_SUITE_P(
    Needles, HiddenMessages,
    testing::Values("Impossible de rendre modale", "Cannot focus a disabled or invisible window",
                    "Invalid pointer", "I/O error 103", "External exception",
                    "Grid index out of range", "Indice de grille hors limites",
                    "OLE error 80004001", "Privileged instruction", "Division par zéro",
                    "Division by zero", "Cannot save empty GIF",
                    "Could not register SHChangeNotify", "Impossible de focaliser une fen",
                    "is not a valid integer value", "Invalid stringlist index"));

TEST(MyExceptionHandler, EarlierRowsWinOverLaterOnes) {
  // "Invalid pointer" hides before the access violation test is reached.
  AppState state;
  test::ScriptedDialogs dialogs;
  EXPECT_EQ(MyExceptionHandler(state, dialogs,
                               {"EAccessViolation", "Access violation: Invalid pointer", "F", "C"}),
            Outcome::Hidden);
  // A French name is found before any row of the table.
  EXPECT_EQ(
      MyExceptionHandler(state, dialogs,
                         {"EOutOfMemory", "Mémoire insuffisante, Division by zero", "F", "C"}),
      Outcome::Named);
  EXPECT_EQ(state.log.LastErrorText, "Out of memory !");
}

TEST(MyExceptionHandler, GdiParameterRowSetsItsFlagOnlyWhenItApplies) {
  for (const char* laction : {"Invalid Parameter for GDI", "Load Picture"}) {
    AppState state;
    state.log.Laction = laction;
    test::ScriptedDialogs dialogs;
    MyExceptionHandler(state, dialogs, {"EGdiException", "Invalid Parameter for GDI+", "F", "C"});
    EXPECT_EQ(state.log.InvalidGdiParameter, QString(laction) == "Invalid Parameter for GDI");
  }
}

TEST(MyExceptionHandler, LaunchErrorTerminatesOnlyOnOk) {
  // The Yes/Cancel set cannot answer Ok from a real dialog; a scripted Ok shows the branch.
  const std::pair<int, Outcome> table[] = {{platform::Answer::Yes, Outcome::LaunchError},
                                           {platform::Answer::Cancel, Outcome::LaunchError},
                                           {platform::Answer::Ok, Outcome::Terminate}};
  for (const auto& [answer, outcome] : table) {
    AppState state;
    state.log.StartPhase = 3;
    test::ScriptedDialogs dialogs;
    dialogs.Answer(answer);
    EXPECT_EQ(MyExceptionHandler(state, dialogs, {"EAccessViolation", "Access violation", "", ""}),
              outcome);
    ASSERT_EQ(dialogs.shown.size(), 1);
    EXPECT_EQ(dialogs.shown.first().caption, "Error");
    EXPECT_EQ(dialogs.shown.first().buttons, platform::Buttons::Yes | platform::Buttons::Cancel);
    EXPECT_EQ(state.log.Lines().contains("Application Terminate"), outcome == Outcome::Terminate);
  }
}

TEST(MyExceptionHandler, CountersAddUpOverARun) {
  AppState state;
  test::ScriptedDialogs dialogs;
  const char* messages[] = {"Division by zero", "Interface not supported",
                            "List index out of bounds", "Access violation", "Something else"};
  for (const char* message : messages) MyExceptionHandler(state, dialogs, {"E", message, "F", "C"});
  EXPECT_EQ(state.log.ExceptionNumber, 4);
  EXPECT_EQ(state.log.ReportTags,
            (QStringList{"Hid Except", "Handled_Except", "Except", "AV Except", "Except"}));
}

TEST(HiddenExcept, CountsLogsAndTags) {
  Log log;
  log.LastForm = "TPixelForm";
  log.LastControl = "ColorGrid";
  HiddenExcept(log, "Grid index out of range");
  EXPECT_EQ(log.ExceptionNumber, 1);
  EXPECT_EQ(log.Lines(), (QStringList{">> Grid index out of range", "TPixelForm[ColorGrid])"}));
  EXPECT_EQ(log.ReportTags, QStringList{"Hid Except"});
}

// ---- Command boundary --------------------------------------------------------------------

struct BoundaryCase {
  const char* name;
  std::function<void()> body;
  bool finished;
};

void PrintTo(const BoundaryCase& c, std::ostream* os) { *os << c.name; }

class RunHandledBodies : public testing::TestWithParam<BoundaryCase> {};

TEST_P(RunHandledBodies, SwallowsAnyThrowByTheHandledConvention) {
  Log log;
  log.LastErrorText = "before";
  const bool finished = RunHandled(log, "Load Folders", GetParam().body);
  EXPECT_EQ(finished, GetParam().finished);
  EXPECT_EQ(log.LastErrorText, finished ? "before" : "Load Folders");
  EXPECT_EQ(log.ExceptionNumber, finished ? 0 : 1);
  EXPECT_EQ(log.ReportTags, finished ? QStringList{} : QStringList{"Handled_Except"});
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, RunHandledBodies,
    testing::Values(BoundaryCase{"Finishes", [] {}, true},
                    BoundaryCase{"Failure",
                                 [] {
                                   throw Failure(Error{Error::Kind::Io, "L.LOG", 0, 0, "denied"});
                                 },
                                 false},
                    BoundaryCase{"StandardException", [] { throw std::out_of_range("index"); },
                                 false},
                    BoundaryCase{"AnythingElse", [] { throw 42; }, false}),
    [](const testing::TestParamInfo<BoundaryCase>& info) { return std::string(info.param.name); });

TEST(RunHandled, KeepsWhatTheBodyDidBeforeItThrew) {
  Log log;
  RunHandled(log, "Update MRU 3 Error", [&log] {
    log.StatusBarAndLog("Update MRU");
    throw std::runtime_error("boom");
  });
  EXPECT_EQ(log.Lines(), QStringList{"Update MRU"});
  EXPECT_EQ(log.LastErrorText, "Update MRU 3 Error");
}

TEST(DescribeException, GivesTypeNameMessageAndPlace) {
  const ExceptionInfo info =
      DescribeException(std::out_of_range("Division by zero"), "TMainForm", "Ribbon");
  EXPECT_EQ(info.className, "std::out_of_range");
  EXPECT_EQ(info.message, "Division by zero");
  EXPECT_EQ(info.form, "TMainForm");
  EXPECT_EQ(info.control, "Ribbon");
  AppState state;
  test::ScriptedDialogs dialogs;
  EXPECT_EQ(MyExceptionHandler(state, dialogs, info), Outcome::Hidden);
}

}  // namespace
}  // namespace vt::app
