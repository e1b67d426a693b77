// SPDX-License-Identifier: MIT
#pragma once

// Output naming: the names of the generated source file and of the file an export writes, built
// from the artwork name (nbmfn) and the output keys.

#include <QString>

#include "settings/settings.h"

namespace vt::app {

struct AppState;

/// The names derived from the artwork name and the output keys.
struct OutputNames {
  QString base;                ///< nbmfn without its extension
  QString SourceFileName;      ///< base + the source extension of the language keys
  QString SourceFileExtUpper;  ///< that extension in upper case (".C", ".LIB")
  QString OutputFileName;      ///< base + ".hex" (DIHec), ".bin" (DHec), else SourceFileName
};

/// The artwork name without its extension: everything from the last "." is removed, at most
/// 50 characters of it. A name without "." stays whole.
QString OutputBaseName(const QString& artworkName);

/// The extension of the source language, tested in this order: ".asm" with Asmf, "." + fexts
/// with libf, ".bas" with basf, ".c" with cfil, else ".h".
QString SourceExtension(const settings::OutputFileSettings& output);

/// The names the current settings give. Pure: nothing is changed.
OutputNames OutputNamesOf(const settings::Settings& settings);

/// Sets SourceFileName, SourceFileExtUpper and OutputFileName of `state.files` from the
/// settings, with the breadcrumb "Define output filename".
void defineOutputFileName(AppState& state);

/// The file name a save panel holding `panelName` offers next. A name whose extension is
/// exactly ".BMP", ".PNG" or ".JPG" (upper case: ".bmp" does not count) is a picture and stays
/// as it is. Any other name is replaced, in its own folder, by the base of the artwork name with
/// the target's extension: ".bin" when `binaryTab` shows, else ".hex" for Intel Hex, then the
/// source extension of the language keys.
QString defineOutputFileNameEXT(const QString& panelName, const settings::Settings& settings,
                                bool binaryTab);

/// `fileName` (no folder) with every "-" and every "[...]" part removed, so that the array name
/// taken from it is a valid identifier. An unclosed "[" stays.
QString CleanOutputFileName(const QString& fileName);

}  // namespace vt::app
