// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include <QFile>
#include <algorithm>
#include <iterator>

#include "settings/key_lookup.h"
#include "settings/key_table.h"

namespace vt::settings {
namespace {

const QString kMruSection = ListSection(KeyList::RecentFiles);
const QString kFontMruSection = ListSection(KeyList::RecentFonts);
const QString kExtensionSection = ListSection(KeyList::Extensions);
const QString kSizeSection = ListSection(KeyList::CustomWidths);

int ReadInt(const IniDocument& doc, const QString& section, const QString& key, int fallback) {
  const auto text = doc.Value(section, key);
  if (!text) return fallback;
  return ParseIniInteger(*text).value_or(fallback);
}

QString MruKey(int n) { return ListKey(KeyList::RecentFiles, n); }
QString FontMruKey(int n) { return ListKey(KeyList::RecentFonts, n); }
QString ExtensionKey(int n) { return ListKey(KeyList::Extensions, n); }
QString CustomWidthKey(int n) { return ListKey(KeyList::CustomWidths, n); }
QString CustomHeightKey(int n) { return ListKey(KeyList::CustomHeights, n); }

}  // namespace

Settings DefaultSettings(const FolderDefaults& folders) {
  Settings s;
  s.folder.PFP = folders.PFP;
  s.folder.BFP = folders.BFP;
  s.folder.OFP = folders.OFP;
  s.folder.FontFP = folders.FontFP;
  s.folder.tfp1 = folders.tfp1;
  s.folder.bfpa = folders.bfpa;
  return s;
}

void ReadSettings(const IniDocument& doc, Settings& settings, const FolderDefaults& folders) {
  Settings defaults = DefaultSettings(folders);
  settings = defaults;
  for (const KeyRow& row : KeyTable()) {
    if (row.flags & kNoRead) continue;
    const auto text = doc.Value(row.ReadSection(), row.ReadKey());
    if (!text) continue;
    SetFieldFromText(row.field(settings), *text, row.field(defaults));
  }

  for (int n = 0; n < kMruSlots; ++n) {
    settings.mru[n] = doc.Value(kMruSection, MruKey(n)).value_or(kEmptyMruSlot);
  }
  for (int n = 0; n < kFontMruSlots; ++n) {
    settings.fmru[n] = doc.Value(kFontMruSection, FontMruKey(n)).value_or(kEmptyMruSlot);
  }
  for (int n = 0; n < kExtensionSlots; ++n) {
    settings.ext[n] = doc.Value(kExtensionSection, ExtensionKey(n)).value_or(QString());
  }
  for (int n = 0; n < kCustomSizeSlots; ++n) {
    settings.customSizes[std::size_t(n)] = QSize(ReadInt(doc, kSizeSection, CustomWidthKey(n), 0),
                                                 ReadInt(doc, kSizeSection, CustomHeightKey(n), 0));
  }

  static constexpr int kTouchResolutions[] = {8, 10, 12, 16, 24};
  if (std::find(std::begin(kTouchResolutions), std::end(kTouchResolutions), settings.touch.tfp3) ==
      std::end(kTouchResolutions)) {
    settings.touch.tfp3 = 8;
  }
}

void WriteSettings(const Settings& settings, IniDocument& doc) {
  for (const KeyRow& row : KeyTable()) {
    if (row.flags & kNoWrite) continue;
    doc.SetValue(row.WriteSection(), row.WriteKey(), WrittenText(row, settings));
  }
  for (int n = 0; n < kMruSlots; ++n) {
    const QString& v = n < settings.mru.size() ? settings.mru[n] : kEmptyMruSlot;
    doc.SetValue(kMruSection, MruKey(n), v.isEmpty() ? kEmptyMruSlot : v);
  }
  for (int n = 0; n < kFontMruSlots; ++n) {
    const QString& v = n < settings.fmru.size() ? settings.fmru[n] : kEmptyMruSlot;
    doc.SetValue(kFontMruSection, FontMruKey(n), v.isEmpty() ? kEmptyMruSlot : v);
  }
  for (int n = 0; n < kExtensionSlots && n < settings.ext.size(); ++n) {
    if (!settings.ext[n].isEmpty() || doc.Value(kExtensionSection, ExtensionKey(n))) {
      doc.SetValue(kExtensionSection, ExtensionKey(n), settings.ext[n]);
    }
  }
  for (int n = 0; n < kCustomSizeSlots; ++n) {
    const QSize size = settings.customSizes[std::size_t(n)];
    const bool used = size.width() > 0 && size.height() > 0;
    if (used || doc.Value(kSizeSection, CustomWidthKey(n))) {
      doc.SetValue(kSizeSection, CustomWidthKey(n), QString::number(used ? size.width() : 0));
      doc.SetValue(kSizeSection, CustomHeightKey(n), QString::number(used ? size.height() : 0));
    }
  }
}

IniDocument ReadSettingsDocument(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  auto parsed = IniDocument::Parse(file.read(IniDocument::kMaxBytes + 1));
  return parsed ? parsed.value() : IniDocument();
}

}  // namespace vt::settings
