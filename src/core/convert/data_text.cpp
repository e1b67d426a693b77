// SPDX-License-Identifier: MIT
#include "convert/data_text.h"

#include <algorithm>
#include <cmath>

#include "convert/bits.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

QString TwoHexDigits(int value) {
  return QStringLiteral("%1").arg(value & 0xFF, 2, 16, QLatin1Char('0')).toUpper();
}

bool MonochromeOrUnset(const settings::Settings& settings) {
  const auto mode = settings::CurrentPixelMode(settings);
  return !mode || settings::IsMonochromeMode(*mode);
}

QString TrimTrailingBlanks(QString line) {
  qsizetype end = line.size();
  while (end > 0 && (line[end - 1] == QLatin1Char(' ') || line[end - 1] == QLatin1Char('\t'))) {
    --end;
  }
  line.truncate(end);
  return line;
}

}  // namespace

DataTarget DataTargetOf(const settings::OutputWidthSettings& width) {
  if (width.DHec) return DataTarget::Binary;
  if (width.DIHec) return DataTarget::IntelHex;
  return DataTarget::Text;
}

EndOfLineFlags EndOfLineFlagsOf(const settings::DataFormatSettings& format) {
  return {format.Eolcom, format.EolSem, format.EolStr, format.Eoln, format.eolst};
}

DataTextWriter::DataTextWriter(const settings::Settings& settings, app::TextBuffer& text,
                               DataTextOptions options, app::TextBuffer* secondPlane)
    : settings_(settings),
      text_(text),
      options_(std::move(options)),
      style_(CommentStyleOf(settings.comment)),
      format_(CurrentConstantFormat(settings.format)),
      target_(DataTargetOf(settings.width)),
      wordBytes_(OutputWordBits(settings.width) / 8),
      pictureEnabled_(MonochromeOrUnset(settings) && std::max(1, settings.format.ORGC) == 1 &&
                      !settings.comment.Nodcom),
      dealPlanes_(settings.pixel.G42) {
  if (dealPlanes_ && secondPlane) {
    secondPlane_.reset(new DataTextWriter(SecondPlaneTag{}, settings, *secondPlane, options_));
  }
  picture_ = PictureTemplate();
}

DataTextWriter::DataTextWriter(SecondPlaneTag, const settings::Settings& settings,
                               app::TextBuffer& text, DataTextOptions options)
    : DataTextWriter(settings, text, std::move(options), nullptr) {
  dealPlanes_ = false;
}

DataTextWriter::~DataTextWriter() = default;

QString DataTextWriter::PictureTemplate() const {
  if (!pictureEnabled_) return {};
  const QString ruler(wordBytes_ * 8, QLatin1Char('_'));
  if (style_.c) return QStringLiteral("     /*  ") + ruler + QStringLiteral("  */");
  const QString gap =
      settings_.comment.PSCOM ? QStringLiteral("      ") : QStringLiteral("       ");
  return style_.opener + gap + ruler + QStringLiteral("    ");
}

void DataTextWriter::StartComment() {
  if (partCount_ == 0) picture_ = PictureTemplate();
}

void DataTextWriter::MarkBit(int bit) {
  if (picture_.isEmpty() || bit < 0 || bit > 7) return;
  // The drawing starts at position 10 of the picture text (index 9) in every comment style,
  // most significant bit leftmost. The bytes of a word are drawn in the order the word is
  // written: by MSBF the first byte leftmost, else the last.
  const int byteColumn = settings_.scan.MSBF ? partCount_ : wordBytes_ - 1 - partCount_;
  const qsizetype at = 9 + byteColumn * 8 + (7 - bit);
  if (at < picture_.size()) picture_[at] = QLatin1Char('#');
}

