// SPDX-License-Identifier: MIT
#include "platform/posix/process_file_use.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <functional>

namespace vt::platform {
namespace {

/// Another process holding a file until it is killed. Made with `descriptor`, it returns once
/// that descriptor of the process refers to `file`; else once `ready` says so (at most 10 s).
class Holder {
 public:
  Holder(const QString& program, const QStringList& arguments, const QString& file, int descriptor,
         const std::function<bool()>& ready = {}) {
    process_.start(program, arguments);
    EXPECT_TRUE(process_.waitForStarted());
    const QString fd = QStringLiteral("/proc/%1/fd/%2").arg(process_.processId()).arg(descriptor);
    for (int i = 0; i < 1000; ++i) {
      if (ready ? ready() : QFileInfo(fd).symLinkTarget() == QFileInfo(file).canonicalFilePath()) {
        return;
      }
      QThread::msleep(10);
    }
    ADD_FAILURE() << "the other process never held the file";
  }
  ~Holder() {
    process_.kill();
    process_.waitForFinished();
  }

 private:
  QProcess process_;
};

class FileUseTest : public ::testing::Test {
 protected:
  FileUseTest() {
    QFile file(path_);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\\rtf1}");
  }
  QTemporaryDir dir_;
  QString path_ = dir_.filePath(QStringLiteral("report.rtf"));
  ProcessFileUse use_;
};

TEST_F(FileUseTest, AFileNobodyHoldsIsFree) {
  EXPECT_FALSE(use_.IsFileInUse(path_));
  EXPECT_FALSE(use_.IsFileInUse(dir_.filePath(QStringLiteral("missing.rtf"))));
  EXPECT_FALSE(use_.IsFileInUse(dir_.path()));
  // This process holding it does not count.
  QFile mine(path_);
  ASSERT_TRUE(mine.open(QIODevice::Append));
  EXPECT_FALSE(use_.IsFileInUse(path_));
}

TEST_F(FileUseTest, AnotherProcessWritingItHoldsItAReaderDoesNot) {
  {
    Holder writer(QStringLiteral("sh"),
                  {QStringLiteral("-c"), QStringLiteral("exec 7>>\"$0\"; exec sleep 30"), path_},
                  path_, 7);
    EXPECT_TRUE(use_.IsFileInUse(path_));
  }
  EXPECT_FALSE(use_.IsFileInUse(path_));
  Holder reader(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("exec 7<\"$0\"; exec sleep 30"), path_},
                path_, 7);
  EXPECT_FALSE(use_.IsFileInUse(path_));
}

TEST_F(FileUseTest, ALockOrAnOfficeLockFileHoldsIt) {
  {
    // The shell takes the lock on its own descriptor and becomes the sleep, which keeps both.
    Holder locker(
        QStringLiteral("sh"),
        {QStringLiteral("-c"), QStringLiteral("exec 3<\"$0\"; flock -x 3; exec sleep 30"), path_},
        path_, 0, [&] { return use_.IsFileInUse(path_); });
    EXPECT_TRUE(use_.IsFileInUse(path_));
  }
  EXPECT_FALSE(use_.IsFileInUse(path_));
  QFile lock(dir_.filePath(QStringLiteral(".~lock.report.rtf#")));
  ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
  lock.close();
  EXPECT_TRUE(use_.IsFileInUse(path_));
}

}  // namespace
}  // namespace vt::platform
