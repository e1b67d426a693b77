// SPDX-License-Identifier: MIT
#include "app/output_naming.h"

#include <gtest/gtest.h>

#include <tuple>

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
  const std::tuple<QString, Lang, Target, const char*, const char*, const char*> cases[] = {
      {"NewBitmap.bmp", kC, kBin, "NewBitmap.c", ".C", "NewBitmap.bin"},
      {"Logo.png", kH, kText, "Logo.h", ".H", "Logo.h"},
      {"Logo", kH, kText, "Logo.h", ".H", "Logo.h"},  // no "." keeps it all
      {"my.logo.gif", kAsm, kText, "my.logo.asm", ".ASM", "my.logo.asm"},
      {"Logo.png", kAsmAndC, kText, "Logo.asm", ".ASM", "Logo.asm"},
      {"Logo.png", kLib, kText, "Logo.lib", ".LIB", "Logo.lib"},
      {"Logo.png", kBas, kIHex, "Logo.bas", ".BAS", "Logo.hex"},
      // At most 50 characters go from the last ".": the dot and 49 of the 60 x.
      {longExtension, kH, kText, "axxxxxxxxxxx.h", ".H", "axxxxxxxxxxx.h"}};
  for (const auto& [artwork, lang, target, source, upper, output] : cases) {
    const OutputNames names = OutputNamesOf(With(artwork.toUtf8().constData(), lang, target));
    EXPECT_EQ(names.SourceFileName, QString::fromUtf8(source)) << artwork.toStdString();
    EXPECT_EQ(names.SourceFileExtUpper, QString::fromUtf8(upper)) << artwork.toStdString();
    EXPECT_EQ(names.OutputFileName, QString::fromUtf8(output)) << artwork.toStdString();
  }
}

TEST(OutputNaming, ThePanelNameKeepsOnlyExactPictureExtensions) {
  const std::tuple<const char*, Lang, Target, bool, const char*> cases[] = {
      {"/out/Old.BMP", kH, kText, false, "/out/Old.BMP"},
      {"/out/Old.PNG", kC, kText, false, "/out/Old.PNG"},
      {"/out/Old.JPG", kC, kText, false, "/out/Old.JPG"},
      {"/out/Old.bmp", kH, kText, false, "/out/Logo.h"},  // the test is exact
      {"/out/Old.h", kBas, kText, false, "/out/Logo.bas"},
      {"/out/Old.h", kH, kIHex, false, "/out/Logo.hex"},
      {"/out/Old.h", kH, kBin, true, "/out/Logo.bin"},
      {"C:\\out\\Old.c", kAsm, kText, false, "C:\\out\\Logo.asm"},
      {"Old", kLib, kText, false, "Logo.lib"}};
  for (const auto& [panel, lang, target, binaryTab, expected] : cases) {
    EXPECT_EQ(defineOutputFileNameEXT(QString::fromUtf8(panel), With("Logo.png", lang, target),
                                      binaryTab),
              QString::fromUtf8(expected))
        << panel;
  }
}

TEST(OutputNaming, CleaningRemovesDashesAndBracketParts) {
  const std::tuple<const char*, const char*> cases[] = {
      {"my-logo[2].h", "mylogo.h"}, {"a[x]b[yy]-c.h", "abc.h"}, {"plain.h", "plain.h"},
      {"open[end.h", "open[end.h"}, {"--[]-.c", ".c"},
  };
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(CleanOutputFileName(QString::fromUtf8(name)), QString::fromUtf8(expected)) << name;
  }
}

}  // namespace
}  // namespace vt::app
