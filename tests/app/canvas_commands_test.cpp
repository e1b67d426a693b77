// SPDX-License-Identifier: MIT
#include "app/canvas_commands.h"

#include <gtest/gtest.h>

#include <tuple>

#include "canvas/pictures.h"
#include "settings/pixel_modes.h"
#include "support/temp_folders.h"

namespace vt::app {
namespace {

using namespace canvas;

namespace Answer = platform::Answer;
using canvas::test::Picture;
using canvas::test::RowsOf;

/// A monochrome state with a 4 x 1 white canvas and a colour layer floating at the left, still
/// to be converted.
struct Fixture {
  vt::test::TestServices ts;
  app::AppState state;
  int dithered = 0;
  LayerConversion conversion{[this](QImage& layer) {
                               ++dithered;
                               layer = Picture("#.");
                             },
                             [](QImage& layer) { layer = Picture(".#"); }};
  Fixture() {
    settings::ApplyModeFlags(state.settings.pixel,
                             settings::Info(settings::PixelMode::Monochrome).flags);
    state.canvas.Resize(4, 1);
    state.canvas.Selection().Float(Picture("rg"), {0, 0}, true);
    EnableSelection(state);
    state.log.Clear();
  }
  QString Rows() const { return RowsOf(state.canvas.Bitmap()); }
};

TEST(DoPaste, AColourLayerInMonochromeAsksFirstAndConvertsByTheAnswer) {
  const std::tuple<int, bool, const char*, const char*> cases[] = {
      {Answer::Retry, true, "#...", "Selection pasted "},  // "Dithering"
      {Answer::Ok, true, ".#..", "Selection pasted "},     // threshold at the middle
      {Answer::Cancel, false, "....", "Canceled !"}};
  for (const auto& [answer, pasted, bitmap, status] : cases) {
    SCOPED_TRACE(answer);
    Fixture f;
    f.ts.dialogs.Answer(answer);
    EXPECT_EQ(DoPaste(f.state, f.ts.services, f.conversion), pasted);
    ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
    EXPECT_EQ(f.ts.dialogs.shown[0].text,
              " Image conversion to monochrome has not been done !\r  \rPerform Dithering "
              "(AUTO-Conversion to Black and White)\ror for MANUAL Conversion, move Threshold "
              "Slider located on top of Work Canvas ");
    EXPECT_EQ(f.ts.dialogs.shown[0].customCaptions, QStringList({"Ok", "Cancel", "Dithering"}));
    EXPECT_EQ(f.Rows(), bitmap);
    EXPECT_EQ(f.state.log.StatusText(), status);
    EXPECT_EQ(app::SelectionPending(f.state), !pasted);
    EXPECT_EQ(f.state.canvas.Selection().ThresholdOn, !pasted);
  }
}

TEST(ResolveFloatingSelection, PasteNowDiscardOrCancel) {
  const std::tuple<int, bool, bool, const char*> cases[] = {
      {Answer::Ok, true, false, "#..."},      // Paste now, then Dithering
      {Answer::Cancel, true, false, "...."},  // Discard
      {Answer::Retry, false, true, "...."},   // Cancel
  };
  for (const auto& [answer, goOn, floating, bitmap] : cases) {
    SCOPED_TRACE(answer);
    Fixture f;
    f.ts.dialogs.Answer(answer);
    f.ts.dialogs.Answer(Answer::Retry);
    EXPECT_EQ(ResolveFloatingSelection(f.state, f.ts.services, f.conversion), goOn);
    EXPECT_EQ(f.ts.dialogs.shown[0].text,
              " Floating Selection layer has not been pasted to Work Canvas !\r Paste now, "
              "Discard selection or Cancel ? ");
    EXPECT_EQ(f.ts.dialogs.shown[0].customCaptions,
              QStringList({"Paste now", "Discard", "Cancel"}));
    EXPECT_EQ(f.state.canvas.Selection().IsFloating(), floating);
    EXPECT_EQ(f.Rows(), bitmap);
  }
}

TEST(PasteMultiple, RefusesWhileTheConversionIsOutstanding) {
  Fixture f;
  EXPECT_FALSE(PasteMultiple(f.state, f.ts.services));
  ASSERT_EQ(f.ts.dialogs.shown.size(), 1);
  EXPECT_EQ(f.ts.dialogs.shown[0].caption, "Pending Image conversion");
  EXPECT_EQ(f.Rows(), "....");
  f.state.canvas.Selection().MarkConverted();
  EXPECT_TRUE(PasteMultiple(f.state, f.ts.services));
  f.state.canvas.Selection().MoveTo(2, 0);
  EXPECT_TRUE(PasteMultiple(f.state, f.ts.services));
  EXPECT_EQ(f.Rows(), "rgrg") << "one layer stamped twice";
  EXPECT_TRUE(app::SelectionPending(f.state)) << "the layer stays for the next stamp";
  EXPECT_EQ(f.state.canvas.SaveTable().UndoTop(), 1);
}

TEST(CanvasCommands, UndoRedoAndOriginalShowTheirStatus) {
  Fixture f;
  f.state.canvas.DisableSelection();
  for (Color c : {Color(0x0000FF), Color(0x00FF00), Color(0xFF0000)}) {
    f.state.canvas.Fill(c);
    ASSERT_TRUE(PushUndo(f.state));
  }
  EXPECT_FALSE(f.state.modes.ArtworkFresh);
  f.state.log.Clear();
  UndoButtonClick(f.state);
  EXPECT_EQ(f.Rows(), "gggg");
  OriginalImagelButtonClick(f.state);
  EXPECT_EQ(f.Rows(), "rrrr");
  RedoButtonClick(f.state);
  EXPECT_EQ(f.Rows(), "gggg");
  EXPECT_EQ(f.state.log.Lines(),
            QStringList({"Last canvas reloaded from stack", "Original image reloaded from stack ",
                         "Next canvas status reloaded from stack"}));
}

TEST(CanvasCommands, ClearAsksAndEscapeDropsTheLayer) {
  Fixture f;
  EscapeSelection(f.state);
  EXPECT_FALSE(app::SelectionPending(f.state));
  f.state.canvas.Fill(0x0000FF);
  f.ts.dialogs.Answer(Answer::No);
  EXPECT_FALSE(ClearWorkCanvas(f.state, f.ts.services));
  EXPECT_EQ(f.Rows(), "rrrr");
  EXPECT_TRUE(ClearWorkCanvas(f.state, f.ts.services));
  EXPECT_EQ(f.Rows(), "....");
  EXPECT_EQ(f.state.canvas.SaveTable().UndoPosition(), 0) << "clearing pushes";
  EXPECT_EQ(f.ts.dialogs.shown.back().caption, "Confirmation");
  EXPECT_EQ(f.ts.dialogs.shown.back().text, " Are you sure to want to clear the work canvas ? ");
  EXPECT_EQ(f.state.log.Lines().first(), "Aborted selection (escape)");
  EXPECT_EQ(f.state.log.StatusText(), "Canvas cleared");
}

}  // namespace
}  // namespace vt::app
