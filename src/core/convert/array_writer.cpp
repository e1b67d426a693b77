// SPDX-License-Identifier: MIT
#include "convert/array_writer.h"

#include <QFileInfo>
#include <cmath>

#include "convert/data_text.h"
#include "convert/fast_walk.h"
#include "settings/pixel_modes.h"

namespace vt::convert {

long long DataByteCount(const settings::Settings& settings, int width, int height) {
  const auto& p = settings.pixel;
  const long long area = static_cast<long long>(width) * height;
  const auto mode = settings::CurrentPixelMode(settings);
  const bool mono = !mode || settings::IsMonochromeMode(*mode);
  if (mono) {
    if (!p.bw8) return (static_cast<long long>(width / 6) + 1) * height + 1;
    return area / 8 + 1;
  }
  const double ppb = settings.display.NOMAT ? 1.0 : settings::PixelsPerByte(settings);
  long long count = static_cast<long long>(std::trunc(double(area) / ppb)) + 1;
  if (p.G32 && p.PM) count = static_cast<long long>(std::ceil(double(area / 3 * 2)));
  if (p.C4096) count = p.PM ? static_cast<long long>(count * 1.5) : count * 2;
  if (p.C65535) count *= 2;
  if (p.C18 || p.C18u) count *= 3;
  if (p.C16M) count *= p.PM ? 3 : 4;
  return count;
}

ArrayResult WriteArray(const ArrayRequest& request, platform::TextBuffer& text) {
  const settings::Settings& settings = request.settings;
  const AreaBounds& area = request.area;
  const int width = std::max(0, area.right - area.left);
  const int height = std::max(0, area.bottom - area.top);

  ArrayResult result;
  result.arrayName = QFileInfo(request.outputFileName).completeBaseName();

  HeaderRequest header;
  header.templateText = request.headerTemplate;
  header.templateFileName = request.templateFileName;
  header.arrayName = result.arrayName;
  header.half = request.half;
  header.compression = settings.pixel.ccomp;
  header.dataByteCount = DataByteCount(settings, width, height);
  header.left = area.left;
  header.top = area.top;
  header.right = area.right - 1;
  header.bottom = area.bottom - 1;
  header.width = width;
  header.height = height;
  const HeaderText built = BuildHeader(settings, header);
  const bool textTarget = DataTargetOf(settings.width) == DataTarget::Text;
  if (textTarget) result.warning = built.warning;
  result.header = built;

  DataTextOptions options;
  options.eol = EndOfLineFlagsOf(settings.format);
  options.dataByteCount = header.dataByteCount;
  options.referencePaths = request.referencePaths;
  // Two-page gray writes its second plane apart; the writer puts it after the first array.
  platform::TextBuffer secondPlane;
  DataTextWriter writer(settings, text, options, textTarget ? &secondPlane : nullptr);
  writer.SetHexByteTarget(request.hexTarget);

  if (textTarget) {
    PreambleInfo preamble;
    preamble.version = kGeneratedVersionText;
    preamble.dateText = request.dateText;
    preamble.compressed = settings.pixel.ccomp;
    writer.WriteDataPreamble(preamble, built);
  }

  std::optional<PointerText> pointers;
  std::optional<DataCompressor> compressor;
  // Runs are counted on monochrome bytes only; other modes never compress.
  const auto mode = settings::CurrentPixelMode(settings);
  if (settings.pixel.ccomp && textTarget && (!mode || settings::IsMonochromeMode(*mode))) {
    pointers.emplace(settings);
    compressor.emplace(header.dataByteCount, *pointers);
  }
  ConversionCursor cursor;
  std::optional<GridReorderStage> reorder;
  if (request.reorderGrid) reorder.emplace(*request.reorderGrid, settings);
  PackerStages stages{writer, compressor ? &*compressor : nullptr};
  stages.reorder = reorder ? &*reorder : nullptr;
  WalkRequest walk{settings, request.source, stages, request.keyPoll, area};
  walk.lowerHalf = request.half == HalfExport::Lower;
  walk.stages.colors = request.colors;
  // The common cases take the fast loops, which give the same bytes.
  const auto* image = dynamic_cast<const ImagePixelSource*>(&request.source);
  std::optional<bool> fast;
  if (image != nullptr && !request.referencePaths) {
    fast = FastWalkArea(walk, *image, writer, reorder ? &reorder->Program() : nullptr, cursor);
  }
  result.completed = fast ? *fast : WalkArea(walk, cursor);
  result.bytes = writer.ArrayBytes();
  result.valueCount = static_cast<long long>(cursor.ByteCount);
  if (!result.completed || !textTarget) return result;

  DataEndInfo end;
  end.reportName = result.arrayName + QStringLiteral(".rtf");
  end.width = width;
  end.height = height;
  if (compressor) {
    const CompressionCounters& counters = compressor->Counters();
    result.compression = counters;
    if (SavedBytes(counters, header.dataByteCount) >= 1) {
      // The second pane: the rest of the [&COMPRESSION] line (or the note of a template
      // without it), the pointer array's declaration, the pointers.
      CompressedArrayEnd compressed;
      compressed.pointerPane << (built.hasCompressionToken ? QString() : built.compressionNote);
      if (built.hasCompressionToken && !settings.comment.Noh) {
        // As the header: trailing blanks (the template's padding) cut.
        for (QString line : built.compressedHeader.split(QLatin1Char('\n'))) {
          while (line.endsWith(QLatin1Char(' '))) line.chop(1);
          compressed.pointerPane << line;
        }
      }
      compressed.pointerPane << pointers->Finish();
      compressed.bytes = counters.DataBytes + counters.Pointers;
      compressed.statistics = CompressionStatistics(counters, header.dataByteCount);
      end.compressed = true;
      end.compression = compressed;
    } else {
      result.compressionFailed = true;
    }
  }
  writer.WriteDataEnd(built, end);
  return result;
}

}  // namespace vt::convert
