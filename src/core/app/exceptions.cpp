// SPDX-License-Identifier: MIT
#include "app/exceptions.h"

#include <cxxabi.h>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <typeinfo>

#include "app/messages.h"
#include "app/state.h"

namespace vt::app {

namespace {

namespace Buttons = platform::Buttons;
using platform::DialogType;

// Everything one classification needs.
struct Context {
  AppState& state;
  platform::Dialogs& dialogs;
  const ExceptionInfo& exception;
  Log& log() { return state.log; }
  const QString& message() const { return exception.message; }
};

bool HoldsAny(const QString& message, std::initializer_list<const char*> needles) {
  for (const char* needle : needles) {
    if (message.contains(QString::fromUtf8(needle))) return true;
  }
  return false;
}

// "(<form>[<control>])" as the reports write it.
QString Where(const Log& log) {
  return QLatin1Char('(') + log.LastForm + QLatin1Char('[') + log.LastControl +
         QStringLiteral("])");
}

ExceptionOutcome Hide(Context& c, const QString& text) {
  HiddenExcept(c.log(), text);
  return ExceptionOutcome::Hidden;
}

// Logs the message itself, then hides it.
ExceptionOutcome LogAndHide(Context& c) {
  c.log().StatusBarAndLog(c.message());
  return Hide(c, c.message());
}

ExceptionOutcome Name(Context& c, const QString& text) {
  c.log().LastErrorText = text;
  c.log().ErrorReport(QStringLiteral("Handled_Except"));
  return ExceptionOutcome::Named;
}

// A missing system component: both messages are shown, then the program ends.
ExceptionOutcome ShutDownForOle(Context& c) {
  Log& log = c.log();
  log.StatusBarAndLog(QStringLiteral("Windows Update OLE 80004002"));
  log.StatusBarAndLog(QStringLiteral("NO SUCH INTERFACE SUPPORTED"));
  log.ErrorReport(QStringLiteral("OLE Except"));
  MessageDlgA(c.state, c.dialogs,
              QStringLiteral("OLE error 80004002 \rNO SUCH INTERFACE SUPPORTED\rCheck Windows "
                             "Update "),
              QStringLiteral("Error"), 0, Buttons::Ok, DialogType::Error);
  log.StatusBarAndLog(QStringLiteral("Shut Down"));
  MessageDlgA(c.state, c.dialogs, QStringLiteral("Application Shut Down"), QStringLiteral("Error"),
              0, Buttons::Ok, DialogType::Error);
  log.StatusBarAndLog(QStringLiteral("Application Terminate"));
  return ExceptionOutcome::Terminate;
}

ExceptionOutcome ListIndexError(Context& c) {
  Log& log = c.log();
  log.LastErrorText = QStringLiteral("LI Error =") + Where(log);
  ++log.ExceptionNumber;
  log.LogError(QStringLiteral(">> ") + c.message());
  log.ErrorReport(QStringLiteral("Except"));
  return ExceptionOutcome::Reported;
}

// An access violation is reported; during the start the user is told, yet the button set
// offers no Ok, so the program goes on whatever the answer.
ExceptionOutcome AccessViolation(Context& c) {
  Log& log = c.log();
  const QString phases =
      QString::number(log.StartPhase) + QLatin1Char(' ') + QString::number(log.StartPhase2);
  log.LastErrorText = QStringLiteral("VA Error =") +
                      (log.AsciiInitDone ? QStringLiteral(" OK ") : QStringLiteral(" NOT OK ")) +
                      phases + QLatin1Char(' ') + c.message();
  ++log.ExceptionNumber;
  log.LogError(log.LastErrorText);
  log.ErrorReport(QStringLiteral("AV Except"));
  if (log.StartPhase >= 13) return ExceptionOutcome::Reported;
  const int answer =
      MessageDlgA(c.state, c.dialogs, QStringLiteral(" Application Launch Error ") + phases,
                  QStringLiteral("Error"), 0, Buttons::Yes | Buttons::Cancel, DialogType::Error);
  if (answer != platform::Answer::Ok) return ExceptionOutcome::LaunchError;
  log.StatusBarAndLog(QStringLiteral("Application Terminate"));
  return ExceptionOutcome::Terminate;
}

ExceptionOutcome ReportUnknown(Context& c) {
  Log& log = c.log();
  ++log.ExceptionNumber;
  log.LogError(QStringLiteral(">> ") + c.exception.className + Where(log));
  log.ErrorReport(QStringLiteral("Except"));
  return ExceptionOutcome::Reported;
}

// One row of the classification: the first row that matches decides.
struct Row {
  bool (*matches)(const Context&);
  ExceptionOutcome (*apply)(Context&);
};

const Row kRows[] = {
    {[](const Context& c) {
       return HoldsAny(c.message(), {"Impossible de rendre modale",
                                     "Cannot focus a disabled or invisible window",
                                     "Invalid pointer", "I/O error 103", "External exception",
                                     "Grid index out of range", "Indice de grille hors limites"});
     },
     [](Context& c) { return Hide(c, c.message()); }},
    {[](const Context& c) { return HoldsAny(c.message(), {"Scan line index out of range"}); },
     [](Context& c) { return Hide(c, c.log().Laction + QLatin1Char(' ') + c.message()); }},
    {[](const Context& c) { return HoldsAny(c.message(), {"OLE error 80004002"}); },
     ShutDownForOle},
    {[](const Context& c) {
       return HoldsAny(c.message(), {"OLE error 80004001", "Privileged instruction",
                                     "Division par zéro", "Division by zero"});
     },
     LogAndHide},
    {[](const Context& c) {
       return HoldsAny(c.message(), {"Cannot save empty GIF", "Could not register SHChangeNotify",
                                     "Impossible de focaliser une fen",
                                     "is not a valid integer value", "Invalid stringlist index"});
     },
     [](Context& c) { return Hide(c, c.message()); }},
    {[](const Context& c) { return HoldsAny(c.message(), {"List index out of bounds"}); },
     ListIndexError},
    {[](const Context& c) { return HoldsAny(c.message(), {"Interface not supported"}); },
     [](Context& c) {
       return Name(c, QStringLiteral("Interface not supported") + Where(c.log()));
     }},
    {[](const Context& c) {
       return HoldsAny(c.message(), {"Invalid Parameter for GDI+"}) &&
              c.state.log.Laction == QStringLiteral("Invalid Parameter for GDI");
     },
     [](Context& c) {
       c.log().InvalidGdiParameter = true;
       return Name(c, c.log().LastErrorText);
     }},
    {[](const Context& c) { return c.message().toUpper().contains(QStringLiteral("VIOLATION")); },
     AccessViolation},
};

// The platform's French messages that get a fixed English name before anything else.
struct FrenchName {
  const char* needle;
  const char* name;
};

const FrenchName kFrenchNames[] = {
    {"Mémoire insuffisante", "Out of memory !"},
    {"Accès au fichier refusé", "File access refused !"},
    {"Nom de fichier non valide", "Invalid File Name !"},
};

}  // namespace

ExceptionOutcome MyExceptionHandler(AppState& state, platform::Dialogs& dialogs,
                                    const ExceptionInfo& exception) {
  Log& log = state.log;
  log.LastForm = exception.form;
  log.LastControl = exception.control;
  log.ExceptionOccurred = true;
  Context context{state, dialogs, exception};
  for (const FrenchName& french : kFrenchNames) {
    if (HoldsAny(exception.message, {french.needle})) {
      return Name(context, QString::fromUtf8(french.name));
    }
  }
  log.LastErrorText = exception.className + Where(log);
  for (const Row& row : kRows) {
    if (row.matches(context)) return row.apply(context);
  }
  return ReportUnknown(context);
}

void HiddenExcept(Log& log, const QString& text) {
  ++log.ExceptionNumber;
  log.LogError(QStringLiteral(">> ") + text);
  log.ErrorReport(QStringLiteral("Hid Except"));
}

bool RunHandled(Log& log, const QString& shortText, const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (...) {
    log.HandledExcept(shortText);
    return false;
  }
}

ExceptionInfo DescribeException(const std::exception& exception, const QString& form,
                                const QString& control) {
  const char* mangled = typeid(exception).name();
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> demangled(
      abi::__cxa_demangle(mangled, nullptr, nullptr, &status), std::free);
  const QString className = QString::fromUtf8(status == 0 && demangled ? demangled.get() : mangled);
  return ExceptionInfo{className, QString::fromUtf8(exception.what()), form, control};
}

}  // namespace vt::app