void DataTextWriter::EmitValue(int value, bool endOfPixel) {
  Q_UNUSED(endOfPixel);
  ++valueCount_;
  const bool last =
      lastMarked_ || (options_.dataByteCount > 0 && valueCount_ == options_.dataByteCount);
  lastMarked_ = false;
  if (target_ != DataTarget::Text) {
    // Binary and Intel Hex targets take the bytes as they are (no Neg): the byte target
    // builds the file.
    if (hexTarget_) hexTarget_->AppendHexByte(TwoHexDigits(value));
    return;
  }
  const int byte = settings_.pixel.Neg ? 255 - value : value;

  if (dealPlanes_) {
    if (!pairPending_) {
      pairFirst_ = byte;
      pairPending_ = true;
      return;
    }
    pairPending_ = false;
    // The pair is one 16-bit number, first value high; its odd bits make the byte of the main
    // array, its even bits the byte of the second plane.
    const int pair = ((pairFirst_ & 0xFF) << 8) | (byte & 0xFF);
    int a = 0;
    int b = 0;
    for (int k = 0; k < 8; ++k) {
      const int target = settings_.scan.MSBF ? k : 7 - k;
      if (TestBit(pair, 2 * k + 1)) a |= 1 << target;
      if (TestBit(pair, 2 * k)) b |= 1 << target;
    }
    if (secondPlane_) secondPlane_->PutConstant(&b, 1, last);
    PutConstant(&a, 1, last);
    return;
  }

  parts_[partCount_++] = byte;
  if (partCount_ < wordBytes_) return;  // a word is pending
  const int count = partCount_;
  partCount_ = 0;
  PutConstant(parts_.data(), count, last);
}

QString DataTextWriter::SpellWord(const int* parts, int count) {
  // The word in the order it is written: by MSBF the first byte first, else the last.
  std::array<int, 4> ordered{};
  for (int i = 0; i < count; ++i) {
    ordered[i] = (settings_.scan.MSBF ? parts[i] : parts[count - 1 - i]) & 0xFF;
  }
  const ConstantFormatInfo& info = Info(format_);
  if (info.binaryFormat) {
    QString text;
    for (int i = 0; i < count; ++i) text += ToBinaryText(ordered[i], 8);
    return text;
  }
  if (info.decimalFormat) {
    std::uint64_t word = 0;
    for (int i = 0; i < count; ++i) word = (word << 8) | static_cast<std::uint64_t>(ordered[i]);
    QString text = QString::number(word);
    if (count == 4) text = text.leftJustified(10);
    return text;
  }
  QString text;
  for (int i = 0; i < count; ++i) text += TwoHexDigits(ordered[i]);
  if (settings_.format.Addof &&
      (format_ == ConstantFormat::H || format_ == ConstantFormat::PlusHPlus) && ordered[0] > 159) {
    text.prepend(QLatin1Char('0'));
    ++leadingZeros_;
  }
  if (count == 4) text = text.leftJustified(10);
  return text;
}

void DataTextWriter::PutConstant(const int* parts, int count, bool last) {
  valueText_ = SpellWord(parts, count);
  arrayBytes_ += count;
  AppendConstant(last);
  // The font generator ends a glyph's line with its last value.
  CloseLine(options_.fontMode && last);
}

void DataTextWriter::AppendConstant(bool last) {
  const settings::DataFormatSettings& f = settings_.format;
  const ConstantFormatInfo& info = Info(format_);
  const int perLine = std::max(1, f.ORGC);
  const bool goesOn = !last;
  const QString head = f.CPRE + (f.LineN ? QString::number(lineNumber_) : QString()) + f.cpfr;
  const QString sep = f.COMAv ? QStringLiteral(",") : (f.COMAS ? f.sepst : QString());
  const QString gap = f.WithSp ? QStringLiteral(" ") : QString();
  const QString v =
      info.decimalFormat ? valueText_.leftJustified(wordBytes_ == 2 ? 5 : 3) : valueText_;

  QString lead;   // Head, for the first constant of a line
  QString piece;  // the constant with its blanks and separator
  QString picture;
  if (perLine == 1) {
    lead = head;
    const bool separated = f.COMAh && goesOn;
    switch (format_) {
      case ConstantFormat::X:
        piece = QStringLiteral(" 0x") + v + (separated ? sep : QStringLiteral(" ") + sep);
        picture = picture_;
        break;
      case ConstantFormat::H:
        piece = QLatin1Char(' ') + v + (separated ? QStringLiteral("h ,") : QStringLiteral("h "));
        picture = picture_;
        break;
      case ConstantFormat::ZeroB:
        piece = QStringLiteral(" 0b") + v;
        break;
      case ConstantFormat::B:
        piece = QLatin1Char(' ') + v + QLatin1Char('b');
        break;
      default:
        piece = f.VALpref + v + f.VALSUF;
        picture = picture_;
        break;
    }
  } else {
    enum class Place { First, Middle, Last };
    const Place place = constantsOnLine_ == 0             ? Place::First
                        : constantsOnLine_ == perLine - 1 ? Place::Last
                                                          : Place::Middle;
    if (place == Place::First) lead = head;
    const QString separator = (place != Place::Last && f.COMAh && goesOn)
                                  ? (info.binaryFormat ? QStringLiteral(", ") : sep)
                                  : QString();
    switch (format_) {
      case ConstantFormat::X:
        piece =
            QStringLiteral(" 0x") + v + (place == Place::Last ? QString() : QStringLiteral(" "));
        piece += separator;
        break;
      case ConstantFormat::H:
        piece = QLatin1Char(' ') + v +
                (place == Place::First ? QStringLiteral("h") : QStringLiteral("h "));
        piece += separator;
        break;
      case ConstantFormat::ZeroB:
        piece =
            QStringLiteral(" 0b") + v + (place == Place::First ? QString() : QStringLiteral(" "));
        piece += separator;
        break;
      case ConstantFormat::B:
        piece = QLatin1Char(' ') + v + QLatin1Char('b');
        piece += separator;
        break;
      default:
        // The separator follows the constant; the gap parts it from the next one.
        piece = f.VALpref + v + f.VALSUF + separator + (place == Place::Last ? QString() : gap);
        break;
    }
  }
  if (last) piece.replace(QLatin1Char(','), QLatin1Char(' '));
  line_ += lead + piece + picture;
  ++constantsOnLine_;
}

