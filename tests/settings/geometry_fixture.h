// SPDX-License-Identifier: MIT
#pragma once

// A settings state for the geometry tests: a mode, a direction, a size, and the texts of the
// direction size check.

#include <QStringList>
#include <array>

#include "app/messages.h"
#include "app/state.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::settings::test {

using D = ScanDirection;
using M = PixelMode;

inline const QString kHorizontalError = QStringLiteral(
    "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Horizontal size should "
    "be a multiple of 8 for horizontal conversion\r Use a vertical conversion direction  ");
inline const QString kVerticalError = QStringLiteral(
    "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Vertical size should be "
    "a multiple of 8 for vertical conversion  \r Use a horizontal conversion direction");

/// The size check text by letter: 'H' horizontal, 'V' vertical, anything else none.
inline QStringList SizeErrors(char which) {
  if (which == 'H') return {kHorizontalError};
  if (which == 'V') return {kVerticalError};
  return {};
}

/// The eight direction keys in the order of ScanDirection, then the four corner keys.
inline std::array<bool*, 12> KeysOf(ScanSettings& s) {
  return {&s.tr, &s.tra, &s.tl,    &s.tla,   &s.td,    &s.tda,
          &s.tu, &s.tua, &s.CORN1, &s.CORN2, &s.CORN3, &s.CORN4};
}

/// The true direction and corner keys, as text: "td CORN1".
inline QString ScanKeys(Settings settings) {
  const char* const names[] = {"tr", "tra", "tl",    "tla",   "td",    "tda",
                               "tu", "tua", "CORN1", "CORN2", "CORN3", "CORN4"};
  QStringList on;
  for (int i = 0; i < 12; ++i) {
    if (*KeysOf(settings.scan)[i]) on << names[i];
  }
  return on.join(' ');
}

/// A state in `mode`, `width` x `height`, direction `d` with CORN1, nothing shown or logged.
struct Fixture {
  vt::test::TestServices ts;
  app::AppState state;
  explicit Fixture(M mode = M::Monochrome, D d = D::tr, int width = 128, int height = 64,
                   bool nomat = false) {
    ApplyModeFlags(state.settings.pixel, Info(mode).flags);
    for (int i = 0; i < 8; ++i) *KeysOf(state.settings.scan)[i] = i == static_cast<int>(d);
    state.settings.display.GWI = width;
    state.settings.display.GHI = height;
    state.settings.display.NOMAT = nomat;
    state.log.Clear();
  }
  app::AppMessenger messenger{state, ts.dialogs};
  bool Select(D d) { return SelectScanDirection(state.settings, messenger, d); }
};

}  // namespace vt::settings::test
