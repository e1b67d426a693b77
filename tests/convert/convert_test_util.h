// SPDX-License-Identifier: MIT
#pragma once

// Helpers of the conversion tests: pictures drawn as text, a sink that records what the packers
// deliver, a key poll that presses Escape on a chosen poll.

#include <QImage>
#include <QString>
#include <QStringList>
#include <initializer_list>
#include <vector>

#include "convert/value_sink.h"
#include "platform/key_poll.h"

namespace vt::convert::test {

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

/// `count` copies of `value` followed by `tail`.
inline std::vector<int> Repeat(int value, int count, std::initializer_list<int> tail = {}) {
  std::vector<int> values(count, value);
  values.insert(values.end(), tail);
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
