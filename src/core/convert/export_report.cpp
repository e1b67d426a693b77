// SPDX-License-Identifier: MIT
#include "convert/export_report.h"

#include <QDir>
#include <QFileInfo>
#include <string>

#include "platform/folders.h"
#include "platform/messenger.h"
#include "settings/pixel_modes.h"
#include "util/atomic_write.h"

namespace vt::convert {
namespace {

const QString kRule = QStringLiteral("---------------------------------------------------------");

QString Paging(const settings::ScanSettings& s) {
  if (s.tl) return QStringLiteral("Paging Scheme horizontal from right to left");
  if (s.tr) return QStringLiteral("Paging Scheme horizontal From left to right");
  if (s.td) return QStringLiteral("Paging Scheme vertical downwards");
  if (s.tu) return QStringLiteral("Paging Scheme vertical upwards");
  if (s.tla) return QStringLiteral("Paging Scheme All horizontal from right to left");
  if (s.tra) return QStringLiteral("Paging Scheme All horizontal From left to right");
  if (s.tda) return QStringLiteral("Paging Scheme All vertical downwards");
  if (s.tua) return QStringLiteral("Paging Scheme All vertical upwards");
  return {};
}

QString ModeText(settings::PixelMode mode) {
  using settings::PixelMode;
  switch (mode) {
    case PixelMode::Monochrome:
    case PixelMode::MonochromeInverted:
      return QStringLiteral("Monochrome mode");
    case PixelMode::Gray16Vertical:
    case PixelMode::Gray16Horizontal:
    case PixelMode::Gray16Slices:
      return QStringLiteral("Grayscale 4bpp mode");
    case PixelMode::Gray4:
      return QStringLiteral("Grayscale 2bpp mode");
    case PixelMode::Gray4TwoPages:
      return QStringLiteral("Grayscale 2bpp 2 Pages mode");
    case PixelMode::Gray32Packed:
      return QStringLiteral("Grayscale 5bpp Packed mode");
    case PixelMode::Gray32LUnpacked:
      return QStringLiteral("Grayscale 5bpp unpacked mode Al. Left");
    case PixelMode::Gray32RUnpacked:
      return QStringLiteral("Grayscale 5bpp unpacked mode Al. Right");
    case PixelMode::Colors16:
      return QStringLiteral("16 Colors 4bpp mode");
    case PixelMode::Colors8:
      return QStringLiteral("8 Colors 3bpp mode");
    case PixelMode::Gray256:
    case PixelMode::Colors256:
    case PixelMode::Colors256OwnPalette:
      return QStringLiteral("256 Colors 8bpp mode");
    case PixelMode::Colors4096Packed:
      return QStringLiteral("4096 Colors 12bpp P mode");
    case PixelMode::Colors4096:
      return QStringLiteral("4096 Colors 12bpp U mode");
    case PixelMode::Colors65536:
      return QStringLiteral("65k Colors 16bpp mode");
    case PixelMode::Colors262kPacked:
    case PixelMode::Colors262k:
      return QStringLiteral("262k Colors 18bpp");
    case PixelMode::Colors16MPacked:
      return QStringLiteral("16M Colors 24bpp P mode");
    case PixelMode::Colors16M:
      return QStringLiteral("16M Colors 32bpp U mode");
  }
  return {};
}

bool NibbleMode(settings::PixelMode mode) {
  using settings::PixelMode;
  return mode == PixelMode::Gray16Vertical || mode == PixelMode::Gray16Horizontal ||
         mode == PixelMode::Gray16Slices || mode == PixelMode::Colors16;
}

QString TargetText(const settings::OutputFileSettings& o, bool animated) {
  if (o.Asmf)
    return animated ? QStringLiteral("Assembler Files") : QStringLiteral("Assembler File : ");
  if (o.libf) return animated ? QStringLiteral("Library File") : QStringLiteral("Library File : ");
  if (o.basf) return animated ? QStringLiteral("Basic Files") : QStringLiteral("Basic File : ");
  if (o.cfil) return QStringLiteral("C File : ");
  return animated ? QStringLiteral("C Header Files") : QStringLiteral("C Header File : ");
}

}  // namespace

QStringList ExportReportParagraphs(const settings::Settings& s, const ExportReportInfo& info) {
  QStringList out;
  auto block = [&out](const QStringList& lines) {
    if (lines.isEmpty()) return;
    out << lines << kRule;
  };
  const auto mode = settings::CurrentPixelMode(s).value_or(settings::PixelMode::Monochrome);

  out << (info.animated ? QStringLiteral("LCD animation parameters // generated with Vantorelle ")
                        : QStringLiteral("LCD graphic parameters // generated with Vantorelle ")) +
             info.version
      << info.dateText << kRule;
  if (info.postProcessing) {
    block(
        {QStringLiteral("Text processing filename : ") + info.postProcessing->first,
         QStringLiteral("Post-Processing : %1 occurences found").arg(info.postProcessing->second)});
  }
  block({Paging(s.scan)});

  QStringList bits;
  bits << (s.scan.MSBF ? QStringLiteral("Big Endian / MSB first")
                       : QStringLiteral("Little Endian / MSB last"));
  if (!s.pixel.bw8) bits << QStringLiteral("6 bit T6963 Mode ");
  bits << (s.pixel.Neg ? QStringLiteral("Inverted Data Output")
                       : QStringLiteral("Not Inverted Data Output"));
  if (s.pixel.SWRG) bits << QStringLiteral("Red and Blue Swapped !");
  if (s.pixel.rgb2) bits << QStringLiteral("1st and last bytes Swapped !");
  if (NibbleMode(mode)) {
    bits << (s.pixel.snib ? QStringLiteral("Nibble Swapping ON")
                          : QStringLiteral("Nibble Swapping OFF"));
  }
  if (s.pixel.ST7) bits << QStringLiteral("ST7528 Mode ON");
  block(bits);

  const auto& w = s.width;
  block({w.DHec    ? QStringLiteral("Hex File output format")
         : w.DIHec ? QStringLiteral("Intel Hex output format")
         : w.D16bc ? QStringLiteral("16 bit output format")
         : w.D32bc ? QStringLiteral("32 bit output format")
                   : QStringLiteral("8 bit output format"),
         s.pixel.PM && !s.pixel.C18u ? QStringLiteral("Packed Data")
                                     : QStringLiteral("Unpacked Data")});
  block({ModeText(mode)});
  block({s.scan.CORN2   ? QStringLiteral("Origin corner top right")
         : s.scan.CORN3 ? QStringLiteral("Origin corner bottom right")
         : s.scan.CORN4 ? QStringLiteral("Origin corner bottom left")
                        : QStringLiteral("Origin corner top left")});
  if (s.post.asrg || s.post.Autop) block({QStringLiteral("Postprocessing is ENABLED ")});
  block({TargetText(s.output, info.animated) + (info.animated ? QString() : info.outputFileName)});

  const bool noSource = s.output.nbmfn == QLatin1String("Newfile.bmp") ||
                        s.output.nbmfn == QLatin1String("temp1298621.bmp");
  block({(info.animated ? QStringLiteral("Animation Source file : ")
                        : QStringLiteral("Bitmap Source file : ")) +
         (noSource ? QStringLiteral("<none>") : s.output.nbmfn)});

  QStringList tables;
  if (info.animated) {
    long long sum = 0;
    for (const ExportReportInfo::Frame& frame : info.frames) {
      tables << QStringLiteral("Data table for frame : ") + frame.arrayName;
      tables << QStringLiteral("Size in Bytes : %1").arg(frame.bytes) +
                    (info.compression ? QStringLiteral("  compression ratio : ") + frame.ratio
                                      : QString());
      sum += frame.bytes;
    }
    tables << QStringLiteral("Animation size in bytes : %1").arg(sum);
    if (s.animation.Ecli) tables << QStringLiteral("Clip Unit : ") + info.clipName;
  } else {
    tables << QStringLiteral("Data file created : ") + info.dataFilePath
           << QStringLiteral("Data table created : ") + info.arrayName;
  }
  block(tables);

  QStringList area;
  if (info.fullScreen) {
    area << QStringLiteral("Full screen pattern ");
  } else if (info.trueOrigin) {
    area << QStringLiteral("Original X and Y coordinates") << QStringLiteral("True origin enabled")
         << QStringLiteral("Origin  X =") + info.xText + QStringLiteral(" Y =") + info.yText
         << QStringLiteral("Opposite corner X =") + info.rightText + QStringLiteral(" Y =") +
                info.bottomText;
  } else {
    area << QStringLiteral("Original X and Y coordinates") << QStringLiteral("True origin disabled")
         << QStringLiteral("Top Left  X =") + info.xText + QStringLiteral(" Y =") + info.yText
         << QStringLiteral("Bot Right X =") + info.rightText + QStringLiteral(" Y =") +
                info.bottomText;
  }
  area << QStringLiteral("Width = %1").arg(info.width)
       << QStringLiteral("Height = %1").arg(info.height);
  block(area);

  QStringList sizes{QStringLiteral("%1 Bytes").arg(info.bytes)};
  if (w.D16bc || w.D32bc) sizes << QStringLiteral("%1 Words").arg(info.bytes / (w.D16bc ? 2 : 4));
  if (info.compression) {
    sizes
        << QStringLiteral("Compressed data")
        << QStringLiteral("%1 Bytes").arg(info.compression->DataBytes + info.compression->Pointers);
  }
  block(sizes);
  if (info.compression) block(CompressionStatistics(*info.compression, info.dataByteCount));
  return out;
}

QByteArray RtfDocument(const QStringList& paragraphs) {
  std::string rtf =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fmodern Courier New;}}\r\n"
      "\\f0\\fs20\r\n";
  qsizetype size = 0;
  for (const QString& paragraph : paragraphs) size += paragraph.size() + 8;
  rtf.reserve(rtf.size() + std::size_t(size) + 8);
  for (const QString& paragraph : paragraphs) {
    for (const QChar c : paragraph) {
      const char16_t u = c.unicode();
      if (u == u'\\' || u == u'{' || u == u'}') {
        rtf += '\\';
        rtf += static_cast<char>(u);
      } else if (u >= 0x20 && u < 0x7F) {
        rtf += static_cast<char>(u);
      } else if (u >= 0x80) {
        rtf += "\\u" + std::to_string(static_cast<qint16>(u)) + '?';
      }
    }
    rtf += "\\par\r\n";
  }
  rtf += "}\r\n";
  return QByteArray(rtf.data(), qsizetype(rtf.size()));
}

bool WriteExportReport(platform::Messenger& messenger, platform::FileUse& fileUse,
                       const settings::Settings& settings, const QString& path,
                       const ExportReportInfo& info) {
  messenger.SetLaction(QStringLiteral("WriteExportReport"));
  if (QFileInfo::exists(path) && fileUse.IsFileInUse(path)) {
    messenger.MessageDlgA(QStringLiteral(" RTF file was opened by another application ! "),
                          QStringLiteral("Error"), 0, platform::Buttons::Ok,
                          platform::DialogType::Error);
    return false;
  }
  QDir().mkpath(QFileInfo(path).absolutePath());
  if (!WriteFileAtomically(path, RtfDocument(ExportReportParagraphs(settings, info)),
                           Durability::Cached)) {
    messenger.HandledExcept(QStringLiteral("Error While Trying to Make Document File !"));
    return false;
  }
  return true;
}

}  // namespace vt::convert
