// SPDX-License-Identifier: MIT
#include "settings/ini_document.h"

#include <QStringDecoder>
#include <algorithm>

namespace vt::settings {
namespace {

/// The text of `bytes`: UTF-8 when they are, else Latin-1, which keeps every byte (`latin1`
/// tells which).
QString Decode(const QByteArray& bytes, bool& latin1) {
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = utf8.decode(bytes);
  latin1 = utf8.hasError();
  return latin1 ? QString::fromLatin1(bytes) : text;
}

bool IsBlank(const QString& line) { return line.trimmed().isEmpty(); }

}  // namespace

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
    if (const qsizetype nul = bytes.indexOf('\0'); nul >= 0) {
      return Error{Error::Kind::Parse, path, lineNumber, int(nul) + 1,
                   QStringLiteral("NUL byte in a settings file")};
    }
    bool latin1 = false;
    const QString line = Decode(bytes, latin1);
    const QString trimmed = line.trimmed();
    if (trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
      const QString name = trimmed.mid(1, trimmed.size() - 2);
      const QString folded = Fold(name);
      doc.sections_.push_back(Section{name, latin1, {}, {}, {}});
      if (!doc.sectionIndex_.contains(folded)) {
        doc.sectionIndex_.insert(folded, int(doc.sections_.size()) - 1);
      }
      current = &doc.sections_.back();
      continue;
    }
    if (!current) {
      doc.preamble_.push_back(Line{{}, {}, line, latin1});
      continue;
    }
    const qsizetype eq = line.indexOf(QLatin1Char('='));
    if (IsBlank(line)) {
      current->blanks.push_back(Line{{}, {}, line, latin1});
      continue;
    }
    // A line that is not blank: the blank lines before it are inside the section.
    current->lines.insert(current->lines.end(), current->blanks.begin(), current->blanks.end());
    current->blanks.clear();
    if (eq > 0 && !trimmed.startsWith(QLatin1Char(';'))) {
      AppendKey(*current, Line{line.left(eq), line.mid(eq + 1), {}, latin1});
    } else {
      current->lines.push_back(Line{{}, {}, line, latin1});
    }
  }
  return doc;
}

void IniDocument::AppendKey(Section& section, Line line) {
  const QString folded = Fold(line.key);
  section.lines.push_back(std::move(line));
  if (!folded.isEmpty() && !section.index.contains(folded)) {
    section.index.insert(folded, int(section.lines.size()) - 1);
  }
}

void IniDocument::Reindex(Section& section) {
  section.index.clear();
  for (std::size_t i = 0; i < section.lines.size(); ++i) {
    const QString folded = Fold(section.lines[i].key);
    if (!folded.isEmpty() && !section.index.contains(folded)) section.index.insert(folded, int(i));
  }
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
    sections_.push_back(Section{section, false, {}, {}, {}});
    sectionIndex_.insert(Fold(section), int(sections_.size()) - 1);
    s = &sections_.back();
  }
  const auto it = s->index.constFind(Fold(key));
  if (it != s->index.constEnd()) {
    s->lines[std::size_t(*it)].value = value;
    return;
  }
  AppendKey(*s, Line{key, value, {}, false});
}

void IniDocument::Remove(const QString& section, const QString& key) {
  Section* s = FindSection(section);
  if (!s) return;
  const QString folded = Fold(key);
  std::erase_if(s->lines, [&](const Line& l) { return !l.key.isEmpty() && Fold(l.key) == folded; });
  Reindex(*s);
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

QByteArray IniDocument::Encode(const QString& text, bool latin1) {
  // A line read as Latin-1 goes back in its own bytes while it holds nothing beyond Latin-1.
  if (latin1) {
    const bool fits =
        std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xFF; });
    if (fits) return text.toLatin1();
  }
  return text.toUtf8();
}

QByteArray IniDocument::Serialize() const {
  QByteArray out;
  auto put = [&out](const Line& l) {
    out += Encode(l.key.isEmpty() ? l.raw : l.key + QLatin1Char('=') + l.value, l.latin1);
    out += "\r\n";
  };
  for (const Line& line : preamble_) put(line);
  for (const Section& s : sections_) {
    out += Encode(QLatin1Char('[') + s.name + QLatin1Char(']'), s.latin1);
    out += "\r\n";
    for (const Line& l : s.lines) put(l);
    for (const Line& l : s.blanks) put(l);
  }
  return out;
}

}  // namespace vt::settings
