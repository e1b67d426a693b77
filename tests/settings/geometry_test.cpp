// SPDX-License-Identifier: MIT
#include "settings/geometry.h"

#include <gtest/gtest.h>

#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::settings {
namespace {

namespace Answer = platform::Answer;
using platform::DialogType;

const QString kHorizontalError = QStringLiteral(
    "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Horizontal size should "
    "be "
    "a multiple of 8 for horizontal conversion\r Use a vertical conversion direction  ");
const QString kVerticalError = QStringLiteral(
    "  Work Canvas Dot Matrix size does not fit in this paging scheme ! \r Vertical size should be "
    "a multiple of 8 for vertical conversion  \r Use a horizontal conversion direction");

const char* const kKeys[] = {"tr", "tra", "tl", "tla", "td", "tda", "tu", "tua"};

/// The true direction and corner keys, as text: "td CORN1".
QString ScanKeys(const Settings& settings) {
  const ScanSettings& s = settings.scan;
  const bool dirs[] = {s.tr, s.tra, s.tl, s.tla, s.td, s.tda, s.tu, s.tua};
  const bool corners[] = {s.CORN1, s.CORN2, s.CORN3, s.CORN4};
  QStringList on;
  for (int i = 0; i < 8; ++i) {
    if (dirs[i]) on << QString::fromLatin1(kKeys[i]);
  }
  for (int i = 0; i < 4; ++i) {
    if (corners[i]) on << QStringLiteral("CORN%1").arg(i + 1);
  }
  return on.join(' ');
}

/// A state in `mode`, `width` x `height`, direction tr with CORN1, nothing shown or logged.
struct Fixture {
  test::TestServices ts;
  app::AppState state;
  explicit Fixture(PixelMode mode = PixelMode::Monochrome, int width = 128, int height = 64) {
    ApplyModeFlags(state.settings.pixel, Info(mode).flags);
    state.settings.display.GWI = width;
    state.settings.display.GHI = height;
    state.log.Clear();
  }
  bool Select(ScanDirection d) { return SelectScanDirection(state, ts.services, d); }
  void Direction(ScanDirection d) {
    ScanSettings& s = state.settings.scan;
    s.tr = s.tra = s.tl = s.tla = s.td = s.tda = s.tu = s.tua = false;
    bool* keys[] = {&s.tr, &s.tra, &s.tl, &s.tla, &s.td, &s.tda, &s.tu, &s.tua};
    *keys[static_cast<int>(d)] = true;
  }
};

// ---- Direction selection --------------------------------------------------------------------

struct DirectionCase {
  ScanDirection direction;
  const char* keys;  // direction and corner after selection
  const char* log;   // expected log line, empty for none
};

class EveryDirection : public ::testing::TestWithParam<DirectionCase> {};

TEST_P(EveryDirection, SelectionSetsOneDirectionItsCornerAndItsLogLine) {
  const DirectionCase& c = GetParam();
  Fixture f;
  f.state.settings.scan.CORN3 = true;  // a stale corner must go
  ASSERT_TRUE(f.Select(c.direction));
  EXPECT_EQ(ScanKeys(f.state.settings), QString::fromLatin1(c.keys));
  EXPECT_EQ(CurrentScanDirection(f.state.settings), c.direction);
  const bool horizontal = c.direction == ScanDirection::tr || c.direction == ScanDirection::tra ||
                          c.direction == ScanDirection::tl || c.direction == ScanDirection::tla;
  EXPECT_EQ(IsHorizontalScan(f.state.settings), horizontal);
  EXPECT_EQ(IsVerticalScan(f.state.settings), !horizontal);
  if (*c.log) {
    EXPECT_EQ(f.state.log.Lines(), QStringList{QString::fromLatin1(c.log)});
  } else {
    EXPECT_TRUE(f.state.log.Lines().isEmpty());
  }
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Directions, EveryDirection,
                         ::testing::Values(DirectionCase{ScanDirection::tr, "tr CORN1", ""},
                                           DirectionCase{ScanDirection::tra, "tra CORN1", ""},
                                           DirectionCase{ScanDirection::tl, "tl CORN2", ""},
                                           DirectionCase{ScanDirection::tla, "tla CORN2",
                                                         "Right to Left"},
                                           DirectionCase{ScanDirection::td, "td CORN1", "Top down"},
                                           DirectionCase{ScanDirection::tda, "tda CORN1", ""},
                                           DirectionCase{ScanDirection::tu, "tu CORN4", ""},
                                           DirectionCase{ScanDirection::tua, "tua CORN4", ""}));

TEST(SelectScanDirection, Gray32FallsThroughToTheFormsItsPackerKnows) {
  const struct {
    ScanDirection asked;
    const char* keys;
  } rows[] = {
      {ScanDirection::td, "tda CORN1"}, {ScanDirection::tu, "tua CORN4"},
      {ScanDirection::tla, "tl CORN2"}, {ScanDirection::tra, "tr CORN1"},
      {ScanDirection::tl, "tl CORN2"},  {ScanDirection::tda, "tda CORN1"},
  };
  for (const auto& row : rows) {
    Fixture f(PixelMode::Gray32Packed);
    f.Direction(ScanDirection::tua);
    EXPECT_TRUE(f.Select(row.asked));
    EXPECT_EQ(ScanKeys(f.state.settings), QString::fromLatin1(row.keys));
  }
  // The size check belongs to the direction reached: td becomes tda and shows the vertical text.
  Fixture f(PixelMode::Gray32RUnpacked, 128, 63);
  EXPECT_FALSE(f.Select(ScanDirection::td));
  EXPECT_EQ(f.ts.dialogs.Texts(), QStringList{kVerticalError});
}

TEST(SelectScanDirection, SlicesModeIgnoresRightToLeftDirections) {
  for (ScanDirection d : {ScanDirection::tl, ScanDirection::tla}) {
    Fixture f(PixelMode::Gray16Slices);
    f.Direction(ScanDirection::td);
    EXPECT_FALSE(f.Select(d));
    EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("td CORN1"));
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
    EXPECT_TRUE(f.state.log.Lines().isEmpty());
  }
  Fixture f(PixelMode::Gray16Slices);
  EXPECT_TRUE(f.Select(ScanDirection::tda));
  EXPECT_TRUE(f.Select(ScanDirection::td));
}

