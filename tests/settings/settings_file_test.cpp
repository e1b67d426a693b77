// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include <gtest/gtest.h>

#include <tuple>

#include "golden.h"
#include "settings/key_table.h"

namespace vt::settings {
namespace {

const FolderDefaults kFolders{"/home/u/Documents/Vantorelle Project/Documents",
                              "/home/u/Pictures",
                              "/home/u/Documents/Vantorelle Project/Output Files",
                              "/home/u/Documents/Vantorelle Project/Fonts",
                              "/home/u/Documents/Vantorelle Project/Touch Panel",
                              "/home/u/Documents/Vantorelle Project/Batch Files"};

IniDocument Parse(const QByteArray& text) { return IniDocument::Parse(text).value(); }

Settings Load(const IniDocument& doc) {
  Settings s;
  ReadSettings(doc, s, kFolders);
  return s;
}

IniDocument Save(const Settings& s) {
  IniDocument doc;
  WriteSettings(s, doc);
  return doc;
}

TEST(SettingsFile, AnEmptyFileGivesTheFactorySettingsAndFirstRunFolders) {
  const Settings s = Load(Parse(""));
  EXPECT_EQ(std::tie(s.display.GWI, s.display.GHI, s.format.FXHB), std::tuple(128, 64, "X"));
  EXPECT_TRUE(s.scan.tr && s.scan.CORN1 && s.pixel.Monc && s.width.D8bc);
  EXPECT_EQ(QStringList({s.folder.OFP, s.folder.BFP, s.folder.bfpa}),
            QStringList({kFolders.OFP, kFolders.BFP, kFolders.bfpa}));
  EXPECT_EQ(s.mru, QStringList(kMruSlots, "_"));
  // The whole record set equals the factory state, whose file is the golden one.
  EXPECT_EQ(Save(s).Serialize(), Save(DefaultSettings(kFolders)).Serialize());
  EXPECT_TRUE(
      test::MatchesGolden(Save(DefaultSettings(kFolders)).Serialize(), "settings/default.LCD"));
}

TEST(SettingsFile, ChangedValuesSurviveSaveThenLoad) {
  Settings s = DefaultSettings(kFolders);
  // One field of each kind: integers, booleans both ways, blanks and "=" in strings, the
  // per-variant arrays, a key whose name other sections share, and the slot lists.
  s.display.GWI = 240;
  s.scan.tr = false;
  s.scan.td = true;
  s.format.sepst = " ; ";
  s.fontVariant.CARK[kBloc] = "4";
  s.fontVariant.wxof[kDmd] = true;
  s.grid.C42s = "replace=me";
  s.other.HCO_B10 = 3;
  s.mru[0] = "/tmp/a.bmp";
  s.fmru[10] = "Courier New";
  s.ext[2] = ".GVS";
  s.customSizes[5] = QSize(320, 240);
  const Settings b = Load(Parse(Save(s).Serialize()));
  EXPECT_EQ(std::tie(b.display.GWI, b.other.HCO_B10, b.customSizes[5], b.comment.HCO),
            std::tuple(240, 3, QSize(320, 240), false));
  EXPECT_EQ(std::tie(b.scan.tr, b.scan.td, b.fontVariant.wxof[kDmd]),
            std::tuple(false, true, true));
  EXPECT_EQ(QStringList({b.format.sepst, b.fontVariant.CARK[kBloc], b.grid.C42s, b.mru[0],
                         b.fmru[10], b.ext[2]}),
            QStringList({" ; ", "4", "replace=me", "/tmp/a.bmp", "Courier New", ".GVS"}));
}

TEST(SettingsFile, KeysThatDoNotReadBackReturnToTheirDefaults) {
  Settings s = DefaultSettings(kFolders);
  s.layout.wew1 = "1234";
  s.vector.vecini = "LCD.Begin";
  s.vector.wve = true;
  for (auto* flags : {&s.fontVariant.descsz, &s.fontVariant.descsz2, &s.fontVariant.csbits,
                      &s.fontVariant.csbits2}) {
    for (bool& b : *flags) b = !b;
  }
  s.block.Endst = "}; // graphics";
  s.font.EndstF = "}; // fonts";
  const IniDocument file = Save(s);
  EXPECT_EQ(file.Value("S13", "wew1"), "1234");
  EXPECT_EQ(file.Value("B7", "descsz_d"), "1");
  // Endst is written twice: the fonts' value, written second, is what the file keeps.
  EXPECT_EQ(file.Value("S8", "Endst"), "}; // fonts");

  const Settings back = Load(file);
  const Settings factory = DefaultSettings(kFolders);
  EXPECT_EQ(back.layout.wew1, "900");
  EXPECT_EQ(back.vector.vecini, "GCLD.Init");
  EXPECT_FALSE(back.vector.wve);
  const auto& f = factory.fontVariant;
  EXPECT_EQ(std::tie(back.fontVariant.descsz, back.fontVariant.descsz2, back.fontVariant.csbits,
                     back.fontVariant.csbits2),
            std::tie(f.descsz, f.descsz2, f.csbits, f.csbits2));
  EXPECT_EQ(back.block.Endst, "}; // fonts");
  EXPECT_EQ(back.font.EndstF, "};");
}

TEST(SettingsFile, ReadOnlyKeysAreReadButNotWritten) {
  const Settings back = Load(Parse("[SX]\r\nrs48=1\r\n[S8]\r\nEndstF=x\r\n[B1]\r\ndescsz_d=1\r\n"));
  EXPECT_TRUE(back.serial.rs48);
  EXPECT_EQ(back.font.EndstF, "x");
  EXPECT_TRUE(back.fontVariant.descsz[kDmd]);
  const IniDocument again = Save(back);
  EXPECT_FALSE(again.Value("SX", "rs48"));
}

TEST(SettingsFile, BadNumbersTakeDefaultsAndNamesIgnoreCase) {
  const Settings s =
      Load(Parse("[b2]\r\ngwi=wide\r\nGHI=32\r\n[I5]\r\ntfp3=11\r\n[B18]\r\nACHB=0\r\n"
                 "[s15]\r\nCHK=nope\r\n"));
  EXPECT_EQ(s.display.GWI, 128);
  EXPECT_EQ(s.display.GHI, 32);
  EXPECT_EQ(s.touch.tfp3, 8);  // only 8, 10, 12, 16 and 24 are touch resolutions
  EXPECT_FALSE(s.other.achb);  // written to b18, read from B18: one section
  EXPECT_EQ(Save(s).Value("S15", "chk"), "check");
  for (int good : {10, 12, 16, 24}) {
    const Settings t = Load(Parse(QString("[I5]\ntfp3=%1\n").arg(good).toUtf8()));
    EXPECT_EQ(t.touch.tfp3, good);
  }
}

TEST(SettingsFile, UnknownKeysAndSectionsAreCarriedThrough) {
  IniDocument doc = Parse("[B2]\r\nGWI=96\r\nFuture=7\r\n[Plugin]\r\nname=x\r\n");
  const Settings s = Load(doc);
  WriteSettings(s, doc);
  EXPECT_EQ(doc.Value("B2", "Future"), "7");
  EXPECT_EQ(doc.Value("Plugin", "name"), "x");
  EXPECT_EQ(doc.Value("B2", "GWI"), "96");
  // Known keys of a section that already exists go after its own keys.
  const QStringList keys = doc.Keys("B2");
  EXPECT_EQ(keys.mid(0, 2), (QStringList{"GWI", "Future"}));
}

TEST(SettingsFile, RecentListsAreWrittenInFullAndSizesOnlyWhenUsed) {
  Settings s = DefaultSettings(kFolders);
  s.mru[1] = QString();  // an emptied slot is written as free
  const IniDocument doc = Save(s);
  EXPECT_EQ(doc.Value("S18", "mru19"), "_");
  EXPECT_EQ(doc.Value("S18", "mru1"), "_");
  EXPECT_EQ(doc.Value("S19", "fmru10"), "_");
  EXPECT_FALSE(doc.Value("S19", "fmru11"));
  EXPECT_FALSE(doc.Value("I2", "cs0w"));
  EXPECT_FALSE(doc.Value("FS0", "ext0"));

  // A freed user size that the file held is written back as a free slot.
  IniDocument withSize = Parse("[I2]\r\ncs3w=200\r\ncs3h=100\r\n");
  Settings loaded = Load(withSize);
  EXPECT_EQ(loaded.customSizes[3], QSize(200, 100));
  loaded.customSizes[3] = QSize();
  WriteSettings(loaded, withSize);
  EXPECT_EQ(withSize.Value("I2", "cs3w"), "0");
}

}  // namespace
}  // namespace vt::settings
