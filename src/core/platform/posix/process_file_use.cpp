// SPDX-License-Identifier: MIT
#include "platform/posix/process_file_use.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdlib>
#include <string>

namespace vt::platform {
namespace {

/// Whether an open descriptor of process `pid`, named by its /proc entry `fdPath`, refers to
/// the file with `device` and `inode` and was opened for writing.
bool WritesTheFile(const std::string& fdPath, const std::string& fdInfoPath, dev_t device,
                   ino_t inode) {
  struct stat status {};
  if (::stat(fdPath.c_str(), &status) != 0) return false;
  if (status.st_dev != device || status.st_ino != inode) return false;
  QFile info(QString::fromStdString(fdInfoPath));
  if (!info.open(QIODevice::ReadOnly)) return true;  // it holds the file; assume the worst
  for (const QByteArray& line : info.readAll().split('\n')) {
    if (!line.startsWith("flags:")) continue;
    const long flags = std::strtol(line.mid(6).trimmed().constData(), nullptr, 8);
    return (flags & O_ACCMODE) != O_RDONLY;
  }
  return true;
}

/// Another process has the file open for writing.
bool OpenForWritingElsewhere(dev_t device, ino_t inode) {
  DIR* processes = ::opendir("/proc");
  if (processes == nullptr) return false;
  const std::string self = std::to_string(::getpid());
  bool found = false;
  while (!found) {
    const dirent* entry = ::readdir(processes);
    if (entry == nullptr) break;
    const std::string pid = entry->d_name;
    if (pid.empty() || pid.find_first_not_of("0123456789") != std::string::npos || pid == self) {
      continue;
    }
    const std::string fdFolder = "/proc/" + pid + "/fd";
    DIR* descriptors = ::opendir(fdFolder.c_str());
    if (descriptors == nullptr) continue;  // gone, or not ours to look at
    while (const dirent* fd = ::readdir(descriptors)) {
      if (fd->d_name[0] == '.') continue;
      if (WritesTheFile(fdFolder + "/" + fd->d_name, "/proc/" + pid + "/fdinfo/" + fd->d_name,
                        device, inode)) {
        found = true;
        break;
      }
    }
    ::closedir(descriptors);
  }
  ::closedir(processes);
  return found;
}

/// Another process holds a lock on the file that a writer would meet.
bool LockedElsewhere(const QString& path) {
  const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return false;
  // Record locks (fcntl) and whole-file locks (flock) are separate on this system: ask both.
  struct flock probe {};
  probe.l_type = F_WRLCK;
  probe.l_whence = SEEK_SET;
  bool locked = ::fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
  if (!locked && ::flock(fd, LOCK_EX | LOCK_NB) != 0) locked = errno == EWOULDBLOCK;
  ::close(fd);  // also drops the flock this probe may have taken
  return locked;
}

}  // namespace

bool ProcessFileUse::IsFileInUse(const QString& path) const {
  const QFileInfo info(path);
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return false;
  }
  if (QFileInfo::exists(info.absolutePath() + QStringLiteral("/.~lock.") + info.fileName() +
                        QLatin1Char('#'))) {
    return true;
  }
  return LockedElsewhere(path) || OpenForWritingElsewhere(status.st_dev, status.st_ino);
}

}  // namespace vt::platform