struct SizeCase {
  PixelMode mode;
  int width;
  int height;
  ScanDirection direction;
  const QString* error;  // nullptr: accepted
};

class SizeCheck : public ::testing::TestWithParam<SizeCase> {};

TEST_P(SizeCheck, SizeOffThePageGridRefusesWithTheButtonsTextAndChangesNothing) {
  const SizeCase& c = GetParam();
  Fixture f(c.mode, c.width, c.height);
  f.Direction(ScanDirection::tra);
  const bool accepted = f.Select(c.direction);
  if (!c.error) {
    EXPECT_TRUE(accepted);
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
    return;
  }
  EXPECT_FALSE(accepted);
  ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
  EXPECT_EQ(f.ts.dialogs.shown[0].text, *c.error);
  EXPECT_EQ(f.ts.dialogs.shown[0].caption, QStringLiteral("Error"));
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tra CORN1"));
  EXPECT_EQ(f.state.settings.display.GWI, c.width);
  EXPECT_EQ(f.state.settings.display.GHI, c.height);
  EXPECT_EQ(CurrentPixelMode(f.state.settings), c.mode);
}

const QString* const H = &kHorizontalError;
const QString* const V = &kVerticalError;

INSTANTIATE_TEST_SUITE_P(
    Directions, SizeCheck,
    ::testing::Values(
        // Monochrome, width 100 is no multiple of 8: the horizontal buttons refuse; tra checks
        // the width but words it as the vertical text.
        SizeCase{PixelMode::Monochrome, 100, 64, ScanDirection::tr, H},
        SizeCase{PixelMode::Monochrome, 100, 64, ScanDirection::tl, H},
        SizeCase{PixelMode::Monochrome, 100, 64, ScanDirection::tla, H},
        SizeCase{PixelMode::Monochrome, 100, 64, ScanDirection::tra, V},
        SizeCase{PixelMode::Monochrome, 100, 64, ScanDirection::td, nullptr},
        SizeCase{PixelMode::Monochrome, 100, 64, ScanDirection::tu, nullptr},
        // Height 60: the vertical buttons refuse; td checks the height with the horizontal text.
        SizeCase{PixelMode::Monochrome, 128, 60, ScanDirection::td, H},
        SizeCase{PixelMode::Monochrome, 128, 60, ScanDirection::tda, V},
        SizeCase{PixelMode::Monochrome, 128, 60, ScanDirection::tu, V},
        SizeCase{PixelMode::Monochrome, 128, 60, ScanDirection::tua, V},
        SizeCase{PixelMode::Monochrome, 128, 60, ScanDirection::tr, nullptr},
        // The grid follows PixelsPerByte, the text still says 8.
        SizeCase{PixelMode::Gray4, 130, 64, ScanDirection::tr, H},
        SizeCase{PixelMode::Gray4, 132, 64, ScanDirection::tr, nullptr},
        SizeCase{PixelMode::Gray16Vertical, 128, 63, ScanDirection::tu, V},
        SizeCase{PixelMode::Gray16Vertical, 128, 62, ScanDirection::tu, nullptr},
        SizeCase{PixelMode::Colors256, 127, 61, ScanDirection::td, nullptr},
        SizeCase{PixelMode::Colors256, 127, 61, ScanDirection::tl, nullptr},
        // 8 colours: a multiple of 8 does not fit 2.66666666 either.
        SizeCase{PixelMode::Colors8, 24, 24, ScanDirection::tr, H},
        SizeCase{PixelMode::Colors8, 24, 24, ScanDirection::tu, V},
        // A zero size counts as 1.
        SizeCase{PixelMode::Monochrome, 0, 64, ScanDirection::tr, H},
        SizeCase{PixelMode::Monochrome, 128, 0, ScanDirection::tda, V},
        SizeCase{PixelMode::Colors65536, 0, 0, ScanDirection::tr, nullptr}));

