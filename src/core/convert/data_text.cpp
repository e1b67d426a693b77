// SPDX-License-Identifier: MIT
#include "convert/data_text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "convert/bits.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

/// The two hexadecimal digits of each byte value in a slot of 8 (the rest blank), of the value
/// itself or, `negated`, of 255 minus it: the whole-line writer copies a slot a value.
constexpr std::array<char, 256 * 8> HexSlots(bool negated) {
  std::array<char, 256 * 8> table{};
  for (int v = 0; v < 256; ++v) {
    const int part = negated ? 255 - v : v;
    for (int k = 0; k < 8; ++k) table[std::size_t(v * 8 + k)] = ' ';
    table[std::size_t(v * 8)] = kHexDigits[part >> 4];
    table[std::size_t(v * 8 + 1)] = kHexDigits[part & 15];
  }
  return table;
}
constexpr std::array<char, 256 * 8> kHexSlots = HexSlots(false);
constexpr std::array<char, 256 * 8> kNegatedHexSlots = HexSlots(true);

/// Calls `f` with the digit stride as template argument when it is one of 4 to 8, else 0.
template <typename F>
void WithStride(int stride, F& f) {
  [&]<int... S>(std::integer_sequence<int, S...>) {
    const bool fixed = ((stride == S + 4 && (f.template operator()<S + 4>(), true)) || ...);
    if (!fixed) f.template operator()<0>();
  }
  (std::make_integer_sequence<int, 5>{});
}

#if defined(__SSE2__)
/// The hexadecimal digit pairs (upper case) of 16 bytes, turned by `flip` (0 or 0xFF): values
/// 0 to 7 in `first`, 8 to 15 in `second`, each pair (high digit first) one 16-bit lane.
struct HexPairs {
  __m128i first, second;
};
[[gnu::always_inline]] inline HexPairs HexDigitPairs16(const std::uint8_t* values, __m128i flip) {
  const __m128i v = _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(values)), flip);
  const __m128i nibble = _mm_set1_epi8(0x0F);
  const __m128i nine = _mm_set1_epi8(9);
  const __m128i zero = _mm_set1_epi8('0');
  const __m128i letters = _mm_set1_epi8('A' - '0' - 10);
  auto ascii = [&](__m128i n) {
    return _mm_add_epi8(_mm_add_epi8(n, zero), _mm_and_si128(_mm_cmpgt_epi8(n, nine), letters));
  };
  const __m128i high = ascii(_mm_and_si128(_mm_srli_epi16(v, 4), nibble));
  const __m128i low = ascii(_mm_and_si128(v, nibble));
  return {_mm_unpacklo_epi8(high, low), _mm_unpackhi_epi8(high, low)};
}

/// Puts the digit pairs of 16 bytes at places `Stride` characters apart from `at`: each pair
/// is taken from its lane and stored at a fixed offset.
template <int Stride, int... K>
[[gnu::always_inline]] inline void StoreHexPairs(const HexPairs& pairs, char* at,
                                                 std::integer_sequence<int, K...>) {
  auto store = [](char* to, int two) {
    const std::uint16_t bytes = static_cast<std::uint16_t>(two);
    std::memcpy(to, &bytes, 2);
  };
  (store(at + K * Stride, _mm_extract_epi16(pairs.first, K)), ...);
  (store(at + (K + 8) * Stride, _mm_extract_epi16(pairs.second, K)), ...);
}
template <int Stride>
[[gnu::always_inline]] inline void PutHexDigits16Evenly(const std::uint8_t* values, __m128i flip,
                                                        char* at) {
  StoreHexPairs<Stride>(HexDigitPairs16(values, flip), at, std::make_integer_sequence<int, 8>{});
}

/// Puts the digit pairs of 16 bytes at `line` + places[k], two characters a store.
[[gnu::always_inline]] inline void PutHexDigits16(const std::uint8_t* values, __m128i flip,
                                                  const std::uint32_t* places, char* line) {
  const auto [first, second] = HexDigitPairs16(values, flip);
  // Four values a 64-bit word.
  const std::uint64_t words[4] = {
      std::uint64_t(_mm_cvtsi128_si64(first)),
      std::uint64_t(_mm_cvtsi128_si64(_mm_unpackhi_epi64(first, first))),
      std::uint64_t(_mm_cvtsi128_si64(second)),
      std::uint64_t(_mm_cvtsi128_si64(_mm_unpackhi_epi64(second, second)))};
#pragma GCC unroll 16
  for (int k = 0; k < 16; ++k) {
    const std::uint16_t two = static_cast<std::uint16_t>(words[k / 4] >> (16 * (k % 4)));
    std::memcpy(line + places[k], &two, 2);
  }
}
#endif

QString TwoHexDigits(int value) {
  const char digits[2] = {kHexDigits[(value >> 4) & 15], kHexDigits[value & 15]};
  return QString::fromLatin1(digits, 2);
}

bool MonochromeOrUnset(const settings::Settings& settings) {
  const auto mode = settings::CurrentPixelMode(settings);
  return !mode || settings::IsMonochromeMode(*mode);
}

QString TrimTrailingBlanks(QString line) {
  qsizetype end = line.size();
  while (end > 0 && (line[end - 1] == QLatin1Char(' ') || line[end - 1] == QLatin1Char('\t'))) {
    --end;
  }
  line.truncate(end);
  return line;
}

