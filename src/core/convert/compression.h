// SPDX-License-Identifier: MIT
#pragma once

// Run-length compression of monochrome data. Runs of equal bytes leave one byte in the data
// array; a pointer array tells the firmware how to expand it:
//   1 .. 127        copy the next v bytes of the data array ("Different" block)
//   128 + n, n >= 2 take the next data byte and write it n times ("Consecutive" block)
// A block never holds more than 127 bytes. The firmware stops after width * height / 8 bytes.

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "platform/text_buffer.h"
#include "convert/packers.h"
#include "settings/settings.h"

namespace vt::convert {

class DataTextWriter;

/// The counters of one compressed array.
struct CompressionCounters {
  long long DataBytes = 0;       ///< bytes left in the data array
  long long Pointers = 0;        ///< pointers counted (see CompressionStep)
  long long IdenticalBytes = 0;  ///< bytes in consecutive blocks
  long long DifferentBytes = 0;  ///< bytes in different blocks
};

/// The bytes a compression saves: D - DataBytes - Pointers, D being the expected byte count.
long long SavedBytes(const CompressionCounters& counters, long long dataByteCount);

/// The statistics as plain lines (label and value): "Compression statistics",
/// "--------------------------", "Number of bytes saved : " ... "Compression ratio : " + the
/// ratio cut to two decimals + "%". A D of zero counts as 1 for the ratio.
QStringList CompressionStatistics(const CompressionCounters& counters, long long dataByteCount);

/// The ratio saved * 100 / D, cut (not rounded) to two decimals, without "%".
QString CompressionRatioText(const CompressionCounters& counters, long long dataByteCount);

/// The pointer array as text, in its own pane: each pointer spelled as a byte of the data text
/// (constant format, Addof, separators; never Neg, never a picture comment), CPRE replaced by
/// cprx when CPRE or cpfr is set, ORGC pointers per line. The last pointer closes its line with
/// the end mark of the style; with dellas a "," or eolst mark is taken off that line again.
class PointerText {
 public:
  explicit PointerText(const settings::Settings& settings);
  ~PointerText();
  PointerText(const PointerText&) = delete;
  PointerText& operator=(const PointerText&) = delete;

  /// Adds one pointer. It is spelled when the next one arrives, or by Finish as the last.
  void Add(int pointer);
  /// Spells the held pointer as the last one and closes its line; returns the pointer lines.
  QStringList Finish();
  /// Pointers added so far.
  const QList<int>& Values() const { return values_; }

 private:
  settings::Settings settings_;
  platform::TextBuffer text_;
  std::unique_ptr<DataTextWriter> writer_;
  QList<int> values_;
};

/// The encoder state and CompressionStep. `dataByteCount` is D, the expected count of the
/// export, one above the true count of bytes: the last byte of the data is the one whose
/// ByteCount is D - 1. Pointers go to `pointers` as they are complete.
class DataCompressor final : public CompressionStage {
 public:
  DataCompressor(long long dataByteCount, PointerText& pointers);

  /// Clears the state and the counters: the start of an export or a frame.
  void ResetEncoderState();
  /// Takes one finished value; true when it was swallowed by a run and goes no further.
  bool CompressionStep(int value, double byteCount) override;
  /// Adds count, plus 128 when consecutive, to the pointer text.
  void WritePointer(int count, bool consecutive);

  const CompressionCounters& Counters() const { return counters_; }
  long long DataByteCount() const { return dataByteCount_; }

 private:
  long long dataByteCount_;
  PointerText& pointers_;
  int PreviousValue = 0;
  int SameCount = 0;
  int DiffCount = 0;
  bool InRun = false;
  bool PendingDiff = false;
  CompressionCounters counters_;
};

}  // namespace vt::convert
