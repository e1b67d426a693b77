// SPDX-License-Identifier: MIT
#include "cli/cli.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include "settings/geometry.h"
#include "settings/ini_document.h"
#include "settings/pixel_modes.h"
#include "settings/settings_file.h"
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
  /// `settings --settings FILE` followed by `words`, parted by blanks.
  CliRun Settings(const char* words) {
    return Exec(QStringList{QStringLiteral("settings"), QStringLiteral("--settings"), file} +
                QString::fromLatin1(words).split(QLatin1Char(' ')));
  }
  settings::IniDocument File() const {
    return settings::IniDocument::Parse(test::ReadAll(file)).value();
  }
  /// The value the file holds for `section`.`key`.
  QString Value(const char* section, const char* key) const {
    return File().Value(QString::fromLatin1(section), QString::fromLatin1(key)).value_or("?");
  }

  test::TempFolders folders;
  test::FakeFileUse fileUse;
  QString file = folders.Path(QStringLiteral("project.LCD"));
};

TEST_F(Cli, HelpIsTheSameTextForEachWayOfAskingAndAnUnknownCommandPointsToIt) {
  // The text itself is the golden of the help case of the command-line goldens.
  const QString help =
      QString::fromUtf8(test::ReadAll(QStringLiteral(VT_TEST_DATA_DIR "/cli/help/stdout")));
  ASSERT_FALSE(help.isEmpty());
  const struct {
    QStringList args;
    int status;
  } asks[] = {{{QStringLiteral("--help")}, 0},
              {{QStringLiteral("-h")}, 0},
              {{QStringLiteral("help")}, 0},
              {{}, 2}};
  for (const auto& ask : asks) {
    const CliRun run = Exec(ask.args);
    EXPECT_EQ(run.status, ask.status) << ask.args.join(' ').toStdString();
    EXPECT_EQ(run.out, help) << ask.args.join(' ').toStdString();
    EXPECT_TRUE(run.err.isEmpty());
  }
  const CliRun unknown = Exec({QStringLiteral("frobnicate")});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.err,
            QStringLiteral("vantorelle-cli: unknown command 'frobnicate'; try --help\n"));
  EXPECT_TRUE(unknown.out.isEmpty());
}

TEST_F(Cli, AMissingFileIsCreatedWithEveryKeyOfAFullSave) {
  const CliRun run = Settings("set GWI=240");
  ASSERT_EQ(run.status, 0) << run.err.toStdString();
  settings::IniDocument full;
  settings::WriteSettings(settings::Settings{}, full);
  const settings::IniDocument doc = File();
  EXPECT_EQ(doc.Sections(), full.Sections());
  for (const QString& section : full.Sections()) {
    EXPECT_EQ(doc.Keys(section), full.Keys(section)) << section.toStdString();
  }
  EXPECT_EQ(Value("B2", "GWI"), "240");
}

TEST_F(Cli, GetPrintsWhatALoadSees) {
  ASSERT_EQ(Settings("set GHI=32 wew1=5 Mine.note=kept mru0=/x/a.bmp").status, 0);
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
    const CliRun run = Settings(qPrintable(QStringLiteral("get ") + c.key));
    EXPECT_EQ(run.status, 0) << c.key << run.err.toStdString();
    EXPECT_EQ(run.out, QString::fromLatin1(c.line)) << c.key;
  }
  EXPECT_EQ(Settings("get GWI GHI").out, QStringLiteral("GWI=128\nGHI=32\n"));
  const CliRun unknown = Settings("get NoSuchKey");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "vantorelle-cli: no key NoSuchKey in " + file + '\n');
  EXPECT_TRUE(unknown.out.isEmpty());
}

TEST_F(Cli, DescribeTellsEachKeyWithoutASettingsFile) {
  const QString gwi =
      QStringLiteral("B2.GWI (number, default \"128\"): Display width in pixels (1 to 1024).\n");
  const struct {
    QStringList args;  // after "settings"
    int status;
    QString out;
    const char* errHas;  // empty: nothing on stderr
  } cases[] = {
      {{"describe", "GWI"}, 0, gwi, ""},
      {{"--settings", file, "describe", "gwi", "b10.hco"},
       0,
       gwi + "B10.HCO (number, default \"0\"): Number twin of B2.HCO; kept for older files, not "
             "used.\n",
       ""},
      {{"describe", "mru3"},
       0,
       "S18.mru3 (text, default \"_\"): Recently used file in slot 3 (0 to 19); \"_\" when "
       "free.\n",
       ""},
      {{"describe", "Nope", "GWI", "mru20"}, 1, gwi, "unknown key Nope"},
      {{"describe", "Mine.note"}, 1, "", "unknown key Mine.note"},
      {{"describe"}, 2, "", "describe"},
  };
  for (const auto& c : cases) {
    const CliRun run = Exec(QStringList{QStringLiteral("settings")} + c.args);
    const std::string what = c.args.join(QLatin1Char(' ')).toStdString();
    EXPECT_EQ(run.status, c.status) << what;
    EXPECT_EQ(run.out, c.out) << what;
    if (*c.errHas) {
      EXPECT_TRUE(run.err.contains(QString::fromLatin1(c.errHas))) << what << run.err.toStdString();
    } else {
      EXPECT_TRUE(run.err.isEmpty()) << what << run.err.toStdString();
    }
  }
  EXPECT_FALSE(QFileInfo::exists(file)) << "describe neither reads nor creates the settings file";
}

