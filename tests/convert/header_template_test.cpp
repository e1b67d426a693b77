// SPDX-License-Identifier: MIT
#include "convert/header_template.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <functional>

#include "app/log.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

// Readable QString values in failure messages.
static void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace vt::convert {
namespace {

struct FileNameCase {
  const char* settingsFile;
  HeaderKind kind;
  const char* expected;
};

class HeaderFileNames : public testing::TestWithParam<FileNameCase> {};

TEST_P(HeaderFileNames, SitBesideTheSettingsFile) {
  EXPECT_EQ(HeaderFileName(GetParam().settingsFile, GetParam().kind),
            QString::fromLatin1(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, HeaderFileNames,
    testing::Values(FileNameCase{"/p/proj.LCD", HeaderKind::Graphics, "/p/proj.txt"},
                    FileNameCase{"/p/proj.LCD", HeaderKind::Raw, "/p/proj_Raw.txt"},
                    FileNameCase{"/p/proj.LCD", HeaderKind::Struct, "/p/proj_Struct.txt"},
                    FileNameCase{"/p/proj.LCD", HeaderKind::Dmd, "/p/proj_DMD.txt"},
                    FileNameCase{"/p/proj.LCD", HeaderKind::Bloc, "/p/proj_Bloc.txt"},
                    FileNameCase{"C:\\Docs\\my.proj\\default.LCD", HeaderKind::Raw,
                                 "C:\\Docs\\my.proj\\default_Raw.txt"},
                    // A dot in a folder name is no extension of the file.
                    FileNameCase{"/p/v1.2/settings", HeaderKind::Graphics,
                                 "/p/v1.2/settings.txt"}));

// The request of a 16 x 20 monochrome export at (3, 4) named "Pic", 41 bytes expected.
HeaderRequest Request(const QString& templateText) {
  HeaderRequest r;
  r.templateText = templateText;
  r.templateFileName = QStringLiteral("/p/proj.txt");
  r.arrayName = QStringLiteral("Pic");
  r.dataByteCount = 41;
  r.left = 3;
  r.top = 4;
  r.right = 18;
  r.bottom = 23;
  r.width = 16;
  r.height = 20;
  return r;
}

TEST(BuildHeader, DefaultGraphicsTemplateWithDefaultSettings) {
  const settings::Settings s;
  HeaderRequest r = Request(DefaultHeaderTemplate(HeaderKind::Graphics).join('\n'));
  r.arrayName = QStringLiteral("NewBitmap");
  const HeaderText h = BuildHeader(s, r);
  // The token lines are left empty; everything from [&COMPRESSION] on is cut away.
  EXPECT_EQ(h.text,
            "// FOR GRAPHICS exported from WORK CANVAS\n"
            "\n"
            "#include <avr/pgmspace.h>\n"
            "\n"
            "const uint8_t  NewBitmap [] PROGMEM = {\n"
            "\n"
            "\n"
            "\n"
            "\n");
  EXPECT_EQ(h.linePrefix, "const uint8_t ");
  EXPECT_EQ(h.arrayName, "NewBitmap");
  EXPECT_TRUE(h.hasCompressionToken);
  EXPECT_EQ(h.compressedHeader, "const uint8_t  x_NewBitmap [] PROGMEM = {\n");
  EXPECT_EQ(h.compressionNote, "");
  EXPECT_EQ(h.warning, "");
  EXPECT_EQ(h.sizeText, "41");
  EXPECT_EQ(h.xText, "3");
  EXPECT_EQ(h.yText, "4");
}

struct TokenCase {
  const char* name;
  const char* templateText;
  std::function<void(settings::Settings&, HeaderRequest&)> setup;
  const char* expected;
};

void PrintTo(const TokenCase& c, std::ostream* os) { *os << c.name; }

class HeaderTokens : public testing::TestWithParam<TokenCase> {};

TEST_P(HeaderTokens, Expand) {
  settings::Settings s;
  HeaderRequest r = Request(QString::fromLatin1(GetParam().templateText));
  if (GetParam().setup) GetParam().setup(s, r);
  EXPECT_EQ(BuildHeader(s, r).text, QString::fromLatin1(GetParam().expected));
}

const auto kNone = [](settings::Settings&, HeaderRequest&) {};

INSTANTIATE_TEST_SUITE_P(
    Graphics, HeaderTokens,
    testing::Values(
        TokenCase{"NameGetsBlanksAround", "int [&NAME] = 1;", kNone, "int  Pic  = 1;"},
        TokenCase{"NameAnyCase", "int [&name];", kNone, "int  Pic ;"},
        TokenCase{"UpperHalf", "[&NAME]", [](auto&, auto& r) { r.half = HalfExport::Upper; },
                  " Pic_U "},
        TokenCase{"LowerHalf", "[&NAME]", [](auto&, auto& r) { r.half = HalfExport::Lower; },
                  " Pic_L "},
        TokenCase{"AnimationDropsBracketsAndAddsTheFrame", "[&NAME]",
                  [](auto& s, auto& r) {
                    r.arrayName = "Pic[2]x";
                    r.animated = true;
                    r.frame = 7;
                    s.output.usco = "-";
                  },
                  " Picx-7 "},
        TokenCase{"SizeBetweenTheBrackets", "a[&SIZE];", kNone, "a[41];"},
        TokenCase{"SizeAnyCase", "a[&size];", kNone, "a[41];"},
        TokenCase{"SizeEmptyWithCompression", "a[&SIZE];",
                  [](auto&, auto& r) { r.compression = true; }, "a[];"},
        TokenCase{"WidthHeightDeletedWithTheNextCharacter", "w=[&WIDTH];h=[&HEIGHT];x", kNone,
                  "w=h=x"},
        TokenCase{"HeightAtTheLineEndKeepsTheLineBreak", "[&WIDTH],[&HEIGHT]\nnext", kNone,
                  "\nnext"},
        TokenCase{"WidthHeightWithWsize", "w=[&WIDTH];h=[&HEIGHT];",
                  [](auto& s, auto&) {
                    s.block.WSIZE = true;
                    s.format.CPRE = "db";
                    s.format.cpfr = ":";
                  },
                  "w=db: 16;h=db: 20;"},
        TokenCase{"PositionDeletedWithTheNextCharacter", "[&XPOS],[&YPOS],end", kNone, "end"},
        TokenCase{"PositionWithWorig", "[&XPOS],[&YPOS],end",
                  [](auto& s, auto&) { s.block.WORIG = true; }, " 3, 4,end"},
        TokenCase{"TrueOriginBottomRight", "[&TRUEORG][&XPOS],[&YPOS]",
                  [](auto& s, auto&) {
                    s.block.WORIG = true;
                    s.scan.CORN1 = false;
                    s.scan.CORN3 = true;
                  },
                  " 110, 41"},
        TokenCase{"TrueOriginTopRightFlipsXOnly", "[&TRUEORG][&XPOS],[&YPOS]",
                  [](auto& s, auto&) {
                    s.block.WORIG = true;
                    s.scan.CORN1 = false;
                    s.scan.CORN2 = true;
                  },
                  " 110, 4"},
        TokenCase{"TrueOriginBottomLeftFlipsYOnly", "[&TRUEORG][&XPOS],[&YPOS]",
                  [](auto& s, auto&) {
                    s.block.WORIG = true;
                    s.scan.CORN1 = false;
                    s.scan.CORN4 = true;
                  },
                  " 3, 41"},
        TokenCase{"NoTrueOriginWithoutTheToken", "[&XPOS],[&YPOS]",
                  [](auto& s, auto&) {
                    s.block.WORIG = true;
                    s.scan.CORN1 = false;
                    s.scan.CORN3 = true;
                  },
                  " 3, 4"},
        TokenCase{"FontIncludeBlockDeleted",
                  "a\n[&FONT INCLUDE]\nb\n[&/FONT INCLUDE]\nc\n[&font include]x[&/font include]",
                  kNone, "a\n\nc\n"},
        TokenCase{"TemplateCommentLinesDeleted", "a\n//** one\n  //** two\nb//**\nc", kNone,
                  "a\nc"},
        TokenCase{"AnyLineBreakIsAccepted", "a\r\nb\rc", kNone, "a\nb\nc"},
        TokenCase{"FontTokensStay", "[&FONT BITMAPS]\n[&FNAME][&FNUMBEROFCHARS]", kNone,
                  "[&FONT BITMAPS]\n[&FNAME][&FNUMBEROFCHARS]"}),
    [](const testing::TestParamInfo<TokenCase>& info) { return std::string(info.param.name); });

TEST(BuildHeader, LinePrefixIsTheTextBeforeTheNameOnItsLine) {
  const HeaderText h =
      BuildHeader(settings::Settings{}, Request("// top\nstatic const char [&NAME][] = {\n"));
  EXPECT_EQ(h.linePrefix, "static const char ");
  EXPECT_EQ(BuildHeader(settings::Settings{}, Request("no name here")).linePrefix, "");
}

TEST(BuildHeader, CompressionPartStopsAtFontBitmaps) {
  HeaderRequest r = Request(
      "head\n[&COMPRESSION]\nconst char [&CNAME][&CSIZE] = {\n[&FONT BITMAPS]\nrest [&NAME]");
  r.animated = true;
  r.frame = 3;
  const HeaderText h = BuildHeader(settings::Settings{}, r);
  EXPECT_EQ(h.text, "head\n[&FONT BITMAPS]\nrest  Pic_3 ");
  EXPECT_TRUE(h.hasCompressionToken);
  EXPECT_EQ(h.compressedHeader, "const char  x_Pic_3 [] = {\n");
}

TEST(BuildHeader, WithoutCompressionTokenTheSecondPaneGetsANote) {
  settings::Settings s;
  HeaderText h = BuildHeader(s, Request("x"));
  EXPECT_FALSE(h.hasCompressionToken);
  EXPECT_EQ(h.compressionNote, "/* Compression informations /*");
  s.comment.CCOM = false;
  s.comment.PSCOM = true;
  h = BuildHeader(s, Request("x"));
  EXPECT_EQ(h.compressionNote, "//Compression informations ");
}

TEST(BuildHeader, MissingTemplateWarnsAndGivesNoHeader) {
  HeaderRequest r = Request("");
  r.templateText.reset();
  const HeaderText h = BuildHeader(settings::Settings{}, r);
  EXPECT_EQ(h.warning, " File /p/proj.txt not found ! No table header will be add... ");
  EXPECT_EQ(h.text, "");
  EXPECT_EQ(h.arrayName, "Pic");
}

TEST(BuildHeader, TwoPageGrayTakesTheSecondPlaneDeclarationFromTheNameLine) {
  settings::Settings s;
  settings::ApplyModeFlags(s.pixel, settings::kFlagG42);
  HeaderText h = BuildHeader(s, Request("// x\nconst uint8_t [&NAME][&SIZE] PROGMEM = {\n"));
  // Not td: the size is half the byte count.
  EXPECT_EQ(h.text, "// x\nconst uint8_t  Pic [20] PROGMEM = {\n");
  EXPECT_EQ(h.secondPlaneHeader, "const uint8_t  d_Pic [20] PROGMEM = {");
  // 60 characters of the header are taken (the last "/" of this 61-character line is left
  // out), then the name is changed.
  h = BuildHeader(s, Request("const uint8_t [&NAME][&SIZE] PROGMEM = { /* a long comment here */"));
  EXPECT_EQ(h.secondPlaneHeader, "const uint8_t  d_Pic [20] PROGMEM = { /* a long comment here *");
  EXPECT_EQ(BuildHeader(settings::Settings{}, Request("[&NAME]")).secondPlaneHeader, "");
}

struct SizeCase {
  const char* name;
  std::function<void(settings::Settings&, HeaderRequest&)> setup;
  long long expected;
};

void PrintTo(const SizeCase& c, std::ostream* os) { *os << c.name; }

class HeaderSizes : public testing::TestWithParam<SizeCase> {};

TEST_P(HeaderSizes, SizeText) {
  settings::Settings s;
  HeaderRequest r = Request("");
  GetParam().setup(s, r);
  EXPECT_EQ(HeaderSizeText(s, r), GetParam().expected);
}

void Width(settings::Settings& s, int bits) {
  s.width.D8bc = bits == 8;
  s.width.D16bc = bits == 16;
  s.width.D32bc = bits == 32;
}

INSTANTIATE_TEST_SUITE_P(
    Rules, HeaderSizes,
    testing::Values(
        SizeCase{"ByteCount", [](auto&, auto&) {}, 41},
        SizeCase{"HalfWith16Bit", [](auto& s, auto&) { Width(s, 16); }, 20},
        SizeCase{"QuarterWith32Bit", [](auto& s, auto&) { Width(s, 32); }, 10},
        // (16 div 6 + 1) * 20 + 1
        SizeCase{"SixBitMode", [](auto& s, auto&) { s.pixel.bw8 = false; }, 61},
        SizeCase{"AnimatedMonochromeIsAnEighth", [](auto&, auto& r) { r.animated = true; }, 40},
        SizeCase{"AnimatedGray16IsAHalf",
                 [](auto& s, auto& r) {
                   settings::ApplyModeFlags(s.pixel, settings::kFlagG16);
                   r.animated = true;
                 },
                 160},
        SizeCase{"St7528Slices",
                 [](auto& s, auto&) {
                   settings::ApplyModeFlags(s.pixel, settings::kFlagG16 | settings::kFlagST7);
                   s.display.GHI = 65;  // 9 slices of 8 rows, 4 bytes each, 128 columns
                 },
                 9 * 4 * 128},
        SizeCase{"TwoPageGrayHalvedWithoutTd",
                 [](auto& s, auto&) { settings::ApplyModeFlags(s.pixel, settings::kFlagG42); }, 20},
        SizeCase{"TwoPageGrayWholeWithTd",
                 [](auto& s, auto&) {
                   settings::ApplyModeFlags(s.pixel, settings::kFlagG42);
                   s.scan.tr = false;
                   s.scan.td = true;
                 },
                 41},
        SizeCase{"PositionAddsTwoForSmallSizes", [](auto& s, auto&) { s.block.WORIG = true; }, 43},
        SizeCase{"PositionAndSizeAddTwoEach",
                 [](auto& s, auto&) { s.block.WORIG = s.block.WSIZE = true; }, 45},
        SizeCase{"WideAreaAddsFourEach",
                 [](auto& s, auto& r) {
                   s.block.WORIG = s.block.WSIZE = true;
                   r.width = 256;
                 },
                 49}),
    [](const testing::TestParamInfo<SizeCase>& info) { return std::string(info.param.name); });

TEST(HeaderTemplate, WordTypeFollowsTheOutputWidthWithCu8) {
  settings::Settings s;
  const QString line = QStringLiteral("const uint8_t a[] = {uint8_t};");
  EXPECT_EQ(ApplyWordType(s, line), line);
  Width(s, 16);
  EXPECT_EQ(ApplyWordType(s, line), "const uint16_t a[] = {uint16_t};");
  Width(s, 32);
  EXPECT_EQ(ApplyWordType(s, line), "const uint32_t a[] = {uint32_t};");
  s.comment.CU8 = false;
  EXPECT_EQ(ApplyWordType(s, line), line);
}

TEST(DefaultHeaderTemplates, KeepTheirShippedText) {
  EXPECT_EQ(DefaultHeaderTemplate(HeaderKind::Graphics).size(), 12);
  EXPECT_EQ(DefaultHeaderTemplate(HeaderKind::Raw).size(), 19);
  EXPECT_EQ(DefaultHeaderTemplate(HeaderKind::Struct).size(), 32);
  EXPECT_EQ(DefaultHeaderTemplate(HeaderKind::Dmd).size(), 40);
  EXPECT_EQ(DefaultHeaderTemplate(HeaderKind::Bloc).size(), 23);
  EXPECT_EQ(DefaultHeaderTemplate(HeaderKind::Raw).first(), " #include <avr/pgmspace.h>");
  EXPECT_TRUE(DefaultHeaderTemplate(HeaderKind::Dmd).contains("      unit8_t    font_First_Char;"));
  EXPECT_TRUE(
      DefaultHeaderTemplate(HeaderKind::Bloc).contains("const unsigned char [&FNAME][] = {)"));
  for (HeaderKind kind : {HeaderKind::Graphics, HeaderKind::Raw, HeaderKind::Struct,
                          HeaderKind::Dmd, HeaderKind::Bloc}) {
    EXPECT_EQ(DefaultHeaderTemplate(kind).last(), "");
  }
}

TEST(DefaultHeaderTemplates, FontTemplatesLoseTheIncludeBlockAndKeepTheFontTokens) {
  for (HeaderKind kind : {HeaderKind::Raw, HeaderKind::Struct, HeaderKind::Dmd, HeaderKind::Bloc}) {
    const HeaderText h =
        BuildHeader(settings::Settings{}, Request(DefaultHeaderTemplate(kind).join('\n')));
    EXPECT_FALSE(h.text.contains("FONT INCLUDE", Qt::CaseInsensitive)) << h.text.toStdString();
    EXPECT_FALSE(h.text.contains("Code Header")) << h.text.toStdString();
    EXPECT_TRUE(h.text.contains("[&FONT BITMAPS]\nconst uint8_t [&FNAME]") ||
                h.text.contains("[&FONT BITMAPS]\nstatic const uint8_t [&FNAME]"))
        << h.text.toStdString();
    EXPECT_TRUE(h.text.contains("[&FONT END]"));
  }
}

TEST(WriteDefaultHeaderFile, PadsEveryLineToTheLongestAndLogs) {
  QTemporaryDir dir;
  const QString settingsFile = dir.filePath("proj.LCD");
  app::Log log;
  const Result<bool> written =
      WriteDefaultHeaderFile(settingsFile, HeaderKind::Graphics, false, log);
  ASSERT_TRUE(written.ok());
  EXPECT_TRUE(written.value());
  EXPECT_EQ(log.Lines(), QStringList{" Initial configuration parameters restored "});

  const QByteArray bytes = test::ReadAll(dir.filePath("proj.txt"));
  ASSERT_TRUE(bytes.endsWith("\r\n"));
  QList<QByteArray> lines = bytes.split('\n');
  lines.removeLast();
  const QStringList shipped = DefaultHeaderTemplate(HeaderKind::Graphics);
  ASSERT_EQ(lines.size(), shipped.size());
  // The longest line, "const uint8_t [&CNAME][&CSIZE] PROGMEM = {", has 42 characters.
  for (qsizetype i = 0; i < lines.size(); ++i) {
    ASSERT_TRUE(lines[i].endsWith('\r'));
    const QString line = QString::fromUtf8(lines[i].chopped(1));
    EXPECT_EQ(line.size(), 42) << i;
    EXPECT_EQ(line.trimmed(), shipped[i].trimmed()) << i;
    EXPECT_TRUE(line.startsWith(shipped[i])) << i;
  }
}

TEST(WriteDefaultHeaderFile, KeepsAnExistingFileUnlessForcedOrReplaced) {
  QTemporaryDir dir;
  const QString settingsFile = dir.filePath("proj.LCD");
  const QString path = dir.filePath("proj_DMD.txt");
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("my own header\r\n");
  file.close();
  app::Log log;

  Result<bool> written = WriteDefaultHeaderFile(settingsFile, HeaderKind::Dmd, false, log);
  ASSERT_TRUE(written.ok());
  EXPECT_FALSE(written.value());
  EXPECT_EQ(test::ReadAll(path), "my own header\r\n");
  EXPECT_TRUE(log.Lines().isEmpty());

  written = WriteDefaultHeaderFile(settingsFile, HeaderKind::Dmd, true, log);
  ASSERT_TRUE(written.ok());
  EXPECT_TRUE(written.value());
  EXPECT_TRUE(test::ReadAll(path).startsWith("[&FONT INCLUDE]"));

  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("again mine\n");
  file.close();
  written = WriteDefaultHeaderFile(settingsFile, HeaderKind::Dmd, false, log, true, false);
  ASSERT_TRUE(written.ok());
  EXPECT_TRUE(written.value());
  const QByteArray bytes = test::ReadAll(path);
  EXPECT_TRUE(bytes.startsWith("[&FONT INCLUDE]"));
  EXPECT_FALSE(bytes.contains('\r'));
}

TEST(LoadHeaderTemplate, MissingFileGivesNothing) {
  QTemporaryDir dir;
  EXPECT_FALSE(LoadHeaderTemplate(dir.filePath("none.txt")).has_value());
  app::Log log;
  ASSERT_TRUE(WriteDefaultHeaderFile(dir.filePath("p.LCD"), HeaderKind::Raw, false, log).ok());
  const auto text = LoadHeaderTemplate(dir.filePath("p_Raw.txt"));
  ASSERT_TRUE(text.has_value());
  EXPECT_TRUE(text->startsWith(" #include <avr/pgmspace.h>"));
}

}  // namespace
}  // namespace vt::convert