TEST(SelectScanDirection, NoMatrixCheckAcceptsAnySize) {
  for (ScanDirection d :
       {ScanDirection::tr, ScanDirection::tra, ScanDirection::tl, ScanDirection::tla,
        ScanDirection::td, ScanDirection::tda, ScanDirection::tu, ScanDirection::tua}) {
    Fixture f(PixelMode::Colors8, 101, 59);
    f.state.settings.display.NOMAT = true;
    EXPECT_TRUE(f.Select(d)) << Info(d).key;
  }
}

TEST(SelectScanDirection, EightColoursRejectsEveryWidthUpToTheLargestPreset) {
  int fitting = 0;
  for (int size = 1; size <= kMaxUserWidth; ++size) {
    if (SizeRemainder(size, kColors8PixelsPerByte) == 0.0) ++fitting;
  }
  EXPECT_EQ(fitting, 0);
  EXPECT_EQ(SizeRemainder(0, 8.0), 1.0);
  EXPECT_EQ(SizeRemainder(20, 8.0), 4.0);
}

TEST(SelectScanDirection, SixBitModeIsNotRefusedOnHorizontalDirections) {
  Fixture f(PixelMode::Monochrome, 100, 60);
  f.state.settings.pixel.bw8 = false;
  EXPECT_TRUE(f.Select(ScanDirection::tl));
  EXPECT_FALSE(f.state.settings.pixel.bw8);
  // A vertical direction sets bw8 before its size check, and the check then applies.
  EXPECT_FALSE(f.Select(ScanDirection::td));
  EXPECT_TRUE(f.state.settings.pixel.bw8);
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tl CORN2"));
}

TEST(SelectScanDirection, RunningFontDefinitionKeepsTheCorner) {
  Fixture f;
  SelectOriginCorner(f.state, OriginCorner::CORN3);
  EXPECT_TRUE(
      SelectScanDirection(f.state, f.ts.services, ScanDirection::tu, CornerRule::KeepCorner));
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tu CORN3"));
}

