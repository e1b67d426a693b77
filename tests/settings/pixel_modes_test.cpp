// SPDX-License-Identifier: MIT
#include "settings/pixel_modes.h"

#include <gtest/gtest.h>

#include <QSet>
#include <cmath>
#include <vector>

#include "support/temp_folders.h"

namespace vt::settings {
namespace {

namespace Answer = platform::Answer;
using platform::DialogType;

/// The mode keys by name, so that expectations can be written as the keys a mode sets.
struct NamedKey {
  const char* name;
  bool PixelModeSettings::*field;
};
const NamedKey kModeKeys[] = {
    {"Monc", &PixelModeSettings::Monc},     {"Moni", &PixelModeSettings::Moni},
    {"Neg", &PixelModeSettings::Neg},       {"G4", &PixelModeSettings::G4},
    {"G42", &PixelModeSettings::G42},       {"G32", &PixelModeSettings::G32},
    {"PM", &PixelModeSettings::PM},         {"GRL32", &PixelModeSettings::GRL32},
    {"G16", &PixelModeSettings::G16},       {"gsch", &PixelModeSettings::gsch},
    {"ST7", &PixelModeSettings::ST7},       {"C8", &PixelModeSettings::C8},
    {"C16", &PixelModeSettings::C16},       {"C256", &PixelModeSettings::C256},
    {"C256NP", &PixelModeSettings::C256NP}, {"G256", &PixelModeSettings::G256},
    {"C4096", &PixelModeSettings::C4096},   {"C65535", &PixelModeSettings::C65535},
    {"C18", &PixelModeSettings::C18},       {"C18u", &PixelModeSettings::C18u},
    {"C16M", &PixelModeSettings::C16M},
};

QSet<QString> KeysSet(const PixelModeSettings& pixel) {
  QSet<QString> set;
  for (const NamedKey& key : kModeKeys) {
    if (pixel.*key.field) set.insert(QString::fromLatin1(key.name));
  }
  return set;
}

/// What a selection of each mode must leave behind. PixelsPerByte 0 stands for the 8 colour value.
struct ModeCase {
  PixelMode mode;
  QStringList keys;
  double pixelsPerByte;
  int levels;
  const char* cliName;
  const char* logLine;   ///< empty: the mode writes no log line
  const char* question;  ///< canvas question; empty: none
  bool nibbles;
};

const char* const k2bpp = " Clear the work canvas before to change to 2bpp grayscale mode ? ";
const char* const k4bpp = " Clear the work canvas before to change to 4bpp grayscale mode ? ";
const char* const k5bpp = " Clear the work canvas before to change to 5bpp grayscale mode ? ";
const char* const k256 = " Clear the work canvas before to change to 256 colors mode ? ";
const char* const k4096 = " Clear the work canvas before to change to 4096 colors mode ? ";
const char* const k262k = " Clear the work canvas before to change to 262k colors mode ? ";

const ModeCase kModeCases[] = {
    {PixelMode::Monochrome, {"Monc"}, 8, 2, "monochrome", "Monochrome mode activated", "", false},
    {PixelMode::MonochromeInverted,
     {"Monc", "Moni", "Neg"},
     8,
     2,
     "monochrome-inverted",
     "Negative output mode",
     "",
     false},
    {PixelMode::Gray4, {"G4"}, 4, 4, "gray4", "4 levels grayscale mode activated", k2bpp, false},
    {PixelMode::Gray4TwoPages,
     {"G42"},
     4,
     4,
     "gray4-2pages",
     "4 levels grayscale two pages mode activated",
     k2bpp,
     false},
    {PixelMode::Gray32Packed,
     {"G32", "PM"},
     2,
     32,
     "gray32-packed",
     "32 levels grayscale packed mode activated",
     k5bpp,
     false},
    {PixelMode::Gray32RUnpacked, {"G32"}, 2, 32, "gray32-r", "", k5bpp, false},
    {PixelMode::Gray32LUnpacked, {"G32", "GRL32"}, 2, 32, "gray32-l", "", k5bpp, false},
    {PixelMode::Gray16Vertical,
     {"G16"},
     2,
     16,
     "gray16-v",
     "16 levels Vertical grayscale mode activated",
     k4bpp,
     true},
    {PixelMode::Gray16Horizontal,
     {"G16", "gsch"},
     2,
     16,
     "gray16-h",
     "16 levels Horizontal grayscale mode activated",
     k4bpp,
     true},
    {PixelMode::Gray16Slices, {"G16", "ST7"}, 2, 16, "gray16-slices", "", k4bpp, true},
    {PixelMode::Colors8,
     {"C8"},
     0,
     8,
     "colors8",
     "8 colors mode activated",
     " Clear the work canvas before to change to 8 colors mode ? ",
     false},
    {PixelMode::Colors16,
     {"C16"},
     2,
     16,
     "colors16",
     "16 colors mode activated",
     " Clear the work canvas before to change to 16 colors mode ? ",
     true},
    {PixelMode::Gray256,
     {"C256", "C256NP", "G256"},
     1,
     256,
     "gray256",
     "256 colors mode activated",
     k256,
     false},
    {PixelMode::Colors256,
     {"C256", "C256NP"},
     1,
     256,
     "colors256",
     "256 colors mode activated",
     k256,
     false},
    {PixelMode::Colors256OwnPalette,
     {"C256"},
     1,
     256,
     "",
     "256 colors mode activated",
     k256,
     false},
    {PixelMode::Colors4096Packed,
     {"C4096", "PM"},
     1,
     4096,
     "colors4096-packed",
     "4096 colors packed mode activated",
     k4096,
     false},
    {PixelMode::Colors4096,
     {"C4096"},
     1,
     4096,
     "colors4096",
     "4096 colors unpacked mode activated",
     k4096,
     false},
    {PixelMode::Colors65536,
     {"C65535"},
     1,
     65535,
     "colors65536",
     "65536 colors mode activated",
     " Clear the work canvas before to change to 65536 colors mode ? ",
     false},
    {PixelMode::Colors262kPacked,
     {"C18", "PM"},
     1,
     262144,
     "colors262k-packed",
     "262144 colors mode activated",
     k262k,
     false},
    {PixelMode::Colors262k,
     {"C18u", "PM"},
     1,
     262144,
     "colors262k",
     "262144 colors unpacked mode activated",
     k262k,
     false},
    {PixelMode::Colors16MPacked,
     {"C16M", "PM"},
     1,
     16777215,
     "colors16m-packed",
     "16M colors packed mode activated",
     "",
     false},
    {PixelMode::Colors16M,
     {"C16M"},
     1,
     16777215,
     "colors16m",
     "16M colors unpacked mode activated",
     "",
     false},
};

/// A state whose mode is `start`, with a blank canvas, no dialogs shown and an empty log.
struct Fixture {
  test::TestServices ts;
  app::AppState state;
  explicit Fixture(PixelMode start = PixelMode::Monochrome) {
    state.canvas.Resize(16, 8);
    state.canvas.Clear();
    ApplyModeFlags(state.settings.pixel, Info(start).flags);
    state.log.Clear();
  }
  bool Select(PixelMode mode) { return SelectPixelMode(state, ts.services, mode); }
};

class EveryMode : public ::testing::TestWithParam<ModeCase> {};

TEST_P(EveryMode, SelectionSetsExactlyTheModeKeysAndItsNumbers) {
  const ModeCase& c = GetParam();
  // Start from a mode that differs, so that the already-active exit does not apply.
  Fixture f(c.mode == PixelMode::Gray4 ? PixelMode::Monochrome : PixelMode::Gray4);
  f.state.settings.pixel.ccomp = true;
  f.state.settings.pixel.bw8 = false;

  ASSERT_TRUE(f.Select(c.mode));

  const QSet<QString> expected(c.keys.begin(), c.keys.end());
  EXPECT_EQ(KeysSet(f.state.settings.pixel), expected);
  EXPECT_EQ(CurrentPixelMode(f.state.settings), c.mode);
  const double p = c.pixelsPerByte == 0 ? 2.66666666 : c.pixelsPerByte;
  EXPECT_EQ(PixelsPerByte(f.state.settings), p);
  EXPECT_EQ(LevelCount(f.state.settings), c.levels);
  EXPECT_TRUE(f.state.settings.pixel.bw8);
  EXPECT_EQ(f.state.settings.pixel.ccomp, IsMonochromeMode(c.mode));
  EXPECT_EQ(f.state.settings.pixel.snib, c.nibbles);
  if (*c.logLine) {
    EXPECT_TRUE(f.state.log.Lines().contains(QString::fromLatin1(c.logLine)));
  } else {
    EXPECT_TRUE(f.state.log.Lines().isEmpty()) << f.state.log.Lines().join('|').toStdString();
  }
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty()) << "a blank canvas needs no question";
}

TEST_P(EveryMode, CommandLineNameLooksUpBothWays) {
  const ModeCase& c = GetParam();
  EXPECT_EQ(PixelModeName(c.mode), QString::fromLatin1(c.cliName));
  if (*c.cliName) {
    EXPECT_EQ(PixelModeFromName(QString::fromLatin1(c.cliName)), c.mode);
  }
}

INSTANTIATE_TEST_SUITE_P(PixelModes, EveryMode, ::testing::ValuesIn(kModeCases));

/// The modes other than monochrome, which warns instead of asking (tested below).
std::vector<ModeCase> ColourCases() {
  std::vector<ModeCase> cases;
  for (const ModeCase& c : kModeCases) {
    if (!IsMonochromeMode(c.mode)) cases.push_back(c);
  }
  return cases;
}

class EveryColourMode : public ::testing::TestWithParam<ModeCase> {};

TEST_P(EveryColourMode, NonBlankCanvasAsksTheModesQuestionAndARefusalChangesNothing) {
  const ModeCase& c = GetParam();
  Fixture f(c.mode == PixelMode::Gray4 ? PixelMode::Colors65536 : PixelMode::Gray4);
  f.state.canvas.SetPixel(3, 2, 0x0000FF);
  const PixelModeSettings before = f.state.settings.pixel;

  f.ts.dialogs.Answer(Answer::No);
  const bool changed = f.Select(c.mode);

  if (!*c.question) {
    EXPECT_TRUE(changed);
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
    EXPECT_EQ(f.state.canvas.Pixel(3, 2), 0x0000FFu) << "the 16M modes keep the picture";
    return;
  }
  EXPECT_FALSE(changed);
  ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
  EXPECT_EQ(f.ts.dialogs.shown[0].text, QString::fromLatin1(c.question));
  EXPECT_EQ(f.ts.dialogs.shown[0].caption, QStringLiteral("Canvas not cleared"));
  EXPECT_EQ(ModeFlagsOf(f.state.settings.pixel), ModeFlagsOf(before));
  EXPECT_EQ(f.state.canvas.Pixel(3, 2), 0x0000FFu);

  f.ts.dialogs.Answer(Answer::Yes);
  EXPECT_TRUE(f.Select(c.mode));
  EXPECT_EQ(CurrentPixelMode(f.state.settings), c.mode);
  EXPECT_EQ(f.state.canvas.CountColors(), 1);
  EXPECT_EQ(f.state.canvas.Pixel(3, 2), canvas::kWhite);
}

INSTANTIATE_TEST_SUITE_P(PixelModes, EveryColourMode, ::testing::ValuesIn(ColourCases()));

TEST_P(EveryMode, StoredFlagsAreSelectedAgainAtStartUp) {
  const ModeCase& c = GetParam();
  Fixture f(c.mode);
  f.state.settings.pixel.bw8 = false;
  EXPECT_EQ(ReselectStoredPixelMode(f.state, f.ts.services), c.mode);
  EXPECT_EQ(CurrentPixelMode(f.state.settings), c.mode);
  EXPECT_TRUE(f.state.settings.pixel.bw8) << "the selector ran although the mode was active";
  EXPECT_FALSE(f.state.modes.SettingsLoadInProgress) << "the load flag is put back";
}

TEST(PixelModeTable, HasOneRowPerModeInEnumOrderWithUniqueNames) {
  const auto table = PixelModeTable();
  ASSERT_EQ(table.size(), static_cast<std::size_t>(kPixelModeCount));
  QSet<QString> names;
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(static_cast<std::size_t>(table[i].mode), i);
    if (*table[i].cliName) names.insert(QString::fromLatin1(table[i].cliName));
  }
  EXPECT_EQ(names.size(), kPixelModeCount - 1);  // the own-palette 256 mode has no name
  EXPECT_EQ(PixelModeFromName(QStringLiteral("Monochrome")), std::nullopt);
  EXPECT_EQ(PixelModeFromName(QString()), std::nullopt);
  EXPECT_EQ(PixelModeFromName(QStringLiteral("colors16M")), std::nullopt);
}

