// SPDX-License-Identifier: MIT
#pragma once

// Two-page 4 gray in the data text: the values of the walk come in pairs, and the 16 bits of
// each pair are dealt to a byte of the main array and a byte of the second plane.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace vt::convert {

/// The dealing of two-page 4 gray pairs. A pair is one 16-bit number, its first value the high
/// byte; its odd bits make the byte of the main array, its even bits the byte of the second
/// plane, bit 2k+1 or 2k of the pair going to bit k of its byte by MSBF, else to bit 7-k.
/// Invariant: the tables follow the bit order given at construction; a pair is pending between
/// its first and second value.
class TwoPageDealing {
 public:
  /// The dealt bytes of one pair.
  struct Dealt {
    int main;    ///< byte of the main array
    int second;  ///< byte of the second plane
  };

  /// The dealing of the bit order `msbFirst` (MSBF).
  explicit TwoPageDealing(bool msbFirst);

  /// Takes the next value (0..255) of the walk: nothing while it is the first of a pair, the
  /// dealt bytes when it is the second.
  std::optional<Dealt> Take(int value) {
    if (!pending_) {
      held_ = value & 0xFF;
      pending_ = true;
      return std::nullopt;
    }
    pending_ = false;
    const unsigned dealt = Deal(std::uint8_t(held_), std::uint8_t(value));
    return Dealt{int(dealt & 0xFF), int(dealt >> 8)};
  }
  /// Whether the first value of a pair waits for its second.
  bool Pending() const { return pending_; }

  /// Deals `pairs` whole pairs of `values` (2 * pairs bytes) into `main` and `second`, one
  /// byte each a pair. Leaves a pending pair alone.
  void DealPairs(const std::uint8_t* values, std::size_t pairs, std::uint8_t* main,
                 std::uint8_t* second) const {
    for (std::size_t k = 0; k < pairs; ++k) {
      const unsigned dealt = Deal(values[2 * k], values[2 * k + 1]);
      main[k] = static_cast<std::uint8_t>(dealt);
      second[k] = static_cast<std::uint8_t>(dealt >> 8);
    }
  }

 private:
  /// The main byte (low) and the second plane's byte (high) of the pair (first, second).
  unsigned Deal(std::uint8_t first, std::uint8_t second) const {
    return unsigned(asFirst_[first]) | unsigned(asSecond_[second]);
  }

  // What each byte value gives as the first and as the second value of a pair.
  std::array<std::uint16_t, 256> asFirst_{};
  std::array<std::uint16_t, 256> asSecond_{};
  bool pending_ = false;
  int held_ = 0;  // the first value of a pending pair
};

}  // namespace vt::convert