TEST(SelectOriginCorner, SetsOneCornerAndLogsItsText) {
  const struct {
    OriginCorner corner;
    const char* keys;
    const char* text;
  } rows[] = {
      {OriginCorner::CORN1, "tr CORN1", "Origin corner top left"},
      {OriginCorner::CORN2, "tr CORN2", "Origin corner top right"},
      {OriginCorner::CORN3, "tr CORN3", "Origin corner bottom right"},
      {OriginCorner::CORN4, "tr CORN4", "Origin corner bottom left"},
  };
  for (const auto& row : rows) {
    Fixture f;
    SelectOriginCorner(f.state, row.corner);
    EXPECT_EQ(ScanKeys(f.state.settings), QString::fromLatin1(row.keys));
    EXPECT_EQ(CurrentOriginCorner(f.state.settings), row.corner);
    EXPECT_EQ(f.state.log.Lines(), QStringList{QString::fromLatin1(row.text)});
  }
}

// ---- Paging hint and page count -------------------------------------------------------------

TEST(PagingHint, NamesTheMultipleAlongTheScanOrFreeSizes) {
  const struct {
    PixelMode mode;
    ScanDirection direction;
    const char* rule;
    const char* scheme;
  } rows[] = {
      {PixelMode::Monochrome, ScanDirection::tr, "( Width = multiple of 8 , Height = free )",
       "Horizontal paging scheme"},
      {PixelMode::Monochrome, ScanDirection::td, "( Height = multiple of 8 , Width = free )",
       "Vertical paging scheme"},
      {PixelMode::Gray4, ScanDirection::tla, "( Width = multiple of 4 , Height = free )",
       "Horizontal paging scheme"},
      {PixelMode::Gray16Horizontal, ScanDirection::tua, "( Height = multiple of 2 , Width = free )",
       "Vertical paging scheme"},
      {PixelMode::Colors8, ScanDirection::tu, "( Height = multiple of 2.66666666 , Width = free )",
       "Vertical paging scheme"},
      {PixelMode::Colors65536, ScanDirection::td, "( Width = free , Height = free )",
       "Vertical paging scheme"},
      {PixelMode::Colors256, ScanDirection::tr, "( Width = free , Height = free )",
       "Horizontal paging scheme"},
  };
  for (const auto& row : rows) {
    Fixture f(row.mode);
    f.Direction(row.direction);
    const PagingHintText hint = PagingHint(f.state.settings);
    EXPECT_EQ(hint.sizeRule, QString::fromLatin1(row.rule));
    EXPECT_EQ(hint.scheme, QString::fromLatin1(row.scheme));
  }
}

TEST(FormatGeneralReal, PrintsShortestGeneralFormUpToFifteenDigits) {
  EXPECT_EQ(FormatGeneralReal(8.0), QStringLiteral("8"));
  EXPECT_EQ(FormatGeneralReal(2.0), QStringLiteral("2"));
  EXPECT_EQ(FormatGeneralReal(0.5), QStringLiteral("0.5"));
  EXPECT_EQ(FormatGeneralReal(kColors8PixelsPerByte), QStringLiteral("2.66666666"));
  EXPECT_EQ(FormatGeneralReal(8.0 / 3.0), QStringLiteral("2.66666666666667"));
}

TEST(PageCount, CountsWholePagesWithTheWalkersExceptions) {
  const struct {
    PixelMode mode;
    ScanDirection direction;
    bool nomat;
    int size;
    int pages;
  } rows[] = {
      {PixelMode::Monochrome, ScanDirection::td, false, 64, 8},
      {PixelMode::Monochrome, ScanDirection::td, false, 63, 7},
      {PixelMode::Monochrome, ScanDirection::td, true, 64, 64},
      {PixelMode::Gray4, ScanDirection::td, false, 64, 16},
      {PixelMode::Gray4TwoPages, ScanDirection::td, false, 64, 8},
      {PixelMode::Gray4TwoPages, ScanDirection::tda, false, 64, 16},
      {PixelMode::Gray16Vertical, ScanDirection::tu, false, 63, 31},
      {PixelMode::Gray16Slices, ScanDirection::td, false, 20, 3},
      {PixelMode::Gray16Slices, ScanDirection::td, false, 16, 2},
      {PixelMode::Colors8, ScanDirection::td, false, 24, 3},
      {PixelMode::Colors8, ScanDirection::td, false, 23, 2},
      {PixelMode::Gray32Packed, ScanDirection::tda, false, 10, 10},
      {PixelMode::Colors16M, ScanDirection::td, false, 10, 10},
  };
  for (const auto& row : rows) {
    Fixture f(row.mode);
    f.Direction(row.direction);
    f.state.settings.display.NOMAT = row.nomat;
    EXPECT_EQ(PageCount(f.state.settings, row.size), row.pages)
        << PixelModeName(row.mode).toStdString() << " " << row.size;
  }
}