TEST(EightColours, PixelsPerByteIsTheStoredRealJustBelowEightThirds) {
  // The 80-bit real: mantissa with its explicit integer bit, exponent biased by 0x3FFF.
  const double fromExtended =
      std::ldexp(static_cast<double>(0xAAAAAAA38225B49AULL), 0x4000 - 0x3FFF - 63);
  EXPECT_EQ(kColors8PixelsPerByte, fromExtended);
  EXPECT_EQ(kColors8PixelsPerByte, 2.66666666);
  EXPECT_LT(kColors8PixelsPerByte, 8.0 / 3.0);
  // Sizes divided by it and truncated give the full byte count: 24 pixels make 9 bytes.
  for (int pixels : {3, 24, 48, 96, 768}) {
    EXPECT_EQ(static_cast<int>(pixels / kColors8PixelsPerByte), pixels * 3 / 8) << pixels;
  }
}

TEST(SelectPixelMode, AlreadyActiveModeStopsUnlessSettingsAreLoading) {
  Fixture f(PixelMode::Gray16Horizontal);
  f.state.settings.pixel.bw8 = false;
  EXPECT_FALSE(f.Select(PixelMode::Gray16Horizontal));
  EXPECT_FALSE(f.state.settings.pixel.bw8);
  EXPECT_TRUE(f.state.log.Lines().isEmpty());

  f.state.modes.SettingsLoadInProgress = true;
  EXPECT_TRUE(f.Select(PixelMode::Gray16Horizontal));
  EXPECT_TRUE(f.state.settings.pixel.bw8);
}

