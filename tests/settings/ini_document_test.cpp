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

}  // namespace
}  // namespace vt::settings
