// SPDX-License-Identifier: MIT
#include "app/text_buffer.h"

#include <QRegularExpression>

#include "util/atomic_write.h"

namespace vt::app {

void TextBuffer::Clear() {
  lines_.clear();
  modified_ = false;
}

void TextBuffer::AddLine(const QString& line) {
  lines_.append(line);
  modified_ = true;
}

QString TextBuffer::Line(int index) const {
  if (index < 0 || index >= lines_.size()) return {};
  return lines_[index];
}

QString TextBuffer::LastLine() const { return lines_.isEmpty() ? QString() : lines_.last(); }

void TextBuffer::ReplaceLine(int index, const QString& line) {
  if (index < 0) return;
  if (index >= lines_.size()) {
    lines_.append(line);
  } else {
    lines_[index] = line;
  }
  modified_ = true;
}

void TextBuffer::DeleteLine(int index) {
  if (index < 0 || index >= lines_.size()) return;
  lines_.removeAt(index);
  modified_ = true;
}

QString TextBuffer::Text(const QString& lineBreak) const {
  QString text;
  for (const QString& line : lines_) {
    text += line;
    text += lineBreak;
  }
  return text;
}

void TextBuffer::SetText(const QString& text) {
  lines_ = text.split(QRegularExpression(QStringLiteral("\r\n|\n|\r")));
  if (!lines_.isEmpty() && lines_.last().isEmpty()) lines_.removeLast();
  modified_ = true;
}

Result<bool> TextBuffer::SaveToFile(const QString& path, bool crlf) const {
  const QString text = Text(crlf ? QStringLiteral("\r\n") : QStringLiteral("\n"));
  Result<bool> written = WriteFileAtomically(path, text.toUtf8());
  if (written.ok()) modified_ = false;
  return written;
}

}  // namespace vt::app
