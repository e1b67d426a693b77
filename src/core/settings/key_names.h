// SPDX-License-Identifier: MIT
#pragma once

// Keys named by the user ("GWI", "B10.HCO", "mru3"): which key of the settings file a name
// designates, and assignments KEY=VALUE written into a settings document as the file holds them.
// This is the one place besides the key table that knows sections.

#include <QString>
#include <QStringList>
#include <optional>

#include "settings/ini_document.h"
#include "settings/key_table.h"
#include "settings/settings.h"
#include "util/error.h"

namespace vt::settings {

/// Where a name given by the user points.
struct KeyLocation {
  const KeyRow* row = nullptr;  ///< the table row; null for a list slot or a key of the user's
  QString section;              ///< the section the key is written in
  QString key;                  ///< the key as it is written
  bool listSlot = false;        ///< mru<n>, fmru<n>, ext<n>, cs<n>w or cs<n>h
};

/// The key `name` designates: "KEY" or "SECTION.KEY", names compared without regard to case and
/// blanks around them. A table key is found by the name written in the file, else by the name a
/// load reads (vew1, vecin, EndstF); without a section, the first row in file order wins where a
/// key stands in two sections. The list slots are found by their form within their slot count.
/// A name with a section that nothing else designates is a key of the user's own, kept as it is.
/// Empty for an unknown name without a section.
std::optional<KeyLocation> FindKey(const QString& name);

/// The value a load of `settings` gives a list slot: a recent file or font ("_" when the slot is
/// free), an explorer extension (empty when free), a user size number (0 when free).
QString ListSlotValue(const Settings& settings, const KeyLocation& slot);

/// Writes each "KEY=VALUE" of `assignments` into `doc` where the file holds that key. Fails with
/// a Usage error for a text without "=" or an unknown key without a section; the document may
/// then hold the assignments before it. A table number key given a text that is not a number is
/// written all the same (a load reads it as the default): the returned warnings say so.
Result<QStringList> ApplyKeyAssignments(const QStringList& assignments, IniDocument& doc);

}  // namespace vt::settings
