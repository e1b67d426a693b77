// SPDX-License-Identifier: MIT
#pragma once

// The data text formatter: turns the values the packers deliver into the lines of a source
// array in the text editor, with the comment preamble before the array and the end of the array
// with its descriptors and closing comments after it.

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/text_buffer.h"
#include "convert/constant_format.h"
#include "convert/header_template.h"
#include "convert/value_sink.h"
#include "settings/settings.h"

namespace vt::convert {

/// Where the values of an export go: the text editor, or a byte target.
enum class DataTarget { Text, Binary, IntelHex };
/// DHec gives the binary file, DIHec Intel Hex, anything else text.
DataTarget DataTargetOf(const settings::OutputWidthSettings& width);

/// The end-of-line flags of a run. The export copies them from the settings at its start
/// (EndOfLineFlagsOf); the font generator fills them from its own keys.
struct EndOfLineFlags {
  bool Eolcom = true;   ///< end mark ","
  bool EolSem = false;  ///< end mark ";"
  bool EolStr = false;  ///< end mark `eolst`
  bool Eoln = false;    ///< no end mark
  QString eolst;
};
/// The working copy of the end-of-line keys of `format`.
EndOfLineFlags EndOfLineFlagsOf(const settings::DataFormatSettings& format);

/// Receives the values of the binary and Intel Hex targets, each as two upper-case hexadecimal
/// digits, in place of the text editor.
class HexByteTarget {
 public:
  virtual ~HexByteTarget() = default;
  virtual void AppendHexByte(const QString& digits) = 0;
};

/// What a run tells the formatter besides the settings.
struct DataTextOptions {
  EndOfLineFlags eol;
  /// The count of bytes the data is expected to have: the byte whose count reaches it is the
  /// last of the data (separators stop, commas in its constant are blanked). 0: not known, no
  /// byte is taken as the last unless MarkLastValue says so.
  long long dataByteCount = 0;
  /// The font generator drives the formatter: the last value gets its line ending at once, and
  /// with HCO the lines go to the comment block.
  bool fontMode = false;
};

/// The texts of the comment preamble that do not come from the settings.
struct PreambleInfo {
  QString version;   ///< version text of the build
  QString dateText;  ///< date and time of the export
  bool compressed = false;
  bool animated = false;
  int frame = 0;       ///< in animation: number of this frame
  int frameCount = 0;  ///< in animation: number of frames
};

/// A kept compression: the pointer array follows the data array.
struct CompressedArrayEnd {
  QStringList pointerPane;  ///< the second pane; its first line stays there
  long long bytes = 0;      ///< DataBytes + Pointers: the count of the closing comment
  QStringList statistics;   ///< the statistics, plain lines
};

/// What the end of the array needs besides the settings and the header.
struct DataEndInfo {
  QString reportName;  ///< name of the info file the closing comment points to
  bool animated = false;
  bool compressed = false;  ///< the array is a compressed one: its count is in bytes
  int width = 0;            ///< exported area in pixels, for the size descriptors
  int height = 0;
  /// Pixels per byte for the page count; 0 takes PixelsPerByte of the settings (1 with NOMAT).
  double pixelsPerByte = 0.0;
  /// Set when the compression saved bytes: the pointer array is written after the data
  /// array (begds first with Noh), its count is the closing comment's, and the statistics
  /// end the text unless Noonts.
  std::optional<CompressedArrayEnd> compression;
};

/// The line builder of the data text: one per export, writing into a TextBuffer. It takes the
/// values of the packers through the ValueSink calls and keeps the state of the line being
/// built: the constant, the held parts of a 16 or 32-bit word, the picture comment of the
/// current constant, the constants on the line, leading zeros added and the line number.
/// A line is closed when it holds ORGC constants; WriteDataEnd closes the array.
///
/// With 16 or 32-bit output the bytes of a word arrive one by one and are joined (by MSBF)
/// when the last arrives. In two-page 4 gray (G42) the values arrive in pairs (Value, then
/// SecondValue): their 16 bits are dealt to a byte of the main array and a byte of the second
/// plane, which is written by a writer of its own into the second buffer.
///
/// The settings must stay unchanged during the run: the spelling of the constants (prefixes,
/// separators, end mark, the text of each byte value in each place of a line) is worked out
/// once, when the writer is made. Lines are built as UTF-8.
class DataTextWriter final : public ValueSink {
 public:
  /// `secondPlane` receives the second array of two-page gray; may be null otherwise.
  DataTextWriter(const settings::Settings& settings, platform::TextBuffer& text,
                 DataTextOptions options = {}, platform::TextBuffer* secondPlane = nullptr);
  /// The writer keeps a reference to the settings: a temporary would dangle.
  DataTextWriter(settings::Settings&&, platform::TextBuffer&, DataTextOptions = {},
                 platform::TextBuffer* = nullptr) = delete;
  ~DataTextWriter() override;
  DataTextWriter(const DataTextWriter&) = delete;
  DataTextWriter& operator=(const DataTextWriter&) = delete;

