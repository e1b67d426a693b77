// SPDX-License-Identifier: MIT
#include "convert/data_text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <functional>
#include <vector>

#include "app/log.h"
#include "settings/pixel_modes.h"
#include "support/golden.h"

// Readable QString values in failure messages.
static void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
static void PrintTo(const QStringList& lines, std::ostream* out) {
  *out << "{";
  for (const QString& line : lines) *out << "\n  \"" << line.toStdString() << '"';
  *out << " }";
}

namespace vt::convert {
namespace {

using Setup = std::function<void(settings::Settings&)>;

void Width(settings::Settings& s, int bits) {
  s.width.D8bc = bits == 8;
  s.width.D16bc = bits == 16;
  s.width.D32bc = bits == 32;
}

void EndMark(settings::Settings& s, bool comma, bool semicolon, bool custom,
             const char* text = "") {
  s.format.Eolcom = comma;
  s.format.EolSem = semicolon;
  s.format.EolStr = custom;
  s.format.Eoln = !comma && !semicolon && !custom;
  s.format.eolst = text;
}

void NoSeparator(settings::Settings& s) {
  s.format.COMAh = s.format.COMAv = s.format.COMAS = false;
}

void CustomSeparator(settings::Settings& s, const char* sep) {
  s.format.COMAh = true;
  s.format.COMAv = false;
  s.format.COMAS = true;
  s.format.sepst = sep;
}

void CommentStyle(settings::Settings& s, bool c, bool ps, bool vba) {
  s.comment.CCOM = c;
  s.comment.PSCOM = ps;
  s.comment.VBACOM = vba;
}

// Feeds bytes the way the packers deliver them: a new picture for each byte, a mark for each
// black pixel (a set bit of the byte as read), then the finished value.
void Feed(DataTextWriter& writer, const std::vector<int>& values) {
  for (int v : values) {
    writer.StartComment();
    for (int bit = 7; bit >= 0; --bit) {
      if ((v >> bit) & 1) writer.MarkBit(bit);
    }
    writer.EmitValue(v, true);
  }
}

struct Fed {
  QStringList closed;  // lines the writer closed
  QString pending;     // the line still being built
};

Fed FeedLines(const settings::Settings& s, const std::vector<int>& values, long long count = 0) {
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), count});
  Feed(writer, values);
  return {text.Lines(), writer.Line()};
}

// The data lines and the end of the array, without descriptors and comments.
QStringList ArrayLines(settings::Settings s, const std::vector<int>& values, long long count = 0) {
  s.comment.Noonts = true;
  s.block.BSD = false;
  s.block.BCD = false;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), count});
  Feed(writer, values);
  writer.WriteDataEnd(HeaderText{}, DataEndInfo{});
  return text.Lines();
}

// ---------------------------------------------------------------------------------------------
// Constants on a line of several

struct LineCase {
  const char* name;
  Setup setup;
  const char* expected;
};

void PrintTo(const LineCase& c, std::ostream* os) { *os << c.name; }

class SeveralPerLine : public testing::TestWithParam<LineCase> {};

// Three constants per line: the first, a middle one and the last of the line.
TEST_P(SeveralPerLine, FirstMiddleAndLastConstant) {
  settings::Settings s;
  s.format.ORGC = 3;
  GetParam().setup(s);
  const Fed fed = FeedLines(s, {0x05, 0xA0, 0x9F});
  EXPECT_EQ(fed.closed, QStringList{QString::fromLatin1(GetParam().expected)});
  EXPECT_EQ(fed.pending, "");
}

void Format(settings::Settings& s, const char* fxhb, const char* prefix = "",
            const char* suffix = "") {
  s.format.FXHB = fxhb;
  s.format.VALpref = prefix;
  s.format.VALSUF = suffix;
}

INSTANTIATE_TEST_SUITE_P(
    Formats, SeveralPerLine,
    testing::Values(
        // The default: a blank before each comma, the end mark closes the line.
        LineCase{"X", [](auto&) {}, " 0x05 , 0xA0 , 0x9F,"},
        LineCase{"H", [](auto& s) { Format(s, "H"); }, " 05h, A0h , 9Fh ,"},
        LineCase{"H_LeadingZero",
                 [](auto& s) {
                   Format(s, "H");
                   s.format.Addof = true;
                 },
                 " 05h, 0A0h , 9Fh ,"},
        LineCase{"ZeroB", [](auto& s) { Format(s, "0B"); },
                 " 0b00000101,  0b10100000 ,  0b10011111 ,"},
        LineCase{"B", [](auto& s) { Format(s, "B"); }, " 00000101b,  10100000b,  10011111b,"},
        LineCase{"PlusB", [](auto& s) { Format(s, "+B+", "%"); },
                 "%00000101,  %10100000,  %10011111,"},
        LineCase{"PlusH", [](auto& s) { Format(s, "+H+", "$"); }, "$05, $A0, $9F,"},
        LineCase{"PlusH_LeadingZero",
                 [](auto& s) {
                   Format(s, "+H+", "$");
                   s.format.Addof = true;
                 },
                 "$05, $0A0, $9F,"},
        LineCase{"PlusH_NoGap",
                 [](auto& s) {
                   Format(s, "+H+", "$");
                   s.format.WithSp = false;
                 },
                 "$05,$A0,$9F,"},
        LineCase{"PlusD_PaddedToThree", [](auto& s) { Format(s, "+D+"); }, "5  , 160, 159,"},
        LineCase{"PlusD_NoSeparator",
                 [](auto& s) {
                   Format(s, "+D+");
                   NoSeparator(s);
                 },
                 "5   160 159,"},
        LineCase{"X_NoSeparator", [](auto& s) { NoSeparator(s); }, " 0x05  0xA0  0x9F,"},
        LineCase{"X_CustomSeparator", [](auto& s) { CustomSeparator(s, ";"); },
                 " 0x05 ; 0xA0 ; 0x9F,"},
        LineCase{"H_CustomSeparator",
                 [](auto& s) {
                   Format(s, "H");
                   CustomSeparator(s, ";");
                 },
                 " 05h; A0h ; 9Fh ,"},
        LineCase{"X_Negated", [](auto& s) { s.pixel.Neg = true; }, " 0xFA , 0x5F , 0x60,"},
        LineCase{"LinePrefix",
                 [](auto& s) {
                   s.format.CPRE = "\t.db";
                   s.format.cpfr = " ";
                 },
                 "\t.db  0x05 , 0xA0 , 0x9F,"}),
    [](const testing::TestParamInfo<LineCase>& info) { return std::string(info.param.name); });

class OnePerLine : public testing::TestWithParam<LineCase> {};

