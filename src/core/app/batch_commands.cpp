// SPDX-License-Identifier: MIT
#include "app/batch_commands.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStringDecoder>
#include <exception>

#include "app/export_driver.h"
#include "app/graphic_import.h"
#include "app/messages.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/state.h"
#include "platform/clock.h"
#include "platform/folders.h"
#include "platform/key_poll.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

using platform::DialogType;
namespace Buttons = platform::Buttons;

const QString kNoBatch = QStringLiteral("< No batch file selected >");

void Tell(AppState& state, Services& services, const QString& text, const QString& caption,
          DialogType type) {
  MessageDlgA(state, services.dialogs, text, caption, 0, Buttons::Ok, type);
}

QString Join(const QString& folder, const QString& name) {
  return QDir::cleanPath(folder + QLatin1Char('/') + name);
}

QString DateText(const platform::Clock& clock) {
  return QLocale::c().toString(clock.Now(), QStringLiteral("dd/MM/yyyy HH:mm:ss"));
}

bool NoBatchNamed(const QString& name) { return name.trimmed().isEmpty() || name == kNoBatch; }

/// The tasks of a batch over the application: the canvas, the export and the output folder.
class AppBatchHost final : public batch::TextBatchHost {
 public:
  AppBatchHost(AppState& state, Services& services) : state_(state), services_(services) {}

  bool LoadGraphic(const QString& name) override {
    const QString path =
        QFileInfo(name).isAbsolute() ? name : Join(state_.settings.folder.BFP, name);
    return LoadGraphicFile(state_, services_, path);
  }

  bool ConvertGraphic(QStringList& lines) override {
    // The batch's own export runs without a post-processing run of its own.
    const bool autop = state_.settings.post.Autop;
    state_.settings.post.Autop = false;
    ExportRequest request = FillExportDialog(state_).request;
    request.batchRunning = true;
    const ExportResult result = TranslateCanvas(state_, services_, request);
    state_.settings.post.Autop = autop;
    if (result.status != ExportStatus::Written) return false;
    lines = state_.text.Lines();
    return true;
  }

  QString OverwriteDataFile(const QStringList& lines) override {
    const settings::Settings& s = state_.settings;
    const QString name = QFileInfo(s.output.nbmfn).completeBaseName() + SourceExtension(s.output);
    const QString end = s.output.crlf ? QStringLiteral("\r\n") : QStringLiteral("\n");
    QString text;
    for (const QString& line : lines) text += line + end;
    if (!WriteFileAtomically(Join(s.folder.OFP, name), text.toUtf8())) return {};
    return name;
  }

 private:
  AppState& state_;
  Services& services_;
};

}  // namespace

Result<QStringList> ReadTextFile(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists()) {
    return Error{Error::Kind::Io, path, 0, 0,
                 info.isSymLink() ? QStringLiteral("a link to a file that does not exist")
                                  : QStringLiteral("no such file")};
  }
  QFile file(path);
  if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
    return Error{Error::Kind::Io, path, 0, 0, QStringLiteral("cannot be read as a file")};
  }
  const QByteArray bytes = file.readAll();
  QStringDecoder decode(QStringDecoder::Utf8);
  QString text = decode(bytes);
  if (decode.hasError()) {
    return Error{Error::Kind::Parse, path, 0, 0, QStringLiteral("not UTF-8 text; left as it is")};
  }
  platform::TextBuffer buffer;
  buffer.SetText(text);
  return buffer.Lines();
}

QString BatchFileFor(AppState& state, BatchCaller caller) {
  settings::Settings& s = state.settings;
  const QString folder = s.folder.bfpa;
  switch (caller) {
    case BatchCaller::Button:
      return Join(folder, s.post.pprof);
    case BatchCaller::Conversion:
      if (!QFileInfo::exists(Join(folder, s.post.prpopr)) && !NoBatchNamed(s.post.pprof) &&
          QFileInfo::exists(Join(folder, s.post.pprof))) {
        s.post.prpopr = s.post.pprof;
      }
      return Join(folder, s.post.prpopr);
    case BatchCaller::FontConversion:
      return Join(folder, s.post.ppfpf);
  }
  return {};
}

