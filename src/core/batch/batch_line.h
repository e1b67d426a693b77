// SPDX-License-Identifier: MIT
#pragma once

// Batch files (.SPP): one instruction a line, blocks separated by blank lines. This file reads
// one line into the rows of a block: its keyword part (before the first quote or parenthesis
// and before "//"), its index between parentheses and its text between the first and the last
// quote. Keywords are found as case-sensitive substrings; where one keyword holds another
// ("if line number" holds "if", "shift right" holds "if", "load and insert" holds "and"), the
// longer one wins, so the order of the keyword table is part of the language.

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "util/error.h"

namespace vt::batch {

/// One row of a block: the stored name of an instruction with its text and index cells.
struct BatchRow {
  QString name;
  QString text;
  QString index;
  bool operator==(const BatchRow&) const = default;
};

/// The rows of one block, as the parser builds them. A condition also adds a task row named
/// "none", so that the task list tells where the conditions stood.
struct BlockRows {
  QList<BatchRow> conditions;
  QList<BatchRow> tasks;
  QList<BatchRow> actions;
  void Clear() {
    conditions.clear();
    tasks.clear();
    actions.clear();
  }
  bool Empty() const { return conditions.isEmpty() && tasks.isEmpty() && actions.isEmpty(); }
};

/// Where a keyword belongs.
enum class KeywordKind { Condition, Task, Action };

/// One keyword of the language: the word as written in a file and the name its row is stored
/// under.
struct Keyword {
  const char* word;
  const char* stored;
  KeywordKind kind;
  bool takesIndex;  ///< the text between the first "(" and the following ")" is its index
  bool needsText;   ///< a line with this keyword alone and no quoted text is not valid
};

/// Every keyword of the text interpreter in the order the parser tests them.
const QList<Keyword>& KeywordTable();

/// The keyword part of `line`: cut at the earlier of the first "'" and the first "(", and at
/// "//", each cut taking at most 100 characters. Blanks are kept.
QString KeywordPart(const QString& line);

/// The keywords found in `keywordPart`, in table order, without those lying inside a longer one
/// that was found.
QList<const Keyword*> FindKeywords(const QString& keywordPart);

/// The text argument of `line`: what stands between its first and last "'", or nothing when it
/// holds fewer than two.
std::optional<QString> TextArgument(const QString& line);

/// The index argument of `line`: what stands between its first "(" and the first ")" after it.
std::optional<QString> IndexArgument(const QString& line);

/// Reads batch lines into block rows. Lines past the end read as empty, which is how the end
/// of a batch shows.
class BatchParser {
 public:
  explicit BatchParser(QStringList lines) : lines_(std::move(lines)) {}

  /// Parses line `lineIndex` into `rows`. A blank line (also a comment line, or one that starts
  /// with a quote or a parenthesis) adds nothing, sets LastWasBoundary and the end-of-block flag
  /// of the phase, and returns false. A line with conditions or tasks adds their rows and sets
  /// LastWasBoundary; any other line is an action line. Returns whether the line was valid: it
  /// had a text argument or a keyword that needs none.
  bool ParseBatchLine(int lineIndex, bool actionPhase, BlockRows& rows);

  /// The line, or an empty text past the end.
  QString Line(int lineIndex) const { return lines_.value(lineIndex); }
  int Count() const { return static_cast<int>(lines_.size()); }
  const QStringList& Lines() const { return lines_; }

  bool LastWasBoundary = false;
  bool EndOfBlockAction = false;
  bool EndOfBlockCondition = false;

 private:
  QStringList lines_;
};

/// Removes what no block can use, from the top and again after each removal: of two
/// consecutive lines whose keywords include an "if" or a "while" condition, the second; and
/// line 0 while its keyword part holds "then".
/// `origins`, when given, receives for each kept line its index in `lines`.
QStringList NormaliseBatchLines(QStringList lines, QList<int>* origins = nullptr);

/// The lines of a batch file read whole, split at CR LF, LF or CR. An error names the file.
Result<QStringList> ReadBatchFile(const QString& path);

}  // namespace vt::batch
