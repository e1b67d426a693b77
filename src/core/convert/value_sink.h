// SPDX-License-Identifier: MIT
#pragma once

namespace vt::convert {

/// Where the packers deliver their bytes: the data text formatter, the binary and Intel Hex
/// targets, or a list for a batch. Calls come in this order for each byte: StartComment, then
/// MarkBit for each black pixel read into it, then EmitValue once the byte is complete (unless a
/// compression run swallowed it). GroupStart comes before each new row or column of a walk.
class ValueSink {
 public:
  virtual ~ValueSink() = default;
  /// A new byte begins: clear the picture comment of the previous one.
  virtual void StartComment() = 0;
  /// Bit `bit` (0 = least significant) of the byte being built holds a black pixel: the picture
  /// comment shows "#" in that bit's column.
  virtual void MarkBit(int bit) = 0;
  /// A finished value, after compression, bit reversal and rearrangement. `endOfPixel` tells
  /// whether this byte ends a pixel; it matters only to the font generator's line breaks.
  virtual void EmitValue(int value, bool endOfPixel) = 0;
  /// Group mode: a new row or column of the walk begins.
  virtual void GroupStart() = 0;
};

}  // namespace vt::convert
