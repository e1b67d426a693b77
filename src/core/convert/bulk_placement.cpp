// SPDX-License-Identifier: MIT
#include "convert/bulk_placement.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

namespace vt::convert {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr std::size_t kDigitSlot = 8;  // bytes of a value's digits in a digit table

/// The two hexadecimal digits of each byte value in a slot of 8 (the rest blank), of the value
/// itself or, `negated`, of 255 minus it.
constexpr std::array<char, 256 * kDigitSlot> HexDigitSlots(bool negated) {
  std::array<char, 256 * kDigitSlot> table{};
  for (int value = 0; value < 256; ++value) {
    const int shown = negated ? 255 - value : value;
    char* slot = table.data() + value * kDigitSlot;
    for (std::size_t k = 0; k < kDigitSlot; ++k) slot[k] = ' ';
    slot[0] = kHexDigits[shown >> 4];
    slot[1] = kHexDigits[shown & 15];
  }
  return table;
}
constexpr std::array<char, 256 * kDigitSlot> kHexSlots = HexDigitSlots(false);
constexpr std::array<char, 256 * kDigitSlot> kNegatedHexSlots = HexDigitSlots(true);

/// Blanks at the start and end of a text, the longest run inside, and whether it is all
/// blanks: what a text can add to a run of blanks across its neighbours.
struct BlankRuns {
  std::size_t lead = 0, trail = 0, inner = 0;
  bool allBlank = false;
};

BlankRuns RunsOf(std::string_view text) {
  BlankRuns runs;
  std::size_t run = 0;
  for (const char c : text) {
    run = c == ' ' ? run + 1 : 0;
    runs.inner = std::max(runs.inner, run);
  }
  runs.trail = run;
  while (runs.lead < text.size() && text[runs.lead] == ' ') ++runs.lead;
  runs.allBlank = !text.empty() && runs.lead == text.size();
  return runs;
}

/// Puts the digits of `count` values at `line` + places[k], `Width` bytes each (0: `width`)
/// from slots of 8 in `digits`. A fixed width lets the copies be plain stores.
template <std::size_t Width>
void PutDigits(const std::uint8_t* values, std::size_t count, const std::uint32_t* places,
               const char* digits, std::size_t width, char* line) {
#pragma GCC unroll 4
  for (std::size_t k = 0; k < count; ++k) {
    const char* from = digits + std::size_t(values[k]) * kDigitSlot;
    if constexpr (Width > 0) {
      std::memcpy(line + places[k], from, Width);
    } else {
      std::memcpy(line + places[k], from, width);
    }
  }
}

/// The same for digit places `Stride` characters apart from `first`: the places need not be
/// read, and the stores go to fixed offsets.
template <std::size_t Width, std::size_t Stride>
void PutDigitsEvenly(const std::uint8_t* values, std::size_t count, const char* digits,
                     char* first) {
#pragma GCC unroll 8
  for (std::size_t k = 0; k < count; ++k) {
    std::memcpy(first + k * Stride, digits + std::size_t(values[k]) * kDigitSlot, Width);
  }
}

}  // namespace

BulkPlacement::BulkPlacement(const ConstantSpelling& spelling, bool negate,
                             platform::TextBuffer& text)
    : spelling_(spelling),
      negate_(negate),
      text_(text),
      perLine_(std::size_t(spelling.PerLine())) {}

std::unique_ptr<BulkPlacement> BulkPlacement::Make(const ConstantSpelling& spelling, bool negate,
                                                   platform::TextBuffer& text,
                                                   long long expectedConstants) {
  std::unique_ptr<BulkPlacement> bulk(new BulkPlacement(spelling, negate, text));
  // Runs of blanks a line can hold: inside one text, or across two neighbours. The digits
  // differ from value to value only in their count and the blanks that pad decimals, so the
  // values below show every form a piece takes; hexadecimal and binary digits have one width
  // but where some hexadecimal values take a leading zero.
  std::size_t inner = 0, lead = 0, trail = 0;
  bool chains = false;
  auto account = [&](std::string_view piece) {
    const BlankRuns runs = RunsOf(piece);
    inner = std::max(inner, runs.inner);
    lead = std::max(lead, runs.lead);
    trail = std::max(trail, runs.trail);
    chains = chains || runs.allBlank;
  };
  account(spelling.LinePrefix());
  account(spelling.AfterNumber());
  static constexpr int kForms[] = {0, 9, 10, 99, 100, 159, 160, 255};
  const bool manyForms = spelling.FormatInfo().decimalFormat || spelling.AddsLeadingZeros();
  const std::span<const int> forms =
      manyForms ? std::span<const int>(kForms) : std::span(kForms, 1);
  const std::vector<LinePlace> places =
      spelling.PerLine() == 1
          ? std::vector<LinePlace>{LinePlace::One}
          : std::vector<LinePlace>{LinePlace::First, LinePlace::Middle, LinePlace::Last};
  for (const LinePlace place : places) {
    for (const int value : forms) {
      const std::string piece = spelling.Piece(place, value);
      account(piece);
      if (piece.size() >= PieceTable::kSlot) return nullptr;  // too long for a slot
    }
  }
  bulk->gapFree_ = !chains && std::max(inner, lead + trail) < 4;
  bulk->pieces_.assign(kLinePlaces, PieceTable{});
  // A line: head (with a line number of up to 24 digits), constants, end mark, and the slack
  // of one slot, as a slot is copied whole.
  bulk->lineRoom_ = spelling.LinePrefix().size() + 24 + spelling.AfterNumber().size() +
                    bulk->perLine_ * PieceTable::kSlot + spelling.EndMark().size() +
                    PieceTable::kSlot;
  // Room for the whole array in the text, as far as its size is known.
  if (expectedConstants > 0) {
    const ConstantFormatInfo& info = spelling.FormatInfo();
    const std::size_t values = std::size_t(expectedConstants);
    const std::size_t lines = values / bulk->perLine_ + 1;
    const std::size_t digits = info.binaryFormat ? 8 : info.decimalFormat ? 3 : 2;
    const std::size_t perValue =
        spelling.Before().size() + digits + spelling.After(LinePlace::Middle, true).size();
    const std::size_t perLine = spelling.LinePrefix().size() + spelling.AfterNumber().size() +
                                spelling.EndMark().size() + 8;
    text.Reserve(values * perValue + lines * perLine, lines);
  }
  bulk->MakeLineTemplate(expectedConstants);
  return bulk;
}