QString DataTextWriter::EndMark() const {
  const EndOfLineFlags& eol = options_.eol;
  if (eol.EolStr) return eol.eolst;
  if (eol.Eolcom) return QStringLiteral(",");
  if (eol.EolSem) return QStringLiteral(";");
  return {};
}

void DataTextWriter::CloseLine() { CloseLine(false); }

void DataTextWriter::CloseLine(bool force) {
  if (constantsOnLine_ == 0 && line_.isEmpty()) return;
  if (!force &&
      (constantsOnLine_ < std::max(1, settings_.format.ORGC) || partCount_ > 0 || pairPending_)) {
    return;
  }
  // The end mark goes before the first run of four blanks, the gap that leads to the picture,
  // or at the end. Only a line of one constant has that gap: with several, a run of four blanks
  // is the padding of a short decimal word, and a mark there would leave an empty element.
  const bool onePerLine = std::max(1, settings_.format.ORGC) == 1;
  const qsizetype gapAt = onePerLine ? line_.indexOf(QStringLiteral("    ")) : -1;
  if (gapAt >= 0) {
    line_.insert(gapAt, EndMark());
  } else {
    line_ += EndMark();
  }
  if (line_.endsWith(QLatin1Char('#'))) line_.chop(1);
  // Leading zeros made the constant longer: take as many characters away in front of the
  // picture so that it keeps its column.
  if (!picture_.isEmpty() && leadingZeros_ > 0) {
    const qsizetype at = line_.indexOf(picture_);
    if (at >= 0) {
      const qsizetype n = std::min<qsizetype>(leadingZeros_, at);
      line_.remove(at - n, n);
    }
  }
  WriteLine(line_);
  line_.clear();
  constantsOnLine_ = 0;
  leadingZeros_ = 0;
  if (settings_.format.LineN) ++lineNumber_;
}

void DataTextWriter::WriteLine(const QString& line) {
  if (options_.fontMode && settings_.comment.HCO) {
    commentBlock_.append(line);
    return;
  }
  dataLines_.append(text_.Count());
  text_.AddLine(line);
}

void DataTextWriter::GroupStart() {
  if (!settings_.block.ColRx) return;
  if (secondPlane_) secondPlane_->GroupStart();
  // A row that ended inside a line: its line goes out as it stands, without an end mark.
  if (!line_.isEmpty()) {
    WriteLine(line_);
    line_.clear();
    constantsOnLine_ = 0;
    leadingZeros_ = 0;
  }
  if (groupOpen_) text_.AddLine(settings_.block.fpar12);
  text_.AddLine(settings_.block.fpar11);
  groupOpen_ = true;
}

