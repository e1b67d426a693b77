// SPDX-License-Identifier: MIT
#include "convert/constant_format.h"

#include <gtest/gtest.h>

#include "app/log.h"

// Readable QString values in failure messages.
static void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace vt::convert {
namespace {

enum class Width { W8, W16, W32 };

struct FormatCase {
  const char* name;
  const char* fxhb;
  std::int64_t value;
  const char* expected;
  Width width = Width::W8;
  bool neg = false;
  const char* prefix = "";
  const char* suffix = "";
};

void PrintTo(const FormatCase& c, std::ostream* os) { *os << c.name; }

class FormatConstantCases : public testing::TestWithParam<FormatCase> {};

TEST_P(FormatConstantCases, SpellsTheValue) {
  const FormatCase& c = GetParam();
  settings::Settings s;
  s.format.FXHB = c.fxhb;
  s.format.VALpref = c.prefix;
  s.format.VALSUF = c.suffix;
  s.pixel.Neg = c.neg;
  s.width.D8bc = c.width == Width::W8;
  s.width.D16bc = c.width == Width::W16;
  s.width.D32bc = c.width == Width::W32;
  EXPECT_EQ(FormatConstant(s, c.value), QString::fromLatin1(c.expected));
  QString text = QStringLiteral("old");
  FormatConstant(s, c.value, text);
  EXPECT_EQ(text, QString::fromLatin1(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    AllFormats, FormatConstantCases,
    testing::Values(
        // "X": two upper-case digits behind 0x, a value below 16 with its leading 0.
        FormatCase{"X_Small", "X", 5, "0x05"}, FormatCase{"X_Zero", "X", 0, "0x00"},
        FormatCase{"X_Letters", "X", 0xAB, "0xAB"},
        FormatCase{"X_Negated", "X", 5, "0xFA", Width::W8, true},
        // "H": a value above 159 starts with a letter and gets a 0 in front; h follows.
        FormatCase{"H_A0", "H", 0xA0, "0A0h"}, FormatCase{"H_9F", "H", 0x9F, "9Fh"},
        FormatCase{"H_Small", "H", 5, "05h"}, FormatCase{"H_FF", "H", 0xFF, "0FFh"},
        FormatCase{"H_NegatedBecomesLarge", "H", 0x1F, "0E0h", Width::W8, true},
        FormatCase{"H_LowerCaseKey", "h", 0xC3, "0C3h"},
        // Binary: the digit count follows the output width.
        FormatCase{"ZeroB_8", "0B", 5, "0b00000101"},
        FormatCase{"ZeroB_16", "0B", 5, "0b0000000000000101", Width::W16},
        FormatCase{"ZeroB_32", "0B", 1, "0b00000000000000000000000000000001", Width::W32},
        FormatCase{"B_8", "B", 5, "00000101b"},
        FormatCase{"B_16", "B", 0x1234, "0001001000110100b", Width::W16},
        FormatCase{"B_Negated", "B", 0x0F, "11110000b", Width::W8, true},
        FormatCase{"PlusB", "+B+", 5, "%00000101", Width::W8, false, "%"},
        FormatCase{"PlusB_Suffix", "+B+", 0x81, "B'10000001'", Width::W8, false, "B'", "'"},
        // "+H+": like H, the 0 in front of a value above 159, then prefix and suffix.
        FormatCase{"PlusH_A0", "+H+", 0xA0, "$0A0,", Width::W8, false, "$", ","},
        FormatCase{"PlusH_9F", "+H+", 0x9F, "$9F,", Width::W8, false, "$", ","},
        FormatCase{"PlusH_NoAffixes", "+H+", 0x0A, "0A"},
        // "+D+": plain decimal, no padding in this form.
        FormatCase{"PlusD", "+D+", 5, "#5;", Width::W8, false, "#", ";"},
        FormatCase{"PlusD_255", "+D+", 255, "255"},
        FormatCase{"PlusD_Negated", "+D+", 5, "250", Width::W8, true},
        FormatCase{"PlusD_Word", "+D+", 65535, "65535", Width::W16},
        // An unknown key spells as the default "X".
        FormatCase{"UnknownKey", "Q", 0x3C, "0x3C"}),
    [](const testing::TestParamInfo<FormatCase>& info) { return std::string(info.param.name); });

struct SelectCase {
  ConstantFormat format;
  const char* key;
  const char* logText;
};

class ConstantFormatSelection : public testing::TestWithParam<SelectCase> {};

TEST_P(ConstantFormatSelection, SetsTheKeyAndLogsTheSetterText) {
  settings::DataFormatSettings format;
  app::Log log;
  SelectConstantFormat(format, log, GetParam().format);
  EXPECT_EQ(format.FXHB, QString::fromLatin1(GetParam().key));
  EXPECT_EQ(log.Lines(), QStringList{QString::fromLatin1(GetParam().logText)});
  EXPECT_EQ(CurrentConstantFormat(format), GetParam().format);
}

INSTANTIATE_TEST_SUITE_P(
    SevenFormats, ConstantFormatSelection,
    testing::Values(SelectCase{ConstantFormat::X, "X", "Constant format is ox+data"},
                    SelectCase{ConstantFormat::H, "H", "Constant format is data+h"},
                    SelectCase{ConstantFormat::ZeroB, "0B", "Constant format is b+data"},
                    SelectCase{ConstantFormat::B, "B", "Constant format is data+b"},
                    SelectCase{ConstantFormat::PlusBPlus, "+B+", "Constant format is +bin+"},
                    SelectCase{ConstantFormat::PlusHPlus, "+H+", "Constant format is +hex+"},
                    SelectCase{ConstantFormat::PlusDPlus, "+D+", "Constant format is +dec+"}));

TEST(ConstantFormat, ChoiceLabelsInTableOrder) {
  QStringList labels;
  for (const ConstantFormatInfo& info : ConstantFormatTable()) labels << info.label;
  EXPECT_EQ(labels, (QStringList{"0x+data", "data+H", "0b+data", "data+b", "a+BIN+b", "a+HEX+b",
                                 "a+DEC+b"}));
}

TEST(ConstantFormat, DerivedFlagsSortTheFormats) {
  QStringList binary, decimal, affixed;
  for (const ConstantFormatInfo& info : ConstantFormatTable()) {
    if (info.binaryFormat) binary << info.key;
    if (info.decimalFormat) decimal << info.key;
    if (info.prefixSuffixFormat) affixed << info.key;
  }
  EXPECT_EQ(binary, (QStringList{"0B", "B", "+B+"}));
  EXPECT_EQ(decimal, QStringList{"+D+"});
  EXPECT_EQ(affixed, (QStringList{"X", "H", "+B+", "+H+", "+D+"}));
}

TEST(ConstantFormat, KeysCompareWithoutCase) {
  EXPECT_EQ(ConstantFormatFromKey("0b"), ConstantFormat::ZeroB);
  EXPECT_EQ(ConstantFormatFromKey("+d+"), ConstantFormat::PlusDPlus);
  EXPECT_FALSE(ConstantFormatFromKey("0x").has_value());
  EXPECT_FALSE(ConstantFormatFromKey("").has_value());
}

TEST(ConstantFormat, OutputWordBitsFollowsTheWidthKeys) {
  settings::OutputWidthSettings width;
  EXPECT_EQ(OutputWordBits(width), 8);
  width.D8bc = false;
  width.D16bc = true;
  EXPECT_EQ(OutputWordBits(width), 16);
  width.D16bc = false;
  width.D32bc = true;
  EXPECT_EQ(OutputWordBits(width), 32);
  width.D32bc = false;
  width.DIHec = true;
  EXPECT_EQ(OutputWordBits(width), 8);
}

struct StyleCase {
  const char* name;
  settings::CommentSettings comment;
  const char* opener;
  const char* closer;
};

class CommentStyles : public testing::TestWithParam<StyleCase> {};

TEST_P(CommentStyles, OpenerAndCloser) {
  const CommentStyle style = CommentStyleOf(GetParam().comment);
  EXPECT_EQ(style.opener, QString::fromLatin1(GetParam().opener));
  EXPECT_EQ(style.closer, QString::fromLatin1(GetParam().closer));
  EXPECT_EQ(style.c, QString::fromLatin1(GetParam().closer) == " */");
}

settings::CommentSettings Style(bool c, bool ps, bool vba, bool bs, bool st,
                                const char* cstrt = "") {
  settings::CommentSettings comment;
  comment.CCOM = c;
  comment.PSCOM = ps;
  comment.VBACOM = vba;
  comment.BSCOM = bs;
  comment.STCOM = st;
  comment.cstrt = cstrt;
  return comment;
}

INSTANTIATE_TEST_SUITE_P(
    Styles, CommentStyles,
    testing::Values(StyleCase{"C", Style(true, false, false, false, false), "/* ", " */"},
                    StyleCase{"CWinsOverOthers", Style(true, true, true, true, true), "/* ", " */"},
                    StyleCase{"DoubleSlash", Style(false, true, false, false, false), "//", ""},
                    StyleCase{"Basic", Style(false, false, true, false, false), "'", ""},
                    StyleCase{"Bang", Style(false, false, false, true, false), "!", ""},
                    StyleCase{"Custom", Style(false, false, false, false, true, "REM "), "REM ",
                              ""},
                    StyleCase{"None", Style(false, false, false, false, false), ";", ""}),
    [](const testing::TestParamInfo<StyleCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vt::convert
