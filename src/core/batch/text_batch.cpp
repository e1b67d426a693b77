// SPDX-License-Identifier: MIT
#include "batch/text_batch.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringDecoder>
#include <cmath>

#include "platform/key_poll.h"
#include "platform/messenger.h"
#include "util/atomic_write.h"

namespace vt::batch {
namespace {

constexpr int kNoInteger = 9999;
/// Repeats on one line, over the endless limit's factor, that count as a block that never ends.
constexpr int kRepeatFactor = 100;

/// A hexadecimal digit in either case: the values are read as the upper-cased line shows them.
bool IsHexDigit(QChar c) {
  return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
         (c >= QLatin1Char('A') && c <= QLatin1Char('F')) ||
         (c >= QLatin1Char('a') && c <= QLatin1Char('f'));
}

/// The length of the run of hexadecimal digits of `text` from `from`.
qsizetype HexRunLength(const QString& text, qsizetype from) {
  qsizetype n = from;
  while (n < text.size() && IsHexDigit(text[n])) ++n;
  return n - from;
}

/// At least `digits` upper-case digits of `value` in base 2 to the `shift`, never fewer than it
/// needs.
QString DigitText(quint64 value, int digits, int shift) {
  char buffer[72];
  int n = 0;
  const quint64 mask = (quint64(1) << shift) - 1;
  do {
    buffer[sizeof(buffer) - 1 - n++] = "0123456789ABCDEF"[value & mask];
    value >>= shift;
  } while (value != 0 && n < 64);
  while (n < digits && n < 64) buffer[sizeof(buffer) - 1 - n++] = '0';
  return QString::fromLatin1(buffer + sizeof(buffer) - n, n);
}

/// At least `digits` upper-case hexadecimal digits of `value`, never fewer than it needs.
QString HexText(quint64 value, int digits) { return DigitText(value, digits, 4); }

/// At least `bits` binary digits of `value`.
QString BitText(quint64 value, int bits) { return DigitText(value, bits, 1); }

/// The bit and number operations on the hexadecimal value.
enum class BitOp {
  None,
  Not,
  Xor,
  Or,
  And,
  ShiftRight,
  ShiftLeft,
  RotateRight,
  RotateLeft,
  SetBit,
  ClearBit,
  ToggleBit
};

BitOp BitOpOf(const QString& name) {
  static const QHash<QString, BitOp> kOps = {
      {QStringLiteral("NOT"), BitOp::Not},
      {QStringLiteral("XOR"), BitOp::Xor},
      {QStringLiteral("OR"), BitOp::Or},
      {QStringLiteral("AND"), BitOp::And},
      {QStringLiteral("shift right"), BitOp::ShiftRight},
      {QStringLiteral("shift left"), BitOp::ShiftLeft},
      {QStringLiteral("rotate bits to right"), BitOp::RotateRight},
      {QStringLiteral("rotate bits to left"), BitOp::RotateLeft},
      {QStringLiteral("set bit"), BitOp::SetBit},
      {QStringLiteral("clear bit"), BitOp::ClearBit},
      {QStringLiteral("toggle bit"), BitOp::ToggleBit},
  };
  return kOps.value(name, BitOp::None);
}

/// An action row read once for the visits: its bit operation, and its index as a number.
struct ActionPlan {
  BitOp op = BitOp::None;
  bool hasIndex = false;  ///< the index cell gives IndexValue
  int index = 0;
};

ActionPlan PlanOf(const BatchRow& row) {
  ActionPlan plan;
  plan.op = BitOpOf(row.name);
  bool number = false;
  const int decimal = row.index.trimmed().toInt(&number);
  if (number) {
    plan.hasIndex = true;
    plan.index = decimal;
  } else if (plan.op == BitOp::Xor || plan.op == BitOp::Or || plan.op == BitOp::And ||
             plan.op == BitOp::Not) {
    // Not a decimal number: read as hexadecimal.
    plan.hasIndex = true;
    plan.index = static_cast<int>(row.index.trimmed().toUInt(nullptr, 16));
  }
  return plan;
}

/// The steps of the block loop.
enum class Step {
  ClearRows,   // 1
  CheckEnd,    // 2
  NextLine,    // 3
  ParseFirst,  // 4
  ParseBlock,  // 5 to 7
  Visit,       // 8a
  VisitTest,   // 8b
  VisitRun,    // 8c to 8g
  LastVisit,   // 9
  Advance,     // 10
  AfterVisit,  // 11
  EndOfPass,   // 12
};

/// One run: the state of the interpreter and its steps.
class Interpreter {
 public:
  Interpreter(QStringList& text, QStringList& report, HexDelimiters& hex,
              platform::Messenger& messenger, platform::KeyPoll& escape, TextBatchHost& host,
              const TextBatchOptions& options, const BatchProgress& progress)
      : TextLines(text),
        ReportLines(report),
        hex_(hex),
        messenger_(messenger),
        escape_(escape),
        host_(host),
        options_(options),
        progress_(progress) {}

  TextBatchResult Run(const QStringList& batchLines);

 private:
  // The text, read past the end as empty.
  QString LineAt(int index) const {
    return index >= 0 && index < TextLines.size() ? TextLines[index] : QString();
  }
  bool SetLineAt(int index, const QString& line) {
    if (index < 0 || index >= TextLines.size()) return false;
    TextLines[index] = line;
    ++generation_;
    return true;
  }

