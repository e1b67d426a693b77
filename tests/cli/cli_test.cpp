// SPDX-License-Identifier: MIT
#include "cli/cli.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include "settings/geometry.h"
#include "settings/ini_document.h"
#include "settings/key_table.h"
#include "settings/pixel_modes.h"
#include "temp_folders.h"

namespace vt::cli {
namespace {

/// One in-process run: exit status with everything printed.
struct CliRun {
  int status = -1;
  QString out;
  QString err;
};

class Cli : public ::testing::Test {
 protected:
  CliRun Exec(const QStringList& args) {
    CliRun run;
    QTextStream out(&run.out);
    QTextStream err(&run.err);
    run.status = RunCli(args, out, err, folders, fileUse);
    out.flush();
    err.flush();
    return run;
  }
  CliRun Settings(const QStringList& rest) {
    return Exec(QStringList{QStringLiteral("settings"), QStringLiteral("--settings"), file} + rest);
  }
  settings::IniDocument File() const {
    return settings::IniDocument::Parse(test::ReadAll(file)).value();
  }

  test::TempFolders folders;
  test::FakeFileUse fileUse;
  QString file = folders.Path(QStringLiteral("project.LCD"));
};

TEST_F(Cli, HelpDocumentsEveryCommandAndModeName) {
  const CliRun run = Exec({QStringLiteral("--help")});
  EXPECT_EQ(run.status, 0);
  for (const char* word : {"get KEY", "set KEY=VALUE", "mode NAME", "direction KEY", "corner N",
                           "size WxH", "monochrome-inverted", "gray4-2pages", "gray32-l",
                           "gray16-slices", "colors16m-packed", "colors262k", "tua"}) {
    EXPECT_TRUE(run.out.contains(QString::fromLatin1(word))) << word;
  }
  EXPECT_EQ(Exec({}).status, 2);
  EXPECT_EQ(Exec({QStringLiteral("frobnicate")}).status, 2);
}

TEST_F(Cli, AMissingFileIsCreatedWithEveryKeyInTheOrderOfTheList) {
  const CliRun run = Settings({QStringLiteral("set"), QStringLiteral("GWI=240")});
  ASSERT_EQ(run.status, 0) << run.err.toStdString();
  const settings::IniDocument doc = File();
  // Walk the file and the key list together: each written key appears, in order, per section.
  QHash<QString, QStringList> expected;
  QStringList sectionOrder;
  for (const settings::KeyRow& row : settings::KeyTable()) {
    if (row.flags & settings::kNoWrite) continue;
    const QString section = row.WriteSection().toLower();
    if (!sectionOrder.contains(section)) sectionOrder << section;
    if (!expected[section].contains(row.WriteKey())) expected[section] << row.WriteKey();
  }
  QStringList fileSections;
  for (const QString& s : doc.Sections()) fileSections << s.toLower();
  EXPECT_EQ(fileSections.mid(0, sectionOrder.size()), sectionOrder);
  EXPECT_EQ(fileSections.mid(sectionOrder.size()),
            (QStringList{QStringLiteral("s18"), QStringLiteral("s19")}));
  for (const QString& section : sectionOrder) {
    EXPECT_EQ(doc.Keys(section), expected[section]) << section.toStdString();
  }
  EXPECT_EQ(doc.Value(QStringLiteral("B2"), QStringLiteral("GWI")), QStringLiteral("240"));
  EXPECT_EQ(doc.Keys(QStringLiteral("S18")).size(), 20);
  EXPECT_EQ(doc.Keys(QStringLiteral("S19")).size(), 11);
}

TEST_F(Cli, GetPrintsWhatALoadSees) {
  ASSERT_EQ(Settings({QStringLiteral("set"), QStringLiteral("GHI=32"), QStringLiteral("wew1=5"),
                      QStringLiteral("Mine.note=kept"), QStringLiteral("mru0=/x/a.bmp")})
                .status,
            0);
  struct Case {
    const char* key;
    const char* line;
  } cases[] = {
      {"GHI", "GHI=32\n"},         {"ghi", "GHI=32\n"},       {"wew1", "wew1=900\n"},
      {"FXHB", "FXHB=X\n"},        {"chk", "chk=check\n"},    {"Mine.note", "Mine.note=kept\n"},
      {"mru0", "mru0=/x/a.bmp\n"}, {"mru19", "mru19=_\n"},    {"B10.HCO", "B10.HCO=0\n"},
      {"Endst", "Endst=};\n"},     {"vecp8T", "vecp8T=\"\n"}, {"Logws", "Logws=0\n"},
      {"cs15h", "cs15h=0\n"},      {"ext20", "ext20=\n"},     {"fmru10", "fmru10=_\n"},
  };
  for (const Case& c : cases) {
    const CliRun run = Settings({QStringLiteral("get"), QString::fromLatin1(c.key)});
    EXPECT_EQ(run.status, 0) << c.key << run.err.toStdString();
    EXPECT_EQ(run.out, QString::fromLatin1(c.line)) << c.key;
  }
  const CliRun several =
      Settings({QStringLiteral("get"), QStringLiteral("GWI"), QStringLiteral("GHI")});
  EXPECT_EQ(several.out, QStringLiteral("GWI=128\nGHI=32\n"));
  const CliRun unknown = Settings({QStringLiteral("get"), QStringLiteral("NoSuchKey")});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_TRUE(unknown.err.contains(QStringLiteral("NoSuchKey")));
}

TEST_F(Cli, SetRefusesWhatItCannotPlace) {
  struct Case {
    const char* assignment;
    int status;
  } cases[] = {{"Unqualified=1", 2}, {"noequals", 2}, {"=5", 2}};
  for (const Case& c : cases) {
    const CliRun run = Settings({QStringLiteral("set"), QString::fromLatin1(c.assignment)});
    EXPECT_EQ(run.status, c.status) << c.assignment;
    EXPECT_FALSE(run.err.isEmpty()) << c.assignment;
  }
  const CliRun bad = Settings({QStringLiteral("set"), QStringLiteral("GWI=wide")});
  EXPECT_EQ(bad.status, 0);
  EXPECT_TRUE(bad.err.contains(QStringLiteral("warning")));
  EXPECT_EQ(File().Value(QStringLiteral("B2"), QStringLiteral("GWI")), QStringLiteral("128"));
}

TEST_F(Cli, ModeDirectionCornerAndSizeRunTheSelectors) {
  ASSERT_EQ(Settings({QStringLiteral("mode"), QStringLiteral("colors65536")}).status, 0);
  EXPECT_EQ(File().Value(QStringLiteral("S4"), QStringLiteral("C65535")), QStringLiteral("1"));
  EXPECT_EQ(File().Value(QStringLiteral("S4"), QStringLiteral("Monc")), QStringLiteral("0"));

  ASSERT_EQ(Settings({QStringLiteral("mode"), QStringLiteral("monochrome")}).status, 0);
  ASSERT_EQ(Settings({QStringLiteral("direction"), QStringLiteral("tu")}).status, 0);
  EXPECT_EQ(File().Value(QStringLiteral("B3"), QStringLiteral("tu")), QStringLiteral("1"));
  EXPECT_EQ(File().Value(QStringLiteral("B2"), QStringLiteral("CORN4")), QStringLiteral("1"));

  ASSERT_EQ(Settings({QStringLiteral("corner"), QStringLiteral("2")}).status, 0);
  EXPECT_EQ(File().Value(QStringLiteral("B2"), QStringLiteral("CORN2")), QStringLiteral("1"));
  EXPECT_EQ(File().Value(QStringLiteral("B2"), QStringLiteral("CORN4")), QStringLiteral("0"));

  ASSERT_EQ(Settings({QStringLiteral("size"), QStringLiteral("480x272")}).status, 0);
  EXPECT_EQ(File().Value(QStringLiteral("B2"), QStringLiteral("GWI")), QStringLiteral("480"));
  EXPECT_EQ(File().Value(QStringLiteral("B2"), QStringLiteral("GHI")), QStringLiteral("272"));
}

TEST_F(Cli, ARefusedSelectionPrintsItsMessageAndLeavesTheFile) {
  // 100 wide is no multiple of 8: a horizontal direction does not fit it.
  ASSERT_EQ(Settings({QStringLiteral("size"), QStringLiteral("100x32")}).status, 0);
  ASSERT_EQ(Settings({QStringLiteral("direction"), QStringLiteral("td")}).status, 0);
  const QByteArray before = test::ReadAll(file);
  const CliRun run = Settings({QStringLiteral("direction"), QStringLiteral("tl")});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.contains(
      QStringLiteral("Horizontal size should be a multiple of 8 for horizontal conversion")))
      << run.err.toStdString();
  EXPECT_EQ(test::ReadAll(file), before);

