// SPDX-License-Identifier: MIT
// Any bytes as a palette file and as a colour list of either kind. The palette read from the
// file's bytes must equal the text parser's answer, a palette read must write and read back the
// same, and a colour list read must write and read back the same colours.
#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

#include "canvas/palette_files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vt::canvas;
  static QTemporaryDir dir;
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const QString path = dir.filePath(QStringLiteral("fuzz.pal"));
  {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) return 0;
  }
  const auto fromBytes = ReadPaletteFile(path);
  const auto fromText = ParsePaletteText(QString::fromUtf8(bytes), path);
  if (fromBytes.ok() != fromText.ok()) std::abort();
  if (fromBytes.ok()) {
    if (fromBytes.value() != fromText.value()) std::abort();
    const auto again = ParsePaletteText(QString::fromUtf8(PaletteFileText(fromText.value())), path);
    if (!again.ok() || again.value() != fromText.value()) std::abort();
  }

  for (const ColorListKind kind : {ColorListKind::Hex, ColorListKind::Rgb}) {
    const auto list = ParseColorList(QString::fromUtf8(bytes), kind, QStringLiteral("fuzz"));
    if (!list.ok()) continue;
    const auto again = ParseColorList(QString::fromUtf8(ColorListText(list.value(), kind)), kind,
                                      QStringLiteral("fuzz"));
    if (!again.ok() || again.value().size() != list.value().size()) std::abort();
    for (std::size_t i = 0; i < list.value().size(); ++i) {
      if (again.value()[i].color() != list.value()[i].color()) std::abort();
    }
  }
  return 0;
}
