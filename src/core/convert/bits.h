// SPDX-License-Identifier: MIT
#pragma once

// Bit primitives shared by the packers, the bit rearrangement and the font generator.

#include <QString>
#include <cstdint>
#include <optional>
#include <span>

namespace vt::convert {

/// The low 8 bits of `value` in reverse order: bit 0 becomes bit 7, bit 7 becomes bit 0.
/// Higher bits of `value` are ignored; the result lies in 0..255.
int ReverseByte(int value);

/// Whether bit `n` (0 = least significant, 0..62) of `value` is set.
constexpr bool TestBit(std::int64_t value, int n) { return ((value >> n) & 1) != 0; }
/// `value` with bit `n` set.
constexpr std::int64_t SetBit(std::int64_t value, int n) { return value | (std::int64_t{1} << n); }
/// `value` with bit `n` cleared.
constexpr std::int64_t ClearBit(std::int64_t value, int n) {
  return value & ~(std::int64_t{1} << n);
}

/// The low `digits` bits of `value` as "0" and "1" characters, most significant first
/// (ToBinaryText(5, 4) is "0101"). Bits above `digits` are not shown; 0 digits give "".
QString ToBinaryText(std::int64_t value, int digits);

/// The first position of `color` among the first `count` entries of `table` (fewer when the
/// table is shorter), searched linearly from position 0; empty when it is not there.
std::optional<int> ColorIndex(std::int64_t color, std::span<const std::int64_t> table, int count);

}  // namespace vt::convert