  struct Case {
    const char* command;
    const char* value;
    int status;
  } cases[] = {{"mode", "colors9", 2}, {"direction", "up", 2}, {"corner", "5", 2},
               {"corner", "x", 2},     {"size", "12", 2},      {"size", "2000x64", 1},
               {"size", "64x0", 1}};
  for (const Case& c : cases) {
    const CliRun r = Settings({QString::fromLatin1(c.command), QString::fromLatin1(c.value)});
    EXPECT_EQ(r.status, c.status) << c.command << " " << c.value;
    EXPECT_FALSE(r.err.isEmpty()) << c.command << " " << c.value;
    EXPECT_EQ(test::ReadAll(file), before) << c.command << " " << c.value;
  }
}

TEST_F(Cli, AUserSizeIsRememberedAndTold) {
  const CliRun run = Settings({QStringLiteral("size"), QStringLiteral("200x48")});
  ASSERT_EQ(run.status, 0) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains(QStringLiteral(" User Dot Matrix Size has been defined ! ")));
  const settings::IniDocument doc = File();
  EXPECT_EQ(doc.Value(QStringLiteral("B2"), QStringLiteral("GWI")), QStringLiteral("200"));
  EXPECT_EQ(doc.Value(QStringLiteral("I2"), QStringLiteral("cs0w")), QStringLiteral("200"));
  EXPECT_EQ(doc.Value(QStringLiteral("I2"), QStringLiteral("cs0h")), QStringLiteral("48"));
}