// ---- Byte width and bit order ---------------------------------------------------------------

TEST(SelectByteWidth, SixBitsOnlyInMonochromeWithAHorizontalDirection) {
  const struct {
    PixelMode mode;
    ScanDirection direction;
    bool eightBits;
    bool allowed;
  } rows[] = {
      {PixelMode::Monochrome, ScanDirection::tr, false, true},
      {PixelMode::MonochromeInverted, ScanDirection::tla, false, true},
      {PixelMode::Monochrome, ScanDirection::tra, false, true},
      {PixelMode::Monochrome, ScanDirection::td, false, false},
      {PixelMode::Monochrome, ScanDirection::tua, false, false},
      {PixelMode::Gray4, ScanDirection::tr, false, false},
      {PixelMode::Gray4, ScanDirection::td, true, true},
      {PixelMode::Colors16M, ScanDirection::tl, true, true},
  };
  for (const auto& row : rows) {
    Fixture f(row.mode);
    f.Direction(row.direction);
    f.state.settings.pixel.bw8 = !row.eightBits;
    EXPECT_EQ(SelectByteWidth(f.state, f.ts.services, row.eightBits), row.allowed);
    if (row.allowed) {
      EXPECT_EQ(f.state.settings.pixel.bw8, row.eightBits);
      EXPECT_EQ(f.state.log.Lines().last(), row.eightBits ? QStringLiteral("8 bit format enabled")
                                                          : QStringLiteral("6 bit format enabled"));
      EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
    } else {
      EXPECT_TRUE(f.state.settings.pixel.bw8);
      EXPECT_EQ(f.ts.dialogs.Texts(),
                QStringList{QStringLiteral("Operation allowed in monochrome mode only !")});
    }
  }
}

TEST(SelectBitOrder, SetsMsbfAndTheTwoControlFlags) {
  Fixture f;
  SelectBitOrder(f.state, false);
  EXPECT_FALSE(f.state.settings.scan.MSBF);
  EXPECT_TRUE(LittleEndianBits(f.state.settings));
  EXPECT_FALSE(BigEndianBits(f.state.settings));
  SelectBitOrder(f.state, true);
  EXPECT_TRUE(BigEndianBits(f.state.settings));
  EXPECT_EQ(f.state.log.Lines(),
            (QStringList{QStringLiteral("MSB last"), QStringLiteral("MSB first")}));
  EXPECT_EQ(BitOrderCaption(true),
            QStringLiteral("Most Significant Bit First             (big endian)"));
  EXPECT_EQ(BitOrderCaption(false),
            QStringLiteral("Most Significant Bit Last        (little endian)"));
  EXPECT_EQ(BigEndianHint(), QStringLiteral("Big Endian (MSB first)"));
}

// ---- Sizes ----------------------------------------------------------------------------------

TEST(DisplaySize, SetsTheKeysAndTheCanvasWithAtLeastOnePixel) {
  Fixture f;
  SetDisplaySize(f.state, 0, -5);
  EXPECT_EQ(f.state.settings.display.GWI, 1);
  EXPECT_EQ(f.state.settings.display.GHI, 1);
  EXPECT_EQ(f.state.canvas.Width(), 1);
  f.state.settings.display.USmat = true;
  SelectPresetSize(f.state, QSize(480, 272));
  EXPECT_EQ(f.state.canvas.Width(), 480);
  EXPECT_EQ(f.state.canvas.Height(), 272);
  EXPECT_FALSE(f.state.settings.display.USmat);
}

