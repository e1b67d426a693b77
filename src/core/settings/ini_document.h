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
/// is every key nobody asks for.
class IniDocument {
 public:
  /// Largest text accepted: a settings file is a few tens of kilobytes.
  static constexpr qsizetype kMaxBytes = 16 * 1024 * 1024;

  /// Parses `text` (UTF-8, CRLF or LF line ends). Fails only for a text over kMaxBytes or one
  /// with a NUL byte, naming `path` and the line.
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
    QString key;    ///< empty for a line that is not a key
    QString value;
    QString raw;    ///< the original text of a non-key line
  };
  struct Section {
    QString name;
    std::vector<Line> lines;
    QHash<QString, int> index;  ///< folded key name -> first line holding it
  };
  static QString Fold(const QString& name) { return name.trimmed().toLower(); }
  const Section* FindSection(const QString& name) const;
  Section* FindSection(const QString& name);

  std::vector<QString> preamble_;  ///< lines before the first section
  std::vector<Section> sections_;
  QHash<QString, int> sectionIndex_;
};

}  // namespace vt::settings
