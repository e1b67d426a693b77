// SPDX-License-Identifier: MIT
#pragma once

// The spelling of the constants of one data array (the texts around each constant by its place
// on the line, the head of a line, the end mark, the digits of a byte or word), and the line of
// the array being built, which the plain formatter and the bulk placement both work on.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "convert/constant_format.h"
#include "settings/settings.h"

namespace vt::convert {

/// Where a constant stands on its line; One when a line holds one constant.
enum class LinePlace { One, First, Middle, Last };
inline constexpr std::size_t kLinePlaces = 4;

/// The texts of the constants of one run, worked out once from the settings: a constant is the
/// text before its digits (the same in every place), its digits, and the text after them, which
/// depends on its place on the line and on whether a separator follows (the last constant of
/// the data has none). Invariant: the settings it was made from do not change during the run;
/// it keeps no reference to them.
class ConstantSpelling {
 public:
  /// The spelling of `settings` with the end mark `endMark` (UTF-8) chosen by the run.
  ConstantSpelling(const settings::Settings& settings, std::string endMark);

  /// The place of the constant that follows `constantsOnLine` constants on its line.
  LinePlace PlaceOf(int constantsOnLine) const {
    if (perLine_ == 1) return LinePlace::One;
    if (constantsOnLine == 0) return LinePlace::First;
    return constantsOnLine == perLine_ - 1 ? LinePlace::Last : LinePlace::Middle;
  }
  /// The digits of a word of `count` bytes (1, 2 or 4) received in the order of `parts`,
  /// without the text around them, into `out`: by MSBF the first byte is written first. Binary
  /// digits are 8 a byte, decimal ones the number (a 32-bit word padded to 10), hexadecimal ones
  /// two a byte (a 32-bit word padded to 10). Returns the leading zeros added (Addof: a "0"
  /// before a hexadecimal H or +H+ word whose first digit is a letter).
  int SpellWord(const int* parts, int count, std::string& out) const;
  /// The digits of the byte `value` as a constant shows them: decimals padded to 3.
  std::string ByteDigits(int value) const;
  /// The whole text of the byte `value` in `place` with a separator following.
  std::string Piece(LinePlace place, int value) const {
    return before_ + ByteDigits(value) + After(place, true);
  }
  /// Appends what a line starts with: CPRE, the line number `number` with LineN, cpfr.
  void AppendHead(std::string& line, int number) const;
  /// Ends a full line: the end mark goes before the first run of four blanks of a line of one
  /// constant (the gap before its picture), else at the end; then a final "#" is dropped.
  void FinishLine(std::string& line) const;

  /// The text before the digits of every constant.
  const std::string& Before() const { return before_; }
  /// The text after the digits in `place`, with or without the separator.
  const std::string& After(LinePlace place, bool separated) const {
    return after_[static_cast<std::size_t>(place)][separated ? 1 : 0];
  }
  const std::string& LinePrefix() const { return linePrefix_; }    ///< CPRE
  const std::string& AfterNumber() const { return afterNumber_; }  ///< cpfr
  const std::string& EndMark() const { return endMark_; }
  int PerLine() const { return perLine_; }            ///< ORGC, at least 1
  bool NumbersLines() const { return lineNumbers_; }  ///< LineN
  ConstantFormat Format() const { return format_; }
  const ConstantFormatInfo& FormatInfo() const { return Info(format_); }
  /// Whether some hexadecimal bytes take a leading zero (Addof with H or +H+): their digits
  /// are then one wider than the others'.
  bool AddsLeadingZeros() const { return leadingZeros_; }

 private:
  ConstantFormat format_;
  int perLine_;
  bool msbFirst_;
  bool lineNumbers_;
  bool leadingZeros_;
  std::string linePrefix_, afterNumber_, endMark_;
  std::string before_;
  std::array<std::array<std::string, 2>, kLinePlaces> after_;  // by place and separator
};

/// The line of a data array being built and the data lines written so far: what the plain
/// formatter and the bulk placement share. Invariant: `text` holds `constants` constants.
struct ArrayLine {
  std::string text;  ///< as UTF-8
  int constants = 0;
  int number = 0;            ///< the count LineN shows
  int leadingZeros = 0;      ///< zeros Addof put into the line's constants
  long long arrayBytes = 0;  ///< bytes placed into the array so far

  /// A run of consecutive data lines of the text: first index and count.
  struct Run {
    int first;
    int count;
  };
  std::vector<Run> written;  ///< the data lines written, in order

  /// Counts `count` data lines written from index `first` of the text.
  void AddWritten(int first, int count) {
    if (!written.empty() && written.back().first + written.back().count == first) {
      written.back().count += count;
    } else {
      written.push_back({first, count});
    }
  }
  /// The index of the last data line written; -1 when none was.
  int LastWritten() const {
    return written.empty() ? -1 : written.back().first + written.back().count - 1;
  }
  /// Starts a new line after one was written; with LineN (`numbered`) its number rises.
  void Next(bool numbered) {
    text.clear();
    constants = 0;
    leadingZeros = 0;
    if (numbered) ++number;
  }
};

}  // namespace vt::convert
