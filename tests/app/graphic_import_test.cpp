// SPDX-License-Identifier: MIT
#include "app/graphic_import.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QtEndian>

#include "app/canvas_commands.h"
#include "app/display_commands.h"
#include "app/shell_commands.h"
#include "app/threshold_commands.h"
#include "canvas/graphic_loading.h"
#include "canvas/pictures.h"
#include "canvas/threshold.h"
#include "settings/geometry.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

using namespace canvas;

using canvas::test::Picture;

// A 1x1 GIF89a of one black pixel, written out byte by byte, and the same with a second frame.
const QByteArray kGif =
    QByteArray::fromHex("47494638396101000100800000000000ffffff2c00000000010001000002024401003b");
const QByteArray kTwoFrameGif = QByteArray::fromHex(
    "47494638396101000100800000000000ffffff2c000000000100010000020244010"
    "02c00000000010001000002024401003b");

QByteArray Encoded(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, format)) << format;
  return bytes;
}

quint32 Crc32(const QByteArray& data) {
  quint32 crc = 0xFFFFFFFFu;
  for (const char c : data) {
    crc ^= quint8(c);
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

/// A PNG whose header claims `w` x `h`, with a correct header checksum.
QByteArray PngClaiming(quint32 w, quint32 h) {
  QByteArray png = Encoded(Picture(QStringLiteral("#.")), "png");
  qToBigEndian(w, png.data() + 16);
  qToBigEndian(h, png.data() + 20);
  qToBigEndian(Crc32(png.mid(12, 17)), png.data() + 29);
  return png;
}

class Loading : public ::testing::Test {
 protected:
  Loading() { app::SetDisplaySize(state, 8, 4); }
  QString File(const QString& name, const QByteArray& bytes) {
    const QString path = t.folders.Path(name);
    EXPECT_TRUE(WriteFileAtomically(path, bytes).ok());
    return path;
  }
  vt::test::TestServices t;
  app::AppState state;
};

TEST_F(Loading, EachFormatDecodesAndEachDamagedOneIsRefusedLeavingTheCanvas) {
  const QImage art = Picture(QStringLiteral("#..r|.#.g"));
  const QByteArray svg =
      "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='2'>"
      "<rect x='0' y='0' width='2' height='2' fill='black'/></svg>";
  const struct {
    const char* name;
    QByteArray bytes;
    QSize size;
  } cases[] = {
      {"a.bmp", Encoded(art, "bmp"), {4, 2}},
      {"a.png", Encoded(art, "png"), {4, 2}},
      {"a.jpg", Encoded(art, "jpeg"), {4, 2}},
      {"a.tif", Encoded(art, "tiff"), {4, 2}},
      {"a.ico", Encoded(art, "ico"), {4, 2}},
      {"a.gif", kGif, {1, 1}},
      {"a.svg", svg, {8, 4}},  // rendered at the canvas size
  };
  const QImage before = state.canvas.Snapshot();
  for (const auto& c : cases) {
    const QString name = QString::fromLatin1(c.name);
    const auto decoded = DecodeGraphic(File(name, c.bytes), QSize(8, 4));
    ASSERT_TRUE(decoded.ok()) << c.name << " " << decoded.error().ToString().toStdString();
    EXPECT_EQ(decoded.value().frames.first().size(), c.size) << c.name;
    EXPECT_LT(qGray(decoded.value().frames.first().pixel(0, 0)), 40)
        << c.name;  // black, JPEG or not
    for (const QByteArray& damaged : {c.bytes.left(c.bytes.size() / 3), QByteArray("junk")}) {
      EXPECT_FALSE(ImportImageMDIChild(state, t.services, File(name, damaged), false)) << c.name;
    }
  }
  // Without a size to fit, an SVG keeps its own.
  EXPECT_EQ(DecodeGraphic(File("b.svg", svg), {}).value().frames.first().size(), QSize(4, 2));
  EXPECT_EQ(t.dialogs.Texts(), QStringList(14, QStringLiteral("Graphic loading Error")));
  EXPECT_EQ(state.canvas.Snapshot(), before);
  EXPECT_FALSE(state.canvas.Selection().IsFloating());
}

TEST_F(Loading, AnEnormousHeaderIsRefusedBeforeDecoding) {
  const auto decoded =
      DecodeGraphic(File(QStringLiteral("huge.png"), PngClaiming(60000, 60000)), {});
  ASSERT_FALSE(decoded.ok());
  EXPECT_EQ(decoded.error().kind, Error::Kind::Limit);
  EXPECT_TRUE(decoded.error().message.contains(QStringLiteral("60000 x 60000")));
}

TEST_F(Loading, ImportTellsWhatItCannotTake) {
  EXPECT_FALSE(ImportImageMDIChild(state, t.services, File(QStringLiteral("n.txt"), "x"), false));
  EXPECT_FALSE(ImportImageMDIChild(state, t.services, t.folders.Path(QStringLiteral("d")), true));
  EXPECT_EQ(t.dialogs.Texts(),
            (QStringList{QStringLiteral("n.txt is is not a valid graphic file ! "),
                         QStringLiteral(" Please select file to import in the File List ! ")}));
  EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("Loading a Graphic Error"));
}

TEST_F(Loading, APictureFloatsAtTheCanvasSizeAfterTheResizeQuestion) {
  // Exactly the canvas size: no question; black and white: nothing to convert.
  const QString fits =
      File(QStringLiteral("Fits.png"),
           Encoded(Picture(QStringLiteral("#.......|........|........|.......#")), "png"));
  ASSERT_TRUE(ImportImageMDIChild(state, t.services, fits, false));
  EXPECT_TRUE(t.dialogs.shown.isEmpty());
  EXPECT_TRUE(state.canvas.Selection().IsFloating());
  EXPECT_FALSE(state.canvas.Selection().ConversionPending());
  EXPECT_EQ(state.settings.output.nbmfn, QStringLiteral("Fits.png"));

  // Twice the canvas in colour: Yes halves it; monochrome leaves it waiting for the threshold.
  state.canvas.DisableSelection();
  QImage big(16, 8, QImage::Format_RGB32);
  big.fill(qRgb(200, 30, 30));
  t.dialogs.Answer(platform::Answer::Yes);
  ASSERT_TRUE(ImportImageMDIChild(state, t.services,
                                  File(QStringLiteral("big.png"), Encoded(big, "png")), false));
  EXPECT_EQ(t.dialogs.Texts(),
            QStringList{
                QStringLiteral(" Picture size larger than Work Canvas   \r \r Picture Size = H : 8 "
                               "W : 16\r Resize Graphic to fit Work Canvas ? ")});
  EXPECT_EQ(state.canvas.Selection().Layer().size(), QSize(8, 4));
  EXPECT_TRUE(state.canvas.Selection().ConversionPending());
  EXPECT_TRUE(state.canvas.Selection().ThresholdOn);
  EXPECT_TRUE(state.blackWhite.Visible);
  EXPECT_TRUE(
      state.log.Lines().contains(QStringLiteral("Use trackbar, move and then paste selection...")));
  // The composed frame shows the layer over the canvas before any paste.
  EXPECT_EQ(state.canvas.DisplayBitmap().pixel(0, 0), qRgb(200, 30, 30));
  EXPECT_EQ(state.canvas.Bitmap().pixel(0, 0), qRgb(255, 255, 255));
}

// Each way out of a layer waiting for its conversion hides the threshold tool.
TEST_F(Loading, PasteEscapeAndDisableHideTheThresholdTool) {
  QImage gray(4, 2, QImage::Format_RGB32);
  gray.fill(qRgb(100, 100, 100));
  const std::function<void()> ends[] = {
      [&] { EXPECT_TRUE(DoPaste(state, t.services, BlackWhiteConversions(state))); },
      [&] { EscapeSelection(state); },
      [&] { DeleteSelectionLayer(state); },
  };
  for (const auto& end : ends) {
    AssignInPutBitmap(state, t.services, gray, true);
    ASSERT_TRUE(state.blackWhite.Visible);
    end();
    EXPECT_FALSE(state.blackWhite.Visible);
    EXPECT_FALSE(state.canvas.Selection().IsFloating());
  }
  // The paste asked first ("Ok": threshold at the middle, 127 * 65792 above gray 100).
  EXPECT_EQ(state.canvas.Pixel(0, 0), kBlack);
}

// Dithering on load runs before the check: to black and white, nothing waits for the slider.
TEST_F(Loading, DitheringOnLoadMakesTheCheckFindNothingToConvert) {
  QImage picture(2, 1, QImage::Format_RGB32);
  picture.setPixel(0, 0, qRgb(100, 100, 100));  // 100 * 256 < 32513: black
  picture.setPixel(1, 0, qRgb(200, 200, 200));  // white
  state.blackWhite.DitherOnLoad = true;
  state.blackWhite.PreviewDither = {DitherMethod::Nearest, DitherReduction::Monochrome};
  AssignInPutBitmap(state, t.services, picture, true);
  EXPECT_FALSE(state.canvas.Selection().ConversionPending());
  EXPECT_FALSE(state.blackWhite.Visible);
  EXPECT_EQ(canvas::test::RowsOf(state.canvas.Selection().Layer()), QStringLiteral("#."));
}

TEST_F(Loading, AGifLoadsItsFirstFrameAndSaysSo) {
  const struct {
    QByteArray bytes;
    QStringList dialogs;
    QString logged;
  } cases[] = {
      {kGif, {QStringLiteral(" Single layered GIF loaded, no animation ! ")}, {}},
      {kTwoFrameGif,
       {},
       QStringLiteral("2 layers in loaded GIF, animation not available yet: first layer loaded")},
  };
  for (const auto& c : cases) {
    t.dialogs.shown.clear();
    ASSERT_TRUE(
        ImportImageMDIChild(state, t.services, File(QStringLiteral("a.gif"), c.bytes), false));
    EXPECT_EQ(t.dialogs.Texts(), c.dialogs);
    if (!c.dialogs.isEmpty()) EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("Info"));
    if (!c.logged.isEmpty()) EXPECT_TRUE(state.log.Lines().contains(c.logged));
    EXPECT_EQ(state.canvas.Selection().Layer().size(), QSize(1, 1));
  }
}

