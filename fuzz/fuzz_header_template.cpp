// SPDX-License-Identifier: MIT
// Any bytes as a header template file: building the header must not crash, must leave no CR in
// the text, and a template without tokens must come out as its lines, comment lines left out,
// each break one LF. The first byte chooses the block and comment settings.
#include <QStringList>
#include <cstdlib>

#include "convert/header_template.h"
#include "settings/settings.h"

namespace {

// The plain way: breaks made LF, lines split, comment lines dropped, joined again.
QString PlainLines(QString text) {
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  QStringList lines = text.split(QLatin1Char('\n'));
  lines.removeIf([](const QString& line) { return line.contains(QStringLiteral("//**")); });
  return lines.join(QLatin1Char('\n'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vt;
  if (size == 0) return 0;
  const std::uint8_t choice = data[0];
  const QString templateText =
      QString::fromUtf8(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
  settings::Settings s;
  s.block.WSIZE = choice & 1;
  s.block.WORIG = choice & 2;
  s.comment.CCOM = choice & 4;
  s.pixel.G42 = choice & 8;
  s.scan.CORN3 = choice & 16;
  convert::HeaderRequest request;
  request.arrayName = QStringLiteral("Pic");
  request.width = 16;
  request.height = 8;
  request.right = 15;
  request.bottom = 7;
  request.dataByteCount = 16;
  request.compression = choice & 32;
  request.templateText = templateText;
  request.templateFileName = QStringLiteral("fuzz.txt");
  const convert::HeaderText header = convert::BuildHeader(s, request);
  if (header.text.contains(QLatin1Char('\r'))) std::abort();
  // Without a token's opening character the text is only the lines.
  if (!templateText.contains(QLatin1Char('[')) && !templateText.contains(QLatin1Char('&')) &&
      header.text != PlainLines(templateText)) {
    std::abort();
  }
  return 0;
}
