// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>
#include <span>
#include <variant>

#include "settings/settings.h"

namespace vt::settings {

enum class ValueType { Bool, Int, String };

/// Where a key's value lives in the records.
using FieldRef = std::variant<bool*, int*, QString*>;

/// Row flags for the keys whose reading and writing differ.
enum KeyFlags : unsigned {
  kNoRead = 1u,   ///< written, never read back: a load leaves the default
  kNoWrite = 2u,  ///< read, never written
};

/// One key of the settings file. The table lists them in the order of writing; a load reads
/// them in the same order. `readSection` and `readKey`, when set, name where a load looks
/// instead of where a save writes. The default of a key is the initialiser of its field.
struct KeyRow {
  const char* section;
  const char* key;
  ValueType type;
  FieldRef (*field)(Settings&);
  const char* description;  ///< one ASCII line for the user, ending with a full stop
  const char* readSection = nullptr;
  const char* readKey = nullptr;
  unsigned flags = 0;
  const char* writtenText = nullptr;  ///< when set, a save writes this whatever the field holds

  QString WriteSection() const { return QString::fromLatin1(section); }
  QString WriteKey() const { return QString::fromLatin1(key); }
  QString ReadSection() const { return QString::fromLatin1(readSection ? readSection : section); }
  QString ReadKey() const { return QString::fromLatin1(readKey ? readKey : key); }
};

/// Every key of the settings file, in the order of writing.
std::span<const KeyRow> KeyTable();

/// Text of a field as the settings file stores it (booleans 1 or 0, integers in decimal).
QString FieldText(const FieldRef& field);
/// The text of the key's field in a default-constructed Settings: what a load gives when the
/// file lacks the key.
QString DefaultText(const KeyRow& row);
/// The text a save writes for the key: its written text when the row has one, else the text
/// of its field in `settings`.
QString WrittenText(const KeyRow& row, const Settings& settings);
/// Stores `text` into the field as a load does: a boolean or integer that is not a number takes
/// `fallback` (the field's default); a boolean is true when its number is not zero.
void SetFieldFromText(const FieldRef& field, const QString& text, const FieldRef& fallback);

/// Integer parsing of the ini reader: decimal with an optional sign, or hexadecimal with "$" or
/// "0x"; blanks around are allowed. Anything else gives nothing.
std::optional<int> ParseIniInteger(const QString& text);

}  // namespace vt::settings
