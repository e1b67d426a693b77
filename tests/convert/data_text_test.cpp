// SPDX-License-Identifier: MIT
#include "convert/data_text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <tuple>

#include "convert_test_util.h"
#include "support/golden.h"
#include "support/recording_messenger.h"

// Readable QString values in failure messages.
static void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace vt::convert {
namespace {

using test::FromHex;
using test::With;

// Feeds bytes the way the packers deliver them: a new picture for each byte, a mark for each
// set bit, then the value.
void Feed(DataTextWriter& writer, const std::vector<int>& values) {
  for (int v : values) {
    writer.StartComment();
    for (int bit = 7; bit >= 0; --bit) {
      if ((v >> bit) & 1) writer.MarkBit(bit);
    }
    writer.EmitValue(v, true);
  }
}

// What a writer makes of `hex` with `count` bytes expected (0: not known): each line written
// followed by "\n", then the line still being built. CloseLine is called last: it must leave a
// line that is not full, or holds half a word, as it is. With `end` the array is closed as well
// (without descriptors and closing comments).
QString Written(settings::Settings s, const char* hex, long long count, bool end) {
  s.comment.Noonts = s.comment.Noonts || end;
  s.block.BSD = s.block.BSD && !end;
  platform::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), count});
  Feed(writer, FromHex(hex));
  writer.CloseLine();
  if (end) writer.WriteDataEnd(HeaderText{}, DataEndInfo{});
  return text.Text() + writer.Line();
}

struct TextCase {
  const char* keys;
  const char* values;
  long long count;  // bytes the data is expected to have; 0: not known
  const char* expected;
};

void ExpectTexts(std::initializer_list<TextCase> cases, bool end) {
  for (const TextCase& c : cases) {
    SCOPED_TRACE(std::string(c.keys) + " <- " + c.values);
    EXPECT_EQ(Written(With(c.keys), c.values, c.count, end), QString::fromLatin1(c.expected));
  }
}