  /// Resets the picture comment to its empty drawing, unless a word is being assembled (the
  /// picture of a word spans its bytes).
  void StartComment() override;
  /// Puts "#" into the picture at the column of `bit` (0..7) of the byte being built: columns
  /// start at position 10 of the picture text, most significant bit leftmost; in a word the
  /// bytes take 8 columns each in the order the word is written.
  void MarkBit(int bit) override;
  /// Takes one byte: counts it, applies Neg, holds the parts of a word, joins them, spells the
  /// constant, places it on the line (AppendConstant) and closes the line when it is full
  /// (CloseLine). For a binary or Intel Hex target the byte goes as two hexadecimal digits to
  /// the byte target instead.
  void EmitValue(int value, bool endOfPixel) override;
  /// Group mode (ColRx): writes the line in progress as it stands (a row that ends inside a
  /// line), fpar12 when a group is open, then fpar11, and marks a group open. Does nothing
  /// without ColRx.
  void GroupStart() override;
  /// Takes `count` finished bytes in a row, each as EmitValue(value, true) would after a
  /// StartComment with no bit marked. Bytes of a single width with no picture and no byte
  /// target are placed from tables built once; any other case goes value by value.
  void EmitValues(const std::uint8_t* values, std::size_t count);

  /// The next complete value is the last of the data, whatever the count says.
  void MarkLastValue() { lastMarked_ = true; }
  /// Sends the binary or Intel Hex bytes to `target` (not owned; null drops them).
  void SetHexByteTarget(HexByteTarget* target) { hexTarget_ = target; }

  /// Finishes the line when it holds ORGC constants and no word is pending: inserts the end
  /// mark before the first run of four blanks (or at the end), deletes a final "#", removes the
  /// leading zeros of the line in front of the picture, and writes the line.
  void CloseLine();
  /// Closes the line in progress with its end mark however few constants it holds.
  void CloseFinalLine() { CloseLine(true); }

  /// The comment lines before the array (unless Noonts), then the header text line by line
  /// (unless Noh: then begds, or fpar13 with ColRx). Header lines: CU8 word type, trailing
  /// blanks cut, runs of empty lines collapsed.
  void WriteDataPreamble(const PreambleInfo& info, const HeaderText& header);
  /// Closes the array: end marks removed from the last line (dellas) or from every data line
  /// (delallas), the unfinished line written, the open group closed, Endst (fpar14 with ColRx),
  /// the size (BSD) and position (BCD) descriptors, and the closing comments unless Noonts.
  void WriteDataEnd(const HeaderText& header, const DataEndInfo& info);

  /// Whether each constant of the run carries the picture of its bits (MarkBit matters).
  bool DrawsPictures() const { return pictureEnabled_; }
  /// The line being built.
  QString Line() const { return QString::fromUtf8(line_.data(), qsizetype(line_.size())); }
  /// The picture comment of the current constant; empty when none is drawn.
  QString Picture() const { return QString::fromUtf8(picture_.data(), qsizetype(picture_.size())); }
  /// The comment opener of the active style.
  const QString& CommentText() const { return style_.opener; }
  /// Bytes taken so far by EmitValue.
  long long ValueCount() const { return valueCount_; }
  /// Bytes placed into this array so far (in two-page gray, one per pair).
  long long ArrayBytes() const { return arrayBytes_; }
  /// Lines of the comment block (font generator with HCO).
  const QStringList& CommentBlock() const { return commentBlock_; }

 private:
  struct SecondPlaneTag {};
  DataTextWriter(SecondPlaneTag, const settings::Settings& settings, platform::TextBuffer& text,
                 DataTextOptions options);

  /// Where a constant stands on its line; One when a line holds one constant.
  enum Place { One, First, Middle, Last, kPlaces };
  /// The spelled forms of the 256 byte values in one place of a line, constant and
  /// separators included, each in a slot of its own, spelled when first used; the bulk path
  /// copies whole slots.
  struct PieceTable {
    static constexpr int kSlot = 16;  ///< bytes of a slot: up to 15 of text, then the length
    std::array<char, 256 * kSlot> slots{};
  };

