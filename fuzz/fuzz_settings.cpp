// SPDX-License-Identifier: MIT
// Any bytes as a settings file: parsing, loading into the records and writing back must neither
// crash nor change what a second round reads.
#include <cstdlib>

#include "settings/ini_document.h"
#include "settings/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vt::settings;
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  auto parsed = IniDocument::Parse(bytes, QStringLiteral("fuzz.LCD"));
  if (!parsed.ok()) return 0;
  IniDocument doc = parsed.value();
  const FolderDefaults folders{QStringLiteral("/d"), QStringLiteral("/p"), QStringLiteral("/o"),
                               QStringLiteral("/f"), QStringLiteral("/t"), QStringLiteral("/b")};
  Settings first;
  ReadSettings(doc, first, folders);
  WriteSettings(first, doc);
  const QByteArray once = doc.Serialize();

  auto again = IniDocument::Parse(once);
  if (!again.ok()) std::abort();
  IniDocument second = again.value();
  Settings reread;
  ReadSettings(second, reread, folders);
  WriteSettings(reread, second);
  if (second.Serialize() != once) std::abort();  // a save of a load is stable
  return 0;
}
