// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include "util/error.h"

namespace vt::platform {

/// The byte-addressed hex editor model: what the binary export writes into and the hex editor
/// widget shows. Every change raises the modified flag; clearing and saving lower it.
class HexBuffer {
 public:
  /// Removes every byte, lowers the modified flag and makes the buffer writable again.
  void Clear();
  /// Appends the byte spelled by `twoDigits`, two hexadecimal digits in either case. Anything
  /// else (or a read-only buffer) appends nothing and returns false.
  bool AppendHexByte(const QString& twoDigits);
  /// Appends one byte; false when the buffer is read-only.
  bool Append(quint8 byte);

  qsizetype Size() const { return bytes_.size(); }
  const QByteArray& Bytes() const { return bytes_; }

  bool ReadOnly() const { return readOnly_; }
  void SetReadOnly(bool readOnly) { readOnly_ = readOnly; }
  bool Modified() const { return modified_; }

  /// Writes the bytes to `path`, replacing the file only once it is complete. Lowers the
  /// modified flag on success; returns an Io error naming the path on failure.
  Result<bool> SaveToFile(const QString& path) const;

 private:
  QByteArray bytes_;
  bool readOnly_ = false;
  mutable bool modified_ = false;  // saving is a read of the bytes that only resets this flag
};

}  // namespace vt::platform
