// SPDX-License-Identifier: MIT
#include "settings/key_names.h"

#include "settings/key_lookup.h"
#include "settings/key_table.h"

namespace vt::settings {

Result<QStringList> ApplyKeyAssignments(const QStringList& assignments, IniDocument& doc) {
  QStringList warnings;
  auto usage = [](const QString& message) -> Result<QStringList> {
    return Error{Error::Kind::Usage, {}, 0, 0, message};
  };
  for (const QString& text : assignments) {
    const qsizetype eq = text.indexOf(QLatin1Char('='));
    if (eq <= 0) return usage(QStringLiteral("expected KEY=VALUE, got '%1'").arg(text));
    const KeyName name = SplitKeyName(text.left(eq));
    const QString value = text.mid(eq + 1);
    if (value.contains(QLatin1Char('\n')) || value.contains(QLatin1Char('\r'))) {
      return usage(QStringLiteral("the value of %1 holds a line break; a settings file cannot "
                                  "keep it")
                       .arg(name.key));
    }
    if (const auto key = FindKey(name)) {
      if (key->Type() != ValueType::String && !ParseIniInteger(value)) {
        warnings << QStringLiteral("%1 holds a number; '%2' will read as its default")
                        .arg(key->Key().trimmed(), value);
      }
      doc.SetValue(key->Section(), key->Key(), value);
    } else if (!name.section.isEmpty()) {
      doc.SetValue(name.section, name.key, value);
    } else {
      return usage(QStringLiteral("unknown key %1; name its section (SECTION.KEY) to add a key "
                                  "of your own")
                       .arg(name.key));
    }
  }
  return warnings;
}

}  // namespace vt::settings
