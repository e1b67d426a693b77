// SPDX-License-Identifier: MIT
#include "app/pixel_mode_commands.h"

#include <gtest/gtest.h>

#include <QSet>
#include <tuple>

#include "app/state.h"
#include "support/temp_folders.h"

namespace vt::app {
namespace {

using namespace settings;

namespace Answer = platform::Answer;
using platform::DialogType;
using M = PixelMode;

/// The mode keys by name, so that expectations can be written as the keys a mode sets.
#define VT_KEY(name) \
  { #name, &PixelModeSettings::name }
const struct {
  const char* name;
  bool PixelModeSettings::*field;
} kModeKeys[] = {VT_KEY(Monc), VT_KEY(Moni),  VT_KEY(Neg),    VT_KEY(G4),   VT_KEY(G42),
                 VT_KEY(G32),  VT_KEY(PM),    VT_KEY(GRL32),  VT_KEY(G16),  VT_KEY(gsch),
                 VT_KEY(ST7),  VT_KEY(C8),    VT_KEY(C16),    VT_KEY(C256), VT_KEY(C256NP),
                 VT_KEY(G256), VT_KEY(C4096), VT_KEY(C65535), VT_KEY(C18),  VT_KEY(C18u),
                 VT_KEY(C16M)};
#undef VT_KEY

QSet<QString> KeysOf(const PixelModeSettings& pixel) {
  QSet<QString> set;
  for (const auto& key : kModeKeys) {
    if (pixel.*key.field) set.insert(QString::fromLatin1(key.name));
  }
  return set;
}

/// "G32 PM" as a set of key names.
QSet<QString> Keys(const char* names) {
  const QStringList list = QString::fromLatin1(names).split(' ', Qt::SkipEmptyParts);
  return QSet<QString>(list.begin(), list.end());
}

/// What a selection of each mode must leave behind.
struct ModeCase {
  M mode;
  const char* keys;
  double pixelsPerByte;
  int levels;
  const char* cliName;
  const char* logLine;   ///< empty: the mode writes no log line
  const char* question;  ///< the mode named by the canvas question; empty: no question
  bool nibbles;
};

const ModeCase kModeCases[] = {
    {M::Monochrome, "Monc", 8, 2, "monochrome", "Monochrome mode activated", "", false},
    {M::MonochromeInverted, "Monc Moni Neg", 8, 2, "monochrome-inverted", "Negative output mode",
     "", false},
    {M::Gray4, "G4", 4, 4, "gray4", "4 levels grayscale mode activated", "2bpp grayscale", false},
    {M::Gray4TwoPages, "G42", 4, 4, "gray4-2pages", "4 levels grayscale two pages mode activated",
     "2bpp grayscale", false},
    {M::Gray32Packed, "G32 PM", 2, 32, "gray32-packed", "32 levels grayscale packed mode activated",
     "5bpp grayscale", false},
    {M::Gray32RUnpacked, "G32", 2, 32, "gray32-r", "", "5bpp grayscale", false},
    {M::Gray32LUnpacked, "G32 GRL32", 2, 32, "gray32-l", "", "5bpp grayscale", false},
    {M::Gray16Vertical, "G16", 2, 16, "gray16-v", "16 levels Vertical grayscale mode activated",
     "4bpp grayscale", true},
    {M::Gray16Horizontal, "G16 gsch", 2, 16, "gray16-h",
     "16 levels Horizontal grayscale mode activated", "4bpp grayscale", true},
    {M::Gray16Slices, "G16 ST7", 2, 16, "gray16-slices", "", "4bpp grayscale", true},
    {M::Colors8, "C8", 2.66666666, 8, "colors8", "8 colors mode activated", "8 colors", false},
    {M::Colors16, "C16", 2, 16, "colors16", "16 colors mode activated", "16 colors", true},
    {M::Gray256, "C256 C256NP G256", 1, 256, "gray256", "256 colors mode activated", "256 colors",
     false},
    {M::Colors256, "C256 C256NP", 1, 256, "colors256", "256 colors mode activated", "256 colors",
     false},
    {M::Colors256OwnPalette, "C256", 1, 256, "", "256 colors mode activated", "256 colors", false},
    {M::Colors4096Packed, "C4096 PM", 1, 4096, "colors4096-packed",
     "4096 colors packed mode activated", "4096 colors", false},
    {M::Colors4096, "C4096", 1, 4096, "colors4096", "4096 colors unpacked mode activated",
     "4096 colors", false},
    {M::Colors65536, "C65535", 1, 65535, "colors65536", "65536 colors mode activated",
     "65536 colors", false},
    {M::Colors262kPacked, "C18 PM", 1, 262144, "colors262k-packed", "262144 colors mode activated",
     "262k colors", false},
    {M::Colors262k, "C18u PM", 1, 262144, "colors262k", "262144 colors unpacked mode activated",
     "262k colors", false},
    {M::Colors16MPacked, "C16M PM", 1, 16777215, "colors16m-packed",
     "16M colors packed mode activated", "", false},
    {M::Colors16M, "C16M", 1, 16777215, "colors16m", "16M colors unpacked mode activated", "",
     false}};

/// A state whose mode is `start`, with a blank canvas, no dialogs shown and an empty log.
struct Fixture {
  vt::test::TestServices ts;
  app::AppState state;
  explicit Fixture(M start = M::Monochrome) {
    state.canvas.Resize(16, 8);
    state.canvas.Clear();
    ApplyModeFlags(state.settings.pixel, Info(start).flags);
    state.log.Clear();
  }
  bool Select(M mode, const PixelModeGate& gate = {}) {
    return SelectPixelMode(state, ts.services, mode, gate);
  }
};

TEST(SelectPixelMode, EveryModeSetsExactlyItsKeysNumbersAndLogLine) {
  for (const ModeCase& c : kModeCases) {
    SCOPED_TRACE(c.keys);
    // Start from a mode that differs, so that the already-active exit does not apply.
    Fixture f(c.mode == M::Gray4 ? M::Monochrome : M::Gray4);
    PixelModeSettings& pixel = f.state.settings.pixel;
    pixel.ccomp = pixel.RGBA = pixel.snib = true;
    pixel.bw8 = pixel.G256F = false;
    ASSERT_TRUE(f.Select(c.mode));

    EXPECT_EQ(KeysOf(pixel), Keys(c.keys));
    EXPECT_EQ(CurrentPixelMode(f.state.settings), c.mode);
    EXPECT_EQ(PixelsPerByte(f.state.settings), c.pixelsPerByte);
    EXPECT_EQ(LevelCount(f.state.settings), c.levels);
    EXPECT_TRUE(pixel.bw8);
    EXPECT_EQ(pixel.ccomp, IsMonochromeMode(c.mode));
    EXPECT_EQ(pixel.snib, c.nibbles);
    EXPECT_TRUE(pixel.RGBA && !pixel.G256F) << "options that are no mode keys stay";
    EXPECT_EQ(f.state.log.Lines(), *c.logLine ? QStringList{c.logLine} : QStringList{});
    EXPECT_TRUE(f.ts.dialogs.shown.isEmpty()) << "a blank canvas needs no question";

    // The command-line name looks up both ways.
    EXPECT_EQ(PixelModeName(c.mode), QString::fromLatin1(c.cliName));
    EXPECT_EQ(PixelModeFromName(QString::fromLatin1(c.cliName)),
              *c.cliName ? std::optional(c.mode) : std::nullopt);

    // An active mode is not selected again, except by the start-up re-selection.
    Fixture stored(c.mode);
    stored.state.settings.pixel.bw8 = false;
    stored.state.settings.pixel.snib = false;
    EXPECT_FALSE(stored.Select(c.mode));
    EXPECT_FALSE(stored.state.settings.pixel.bw8);
    EXPECT_TRUE(stored.state.log.Lines().isEmpty());
    EXPECT_EQ(ReselectStoredPixelMode(stored.state, stored.ts.services), c.mode);
    EXPECT_TRUE(stored.state.settings.pixel.bw8) << "the selector ran";
    EXPECT_FALSE(stored.state.settings.pixel.snib) << "a load keeps the nibble swap as saved";
    EXPECT_FALSE(stored.state.modes.SettingsLoadInProgress) << "the load flag is put back";
  }
  for (const char* name : {"Monochrome", "colors16M"}) {
    EXPECT_EQ(PixelModeFromName(QString::fromLatin1(name)), std::nullopt) << name;
  }
}

TEST(ModeFlagKeys, NameTheKeysEachModeSets) {
  for (const ModeCase& c : kModeCases) {
    const QStringList names = ModeFlagKeys(Info(c.mode).flags);
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()), Keys(c.keys)) << c.keys;
    EXPECT_EQ(names.size(), Keys(c.keys).size()) << c.keys;
  }
  EXPECT_EQ(ModeFlagKeys(kFlagC18u | kFlagPM), (QStringList{"PM", "C18u"})) << "lowest bit first";
  EXPECT_TRUE(ModeFlagKeys(0).isEmpty());
}

TEST(SelectPixelMode, NonBlankCanvasAsksTheModesQuestionAndARefusalChangesNothing) {
  for (const ModeCase& c : kModeCases) {
    if (IsMonochromeMode(c.mode)) continue;  // monochrome warns instead, below
    SCOPED_TRACE(c.keys);
    Fixture f(c.mode == M::Gray4 ? M::Colors65536 : M::Gray4);
    f.state.canvas.SetPixel(3, 2, 0x0000FF);
    const std::uint32_t before = ModeFlagsOf(f.state.settings.pixel);

    f.ts.dialogs.Answer(Answer::No);
    const bool changed = f.Select(c.mode);
    if (!*c.question) {
      EXPECT_TRUE(changed);
      EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
      EXPECT_EQ(f.state.canvas.Pixel(3, 2), 0x0000FFu) << "the 16M modes keep the picture";
      continue;
    }
    EXPECT_FALSE(changed);
    EXPECT_EQ(f.ts.dialogs.Texts(),
              QStringList{QStringLiteral(" Clear the work canvas before to change to %1 mode ? ")
                              .arg(QString::fromLatin1(c.question))});
    EXPECT_EQ(f.ts.dialogs.shown[0].caption, "Canvas not cleared");
    EXPECT_EQ(ModeFlagsOf(f.state.settings.pixel), before);
    EXPECT_EQ(f.state.canvas.Pixel(3, 2), 0x0000FFu);

    f.ts.dialogs.Answer(Answer::Yes);
    EXPECT_TRUE(f.Select(c.mode));
    EXPECT_EQ(CurrentPixelMode(f.state.settings), c.mode);
    EXPECT_EQ(f.state.canvas.CountColors(), 1);
    EXPECT_EQ(f.state.canvas.Pixel(3, 2), canvas::kWhite);
  }
  // A canvas of one colour other than white is not blank either.
  Fixture red;
  red.state.canvas.Fill(0x0000FF);
  red.ts.dialogs.Answer(Answer::No);
  EXPECT_FALSE(red.Select(M::Colors16));
  EXPECT_EQ(red.ts.dialogs.shown.size(), 1);
}

TEST(SelectPixelMode, MonochromeWarnsOnlyWhenTheCanvasIsNotBlackAndWhite) {
  Fixture f(M::Gray4);
  f.state.canvas.SetPixel(0, 0, canvas::kBlack);
  EXPECT_TRUE(f.Select(M::Monochrome));
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty());
  EXPECT_EQ(f.state.canvas.Pixel(0, 0), canvas::kBlack) << "a black and white picture stays";

