// SPDX-License-Identifier: MIT
#include "settings/key_names.h"

#include <QRegularExpression>

namespace vt::settings {
namespace {

bool SameName(const QString& a, const QString& b) {
  return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

/// The table row of `key` (in `section` when given): by the written name first, then by the
/// name a load reads.
const KeyRow* FindRow(const QString& section, const QString& key) {
  for (bool byReadName : {false, true}) {
    for (const KeyRow& row : KeyTable()) {
      const QString rowKey = byReadName ? row.ReadKey() : row.WriteKey();
      const QString rowSection = byReadName ? row.ReadSection() : row.WriteSection();
      if (SameName(rowKey, key) && (section.isEmpty() || SameName(rowSection, section))) {
        return &row;
      }
    }
  }
  return nullptr;
}

/// The parts of a list slot name: the list ("mru", "fmru", "ext", "cs"), the slot number and
/// for the user sizes "w" or "h".
struct SlotName {
  QString list;
  int number = 0;
  QString side;
};

std::optional<SlotName> ParseSlotName(const QString& key) {
  static const QRegularExpression form(QStringLiteral("^(mru|fmru|ext|cs)(\\d{1,9})([wh]?)$"),
                                       QRegularExpression::CaseInsensitiveOption);
  const auto m = form.match(key.trimmed());
  if (!m.hasMatch()) return std::nullopt;
  SlotName slot{m.captured(1).toLower(), m.captured(2).toInt(), m.captured(3).toLower()};
  // Only the user sizes have sides, and they must have one.
  if ((slot.list == QLatin1String("cs")) != !slot.side.isEmpty()) return std::nullopt;
  return slot;
}

/// The section of a list slot within its count, or empty.
QString SlotSection(const SlotName& slot) {
  if (slot.list == QLatin1String("mru") && slot.number < kMruSlots) return QStringLiteral("S18");
  if (slot.list == QLatin1String("fmru") && slot.number < kFontMruSlots) {
    return QStringLiteral("S19");
  }
  if (slot.list == QLatin1String("ext") && slot.number < kExtensionSlots) {
    return QStringLiteral("FS0");
  }
  if (slot.list == QLatin1String("cs") && slot.number < kCustomSizeSlots) {
    return QStringLiteral("I2");
  }
  return {};
}

}  // namespace

std::optional<KeyLocation> FindKey(const QString& name) {
  const qsizetype dot = name.indexOf(QLatin1Char('.'));
  const QString section = dot <= 0 ? QString() : name.left(dot).trimmed();
  const QString key = dot <= 0 ? name.trimmed() : name.mid(dot + 1).trimmed();
  if (const KeyRow* row = FindRow(section, key)) {
    return KeyLocation{row, row->WriteSection(), row->WriteKey(), false};
  }
  if (const auto slot = ParseSlotName(key)) {
    const QString slotSection = SlotSection(*slot);
    if (!slotSection.isEmpty()) return KeyLocation{nullptr, slotSection, key, true};
  }
  if (!section.isEmpty()) return KeyLocation{nullptr, section, key, false};
  return std::nullopt;
}

QString ListSlotValue(const Settings& s, const KeyLocation& location) {
  const auto slot = ParseSlotName(location.key);
  if (!slot) return {};
  if (slot->list == QLatin1String("mru")) return s.mru.value(slot->number);
  if (slot->list == QLatin1String("fmru")) return s.fmru.value(slot->number);
  if (slot->list == QLatin1String("ext")) return s.ext.value(slot->number);
  const QSize size = s.customSizes.at(std::size_t(slot->number));
  return QString::number(slot->side == QLatin1String("w") ? size.width() : size.height());
}

Result<QStringList> ApplyKeyAssignments(const QStringList& assignments, IniDocument& doc) {
  QStringList warnings;
  for (const QString& text : assignments) {
    const qsizetype eq = text.indexOf(QLatin1Char('='));
    if (eq <= 0) {
      return Error{
          Error::Kind::Usage, {}, 0, 0, QStringLiteral("expected KEY=VALUE, got '%1'").arg(text)};
    }
    const QString name = text.left(eq);
    const QString value = text.mid(eq + 1);
    const std::optional<KeyLocation> location = FindKey(name);
    if (!location) {
      return Error{Error::Kind::Usage,
                   {},
                   0,
                   0,
                   QStringLiteral("unknown key %1; name its section (SECTION.KEY) to add a key "
                                  "of your own")
                       .arg(name.trimmed())};
    }
    if (location->row && location->row->type != ValueType::String && !ParseIniInteger(value)) {
      warnings << QStringLiteral("%1 holds a number; '%2' will read as its default")
                      .arg(location->key.trimmed(), value);
    }
    doc.SetValue(location->section, location->key, value);
  }
  return warnings;
}

}  // namespace vt::settings
