// SPDX-License-Identifier: MIT
#pragma once

// The byte targets of an export: the binary file, whose bytes go to the hex editor, and Intel
// Hex, whose records go to the text editor. A record is
//   ":" + length + address + "00" + data + checksum
// with the address of AddressDigits digits (4, 6 or 8: the wider forms are this program's own
// widening of the field); the file ends with ":00000001FF".

#include <QString>

#include "platform/hex_buffer.h"
#include "platform/text_buffer.h"
#include "convert/data_text.h"

namespace vt::convert {

/// The last record of every Intel Hex file.
inline const QString kIntelHexEndRecord = QStringLiteral(":00000001FF");

/// The record builder of one export.
struct IntelHexState {
  QString PendingData;    ///< hexadecimal digits not yet in a record
  QString RecordAddress;  ///< AddressDigits hexadecimal digits
  int BytesPerLine = 16;  ///< "bytes / line": 32, 16 or 8
  int AddressDigits = 4;  ///< "Adress Digits": 4, 6 or 8
};

/// The "Adress Offset" edit after a change: upper-case hexadecimal digits only (anything else
/// is stripped), at most `addressDigits` of them.
QString AddressOffsetEditChange(const QString& text, int addressDigits);

/// The state at the start of an export: the offset (hexadecimal; empty or unreadable is 0)
/// rounded down to a multiple of 16 and written with `addressDigits` digits. Bytes per line
/// other than 8, 16 and 32 count as 16, digits other than 4, 6 and 8 as 4.
IntelHexState StartIntelHex(int bytesPerLine, int addressDigits, const QString& offset);

/// The checksum of a record: `lengthAddressData` cut into pairs of hexadecimal digits from the
/// left, added as bytes, the two's complement of the low 8 bits.
int IntelHexChecksum(const QString& lengthAddressData);

/// One data record: ":" + length + address + "00" + data + checksum, upper case.
QString IntelHexRecord(const QString& address, const QString& data);

/// One value for Intel Hex: the digits join PendingData; a full line becomes a record and the
/// address moves on by BytesPerLine (a text that outgrows its digits grows by a digit).
void InputHexInTextEditor(IntelHexState& state, platform::TextBuffer& text, const QString& twoDigits);
/// Writes PendingData as a record.
void EndIntelHex(IntelHexState& state, platform::TextBuffer& text);
/// The end of the export: the partial record, if any, then ":00000001FF".
void FinishIntelHex(IntelHexState& state, platform::TextBuffer& text);

/// One value for the binary target: the two digits become one byte of the hex editor.
void InputHexInEditor(platform::HexBuffer& hex, const QString& twoDigits);

/// The Intel Hex target as the data text writer sees it.
class IntelHexTarget final : public HexByteTarget {
 public:
  IntelHexTarget(IntelHexState& state, platform::TextBuffer& text) : state_(state), text_(text) {}
  void AppendHexByte(const QString& digits) override {
    InputHexInTextEditor(state_, text_, digits);
  }

 private:
  IntelHexState& state_;
  platform::TextBuffer& text_;
};

/// The binary target as the data text writer sees it.
class HexEditorTarget final : public HexByteTarget {
 public:
  explicit HexEditorTarget(platform::HexBuffer& hex) : hex_(hex) {}
  void AppendHexByte(const QString& digits) override { InputHexInEditor(hex_, digits); }

 private:
  platform::HexBuffer& hex_;
};

}  // namespace vt::convert