TEST_F(Cli, SetRefusesWhatItCannotPlace) {
  const std::pair<const char*, const char*> refusals[] = {
      {"set Unqualified=1",
       "vantorelle-cli: unknown key Unqualified; name its section (SECTION.KEY) to add a key of "
       "your own\n"},
      {"set noequals", "vantorelle-cli: expected KEY=VALUE, got 'noequals'\n"},
      {"set =5", "vantorelle-cli: expected KEY=VALUE, got '=5'\n"}};
  for (const auto& [assignment, message] : refusals) {
    const CliRun run = Settings(assignment);
    EXPECT_EQ(run.status, 2) << assignment;
    EXPECT_EQ(run.err, QString::fromLatin1(message)) << assignment;
  }
  const CliRun bad = Settings("set GWI=wide");
  EXPECT_EQ(bad.status, 0);
  EXPECT_EQ(bad.err,
            QStringLiteral("vantorelle-cli: warning: GWI holds a number; 'wide' will read as its "
                           "default\n"));
  EXPECT_EQ(Value("B2", "GWI"), "128");
}

TEST_F(Cli, ModeDirectionCornerAndSizeRunTheSelectors) {
  // Each command, then the keys it must leave in the file.
  const std::pair<const char*, QStringList> steps[] = {
      {"mode colors65536", {"S4.C65535=1", "S4.Monc=0"}},
      {"mode monochrome", {"S4.Monc=1"}},
      {"direction tu", {"B3.tu=1", "B2.CORN4=1"}},
      {"corner 2", {"B2.CORN2=1", "B2.CORN4=0"}},
      {"size 480x272", {"B2.GWI=480", "B2.GHI=272"}}};
  for (const auto& [command, keys] : steps) {
    ASSERT_EQ(Settings(command).status, 0) << command;
    for (const QString& key : keys) {
      const QStringList parts = key.split(QRegularExpression(QStringLiteral("[.=]")));
      EXPECT_EQ(Value(qPrintable(parts[0]), qPrintable(parts[1])), parts[2]) << command;
    }
  }
}

TEST_F(Cli, ARefusedSelectionPrintsItsMessageAndLeavesTheFile) {
  // 100 wide is no multiple of 8: a horizontal direction does not fit it.
  ASSERT_EQ(Settings("size 100x32").status, 0);
  ASSERT_EQ(Settings("direction td").status, 0);
  const QByteArray before = test::ReadAll(file);
  const CliRun run = Settings("direction tl");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, QStringLiteral(
                         "Error:   Work Canvas Dot Matrix size does not fit in this paging scheme "
                         "! \n Horizontal size should be a multiple of 8 for horizontal "
                         "conversion\n Use a vertical conversion direction  \n"));
  EXPECT_EQ(test::ReadAll(file), before);

  const QString corner = QStringLiteral(
      "vantorelle-cli: corner is 1 (top left), 2 (top right), 3 (bottom right) or 4 (bottom "
      "left), not '%1'\n");
  const struct {
    const char* command;
    int status;
    QString message;
  } cases[] = {
      {"mode colors9", 2, "vantorelle-cli: unknown mode 'colors9'; see --help for the names\n"},
      {"direction up", 2,
       "vantorelle-cli: unknown direction 'up'; one of tr, tl, tra, tla, td, tda, tu, tua\n"},
      {"corner 5", 2, corner.arg(5)},
      {"corner x", 2, corner.arg('x')},
      {"size 12", 2, "vantorelle-cli: size is WIDTHxHEIGHT, such as 128x64, not '12'\n"},
      {"size 2000x64", 1, "vantorelle-cli: a display size is 1x1 to 1024x768, not 2000x64\n"},
      {"size 64x0", 1, "vantorelle-cli: a display size is 1x1 to 1024x768, not 64x0\n"}};
  for (const auto& c : cases) {
    const CliRun r = Settings(c.command);
    EXPECT_EQ(r.status, c.status) << c.command;
    EXPECT_EQ(r.err, c.message) << c.command;
    EXPECT_EQ(test::ReadAll(file), before) << c.command;
  }
}

TEST_F(Cli, AUserSizeIsRememberedAndTold) {
  const CliRun run = Settings("size 200x48");
  ASSERT_EQ(run.status, 0) << run.err.toStdString();
  EXPECT_EQ(run.err, QStringLiteral("Information:  User Dot Matrix Size has been defined ! \n"));
  EXPECT_EQ(QStringList({Value("B2", "GWI"), Value("I2", "cs0w"), Value("I2", "cs0h")}),
            QStringList({"200", "200", "48"}));
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
