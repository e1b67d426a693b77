// SPDX-License-Identifier: MIT
#pragma once

// Palette files (.pal: one colour per line) and colour lists (.csvh, .csvrgb: one named colour
// per line, fields parted by ";"), read and written.

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "canvas/palettes.h"
#include "util/error.h"

namespace vt::canvas {

/// One colour as a palette line holds it: a decimal number, "$" and hexadecimal digits
/// 00BBGGRR, or a colour name (clBlack, clMaroon ... clWhite, with or without "cl", any case).
/// Blanks around it are ignored. Empty for anything else, or a value above 0xFFFFFF.
std::optional<Color> ParseColorText(const QString& text);

/// The colours of a palette file's text. `path` names the file in errors. With `entries` above
/// 0 the line count must be exactly that (an empty last line does not count); a line that is
/// no colour is an error giving its line number.
Result<Palette> ParsePaletteText(const QString& text, const QString& path, int entries = 0);
/// Reads a palette file (see ParsePaletteText): the lines in the forms the files are written in
/// straight from the bytes, or with `referencePaths` the whole text by ParsePaletteText.
Result<Palette> ReadPaletteFile(const QString& path, int entries = 0, bool referencePaths = false);
/// The text of a palette file: "$00BBGGRR" per line, CRLF line ends.
QByteArray PaletteFileText(const Palette& palette);
/// Writes a palette file atomically.
Result<bool> WritePaletteFile(const QString& path, const Palette& palette);

/// The two kinds of colour list.
enum class ColorListKind {
  Hex,  ///< .csvh: name;#RRGGBB;more fields...
  Rgb,  ///< .csvrgb: name;R;G;B;more fields... (decimal, 0..255)
};

/// One line of a colour list.
struct ColorListEntry {
  QString name;
  int red = 0;
  int green = 0;
  int blue = 0;
  QStringList more;  ///< the fields after the colour

  Color color() const { return Color(red) | (Color(green) << 8) | (Color(blue) << 16); }
  /// The cells of its grid row: name, red, green, blue in decimal, then the further fields,
  /// padded with "0" to `columns` cells.
  QStringList GridRow(int columns) const;
};

/// The kind of a list by the extension of `path` (.csvh or .csvrgb, any case).
std::optional<ColorListKind> ColorListKindOf(const QString& path);
/// Parses a colour list; empty lines are skipped. A colour that does not parse is an error
/// with the file and line.
Result<std::vector<ColorListEntry>> ParseColorList(const QString& text, ColorListKind kind,
                                                   const QString& path);
/// Reads a colour list, its kind taken from the extension.
Result<std::vector<ColorListEntry>> ReadColorList(const QString& path);
/// The text of a colour list, CRLF line ends.
QByteArray ColorListText(const std::vector<ColorListEntry>& entries, ColorListKind kind);
/// The entries whose line contains `filter` in any case; "All Colors" or empty keeps all.
std::vector<ColorListEntry> FilterColorList(const std::vector<ColorListEntry>& entries,
                                            ColorListKind kind, const QString& filter);

}  // namespace vt::canvas
