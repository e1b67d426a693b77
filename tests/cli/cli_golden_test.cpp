// SPDX-License-Identifier: MIT
//
// Whole command lines of the real vantorelle-cli, each folder under tests/data/cli one run:
//
//   args          the arguments after the program name, one a line (blanks need no quoting);
//                 $CASE stands for the case folder (inputs), $WORK for a fresh temporary folder
//   settings.LCD  optional: copied to $WORK/settings.LCD before the run, $WORK filled in
//   work/         optional: copied into $WORK before the run, as it is (links stay links)
//   stdout, stderr, status
//                 what the run prints and its exit status
//   expected/P    a file the run must leave at $WORK/P, for every such P
//   absent        optional: paths under $WORK, one a line, that must not exist after the run
//   files         every file and folder under $WORK after the run
//   notes         optional, for the reader: how the expected bytes follow from the picture
//
// The input pictures are written by make_pictures.py in that folder, from grids of characters.
//
// Before comparing, the temporary folder and the case folder are put back as $WORK and $CASE in
// what is printed and in the files written (.bin files excepted), and dates and times become a
// placeholder. VT_UPDATE_GOLDEN=1 rewrites stdout, stderr, status, files and each file present
// under expected/; `absent` is written by hand only.
//
// The runs go through the binary, never through the functions behind it, so that these goldens
// hold whatever shape the code of the tool takes.

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "golden.h"
#include "temp_folders.h"
#include "util/atomic_write.h"

namespace vt::test {
namespace {

QString CasesFolder() { return QStringLiteral(VT_TEST_DATA_DIR "/cli"); }

/// The case folders, by name.
std::vector<std::string> CaseNames() {
  std::vector<std::string> names;
  const QStringList folders =
      QDir(CasesFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
  for (const QString& folder : folders) names.push_back(folder.toStdString());
  return names;
}

/// Paths of all files under `root`, relative to it, sorted; `.actual` files left out.
QStringList FilesUnder(const QString& root) {
  QStringList files;
  QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (it.hasNext()) {
    const QString path = QDir(root).relativeFilePath(it.next());
    if (!path.endsWith(QStringLiteral(".actual"))) files << path;
  }
  files.sort();
  return files;
}

/// Every file and folder under `root`, relative to it, a folder with a closing "/".
QByteArray Listing(const QString& root) {
  QStringList entries;
  QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                  QDirIterator::Subdirectories);
  while (it.hasNext()) {
    const QFileInfo info(it.next());
    entries << QDir(root).relativeFilePath(info.filePath()) +
                   (info.isDir() ? QStringLiteral("/") : QString());
  }
  entries.sort();
  QByteArray listing;
  for (const QString& entry : entries) listing += entry.toUtf8() + '\n';
  return listing;
}

/// Copies the tree under `from` into `to`; a symbolic link is made again as a link to the same
/// name, so that a link to nowhere stays one.
bool CopyTree(const QString& from, const QString& to) {
  QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                  QDirIterator::Subdirectories);
  while (it.hasNext()) {
    const QFileInfo info(it.next());
    const QString target = to + QLatin1Char('/') + QDir(from).relativeFilePath(info.filePath());
    bool ok = true;
    if (info.isSymLink()) {
      ok = QFile::link(QFileInfo(info.symLinkTarget()).fileName(), target);
    } else if (info.isDir()) {
      ok = QDir().mkpath(target);
    } else {
      ok = QDir().mkpath(QFileInfo(target).absolutePath()) && QFile::copy(info.filePath(), target);
    }
    if (!ok) return false;
  }
  return true;
}

/// Lines of a case file, without the line break after the last.
QStringList Lines(const QByteArray& text) {
  if (text.isEmpty()) return {};
  QString lines = QString::fromUtf8(text);
  if (lines.endsWith(QLatin1Char('\n'))) lines.chop(1);
  return lines.split(QLatin1Char('\n'));
}

/// The two folders of a run, as they are written in a case and as the run sees them.
struct Places {
  QString caseFolder;
  QString work;