TEST_F(Loading, ReloadTakesTheLastFileAgainOrSaysWhyNot) {
  const QString title = QStringLiteral("Reload Last Canvas File");
  EXPECT_FALSE(ReloadLastCanvasButtonClick(state, t.services));
  const QString path =
      File(QStringLiteral("Pic.png"), Encoded(Picture(QStringLiteral("#..#")), "png"));
  ASSERT_TRUE(LoadGraphicFile(state, t.services, path));
  EXPECT_EQ(state.MRUList.value(0), QFileInfo(path).absoluteFilePath());
  ASSERT_TRUE(DoPaste(state, t.services, BlackWhiteConversions(state)));
  state.canvas.Clear();
  ASSERT_TRUE(ReloadLastCanvasButtonClick(state, t.services));
  EXPECT_EQ(canvas::test::RowsOf(state.canvas.Selection().Layer()), QStringLiteral("#..#"));
  // A file since gone is named.
  // A new run finds it among the recent files.
  state.files.LastCanvasFile.clear();
  state.MRUList.prepend(QStringLiteral("/work/old.c"));
  state.canvas.DisableSelection();
  ASSERT_TRUE(ReloadLastCanvasButtonClick(state, t.services));
  EXPECT_EQ(state.files.LastCanvasFile, QFileInfo(path).absoluteFilePath());
  ASSERT_TRUE(QFile::remove(path));
  EXPECT_FALSE(ReloadLastCanvasButtonClick(state, t.services));
  EXPECT_EQ(
      t.dialogs.Texts(),
      (QStringList{QStringLiteral(" No graphic file has been loaded onto the Work Canvas yet ! "),
                   QFileInfo(path).absoluteFilePath() + QStringLiteral(" not found ! ")}));
  EXPECT_EQ(t.dialogs.shown[0].caption, title);
  EXPECT_EQ(t.dialogs.shown[1].caption, title);
}

