// SPDX-License-Identifier: MIT
#include "convert/two_page_dealing.h"

namespace vt::convert {

TwoPageDealing::TwoPageDealing(bool msbFirst) {
  for (int value = 0; value < 256; ++value) {
    for (const bool first : {true, false}) {
      int dealt = 0;
      for (int bit = 0; bit < 8; ++bit) {
        if (((value >> bit) & 1) == 0) continue;
        // The first value is the pair's high byte.
        const int pairBit = bit + (first ? 8 : 0);
        const int k = pairBit / 2;
        const int target = msbFirst ? k : 7 - k;
        const bool mainArray = pairBit % 2 == 1;
        dealt |= 1 << (target + (mainArray ? 0 : 8));
      }
      (first ? asFirst_ : asSecond_)[std::size_t(value)] = std::uint16_t(dealt);
    }
  }
}

}  // namespace vt::convert