TEST(DisplaySize, PresetsEndWithTheLargestSizeWhichTheUserLimitsMatch) {
  const auto presets = PresetSizes();
  ASSERT_EQ(presets.size(), 22u);
  EXPECT_EQ(presets.front(), QSize(96, 40));
  EXPECT_EQ(presets.back(), QSize(1024, 768));
  for (const QSize& size : presets) {
    EXPECT_LE(size.width(), kMaxUserWidth);
    EXPECT_LE(size.height(), kMaxUserHeight);
  }
}

TEST(CustomSizes, FillFreeSlotsKeepDuplicatesAndOverwriteTheLastWhenFull) {
  Settings settings;
  EXPECT_EQ(AddCustomSize(settings, QSize(100, 50)), 0);
  EXPECT_EQ(AddCustomSize(settings, QSize(120, 30)), 1);
  EXPECT_EQ(AddCustomSize(settings, QSize(100, 50)), 0);
  EXPECT_EQ(CustomSizeCaptions(settings),
            (QStringList{QStringLiteral("Custom 100 x 50"), QStringLiteral("Custom 120 x 30")}));
  for (int i = 2; i < kCustomSizeSlots; ++i) {
    EXPECT_EQ(AddCustomSize(settings, QSize(200 + i, 10)), i);
  }
  EXPECT_EQ(AddCustomSize(settings, QSize(7, 7)), kCustomSizeSlots - 1);
  EXPECT_EQ(CustomSizeCaptions(settings).last(), QStringLiteral("Custom 7 x 7"));
  EXPECT_EQ(CustomSizeCaptions(settings).size(), kCustomSizeSlots);
}

struct TypedCase {
  bool height;  // else width
  PixelMode mode;
  ScanDirection direction;
  const char* text;
  int stored;
  const char* edit;
  bool beep;
  const char* message;  // empty: none
};

class UserSizeTyping : public ::testing::TestWithParam<TypedCase> {};

TEST_P(UserSizeTyping, StoresCutsOrRestoresAndWarnsOnlyOverTheLimit) {
  const TypedCase& c = GetParam();
  Fixture f(c.mode);
  f.Direction(c.direction);
  f.state.settings.display.MATH = 64;
  f.state.settings.display.MATW = 128;
  const TypedSize result =
      c.height ? LCDmatrixHeightEditChange(f.state, f.ts.services, QString::fromLatin1(c.text))
               : LCDmatrixWidthEditChange(f.state, f.ts.services, QString::fromLatin1(c.text));
  EXPECT_EQ(c.height ? f.state.settings.display.MATH : f.state.settings.display.MATW, c.stored);
  EXPECT_EQ(result.editText, QString::fromLatin1(c.edit));
  EXPECT_EQ(result.beep, c.beep);
  if (*c.message) {
    ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
    EXPECT_EQ(f.ts.dialogs.shown[0].text, QString::fromLatin1(c.message));
    EXPECT_EQ(f.ts.dialogs.shown[0].type, DialogType::Error);
  } else {
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
  }
  EXPECT_EQ(f.state.settings.display.GHI, 64) << "typing alone never changes the display";
}

const char* const kHeightMessage8 =
    " In vertical mode, height must be a multiple of 2.66666666 and <= 768 !";
const char* const kWidthMessage8 =
    " In horizontal mode, width must be a multiple of 2.66666666 and <= 1024 !";