  QString Expand(QString text) const {
    return text.replace(QStringLiteral("$CASE"), caseFolder).replace(QStringLiteral("$WORK"), work);
  }
  /// Printed or written text with the folders back as placeholders and dates made fixed.
  QByteArray Normalize(QByteArray text) const {
    for (const QString& folder : {caseFolder, work}) {
      const QByteArray placeholder = folder == work ? "$WORK" : "$CASE";
      const QString canonical = QDir(folder).canonicalPath();
      if (!canonical.isEmpty() && canonical != folder)
        text.replace(canonical.toUtf8(), placeholder);
      text.replace(folder.toUtf8(), placeholder);
    }
    return NormalizeDates(text);
  }
};

class CliGolden : public ::testing::TestWithParam<std::string> {
 protected:
  QString Name() const { return QString::fromStdString(GetParam()); }
  QString CaseFile(const QString& name) const {
    return CasesFolder() + QLatin1Char('/') + Name() + QLatin1Char('/') + name;
  }
  QString Golden(const QString& name) const {
    return QStringLiteral("cli/") + Name() + QLatin1Char('/') + name;
  }
};

TEST_P(CliGolden, RunMatchesItsFiles) {
  QTemporaryDir work;
  QTemporaryDir runtime;  // Qt wants a private runtime folder; kept out of $WORK
  ASSERT_TRUE(work.isValid() && runtime.isValid());
  const Places places{CasesFolder() + QLatin1Char('/') + Name(), work.path()};
  ASSERT_TRUE(QDir(work.path()).mkpath(QStringLiteral("home")));

  ASSERT_TRUE(QFile::exists(CaseFile(QStringLiteral("args")))) << "no args file";
  QStringList args;
  for (const QString& line : Lines(ReadAll(CaseFile(QStringLiteral("args")))))
    args << places.Expand(line);
  if (QFileInfo(CaseFile(QStringLiteral("work"))).isDir()) {
    ASSERT_TRUE(CopyTree(CaseFile(QStringLiteral("work")), work.path()));
  }
  if (QFile::exists(CaseFile(QStringLiteral("settings.LCD")))) {
    const QString text = QString::fromUtf8(ReadAll(CaseFile(QStringLiteral("settings.LCD"))));
    ASSERT_TRUE(WriteFileAtomically(work.filePath(QStringLiteral("settings.LCD")),
                                    places.Expand(text).toUtf8()));
  }

  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const QString& name : environment.keys()) {
    // The XDG folders would point the documents and settings folders elsewhere.
    if (name.startsWith(QStringLiteral("XDG_"))) environment.remove(name);
  }
  environment.insert(QStringLiteral("HOME"), work.filePath(QStringLiteral("home")));
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
  QProcess process;
  process.setProcessEnvironment(environment);
  process.setWorkingDirectory(work.path());
  process.start(QStringLiteral(VT_CLI_BINARY), args);
  ASSERT_TRUE(process.waitForFinished(30000)) << "the run did not end";
  ASSERT_EQ(process.exitStatus(), QProcess::NormalExit) << "the run crashed";

  EXPECT_TRUE(MatchesGolden(places.Normalize(process.readAllStandardOutput()),
                            Golden(QStringLiteral("stdout"))));
  EXPECT_TRUE(MatchesGolden(places.Normalize(process.readAllStandardError()),
                            Golden(QStringLiteral("stderr"))));
  EXPECT_TRUE(MatchesGolden(QByteArray::number(process.exitCode()) + '\n',
                            Golden(QStringLiteral("status"))));

  for (const QString& path : FilesUnder(CaseFile(QStringLiteral("expected")))) {
    SCOPED_TRACE(path.toStdString());
    const QString written = work.filePath(path);
    if (!QFile::exists(written)) {
      ADD_FAILURE() << "the run did not write $WORK/" << path.toStdString();
      continue;
    }
    const QByteArray bytes = ReadAll(written);
    const bool binary = path.endsWith(QStringLiteral(".bin"), Qt::CaseInsensitive);
    EXPECT_TRUE(MatchesGolden(binary ? bytes : places.Normalize(bytes),
                              Golden(QStringLiteral("expected/") + path)));
  }
  for (const QString& path : Lines(ReadAll(CaseFile(QStringLiteral("absent"))))) {
    EXPECT_FALSE(QFileInfo::exists(work.filePath(path)))
        << "$WORK/" << path.toStdString() << " exists";
  }
  EXPECT_TRUE(
      MatchesGolden(places.Normalize(Listing(work.path())), Golden(QStringLiteral("files"))));
}

TEST(NormalizeDates, PutsThePlaceholderForEachDateAndTimeOnly) {
  const struct {
    QByteArray text;
    QByteArray normalized;
  } cases[] = {
      {"/* 14/03/2026 15:09:26 */\r\n", "/* DD/MM/YYYY hh:mm:ss */\r\n"},
      {"01/01/1999 00:00:0031/12/2030 23:59:59", "DD/MM/YYYY hh:mm:ssDD/MM/YYYY hh:mm:ss"},
      {"14/03/2026", "14/03/2026"},                                      // a date alone
      {"14/03/2026 15:09", "14/03/2026 15:09"},                          // no seconds
      {"1/03/2026 15:09:26", "1/03/2026 15:09:26"},                      // one digit short
      {"14-03-2026 15:09:26", "14-03-2026 15:09:26"},                    // other separators
      {"\xE9 14/03/2026 15:09:26\xFF", "\xE9 DD/MM/YYYY hh:mm:ss\xFF"},  // bytes kept as they are
  };
  for (const auto& c : cases)
    EXPECT_EQ(NormalizeDates(c.text), c.normalized) << c.text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Cases, CliGolden, ::testing::ValuesIn(CaseNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                           return info.param;
                         });

}  // namespace
}  // namespace vt::test
