// SPDX-License-Identifier: MIT
// The bulk placing of bytes against the value-by-value way: runs of bytes in every constant
// format and line shape, with the count of the data known or not, must give the text that the
// values given one by one give.
#include "convert/bulk_placement.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "convert/data_text.h"
#include "convert_test_util.h"

namespace vt::convert {
namespace {

TEST(BulkPlacement, PlacesBytesAsValueByValueAndTheReferencePathDo) {
  const char* const formats[] = {
      "", "ORGC=1|Nodcom=1", "ORGC=1|Eolcom=0|Nodcom=1", "ORGC=2", "ORGC=3|FXHB=H|Addof=1",
      "ORGC=5|FXHB=0B", "ORGC=4|FXHB=B", "ORGC=6|FXHB=+B+|VALpref=%", "ORGC=3|FXHB=+H+|VALpref=$",
      "ORGC=3|FXHB=+H+|VALpref=$|Addof=1|WithSp=0", "ORGC=10|FXHB=+D+", "ORGC=4|FXHB=+D+|COMAh=0",
      "ORGC=3|COMAv=0|COMAS=1|sepst=;", "ORGC=2|LineN=1|CPRE=L|cpfr=:",
      // Blanks that make a run of four: the end mark goes before it.
      "ORGC=3|CPRE=\t.db    |cpfr= ", "ORGC=4|FXHB=+H+|VALpref=  |VALSUF=  ",
      "ORGC=3|Eolcom=0|EolSem=1", "ORGC=3|EolStr=1|eolst= \\", "ORGC=3|EolStr=1|eolst=#",
      "ORGC=4|FXHB=+H+|VALpref=0x|VALSUF=,|COMAh=0|COMAv=0", "ORGC=8|Neg=1",
      "ORGC=3|FXHB=+H+|VALpref=\xC2\xA7|VALSUF=\xE2\x82\xAC", "ORGC=16|delallas=1", "ORGC=20|Neg=1",
      "ORGC=32|FXHB=+H+|VALpref=$",
      // Whole hexadecimal lines with digit places unevenly spaced (the first "h," is shorter).
      "ORGC=16|FXHB=H", "ORGC=17|FXHB=H|Neg=1",
      "ORGC=4|FXHB=+H+|VALpref=0xxxxxxxxxxxxxxxxx",  // longer than a slot: value by value
      "ORGC=2|bits=16", "ORGC=2|DHec=1|D8bc=0",
      // Two-page gray deals pairs to two planes: odd counts never end a pair, runs split pairs.
      "mode=gray4-2pages|ORGC=16", "mode=gray4-2pages|ORGC=3|Neg=1",
      "mode=gray4-2pages|ORGC=5|MSBF=0|FXHB=+D+", "mode=gray4-2pages|ORGC=1|Nodcom=1",
      "mode=gray4-2pages|ORGC=4|delallas=1|Neg=1|MSBF=0"};
  std::mt19937 random(1);
  std::vector<std::uint8_t> bytes(97);
  for (auto& b : bytes) b = static_cast<std::uint8_t>(random());
  for (const char* keys : formats) {
    for (const long long count : {0LL, 97LL, 98LL, 50LL, 51LL, 96LL}) {
      const settings::Settings s = test::With(keys, test::With("Noonts=1|BSD=0"));
      platform::TextBuffer one, bulk, plain, oneSecond, bulkSecond, plainSecond;
      DataTextWriter byValue(s, one, {EndOfLineFlagsOf(s.format), count}, &oneSecond);
      DataTextWriter inRuns(s, bulk, {EndOfLineFlagsOf(s.format), count}, &bulkSecond);
      // Runs with the reference paths asked for go value by value.
      DataTextWriter plainRuns(s, plain, {EndOfLineFlagsOf(s.format), count, false, true},
                               &plainSecond);
      for (const std::uint8_t b : bytes) {
        byValue.StartComment();
        byValue.EmitValue(b, true);
      }
      // Runs of changing lengths, across line ends, some holding whole lines.
      const std::size_t runs[] = {1, 5, 40, 2, 13, 33, 3};
      for (std::size_t at = 0, r = 0; at < bytes.size(); at += runs[r], r = (r + 1) % 7) {
        inRuns.EmitValues(bytes.data() + at, std::min(runs[r], bytes.size() - at));
        plainRuns.EmitValues(bytes.data() + at, std::min(runs[r], bytes.size() - at));
      }
      SCOPED_TRACE(std::string(keys) + " count " + std::to_string(count));
      EXPECT_EQ(inRuns.Line(), byValue.Line());
      EXPECT_EQ(inRuns.ValueCount(), byValue.ValueCount());
      EXPECT_EQ(inRuns.ArrayBytes(), byValue.ArrayBytes());
      EXPECT_EQ(plainRuns.Line(), byValue.Line());
      byValue.WriteDataEnd(HeaderText{}, DataEndInfo{});
      inRuns.WriteDataEnd(HeaderText{}, DataEndInfo{});
      plainRuns.WriteDataEnd(HeaderText{}, DataEndInfo{});
      EXPECT_EQ(bulk.Text(), one.Text());
      EXPECT_EQ(bulkSecond.Text(), oneSecond.Text());
      EXPECT_EQ(plain.Text(), one.Text());
      EXPECT_EQ(plainSecond.Text(), oneSecond.Text());
    }
  }
}

}  // namespace
}  // namespace vt::convert
