// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTextStream>

namespace vt::platform {
class Folders;
class FileUse;
}  // namespace vt::platform

namespace vt::cli {

/// Exit statuses of the command-line tool.
enum ExitCode { kExitOk = 0, kExitRefused = 1, kExitUsage = 2 };

/// Runs one command line (without the program name) and returns the exit status: 0 success,
/// 1 refused or failed, 2 usage error. Normal output goes to `out`; messages and dialogs, which
/// answer by themselves as in a headless run, go to `err`.
int RunCli(const QStringList& args, QTextStream& out, QTextStream& err,
           platform::Folders& folders, platform::FileUse& fileUse);

/// The text of `--help`.
QString HelpText();

}  // namespace vt::cli
