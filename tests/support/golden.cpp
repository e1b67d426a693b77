// SPDX-License-Identifier: MIT
#include "golden.h"

#include <QFile>
#include <QList>
#include <algorithm>

#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::test {
namespace {

/// Bytes that no text of the program holds: control characters other than tab, CR and LF.
bool LooksBinary(const QByteArray& bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char c) {
    const auto u = static_cast<unsigned char>(c);
    return (u < 0x20 && u != '\t' && u != '\r' && u != '\n') || u == 0x7F;
  });
}

QString ByteText(const QByteArray& bytes, qsizetype at) {
  return at < bytes.size() ? QStringLiteral("0x%1").arg(static_cast<unsigned char>(bytes[at]), 2,
                                                        16, QLatin1Char('0'))
                           : QStringLiteral("<end of file>");
}

}  // namespace

bool UpdatingGoldens() { return qEnvironmentVariableIntValue("VT_UPDATE_GOLDEN") == 1; }

::testing::AssertionResult MatchesGolden(const QByteArray& actual, const QString& relative) {
  const QString path = QStringLiteral(VT_TEST_DATA_DIR "/") + relative;
  if (UpdatingGoldens()) {
    if (!WriteFileAtomically(path, actual)) {
      return ::testing::AssertionFailure() << "cannot write " << path.toStdString();
    }
    return ::testing::AssertionSuccess();
  }
  if (!QFile::exists(path)) {
    WriteFileAtomically(path + QStringLiteral(".actual"), actual);
    return ::testing::AssertionFailure() << "golden file missing: " << path.toStdString();
  }
  const QByteArray expected = ReadAll(path);
  if (expected == actual) return ::testing::AssertionSuccess();
  WriteFileAtomically(path + QStringLiteral(".actual"), actual);
  if (LooksBinary(expected) || LooksBinary(actual)) {
    qsizetype at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at]) ++at;
    return ::testing::AssertionFailure()
           << relative.toStdString() << ": first difference at byte " << at << ": expected "
           << ByteText(expected, at).toStdString() << " got " << ByteText(actual, at).toStdString();
  }
  const QList<QByteArray> want = expected.split('\n');
  const QList<QByteArray> got = actual.split('\n');
  for (qsizetype i = 0; i < std::max(want.size(), got.size()); ++i) {
    const QByteArray w = i < want.size() ? want[i] : QByteArray("<end of file>");
    const QByteArray g = i < got.size() ? got[i] : QByteArray("<end of file>");
    if (w != g) {
      return ::testing::AssertionFailure()
             << relative.toStdString() << ":" << (i + 1) << ": expected [" << w.toStdString()
             << "] got [" << g.toStdString() << "]";
    }
  }
  return ::testing::AssertionFailure() << "differs only in line ends";
}

QByteArray NormalizeDates(const QByteArray& text) {
  // "dd/MM/yyyy HH:mm:ss": digits and separators at fixed places, matched on the bytes so that
  // text in any encoding passes through unchanged.
  static constexpr char kShape[] = "00/00/0000 00:00:00";
  constexpr qsizetype kLength = sizeof(kShape) - 1;
  auto matchesAt = [&text](qsizetype at) {
    for (qsizetype i = 0; i < kLength; ++i) {
      const char c = text[at + i];
      if (kShape[i] == '0' ? (c < '0' || c > '9') : c != kShape[i]) return false;
    }
    return true;
  };
  QByteArray normalized;
  normalized.reserve(text.size());
  for (qsizetype at = 0; at < text.size();) {
    if (at + kLength <= text.size() && matchesAt(at)) {
      normalized.append(kDatePlaceholder);
      at += kLength;
    } else {
      normalized.append(text[at++]);
    }
  }
  return normalized;
}

}  // namespace vt::test