TEST(DataTextWriter, SpellsPlacesAndClosesEachConstant) {
  ExpectTexts(
      {// Three per line, the first, a middle and the last of the line: by default a blank
       // before each comma, and the end mark closes the line.
       {"ORGC=3", "05 A0 9F", 0, " 0x05 , 0xA0 , 0x9F,\n"},
       {"ORGC=3|FXHB=H", "05 A0 9F", 0, " 05h, A0h , 9Fh ,\n"},
       {"ORGC=3|FXHB=H|Addof=1", "05 A0 9F", 0, " 05h, 0A0h , 9Fh ,\n"},
       {"ORGC=3|FXHB=0B", "05 A0 9F", 0, " 0b00000101,  0b10100000 ,  0b10011111 ,\n"},
       {"ORGC=3|FXHB=B", "05 A0 9F", 0, " 00000101b,  10100000b,  10011111b,\n"},
       {"ORGC=3|FXHB=+B+|VALpref=%", "05 A0 9F", 0, "%00000101,  %10100000,  %10011111,\n"},
       {"ORGC=3|FXHB=+H+|VALpref=$", "05 A0 9F", 0, "$05, $A0, $9F,\n"},
       {"ORGC=3|FXHB=+H+|VALpref=$|Addof=1", "05 A0 9F", 0, "$05, $0A0, $9F,\n"},
       {"ORGC=3|FXHB=+H+|VALpref=$|WithSp=0", "05 A0 9F", 0, "$05,$A0,$9F,\n"},
       {"ORGC=3|FXHB=+D+", "05 A0 9F", 0, "5  , 160, 159,\n"},
       {"ORGC=3|FXHB=+D+|COMAh=0|COMAv=0", "05 A0 9F", 0, "5   160 159,\n"},
       {"ORGC=3|COMAh=0|COMAv=0", "05 A0 9F", 0, " 0x05  0xA0  0x9F,\n"},
       {"ORGC=3|COMAv=0|COMAS=1|sepst=;", "05 A0 9F", 0, " 0x05 ; 0xA0 ; 0x9F,\n"},
       {"ORGC=3|FXHB=H|COMAv=0|COMAS=1|sepst=;", "05 A0 9F", 0, " 05h; A0h ; 9Fh ,\n"},
       {"ORGC=3|Neg=1", "05 A0 9F", 0, " 0xFA , 0x5F , 0x60,\n"},
       {"ORGC=3|CPRE=\t.db|cpfr= ", "05 A0 9F", 0, "\t.db  0x05 , 0xA0 , 0x9F,\n"},
       {"ORGC=2|LineN=1|CPRE=L|cpfr=:", "01 02 03 04", 0, "L0: 0x01 , 0x02,\nL1: 0x03 , 0x04,\n"},
       // One per line without picture or end mark: "X" puts its separator right after the
       // constant, "H" writes " ," whatever the separator, the binary forms none.
       {"ORGC=1|Nodcom=1|Eolcom=0", "A0", 0, " 0xA0,\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|COMAh=0|COMAv=0", "A0", 0, " 0xA0 \n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|COMAv=0|COMAS=1|sepst=;", "A0", 0, " 0xA0;\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=H", "A0", 0, " A0h ,\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=H|COMAv=0|COMAS=1|sepst=;", "A0", 0, " A0h ,\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=H|COMAh=0|COMAv=0", "A0", 0, " A0h \n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=H|Addof=1", "A0", 0, " 0A0h ,\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=0B", "A0", 0, " 0b10100000\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=B", "A0", 0, " 10100000b\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=+B+|VALpref=%|VALSUF=!", "A0", 0, "%10100000!\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=+H+|VALpref=$", "A0", 0, "$A0\n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=+D+|VALpref=(|VALSUF=)", "A0", 0, "(160)\n"},
       // The last value of the data takes no separator; one per line it takes the form with
       // a blank before the separator, whose comma is then blanked, as is a comma in the
       // suffix. Without a known count no value is the last.
       {"ORGC=3", "05 A0", 2, " 0x05 , 0xA0 "},
       {"ORGC=1|Nodcom=1|Eolcom=0", "05 A0", 2, " 0x05,\n 0xA0  \n"},
       {"ORGC=1|Nodcom=1|Eolcom=0|FXHB=H", "05 A0", 2, " 05h ,\n A0h \n"},
       {"ORGC=4|FXHB=+H+|VALpref=0x|VALSUF=,|COMAh=0|COMAv=0", "00 01 02", 3, "0x00, 0x01, 0x02  "},
       {"ORGC=4|FXHB=+H+|VALpref=0x|VALSUF=,|COMAh=0|COMAv=0", "00 01 02", 0, "0x00, 0x01, 0x02, "},
       // 16 and 32-bit words: the bytes joined by bit order (0x1234 = 4660, 0x3412 = 13330,
       // 0x12345678 = 305419896), decimals padded to 5 or 10, 32-bit hexadecimal to 10; the
       // leading zero goes with the byte written first. A pending word keeps the line open.
       {"bits=16|ORGC=2", "12 34 56 78", 0, " 0x1234 , 0x5678,\n"},
       {"bits=16|ORGC=2|MSBF=0", "12 34 56 78", 0, " 0x3412 , 0x7856,\n"},
       {"bits=16|ORGC=2", "12 34 56", 0, " 0x1234 ,"},
       {"bits=16|ORGC=2|FXHB=+D+", "12 34 56 78", 0, "4660 , 22136,\n"},
       {"bits=16|ORGC=2|FXHB=+D+|MSBF=0", "12 34 56 78", 0, "13330, 30806,\n"},
       // A word padded with four blanks is no picture gap: the mark still ends the line.
       {"bits=16|ORGC=2|FXHB=+D+", "00 01 00 02", 0, "1    , 2    ,\n"},
       {"bits=16|ORGC=2|FXHB=B", "12 34 56 78", 0, " 0001001000110100b,  0101011001111000b,\n"},
       {"bits=16|ORGC=2|FXHB=H|Addof=1", "A0 01 05 06", 0, " 0A001h, 0506h ,\n"},
       {"bits=16|ORGC=2|FXHB=H|Addof=1|MSBF=0", "A0 01 05 B6", 0, " 01A0h, 0B605h ,\n"},
       {"bits=16|ORGC=2|Neg=1", "00 0F FF F0", 0, " 0xFFF0 , 0x000F,\n"},
       {"bits=32|ORGC=1|Nodcom=1|Eolcom=0", "12 34 56 78", 0, " 0x12345678  ,\n"},
       {"bits=32|ORGC=1|Nodcom=1|Eolcom=0|MSBF=0", "12 34 56 78", 0, " 0x78563412  ,\n"},
       {"bits=32|ORGC=1|Nodcom=1|Eolcom=0|FXHB=+D+", "12 34 56 78", 0, "305419896 \n"},
       {"bits=32|ORGC=1|Nodcom=1|Eolcom=0|FXHB=+D+", "FF FF FF FF", 0, "4294967295\n"},
       {"bits=32|ORGC=1|Nodcom=1|Eolcom=0|FXHB=0B|MSBF=0", "12 34 56 78", 0,
        " 0b01111000010101100011010000010010\n"},
       // The picture of one constant per line: the pixels as read (not negated), drawn from
       // position 10 of the comment in every style; a word's bytes in the order written.
       {"ORGC=1|Eolcom=0", "81", 0, " 0x81,     /*  #______#  */\n"},
       {"ORGC=1|Eolcom=0|Neg=1", "81", 0, " 0x7E,     /*  #______#  */\n"},
       {"ORGC=1|Eolcom=0|bits=16", "80 01", 0, " 0x8001,     /*  #______________#  */\n"},
       {"ORGC=1|Eolcom=0|bits=16|MSBF=0", "80 01", 0, " 0x0180,     /*  _______##_______  */\n"},
       {"ORGC=1|Eolcom=0|bits=32", "80 00 00 01", 0,
        " 0x80000001  ,     /*  #______________________________#  */\n"},
       {"ORGC=1|Eolcom=0|CCOM=0|PSCOM=1", "80", 0, " 0x80,//      _#______    \n"},
       {"ORGC=1|Eolcom=0|FXHB=+H+|VALpref=$", "81", 0, "$81     /*  #______#  */\n"},
       {"ORGC=1|Eolcom=0|Nodcom=1", "81", 0, " 0x81,\n"},
       {"ORGC=1|Eolcom=0|mode=gray4", "81", 0, " 0x81,\n"},
       {"ORGC=1|Eolcom=0|FXHB=0B", "81", 0, " 0b10000001\n"},
       // The leading zero is taken out before the picture: it keeps its column.
       {"ORGC=1|Eolcom=0|FXHB=H|Addof=1", "A0 9F", 0,
        " 0A0h      /*  #_#_____  */\n 9Fh ,     /*  #__#####  */\n"},
       // End marks go before the first run of four blanks, even where a separator stands, or
       // at the end; a custom mark wins over the comma; a final "#" is deleted.
       {"ORGC=1", "01", 0, " 0x01,,     /*  _______#  */\n"},
       {"ORGC=1|CCOM=0|VBACOM=1", "01", 0, " 0x01,',       ________#   \n"},
       {"bits=32|ORGC=1|Nodcom=1|FXHB=+D+", "00 00 01 00", 0, "256,       \n"},
       {"ORGC=2|Eolcom=0|EolSem=1", "01 81", 0, " 0x01 , 0x81;\n"},
       {"ORGC=2|EolStr=1|eolst= \\", "01 81", 0, " 0x01 , 0x81 \\\n"},
       {"ORGC=2|Eolcom=0|EolStr=1|eolst=#", "01 81", 0, " 0x01 , 0x81\n"}},
      false);
}

