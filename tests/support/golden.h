// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

namespace vt::test {

/// Compares `actual` with the golden file `relative` under tests/data. On a difference it names
/// the first differing line (or, for bytes that are not text, the first differing byte) and
/// writes `<golden>.actual` beside it. With VT_UPDATE_GOLDEN=1 in the environment the golden
/// file is rewritten instead (read every such diff before committing).
::testing::AssertionResult MatchesGolden(const QByteArray& actual, const QString& relative);

/// Whether goldens are being rewritten (VT_UPDATE_GOLDEN=1).
bool UpdatingGoldens();

/// The placeholder that NormalizeDates puts for a date and time.
inline constexpr char kDatePlaceholder[] = "DD/MM/YYYY hh:mm:ss";

/// `text` with every date and time of generated text ("14/03/2026 15:09:26") replaced by
/// kDatePlaceholder, for goldens of runs that take the real clock.
QByteArray NormalizeDates(const QByteArray& text);

}  // namespace vt::test
