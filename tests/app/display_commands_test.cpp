// SPDX-License-Identifier: MIT
#include "app/display_commands.h"

#include <gtest/gtest.h>

#include <tuple>

#include "settings/geometry_fixture.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
using settings::test::D;
using settings::test::Fixture;
using settings::test::kHorizontalError;
using settings::test::M;
using settings::test::ScanKeys;
using namespace settings;

TEST(DisplaySize, SetsTheKeysAndTheCanvasWithAtLeastOnePixel) {
  Fixture f;
  SetDisplaySize(f.state, 0, -5);
  EXPECT_EQ(QSize(f.state.settings.display.GWI, f.state.settings.display.GHI), QSize(1, 1));
  EXPECT_EQ(f.state.canvas.Width(), 1);
  f.state.settings.display.USmat = f.state.settings.display.UMATB = true;
  SelectPresetSize(f.state, QSize(480, 272));
  EXPECT_EQ(QSize(f.state.canvas.Width(), f.state.canvas.Height()), QSize(480, 272));
  EXPECT_FALSE(f.state.settings.display.USmat || f.state.settings.display.UMATB);
  // The largest preset is the largest size the user may type.
  EXPECT_EQ(PresetSizes().back(), QSize(kMaxUserWidth, kMaxUserHeight));
}

TEST(UserSizeConfirm, SetsTheSizeRemembersItAndOffersTheOtherScheme) {
  const QString ok = " User Dot Matrix Size has been defined ! ";
  const QString toV = QStringLiteral(
      "Dot matrix size not compatible with horizontal paging scheme !\rDo you want to change "
      "paging scheme orientation to vertical ?");
  const QString toH = QStringLiteral(
      "Dot matrix size not compatible with vertical paging scheme !\rDo you want to change paging "
      "scheme orientation to horizontal ?");
  // A Yes to the switch still meets the direction's own check: td refuses height 60. The fit is
  // judged by its own pixels per byte: 8 colours count 2, 32 gray 4.
  const std::tuple<M, D, int, int, int, QStringList, const char*> rows[] = {
      {M::Monochrome, D::tr, 100, 64, Answer::Yes, {ok, toV}, "td CORN1"},
      {M::Monochrome, D::tr, 100, 64, Answer::No, {ok, toV}, "tr CORN1"},
      {M::Monochrome, D::tu, 128, 30, Answer::Yes, {ok, toH}, "tr CORN1"},
      {M::Monochrome, D::tr, 100, 60, Answer::Yes, {ok, toV, kHorizontalError}, "tr CORN1"},
      {M::Colors8, D::tr, 100, 64, Answer::No, {ok}, "tr CORN1"},
      {M::Colors8, D::tr, 101, 64, Answer::No, {ok, toV}, "tr CORN1"},
      {M::Gray32Packed, D::tr, 130, 64, Answer::No, {ok, toV}, "tr CORN1"},
      {M::Gray32Packed, D::tr, 132, 64, Answer::No, {ok}, "tr CORN1"},
      {M::Gray16Horizontal, D::tr, 101, 64, Answer::No, {ok, toV}, "tr CORN1"},
      {M::Colors256, D::tr, 101, 64, Answer::No, {ok}, "tr CORN1"}};
  for (const auto& [mode, direction, width, height, answer, texts, keys] : rows) {
    SCOPED_TRACE(testing::Message()
                 << PixelModeName(mode).toStdString() << " " << width << "x" << height);
    Fixture f(mode, direction);
    f.ts.dialogs.Answer(Answer::Ok);
    f.ts.dialogs.Answer(answer);
    DisplaySettings& display = f.state.settings.display;
    display.MATW = width;
    display.MATH = height;
    ASSERT_TRUE(LCDmatrixSizeUserDefinedClick(f.state, f.ts.services));

    EXPECT_EQ(f.ts.dialogs.Texts(), texts);
    const char* const captions[] = {"Information", "Warning", "Error"};
    for (int i = 0; i < texts.size(); ++i) EXPECT_EQ(f.ts.dialogs.shown[i].caption, captions[i]);
    EXPECT_EQ(ScanKeys(f.state.settings), keys);
    EXPECT_EQ(QSize(display.GWI, display.GHI), QSize(width, height));
    EXPECT_EQ(f.state.canvas.Width(), width);
    EXPECT_TRUE(display.USmat && display.UMATB);
    EXPECT_EQ(f.state.settings.customSizes[0], QSize(width, height));
    const QStringList& log = f.state.log.Lines();
    const qsizetype at = log.indexOf(QStringLiteral("H:=%1 W:=%2").arg(height).arg(width));
    ASSERT_GE(at, 0);
    EXPECT_EQ(log.value(at + 1), "Dot matrix size = User defined");
  }
}

TEST(UserSizeConfirm, NoTypedSizeIsReportedAsAFaultAndChangesNothing) {
  for (const QSize typed : {QSize(0, 64), QSize(128, 0)}) {
    Fixture f;
    f.state.settings.display.MATW = typed.width();
    f.state.settings.display.MATH = typed.height();
    EXPECT_FALSE(LCDmatrixSizeUserDefinedClick(f.state, f.ts.services));
    EXPECT_EQ(f.ts.dialogs.Texts(), QStringList{"User Size Define Error !"});
    EXPECT_EQ(f.ts.dialogs.shown[0].caption, "Error");
    EXPECT_TRUE(f.state.log.Lines().contains("User Size Define Error"));
    EXPECT_EQ(f.state.settings.display.GWI, 128);
    EXPECT_FALSE(f.state.settings.display.USmat);
    EXPECT_TRUE(CustomSizeCaptions(f.state.settings).isEmpty());
  }
}

}  // namespace
}  // namespace vt::app
