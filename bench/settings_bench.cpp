// SPDX-License-Identifier: MIT
// Prints how long the settings file takes to load and save. `--smoke` runs a few rounds only.
#include <QElapsedTimer>
#include <QTextStream>
#include <cstring>

#include "settings/ini_document.h"
#include "settings/settings_file.h"

int main(int argc, char* argv[]) {
  using namespace vt::settings;
  const bool smoke = argc > 1 && std::strcmp(argv[1], "--smoke") == 0;
  const int rounds = smoke ? 20 : 2000;
  QTextStream out(stdout);
  const FolderDefaults folders{QStringLiteral("/d/Documents"), QStringLiteral("/d/Pictures"),
                               QStringLiteral("/d/Output Files"), QStringLiteral("/d/Fonts"),
                               QStringLiteral("/d/Touch Panel"), QStringLiteral("/d/Batch Files")};
  IniDocument doc;
  WriteSettings(DefaultSettings(folders), doc);
  const QByteArray file = doc.Serialize();

  QElapsedTimer timer;
  timer.start();
  qint64 checksum = 0;
  for (int i = 0; i < rounds; ++i) {
    Settings s;
    ReadSettings(IniDocument::Parse(file).value(), s, folders);
    checksum += s.display.GWI;
  }
  const double loadUs = double(timer.nsecsElapsed()) / rounds / 1000.0;
  timer.restart();
  for (int i = 0; i < rounds; ++i) {
    IniDocument fresh;
    WriteSettings(DefaultSettings(folders), fresh);
    checksum += fresh.Serialize().size();
  }
  const double saveUs = double(timer.nsecsElapsed()) / rounds / 1000.0;
  out << "settings file: " << file.size() << " bytes, " << rounds << " rounds\n";
  out << "  load (parse + read every key): " << QString::number(loadUs, 'f', 1) << " us\n";
  out << "  save (write every key + text): " << QString::number(saveUs, 'f', 1) << " us\n";
  out << "  (checksum " << checksum << ")\n";
  return 0;
}
