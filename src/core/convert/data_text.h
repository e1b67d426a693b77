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

#include "convert/bulk_placement.h"
#include "convert/constant_format.h"
#include "convert/constant_spelling.h"
#include "convert/header_template.h"
#include "convert/two_page_dealing.h"
#include "convert/value_sink.h"
#include "platform/text_buffer.h"
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
  /// Every byte goes value by value, none through the bulk placement: the plain reference form
  /// of the same text.
  bool referencePaths = false;
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

/// The plain formatter of the data text: one per array, writing into a TextBuffer. It takes
/// the values of the packers through the ValueSink calls, value by value, and keeps the state
/// of the line being built: the constant, the held parts of a 16 or 32-bit word, the picture
/// comment of the current constant, the constants on the line, leading zeros added and the
/// line number. A line is closed when it holds ORGC constants; WriteDataEnd closes the array.
///
/// With 16 or 32-bit output the bytes of a word arrive one by one and are joined (by MSBF)
/// when the last arrives. In two-page 4 gray (G42) the values arrive in pairs: their 16 bits
/// are dealt (TwoPageDealing) to a byte of the main array and a byte of the second plane,
/// which a writer of its own writes into the second buffer.
///
/// Runs of finished bytes (EmitValues) go to the bulk placement (BulkPlacement) where the run
/// allows it, unless the run asks for the reference paths; the text is the same either way.
///
/// Invariants: the settings stay unchanged during the run (the spelling of the constants is
/// worked out once, when the writer is made); lines are built as UTF-8.
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
  /// target go to the bulk placement (unless the reference paths are asked for); any other case
  /// goes value by value.
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
  QString Line() const {
    return QString::fromUtf8(line_.text.data(), qsizetype(line_.text.size()));
  }
  /// The picture comment of the current constant; empty when none is drawn.
  QString Picture() const { return QString::fromUtf8(picture_.data(), qsizetype(picture_.size())); }
  /// The comment opener of the active style.
  const QString& CommentText() const { return style_.opener; }
  /// Bytes taken so far by EmitValue.
  long long ValueCount() const { return valueCount_; }
  /// Bytes placed into this array so far (in two-page gray, one per pair).
  long long ArrayBytes() const { return line_.arrayBytes; }
  /// Lines of the comment block (font generator with HCO).
  const QStringList& CommentBlock() const { return commentBlock_; }

 private:
  /// A writer that deals no pairs: the second plane's of two-page gray (the same spelling),
  /// and what the public constructor starts from.
  struct SecondPlaneTag {};
  DataTextWriter(SecondPlaneTag, const settings::Settings& settings, platform::TextBuffer& text,
                 const DataTextOptions& options);

  /// Whether runs of bytes can go to the bulk placement; makes it the first time it is asked.
  bool BulkReady();
  /// Places `count` finished bytes (Neg not applied yet) as constants of this array: the bulk
  /// way up to the data's last value, which takes the plain way.
  void PlaceBytes(const std::uint8_t* values, std::size_t count);
  /// Two-page gray runs: whole pairs are dealt a block at a time and each plane places its
  /// bytes.
  void EmitPairs(const std::uint8_t* values, std::size_t count);
  /// How many bytes may still be placed before the data's last one.
  std::size_t BytesBeforeTheLast() const;

  std::string PictureTemplate() const;
  void PutConstant(const int* parts, int count, bool last);
  void AppendConstant(bool last);
  void CloseLine(bool force);
  /// Inserts the end mark, drops a final "#", keeps the picture's column; the line to write.
  void FinishLine(std::string& line) const;
  void WriteLine(std::string_view line);
  void RemoveEndMark(QString& line) const;
  void FinishArray();

  const settings::Settings& settings_;
  platform::TextBuffer& text_;
  DataTextOptions options_;
  CommentStyle style_;
  DataTarget target_;
  int wordBytes_;
  int perLine_;  // ORGC, at least 1
  bool pictureEnabled_;
  HexByteTarget* hexTarget_ = nullptr;
  ConstantSpelling spelling_;
  std::string pictureTemplate_;
  bool pictureAfter_ = false;  // the picture follows the constant (one per line)
  bool pictureAscii_ = true;   // picture positions are byte positions

  // The line builder.
  ArrayLine line_;
  std::string valueText_;
  std::string piece_;  // scratch for one constant
  std::array<int, 4> parts_{};
  int partCount_ = 0;  // held parts of a word (HalfPending while above 0)
  std::string picture_;
  long long valueCount_ = 0;
  long long lastConstant_ = 0;  // constants placed when the last is placed; 0 when unknown
  bool lastMarked_ = false;
  bool groupOpen_ = false;
  QStringList commentBlock_;

  /// Two-page gray: the dealing of the pairs (main writer only) and the second plane's writer.
  std::optional<TwoPageDealing> dealing_;
  std::unique_ptr<DataTextWriter> secondPlane_;

  /// The bulk placement of runs; tried once, when the first run comes.
  std::unique_ptr<BulkPlacement> bulk_;
  bool bulkTried_ = false;
};

}  // namespace vt::convert
