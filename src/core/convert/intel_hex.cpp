// SPDX-License-Identifier: MIT
#include "convert/intel_hex.h"

namespace vt::convert {
namespace {

QString HexDigits(qulonglong value, int digits) {
  return QStringLiteral("%1").arg(value, digits, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

QString AddressOffsetEditChange(const QString& text, int addressDigits) {
  QString digits;
  for (const QChar c : text) {
    if ((c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
        (c >= QLatin1Char('A') && c <= QLatin1Char('F'))) {
      digits += c;
    }
  }
  return digits.left(addressDigits);
}

IntelHexState StartIntelHex(int bytesPerLine, int addressDigits, const QString& offset) {
  IntelHexState state;
  state.BytesPerLine = bytesPerLine == 8 || bytesPerLine == 32 ? bytesPerLine : 16;
  state.AddressDigits = addressDigits == 6 || addressDigits == 8 ? addressDigits : 4;
  bool ok = false;
  qulonglong start = offset.trimmed().toULongLong(&ok, 16);
  if (!ok) start = 0;
  state.RecordAddress = HexDigits(start & ~qulonglong(15), state.AddressDigits);
  return state;
}

int IntelHexChecksum(const QString& lengthAddressData) {
  int sum = 0;
  for (qsizetype i = 0; i < lengthAddressData.size(); i += 2) {
    sum += lengthAddressData.mid(i, 2).toInt(nullptr, 16);
  }
  return (256 - (sum & 0xFF)) & 0xFF;
}

QString IntelHexRecord(const QString& address, const QString& data) {
  const QString length = HexDigits(static_cast<qulonglong>(data.size() / 2), 2);
  return QLatin1Char(':') + length + address + QStringLiteral("00") + data +
         HexDigits(static_cast<qulonglong>(IntelHexChecksum(length + address + data)), 2);
}

void InputHexInTextEditor(IntelHexState& state, platform::TextBuffer& text, const QString& twoDigits) {
  state.PendingData += twoDigits;
  if (state.PendingData.size() < 2 * state.BytesPerLine) return;
  EndIntelHex(state, text);
  const qulonglong next = state.RecordAddress.toULongLong(nullptr, 16) + state.BytesPerLine;
  state.RecordAddress = HexDigits(next, state.AddressDigits);
  state.PendingData.clear();
}

void EndIntelHex(IntelHexState& state, platform::TextBuffer& text) {
  text.AddLine(IntelHexRecord(state.RecordAddress, state.PendingData));
}

void FinishIntelHex(IntelHexState& state, platform::TextBuffer& text) {
  if (!state.PendingData.isEmpty()) EndIntelHex(state, text);
  state.PendingData.clear();
  text.AddLine(kIntelHexEndRecord);
}

void InputHexInEditor(platform::HexBuffer& hex, const QString& twoDigits) {
  hex.AppendHexByte(twoDigits);
}

}  // namespace vt::convert
