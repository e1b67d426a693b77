// SPDX-License-Identifier: MIT
#include "convert/output_width.h"

namespace vt::convert {

std::optional<WordWidthChoice> WordWidthFromName(const QString& name) {
  if (name == QLatin1String("8")) return WordWidthChoice::Bits8;
  if (name == QLatin1String("16")) return WordWidthChoice::Bits16;
  if (name == QLatin1String("32")) return WordWidthChoice::Bits32;
  if (name == QLatin1String("bin")) return WordWidthChoice::Binary;
  if (name == QLatin1String("ihex")) return WordWidthChoice::IntelHex;
  return std::nullopt;
}

void ApplyWordWidth(settings::OutputWidthSettings& w, WordWidthChoice choice) {
  w = settings::OutputWidthSettings{false, false, false, false, false};
  switch (choice) {
    case WordWidthChoice::Bits8:
      w.D8bc = true;
      break;
    case WordWidthChoice::Bits16:
      w.D16bc = true;
      break;
    case WordWidthChoice::Bits32:
      w.D32bc = true;
      break;
    case WordWidthChoice::IntelHex:
      w.DIHec = true;
      break;
    case WordWidthChoice::Binary:
      w.DHec = true;
      break;
  }
}

}  // namespace vt::convert
