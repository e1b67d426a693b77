// SPDX-License-Identifier: MIT
#include "app/batch_job.h"

#include <QFile>
#include <QFileInfo>

#include "app/batch_commands.h"
#include "app/configuration.h"
#include "app/state.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

JobOutcome Ended(JobOutcome::Status status, QStringList errors = {}) {
  JobOutcome outcome;
  outcome.status = status;
  outcome.errors = std::move(errors);
  return outcome;
}

/// The folder run: every file's trouble is an error of the job, the report its output.
JobOutcome RunOnFolder(AppState& state, Services& services, const BatchJob& job,
                       const QString& batchPath) {
  const QString extension = job.extension.isEmpty() ? state.settings.other.mext : job.extension;
  const FolderRunOutcome run = RunBatchOnFolder(
      state, services, batchPath, QFileInfo(job.target).absoluteFilePath(), extension);
  JobOutcome outcome;
  // A block that never ends would fill the report with its visits past the end: the error
  // tells it.
  if (!run.error) outcome.output = state.batch.report;
  for (const FolderFileOutcome& file : run.files) {
    if (file.error) outcome.errors << file.error->ToString();
  }
  if (run.error) outcome.errors << run.error->ToString();
  if (!run.ran || !outcome.errors.isEmpty()) outcome.status = JobOutcome::Status::Refused;
  return outcome;
}

}  // namespace

JobOutcome BatchJob::Run(AppState& state, Services& services) const {
  const QFileInfo targetInfo(target);
  const bool folder = targetInfo.isDir();
  if (folder && (!output.isEmpty() || inPlace)) {
    return Ended(JobOutcome::Status::Usage,
                 {QStringLiteral("a folder run writes into the folder's _Processed folder; "
                                 "-o and --in-place are for one file")});
  }
  if (!folder && output.isEmpty() == !inPlace) {
    return Ended(JobOutcome::Status::Usage,
                 {QStringLiteral("give either -o OUTPUT or --in-place for one file")});
  }
  if (!folder && !extension.isEmpty()) {
    return Ended(JobOutcome::Status::Usage, {QStringLiteral("--ext is for a folder run")});
  }
  if (settingsFile.isEmpty()) {
    LoadFolders(state, services);
  } else {
    state.files.SettingsFile = QFileInfo(settingsFile).absoluteFilePath();
    state.files.InitFolder = QFileInfo(settingsFile).absolutePath() + QLatin1Char('/');
  }
  if (!LoadConfigurationX(state, services)) return Ended(JobOutcome::Status::Refused);

  const QString batchPath = QFileInfo(batch).absoluteFilePath();
  if (!QFileInfo(batchPath).isFile()) {
    return Ended(
        JobOutcome::Status::Refused,
        {Error{Error::Kind::Io, batch, 0, 0, QStringLiteral("no such batch file")}.ToString()});
  }
  if (folder) return RunOnFolder(state, services, *this, batchPath);
  if (!targetInfo.exists()) {
    return Ended(JobOutcome::Status::Refused,
                 {Error{Error::Kind::Io, target, 0, 0, QStringLiteral("no such file or folder")}
                      .ToString()});
  }

  const Result<QStringList> lines = ReadTextFile(target);
  if (!lines) return Ended(JobOutcome::Status::Refused, {lines.error().ToString()});
  state.text.Clear();
  for (const QString& line : lines.value()) state.text.AddLine(line);
  const BatchRunOutcome run = RunTextBatch(state, services, BatchCaller::Button, batchPath);
  JobOutcome outcome;
  if (!run.ran) {
    outcome.status = JobOutcome::Status::Refused;
    if (run.error) outcome.errors << run.error->ToString();
    return outcome;
  }
  outcome.output = state.batch.report;
  const QString written = QFileInfo(inPlace ? target : output).absoluteFilePath();
  if (inPlace) {
    QFile original(written);
    const Result<bool> kept =
        original.open(QIODevice::ReadOnly)
            ? WriteFileAtomically(written + QStringLiteral(".bak"), original.readAll())
            : Result<bool>(Error{Error::Kind::Io, written, 0, 0, original.errorString()});
    if (!kept) return Ended(JobOutcome::Status::Refused, {kept.error().ToString()});
  }
  const Result<bool> saved = state.text.SaveToFile(written, state.settings.output.crlf);
  if (!saved) return Ended(JobOutcome::Status::Refused, {saved.error().ToString()});
  outcome.writtenPath = written;
  return outcome;
}

}  // namespace vt::app