void DataTextWriter::WriteDataPreamble(const PreambleInfo& info, const HeaderText& header) {
  const settings::Settings& s = settings_;
  if (!s.comment.Noonts) {
    const int bits = OutputWordBits(s.width);
    QString width = bits == 16   ? QStringLiteral("Word width format is 16 bit ")
                    : bits == 32 ? QStringLiteral("Word width format is 32 bit ")
                                 : QStringLiteral("Byte width format is 8 bit ");
    width += s.scan.MSBF ? QStringLiteral("/ Big endian") : QStringLiteral("/ Little endian");
    if (!s.pixel.bw8) width += QStringLiteral(" / 6 bit T6963 Mode ");
    const QString generated = info.compressed
                                  ? QStringLiteral("COMPRESSED Data generated with Vantorelle ")
                                  : QStringLiteral("Data generated with Vantorelle ");
    const bool postprocessing = s.post.asrg || s.post.Autop;
    if (style_.c) {
      text_.AddLine(QStringLiteral("/* ") + generated + info.version + QStringLiteral("*/"));
      if (info.animated) {
        text_.AddLine(QStringLiteral("/* Animated Sequence Part # %1 of %2  */")
                          .arg(info.frame)
                          .arg(info.frameCount));
      }
      text_.AddLine(QStringLiteral("/* ") + info.dateText + QStringLiteral(" */"));
      text_.AddLine(QStringLiteral("/* Bitmap Source file : ") + s.output.nbmfn +
                    QStringLiteral(" */"));
      text_.AddLine(QStringLiteral("/* ") + width + QStringLiteral(" */"));
      if (postprocessing) text_.AddLine(QStringLiteral("/* Postprocessing is ENABLED  */"));
    } else {
      const QString& c = style_.opener;
      text_.AddLine(c + QLatin1Char(' ') + generated + info.version);
      if (info.animated) {
        text_.AddLine(c + QStringLiteral(" Animated Sequence Part # %1 of %2")
                              .arg(info.frame)
                              .arg(info.frameCount));
      }
      text_.AddLine(c + QLatin1Char(' ') + info.dateText);
      text_.AddLine(c + QStringLiteral(" Bitmap Source file : ") + s.output.nbmfn);
      text_.AddLine(c + QLatin1Char(' ') + width);
      if (postprocessing) text_.AddLine(c + QStringLiteral(" Postprocessing is ENABLED "));
    }
    text_.AddLine(QString());
  }

  if (s.comment.Noh) {
    text_.AddLine(s.block.ColRx ? s.block.fpar13 : s.block.begds);
  } else if (!header.text.isEmpty()) {
    QStringList lines = header.text.split(QLatin1Char('\n'));
    if (header.text.endsWith(QLatin1Char('\n'))) lines.removeLast();
    for (const QString& raw : lines) {
      const QString line = TrimTrailingBlanks(ApplyWordType(s, raw));
      // Runs of empty lines collapse into one.
      if (line.isEmpty() && !text_.IsEmpty() && text_.LastLine().isEmpty()) continue;
      text_.AddLine(line);
    }
  }
  if (secondPlane_ && !header.secondPlaneHeader.isEmpty()) {
    secondPlane_->text_.AddLine(header.secondPlaneHeader);
  }
}

void DataTextWriter::RemoveEndMark(QString& line) const {
  const settings::DataFormatSettings& f = settings_.format;
  const EndOfLineFlags& eol = options_.eol;
  if (eol.Eolcom || f.COMAh) {
    const qsizetype at = line.lastIndexOf(QLatin1Char(','));
    if (at >= 0 && (std::max(1, f.ORGC) == 1 || at >= line.size() - 2)) line.remove(at, 1);
  }
  if (eol.EolSem) {
    const qsizetype at = line.lastIndexOf(QLatin1Char(';'));
    if (at >= 0) line.remove(at, 1);
  }
  if (eol.EolStr && !eol.eolst.isEmpty()) {
    const qsizetype at = line.lastIndexOf(eol.eolst.back());
    if (at >= 0) line.truncate(at);
  }
  // The custom separator is cut with what follows it only where it ends the line: a full last
  // line ends in a constant, and cutting there would take the constant away.
  if (f.COMAS && !f.sepst.isEmpty()) {
    const qsizetype at = line.lastIndexOf(f.sepst);
    if (at >= 0 && line.mid(at + f.sepst.size()).trimmed().isEmpty()) line.truncate(at);
  }
}

