// SPDX-License-Identifier: MIT
#pragma once

// The scan walkers: one per data direction, each visiting an area of the bitmap byte by byte in
// the direction's order and handing every byte to the packer family of its axis.

#include <optional>

#include "convert/conversion_cursor.h"
#include "convert/packers.h"
#include "convert/pixel_source.h"
#include "platform/key_poll.h"
#include "settings/geometry.h"
#include "settings/settings.h"

namespace vt::convert {

/// A rectangle of pixels: left and top inclusive, right and bottom exclusive.
struct AreaBounds {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

/// What one walk needs. The settings give the direction, corner, mode, bit order, byte width,
/// PPB, dore, ColRx and the display size GWI x GHI.
struct WalkRequest {
  const settings::Settings& settings;
  const PixelSource& source;
  PackerStages stages;
  /// Polled once before each byte; Escape stops the walk.
  platform::KeyPoll& keyPoll;
  AreaBounds area;
  /// Bounds of monochrome bit reading; GWI and GHI when empty.
  std::optional<int> limitX = std::nullopt;
  std::optional<int> limitY = std::nullopt;
  /// The font generator drives the walk: compression is bypassed.
  bool fontMode = false;
  /// Lower half export: the horizontal walkers take rows GHI .. 2*GHI - 1 in place of the
  /// area's rows (the driver has halved GHI for the run). The vertical walkers ignore it.
  bool lowerHalf = false;
  /// PixelsPerByte for the counts. Empty: the mode's value, or 1 under NOMAT.
  std::optional<double> pixelsPerByte = std::nullopt;
};

/// True when the walk must stop: the cursor was aborted by a failed colour search, or Escape
/// was pressed (the key poll is asked only when the cursor is not aborted).
bool CheckStop(platform::KeyPoll& keyPoll, const ConversionCursor& cursor);

/// Sets the cursor up for a walk of `request` in `direction` (empty: no direction key is set):
/// the area (the lower half when asked, for horizontal directions), the limits, FontMode, and
/// the counts and the packer state cleared. Returns the PixelsPerByte the walk counts with.
double StartWalk(const WalkRequest& request, std::optional<settings::ScanDirection> direction,
                 ConversionCursor& cursor);

/// Walks the area in the order of the current data direction, taking the first true key of
/// td, tu, tda, tua, tr, tl, tra, tla. The cursor receives the area, the limits, FontMode and
/// the counts (PagesPerColumn, BytesPerRow); ByteCount, Value and PackedPhase are cleared, and
/// Aborted is left as the caller set it. Before each byte the walk polls CheckStop, then calls
/// StartComment, clears Value, places the cursor and calls PackDown, PackUp, PackLeft or
/// PackRight. With ColRx the sink's GroupStart comes before each row or column of the walk.
/// Returns true when the walk completed (also when no direction key is set: nothing is
/// walked), false when it stopped early: cursor.Aborted then tells a failed colour search from
/// Escape.
bool WalkArea(const WalkRequest& request, ConversionCursor& cursor);

}  // namespace vt::convert