TEST_F(Loading, TheImportAngleTurnsPicturesButNotGifsOrSvgs) {
  state.ImportAngle = 90;  // clockwise: the top left pixel goes to the top right
  const QByteArray art = Encoded(Picture(QStringLiteral("#..|...")), "png");
  ASSERT_TRUE(ImportImageMDIChild(state, t.services, File(QStringLiteral("a.png"), art), false));
  EXPECT_EQ(canvas::test::RowsOf(state.canvas.Selection().Layer()), QStringLiteral(".#|..|.."));
  state.canvas.DisableSelection();
  ASSERT_TRUE(ImportImageMDIChild(state, t.services, File(QStringLiteral("b.gif"), kGif), false));
  EXPECT_EQ(state.canvas.Selection().Layer().size(), QSize(1, 1));
  state.canvas.DisableSelection();
  t.dialogs.shown.clear();

  // A turn whose picture passes the size limit warns and keeps the picture as it came.
  state.ImportAngle = 45;
  state.files.ImportExtension = QStringLiteral(".BMP");
  t.dialogs.Answer(platform::Answer::Ok);
  t.dialogs.Answer(platform::Answer::No);  // then: not resized to the canvas
  AssignInPutBitmap(state, t.services, QImage(1, 60000, QImage::Format_RGB32), true);
  ASSERT_FALSE(t.dialogs.shown.isEmpty());
  EXPECT_EQ(t.dialogs.shown[0].text, QStringLiteral(" Picture too large for rotation \r "));
  EXPECT_EQ(t.dialogs.shown[0].caption, QStringLiteral("Warning"));
  EXPECT_TRUE(state.log.Lines().contains(QStringLiteral("Error Import Rotation : Angle= 45")));
  EXPECT_EQ(state.canvas.Selection().Layer().size(), QSize(1, 60000));
}

TEST(CalcCloseCrop, HoldsEveryPixelUnlikeTheFirstAndWants24Bits) {
  EXPECT_EQ(CalcCloseCrop(Picture(QStringLiteral("....|.#..|...r"))).value(), QRect(1, 1, 3, 2));
  EXPECT_EQ(CalcCloseCrop(Picture(QStringLiteral("..|.."))).value(), QRect());
  const auto mono = CalcCloseCrop(QImage(4, 4, QImage::Format_Mono));
  ASSERT_FALSE(mono.ok());
  EXPECT_EQ(mono.error().message, QStringLiteral("Incorrect bit depth, bitmap must be 24-bit!"));
}

}  // namespace
}  // namespace vt::app