TEST(DataTextWriter, EndOfTheArrayTakesTheEndMarksAsSet) {
  ExpectTexts(
      {// dellas: a short last line ends without a mark, a full one loses it.
       {"ORGC=3", "00 01 02 03 04", 6, " 0x00 , 0x01 , 0x02,\n 0x03 , 0x04 \n};\n"},
       {"ORGC=3|dellas=0", "00 01 02 03 04", 6, " 0x00 , 0x01 , 0x02,\n 0x03 , 0x04 ,\n};\n"},
       {"ORGC=3", "00 01 02 03 04 05", 7, " 0x00 , 0x01 , 0x02,\n 0x03 , 0x04 , 0x05\n};\n"},
       {"ORGC=3|delallas=1", "00 01 02 03 04 05", 7,
        " 0x00 , 0x01 , 0x02\n 0x03 , 0x04 , 0x05\n};\n"},
       // One per line the last comma of the last line goes, wherever it stands.
       {"ORGC=1|Eolcom=0", "81 00", 3,
        " 0x81,     /*  #______#  */\n 0x00     /*  ________  */\n};\n"},
       {"ORGC=1", "81 00", 3, " 0x81,,     /*  #______#  */\n 0x00,     /*  ________  */\n};\n"},
       // Several per line: a comma only from the last two positions; a custom mark from its
       // last character on; a custom separator only where nothing but blanks follows it.
       {"ORGC=2|Eolcom=0|EolSem=1", "00 01 02 03", 5, " 0x00 , 0x01;\n 0x02 , 0x03\n};\n"},
       {"ORGC=2|Eolcom=0|EolStr=1|eolst=\\ x", "00 01 02 03", 5,
        " 0x00 , 0x01\\ x\n 0x02 , 0x03\\ \n};\n"},
       {"ORGC=2|COMAv=0|COMAS=1|sepst=;", "00 01 02", 4, " 0x00 ; 0x01,\n 0x02 \n};\n"},
       {"ORGC=2|COMAv=0|COMAS=1|sepst=;|Eolcom=0", "00 01 02 03", 5,
        " 0x00 ; 0x01\n 0x02 ; 0x03\n};\n"},
       {"Endst=END", "", 1, "END\n"},
       // Packed 4096 colours in "+H+": a comma before the prefix of the last constant.
       {"mode=colors4096-packed|FXHB=+H+|VALpref=0x|COMAh=0|COMAv=0|ORGC=4", "00 01", 0,
        "0x00 ,0x01 \n};\n"}},
      true);
}

