// SPDX-License-Identifier: MIT
#include "app/export_driver.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <array>
#include <functional>

#include "app/display_commands.h"
#include "app/state.h"
#include "convert/convert_test_util.h"
#include "convert/header_template.h"
#include "recording_messenger.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

using namespace convert;

using convert::test::Hex;
using convert::test::Picture;
namespace Answer = platform::Answer;

// 16 x 16, black on the diagonal: row y holds x = y. By rows, MSB first, row y gives
// 0x80 >> y, 0x00 for y < 8 and 0x00, 0x80 >> (y - 8) below.
QImage Diagonal() {
  QImage image(16, 16, QImage::Format_RGB32);
  image.fill(qRgb(255, 255, 255));
  for (int i = 0; i < 16; ++i) image.setPixel(i, i, qRgb(0, 0, 0));
  return image;
}

class Export : public ::testing::Test {
 protected:
  Export() {
    Reset();
    vt::test::RecordingMessenger headerLog;
    EXPECT_TRUE(
        WriteDefaultHeaderFile(state.files.SettingsFile, HeaderKind::Graphics, true, headerLog)
            .ok());
  }
  /// A fresh state with the diagonal on the canvas and the output folder in the temp folder.
  void Reset() {
    state.settings = settings::Settings();
    state.modes = app::ModeFlags();
    state.files = app::FileNames();
    state.text.Clear();
    state.files.SettingsFile = t.folders.Path(QStringLiteral("p.LCD"));
    state.settings.folder.OFP = t.folders.Path(QStringLiteral("out"));
    state.settings.output.nbmfn = QStringLiteral("Logo.png");
    Draw(Diagonal());
    t.dialogs.shown.clear();
    QFile::remove(OutFile());
  }
  void Draw(const QImage& image) {
    app::SetDisplaySize(state, image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QRgb v = image.pixel(x, y);
        state.canvas.SetPixel(x, y, qRed(v) | (qGreen(v) << 8) | (qBlue(v) << 16));
      }
    }
  }
  ExportResult Run(ExportRequest request = {}, bool confirmed = true) {
    return EncodeButtonClick(state, t.services, std::move(request), confirmed);
  }
  /// The data constants of the editor text, in order.
  std::vector<int> Bytes() const {
    std::vector<int> bytes;
    static const QRegularExpression constant(QStringLiteral("0x([0-9A-F]{2})"));
    for (auto it = constant.globalMatch(state.text.Text()); it.hasNext();) {
      bytes.push_back(it.next().captured(1).toInt(nullptr, 16));
    }
    return bytes;
  }
  QString OutFile(const char* name = "Logo.h") const {
    return state.settings.folder.OFP + QLatin1Char('/') + QLatin1String(name);
  }
  QStringList Captions() const {
    QStringList captions;
    for (const auto& r : t.dialogs.shown) captions << platform::CaptionOf(r);
    return captions;
  }

  vt::test::TestServices t;
  app::AppState state;
};

void SetTd(settings::Settings& s, bool corner1) {
  s.scan = settings::ScanSettings{};
  s.scan.tr = false;
  s.scan.td = true;
  s.scan.CORN1 = corner1;
  s.scan.CORN2 = !corner1;
}

