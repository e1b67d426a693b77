// SPDX-License-Identifier: MIT
#pragma once

// Keys by the names people type: the command line and the settings panel find a key here, and
// nowhere else learn which section holds it.

#include <QString>
#include <optional>

#include "settings/key_table.h"
#include "settings/settings.h"

namespace vt::settings {

/// The numbered lists the settings file holds beside the table: mru<n> of S18, fmru<n> of S19,
/// ext<n> of FS0, cs<n>w and cs<n>h of I2.
enum class KeyList { RecentFiles, RecentFonts, Extensions, CustomWidths, CustomHeights };

/// Section of the list's keys.
QString ListSection(KeyList list);
/// Key of slot `slot` of the list, as the file spells it ("mru3", "cs0w").
QString ListKey(KeyList list, int slot);

/// A key name as typed: "KEY" or "SECTION.KEY", blanks around each part removed.
struct KeyName {
  QString section;  ///< empty when not given
  QString key;
};

/// Splits at the first dot; a text with no dot, or with a dot first, is a key alone.
KeyName SplitKeyName(const QString& text);

/// One key of the settings file: a row of the table, or one slot of a numbered list.
struct FoundKey {
  const KeyRow* row = nullptr;          ///< the row; null for a list key
  KeyList list = KeyList::RecentFiles;  ///< the list of a list key
  int slot = 0;                         ///< the slot of a list key, from 0

  /// Section the file holds the key in.
  QString Section() const;
  /// Key as the file spells it, blanks of the file kept ("Logws ").
  QString Key() const;
  ValueType Type() const;
  /// One line for the user: what the key controls.
  QString Description() const;
  /// What a load gives when the file lacks the key: the field of a default-constructed Settings,
  /// or the free-slot text of a list ("_", empty, "0").
  QString DefaultText() const;
  /// The value the records hold for the key, in the file's spelling.
  QString Text(const Settings& settings) const;
  /// SECTION.KEY (type, default "TEXT"): description; type is boolean, number or text.
  QString Summary() const;
};

/// The key `name` designates, names compared without case and outer blanks: a row by the name
/// the file holds, else by the name a load reads (vew1, vecin, EndstF), the first row in file
/// order winning when no section is given; else a slot of a numbered list, within its slot
/// count and spelled without leading zeros. A section, when given, must be the key's own.
/// Nothing for any other name.
std::optional<FoundKey> FindKey(const KeyName& name);
/// FindKey of SplitKeyName(`text`).
std::optional<FoundKey> FindKey(const QString& text);

}  // namespace vt::settings
