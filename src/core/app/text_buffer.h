// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "util/error.h"

namespace vt::app {

/// The line-addressed text editor model: what the export, the font generator and the batch
/// interpreter write into and what the source editor widget shows. Lines hold no line breaks of
/// their own. Every change raises the modified flag; clearing and saving lower it.
class TextBuffer {
 public:
  /// Removes every line and lowers the modified flag.
  void Clear();
  /// Appends `line` as the new last line.
  void AddLine(const QString& line);
  /// The line at `index` (0-based), or an empty text when there is no such line.
  QString Line(int index) const;
  /// The last line, or an empty text when the buffer is empty.
  QString LastLine() const;
  /// Replaces the line at `index`. An index past the end appends the line; a negative one is
  /// ignored.
  void ReplaceLine(int index, const QString& line);
  /// Deletes the line at `index`; an index out of range changes nothing.
  void DeleteLine(int index);
  /// Number of lines.
  int Count() const { return static_cast<int>(lines_.size()); }
  bool IsEmpty() const { return lines_.isEmpty(); }
  const QStringList& Lines() const { return lines_; }

  /// The whole text: every line followed by `lineBreak` (an empty buffer gives an empty text).
  QString Text(const QString& lineBreak = QStringLiteral("\n")) const;
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
  QStringList lines_;
  mutable bool modified_ = false;  // saving is a read of the text that only resets this flag
};

}  // namespace vt::app
