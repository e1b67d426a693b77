// SPDX-License-Identifier: MIT
#include "convert/constant_format.h"

#include <gtest/gtest.h>

#include <tuple>

#include "convert_test_util.h"
#include "support/recording_messenger.h"

// Readable QString values in failure messages.
static void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace vt::convert {
namespace {

using test::With;

TEST(FormatConstant, SpellsTheValueAlone) {
  const std::tuple<const char*, std::int64_t, const char*> cases[] = {
      // "X": two upper-case digits behind 0x; an unknown key spells as "X".
      {"FXHB=X", 5, "0x05"},
      {"FXHB=X", 0xAB, "0xAB"},
      {"FXHB=X|Neg=1", 5, "0xFA"},
      {"FXHB=Q", 0x3C, "0x3C"},
      // "H": a value above 159 starts with a letter and gets a 0 in front; h follows.
      {"FXHB=H", 0xA0, "0A0h"},
      {"FXHB=H", 0x9F, "9Fh"},
      {"FXHB=H", 5, "05h"},
      {"FXHB=H|Neg=1", 0x1F, "0E0h"},
      {"FXHB=h", 0xC3, "0C3h"},
      // Binary: the digit count follows the output width.
      {"FXHB=0B", 5, "0b00000101"},
      {"FXHB=0B|bits=16", 5, "0b0000000000000101"},
      {"FXHB=0B|bits=32", 1, "0b00000000000000000000000000000001"},
      {"FXHB=B", 5, "00000101b"},
      {"FXHB=B|bits=16", 0x1234, "0001001000110100b"},
      {"FXHB=B|Neg=1", 0x0F, "11110000b"},
      {"FXHB=+B+|VALpref=B'|VALSUF='", 0x81, "B'10000001'"},
      // "+H+": like H, the 0 in front of a value above 159, then prefix and suffix.
      {"FXHB=+H+|VALpref=$|VALSUF=,", 0xA0, "$0A0,"},
      {"FXHB=+H+|VALpref=$|VALSUF=,", 0x9F, "$9F,"},
      {"FXHB=+H+", 0x0A, "0A"},
      // "+D+": plain decimal, no padding in this form.
      {"FXHB=+D+|VALpref=#|VALSUF=;", 5, "#5;"},
      {"FXHB=+D+|Neg=1", 5, "250"},
      {"FXHB=+D+|bits=16", 65535, "65535"}};
  for (const auto& [keys, value, expected] : cases) {
    const settings::Settings s = With(keys);
    EXPECT_EQ(FormatConstant(s, value), QString::fromLatin1(expected)) << keys;
    QString text = "old";
    FormatConstant(s, value, text);
    EXPECT_EQ(text, QString::fromLatin1(expected)) << keys;
  }
}

TEST(ConstantFormat, SelectionSetsTheKeyAndLogsTheSetterText) {
  const std::tuple<ConstantFormat, const char*, const char*> cases[] = {
      {ConstantFormat::X, "X", "Constant format is ox+data"},
      {ConstantFormat::H, "H", "Constant format is data+h"},
      {ConstantFormat::ZeroB, "0B", "Constant format is b+data"},
      {ConstantFormat::B, "B", "Constant format is data+b"},
      {ConstantFormat::PlusBPlus, "+B+", "Constant format is +bin+"},
      {ConstantFormat::PlusHPlus, "+H+", "Constant format is +hex+"},
      {ConstantFormat::PlusDPlus, "+D+", "Constant format is +dec+"}};
  for (const auto& [selected, key, logText] : cases) {
    settings::DataFormatSettings format;
    vt::test::RecordingMessenger log;
    SelectConstantFormat(format, log, selected);
    EXPECT_EQ(format.FXHB, QString::fromLatin1(key));
    EXPECT_EQ(log.lines, QStringList{QString::fromLatin1(logText)});
    EXPECT_EQ(CurrentConstantFormat(format), selected) << key;
  }
  EXPECT_EQ(ConstantFormatFromKey("0b"), ConstantFormat::ZeroB);  // keys compare without case
  EXPECT_EQ(ConstantFormatFromKey("+d+"), ConstantFormat::PlusDPlus);
  EXPECT_FALSE(ConstantFormatFromKey("0x").has_value());
  EXPECT_FALSE(ConstantFormatFromKey("").has_value());
}

TEST(ConstantFormat, OutputWordBitsFollowsTheWidthKeys) {
  EXPECT_EQ(OutputWordBits(With("").width), 8);
  EXPECT_EQ(OutputWordBits(With("bits=16").width), 16);
  EXPECT_EQ(OutputWordBits(With("bits=32").width), 32);
  EXPECT_EQ(OutputWordBits(With("D8bc=0|DIHec=1").width), 8);  // the byte targets
}

TEST(CommentStyleOf, TakesTheFirstStyleKeySet) {
  const struct {
    const char* keys;
    const char* opener;
    const char* closer;
  } cases[] = {{"", "/* ", " */"},
               {"PSCOM=1|VBACOM=1|BSCOM=1|STCOM=1", "/* ", " */"},  // C wins over the others
               {"CCOM=0|PSCOM=1|VBACOM=1", "//", ""},
               {"CCOM=0|VBACOM=1|BSCOM=1", "'", ""},
               {"CCOM=0|BSCOM=1|STCOM=1", "!", ""},
               {"CCOM=0|STCOM=1|cstrt=REM ", "REM ", ""},
               {"CCOM=0", ";", ""}};
  for (const auto& c : cases) {
    const CommentStyle style = CommentStyleOf(With(c.keys).comment);
    EXPECT_EQ(style.opener, QString::fromLatin1(c.opener)) << c.keys;
    EXPECT_EQ(style.closer, QString::fromLatin1(c.closer)) << c.keys;
    EXPECT_EQ(style.c, *c.closer != '\0') << c.keys;
  }
}

}  // namespace
}  // namespace vt::convert