  Fixture g(M::Gray4);
  g.state.canvas.SetPixel(1, 1, 0x808080);
  g.ts.dialogs.Answer(Answer::Cancel);
  EXPECT_FALSE(g.Select(M::MonochromeInverted));
  EXPECT_EQ(g.ts.dialogs.Texts(), QStringList{" Work Canvas will be cleared ! "});
  EXPECT_EQ(g.ts.dialogs.shown[0].caption, "Warning");
  EXPECT_EQ(g.ts.dialogs.shown[0].type, DialogType::Warning);
  EXPECT_TRUE(g.state.log.Lines().contains("Canceled !"));
  EXPECT_EQ(CurrentPixelMode(g.state.settings), M::Gray4);
  EXPECT_EQ(g.state.canvas.Pixel(1, 1), 0x808080u);

  g.ts.dialogs.Answer(Answer::Ok);
  EXPECT_TRUE(g.Select(M::MonochromeInverted));
  EXPECT_EQ(g.state.canvas.Pixel(1, 1), canvas::kWhite);
}

TEST(SelectPixelMode, GatesStopTheChangeBeforeAnythingHappens) {
  Fixture f;
  f.state.canvas.SetPixel(0, 0, 0x00FF00);
  int calls = 0;
  PixelModeGate forbid;
  forbid.editorForbidsChange = [&](app::AppState&, app::Services&) { return ++calls > 0; };
  EXPECT_FALSE(f.Select(M::Colors16, forbid));
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(f.ts.dialogs.shown.isEmpty()) << "the editor check comes before the question";
  EXPECT_EQ(CurrentPixelMode(f.state.settings), M::Monochrome);

  PixelModeGate keep;
  keep.keepColorMode = [&](app::AppState&, app::Services&) {
    EXPECT_EQ(f.ts.dialogs.shown.size(), 1) << "asked after the canvas question";
    return ++calls > 0;
  };
  f.ts.dialogs.Answer(Answer::Yes);
  EXPECT_FALSE(f.Select(M::Colors16, keep));
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(CurrentPixelMode(f.state.settings), M::Monochrome);
}

