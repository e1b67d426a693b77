// SPDX-License-Identifier: MIT
#include "convert/header_template.h"

#include <QFile>
#include <QRegularExpression>
#include <algorithm>

#include "convert/constant_format.h"
#include "platform/messenger.h"
#include "settings/pixel_modes.h"
#include "util/atomic_write.h"

namespace vt::convert {
namespace {

// The default templates. Trailing blanks inside a line are part of the text as shipped.
const char* const kGraphicsTemplate[] = {
    "// FOR GRAPHICS exported from WORK CANVAS",
    "",
    "#include <avr/pgmspace.h>",
    "",
    "const uint8_t [&NAME][] PROGMEM = {",
    "[&TRUEORG]",
    "",
    "[&XPOS],[&YPOS],[&WIDTH],[&HEIGHT]",
    "",
    "[&COMPRESSION]",
    "const uint8_t [&CNAME][&CSIZE] PROGMEM = {",
    "",
};

const char* const kDmdTemplate[] = {
    "[&FONT INCLUDE]",
    "",
    "/*",
    "   // FOR DMD Struct FONTS",
    "   Code Header",
    "   Included or not according to the Header Parameter ",
    "",
    "struct _FONT_ {",
    "      uint16_t   font_Size_in_Bytes_over_all_",
    "      uint8_t    font_Width_in_Pixel_for_fixed_drawing;",
    "      uint8_t    font_Height_in_Pixel_for_all_characters;",
    "      unit8_t    font_First_Char;",
    "      uint8_t    font_Char_Count;",
    "      uint8_t    font_Char_Widths",
    "      [font_Last_Char - font_First_Char +1];",
    "      for each character the separate width in pixels,",
    "      characters < 128 have an implicit virtual right empty row",
    "",
    "      uint8_t    font_data[]; bit field of all characters",
    " */",
    "",
    "#include <inttypes.h>",
    "#ifdef __AVR__",
    "#include <avr/pgmspace.h>",
    "#else",
    "#define PROGMEM",
    "#endif",
    "",
    "[&/FONT INCLUDE]",
    "",
    "",
    "[&FONT BITMAPS]",
    "static const uint8_t [&FNAME][&FNUMBEROFCHARS][&FBYTESPERCHAR] PROGMEM = { ",
    "",
    "[&FONT DESCRIPTORS]",
    "",
    "const uint8_t [&DNAME][][] PROGMEM = {",
    "",
    "[&FONT END]",
    "",
};

const char* const kRawTemplate[] = {
    " #include <avr/pgmspace.h>",
    "",
    "[&FONT INCLUDE]",
    "/*",
    "   // FOR RAW FONTS",
    "   Code Header",
    "   Included or not according to the Headers Parameter",
    "",
    "*/",
    "[&/FONT INCLUDE]",
    "",
    "[&FONT BITMAPS]",
    "const uint8_t [&FNAME][&FNUMBEROFCHARS][&FBYTESPERCHAR] PROGMEM = {  ",
    "",
    "[&FONT DESCRIPTORS]",
    "const uint8_t [&DNAME][][] PROGMEM = {",
    "",
    "[&FONT END]",
    "",
};

const char* const kStructTemplate[] = {
    "#include <avr/pgmspace.h>",
    "",
    "//** for monochrome graphic export with data compression only",
    "[&COMPRESSION]",
    "const uint8_t [&CNAME][&CSIZE] PROGMEM = {",
    "",
    "[&FONT INCLUDE]",
    "/*",
    "   Code Header",
    "   Included or not according to the Headers Parameter",
    "",
    "// Structured Font Output Include",
    " typedef struct {",
    "     long int code;",
    "     const tImage *image;",
    "     } tChar;",
    " typedef struct {",
    "     int [optional parameter]",
    "     int [optional parameter]",
    "     const tChar *chars;",
    "     } tFont;",
    "*/",
    "[&/FONT INCLUDE]",
    "",
    "[&FONT BITMAPS]",
    "const uint8_t [&FNAME][&FNUMBEROFCHARS][&FBYTESPERCHAR] PROGMEM = { ",
    "",
    "[&FONT DESCRIPTORS]",
    "const uint8_t [&DNAME][][] PROGMEM = {",
    "",
    "[&FONT END]",
    "",
};

const char* const kBlocTemplate[] = {
    "#include <avr/pgmspace.h>",
    "",
    "[&FONT INCLUDE]",
    "/*",
    "   // FOR FONT BLOC",
    "   Code Header",
    "   Included or not according to the Headers Parameter",
    "",
    "*/",
    "[&/FONT INCLUDE]",
    "",
    "/* For Single Bloc Font Structure only */",
    "[&FONT BLOC]",
    "const unsigned char [&FNAME][] = {)",
    "",
    "[&FONT BITMAPS]",
    "const uint8_t [&FNAME][&FNUMBEROFCHARS][&FBYTESPERCHAR] PROGMEM = {  ",
    "",
    "[&FONT DESCRIPTORS]",
    "const uint8_t [&DNAME][][] PROGMEM = {",
    "",
    "[&FONT END]",
    "",
};

std::span<const char* const> TemplateLines(HeaderKind kind) {
  switch (kind) {
    case HeaderKind::Graphics:
      return kGraphicsTemplate;
    case HeaderKind::Raw:
      return kRawTemplate;
    case HeaderKind::Struct:
      return kStructTemplate;
    case HeaderKind::Dmd:
      return kDmdTemplate;
    case HeaderKind::Bloc:
      return kBlocTemplate;
  }
  return kGraphicsTemplate;
}

// The first place of `token` in `text` from `from`, in any case. A token that begins with an
// ASCII character other than a letter ("[&NAME]", "&CSIZE") is looked for by that character,
// which has one case only, and the rest compared at each place found.
qsizetype FindToken(const QString& text, const QString& token, qsizetype from) {
  const QChar first = token.isEmpty() ? QChar() : token.front();
  if (first.unicode() == 0 || first.unicode() > 0x7F || first.isLetter()) {
    return text.indexOf(token, from, Qt::CaseInsensitive);
  }
  // Most places found begin another token: its first letter tells, when both are ASCII (other
  // characters may fold to an ASCII letter, and go to the full comparison).
  const char16_t third = token.size() > 2 ? token[2].unicode() : 0;
  for (qsizetype at = text.indexOf(first, from); at >= 0 && at + token.size() <= text.size();
       at = text.indexOf(first, at + 1)) {
    if (third != 0 && third < 0x80) {
      const char16_t seen = text[at + 2].unicode();
      if (seen < 0x80 && (seen | 0x20) != (third | 0x20)) continue;
    }
    if (QStringView(text).mid(at, token.size()).compare(token, Qt::CaseInsensitive) == 0) {
      return at;
    }
  }
  return -1;
}

// Replaces every occurrence of `token` (any case) by `replacement`, removing `extra` characters
// after the token as well (fewer at the end of the text).
bool ReplaceToken(QString& text, const QString& token, const QString& replacement, int extra = 0) {
  bool found = false;
  qsizetype from = 0;
  for (;;) {
    const qsizetype at = FindToken(text, token, from);
    if (at < 0) break;
    found = true;
    text.remove(at, std::min<qsizetype>(token.size() + extra, text.size() - at));
    text.insert(at, replacement);
    from = at + replacement.size();
  }
  return found;
}

// Whether `line` holds the comment mark "//**".
bool HasCommentMark(QStringView line) {
  for (qsizetype at = line.indexOf(u'/'); at >= 0 && at + 4 <= line.size();
       at = line.indexOf(u'/', at + 1)) {
    if (line.mid(at, 4) == u"//**") return true;
  }
  return false;
}

// The template's lines joined by CR LF, each break (CR LF, CR or LF) one line break, and the
// lines holding the comment mark "//**" left out. Runs at every export, so the text is read
// with the library's character searches, a line at a time.
QString WorkingLines(const QString& source) {
  const QStringView view(source);
  const qsizetype n = view.size();
  // At most one CR added a break: room for twice the text.
  QString text(2 * n + 2, Qt::Uninitialized);
  QChar* out = text.data();
  bool first = true;
  qsizetype start = 0;
  qsizetype nextCr = view.indexOf(u'\r'), nextLf = view.indexOf(u'\n');
  for (;;) {
    if (nextCr >= 0 && nextCr < start) nextCr = view.indexOf(u'\r', start);
    if (nextLf >= 0 && nextLf < start) nextLf = view.indexOf(u'\n', start);
    qsizetype end = nextCr < 0 ? nextLf : nextLf < 0 ? nextCr : std::min(nextCr, nextLf);
    if (end < 0) end = n;
    const QStringView line = view.mid(start, end - start);
    if (!HasCommentMark(line)) {
      if (!first) *out++ = u'\r', *out++ = u'\n';
      out = std::copy(line.begin(), line.end(), out);
      first = false;
    }
    if (end >= n) break;
    start = end + (view[end] == u'\r' && end + 1 < n && view[end + 1] == u'\n' ? 2 : 1);
  }
  text.truncate(out - text.constData());
  return text;
}

// The name that goes into the header: the half suffix, and in animation the name without any
// bracketed part followed by the frame number.
QString HeaderArrayName(const settings::Settings& settings, const HeaderRequest& request) {
  QString name = request.arrayName;
  if (request.half == HalfExport::Upper) name += QStringLiteral("_U");
  if (request.half == HalfExport::Lower) name += QStringLiteral("_L");
  if (request.animated) {
    name.remove(QRegularExpression(QStringLiteral("\\[[^\\]]*\\]")));
    name += settings.output.usco + QString::number(request.frame);
  }
  return name;
}

bool MonochromeOrUnset(const settings::Settings& settings) {
  const auto mode = settings::CurrentPixelMode(settings);
  return !mode || settings::IsMonochromeMode(*mode);
}

}  // namespace

QString HeaderFileName(const QString& settingsFile, HeaderKind kind) {
  QString base = settingsFile;
  const qsizetype slash =
      std::max(base.lastIndexOf(QLatin1Char('/')), base.lastIndexOf(QLatin1Char('\\')));
  const qsizetype dot = base.lastIndexOf(QLatin1Char('.'));
  if (dot > slash) base.truncate(dot);
  switch (kind) {
    case HeaderKind::Graphics:
      return base + QStringLiteral(".txt");
    case HeaderKind::Raw:
      return base + QStringLiteral("_Raw.txt");
    case HeaderKind::Struct:
      return base + QStringLiteral("_Struct.txt");
    case HeaderKind::Dmd:
      return base + QStringLiteral("_DMD.txt");
    case HeaderKind::Bloc:
      return base + QStringLiteral("_Bloc.txt");
  }
  return base + QStringLiteral(".txt");
}

QStringList DefaultHeaderTemplate(HeaderKind kind) {
  QStringList lines;
  for (const char* line : TemplateLines(kind)) lines << QString::fromLatin1(line);
  return lines;
}

Result<bool> WriteDefaultHeaderFile(const QString& settingsFile, HeaderKind kind, bool forced,
                                    platform::Messenger& messenger, bool replace, bool crlf) {
  const QString path = HeaderFileName(settingsFile, kind);
  if (QFile::exists(path) && !forced && !replace) return false;
  const QStringList lines = DefaultHeaderTemplate(kind);
  qsizetype width = 0;
  for (const QString& line : lines) width = std::max(width, line.size());
  const QString lineBreak = crlf ? QStringLiteral("\r\n") : QStringLiteral("\n");
  QString text;
  for (const QString& line : lines) text += line.leftJustified(width) + lineBreak;
  Result<bool> written = WriteFileAtomically(path, text.toUtf8());
  if (!written.ok()) return written.error();
  messenger.StatusBarAndLog(kDefaultHeaderLogText);
  return true;
}

std::optional<QString> LoadHeaderTemplate(const QString& path) {
  QFile file(path);
  if (!file.exists() || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  return QString::fromUtf8(file.readAll());
}

long long HeaderSizeText(const settings::Settings& settings, const HeaderRequest& request) {
  const int width = request.width;
  const int height = request.height;
  long long size = request.dataByteCount;
  const int bits = OutputWordBits(settings.width);
  if (bits == 32) size /= 4;
  if (bits == 16) size /= 2;
  if (!settings.pixel.bw8 && settings.width.D8bc) {
    size = (static_cast<long long>(width) / 6 + 1) * height + 1;
  }
  if (request.animated) {
    if (settings.pixel.G16) {
      size = static_cast<long long>(width) * height / 2;
    } else if (MonochromeOrUnset(settings)) {
      size = static_cast<long long>(width) * height / 8;
    }
  }
  if (settings.pixel.G16 && settings.pixel.ST7) {
    size = static_cast<long long>((settings.display.GHI + 7) / 8) * 4 * settings.display.GWI;
  }
  if (settings.pixel.G42 && !settings.scan.td) size /= 2;
  if (settings.block.WORIG || settings.block.WSIZE) {
    const int n = (width < 256 && height < 256) ? 2 : 4;
    if (settings.block.WORIG) size += n;
    if (settings.block.WSIZE) size += n;
  }
  return size;
}

HeaderText BuildHeader(const settings::Settings& settings, const HeaderRequest& request) {
  HeaderText out;
  const CommentStyle style = CommentStyleOf(settings.comment);
  const settings::DataFormatSettings& format = settings.format;
  out.arrayName = HeaderArrayName(settings, request);
  out.sizeText = QString::number(HeaderSizeText(settings, request));
  out.xText = QString::number(request.left);
  out.yText = QString::number(request.top);
  out.rightText = QString::number(request.right);
  out.bottomText = QString::number(request.bottom);
  const QString compressionNote = style.c
                                      ? QStringLiteral("/* Compression informations /*")
                                      : style.opener + QStringLiteral("Compression informations ");

  if (!request.templateText) {
    out.warning = QStringLiteral(" File ") + request.templateFileName +
                  QStringLiteral(" not found ! No table header will be add... ");
    out.compressionNote = compressionNote;
    return out;
  }

  // Work on the text with CR LF breaks, so that a token deleted "with one more character" at the
  // end of a line takes the CR and leaves the line break in place.
  QString text = WorkingLines(*request.templateText);

  // LinePrefix: what stands before [&NAME] on its line; the descriptors at the end reuse it.
  const QString nameToken = QStringLiteral("[&NAME]");
  const qsizetype nameAt = FindToken(text, nameToken, 0);
  qsizetype nameLineStart = -1;
  if (nameAt >= 0) {
    nameLineStart = text.lastIndexOf(QLatin1Char('\n'), nameAt) + 1;
    out.linePrefix = text.mid(nameLineStart, nameAt - nameLineStart);
  }
  ReplaceToken(text, nameToken, QLatin1Char(' ') + out.arrayName + QLatin1Char(' '));

  ReplaceToken(text, QStringLiteral("[&SIZE]"),
               request.compression ? QStringLiteral("[]")
                                   : QLatin1Char('[') + out.sizeText + QLatin1Char(']'));

  const QString valuePrefix = format.CPRE + format.cpfr + QLatin1Char(' ');
  if (settings.block.WSIZE) {
    ReplaceToken(text, QStringLiteral("[&WIDTH]"), valuePrefix + QString::number(request.width));
    ReplaceToken(text, QStringLiteral("[&HEIGHT]"), valuePrefix + QString::number(request.height));
  } else {
    ReplaceToken(text, QStringLiteral("[&WIDTH]"), {}, 1);
    ReplaceToken(text, QStringLiteral("[&HEIGHT]"), {}, 1);
  }

  // [&TRUEORG] switches the position texts to the origin corner of the display.
  if (ReplaceToken(text, QStringLiteral("[&TRUEORG]"), {})) {
    out.trueOrigin = true;
    const settings::ScanSettings& scan = settings.scan;
    const int gwi = settings.display.GWI;
    const int ghi = settings.display.GHI;
    if (scan.CORN4 || scan.CORN3) {
      out.yText = QString::number(ghi - request.bottom);
      out.bottomText = QString::number(ghi - request.top - 1);
    }
    if (scan.CORN2 || scan.CORN3) {
      out.xText = QString::number(gwi - request.right);
      out.rightText = QString::number(gwi - request.left - 1);
    }
  }

  if (settings.block.WORIG) {
    ReplaceToken(text, QStringLiteral("[&XPOS]"), valuePrefix + out.xText);
    ReplaceToken(text, QStringLiteral("[&YPOS]"), valuePrefix + out.yText);
  } else {
    ReplaceToken(text, QStringLiteral("[&XPOS]"), {}, 1);
    ReplaceToken(text, QStringLiteral("[&YPOS]"), {}, 1);
  }

  const QString includeStart = QStringLiteral("[&FONT INCLUDE]");
  const QString includeEnd = QStringLiteral("[&/FONT INCLUDE]");
  for (;;) {
    const qsizetype from = FindToken(text, includeStart, 0);
    if (from < 0) break;
    const qsizetype to = FindToken(text, includeEnd, from);
    if (to < 0) break;
    text.remove(from, to + includeEnd.size() - from);
  }

  const QString compressionToken = QStringLiteral("[&COMPRESSION]");
  const qsizetype cutAt = FindToken(text, compressionToken, 0);
  if (cutAt >= 0) {
    out.hasCompressionToken = true;
    qsizetype cutEnd = FindToken(text, QStringLiteral("[&FONT BITMAPS]"), cutAt);
    if (cutEnd < 0) cutEnd = text.size();
    QString compressed = text.mid(cutAt, cutEnd - cutAt);
    text.remove(cutAt, cutEnd - cutAt);
    // The token's own line goes with the token.
    compressed.remove(0, compressionToken.size());
    if (compressed.startsWith(QStringLiteral("\r\n"))) compressed.remove(0, 2);
    ReplaceToken(compressed, QStringLiteral("&CSIZE"), {});
    ReplaceToken(compressed, QStringLiteral("[&CNAME]"),
                 QStringLiteral(" x") + settings.output.usco + out.arrayName + QLatin1Char(' '));
    compressed.remove(QLatin1Char('\r'));
    out.compressedHeader = compressed;
  } else {
    out.compressionNote = compressionNote;
  }

  // Two-page gray: the declaration of the second plane is cut from the name's line, at most
  // 60 characters from its start, with the name of the plane in place of the array's.
  if (settings.pixel.G42 && nameLineStart >= 0 && nameLineStart < text.size()) {
    qsizetype lineEnd = text.indexOf(QLatin1Char('\r'), nameLineStart);
    if (lineEnd < 0) lineEnd = text.size();
    QString line = text.mid(nameLineStart, std::min<qsizetype>(60, lineEnd - nameLineStart));
    line.replace(QLatin1Char(' ') + out.arrayName + QLatin1Char(' '),
                 QStringLiteral(" d") + settings.output.usco + out.arrayName + QLatin1Char(' '));
    out.secondPlaneHeader = line;
  }

  // Back to LF breaks; a CR left alone by a deletion goes too.
  text.remove(QLatin1Char('\r'));
  out.text = text;
  return out;
}

QString ApplyWordType(const settings::Settings& settings, const QString& line) {
  const int bits = OutputWordBits(settings.width);
  if (!settings.comment.CU8 || bits <= 8) return line;
  QString result = line;
  result.replace(QStringLiteral("uint8_t"), QStringLiteral("uint%1_t").arg(bits));
  return result;
}

}  // namespace vt::convert
