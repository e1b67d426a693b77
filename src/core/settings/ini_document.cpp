// SPDX-License-Identifier: MIT
#include "settings/ini_document.h"

namespace vt::settings {

Result<IniDocument> IniDocument::Parse(const QByteArray& text, const QString& path) {
  if (text.size() > kMaxBytes) {
    return Error{Error::Kind::Limit, path, 0, 0,
                 QStringLiteral("settings file is larger than %1 bytes").arg(kMaxBytes)};
  }
  IniDocument doc;
  Section* current = nullptr;
  int lineNumber = 0;
  qsizetype start = 0;
  while (start < text.size()) {
    qsizetype end = text.indexOf('\n', start);
    if (end < 0) end = text.size();
    QByteArray bytes = text.mid(start, end - start);
    start = end + 1;
    ++lineNumber;
    if (bytes.endsWith('\r')) bytes.chop(1);
    if (bytes.contains('\0')) {
      return Error{Error::Kind::Parse, path, lineNumber, int(bytes.indexOf('\0')) + 1,
                   QStringLiteral("NUL byte in a settings file")};
    }
    const QString line = QString::fromUtf8(bytes);
    const QString trimmed = line.trimmed();
    if (trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
      const QString name = trimmed.mid(1, trimmed.size() - 2);
      const QString folded = Fold(name);
      doc.sections_.push_back(Section{name, {}, {}});
      if (!doc.sectionIndex_.contains(folded)) {
        doc.sectionIndex_.insert(folded, int(doc.sections_.size()) - 1);
      }
      current = &doc.sections_.back();
      continue;
    }
    const qsizetype eq = line.indexOf(QLatin1Char('='));
    const bool isKey = current && eq > 0 && !trimmed.startsWith(QLatin1Char(';'));
    if (!current) {
      doc.preamble_.push_back(line);
    } else if (isKey) {
      const QString key = line.left(eq);
      current->lines.push_back(Line{key, line.mid(eq + 1), {}});
      const QString folded = Fold(key);
      if (!folded.isEmpty() && !current->index.contains(folded)) {
        current->index.insert(folded, int(current->lines.size()) - 1);
      }
    } else {
      current->lines.push_back(Line{{}, {}, line});
    }
  }
  return doc;
}

const IniDocument::Section* IniDocument::FindSection(const QString& name) const {
  const auto it = sectionIndex_.constFind(Fold(name));
  return it == sectionIndex_.constEnd() ? nullptr : &sections_[std::size_t(*it)];
}

IniDocument::Section* IniDocument::FindSection(const QString& name) {
  return const_cast<Section*>(std::as_const(*this).FindSection(name));
}

std::optional<QString> IniDocument::Value(const QString& section, const QString& key) const {
  const Section* s = FindSection(section);
  if (!s) return std::nullopt;
  const auto it = s->index.constFind(Fold(key));
  if (it == s->index.constEnd()) return std::nullopt;
  return s->lines[std::size_t(*it)].value;
}

void IniDocument::SetValue(const QString& section, const QString& key, const QString& value) {
  Section* s = FindSection(section);
  if (!s) {
    sections_.push_back(Section{section, {}, {}});
    sectionIndex_.insert(Fold(section), int(sections_.size()) - 1);
    s = &sections_.back();
  }
  const QString folded = Fold(key);
  const auto it = s->index.constFind(folded);
  if (it != s->index.constEnd()) {
    s->lines[std::size_t(*it)].value = value;
    return;
  }
  // A new key goes after the last key of its section, before trailing blank lines.
  std::size_t at = s->lines.size();
  while (at > 0 && s->lines[at - 1].key.isEmpty() && s->lines[at - 1].raw.trimmed().isEmpty()) {
    --at;
  }
  s->lines.insert(s->lines.begin() + std::ptrdiff_t(at), Line{key, value, {}});
  s->index.clear();
  for (std::size_t i = 0; i < s->lines.size(); ++i) {
    const QString f = Fold(s->lines[i].key);
    if (!f.isEmpty() && !s->index.contains(f)) s->index.insert(f, int(i));
  }
}

void IniDocument::Remove(const QString& section, const QString& key) {
  Section* s = FindSection(section);
  if (!s) return;
  const QString folded = Fold(key);
  std::erase_if(s->lines, [&](const Line& l) { return !l.key.isEmpty() && Fold(l.key) == folded; });
  s->index.clear();
  for (std::size_t i = 0; i < s->lines.size(); ++i) {
    const QString f = Fold(s->lines[i].key);
    if (!f.isEmpty() && !s->index.contains(f)) s->index.insert(f, int(i));
  }
}

QStringList IniDocument::Sections() const {
  QStringList names;
  for (const Section& s : sections_) names << s.name;
  return names;
}

QStringList IniDocument::Keys(const QString& section) const {
  QStringList keys;
  if (const Section* s = FindSection(section)) {
    for (const Line& l : s->lines) {
      if (!l.key.isEmpty()) keys << l.key;
    }
  }
  return keys;
}

QByteArray IniDocument::Serialize() const {
  QString text;
  for (const QString& line : preamble_) text += line + QStringLiteral("\r\n");
  for (const Section& s : sections_) {
    text += QLatin1Char('[') + s.name + QStringLiteral("]\r\n");
    for (const Line& l : s.lines) {
      text += (l.key.isEmpty() ? l.raw : l.key + QLatin1Char('=') + l.value) + QStringLiteral("\r\n");
    }
  }
  return text.toUtf8();
}

}  // namespace vt::settings
