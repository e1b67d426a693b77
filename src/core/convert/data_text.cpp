// SPDX-License-Identifier: MIT
#include "convert/data_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

QString TwoHexDigits(int value) {
  static constexpr char kHexDigits[] = "0123456789ABCDEF";
  const char digits[2] = {kHexDigits[(value >> 4) & 15], kHexDigits[value & 15]};
  return QString::fromLatin1(digits, 2);
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

std::string Utf8(const QString& text) { return text.toUtf8().toStdString(); }

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Pads `text` with blanks on the right to `width` characters (digits and blanks only).
void LeftJustify(std::string& text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
}

/// The byte where the last `units` UTF-16 code units before `at` begin in UTF-8 `text`.
std::size_t BackByUnits(const std::string& text, std::size_t at, int units) {
  while (units > 0 && at > 0) {
    std::size_t start = at - 1;
    while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
    units -= (static_cast<unsigned char>(text[start]) >= 0xF0) ? 2 : 1;
    at = start;
  }
  return at;
}

/// The end mark of a line by the run's end-of-line flags.
QString EndMarkOf(const EndOfLineFlags& eol) {
  if (eol.EolStr) return eol.eolst;
  if (eol.Eolcom) return QStringLiteral(",");
  if (eol.EolSem) return QStringLiteral(";");
  return {};
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

DataTextWriter::DataTextWriter(const settings::Settings& settings, platform::TextBuffer& text,
                               DataTextOptions options, platform::TextBuffer* secondPlane)
    : DataTextWriter(SecondPlaneTag{}, settings, text, options) {
  if (settings.pixel.G42) {
    dealing_.emplace(settings.scan.MSBF);
    if (secondPlane) {
      secondPlane_.reset(new DataTextWriter(SecondPlaneTag{}, settings, *secondPlane, options_));
    }
  }
}

DataTextWriter::DataTextWriter(SecondPlaneTag, const settings::Settings& settings,
                               platform::TextBuffer& text, const DataTextOptions& options)
    : settings_(settings),
      text_(text),
      options_(options),
      style_(CommentStyleOf(settings.comment)),
      target_(DataTargetOf(settings.width)),
      wordBytes_(OutputWordBits(settings.width) / 8),
      perLine_(std::max(1, settings.format.ORGC)),
      pictureEnabled_(MonochromeOrUnset(settings) && perLine_ == 1 && !settings.comment.Nodcom),
      spelling_(settings, Utf8(EndMarkOf(options.eol))) {
  // In two-page gray each plane places one constant a pair, and only a pair that ends at the
  // count is the last: an odd count never ends a pair.
  const long long count = options_.dataByteCount;
  lastConstant_ = !settings.pixel.G42 ? count : (count > 0 && count % 2 == 0 ? count / 2 : 0);
  pictureTemplate_ = PictureTemplate();
  pictureAscii_ = std::all_of(pictureTemplate_.begin(), pictureTemplate_.end(),
                              [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  const ConstantFormat format = spelling_.Format();
  pictureAfter_ = perLine_ == 1 && format != ConstantFormat::ZeroB && format != ConstantFormat::B;
  picture_ = pictureTemplate_;
}

DataTextWriter::~DataTextWriter() = default;

std::string DataTextWriter::PictureTemplate() const {
  if (!pictureEnabled_) return {};
  const std::string ruler(static_cast<std::size_t>(wordBytes_ * 8), '_');
  if (style_.c) return "     /*  " + ruler + "  */";
  const std::string gap = settings_.comment.PSCOM ? "      " : "       ";
  return Utf8(style_.opener) + gap + ruler + "    ";
}

void DataTextWriter::StartComment() {
  if (partCount_ == 0 && pictureEnabled_) picture_ = pictureTemplate_;
}

void DataTextWriter::MarkBit(int bit) {
  if (picture_.empty() || bit < 0 || bit > 7) return;
  // The drawing starts at position 10 of the picture text (index 9) in every comment style,
  // most significant bit leftmost. The bytes of a word are drawn in the order the word is
  // written: by MSBF the first byte leftmost, else the last.
  const int byteColumn = settings_.scan.MSBF ? partCount_ : wordBytes_ - 1 - partCount_;
  const std::size_t at = static_cast<std::size_t>(9 + byteColumn * 8 + (7 - bit));
  if (pictureAscii_) {
    if (at < picture_.size()) picture_[at] = '#';
    return;
  }
  // An opener of other characters: positions count characters, not bytes.
  QString picture = FromUtf8(picture_);
  if (at < static_cast<std::size_t>(picture.size())) picture[qsizetype(at)] = QLatin1Char('#');
  picture_ = Utf8(picture);
}

void DataTextWriter::EmitValue(int value, bool endOfPixel) {
  Q_UNUSED(endOfPixel);
  ++valueCount_;
  const bool last =
      lastMarked_ || (options_.dataByteCount > 0 && valueCount_ == options_.dataByteCount);
  lastMarked_ = false;
  // Neg (monochrome inverted) turns every byte, whatever the target.
  const int byte = settings_.pixel.Neg ? 255 - value : value;
  if (target_ != DataTarget::Text) {
    // Binary and Intel Hex targets take the bytes alone: the byte target builds the file.
    if (hexTarget_) hexTarget_->AppendHexByte(TwoHexDigits(byte));
    return;
  }

  if (dealing_) {
    const std::optional<TwoPageDealing::Dealt> dealt = dealing_->Take(byte);
    if (!dealt) return;  // the first of a pair
    if (secondPlane_) secondPlane_->PutConstant(&dealt->second, 1, last);
    PutConstant(&dealt->main, 1, last);
    return;
  }

  parts_[std::size_t(partCount_++)] = byte;
  if (partCount_ < wordBytes_) return;  // a word is pending
  const int count = partCount_;
  partCount_ = 0;
  PutConstant(parts_.data(), count, last);
}

bool DataTextWriter::BulkReady() {
  if (!bulkTried_) {
    bulkTried_ = true;
    const bool plainBytes =
        target_ == DataTarget::Text && wordBytes_ == 1 && !pictureEnabled_ && !options_.fontMode;
    if (plainBytes && !options_.referencePaths) {
      bulk_ = BulkPlacement::Make(spelling_, settings_.pixel.Neg, text_, lastConstant_);
    }
  }
  return bulk_ != nullptr;
}

void DataTextWriter::EmitValues(const std::uint8_t* values, std::size_t count) {
  // Both planes of two-page gray are spelled alike, so the second can go the bulk way when
  // this one can.
  if (!BulkReady() || (dealing_ && lastMarked_)) {
    for (std::size_t i = 0; i < count; ++i) {
      StartComment();
      EmitValue(values[i], true);
    }
    return;
  }
  if (dealing_) {
    EmitPairs(values, count);
    return;
  }
  PlaceBytes(values, count);
  valueCount_ += static_cast<long long>(count);
}

void DataTextWriter::EmitPairs(const std::uint8_t* values, std::size_t count) {
  // Neg turns every bit of a pair, so it turns both dealt bytes: the planes apply it as they
  // spell, as for the pair's own values.
  std::size_t i = 0;
  if (dealing_->Pending() && i < count) EmitValue(values[i++], true);
  std::array<std::uint8_t, 512> main;
  std::array<std::uint8_t, 512> second;
  while (count - i >= 2) {
    const std::size_t pairs = std::min((count - i) / 2, main.size());
    dealing_->DealPairs(values + i, pairs, main.data(), second.data());
    if (secondPlane_) secondPlane_->PlaceBytes(second.data(), pairs);
    PlaceBytes(main.data(), pairs);
    valueCount_ += static_cast<long long>(2 * pairs);
    i += 2 * pairs;
  }
  if (i < count) EmitValue(values[i], true);
}

std::size_t DataTextWriter::BytesBeforeTheLast() const {
  if (lastMarked_) return 0;
  if (lastConstant_ > 0 && line_.arrayBytes < lastConstant_) {
    return std::size_t(lastConstant_ - 1 - line_.arrayBytes);
  }
  return std::numeric_limits<std::size_t>::max();
}

void DataTextWriter::PlaceBytes(const std::uint8_t* values, std::size_t count) {
  const bool bulk = BulkReady();
  while (count > 0) {
    const std::size_t run = bulk ? std::min(count, BytesBeforeTheLast()) : 0;
    if (run > 0) {
      bulk_->Place(values, run, line_);
      values += run;
      count -= run;
      continue;
    }
    // The last value of the data takes the plain way: its separators differ.
    const bool last = lastMarked_ || (lastConstant_ > 0 && line_.arrayBytes + 1 == lastConstant_);
    lastMarked_ = false;
    const int byte = settings_.pixel.Neg ? 255 - *values : *values;
    PutConstant(&byte, 1, last);
    ++values;
    --count;
  }
}

void DataTextWriter::PutConstant(const int* parts, int count, bool last) {
  line_.leadingZeros += spelling_.SpellWord(parts, count, valueText_);
  line_.arrayBytes += count;
  AppendConstant(last);
  // The font generator ends a glyph's line with its last value.
  CloseLine(options_.fontMode && last);
}

void DataTextWriter::AppendConstant(bool last) {
  const LinePlace place = spelling_.PlaceOf(line_.constants);
  if (spelling_.FormatInfo().decimalFormat) LeftJustify(valueText_, wordBytes_ == 2 ? 5 : 3);
  if (place == LinePlace::One || place == LinePlace::First) {
    spelling_.AppendHead(line_.text, line_.number);
  }
  piece_ = spelling_.Before();
  piece_ += valueText_;
  piece_ += spelling_.After(place, !last);
  if (last) std::replace(piece_.begin(), piece_.end(), ',', ' ');
  line_.text += piece_;
  if (pictureAfter_) line_.text += picture_;
  ++line_.constants;
}

void DataTextWriter::CloseLine() { CloseLine(false); }

void DataTextWriter::FinishLine(std::string& line) const {
  spelling_.FinishLine(line);
  // Leading zeros made the constant longer: take as many characters away in front of the
  // picture so that it keeps its column.
  if (!picture_.empty() && line_.leadingZeros > 0) {
    const std::size_t at = line.find(picture_);
    if (at != std::string::npos) {
      const std::size_t from = BackByUnits(line, at, line_.leadingZeros);
      line.erase(from, at - from);
    }
  }
}

void DataTextWriter::CloseLine(bool force) {
  if (line_.constants == 0 && line_.text.empty()) return;
  const bool pairPending = dealing_ && dealing_->Pending();
  if (!force && (line_.constants < perLine_ || partCount_ > 0 || pairPending)) return;
  FinishLine(line_.text);
  WriteLine(line_.text);
  line_.Next(settings_.format.LineN);
}

void DataTextWriter::WriteLine(std::string_view line) {
  if (options_.fontMode && settings_.comment.HCO) {
    commentBlock_.append(FromUtf8(line));
    return;
  }
  line_.AddWritten(text_.Count(), 1);
  text_.AddUtf8Line(line);
}

void DataTextWriter::GroupStart() {
  if (!settings_.block.ColRx) return;
  if (secondPlane_) secondPlane_->GroupStart();
  // A row that ended inside a line: its line goes out as it stands, without an end mark.
  if (!line_.text.empty()) {
    WriteLine(line_.text);
    line_.Next(false);
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
      if (line.isEmpty() && !text_.IsEmpty() && text_.Utf8Line(text_.Count() - 1).empty()) continue;
      text_.AddLine(line);
    }
  }
  if (secondPlane_ && !header.secondPlaneHeader.isEmpty()) {
    secondPlane_->text_.AddLine(TrimTrailingBlanks(ApplyWordType(s, header.secondPlaneHeader)));
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
  const bool pending = !line_.text.empty();
  QString pendingLine = FromUtf8(line_.text);
  // Packed 4096 colours in "+H+": the last constant gets the comma its suffix could not carry.
  if (settings_.pixel.C4096 && settings_.pixel.PM &&
      spelling_.Format() == ConstantFormat::PlusHPlus && !f.VALpref.isEmpty()) {
    QString line = pending ? pendingLine : text_.Line(line_.LastWritten());
    const qsizetype at = line.lastIndexOf(f.VALpref);
    if (at >= 0) {
      line.insert(at, QLatin1Char(','));
      if (pending) {
        pendingLine = line;
      } else {
        text_.ReplaceLine(line_.LastWritten(), line);
      }
    }
  }
  if (settings_.format.delallas) {
    for (const ArrayLine::Run& run : line_.written) {
      for (int index = run.first; index < run.first + run.count; ++index) {
        QString line = text_.Line(index);
        RemoveEndMark(line);
        text_.ReplaceLine(index, line);
      }
    }
    if (pending) RemoveEndMark(pendingLine);
  } else if (settings_.format.dellas) {
    if (pending) {
      RemoveEndMark(pendingLine);
    } else if (!line_.written.empty()) {
      QString line = text_.Line(line_.LastWritten());
      RemoveEndMark(line);
      text_.ReplaceLine(line_.LastWritten(), line);
    }
  }
  if (pending) {
    line_.AddWritten(text_.Count(), 1);
    text_.AddLine(pendingLine);
    line_.text.clear();
    line_.constants = 0;
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
  // Two-page gray: the second plane's array follows the first, under its own header.
  if (secondPlane_ && !secondPlane_->text_.IsEmpty()) {
    text_.AddLine(QString());
    for (int i = 0; i < secondPlane_->text_.Count(); ++i) {
      text_.AddUtf8Line(secondPlane_->text_.Utf8Line(i));
    }
  }
  if (info.compression) {
    text_.AddLine(QString());
    if (s.comment.Noh) text_.AddLine(s.block.begds);
    const QStringList& pane = info.compression->pointerPane;
    for (qsizetype i = 1; i < pane.size(); ++i) {
      if (pane[i].isEmpty() && text_.Utf8Line(text_.Count() - 1).empty()) continue;
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
                          : words          ? line_.arrayBytes / wordBytes_
                                           : line_.arrayBytes;
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