INSTANTIATE_TEST_SUITE_P(
    Typing, UserSizeTyping,
    ::testing::Values(
        TypedCase{true, PixelMode::Monochrome, ScanDirection::td, "abc", 64, "64", false, ""},
        TypedCase{true, PixelMode::Monochrome, ScanDirection::td, "", 64, "64", false, ""},
        TypedCase{true, PixelMode::Monochrome, ScanDirection::td, "0", 64, "64", false, ""},
        TypedCase{true, PixelMode::Monochrome, ScanDirection::td, "200", 200, "200", false, ""},
        TypedCase{true, PixelMode::Monochrome, ScanDirection::td, "769", 768, "768", true, ""},
        TypedCase{true, PixelMode::Colors8, ScanDirection::td, "800", 768, "768", true,
                  kHeightMessage8},
        TypedCase{true, PixelMode::Colors8, ScanDirection::tu, "769", 768, "768", true,
                  kHeightMessage8},
        TypedCase{true, PixelMode::Colors8, ScanDirection::tda, "800", 768, "768", true, ""},
        TypedCase{true, PixelMode::Colors8, ScanDirection::tr, "800", 768, "768", true, ""},
        TypedCase{true, PixelMode::Colors8, ScanDirection::td, "700", 700, "700", false, ""},
        TypedCase{false, PixelMode::Colors8, ScanDirection::tr, "1100", 1024, "1024", true,
                  kWidthMessage8},
        TypedCase{false, PixelMode::Colors8, ScanDirection::tl, "1025", 1024, "1024", true,
                  kWidthMessage8},
        TypedCase{false, PixelMode::Colors8, ScanDirection::tla, "1100", 1024, "1024", true, ""},
        TypedCase{false, PixelMode::Monochrome, ScanDirection::tr, "2000", 1024, "1024", true, ""},
        TypedCase{false, PixelMode::Gray4, ScanDirection::tl, "12x", 128, "128", false, ""}));

/// Sets the typed user size and confirms it.
bool Confirm(Fixture& f, int width, int height) {
  f.state.settings.display.MATW = width;
  f.state.settings.display.MATH = height;
  return LCDmatrixSizeUserDefinedClick(f.state, f.ts.services);
}

const QString kInfo = QStringLiteral(" User Dot Matrix Size has been defined ! ");
const QString kToVertical = QStringLiteral(
    "Dot matrix size not compatible with horizontal paging scheme !\rDo you want to change paging "
    "scheme orientation to vertical ?");
const QString kToHorizontal = QStringLiteral(
    "Dot matrix size not compatible with vertical paging scheme !\rDo you want to change paging "
    "scheme orientation to horizontal ?");

TEST(UserSizeConfirm, SetsTheSizeRemembersItAndOffersTheVerticalScheme) {
  Fixture f;
  f.ts.dialogs.Answer(Answer::Ok);
  f.ts.dialogs.Answer(Answer::Yes);
  ASSERT_TRUE(Confirm(f, 100, 64));

  EXPECT_EQ(f.ts.dialogs.Texts(), (QStringList{kInfo, kToVertical}));
  EXPECT_EQ(f.ts.dialogs.shown[0].caption, QStringLiteral("Information"));
  EXPECT_EQ(f.ts.dialogs.shown[1].caption, QStringLiteral("Warning"));
  EXPECT_EQ(f.state.settings.display.GWI, 100);
  EXPECT_EQ(f.state.settings.display.GHI, 64);
  EXPECT_EQ(f.state.canvas.Width(), 100);
  EXPECT_TRUE(f.state.settings.display.USmat);
  EXPECT_TRUE(f.state.settings.display.UMATB);
  EXPECT_EQ(f.state.settings.customSizes[0], QSize(100, 64));
  const QStringList& log = f.state.log.Lines();
  const qsizetype h = log.indexOf(QStringLiteral("H:=64 W:=100"));
  ASSERT_GE(h, 0);
  EXPECT_GT(log.indexOf(QStringLiteral("Dot matrix size = User defined")), h);
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("td CORN1"));
}

TEST(UserSizeConfirm, RefusingTheSwitchKeepsTheDirection) {
  Fixture f;
  f.ts.dialogs.Answer(Answer::Ok);
  f.ts.dialogs.Answer(Answer::No);
  ASSERT_TRUE(Confirm(f, 100, 64));
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tr CORN1"));
  EXPECT_EQ(f.state.settings.display.GWI, 100);
}

TEST(UserSizeConfirm, VerticalDirectionOffersTheHorizontalScheme) {
  Fixture f;
  f.Direction(ScanDirection::tu);
  f.ts.dialogs.Answer(Answer::Ok);
  f.ts.dialogs.Answer(Answer::Yes);
  ASSERT_TRUE(Confirm(f, 128, 30));
  EXPECT_EQ(f.ts.dialogs.Texts(), (QStringList{kInfo, kToHorizontal}));
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tr CORN1"));
}

