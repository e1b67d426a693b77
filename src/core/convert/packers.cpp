// SPDX-License-Identifier: MIT
#include "convert/packers.h"

#include "convert/bits.h"
#include "convert/color_packers.h"

namespace vt::convert {
namespace {

bool IsMonochrome(settings::PixelMode mode) { return settings::IsMonochromeMode(mode); }

/// PPB cuts a horizontal monochrome byte to its top PPB bits; other PPB values leave it whole.
int MaskPixelsPerByte(int value, int pixelsPerByte) {
  switch (pixelsPerByte) {
    case 4:
      return value & 0xF0;
    case 5:
      return value & 0xF8;
    case 6:
      return value & 0xFC;
    case 7:
      return value & 0xFE;
    default:
      return value;
  }
}

}  // namespace

PackContext::PackContext(const settings::Settings& settings, const PixelSource& source,
                         ConversionCursor& cursor, PackerStages stages)
    : settings(settings),
      source(source),
      cursor(cursor),
      stages(stages),
      mode(settings::CurrentPixelMode(settings).value_or(settings::PixelMode::Monochrome)) {}

void PackDown(PackContext& context) {
  IsMonochrome(context.mode) ? PackMonochrome(context, PackFamily::Down)
                             : PackColor(context, PackFamily::Down);
}

void PackUp(PackContext& context) {
  IsMonochrome(context.mode) ? PackMonochrome(context, PackFamily::Up)
                             : PackColor(context, PackFamily::Up);
}

void PackLeft(PackContext& context) {
  IsMonochrome(context.mode) ? PackMonochrome(context, PackFamily::Left)
                             : PackColor(context, PackFamily::Left);
}

void PackRight(PackContext& context) {
  IsMonochrome(context.mode) ? PackMonochrome(context, PackFamily::Right)
                             : PackColor(context, PackFamily::Right);
}

void PackMonochrome(PackContext& context, PackFamily family) {
  ConversionCursor& c = context.cursor;
  const bool msbFirst = context.settings.scan.MSBF;
  const bool horizontal = family == PackFamily::Left || family == PackFamily::Right;
  const bool sixBits = horizontal && !context.settings.pixel.bw8;
  const int dx = family == PackFamily::Right ? 1 : family == PackFamily::Left ? -1 : 0;
  const int dy = family == PackFamily::Down ? 1 : family == PackFamily::Up ? -1 : 0;
  const bool bounded = family != PackFamily::Left;

  for (int i = 0; i < 8; ++i) {
    // In 6-bit mode the two bits read first exist only with MSB last, the two read last only
    // with MSB first: either way the pixels fill bits 5..0.
    if (sixBits && ((i < 2 && msbFirst) || (i >= 6 && !msbFirst))) continue;
    if (bounded) {
      const int coordinate = horizontal ? c.X : c.Y;
      const int limit = horizontal ? c.LimitX : c.LimitY;
      if (coordinate > limit) break;
    }
    const int bit = msbFirst ? 7 - i : i;
    if (context.source.PixelAt(c.X, c.Y) == 0) {
      c.Value += 1 << bit;
      context.stages.sink.MarkBit(bit);
    }
    c.X += dx;
    c.Y += dy;
  }
  if (horizontal) c.Value = MaskPixelsPerByte(c.Value, context.settings.pixel.PPB);
  DeliverValue(context);
}

bool DeliverValue(PackContext& context, bool endOfPixel, double byteCountStep) {
  ConversionCursor& c = context.cursor;
  c.ByteCount += byteCountStep;
  if (!c.FontMode && context.stages.compression &&
      context.stages.compression->CompressionStep(c.Value, c.ByteCount)) {
    return false;
  }
  // Monochrome packers already read the bits in the chosen order.
  if (!IsMonochrome(context.mode) && !context.settings.scan.MSBF) c.Value = ReverseByte(c.Value);
  if (context.settings.pixel.dore && context.stages.reorder) {
    c.Value = context.stages.reorder->ReorderOutput(c.Value);
  }
  context.stages.sink.EmitValue(c.Value, endOfPixel);
  return true;
}

}  // namespace vt::convert
