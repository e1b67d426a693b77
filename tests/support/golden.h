// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <gtest/gtest.h>

namespace vt::test {

/// Compares `actual` with the golden file `relative` under tests/data. On a difference it names
/// the first differing line and writes `<golden>.actual` beside it. With VT_UPDATE_GOLDEN=1 in
/// the environment the golden file is rewritten instead (read every such diff before committing).
::testing::AssertionResult MatchesGolden(const QByteArray& actual, const QString& relative);

}  // namespace vt::test
