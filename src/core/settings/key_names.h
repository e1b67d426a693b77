// SPDX-License-Identifier: MIT
#pragma once

// Assignments KEY=VALUE written into a settings document where the file holds each key.

#include <QString>
#include <QStringList>

#include "settings/ini_document.h"
#include "util/error.h"

namespace vt::settings {

/// Writes each "KEY=VALUE" of `assignments` into `doc` where the file holds that key (FindKey);
/// a name with a section that no key of the program has ("Mine.note") is a key of the user's
/// own, kept as it is. Fails with a Usage error for a text without "=", an unknown key without a
/// section or a value holding a line break; the document may then hold the assignments before
/// it. A number key given a text that is not a number is written all the same (a load reads it
/// as its default): the returned warnings say so.
Result<QStringList> ApplyKeyAssignments(const QStringList& assignments, IniDocument& doc);

}  // namespace vt::settings
