// SPDX-License-Identifier: MIT
#include "app/log.h"

#include <QDir>
#include <QFileInfo>

#include "util/atomic_write.h"

namespace vt::app {

namespace {

// Lines joined with a line feed after each, as UTF-8.
QByteArray ToFileText(const QStringList& lines) {
  QByteArray data;
  for (const QString& line : lines) {
    data += line.toUtf8();
    data += '\n';
  }
  return data;
}

// Writes `lines` to `path` only when its folder already exists.
bool WriteIntoExistingFolder(const QString& path, const QStringList& lines) {
  const QFileInfo info(path);
  if (!info.absoluteDir().exists()) return false;
  return WriteFileAtomically(path, ToFileText(lines)).ok();
}

}  // namespace

void Log::StatusBarAndLog(const QString& text) {
  statusText_ = text;
  if (text.isEmpty()) return;
  const bool sameAsLastLine = !lines_.isEmpty() && lines_.last() == text;
  if (text != lastLogText_ && !sameAsLastLine) {
    logRepeatCount_ = 0;
    lines_.append(text);
    lastLogText_ = text;
    return;
  }
  // A repeat: the last line becomes the text with the number of repeats so far.
  ++logRepeatCount_;
  const QString folded = text + QStringLiteral("  x ") + QString::number(logRepeatCount_);
  if (lines_.isEmpty()) {
    lines_.append(folded);
  } else {
    lines_.last() = folded;
  }
  lastLogText_ = text;
}

void Log::LogError(const QString& text) {
  lines_.append(text);
  lines_.append(LastForm + QLatin1Char('[') + LastControl + QStringLiteral("])"));
}

void Log::Append(const QString& line) { lines_.append(line); }

void Log::Clear() {
  lines_.clear();
  lastLogText_.clear();
  logRepeatCount_ = 0;
}

bool Log::SaveLog(const QString& path) const { return WriteIntoExistingFolder(path, lines_); }

void Log::HandledExcept(const QString& shortText) {
  LastErrorText = shortText;
  ++ExceptionNumber;
  ErrorReport(QStringLiteral("Handled_Except"));
}

void Log::ErrorReport(const QString& tag) { ReportTags.append(tag); }

QString Log::ReportFileName(const QDateTime& at) {
  return QStringLiteral("Report ") + at.toString(QStringLiteral("dd.MM.yy")) + QLatin1Char(' ') +
         at.toString(QStringLiteral("hh.mm.ss")) + QStringLiteral(".txt");
}

bool Log::WriteReport(const QString& folder, const QDateTime& at) const {
  if (folder.isEmpty()) return false;
  return WriteIntoExistingFolder(QDir(folder).filePath(ReportFileName(at)), Report);
}

}  // namespace vt::app
