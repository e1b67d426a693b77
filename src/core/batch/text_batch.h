// SPDX-License-Identifier: MIT
#pragma once

// The text batch interpreter: runs a batch over the lines of the source text. It visits the
// lines one by one, tests the conditions of a block on each and runs the block's actions where
// they hold; it finds hexadecimal values between a prefix and a suffix, does bit arithmetic on
// them and writes them back. The order of its steps decides what a batch does and is kept as
// the desktop program has always run it, odd turns included (see RunTextBatch).

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "batch/batch_line.h"

namespace vt::platform {
class KeyPoll;
class Messenger;
}  // namespace vt::platform

namespace vt::batch {

/// The strings around a hexadecimal value in the text. They outlive a run: a batch that sets
/// them leaves them for the next.
struct HexDelimiters {
  QString HexPrefix;
  QString HexSuffix;
};

/// What the tasks of a batch ask of the application: the canvas and the export live above
/// this layer.
class TextBatchHost {
 public:
  virtual ~TextBatchHost() = default;
  /// "load graphic": loads the picture file `name` onto the Work Canvas; false when it could not.
  virtual bool LoadGraphic(const QString& name) = 0;
  /// "convert graphic": exports the Work Canvas; `lines` receives the generated text. False
  /// when the export stopped.
  virtual bool ConvertGraphic(QStringList& lines) = 0;
  /// "overwrite data file": saves `lines` under the artwork's name with the extension of the
  /// source language; the name written, or empty on failure.
  virtual QString OverwriteDataFile(const QStringList& lines) = 0;
};

/// A host for runs without a canvas: every graphic task fails.
class NoGraphicHost final : public TextBatchHost {
 public:
  bool LoadGraphic(const QString&) override { return false; }
  bool ConvertGraphic(QStringList&) override { return false; }
  QString OverwriteDataFile(const QStringList&) override { return {}; }
};

/// The choices of one run.
struct TextBatchOptions {
  QString batchName;     ///< folder and name of the batch, for the report's heading
  QString dateText;      ///< date and time for the report's heading
  bool silent = false;   ///< BatchSilent: a run over many files, no report per line
  QString outputFolder;  ///< OFP: where "then save as", "save copy", "load and insert" look
  bool crlf = true;      ///< line ends of the files the batch saves
  /// A run that nobody can stop with Escape ends a block that would never end after this many
  /// visits past the end of the text (or on one line). None: only Escape ends it.
  std::optional<int> endlessLimit;
};

/// A block that would never end, found by a run with an endless limit.
struct EndlessBlock {
  int line = 0;  ///< the block's first line in the batch file, 1-based
  QString text;  ///< that line as written
};

/// What a run left.
struct TextBatchResult {
  bool aborted = false;  ///< Escape stopped it ("Processing Aborted by escape !")
  std::optional<EndlessBlock> endless;
  int Occurences = 0;        ///< every effective edit adds 1
  bool FileWritten = false;  ///< a file was saved or loaded: the explorer must refresh
};

/// The progress of a run: the line reached (lines deleted in the pass included) of the count.
using BatchProgress = std::function<void(int value, int maximum)>;

/// The stored names whose row, standing last among a block's conditions, lets the visit of the
/// lines end at the end of the text.
bool IsLineCondition(const QString& storedName);

/// Runs `batchLines` over `textLines`, editing them in place, and writes its report into
/// `report` (cleared first unless the run is silent). The batch is normalised first
/// (NormaliseBatchLines) and its lines logged.
///
/// The block loop: a pass parses one block and visits every line with it. The first valid line
/// of a batch is parsed twice, so its rows stand twice; a block reached over a blank line starts
/// where the previous pass started plus one line, so the actions of a block's second line join
/// the next block. Tasks run when they fall due, and the first time they do the run stops after
/// that pass (unless a graphic task clears the stop). A visit of a block whose last condition is
/// not a line condition does not stop at the end of the text: only Escape or the endless limit
/// ends it.
TextBatchResult RunTextBatch(const QStringList& batchLines, QStringList& textLines,
                             QStringList& report, HexDelimiters& hex,
                             platform::Messenger& messenger, platform::KeyPoll& escape,
                             TextBatchHost& host, const TextBatchOptions& options,
                             const BatchProgress& progress = {});

/// A number in the general format of the reports: at most 8 significant digits, plain when the
/// exponent lies from -5 to 7, else d.dddE+dddd with at least 4 exponent digits.
QString GeneralFloatText(long double value);

}  // namespace vt::batch
