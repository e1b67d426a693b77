// SPDX-License-Identifier: MIT
#include "convert/constant_format.h"

#include <algorithm>
#include <array>

#include "convert/bits.h"
#include "platform/messenger.h"

namespace vt::convert {
namespace {

constexpr std::array<ConstantFormatInfo, 7> kFormats{{
    {ConstantFormat::X, "X", "0x+data", "Constant format is ox+data", false, false, true},
    {ConstantFormat::H, "H", "data+H", "Constant format is data+h", false, false, true},
    {ConstantFormat::ZeroB, "0B", "0b+data", "Constant format is b+data", true, false, false},
    {ConstantFormat::B, "B", "data+b", "Constant format is data+b", true, false, false},
    {ConstantFormat::PlusBPlus, "+B+", "a+BIN+b", "Constant format is +bin+", true, false, true},
    {ConstantFormat::PlusHPlus, "+H+", "a+HEX+b", "Constant format is +hex+", false, false, true},
    {ConstantFormat::PlusDPlus, "+D+", "a+DEC+b", "Constant format is +dec+", false, true, true},
}};

// At least two upper-case hexadecimal digits.
QString HexDigits(std::int64_t value) {
  QString text = QString::number(value, 16).toUpper();
  if (text.size() < 2) text.prepend(QLatin1Char('0'));
  return text;
}

}  // namespace

std::span<const ConstantFormatInfo> ConstantFormatTable() { return kFormats; }

const ConstantFormatInfo& Info(ConstantFormat format) {
  return kFormats[static_cast<std::size_t>(format)];
}

std::optional<ConstantFormat> ConstantFormatFromKey(const QString& key) {
  const QString upper = key.toUpper();
  for (const ConstantFormatInfo& info : kFormats) {
    if (upper == QLatin1String(info.key)) return info.format;
  }
  return std::nullopt;
}

ConstantFormat CurrentConstantFormat(const settings::DataFormatSettings& format) {
  return ConstantFormatFromKey(format.FXHB).value_or(ConstantFormat::X);
}

void SelectConstantFormat(settings::DataFormatSettings& settings, platform::Messenger& messenger,
                          ConstantFormat format) {
  settings.FXHB = QLatin1String(Info(format).key);
  messenger.StatusBarAndLog(QLatin1String(Info(format).setterLogText));
}

int OutputWordBits(const settings::OutputWidthSettings& width) {
  if (width.D16bc) return 16;
  if (width.D32bc) return 32;
  return 8;
}

QString FormatConstant(const settings::Settings& settings, std::int64_t value) {
  const settings::DataFormatSettings& f = settings.format;
  const ConstantFormat format = CurrentConstantFormat(f);
  const ConstantFormatInfo& info = Info(format);
  if (settings.pixel.Neg) value = 255 - value;

  if (info.binaryFormat) {
    const int digits = OutputWordBits(settings.width);
    QString text = ToBinaryText(value, digits);
    switch (format) {
      case ConstantFormat::PlusBPlus:
        return f.VALpref + text + f.VALSUF;
      case ConstantFormat::ZeroB:
        return QStringLiteral("0b") + text;
      default:  // "B": the b goes at the position of the digits count, after the last digit
        text.insert(std::min<qsizetype>(digits, text.size()), QLatin1Char('b'));
        return text;
    }
  }
  if (info.decimalFormat) return f.VALpref + QString::number(value) + f.VALSUF;

  QString text = HexDigits(value);
  switch (format) {
    case ConstantFormat::H:
      if (value > 159) text.prepend(QLatin1Char('0'));
      text.insert(std::min<qsizetype>(3, text.size()), QLatin1Char('h'));
      return text;
    case ConstantFormat::PlusHPlus:
      if (value > 159) text.prepend(QLatin1Char('0'));
      return f.VALpref + text + f.VALSUF;
    default:  // "X"
      return QStringLiteral("0x") + text;
  }
}

void FormatConstant(const settings::Settings& settings, std::int64_t value, QString& text) {
  text = FormatConstant(settings, value);
}

CommentStyle CommentStyleOf(const settings::CommentSettings& comment) {
  if (comment.CCOM) return {QStringLiteral("/* "), QStringLiteral(" */"), true};
  if (comment.PSCOM) return {QStringLiteral("//"), {}, false};
  if (comment.VBACOM) return {QStringLiteral("'"), {}, false};
  if (comment.BSCOM) return {QStringLiteral("!"), {}, false};
  if (comment.STCOM) return {comment.cstrt, {}, false};
  return {QStringLiteral(";"), {}, false};
}

}  // namespace vt::convert