std::string Utf8(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Pads `text` with blanks on the right to `width` characters (digits and blanks only).
void LeftJustify(std::string& text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
}

/// The byte where the last `units` UTF-16 code units before `at` begin in UTF-8 `text`.
std::size_t BackByUnits(const std::string& text, std::size_t at, int units) {
  while (units > 0 && at > 0) {
    std::size_t start = at - 1;
    while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
    units -= (static_cast<unsigned char>(text[start]) >= 0xF0) ? 2 : 1;
    at = start;
  }
  return at;
}

/// Blanks at the start and end of a text, the longest run inside, and whether it is all
/// blanks: what a text can add to a run of blanks across its neighbours.
struct BlankRuns {
  std::size_t lead = 0, trail = 0, inner = 0;
  bool allBlank = false;
};

BlankRuns RunsOf(std::string_view text) {
  BlankRuns r;
  std::size_t run = 0;
  for (char c : text) {
    run = c == ' ' ? run + 1 : 0;
    r.inner = std::max(r.inner, run);
  }
  r.trail = run;
  while (r.lead < text.size() && text[r.lead] == ' ') ++r.lead;
  r.allBlank = !text.empty() && r.lead == text.size();
  return r;
}

}  // namespace

DataTarget DataTargetOf(const settings::OutputWidthSettings& width) {
  if (width.DHec) return DataTarget::Binary;
  if (width.DIHec) return DataTarget::IntelHex;
  return DataTarget::Text;
}

EndOfLineFlags EndOfLineFlagsOf(const settings::DataFormatSettings& format) {
  return {format.Eolcom, format.EolSem, format.EolStr, format.Eoln, format.eolst};
}

DataTextWriter::DataTextWriter(const settings::Settings& settings, platform::TextBuffer& text,
                               DataTextOptions options, platform::TextBuffer* secondPlane)
    : settings_(settings),
      text_(text),
      options_(std::move(options)),
      style_(CommentStyleOf(settings.comment)),
      format_(CurrentConstantFormat(settings.format)),
      target_(DataTargetOf(settings.width)),
      wordBytes_(OutputWordBits(settings.width) / 8),
      perLine_(std::max(1, settings.format.ORGC)),
      pictureEnabled_(MonochromeOrUnset(settings) && perLine_ == 1 && !settings.comment.Nodcom),
      dealPlanes_(settings.pixel.G42) {
  // A dealing writer places one constant a pair, and only a pair that ends at the count is the
  // last: an odd count never ends a pair.
  const long long count = options_.dataByteCount;
  lastConstant_ = !dealPlanes_ ? count : (count > 0 && count % 2 == 0 ? count / 2 : 0);
  if (dealPlanes_) BuildDealing();
  if (dealPlanes_ && secondPlane) {
    secondPlane_.reset(new DataTextWriter(SecondPlaneTag{}, settings, *secondPlane, options_));
  }
  BuildSpelling();
  picture_ = pictureTemplate_;
}

DataTextWriter::DataTextWriter(SecondPlaneTag, const settings::Settings& settings,
                               platform::TextBuffer& text, DataTextOptions options)
    : DataTextWriter(settings, text, std::move(options), nullptr) {
  dealPlanes_ = false;
}

DataTextWriter::~DataTextWriter() = default;

