// SPDX-License-Identifier: MIT
#pragma once

// The instruction templates of the batch editor: the pages of its tab control with their
// condition and function lists, the line a chosen template writes, and the split of a batch line
// into the editor's fields and back.

#include <QList>
#include <QString>
#include <QStringList>

namespace vt::batch {

/// One page of the tab control above the two template boxes.
struct TemplatePage {
  QString name;
  QStringList conditions;  ///< ComboBox2, "If < > Conditions"
  QStringList functions;   ///< ComboBox1 and ComboBox5, "Then functions"
};

/// "Process", "Text", "Graphic", "Settings", "Bit Manipulations", "Math", "Excel Operations".
const QList<TemplatePage>& TemplatePages();

/// The template key of a box item: the item without what stands from its first to its last
/// quote ("then insert (index)'text'" gives "then insert (index)").
QString TemplateKey(const QString& item);

/// The line a chosen item writes: six blanks before an action or a "set hex" line, none before a
/// condition; " (modal switch)" after the two search switches. The bit items "AND (hex)" and
/// "OR (hex)" write the keywords the batch reads, "ANDL" and "ORL".
QString TemplateLine(const QString& item);

/// A batch line split into the editor's fields.
struct BatchLineFields {
  QString indent;   ///< the blanks before the keyword
  QString keyword;  ///< the keyword part, trimmed
  QString index;    ///< between the parentheses; empty when none
  QString text;     ///< between the quotes; empty when none
  QString comment;  ///< after "//", trimmed; empty when none
  bool hasIndex = false;
  bool hasText = false;
};

/// ReadPostString: the fields of `line`.
BatchLineFields ReadPostString(const QString& line);
/// The line the fields write: indent, keyword, "(index)", "'text'", " // comment".
QString WriteBatchLine(const BatchLineFields& fields);

}  // namespace vt::batch
