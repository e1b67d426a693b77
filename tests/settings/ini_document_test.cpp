// SPDX-License-Identifier: MIT
#include "settings/ini_document.h"

#include <gtest/gtest.h>

#include <tuple>

namespace vt::settings {
namespace {

IniDocument ParseOk(const QByteArray& text) {
  auto parsed = IniDocument::Parse(text, "t.LCD");
  EXPECT_TRUE(parsed.ok());
  return parsed.ok() ? parsed.value() : IniDocument();
}

TEST(IniDocument, NamesCompareWithoutCaseAndSurroundingBlanks) {
  const IniDocument doc = ParseOk("[B2]\r\nGWI=240\r\nLogws =1\r\n");
  const std::tuple<const char*, const char*, const char*> cases[] = {{"B2", "GWI", "240"},
                                                                     {"b2", "gwi", "240"},
                                                                     {"B2", "Logws", "1"},
                                                                     {"B2", "Logws ", "1"},
                                                                     {"B2", " LOGWS", "1"}};
  for (const auto& [section, key, expected] : cases) {
    EXPECT_EQ(doc.Value(section, key), QString(expected)) << section << "." << key;
  }
  EXPECT_FALSE(doc.Value("B3", "GWI"));
  EXPECT_FALSE(doc.Value("B2", "GHI"));
}

TEST(IniDocument, ValuesKeepTheirBlanksAndEqualSigns) {
  const IniDocument doc = ParseOk("[S3]\nINCSYN=#include \nKERSUF=[120][3]= \nq=\"\n");
  EXPECT_EQ(
      QStringList({doc.Value("S3", "INCSYN").value_or("?"), doc.Value("S3", "KERSUF").value_or("?"),
                   doc.Value("S3", "q").value_or("?")}),
      QStringList({"#include ", "[120][3]= ", "\""}));
}

TEST(IniDocument, FirstOfTwoEqualNamesWins) {
  const IniDocument doc = ParseOk("[A]\nk=1\nK=2\n[a]\nk=3\nj=4\n");
  EXPECT_EQ(doc.Value("A", "k"), "1");
  // The second section of the same name is shadowed, as the classic reader does.
  EXPECT_FALSE(doc.Value("A", "j"));
}

TEST(IniDocument, SetValueReplacesInPlaceOrAppendsToItsSection) {
  IniDocument doc = ParseOk("; made by hand\r\n[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
  doc.SetValue("a", "X", "9");
  doc.SetValue("A", "z", "3");
  doc.SetValue("C", "w", "4");
  EXPECT_EQ(doc.Serialize(),
            QByteArray("; made by hand\r\n[A]\r\nx=9\r\nz=3\r\n\r\n[B]\r\ny=2\r\n[C]\r\nw=4\r\n"));
}

TEST(IniDocument, UnknownLinesAndKeysSurviveARoundTrip) {
  const QByteArray text = "[S]\r\nmine=keep me\r\n# note\r\nFXHB=H\r\n[Extra]\r\na=b\r\n";
  EXPECT_EQ(ParseOk(text).Serialize(), text);
}

TEST(IniDocument, BadInputIsRefusedWithPlaceOrParsedWithoutCrash) {
  auto withNul = IniDocument::Parse(QByteArray("[A]\nok=1\nbad=\0x\n", 16), "f.LCD");
  ASSERT_FALSE(withNul.ok());
  EXPECT_EQ(withNul.error().line, 3);
  EXPECT_TRUE(withNul.error().ToString().startsWith("f.LCD:3:"));

  auto huge = IniDocument::Parse(QByteArray(IniDocument::kMaxBytes + 1, 'x'), "big.LCD");
  ASSERT_FALSE(huge.ok());
  EXPECT_EQ(huge.error().kind, Error::Kind::Limit);

  // Junk without sections or with broken brackets parses; nothing is found in it.
  for (const char* junk : {"=\n==\n[\n]\n", "[A\nk=v\n", "no section=1\n", "\xff\xfe[A]\n"}) {
    auto parsed = IniDocument::Parse(QByteArray(junk));
    ASSERT_TRUE(parsed.ok()) << junk;
    EXPECT_FALSE(parsed.value().Value("A", "k")) << junk;
  }
}

TEST(IniDocument, LinesThatAreNotUtf8SurviveASaveByteForByte) {
  // Keys and values from a system with another code page: "Données" in Windows-1252, a
  // section name and a comment likewise, beside UTF-8 lines.
  const QByteArray text =
      "[S]\r\nOFP=C:\\Donn\xe9es\\out\r\n; r\xe9glages\r\nmine=\xc3\xa9t\xc3\xa9\r\n"
      "[Ext\xe9]\r\nk=\x80\x81\r\n";
  IniDocument doc = ParseOk(text);
  EXPECT_EQ(doc.Serialize(), text);
  EXPECT_EQ(doc.Value("S", "OFP"), QString::fromLatin1("C:\\Donn\xe9es\\out"));
  EXPECT_EQ(doc.Value("S", "mine"), QString::fromUtf8("\xc3\xa9t\xc3\xa9"));
  // Set to the value it holds, the line keeps its bytes; a value beyond Latin-1 goes as UTF-8.
  doc.SetValue("S", "OFP", *doc.Value("S", "OFP"));
  EXPECT_EQ(doc.Serialize(), text);
  doc.SetValue("S", "OFP", QString::fromUtf8("\xe2\x82\xac"));
  EXPECT_TRUE(doc.Serialize().contains("OFP=\xe2\x82\xac\r\n"));
}

TEST(IniDocument, NewKeysGoBeforeTheBlankLinesThatEndASectionOnly) {
  IniDocument doc = ParseOk("[A]\r\nx=1\r\n\r\ny=2\r\n\r\n\r\n[B]\r\n");
  doc.SetValue("A", "z", "3");
  doc.SetValue("A", "y", "5");
  EXPECT_EQ(doc.Serialize(),
            QByteArray("[A]\r\nx=1\r\n\r\ny=5\r\nz=3\r\n\r\n\r\n[B]\r\n"));
  doc.Remove("A", "x");
  EXPECT_FALSE(doc.Value("A", "x"));
  EXPECT_EQ(doc.Value("A", "z"), "3");
}

TEST(IniDocument, ManyNewKeysInOneSectionAreAllFound) {
  // Adding keys one by one must not rebuild the section each time (this once made a large file
  // slow): 20000 keys, each found again afterwards.
  IniDocument doc;
  for (int i = 0; i < 20000; ++i) doc.SetValue("S", QStringLiteral("k%1").arg(i), QString::number(i));
  for (int i = 0; i < 20000; i += 997) {
    EXPECT_EQ(doc.Value("s", QStringLiteral("K%1").arg(i)), QString::number(i));
  }
  EXPECT_EQ(doc.Keys("S").size(), 20000);
}

}  // namespace
}  // namespace vt::settings
