// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include "util/error.h"

namespace vt {

/// Writes `data` to `path` through a temporary file that replaces the target only once it is
/// complete, so a failure leaves the old file as it was. A read-only target is made writable
/// first. Returns an Io error naming the path on failure.
Result<bool> WriteFileAtomically(const QString& path, const QByteArray& data);

}  // namespace vt
