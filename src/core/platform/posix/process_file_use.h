// SPDX-License-Identifier: MIT
#pragma once

#include "platform/folders.h"

namespace vt::platform {

/// Whether another program holds a file in a way that a write of it would spoil, as far as a
/// Linux system can tell: another process has it open for writing (seen in /proc), or holds a
/// lock on it, or an office suite has left its lock file beside it (".~lock.<name>#"). A file
/// that is only being read by someone is not in use.
class ProcessFileUse final : public FileUse {
 public:
  bool IsFileInUse(const QString& path) const override;
};

}  // namespace vt::platform