BatchRunOutcome RunTextBatch(AppState& state, Services& services, BatchCaller caller,
                             const QString& batchFile, const batch::BatchProgress& progress) {
  state.log.Laction = QStringLiteral("Run Text Batch");
  BatchRunOutcome outcome;
  const settings::Settings& s = state.settings;
  QString path = batchFile;
  if (path.isEmpty()) {
    const QString name = caller == BatchCaller::Button       ? s.post.pprof
                         : caller == BatchCaller::Conversion ? s.post.prpopr
                                                             : s.post.ppfpf;
    const bool none = NoBatchNamed(name) ||
                      (caller == BatchCaller::Conversion &&
                       !QFileInfo::exists(Join(s.folder.bfpa, name)) && NoBatchNamed(s.post.pprof));
    if (none) {
      if (caller == BatchCaller::Button) {
        Tell(state, services, QStringLiteral(" No Processing Batch has been selected !"),
             QStringLiteral("No Processing batch Active!"), DialogType::Error);
      } else {
        Tell(state, services,
             QStringLiteral(
                 " There is no post-processing batch file defined !  \r Active batch = ") +
                 kNoBatch,
             QStringLiteral("Post-Processing"), DialogType::Warning);
      }
      return outcome;
    }
    path = BatchFileFor(state, caller);
  }
  outcome.batchPath = path;
  if (!QFileInfo(path).isFile()) {
    Tell(state, services,
         QStringLiteral(" No Processing Batch File has been activated\ror Batch File not longer "
                        "exists !\r") +
             path,
         QStringLiteral("SPP file not found !"), DialogType::Error);
    return outcome;
  }
  const Result<QStringList> batchLines = batch::ReadBatchFile(path);
  if (!batchLines) {
    outcome.error = batchLines.error();
    Tell(state, services, batchLines.error().ToString(), QStringLiteral("Error"),
         DialogType::Error);
    return outcome;
  }

  batch::TextBatchOptions options;
  options.batchName = path;
  options.dateText = DateText(services.clock);
  options.silent = state.batch.BatchSilent;
  options.outputFolder = s.folder.OFP;
  options.crlf = s.output.crlf;
  if (!services.escape.CanReportPress()) options.endlessLimit = kEndlessVisitLimit;

  const QStringList before = state.text.Lines();
  QStringList lines = before;
  AppMessenger messenger(state, services.dialogs);
  AppBatchHost host(state, services);
  state.batch.BatchRunning = true;
  try {
    outcome.result =
        batch::RunTextBatch(batchLines.value(), lines, state.batch.report, state.batch.hex,
                            messenger, services.escape, host, options, progress);
  } catch (const std::exception&) {
    state.batch.BatchRunning = false;
    state.log.LastErrorText = QStringLiteral("Processing Exception");
    state.log.HandledExcept(QStringLiteral("Processing Exception"));
    Tell(state, services, QStringLiteral("Batch Processing Error !"), QStringLiteral("Error"),
         DialogType::Error);
    return outcome;
  }
  state.batch.BatchRunning = false;
  if (const auto& endless = outcome.result.endless) {
    outcome.error = Error{Error::Kind::Refused, path, endless->line, 0,
                          QStringLiteral("the block starting with \"%1\" never ends (its last "
                                         "condition does not test the lines); stopped after %2 "
                                         "visits past the end of the text")
                              .arg(endless->text.trimmed())
                              .arg(kEndlessVisitLimit)};
    state.log.StatusBarAndLog(outcome.error->ToString());
    return outcome;
  }
  outcome.ran = true;
  if (lines != before) {
    state.text.Clear();
    for (const QString& line : std::as_const(lines)) state.text.AddLine(line);
  }
  return outcome;
}

BatchRunOutcome ApplyPostProButtonClick(AppState& state, Services& services,
                                        const batch::BatchProgress& progress) {
  if (state.modes.BatchEditActive && !LeaveMode(state, services, SpecialMode::BatchEdition)) {
    return {};
  }
  state.log.StatusBarAndLog(QStringLiteral("Run Processing Batch"));
  BatchRunOutcome outcome = RunTextBatch(state, services, BatchCaller::Button, {}, progress);
  if (outcome.ran && !state.batch.BatchSilent) {
    const int answer = MyMessageDialog(
        state, services.dialogs,
        QStringLiteral(" Source file Processing done !\r ") +
            QString::number(outcome.result.Occurences) +
            QStringLiteral(" successful occurences found"),
        DialogType::Information, 2,
        {QStringLiteral("Ok"), QStringLiteral("View Report"), QStringLiteral("Cancel")},
        Buttons::Yes | Buttons::No | Buttons::Ok);
    state.batch.showReport = answer == platform::Answer::No;
  }
  return outcome;
}

