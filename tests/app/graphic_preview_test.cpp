// SPDX-License-Identifier: MIT
#include "canvas/graphic_preview.h"

#include <gtest/gtest.h>

#include "app/display_commands.h"
#include "app/graphic_import.h"
#include "app/state.h"
#include "canvas/pictures.h"
#include "settings/geometry.h"
#include "temp_folders.h"

namespace vt::app {
namespace {

using namespace canvas;

using canvas::test::Picture;
using canvas::test::RowsOf;

class PreviewTest : public ::testing::Test {
 protected:
  PreviewTest() { app::SetDisplaySize(state, 8, 4); }
  /// Opens a picture of `rows` saved as a PNG.
  void Open(const char* rows) {
    const QString path = t.folders.Path(QStringLiteral("shot.png"));
    ASSERT_TRUE(Picture(QString::fromLatin1(rows)).save(path));
    ASSERT_TRUE(ShowPreview(state, t.services, preview, path));
  }
  vt::test::TestServices t;
  app::AppState state;
  GraphicPreview preview;
};

// Corners in any order, inclusive, clipped; a move stops at the edges.
TEST_F(PreviewTest, TheAreaIsDrawnClippedAndMovedInsideThePicture) {
  Open("#...|.#..|..#.");
  const struct {
    QPoint a, b, move;
    QRect drawn, moved;
  } cases[] = {
      {{0, 0}, {1, 1}, {1, 1}, {0, 0, 2, 2}, {1, 1, 2, 2}},
      {{3, 2}, {2, 1}, {-5, 0}, {2, 1, 2, 2}, {0, 1, 2, 2}},
      {{-4, 1}, {9, 9}, {0, -1}, {0, 1, 4, 2}, {0, 0, 4, 2}},
  };
  for (const auto& c : cases) {
    preview.SelectArea(c.a, c.b);
    EXPECT_EQ(preview.Area(), c.drawn) << c.a.x() << "," << c.a.y();
    preview.MoveArea(c.move);
    EXPECT_EQ(preview.Area(), c.moved) << c.a.x() << "," << c.a.y();
  }
  preview.SelectArea({1, 0}, {2, 1});
  EXPECT_EQ(RowsOf(preview.Selected()), QStringLiteral("..|#."));
  preview.ClearArea();
  EXPECT_EQ(preview.Selected().size(), QSize(4, 3));
}

TEST_F(PreviewTest, ResizeToFitScalesTheAreaToTheCanvas) {
  Open("################|################|....############|....############");
  preview.SelectArea({0, 2}, {3, 3});  // the white 4 x 2 corner
  preview.ResizeToFit(QSize(8, 4));
  EXPECT_EQ(preview.Area(), QRect());
  EXPECT_EQ(RowsOf(preview.Picture()), QStringLiteral("........|........|........|........"));
}

TEST_F(PreviewTest, TheImportTakesTheAreaAsTheFloatingLayer) {
  EXPECT_FALSE(ImportGraphicPreview(state, t.services, preview));
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].text, QStringLiteral("Please select the graphic file to import"));
  EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("No Graphic Selected"));

  Open("#...|.#..|..#.");
  preview.SelectArea({1, 1}, {2, 2});
  ASSERT_TRUE(ImportGraphicPreview(state, t.services, preview));
  EXPECT_EQ(RowsOf(state.canvas.Selection().Layer()), QStringLiteral("#.|.#"));
  EXPECT_EQ(state.canvas.Selection().Rect(), (SelectionRect{0, 0, 2, 2}));
  EXPECT_EQ(state.settings.output.nbmfn, QStringLiteral("shot.png"));

  // A file that does not decode leaves the preview as it was.
  const QString junk = t.folders.Path(QStringLiteral("junk.png"));
  ASSERT_TRUE(QFile(junk).open(QIODevice::WriteOnly));
  EXPECT_FALSE(ShowPreview(state, t.services, preview, junk));
  EXPECT_EQ(t.dialogs.Texts().last(), QStringLiteral("Graphic loading Error"));
  EXPECT_EQ(preview.Picture().size(), QSize(4, 3));
}

}  // namespace
}  // namespace vt::app