TEST(DataTextWriter, EndOfLineFlagsComeFromTheRunAndMarkLastValueFromTheCaller) {
  const settings::Settings s = With("ORGC=4");
  EndOfLineFlags semicolon;
  semicolon.Eolcom = false;
  semicolon.EolSem = true;
  for (const bool fontMode : {false, true}) {
    platform::TextBuffer text;
    DataTextWriter writer(s, text, {semicolon, 100, fontMode});
    Feed(writer, {1, 2, 3, 4, 5});
    writer.MarkLastValue();
    Feed(writer, {6});
    // The font generator ends a glyph's line at its last value.
    EXPECT_EQ(text.Text() + writer.Line(), fontMode
                                               ? " 0x01 , 0x02 , 0x03 , 0x04;\n 0x05 , 0x06 ;\n"
                                               : " 0x01 , 0x02 , 0x03 , 0x04;\n 0x05 , 0x06 ");
    EXPECT_EQ(writer.ValueCount(), 6);
  }
  // With HCO the font generator's lines go to the comment block.
  platform::TextBuffer text;
  const settings::Settings withHco = With("HCO=1", s);
  DataTextWriter block(withHco, text, {EndOfLineFlagsOf(s.format), 0, true});
  Feed(block, {1, 2, 3, 4});
  EXPECT_EQ(text.Count(), 0);
  EXPECT_EQ(block.CommentBlock(), QStringList{" 0x01 , 0x02 , 0x03 , 0x04,"});
}

