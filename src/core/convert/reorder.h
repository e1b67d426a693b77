// SPDX-License-Identifier: MIT
#pragma once

// Bit and byte rearrangement of finished output values, for displays whose data lines are
// wired in another order: the user's table of swaps ("Data Bits Rearrangement"), applied while
// dore is on, and the fixed colour word exchanges of each colour depth.

#include <QString>
#include <array>
#include <vector>

#include "convert/packers.h"
#include "settings/settings.h"

namespace vt::convert {

/// One row of the table: the command and the two bit numbers, as typed.
struct ReorderRow {
  QString command;  ///< "swap bits" or "swap bytes 16 bits", compared in upper case
  QString first;    ///< first bit number, decimal
  QString second;   ///< second bit number, decimal
};

/// The "Data Bits Rearrangement" table (ReorderStringGrid): 3 columns, 32 rows. A row with an
/// empty command ends the list.
class ReorderGrid {
 public:
  static constexpr int kRows = 32;
  static constexpr int kColumns = 3;

  /// GetReorderData: the cell of column `col` (0 command, 1 first, 2 second) and row `row`;
  /// empty outside the table.
  QString GetReorderData(int col, int row) const;
  /// Writes a cell; outside the table nothing happens.
  void SetReorderData(int col, int row, const QString& text);
  /// Sets a whole row.
  void SetRow(int row, const QString& command, int first, int second);
  /// "Clear List": every cell empty.
  void Clear() { rows_ = {}; }

 private:
  std::array<ReorderRow, kRows> rows_{};
};

/// The highest bit number a row may name: 31, or with rgb2 the colour depth word of the mode
/// (8, 16, 18 or 24).
int ReorderBitLimit(const settings::Settings& settings);

/// ReorderOutput: the value with the table applied. Rows are read from the first: "SWAP BYTES
/// 16 BITS" exchanges the two low bytes of the result (the upper part is lost) and ends the
/// list; an empty command ends it; "SWAP BITS" a b, when both numbers parse and lie in
/// 0..`bitLimit`, gives bit b of the result the incoming bit a and bit a the incoming bit b,
/// so swaps always read the value as it came in and never chain; other commands are ignored.
int ReorderOutput(const ReorderGrid& grid, int value, int bitLimit = 31);

/// The table read once, as a list of swaps and a final exchange of the two low bytes: Apply
/// gives what ReorderOutput gives, without reading the cells again.
class ReorderProgram {
 public:
  ReorderProgram(const ReorderGrid& grid, int bitLimit);
  int Apply(int value) const;

 private:
  struct Swap {
    int a, b;
  };
  std::vector<Swap> swaps_;
  bool swapBytes_ = false;
};

/// "[ON]" or "[OFF]", as DoReorderStatus shows the dore switch.
QString DoReorderStatus(bool dore);

namespace detail {
/// Exchanges the bit pairs (high, high - distance) for high from `top` down `count` times,
/// each only when depthWord + 1 reaches its higher bit.
inline int ExchangePairs(int value, int top, int distance, int count, int depthWord) {
  quint32 v = static_cast<quint32>(value);
  if (depthWord + 1 >= top) {
    // Every pair is exchanged: the two fields of `count` bits trade places.
    const int low = top - distance - count + 1;
    const quint32 mask = (1u << count) - 1;
    const quint32 lowField = (v >> low) & mask, highField = (v >> (low + distance)) & mask;
    v &= ~((mask << low) | (mask << (low + distance)));
    return static_cast<int>(v | (lowField << (low + distance)) | (highField << low));
  }
  for (int high = top; high > top - count; --high) {
    if (depthWord + 1 < high) continue;
    const int low = high - distance;
    const quint32 a = (v >> high) & 1u, b = (v >> low) & 1u;
    v = (v & ~((1u << high) | (1u << low))) | (b << high) | (a << low);
  }
  return static_cast<int>(v);
}
}  // namespace detail

/// The fixed exchanges of the colour words, so that a colour stored with red in the low bits
/// comes out with red in the high bits. An exchange takes place only when `depthWord` + 1
/// reaches its higher bit number; `depthWord` is the colour depth word of the current mode.
/// 4096 colours: bits 11-3, 10-2, 9-1, 8-0.
inline int Reorder4096Output(int value, int depthWord = 16) {
  return detail::ExchangePairs(value, 11, 8, 4, depthWord);
}
/// 65536 colours: bits 15-4, 14-3, 13-2, 12-1, 11-0.
inline int Reorder65kOutput(int value, int depthWord = 16) {
  return detail::ExchangePairs(value, 15, 11, 5, depthWord);
}
/// 262144 colours: bits 17-5, 16-4, 15-3, 14-2, 13-1, 12-0.
inline int Reorder262kOutput(int value, int depthWord = 18) {
  return detail::ExchangePairs(value, 17, 12, 6, depthWord);
}
/// 16M colours: bits 23-7, 22-6, 21-5, 20-4, 19-3, 18-2, 17-1, 16-0.
inline int Reorder16MOutput(int value, int depthWord = 24) {
  return detail::ExchangePairs(value, 23, 16, 8, depthWord);
}
/// 256 colours: the value unchanged.
inline int Reorder256Output(int value) { return value; }

/// The reorder stage of the packers over the user's table, read once with the bit limit of the
/// settings.
class GridReorderStage final : public ReorderStage {
 public:
  GridReorderStage(const ReorderGrid& grid, const settings::Settings& settings)
      : program_(grid, ReorderBitLimit(settings)) {}
  int ReorderOutput(int value) override { return program_.Apply(value); }
  const ReorderProgram& Program() const { return program_; }

 private:
  ReorderProgram program_;
};

}  // namespace vt::convert
