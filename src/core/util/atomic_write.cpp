// SPDX-License-Identifier: MIT
#include "util/atomic_write.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <cerrno>
#include <cstring>

namespace vt {
namespace {

QString SystemError(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

Error IoError(const QString& path, const QString& why) {
  return Error{Error::Kind::Io, path, 0, 0, why};
}

/// A file descriptor closed when it goes out of scope.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  /// Closes now; the error of close, or 0.
  int Close() {
    const int result = fd_ >= 0 ? ::close(fd_) : 0;
    fd_ = -1;
    return result < 0 ? errno : 0;
  }

 private:
  int fd_;
};

/// Writes all of `data`; the error of the write that fell short, or 0.
int WriteAll(int fd, const QByteArray& data) {
  qsizetype done = 0;
  while (done < data.size()) {
    const ssize_t n = ::write(fd, data.constData() + done, size_t(data.size() - done));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    if (n == 0) return ENOSPC;
    done += n;
  }
  return 0;
}

/// A name beside `path` that nothing holds yet, for the finished file before it replaces the
/// target.
QString TemporaryName(const QString& path) {
  return QStringLiteral("%1.%2.tmp")
      .arg(path)
      .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
}

/// Opens a file for the new data in the folder of `path`: unnamed where the file system allows
/// it (a kill before it is complete then leaves nothing), else under a temporary name, which is
/// returned in `named`. The umask applies to both, as to any new file.
int OpenTemporary(const QString& path, QString& named) {
  const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
  const int fd = ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (fd >= 0) return fd;
  for (int attempt = 0; attempt < 8; ++attempt) {
    named = TemporaryName(path);
    const int byName =
        ::open(QFile::encodeName(named).constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (byName >= 0 || errno != EEXIST) return byName;
  }
  return -1;
}

}  // namespace

Result<QString> FinalTarget(const QString& path) {
  QString current = QFileInfo(path).absoluteFilePath();
  for (int hops = 0; hops < 40; ++hops) {
    const QFileInfo info(current);
    if (!info.isSymLink()) return current;
    // symLinkTarget gives the absolute path of the link's target, whether or not it exists.
    current = info.symLinkTarget();
  }
  return IoError(path, QStringLiteral("has too many levels of links"));
}

Result<bool> CheckRegularOrMissing(const QString& path) {
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return true;
    return IoError(path, SystemError(errno));
  }
  if (S_ISDIR(status.st_mode)) return IoError(path, QStringLiteral("is a folder"));
  if (!S_ISREG(status.st_mode)) return IoError(path, QStringLiteral("is not a regular file"));
  return true;
}

// The data goes to a new file beside the target, written unbuffered so that a short write (a
// full disk, a size limit) is seen as such, flushed to the disk when asked, then renamed over
// the target (rename replaces a file in one step). QSaveFile is not used: its buffered write
// reports a short write as a success and the target is then replaced by the truncated file.
Result<bool> WriteFileAtomically(const QString& requested, const QByteArray& data,
                                 Durability durability) {
  const Result<QString> target = FinalTarget(requested);
  if (!target) return target.error();
  const QString path = target.value();
  if (const Result<bool> regular = CheckRegularOrMissing(path); !regular) {
    return IoError(requested, regular.error().message);
  }
  QDir().mkpath(QFileInfo(path).absolutePath());
  auto failure = [&](const QString& why) -> Result<bool> { return IoError(requested, why); };

  QString named;  // empty while the new file has no name
  Descriptor file(OpenTemporary(path, named));
  if (file.get() < 0) return failure(SystemError(errno));
  auto discard = [&](int error) {
    file.Close();
    if (!named.isEmpty()) ::unlink(QFile::encodeName(named).constData());
    return failure(SystemError(error));
  };
  if (const int error = WriteAll(file.get(), data); error != 0) return discard(error);
  // A new file has the usual permissions (the umask applied when it was opened); a replaced
  // one keeps those of the file it replaces, made writable by its owner: a read-only target is
  // written all the same, as the user asked for it.
  struct stat old {};
  if (::stat(QFile::encodeName(path).constData(), &old) == 0 &&
      ::fchmod(file.get(), (old.st_mode & 07777) | S_IWUSR) != 0) {
    return discard(errno);
  }
  if (durability == Durability::Synced && ::fsync(file.get()) != 0) return discard(errno);
  if (named.isEmpty()) {
    // Give the finished file a name beside the target: only now can a kill leave it there.
    const QByteArray self = QByteArray("/proc/self/fd/") + QByteArray::number(file.get());
    for (int attempt = 0; attempt < 8 && named.isEmpty(); ++attempt) {
      const QString candidate = TemporaryName(path);
      if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, QFile::encodeName(candidate).constData(),
                   AT_SYMLINK_FOLLOW) == 0) {
        named = candidate;
      } else if (errno != EEXIST) {
        return discard(errno);
      }
    }
    if (named.isEmpty()) return discard(EEXIST);
  }
  if (const int error = file.Close(); error != 0) return discard(error);
  if (::rename(QFile::encodeName(named).constData(), QFile::encodeName(path).constData()) != 0) {
    const int error = errno;
    ::unlink(QFile::encodeName(named).constData());
    return failure(SystemError(error));
  }
  return true;
}

}  // namespace vt