TEST(DataTextWriter, GroupModeWrapsEachRowAndTheArray) {
  for (const bool groups : {true, false}) {
    const settings::Settings s =
        With(groups ? "ColRx=1|fpar11={|fpar12=},|fpar13=BEGIN|fpar14=END" : "begds=begin",
             With("Noh=1|Noonts=1|BSD=0|ORGC=2"));
    platform::TextBuffer text;
    DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 6});
    writer.WriteDataPreamble({}, HeaderText{});
    for (const char* row : {"00 01", "02 03 04", "05"}) {
      writer.GroupStart();
      Feed(writer, FromHex(row));  // the row of three: its short line goes out with the row
    }
    writer.WriteDataEnd({}, {});
    EXPECT_EQ(text.Text(), groups ? "BEGIN\n{\n 0x00 , 0x01,\n},\n{\n 0x02 , 0x03,\n 0x04 ,\n},\n"
                                    "{\n 0x05 \n},\nEND\n"
                                  : "begin\n 0x00 , 0x01,\n 0x02 , 0x03,\n 0x04 , 0x05\n};\n");
  }
}

// The pairs AA 55 and FF 00 form 0xAA55 and 0xFF00. Odd bits go to the main array, even bits to
// the second plane: 0xAA55 gives F0 and 0F with MSBF (bit 15 to A7, bit 14 to B7 ...), 0F and
// F0 without (bit 15 to A0, bit 14 to B0 ...); 0xFF00 gives F0 and F0, or 0F and 0F.
TEST(DataTextWriter, TwoPageGrayDealsThePairBitsToTwoArrays) {
  for (const bool msbFirst : {true, false}) {
    const settings::Settings s =
        With(msbFirst ? "" : "MSBF=0", With("mode=gray4-2pages|ORGC=2|Noonts=1|BSD=0"));
    platform::TextBuffer text;
    platform::TextBuffer second;
    DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 5}, &second);
    HeaderRequest request;
    request.templateText = "const uint8_t [&NAME][] = {";
    request.arrayName = "Pic";
    const HeaderText header = BuildHeader(s, request);
    writer.WriteDataPreamble({}, header);
    Feed(writer, {0xAA, 0x55, 0xFF, 0x00});
    writer.WriteDataEnd(header, {});
    // The second plane's array follows the first in the text, and stands in its own buffer.
    EXPECT_EQ(text.Text(), msbFirst ? "const uint8_t  Pic [] = {\n 0xF0 , 0xF0\n};\n\n"
                                      "const uint8_t  d_Pic [] = {\n 0x0F , 0xF0\n};\n"
                                    : "const uint8_t  Pic [] = {\n 0x0F , 0x0F\n};\n\n"
                                      "const uint8_t  d_Pic [] = {\n 0xF0 , 0x0F\n};\n");
    EXPECT_EQ(second.Text(), msbFirst ? "const uint8_t  d_Pic [] = {\n 0x0F , 0xF0\n};\n"
                                      : "const uint8_t  d_Pic [] = {\n 0xF0 , 0x0F\n};\n");
    EXPECT_EQ(writer.ArrayBytes(), 2);
  }
}

TEST(DataTextWriter, BinaryTargetsTakeTwoHexDigitsAndNoText) {
  struct Target final : HexByteTarget {
    void AppendHexByte(const QString& digits) override { bytes << digits; }
    QStringList bytes;
  };
  for (const char* keys : {"D8bc=0|DHec=1|Neg=1", "D8bc=0|DIHec=1|Neg=1"}) {
    const settings::Settings s = With(keys);
    EXPECT_EQ(DataTargetOf(s.width), s.width.DHec ? DataTarget::Binary : DataTarget::IntelHex);
    platform::TextBuffer text;
    Target target;
    DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
    writer.SetHexByteTarget(&target);
    Feed(writer, {0x05, 0xA0});
    EXPECT_EQ(target.bytes, (QStringList{"FA", "5F"})) << keys;  // Neg turns every byte
    EXPECT_EQ(text.Text() + writer.Line(), "") << keys;
  }
}

