// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "util/error.h"

namespace vt::settings {

/// An ini text held in memory in the order of the file: sections in square brackets and
/// `key=value` lines. Names of sections and keys compare without regard to case and to blanks
/// around them; the first of two equal names wins, as in the classic ini reader. Lines that are
/// neither a section nor a key (comments, blanks) are kept and written back unchanged, and so
/// is every key nobody asks for. A line that is not UTF-8 (a file from a system with another
/// code page) is read byte for byte as Latin-1 and written back in the same bytes. Reading,
/// setting and writing take time in proportion to the size of the text.
class IniDocument {
 public:
  /// Largest text accepted: a settings file is a few tens of kilobytes.
  static constexpr qsizetype kMaxBytes = 16 * 1024 * 1024;

  /// Parses `text` (UTF-8, CRLF or LF line ends). Fails only for a text over kMaxBytes or one
  /// with a NUL byte, naming `path` (and the line of the NUL byte).
  static Result<IniDocument> Parse(const QByteArray& text, const QString& path = {});

  /// The value of `key` in `section`, or nothing when either is missing.
  std::optional<QString> Value(const QString& section, const QString& key) const;
  /// Sets the value in place when the key exists, else appends it at the end of its section,
  /// creating the section at the end of the document when needed.
  void SetValue(const QString& section, const QString& key, const QString& value);
  /// Removes the key when present.
  void Remove(const QString& section, const QString& key);

  /// Section names in file order.
  QStringList Sections() const;
  /// Key names of `section` in file order.
  QStringList Keys(const QString& section) const;

  /// The text to write: sections and lines in order, CRLF line ends.
  QByteArray Serialize() const;

 private:
  struct Line {
    QString key;  ///< empty for a line that is not a key
    QString value;
    QString raw;          ///< the original text of a non-key line
    bool latin1 = false;  ///< read as Latin-1 (it was not UTF-8): written back the same way
  };
  struct Section {
    QString name;
    bool latin1 = false;        ///< the name was read as Latin-1
    std::vector<Line> lines;    ///< up to the last line that is not blank
    std::vector<Line> blanks;   ///< the blank lines that end the section; new keys go before
    QHash<QString, int> index;  ///< folded key name -> first line of `lines` holding it
  };
  /// Appends a key line to `section`, after its last line that is not blank.
  static void AppendKey(Section& section, Line line);
  static void Reindex(Section& section);
  static QByteArray Encode(const QString& text, bool latin1);
  static QString Fold(const QString& name) { return name.trimmed().toLower(); }
  const Section* FindSection(const QString& name) const;
  Section* FindSection(const QString& name);

  std::vector<Line> preamble_;  ///< lines before the first section
  std::vector<Section> sections_;
  QHash<QString, int> sectionIndex_;
};

}  // namespace vt::settings
