// SPDX-License-Identifier: MIT
#include "platform/text_buffer.h"

#include <cstring>
#include <string>

#include "util/atomic_write.h"

namespace vt::platform {

void TextBuffer::Block::Grow(std::size_t size) {
  std::size_t capacity = std::max<std::size_t>(capacity_ * 2, 4096);
  while (capacity < size) capacity *= 2;
  std::unique_ptr<char[]> data(new char[capacity]);
  if (size_ > 0) std::memcpy(data.get(), data_.get(), size_);
  data_ = std::move(data);
  capacity_ = capacity;
}

void TextBuffer::Block::append(std::string_view bytes) {
  reserve(size_ + bytes.size());
  if (!bytes.empty()) std::memcpy(data_.get() + size_, bytes.data(), bytes.size());
  size_ += bytes.size();
}

TextBuffer::Span TextBuffer::Append(std::string_view line) {
  const Span span{block_.size(), static_cast<std::uint32_t>(line.size())};
  const bool inside = block_.size() > 0 && line.data() >= block_.data() &&
                      line.data() < block_.data() + block_.size();
  if (inside) {
    const std::string copy(line);  // the block may move as it grows
    block_.append(copy);
  } else {
    block_.append(line);
  }
  block_.append("\n");
  return span;
}

void TextBuffer::Clear() {
  block_.clear();
  lines_.clear();
  unused_ = 0;
  inOrder_ = true;
  modified_ = false;
}

namespace {
std::string_view View(const QByteArray& bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}
}  // namespace

void TextBuffer::AddLine(const QString& line) { AddUtf8Line(View(line.toUtf8())); }

void TextBuffer::AddUtf8Line(std::string_view line) {
  lines_.push_back(Append(line));
  modified_ = true;
}

std::string_view TextBuffer::Utf8Line(int index) const {
  if (index < 0 || index >= Count()) return {};
  const Span& span = lines_[static_cast<std::size_t>(index)];
  return std::string_view(block_.data() + span.offset, span.length);
}

QString TextBuffer::Line(int index) const {
  const std::string_view line = Utf8Line(index);
  return QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size()));
}

QString TextBuffer::LastLine() const { return Line(Count() - 1); }

QStringList TextBuffer::Lines() const {
  QStringList lines;
  lines.reserve(Count());
  for (int i = 0; i < Count(); ++i) lines.append(Line(i));
  return lines;
}

void TextBuffer::Reserve(std::size_t bytes, std::size_t lines) {
  block_.reserve(block_.size() + bytes);
  lines_.reserve(lines_.size() + lines);
}

void TextBuffer::ReplaceLine(int index, const QString& line) {
  ReplaceUtf8Line(index, View(line.toUtf8()));
}

void TextBuffer::ReplaceUtf8Line(int index, std::string_view line) {
  if (index < 0) return;
  if (index >= Count()) {
    AddUtf8Line(line);
    return;
  }
  Span& span = lines_[static_cast<std::size_t>(index)];
  if (span.offset + span.length + 1 == block_.size()) {
    // The line ends the block: it is rewritten where it stands.
    const std::string copy(line);  // `line` may point into the line it replaces
    block_.truncate(span.offset);
    span = Append(copy);
  } else {
    unused_ += span.length + 1;
    inOrder_ = inOrder_ && index == Count() - 1;
    span = Append(line);
  }
  modified_ = true;
}

void TextBuffer::DeleteLine(int index) {
  if (index < 0 || index >= Count()) return;
  const Span span = lines_[static_cast<std::size_t>(index)];
  if (span.offset + span.length + 1 == block_.size()) {
    block_.truncate(span.offset);
  } else {
    unused_ += span.length + 1;
  }
  lines_.erase(lines_.begin() + index);
  modified_ = true;
}

QByteArray TextBuffer::Utf8Text(std::string_view lineBreak) const {
  if (Contiguous() && lineBreak == "\n") {
    return QByteArray(block_.data(), static_cast<qsizetype>(block_.size()));
  }
  std::size_t size = 0;
  for (const Span& span : lines_) size += span.length + lineBreak.size();
  // Sized once and filled in place: a saved export copies every line with CR LF.
  QByteArray text(static_cast<qsizetype>(size), Qt::Uninitialized);
  char* out = text.data();
  const char* const block = block_.data();
  for (const Span& span : lines_) {
    std::memcpy(out, block + span.offset, span.length);
    out += span.length;
    for (const char c : lineBreak) *out++ = c;
  }
  return text;
}

QString TextBuffer::Text(const QString& lineBreak) const {
  return QString::fromUtf8(Utf8Text(View(lineBreak.toUtf8())));
}

void TextBuffer::SetText(const QString& text) {
  Clear();
  const QByteArray bytes = text.toUtf8();
  const char* p = bytes.constData();
  const char* const end = p + bytes.size();
  block_.reserve(static_cast<std::size_t>(bytes.size()) + 1);
  // Lines end at CR LF, LF or a lone CR; a final break starts no further line.
  while (p < end) {
    const char* q = p;
    while (q < end && *q != '\n' && *q != '\r') ++q;
    lines_.push_back(Append(std::string_view(p, static_cast<std::size_t>(q - p))));
    if (q < end && *q == '\r' && q + 1 < end && q[1] == '\n') ++q;
    p = q + 1;
  }
  modified_ = true;
}

Result<bool> TextBuffer::SaveToFile(const QString& path, bool crlf) const {
  // Lines only added: the block is the file, written without a copy.
  const QByteArray text =
      Contiguous() && !crlf
          ? QByteArray::fromRawData(block_.data(), static_cast<qsizetype>(block_.size()))
          : Utf8Text(crlf ? "\r\n" : "\n");
  Result<bool> written = WriteFileAtomically(path, text);
  if (written.ok()) modified_ = false;
  return written;
}

}  // namespace vt::platform
