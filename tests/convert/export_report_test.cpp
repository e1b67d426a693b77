// SPDX-License-Identifier: MIT
#include "convert/export_report.h"

#include <gtest/gtest.h>

#include <QFile>

#include "app/state.h"
#include "convert/export_driver.h"
#include "convert_test_util.h"
#include "settings/geometry.h"
#include "temp_folders.h"

namespace vt::convert {
namespace {

using test::With;

/// Braces balance when the escaped ones are left out, and never close below zero.
bool BalancedRtf(const QByteArray& rtf) {
  int depth = 0;
  for (qsizetype i = 0; i < rtf.size(); ++i) {
    if (rtf[i] == '\\') {
      ++i;
    } else if (rtf[i] == '{') {
      ++depth;
    } else if (rtf[i] == '}' && --depth < 0) {
      return false;
    }
  }
  return depth == 0;
}

TEST(ExportReport, ParagraphsOfACompressedPartialExport) {
  ExportReportInfo info;
  info.version = QStringLiteral("V01a ");
  info.dateText = QStringLiteral("14/03/2026 15:09:26");
  info.outputFileName = QStringLiteral("Pic.h");
  info.dataFilePath = QStringLiteral("/o/Pic.h");
  info.arrayName = QStringLiteral("Pic");
  info.fullScreen = false;
  info.xText = QStringLiteral("8");
  info.yText = QStringLiteral("0");
  info.rightText = QStringLiteral("15");
  info.bottomText = QStringLiteral("7");
  info.width = info.height = 8;
  info.bytes = 8;
  info.compression = CompressionCounters{1, 1, 8, 0};
  info.dataByteCount = 9;
  const QString rule(57, QLatin1Char('-'));
  const QStringList expected = {
      "LCD graphic parameters // generated with Vantorelle V01a ", "14/03/2026 15:09:26", rule,
      "Paging Scheme horizontal From left to right", rule,
      "Little Endian / MSB last", "6 bit T6963 Mode ", "Inverted Data Output", rule,
      "8 bit output format", "Unpacked Data", rule,
      "Monochrome mode", rule,
      "Origin corner bottom right", rule,
      "Postprocessing is ENABLED ", rule,
      "Basic File : Pic.h", rule,
      "Bitmap Source file : <none>", rule,
      "Data file created : /o/Pic.h", "Data table created : Pic", rule,
      "Original X and Y coordinates", "True origin disabled", "Top Left  X =8 Y =0",
      "Bot Right X =15 Y =7", "Width = 8", "Height = 8", rule,
      "8 Bytes", "Compressed data", "2 Bytes", rule,
      "Compression statistics", "--------------------------", "Number of bytes saved : 7",
      "Number of data bytes : 1", "Number of consecutive pointers : 1",
      "Number of identical bytes :8", "Number of different bytes : 0",
      "Number of bytes in compression: 2", "Compression ratio : 77.77%", rule};
  const settings::Settings s = With(
      "MSBF=0|bw8=0|Neg=1|CORN1=0|CORN3=1|asrg=1|basf=1|nbmfn=temp1298621.bmp", With("mode=monochrome"));
  EXPECT_EQ(ExportReportParagraphs(s, info), expected);
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
  settings::SetDisplaySize(state, 16, 8);
  const QString report = t.folders.Path(QStringLiteral("out/Logo.rtf"));
  EncodeButtonClick(state, t.services, FillExportDialog(state).request, true);
  const QByteArray rtf = vt::test::ReadAll(report);
  EXPECT_TRUE(rtf.startsWith("{\\rtf1"));
  EXPECT_TRUE(BalancedRtf(rtf));
  for (const char* paragraph :
       {"Full screen pattern \\par", "Width = 16\\par", "16 Bytes\\par",
        "Data table created : Logo\\par", "LCD graphic parameters // generated with Vantorelle "}) {
    EXPECT_TRUE(rtf.contains(paragraph)) << paragraph;
  }

  // Held open elsewhere: refused, the old report stays.
  t.fileUse.busy.insert(report);
  state.text.Clear();
  settings::SetDisplaySize(state, 8, 8);
  EncodeButtonClick(state, t.services, FillExportDialog(state).request, true);
  ASSERT_FALSE(t.dialogs.shown.isEmpty());
  EXPECT_EQ(t.dialogs.shown.last().text,
            QStringLiteral(" RTF file was opened by another application ! "));
  EXPECT_EQ(t.dialogs.shown.last().caption, QStringLiteral("Error"));
  EXPECT_EQ(vt::test::ReadAll(report), rtf);
}

}  // namespace
}  // namespace vt::convert
