// SPDX-License-Identifier: MIT
#include "settings/key_lookup.h"

#include <array>

namespace vt::settings {
namespace {

/// One numbered list of the file: keys prefix + slot + suffix in one section.
struct ListInfo {
  KeyList list;
  const char* section;
  const char* prefix;
  const char* suffix;
  int slots;
  ValueType type;
  const char* description;  ///< %1 the slot, %2 the last slot
};

constexpr std::array<ListInfo, 5> kLists{{
    {KeyList::RecentFiles, "S18", "mru", "", kMruSlots, ValueType::String,
     "Recently used file in slot %1 (0 to %2); \"_\" when free."},
    {KeyList::RecentFonts, "S19", "fmru", "", kFontMruSlots, ValueType::String,
     "Recently used font in slot %1 (0 to %2); \"_\" when free."},
    {KeyList::Extensions, "FS0", "ext", "", kExtensionSlots, ValueType::String,
     "File extension %1 (0 to %2) of the explorer filter; empty when unset."},
    {KeyList::CustomWidths, "I2", "cs", "w", kCustomSizeSlots, ValueType::Int,
     "Width in pixels of user display size %1 (0 to %2); 0 when the slot is free."},
    {KeyList::CustomHeights, "I2", "cs", "h", kCustomSizeSlots, ValueType::Int,
     "Height in pixels of user display size %1 (0 to %2); 0 when the slot is free."},
}};

static_assert(
    [] {
      for (std::size_t i = 0; i < kLists.size(); ++i) {
        if (kLists[i].list != static_cast<KeyList>(i)) return false;
      }
      return true;
    }(),
    "kLists follows the order of KeyList");

const ListInfo& Info(KeyList list) { return kLists[static_cast<std::size_t>(list)]; }

bool SameName(const QString& a, const QString& b) {
  return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

/// The slot `key` names in `info`: the prefix, a slot number in plain decimal below the slot
/// count, the suffix.
std::optional<int> SlotOf(const ListInfo& info, const QString& key) {
  const QLatin1String prefix(info.prefix);
  const QLatin1String suffix(info.suffix);
  if (key.size() <= prefix.size() + suffix.size() || !key.startsWith(prefix, Qt::CaseInsensitive) ||
      !key.endsWith(suffix, Qt::CaseInsensitive)) {
    return std::nullopt;
  }
  const QString digits = key.mid(prefix.size(), key.size() - prefix.size() - suffix.size());
  if (digits.size() > 2 || (digits.size() > 1 && digits.front() == QLatin1Char('0'))) {
    return std::nullopt;
  }
  for (QChar c : digits) {
    if (c < QLatin1Char('0') || c > QLatin1Char('9')) return std::nullopt;
  }
  const int slot = digits.toInt();
  if (slot >= info.slots) return std::nullopt;
  return slot;
}

QString TypeName(ValueType type) {
  switch (type) {
    case ValueType::Bool:
      return QStringLiteral("boolean");
    case ValueType::Int:
      return QStringLiteral("number");
    case ValueType::String:
      break;
  }
  return QStringLiteral("text");
}

}  // namespace

QString ListSection(KeyList list) { return QString::fromLatin1(Info(list).section); }

QString ListKey(KeyList list, int slot) {
  const ListInfo& info = Info(list);
  return QString::fromLatin1(info.prefix) + QString::number(slot) +
         QString::fromLatin1(info.suffix);
}

KeyName SplitKeyName(const QString& text) {
  const qsizetype dot = text.indexOf(QLatin1Char('.'));
  if (dot <= 0) return {{}, text.trimmed()};
  return {text.left(dot).trimmed(), text.mid(dot + 1).trimmed()};
}

QString FoundKey::Section() const {
  return row != nullptr ? row->WriteSection() : ListSection(list);
}

QString FoundKey::Key() const { return row != nullptr ? row->WriteKey() : ListKey(list, slot); }

ValueType FoundKey::Type() const { return row != nullptr ? row->type : Info(list).type; }

QString FoundKey::Description() const {
  if (row != nullptr) return QString::fromLatin1(row->description);
  const ListInfo& info = Info(list);
  return QString::fromLatin1(info.description).arg(slot).arg(info.slots - 1);
}

QString FoundKey::DefaultText() const {
  if (row != nullptr) return settings::DefaultText(*row);
  return Text(Settings{});
}

QString FoundKey::Text(const Settings& settings) const {
  if (row != nullptr) {
    // The table binds fields through a mutable reference; this only reads them.
    return FieldText(row->field(const_cast<Settings&>(settings)));
  }
  switch (list) {
    case KeyList::RecentFiles:
      return settings.mru.value(slot);
    case KeyList::RecentFonts:
      return settings.fmru.value(slot);
    case KeyList::Extensions:
      return settings.ext.value(slot);
    case KeyList::CustomWidths:
      return QString::number(settings.customSizes.at(std::size_t(slot)).width());
    case KeyList::CustomHeights:
      break;
  }
  return QString::number(settings.customSizes.at(std::size_t(slot)).height());
}

QString FoundKey::Summary() const {
  return QStringLiteral("%1.%2 (%3, default \"%4\"): %5")
      .arg(Section(), Key().trimmed(), TypeName(Type()), DefaultText(), Description());
}

std::optional<FoundKey> FindKey(const KeyName& name) {
  if (name.key.isEmpty()) return std::nullopt;
  for (bool byReadName : {false, true}) {
    for (const KeyRow& row : KeyTable()) {
      const QString key = byReadName ? row.ReadKey() : row.WriteKey();
      const QString section = byReadName ? row.ReadSection() : row.WriteSection();
      if (SameName(key, name.key) && (name.section.isEmpty() || SameName(section, name.section))) {
        return FoundKey{&row};
      }
    }
  }
  for (const ListInfo& info : kLists) {
    if (!name.section.isEmpty() && !SameName(name.section, QLatin1String(info.section))) continue;
    if (const auto slot = SlotOf(info, name.key)) return FoundKey{nullptr, info.list, *slot};
  }
  return std::nullopt;
}

std::optional<FoundKey> FindKey(const QString& text) { return FindKey(SplitKeyName(text)); }

}  // namespace vt::settings
