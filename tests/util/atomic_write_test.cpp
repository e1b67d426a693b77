// SPDX-License-Identifier: MIT
#include "util/atomic_write.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>

namespace vt {
namespace {

QByteArray Read(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

class AtomicWriteTest : public ::testing::TestWithParam<Durability> {
 protected:
  QTemporaryDir dir_;
  QString Path(const QString& name) const { return dir_.filePath(name); }
};

TEST_P(AtomicWriteTest, CreatesReplacesAndLeavesNothingBeside) {
  const QString path = Path(QStringLiteral("sub/out.rtf"));
  ASSERT_TRUE(WriteFileAtomically(path, "first", GetParam()).ok());
  EXPECT_EQ(Read(path), "first");
  ASSERT_TRUE(WriteFileAtomically(path, "second, longer", GetParam()).ok());
  EXPECT_EQ(Read(path), "second, longer");
  ASSERT_TRUE(WriteFileAtomically(path, "", GetParam()).ok());
  EXPECT_EQ(Read(path), "");
  EXPECT_EQ(QDir(Path(QStringLiteral("sub"))).entryList(QDir::Files),
            QStringList{QStringLiteral("out.rtf")});
}

TEST_P(AtomicWriteTest, KeepsTheTargetsPermissionsAndWritesAReadOnlyOne) {
  const QString path = Path(QStringLiteral("kept.h"));
  ASSERT_TRUE(WriteFileAtomically(path, "old", GetParam()).ok());
  const auto readOnly = QFileDevice::ReadOwner | QFileDevice::ReadGroup;
  ASSERT_TRUE(QFile::setPermissions(path, readOnly));
  ASSERT_TRUE(WriteFileAtomically(path, "new", GetParam()).ok());
  EXPECT_EQ(Read(path), "new");
  EXPECT_EQ(QFile::permissions(path) & (QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                        QFileDevice::ReadGroup | QFileDevice::WriteGroup),
            readOnly | QFileDevice::WriteOwner);
}

TEST_P(AtomicWriteTest, AFailedWriteNamesThePathAndKeepsTheOldFile) {
  const QString path = Path(QStringLiteral("out.h"));
  ASSERT_TRUE(WriteFileAtomically(path, "old", GetParam()).ok());
  // A file size limit makes the write itself fail, as a full disk would (even for root).
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit small = before;
  small.rlim_cur = 8;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const Result<bool> written = WriteFileAtomically(path, QByteArray(64, 'x'), GetParam());
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, oldHandler);
  ASSERT_FALSE(written.ok());
  EXPECT_EQ(written.error().path, path);
  EXPECT_EQ(Read(path), "old");
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files), QStringList{QStringLiteral("out.h")});
}

TEST_P(AtomicWriteTest, APathThatIsAFolderIsRefused) {
  const QString path = Path(QStringLiteral("folder"));
  ASSERT_TRUE(QDir().mkpath(path));
  EXPECT_FALSE(WriteFileAtomically(path, "data", GetParam()).ok());
  EXPECT_TRUE(QFileInfo(path).isDir());
  EXPECT_TRUE(QDir(path).entryList(QDir::Files).isEmpty());
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files), QStringList{});
}

TEST_P(AtomicWriteTest, WritesThroughALinkToItsFile) {
  const QString target = Path(QStringLiteral("real.h"));
  const QString link = Path(QStringLiteral("link.h"));
  ASSERT_TRUE(WriteFileAtomically(target, "old", GetParam()).ok());
  ASSERT_TRUE(QFile::link(target, link));
  ASSERT_TRUE(WriteFileAtomically(link, "new", GetParam()).ok());
  EXPECT_TRUE(QFileInfo(link).isSymLink());
  EXPECT_EQ(Read(target), "new");
}

TEST_P(AtomicWriteTest, AChainOfLinksUpdatesTheFinalFileAndKeepsBothLinks) {
  const QString target = Path(QStringLiteral("real.h"));
  const QString middle = Path(QStringLiteral("middle.h"));
  const QString first = Path(QStringLiteral("first.h"));
  ASSERT_TRUE(WriteFileAtomically(target, "old", GetParam()).ok());
  ASSERT_TRUE(QFile::link(target, middle));
  ASSERT_TRUE(QFile::link(middle, first));
  ASSERT_TRUE(WriteFileAtomically(first, "new", GetParam()).ok());
  EXPECT_TRUE(QFileInfo(first).isSymLink());
  EXPECT_TRUE(QFileInfo(middle).isSymLink());
  EXPECT_EQ(Read(target), "new");
  // A link to a file not yet there creates the file, not a file in the link's place.
  const QString dangling = Path(QStringLiteral("dangling.h"));
  ASSERT_TRUE(QFile::link(Path(QStringLiteral("later.h")), dangling));
  ASSERT_TRUE(WriteFileAtomically(dangling, "made", GetParam()).ok());
  EXPECT_TRUE(QFileInfo(dangling).isSymLink());
  EXPECT_EQ(Read(Path(QStringLiteral("later.h"))), "made");
}

TEST_P(AtomicWriteTest, ALoopOfLinksIsRefused) {
  const QString a = Path(QStringLiteral("a.h"));
  const QString b = Path(QStringLiteral("b.h"));
  ASSERT_TRUE(QFile::link(b, a));
  ASSERT_TRUE(QFile::link(a, b));
  const Result<bool> written = WriteFileAtomically(a, "data", GetParam());
  ASSERT_FALSE(written.ok());
  EXPECT_EQ(written.error().ToString(), a + QStringLiteral(": has too many levels of links"));
}

TEST_P(AtomicWriteTest, APipeIsRefusedWithoutWaitingOrReplacingIt) {
  const QString pipe = Path(QStringLiteral("fifo.h"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const Result<bool> written = WriteFileAtomically(pipe, "data", GetParam());
  ASSERT_FALSE(written.ok());
  EXPECT_EQ(written.error().ToString(), pipe + QStringLiteral(": is not a regular file"));
  struct stat status {};
  ASSERT_EQ(::stat(QFile::encodeName(pipe).constData(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files | QDir::System), QStringList{"fifo.h"});
}

TEST_P(AtomicWriteTest, ANewFileTakesTheUmaskAndNothingIsLeftBeside) {
  const mode_t previous = ::umask(027);
  const QString path = Path(QStringLiteral("fresh.h"));
  const Result<bool> written = WriteFileAtomically(path, "data", GetParam());
  ::umask(previous);
  ASSERT_TRUE(written.ok());
  struct stat status {};
  ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"fresh.h"});
}

TEST(CheckRegularOrMissing, TellsFilesFoldersAndDevicesApart) {
  QTemporaryDir dir;
  const QString file = dir.filePath(QStringLiteral("f"));
  ASSERT_TRUE(WriteFileAtomically(file, "x").ok());
  EXPECT_TRUE(CheckRegularOrMissing(file).ok());
  EXPECT_TRUE(CheckRegularOrMissing(dir.filePath(QStringLiteral("missing"))).ok());
  EXPECT_EQ(CheckRegularOrMissing(dir.path()).error().message, "is a folder");
  EXPECT_EQ(CheckRegularOrMissing(QStringLiteral("/dev/null")).error().ToString(),
            "/dev/null: is not a regular file");
}

INSTANTIATE_TEST_SUITE_P(BothDurabilities, AtomicWriteTest,
                         ::testing::Values(Durability::Synced, Durability::Cached));

}  // namespace
}  // namespace vt
