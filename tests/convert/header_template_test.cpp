// SPDX-License-Identifier: MIT
#include "convert/header_template.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <tuple>

#include "convert_test_util.h"
#include "support/recording_messenger.h"
#include "support/temp_folders.h"

// Readable QString values in failure messages.
static void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace vt::convert {
namespace {

using test::With;
using RequestSetup = std::function<void(HeaderRequest&)>;

TEST(HeaderFileName, SitsBesideTheSettingsFile) {
  const std::tuple<const char*, HeaderKind, const char*> cases[] = {
      {"/p/proj.LCD", HeaderKind::Graphics, "/p/proj.txt"},
      {"/p/proj.LCD", HeaderKind::Raw, "/p/proj_Raw.txt"},
      {"/p/proj.LCD", HeaderKind::Struct, "/p/proj_Struct.txt"},
      {"/p/proj.LCD", HeaderKind::Dmd, "/p/proj_DMD.txt"},
      {"/p/proj.LCD", HeaderKind::Bloc, "/p/proj_Bloc.txt"},
      {"C:\\Docs\\my.proj\\default.LCD", HeaderKind::Raw, "C:\\Docs\\my.proj\\default_Raw.txt"},
      {"/p/v1.2/settings", HeaderKind::Graphics, "/p/v1.2/settings.txt"},  // a dot in a folder
  };
  for (const auto& [settingsFile, kind, expected] : cases) {
    EXPECT_EQ(HeaderFileName(settingsFile, kind), QString::fromLatin1(expected));
  }
}

// The request of a 16 x 20 monochrome export at (3, 4) named "Pic", 41 bytes expected.
HeaderRequest Request(const QString& templateText, const RequestSetup& setup = {}) {
  HeaderRequest r;
  r.templateText = templateText;
  r.templateFileName = "/p/proj.txt";
  r.arrayName = "Pic";
  r.dataByteCount = 41;
  r.left = 3;
  r.top = 4;
  r.right = 18;
  r.bottom = 23;
  r.width = 16;
  r.height = 20;
  if (setup) setup(r);
  return r;
}

TEST(BuildHeader, DefaultGraphicsTemplateWithDefaultSettings) {
  const HeaderText h = BuildHeader(settings::Settings{},
                                   Request(DefaultHeaderTemplate(HeaderKind::Graphics).join('\n'),
                                           [](auto& r) { r.arrayName = "NewBitmap"; }));
  // The token lines are left empty; everything from [&COMPRESSION] on is cut away.
  EXPECT_EQ(h.text,
            "// FOR GRAPHICS exported from WORK CANVAS\n\n#include <avr/pgmspace.h>\n\n"
            "const uint8_t  NewBitmap [] PROGMEM = {\n\n\n\n\n");
  EXPECT_EQ(h.linePrefix, "const uint8_t ");
  EXPECT_EQ(h.arrayName, "NewBitmap");
  EXPECT_TRUE(h.hasCompressionToken);
  EXPECT_EQ(h.compressedHeader, "const uint8_t  x_NewBitmap [] PROGMEM = {\n");
  EXPECT_EQ(h.compressionNote + h.warning, "");
  EXPECT_EQ(h.sizeText + "," + h.xText + "," + h.yText, "41,3,4");
}

/// An animation frame of the array `name`.
RequestSetup Frame(const char* name, int frame) {
  return [=](HeaderRequest& r) {
    r.arrayName = QString::fromLatin1(name);
    r.animated = true;
    r.frame = frame;
  };
}

TEST(BuildHeader, ExpandsTheTokens) {
  const struct {
    const char* keys;
    const char* templateText;
    const char* expected;
    RequestSetup setup = {};
  } cases[] = {
      // Every occurrence, in any case; the name with a blank on each side.
      {"", "int [&NAME] = [&name];", "int  Pic  =  Pic ;"},
      {"", "[&NAME]", " Pic_U ", [](auto& r) { r.half = HalfExport::Upper; }},
      {"", "[&NAME]", " Pic_L ", [](auto& r) { r.half = HalfExport::Lower; }},
      {"usco=-", "[&NAME]", " Picx-7 ", Frame("Pic[2]x", 7)},  // bracketed parts dropped
      {"", "a[&Size];", "a[41];"},
      {"", "a[&\xC5\xBFize];", "a[41];"},  // a long s folds to s: any case is Unicode's
      {"", "a[&SIZE];", "a[];", [](auto& r) { r.compression = true; }},
      // Without WSIZE and WORIG their tokens go with the next character (not a line break).
      {"", "w=[&WIDTH];h=[&HEIGHT];x", "w=h=x"},
      {"", "[&WIDTH],[&HEIGHT]\nnext", "\nnext"},
      {"WSIZE=1|CPRE=db|cpfr=:", "w=[&WIDTH];h=[&HEIGHT];", "w=db: 16;h=db: 20;"},
      {"", "[&XPOS],[&YPOS],end", "end"},
      {"WORIG=1", "[&XPOS],[&YPOS],end", " 3, 4,end"},
      // [&TRUEORG] counts from the origin corner of the 128 x 64 display.
      {"WORIG=1|CORN1=0|CORN3=1", "[&TRUEORG][&XPOS],[&YPOS]", " 110, 41"},
      {"WORIG=1|CORN1=0|CORN2=1", "[&TRUEORG][&XPOS],[&YPOS]", " 110, 4"},
      {"WORIG=1|CORN1=0|CORN4=1", "[&TRUEORG][&XPOS],[&YPOS]", " 3, 41"},
      {"WORIG=1|CORN1=0|CORN3=1", "[&XPOS],[&YPOS]", " 3, 4"},
      {"", "a\n[&FONT INCLUDE]\nb\n[&/FONT INCLUDE]\nc\n[&font include]x[&/font include]",
       "a\n\nc\n"},
      {"", "a\n//** one\n  //** two\nb//**\nc", "a\nc"},  // template comment lines go
      {"", "a\r\nb\rc", "a\nb\nc"},
      {"", "a\r\r\nb\n\n", "a\n\nb\n\n"},                 // CR then CR LF: two breaks
      {"", "a\r\n//**\r\nb//*\r*\nc//**", "a\nb//*\n*"},  // a break splits a mark
      {"", "//**\n//**", ""},
      {"", "x\n//**", "x"},
      {"", "[&FONT BITMAPS]\n[&FNAME][&FNUMBEROFCHARS]",
       "[&FONT BITMAPS]\n[&FNAME][&FNUMBEROFCHARS]"}};
  for (const auto& c : cases) {
    EXPECT_EQ(BuildHeader(With(c.keys), Request(c.templateText, c.setup)).text,
              QString::fromLatin1(c.expected))
        << c.templateText << " " << c.keys;
  }
}

TEST(BuildHeader, LinePrefixCompressionPartNoteAndWarning) {
  const settings::Settings s;
  EXPECT_EQ(BuildHeader(s, Request("// top\nstatic const char [&NAME][] = {\n")).linePrefix,
            "static const char ");
  EXPECT_EQ(BuildHeader(s, Request("no name here")).linePrefix, "");

  // The compression part stops at [&FONT BITMAPS].
  HeaderText h = BuildHeader(
      s, Request(
             "head\n[&COMPRESSION]\nconst char [&CNAME][&CSIZE] = {\n[&FONT BITMAPS]\nrest [&NAME]",
             Frame("Pic", 3)));
  EXPECT_EQ(h.text, "head\n[&FONT BITMAPS]\nrest  Pic_3 ");
  EXPECT_EQ(h.compressedHeader, "const char  x_Pic_3 [] = {\n");

  // Without the token the second pane gets a note.
  h = BuildHeader(s, Request("x"));
  EXPECT_FALSE(h.hasCompressionToken);
  EXPECT_EQ(h.compressionNote, "/* Compression informations /*");
  EXPECT_EQ(BuildHeader(With("CCOM=0|PSCOM=1"), Request("x")).compressionNote,
            "//Compression informations ");

  h = BuildHeader(s, Request("", [](auto& r) { r.templateText.reset(); }));
  EXPECT_EQ(h.warning, " File /p/proj.txt not found ! No table header will be add... ");
  EXPECT_EQ(h.text, "");
  EXPECT_EQ(h.arrayName, "Pic");
}

TEST(BuildHeader, TwoPageGrayTakesTheSecondPlaneDeclarationFromTheNameLine) {
  const settings::Settings s = With("mode=gray4-2pages");
  HeaderText h = BuildHeader(s, Request("// x\nconst uint8_t [&NAME][&SIZE] PROGMEM = {\n"));
  EXPECT_EQ(h.text, "// x\nconst uint8_t  Pic [20] PROGMEM = {\n");  // not td: half the count
  EXPECT_EQ(h.secondPlaneHeader, "const uint8_t  d_Pic [20] PROGMEM = {");
  // 60 characters of the line are taken (the last "/" of this 61-character line is left out),
  // then the name is changed.
  h = BuildHeader(s, Request("const uint8_t [&NAME][&SIZE] PROGMEM = { /* a long comment here */"));
  EXPECT_EQ(h.secondPlaneHeader, "const uint8_t  d_Pic [20] PROGMEM = { /* a long comment here *");
  EXPECT_EQ(BuildHeader(settings::Settings{}, Request("[&NAME]")).secondPlaneHeader, "");
}

TEST(HeaderSizeText, FollowsWidthModeAndDescriptors) {
  const auto animated = [](HeaderRequest& r) { r.animated = true; };
  const std::tuple<const char*, RequestSetup, long long> cases[] = {
      {"", {}, 41},
      {"bits=16", {}, 20},
      {"bits=32", {}, 10},
      {"bw8=0", {}, 61},                               // (16 div 6 + 1) * 20 + 1
      {"", animated, 40},                              // an eighth of 16 x 20
      {"mode=gray16-v", animated, 160},                // a half
      {"mode=gray16-slices|GHI=65", {}, 9 * 4 * 128},  // 9 slices of 8 rows, 4 bytes, 128 columns
      {"mode=gray4-2pages", {}, 20},
      {"mode=gray4-2pages|tr=0|td=1", {}, 41},
      {"WORIG=1", {}, 43},
      {"WORIG=1|WSIZE=1", {}, 45},
      {"WORIG=1|WSIZE=1", [](auto& r) { r.width = 256; }, 49},  // a wide area adds 4 each
  };
  for (const auto& [keys, setup, expected] : cases) {
    EXPECT_EQ(HeaderSizeText(With(keys), Request("", setup)), expected) << keys;
  }
}

TEST(HeaderTemplate, WordTypeFollowsTheOutputWidthWithCu8) {
  const QString line = "const uint8_t a[] = {uint8_t};";
  EXPECT_EQ(ApplyWordType(settings::Settings{}, line), line);
  EXPECT_EQ(ApplyWordType(With("bits=16"), line), "const uint16_t a[] = {uint16_t};");
  EXPECT_EQ(ApplyWordType(With("bits=32"), line), "const uint32_t a[] = {uint32_t};");
  EXPECT_EQ(ApplyWordType(With("bits=32|CU8=0"), line), line);
}

TEST(DefaultHeaderTemplates, FontTemplatesLoseTheIncludeBlockAndKeepTheFontTokens) {
  for (HeaderKind kind : {HeaderKind::Raw, HeaderKind::Struct, HeaderKind::Dmd, HeaderKind::Bloc}) {
    const QString text =
        BuildHeader(settings::Settings{}, Request(DefaultHeaderTemplate(kind).join('\n'))).text;
    EXPECT_FALSE(text.contains("FONT INCLUDE", Qt::CaseInsensitive)) << text.toStdString();
    EXPECT_FALSE(text.contains("Code Header")) << text.toStdString();
    EXPECT_TRUE(text.contains("[&FONT BITMAPS]\nconst uint8_t [&FNAME]") ||
                text.contains("[&FONT BITMAPS]\nstatic const uint8_t [&FNAME]"))
        << text.toStdString();
    EXPECT_TRUE(text.contains("[&FONT END]"));
  }
}

TEST(WriteDefaultHeaderFile, PadsEveryLineToTheLongestAndLogs) {
  QTemporaryDir dir;
  vt::test::RecordingMessenger log;
  const Result<bool> written =
      WriteDefaultHeaderFile(dir.filePath("proj.LCD"), HeaderKind::Graphics, false, log);
  ASSERT_TRUE(written.ok());
  EXPECT_TRUE(written.value());
  EXPECT_EQ(log.lines, QStringList{" Initial configuration parameters restored "});

  const QByteArray bytes = vt::test::ReadAll(dir.filePath("proj.txt"));
  QList<QByteArray> lines = bytes.split('\n');
  ASSERT_EQ(lines.takeLast(), "");  // the last line ends with its break too
  const QStringList shipped = DefaultHeaderTemplate(HeaderKind::Graphics);
  ASSERT_EQ(lines.size(), shipped.size());
  // The longest line, "const uint8_t [&CNAME][&CSIZE] PROGMEM = {", has 42 characters.
  for (qsizetype i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(QString::fromUtf8(lines[i]), shipped[i].leftJustified(42) + "\r") << i;
  }
}

TEST(WriteDefaultHeaderFile, KeepsAnExistingFileUnlessForcedOrReplaced) {
  QTemporaryDir dir;
  const QString settingsFile = dir.filePath("proj.LCD");
  const QString path = dir.filePath("proj_DMD.txt");
  const auto own = [&](const char* text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  };
  vt::test::RecordingMessenger log;
  own("my own header\r\n");
  Result<bool> written = WriteDefaultHeaderFile(settingsFile, HeaderKind::Dmd, false, log);
  ASSERT_TRUE(written.ok());
  EXPECT_FALSE(written.value());
  EXPECT_EQ(vt::test::ReadAll(path), "my own header\r\n");
  EXPECT_TRUE(log.lines.isEmpty());

  written = WriteDefaultHeaderFile(settingsFile, HeaderKind::Dmd, true, log);
  ASSERT_TRUE(written.ok() && written.value());
  EXPECT_TRUE(vt::test::ReadAll(path).startsWith("[&FONT INCLUDE]"));

  own("again mine\n");
  written = WriteDefaultHeaderFile(settingsFile, HeaderKind::Dmd, false, log, true, false);
  ASSERT_TRUE(written.ok() && written.value());
  const QByteArray bytes = vt::test::ReadAll(path);
  EXPECT_TRUE(bytes.startsWith("[&FONT INCLUDE]"));
  EXPECT_FALSE(bytes.contains('\r'));

  EXPECT_FALSE(LoadHeaderTemplate(dir.filePath("none.txt")).has_value());
  const auto text = LoadHeaderTemplate(path);
  ASSERT_TRUE(text.has_value());
  EXPECT_TRUE(text->startsWith("[&FONT INCLUDE]"));
}

}  // namespace
}  // namespace vt::convert
