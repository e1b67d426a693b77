// SPDX-License-Identifier: MIT
#include "canvas/work_canvas.h"

#include <gtest/gtest.h>

#include <tuple>

#include "pictures.h"

namespace vt::canvas {
namespace {

using test::Picture;
using test::RowsOf;

void Load(WorkCanvas& canvas, const char* rows) {
  const QImage picture = Picture(QString::fromLatin1(rows));
  canvas.Resize(picture.width(), picture.height());
  Draw(canvas.EditBitmap(), picture, {0, 0}, Blend::Copy);
}

TEST(SelectionRect, CornersInAnyOrderAreSortedAndClippedToTheCanvas) {
  const std::tuple<int, int, int, int, SelectionRect> cases[] = {
      {1, 2, 5, 6, {1, 2, 5, 6}},   {5, 6, 1, 2, {1, 2, 5, 6}},    {5, 2, 1, 6, {1, 2, 5, 6}},
      {-3, -1, 4, 3, {0, 0, 4, 3}}, {2, 1, 40, 30, {2, 1, 10, 8}}, {3, 3, 3, 3, {3, 3, 3, 3}}};
  for (const auto& [xa, ya, xb, yb, expected] : cases) {
    EXPECT_EQ(SelectionRect::Normalized(xa, ya, xb, yb, 10, 8), expected)
        << xa << "," << ya << " " << xb << "," << yb;
  }
  EXPECT_EQ((SelectionRect{1, 2, 4, 5}).StatusText(), "1,2,3,4") << "last pixel included";
}

TEST(UndoStack, StepsThroughTheStatesInOrderAndAnEditForgetsRedo) {
  enum Op { Push, Undo, Redo, Original };
  // The picture: for Push what is drawn before, else what must show.
  const std::tuple<Op, const char*, int, int, bool, bool> steps[] = {
      {Push, "r", 0, 0, true, false}, {Push, "g", 1, 1, true, false},
      {Push, "b", 2, 2, true, false}, {Undo, "g", 1, 2, true, true},
      {Undo, "r", 0, 2, false, true}, {Undo, "r", 0, 2, false, true},
      {Redo, "g", 1, 2, true, true},  {Push, "#", 2, 2, true, false},
      {Redo, "#", 2, 2, true, false}, {Original, "r", 0, 2, false, true},
      {Redo, "g", 1, 2, true, true}};
  WorkCanvas canvas;
  canvas.Resize(1, 1);
  int index = 0;
  for (const auto& [op, picture, position, top, undo, redo] : steps) {
    SCOPED_TRACE(index++);
    switch (op) {
      case Push:
        Load(canvas, picture);
        ASSERT_TRUE(canvas.CopyCanvasToSaveTable());
        break;
      case Undo:
        canvas.Undo();
        break;
      case Redo:
        (void)canvas.Redo();
        break;
      case Original:
        canvas.ReloadOriginal();
        break;
    }
    EXPECT_EQ(RowsOf(canvas.Bitmap()), picture);
    EXPECT_EQ(RowsOf(canvas.DisplayBitmap()), picture);
    const UndoStack& t = canvas.SaveTable();
    EXPECT_EQ(std::tuple(t.UndoPosition(), t.UndoTop(), t.Size(), t.UndoEnabled(), t.RedoEnabled()),
              std::tuple(position, top, top + 1, undo, redo));
  }
}

TEST(UndoStack, UndoWithNothingPushedKeepsThePictureAtPositionZero) {
  WorkCanvas canvas;
  Load(canvas, "r#");
  canvas.Undo();
  EXPECT_EQ(canvas.SaveTable().UndoPosition(), 0);
  EXPECT_EQ(RowsOf(canvas.Bitmap()), "r#");
  EXPECT_FALSE(canvas.Redo()) << "UndoTop 0: redo does nothing";
  EXPECT_FALSE(canvas.SaveTable().RedoEnabled());
}

TEST(UndoStack, HoldsTenThousandStatesAndAFailedPushStaysAdvanced) {
  UndoStack stack;
  const QImage red = Picture("r"), green = Picture("g");
  for (int i = 0; i < UndoStack::kMaxEntries; ++i) {
    ASSERT_TRUE(stack.Push(i == UndoStack::kMaxEntries - 1 ? green : red));
  }
  EXPECT_FALSE(stack.Push(red));
  EXPECT_EQ(stack.UndoPosition(), UndoStack::kMaxEntries);
  EXPECT_EQ(stack.Size(), UndoStack::kMaxEntries);
  stack.StepBack();
  ASSERT_NE(stack.Current(), nullptr);
  EXPECT_EQ(RowsOf(*stack.Current()), "g") << "the last stored state comes back";
}

TEST(Composition, LaysTheStoresInTheirOrder) {
  using L = WorkCanvas::Layers;
  // The floating layer lies at x = 1 in copy mode, or ANDs in copy-transparent mode.
  const std::tuple<const char*, bool, bool, bool, L, const char*, bool, const char*> cases[] = {
      // bitmap "r.#g", Transfer Layer "g.r."
      {"no layer", false, false, false, L::All, "", false, "r.#g"},
      {"opaque layer covers", true, false, false, L::All, "", false, "g.r."},
      {"transparent layer ANDs", true, true, false, L::All, "", false, "#.#g"},
      {"lowest layer ANDs", true, false, true, L::All, "", false, "#.#g"},
      {"left out on request", true, false, false, L::WithoutTransferLayer, "", false, "r.#g"},
      {"floating copy on top", true, false, false, L::All, "#.", false, "g#.."},
      {"floating AND on top", false, false, false, L::All, "bb", true, "rb#g"}};
  for (const auto& [name, visible, transparent, lowest, layers, floating, floatingAnd, display] :
       cases) {
    SCOPED_TRACE(name);
    WorkCanvas canvas;
    Load(canvas, "r.#g");
    canvas.Transfer().Ensure(canvas.Bitmap().size());
    canvas.Transfer().Image() = Picture("g.r.");
    canvas.Transfer().Visible = visible;
    canvas.Transfer().Transparent = transparent;
    canvas.Transfer().Lowest = lowest;
    if (*floating) {
      canvas.Selection().Float(Picture(QString::fromLatin1(floating)), {1, 0}, false);
      canvas.Selection().SetMode(floatingAnd ? CopyMode::CopyTransparent : CopyMode::Copy);
    }
    canvas.CopyBitmapToCanvas(layers);
    EXPECT_EQ(RowsOf(canvas.DisplayBitmap()), display);
    EXPECT_EQ(RowsOf(canvas.Bitmap()), "r.#g") << "composition never changes the bitmap";
  }
}

TEST(FloatingSelection, PasteAndDiscardByCopyMode) {
  const std::tuple<CopyMode, int, bool, const char*> cases[] = {
      {CopyMode::Copy, 2, true, "#r#r"},
      {CopyMode::Copy, 2, false, "#r.g"},
      {CopyMode::Cut, 2, true, "bb#r"},  // the brush fills the cut area
      {CopyMode::Cut, 2, false, "bb.g"},
      {CopyMode::CopyTransparent, 2, true, "#r##"},  // '#' AND '.', 'r' AND 'g'
      {CopyMode::Copy, -1, true, "rr.g"},            // only the visible part lands
  };
  for (const auto& [mode, moveTo, paste, bitmap] : cases) {
    SCOPED_TRACE(::testing::Message() << int(mode) << " to " << moveTo << " " << paste);
    WorkCanvas canvas;
    Load(canvas, "#r.g");
    canvas.Pen.brush = 0xFF0000;
    canvas.Selection().SetMode(mode);
    canvas.Selection().SetArea(0, 0, 2, 1, canvas.Bitmap().size());
    canvas.UpdateTable();
    canvas.SelectionToBitmap();
    canvas.Selection().MoveTo(moveTo, 0);
    ASSERT_TRUE(canvas.Selection().IsFloating());
    EXPECT_EQ(canvas.Selection().Rect().X1, moveTo) << "the origin may stay negative";
    if (paste) {
      EXPECT_EQ(canvas.PasteSelection(false, true), PasteResult::Pasted);
      EXPECT_EQ(canvas.SaveTable().UndoPosition(), 0) << "a paste pushes";
    } else {
      canvas.DisableSelection();
      EXPECT_EQ(canvas.SaveTable().UndoPosition(), -1);
    }
    EXPECT_EQ(RowsOf(canvas.Bitmap()), bitmap);
    EXPECT_EQ(RowsOf(canvas.DisplayBitmap()), bitmap);
    EXPECT_EQ(canvas.Selection().State(), SelectionState::None);
    EXPECT_EQ(canvas.Selection().Rect(), SelectionRect{});
  }
}

TEST(TransferLayer, TakesTheCanvasOrTheFloatingLayer) {
  WorkCanvas canvas;
  Load(canvas, "r#.g");
  canvas.CreateTransferLayer();
  EXPECT_EQ(RowsOf(canvas.Transfer().Image()), "r#.g");
  EXPECT_EQ(RowsOf(canvas.Bitmap()), "....") << "the canvas is cleared";
  EXPECT_EQ(RowsOf(canvas.DisplayBitmap()), "r#.g");

  canvas.Selection().Float(Picture("bb"), {-1, 0}, false);
  canvas.CreateTransferLayer();
  EXPECT_EQ(RowsOf(canvas.Transfer().Image()), "b#.g") << "clipped at the left edge";
  EXPECT_FALSE(canvas.Selection().IsFloating());
  EXPECT_EQ(RowsOf(canvas.Bitmap()), "....");
}

TEST(Snapshot, RestoreLeavesTheCanvasAsItWas) {
  WorkCanvas canvas;
  Load(canvas, "r#|.g");
  const QImage scratch = canvas.Snapshot();
  canvas.Fill(0xFF0000);
  canvas.SetPixel(1, 1, kBlack);
  canvas.Restore(scratch);
  EXPECT_EQ(RowsOf(canvas.Bitmap()), "r#|.g");
  EXPECT_EQ(RowsOf(canvas.DisplayBitmap()), "r#|.g");
  EXPECT_EQ(canvas.SaveTable().UndoPosition(), -1) << "no undo state is added";
}

}  // namespace
}  // namespace vt::canvas
