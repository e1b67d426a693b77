// SPDX-License-Identifier: MIT
#pragma once

#include "platform/folders.h"

namespace vt::platform {

/// The user's folders as the desktop reports them (QStandardPaths), and the program's data
/// folder beside the executable.
class QtFolders final : public Folders {
 public:
  QString Documents() const override;
  QString Pictures() const override;
  QString ProgramData() const override;
};

/// On this platform nothing locks a file against other programs: never in use.
class NoFileUse final : public FileUse {
 public:
  bool IsFileInUse(const QString&) const override { return false; }
};

}  // namespace vt::platform