TEST(CliBinary, RunsAsAProcessWithTheSameResults) {
  test::TempFolders folders;
  const QString file = folders.Path(QStringLiteral("bin.LCD"));
  QProcess process;
  process.start(QStringLiteral(VT_CLI_BINARY),
                {QStringLiteral("settings"), QStringLiteral("--settings"), file,
                 QStringLiteral("get"), QStringLiteral("GWI"), QStringLiteral("tr")});
  ASSERT_TRUE(process.waitForFinished(30000));
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  EXPECT_EQ(process.readAllStandardOutput(), QByteArray("GWI=128\ntr=1\n"));
}

// The command lines the README shows name modes and directions the tool knows.
TEST(CliReadme, ExamplesNameKnownModesAndDirections) {
  QFile readme(QStringLiteral(VT_TEST_DATA_DIR "/../../README.md"));
  ASSERT_TRUE(readme.open(QIODevice::ReadOnly));
  const QString text = QString::fromUtf8(readme.readAll());
  static const QRegularExpression option(
      QStringLiteral("vantorelle-cli .*?(?:--| )(mode|direction) ([\\w-]+)"));
  int examples = 0;
  for (auto it = option.globalMatch(text); it.hasNext(); ++examples) {
    const auto m = it.next();
    const QString name = m.captured(2);
    if (m.captured(1) == QStringLiteral("mode")) {
      EXPECT_TRUE(settings::PixelModeFromName(name)) << name.toStdString();
      continue;
    }
    bool known = false;
    for (const settings::ScanDirectionInfo& info : settings::ScanDirectionTable()) {
      known = known || name == QLatin1String(info.key);
    }
    EXPECT_TRUE(known) << name.toStdString();
  }
  EXPECT_GE(examples, 3);
}

}  // namespace
}  // namespace vt::cli
