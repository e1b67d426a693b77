// SPDX-License-Identifier: MIT
#include "platform/hex_buffer.h"

#include "util/atomic_write.h"

namespace vt::platform {

void HexBuffer::Clear() {
  bytes_.clear();
  readOnly_ = false;
  modified_ = false;
}

bool HexBuffer::AppendHexByte(const QString& twoDigits) {
  if (twoDigits.size() != 2) return false;
  bool ok = false;
  const uint value = twoDigits.toUInt(&ok, 16);
  return ok && Append(static_cast<quint8>(value));
}

bool HexBuffer::Append(quint8 byte) {
  if (readOnly_) return false;
  bytes_.append(static_cast<char>(byte));
  modified_ = true;
  return true;
}

Result<bool> HexBuffer::SaveToFile(const QString& path) const {
  Result<bool> written = WriteFileAtomically(path, bytes_);
  if (written) modified_ = false;
  return written;
}

}  // namespace vt::platform
