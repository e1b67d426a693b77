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

/// The file a write of `path` updates: a symbolic link is followed, link after link, to its
/// final target (which may not exist yet). Fails with an Io error naming `path` for a loop of
/// links.
Result<QString> FinalTarget(const QString& path);

/// Whether `path` may be read or written as a file: it is a regular file or does not exist.
/// A folder fails with "is a folder", a device, a pipe or a socket with "is not a regular
/// file", each an Io error naming `path`. Links are followed.
Result<bool> CheckRegularOrMissing(const QString& path);

/// Writes `data` to `path` through a temporary file beside it that replaces the target only once
/// it is complete, so a failure leaves the old file as it was. A link is followed to its final
/// target, which is the file replaced. Anything that is not a regular file (a folder, a device,
/// a pipe) is refused and left alone. An existing target's permissions pass to the new file, with
/// the owner's write permission added (a read-only target is written all the same). The temporary
/// file has no name until it is complete, so that a run killed while writing leaves nothing beside
/// the target. Returns an Io error naming the path on failure.
Result<bool> WriteFileAtomically(const QString& path, const QByteArray& data,
                                 Durability durability = Durability::Synced);

}  // namespace vt
