// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "util/error.h"

namespace vt::platform {

/// The line-addressed text editor model: what the export, the font generator and the batch
/// interpreter write into and what the source editor widget shows. Lines hold no line breaks of
/// their own. Every change raises the modified flag; clearing and saving lower it.
///
/// The lines are kept as UTF-8 in one block, each followed by "\n", with the place of each line
/// in a table: adding a line is a copy to the end of the block, and while lines are only added
/// (or the last one changed) the block is the saved text itself. A line replaced or deleted
/// elsewhere leaves its old bytes unused in the block until the next Clear or SetText.
class TextBuffer {
 public:
  /// Removes every line and lowers the modified flag.
  void Clear();
  /// Appends `line` as the new last line.
  void AddLine(const QString& line);
  /// Appends a line given as UTF-8 (no line break of its own).
  void AddUtf8Line(std::string_view line);
  /// The line at `index` (0-based), or an empty text when there is no such line.
  QString Line(int index) const;
  /// The line at `index` as UTF-8; empty when there is no such line. Valid until the next
  /// change of the buffer.
  std::string_view Utf8Line(int index) const;
  /// The last line, or an empty text when the buffer is empty.
  QString LastLine() const;
  /// Replaces the line at `index`. An index past the end appends the line; a negative one is
  /// ignored.
  void ReplaceLine(int index, const QString& line);
  /// The same with a UTF-8 line.
  void ReplaceUtf8Line(int index, std::string_view line);
  /// Deletes the line at `index`; an index out of range changes nothing.
  void DeleteLine(int index);
  /// Number of lines.
  int Count() const { return static_cast<int>(lines_.size()); }
  bool IsEmpty() const { return lines_.empty(); }
  /// Every line, in order.
  QStringList Lines() const;
  /// Room for about `bytes` of UTF-8 text in `lines` further lines, so that a long export does
  /// not move the block as it grows.
  void Reserve(std::size_t bytes, std::size_t lines);
  /// Room for a line of up to `bytes` bytes at the end of the text, to be written in place and
  /// then added by AddWrittenLine. Valid until the next change of the buffer but AddWrittenLine:
  /// room for several lines takes them one after the other, each after the break of the last.
  char* LineRoom(std::size_t bytes) {
    block_.reserve(block_.size() + bytes + 1);
    return block_.data() + block_.size();
  }
  /// Adds `count` lines of `length` bytes written into LineRoom one after the other, each
  /// followed by a byte of room for its break.
  void AddWrittenLines(std::size_t count, std::size_t length) {
    const std::size_t step = length + 1;
    char* const start = block_.data() + block_.size();
    // The list grows (geometrically, as single lines grow it) and then takes the spans
    // without a check each.
    const std::size_t first = lines_.size();
    lines_.resize(first + count);
    Span* span = lines_.data() + first;
    for (std::size_t l = 0; l < count; ++l) {
      start[l * step + length] = '\n';
      span[l] = Span{block_.size() + l * step, static_cast<std::uint32_t>(length)};
    }
    block_.grow(count * step);
    modified_ = true;
  }
  /// Adds the first `length` bytes written into LineRoom as the new last line.
  void AddWrittenLine(std::size_t length) {
    const Span span{block_.size(), static_cast<std::uint32_t>(length)};
    // LineRoom left a byte of room past the line for its break.
    block_.data()[block_.size() + length] = '\n';
    block_.grow(length + 1);
    lines_.push_back(span);
    modified_ = true;
  }

  /// The whole text: every line followed by `lineBreak` (an empty buffer gives an empty text).
  QString Text(const QString& lineBreak = QStringLiteral("\n")) const;
  /// The whole text as UTF-8, every line followed by `lineBreak`.
  QByteArray Utf8Text(std::string_view lineBreak = "\n") const;
  /// Replaces the content by `text` split at CR LF, LF or lone CR; a final line break does not
  /// start a further line. Raises the modified flag.
  void SetText(const QString& text);

  /// Writes the text to `path` in UTF-8, each line ended by CR LF when `crlf` (the settings key
  /// of that name) holds, else by LF. The file is replaced only once it is complete, so a
  /// failure leaves the old one. Lowers the modified flag on success; returns an Io error
  /// naming the path on failure.
  Result<bool> SaveToFile(const QString& path, bool crlf) const;

  /// Whether the text changed since the last clear or save.
  bool Modified() const { return modified_; }
  void SetModified(bool modified) { modified_ = modified; }

 private:
  struct Span {
    std::size_t offset;
    std::uint32_t length;
  };
  /// Copies `line` and its "\n" to the end of the block; its place.
  Span Append(std::string_view line);
  /// True when the block holds exactly the lines in order, each followed by "\n".
  bool Contiguous() const { return unused_ == 0 && inOrder_; }

  /// The bytes of the lines; grows by doubling and is never filled ahead of use.
  class Block {
   public:
    const char* data() const { return data_.get(); }
    char* data() { return data_.get(); }
    std::size_t size() const { return size_; }
    void clear() { size_ = 0; }
    /// Capacity for at least `size` bytes.
    void reserve(std::size_t size) {
      if (size > capacity_) Grow(size);
    }
    void append(std::string_view bytes);
    /// Cuts the block back to `size` bytes (no more than it holds).
    void truncate(std::size_t size) { size_ = size; }
    /// Counts `n` bytes written past the end into reserved capacity.
    void grow(std::size_t n) { size_ += n; }

   private:
    void Grow(std::size_t size);
    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
  };

  Block block_;
  std::vector<Span> lines_;
  std::size_t unused_ = 0;         // bytes of replaced or deleted lines still in the block
  bool inOrder_ = true;            // the lines stand in the block in their order
  mutable bool modified_ = false;  // saving is a read of the text that only resets this flag
};

}  // namespace vt::platform
