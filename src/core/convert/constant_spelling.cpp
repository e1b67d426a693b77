// SPDX-License-Identifier: MIT
#include "convert/constant_spelling.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace vt::convert {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

std::string Utf8(const QString& text) { return text.toUtf8().toStdString(); }

/// Pads `text` with blanks on the right to `width` characters (digits and blanks only).
void LeftJustify(std::string& text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
}

}  // namespace

ConstantSpelling::ConstantSpelling(const settings::Settings& settings, std::string endMark)
    : format_(CurrentConstantFormat(settings.format)),
      perLine_(std::max(1, settings.format.ORGC)),
      msbFirst_(settings.scan.MSBF),
      lineNumbers_(settings.format.LineN),
      leadingZeros_(settings.format.Addof &&
                    (format_ == ConstantFormat::H || format_ == ConstantFormat::PlusHPlus)),
      linePrefix_(Utf8(settings.format.CPRE)),
      afterNumber_(Utf8(settings.format.cpfr)),
      endMark_(std::move(endMark)) {
  const settings::DataFormatSettings& f = settings.format;
  const std::string sep = f.COMAv ? std::string(",") : (f.COMAS ? Utf8(f.sepst) : std::string());
  const std::string gap = f.WithSp ? " " : "";
  const std::string suffix = Utf8(f.VALSUF);

  switch (format_) {
    case ConstantFormat::X:
      before_ = " 0x";
      break;
    case ConstantFormat::H:
    case ConstantFormat::B:
      before_ = " ";
      break;
    case ConstantFormat::ZeroB:
      before_ = " 0b";
      break;
    default:
      before_ = Utf8(f.VALpref);
      break;
  }
  for (int separated = 0; separated < 2; ++separated) {
    // One per line: the separator follows when COMAh holds and the data goes on.
    std::string& one = after_[std::size_t(LinePlace::One)][separated];
    switch (format_) {
      case ConstantFormat::X:
        one = separated ? sep : " " + sep;
        break;
      case ConstantFormat::H:
        one = separated ? "h ," : "h ";
        break;
      case ConstantFormat::ZeroB:
        one.clear();
        break;
      case ConstantFormat::B:
        one = "b";
        break;
      default:
        one = suffix;
        break;
    }
    for (const LinePlace place : {LinePlace::First, LinePlace::Middle, LinePlace::Last}) {
      const bool last = place == LinePlace::Last;
      const std::string separator = (!last && separated)
                                        ? (FormatInfo().binaryFormat ? std::string(", ") : sep)
                                        : std::string();
      std::string& after = after_[std::size_t(place)][separated];
      switch (format_) {
        case ConstantFormat::X:
          after = (last ? "" : " ") + separator;
          break;
        case ConstantFormat::H:
          after = (place == LinePlace::First ? "h" : "h ") + separator;
          break;
        case ConstantFormat::ZeroB:
          after = (place == LinePlace::First ? "" : " ") + separator;
          break;
        case ConstantFormat::B:
          after = "b" + separator;
          break;
        default:
          after = suffix + separator + (last ? "" : gap);
          break;
      }
    }
  }
  // The separator form applies only with COMAh.
  if (!f.COMAh) {
    for (auto& forms : after_) forms[1] = forms[0];
  }
}

int ConstantSpelling::SpellWord(const int* parts, int count, std::string& out) const {
  out.clear();
  // The word in the order it is written: by MSBF the first byte first, else the last.
  std::array<int, 4> ordered{};
  for (int i = 0; i < count; ++i) {
    ordered[std::size_t(i)] = (msbFirst_ ? parts[i] : parts[count - 1 - i]) & 0xFF;
  }
  const ConstantFormatInfo& info = FormatInfo();
  if (info.binaryFormat) {
    for (int i = 0; i < count; ++i) {
      for (int bit = 7; bit >= 0; --bit) out.push_back((ordered[i] >> bit) & 1 ? '1' : '0');
    }
    return 0;
  }
  if (info.decimalFormat) {
    std::uint64_t word = 0;
    for (int i = 0; i < count; ++i) word = (word << 8) | static_cast<std::uint64_t>(ordered[i]);
    out = std::to_string(word);
    if (count == 4) LeftJustify(out, 10);
    return 0;
  }
  int zeros = 0;
  if (leadingZeros_ && ordered[0] > 159) {
    out.push_back('0');
    zeros = 1;
  }
  for (int i = 0; i < count; ++i) {
    out.push_back(kHexDigits[ordered[i] >> 4]);
    out.push_back(kHexDigits[ordered[i] & 15]);
  }
  if (count == 4) LeftJustify(out, 10);
  return zeros;
}

std::string ConstantSpelling::ByteDigits(int value) const {
  std::string digits;
  SpellWord(&value, 1, digits);
  if (FormatInfo().decimalFormat) LeftJustify(digits, 3);
  return digits;
}

void ConstantSpelling::AppendHead(std::string& line, int number) const {
  line += linePrefix_;
  if (lineNumbers_) line += std::to_string(number);
  line += afterNumber_;
}

void ConstantSpelling::FinishLine(std::string& line) const {
  // The gap that leads to the picture is the first run of four blanks. Only a line of one
  // constant has that gap: with several, a run of four blanks is the padding of a short
  // decimal word, and a mark there would leave an empty element.
  const std::size_t gapAt = perLine_ == 1 ? line.find("    ") : std::string::npos;
  if (gapAt != std::string::npos) {
    line.insert(gapAt, endMark_);
  } else {
    line += endMark_;
  }
  if (!line.empty() && line.back() == '#') line.pop_back();
}

}  // namespace vt::convert
