// SPDX-License-Identifier: MIT
#include "app/output_naming.h"

#include <gtest/gtest.h>

namespace vt::app {
namespace {

enum Lang { kH, kAsm, kLib, kBas, kC, kAsmAndC };
enum Target { kText, kBin, kIHex };

settings::Settings With(const char* artwork, Lang lang, Target target) {
  settings::Settings s;
  s.output.nbmfn = QString::fromUtf8(artwork);
  s.output.Asmf = lang == kAsm || lang == kAsmAndC;
  s.output.libf = lang == kLib;
  s.output.basf = lang == kBas;
  s.output.cfil = lang == kC || lang == kAsmAndC;
  s.width.D8bc = target == kText;
  s.width.DHec = target == kBin;
  s.width.DIHec = target == kIHex;
  return s;
}

TEST(OutputNaming, NamesFollowTheLanguageKeysInOrderAndTheTarget) {
  const QString longExtension = QStringLiteral("a.") + QString(60, QLatin1Char('x'));
  struct Case {
    QString artwork;
    Lang lang;
    Target target;
    const char* source;
    const char* upper;
    const char* output;
  } cases[] = {{"NewBitmap.bmp", kC, kBin, "NewBitmap.c", ".C", "NewBitmap.bin"},
               {"Logo.png", kH, kText, "Logo.h", ".H", "Logo.h"},
               {"Logo", kH, kText, "Logo.h", ".H", "Logo.h"},  // no "." keeps it all
               {"my.logo.gif", kAsm, kText, "my.logo.asm", ".ASM", "my.logo.asm"},
               {"Logo.png", kAsmAndC, kText, "Logo.asm", ".ASM", "Logo.asm"},
               {"Logo.png", kLib, kText, "Logo.lib", ".LIB", "Logo.lib"},
               {"Logo.png", kBas, kIHex, "Logo.bas", ".BAS", "Logo.hex"},
               // At most 50 characters go from the last ".": the dot and 49 of the 60 x.
               {longExtension, kH, kText, "axxxxxxxxxxx.h", ".H", "axxxxxxxxxxx.h"}};
  for (const Case& c : cases) {
    const OutputNames names = OutputNamesOf(With(c.artwork.toUtf8().constData(), c.lang, c.target));
    EXPECT_EQ(names.SourceFileName, QString::fromUtf8(c.source)) << c.artwork.toStdString();
    EXPECT_EQ(names.SourceFileExtUpper, QString::fromUtf8(c.upper)) << c.artwork.toStdString();
    EXPECT_EQ(names.OutputFileName, QString::fromUtf8(c.output)) << c.artwork.toStdString();
  }
}

TEST(OutputNaming, ThePanelNameKeepsOnlyExactPictureExtensions) {
  struct Case {
    const char* panel;
    Lang lang;
    Target target;
    bool binaryTab;
    const char* expected;
  } cases[] = {{"/out/Old.BMP", kH, kText, false, "/out/Old.BMP"},
               {"/out/Old.PNG", kC, kText, false, "/out/Old.PNG"},
               {"/out/Old.JPG", kC, kText, false, "/out/Old.JPG"},
               {"/out/Old.bmp", kH, kText, false, "/out/Logo.h"},  // the test is exact
               {"/out/Old.h", kBas, kText, false, "/out/Logo.bas"},
               {"/out/Old.h", kH, kIHex, false, "/out/Logo.hex"},
               {"/out/Old.h", kH, kBin, true, "/out/Logo.bin"},
               {"C:\\out\\Old.c", kAsm, kText, false, "C:\\out\\Logo.asm"},
               {"Old", kLib, kText, false, "Logo.lib"}};
  for (const Case& c : cases) {
    EXPECT_EQ(defineOutputFileNameEXT(QString::fromUtf8(c.panel),
                                      With("Logo.png", c.lang, c.target), c.binaryTab),
              QString::fromUtf8(c.expected))
        << c.panel;
  }
}

TEST(OutputNaming, CleaningRemovesDashesAndBracketParts) {
  struct Case {
    const char* name;
    const char* expected;
  } cases[] = {
      {"my-logo[2].h", "mylogo.h"}, {"a[x]b[yy]-c.h", "abc.h"}, {"plain.h", "plain.h"},
      {"open[end.h", "open[end.h"}, {"--[]-.c", ".c"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(CleanOutputFileName(QString::fromUtf8(c.name)), QString::fromUtf8(c.expected))
        << c.name;
  }
}

}  // namespace
}  // namespace vt::app
