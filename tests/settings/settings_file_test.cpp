// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "settings/key_table.h"

namespace vt::settings {
namespace {

const FolderDefaults kFolders{
    QStringLiteral("/home/u/Documents/Vantorelle Project/Documents"),
    QStringLiteral("/home/u/Pictures"),
    QStringLiteral("/home/u/Documents/Vantorelle Project/Output Files"),
    QStringLiteral("/home/u/Documents/Vantorelle Project/Fonts"),
    QStringLiteral("/home/u/Documents/Vantorelle Project/Touch Panel"),
    QStringLiteral("/home/u/Documents/Vantorelle Project/Batch Files")};

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
  EXPECT_EQ(s.display.GWI, 128);
  EXPECT_EQ(s.display.GHI, 64);
  EXPECT_TRUE(s.scan.tr);
  EXPECT_TRUE(s.scan.CORN1);
  EXPECT_TRUE(s.pixel.Monc);
  EXPECT_TRUE(s.width.D8bc);
  EXPECT_EQ(s.format.FXHB, QStringLiteral("X"));
  EXPECT_EQ(s.folder.OFP, kFolders.OFP);
  EXPECT_EQ(s.folder.BFP, kFolders.BFP);
  EXPECT_EQ(s.folder.bfpa, kFolders.bfpa);
  EXPECT_EQ(s.mru, QStringList(kMruSlots, QStringLiteral("_")));
  // The whole record set equals the factory state: saving both gives the same text.
  EXPECT_EQ(Save(s).Serialize(), Save(DefaultSettings(kFolders)).Serialize());
}

TEST(SettingsFile, TheFactoryFileListsEveryKeyInOrder) {
  EXPECT_TRUE(test::MatchesGolden(Save(DefaultSettings(kFolders)).Serialize(),
                                  QStringLiteral("settings/default.LCD")));
}

TEST(SettingsFile, ChangedValuesSurviveSaveThenLoad) {
  Settings s = DefaultSettings(kFolders);
  s.display.GWI = 240;
  s.display.GHI = 160;
  s.scan.tr = false;
  s.scan.td = true;
  s.scan.MSBF = false;
  s.format.FXHB = QStringLiteral("0B");
  s.format.sepst = QStringLiteral(" ; ");
  s.animation.INCSYN = QStringLiteral("#include  ");
  s.fontVariant.CARK[kBloc] = QStringLiteral("4");
  s.fontVariant.wxof[kDmd] = true;
  s.grid.C42 = true;
  s.grid.C42s = QStringLiteral("replace=me");
  s.other.HCO_B10 = 3;
  s.comment.HCO = true;
  s.mru[0] = QStringLiteral("/tmp/a.bmp");
  s.fmru[10] = QStringLiteral("Courier New");
  s.ext[2] = QStringLiteral(".GVS");
  s.customSizes[5] = QSize(320, 240);
  const Settings back = Load(Parse(Save(s).Serialize()));
  EXPECT_EQ(back.display.GWI, 240);
  EXPECT_EQ(back.display.GHI, 160);
  EXPECT_FALSE(back.scan.tr);
  EXPECT_TRUE(back.scan.td);
  EXPECT_FALSE(back.scan.MSBF);
  EXPECT_EQ(back.format.FXHB, QStringLiteral("0B"));
  EXPECT_EQ(back.format.sepst, QStringLiteral(" ; "));
  EXPECT_EQ(back.animation.INCSYN, QStringLiteral("#include  "));
  EXPECT_EQ(back.fontVariant.CARK[kBloc], QStringLiteral("4"));
  EXPECT_TRUE(back.fontVariant.wxof[kDmd]);
  EXPECT_TRUE(back.grid.C42);
  EXPECT_EQ(back.grid.C42s, QStringLiteral("replace=me"));
  EXPECT_EQ(back.other.HCO_B10, 3);
  EXPECT_TRUE(back.comment.HCO);
  EXPECT_EQ(back.mru[0], QStringLiteral("/tmp/a.bmp"));
  EXPECT_EQ(back.fmru[10], QStringLiteral("Courier New"));
  EXPECT_EQ(back.ext[2], QStringLiteral(".GVS"));
  EXPECT_EQ(back.customSizes[5], QSize(320, 240));
}

TEST(SettingsFile, KeysThatDoNotReadBackReturnToTheirDefaults) {
  Settings s = DefaultSettings(kFolders);
  s.layout.wew1 = QStringLiteral("1234");
  s.vector.vecini = QStringLiteral("LCD.Begin");
  s.vector.wve = true;
  for (auto* flags : {&s.fontVariant.descsz, &s.fontVariant.descsz2, &s.fontVariant.csbits,
                      &s.fontVariant.csbits2}) {
    for (bool& b : *flags) b = !b;
  }
  s.block.Endst = QStringLiteral("}; // graphics");
  s.font.EndstF = QStringLiteral("}; // fonts");
  const IniDocument file = Save(s);
  EXPECT_EQ(file.Value(QStringLiteral("S13"), QStringLiteral("wew1")), QStringLiteral("1234"));
  EXPECT_EQ(file.Value(QStringLiteral("B7"), QStringLiteral("descsz_d")), QStringLiteral("1"));
  // Endst is written twice: the fonts' value, written second, is what the file keeps.
  EXPECT_EQ(file.Value(QStringLiteral("S8"), QStringLiteral("Endst")),
            QStringLiteral("}; // fonts"));

  const Settings back = Load(file);
  const Settings factory = DefaultSettings(kFolders);
  EXPECT_EQ(back.layout.wew1, QStringLiteral("900"));
  EXPECT_EQ(back.vector.vecini, QStringLiteral("GCLD.Init"));
  EXPECT_FALSE(back.vector.wve);
  EXPECT_EQ(back.fontVariant.descsz, factory.fontVariant.descsz);
  EXPECT_EQ(back.fontVariant.descsz2, factory.fontVariant.descsz2);
  EXPECT_EQ(back.fontVariant.csbits, factory.fontVariant.csbits);
  EXPECT_EQ(back.fontVariant.csbits2, factory.fontVariant.csbits2);
  EXPECT_EQ(back.block.Endst, QStringLiteral("}; // fonts"));
  EXPECT_EQ(back.font.EndstF, QStringLiteral("};"));
}

TEST(SettingsFile, ReadOnlyKeysAreReadButNotWritten) {
  const Settings back = Load(Parse("[SX]\r\nrs48=1\r\n[S8]\r\nEndstF=x\r\n[B1]\r\ndescsz_d=1\r\n"));
  EXPECT_TRUE(back.serial.rs48);
  EXPECT_EQ(back.font.EndstF, QStringLiteral("x"));
  EXPECT_TRUE(back.fontVariant.descsz[kDmd]);
  const IniDocument again = Save(back);
  EXPECT_FALSE(again.Value(QStringLiteral("SX"), QStringLiteral("rs48")));
}

TEST(SettingsFile, BadNumbersTakeDefaultsAndNamesIgnoreCase) {
  const Settings s = Load(Parse("[b2]\r\ngwi=wide\r\nGHI=32\r\n[I5]\r\ntfp3=11\r\n[B18]\r\nACHB=0\r\n"
                                "[s15]\r\nCHK=nope\r\n"));
  EXPECT_EQ(s.display.GWI, 128);
  EXPECT_EQ(s.display.GHI, 32);
  EXPECT_EQ(s.touch.tfp3, 8);  // only 8, 10, 12, 16 and 24 are touch resolutions
  EXPECT_FALSE(s.other.achb);  // written to b18, read from B18: one section
  EXPECT_EQ(Save(s).Value(QStringLiteral("S15"), QStringLiteral("chk")), QStringLiteral("check"));
  for (int good : {10, 12, 16, 24}) {
    const Settings t = Load(Parse(QStringLiteral("[I5]\ntfp3=%1\n").arg(good).toUtf8()));
    EXPECT_EQ(t.touch.tfp3, good);
  }
}

TEST(SettingsFile, UnknownKeysAndSectionsAreCarriedThrough) {
  IniDocument doc = Parse("[B2]\r\nGWI=96\r\nFuture=7\r\n[Plugin]\r\nname=x\r\n");
  const Settings s = Load(doc);
  WriteSettings(s, doc);
  EXPECT_EQ(doc.Value(QStringLiteral("B2"), QStringLiteral("Future")), QStringLiteral("7"));
  EXPECT_EQ(doc.Value(QStringLiteral("Plugin"), QStringLiteral("name")), QStringLiteral("x"));
  EXPECT_EQ(doc.Value(QStringLiteral("B2"), QStringLiteral("GWI")), QStringLiteral("96"));
  // Known keys of a section that already exists go after its own keys.
  const QStringList keys = doc.Keys(QStringLiteral("B2"));
  EXPECT_EQ(keys.mid(0, 2), (QStringList{QStringLiteral("GWI"), QStringLiteral("Future")}));
}

TEST(SettingsFile, RecentListsAreWrittenInFullAndSizesOnlyWhenUsed) {
  Settings s = DefaultSettings(kFolders);
  s.mru[1] = QString();  // an emptied slot is written as free
  const IniDocument doc = Save(s);
  EXPECT_EQ(doc.Value(QStringLiteral("S18"), QStringLiteral("mru19")), QStringLiteral("_"));
  EXPECT_EQ(doc.Value(QStringLiteral("S18"), QStringLiteral("mru1")), QStringLiteral("_"));
  EXPECT_EQ(doc.Value(QStringLiteral("S19"), QStringLiteral("fmru10")), QStringLiteral("_"));
  EXPECT_FALSE(doc.Value(QStringLiteral("S19"), QStringLiteral("fmru11")));
  EXPECT_FALSE(doc.Value(QStringLiteral("I2"), QStringLiteral("cs0w")));
  EXPECT_FALSE(doc.Value(QStringLiteral("FS0"), QStringLiteral("ext0")));

  // A freed user size that the file held is written back as a free slot.
  IniDocument withSize = Parse("[I2]\r\ncs3w=200\r\ncs3h=100\r\n");
  Settings loaded = Load(withSize);
  EXPECT_EQ(loaded.customSizes[3], QSize(200, 100));
  loaded.customSizes[3] = QSize();
  WriteSettings(loaded, withSize);
  EXPECT_EQ(withSize.Value(QStringLiteral("I2"), QStringLiteral("cs3w")), QStringLiteral("0"));
}

}  // namespace
}  // namespace vt::settings
