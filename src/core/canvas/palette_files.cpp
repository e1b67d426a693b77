// SPDX-License-Identifier: MIT
#include "canvas/palette_files.h"

#include <QFile>
#include <QFileInfo>
#include <cstring>
#include <utility>
#include <vector>

#include "util/atomic_write.h"

namespace vt::canvas {
namespace {

/// The standard colour names a palette line may hold.
struct NamedColor {
  const char* name;
  Color value;
};
constexpr NamedColor kNames[] = {
    {"black", 0x000000},      {"maroon", 0x000080},  {"green", 0x008000}, {"olive", 0x008080},
    {"navy", 0x800000},       {"purple", 0x800080},  {"teal", 0x808000},  {"gray", 0x808080},
    {"silver", 0xC0C0C0},     {"red", 0x0000FF},     {"lime", 0x00FF00},  {"yellow", 0x00FFFF},
    {"blue", 0xFF0000},       {"fuchsia", 0xFF00FF}, {"aqua", 0xFFFF00},  {"white", 0xFFFFFF},
    {"moneygreen", 0xC0DCC0}, {"skyblue", 0xF0CAA6}, {"cream", 0xF0FBFF}, {"medgray", 0xA4A0A0},
};

Error ParseError(const QString& path, int line, const QString& message) {
  return Error{Error::Kind::Parse, path, line, 0, message};
}

/// The lines of a text, an empty last line (after a final line end) dropped.
QStringList LinesOf(const QString& text) {
  QString t = text;
  t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QStringList lines = t.split(QLatin1Char('\n'));
  if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
  return lines;
}

Result<QByteArray> ReadBytes(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return Error{Error::Kind::Io, path, 0, 0, file.errorString()};
  }
  // A palette of 262144 lines is about 2.6 MB; anything far beyond is not a palette.
  if (file.size() > 64 * 1024 * 1024) {
    return Error{Error::Kind::Limit, path, 0, 0, QStringLiteral("file too large for a palette")};
  }
  return file.readAll();
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

/// The colour of a line in the forms palette files are written in, "$" and one to eight
/// hexadecimal digits or decimal digits, blanks around; as ParseColorText reads them. Empty
/// when the line has another form: ParseColorText then reads it.
std::optional<std::optional<Color>> QuickColor(const char* p, const char* end) {
  while (p < end && IsBlank(*p)) ++p;
  while (end > p && IsBlank(end[-1])) --end;
  if (p == end) return std::nullopt;
  std::uint64_t value = 0;
  if (*p == '$') {
    ++p;
    if (p == end || end - p > 8) return std::nullopt;
    for (; p < end; ++p) {
      const char c = *p;
      const int digit = c >= '0' && c <= '9'   ? c - '0'
                        : c >= 'A' && c <= 'F' ? c - 'A' + 10
                        : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                               : -1;
      if (digit < 0) return std::nullopt;
      value = value * 16 + std::uint64_t(digit);
    }
  } else {
    if (end - p > 18) return std::nullopt;
    for (; p < end; ++p) {
      if (*p < '0' || *p > '9') return std::nullopt;
      value = value * 10 + std::uint64_t(*p - '0');
    }
  }
  if (value > 0xFFFFFF) return std::optional<Color>();
  return std::optional<Color>(static_cast<Color>(value));
}

std::optional<int> Channel(const QString& text) {
  bool ok = false;
  const int v = text.trimmed().toInt(&ok);
  if (!ok || v < 0 || v > 255) return std::nullopt;
  return v;
}

}  // namespace

std::optional<Color> ParseColorText(const QString& text) {
  const QString t = text.trimmed();
  if (t.isEmpty()) return std::nullopt;
  bool ok = false;
  qlonglong value = -1;
  if (t.startsWith(QLatin1Char('$'))) {
    const QString digits = t.mid(1);
    if (digits.size() > 8) return std::nullopt;
    value = digits.toLongLong(&ok, 16);
  } else if (t[0].isDigit() || t[0] == QLatin1Char('-')) {
    value = t.toLongLong(&ok, 10);
  } else {
    QString name = t.toLower();
    if (name.startsWith(QLatin1String("cl"))) name = name.mid(2);
    for (const NamedColor& n : kNames) {
      if (name == QLatin1String(n.name)) return n.value;
    }
    return std::nullopt;
  }
  if (!ok || value < 0 || value > 0xFFFFFF) return std::nullopt;
  return static_cast<Color>(value);
}

Result<Palette> ParsePaletteText(const QString& text, const QString& path, int entries) {
  const QStringList lines = LinesOf(text);
  if (entries > 0 && lines.size() != entries) {
    return Error{
        Error::Kind::Parse, path, 0, 0,
        QStringLiteral("%1 lines where the palette has %2 colours").arg(lines.size()).arg(entries)};
  }
  Palette palette;
  palette.reserve(lines.size());
  for (int i = 0; i < lines.size(); ++i) {
    const auto c = ParseColorText(lines[i]);
    if (!c) return ParseError(path, i + 1, QStringLiteral("not a colour: '%1'").arg(lines[i]));
    palette.push_back(*c);
  }
  return palette;
}

Result<Palette> ReadPaletteFile(const QString& path, int entries, bool referencePaths) {
  Result<QByteArray> read = ReadBytes(path);
  if (!read) return read.error();
  if (referencePaths) return ParsePaletteText(QString::fromUtf8(read.value()), path, entries);
  // The lines as ParsePaletteText cuts them (at LF, a CR before it dropped; nothing after a
  // final break), read from the bytes; a line of another form than the written ones goes
  // through ParseColorText, and any fault through ParsePaletteText for its message.
  const QByteArray& bytes = read.value();
  const char* p = bytes.constData();
  const char* const end = p + bytes.size();
  std::vector<std::pair<const char*, const char*>> lines;
  lines.reserve(entries > 0 ? std::size_t(entries) : 256);
  while (p < end) {
    const char* q = static_cast<const char*>(std::memchr(p, '\n', std::size_t(end - p)));
    if (q == nullptr) q = end;
    const char* lineEnd = (q < end && q > p && q[-1] == '\r') ? q - 1 : q;
    lines.emplace_back(p, lineEnd);
    p = q + 1;
  }
  if (entries > 0 && qsizetype(lines.size()) != entries) {
    return ParsePaletteText(QString::fromUtf8(bytes), path, entries);
  }
  Palette palette;
  palette.reserve(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto [from, to] = lines[i];
    std::optional<std::optional<Color>> quick = QuickColor(from, to);
    std::optional<Color> c = quick ? *quick : std::optional<Color>();
    if (!quick) c = ParseColorText(QString::fromUtf8(from, qsizetype(to - from)));
    if (!c) return ParsePaletteText(QString::fromUtf8(bytes), path, entries);
    palette.push_back(*c);
  }
  return palette;
}

QByteArray PaletteFileText(const Palette& palette) {
  QByteArray out;
  out.reserve(int(palette.size()) * 11);
  char line[16];
  for (const Color c : palette) {
    std::snprintf(line, sizeof line, "$%08X\r\n", unsigned(c));
    out.append(line);
  }
  return out;
}

Result<bool> WritePaletteFile(const QString& path, const Palette& palette) {
  return WriteFileAtomically(path, PaletteFileText(palette));
}

// ---- Colour lists -----------------------------------------------------------------------------

QStringList ColorListEntry::GridRow(int columns) const {
  QStringList row{name, QString::number(red), QString::number(green), QString::number(blue)};
  row += more;
  while (row.size() < columns) row << QStringLiteral("0");
  return row;
}

std::optional<ColorListKind> ColorListKindOf(const QString& path) {
  const QString ext = QFileInfo(path).suffix().toLower();
  if (ext == QLatin1String("csvh")) return ColorListKind::Hex;
  if (ext == QLatin1String("csvrgb")) return ColorListKind::Rgb;
  return std::nullopt;
}

Result<std::vector<ColorListEntry>> ParseColorList(const QString& text, ColorListKind kind,
                                                   const QString& path) {
  std::vector<ColorListEntry> entries;
  const QStringList lines = LinesOf(text);
  for (int i = 0; i < lines.size(); ++i) {
    if (lines[i].trimmed().isEmpty()) continue;
    const QStringList fields = lines[i].split(QLatin1Char(';'));
    ColorListEntry e;
    e.name = fields[0].trimmed();
    int next = 0;
    if (kind == ColorListKind::Hex) {
      const QString hex = fields.value(1).trimmed();
      bool ok = hex.size() == 7 && hex.startsWith(QLatin1Char('#'));
      const int v = ok ? hex.mid(1).toInt(&ok, 16) : 0;
      if (!ok) return ParseError(path, i + 1, QStringLiteral("not a colour: '%1'").arg(hex));
      e.red = (v >> 16) & 0xFF;
      e.green = (v >> 8) & 0xFF;
      e.blue = v & 0xFF;
      next = 2;
    } else {
      const auto r = Channel(fields.value(1)), g = Channel(fields.value(2)),
                 b = Channel(fields.value(3));
      if (fields.size() < 4 || !r || !g || !b) {
        return ParseError(path, i + 1,
                          QStringLiteral("expected name;red;green;blue with values 0 to 255"));
      }
      e.red = *r;
      e.green = *g;
      e.blue = *b;
      next = 4;
    }
    for (int f = next; f < fields.size(); ++f) e.more << fields[f].trimmed();
    entries.push_back(std::move(e));
  }
  return entries;
}

Result<std::vector<ColorListEntry>> ReadColorList(const QString& path) {
  const auto kind = ColorListKindOf(path);
  if (!kind) {
    return Error{Error::Kind::Refused, path, 0, 0,
                 QStringLiteral("a colour list is a .csvh or .csvrgb file")};
  }
  Result<QByteArray> bytes = ReadBytes(path);
  if (!bytes) return bytes.error();
  return ParseColorList(QString::fromUtf8(bytes.value()), *kind, path);
}

QByteArray ColorListText(const std::vector<ColorListEntry>& entries, ColorListKind kind) {
  QString out;
  for (const ColorListEntry& e : entries) {
    QStringList fields{e.name};
    if (kind == ColorListKind::Hex) {
      fields << QStringLiteral("#%1")
                    .arg((e.red << 16) | (e.green << 8) | e.blue, 6, 16, QLatin1Char('0'))
                    .toUpper();
    } else {
      fields << QString::number(e.red) << QString::number(e.green) << QString::number(e.blue);
    }
    fields += e.more;
    out += fields.join(QLatin1Char(';')) + QStringLiteral("\r\n");
  }
  return out.toUtf8();
}

std::vector<ColorListEntry> FilterColorList(const std::vector<ColorListEntry>& entries,
                                            ColorListKind kind, const QString& filter) {
  if (filter.isEmpty() || filter == QLatin1String("All Colors")) return entries;
  std::vector<ColorListEntry> kept;
  for (const ColorListEntry& e : entries) {
    const QString line = QString::fromUtf8(ColorListText({e}, kind));
    if (line.contains(filter, Qt::CaseInsensitive)) kept.push_back(e);
  }
  return kept;
}

}  // namespace vt::canvas
