// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// Readable failures: texts and lists of texts as they are.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* out) {
  *out << '{';
  for (const QString& line : list) *out << "\n  \"" << line.toStdString() << '"';
  *out << " }";
}