TEST_F(Export, EachCheckShowsItsMessageAndTheFirstFailingOneWins) {
  using Setup = std::function<void(app::AppState&, settings::PixelModeSettings&, ExportRequest&)>;
  const ExportStatus stop = ExportStatus::Stopped, go = ExportStatus::Written;
  struct Case {
    Setup setup;
    const char* text;
    const char* caption;
    ExportStatus status;
  } cases[] = {
      {[](auto& s, auto&, auto&) { s.modes.EditableFontActive = true; },
       " A Font creation mode is still active ! Plase quit/exit this mode first !",
       "Font creation active", stop},
      {[](auto& s, auto&, auto&) { s.text.AddLine(QStringLiteral("old")); },  // "Abort + Save"
       "Data in Text Editor has not been saved to File ! \rOverwrite if not Willing to Save\r< "
       "See File Explorer Window",
       "Warning", stop},
      {[](auto& s, auto& p, auto&) {
         s.settings.width = {false, false, false, true, false};
         p.ccomp = true;
       },
       "Hex or Binay file data output is not available for animations or data compression ! "
       "\rDisable Data Compression or choose 8/16/32 bits output",
       "Error ", stop},
      {[](auto& s, auto&, auto& r) {
         SetTd(s.settings, true);
         r.AreaChoice = kAreaUpperHalf;
       },
       "Upper and lower Display half data only \rin Horizontal Data Direction Scheme ! \rand not "
       "in animation mode",
       "Warning", go},
      {[](auto&, auto&, auto& r) { r.AreaChoice = kAreaSubdivision; },
       "No Work Canvas Subdivision defined \r \r ", "Export Subdivision Error", go},
      {[](auto&, auto&, auto& r) { r.explorerFileEditing = true; },
       " Please first Save File or Cancel in File Explorer Window \r ", "File not saved",
       ExportStatus::Cancelled},
      {[](auto&, auto&, auto& r) {
         r.AreaChoice = kAreaSubdivision;
         r.subdivisions = {{0, 0, 8, 8}};
       },
       " No Work Canvas Subdivision Has Been Selected ! \r  ", "Subdivision Selection Error", stop},
      {[](auto& s, auto& p, auto&) {
         s.settings.width = {false, true, false, false, false};
         p.ccomp = true;
       },
       "Sorry, Data compression only works in the 8 bit output mode !", "Info", stop},
      {[](auto& s, auto& p, auto&) {
         settings::ApplyModeFlags(p, settings::kFlagG16 | settings::kFlagGsch);
         SetTd(s.settings, true);
       },
       "Sorry this data orientation is yet not available in this grayscale mode > 2 horizontal "
       "pixels",
       "Error", stop},
      {[](auto& s, auto& p, auto&) {
         settings::ApplyModeFlags(p, settings::kFlagC8);
         s.settings.scan.tr = false;
         s.settings.scan.tu = true;
       },
       " Sorry, this 3bpp color conversion scheme \r is under development ", "Under Dev", stop},
      {[](auto&, auto& p, auto&) {
         settings::ApplyModeFlags(p, settings::kFlagG42 | settings::kFlagNeg);
       },
       "Sorry, the 2 pages 4bpp grayscale conversion is only allowed when :  \r8 bit mode, Hex "
       "data and no animation",
       "Error", stop},
      {[](auto& s, auto& p, auto&) { p.ccomp = s.settings.block.ColRx = true; },
       "Data compression disabled in this mode !", "Confirm", go},
      {[](auto&, auto& p, auto&) {
         p.ccomp = true;
         p.bw8 = false;
       },
       "Data compression will be disabled for 6 bit wide mode encoding! ", "Confirm", go},
      {[](auto& s, auto& p, auto&) {
         settings::ApplyModeFlags(p, settings::kFlagG42);
         SetTd(s.settings, false);
       },
       " The sliced paging scheme is not implemented in this mode ! \rUse all right,all left ,all "
       "up or all down direction",
       "Error", stop},
      {[](auto&, auto& p, auto&) { p.ST7 = true; },
       " The ST7528 special Mode is only working in 4bpp Grayscale mode ! ", "Error", stop},
      {[](auto& s, auto& p, auto& r) {  // all at once: the first check wins
         s.modes.EditableFontActive = p.ST7 = r.explorerFileEditing = true;
         s.text.AddLine(QStringLiteral("old"));
       },
       " A Font creation mode is still active ! Plase quit/exit this mode first !",
       "Font creation active", stop},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    Reset();
    ExportRequest request;
    c.setup(state, state.settings.pixel, request);  // the keys, before the dialog opens
    request = FillExportDialog(state).request;
    c.setup(state, state.settings.pixel, request);  // what the user changes in the dialog
    EXPECT_EQ(Run(request).status, c.status);
    EXPECT_EQ(t.dialogs.Texts(), QStringList{QString::fromUtf8(c.text)});
    EXPECT_EQ(Captions(), QStringList{QString::fromUtf8(c.caption)});
    EXPECT_EQ(QFile::exists(OutFile()), c.status == go);
    if (c.status == go) {
      EXPECT_FALSE(state.settings.pixel.ccomp);  // refused for good
    }
  }
  Reset();
  EXPECT_EQ(Run({}, /*confirmed=*/false).status, ExportStatus::Cancelled);
  EXPECT_TRUE(t.dialogs.shown.isEmpty());
}

