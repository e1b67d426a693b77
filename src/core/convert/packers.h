// SPDX-License-Identifier: MIT
#pragma once

// The packer families: each reads the pixels of one output byte from the cursor position and
// sends the finished value down the pipeline (compression, bit reversal, rearrangement, sink).
// Down and up serve the vertical walks, left and right the horizontal ones. Each family has one
// packer per pixel mode; the dispatchers pick it from the settings.

#include "convert/conversion_cursor.h"
#include "convert/pixel_source.h"
#include "convert/value_sink.h"
#include "settings/pixel_modes.h"
#include "settings/settings.h"

namespace vt::convert {

/// Run-length compression of monochrome data, as the packers see it.
class CompressionStage {
 public:
  virtual ~CompressionStage() = default;
  /// Offered each finished value, before any bit reversal or rearrangement, once `byteCount`
  /// (the cursor's ByteCount) already counts it. Returns true when the value was swallowed by a
  /// run of equal bytes: it then goes no further.
  virtual bool CompressionStep(int value, double byteCount) = 0;
};

/// Bit rearrangement of finished values, applied while `dore` is on.
class ReorderStage {
 public:
  virtual ~ReorderStage() = default;
  /// The value with its bits moved to their output positions.
  virtual int ReorderOutput(int value) = 0;
};

class ColorSearch;

/// The stages a finished value passes after its packer, in order. The optional stages may be
/// null: no compression, or values passing unchanged even with `dore` on.
struct PackerStages {
  ValueSink& sink;
  CompressionStage* compression = nullptr;
  ReorderStage* reorder = nullptr;
  /// The colour search of the gray and colour modes (see color_packers.h).
  ColorSearch* colors = nullptr;
};

/// Everything a packer reads and moves: the settings (bit order, byte width, PPB, dore, the
/// mode), the bitmap, the cursor and the stages. The pixel mode is taken once, at construction;
/// with no mode key set it is monochrome, as an export then falls back to it.
struct PackContext {
  PackContext(const settings::Settings& settings, const PixelSource& source,
              ConversionCursor& cursor, PackerStages stages);

  const settings::Settings& settings;
  const PixelSource& source;
  ConversionCursor& cursor;
  PackerStages stages;
  settings::PixelMode mode;
};

/// The four packer families, named after the direction the cursor moves inside a byte.
enum class PackFamily { Down, Up, Left, Right };

/// Reads one byte of the downward family at (X, Y), leaving Y past the last pixel read, and
/// delivers it. Serves td and tda. Gray and colour modes go to PackColor (color_packers.h).
void PackDown(PackContext& context);
/// The upward family: Y moves up. Serves tu and tua.
void PackUp(PackContext& context);
/// The leftward family: X moves left. Serves tl and tla.
void PackLeft(PackContext& context);
/// The rightward family: X moves right. Serves tr and tra.
void PackRight(PackContext& context);

/// The monochrome packer of `family`. Eight bits are read along the family's axis, starting at
/// the cursor: with MSBF the first pixel is bit 7, otherwise bit 0. A pixel of colour 0 sets its
/// bit and is marked in the sink; any other colour, and -1 outside the bitmap, adds nothing.
/// Down, Up and Right stop at the first pixel whose moving coordinate exceeds LimitY (Down, Up)
/// or LimitX (Right); the unread bits stay 0. Left has no bound and reads past the area and the
/// bitmap. Left and Right honour the 6-bit byte width (bw8 false): with MSBF the two top bit
/// values are skipped, without it the two last, so that six pixels fill bits 5..0; after a byte
/// of either horizontal family PPB keeps only its top PPB bits (4..7). The cursor is left one
/// past the last pixel read; then the value is delivered.
void PackMonochrome(PackContext& context, PackFamily family);

/// The common end of every packer, on cursor.Value: ByteCount rises by `byteCountStep`; unless
/// FontMode, compression may swallow the value (returns false, nothing more happens); outside
/// monochrome the bits are reversed when MSBF is false; with `dore` the reorder stage rearranges
/// them; the sink receives the value with `endOfPixel`. Returns true when the sink received it.
bool DeliverValue(PackContext& context, bool endOfPixel = true, double byteCountStep = 1.0);

}  // namespace vt::convert
