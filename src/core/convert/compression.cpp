// SPDX-License-Identifier: MIT
#include "convert/compression.h"

#include <algorithm>
#include <cmath>

#include "convert/data_text.h"

namespace vt::convert {
namespace {

constexpr int kMaxBlock = 127;
constexpr int kConsecutive = 128;

/// The settings the pointer text is spelled with.
settings::Settings PointerSettings(const settings::Settings& run) {
  settings::Settings s = run;
  s.pixel.Neg = false;
  s.pixel.G42 = false;
  s.comment.Nodcom = true;  // a pointer has no picture
  s.block.ColRx = false;
  s.width = settings::OutputWidthSettings{true, false, false, false, false};
  if (!s.format.CPRE.isEmpty() || !s.format.cpfr.isEmpty()) s.format.CPRE = s.format.cprx;
  return s;
}

}  // namespace

long long SavedBytes(const CompressionCounters& counters, long long dataByteCount) {
  return dataByteCount - counters.DataBytes - counters.Pointers;
}

QString CompressionRatioText(const CompressionCounters& counters, long long dataByteCount) {
  const long long d = dataByteCount == 0 ? 1 : dataByteCount;
  const double ratio = static_cast<double>(SavedBytes(counters, dataByteCount)) * 100.0 / d;
  // Cut, not rounded, to two decimals; the shortest text of the result.
  return QString::number(std::trunc(ratio * 100.0) / 100.0, 'g', 15);
}

QStringList CompressionStatistics(const CompressionCounters& c, long long dataByteCount) {
  return {QStringLiteral("Compression statistics"),
          QStringLiteral("--------------------------"),
          QStringLiteral("Number of bytes saved : %1").arg(SavedBytes(c, dataByteCount)),
          QStringLiteral("Number of data bytes : %1").arg(c.DataBytes),
          QStringLiteral("Number of consecutive pointers : %1").arg(c.Pointers),
          QStringLiteral("Number of identical bytes :%1").arg(c.IdenticalBytes),
          QStringLiteral("Number of different bytes : %1").arg(c.DifferentBytes),
          QStringLiteral("Number of bytes in compression: %1").arg(c.IdenticalBytes + c.DifferentBytes),
          QStringLiteral("Compression ratio : ") + CompressionRatioText(c, dataByteCount) +
              QLatin1Char('%')};
}

PointerText::PointerText(const settings::Settings& settings)
    : settings_(PointerSettings(settings)) {
  DataTextOptions options;
  options.eol = EndOfLineFlagsOf(settings_.format);
  writer_ = std::make_unique<DataTextWriter>(settings_, text_, options);
}

PointerText::~PointerText() = default;

void PointerText::Add(int pointer) {
  // The value before is not the last one: it may be spelled now.
  if (!values_.isEmpty()) writer_->EmitValue(values_.last(), true);
  values_.append(pointer);
}

QStringList PointerText::Finish() {
  if (values_.isEmpty()) return text_.Lines();
  writer_->MarkLastValue();
  writer_->EmitValue(values_.last(), true);
  writer_->CloseFinalLine();
  const settings::DataFormatSettings& f = settings_.format;
  const EndOfLineFlags eol = EndOfLineFlagsOf(f);
  if (f.dellas && text_.Count() > 0) {
    QString line = text_.LastLine();
    if (eol.EolStr && !eol.eolst.isEmpty()) {
      const qsizetype at = line.lastIndexOf(eol.eolst.back());
      if (at >= 0) line.truncate(at);
    } else if (eol.Eolcom || f.COMAh) {
      const qsizetype at = line.lastIndexOf(QLatin1Char(','));
      if (at >= 0 && (std::max(1, f.ORGC) == 1 || at >= line.size() - 2)) line.remove(at, 1);
    }
    text_.ReplaceLine(text_.Count() - 1, line);
  }
  return text_.Lines();
}

DataCompressor::DataCompressor(long long dataByteCount, PointerText& pointers)
    : dataByteCount_(dataByteCount), pointers_(pointers) {}

void DataCompressor::ResetEncoderState() {
  PreviousValue = 0;
  SameCount = 0;
  DiffCount = 0;
  InRun = false;
  PendingDiff = false;
  counters_ = CompressionCounters{};
}

void DataCompressor::WritePointer(int count, bool consecutive) {
  pointers_.Add(count + (consecutive ? kConsecutive : 0));
}

bool DataCompressor::CompressionStep(int value, double byteCount) {
  const long long count = static_cast<long long>(byteCount);
  const long long lastByte = dataByteCount_ - 1;
  CompressionCounters& c = counters_;

  if (value == PreviousValue && count > 1) {
    // A run begins or goes on: the open different block ends before its first byte.
    if (PendingDiff) {
      c.Pointers += 1;
      if (DiffCount > 0) WritePointer(DiffCount, false);
      c.DifferentBytes += DiffCount;
      DiffCount = 0;
      PendingDiff = false;
    }
    if (SameCount == 0) SameCount = 1;
    SameCount += 1;
    InRun = true;
    if (SameCount != kMaxBlock && count != lastByte) return true;
    DiffCount = -1;
    if (SameCount == kMaxBlock) {
      // The block is full: the next byte must not extend it. No byte compares equal to -1;
      // a neighbouring value (value + 1) would let a real byte of that value pass as the
      // continuation of a run that has no data byte.
      InRun = false;
      PreviousValue = -1;
    }
    WritePointer(SameCount, true);
    c.IdenticalBytes += SameCount;
    SameCount = 0;
    return true;
  }

  if (InRun) {
    // The run ends with a different byte, which is kept.
    if (count <= dataByteCount_ + 1) {
      WritePointer(SameCount, true);
      c.Pointers += 1;
    }
    if (count == lastByte) {
      WritePointer(1, false);
      c.DifferentBytes += 1;
      c.Pointers += 1;
    }
    DiffCount = 0;
    c.IdenticalBytes += SameCount;
    c.DataBytes += 1;
    PreviousValue = value;
    InRun = false;
    SameCount = 0;
    return false;
  }

  // A byte of a different block. DiffCount lags one byte behind: the current byte may still
  // open a run.
  PendingDiff = true;
  if (count > 1) DiffCount += 1;
  if (DiffCount == kMaxBlock) {
    c.Pointers += 1;
    WritePointer(kMaxBlock, false);
    c.DifferentBytes += kMaxBlock;
    DiffCount = 0;
  }
  c.DataBytes += 1;
  SameCount = 0;
  PreviousValue = value;
  // The last byte closes its block. A block of that byte alone (after a block closed at 127,
  // or as the only byte) gets its pointer 1 too, or the firmware would never reach it.
  if (count == lastByte) {
    WritePointer(DiffCount + 1, false);
    c.DifferentBytes += DiffCount + 1;
    c.Pointers += 1;
  }
  return false;
}

}  // namespace vt::convert