TEST(DataTextWriter, PreambleWritesTheCommentLinesOrTheBeginText) {
  const PreambleInfo plain{"V9 ", "Sat 14.03.2026"};
  PreambleInfo animated = plain;
  animated.animated = true;
  animated.frame = 2;
  animated.frameCount = 5;
  PreambleInfo compressed = animated;
  compressed.compressed = true;
  const std::tuple<const char*, const PreambleInfo&, const char*> cases[] = {
      {"bits=32|asrg=1", compressed,
       "/* COMPRESSED Data generated with Vantorelle V9 */\n"
       "/* Animated Sequence Part # 2 of 5  */\n/* Sat 14.03.2026 */\n"
       "/* Bitmap Source file : NewBitmap.bmp */\n/* Word width format is 32 bit / Big endian */\n"
       "/* Postprocessing is ENABLED  */\n\n"},
      {"bits=16|MSBF=0|bw8=0", plain,
       "/* Data generated with Vantorelle V9 */\n/* Sat 14.03.2026 */\n"
       "/* Bitmap Source file : NewBitmap.bmp */\n"
       "/* Word width format is 16 bit / Little endian / 6 bit T6963 Mode  */\n\n"},
      {"CCOM=0|VBACOM=1|Autop=1|nbmfn=pic.png", animated,
       "' Data generated with Vantorelle V9 \n' Animated Sequence Part # 2 of 5\n"
       "' Sat 14.03.2026\n' Bitmap Source file : pic.png\n"
       "' Byte width format is 8 bit / Big endian\n' Postprocessing is ENABLED \n\n"},
      {"Noonts=1|Noh=1|begds=const char x[] = {", plain, "const char x[] = {\n"},
      {"Noonts=1|Noh=1", plain, "\n"},  // an empty begin text still gives its line
      {"Noonts=1|Noh=1|begds=const char x[] = {|ColRx=1|fpar13={ {", plain, "{ {\n"}};
  for (const auto& [keys, info, expected] : cases) {
    const settings::Settings s = With(keys);
    platform::TextBuffer text;
    DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
    writer.WriteDataPreamble(info, HeaderText{});
    EXPECT_EQ(text.Text(), QString::fromLatin1(expected)) << keys;
  }
}

TEST(DataTextWriter, HeaderLinesAreTypedTrimmedAndCollapsed) {
  const settings::Settings s = With("Noonts=1|bits=16");
  platform::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 0});
  HeaderText header;
  header.text = "a  \n\n\n  \nconst uint8_t x[] = {\t\n\n";
  writer.WriteDataPreamble({}, header);
  EXPECT_EQ(text.Text(), "a\n\nconst uint16_t x[] = {\n\n");
}

