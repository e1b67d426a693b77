// SPDX-License-Identifier: MIT
#include "golden.h"

#include <QFile>
#include <QList>

#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::test {

::testing::AssertionResult MatchesGolden(const QByteArray& actual, const QString& relative) {
  const QString path = QStringLiteral(VT_TEST_DATA_DIR "/") + relative;
  if (qEnvironmentVariableIntValue("VT_UPDATE_GOLDEN") == 1) {
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

}  // namespace vt::test
