// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace vt::platform {

/// The user's folders and the program's own folder, supplied by the platform so that tests can
/// point them at temporary folders.
class Folders {
 public:
  virtual ~Folders() = default;
  /// The user's documents folder, without a trailing separator.
  virtual QString Documents() const = 0;
  /// The user's pictures folder, without a trailing separator.
  virtual QString Pictures() const = 0;
  /// The folder holding the program's sample files (batches, scripts, fonts, wallpaper).
  virtual QString ProgramData() const = 0;
};

/// Tells whether another program holds a file open so that it may not be used.
class FileUse {
 public:
  virtual ~FileUse() = default;
  virtual bool IsFileInUse(const QString& path) const = 0;
};

}  // namespace vt::platform
