// SPDX-License-Identifier: MIT
#pragma once

// The bulk way of placing the bytes of a data array on their lines: from tables of spelled
// pieces and whole-line templates built once a run, written straight into the text.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "convert/constant_spelling.h"
#include "platform/text_buffer.h"

namespace vt::convert {

/// Places runs of finished bytes as the constants of a data array, giving the text the plain
/// formatter gives value by value (DataTextWriter::EmitValue). Each byte value's piece (the
/// constant with the texts around it) is spelled once a place, the first time it is seen, into
/// a slot of a table, and a line is a row of slot copies. Where only the digits change from one
/// line to the next, a whole line is copied from a template and its digits put in.
///
/// Invariants: only one-byte constants of a text target, without picture comments and outside
/// the font generator, are placed this way; no byte it places is the last of the data (whose
/// separators differ: the formatter places that one); the line in progress (ArrayLine) holds no
/// more constants than a line takes.
class BulkPlacement {
 public:
  /// The bulk placement of a run spelled by `spelling` writing into `text`, bytes turned by
  /// `negate` (Neg) as they are spelled. `expectedConstants` is the count of constants the
  /// array is expected to have (0: not known): the text makes room for them, and the digits of
  /// decimal and binary values are tabled only for long arrays. Empty when a piece is too long
  /// for a slot: the bytes then go value by value.
  static std::unique_ptr<BulkPlacement> Make(const ConstantSpelling& spelling, bool negate,
                                             platform::TextBuffer& text,
                                             long long expectedConstants);

  /// Places the `count` bytes of `values` (as the packers deliver them) after the constants of
  /// `line`, writing each line that fills up into the text and counting it in `line`.
  void Place(const std::uint8_t* values, std::size_t count, ArrayLine& line);

 private:
  BulkPlacement(const ConstantSpelling& spelling, bool negate, platform::TextBuffer& text);

  /// The spelled pieces of the 256 byte values in one place of a line, constant and
  /// separators included, each in a slot of its own, spelled when first used.
  struct PieceTable {
    static constexpr std::size_t kSlot =
        16;  ///< bytes of a slot: up to 15 of text, then the length
    std::array<char, 256 * kSlot> slots{};
  };

  /// Sets up the whole-line template when every line's text is fixed but for the digits.
  void MakeLineTemplate(long long expectedConstants);
  /// Copies the piece of `value` in `place` to `out` (a whole slot); its length.
  std::size_t PutPiece(LinePlace place, std::uint8_t value, char* out);
  /// Writes `lines` whole lines from the template, taking perLine values each; the values
  /// after them.
  const std::uint8_t* PlaceWholeLines(const std::uint8_t* values, std::size_t lines,
                                      ArrayLine& line);
  /// Puts what a line starts with (ConstantSpelling::AppendHead) at `out`; its length.
  std::size_t PutHead(int number, char* out) const;
  /// Puts the two-digit values of a whole line at `first` and every digitStride_ characters
  /// after it; false (nothing done) when the stride is not one of 4 to 8.
  bool PutEvenHexDigits(const std::uint8_t* values, char* first) const;
  /// Ends the full line of `length` bytes written at `text`, the end of the text, and adds it.
  void WriteFullLine(char* text, std::size_t length, ArrayLine& line);

  const ConstantSpelling& spelling_;
  const bool negate_;
  platform::TextBuffer& text_;
  const std::size_t perLine_;
  /// No line can hold a run of four blanks, so the end mark always goes at the end of the line
  /// and a full line can be written where it was built.
  bool gapFree_ = false;
  std::vector<PieceTable> pieces_;  // by place
  std::size_t lineRoom_ = 0;        // the most a line can take, with the slack of one slot

  // Whole lines: the line with its digits left out, where each constant's digits go, and the
  // digits of each value in a slot of 8 (built-in for hexadecimal digits, else spelled).
  std::string lineTemplate_;
  std::vector<std::uint32_t> digitPlaces_;
  std::vector<char> digitTable_;
  const char* digits_ = nullptr;
  std::size_t digitWidth_ = 0;
  std::size_t digitStride_ = 0;  // characters between digit places when evenly spaced, else 0
};

}  // namespace vt::convert