TEST(UserSizeConfirm, FitIsJudgedByItsOwnPixelsPerByte) {
  const struct {
    PixelMode mode;
    int width;
    bool asks;
  } rows[] = {
      {PixelMode::Colors8, 100, false},      // counts as 2 here, not 2.66666666
      {PixelMode::Gray32Packed, 130, true},  // counts as 4 here, not 2
      {PixelMode::Gray32Packed, 132, false}, {PixelMode::Gray16Horizontal, 101, true},
      {PixelMode::Colors256, 101, false},
  };
  for (const auto& row : rows) {
    Fixture f(row.mode);
    f.ts.dialogs.Answer(Answer::Ok);
    f.ts.dialogs.Answer(Answer::No);
    ASSERT_TRUE(Confirm(f, row.width, 64));
    EXPECT_EQ(f.ts.dialogs.Texts().contains(kToVertical), row.asks)
        << PixelModeName(row.mode).toStdString() << " " << row.width;
  }
}

TEST(UserSizeConfirm, AcceptedSwitchStillMeetsTheDirectionsOwnCheck) {
  // Width 100 does not fit tr; the switch to td then meets height 60, which td refuses.
  Fixture f;
  f.ts.dialogs.Answer(Answer::Ok);
  f.ts.dialogs.Answer(Answer::Yes);
  ASSERT_TRUE(Confirm(f, 100, 60));
  EXPECT_EQ(f.ts.dialogs.Texts(), (QStringList{kInfo, kToVertical, kHorizontalError}));
  EXPECT_EQ(ScanKeys(f.state.settings), QStringLiteral("tr CORN1"));
}

TEST(UserSizeConfirm, NoTypedSizeIsReportedAsAFaultAndChangesNothing) {
  Fixture f;
  EXPECT_FALSE(Confirm(f, 0, 64));
  ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
  EXPECT_EQ(f.ts.dialogs.shown[0].text, QStringLiteral("User Size Define Error !"));
  EXPECT_EQ(f.ts.dialogs.shown[0].caption, QStringLiteral("Error"));
  EXPECT_TRUE(f.state.log.Lines().contains(QStringLiteral("User Size Define Error")));
  EXPECT_EQ(f.state.settings.display.GWI, 128);
  EXPECT_TRUE(CustomSizeCaptions(f.state.settings).isEmpty());
}

// ---- Area against the page grid -------------------------------------------------------------

TEST(PageButtonClick, RefusesAnAreaOffThePageGrid) {
  const struct {
    PixelMode mode;
    ScanDirection direction;
    bool nomat;
    int x1, y1, x2, y2;
    bool fits;
  } rows[] = {
      {PixelMode::Monochrome, ScanDirection::tr, false, 8, 3, 24, 10, true},
      {PixelMode::Monochrome, ScanDirection::tr, false, 3, 0, 24, 10, false},
      {PixelMode::Monochrome, ScanDirection::tla, false, 8, 0, 20, 10, false},
      {PixelMode::Monochrome, ScanDirection::td, false, 3, 8, 21, 16, true},
      {PixelMode::Monochrome, ScanDirection::tua, false, 0, 8, 10, 12, false},
      {PixelMode::Gray4, ScanDirection::tr, false, 4, 1, 12, 2, true},
      {PixelMode::Colors65536, ScanDirection::td, false, 3, 5, 7, 9, true},
      {PixelMode::Monochrome, ScanDirection::tr, true, 3, 0, 21, 10, true},
  };
  for (const auto& row : rows) {
    Fixture f(row.mode);
    f.Direction(row.direction);
    f.state.settings.display.NOMAT = row.nomat;
    EXPECT_EQ(PageButtonClick(f.state, f.ts.services, row.x1, row.y1, row.x2, row.y2), row.fits);
    if (row.fits) {
      EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
    } else {
      ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
      EXPECT_EQ(f.ts.dialogs.shown[0].text,
                QStringLiteral(" Area does not fit in the paging scheme! Please select again with "
                               "displayed paging grid ! "));
      EXPECT_EQ(f.ts.dialogs.shown[0].caption, QStringLiteral("Error !"));
    }
  }
}

}  // namespace
}  // namespace vt::settings
