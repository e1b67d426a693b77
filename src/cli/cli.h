// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTextStream>

namespace vt::platform {
class Folders;
class FileUse;
}  // namespace vt::platform

namespace vt::app {
struct AppState;
struct Services;
}  // namespace vt::app

namespace vt::cli {

/// Exit statuses of the command-line tool.
enum ExitCode { kExitOk = 0, kExitRefused = 1, kExitUsage = 2 };

/// Runs one command line (without the program name) and returns the exit status: 0 success,
/// 1 refused or failed, 2 usage error. Normal output goes to `out`; messages and dialogs, which
/// answer by themselves as in a headless run, go to `err`.
int RunCli(const QStringList& args, QTextStream& out, QTextStream& err, platform::Folders& folders,
           platform::FileUse& fileUse);

/// The export command on `state` and `services` (arguments after "export"): loads the settings
/// (FILE, or the desktop program's active project), gives the display the picture's size,
/// applies --mode, --direction, --corner and --set in that order for this run only, puts the
/// picture on the canvas, names the artwork after it and runs "Export Work Canvas to Data" with
/// the dialog confirmed as it opens. The text is written atomically to OUTPUT, or to OFP under
/// the output name, and its path printed. Returns 0 when written; 1 for an unreadable or
/// unsuitable picture, a refused selection or an export stopped by a message (nothing is
/// written then); 2 for a usage error.
int RunExport(const QStringList& args, app::AppState& state, app::Services& services,
              QTextStream& out, QTextStream& err);

/// The text of `--help`.
QString HelpText();

}  // namespace vt::cli
