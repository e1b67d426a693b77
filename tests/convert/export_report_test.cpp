// SPDX-License-Identifier: MIT
#include "convert/export_report.h"

#include <gtest/gtest.h>

#include <QFile>

#include "app/display_commands.h"
#include "app/export_driver.h"
#include "app/state.h"
#include "convert_test_util.h"
#include "settings/geometry.h"
#include "temp_folders.h"

namespace vt::convert {
namespace {

using test::With;

/// As many braces open as close, escaped ones left out.
bool BalancedRtf(const QByteArray& rtf) {
  return rtf.count('{') - rtf.count("\\{") == rtf.count('}') - rtf.count("\\}");
}

TEST(ExportReport, ParagraphsOfACompressedPartialExport) {
  const ExportReportInfo info{.version = "V01a ",
                              .dateText = "14/03/2026 15:09:26",
                              .outputFileName = "Pic.h",
                              .dataFilePath = "/o/Pic.h",
                              .arrayName = "Pic",
                              .fullScreen = false,
                              .xText = "8",
                              .yText = "0",
                              .rightText = "15",
                              .bottomText = "7",
                              .width = 8,
                              .height = 8,
                              .bytes = 8,
                              .compression = CompressionCounters{1, 1, 8, 0},
                              .dataByteCount = 9};
  // Paragraphs parted by "|", "R" for the rule of dashes that closes each block.
  QString expected = QStringLiteral(
      "LCD graphic parameters // generated with Vantorelle V01a |14/03/2026 15:09:26|R|"
      "Paging Scheme horizontal From left to right|R|Little Endian / MSB last|"
      "6 bit T6963 Mode |Inverted Data Output|R|8 bit output format|Unpacked Data|R|"
      "Monochrome mode|R|Origin corner bottom right|R|Postprocessing is ENABLED |R|"
      "Basic File : Pic.h|R|Bitmap Source file : <none>|R|Data file created : /o/Pic.h|"
      "Data table created : Pic|R|Original X and Y coordinates|True origin disabled|"
      "Top Left  X =8 Y =0|Bot Right X =15 Y =7|Width = 8|Height = 8|R|8 Bytes|"
      "Compressed data|2 Bytes|R|Compression statistics|--------------------------|"
      "Number of bytes saved : 7|Number of data bytes : 1|Number of consecutive pointers : 1|"
      "Number of identical bytes :8|Number of different bytes : 0|"
      "Number of bytes in compression: 8|Compression ratio : 77.77%|R");
  expected.replace(QStringLiteral("|R"), QStringLiteral("|") + QString(57, QLatin1Char('-')));
  const settings::Settings s =
      With("MSBF=0|bw8=0|Neg=1|CORN1=0|CORN3=1|asrg=1|basf=1|nbmfn=temp1298621.bmp",
           With("mode=monochrome"));
  EXPECT_EQ(ExportReportParagraphs(s, info).join(QLatin1Char('|')), expected);
}

TEST(ExportReport, RtfEscapesAndBalances) {
  const QByteArray rtf = RtfDocument({QStringLiteral("C:\\a{b}"), QStringLiteral("\u00e9")});
  EXPECT_TRUE(rtf.startsWith("{\\rtf1"));
  EXPECT_TRUE(rtf.contains("C:\\\\a\\{b\\}\\par"));
  EXPECT_TRUE(rtf.contains("\\u233?\\par"));
  EXPECT_TRUE(BalancedRtf(rtf));
}

TEST(ExportReport, AnExportWritesItBesideTheDataUnlessTheFileIsHeld) {
  vt::test::TestServices t;
  app::AppState state;
  state.files.SettingsFile = t.folders.Path(QStringLiteral("p.LCD"));
  state.settings.folder.OFP = t.folders.Path(QStringLiteral("out"));
  state.settings.output.nbmfn = QStringLiteral("Logo.png");
  app::SetDisplaySize(state, 16, 8);
  const QString report = t.folders.Path(QStringLiteral("out/Logo.rtf"));
  EncodeButtonClick(state, t.services, FillExportDialog(state).request, true);
  const QByteArray rtf = vt::test::ReadAll(report);
  EXPECT_TRUE(rtf.startsWith("{\\rtf1") && BalancedRtf(rtf));
  for (const char* paragraph :
       {"Full screen pattern \\par", "Width = 16\\par", "16 Bytes\\par",
        "Data table created : Logo\\par", "LCD graphic parameters // generated with Vantorelle "}) {
    EXPECT_TRUE(rtf.contains(paragraph)) << paragraph;
  }

  // Held open elsewhere: refused, the old report stays.
  t.fileUse.busy.insert(report);
  state.text.Clear();
  app::SetDisplaySize(state, 8, 8);
  EncodeButtonClick(state, t.services, FillExportDialog(state).request, true);
  ASSERT_FALSE(t.dialogs.shown.isEmpty());
  EXPECT_EQ(t.dialogs.shown.last().text,
            QStringLiteral(" RTF file was opened by another application ! "));
  EXPECT_EQ(t.dialogs.shown.last().caption, QStringLiteral("Error"));
  EXPECT_EQ(vt::test::ReadAll(report), rtf);
}

}  // namespace
}  // namespace vt::convert
