// SPDX-License-Identifier: MIT
#include "settings/ini_document.h"

#include <gtest/gtest.h>

namespace vt::settings {
namespace {

IniDocument ParseOk(const QByteArray& text) {
  auto parsed = IniDocument::Parse(text, QStringLiteral("t.LCD"));
  EXPECT_TRUE(parsed.ok());
  return parsed.ok() ? parsed.value() : IniDocument();
}

TEST(IniDocument, NamesCompareWithoutCaseAndSurroundingBlanks) {
  const IniDocument doc = ParseOk("[B2]\r\nGWI=240\r\nLogws =1\r\n");
  struct Case {
    const char* section;
    const char* key;
    const char* expected;
  } cases[] = {{"B2", "GWI", "240"}, {"b2", "gwi", "240"}, {"B2", "Logws", "1"},
               {"B2", "Logws ", "1"}, {"B2", " LOGWS", "1"}};
  for (const Case& c : cases) {
    const auto value = doc.Value(QString::fromLatin1(c.section), QString::fromLatin1(c.key));
    ASSERT_TRUE(value.has_value()) << c.section << "." << c.key;
    EXPECT_EQ(*value, QString::fromLatin1(c.expected)) << c.section << "." << c.key;
  }
  EXPECT_FALSE(doc.Value(QStringLiteral("B3"), QStringLiteral("GWI")));
  EXPECT_FALSE(doc.Value(QStringLiteral("B2"), QStringLiteral("GHI")));
}

TEST(IniDocument, ValuesKeepTheirBlanksAndEqualSigns) {
  const IniDocument doc = ParseOk("[S3]\nINCSYN=#include \nKERSUF=[120][3]= \nq=\"\n");
  EXPECT_EQ(doc.Value(QStringLiteral("S3"), QStringLiteral("INCSYN")),
            QStringLiteral("#include "));
  EXPECT_EQ(doc.Value(QStringLiteral("S3"), QStringLiteral("KERSUF")),
            QStringLiteral("[120][3]= "));
  EXPECT_EQ(doc.Value(QStringLiteral("S3"), QStringLiteral("q")), QStringLiteral("\""));
}

TEST(IniDocument, FirstOfTwoEqualNamesWins) {
  const IniDocument doc = ParseOk("[A]\nk=1\nK=2\n[a]\nk=3\nj=4\n");
  EXPECT_EQ(doc.Value(QStringLiteral("A"), QStringLiteral("k")), QStringLiteral("1"));
  // The second section of the same name is shadowed, as the classic reader does.
  EXPECT_FALSE(doc.Value(QStringLiteral("A"), QStringLiteral("j")));
}

TEST(IniDocument, SetValueReplacesInPlaceOrAppendsToItsSection) {
  IniDocument doc = ParseOk("; made by hand\r\n[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
  doc.SetValue(QStringLiteral("a"), QStringLiteral("X"), QStringLiteral("9"));
  doc.SetValue(QStringLiteral("A"), QStringLiteral("z"), QStringLiteral("3"));
  doc.SetValue(QStringLiteral("C"), QStringLiteral("w"), QStringLiteral("4"));
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
  EXPECT_TRUE(withNul.error().ToString().startsWith(QStringLiteral("f.LCD:3:")));

  auto huge = IniDocument::Parse(QByteArray(IniDocument::kMaxBytes + 1, 'x'), "big.LCD");
  ASSERT_FALSE(huge.ok());
  EXPECT_EQ(huge.error().kind, Error::Kind::Limit);

  // Junk without sections or with broken brackets parses; nothing is found in it.
  for (const char* junk : {"=\n==\n[\n]\n", "[A\nk=v\n", "no section=1\n", "\xff\xfe[A]\n"}) {
    auto parsed = IniDocument::Parse(QByteArray(junk));
    ASSERT_TRUE(parsed.ok()) << junk;
    EXPECT_FALSE(parsed.value().Value(QStringLiteral("A"), QStringLiteral("k"))) << junk;
  }
}

}  // namespace
}  // namespace vt::settings
