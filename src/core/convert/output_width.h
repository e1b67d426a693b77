// SPDX-License-Identifier: MIT
#pragma once

// The output format commands: 8, 16 or 32-bit words, the binary file or Intel Hex.

#include <QString>
#include <optional>

#include "convert/export_driver.h"

namespace vt::app {
struct AppState;
}

namespace vt::convert {

/// The choice named on a command line: "8", "16", "32", "bin" or "ihex"; empty otherwise.
std::optional<WordWidthChoice> WordWidthFromName(const QString& name);

/// N8bitformatClick, N16bitformatClick, N32bitformatClick, HexOutput1Click,
/// IntelHexOutputClick: exactly one of D8bc, D16bc, D32bc, DHec, DIHec is set, and the output
/// names follow the new target (".bin", ".hex" or the source extension).
void SelectOutputWidth(app::AppState& state, WordWidthChoice choice);

}  // namespace vt::convert