void BulkPlacement::MakeLineTemplate(long long expectedConstants) {
  // A line's text is fixed but for the digits when its end mark goes at its end, no line
  // number changes it and every value's digits have one width.
  if (!gapFree_ || spelling_.NumbersLines() || spelling_.AddsLeadingZeros()) return;
  const ConstantFormatInfo& info = spelling_.FormatInfo();
  const bool hex = !info.binaryFormat && !info.decimalFormat;
  // Spelling every value costs more than a small array's lines save.
  if (!hex && expectedConstants < 4096) return;
  std::vector<char> table;
  std::size_t width = 2;
  if (!hex) {
    table.assign(256 * kDigitSlot, ' ');
    for (int value = 0; value < 256; ++value) {
      const std::string digits = spelling_.ByteDigits(negate_ ? 255 - value : value);
      if (value == 0) width = digits.size();
      if (width == 0 || digits.size() != width || width > kDigitSlot) return;
      std::copy(digits.begin(), digits.end(), table.data() + value * kDigitSlot);
    }
  }
  std::string line = spelling_.LinePrefix() + spelling_.AfterNumber();
  for (int k = 0; k < spelling_.PerLine(); ++k) {
    line += spelling_.Before();
    digitPlaces_.push_back(static_cast<std::uint32_t>(line.size()));
    line.append(width, '0');
    line += spelling_.After(spelling_.PlaceOf(k), true);
  }
  line += spelling_.EndMark();
  // The line's final "#" is dropped, as a written line's is.
  if (!line.empty() && line.back() == '#') line.pop_back();
  lineTemplate_ = std::move(line);
  digitWidth_ = width;
  digitStride_ = 0;
  if (digitPlaces_.size() > 1) {
    const std::uint32_t stride = digitPlaces_[1] - digitPlaces_[0];
    bool even = true;
    for (std::size_t k = 1; even && k < digitPlaces_.size(); ++k) {
      even = digitPlaces_[k] - digitPlaces_[k - 1] == stride;
    }
    if (even) digitStride_ = stride;
  }
  digitTable_ = std::move(table);
  digits_ = !hex ? digitTable_.data() : negate_ ? kNegatedHexSlots.data() : kHexSlots.data();
  lineRoom_ = std::max(lineRoom_, lineTemplate_.size() + 8);
}

std::size_t BulkPlacement::PutPiece(LinePlace place, std::uint8_t value, char* out) {
  constexpr std::size_t kSlot = PieceTable::kSlot;
  char* slot = pieces_[std::size_t(place)].slots.data() + std::size_t(value) * kSlot;
  // A slot's last byte holds the length of its piece; 0 while it is not spelled yet.
  if (slot[kSlot - 1] == 0) [[unlikely]] {
    const std::string piece = spelling_.Piece(place, negate_ ? 255 - value : value);
    std::copy(piece.begin(), piece.end(), slot);
    slot[kSlot - 1] = static_cast<char>(piece.size());
  }
  std::memcpy(out, slot, kSlot);
  return static_cast<unsigned char>(slot[kSlot - 1]);
}

