// SPDX-License-Identifier: MIT
#include "batch/batch_templates.h"

#include "batch/batch_line.h"

namespace vt::batch {

const QList<TemplatePage>& TemplatePages() {
  static const QList<TemplatePage> kPages = {
      {QStringLiteral("Process"),
       {},
       {"then get input 'name'", "then set output 'name'", "then reset output 'name'",
        "then get analog input 'name'", "then set analog output 'name'", "then run 'batch'",
        "type of batch 'type'", "screen message (index)'text'", "[U] set output 'name'",
        "[U] reset output 'name'", "[U] get analog input 'name'", "[U] set analog output 'name'",
        "[U] run 'batch'", "log 'text'", "process name 'text'", "set timeout (time)",
        "pause (time)", "tick (time)"}},
      {QStringLiteral("Text"),
       {"if 'text'",
        "if not 'text'",
        "while 'text'",
        "if line number(index)",
        "if last line",
        "if flag",
        "if not flag",
        "and 'text'",
        "and flag",
        "and not 'text'",
        "and not flag",
        "or 'text'",
        "or flag",
        "or not 'text'",
        "or not flag",
        "begin of loop",
        "end of loop",
        "search back from line end",
        "search from line begin",
        "case sensitive on",
        "case sensitive off",
        "set hex prefix as 'text'",
        "set hex suffix as 'text'"},
       {"then set flag",
        "then reset flag",
        "then search 'text'",
        "then insert (index)'text'",
        "then overwrite (index)'text'",
        "then overwrite hex ",
        "then remove 'text'",
        "then delete until 'text'",
        "then get integer (index)",
        "then get hex (index)",
        "then get float (index)",
        "then get string (index)",
        "then insert integer (index)",
        "then insert hex (index)",
        "then insert float (index)",
        "then insert string (index)",
        "then next line",
        "then delete line",
        "then insert line",
        "then save as 'file'",
        "then start copy",
        "then stop copy",
        "then start delete",
        "then stop delete",
        "then save copy as 'file'",
        "then load and insert 'file'"}},
      {QStringLiteral("Graphic"),
       {"if hex in line", "while hex in line"},
       {"load graphic 'filename'", "convert graphic to data", "overwrite data file"}},
      {QStringLiteral("Settings"), {}, {}},
      {QStringLiteral("Bit Manipulations"),
       {"if bit is set (number)", "if bit is cleared (number)"},
       {"AND (hex)", "OR (hex)", "XOR (hex)", "NOT hex", "shift left (number)",
        "shift right (number)", "rotate bits to left (number)", "rotate bits to right (number)",
        "set bit (number)", "toggle bit (number)", "clear bit (number)"}},
      {QStringLiteral("Math"), {}, {}},
      {QStringLiteral("Excel Operations"), {}, {"open Excel sheet 'file'"}},
  };
  return kPages;
}

QString TemplateKey(const QString& item) {
  const qsizetype first = item.indexOf(QLatin1Char('\''));
  const qsizetype last = item.lastIndexOf(QLatin1Char('\''));
  if (first < 0 || last == first) return item;
  return QString(item).remove(first, last - first + 1);
}

QString TemplateLine(const QString& item) {
  QString line = item;
  if (line.startsWith(QLatin1String("AND ("))) line.replace(0, 3, QStringLiteral("ANDL"));
  if (line.startsWith(QLatin1String("OR ("))) line.replace(0, 2, QStringLiteral("ORL"));
  const QList<const Keyword*> keywords = FindKeywords(KeywordPart(line));
  const bool condition = std::any_of(keywords.cbegin(), keywords.cend(), [](const Keyword* k) {
    return k->kind == KeywordKind::Condition;
  });
  const bool setHex = line.startsWith(QLatin1String("set hex"));
  if (line == QLatin1String("search back from line end") ||
      line == QLatin1String("search from line begin")) {
    line += QStringLiteral(" (modal switch)");
  }
  return (condition && !setHex) ? line : QStringLiteral("      ") + line;
}

BatchLineFields ReadPostString(const QString& line) {
  BatchLineFields f;
  qsizetype n = 0;
  while (n < line.size() && line[n] == QLatin1Char(' ')) ++n;
  f.indent = line.left(n);
  f.keyword = KeywordPart(line).trimmed();
  if (const std::optional<QString> index = IndexArgument(line)) {
    f.index = *index;
    f.hasIndex = true;
  }
  if (const std::optional<QString> text = TextArgument(line)) {
    f.text = *text;
    f.hasText = true;
  }
  // A comment after the text, or after the keyword when there is none.
  const qsizetype last = line.lastIndexOf(QLatin1Char('\''));
  const qsizetype comment = line.indexOf(QStringLiteral("//"), last < 0 ? 0 : last);
  if (comment >= 0) f.comment = line.mid(comment + 2).trimmed();
  return f;
}

QString WriteBatchLine(const BatchLineFields& f) {
  QString line = f.indent + f.keyword;
  if (f.hasIndex) line += QStringLiteral(" (") + f.index + QLatin1Char(')');
  if (f.hasText) {
    // A blank between the keyword and the text; none after an index.
    if (!f.hasIndex && !f.keyword.isEmpty()) line += QLatin1Char(' ');
    line += QLatin1Char('\'') + f.text + QLatin1Char('\'');
  }
  if (!f.comment.isEmpty()) line += QStringLiteral("   // ") + f.comment;
  return line;
}

}  // namespace vt::batch
