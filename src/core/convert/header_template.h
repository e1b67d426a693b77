// SPDX-License-Identifier: MIT
#pragma once

// The header templates: user-editable texts with [&...] tokens that surround a data array. One
// template per kind of output lies beside the settings file; BuildHeader expands the graphics
// tokens of a copy, and the default templates are written when a template is missing or the
// user asks for them again.

#include <QString>
#include <QStringList>
#include <optional>
#include <span>

#include "settings/settings.h"
#include "util/error.h"

namespace vt::platform {
class Messenger;
}  // namespace vt::platform

namespace vt::convert {

/// The five kinds of header template: graphics, and the four font data structures.
enum class HeaderKind { Graphics, Raw, Struct, Dmd, Bloc };

/// The template of `kind` beside `settingsFile`: the settings file name with its extension cut
/// and ".txt" (graphics), "_Raw.txt", "_Struct.txt", "_DMD.txt" or "_Bloc.txt" put in.
QString HeaderFileName(const QString& settingsFile, HeaderKind kind);

/// The default template of `kind`, line by line, as the system ships it (without the padding
/// blanks the file gets).
QStringList DefaultHeaderTemplate(HeaderKind kind);

/// The log line written after a default template has been written.
inline const QString kDefaultHeaderLogText =
    QStringLiteral(" Initial configuration parameters restored ");

/// Writes the default template of `kind` to HeaderFileName(settingsFile, kind). An existing
/// file is kept unless `forced` or `replace` is set. Each line is stored with trailing blanks up
/// to the width of the template's longest line (they have no effect: trailing blanks are cut
/// when a header is written), lines ended by CR LF when `crlf`, else LF. After a write the log
/// gets kDefaultHeaderLogText. Returns true when written, false when kept, an Io error when the
/// file could not be written (the old file then stays).
Result<bool> WriteDefaultHeaderFile(const QString& settingsFile, HeaderKind kind, bool forced,
                                    platform::Messenger& messenger, bool replace = false,
                                    bool crlf = true);

/// The template text of `path`, or none when the file does not exist or cannot be read.
std::optional<QString> LoadHeaderTemplate(const QString& path);

/// Which half of the canvas an export takes.
enum class HalfExport { None, Upper, Lower };

/// What BuildHeader needs to know of the export besides the settings.
struct HeaderRequest {
  std::optional<QString> templateText;  ///< the template; none when its file is missing
  QString templateFileName;             ///< named in the warning when the file is missing
  QString arrayName;                    ///< output file name without extension
  HalfExport half = HalfExport::None;
  bool animated = false;
  int frame = 0;  ///< frame number in animation
  bool compression = false;
  long long dataByteCount = 0;  ///< the expected byte count of the export
  /// The exported area: left and top are its first column and row, right and bottom its last
  /// (inclusive); width and height its size in pixels.
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  int width = 0;
  int height = 0;
};

/// The expanded header and what the rest of the export takes from it.
struct HeaderText {
  QString text;        ///< the header, lines separated by "\n"; empty when the file is missing
  QString linePrefix;  ///< text before [&NAME] on its line ("const uint8_t " by default)
  QString arrayName;   ///< the name as it went into the header (half suffix, animation frame)
  QString sizeText;    ///< the size that [&SIZE] takes
  bool hasCompressionToken = false;
  QString compressedHeader;  ///< text cut from [&COMPRESSION] on, its tokens expanded
  /// The line for the second text pane when the template has no [&COMPRESSION] token.
  QString compressionNote;
  QString secondPlaneHeader;  ///< two-page gray: the header of the second plane
  QString xText;              ///< position texts, after the true origin when [&TRUEORG] is set
  QString yText;
  bool trueOrigin = false;  ///< the template holds [&TRUEORG]
  QString rightText;
  QString bottomText;
  /// Non-empty when the template is missing: the text to show with the title "Warning".
  QString warning;
};

/// The size of the array as the header states it (SizeText): the byte count, a quarter with
/// 32-bit output, a half with 16-bit; the 6-bit count in 6-bit mode with 8-bit output; in
/// animation half of width*height with G16, an eighth in monochrome; ST7528:
/// ceiling(GHI/8)*4*GWI; two-page gray without td: a half; plus 2 (both sides below 256) or 4
/// for each of WORIG and WSIZE.
long long HeaderSizeText(const settings::Settings& settings, const HeaderRequest& request);

/// Expands a copy of the template, in this order: lines holding "//**" deleted; LinePrefix
/// taken; [&NAME]; [&SIZE]; [&WIDTH], [&HEIGHT]; [&TRUEORG]; [&XPOS], [&YPOS]; [&FONT INCLUDE]
/// to [&/FONT INCLUDE] deleted; [&COMPRESSION] to the end (or to [&FONT BITMAPS]) cut into
/// compressedHeader with [&CNAME] and &CSIZE expanded; the second-plane header for two-page
/// gray. Tokens are found without regard to case; every occurrence is expanded. A missing
/// template gives an empty header and the warning text. The font tokens are left in place.
HeaderText BuildHeader(const settings::Settings& settings, const HeaderRequest& request);

/// A header line as it is written: with CU8 and output wider than 8 bits, "uint8_t" becomes
/// "uint16_t" or "uint32_t".
QString ApplyWordType(const settings::Settings& settings, const QString& line);

}  // namespace vt::convert