  // The report: a new line, or a piece on the current one.
  void ReportLine(const QString& text) { ReportLines.append(text); }
  void Report(const QString& piece) {
    if (options_.silent) return;
    if (ReportLines.isEmpty()) ReportLines.append(QString());
    ReportLines.last() += piece;
  }

  int Find(const QString& line, const QString& text, bool caseSensitive, bool fromBegin) const;
  void RunCondition(const BatchRow& row);
  void RunActions();
  void RunAction(const BatchRow& row);
  void RunTask(const BatchRow& row);
  bool IfHexInLine();
  bool ReadHex(int skip);
  void BitOperation(BitOp op);
  void GetInteger();
  void GetFloat();
  void Insert(const QString& text, const QString& line);
  void SearchText();
  void LoadFile();
  bool SaveLines(const QStringList& lines, const QString& name);
  bool Endless();

  QStringList& TextLines;
  QStringList& ReportLines;
  HexDelimiters& hex_;
  platform::Messenger& messenger_;
  platform::KeyPoll& escape_;
  TextBatchHost& host_;
  const TextBatchOptions& options_;
  const BatchProgress& progress_;
  TextBatchResult result_;

  BlockRows rows_;
  std::vector<ActionPlan> plans_;  // one per action row, made when the rows grow
  QStringList CopyBuffer;
  int LineCursor = -1;
  int DeletedCount = 0;
  int progressMax_ = 0;
  bool ConditionResult = false;
  bool RepeatLine = false;
  bool UserFlag = false;
  bool CaseSensitive = false;
  bool SearchFromBegin = true;
  int MatchPos = 0;
  int MatchLen = 0;
  int IndexValue = 0;
  int IntegerValue = kNoInteger;
  long double FloatValue = 0;
  QString StringValue;
  QString HexValue;
  int HexDigits = 0;
  int HexBits = 0;
  QString ActionText;
  bool StopAfterPass = false;
  bool abort_ = false;
  bool loaded_ = false;  // a load replaced the text: the pass ends
  bool tasksDue_ = false;
  int taskCursor_ = 0;
  int hexCounter_ = 0;        // the value "while hex in line" reads next
  bool copyStarted_ = false;  // "then start copy" acts once a run
  bool copying_ = false;
  int copyStart_ = 0;
  bool deleteStarted_ = false;  // "then start delete" acts once a run
  bool deleteOpen_ = false;
  int deleteStart_ = 0;
  int repeats_ = 0;  // visits of one line in a row

