// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTextStream>

namespace vt::platform {
class Folders;
class FileUse;
}  // namespace vt::platform

namespace vt::cli {

/// Runs one command line (without the program name) and returns the exit status: 0 success,
/// 1 refused or failed, 2 usage error. Normal output goes to `out`, messages to `err`.
int RunCli(const QStringList& args, QTextStream& out, QTextStream& err,
           platform::Folders& folders, platform::FileUse& fileUse);

}  // namespace vt::cli
