// SPDX-License-Identifier: MIT
#include "convert/output_width.h"

#include "app/output_naming.h"
#include "app/state.h"

namespace vt::convert {

std::optional<WordWidthChoice> WordWidthFromName(const QString& name) {
  if (name == QLatin1String("8")) return WordWidthChoice::Bits8;
  if (name == QLatin1String("16")) return WordWidthChoice::Bits16;
  if (name == QLatin1String("32")) return WordWidthChoice::Bits32;
  if (name == QLatin1String("bin")) return WordWidthChoice::Binary;
  if (name == QLatin1String("ihex")) return WordWidthChoice::IntelHex;
  return std::nullopt;
}

void SelectOutputWidth(app::AppState& state, WordWidthChoice choice) {
  ApplyWordWidth(state.settings.width, choice);
  app::defineOutputFileName(state);
}

}  // namespace vt::convert
