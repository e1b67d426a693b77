// SPDX-License-Identifier: MIT
#pragma once

// Tiny pictures written as rows of letters: '.' white, '#' black, 'r' red, 'g' green, 'b' blue.

#include <QImage>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <cstring>

#include "canvas/raster.h"

namespace vt::canvas::test {

inline constexpr char kLetters[] = ".#rgb";
inline constexpr Color kColors[] = {kWhite, kBlack, 0x0000FF, 0x00FF00, 0xFF0000};

inline Color ColorOf(QChar c) {
  const char* at = std::strchr(kLetters, c.toLatin1());
  return at && *at ? kColors[at - kLetters] : kWhite;
}

inline QChar LetterOf(Color c) {
  const auto* at = std::find(std::begin(kColors), std::end(kColors), c);
  return QLatin1Char(at == std::end(kColors) ? '?' : kLetters[at - kColors]);
}

/// "r.#|..g" is two rows of three pixels.
inline QImage Picture(const QString& rows) {
  const QStringList lines = rows.split('|');
  QImage image = MakeRaster(QSize(lines[0].size(), lines.size()));
  for (int y = 0; y < lines.size(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < lines[y].size(); ++x) row[x] = ToQRgb(ColorOf(lines[y][x]));
  }
  return image;
}

inline QString RowsOf(const QImage& image) {
  QStringList lines;
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    QString line;
    for (int x = 0; x < image.width(); ++x) line += LetterOf(FromQRgb(row[x]));
    lines << line;
  }
  return lines.join('|');
}

}  // namespace vt::canvas::test