void BulkPlacement::Place(const std::uint8_t* values, std::size_t count, ArrayLine& line) {
  // The line is built where it will stand, at the end of the text, with room for what it
  // holds already and a whole line more; it goes back to `line` when the run ends inside it.
  std::size_t length = line.text.size();
  char* at = text_.LineRoom(lineRoom_ + length);
  std::memcpy(at, line.text.data(), length);
  const std::uint8_t* next = values;
  const std::uint8_t* const end = values + count;
  while (next < end) {
    if (line.constants == 0 && length == 0 && !lineTemplate_.empty()) {
      const std::size_t lines = std::size_t(end - next) / perLine_;
      if (lines > 0) {
        next = PlaceWholeLines(next, lines, line);
        at = text_.LineRoom(lineRoom_);
        continue;
      }
    }
    // The values up to the end of this line, or of the run.
    const std::size_t onLine = std::min(std::size_t(end - next), perLine_ - line.constants);
    const std::uint8_t* const lineEnd = next + onLine;
    std::size_t position = std::size_t(line.constants);
    if (position == 0) length += PutHead(line.number, at + length);
    if (perLine_ == 1) {
      length += PutPiece(LinePlace::One, *next++, at + length);
    } else {
      // First, Middle up to the place before the last, then Last.
      if (position == 0) {
        length += PutPiece(LinePlace::First, *next++, at + length);
        ++position;
      }
      for (; next < lineEnd && position < perLine_ - 1; ++position) {
        length += PutPiece(LinePlace::Middle, *next++, at + length);
      }
      if (next < lineEnd) length += PutPiece(LinePlace::Last, *next++, at + length);
    }
    line.arrayBytes += static_cast<long long>(onLine);
    line.constants += static_cast<int>(onLine);
    if (std::size_t(line.constants) >= perLine_) {
      WriteFullLine(at, length, line);
      length = 0;
      at = text_.LineRoom(lineRoom_);
    }
  }
  line.text.assign(at, length);
}

std::size_t BulkPlacement::PutHead(int number, char* out) const {
  const std::string& prefix = spelling_.LinePrefix();
  const std::string& afterNumber = spelling_.AfterNumber();
  std::size_t length = 0;
  std::memcpy(out, prefix.data(), prefix.size());
  length += prefix.size();
  if (spelling_.NumbersLines()) {
    const std::string digits = std::to_string(number);
    std::memcpy(out + length, digits.data(), digits.size());
    length += digits.size();
  }
  std::memcpy(out + length, afterNumber.data(), afterNumber.size());
  return length + afterNumber.size();
}

void BulkPlacement::WriteFullLine(char* text, std::size_t length, ArrayLine& line) {
  if (gapFree_) {
    // The end mark goes at the end; the line stays where it was written.
    std::memcpy(text + length, spelling_.EndMark().data(), spelling_.EndMark().size());
    length += spelling_.EndMark().size();
    if (length > 0 && text[length - 1] == '#') --length;
    line.AddWritten(text_.Count(), 1);
    text_.AddWrittenLine(length);
  } else {
    std::string finished(text, length);
    spelling_.FinishLine(finished);
    line.AddWritten(text_.Count(), 1);
    text_.AddUtf8Line(finished);
  }
  line.Next(spelling_.NumbersLines());
}

bool BulkPlacement::PutEvenHexDigits(const std::uint8_t* values, char* first) const {
  switch (digitStride_) {
    case 4:
      PutDigitsEvenly<2, 4>(values, perLine_, digits_, first);
      return true;
    case 5:
      PutDigitsEvenly<2, 5>(values, perLine_, digits_, first);
      return true;
    case 6:
      PutDigitsEvenly<2, 6>(values, perLine_, digits_, first);
      return true;
    case 7:
      PutDigitsEvenly<2, 7>(values, perLine_, digits_, first);
      return true;
    case 8:
      PutDigitsEvenly<2, 8>(values, perLine_, digits_, first);
      return true;
    default:
      return false;
  }
}

const std::uint8_t* BulkPlacement::PlaceWholeLines(const std::uint8_t* values, std::size_t lines,
                                                   ArrayLine& line) {
  // Each line is written right after the line break of the one before.
  const std::size_t length = lineTemplate_.size();
  const std::size_t step = length + 1;
  char* at = text_.LineRoom(lines * step + lineRoom_);
  const std::uint32_t* places = digitPlaces_.data();
  for (std::size_t l = 0; l < lines; ++l, values += perLine_, at += step) {
    std::memcpy(at, lineTemplate_.data(), length);
    // Two hexadecimal digits at places 4 to 8 characters apart, as in the common formats,
    // go to fixed offsets.
    if (digitWidth_ == 2 && PutEvenHexDigits(values, at + places[0])) continue;
    switch (digitWidth_) {
      case 2:
        PutDigits<2>(values, perLine_, places, digits_, 2, at);
        break;
      case 3:
        PutDigits<3>(values, perLine_, places, digits_, 3, at);
        break;
      case 8:
        PutDigits<8>(values, perLine_, places, digits_, 8, at);
        break;
      default:
        PutDigits<0>(values, perLine_, places, digits_, digitWidth_, at);
        break;
    }
  }
  line.AddWritten(text_.Count(), int(lines));
  text_.AddWrittenLines(lines, length);
  line.arrayBytes += static_cast<long long>(lines * perLine_);
  line.Next(false);  // no line numbers in whole lines
  return values;
}

}  // namespace vt::convert
