// SPDX-License-Identifier: MIT
#include "cli/cli.h"

namespace vt::cli {

int RunCli(const QStringList& args, QTextStream& out, QTextStream& err,
           platform::Folders& folders, platform::FileUse& fileUse) {
  out << "vantorelle-cli\n";
  return 0;
}

}  // namespace vt::cli