TEST_F(Export, HalfExportsTakeTheirRowsForTheRunOnly) {
  state.settings.format.OINT = 16;
  state.settings.format.ORGC = 3;
  struct Case {
    int choice;
    const char* name;
    std::vector<int> bytes;
  } cases[] = {
      {kAreaUpperHalf,
       " Logo_U ",
       {0x80, 0, 0x40, 0, 0x20, 0, 0x10, 0, 0x08, 0, 0x04, 0, 0x02, 0, 0x01, 0}},
      {kAreaLowerHalf,
       " Logo_L ",
       {0, 0x80, 0, 0x40, 0, 0x20, 0, 0x10, 0, 0x08, 0, 0x04, 0, 0x02, 0, 0x01}},
  };
  for (const Case& c : cases) {
    ExportRequest request;
    request.AreaChoice = c.choice;
    ASSERT_EQ(Run(request).status, ExportStatus::Written);
    EXPECT_EQ(Hex(Bytes()), Hex(c.bytes));
    EXPECT_TRUE(state.text.Text().contains(QLatin1String(c.name)));
    EXPECT_EQ(state.settings.display.GHI, 16);
    EXPECT_EQ(state.settings.format.ORGC, 3);
  }
}

TEST_F(Export, ASelectedAreaIsConfirmedAndMustLieOnThePageGrid) {
  ExportRequest request;
  request.AreaChoice = kAreaSelected;
  EXPECT_EQ(Run(request).status, ExportStatus::SelectArea);

  request.selection = CanvasSelection{8, 8, 16, 10, true, true, false};
  t.dialogs.Answer(Answer::No);
  EXPECT_EQ(Run(request).status, ExportStatus::Stopped);
  EXPECT_EQ(t.dialogs.Texts(),
            QStringList{QStringLiteral(" Export Selected Area to Data Array ? ")});
  EXPECT_EQ(Captions(), QStringList{QStringLiteral("Confirm")});
  EXPECT_FALSE(QFile::exists(OutFile()));

  const ExportResult yes = Run(request);
  ASSERT_EQ(yes.status, ExportStatus::Written);
  EXPECT_EQ(Hex(Bytes()), Hex({0x80, 0x40}));  // rows 8 and 9, columns 8 to 15
  EXPECT_EQ(yes.DataByteCount, 8 * 2 / 8 + 1);

  t.dialogs.shown.clear();
  request.batchRunning = true;
  request.selection.X1 = 3;  // off the byte grid of a horizontal scan
  EXPECT_EQ(Run(request).status, ExportStatus::Stopped);
  EXPECT_TRUE(t.dialogs.shown.isEmpty());
  EXPECT_EQ(state.text.Lines(), (QStringList{QStringLiteral("Area selected out of"),
                                             QStringLiteral("paging sheme sectors !")}));
}

TEST_F(Export, AFloatingSelectionStopsTheExportUnlessItIsASubdivision) {
  ExportRequest floating;
  floating.selection = CanvasSelection{0, 0, 8, 8, true, false, false};
  const QString paste = QStringLiteral(
      " Floating Selection layer has not been pasted to Work Canvas !\r Paste now or Abort "
      "Conversion ? ");
  t.dialogs.Answer(Answer::Cancel);  // "Abort"
  EXPECT_EQ(Run(floating).status, ExportStatus::Stopped);
  EXPECT_EQ(t.dialogs.Texts(), QStringList{paste});
  EXPECT_EQ(t.dialogs.shown[0].customCaptions,
            (QStringList{QStringLiteral("Paste Now"), QStringLiteral("Abort")}));

  // "Paste Now" pastes the canvas's floating layer (a black bar over the right half of the
  // last row) and exports again, over the whole canvas with the bar on it.
  t.dialogs.shown.clear();
  QImage bar(8, 1, QImage::Format_RGB32);
  bar.fill(qRgb(0, 0, 0));
  state.canvas.Selection().Float(bar, QPoint(8, 15), false);
  EXPECT_EQ(Run().status, ExportStatus::Written);
  EXPECT_EQ(t.dialogs.Texts(), QStringList{paste});
  ASSERT_EQ(Bytes().size(), 32u);
  EXPECT_EQ(Hex({Bytes()[28], Bytes()[29], Bytes()[30], Bytes()[31]}), Hex({0, 0x02, 0, 0xFF}));
  EXPECT_FALSE(state.canvas.Selection().IsFloating());
  EXPECT_EQ(state.canvas.Pixel(9, 15), 0u);

  t.dialogs.shown.clear();
  state.canvas.SetPixel(5, 5, 0x808080);
  EXPECT_EQ(Run(floating).status, ExportStatus::Stopped);
  EXPECT_EQ(t.dialogs.Texts(),
            QStringList{QStringLiteral(
                "Conversion to Black and White has not been done !\r\r Abort and then perform "
                "Dithering (AUTO-Conversion to Black and White)\r OR for MANUAL Conversion, move "
                "Threshold Slider located on top of Work Canvas ")});

  t.dialogs.shown.clear();
  ExportRequest subdivision;
  subdivision.AreaChoice = kAreaSubdivision;
  subdivision.subdivisions = {AreaBounds{0, 0, 16, 1}, AreaBounds{0, 1, 16, 2}};
  subdivision.SubdivisionNumber = 2;
  EXPECT_EQ(Run(subdivision).status, ExportStatus::Written);
  EXPECT_EQ(
      t.dialogs.Texts(),
      QStringList{QStringLiteral(" Export Selected Work Canvas Subdivision to Data Array ? ")});
  EXPECT_EQ(Hex(Bytes()), Hex({0x40, 0}));  // row 1
}