void DataTextWriter::BuildSpelling() {
  const settings::DataFormatSettings& f = settings_.format;
  const ConstantFormatInfo& info = Info(format_);
  cpre_ = Utf8(f.CPRE);
  cpfr_ = Utf8(f.cpfr);
  endMark_ = Utf8(EndMark());
  pictureTemplate_ = PictureTemplate();
  pictureAscii_ = std::all_of(pictureTemplate_.begin(), pictureTemplate_.end(),
                              [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  const std::string sep = f.COMAv ? std::string(",") : (f.COMAS ? Utf8(f.sepst) : std::string());
  const std::string gap = f.WithSp ? " " : "";
  const std::string suffix = Utf8(f.VALSUF);

  // Every form is the digits with a text before (the same in every place) and a text after,
  // which depends on the place on the line and on whether a separator follows.
  switch (format_) {
    case ConstantFormat::X:
      pre_ = " 0x";
      break;
    case ConstantFormat::H:
    case ConstantFormat::B:
      pre_ = " ";
      break;
    case ConstantFormat::ZeroB:
      pre_ = " 0b";
      break;
    default:
      pre_ = Utf8(f.VALpref);
      break;
  }
  for (int separated = 0; separated < 2; ++separated) {
    // One per line: the separator follows when COMAh holds and the data goes on.
    std::string& one = post_[One][separated];
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
    for (Place place : {First, Middle, Last}) {
      const std::string separator = (place != Last && separated)
                                        ? (info.binaryFormat ? std::string(", ") : sep)
                                        : std::string();
      std::string& post = post_[place][separated];
      switch (format_) {
        case ConstantFormat::X:
          post = (place == Last ? "" : " ") + separator;
          break;
        case ConstantFormat::H:
          post = (place == First ? "h" : "h ") + separator;
          break;
        case ConstantFormat::ZeroB:
          post = (place == First ? "" : " ") + separator;
          break;
        case ConstantFormat::B:
          post = "b" + separator;
          break;
        default:
          post = suffix + separator + (place == Last ? "" : gap);
          break;
      }
    }
  }
  // The separator form applies only with COMAh.
  if (!f.COMAh) {
    for (auto& forms : post_) forms[1] = forms[0];
  }
  pictureAfter_ = perLine_ == 1 && format_ != ConstantFormat::ZeroB && format_ != ConstantFormat::B;

  // The bulk path: bytes in text, no picture.
  if (target_ != DataTarget::Text || wordBytes_ != 1 || pictureEnabled_ || options_.fontMode) {
    return;
  }
  const std::vector<Place> places =
      perLine_ == 1 ? std::vector<Place>{One} : std::vector<Place>{First, Middle, Last};
  // Runs of blanks a line can hold: inside one text, or across two neighbours. The digits
  // differ from value to value only in their count and the blanks that pad decimals, so the
  // values below show every form a piece takes.
  std::size_t inner = 0, lead = 0, trail = 0;
  bool chains = false;
  auto account = [&](std::string_view text) {
    const BlankRuns r = RunsOf(text);
    inner = std::max(inner, r.inner);
    lead = std::max(lead, r.lead);
    trail = std::max(trail, r.trail);
    chains = chains || r.allBlank;
  };
  account(cpre_);
  account(cpfr_);
  // Hexadecimal and binary digits have one width, but where a leading zero comes before
  // some hexadecimal values: one value shows their every form.
  static constexpr int kForms[] = {0, 9, 10, 99, 100, 159, 160, 255};
  const bool leadingZero =
      f.Addof && (format_ == ConstantFormat::H || format_ == ConstantFormat::PlusHPlus);
  const std::span<const int> forms =
      info.decimalFormat || leadingZero ? std::span<const int>(kForms) : std::span(kForms, 1);
  for (Place place : places) {
    for (int value : forms) {
      const std::string piece = Piece(place, value);
      account(piece);
      if (piece.size() >= PieceTable::kSlot) return;  // too long for a slot: value by value
    }
  }
  gapFree_ = !chains && std::max(inner, lead + trail) < 4;
  pieces_.assign(kPlaces, PieceTable{});
  // A line of the bulk path: head, constants, end mark, and the slack of one slot.
  lineRoom_ = (cpre_.size() + 24 + cpfr_.size() + std::size_t(perLine_) * PieceTable::kSlot +
               endMark_.size() + PieceTable::kSlot);
  // Room for the whole array in the text, as far as its size is known.
  if (lastConstant_ > 0) {
    const std::size_t values = std::size_t(lastConstant_);
    const std::size_t lines = values / std::size_t(perLine_) + 1;
    const std::size_t perValue = pre_.size() +
                                 (info.binaryFormat    ? 8
                                  : info.decimalFormat ? 3
                                                       : 2) +
                                 post_[Middle][1].size();
    text_.Reserve(values * perValue + lines * (cpre_.size() + cpfr_.size() + endMark_.size() + 8),
                  lines);
  }
  BuildLineTemplate();
}

void DataTextWriter::BuildLineTemplate() {
  if (!gapFree_ || settings_.format.LineN) return;
  const ConstantFormatInfo& info = Info(format_);
  // A leading zero added to some hexadecimal values changes their width.
  if (settings_.format.Addof &&
      (format_ == ConstantFormat::H || format_ == ConstantFormat::PlusHPlus)) {
    return;
  }
  const bool hex = !info.binaryFormat && !info.decimalFormat;
  // Spelling all values costs more than a small array's lines save.
  if (!hex && lastConstant_ < 4096) return;
  // Each value's digits in a slot of 8, so that a slot is copied whole. Hexadecimal digits
  // are two a value; the others are spelled, and must all come out as wide.
  // Hexadecimal digits come from the built-in slots.
  std::vector<char> table;
  std::size_t width = 2;
  if (!hex) {
    table.assign(256 * 8, ' ');
    for (int v = 0; v < 256; ++v) {
      const int part = settings_.pixel.Neg ? 255 - v : v;
      const int zeros = leadingZeros_;
      std::string digits;
      SpellWord(&part, 1, digits);
      leadingZeros_ = zeros;
      if (info.decimalFormat) LeftJustify(digits, 3);
      if (v == 0) width = digits.size();
      if (width == 0 || digits.size() != width || width > 8) return;
      std::copy(digits.begin(), digits.end(), table.data() + v * 8);
    }
  }
  std::string line = cpre_ + cpfr_;
  for (int k = 0; k < perLine_; ++k) {
    const Place place = PlaceOf(k);
    line += pre_;
    digitPlaces_.push_back(static_cast<std::uint32_t>(line.size()));
    line.append(width, '0');
    line += post_[place][1];
  }
  line += endMark_;
  // The line's final "#" is dropped, as a written line's is.
  if (!line.empty() && line.back() == '#') line.pop_back();
  lineTemplate_ = std::move(line);
  digitWidth_ = width;
  hexDigits_ = hex;
  digitTable_ = std::move(table);
  // Hexadecimal digits at places evenly spaced, 4 to 8 characters apart, go out with fixed
  // offsets.
  hexStride_ = 0;
  if (hex && digitPlaces_.size() >= 16) {
    const std::uint32_t stride = digitPlaces_[1] - digitPlaces_[0];
    bool even = stride >= 4 && stride <= 8;
    for (std::size_t k = 1; even && k < digitPlaces_.size(); ++k) {
      even = digitPlaces_[k] - digitPlaces_[k - 1] == stride;
    }
    if (even) hexStride_ = int(stride);
  }
  digits_ = !hex                  ? digitTable_.data()
            : settings_.pixel.Neg ? kNegatedHexSlots.data()
                                  : kHexSlots.data();
  lineRoom_ = std::max(lineRoom_, lineTemplate_.size() + 8);
}

std::string DataTextWriter::Piece(Place place, int value) {
  const int part = value;
  const int zeros = leadingZeros_;
  std::string digits;
  SpellWord(&part, 1, digits);
  leadingZeros_ = zeros;
  if (Info(format_).decimalFormat) LeftJustify(digits, 3);
  return pre_ + digits + post_[place][1];
}

void DataTextWriter::FillSlot(Place place, int value, char* slot) {
  const std::string piece = Piece(place, settings_.pixel.Neg ? 255 - value : value);
  std::copy(piece.begin(), piece.end(), slot);
  slot[PieceTable::kSlot - 1] = static_cast<char>(piece.size());
}

std::string DataTextWriter::PictureTemplate() const {
  if (!pictureEnabled_) return {};
  const std::string ruler(static_cast<std::size_t>(wordBytes_ * 8), '_');
  if (style_.c) return "     /*  " + ruler + "  */";
  const std::string gap = settings_.comment.PSCOM ? "      " : "       ";
  return Utf8(style_.opener) + gap + ruler + "    ";
}

void DataTextWriter::StartComment() {
  if (partCount_ == 0 && pictureEnabled_) picture_ = pictureTemplate_;
}

void DataTextWriter::MarkBit(int bit) {
  if (picture_.empty() || bit < 0 || bit > 7) return;
  // The drawing starts at position 10 of the picture text (index 9) in every comment style,
  // most significant bit leftmost. The bytes of a word are drawn in the order the word is
  // written: by MSBF the first byte leftmost, else the last.
  const int byteColumn = settings_.scan.MSBF ? partCount_ : wordBytes_ - 1 - partCount_;
  const std::size_t at = static_cast<std::size_t>(9 + byteColumn * 8 + (7 - bit));
  if (pictureAscii_) {
    if (at < picture_.size()) picture_[at] = '#';
    return;
  }
  // An opener of other characters: positions count characters, not bytes.
  QString picture = FromUtf8(picture_);
  if (at < static_cast<std::size_t>(picture.size())) picture[qsizetype(at)] = QLatin1Char('#');
  picture_ = Utf8(picture);
}

void DataTextWriter::EmitValue(int value, bool endOfPixel) {
  Q_UNUSED(endOfPixel);
  ++valueCount_;
  const bool last =
      lastMarked_ || (options_.dataByteCount > 0 && valueCount_ == options_.dataByteCount);
  lastMarked_ = false;
  if (target_ != DataTarget::Text) {
    // Binary and Intel Hex targets take the bytes as they are (no Neg): the byte target
    // builds the file.
    if (hexTarget_) hexTarget_->AppendHexByte(TwoHexDigits(value));
    return;
  }
  const int byte = settings_.pixel.Neg ? 255 - value : value;

  if (dealPlanes_) {
    if (!pairPending_) {
      pairFirst_ = byte;
      pairPending_ = true;
      return;
    }
    pairPending_ = false;
    const int dealt = dealFirst_[pairFirst_ & 0xFF] | dealSecond_[byte & 0xFF];
    const int a = dealt & 0xFF;
    const int b = dealt >> 8;
    if (secondPlane_) secondPlane_->PutConstant(&b, 1, last);
    PutConstant(&a, 1, last);
    return;
  }

  parts_[partCount_++] = byte;
  if (partCount_ < wordBytes_) return;  // a word is pending
  const int count = partCount_;
  partCount_ = 0;
  PutConstant(parts_.data(), count, last);
}

void DataTextWriter::BuildDealing() {
  // The pair is one 16-bit number, first value high; its odd bits make the byte of the main
  // array (low byte of a table entry), its even bits the byte of the second plane (high byte).
  // Bit 2k+1 or 2k of the pair goes to bit k of its byte by MSBF, else to bit 7-k.
  for (int value = 0; value < 256; ++value) {
    for (int half = 0; half < 2; ++half) {
      int dealt = 0;
      for (int bit = 0; bit < 8; ++bit) {
        if (!TestBit(value, bit)) continue;
        const int pairBit = bit + (half == 0 ? 8 : 0);
        const int k = pairBit / 2;
        const int target = settings_.scan.MSBF ? k : 7 - k;
        dealt |= 1 << (target + (pairBit % 2 == 1 ? 0 : 8));
      }
      (half == 0 ? dealFirst_ : dealSecond_)[std::size_t(value)] = std::uint16_t(dealt);
    }
  }
}

void DataTextWriter::EmitValues(const std::uint8_t* values, std::size_t count) {
  // Both planes are spelled alike, so the second has its tables when this one has.
  if (pieces_.empty() || (dealPlanes_ && lastMarked_)) {
    for (std::size_t i = 0; i < count; ++i) {
      StartComment();
      EmitValue(values[i], true);
    }
    return;
  }
  if (!dealPlanes_) {
    PlaceBytes(values, count);
    valueCount_ += static_cast<long long>(count);
    return;
  }
  // Two-page gray: whole pairs are dealt a block at a time and each plane places its bytes.
  // Neg turns every bit of a pair, so it turns both dealt bytes: the planes apply it as they
  // spell, as for the pair's own values.
  std::size_t i = 0;
  if (pairPending_ && i < count) EmitValue(values[i++], true);
  std::array<std::uint8_t, 512> main;
  std::array<std::uint8_t, 512> second;
  while (count - i >= 2) {
    const std::size_t pairs = std::min((count - i) / 2, main.size());
    const std::uint8_t* v = values + i;
    for (std::size_t k = 0; k < pairs; ++k) {
      const unsigned dealt = dealFirst_[v[2 * k]] | dealSecond_[v[2 * k + 1]];
      main[k] = static_cast<std::uint8_t>(dealt);
      second[k] = static_cast<std::uint8_t>(dealt >> 8);
    }
    if (secondPlane_) secondPlane_->PlaceBytes(second.data(), pairs);
    PlaceBytes(main.data(), pairs);
    valueCount_ += static_cast<long long>(2 * pairs);
    i += 2 * pairs;
  }
  if (i < count) EmitValue(values[i], true);
}

void DataTextWriter::PlaceBytes(const std::uint8_t* values, std::size_t count) {
  // arrayBytes_ counts the constants placed so far; lastConstant_ is the count at the last.
  const long long lastCount = lastConstant_;
  constexpr int kSlot = PieceTable::kSlot;
  // The slot of a byte in a place, from tables held here: writing the line cannot move them.
  char* const tables[kPlaces] = {pieces_[One].slots.data(), pieces_[First].slots.data(),
                                 pieces_[Middle].slots.data(), pieces_[Last].slots.data()};
  auto put = [&](Place place, std::uint8_t value, char* out) {
    char* slot = tables[place] + value * kSlot;
    if (slot[kSlot - 1] == 0) [[unlikely]]
      FillSlot(place, value, slot);
    std::memcpy(out, slot, kSlot);
    return static_cast<unsigned char>(slot[kSlot - 1]);
  };
  // The line is built where it will stand, at the end of the text, and goes back to line_
  // when the run ends inside it.
  // Room for what the line holds already and a whole line more.
  std::size_t length = line_.size();
  char* line = text_.LineRoom(lineRoom_ + length);
  std::memcpy(line, line_.data(), length);
  std::size_t i = 0;
  while (i < count) {
    // The last value of the data takes the general way: its separators differ.
    if (lastMarked_ || (lastCount > 0 && arrayBytes_ + 1 == lastCount)) {
      line_.assign(line, length);
      lastMarked_ = false;
      const int value = values[i++];
      const int byte = settings_.pixel.Neg ? 255 - value : value;
      PutConstant(&byte, 1, true);
      length = line_.size();
      line = text_.LineRoom(lineRoom_ + length);
      std::memcpy(line, line_.data(), length);
      continue;
    }
    // Whole lines from the template while no value of the line is the data's last.
    if (constantsOnLine_ == 0 && length == 0 && !lastMarked_ && !lineTemplate_.empty()) {
      const std::size_t perLine = std::size_t(perLine_);
      const std::size_t templateSize = lineTemplate_.size();
      const std::uint32_t* places = digitPlaces_.data();
      const char* table = digits_;
      // The lines of the run that end before the data's last value.
      std::size_t lines = (count - i) / perLine;
      if (lastCount > 0 && arrayBytes_ < lastCount) {
        lines = std::min(lines, std::size_t(lastCount - 1 - arrayBytes_) / perLine);
      }
      if (lines > 0) {
        // Room for them all: each is written right after the line break of the one before.
        const std::size_t step = templateSize + 1;
        line = text_.LineRoom(lines * step + lineRoom_);
        const std::uint8_t* v = values + i;
        // Stride: the characters between neighbouring digit places when they are evenly
        // spaced and the digits hexadecimal (0: any places, each read from its table).
#if defined(__SSE2__)
        const __m128i flip = _mm_set1_epi8(settings_.pixel.Neg ? char(0xFF) : char(0));
#endif
        auto writeLines = [&]<int Stride>() {
          for (std::size_t l = 0; l < lines; ++l, v += perLine, line += step) {
            std::memcpy(line, lineTemplate_.data(), templateSize);
            if (digitWidth_ == 2) {
              std::size_t k = 0;
#if defined(__SSE2__)
              if (hexDigits_) {
                for (; k + 16 <= perLine; k += 16) {
                  if constexpr (Stride > 0) {
                    PutHexDigits16Evenly<Stride>(v + k, flip, line + places[k]);
                  } else {
                    PutHexDigits16(v + k, flip, places + k, line);
                  }
                }
              }
#endif
              for (; k < perLine; ++k) {
                std::memcpy(line + places[k], table + std::size_t(v[k]) * 8, 2);
              }
            } else {
              for (std::size_t k = 0; k < perLine; ++k) {
                std::memcpy(line + places[k], table + std::size_t(v[k]) * 8, digitWidth_);
              }
            }
          }
        };
        WithStride(hexStride_, writeLines);
        AddDataLines(text_.Count(), int(lines));
        text_.AddWrittenLines(lines, templateSize);
        i += lines * perLine;
        arrayBytes_ += static_cast<long long>(lines * perLine);
        line = text_.LineRoom(lineRoom_);
        EndLine();
        continue;
      }
    }
    // The values up to the end of this line, or of the data, or of the run.
    std::size_t n = std::min<std::size_t>(count - i, std::size_t(perLine_ - constantsOnLine_));
    if (lastCount > 0 && arrayBytes_ < lastCount) {
      n = std::min<std::size_t>(n, std::size_t(lastCount - 1 - arrayBytes_));
    }
    const std::uint8_t* v = values + i;
    const std::uint8_t* const end = v + n;
    int place = constantsOnLine_;
    if (place == 0) {
      if (!cpre_.empty()) std::memcpy(line + length, cpre_.data(), cpre_.size());
      length += cpre_.size();
      if (settings_.format.LineN) {
        const std::string number = std::to_string(lineNumber_);
        std::memcpy(line + length, number.data(), number.size());
        length += number.size();
      }
      if (!cpfr_.empty()) std::memcpy(line + length, cpfr_.data(), cpfr_.size());
      length += cpfr_.size();
      if (perLine_ > 1) {
        length += put(First, *v++, line + length);
        ++place;
      }
    }
    if (perLine_ == 1) {
      if (v < end) length += put(One, *v++, line + length);
    } else {
      // Middle places up to the one before the last of the line.
      const std::uint8_t* const middleEnd = std::min(end, v + std::max(0, perLine_ - 1 - place));
      for (; v < middleEnd; ++v) length += put(Middle, *v, line + length);
      if (v < end) length += put(Last, *v++, line + length);
    }
    i += n;
    arrayBytes_ += static_cast<long long>(n);
    constantsOnLine_ += static_cast<int>(n);
    if (constantsOnLine_ >= perLine_) {
      if (gapFree_) {
        std::memcpy(line + length, endMark_.data(), endMark_.size());
        length += endMark_.size();
        if (length > 0 && line[length - 1] == '#') --length;
        // The line stands where it was written.
        AddDataLines(text_.Count(), 1);
        text_.AddWrittenLine(length);
      } else {
        line_.assign(line, length);
        FinishLine(line_);
        WriteLine(line_);
      }
      line_.clear();
      EndLine();
      length = 0;
      line = text_.LineRoom(lineRoom_);
    }
  }
  line_.assign(line, length);
}

DataTextWriter::Place DataTextWriter::PlaceOf(int constantsOnLine) const {
  if (perLine_ == 1) return One;
  if (constantsOnLine == 0) return First;
  return constantsOnLine == perLine_ - 1 ? Last : Middle;
}

void DataTextWriter::SpellWord(const int* parts, int count, std::string& out) {
  out.clear();
  // The word in the order it is written: by MSBF the first byte first, else the last.
  std::array<int, 4> ordered{};
  for (int i = 0; i < count; ++i) {
    ordered[i] = (settings_.scan.MSBF ? parts[i] : parts[count - 1 - i]) & 0xFF;
  }
  const ConstantFormatInfo& info = Info(format_);
  if (info.binaryFormat) {
    for (int i = 0; i < count; ++i) {
      for (int bit = 7; bit >= 0; --bit) out.push_back((ordered[i] >> bit) & 1 ? '1' : '0');
    }
    return;
  }
  if (info.decimalFormat) {
    std::uint64_t word = 0;
    for (int i = 0; i < count; ++i) word = (word << 8) | static_cast<std::uint64_t>(ordered[i]);
    out = std::to_string(word);
    if (count == 4) LeftJustify(out, 10);
    return;
  }
  if (settings_.format.Addof &&
      (format_ == ConstantFormat::H || format_ == ConstantFormat::PlusHPlus) && ordered[0] > 159) {
    out.push_back('0');
    ++leadingZeros_;
  }
  for (int i = 0; i < count; ++i) {
    out.push_back(kHexDigits[ordered[i] >> 4]);
    out.push_back(kHexDigits[ordered[i] & 15]);
  }
  if (count == 4) LeftJustify(out, 10);
}

void DataTextWriter::PutConstant(const int* parts, int count, bool last) {
  SpellWord(parts, count, valueText_);
  arrayBytes_ += count;
  AppendConstant(last);
  // The font generator ends a glyph's line with its last value.
  CloseLine(options_.fontMode && last);
}

void DataTextWriter::AppendHead(std::string& line) const {
  line += cpre_;
  if (settings_.format.LineN) line += std::to_string(lineNumber_);
  line += cpfr_;
}

void DataTextWriter::AppendConstant(bool last) {
  const Place place = PlaceOf(constantsOnLine_);
  const bool goesOn = !last;
  if (Info(format_).decimalFormat) LeftJustify(valueText_, wordBytes_ == 2 ? 5 : 3);
  if (place == One || place == First) AppendHead(line_);
  piece_ = pre_;
  piece_ += valueText_;
  piece_ += post_[place][goesOn ? 1 : 0];
  if (last) std::replace(piece_.begin(), piece_.end(), ',', ' ');
  line_ += piece_;
  if (pictureAfter_) line_ += picture_;
  ++constantsOnLine_;
}

QString DataTextWriter::EndMark() const {
  const EndOfLineFlags& eol = options_.eol;
  if (eol.EolStr) return eol.eolst;
  if (eol.Eolcom) return QStringLiteral(",");
  if (eol.EolSem) return QStringLiteral(";");
  return {};
}

void DataTextWriter::CloseLine() { CloseLine(false); }

void DataTextWriter::FinishLine(std::string& line) const {
  // The end mark goes before the first run of four blanks, the gap that leads to the picture,
  // or at the end. Only a line of one constant has that gap: with several, a run of four blanks
  // is the padding of a short decimal word, and a mark there would leave an empty element.
  const std::size_t gapAt = perLine_ == 1 ? line.find("    ") : std::string::npos;
  if (gapAt != std::string::npos) {
    line.insert(gapAt, endMark_);
  } else {
    line += endMark_;
  }
  if (!line.empty() && line.back() == '#') line.pop_back();
  // Leading zeros made the constant longer: take as many characters away in front of the
  // picture so that it keeps its column.
  if (!picture_.empty() && leadingZeros_ > 0) {
    const std::size_t at = line.find(picture_);
    if (at != std::string::npos) {
      const std::size_t from = BackByUnits(line, at, leadingZeros_);
      line.erase(from, at - from);
    }
  }
}

void DataTextWriter::CloseLine(bool force) {
  if (constantsOnLine_ == 0 && line_.empty()) return;
  if (!force && (constantsOnLine_ < perLine_ || partCount_ > 0 || pairPending_)) return;
  FinishLine(line_);
  WriteLine(line_);
  EndLine();
}

void DataTextWriter::EndLine() {
  line_.clear();
  constantsOnLine_ = 0;
  leadingZeros_ = 0;
  if (settings_.format.LineN) ++lineNumber_;
}

void DataTextWriter::WriteLine(std::string_view line) {
  if (options_.fontMode && settings_.comment.HCO) {
    commentBlock_.append(FromUtf8(line));
    return;
  }
  AddDataLines(text_.Count(), 1);
  text_.AddUtf8Line(line);
}

void DataTextWriter::GroupStart() {
  if (!settings_.block.ColRx) return;
  if (secondPlane_) secondPlane_->GroupStart();
  // A row that ended inside a line: its line goes out as it stands, without an end mark.
  if (!line_.empty()) {
    WriteLine(line_);
    line_.clear();
    constantsOnLine_ = 0;
    leadingZeros_ = 0;
  }
  if (groupOpen_) text_.AddLine(settings_.block.fpar12);
  text_.AddLine(settings_.block.fpar11);
  groupOpen_ = true;
}

void DataTextWriter::WriteDataPreamble(const PreambleInfo& info, const HeaderText& header) {
  const settings::Settings& s = settings_;
  if (!s.comment.Noonts) {
    const int bits = OutputWordBits(s.width);
    QString width = bits == 16   ? QStringLiteral("Word width format is 16 bit ")
                    : bits == 32 ? QStringLiteral("Word width format is 32 bit ")
                                 : QStringLiteral("Byte width format is 8 bit ");
    width += s.scan.MSBF ? QStringLiteral("/ Big endian") : QStringLiteral("/ Little endian");
    if (!s.pixel.bw8) width += QStringLiteral(" / 6 bit T6963 Mode ");
    const QString generated = info.compressed
                                  ? QStringLiteral("COMPRESSED Data generated with Vantorelle ")
                                  : QStringLiteral("Data generated with Vantorelle ");
    const bool postprocessing = s.post.asrg || s.post.Autop;
    if (style_.c) {
      text_.AddLine(QStringLiteral("/* ") + generated + info.version + QStringLiteral("*/"));
      if (info.animated) {
        text_.AddLine(QStringLiteral("/* Animated Sequence Part # %1 of %2  */")
                          .arg(info.frame)
                          .arg(info.frameCount));
      }
      text_.AddLine(QStringLiteral("/* ") + info.dateText + QStringLiteral(" */"));
      text_.AddLine(QStringLiteral("/* Bitmap Source file : ") + s.output.nbmfn +
                    QStringLiteral(" */"));
      text_.AddLine(QStringLiteral("/* ") + width + QStringLiteral(" */"));
      if (postprocessing) text_.AddLine(QStringLiteral("/* Postprocessing is ENABLED  */"));
    } else {
      const QString& c = style_.opener;
      text_.AddLine(c + QLatin1Char(' ') + generated + info.version);
      if (info.animated) {
        text_.AddLine(c + QStringLiteral(" Animated Sequence Part # %1 of %2")
                              .arg(info.frame)
                              .arg(info.frameCount));
      }
      text_.AddLine(c + QLatin1Char(' ') + info.dateText);
      text_.AddLine(c + QStringLiteral(" Bitmap Source file : ") + s.output.nbmfn);
      text_.AddLine(c + QLatin1Char(' ') + width);
      if (postprocessing) text_.AddLine(c + QStringLiteral(" Postprocessing is ENABLED "));
    }
    text_.AddLine(QString());
  }

  if (s.comment.Noh) {
    text_.AddLine(s.block.ColRx ? s.block.fpar13 : s.block.begds);
  } else if (!header.text.isEmpty()) {
    QStringList lines = header.text.split(QLatin1Char('\n'));
    if (header.text.endsWith(QLatin1Char('\n'))) lines.removeLast();
    for (const QString& raw : lines) {
      const QString line = TrimTrailingBlanks(ApplyWordType(s, raw));
      // Runs of empty lines collapse into one.
      if (line.isEmpty() && !text_.IsEmpty() && text_.Utf8Line(text_.Count() - 1).empty()) continue;
      text_.AddLine(line);
    }
  }
  if (secondPlane_ && !header.secondPlaneHeader.isEmpty()) {
    secondPlane_->text_.AddLine(header.secondPlaneHeader);
  }
}

void DataTextWriter::RemoveEndMark(QString& line) const {
  const settings::DataFormatSettings& f = settings_.format;
  const EndOfLineFlags& eol = options_.eol;
  if (eol.Eolcom || f.COMAh) {
    const qsizetype at = line.lastIndexOf(QLatin1Char(','));
    if (at >= 0 && (std::max(1, f.ORGC) == 1 || at >= line.size() - 2)) line.remove(at, 1);
  }
  if (eol.EolSem) {
    const qsizetype at = line.lastIndexOf(QLatin1Char(';'));
    if (at >= 0) line.remove(at, 1);
  }
  if (eol.EolStr && !eol.eolst.isEmpty()) {
    const qsizetype at = line.lastIndexOf(eol.eolst.back());
    if (at >= 0) line.truncate(at);
  }
  // The custom separator is cut with what follows it only where it ends the line: a full last
  // line ends in a constant, and cutting there would take the constant away.
  if (f.COMAS && !f.sepst.isEmpty()) {
    const qsizetype at = line.lastIndexOf(f.sepst);
    if (at >= 0 && line.mid(at + f.sepst.size()).trimmed().isEmpty()) line.truncate(at);
  }
}

void DataTextWriter::FinishArray() {
  const settings::DataFormatSettings& f = settings_.format;
  const bool pending = !line_.empty();
  QString pendingLine = FromUtf8(line_);
  // Packed 4096 colours in "+H+": the last constant gets the comma its suffix could not carry.
  if (settings_.pixel.C4096 && settings_.pixel.PM && format_ == ConstantFormat::PlusHPlus &&
      !f.VALpref.isEmpty()) {
    QString line = pending ? pendingLine : text_.Line(LastDataLine());
    const qsizetype at = line.lastIndexOf(f.VALpref);
    if (at >= 0) {
      line.insert(at, QLatin1Char(','));
      if (pending) {
        pendingLine = line;
      } else {
        text_.ReplaceLine(LastDataLine(), line);
      }
    }
  }
  if (settings_.format.delallas) {
    for (const LineRun& run : dataLines_) {
      for (int index = run.first; index < run.first + run.count; ++index) {
        QString line = text_.Line(index);
        RemoveEndMark(line);
        text_.ReplaceLine(index, line);
      }
    }
    if (pending) RemoveEndMark(pendingLine);
  } else if (settings_.format.dellas) {
    if (pending) {
      RemoveEndMark(pendingLine);
    } else if (!dataLines_.empty()) {
      QString line = text_.Line(LastDataLine());
      RemoveEndMark(line);
      text_.ReplaceLine(LastDataLine(), line);
    }
  }
  if (pending) {
    AddDataLines(text_.Count(), 1);
    text_.AddLine(pendingLine);
    line_.clear();
    constantsOnLine_ = 0;
  }
  if (settings_.block.ColRx && groupOpen_) {
    text_.AddLine(settings_.block.fpar12);
    groupOpen_ = false;
  }
  text_.AddLine(settings_.block.ColRx ? settings_.block.fpar14 : settings_.block.Endst);
}

void DataTextWriter::WriteDataEnd(const HeaderText& header, const DataEndInfo& info) {
  const settings::Settings& s = settings_;
  if (secondPlane_) secondPlane_->FinishArray();
  FinishArray();
  if (info.compression) {
    text_.AddLine(QString());
    if (s.comment.Noh) text_.AddLine(s.block.begds);
    const QStringList& pane = info.compression->pointerPane;
    for (qsizetype i = 1; i < pane.size(); ++i) {
      if (pane[i].isEmpty() && text_.Utf8Line(text_.Count() - 1).empty()) continue;
      text_.AddLine(pane[i]);
    }
    text_.AddLine(s.block.Endst);
  }

  const QString name = header.linePrefix + QLatin1Char(' ') + header.arrayName;
  const QString end = QLatin1Char(' ') + s.block.EODS;
  if (s.block.BSD) {
    double p = info.pixelsPerByte;
    if (p <= 0.0) p = s.display.NOMAT ? 1.0 : settings::PixelsPerByte(s);
    const bool horizontal = settings::IsHorizontalScan(s);
    const QString pagesWidth = QString::number(static_cast<long long>(std::trunc(info.width / p)));
    const QString pagesHeight =
        QString::number(static_cast<long long>(std::trunc(info.height / p)));
    text_.AddLine(QString());
    text_.AddLine(name +
                  (horizontal ? QStringLiteral("WidthPages = ") + pagesWidth
                              : QStringLiteral("WidthPixels = ") + QString::number(info.width)) +
                  end);
    text_.AddLine(QString());
    text_.AddLine(name +
                  (horizontal ? QStringLiteral("HeightPixels = ") + QString::number(info.height)
                              : QStringLiteral("HeightPages = ") + pagesHeight) +
                  end);
  }
  if (s.block.BCD) {
    text_.AddLine(QString());
    text_.AddLine(name + QStringLiteral("X = ") + header.xText + end);
    text_.AddLine(QString());
    text_.AddLine(name + QStringLiteral("Y = ") + header.yText + end);
  }
  if (s.comment.Noonts) return;

  // The count: bytes, or words of 16 or 32 bits (a compressed array counts bytes).
  const bool words = wordBytes_ > 1 && !info.compressed && !info.compression;
  const long long count = info.compression ? info.compression->bytes
                          : words          ? arrayBytes_ / wordBytes_
                                           : arrayBytes_;
  if (style_.c) {
    text_.AddLine(QStringLiteral("/******************/"));
    text_.AddLine(QStringLiteral("/* %1 %2 */")
                      .arg(count)
                      .arg(words ? QStringLiteral("Words") : QStringLiteral("Bytes")));
    text_.AddLine(QStringLiteral("/* End of LCD Pattern           */"));
    if (!info.animated) {
      text_.AddLine(QStringLiteral("/* Save table and see info file ") + info.reportName +
                    QStringLiteral(" */"));
      text_.AddLine(QString());
    }
  } else {
    const QString& c = style_.opener;
    text_.AddLine(c + QStringLiteral(" ******************"));
    text_.AddLine(c + QStringLiteral(" %1 Bytes ").arg(count));
    text_.AddLine(c + QStringLiteral("  End of LCD Pattern  "));
    if (!info.animated) {
      text_.AddLine(c + QStringLiteral("  Save table and see info file ") + info.reportName);
    }
  }
  if (info.compression) {
    text_.AddLine(QString());
    for (const QString& line : info.compression->statistics) {
      text_.AddLine(style_.opener + QLatin1Char(' ') + line + style_.closer);
    }
  }
}

}  // namespace vt::convert
