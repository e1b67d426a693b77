// SPDX-License-Identifier: MIT
#include "app/exceptions.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

#include "app/state.h"
#include "support/scripted_dialogs.h"
#include "util/error.h"

namespace vt::app {
namespace {

using Outcome = ExceptionOutcome;

/// "a|b" as {"a", "b"}; "" as no lines.
QStringList Lines(const QString& joined) { return joined.split('|', Qt::SkipEmptyParts); }

struct HandlerCase {
  const char* className;
  const char* message;
  Outcome outcome;
  const char* lastErrorText;
  int exceptionNumber;
  const char* tag;
  QString log;      ///< lines joined by '|'
  QString dialogs;  ///< texts joined by '|'
  const char* laction = "Export Work Canvas to Data";
  int startPhase = 24;
  bool asciiInitDone = true;
};

const QString kOle = "OLE error 80004002 \rNO SUCH INTERFACE SUPPORTED\rCheck Windows Update ";

// The form is "F" and the control "C": every report names the place as "F[C])".
const HandlerCase kHandlerCases[] = {
    {"EOutOfMemory", "Mémoire insuffisante", Outcome::Named, "Out of memory !", 0, "Handled_Except",
     "", ""},
    // Only the French text gets a name; the English one is reported like any other.
    {"EOutOfMemory", "Out of memory", Outcome::Reported, "EOutOfMemory(F[C])", 1, "Except",
     ">> EOutOfMemory(F[C])|F[C])", ""},
    {"EInvalidGraphicOperation", "Scan line index out of range", Outcome::Hidden,
     "EInvalidGraphicOperation(F[C])", 1, "Hid Except",
     ">> Rotate Canvas Scan line index out of range|F[C])", "", "Rotate Canvas"},
    {"EOleSysError", "OLE error 80004002", Outcome::Terminate, "EOleSysError(F[C])", 0,
     "OLE Except",
     "Windows Update OLE 80004002|NO SUCH INTERFACE SUPPORTED|Message :" + kOle + "|" + kOle +
         "|Dialog Button OK|Shut Down|Message :Application Shut Down|Application Shut Down|"
         "Dialog Button OK|Application Terminate",
     kOle + "|Application Shut Down"},
    {"EOleSysError", "OLE error 80004001", Outcome::Hidden, "EOleSysError(F[C])", 1, "Hid Except",
     "OLE error 80004001|>> OLE error 80004001|F[C])", ""},
    {"EZeroDivide", "Division durch Null", Outcome::Reported, "EZeroDivide(F[C])", 1, "Except",
     ">> EZeroDivide(F[C])|F[C])", ""},
    {"EStringListError", "List index out of bounds (7)", Outcome::Reported, "LI Error =(F[C])", 1,
     "Except", ">> List index out of bounds (7)|F[C])", ""},
    {"EIntfCastError", "Interface not supported", Outcome::Named, "Interface not supported(F[C])",
     0, "Handled_Except", "", ""},
    {"EGdiException", "Invalid Parameter for GDI+", Outcome::Named, "EGdiException(F[C])", 0,
     "Handled_Except", "", "", "Invalid Parameter for GDI"},
    {"EGdiException", "Invalid Parameter for GDI+", Outcome::Reported, "EGdiException(F[C])", 1,
     "Except", ">> EGdiException(F[C])|F[C])", ""},
    {"EAccessViolation", "Access violation at address 00405A3C", Outcome::Reported,
     "VA Error = OK 24 0 Access violation at address 00405A3C", 1, "AV Except",
     "VA Error = OK 24 0 Access violation at address 00405A3C|F[C])", ""},
    {"EAccessViolation", "ACCESS VIOLATION", Outcome::Reported,
     "VA Error = OK 13 0 ACCESS VIOLATION", 1, "AV Except",
     "VA Error = OK 13 0 ACCESS VIOLATION|F[C])", "", "", 13},
    {"EAccessViolation", "Access violation", Outcome::LaunchError,
     "VA Error = NOT OK 12 0 Access violation", 1, "AV Except",
     "VA Error = NOT OK 12 0 Access violation|F[C])|Message : Application Launch Error 12 0| "
     "Application Launch Error 12 0|Dialog Button Yes",
     " Application Launch Error 12 0", "", 12, false}};

TEST(MyExceptionHandler, SortsByMessage) {
  for (const HandlerCase& c : kHandlerCases) {
    SCOPED_TRACE(c.message);
    AppState state;
    state.log.Laction = c.laction;
    state.log.StartPhase = c.startPhase;
    state.log.AsciiInitDone = c.asciiInitDone;
    test::ScriptedDialogs dialogs;
    EXPECT_EQ(MyExceptionHandler(state, dialogs, {c.className, c.message, "F", "C"}), c.outcome);
    EXPECT_EQ(state.log.LastErrorText, c.lastErrorText);
    EXPECT_EQ(state.log.ExceptionNumber, c.exceptionNumber);
    EXPECT_EQ(state.log.ReportTags, QStringList{c.tag});
    EXPECT_EQ(state.log.Lines(), Lines(c.log));
    EXPECT_EQ(dialogs.Texts(), Lines(c.dialogs));
    EXPECT_EQ(state.log.LastForm + state.log.LastControl, "FC");
    EXPECT_TRUE(state.log.ExceptionOccurred);
    EXPECT_EQ(state.log.InvalidGdiParameter, QString(c.laction) == "Invalid Parameter for GDI");
  }
}

TEST(MyExceptionHandler, HiddenMessagesAreCountedButNeverShown) {
  for (const char* needle :
       {"Impossible de rendre modale", "Cannot focus a disabled or invisible window",
        "Invalid pointer", "I/O error 103", "External exception", "Grid index out of range",
        "Indice de grille hors limites", "OLE error 80004001", "Privileged instruction",
        "Division par zéro", "Division by zero", "Cannot save empty GIF",
        "Could not register SHChangeNotify", "Impossible de focaliser une fen",
        "is not a valid integer value", "Invalid stringlist index"}) {
    SCOPED_TRACE(needle);
    AppState state;
    state.log.StartPhase = 5;  // even during the start nothing is shown
    test::ScriptedDialogs dialogs;
    const QString message = QString("Error: ") + needle + " at 0";
    EXPECT_EQ(MyExceptionHandler(state, dialogs, {"Exception", message, "F", "C"}),
              Outcome::Hidden);
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(state.log.ExceptionNumber, 1);
    EXPECT_EQ(state.log.ReportTags, QStringList{"Hid Except"});
    EXPECT_TRUE(state.log.Lines().contains(">> " + message));
  }
}

TEST(MyExceptionHandler, FrenchNamesComeFirstThenTheFirstMatchingRowDecides) {
  const std::tuple<const char*, Outcome, const char*> rows[] = {
      {"Accès au fichier refusé: C:\\x.bmp", Outcome::Named, "File access refused !"},
      {"Nom de fichier non valide", Outcome::Named, "Invalid File Name !"},
      {"Mémoire insuffisante, Division by zero", Outcome::Named, "Out of memory !"},
      {"Access violation: Invalid pointer", Outcome::Hidden, "E(F[C])"},
      {"List index out of bounds: access violation", Outcome::Reported, "LI Error =(F[C])"},
      {"Division by zero, OLE error 80004002", Outcome::Terminate, "E(F[C])"}};
  for (const auto& [message, outcome, lastErrorText] : rows) {
    AppState state;
    test::ScriptedDialogs dialogs;
    EXPECT_EQ(MyExceptionHandler(state, dialogs, {"E", message, "F", "C"}), outcome) << message;
    EXPECT_EQ(state.log.LastErrorText, lastErrorText);
  }
}

TEST(MyExceptionHandler, LaunchErrorTerminatesOnlyOnOk) {
  // The Yes/Cancel set cannot answer Ok from a real dialog; a scripted Ok shows the branch.
  const std::pair<int, Outcome> table[] = {{platform::Answer::Cancel, Outcome::LaunchError},
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
  for (const char* message : {"Interface not supported", "List index out of bounds",
                              "Division by zero", "Access violation", "Something else"}) {
    MyExceptionHandler(state, dialogs, {"E", message, "F", "C"});
  }
  EXPECT_EQ(state.log.ExceptionNumber, 4);
  EXPECT_EQ(state.log.ReportTags,
            (QStringList{"Handled_Except", "Except", "Hid Except", "AV Except", "Except"}));
}

TEST(RunHandled, SwallowsAnyThrowByTheHandledConventionKeepingWhatTheBodyDid) {
  const std::function<void()> bodies[] = {[] {}, [] { throw Failure(Error{}); }, [] { throw 42; }};
  for (const auto& throwing : bodies) {
    Log log;
    log.LastErrorText = "before";
    const bool finished = RunHandled(log, "Update MRU 3 Error", [&] {
      log.StatusBarAndLog("Update MRU");
      throwing();
    });
    EXPECT_EQ(finished, &throwing == &bodies[0]);
    EXPECT_EQ(log.Lines(), QStringList{"Update MRU"});
    EXPECT_EQ(log.LastErrorText, finished ? "before" : "Update MRU 3 Error");
    EXPECT_EQ(log.ExceptionNumber, finished ? 0 : 1);
    EXPECT_EQ(log.ReportTags, finished ? QStringList{} : QStringList{"Handled_Except"});
  }
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