TEST(SelectPixelMode, ModeKeysStayExclusiveAcrossEveryTransition) {
  test::TestServices ts;
  for (const ModeCase& from : kModeCases) {
    for (const ModeCase& to : kModeCases) {
      app::AppState state;
      ApplyModeFlags(state.settings.pixel, Info(from.mode).flags);
      SelectPixelMode(state, ts.services, to.mode);
      const QSet<QString> expected(to.keys.begin(), to.keys.end());
      ASSERT_EQ(KeysSet(state.settings.pixel), expected)
          << PixelModeName(from.mode).toStdString() << " -> " << to.cliName;
    }
  }
  EXPECT_TRUE(ts.dialogs.shown.isEmpty());
}

TEST(SelectPixelMode, MonochromeWarnsOnlyWhenTheCanvasIsNotBlackAndWhite) {
  Fixture f(PixelMode::Gray4);
  f.state.canvas.SetPixel(0, 0, canvas::kBlack);
  EXPECT_TRUE(f.Select(PixelMode::Monochrome));
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
  EXPECT_EQ(f.state.canvas.Pixel(0, 0), canvas::kBlack) << "a black and white picture stays";

  Fixture g(PixelMode::Gray4);
  g.state.canvas.SetPixel(1, 1, 0x808080);
  g.ts.dialogs.Answer(Answer::Cancel);
  EXPECT_FALSE(g.Select(PixelMode::MonochromeInverted));
  ASSERT_EQ(g.ts.dialogs.shown.size(), 1);
  EXPECT_EQ(g.ts.dialogs.shown[0].text, QStringLiteral(" Work Canvas will be cleared ! "));
  EXPECT_EQ(g.ts.dialogs.shown[0].caption, QStringLiteral("Warning"));
  EXPECT_EQ(g.ts.dialogs.shown[0].type, DialogType::Warning);
  EXPECT_TRUE(g.state.log.Lines().contains(QStringLiteral("Canceled !")));
  EXPECT_EQ(CurrentPixelMode(g.state.settings), PixelMode::Gray4);
  EXPECT_EQ(g.state.canvas.Pixel(1, 1), 0x808080u);

  g.ts.dialogs.Answer(Answer::Ok);
  EXPECT_TRUE(g.Select(PixelMode::MonochromeInverted));
  EXPECT_EQ(g.state.canvas.Pixel(1, 1), canvas::kWhite);
}

