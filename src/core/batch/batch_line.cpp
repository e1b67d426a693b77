// SPDX-License-Identifier: MIT
#include "batch/batch_line.h"

#include <QFile>
#include <QStringDecoder>

namespace vt::batch {
namespace {

constexpr qsizetype kCutLength = 100;

using K = KeywordKind;

}  // namespace

const QList<Keyword>& KeywordTable() {
  // Modal switches and conditions, then tasks, then actions, bit operations and the process
  // instructions, which are read and reported and do nothing else.
  static const QList<Keyword> kTable = {
      {"begin of loop", "begin of loop", K::Condition, false, false},
      {"end of loop", "end of loop", K::Condition, false, false},
      {"search back from line end", "search from end", K::Condition, false, false},
      {"search from line begin", "search from begin", K::Condition, false, false},
      {"case sensitive on", "case sensitive", K::Condition, false, false},
      {"case sensitive off", "case sensitive off", K::Condition, false, false},
      {"if", "if", K::Condition, false, true},
      {"if not", "if not", K::Condition, false, true},
      {"and", "and", K::Condition, false, true},
      {"and not", "and not", K::Condition, false, true},
      {"or ", "or", K::Condition, false, true},
      {"or not", "or not", K::Condition, false, true},
      {"while", "while", K::Condition, false, true},
      {"while not", "while not", K::Condition, false, true},
      {"if unconditional", "if unconditional", K::Condition, false, false},
      {"if line number", "if line", K::Condition, true, false},
      {"if last line", "if last line", K::Condition, false, false},
      {"if flag", "if flag", K::Condition, false, false},
      {"if not flag", "if not flag", K::Condition, false, false},
      {"and flag", "and flag", K::Condition, false, false},
      {"and not flag", "and not flag", K::Condition, false, false},
      {"or flag", "or flag", K::Condition, false, false},
      {"or not flag", "or not flag", K::Condition, false, false},
      {"if hex in line", "if hex in line", K::Condition, false, false},
      {"while hex in line", "while hex in line", K::Condition, false, false},
      {"if bit is set", "bit is set", K::Condition, true, false},
      {"if bit is cleared", "bit is cleared", K::Condition, true, false},
      {"if input", "if input", K::Condition, false, true},
      {"if not input", "if not input", K::Condition, false, true},
      {"and input", "and input", K::Condition, false, true},
      {"and not input", "and not input", K::Condition, false, true},
      {"or input", "or input", K::Condition, false, true},
      {"or not input", "or not input", K::Condition, false, true},
      {"while input", "while input", K::Condition, false, true},
      {"while not input", "while not input", K::Condition, false, true},

      {"load graphic", "load graphic", K::Task, false, true},
      {"convert graphic", "convert graphic", K::Task, false, false},
      {"overwrite data file", "overwrite data file", K::Task, false, false},
      {"set hex prefix as", "set hex prefix", K::Task, false, true},
      {"set hex suffix as", "set hex suffix", K::Task, false, true},

      {"then set flag", "set flag", K::Action, false, false},
      {"then reset flag", "reset flag", K::Action, false, false},
      {"then search", "search text", K::Action, false, true},
      {"then insert", "Insert", K::Action, true, true},
      {"overwrite", "Overwrite", K::Action, true, true},
      {"overwrite hex", "Overwrite hex", K::Action, false, false},
      {"remove", "Remove", K::Action, false, true},
      {"then delete until", "delete until", K::Action, true, true},
      {"then get integer", "get integer", K::Action, true, false},
      {"then get hex", "get hex", K::Action, true, false},
      {"then get float", "get float", K::Action, true, false},
      {"then get string", "get string", K::Action, true, false},
      {"then insert hex", "insert hex", K::Action, true, false},
      {"then insert float", "insert float", K::Action, true, false},
      {"then insert string", "insert string", K::Action, true, false},
      {"then next line", "next line", K::Action, false, false},
      {"delete line", "Delete Line", K::Action, false, false},
      {"then insert line", "Insert line", K::Action, false, false},
      {"save as", "Save As", K::Action, false, true},
      {"save copy", "Save Copy", K::Action, false, true},
      {"start copy", "Start Copy", K::Action, false, false},
      {"stop copy", "Stop Copy", K::Action, false, false},
      {"start delete", "Start Delete", K::Action, false, false},
      {"stop delete", "Stop Delete", K::Action, false, false},
      {"load and insert", "Load File", K::Action, false, true},

      {"NOT", "NOT", K::Action, true, false},
      {"XOR", "XOR", K::Action, true, false},
      {"ORL", "OR", K::Action, true, false},
      {"ANDL", "AND", K::Action, true, false},
      {"shift right", "shift right", K::Action, true, false},
      {"shift left", "shift left", K::Action, true, false},
      {"rotate bits to right", "rotate bits to right", K::Action, true, false},
      {"rotate bits to left", "rotate bits to left", K::Action, true, false},
      {"set bit", "set bit", K::Action, true, false},
      {"toggle bit", "toggle bit", K::Action, true, false},
      {"clear bit", "clear bit", K::Action, true, false},

      {"type of batch", "type of batch", K::Action, false, true},
      {"screen message", "screen message", K::Action, true, true},
      {"[U] set output", "[U] set output", K::Action, false, true},
      {"[U] reset output", "[U] reset output", K::Action, false, true},
      {"[U] get analog input", "[U] get analog input", K::Action, false, true},
      {"[U] set analog output", "[U] set analog output", K::Action, false, true},
      {"then get input", "then get input", K::Action, false, true},
      {"then get analog input", "then get analog input", K::Action, false, true},
      {"then set analog output", "then set analog output", K::Action, false, true},
      {"then set output", "then set output", K::Action, false, true},
      {"then reset output", "then reset output", K::Action, false, true},
      {"[U] run", "[U] run", K::Action, false, true},
      {"then run", "then run", K::Action, false, true},
      {"log ", "log", K::Action, false, true},
      {"process name", "process name", K::Action, false, true},
      {"set timeout", "set timeout", K::Action, true, false},
      {"pause ", "pause", K::Action, true, false},
      {"tick ", "tick", K::Action, true, false},
  };
  return kTable;
}

QString KeywordPart(const QString& line) {
  QString part = line;
  const qsizetype quote = part.indexOf(QLatin1Char('\''));
  const qsizetype paren = part.indexOf(QLatin1Char('('));
  qsizetype cut = quote;
  if (cut < 0 || (paren >= 0 && paren < cut)) cut = paren;
  // A tail longer than the cut stays in the keyword part.
  if (cut >= 0) part.remove(cut, kCutLength);
  const qsizetype comment = part.indexOf(QStringLiteral("//"));
  if (comment >= 0) part.remove(comment, kCutLength);
  return part;
}

QList<const Keyword*> FindKeywords(const QString& keywordPart) {
  struct Found {
    const Keyword* keyword;
    qsizetype at;
    qsizetype length;
  };
  QList<Found> found;
  for (const Keyword& keyword : KeywordTable()) {
    const QString word = QString::fromLatin1(keyword.word);
    const qsizetype at = keywordPart.indexOf(word);
    if (at >= 0) found.append({&keyword, at, word.size()});
  }
  QList<const Keyword*> kept;
  for (const Found& f : found) {
    const bool inside = std::any_of(found.cbegin(), found.cend(), [&f](const Found& longer) {
      return longer.length > f.length && longer.at <= f.at &&
             f.at + f.length <= longer.at + longer.length;
    });
    if (!inside) kept.append(f.keyword);
  }
  return kept;
}

std::optional<QString> TextArgument(const QString& line) {
  const qsizetype first = line.indexOf(QLatin1Char('\''));
  const qsizetype last = line.lastIndexOf(QLatin1Char('\''));
  if (first < 0 || last == first) return std::nullopt;
  return line.mid(first + 1, last - first - 1);
}

std::optional<QString> IndexArgument(const QString& line) {
  const qsizetype open = line.indexOf(QLatin1Char('('));
  if (open < 0) return std::nullopt;
  const qsizetype close = line.indexOf(QLatin1Char(')'), open + 1);
  if (close < 0) return std::nullopt;
  return line.mid(open + 1, close - open - 1);
}

bool BatchParser::ParseBatchLine(int lineIndex, bool actionPhase, BlockRows& rows) {
  const QString line = Line(lineIndex);
  LastWasBoundary = false;
  const QString part = KeywordPart(line);
  if (part.trimmed().isEmpty()) {
    LastWasBoundary = true;
    if (actionPhase) {
      EndOfBlockAction = true;
    } else {
      EndOfBlockCondition = true;
    }
    return false;
  }

  const QList<const Keyword*> keywords = FindKeywords(part);
  QList<BatchRow>* target = nullptr;  // the list whose new rows take the line's arguments
  qsizetype firstNew = 0;
  bool condition = false;
  for (const Keyword* k : keywords) {
    if (k->kind == KeywordKind::Condition && !condition) {
      condition = true;
      firstNew = rows.conditions.size();
      target = &rows.conditions;
    }
  }
  qsizetype firstTask = rows.tasks.size();
  for (const Keyword* k : keywords) {
    if (k->kind == KeywordKind::Condition) {
      rows.conditions.append({QString::fromLatin1(k->stored), {}, {}});
      rows.tasks.append({QStringLiteral("none"), {}, {}});
      LastWasBoundary = true;
    } else if (k->kind == KeywordKind::Task) {
      rows.tasks.append({QString::fromLatin1(k->stored), {}, {}});
      LastWasBoundary = true;
      if (target == nullptr) {
        target = &rows.tasks;
        firstNew = firstTask;
        // A task's row stands after the "none" rows its line's conditions added.
        while (firstNew < rows.tasks.size() && rows.tasks[firstNew].name == QLatin1String("none"))
          ++firstNew;
      }
    }
  }
  if (!condition) {
    // An action line: every action keyword found adds its row.
    const qsizetype firstAction = rows.actions.size();
    for (const Keyword* k : keywords) {
      if (k->kind == KeywordKind::Action)
        rows.actions.append({QString::fromLatin1(k->stored), {}, {}});
    }
    if (rows.actions.size() > firstAction && target == nullptr) {
      target = &rows.actions;
      firstNew = firstAction;
    }
  }

  // The index goes to the first new row whose keyword takes one, the text to the first whose
  // keyword needs one (or to the first new row).
  const std::optional<QString> text = TextArgument(line);
  const std::optional<QString> index = IndexArgument(line);
  if (target != nullptr && firstNew < target->size()) {
    auto keywordOf = [&keywords](const BatchRow& row) -> const Keyword* {
      for (const Keyword* k : keywords)
        if (row.name == QLatin1String(k->stored)) return k;
      return nullptr;
    };
    bool indexGiven = false;
    qsizetype textRow = -1;
    for (qsizetype r = firstNew; r < target->size(); ++r) {
      const Keyword* k = keywordOf((*target)[r]);
      if (k == nullptr) continue;
      if (index && k->takesIndex && !indexGiven) {
        (*target)[r].index = *index;
        indexGiven = true;
      }
      if (k->needsText && textRow < 0) textRow = r;
    }
    if (text) (*target)[textRow >= 0 ? textRow : firstNew].text = *text;
  }
  const bool needsNone = std::any_of(keywords.cbegin(), keywords.cend(),
                                     [](const Keyword* k) { return !k->needsText; });
  return text.has_value() || needsNone;
}

QStringList NormaliseBatchLines(QStringList lines, QList<int>* origins) {
  QList<int> kept;
  for (int i = 0; i < lines.size(); ++i) kept.append(i);
  // "Holds" is read on the keyword part and its keywords, so that a text or comment, or the
  // "if" inside "shift", does not count.
  auto conditional = [](const QString& line) {
    const QList<const Keyword*> keywords = FindKeywords(KeywordPart(line));
    return std::any_of(keywords.cbegin(), keywords.cend(), [](const Keyword* k) {
      const QLatin1String word(k->word);
      return k->kind == KeywordKind::Condition &&
             (word.startsWith(QLatin1String("if")) || word.startsWith(QLatin1String("while")));
    });
  };
  bool removed = true;
  while (removed) {
    removed = false;
    if (!lines.isEmpty() && KeywordPart(lines.first()).contains(QLatin1String("then"))) {
      lines.removeFirst();
      kept.removeFirst();
      removed = true;
      continue;
    }
    for (qsizetype i = 1; i < lines.size(); ++i) {
      if (conditional(lines[i - 1]) && conditional(lines[i])) {
        lines.removeAt(i);
        kept.removeAt(i);
        removed = true;
        break;
      }
    }
  }
  if (origins != nullptr) *origins = kept;
  return lines;
}

Result<QStringList> ReadBatchFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return Error{Error::Kind::Io, path, 0, 0, file.errorString()};
  }
  const QByteArray bytes = file.readAll();
  QStringDecoder decode(QStringDecoder::Utf8);
  QString text = decode(bytes);
  if (decode.hasError()) text = QString::fromLatin1(bytes);  // an older batch in a single-byte code
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  if (text.endsWith(QLatin1Char('\n'))) text.chop(1);
  if (text.isEmpty()) return QStringList{};
  return text.split(QLatin1Char('\n'));
}

}  // namespace vt::batch
