// SPDX-License-Identifier: MIT
#pragma once

// The output format commands: 8, 16 or 32-bit words, the binary file or Intel Hex.

#include <QString>
#include <optional>

#include "settings/settings.h"

namespace vt::convert {

/// The word width group of the export dialog ("8 bits", "16 bits", "32 bits ", "Intel Hex").
/// Binary stands for the binary file output, which the group does not offer: no button is
/// checked then.
enum class WordWidthChoice { Bits8, Bits16, Bits32, IntelHex, Binary };

/// Sets exactly the one width key of `choice` (D8bc, D16bc, D32bc, DIHec or DHec).
void ApplyWordWidth(settings::OutputWidthSettings& w, WordWidthChoice choice);

/// The choice named on a command line: "8", "16", "32", "bin" or "ihex"; empty otherwise.
std::optional<WordWidthChoice> WordWidthFromName(const QString& name);

}  // namespace vt::convert
