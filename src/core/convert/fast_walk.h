// SPDX-License-Identifier: MIT
#pragma once

// The walk of the common exports in tight loops: the same bytes as WalkArea with its packers,
// read straight from the rows of the picture and handed to the data text writer in runs.

#include <optional>

#include "convert/pixel_source.h"
#include "convert/scan_walker.h"

namespace vt::convert {

class DataTextWriter;
class ReorderProgram;

/// Walks `request` as WalkArea would, when it is one of the cases the loops here cover:
///
///  - any direction but the ST7528 slices, the 16 gray horizontal pairs in a vertical walk and
///    two-page gray in td; monochrome only in 8-bit bytes and without the picture comment;
///  - no compression and not driven by the font generator;
///  - every pixel the walk reads lies inside `image` and inside the bounds
///    of monochrome bit reading, so that no read gives -1 and no bound cuts a byte short.
///
/// The bytes go to `writer` (the request's sink), after `reorder` when dore is on (none: they
/// pass unchanged, as without a reorder stage). Escape is polled before each byte, as the
/// walkers do; a colour not found is recorded in the request's colour search and sets
/// cursor.Aborted. The cursor receives the area, limits, counts and ByteCount that WalkArea
/// leaves; X, Y and Value are not kept. Returns the result WalkArea would return, or nothing
/// (having done nothing) when the request is not covered.
std::optional<bool> FastWalkArea(const WalkRequest& request, const ImagePixelSource& image,
                                 DataTextWriter& writer, const ReorderProgram* reorder,
                                 ConversionCursor& cursor);

}  // namespace vt::convert