TEST(CurrentPixelMode, MixedFlagsResolveInStartUpOrder) {
  // The mode read from the flags alone, and the one the start-up re-selection picks.
  const std::tuple<const char*, bool, std::optional<M>, std::optional<M>> rows[] = {
      {"", false, std::nullopt, std::nullopt},
      {"Monc", true, M::Monochrome, std::nullopt},
      {"Monc Moni", true, M::MonochromeInverted, std::nullopt},
      {"Moni", false, M::MonochromeInverted, M::MonochromeInverted},
      {"Monc C16", false, M::Monochrome, M::Monochrome},
      {"Monc C16", true, M::Monochrome, M::Colors16},
      {"C256NP G256", false, M::Gray256, M::Gray256},
      {"C256NP", false, M::Colors256, M::Colors256},
      {"C8 C16", false, M::Colors16, M::Colors16},
      {"C4096 PM C65535", false, M::Colors4096Packed, M::Colors4096Packed},
      {"C4096 C65535", false, M::Colors65536, M::Colors65536},
      {"C18 C18u", false, M::Colors262k, M::Colors262k},
      {"G16 ST7 gsch", false, M::Gray16Slices, M::Gray16Slices},
      {"G4 G42", false, M::Gray4, M::Gray4},
      {"G32 GRL32 PM", false, M::Gray32Packed, M::Gray32Packed},
      {"G32 C4096", false, M::Gray32RUnpacked, M::Gray32RUnpacked},
      {"C16M PM", false, M::Colors16MPacked, M::Colors16MPacked}};
  for (const auto& [keys, nomat, current, reselect] : rows) {
    SCOPED_TRACE(testing::Message() << keys << (nomat ? " NOMAT" : ""));
    Fixture f;
    for (const auto& key : kModeKeys) {
      f.state.settings.pixel.*key.field = Keys(keys).contains(QString::fromLatin1(key.name));
    }
    f.state.settings.display.NOMAT = nomat;
    EXPECT_EQ(CurrentPixelMode(f.state.settings), current);
    EXPECT_EQ(ReselectStoredPixelMode(f.state, f.ts.services), reselect);
    if (reselect) {
      EXPECT_EQ(CurrentPixelMode(f.state.settings), reselect);
    } else {
      EXPECT_EQ(KeysOf(f.state.settings.pixel), Keys(keys)) << "nothing matched, nothing changes";
    }
  }
  // Without any mode key the numbers are those of monochrome.
  Settings none;
  ApplyModeFlags(none.pixel, 0);
  EXPECT_EQ(PixelsPerByte(none), 8.0);
  EXPECT_EQ(LevelCount(none), 2);
}

}  // namespace
}  // namespace vt::app