  // "then search": the last answer, valid while the text is unchanged.
  quint64 generation_ = 0;
  struct SearchMemo {
    quint64 generation = ~quint64(0);
    QString text;
    bool caseSensitive = false;
    int from = 0;
    int found = -1;  // -1: not found from `from` to the end
  } searchMemo_;
};

bool IsLineConditionName(const QString& name) {
  static const QSet<QString> kNames = {
      QStringLiteral("if line"),
      QStringLiteral("if last line"),
      QStringLiteral("and"),
      QStringLiteral("if"),
      QStringLiteral("and flag"),
      QStringLiteral("if flag"),
      QStringLiteral("while"),
      QStringLiteral("if not"),
      QStringLiteral("if not flag"),
      QStringLiteral("while not"),
      QStringLiteral("and not"),
      QStringLiteral("or not"),
      QStringLiteral("and not flag"),
      QStringLiteral("or not flag"),
      QStringLiteral("or"),
      QStringLiteral("or flag"),
      QStringLiteral("bit is set"),
      QStringLiteral("bit is cleared"),
      QStringLiteral("if unconditional"),
      QStringLiteral("if hex in line"),
      QStringLiteral("while hex in line"),
  };
  return kNames.contains(name);
}

int Interpreter::Find(const QString& line, const QString& text, bool caseSensitive,
                      bool fromBegin) const {
  if (text.isEmpty()) return 0;  // an empty text is never found
  if (fromBegin) {
    return static_cast<int>(
        line.indexOf(text, 0, caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) + 1);
  }
  QString l = caseSensitive ? line : line.toUpper();
  const QString t = caseSensitive ? text : text.toUpper();
  qsizetype at = l.indexOf(t);
  if (fromBegin || at < 0) return static_cast<int>(at + 1);
  // The last occurrence: each one found is overwritten with blanks until none remains.
  qsizetype last = at;
  while (at >= 0) {
    last = at;
    l.replace(at, t.size(), QString(t.size(), QLatin1Char(' ')));
    at = l.indexOf(t, at + 1);
  }
  return static_cast<int>(last + 1);
}

bool Interpreter::IfHexInLine() {
  const QString& prefix = hex_.HexPrefix;
  const QString& suffix = hex_.HexSuffix;
  if (prefix.isEmpty() && suffix.isEmpty()) {
    Report(QStringLiteral("  >> Error : No hex Prefix AND No hex Suffix defined"));
    return false;
  }
  // Compared in upper case: a search that ignores case.
  const QString line = LineAt(LineCursor);
  const qsizetype p = prefix.isEmpty() ? 0 : line.indexOf(prefix, 0, Qt::CaseInsensitive) + 1;
  const qsizetype s = suffix.isEmpty() ? 0 : line.indexOf(suffix, 0, Qt::CaseInsensitive) + 1;
  const bool found = !(!prefix.isEmpty() && p == 0) && !(!suffix.isEmpty() && s == 0) &&
                     !(!prefix.isEmpty() && !suffix.isEmpty() && s < p);
  Report(found ? QStringLiteral("  >> True") : QStringLiteral("  >> False"));
  return found;
}

bool Interpreter::ReadHex(int skip) {
  const QString& prefix = hex_.HexPrefix;
  const QString& suffix = hex_.HexSuffix;
  if (prefix.isEmpty() && suffix.isEmpty()) {
    Report(QStringLiteral("  >> Error : No hex Prefix AND No hex Suffix defined"));
    return false;
  }
  // The line is read as if upper-cased: searches ignore case, the value is upper-cased.
  const QString line = LineAt(LineCursor);
  auto none = [this] {
    Report(QStringLiteral(" No_Hex_Value"));
    return false;
  };
  qsizetype at = 0;  // the reading position in the line
  if (!prefix.isEmpty()) {
    // Each value to skip: through its prefix and the digits after it.
    for (int k = 0; k < skip; ++k) {
      const qsizetype p = line.indexOf(prefix, at, Qt::CaseInsensitive);
      if (p < 0) return none();
      at = p + prefix.size();
      at += HexRunLength(line, at);
    }
    const qsizetype p = line.indexOf(prefix, at, Qt::CaseInsensitive);
    if (p < 0) return none();
    MatchPos = static_cast<int>(p + 1);
    at = p + prefix.size();
  }
  int skipped = 0;
  QString value;
  while (value.isEmpty()) {
    while (at < line.size() && !IsHexDigit(line[at])) ++at;
    if (at >= line.size()) return none();
    const qsizetype run = HexRunLength(line, at);
    const bool closed =
        suffix.isEmpty() || QStringView(line).mid(at + run).startsWith(suffix, Qt::CaseInsensitive);
    if (closed && prefix.isEmpty() && skipped < skip) {
      ++skipped;  // without a prefix the values to skip are counted here
    } else if (closed) {
      value = line.mid(at, run).toUpper();
      // Without a prefix the value itself is where "then overwrite hex" writes.
      if (prefix.isEmpty()) MatchPos = static_cast<int>(at + 1);
    }
    at += run;
  }
  if (value.size() == 1) value.prepend(QLatin1Char('0'));
  HexValue = value;
  HexDigits = static_cast<int>(value.size());
  HexBits = HexDigits * 4;
  Report(HexBits < 33 ? QStringLiteral(" ") + HexValue : QStringLiteral(" ERROR_32_bit_max "));
  return true;
}

void Interpreter::RunCondition(const BatchRow& row) {
  const QString& name = row.name;
  const QString line = LineAt(LineCursor);
  auto find = [&](bool exact, bool first) {
    const int at = Find(line, row.text, exact, first);
    if (at > 0) {
      MatchPos = at;
      MatchLen = static_cast<int>(row.text.size());
    }
    return at > 0;
  };
  if (name == QLatin1String("if")) {
    ConditionResult = find(CaseSensitive, SearchFromBegin);
  } else if (name == QLatin1String("if not")) {
    ConditionResult = Find(line, row.text, CaseSensitive, SearchFromBegin) == 0;
  } else if (name == QLatin1String("and")) {
    if (ConditionResult) ConditionResult = find(CaseSensitive, SearchFromBegin);
  } else if (name == QLatin1String("and not")) {
    ConditionResult = !find(true, true);
  } else if (name == QLatin1String("or")) {
    if (!ConditionResult) ConditionResult = find(CaseSensitive, SearchFromBegin);
  } else if (name == QLatin1String("or not")) {
    if (!ConditionResult)
      ConditionResult = Find(line, row.text, CaseSensitive, SearchFromBegin) == 0;
  } else if (name == QLatin1String("while")) {
    ConditionResult = find(CaseSensitive, SearchFromBegin);
    if (ConditionResult) RepeatLine = true;
  } else if (name == QLatin1String("while not")) {
    ConditionResult = Find(line, row.text, CaseSensitive, SearchFromBegin) == 0;
    if (ConditionResult) RepeatLine = true;
  } else if (name == QLatin1String("if unconditional")) {
    ConditionResult = true;
  } else if (name == QLatin1String("if line")) {
    const int index = row.index == QLatin1String("index") ? 1 : row.index.trimmed().toInt();
    ConditionResult = index == LineCursor + 1;
  } else if (name == QLatin1String("if last line")) {
    ConditionResult = LineCursor == TextLines.size() - 1;
  } else if (name == QLatin1String("if flag")) {
    ConditionResult = UserFlag;
  } else if (name == QLatin1String("if not flag")) {
    ConditionResult = !UserFlag;
  } else if (name == QLatin1String("and flag")) {
    if (ConditionResult && !UserFlag) ConditionResult = false;
  } else if (name == QLatin1String("and not flag")) {
    ConditionResult = !UserFlag;
  } else if (name == QLatin1String("or flag")) {
    if (!ConditionResult && UserFlag) ConditionResult = true;
  } else if (name == QLatin1String("or not flag")) {
    if (!ConditionResult && !UserFlag) ConditionResult = true;
  } else if (name == QLatin1String("bit is set") || name == QLatin1String("bit is cleared")) {
    const QString index = row.index.trimmed();
    const int bit =
        index == QLatin1String("number") || index == QLatin1String("hex") ? 0 : index.toInt();
    if (HexValue.isEmpty()) {
      Report(QStringLiteral(" GOT_No_Hex_Value"));
    } else if (bit > 31) {
      Report(QStringLiteral(" Bit Number > 31"));
    } else {
      const quint64 v = HexValue.toULongLong(nullptr, 16);
      const bool set = (v >> bit) & 1u;
      ConditionResult = name == QLatin1String("bit is set") ? set : !set;
    }
  } else if (name == QLatin1String("if hex in line")) {
    ConditionResult = IfHexInLine();
  } else if (name == QLatin1String("while hex in line")) {
    ConditionResult = IfHexInLine();
    if (ConditionResult) {
      const bool read = ReadHex(hexCounter_);
      ++hexCounter_;
      if (!read) {
        RepeatLine = false;
        hexCounter_ = 0;
      } else {
        RepeatLine = true;
      }
    }
  } else if (name == QLatin1String("search from end")) {
    SearchFromBegin = false;
  } else if (name == QLatin1String("search from begin")) {
    SearchFromBegin = true;
  } else if (name == QLatin1String("case sensitive")) {
    CaseSensitive = true;
  } else if (name == QLatin1String("case sensitive off")) {
    CaseSensitive = false;
  }
  // "begin of loop", "end of loop" and the input conditions change nothing.
}

void Interpreter::RunActions() {
  const QList<BatchRow>& actions = rows_.actions;
  if (plans_.size() != static_cast<std::size_t>(actions.size())) {
    plans_.clear();
    for (const BatchRow& row : actions) plans_.push_back(PlanOf(row));
  }
  for (qsizetype a = 0; a < actions.size(); ++a) {
    const ActionPlan& plan = plans_[static_cast<std::size_t>(a)];
    if (plan.op == BitOp::None) {
      RunAction(actions[a]);
      continue;
    }
    if (plan.hasIndex) IndexValue = plan.index;
    ActionText = actions[a].text;
    if (ConditionResult) BitOperation(plan.op);
  }
}

void Interpreter::Insert(const QString& text, const QString& original) {
  QString line = original;
  if (line.size() < IndexValue) line = line.leftJustified(IndexValue, QLatin1Char(' '));
  const qsizetype at = std::clamp<qsizetype>(IndexValue - 1, 0, line.size());
  line.insert(at, text);
  if (SetLineAt(LineCursor, line)) ++result_.Occurences;
  Report(QStringLiteral("  >> ") + text);
}

void Interpreter::BitOperation(BitOp op) {
  const bool bitCommand = op == BitOp::SetBit || op == BitOp::ClearBit || op == BitOp::ToggleBit;
  if (HexValue.isEmpty()) {
    if (bitCommand) Report(QStringLiteral(" GOT_No_Hex_Value"));
    return;
  }
  const quint32 v = static_cast<quint32>(HexValue.toULongLong(nullptr, 16));
  const quint32 n = static_cast<quint32>(IndexValue);
  const quint32 w = static_cast<quint32>(HexDigits * 4);
  quint32 r = 0;
  switch (op) {
    case BitOp::Not:
      r = ~v;
      break;
    case BitOp::Xor:
      r = v ^ n;
      break;
    case BitOp::Or:
      r = v | n;
      break;
    case BitOp::And:
      r = v & n;
      break;
    case BitOp::ShiftRight:
      r = v >> (n & 31);
      break;
    case BitOp::ShiftLeft:
      r = static_cast<quint32>(v << (n & 31));
      break;
    case BitOp::RotateRight:
      r = (v >> (n & 31)) + static_cast<quint32>(v << ((w - n) & 31));
      break;
    case BitOp::RotateLeft:
      r = static_cast<quint32>(v << (n & 31)) + (v >> ((w - n) & 31));
      break;
    case BitOp::SetBit:
    case BitOp::ClearBit:
    case BitOp::ToggleBit: {
      if (n > 31) {
        Report(QStringLiteral(" Bit Number > 31"));
        return;
      }
      const quint32 mask = quint32(1) << n;
      r = op == BitOp::SetBit ? (v | mask) : op == BitOp::ClearBit ? (v & ~mask) : (v ^ mask);
      break;
    }
    case BitOp::None:
      return;
  }
  QString after = HexText(r, HexDigits);
  quint64 afterValue = r;
  if (op == BitOp::Not) {
    after.truncate(HexBits);  // the complement over 32 bits, cut to its first HexBits characters
  } else if (op == BitOp::ShiftLeft || op == BitOp::RotateRight || op == BitOp::RotateLeft) {
    after = after.right(HexDigits);
    if (HexBits < 64) afterValue &= (quint64(1) << HexBits) - 1;
  }
  HexValue = after;
  ++result_.Occurences;
  if (options_.silent) return;
  // Written straight onto the report line: this runs for every value of every line.
  if (ReportLines.isEmpty()) ReportLines.append(QString());
  QString& out = ReportLines.last();
  out += QLatin1String("  >> ");
  out += BitText(v, HexBits);
  out += QLatin1String(" >> ");
  out += BitText(afterValue, HexBits);
  out += QLatin1Char(' ');
  out += hex_.HexPrefix;
  out += HexValue;
  out += hex_.HexSuffix;
}

void Interpreter::GetInteger() {
  const QString line = LineAt(LineCursor);
  QList<int> numbers;
  for (qsizetype i = 0; i < line.size();) {
    if (!line[i].isDigit() || line[i].unicode() > 127) {
      ++i;
      continue;
    }
    qsizetype end = i;
    while (end < line.size() && line[end].unicode() < 128 && line[end].isDigit()) ++end;
    bool ok = false;
    const int number = line.mid(i, end - i).toInt(&ok);
    if (!ok) {
      Report(QStringLiteral(" Not_found "));
      return;
    }
    numbers.append(number);
    ++result_.Occurences;
    i = end;
  }
  IntegerValue = IndexValue >= 0 && IndexValue < numbers.size() ? numbers[IndexValue] : kNoInteger;
  Report(QStringLiteral(" << ") + QString::number(IntegerValue));
}

void Interpreter::GetFloat() {
  const QString line = LineAt(LineCursor);
  auto numeric = [](QChar c) {
    return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('.') ||
           c == QLatin1Char('-') || c == QLatin1Char(',');
  };
  QStringList runs;
  for (qsizetype i = 0; i < line.size();) {
    if (!numeric(line[i])) {
      ++i;
      continue;
    }
    qsizetype end = i;
    while (end < line.size() && numeric(line[end])) ++end;
    const QString run = line.mid(i, end - i);
    if (run != QLatin1String(".") && run != QLatin1String(",")) {
      runs.append(QString(run).replace(QLatin1Char(','), QLatin1Char('.')));
    }
    i = end;
  }
  if (IndexValue < 0 || IndexValue >= runs.size()) return;
  bool ok = false;
  const double value = runs[IndexValue].toDouble(&ok);
  if (!ok) {
    Report(QStringLiteral(" Not_found "));
    return;
  }
  FloatValue = value;
  ++result_.Occurences;
  Report(QStringLiteral(" << ") + GeneralFloatText(FloatValue));
}

void Interpreter::SearchText() {
  const QString key = CaseSensitive ? ActionText : ActionText.toUpper();
  SearchMemo& memo = searchMemo_;
  int found = -1;
  const bool known = memo.generation == generation_ && memo.text == key &&
                     memo.caseSensitive == CaseSensitive && memo.from <= LineCursor &&
                     (memo.found < 0 || LineCursor <= memo.found);
  if (known) {
    found = memo.found;
  } else {
    for (int i = std::max(LineCursor, 0); i < TextLines.size(); ++i) {
      if (Find(TextLines[i], ActionText, CaseSensitive, true) > 0) {
        found = i;
        break;
      }
    }
    memo = SearchMemo{generation_, key, CaseSensitive, LineCursor, found};
  }
  if (found >= 0) {
    LineCursor = found;
    ++result_.Occurences;
    Report(QStringLiteral("    ") + ActionText + QStringLiteral(" >> found at line ") +
           QString::number(found));
  } else {
    ConditionResult = false;
    Report(QStringLiteral("    ") + ActionText + QStringLiteral(" >> not found ") +
           QString::number(LineCursor));
  }
}

bool Interpreter::SaveLines(const QStringList& lines, const QString& name) {
  const QString path = options_.outputFolder + QLatin1Char('/') + name;
  const QString end = options_.crlf ? QStringLiteral("\r\n") : QStringLiteral("\n");
  QString text;
  for (const QString& line : lines) text += line + end;
  const Result<bool> written = WriteFileAtomically(path, text.toUtf8());
  if (!written) {
    Report(QStringLiteral("  >> ") + written.error().ToString());
    return false;
  }
  result_.FileWritten = true;
  ++result_.Occurences;
  Report(QStringLiteral("  >> ") + path);
  return true;
}

void Interpreter::LoadFile() {
  const QString path = options_.outputFolder + QLatin1Char('/') + ActionText;
  const Result<QStringList> read =
      QFileInfo(path).isFile() ? ReadBatchFile(path) : Result<QStringList>(Error{});
  if (!read) {
    Report(QStringLiteral(" File_Not_Found"));
    return;
  }
  const QStringList& lines = read.value();
  const int at = std::clamp(LineCursor, 0, static_cast<int>(TextLines.size()));
  for (qsizetype i = lines.size() - 1; i >= 0; --i) TextLines.insert(at, lines[i]);
  ++generation_;
  progressMax_ += static_cast<int>(lines.size());
  loaded_ = true;
  result_.FileWritten = true;
  ++result_.Occurences;
  Report(QStringLiteral(" << ") + ActionText + QLatin1Char(' ') + QString::number(lines.size()) +
         QStringLiteral(" lines"));
}

void Interpreter::RunAction(const BatchRow& row) {
  const QString& name = row.name;
  bool number = false;
  const int index = row.index.trimmed().toInt(&number);
  if (number) {
    IndexValue = index;
  } else if (name == QLatin1String("XOR") || name == QLatin1String("OR") ||
             name == QLatin1String("AND") || name == QLatin1String("NOT")) {
    IndexValue = static_cast<int>(row.index.trimmed().toUInt(nullptr, 16));
  } else if (name.startsWith(QLatin1String("get "))) {
    IndexValue = 0;
  } else if (name == QLatin1String("Overwrite") && row.index == QLatin1String("INDEX")) {
    IndexValue = MatchPos;
  }
  ActionText = row.text;
  if (!ConditionResult) return;

  const QString line = LineAt(LineCursor);
  if (name == QLatin1String("Remove")) {
    const qsizetype at = line.indexOf(ActionText);
    if (!ActionText.isEmpty() && at >= 0 &&
        SetLineAt(LineCursor, QString(line).remove(at, ActionText.size()))) {
      ++result_.Occurences;
    }
    Report(QStringLiteral("  >> ") + ActionText);
  } else if (name == QLatin1String("Insert")) {
    Insert(ActionText, line);
  } else if (name == QLatin1String("Overwrite")) {
    QString edited = line;
    const int at = std::max(IndexValue, 1) - 1;
    const qsizetype length = ActionText.size();
    const qsizetype padded = std::max(IndexValue, 0) + length;
    if (edited.size() < padded) edited = edited.leftJustified(padded, QLatin1Char(' '));
    const QString replaced = edited.mid(at, length);
    edited.replace(at, length, ActionText);
    if (SetLineAt(LineCursor, edited)) ++result_.Occurences;
    Report(QStringLiteral("    ") + replaced + QStringLiteral(" >> ") + ActionText);
  } else if (name == QLatin1String("Overwrite hex")) {
    if (HexValue.isEmpty()) {
      Report(QStringLiteral(" No_Hex_Value"));
      return;
    }
    const QString value = hex_.HexPrefix + HexValue + hex_.HexSuffix;
    QString edited = line;
    edited.replace(std::max(MatchPos, 1) - 1, value.size(), value);
    if (SetLineAt(LineCursor, edited)) ++result_.Occurences;
    Report(QStringLiteral("  >> ") + value);
  } else if (name == QLatin1String("delete until")) {
    const int from = std::max(IndexValue, 1) - 1;
    const int at = Find(line.mid(from), ActionText, CaseSensitive, true);
    if (at == 0) {
      Report(QStringLiteral(" Not_Found"));
      return;
    }
    const int count = at - MatchLen - 1;
    if (count > 0 && SetLineAt(LineCursor, QString(line).remove(from + MatchLen, count))) {
      ++result_.Occurences;
    }
    Report(QStringLiteral("  >> ") + QString::number(count) + QStringLiteral(" chars deleted"));
  } else if (name == QLatin1String("Delete Line")) {
    if (LineCursor >= 0 && LineCursor < TextLines.size()) {
      TextLines.removeAt(LineCursor);
      ++generation_;
      --LineCursor;
      ++DeletedCount;
      ++result_.Occurences;
    }
  } else if (name == QLatin1String("Insert line")) {
    TextLines.insert(std::clamp(LineCursor, 0, static_cast<int>(TextLines.size())), QString());
    ++generation_;
    ++LineCursor;
    ++result_.Occurences;
  } else if (name == QLatin1String("next line")) {
    ++LineCursor;
    ++result_.Occurences;
  } else if (name == QLatin1String("set flag") || name == QLatin1String("reset flag")) {
    UserFlag = name == QLatin1String("set flag");
    ++result_.Occurences;
  } else if (name == QLatin1String("search text")) {
    SearchText();
  } else if (name == QLatin1String("get integer")) {
    GetInteger();
  } else if (name == QLatin1String("get hex")) {
    if (ReadHex(IndexValue)) ++result_.Occurences;
  } else if (name == QLatin1String("get float")) {
    GetFloat();
  } else if (name == QLatin1String("get string")) {
    StringValue = line.mid(std::max(IndexValue, 1) - 1);
    ++result_.Occurences;
    Report(QStringLiteral("String is: ") + StringValue);
  } else if (name == QLatin1String("insert integer")) {
    Insert(QString::number(IntegerValue), line);
  } else if (name == QLatin1String("insert hex")) {
    if (HexValue.isEmpty()) {
      Report(QStringLiteral(" No_Hex_Value"));
      return;
    }
    Insert(hex_.HexPrefix + HexValue + hex_.HexSuffix, line);
  } else if (name == QLatin1String("insert float")) {
    Insert(GeneralFloatText(FloatValue), line);
  } else if (name == QLatin1String("insert string")) {
    Insert(StringValue, line);
  } else if (name == QLatin1String("Save As")) {
    SaveLines(TextLines, ActionText);
  } else if (name == QLatin1String("Save Copy")) {
    SaveLines(CopyBuffer, ActionText);
    copying_ = false;
  } else if (name == QLatin1String("Load File")) {
    LoadFile();
  } else if (name == QLatin1String("Start Copy")) {
    if (!copyStarted_ && LineCursor != 0) {
      copyStarted_ = true;
      copying_ = true;
      copyStart_ = LineCursor;
      CopyBuffer = {line};
      ++result_.Occurences;
    }
  } else if (name == QLatin1String("Stop Copy")) {
    if (copying_ && LineCursor > copyStart_) {
      copying_ = false;
      if (CopyBuffer.size() > 1) CopyBuffer.removeLast();
      ++result_.Occurences;
    }
  } else if (name == QLatin1String("Start Delete")) {
    if (!deleteStarted_) {
      deleteStarted_ = true;
      deleteOpen_ = true;
      deleteStart_ = LineCursor;
      ++result_.Occurences;
    }
  } else if (name == QLatin1String("Stop Delete")) {
    if (deleteOpen_ && LineCursor > deleteStart_) {
      deleteOpen_ = false;
      const int last = std::min(LineCursor, static_cast<int>(TextLines.size()) - 1);
      const int count = std::max(0, last - deleteStart_ + 1);
      TextLines.remove(deleteStart_, count);
      ++generation_;
      DeletedCount += count;
      LineCursor = deleteStart_ - 1;
      ++result_.Occurences;
    }
  } else if (!name.isEmpty()) {
    Report(QStringLiteral("  >>"));  // a process instruction: read and reported only
  }
}

void Interpreter::RunTask(const BatchRow& row) {
  ReportLine(QStringLiteral("Batch task : ") + row.name + row.index + row.text);
  const QString& name = row.name;
  auto report = [this](const QString& piece) { ReportLines.last() += piece; };
  if (name == QLatin1String("set hex prefix")) {
    hex_.HexPrefix = row.text;
    report(QStringLiteral("  >> ") + row.text);
  } else if (name == QLatin1String("set hex suffix")) {
    hex_.HexSuffix = row.text;
    report(QStringLiteral("  >> ") + row.text);
  } else if (name == QLatin1String("load graphic")) {
    host_.LoadGraphic(row.text);
    StopAfterPass = false;
  } else if (name == QLatin1String("convert graphic")) {
    if (host_.ConvertGraphic(TextLines)) {
      ++generation_;
      report(QStringLiteral(" >>  = Convert Graphic To Data : Done  "));
    }
    StopAfterPass = false;
  } else if (name == QLatin1String("overwrite data file")) {
    const QString written = host_.OverwriteDataFile(TextLines);
    if (!written.isEmpty()) result_.FileWritten = true;
    report(written.isEmpty() ? QStringLiteral(" >>  = Error  ")
                             : written + QStringLiteral(" >>  = OK "));
    StopAfterPass = false;
  }
}

bool Interpreter::Endless() {
  if (!options_.endlessLimit) return false;
  const int limit = *options_.endlessLimit;
  const int end = std::max(progressMax_, static_cast<int>(TextLines.size()));
  return LineCursor - end > limit || repeats_ > limit * kRepeatFactor;
}

TextBatchResult Interpreter::Run(const QStringList& original) {
  if (!options_.silent) {
    ReportLines.clear();
    ReportLines << QStringLiteral("/* ") + options_.dateText + QStringLiteral(" */")
                << QStringLiteral("/* ") + options_.batchName +
                       QStringLiteral(" Batch Report      */")
                << QString();
  }
  messenger_.StatusBarAndLog(QStringLiteral("Run Postprocessor Batch"));
  QList<int> origins;
  BatchParser parser(NormaliseBatchLines(original, &origins));
  for (const QString& line : parser.Lines()) messenger_.AppendLog(line);
  const bool poll = escape_.CanReportPress();

  int S = 0;
  int K = 0;
  int G = 0;
  int lastLine = -2;  // the line of the previous visit, to count repeats
  Step step = Step::ClearRows;
  while (true) {
    switch (step) {
      case Step::ClearRows:
        rows_.Clear();
        plans_.clear();
        DeletedCount = 0;
        LineCursor = -1;
        progressMax_ = static_cast<int>(TextLines.size());
        loaded_ = false;
        step = Step::CheckEnd;
        break;
      case Step::CheckEnd:
        step = LineCursor >= TextLines.size() || StopAfterPass ? Step::EndOfPass : Step::NextLine;
        break;
      case Step::NextLine:
        ++LineCursor;
        step = Step::ParseFirst;
        break;
      case Step::ParseFirst:
        // A valid first line is parsed twice: its rows stand twice.
        if (!parser.ParseBatchLine(S, false, rows_)) ++S;
        step = parser.ParseBatchLine(S, false, rows_) ? Step::ParseBlock : Step::AfterVisit;
        break;
      case Step::ParseBlock: {
        ++K;
        const bool valid = parser.ParseBatchLine(S + K, false, rows_);
        taskCursor_ = 0;
        tasksDue_ = std::any_of(rows_.tasks.cbegin(), rows_.tasks.cend(),
                                [](const BatchRow& r) { return r.name != QLatin1String("none"); });
        if (!valid) {
          RunActions();
          step = Step::Advance;
          break;
        }
        // Conditions and tasks, then everything else, up to the blank line.
        G = 1;
        parser.EndOfBlockAction = false;
        parser.EndOfBlockCondition = false;
        while (parser.LastWasBoundary && !parser.EndOfBlockCondition) {
          parser.ParseBatchLine(S + K + G, false, rows_);
          ++G;
        }
        while (!parser.EndOfBlockCondition && !parser.EndOfBlockAction) {
          parser.ParseBatchLine(S + K + G, true, rows_);
          ++G;
        }
        tasksDue_ = std::any_of(rows_.tasks.cbegin(), rows_.tasks.cend(),
                                [](const BatchRow& r) { return r.name != QLatin1String("none"); });
        step = Step::Visit;
        break;
      }
      case Step::Visit:
        HexValue.clear();
        HexDigits = 0;
        HexBits = 0;
        IntegerValue = kNoInteger;
        if (poll && escape_.EscapePressed()) abort_ = true;
        if (progress_) progress_(LineCursor + DeletedCount, progressMax_);
        repeats_ = LineCursor == lastLine ? repeats_ + 1 : 0;
        lastLine = LineCursor;
        if (Endless()) {
          result_.endless =
              EndlessBlock{origins.value(S, S) + 1, original.value(origins.value(S, S))};
          messenger_.StatusBarAndLog(QStringLiteral("Postprocessor Batch stopped: endless block"));
          return result_;
        }
        step = Step::VisitTest;
        break;
      case Step::VisitTest: {
        const bool lineCondition =
            !rows_.conditions.isEmpty() && IsLineConditionName(rows_.conditions.last().name);
        if ((lineCondition && (LineCursor >= progressMax_ || loaded_)) || rows_.Empty() || abort_) {
          step = Step::LastVisit;
        } else {
          step = Step::VisitRun;
        }
        break;
      }
      case Step::VisitRun: {
        ConditionResult = false;
        RepeatLine = false;
        K = 1;
        if (copying_) CopyBuffer.append(LineAt(LineCursor));
        if (tasksDue_) {
          tasksDue_ = false;
          const QList<BatchRow>& tasks = rows_.tasks;
          if (taskCursor_ == 0 && tasks.size() >= 2 && tasks[0] == tasks[1]) taskCursor_ = 1;
          StopAfterPass = true;  // the graphic tasks clear it again
          while (taskCursor_ < tasks.size()) {
            const BatchRow& row = tasks[taskCursor_++];
            if (row.name == QLatin1String("none")) break;
            RunTask(row);
          }
          if (rows_.conditions.isEmpty() && taskCursor_ >= tasks.size() - 1) {
            step = Step::AfterVisit;
            break;
          }
        }
        const QList<BatchRow>& conditions = rows_.conditions;
        const qsizetype first = conditions.size() >= 2 && conditions[0] == conditions[1] ? 1 : 0;
        if (conditions.isEmpty() && !options_.silent) {
          ReportLine(QString::number(LineCursor) + QLatin1Char(':'));
        }
        for (qsizetype c = first; c < conditions.size(); ++c) {
          const BatchRow& row = conditions[c];
          if (!options_.silent) {
            ReportLine(QString::number(LineCursor) + QStringLiteral(": ") + row.name + row.index +
                       QStringLiteral(" '") + row.text + QLatin1Char('\''));
          }
          RunCondition(row);
        }
        if (ConditionResult) {
          Report(QStringLiteral(" = True "));
          RunActions();
        } else {
          Report(QStringLiteral(" = False "));
        }
        if (!RepeatLine) ++LineCursor;
        step = Step::Visit;
        break;
      }
      case Step::LastVisit: {
        const bool lineCondition =
            !rows_.conditions.isEmpty() && IsLineConditionName(rows_.conditions.last().name);
        if (lineCondition && !abort_ && rows_.tasks.size() - 1 > taskCursor_) {
          tasksDue_ = true;
          step = Step::VisitRun;
        } else {
          step = Step::AfterVisit;
        }
        break;
      }
      case Step::Advance:
        if (!RepeatLine) ++LineCursor;
        step = Step::Visit;
        break;
      case Step::AfterVisit:
        if (abort_) {
          ReportLine(QStringLiteral("Processing Aborted by escape !"));
          result_.aborted = true;
          return result_;
        }
        step = Step::CheckEnd;
        break;
      case Step::EndOfPass:
        if (StopAfterPass || !parser.ParseBatchLine(S + K, false, rows_)) {
          messenger_.StatusBarAndLog(QStringLiteral("Postprocessor Batch End Reached"));
          return result_;
        }
        S += K;
        K = 1;
        step = Step::ClearRows;
        break;
    }
  }
}

}  // namespace

bool IsLineCondition(const QString& storedName) { return IsLineConditionName(storedName); }

TextBatchResult RunTextBatch(const QStringList& batchLines, QStringList& textLines,
                             QStringList& report, HexDelimiters& hex,
                             platform::Messenger& messenger, platform::KeyPoll& escape,
                             TextBatchHost& host, const TextBatchOptions& options,
                             const BatchProgress& progress) {
  Interpreter interpreter(textLines, report, hex, messenger, escape, host, options, progress);
  return interpreter.Run(batchLines);
}

QString GeneralFloatText(long double value) {
  if (value == 0) return QStringLiteral("0");
  const int exponent =
      static_cast<int>(std::floor(std::log10(std::fabs(static_cast<double>(value)))));
  if (exponent >= -5 && exponent < 8) {
    QString text = QString::number(static_cast<double>(value), 'f', std::max(0, 7 - exponent));
    if (text.contains(QLatin1Char('.'))) {
      while (text.endsWith(QLatin1Char('0'))) text.chop(1);
      if (text.endsWith(QLatin1Char('.'))) text.chop(1);
    }
    return text;
  }
  QString mantissa = QString::number(static_cast<double>(value) / std::pow(10.0, exponent), 'f', 7);
  while (mantissa.endsWith(QLatin1Char('0'))) mantissa.chop(1);
  if (mantissa.endsWith(QLatin1Char('.'))) mantissa.chop(1);
  return mantissa + (exponent < 0 ? QStringLiteral("E-") : QStringLiteral("E+")) +
         QString::number(std::abs(exponent)).rightJustified(4, QLatin1Char('0'));
}

}  // namespace vt::batch
