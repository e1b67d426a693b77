// SPDX-License-Identifier: MIT
#include "util/error.h"

namespace vt {

QString Error::ToString() const {
  QString where = path;
  if (line > 0) {
    where += QStringLiteral(":%1").arg(line);
    if (column > 0) where += QStringLiteral(":%1").arg(column);
  }
  return where.isEmpty() ? message : where + QStringLiteral(": ") + message;
}

Failure::Failure(Error error)
    : std::runtime_error(error.ToString().toStdString()), error_(std::move(error)) {}

}  // namespace vt