BatchRunOutcome RunPostExportBatch(AppState& state, Services& services, const QString& batchFile,
                                   const batch::BatchProgress& progress) {
  BatchRunOutcome outcome =
      RunTextBatch(state, services, BatchCaller::Conversion, batchFile, progress);
  if (outcome.ran && !state.settings.post.Sile && !state.batch.BatchSilent) {
    Tell(state, services,
         QStringLiteral(" Text Postprocessing done !") +
             QString::number(outcome.result.Occurences) +
             QStringLiteral(" successful occurences found"),
         QStringLiteral(" Processing information"), DialogType::Information);
  }
  return outcome;
}

FolderRunOutcome RunBatchOnFolder(AppState& state, Services& services, const QString& batchFile,
                                  const QString& folder, const QString& extension,
                                  const batch::BatchProgress& progress) {
  FolderRunOutcome outcome;
  if (!QFileInfo(folder).isDir()) {
    Tell(state, services,
         QStringLiteral(" The defined Processing Folder Does Not Exist !\rSee Batch Processing "
                        "Settings Panel"),
         QStringLiteral("Processing Folder Error!"), DialogType::Error);
    return outcome;
  }
  const QString target = Join(folder, QStringLiteral("_Processed"));
  QDir().mkpath(target);
  // Files only, and also entries that are no regular file (a link to nowhere), which are then
  // reported as unreadable rather than passed over.
  const QFileInfoList entries = QDir(folder).entryInfoList(
      {QStringLiteral("*") + extension}, QDir::Files | QDir::System | QDir::Hidden, QDir::Name);
  QStringList& report = state.batch.report;
  report.clear();
  report << QStringLiteral("Processing batch :") + batchFile;
  outcome.ran = true;
  if (entries.isEmpty()) {
    report << QStringLiteral("No matching files found !");
    return outcome;
  }
  state.batch.BatchSilent = true;
  for (const QFileInfo& entry : entries) {
    if (services.escape.CanReportPress() && services.escape.EscapePressed()) {
      outcome.aborted = true;
      break;
    }
    FolderFileOutcome file;
    file.source = entry.filePath();
    report << QStringLiteral("Source File : ") + file.source;
    const Result<QStringList> lines = ReadTextFile(file.source);
    if (!lines) {
      file.error = lines.error();
      report << QStringLiteral("Not processed : ") + lines.error().ToString() << QString();
      outcome.files << file;
      continue;
    }
    state.text.Clear();
    for (const QString& line : lines.value()) state.text.AddLine(line);
    const BatchRunOutcome run =
        RunTextBatch(state, services, BatchCaller::Button, batchFile, progress);
    if (run.error) {
      outcome.error = run.error;
      break;
    }
    file.Occurences = run.result.Occurences;
    report << QStringLiteral("Processed : ") + QString::number(file.Occurences) +
                  QStringLiteral(" occurences found");
    const QString written = Join(target, entry.fileName());
    const Result<bool> saved = state.text.SaveToFile(written, state.settings.output.crlf);
    if (!saved) {
      file.error = saved.error();
      report << QStringLiteral("Not saved : ") + saved.error().ToString() << QString();
    } else {
      file.written = written;
      report << QStringLiteral("New file saved in : ") + written << QString();
    }
    outcome.files << file;
  }
  state.batch.BatchSilent = false;
  return outcome;
}

FolderRunOutcome RunMultipleButtonClick(AppState& state, Services& services,
                                        const batch::BatchProgress& progress) {
  state.log.StatusBarAndLog(QStringLiteral("Run Active Batch on Multiple Files in Folder Button"));
  const settings::Settings& s = state.settings;
  if (NoBatchNamed(s.post.pprof)) {
    Tell(state, services, QStringLiteral(" No Processing Batch has been activated !"),
         QStringLiteral("No Processing batch Active!"), DialogType::Error);
    return {};
  }
  const QString path = Join(s.folder.bfpa, s.post.pprof);
  if (!QFileInfo(path).isFile()) {
    Tell(state, services,
         QStringLiteral(" No Processing Batch File has been activated\ror Batch File not longer "
                        "exists !\r") +
             path,
         QStringLiteral("SPP file not found !"), DialogType::Error);
    return {};
  }
  const Result<QStringList> lines = batch::ReadBatchFile(path);
  const QString first = lines ? lines.value().value(0) : QString();
  if (first.contains(QLatin1String("load graphic")) && first.contains(QLatin1String("filename"))) {
    Tell(state, services,
         QStringLiteral(" Graphic Files Batch Processing  !\r Batch File is :") + path,
         QStringLiteral("Start Graphic Files Processing "), DialogType::Information);
    return {};
  }
  return RunBatchOnFolder(state, services, path, s.other.mpfo, s.other.mext, progress);
}