// Four bytes of a 16 x 20 area named "Pic" at (3, 4): the lines after the data line.
TEST(DataTextWriter, EndWritesTheDescriptorsAndClosingComments) {
  const std::tuple<const char*, bool, bool, const char*> cases[] = {
      {"", false, false,
       "};\n\nconst uint8_t  PicWidthPages = 2 ;\n\nconst uint8_t  PicHeightPixels = 20 ;\n"
       "/******************/\n/* 4 Bytes */\n/* End of LCD Pattern           */\n"
       "/* Save table and see info file Pic.rtf */\n\n"},
      // 20 rows are 2.5 pages of 8: the count is truncated.
      {"tr=0|td=1|Noonts=1", false, false,
       "};\n\nconst uint8_t  PicWidthPixels = 16 ;\n\nconst uint8_t  PicHeightPages = 2 ;\n"},
      {"NOMAT=1|Noonts=1", false, false,
       "};\n\nconst uint8_t  PicWidthPages = 16 ;\n\nconst uint8_t  PicHeightPixels = 20 ;\n"},
      {"BSD=0|BCD=1|EODS=|Noonts=1", false, false,
       "};\n\nconst uint8_t  PicX = 3 \n\nconst uint8_t  PicY = 4 \n"},
      // Words are counted as words, but a compressed array counts bytes; an animation has no
      // line naming the info file.
      {"bits=16|ORGC=2|BSD=0", true, false,
       "};\n/******************/\n/* 2 Words */\n/* End of LCD Pattern           */\n"},
      {"bits=16|ORGC=2|BSD=0", false, true,
       "};\n/******************/\n/* 4 Bytes */\n/* End of LCD Pattern           */\n"
       "/* Save table and see info file Pic.rtf */\n\n"},
      {"BSD=0|CCOM=0|BSCOM=1", false, false,
       "};\n! ******************\n! 4 Bytes \n!  End of LCD Pattern  \n"
       "!  Save table and see info file Pic.rtf\n"},
      {"bits=16|ORGC=2|BSD=0|CCOM=0|BSCOM=1", true, false,
       "};\n! ******************\n! 2 Bytes \n!  End of LCD Pattern  \n"}};
  for (const auto& [keys, animated, compressed, expected] : cases) {
    const settings::Settings s = With(keys, With("ORGC=4"));
    platform::TextBuffer text;
    DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), 5});
    Feed(writer, {1, 2, 3, 4});
    HeaderText header;
    header.linePrefix = "const uint8_t ";
    header.arrayName = "Pic";
    header.xText = "3";
    header.yText = "4";
    writer.WriteDataEnd(header, {"Pic.rtf", animated, compressed, 16, 20});
    EXPECT_EQ(text.Text().section(QLatin1Char('\n'), 1), QString::fromLatin1(expected)) << keys;
  }
}

// 40 bytes: a run, values with letter digits (above 159 and just below), and single bits.
const char* const kForty =
    "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F A0 A1 A2 A3 "
    "A4 A5 A6 A7 A8 A9 AA AB AC AD AE AF 9F FF 05 10 80 01 FE 7F";
const char* const kCross = "81 42 24 18 18 24 42 81";  // an X drawn on 8 x 8 pixels
const char* const kTwelve = "00 01 02 03 A0 A1 9F FF 05 10 80 7F";

// A whole export as the driver runs it: the default graphics template written to a project
// folder, the header, the preamble, the values, the end. The count the driver expects is one
// more than the bytes delivered, as it computes it (width * height / 8 + 1 in monochrome).
QByteArray WholeText(const settings::Settings& s, const char* hex, int width, int height) {
  const std::vector<int> values = FromHex(hex);
  QTemporaryDir dir;
  const QString settingsFile = dir.filePath("proj.LCD");
  vt::test::RecordingMessenger log;
  EXPECT_TRUE(WriteDefaultHeaderFile(settingsFile, HeaderKind::Graphics, false, log).ok());
  HeaderRequest request;
  request.templateFileName = HeaderFileName(settingsFile, HeaderKind::Graphics);
  request.templateText = LoadHeaderTemplate(request.templateFileName);
  request.arrayName = "NewBitmap";
  request.dataByteCount = static_cast<long long>(values.size()) + 1;
  request.right = width - 1;
  request.bottom = height - 1;
  request.width = width;
  request.height = height;
  const HeaderText header = BuildHeader(s, request);

  platform::TextBuffer text;
  DataTextWriter writer(s, text, {EndOfLineFlagsOf(s.format), request.dataByteCount});
  writer.WriteDataPreamble({"0.1.0 ", "14/03/2026 15:09:26"}, header);
  Feed(writer, values);
  writer.WriteDataEnd(header, {"NewBitmap.rtf", false, false, width, height});
  return text.Text().toUtf8();
}

