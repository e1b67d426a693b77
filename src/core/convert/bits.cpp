// SPDX-License-Identifier: MIT
#include "convert/bits.h"

#include <algorithm>

namespace vt::convert {

int ReverseByte(int value) {
  int reversed = 0;
  for (int bit = 0; bit < 8; ++bit) {
    if (TestBit(value, bit)) reversed |= 1 << (7 - bit);
  }
  return reversed;
}

QString ToBinaryText(std::int64_t value, int digits) {
  QString text;
  text.reserve(std::max(digits, 0));
  for (int bit = digits - 1; bit >= 0; --bit) {
    text.append(TestBit(value, bit) ? QLatin1Char('1') : QLatin1Char('0'));
  }
  return text;
}

std::optional<int> ColorIndex(std::int64_t color, std::span<const std::int64_t> table, int count) {
  const int searched = std::min<std::size_t>(std::max(count, 0), table.size());
  for (int i = 0; i < searched; ++i) {
    if (table[i] == color) return i;
  }
  return std::nullopt;
}

}  // namespace vt::convert
