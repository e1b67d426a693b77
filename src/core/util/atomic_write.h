// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include "util/error.h"

namespace vt {

/// How far a finished write is pushed before the file replaces its target.
enum class Durability {
  /// Flushed to the disk first: a power cut after the write keeps the new file whole. For what
  /// the user made and cannot make again at once (outputs, settings, projects).
  Synced,
  /// Left to the system's cache: a failure of the program still leaves either the old file or
  /// the whole new one, but a power cut just after may lose the new one. For documents every
  /// export writes again beside its output (the export report), where a flush per export
  /// would cost more than the export itself.
  Cached,
};

/// Writes `data` to `path` through a temporary file beside it that replaces the target only once
/// it is complete, so a failure leaves the old file as it was. A read-only target is made
/// writable first; an existing target's permissions pass to the new file. Returns an Io error
/// naming the path on failure.
Result<bool> WriteFileAtomically(const QString& path, const QByteArray& data,
                                 Durability durability = Durability::Synced);

}  // namespace vt