// One constant per line, no picture, no end mark: the constant and its separator alone.
TEST_P(OnePerLine, TheConstantForms) {
  settings::Settings s;
  s.format.ORGC = 1;
  s.comment.Nodcom = true;
  EndMark(s, false, false, false);
  GetParam().setup(s);
  const Fed fed = FeedLines(s, {0xA0});
  EXPECT_EQ(fed.closed, QStringList{QString::fromLatin1(GetParam().expected)});
}

INSTANTIATE_TEST_SUITE_P(
    Formats, OnePerLine,
    testing::Values(
        // With a separator and more data to come the separator follows without a blank.
        LineCase{"X", [](auto&) {}, " 0xA0,"},
        LineCase{"X_NoSeparator", [](auto& s) { NoSeparator(s); }, " 0xA0 "},
        LineCase{"X_CustomSeparator", [](auto& s) { CustomSeparator(s, ";"); }, " 0xA0;"},
        // "H" writes its comma literally, whatever the separator.
        LineCase{"H", [](auto& s) { Format(s, "H"); }, " A0h ,"},
        LineCase{"H_CustomSeparator",
                 [](auto& s) {
                   Format(s, "H");
                   CustomSeparator(s, ";");
                 },
                 " A0h ,"},
        LineCase{"H_NoSeparator",
                 [](auto& s) {
                   Format(s, "H");
                   NoSeparator(s);
                 },
                 " A0h "},
        LineCase{"H_LeadingZero",
                 [](auto& s) {
                   Format(s, "H");
                   s.format.Addof = true;
                 },
                 " 0A0h ,"},
        // The binary forms carry no separator on a line of their own.
        LineCase{"ZeroB", [](auto& s) { Format(s, "0B"); }, " 0b10100000"},
        LineCase{"B", [](auto& s) { Format(s, "B"); }, " 10100000b"},
        LineCase{"PlusB", [](auto& s) { Format(s, "+B+", "%", "!"); }, "%10100000!"},
        LineCase{"PlusH", [](auto& s) { Format(s, "+H+", "$"); }, "$A0"},
        LineCase{"PlusD", [](auto& s) { Format(s, "+D+", "(", ")"); }, "(160)"},
        LineCase{"LineNumbers",
                 [](auto& s) {
                   s.format.LineN = true;
                   s.format.CPRE = "L";
                   s.format.cpfr = ":";
                 },
                 "L0: 0xA0,"}),
    [](const testing::TestParamInfo<LineCase>& info) { return std::string(info.param.name); });

TEST(DataTextWriter, LineNumbersCountTheLinesFromZero) {
  settings::Settings s;
  s.format.ORGC = 2;
  s.format.LineN = true;
  s.format.CPRE = "L";
  s.format.cpfr = ":";
  EXPECT_EQ(FeedLines(s, {1, 2, 3, 4}).closed,
            (QStringList{"L0: 0x01 , 0x02,", "L1: 0x03 , 0x04,"}));
  s.format.LineN = false;
  EXPECT_EQ(FeedLines(s, {1, 2, 3, 4}).closed, (QStringList{"L: 0x01 , 0x02,", "L: 0x03 , 0x04,"}));
}

TEST(DataTextWriter, LastValueOfTheDataTakesNoSeparator) {
  settings::Settings s;
  s.format.ORGC = 3;
  // The count says the second byte is the last: it stays without a separator.
  Fed fed = FeedLines(s, {0x05, 0xA0}, 2);
  EXPECT_TRUE(fed.closed.isEmpty());
  EXPECT_EQ(fed.pending, " 0x05 , 0xA0 ");
  // One per line: the last constant takes the form with a blank before the separator, whose
  // comma is then blanked.
  s.format.ORGC = 1;
  s.comment.Nodcom = true;
  EndMark(s, false, false, false);
  fed = FeedLines(s, {0x05, 0xA0}, 2);
  EXPECT_EQ(fed.closed, (QStringList{" 0x05,", " 0xA0  "}));
  Format(s, "H");
  fed = FeedLines(s, {0x05, 0xA0}, 2);
  EXPECT_EQ(fed.closed, (QStringList{" 05h ,", " A0h "}));
}

TEST(DataTextWriter, CommaInTheSuffixOfTheVeryLastConstantIsBlanked) {
  settings::Settings s;
  Format(s, "+H+", "0x", ",");
  NoSeparator(s);
  s.format.ORGC = 4;
  EXPECT_EQ(FeedLines(s, {0, 1, 2}, 3).pending, "0x00, 0x01, 0x02  ");
  // Without a known count no value is the last.
  EXPECT_EQ(FeedLines(s, {0, 1, 2}).pending, "0x00, 0x01, 0x02, ");
}

TEST(DataTextWriter, MarkLastValueOverridesTheCount) {
  settings::Settings s;
  s.format.ORGC = 4;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 100});
  Feed(writer, {1});
  writer.MarkLastValue();
  Feed(writer, {2});
  EXPECT_EQ(writer.Line(), " 0x01 , 0x02 ");
  EXPECT_EQ(writer.ValueCount(), 2);
}

// ---------------------------------------------------------------------------------------------
// 16 and 32-bit words

struct WordCase {
  const char* name;
  Setup setup;
  std::vector<int> bytes;
  QStringList expected;
};

void PrintTo(const WordCase& c, std::ostream* os) { *os << c.name; }

class Words : public testing::TestWithParam<WordCase> {};

TEST_P(Words, JoinTheBytesByBitOrder) {
  settings::Settings s;
  GetParam().setup(s);
  EXPECT_EQ(FeedLines(s, GetParam().bytes).closed, GetParam().expected);
}

void Word16(settings::Settings& s, bool msbFirst, const char* fxhb = "X") {
  Width(s, 16);
  s.scan.MSBF = msbFirst;
  s.format.ORGC = 2;
  s.format.FXHB = fxhb;
}

void Word32(settings::Settings& s, bool msbFirst, const char* fxhb = "X") {
  Width(s, 32);
  s.scan.MSBF = msbFirst;
  s.format.ORGC = 1;
  s.format.FXHB = fxhb;
  s.comment.Nodcom = true;
  EndMark(s, false, false, false);
}