void SelectActiveBatchButtonClick(AppState& state, const QString& fileName) {
  state.log.StatusBarAndLog(QStringLiteral("Activate this Processing Batch Button"));
  state.settings.post.pprof = QFileInfo(fileName).fileName();
  state.log.StatusBarAndLog(QStringLiteral("Active Batch = ") + state.settings.post.pprof);
}

QStringList PopulateSPPcombobox(const AppState& state) {
  QStringList names = QDir(state.settings.folder.bfpa)
                          .entryList({QStringLiteral("*.SPP"), QStringLiteral("*.spp")},
                                     QDir::Files, QDir::Name | QDir::IgnoreCase);
  names.removeDuplicates();
  return names;
}

namespace {

/// Batch Edition's own leaving, as the mode table calls it.
bool LeaveBatchEdition(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("Quit Text Proc");
  BatchState& b = state.batch;
  if (b.editChanged && !state.modes.QuitNoSave) {
    if (QFileInfo::exists(b.editPath)) {
      if (services.fileUse.IsFileInUse(b.editPath)) {
        Tell(state, services,
             QStringLiteral("Access to this file denied ! Check for read only status"),
             QStringLiteral("Error"), DialogType::Error);
        return false;
      }
      const int answer = MessageDlgA(
          state, services.dialogs,
          QStringLiteral("Overwrite Processing batch to file ?\r") + b.editPath,
          QStringLiteral("Confirm"), 0, Buttons::Yes | Buttons::No, DialogType::Confirmation);
      if (answer != platform::Answer::Yes) return false;
      if (!SavePPbuttonClick(state, services)) return false;
      state.log.StatusBarAndLog(QStringLiteral("Overwrite batch : ") + b.editPath);
    } else {
      const int answer =
          MessageDlgA(state, services.dialogs, QStringLiteral(" Save batch to file ? "),
                      QStringLiteral("Batch not saved !"), 0,
                      Buttons::Yes | Buttons::No | Buttons::Cancel, DialogType::Confirmation);
      if (answer == platform::Answer::Cancel) return false;
      if (answer == platform::Answer::Yes) {
        if (!SavePPbuttonClick(state, services)) return false;
        state.log.StatusBarAndLog(QStringLiteral("Save batch : ") + b.editPath);
        state.log.StatusBarAndLog(QStringLiteral("Saved !"));
      }
    }
  }
  b.editChanged = false;
  return true;
}

}  // namespace

void CreatePostProClick(AppState& state, Services& services, bool newBatch) {
  state.log.Laction = QStringLiteral("Create Post Pro");
  ModeRoutines& routines = state.modeRoutines[static_cast<int>(SpecialMode::BatchEdition)];
  if (!routines.leave) routines.leave = LeaveBatchEdition;
  const settings::Settings& s = state.settings;
  QString name;
  if (newBatch) {
    for (int n = 1;; ++n) {
      name = QStringLiteral("NewTextPro%1.SPP").arg(n);
      if (!QFileInfo::exists(Join(s.folder.bfpa, name))) break;
    }
  } else {
    name = NoBatchNamed(s.post.pprof) ? QFileInfo(s.output.nbmfn).completeBaseName() : s.post.pprof;
  }
  if (!name.toUpper().endsWith(QLatin1String(".SPP"))) name += QStringLiteral(".SPP");
  if (!state.modes.BatchEditActive && !EnterMode(state, services, SpecialMode::BatchEdition)) {
    return;
  }
  state.log.StatusBarAndLog(QStringLiteral("Edit Postpro Batch"));
  BatchState& b = state.batch;
  b.editPath = Join(s.folder.bfpa, name);
  b.editLines.clear();
  if (QFileInfo::exists(b.editPath)) {
    const Result<QStringList> lines = batch::ReadBatchFile(b.editPath);
    if (!lines) {
      Tell(state, services, QStringLiteral("Error While Trying To Load Processing Batch !"),
           QStringLiteral("Error"), DialogType::Error);
    } else {
      b.editLines = lines.value();
    }
  }
  b.editChanged = true;
}

bool QuitPostClick(AppState& state, Services& services) {
  if (!state.modes.BatchEditActive) return true;
  return LeaveMode(state, services, SpecialMode::BatchEdition);
}

bool SavePPbuttonClick(AppState& state, Services& services) {
  BatchState& b = state.batch;
  QDir().mkpath(QFileInfo(b.editPath).absolutePath());
  const Result<bool> written = WriteFileAtomically(
      b.editPath, (b.editLines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8());
  if (!written) {
    Tell(state, services, written.error().ToString(), QStringLiteral("Error"), DialogType::Error);
    return false;
  }
  b.editChanged = false;
  return true;
}

}  // namespace vt::app
