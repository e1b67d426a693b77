// SPDX-License-Identifier: MIT
#include "convert/reorder_preview.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "convert/data_text.h"
#include "convert/scan_walker.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

/// A white display that numbers its pixels in the order they are first read.
class NumberingSource final : public PixelSource {
 public:
  NumberingSource(int width, int height) : width_(width), height_(height) {
    numbers_.assign(std::size_t(width) * height, 0);
  }
  int Width() const override { return width_; }
  int Height() const override { return height_; }
  std::int64_t PixelAt(int x, int y) const override {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return -1;
    int& number = numbers_[std::size_t(y) * width_ + x];
    if (number == 0) number = ++count_;
    return 0xFFFFFF;
  }
  int NumberAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return 0;
    return numbers_[std::size_t(y) * width_ + x];
  }

 private:
  int width_;
  int height_;
  // Reading a pixel is what numbers it; the packers see a const source.
  mutable std::vector<int> numbers_;
  mutable int count_ = 0;
};

class DiscardingSink final : public ValueSink {
 public:
  void StartComment() override {}
  void MarkBit(int) override {}
  void EmitValue(int, bool) override {}
  void GroupStart() override {}
};

int PixelsInByte(const settings::PixelModeSettings& p, bool monochrome) {
  if (monochrome) return 8;
  if (p.ST7 || p.G16 || p.C16 || p.C8 || p.G32) return 2;
  if (p.G42) return 8;
  if (p.G4) return 4;
  return 1;
}

QString OutputWidthText(const settings::Settings& s) {
  if (DataTargetOf(s.width) != DataTarget::Text) return QStringLiteral("Binary File");
  if (s.width.D32bc) return QStringLiteral("32 bit");
  if (s.width.D16bc) return QStringLiteral("16 bit");
  return QStringLiteral("8 bit");
}

QString BytesPerPixelsText(const settings::PixelModeSettings& p, int n) {
  if (p.C256 || (p.G32 && !p.PM)) return QStringLiteral(" 1 Byte = 1 pixel");
  if (p.G32) return QStringLiteral(" 2 Bytes = 3 pixels");
  if (p.C4096 && p.PM) return QStringLiteral(" 3 Bytes = 2 pixel");
  if (p.C4096 || p.C65535) return QStringLiteral(" 2 Bytes = 1 pixel");
  if (p.C18 || p.C18u || (p.C16M && p.PM)) return QStringLiteral(" 3 Bytes = 1 pixel");
  if (p.C16M) return QStringLiteral(" 4 Bytes = 1 pixel");
  if (p.G42) return QStringLiteral(" 1 Byte = 8 pixels > 2 Pages");
  return QStringLiteral(" 1 Byte = %1 pixels").arg(n);
}

}  // namespace

int ReorderPreview::NumberAt(int x, int y) const {
  const int col = x - windowLeft, row = y - windowTop;
  if (col < 0 || row < 0 || col >= kSize || row >= kSize) return 0;
  return cells[row][col];
}

long long PreviewByteCount(const settings::Settings& settings) {
  const auto& p = settings.pixel;
  const long long w = settings.display.GWI, h = settings.display.GHI;
  const auto mode = settings::CurrentPixelMode(settings);
  if (!mode || settings::IsMonochromeMode(*mode)) return p.bw8 ? w * h / 8 : (w / 6 + 1) * h;
  if (p.G16 && p.ST7) return w * ((h + 7) / 8) * 4;
  long long count =
      static_cast<long long>(std::trunc(double(w * h) / settings::PixelsPerByte(settings)));
  if (p.G32 && p.PM) count = static_cast<long long>(std::ceil(double(w * h / 3 * 2)));
  if (p.C4096) count = p.PM ? static_cast<long long>(count * 1.5) : count * 2;
  if (p.C65535) count *= 2;
  if (p.C18 || p.C18u) count *= 3;
  if (p.C16M) count *= p.PM ? 3 : 4;
  return count;
}

std::optional<ReorderPreview> RenumberingNormalGrid(const settings::Settings& settings) {
  const auto mode = settings::CurrentPixelMode(settings);
  if (!mode) return std::nullopt;
  const auto& p = settings.pixel;
  const bool monochrome = settings::IsMonochromeMode(*mode);

  ReorderPreview preview;
  preview.outputWidth = OutputWidthText(settings);
  preview.packing =
      !p.PM || p.C18u ? QStringLiteral("Unpacked Data") : QStringLiteral("Packed Data");
  preview.gridVisible = !(p.G16 && p.gsch && !settings::IsHorizontalScan(settings));
  preview.pixelsPerByte = PixelsInByte(p, monochrome);
  preview.dataSize = QStringLiteral("Data Size (bytes) : ") +
                     (monochrome && p.ccomp ? QStringLiteral("compressed")
                                            : QString::number(PreviewByteCount(settings)));
  preview.bytesPerPixels = BytesPerPixelsText(p, preview.pixelsPerByte);

  const int width = std::max(1, settings.display.GWI);
  const int height = std::max(1, settings.display.GHI);
  const auto corner =
      settings::CurrentOriginCorner(settings).value_or(settings::OriginCorner::CORN1);
  const bool right =
      corner == settings::OriginCorner::CORN2 || corner == settings::OriginCorner::CORN3;
  const bool bottom =
      corner == settings::OriginCorner::CORN3 || corner == settings::OriginCorner::CORN4;
  preview.windowLeft = right ? std::max(0, width - ReorderPreview::kSize) : 0;
  preview.windowTop = bottom ? std::max(0, height - ReorderPreview::kSize) : 0;

  NumberingSource source(width, height);
  DiscardingSink sink;
  platform::NoKeyPoll noEscape;
  settings::Settings walkSettings = settings;
  walkSettings.pixel.dore = false;
  walkSettings.display.GWI = width;
  walkSettings.display.GHI = height;
  ConversionCursor cursor;
  WalkRequest walk{walkSettings, source, PackerStages{sink}, noEscape, {0, 0, width, height}};
  (void)WalkArea(walk, cursor);

  for (int row = 0; row < ReorderPreview::kSize; ++row) {
    for (int col = 0; col < ReorderPreview::kSize; ++col) {
      preview.cells[row][col] = source.NumberAt(preview.windowLeft + col, preview.windowTop + row);
    }
  }
  return preview;
}

}  // namespace vt::convert