INSTANTIATE_TEST_SUITE_P(
    BitOrders, Words,
    testing::Values(WordCase{"X16_MsbFirst",
                             [](auto& s) { Word16(s, true); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0x1234 , 0x5678,"}},
                    WordCase{"X16_MsbLast",
                             [](auto& s) { Word16(s, false); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0x3412 , 0x7856,"}},
                    // 0x1234 = 4660 and 0x5678 = 22136, padded to 5.
                    WordCase{"Dec16_MsbFirst",
                             [](auto& s) { Word16(s, true, "+D+"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {"4660 , 22136,"}},
                    // 0x3412 = 13330, 0x7856 = 30806.
                    WordCase{"Dec16_MsbLast",
                             [](auto& s) { Word16(s, false, "+D+"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {"13330, 30806,"}},
                    WordCase{"B16_MsbFirst",
                             [](auto& s) { Word16(s, true, "B"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0001001000110100b,  0101011001111000b,"}},
                    WordCase{"B16_MsbLast",
                             [](auto& s) { Word16(s, false, "B"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0011010000010010b,  0111100001010110b,"}},
                    // The leading zero goes with the first byte written.
                    WordCase{"H16_LeadingZero_MsbFirst",
                             [](auto& s) {
                               Word16(s, true, "H");
                               s.format.Addof = true;
                             },
                             {0xA0, 0x01, 0x05, 0x06},
                             {" 0A001h, 0506h ,"}},
                    WordCase{"H16_LeadingZero_MsbLast",
                             [](auto& s) {
                               Word16(s, false, "H");
                               s.format.Addof = true;
                             },
                             {0xA0, 0x01, 0x05, 0xB6},
                             {" 01A0h, 0B605h ,"}},
                    WordCase{"X16_NegatedBytes",
                             [](auto& s) {
                               Word16(s, true);
                               s.pixel.Neg = true;
                             },
                             {0x00, 0x0F, 0xFF, 0xF0},
                             {" 0xFFF0 , 0x000F,"}},
                    // 32-bit hexadecimal words are padded with blanks to 10 characters.
                    WordCase{"X32_MsbFirst",
                             [](auto& s) { Word32(s, true); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0x12345678  ,"}},
                    WordCase{"X32_MsbLast",
                             [](auto& s) { Word32(s, false); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0x78563412  ,"}},
                    // 0x12345678 = 305419896 and 0x78563412 = 2018915346, padded to 10.
                    WordCase{"Dec32_MsbFirst",
                             [](auto& s) { Word32(s, true, "+D+"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {"305419896 "}},
                    WordCase{"Dec32_MsbLast",
                             [](auto& s) { Word32(s, false, "+D+"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {"2018915346"}},
                    WordCase{"Dec32_Largest",
                             [](auto& s) { Word32(s, true, "+D+"); },
                             {0xFF, 0xFF, 0xFF, 0xFF},
                             {"4294967295"}},
                    WordCase{"ZeroB32_MsbLast",
                             [](auto& s) { Word32(s, false, "0B"); },
                             {0x12, 0x34, 0x56, 0x78},
                             {" 0b01111000010101100011010000010010"}}),
    [](const testing::TestParamInfo<WordCase>& info) { return std::string(info.param.name); });

TEST(DataTextWriter, AWordInProgressKeepsTheLineOpen) {
  settings::Settings s;
  Word16(s, true);
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  Feed(writer, {0x12, 0x34, 0x56});
  writer.CloseLine();  // two constants are wanted, and a word is pending
  EXPECT_EQ(text.Count(), 0);
  EXPECT_EQ(writer.Line(), " 0x1234 ,");
  Feed(writer, {0x78});
  EXPECT_EQ(text.Lines(), QStringList{" 0x1234 , 0x5678,"});
  EXPECT_EQ(writer.ArrayBytes(), 4);
}

// ---------------------------------------------------------------------------------------------
// The picture comment of one constant per line

struct PictureCase {
  const char* name;
  Setup setup;
  std::vector<int> bytes;
  const char* expected;
};

void PrintTo(const PictureCase& c, std::ostream* os) { *os << c.name; }

class Pictures : public testing::TestWithParam<PictureCase> {};

TEST_P(Pictures, DrawTheBitsAtTheEndOfTheLine) {
  settings::Settings s;
  s.format.ORGC = 1;
  EndMark(s, false, false, false);
  GetParam().setup(s);
  EXPECT_EQ(FeedLines(s, GetParam().bytes).closed,
            QStringList{QString::fromLatin1(GetParam().expected)});
}

INSTANTIATE_TEST_SUITE_P(
    Styles, Pictures,
    testing::Values(
        PictureCase{"C_Bits7And0", [](auto&) {}, {0x81}, " 0x81,     /*  #______#  */"},
        PictureCase{"C_Empty", [](auto&) {}, {0x00}, " 0x00,     /*  ________  */"},
        PictureCase{"C_Full", [](auto&) {}, {0xFF}, " 0xFF,     /*  ########  */"},
        // The picture shows the pixels as read, the constant the negated value.
        PictureCase{"C_Negated",
                    [](auto& s) { s.pixel.Neg = true; },
                    {0x81},
                    " 0x7E,     /*  #______#  */"},
        PictureCase{"C_16_MsbFirst",
                    [](auto& s) { Width(s, 16); },
                    {0x80, 0x01},
                    " 0x8001,     /*  #______________#  */"},
        // Little endian: the second byte is written first, so it is drawn on the left.
        PictureCase{"C_16_MsbLast",
                    [](auto& s) {
                      Width(s, 16);
                      s.scan.MSBF = false;
                    },
                    {0x80, 0x01},
                    " 0x0180,     /*  _______##_______  */"},
        PictureCase{"C_32",
                    [](auto& s) { Width(s, 32); },
                    {0x80, 0x00, 0x00, 0x01},
                    " 0x80000001  ,     /*  #______________________________#  */"},
        // Other styles: the drawing starts at position 10 of the text as in C style.
        PictureCase{"DoubleSlash_Bit7",
                    [](auto& s) { CommentStyle(s, false, true, false); },
                    {0x80},
                    " 0x80,//      _#______    "},
        PictureCase{"Basic_Bit0",
                    [](auto& s) { CommentStyle(s, false, false, true); },
                    {0x01},
                    " 0x01,'       ________#   "},
        PictureCase{"Semicolon_Empty",
                    [](auto& s) { CommentStyle(s, false, false, false); },
                    {0x00},
                    " 0x00,;       ________    "},
        PictureCase{"PrefixSuffixForm",
                    [](auto& s) { Format(s, "+H+", "$"); },
                    {0x81},
                    "$81     /*  #______#  */"},
        PictureCase{"NoDataComments", [](auto& s) { s.comment.Nodcom = true; }, {0x81}, " 0x81,"},
        PictureCase{"NotInGray",
                    [](auto& s) { settings::ApplyModeFlags(s.pixel, settings::kFlagG4); },
                    {0x81},
                    " 0x81,"},
        PictureCase{"NotForBinaryForms", [](auto& s) { Format(s, "0B"); }, {0x81}, " 0b10000001"}),
    [](const testing::TestParamInfo<PictureCase>& info) { return std::string(info.param.name); });

TEST(DataTextWriter, StartCommentClearsThePictureOfTheLastByte) {
  settings::Settings s;
  s.format.ORGC = 1;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  EXPECT_EQ(writer.Picture(), "     /*  ________  */");
  writer.MarkBit(6);
  writer.MarkBit(1);
  EXPECT_EQ(writer.Picture(), "     /*  _#____#_  */");
  writer.StartComment();
  EXPECT_EQ(writer.Picture(), "     /*  ________  */");
  s.format.ORGC = 2;
  DataTextWriter several(s, text, {EndOfLineFlagsOf(s.format), 0});
  EXPECT_EQ(several.Picture(), "");
}

TEST(DataTextWriter, LeadingZeroIsTakenOutBeforeThePictureToKeepItsColumn) {
  settings::Settings s;
  s.format.ORGC = 1;
  Format(s, "H");
  s.format.Addof = true;
  EndMark(s, false, false, false);
  const QStringList lines = FeedLines(s, {0xA0, 0x9F}).closed;
  ASSERT_EQ(lines.size(), 2);
  EXPECT_EQ(lines[0], " 0A0h      /*  #_#_____  */");
  EXPECT_EQ(lines[1], " 9Fh ,     /*  #__#####  */");
  EXPECT_EQ(lines[0].indexOf("/*"), lines[1].indexOf("/*"));
}

// ---------------------------------------------------------------------------------------------
// CloseLine

struct MarkCase {
  const char* name;
  Setup setup;
  const char* expected;
};

void PrintTo(const MarkCase& c, std::ostream* os) { *os << c.name; }

class EndMarks : public testing::TestWithParam<MarkCase> {};

TEST_P(EndMarks, CloseTheLine) {
  settings::Settings s;
  s.format.ORGC = 2;
  GetParam().setup(s);
  EXPECT_EQ(FeedLines(s, {0x01, 0x81}).closed,
            QStringList{QString::fromLatin1(GetParam().expected)});
}

INSTANTIATE_TEST_SUITE_P(
    Flags, EndMarks,
    testing::Values(
        MarkCase{"Comma", [](auto&) {}, " 0x01 , 0x81,"},
        MarkCase{"Semicolon", [](auto& s) { EndMark(s, false, true, false); }, " 0x01 , 0x81;"},
        MarkCase{"Custom", [](auto& s) { EndMark(s, false, false, true, " \\"); },
                 " 0x01 , 0x81 \\"},
        MarkCase{"CustomWinsOverComma", [](auto& s) { EndMark(s, true, false, true, "}"); },
                 " 0x01 , 0x81}"},
        MarkCase{"None", [](auto& s) { EndMark(s, false, false, false); }, " 0x01 , 0x81"},
        MarkCase{"FinalHashDeleted", [](auto& s) { EndMark(s, false, false, true, "#"); },
                 " 0x01 , 0x81"}),
    [](const testing::TestParamInfo<MarkCase>& info) { return std::string(info.param.name); });

TEST(DataTextWriter, EndMarkGoesBeforeTheFirstRunOfFourBlanks) {
  settings::Settings s;
  s.format.ORGC = 1;
  // One per line: the gap before the picture takes the mark, even where the separator already
  // stands.
  EXPECT_EQ(FeedLines(s, {0x01}).closed, QStringList{" 0x01,,     /*  _______#  */"});
  // In the other styles the opener comes first: the gap after it takes the mark.
  CommentStyle(s, false, false, true);
  EXPECT_EQ(FeedLines(s, {0x01}).closed, QStringList{" 0x01,',       ________#   "});
  // A 32-bit decimal word is padded with blanks: the mark follows its digits.
  Word32(s, true, "+D+");
  EndMark(s, true, false, false);
  EXPECT_EQ(FeedLines(s, {0, 0, 1, 0}).closed, QStringList{"256,       "});
}

TEST(DataTextWriter, CloseLineWaitsForAFullLine) {
  settings::Settings s;
  s.format.ORGC = 3;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  Feed(writer, {1, 2});
  writer.CloseLine();
  EXPECT_EQ(text.Count(), 0);
  EXPECT_EQ(writer.Line(), " 0x01 , 0x02 ,");
}

TEST(DataTextWriter, WorkingEndOfLineFlagsComeFromTheRunNotTheSettings) {
  settings::Settings s;
  s.format.ORGC = 2;
  app::TextBuffer text;
  EndOfLineFlags eol;
  eol.Eolcom = false;
  eol.EolSem = true;
  DataTextWriter writer(s, text, {eol, 0});
  Feed(writer, {1, 2});
  EXPECT_EQ(text.Lines(), QStringList{" 0x01 , 0x02;"});
}

// ---------------------------------------------------------------------------------------------
// The end of the data

struct EndCase {
  const char* name;
  Setup setup;
  std::vector<int> values;
  long long count;
  QStringList expected;
};

void PrintTo(const EndCase& c, std::ostream* os) { *os << c.name; }

class LastLine : public testing::TestWithParam<EndCase> {};

TEST_P(LastLine, EndMarkRemoval) {
  settings::Settings s;
  GetParam().setup(s);
  EXPECT_EQ(ArrayLines(s, GetParam().values, GetParam().count), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Dellas, LastLine,
    testing::Values(
        // A byte count that is no multiple of ORGC: the short last line ends without a mark.
        EndCase{"ShortLastLine",
                [](auto& s) { s.format.ORGC = 3; },
                {0, 1, 2, 3, 4},
                6,
                {" 0x00 , 0x01 , 0x02,", " 0x03 , 0x04 ", "};"}},
        EndCase{"ShortLastLineKeptWithoutDellas",
                [](auto& s) {
                  s.format.ORGC = 3;
                  s.format.dellas = false;
                },
                {0, 1, 2, 3, 4},
                6,
                {" 0x00 , 0x01 , 0x02,", " 0x03 , 0x04 ,", "};"}},
        EndCase{"FullLastLine",
                [](auto& s) { s.format.ORGC = 3; },
                {0, 1, 2, 3, 4, 5},
                7,
                {" 0x00 , 0x01 , 0x02,", " 0x03 , 0x04 , 0x05", "};"}},
        EndCase{"DeleteAllLastOnes",
                [](auto& s) {
                  s.format.ORGC = 3;
                  s.format.delallas = true;
                },
                {0, 1, 2, 3, 4, 5},
                7,
                {" 0x00 , 0x01 , 0x02", " 0x03 , 0x04 , 0x05", "};"}},
        // One per line in "X": no blank before the separator, and dellas takes the comma of
        // the last line wherever it stands.
        EndCase{"OnePerLine",
                [](auto& s) {
                  s.format.ORGC = 1;
                  EndMark(s, false, false, false);
                },
                {0x81, 0x00},
                3,
                {" 0x81,     /*  #______#  */", " 0x00     /*  ________  */", "};"}},
        EndCase{"OnePerLineWithCommaMarks",
                [](auto& s) { s.format.ORGC = 1; },
                {0x81, 0x00},
                3,
                {" 0x81,,     /*  #______#  */", " 0x00,     /*  ________  */", "};"}},
        // With several constants a comma is taken only from the last two positions.
        EndCase{"SemicolonMark",
                [](auto& s) {
                  s.format.ORGC = 2;
                  EndMark(s, false, true, false);
                },
                {0, 1, 2, 3},
                5,
                {" 0x00 , 0x01;", " 0x02 , 0x03", "};"}},
        EndCase{"CustomMarkCutFromItsLastCharacter",
                [](auto& s) {
                  s.format.ORGC = 2;
                  EndMark(s, false, false, true, "\\ x");
                },
                {0, 1, 2, 3},
                5,
                {" 0x00 , 0x01\\ x", " 0x02 , 0x03\\ ", "};"}},
        EndCase{"CustomSeparatorCut",
                [](auto& s) {
                  s.format.ORGC = 2;
                  CustomSeparator(s, ";");
                },
                {0, 1, 2},
                4,
                {" 0x00 ; 0x01,", " 0x02 ", "};"}},
        EndCase{"CustomSeparatorNeverCutsAConstant",
                [](auto& s) {
                  s.format.ORGC = 2;
                  CustomSeparator(s, ";");
                  EndMark(s, false, false, false);
                },
                {0, 1, 2, 3},
                5,
                {" 0x00 ; 0x01", " 0x02 ; 0x03", "};"}},
        EndCase{"NoDataGivesOnlyTheEnd", [](auto&) {}, {}, 1, {"};"}},
        EndCase{"CustomEndOfData", [](auto& s) { s.block.Endst = "END"; }, {}, 1, {"END"}}),
    [](const testing::TestParamInfo<EndCase>& info) { return std::string(info.param.name); });

TEST(DataTextWriter, Packed4096InPlusHPlusGetsACommaBeforeTheLastPrefix) {
  settings::Settings s;
  settings::ApplyModeFlags(s.pixel, settings::kFlagC4096 | settings::kFlagPM);
  Format(s, "+H+", "0x");
  NoSeparator(s);
  s.format.ORGC = 4;
  EXPECT_EQ(ArrayLines(s, {0x00, 0x01}), (QStringList{"0x00 ,0x01 ", "};"}));
}

TEST(DataTextWriter, NoHeaderWithEmptyBeginTextOpensTheDataWithAnEmptyLine) {
  settings::Settings s;
  s.comment.Noh = true;
  s.comment.Noonts = true;
  s.block.BSD = false;
  s.format.ORGC = 2;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 3});
  writer.WriteDataPreamble({}, HeaderText{});
  Feed(writer, {1, 2});
  writer.WriteDataEnd({}, {});
  EXPECT_EQ(text.Lines(), (QStringList{"", " 0x01 , 0x02", "};"}));
}

TEST(DataTextWriter, GroupModeWrapsEachRowAndTheArray) {
  settings::Settings s;
  s.block.ColRx = true;
  s.block.fpar11 = "{";
  s.block.fpar12 = "},";
  s.block.fpar13 = "BEGIN";
  s.block.fpar14 = "END";
  s.comment.Noh = true;
  s.comment.Noonts = true;
  s.block.BSD = false;
  s.format.ORGC = 2;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 6});
  writer.WriteDataPreamble({}, HeaderText{});
  writer.GroupStart();
  Feed(writer, {0, 1});
  writer.GroupStart();
  Feed(writer, {2, 3, 4});  // a row of three: its short line goes out with the row
  writer.GroupStart();
  Feed(writer, {5});
  writer.WriteDataEnd({}, {});
  EXPECT_EQ(text.Lines(), (QStringList{"BEGIN", "{", " 0x00 , 0x01,", "},", "{", " 0x02 , 0x03,",
                                       " 0x04 ,", "},", "{", " 0x05 ", "},", "END"}));
}

TEST(DataTextWriter, GroupStartWithoutGroupModeWritesNothing) {
  settings::Settings s;
  s.format.ORGC = 2;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  writer.GroupStart();
  Feed(writer, {1});
  writer.GroupStart();
  EXPECT_EQ(text.Count(), 0);
  EXPECT_EQ(writer.Line(), " 0x01 ,");
}

// ---------------------------------------------------------------------------------------------
// Two-page gray, byte targets, font mode

struct PlaneCase {
  bool msbFirst;
  const char* main;
  const char* second;
};

class TwoPageGray : public testing::TestWithParam<PlaneCase> {};

// The pairs AA 55 and FF 00 form 0xAA55 and 0xFF00. Odd bits go to the main array, even bits
// to the second plane: 0xAA55 gives F0 and 0F with MSBF (bit 15 to A7, bit 14 to B7 ...), and
// 0F and F0 without (bit 15 to A0, bit 14 to B0 ...); 0xFF00 gives F0 and F0, or 0F and 0F.
TEST_P(TwoPageGray, DealsThePairBitsToTwoArrays) {
  settings::Settings s;
  settings::ApplyModeFlags(s.pixel, settings::kFlagG42);
  s.scan.MSBF = GetParam().msbFirst;
  s.format.ORGC = 2;
  s.comment.Noonts = true;
  s.block.BSD = false;
  app::TextBuffer text;
  app::TextBuffer second;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 5}, &second);
  HeaderRequest request;
  request.templateText = QStringLiteral("const uint8_t [&NAME][] = {");
  request.arrayName = QStringLiteral("Pic");
  const HeaderText header = BuildHeader(s, request);
  writer.WriteDataPreamble({}, header);
  Feed(writer, {0xAA, 0x55, 0xFF, 0x00});
  writer.WriteDataEnd(header, {});
  EXPECT_EQ(text.Lines(),
            (QStringList{"const uint8_t  Pic [] = {", QString::fromLatin1(GetParam().main), "};"}));
  EXPECT_EQ(second.Lines(), (QStringList{"const uint8_t  d_Pic [] = {",
                                         QString::fromLatin1(GetParam().second), "};"}));
  EXPECT_EQ(writer.ArrayBytes(), 2);
}

INSTANTIATE_TEST_SUITE_P(BitOrders, TwoPageGray,
                         testing::Values(PlaneCase{true, " 0xF0 , 0xF0", " 0x0F , 0xF0"},
                                         PlaneCase{false, " 0x0F , 0x0F", " 0xF0 , 0x0F"}));

class RecordingHexTarget final : public HexByteTarget {
 public:
  void AppendHexByte(const QString& digits) override { bytes << digits; }
  QStringList bytes;
};

TEST(DataTextWriter, BinaryTargetsTakeTwoHexDigitsAndNoText) {
  for (bool intelHex : {false, true}) {
    settings::Settings s;
    s.width.D8bc = false;
    s.width.DHec = !intelHex;
    s.width.DIHec = intelHex;
    s.pixel.Neg = true;
    app::TextBuffer text;
    RecordingHexTarget target;
    DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
    writer.SetHexByteTarget(&target);
    Feed(writer, {0x05, 0xA0});
    EXPECT_EQ(target.bytes, (QStringList{"FA", "5F"}));
    EXPECT_EQ(text.Count(), 0);
    EXPECT_EQ(writer.Line(), "");
  }
}

TEST(DataTextWriter, FontModeEndsTheGlyphLineAtItsLastValue) {
  settings::Settings s;
  s.format.ORGC = 4;
  app::TextBuffer text;
  DataTextOptions options{EndOfLineFlagsOf(s.format), 0, true};
  DataTextWriter writer(s, text, options);
  Feed(writer, {1});
  writer.MarkLastValue();
  Feed(writer, {2});
  EXPECT_EQ(text.Lines(), QStringList{" 0x01 , 0x02 ,"});
  // With HCO the lines go to the comment block instead.
  s.comment.HCO = true;
  app::TextBuffer other;
  DataTextWriter block(s, other, options);
  Feed(block, {1, 2, 3, 4});
  EXPECT_EQ(other.Count(), 0);
  EXPECT_EQ(block.CommentBlock(), QStringList{" 0x01 , 0x02 , 0x03 , 0x04,"});
}

TEST(DataTextWriter, TargetFollowsTheWidthKeys) {
  settings::OutputWidthSettings width;
  EXPECT_EQ(DataTargetOf(width), DataTarget::Text);
  width.D8bc = false;
  width.DHec = true;
  EXPECT_EQ(DataTargetOf(width), DataTarget::Binary);
  width.DHec = false;
  width.DIHec = true;
  EXPECT_EQ(DataTargetOf(width), DataTarget::IntelHex);
}

// ---------------------------------------------------------------------------------------------
// Preamble and end of the array

const PreambleInfo kInfo{
    QStringLiteral("V9 "), QStringLiteral("Sat 14.03.2026"), false, false, 0, 0};

struct PreambleCase {
  const char* name;
  Setup setup;
  PreambleInfo info;
  QStringList expected;
};

void PrintTo(const PreambleCase& c, std::ostream* os) { *os << c.name; }

class Preamble : public testing::TestWithParam<PreambleCase> {};

TEST_P(Preamble, CommentLinesBeforeTheHeader) {
  settings::Settings s;
  GetParam().setup(s);
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  writer.WriteDataPreamble(GetParam().info, HeaderText{});
  EXPECT_EQ(text.Lines(), GetParam().expected);
}

PreambleInfo Animated(bool compressed) {
  PreambleInfo info = kInfo;
  info.compressed = compressed;
  info.animated = true;
  info.frame = 2;
  info.frameCount = 5;
  return info;
}

INSTANTIATE_TEST_SUITE_P(
    Styles, Preamble,
    testing::Values(
        PreambleCase{"C",
                     [](auto&) {},
                     kInfo,
                     {"/* Data generated with Vantorelle V9 */", "/* Sat 14.03.2026 */",
                      "/* Bitmap Source file : NewBitmap.bmp */",
                      "/* Byte width format is 8 bit / Big endian */", ""}},
        PreambleCase{"C_CompressedAnimation",
                     [](auto&) {},
                     Animated(true),
                     {"/* COMPRESSED Data generated with Vantorelle V9 */",
                      "/* Animated Sequence Part # 2 of 5  */", "/* Sat 14.03.2026 */",
                      "/* Bitmap Source file : NewBitmap.bmp */",
                      "/* Byte width format is 8 bit / Big endian */", ""}},
        PreambleCase{"C_Word16LittleEndianSixBit",
                     [](auto& s) {
                       Width(s, 16);
                       s.scan.MSBF = false;
                       s.pixel.bw8 = false;
                     },
                     kInfo,
                     {"/* Data generated with Vantorelle V9 */", "/* Sat 14.03.2026 */",
                      "/* Bitmap Source file : NewBitmap.bmp */",
                      "/* Word width format is 16 bit / Little endian / 6 bit T6963 Mode  */", ""}},
        PreambleCase{"C_Word32Postprocessing",
                     [](auto& s) {
                       Width(s, 32);
                       s.post.asrg = true;
                     },
                     kInfo,
                     {"/* Data generated with Vantorelle V9 */", "/* Sat 14.03.2026 */",
                      "/* Bitmap Source file : NewBitmap.bmp */",
                      "/* Word width format is 32 bit / Big endian */",
                      "/* Postprocessing is ENABLED  */", ""}},
        PreambleCase{"Semicolon",
                     [](auto& s) { CommentStyle(s, false, false, false); },
                     kInfo,
                     {"; Data generated with Vantorelle V9 ", "; Sat 14.03.2026",
                      "; Bitmap Source file : NewBitmap.bmp",
                      "; Byte width format is 8 bit / Big endian", ""}},
        PreambleCase{
            "Basic_AnimationPostprocessing",
            [](auto& s) {
              CommentStyle(s, false, false, true);
              s.post.Autop = true;
              s.output.nbmfn = "pic.png";
            },
            Animated(false),
            {"' Data generated with Vantorelle V9 ", "' Animated Sequence Part # 2 of 5",
             "' Sat 14.03.2026", "' Bitmap Source file : pic.png",
             "' Byte width format is 8 bit / Big endian", "' Postprocessing is ENABLED ", ""}},
        PreambleCase{"NoComments", [](auto& s) { s.comment.Noonts = true; }, kInfo, {}},
        PreambleCase{"NoHeaderWritesTheBeginText",
                     [](auto& s) {
                       s.comment.Noonts = true;
                       s.comment.Noh = true;
                       s.block.begds = "const char x[] = {";
                     },
                     kInfo,
                     {"const char x[] = {"}},
        PreambleCase{"NoHeaderInGroupModeWritesTheGroupBegin",
                     [](auto& s) {
                       s.comment.Noonts = true;
                       s.comment.Noh = true;
                       s.block.begds = "const char x[] = {";
                       s.block.ColRx = true;
                       s.block.fpar13 = "{ {";
                     },
                     kInfo,
                     {"{ {"}}),
    [](const testing::TestParamInfo<PreambleCase>& info) { return std::string(info.param.name); });

TEST(DataTextWriter, HeaderLinesAreTrimmedCollapsedAndTyped) {
  settings::Settings s;
  s.comment.Noonts = true;
  Width(s, 16);
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  HeaderText header;
  header.text = QStringLiteral("a  \n\n\n  \nconst uint8_t x[] = {\t\n\n");
  writer.WriteDataPreamble(kInfo, header);
  EXPECT_EQ(text.Lines(), (QStringList{"a", "", "const uint16_t x[] = {", ""}));
}

TEST(DataTextWriter, MissingHeaderWritesOnlyTheComments) {
  settings::Settings s;
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  writer.WriteDataPreamble(kInfo, HeaderText{});
  EXPECT_EQ(text.Count(), 5);
  EXPECT_EQ(text.LastLine(), "");
}

struct EndingCase {
  const char* name;
  Setup setup;
  DataEndInfo info;
  QStringList expected;  // the lines from the end of the data on
};

void PrintTo(const EndingCase& c, std::ostream* os) { *os << c.name; }

class Ending : public testing::TestWithParam<EndingCase> {};

// Four bytes of a 16 x 20 area named "Pic" at (3, 4).
TEST_P(Ending, DescriptorsAndClosingComments) {
  settings::Settings s;
  s.format.ORGC = 4;
  GetParam().setup(s);
  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 5});
  Feed(writer, {1, 2, 3, 4});
  HeaderText header;
  header.linePrefix = QStringLiteral("const uint8_t ");
  header.arrayName = QStringLiteral("Pic");
  header.xText = QStringLiteral("3");
  header.yText = QStringLiteral("4");
  writer.WriteDataEnd(header, GetParam().info);
  const QStringList lines = text.Lines();
  ASSERT_GE(lines.size(), 1);
  EXPECT_EQ(lines.mid(1), GetParam().expected) << lines.first().toStdString();
}

DataEndInfo End(bool animated = false, bool compressed = false) {
  return {QStringLiteral("Pic.rtf"), animated, compressed, 16, 20, 0.0};
}

void Vertical(settings::Settings& s) {
  s.scan.tr = false;
  s.scan.td = true;
}

INSTANTIATE_TEST_SUITE_P(
    Variants, Ending,
    testing::Values(
        EndingCase{"Defaults",
                   [](auto&) {},
                   End(),
                   {"};", "", "const uint8_t  PicWidthPages = 2 ;", "",
                    "const uint8_t  PicHeightPixels = 20 ;", "/******************/",
                    "/* 4 Bytes */", "/* End of LCD Pattern           */",
                    "/* Save table and see info file Pic.rtf */", ""}},
        // 20 rows are 2.5 pages of 8: the count is truncated.
        EndingCase{"VerticalDirection",
                   [](auto& s) {
                     Vertical(s);
                     s.comment.Noonts = true;
                   },
                   End(),
                   {"};", "", "const uint8_t  PicWidthPixels = 16 ;", "",
                    "const uint8_t  PicHeightPages = 2 ;"}},
        EndingCase{"NoMatrixCountsPixels",
                   [](auto& s) {
                     s.display.NOMAT = true;
                     s.comment.Noonts = true;
                   },
                   End(),
                   {"};", "", "const uint8_t  PicWidthPages = 16 ;", "",
                    "const uint8_t  PicHeightPixels = 20 ;"}},
        EndingCase{"CoordinateDescriptors",
                   [](auto& s) {
                     s.block.BSD = false;
                     s.block.BCD = true;
                     s.block.EODS = "";
                     s.comment.Noonts = true;
                   },
                   End(),
                   {"};", "", "const uint8_t  PicX = 3 ", "", "const uint8_t  PicY = 4 "}},
        EndingCase{
            "Words",
            [](auto& s) {
              Width(s, 16);
              s.format.ORGC = 2;
              s.block.BSD = false;
            },
            End(),
            {"};", "/******************/", "/* 2 Words */", "/* End of LCD Pattern           */",
             "/* Save table and see info file Pic.rtf */", ""}},
        EndingCase{
            "CompressedCountsBytes",
            [](auto& s) {
              Width(s, 16);
              s.format.ORGC = 2;
              s.block.BSD = false;
            },
            End(false, true),
            {"};", "/******************/", "/* 4 Bytes */", "/* End of LCD Pattern           */",
             "/* Save table and see info file Pic.rtf */", ""}},
        EndingCase{
            "AnimationHasNoInfoFileLine",
            [](auto& s) { s.block.BSD = false; },
            End(true),
            {"};", "/******************/", "/* 4 Bytes */", "/* End of LCD Pattern           */"}},
        EndingCase{"OtherStyle",
                   [](auto& s) {
                     s.block.BSD = false;
                     s.comment.CCOM = false;
                     s.comment.BSCOM = true;
                   },
                   End(),
                   {"};", "! ******************", "! 4 Bytes ", "!  End of LCD Pattern  ",
                    "!  Save table and see info file Pic.rtf"}},
        EndingCase{"OtherStyleWordsDivideTheCount",
                   [](auto& s) {
                     Width(s, 16);
                     s.format.ORGC = 2;
                     s.block.BSD = false;
                     s.comment.CCOM = false;
                     s.comment.BSCOM = true;
                   },
                   End(true),
                   {"};", "! ******************", "! 2 Bytes ", "!  End of LCD Pattern  "}},
        EndingCase{"GroupModeEnd",
                   [](auto& s) {
                     s.block.ColRx = true;
                     s.block.fpar14 = "END";
                     s.block.BSD = false;
                     s.comment.Noonts = true;
                   },
                   End(),
                   {"END"}}),
    [](const testing::TestParamInfo<EndingCase>& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------------------------
// Whole texts

// 40 bytes: a run, values with letter digits (above 159 and just below), and single bits.
const std::vector<int> kForty = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09,
                                 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0xA0, 0xA1, 0xA2, 0xA3,
                                 0xA4, 0xA5, 0xA6, 0xA7, 0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD,
                                 0xAE, 0xAF, 0x9F, 0xFF, 0x05, 0x10, 0x80, 0x01, 0xFE, 0x7F};
// An X drawn on 8 x 8 pixels.
const std::vector<int> kCross = {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81};
const std::vector<int> kTwelve = {0x00, 0x01, 0x02, 0x03, 0xA0, 0xA1,
                                  0x9F, 0xFF, 0x05, 0x10, 0x80, 0x7F};

// A whole export as the driver runs it: the default graphics template written to a project
// folder, the header, the preamble, the values, the end. The count the driver expects is one
// more than the bytes delivered, as it computes it (width * height / 8 + 1 in monochrome).
QByteArray WholeText(const settings::Settings& s, const std::vector<int>& values, int width,
                     int height) {
  QTemporaryDir dir;
  const QString settingsFile = dir.filePath("proj.LCD");
  app::Log log;
  EXPECT_TRUE(WriteDefaultHeaderFile(settingsFile, HeaderKind::Graphics, false, log).ok());
  HeaderRequest request;
  request.templateFileName = HeaderFileName(settingsFile, HeaderKind::Graphics);
  request.templateText = LoadHeaderTemplate(request.templateFileName);
  request.arrayName = QStringLiteral("NewBitmap");
  request.dataByteCount = static_cast<long long>(values.size()) + 1;
  request.right = width - 1;
  request.bottom = height - 1;
  request.width = width;
  request.height = height;
  const HeaderText header = BuildHeader(s, request);

  app::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), request.dataByteCount});
  writer.WriteDataPreamble({QStringLiteral("0.1.0 "), QStringLiteral("14/03/2026 15:09:26")},
                           header);
  Feed(writer, values);
  writer.WriteDataEnd(header, {QStringLiteral("NewBitmap.rtf"), false, false, width, height});
  return text.Text().toUtf8();
}

struct GoldenCase {
  const char* name;
  Setup setup;
  std::vector<int> values;
  int width;
  int height;
};

void PrintTo(const GoldenCase& c, std::ostream* os) { *os << c.name; }

class WholeTexts : public testing::TestWithParam<GoldenCase> {};

TEST_P(WholeTexts, MatchTheirGoldenFile) {
  settings::Settings s;
  GetParam().setup(s);
  const QByteArray actual = WholeText(s, GetParam().values, GetParam().width, GetParam().height);
  EXPECT_TRUE(test::MatchesGolden(
      actual, QStringLiteral("convert/%1/expected.h").arg(QLatin1String(GetParam().name))));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WholeTexts,
    testing::Values(GoldenCase{"text_default", [](auto&) {}, kForty, 16, 20},
                    GoldenCase{"text_hex_h_addof",
                               [](auto& s) {
                                 Format(s, "H");
                                 s.format.Addof = true;
                                 s.format.ORGC = 8;
                                 CommentStyle(s, false, false, false);
                                 EndMark(s, false, false, false);
                               },
                               kForty, 16, 20},
                    GoldenCase{"text_binary_b",
                               [](auto& s) {
                                 Format(s, "B");
                                 s.format.ORGC = 4;
                               },
                               kTwelve, 8, 12},
                    GoldenCase{"text_decimal",
                               [](auto& s) {
                                 Format(s, "+D+");
                                 s.format.ORGC = 10;
                               },
                               kForty, 16, 20},
                    GoldenCase{"text_word16",
                               [](auto& s) {
                                 Width(s, 16);
                                 s.format.ORGC = 8;
                               },
                               kForty, 16, 20},
                    GoldenCase{"text_word32",
                               [](auto& s) {
                                 Width(s, 32);
                                 s.format.ORGC = 1;
                                 EndMark(s, false, false, false);
                               },
                               {0x81, 0x42, 0x24, 0x18, 0xFF, 0x00, 0xAA, 0x55, 0x12, 0x34, 0x56,
                                0x78, 0x9F, 0xA0, 0x05, 0x10},
                               32,
                               4},
                    GoldenCase{"text_one_per_line",
                               [](auto& s) {
                                 s.format.ORGC = 1;
                                 EndMark(s, false, false, false);
                               },
                               kCross, 8, 8},
                    GoldenCase{"text_noh",
                               [](auto& s) {
                                 s.comment.Noh = true;
                                 s.block.begds = "static const unsigned char NewBitmap[] = {";
                                 s.format.ORGC = 4;
                               },
                               kCross, 8, 8},
                    GoldenCase{"text_nodcom",
                               [](auto& s) {
                                 s.format.ORGC = 1;
                                 s.comment.Nodcom = true;
                                 EndMark(s, false, false, false);
                               },
                               kCross, 8, 8},
                    GoldenCase{"text_noonts",
                               [](auto& s) {
                                 s.comment.Noonts = true;
                                 s.format.ORGC = 4;
                               },
                               kCross, 8, 8},
                    GoldenCase{"text_custom",
                               [](auto& s) {
                                 CommentStyle(s, false, false, true);
                                 Format(s, "+H+", "&H");
                                 CustomSeparator(s, ",");
                                 EndMark(s, false, false, false);
                                 s.format.LineN = true;
                                 s.format.cpfr = " DATA ";
                                 s.format.ORGC = 4;
                                 s.comment.Noh = true;
                                 s.block.begds = "' NewBitmap data";
                                 s.block.Endst = "' end of data";
                                 s.block.BCD = true;
                               },
                               kTwelve, 8, 12}),
    [](const testing::TestParamInfo<GoldenCase>& info) { return std::string(info.param.name); });

// The default output is real C: compiled together with a small program that prints the array,
// it gives back the bytes that went in.
TEST(WholeTexts, DefaultArrayCompilesAndHoldsTheValues) {
  const QString compiler = QStandardPaths::findExecutable(QStringLiteral("cc"));
  if (compiler.isEmpty()) GTEST_SKIP() << "no C compiler (cc) found";
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("avr")));
  auto write = [&](const QString& name, const QByteArray& bytes) {
    QFile file(dir.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  };
  write(QStringLiteral("avr/pgmspace.h"), "#include <stdint.h>\n#define PROGMEM\n");
  write(QStringLiteral("NewBitmap.h"), WholeText(settings::Settings{}, kForty, 16, 20));
  write(QStringLiteral("main.c"),
        "#include <stdio.h>\n"
        "#include \"NewBitmap.h\"\n"
        "int main(void) {\n"
        "  for (unsigned i = 0; i < sizeof NewBitmap; ++i) printf(\"%u\\n\", NewBitmap[i]);\n"
        "  return 0;\n"
        "}\n");
  QProcess cc;
  cc.setWorkingDirectory(dir.path());
  cc.start(compiler, {QStringLiteral("-I."), QStringLiteral("-o"), QStringLiteral("dump"),
                      QStringLiteral("main.c")});
  ASSERT_TRUE(cc.waitForFinished(60000));
  ASSERT_EQ(cc.exitCode(), 0) << cc.readAllStandardError().toStdString();

  QProcess dump;
  dump.start(dir.filePath(QStringLiteral("dump")), {});
  ASSERT_TRUE(dump.waitForFinished(30000));
  ASSERT_EQ(dump.exitCode(), 0);
  QStringList expected;
  for (int v : kForty) expected << QString::number(v);
  EXPECT_EQ(QString::fromLatin1(dump.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts),
            expected);
}

}  // namespace
}  // namespace vt::convert