TEST(SelectPixelMode, SingleColourCanvasAsksOnlyWhenItIsNotTheClearColour) {
  Fixture white;
  EXPECT_TRUE(white.Select(PixelMode::Colors16));
  EXPECT_TRUE(white.ts.dialogs.shown.isEmpty());

  Fixture red;
  red.state.canvas.Fill(0x0000FF);
  red.ts.dialogs.Answer(Answer::No);
  EXPECT_FALSE(red.Select(PixelMode::Colors16));
  EXPECT_EQ(red.ts.dialogs.shown.size(), 1);
}

TEST(SelectPixelMode, GatesStopTheChangeBeforeAnythingHappens) {
  Fixture f;
  f.state.canvas.SetPixel(0, 0, 0x00FF00);
  int calls = 0;
  PixelModeGate forbid;
  forbid.editorForbidsChange = [&](app::AppState&, app::Services&) {
    ++calls;
    return true;
  };
  EXPECT_FALSE(SelectPixelMode(f.state, f.ts.services, PixelMode::Colors16, forbid));
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty()) << "the editor check comes before the question";
  EXPECT_EQ(CurrentPixelMode(f.state.settings), PixelMode::Monochrome);

  PixelModeGate keep;
  keep.keepColorMode = [&](app::AppState&, app::Services& s) {
    ++calls;
    EXPECT_EQ(static_cast<test::ScriptedDialogs&>(s.dialogs).shown.size(), 1)
        << "asked after the canvas question";
    return true;
  };
  f.ts.dialogs.Answer(Answer::Yes);
  EXPECT_FALSE(SelectPixelMode(f.state, f.ts.services, PixelMode::Colors16, keep));
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(CurrentPixelMode(f.state.settings), PixelMode::Monochrome);
}