TEST(WholeTexts, MatchTheirGoldenFiles) {
  const std::tuple<const char*, const char*, const char*, int, int> cases[] = {
      {"text_default", "", kForty, 16, 20},
      {"text_hex_h_addof", "FXHB=H|Addof=1|ORGC=8|CCOM=0|Eolcom=0", kForty, 16, 20},
      {"text_binary_b", "FXHB=B|ORGC=4", kTwelve, 8, 12},
      {"text_decimal", "FXHB=+D+|ORGC=10", kForty, 16, 20},
      {"text_word16", "bits=16|ORGC=8", kForty, 16, 20},
      {"text_word32", "bits=32|ORGC=1|Eolcom=0", "81 42 24 18 FF 00 AA 55 12 34 56 78 9F A0 05 10",
       32, 4},
      {"text_one_per_line", "ORGC=1|Eolcom=0", kCross, 8, 8},
      {"text_noh", "Noh=1|begds=static const unsigned char NewBitmap[] = {|ORGC=4", kCross, 8, 8},
      {"text_nodcom", "ORGC=1|Nodcom=1|Eolcom=0", kCross, 8, 8},
      {"text_noonts", "Noonts=1|ORGC=4", kCross, 8, 8},
      {"text_custom",
       "CCOM=0|VBACOM=1|FXHB=+H+|VALpref=&H|COMAv=0|COMAS=1|sepst=,|Eolcom=0|LineN=1|"
       "cpfr= DATA |ORGC=4|Noh=1|begds=' NewBitmap data|Endst=' end of data|BCD=1",
       kTwelve, 8, 12},
      {"text_custom_marks", "COMAv=0|COMAS=1|sepst=;|Eolcom=0|EolStr=1|eolst= &|ORGC=4", kTwelve, 8,
       12}};
  QStringList folders;
  for (const auto& [folder, keys, values, width, height] : cases) {
    folders << QString::fromLatin1(folder);
    EXPECT_TRUE(
        vt::test::MatchesGolden(WholeText(With(keys), values, width, height),
                                QStringLiteral("convert/%1/expected.h").arg(folders.last())));
  }
  // Every golden text folder has its case.
  folders.sort();
  const QDir data(QStringLiteral(VT_TEST_DATA_DIR "/convert"));
  EXPECT_EQ(data.entryList({"text_*"}, QDir::Dirs, QDir::Name).join(' '), folders.join(' '));
}

// The default output is real C: compiled together with a small program that prints the array,
// it gives back the bytes that went in.
TEST(WholeTexts, DefaultArrayCompilesAndHoldsTheValues) {
  const QString compiler = QStandardPaths::findExecutable("cc");
  if (compiler.isEmpty()) GTEST_SKIP() << "no C compiler (cc) found";
  QTemporaryDir dir;
  ASSERT_TRUE(QDir(dir.path()).mkpath("avr"));
  const std::pair<const char*, QByteArray> files[] = {
      {"avr/pgmspace.h", "#include <stdint.h>\n#define PROGMEM\n"},
      {"NewBitmap.h", WholeText(settings::Settings{}, kForty, 16, 20)},
      {"main.c",
       "#include <stdio.h>\n#include \"NewBitmap.h\"\nint main(void) {\n"
       "  for (unsigned i = 0; i < sizeof NewBitmap; ++i) printf(\"%02X \", NewBitmap[i]);\n"
       "  return 0;\n}\n"}};
  for (const auto& [name, bytes] : files) {
    QFile file(dir.filePath(QString::fromLatin1(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  QProcess run;
  run.setWorkingDirectory(dir.path());
  run.start("sh", {"-c", "\"$0\" -I. -o dump main.c && ./dump", compiler});
  ASSERT_TRUE(run.waitForFinished(60000));
  ASSERT_EQ(run.exitCode(), 0) << run.readAllStandardError().toStdString();
  EXPECT_EQ(QString::fromLatin1(run.readAllStandardOutput()).trimmed(), kForty);
}

}  // namespace
}  // namespace vt::convert