TEST_F(Export, AutoFramingABlankCanvasGivesOnlyHeaderAndFooter) {
  state.canvas.Clear();
  state.settings.block.AFF = true;
  const ExportResult result = Run(FillExportDialog(state).request);
  ASSERT_EQ(result.status, ExportStatus::Written);
  EXPECT_TRUE(Bytes().empty());
  EXPECT_EQ(result.area.right - result.area.left, 0);
  EXPECT_TRUE(state.text.Text().contains(QStringLiteral("};")));
}

TEST_F(Export, AHeightOffThePageGridTurnsDownwardsIntoRowsForGood) {
  QImage tall(8, 100, QImage::Format_RGB32);
  tall.fill(qRgb(255, 255, 255));
  tall.setPixel(1, 99, qRgb(0, 0, 0));
  Draw(tall);
  SetTd(state.settings, true);
  ASSERT_EQ(Run().status, ExportStatus::Written);
  EXPECT_TRUE(t.dialogs.shown.isEmpty());
  EXPECT_TRUE(state.settings.scan.tr);
  EXPECT_FALSE(state.settings.scan.td);
  const std::vector<int> bytes = Bytes();
  ASSERT_EQ(bytes.size(), 100u);  // one byte per row
  EXPECT_EQ(bytes.back(), 0x40);
}

TEST_F(Export, InterleavedLinesAreExportedAndTheCanvasIsLeftAsItWas) {
  Draw(Picture({"#.......", ".#......", "..#.....", "...#...."}));
  const QImage before = state.canvas.Bitmap().copy();
  ExportRequest request;
  request.Interleaved = true;
  ASSERT_EQ(Run(request).status, ExportStatus::Written);
  EXPECT_EQ(Hex(Bytes()), Hex({0x80, 0x20, 0x40, 0x10}));  // lines 0, 2, 1, 3
  EXPECT_EQ(state.canvas.Bitmap(), before);

  const QImage five = InterlaceBitmap(Picture({"#...", ".#..", "..#.", "...#", "####"}));
  EXPECT_EQ(five, Picture({"#...", "...#", ".#..", "####", "..#."}));  // 0, 3, 1, 4, 2
}

TEST_F(Export, TheArrayIsSavedUnderACleanedNameOnlyWithDnask) {
  state.settings.output.nbmfn = QStringLiteral("my-logo[2].png");
  const ExportResult saved = Run();
  ASSERT_EQ(saved.status, ExportStatus::Written);
  EXPECT_EQ(saved.ArrayName, QStringLiteral("mylogo"));
  EXPECT_EQ(saved.savedPath, OutFile("mylogo.h"));
  EXPECT_EQ(state.text.Line(1), QStringLiteral("/* 14/03/2026 15:09:26 */"));  // the test clock
  EXPECT_EQ(vt::test::ReadAll(OutFile("mylogo.h")),
            state.text.Text(QStringLiteral("\r\n")).toUtf8());
  EXPECT_FALSE(state.text.Modified());

  state.settings.output.Dnask = false;
  state.settings.output.nbmfn = QStringLiteral("kept.png");
  const ExportResult kept = Run();
  EXPECT_EQ(kept.status, ExportStatus::Written);
  EXPECT_TRUE(kept.savedPath.isEmpty());
  EXPECT_FALSE(QFile::exists(OutFile("kept.h")));
  EXPECT_TRUE(state.text.Modified());
}

}  // namespace
}  // namespace vt::app