TEST(SelectPixelMode, ResetsNegativeAndSlicesAndKeepsCompressionInMonochrome) {
  Fixture f(PixelMode::Gray16Slices);
  f.state.settings.pixel.Neg = true;
  f.state.settings.pixel.ccomp = true;
  f.state.settings.pixel.snib = true;
  ASSERT_TRUE(f.Select(PixelMode::Monochrome));
  EXPECT_FALSE(f.state.settings.pixel.Neg);
  EXPECT_FALSE(f.state.settings.pixel.ST7);
  EXPECT_TRUE(f.state.settings.pixel.ccomp);
  EXPECT_FALSE(f.state.settings.pixel.snib);
  // Options that are no mode keys survive a change of mode.
  f.state.settings.pixel.RGBA = true;
  f.state.settings.pixel.G256F = false;
  ASSERT_TRUE(f.Select(PixelMode::Colors16M));
  EXPECT_TRUE(f.state.settings.pixel.RGBA);
  EXPECT_FALSE(f.state.settings.pixel.G256F);
}

TEST(CurrentPixelMode, MixedFlagsResolveInStartUpOrder) {
  struct Row {
    QStringList keys;
    bool nomat;
    std::optional<PixelMode> current;   // from the flags alone
    std::optional<PixelMode> reselect;  // what the start-up re-selection picks
  };
  const Row rows[] = {
      {{}, false, std::nullopt, std::nullopt},
      {{"Monc"}, true, PixelMode::Monochrome, std::nullopt},
      {{"Monc", "Moni"}, true, PixelMode::MonochromeInverted, std::nullopt},
      {{"Moni"}, false, PixelMode::MonochromeInverted, PixelMode::MonochromeInverted},
      {{"Monc", "C16"}, false, PixelMode::Monochrome, PixelMode::Monochrome},
      {{"Monc", "C16"}, true, PixelMode::Monochrome, PixelMode::Colors16},
      {{"C256NP", "G256"}, false, PixelMode::Gray256, PixelMode::Gray256},
      {{"C256NP"}, false, PixelMode::Colors256, PixelMode::Colors256},
      {{"C8", "C16"}, false, PixelMode::Colors16, PixelMode::Colors16},
      {{"C4096", "PM", "C65535"}, false, PixelMode::Colors4096Packed, PixelMode::Colors4096Packed},
      {{"C4096", "C65535"}, false, PixelMode::Colors65536, PixelMode::Colors65536},
      {{"C18", "C18u"}, false, PixelMode::Colors262k, PixelMode::Colors262k},
      {{"G16", "ST7", "gsch"}, false, PixelMode::Gray16Slices, PixelMode::Gray16Slices},
      {{"G4", "G42"}, false, PixelMode::Gray4, PixelMode::Gray4},
      {{"G32", "GRL32", "PM"}, false, PixelMode::Gray32Packed, PixelMode::Gray32Packed},
      {{"G32", "C4096"}, false, PixelMode::Gray32RUnpacked, PixelMode::Gray32RUnpacked},
      {{"C16M", "PM"}, false, PixelMode::Colors16MPacked, PixelMode::Colors16MPacked},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.keys.join(',').toStdString() + (row.nomat ? " NOMAT" : ""));
    Fixture f;
    for (const NamedKey& key : kModeKeys) {
      f.state.settings.pixel.*key.field = row.keys.contains(QString::fromLatin1(key.name));
    }
    f.state.settings.display.NOMAT = row.nomat;
    EXPECT_EQ(CurrentPixelMode(f.state.settings), row.current);
    const QSet<QString> before = KeysSet(f.state.settings.pixel);
    EXPECT_EQ(ReselectStoredPixelMode(f.state, f.ts.services), row.reselect);
    if (row.reselect) {
      EXPECT_EQ(CurrentPixelMode(f.state.settings), row.reselect);
    } else {
      EXPECT_EQ(KeysSet(f.state.settings.pixel), before) << "nothing matched, nothing changes";
    }
  }
}

TEST(CurrentPixelMode, WithoutAnyModeKeyTheNumbersAreThoseOfMonochrome) {
  Settings settings;
  ApplyModeFlags(settings.pixel, 0);
  EXPECT_EQ(PixelsPerByte(settings), 8.0);
  EXPECT_EQ(LevelCount(settings), 2);
}

}  // namespace
}  // namespace vt::settings
