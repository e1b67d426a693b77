// SPDX-License-Identifier: MIT
#include "settings/geometry.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>

#include "settings/geometry_fixture.h"

namespace vt::settings {
namespace {

using test::Fixture;
using test::kHorizontalError;
using test::kVerticalError;
using test::ScanKeys;
using test::SizeErrors;

namespace Answer = platform::Answer;
using platform::DialogType;
using D = ScanDirection;
using M = PixelMode;

TEST(SelectScanDirection, SetsOneDirectionItsCornerAndItsLogLine) {
  const std::tuple<D, const char*, const char*> rows[] = {
      {D::tr, "tr CORN1", ""},         {D::tra, "tra CORN1", ""},
      {D::tl, "tl CORN2", ""},         {D::tla, "tla CORN2", "Right to Left"},
      {D::td, "td CORN1", "Top down"}, {D::tda, "tda CORN1", ""},
      {D::tu, "tu CORN4", ""},         {D::tua, "tua CORN4", ""}};
  for (const auto& [direction, keys, log] : rows) {
    SCOPED_TRACE(keys);
    Fixture f;
    f.state.settings.scan.CORN3 = true;  // a stale corner must go
    ASSERT_TRUE(f.Select(direction));
    EXPECT_EQ(ScanKeys(f.state.settings), keys);
    EXPECT_EQ(CurrentScanDirection(f.state.settings), direction);
    const bool horizontal = keys[1] == 'r' || keys[1] == 'l';
    EXPECT_EQ(IsHorizontalScan(f.state.settings), horizontal);
    EXPECT_EQ(IsVerticalScan(f.state.settings), !horizontal);
    EXPECT_EQ(f.state.log.Lines(), *log ? QStringList{log} : QStringList{});
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
  }
}

TEST(SelectScanDirection, Gray32FallsThroughAndSlicesIgnoreRightToLeft) {
  const std::tuple<M, D, const char*> rows[] = {
      {M::Gray32Packed, D::td, "tda CORN1"}, {M::Gray32Packed, D::tu, "tua CORN4"},
      {M::Gray32Packed, D::tla, "tl CORN2"}, {M::Gray32Packed, D::tra, "tr CORN1"},
      {M::Gray32Packed, D::tl, "tl CORN2"},  {M::Gray32Packed, D::tda, "tda CORN1"},
      {M::Gray16Slices, D::tl, "td CORN1"},  {M::Gray16Slices, D::tla, "td CORN1"},
      {M::Gray16Slices, D::tda, "tda CORN1"}};
  for (const auto& [mode, asked, keys] : rows) {
    SCOPED_TRACE(Info(asked).key);
    const bool slices = mode == M::Gray16Slices;
    Fixture f(mode, slices ? D::td : D::tua);
    EXPECT_EQ(f.Select(asked), !slices || asked == D::tda);
    EXPECT_EQ(ScanKeys(f.state.settings), keys);
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
    EXPECT_TRUE(f.state.log.Lines().isEmpty()) << "the log line is that of the direction reached";
  }
  // The size check belongs to the direction reached: td becomes tda and shows the vertical text.
  Fixture f(M::Gray32RUnpacked, D::tr, 128, 63);
  EXPECT_FALSE(f.Select(D::td));
  EXPECT_EQ(f.ts.dialogs.Texts(), QStringList{kVerticalError});
}

TEST(SelectScanDirection, SizeOffThePageGridRefusesWithTheButtonsTextAndChangesNothing) {
  // Width 100 is no multiple of 8: the horizontal buttons refuse; tra checks the width but words
  // it as the vertical text. Height 60: the vertical buttons refuse; td checks the height with
  // the horizontal text. The grid follows PixelsPerByte, the text still says 8. In 8 colours a
  // multiple of 8 (and of 8/3) does not fit 2.66666666. A zero size counts as 1. NOMAT skips it.
  const std::tuple<M, int, int, D, char> rows[] = {
      {M::Monochrome, 100, 64, D::tr, 'H'},     {M::Monochrome, 100, 64, D::tl, 'H'},
      {M::Monochrome, 100, 64, D::tla, 'H'},    {M::Monochrome, 100, 64, D::tra, 'V'},
      {M::Monochrome, 100, 64, D::td, '-'},     {M::Monochrome, 128, 60, D::td, 'H'},
      {M::Monochrome, 128, 60, D::tda, 'V'},    {M::Monochrome, 128, 60, D::tu, 'V'},
      {M::Monochrome, 128, 60, D::tua, 'V'},    {M::Monochrome, 128, 60, D::tr, '-'},
      {M::Gray4, 130, 64, D::tr, 'H'},          {M::Gray4, 132, 64, D::tr, '-'},
      {M::Gray16Vertical, 128, 63, D::tu, 'V'}, {M::Gray16Vertical, 128, 62, D::tu, '-'},
      {M::Colors256, 127, 61, D::td, '-'},      {M::Colors8, 24, 24, D::tr, 'H'},
      {M::Colors8, 24, 24, D::tu, 'V'},         {M::Monochrome, 0, 64, D::tr, 'H'},
      {M::Monochrome, 128, 0, D::tda, 'V'},     {M::Colors65536, 0, 0, D::tr, '-'}};
  for (const auto& [mode, width, height, direction, error] : rows) {
    SCOPED_TRACE(testing::Message() << PixelModeName(mode).toStdString() << " " << width << "x"
                                    << height << " " << Info(direction).key);
    Fixture f(mode, D::tra, width, height);
    EXPECT_EQ(f.Select(direction), error == '-');
    EXPECT_EQ(f.ts.dialogs.Texts(), SizeErrors(error));
    if (error == '-') continue;
    EXPECT_EQ(f.ts.dialogs.shown[0].caption, "Error");
    EXPECT_EQ(ScanKeys(f.state.settings), "tra CORN1");
    EXPECT_EQ(QSize(f.state.settings.display.GWI, f.state.settings.display.GHI),
              QSize(width, height));
    EXPECT_EQ(CurrentPixelMode(f.state.settings), mode);
  }
  for (D d : {D::tla, D::td}) EXPECT_TRUE(Fixture(M::Colors8, D::tra, 101, 59, true).Select(d));
}

TEST(SelectScanDirection, SixBitModeIsNotRefusedOnHorizontalDirections) {
  Fixture f(M::Monochrome, D::tr, 100, 60);
  f.state.settings.pixel.bw8 = false;
  EXPECT_TRUE(f.Select(D::tl));
  EXPECT_FALSE(f.state.settings.pixel.bw8);
  // A vertical direction sets bw8 before its size check, and the check then applies.
  EXPECT_FALSE(f.Select(D::td));
  EXPECT_TRUE(f.state.settings.pixel.bw8);
  EXPECT_EQ(ScanKeys(f.state.settings), "tl CORN2");
}

TEST(SelectOriginCorner, SetsOneCornerLogsItsTextAndStaysWhileAFontIsDefined) {
  const char* const texts[] = {"Origin corner top left", "Origin corner top right",
                               "Origin corner bottom right", "Origin corner bottom left"};
  for (int i = 0; i < 4; ++i) {
    Fixture f;
    const auto corner = static_cast<OriginCorner>(i);
    SelectOriginCorner(f.state.settings, f.messenger, corner);
    EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tr CORN%1").arg(i + 1));
    EXPECT_EQ(CurrentOriginCorner(f.state.settings), corner);
    EXPECT_EQ(f.state.log.Lines(), QStringList{texts[i]});
    // A running font definition keeps the corner.
    EXPECT_TRUE(SelectScanDirection(f.state.settings, f.messenger, D::tu, CornerRule::KeepCorner));
    EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tu CORN%1").arg(i + 1));
  }
}

TEST(PagingHint, NamesTheMultipleAlongTheScanOrFreeSizes) {
  const std::tuple<M, D, const char*, const char*> rows[] = {
      {M::Monochrome, D::tr, "( Width = multiple of 8 , Height = free )", "Horizontal"},
      {M::Monochrome, D::td, "( Height = multiple of 8 , Width = free )", "Vertical"},
      {M::Gray4, D::tla, "( Width = multiple of 4 , Height = free )", "Horizontal"},
      {M::Colors8, D::tu, "( Height = multiple of 2.66666666 , Width = free )", "Vertical"},
      {M::Colors65536, D::td, "( Width = free , Height = free )", "Vertical"},
      {M::Colors256, D::tr, "( Width = free , Height = free )", "Horizontal"}};
  for (const auto& [mode, direction, rule, scheme] : rows) {
    const PagingHintText hint = PagingHint(Fixture(mode, direction).state.settings);
    EXPECT_EQ(hint.sizeRule, rule);
    EXPECT_EQ(hint.scheme, QString(scheme) + " paging scheme");
  }
  EXPECT_EQ(FormatGeneralReal(0.5), "0.5");
  EXPECT_EQ(FormatGeneralReal(8.0 / 3.0), "2.66666666666667");
}

TEST(PageCount, CountsWholePagesWithTheWalkersExceptions) {
  const std::tuple<M, D, bool, int, int> rows[] = {
      {M::Monochrome, D::td, false, 64, 8},      {M::Monochrome, D::td, false, 63, 7},
      {M::Monochrome, D::td, true, 64, 64},      {M::Gray4, D::td, false, 64, 16},
      {M::Gray4TwoPages, D::td, false, 64, 8},   {M::Gray4TwoPages, D::tda, false, 64, 16},
      {M::Gray16Vertical, D::tu, false, 63, 31}, {M::Gray16Slices, D::td, false, 20, 3},
      {M::Gray16Slices, D::td, false, 16, 2},    {M::Colors8, D::td, false, 24, 3},
      {M::Colors8, D::td, false, 23, 2},         {M::Gray32Packed, D::tda, false, 10, 10},
      {M::Colors16M, D::td, false, 10, 10}};
  for (const auto& [mode, direction, nomat, size, pages] : rows) {
    Fixture f(mode, direction, 128, 64, nomat);
    EXPECT_EQ(PageCount(f.state.settings, size), pages)
        << PixelModeName(mode).toStdString() << " " << size;
  }
}

TEST(SelectByteWidth, SixBitsOnlyInMonochromeWithAHorizontalDirection) {
  const std::tuple<M, D, bool, bool> rows[] = {
      {M::Monochrome, D::tr, false, true},  {M::MonochromeInverted, D::tla, false, true},
      {M::Monochrome, D::tra, false, true}, {M::Monochrome, D::td, false, false},
      {M::Gray4, D::tr, false, false},      {M::Gray4, D::td, true, true}};
  for (const auto& [mode, direction, eightBits, allowed] : rows) {
    Fixture f(mode, direction);
    f.state.settings.pixel.bw8 = !eightBits;
    EXPECT_EQ(SelectByteWidth(f.state.settings, f.messenger, eightBits), allowed);
    EXPECT_EQ(f.state.settings.pixel.bw8, allowed ? eightBits : true);
    const char* line = eightBits ? "8 bit format enabled" : "6 bit format enabled";
    const char* refusal = "Operation allowed in monochrome mode only !";
    EXPECT_EQ(f.state.log.Lines().contains(line), allowed);
    EXPECT_EQ(f.ts.dialogs.Texts(), allowed ? QStringList{} : QStringList{refusal});
  }
  Fixture f;
  SelectBitOrder(f.state.settings, f.messenger, false);
  EXPECT_TRUE(LittleEndianBits(f.state.settings) && !BigEndianBits(f.state.settings));
  SelectBitOrder(f.state.settings, f.messenger, true);
  EXPECT_TRUE(f.state.settings.scan.MSBF && BigEndianBits(f.state.settings));
  EXPECT_EQ(f.state.log.Lines(), (QStringList{"MSB last", "MSB first"}));
}

TEST(CustomSizes, FillFreeSlotsKeepDuplicatesAndOverwriteTheLastWhenFull) {
  Settings settings;
  EXPECT_EQ(AddCustomSize(settings, QSize(100, 50)), 0);
  EXPECT_EQ(AddCustomSize(settings, QSize(120, 30)), 1);
  EXPECT_EQ(AddCustomSize(settings, QSize(100, 50)), 0);
  EXPECT_EQ(CustomSizeCaptions(settings), (QStringList{"Custom 100 x 50", "Custom 120 x 30"}));
  for (int i = 2; i < kCustomSizeSlots; ++i) {
    EXPECT_EQ(AddCustomSize(settings, QSize(200 + i, 10)), i);
  }
  EXPECT_EQ(AddCustomSize(settings, QSize(7, 7)), kCustomSizeSlots - 1);
  EXPECT_EQ(CustomSizeCaptions(settings).last(), "Custom 7 x 7");
  EXPECT_EQ(CustomSizeCaptions(settings).size(), kCustomSizeSlots);
}

TEST(UserSizeTyping, StoresCutsOrRestoresAndWarnsOnlyOverTheLimit) {
  const QString heightMessage =
      " In vertical mode, height must be a multiple of 2.66666666 and <= 768 !";
  const QString widthMessage =
      " In horizontal mode, width must be a multiple of 2.66666666 and <= 1024 !";
  // '-': taken or restored quietly, 'b': cut with a beep, 'w': cut with a beep and the warning.
  const std::tuple<char, M, D, const char*, int, char> rows[] = {
      {'H', M::Monochrome, D::td, "abc", 64, '-'},    {'H', M::Monochrome, D::td, "0", 64, '-'},
      {'H', M::Monochrome, D::td, "200", 200, '-'},   {'H', M::Monochrome, D::td, "769", 768, 'b'},
      {'H', M::Colors8, D::td, "768", 768, '-'},      {'H', M::Colors8, D::td, "800", 768, 'w'},
      {'H', M::Colors8, D::tu, "769", 768, 'w'},      {'H', M::Colors8, D::tda, "800", 768, 'b'},
      {'W', M::Colors8, D::tr, "1100", 1024, 'w'},    {'W', M::Colors8, D::tl, "1025", 1024, 'w'},
      {'W', M::Colors8, D::tl, "1024", 1024, '-'},    {'W', M::Colors8, D::tla, "1100", 1024, 'b'},
      {'W', M::Monochrome, D::tr, "2000", 1024, 'b'}, {'W', M::Gray4, D::tl, "12x", 128, '-'}};
  for (const auto& [edit, mode, direction, typed, stored, outcome] : rows) {
    const bool beep = outcome != '-', warns = outcome == 'w';
    SCOPED_TRACE(testing::Message() << edit << " " << typed << " " << Info(direction).key);
    Fixture f(mode, direction);
    DisplaySettings& display = f.state.settings.display;
    display.MATH = 64;
    display.MATW = 128;
    const QString text = QString::fromLatin1(typed);
    const bool height = edit == 'H';
    const TypedSize result = height ? LCDmatrixHeightEditChange(f.state.settings, f.messenger, text)
                                    : LCDmatrixWidthEditChange(f.state.settings, f.messenger, text);
    EXPECT_EQ(height ? display.MATH : display.MATW, stored);
    // The edit keeps a whole number it took, else shows the stored value.
    const bool taken = text.toInt() > 0 && !beep;
    EXPECT_EQ(result.editText, taken ? text : QString::number(stored));
    EXPECT_EQ(result.beep, beep);
    const QString& message = height ? heightMessage : widthMessage;
    EXPECT_EQ(f.ts.dialogs.Texts(), warns ? QStringList{message} : QStringList{});
    for (const auto& shown : f.ts.dialogs.shown) EXPECT_EQ(shown.type, DialogType::Error);
    EXPECT_EQ(display.GHI, 64) << "typing alone never changes the display";
  }
}

TEST(PageButtonClick, RefusesAnAreaOffThePageGrid) {
  const std::tuple<M, D, int, int, int, int, bool> rows[] = {
      {M::Monochrome, D::tr, 8, 3, 24, 10, true},   {M::Monochrome, D::tr, 3, 0, 24, 10, false},
      {M::Monochrome, D::tla, 8, 0, 20, 10, false}, {M::Monochrome, D::td, 3, 8, 21, 16, true},
      {M::Monochrome, D::tua, 0, 8, 10, 12, false}, {M::Gray4, D::tr, 4, 1, 12, 2, true},
      {M::Colors65536, D::td, 3, 5, 7, 9, true}};
  const QString refusal = QStringLiteral(
      " Area does not fit in the paging scheme! Please select again with displayed paging grid ! ");
  for (const auto& [mode, direction, x1, y1, x2, y2, fits] : rows) {
    Fixture f(mode, direction);
    EXPECT_EQ(PageButtonClick(f.state.settings, f.messenger, x1, y1, x2, y2), fits);
    EXPECT_EQ(f.ts.dialogs.Texts(), fits ? QStringList{} : QStringList{refusal});
    for (const auto& shown : f.ts.dialogs.shown) EXPECT_EQ(shown.caption, "Error !");
  }
  Fixture nomat(M::Monochrome, D::tr, 128, 64, true);
  EXPECT_TRUE(PageButtonClick(nomat.state.settings, nomat.messenger, 3, 0, 21, 10));
}

}  // namespace
}  // namespace vt::settings