namespace vt::app {
namespace {

/// The bytes of the diagonal, each flipped when `inverted`.
std::vector<int> DiagonalBytes(bool inverted) {
  std::vector<int> bytes;
  for (int y = 0; y < 16; ++y) {
    bytes.push_back(y < 8 ? 0x80 >> y : 0);
    bytes.push_back(y < 8 ? 0 : 0x80 >> (y - 8));
  }
  if (inverted) {
    for (int& b : bytes) b ^= 0xFF;
  }
  return bytes;
}

std::vector<int> BytesOf(const QString& text) {
  std::vector<int> bytes;
  static const QRegularExpression constant(QStringLiteral("0x([0-9A-F]{2})"));
  for (auto it = constant.globalMatch(text); it.hasNext();) {
    bytes.push_back(it.next().captured(1).toInt(nullptr, 16));
  }
  return bytes;
}

class PostProcessing : public Export {
 protected:
  PostProcessing() {
    state.settings.folder.bfpa = t.folders.Path(QStringLiteral("batches"));
    state.settings.folder.PFP = t.folders.Path(QStringLiteral("docs"));
    QDir().mkpath(state.settings.folder.bfpa);
    QDir().mkpath(state.settings.folder.PFP);
    EXPECT_TRUE(WriteFileAtomically(
        state.settings.folder.bfpa + QStringLiteral("/inv.SPP"),
        "// x\r\nset hex prefix as '0x'\r\nset hex suffix as ''\r\nwhile hex in line\r\n"
        "      XOR (FF)\r\n      then overwrite hex\r\n"));
    state.settings.post.pprof = QStringLiteral("inv.SPP");
    state.settings.post.Autop = true;
  }
};

TEST_F(PostProcessing, TheProjectsBatchEditsTheEditorAfterTheSaveAndTheReportNamesIt) {
  const ExportResult result = Run(FillExportDialog(state).request);
  ASSERT_EQ(result.status, ExportStatus::Written);
  // Saved first (Dnask), then post-processed in the editor.
  EXPECT_EQ(BytesOf(QString::fromUtf8(vt::test::ReadAll(OutFile()))), DiagonalBytes(false));
  EXPECT_EQ(Bytes(), DiagonalBytes(true));
  EXPECT_EQ(state.settings.post.prpopr, QStringLiteral("inv.SPP"));
  ASSERT_FALSE(t.dialogs.shown.isEmpty());
  EXPECT_EQ(t.dialogs.shown.last().text,
            QStringLiteral(" Text Postprocessing done !64 successful occurences found"));
  EXPECT_EQ(t.dialogs.shown.last().caption, QStringLiteral(" Processing information"));
  const QString report =
      QString::fromUtf8(vt::test::ReadAll(state.settings.folder.PFP + QStringLiteral("/Logo.rtf")));
  EXPECT_TRUE(report.contains(QStringLiteral("Text processing filename : inv.SPP")));
  EXPECT_TRUE(report.contains(QStringLiteral("Post-Processing : 64 occurences found")));
}

TEST_F(PostProcessing, SileKeepsTheNoticeAndABatchForTheExportEditsTheTextBeforeTheSave) {
  state.settings.post.Sile = true;
  ExportRequest request = FillExportDialog(state).request;
  request.postProcessBatch = state.settings.folder.bfpa + QStringLiteral("/inv.SPP");
  const ExportResult result = Run(request);
  ASSERT_EQ(result.status, ExportStatus::Written);
  EXPECT_EQ(BytesOf(QString::fromUtf8(vt::test::ReadAll(OutFile()))), DiagonalBytes(true));
  EXPECT_TRUE(t.dialogs.shown.isEmpty());
}

TEST_F(PostProcessing, WithoutAutopNoBatchRuns) {
  state.settings.post.Autop = false;
  const ExportResult result = Run(FillExportDialog(state).request);
  ASSERT_EQ(result.status, ExportStatus::Written);
  EXPECT_EQ(Bytes(), DiagonalBytes(false));
}

}  // namespace
}  // namespace vt::app
