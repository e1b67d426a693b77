// SPDX-License-Identifier: MIT
#include "convert/reorder.h"

#include <algorithm>

#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

const QString kSwapBits = QStringLiteral("SWAP BITS");
const QString kSwapBytes = QStringLiteral("SWAP BYTES 16 BITS");

quint32 BitOf(quint32 value, int bit) { return (value >> bit) & 1u; }

}  // namespace

QString ReorderGrid::GetReorderData(int col, int row) const {
  if (row < 0 || row >= kRows) return {};
  switch (col) {
    case 0:
      return rows_[row].command;
    case 1:
      return rows_[row].first;
    case 2:
      return rows_[row].second;
    default:
      return {};
  }
}

void ReorderGrid::SetReorderData(int col, int row, const QString& text) {
  if (row < 0 || row >= kRows) return;
  switch (col) {
    case 0:
      rows_[row].command = text;
      break;
    case 1:
      rows_[row].first = text;
      break;
    case 2:
      rows_[row].second = text;
      break;
    default:
      break;
  }
}

void ReorderGrid::SetRow(int row, const QString& command, int first, int second) {
  SetReorderData(0, row, command);
  SetReorderData(1, row, QString::number(first));
  SetReorderData(2, row, QString::number(second));
}

int ReorderBitLimit(const settings::Settings& settings) {
  if (!settings.pixel.rgb2) return 31;
  const auto mode = settings::CurrentPixelMode(settings);
  return mode ? settings::Info(*mode).colorDepthWord : 8;
}

ReorderProgram::ReorderProgram(const ReorderGrid& grid, int bitLimit) {
  for (int row = 0; row < ReorderGrid::kRows; ++row) {
    const QString command = grid.GetReorderData(0, row).toUpper();
    if (command == kSwapBytes) {
      swapBytes_ = true;
      break;
    }
    if (command.isEmpty()) break;
    if (command != kSwapBits) continue;
    bool okA = false, okB = false;
    const int a = grid.GetReorderData(1, row).trimmed().toInt(&okA);
    const int b = grid.GetReorderData(2, row).trimmed().toInt(&okB);
    // A bit number must name a bit: negative numbers are as ineffective as too large ones.
    const int limit = std::min(bitLimit, 31);
    if (!okA || !okB || a < 0 || b < 0 || a > limit || b > limit) continue;
    swaps_.push_back({a, b});
  }
}

int ReorderProgram::Apply(int value) const {
  const quint32 incoming = static_cast<quint32>(value);
  quint32 result = incoming;
  for (const Swap& s : swaps_) {
    result = (result & ~((1u << s.a) | (1u << s.b))) | (BitOf(incoming, s.a) << s.b) |
             (BitOf(incoming, s.b) << s.a);
  }
  if (swapBytes_) result = ((result & 0xFFu) << 8) | ((result >> 8) & 0xFFu);
  return static_cast<int>(result);
}

int ReorderOutput(const ReorderGrid& grid, int value, int bitLimit) {
  return ReorderProgram(grid, bitLimit).Apply(value);
}

QString DoReorderStatus(bool dore) {
  return dore ? QStringLiteral("[ON]") : QStringLiteral("[OFF]");
}

}  // namespace vt::convert