void DataTextWriter::FinishArray() {
  const settings::DataFormatSettings& f = settings_.format;
  const bool pending = !line_.isEmpty();
  // Packed 4096 colours in "+H+": the last constant gets the comma its suffix could not carry.
  if (settings_.pixel.C4096 && settings_.pixel.PM && format_ == ConstantFormat::PlusHPlus &&
      !f.VALpref.isEmpty()) {
    QString line =
        pending ? line_ : (dataLines_.isEmpty() ? QString() : text_.Line(dataLines_.last()));
    const qsizetype at = line.lastIndexOf(f.VALpref);
    if (at >= 0) {
      line.insert(at, QLatin1Char(','));
      if (pending) {
        line_ = line;
      } else {
        text_.ReplaceLine(dataLines_.last(), line);
      }
    }
  }
  if (settings_.format.delallas) {
    for (int index : dataLines_) {
      QString line = text_.Line(index);
      RemoveEndMark(line);
      text_.ReplaceLine(index, line);
    }
    if (pending) RemoveEndMark(line_);
  } else if (settings_.format.dellas) {
    if (pending) {
      RemoveEndMark(line_);
    } else if (!dataLines_.isEmpty()) {
      QString line = text_.Line(dataLines_.last());
      RemoveEndMark(line);
      text_.ReplaceLine(dataLines_.last(), line);
    }
  }
  if (pending) {
    dataLines_.append(text_.Count());
    text_.AddLine(line_);
    line_.clear();
    constantsOnLine_ = 0;
  }
  if (settings_.block.ColRx && groupOpen_) {
    text_.AddLine(settings_.block.fpar12);
    groupOpen_ = false;
  }
  text_.AddLine(settings_.block.ColRx ? settings_.block.fpar14 : settings_.block.Endst);
}

void DataTextWriter::WriteDataEnd(const HeaderText& header, const DataEndInfo& info) {
  const settings::Settings& s = settings_;
  if (secondPlane_) secondPlane_->FinishArray();
  FinishArray();
  if (info.compression) {
    text_.AddLine(QString());
    if (s.comment.Noh) text_.AddLine(s.block.begds);
    const QStringList& pane = info.compression->pointerPane;
    for (qsizetype i = 1; i < pane.size(); ++i) {
      if (pane[i].isEmpty() && text_.LastLine().isEmpty()) continue;
      text_.AddLine(pane[i]);
    }
    text_.AddLine(s.block.Endst);
  }

  const QString name = header.linePrefix + QLatin1Char(' ') + header.arrayName;
  const QString end = QLatin1Char(' ') + s.block.EODS;
  if (s.block.BSD) {
    double p = info.pixelsPerByte;
    if (p <= 0.0) p = s.display.NOMAT ? 1.0 : settings::PixelsPerByte(s);
    const bool horizontal = settings::IsHorizontalScan(s);
    const QString pagesWidth = QString::number(static_cast<long long>(std::trunc(info.width / p)));
    const QString pagesHeight =
        QString::number(static_cast<long long>(std::trunc(info.height / p)));
    text_.AddLine(QString());
    text_.AddLine(name +
                  (horizontal ? QStringLiteral("WidthPages = ") + pagesWidth
                              : QStringLiteral("WidthPixels = ") + QString::number(info.width)) +
                  end);
    text_.AddLine(QString());
    text_.AddLine(name +
                  (horizontal ? QStringLiteral("HeightPixels = ") + QString::number(info.height)
                              : QStringLiteral("HeightPages = ") + pagesHeight) +
                  end);
  }
  if (s.block.BCD) {
    text_.AddLine(QString());
    text_.AddLine(name + QStringLiteral("X = ") + header.xText + end);
    text_.AddLine(QString());
    text_.AddLine(name + QStringLiteral("Y = ") + header.yText + end);
  }
  if (s.comment.Noonts) return;

  // The count: bytes, or words of 16 or 32 bits (a compressed array counts bytes).
  const bool words = wordBytes_ > 1 && !info.compressed && !info.compression;
  const long long count = info.compression ? info.compression->bytes
                          : words          ? arrayBytes_ / wordBytes_
                                           : arrayBytes_;
  if (style_.c) {
    text_.AddLine(QStringLiteral("/******************/"));
    text_.AddLine(QStringLiteral("/* %1 %2 */")
                      .arg(count)
                      .arg(words ? QStringLiteral("Words") : QStringLiteral("Bytes")));
    text_.AddLine(QStringLiteral("/* End of LCD Pattern           */"));
    if (!info.animated) {
      text_.AddLine(QStringLiteral("/* Save table and see info file ") + info.reportName +
                    QStringLiteral(" */"));
      text_.AddLine(QString());
    }
  } else {
    const QString& c = style_.opener;
    text_.AddLine(c + QStringLiteral(" ******************"));
    text_.AddLine(c + QStringLiteral(" %1 Bytes ").arg(count));
    text_.AddLine(c + QStringLiteral("  End of LCD Pattern  "));
    if (!info.animated) {
      text_.AddLine(c + QStringLiteral("  Save table and see info file ") + info.reportName);
    }
  }
  if (info.compression) {
    text_.AddLine(QString());
    for (const QString& line : info.compression->statistics) {
      text_.AddLine(style_.opener + QLatin1Char(' ') + line + style_.closer);
    }
  }
}

}  // namespace vt::convert
