// SPDX-License-Identifier: MIT
#pragma once

// Helpers of the conversion tests: settings given as keys of the settings file, pictures drawn
// as text, byte streams written as hexadecimal text, a sink that records what the packers
// deliver, a key poll that presses Escape on a chosen poll.

#include <gtest/gtest.h>

#include <QImage>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <initializer_list>
#include <vector>

#include "convert/value_sink.h"
#include "platform/key_poll.h"
#include "settings/key_table.h"
#include "settings/pixel_modes.h"
#include "settings/settings.h"

namespace vt::convert::test {

/// `base` with keys of the settings file set by name: "ORGC=3|FXHB=H|cpfr= " ('|' parts the
/// keys; a value is all the text after its '='). Two names set a group of keys: "bits=16" the
/// output width (D8bc, D16bc, D32bc), "mode=gray4" a pixel mode by its command-line name.
inline settings::Settings With(const char* keys, settings::Settings base = {}) {
  static settings::Settings defaults;
  for (const QString& part : QString::fromUtf8(keys).split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
    const QString key = part.section(QLatin1Char('='), 0, 0);
    const QString value = part.section(QLatin1Char('='), 1);
    if (key == QLatin1String("bits")) {
      base.width.D8bc = value == QLatin1String("8");
      base.width.D16bc = value == QLatin1String("16");
      base.width.D32bc = value == QLatin1String("32");
      continue;
    }
    if (key == QLatin1String("mode")) {
      const auto mode = settings::PixelModeFromName(value);
      if (mode) {
        settings::ApplyModeFlags(base.pixel, settings::Info(*mode).flags);
      } else {
        ADD_FAILURE() << "no pixel mode " << value.toStdString();
      }
      continue;
    }
    const auto rows = settings::KeyTable();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const settings::KeyRow& r) {
      return key == QLatin1String(r.key);
    });
    if (row == rows.end()) {
      ADD_FAILURE() << "no key " << key.toStdString();
    } else if (!std::holds_alternative<QString*>(row->field(base)) &&
               !settings::ParseIniInteger(value)) {
      ADD_FAILURE() << "no number for " << key.toStdString();
    } else {
      settings::SetFieldFromText(row->field(base), value, row->field(defaults));
    }
  }
  return base;
}

/// A picture from rows of '#' (black) and '.' (white), all rows of the same length.
inline QImage Picture(std::initializer_list<const char*> rows) {
  const int height = static_cast<int>(rows.size());
  const int width = height == 0 ? 0 : static_cast<int>(qstrlen(*rows.begin()));
  QImage image(width, height, QImage::Format_RGB32);
  int y = 0;
  for (const char* row : rows) {
    for (int x = 0; x < width; ++x) {
      image.setPixel(x, y, row[x] == '#' ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
    ++y;
  }
  return image;
}

/// Values as upper-case hexadecimal pairs separated by blanks, "E0 00 80": readable in a
/// failure message.
inline QString Hex(const std::vector<int>& values) {
  QStringList parts;
  for (int v : values) parts << QStringLiteral("%1").arg(v, 2, 16, QLatin1Char('0')).toUpper();
  return parts.join(QLatin1Char(' '));
}

/// The values of a text such as "E0 00 80" (hexadecimal, parted by blanks).
inline std::vector<int> FromHex(const char* text) {
  std::vector<int> values;
  for (const QString& v : QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    values.push_back(v.toInt(nullptr, 16));
  }
  return values;
}

/// `count` bytes, all 0 but those "index:value" names ("0:E0 9:20", hexadecimal values).
inline std::vector<int> Sparse(int count, const char* text) {
  std::vector<int> values(count, 0);
  for (const QString& v : QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    values.at(v.section(QLatin1Char(':'), 0, 0).toInt()) =
        v.section(QLatin1Char(':'), 1).toInt(nullptr, 16);
  }
  return values;
}

/// Records every call of the pipeline's end.
class RecordingSink final : public ValueSink {
 public:
  void StartComment() override {
    ++startComments;
    marks.emplace_back();
  }
  void MarkBit(int bit) override {
    if (marks.empty()) marks.emplace_back();
    marks.back().push_back(bit);
  }
  void EmitValue(int value, bool endOfPixel) override {
    values.push_back(value);
    endsOfPixel.push_back(endOfPixel);
  }
  void GroupStart() override { groupStarts.push_back(static_cast<int>(values.size())); }

  std::vector<int> values;
  std::vector<bool> endsOfPixel;
  /// Bits marked, one list per StartComment (a list is opened if a mark comes first).
  std::vector<std::vector<int>> marks;
  /// For each GroupStart, the number of values emitted before it.
  std::vector<int> groupStarts;
  int startComments = 0;
};

/// Reports Escape on poll number `pressAt` (1 = the first poll) and never otherwise.
class EscapeOnPoll final : public platform::KeyPoll {
 public:
  explicit EscapeOnPoll(int pressAt) : pressAt_(pressAt) {}
  bool EscapePressed() override { return ++polls == pressAt_; }
  int polls = 0;

 private:
  int pressAt_;
};

}  // namespace vt::convert::test