  void BuildSpelling();
  /// The two-page gray tables: each byte value's bits dealt as the first or second of a pair.
  void BuildDealing();
  /// The bulk path: places `count` bytes as constants of this array, each as PutConstant would.
  void PlaceBytes(const std::uint8_t* values, std::size_t count);
  /// Sets up the whole-line template when the line's text is fixed but for the digits.
  void BuildLineTemplate();
  /// The piece of a byte in `place`: the text before, the digits, the text after (as a
  /// separator follows).
  std::string Piece(Place place, int value);
  /// Spells the byte `value` as delivered (Neg applied here) into its slot of `place`.
  void FillSlot(Place place, int value, char* slot);
  Place PlaceOf(int constantsOnLine) const;
  std::string PictureTemplate() const;
  /// The digits of a word (no prefix or suffix) into `out`; counts a leading zero of Addof.
  void SpellWord(const int* parts, int count, std::string& out);
  void PutConstant(const int* parts, int count, bool last);
  void AppendConstant(bool last);
  /// CPRE, the line number with LineN, cpfr: what a line starts with.
  void AppendHead(std::string& line) const;
  void CloseLine(bool force);
  /// Inserts the end mark, drops a final "#", keeps the picture's column; the line to write.
  void FinishLine(std::string& line) const;
  void WriteLine(std::string_view line);
  void EndLine();
  QString EndMark() const;
  void RemoveEndMark(QString& line) const;
  void FinishArray();

  const settings::Settings& settings_;
  platform::TextBuffer& text_;
  DataTextOptions options_;
  CommentStyle style_;
  ConstantFormat format_;
  DataTarget target_;
  int wordBytes_;
  int perLine_;  // ORGC, at least 1
  bool pictureEnabled_;
  bool dealPlanes_;  // this writer deals two-page gray pairs to itself and the second plane
  HexByteTarget* hexTarget_ = nullptr;
  std::unique_ptr<DataTextWriter> secondPlane_;

  // The spelling of the run, as UTF-8.
  std::string cpre_, cpfr_, endMark_, pictureTemplate_;
  std::string pre_;                                       // before the digits
  std::array<std::array<std::string, 2>, kPlaces> post_;  // after them, by place and separator
  bool pictureAfter_ = false;       // the picture follows the constant (one per line)
  bool pictureAscii_ = true;        // picture positions are byte positions
  bool gapFree_ = false;            // no line of the bulk path can hold a run of four blanks
  std::vector<PieceTable> pieces_;  // by place, for the bulk path; empty when it cannot run
  std::size_t lineRoom_ = 0;        // the longest line of the bulk path
  // Whole lines of the bulk path when every value's digits have one width: the line with its
  // digits left out, where each constant's digits go, and the digits of each value.
  std::string lineTemplate_;
  std::vector<std::uint32_t> digitPlaces_;
  std::vector<char> digitTable_;  // spelled digits, when they are not hexadecimal
  const char* digits_ = nullptr;  // slots of 8 a value: digitTable_ or a built-in hex table
  std::size_t digitWidth_ = 0;
  bool hexDigits_ = false;  // the digits are the two hexadecimal digits of each value
  int hexStride_ = 0;       // hexadecimal digit places this many characters apart, else 0

  // The line builder.
  std::string valueText_;
  std::array<int, 4> parts_{};
  int partCount_ = 0;  // held parts of a word (HalfPending while above 0)
  bool pairPending_ = false;
  int pairFirst_ = 0;
  std::string line_;
  std::string piece_;  // scratch for one constant
  int constantsOnLine_ = 0;
  int lineNumber_ = 0;
  std::string picture_;
  int leadingZeros_ = 0;
  long long valueCount_ = 0;
  long long arrayBytes_ = 0;
  long long lastConstant_ = 0;  // constants placed when the last is placed; 0 when unknown
  // Two-page gray: the main byte's bits (low) and the second plane's (high) of each byte
  // value as the first and as the second of a pair.
  std::array<std::uint16_t, 256> dealFirst_{};
  std::array<std::uint16_t, 256> dealSecond_{};
  bool lastMarked_ = false;
  bool groupOpen_ = false;
  /// The data lines written, as runs of consecutive lines of text_: first index and count.
  struct LineRun {
    int first;
    int count;
  };
  std::vector<LineRun> dataLines_;
  /// Counts `count` data lines from index `first` of text_.
  void AddDataLines(int first, int count) {
    if (!dataLines_.empty() && dataLines_.back().first + dataLines_.back().count == first) {
      dataLines_.back().count += count;
    } else {
      dataLines_.push_back({first, count});
    }
  }
  /// The index of the last data line written; -1 when none was.
  int LastDataLine() const {
    return dataLines_.empty() ? -1 : dataLines_.back().first + dataLines_.back().count - 1;
  }
  QStringList commentBlock_;
};

}  // namespace vt::convert
