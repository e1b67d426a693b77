// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QGuiApplication>
#include <QTextStream>
#include <cstdio>
#include <exception>

#include "cli/cli.h"
#include "platform/posix/process_file_use.h"
#include "platform/qt/qt_folders.h"

int main(int argc, char* argv[]) {
  // A headless run: pictures, SVG and (later) fonts need the GUI side of Qt, but never a
  // display, so the offscreen platform is taken unless the caller chose one.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  QTextStream out(stdout);
  QTextStream err(stderr);
  try {
    vt::platform::QtFolders folders;
    vt::platform::ProcessFileUse fileUse;
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    return vt::cli::RunCli(args, out, err, folders, fileUse);
  } catch (const std::exception& e) {
    err << "vantorelle-cli: " << e.what() << "\n";
    return 1;
  }
}
