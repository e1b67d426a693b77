// SPDX-License-Identifier: MIT
#pragma once

// How one constant of the data is spelled: the seven constant formats of the FXHB key, the flags
// derived from them, and the comment styles the generated text uses.

#include <QString>
#include <cstdint>
#include <optional>
#include <span>

#include "settings/settings.h"

namespace vt::platform {
class Messenger;
}  // namespace vt::platform

namespace vt::convert {

/// The seven values of the FXHB key.
enum class ConstantFormat {
  X,          ///< "X": 0x+data
  H,          ///< "H": data+H
  ZeroB,      ///< "0B": 0b+data
  B,          ///< "B": data+b
  PlusBPlus,  ///< "+B+": VALpref + binary + VALSUF
  PlusHPlus,  ///< "+H+": VALpref + hexadecimal + VALSUF
  PlusDPlus,  ///< "+D+": VALpref + decimal + VALSUF
};

/// One row of the constant format table.
struct ConstantFormatInfo {
  ConstantFormat format;
  const char* key;            ///< the FXHB value
  const char* label;          ///< text of the format choice
  const char* setterLogText;  ///< log line written when the format is chosen
  bool binaryFormat;          ///< digits are "0" and "1"
  bool decimalFormat;         ///< digits are decimal
  bool prefixSuffixFormat;    ///< the constant is built with VALpref and VALSUF (or 0x, h)
};

/// The table, in the order of the ConstantFormat enum.
std::span<const ConstantFormatInfo> ConstantFormatTable();
const ConstantFormatInfo& Info(ConstantFormat format);

/// The format named by an FXHB text, compared without regard to case; empty for an unknown text.
std::optional<ConstantFormat> ConstantFormatFromKey(const QString& key);
/// The format of the settings; an unknown FXHB text counts as "X", the default.
ConstantFormat CurrentConstantFormat(const settings::DataFormatSettings& format);

/// Sets FXHB to `format` and logs its setter text ("Constant format is ox+data" ...).
void SelectConstantFormat(settings::DataFormatSettings& settings, platform::Messenger& messenger,
                          ConstantFormat format);

/// Bits of one output word: 16 with D16bc, 32 with D32bc, else 8 (also for the binary and
/// Intel Hex targets, which take bytes).
int OutputWordBits(const settings::OutputWidthSettings& width);

/// The spelled form of `value` alone, as tables outside the data array need it (the font
/// generator's descriptors): Neg applied as 255 - value; binary formats with 8, 16 or 32 digits by
/// the output width ("0B" puts "0b" in front, "B" puts "b" after the digits, "+B+" wraps them in
/// VALpref and VALSUF); "+D+" is VALpref + decimal + VALSUF; the hexadecimal formats have at least
/// two upper-case digits, "X" puts "0x" in front, "H" puts a "0" in front of a value above 159 and
/// "h" after the third character (after the digits, for a byte), "+H+" puts a "0" in front of a
/// value above 159 and wraps in VALpref and VALSUF. The hexadecimal forms are meant for bytes.
QString FormatConstant(const settings::Settings& settings, std::int64_t value);
/// The same, in the form of the routine the font generator calls: the text goes to `text`.
void FormatConstant(const settings::Settings& settings, std::int64_t value, QString& text);

/// The comment style of the generated text: its opener (CommentText) and what closes a comment
/// on the same line.
struct CommentStyle {
  QString opener;  ///< "/* ", "//", "'", "!", cstrt, or ";"
  QString closer;  ///< " */" for C comments, else empty
  bool c = false;  ///< C comments (CCOM)
};
/// The style of the settings, tested in the order CCOM, PSCOM, VBACOM, BSCOM, STCOM; none of
/// them gives ";".
CommentStyle CommentStyleOf(const settings::CommentSettings& comment);

}  // namespace vt::convert
