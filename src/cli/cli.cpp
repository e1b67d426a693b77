// SPDX-License-Identifier: MIT
#include "cli/cli.h"

#include <QFileInfo>
#include <QRegularExpression>

#include "app/batch_commands.h"
#include "app/batch_job.h"
#include "app/configuration.h"
#include "app/display_commands.h"
#include "app/export_job.h"
#include "app/pixel_mode_commands.h"
#include "app/settings_job.h"
#include "app/state.h"
#include "canvas/threshold.h"
#include "platform/clock.h"
#include "platform/console/console_dialogs.h"
#include "platform/file_picker.h"
#include "platform/folders.h"
#include "platform/key_poll.h"
#include "platform/text_prompt.h"
#include "settings/geometry.h"
#include "settings/ini_document.h"
#include "settings/key_names.h"
#include "settings/pixel_modes.h"
#include "settings/settings_file.h"
#include "util/atomic_write.h"

namespace vt::cli {
namespace {

bool SameName(const QString& a, const QString& b) {
  return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

/// The pixel mode of a command-line name; kExitUsage after telling why.
std::optional<settings::PixelMode> ParseMode(const QString& name, QTextStream& err) {
  const auto mode = settings::PixelModeFromName(name);
  if (!mode) err << "vantorelle-cli: unknown mode '" << name << "'; see --help for the names\n";
  return mode;
}

/// The data direction of a key name (tr, tl, ...).
std::optional<settings::ScanDirection> ParseDirection(const QString& key, QTextStream& err) {
  for (const settings::ScanDirectionInfo& info : settings::ScanDirectionTable()) {
    if (SameName(info.key, key)) return info.direction;
  }
  err << "vantorelle-cli: unknown direction '" << key
      << "'; one of tr, tl, tra, tla, td, tda, tu, tua\n";
  return std::nullopt;
}

/// The origin corner numbered 1 to 4.
std::optional<settings::OriginCorner> ParseCorner(const QString& number, QTextStream& err) {
  bool ok = false;
  const int n = number.toInt(&ok);
  if (!ok || n < 1 || n > 4) {
    err << "vantorelle-cli: corner is 1 (top left), 2 (top right), 3 (bottom right) or 4 "
           "(bottom left), not '"
        << number << "'\n";
    return std::nullopt;
  }
  return static_cast<settings::OriginCorner>(n - 1);
}

/// The headless services of one run: messages answer by themselves and go to `err`.
struct ConsoleServices {
  ConsoleServices(QTextStream& err, platform::Folders& folders, platform::FileUse& fileUse)
      : dialogs(err), services{dialogs, folders, fileUse, escape, clock, filePicker, textPrompt} {}
  platform::ConsoleDialogs dialogs;
  platform::NoKeyPoll escape;
  platform::SystemClock clock;
  platform::NoFilePicker filePicker;  ///< nobody is there to choose: every request is refused
  platform::NoTextPrompt textPrompt;
  app::Services services;
};

/// Prints what a job left and gives its exit status.
int Report(const app::JobOutcome& outcome, QTextStream& out, QTextStream& err) {
  for (const QString& warning : outcome.warnings) {
    err << "vantorelle-cli: warning: " << warning << '\n';
  }
  for (const QString& line : outcome.output) out << line << '\n';
  for (const QString& error : outcome.errors) err << "vantorelle-cli: " << error << '\n';
  switch (outcome.status) {
    case app::JobOutcome::Status::Done:
      if (!outcome.writtenPath.isEmpty()) out << outcome.writtenPath << '\n';
      return kExitOk;
    case app::JobOutcome::Status::Refused:
      return kExitRefused;
    case app::JobOutcome::Status::Usage:
      return kExitUsage;
  }
  return kExitRefused;
}

/// Parses the settings command's arguments into `job`; kExitUsage after telling why.
int ParseSettingsJob(QStringList args, app::SettingsJob& job, QTextStream& err) {
  using Command = app::SettingsJob::Command;
  if (args.size() >= 2 && args[0] == QStringLiteral("--settings")) {
    job.settingsFile = args[1];
    args = args.mid(2);
  }
  if (!args.isEmpty() && args[0] == QStringLiteral("describe")) {
    if (args.size() < 2) {
      err << "vantorelle-cli: settings describe needs at least one key\n";
      return kExitUsage;
    }
    job.command = Command::Describe;
    job.keys = args.mid(1);
    return kExitOk;
  }
  if (job.settingsFile.isEmpty() || args.isEmpty()) {
    err << "vantorelle-cli: usage: vantorelle-cli settings --settings FILE "
           "get|set|mode|direction|corner|size ..., or settings describe KEY...\n";
    return kExitUsage;
  }
  const QString command = args.takeFirst();
  static const QList<std::pair<QString, Command>> kCommands = {
      {QStringLiteral("get"), Command::Get},
      {QStringLiteral("set"), Command::Set},
      {QStringLiteral("mode"), Command::Mode},
      {QStringLiteral("direction"), Command::Direction},
      {QStringLiteral("corner"), Command::Corner},
      {QStringLiteral("size"), Command::Size},
  };
  const auto known = std::find_if(kCommands.cbegin(), kCommands.cend(),
                                  [&](const auto& entry) { return entry.first == command; });
  if (known == kCommands.cend()) {
    err << "vantorelle-cli: unknown settings command '" << command << "'\n";
    return kExitUsage;
  }
  job.command = known->second;
  const bool single = job.command != Command::Get && job.command != Command::Set;
  if (args.isEmpty() || (single && args.size() != 1)) {
    err << "vantorelle-cli: settings " << command
        << (single ? " takes exactly one value\n" : " needs at least one key\n");
    return kExitUsage;
  }
  switch (job.command) {
    case Command::Get:
    case Command::Set:
    case Command::Describe:
      job.keys = args;
      return kExitOk;
    case Command::Mode: {
      const auto mode = ParseMode(args[0], err);
      if (!mode) return kExitUsage;
      job.mode = *mode;
      return kExitOk;
    }
    case Command::Direction: {
      const auto direction = ParseDirection(args[0], err);
      if (!direction) return kExitUsage;
      job.direction = *direction;
      return kExitOk;
    }
    case Command::Corner: {
      const auto corner = ParseCorner(args[0], err);
      if (!corner) return kExitUsage;
      job.corner = *corner;
      return kExitOk;
    }
    case Command::Size: {
      static const QRegularExpression form(QStringLiteral("^(\\d{1,9})[xX](\\d{1,9})$"));
      const auto m = form.match(args[0].trimmed());
      if (!m.hasMatch()) {
        err << "vantorelle-cli: size is WIDTHxHEIGHT, such as 128x64, not '" << args[0] << "'\n";
        return kExitUsage;
      }
      job.size = QSize(m.captured(1).toInt(), m.captured(2).toInt());
      return kExitOk;
    }
  }
  return kExitUsage;
}

/// The value following option `arg` at `i`, which moves on; empty after telling that it is
/// missing.
std::optional<QString> OptionValue(const QStringList& args, qsizetype& i, QTextStream& err) {
  if (i + 1 >= args.size()) {
    err << "vantorelle-cli: " << args[i] << " needs a value\n";
    return std::nullopt;
  }
  return args[++i];
}

/// Parses the export command's arguments into `job`; kExitUsage after telling why.
int ParseExportJob(const QStringList& args, app::ExportJob& job, QTextStream& err) {
  QString outputWidth, threshold, dither;
  for (qsizetype i = 0; i < args.size(); ++i) {
    const QString& arg = args[i];
    QString* slot = nullptr;
    if (arg == QStringLiteral("--settings"))
      slot = &job.settingsFile;
    else if (arg == QStringLiteral("-o") || arg == QStringLiteral("--output"))
      slot = &job.output;
    else if (arg == QStringLiteral("--output-width"))
      slot = &outputWidth;
    else if (arg == QStringLiteral("--threshold"))
      slot = &threshold;
    else if (arg == QStringLiteral("--dither"))
      slot = &dither;
    else if (arg == QStringLiteral("--batch"))
      slot = &job.batch;
    const bool named = arg == QStringLiteral("--mode") || arg == QStringLiteral("--direction") ||
                       arg == QStringLiteral("--corner") || arg == QStringLiteral("--set");
    if (slot != nullptr || named) {
      const std::optional<QString> value = OptionValue(args, i, err);
      if (!value) return kExitUsage;
      if (slot != nullptr) {
        *slot = *value;
      } else if (arg == QStringLiteral("--set")) {
        job.assignments << *value;
      } else if (arg == QStringLiteral("--mode")) {
        if (!(job.mode = ParseMode(*value, err))) return kExitUsage;
      } else if (arg == QStringLiteral("--direction")) {
        if (!(job.direction = ParseDirection(*value, err))) return kExitUsage;
      } else if (!(job.corner = ParseCorner(*value, err))) {
        return kExitUsage;
      }
    } else if (arg.startsWith(QLatin1Char('-')) || !job.image.isEmpty()) {
      err << "vantorelle-cli: unexpected argument '" << arg << "' for export\n";
      return kExitUsage;
    } else {
      job.image = arg;
    }
  }
  if (job.image.isEmpty()) {
    err << "vantorelle-cli: usage: vantorelle-cli export IMAGE [--settings FILE] [--mode NAME] "
           "[--direction KEY] [--corner N] [--set KEY=VALUE]... [--output-width 8|16|32|bin|ihex] "
           "[--threshold N | --dither METHOD] [--batch BATCH.SPP] [-o OUTPUT]\n";
    return kExitUsage;
  }
  if (!outputWidth.isEmpty() && !(job.outputWidth = convert::WordWidthFromName(outputWidth))) {
    err << "vantorelle-cli: --output-width is 8, 16, 32, bin or ihex, not '" << outputWidth
        << "'\n";
    return kExitUsage;
  }
  if (!threshold.isEmpty() && !dither.isEmpty()) {
    err << "vantorelle-cli: give either --threshold or --dither, not both\n";
    return kExitUsage;
  }
  if (!threshold.isEmpty()) {
    bool ok = false;
    const int position = threshold.toInt(&ok);
    if (!ok || position < 0 || position > canvas::BlackWhiteTools::kMaxPosition) {
      err << "vantorelle-cli: --threshold is a slider position from 0 to 255, not '" << threshold
          << "'\n";
      return kExitUsage;
    }
    job.threshold = position;
  }
  if (!dither.isEmpty() && !(job.dither = canvas::DitherMethodFromName(dither))) {
    err << "vantorelle-cli: unknown dithering method '" << dither << "'; one of "
        << canvas::DitherMethodNames() << '\n';
    return kExitUsage;
  }
  return kExitOk;
}

/// Parses the batch command's arguments into `job`; kExitUsage after telling why.
int ParseBatchJob(const QStringList& args, app::BatchJob& job, QTextStream& err) {
  QStringList positional;
  for (qsizetype i = 0; i < args.size(); ++i) {
    const QString& arg = args[i];
    QString* slot = nullptr;
    if (arg == QStringLiteral("--settings"))
      slot = &job.settingsFile;
    else if (arg == QStringLiteral("-o") || arg == QStringLiteral("--output"))
      slot = &job.output;
    else if (arg == QStringLiteral("--ext"))
      slot = &job.extension;
    if (slot != nullptr) {
      const std::optional<QString> value = OptionValue(args, i, err);
      if (!value) return kExitUsage;
      *slot = *value;
    } else if (arg == QStringLiteral("--in-place")) {
      job.inPlace = true;
    } else if (arg.startsWith(QLatin1Char('-')) || positional.size() == 2) {
      err << "vantorelle-cli: unexpected argument '" << arg << "' for batch\n";
      return kExitUsage;
    } else {
      positional << arg;
    }
  }
  if (positional.size() != 2) {
    err << "vantorelle-cli: usage: vantorelle-cli batch BATCH.SPP [--settings FILE] "
           "(FILE (-o OUTPUT | --in-place) | FOLDER [--ext .h])\n";
    return kExitUsage;
  }
  job.batch = positional[0];
  job.target = positional[1];
  return kExitOk;
}

}  // namespace

int RunExport(const QStringList& args, app::AppState& state, app::Services& services,
              QTextStream& out, QTextStream& err) {
  app::ExportJob job;
  if (const int status = ParseExportJob(args, job, err); status != kExitOk) return status;
  return Report(job.Run(state, services), out, err);
}

QString HelpText() {
  QString modes;
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const QString name = settings::PixelModeName(info.mode);
    if (!name.isEmpty() && !modes.contains(name + QLatin1Char(',')))
      modes += name + QStringLiteral(", ");
  }
  modes.chop(2);
  return QStringLiteral(
             "Usage: vantorelle-cli COMMAND ...\n"
             "\n"
             "Commands:\n"
             "  settings --settings FILE get KEY...\n"
             "      Print KEY=VALUE for each key as a load of FILE sees it. A key may be\n"
             "      qualified by its section (B10.HCO) where it stands in two sections.\n"
             "  settings --settings FILE set KEY=VALUE...\n"
             "      Write the keys into FILE as given, then load and save it, so FILE holds\n"
             "      what a load sees (keys that do not read back return to their defaults).\n"
             "      SECTION.KEY=VALUE adds a key the program does not use; it is kept.\n"
             "  settings [--settings FILE] describe KEY...\n"
             "      Print what each key controls, one line each:\n"
             "      SECTION.KEY (type, default \"TEXT\"): description. Needs no settings\n"
             "      file; a numbered key such as mru3 or cs0w tells of its list.\n"
             "  settings --settings FILE mode NAME\n"
             "      Select a pixel mode with all its checks. NAME is one of:\n"
             "      %1.\n"
             "  settings --settings FILE direction KEY\n"
             "      Select a data direction with its size check: tr, tl, tra, tla, td, tda, tu, "
             "tua.\n"
             "  settings --settings FILE corner N\n"
             "      Select the origin corner: 1 top left, 2 top right, 3 bottom right,\n"
             "      4 bottom left.\n"
             "  settings --settings FILE size WxH\n"
             "      Select a display size: a preset, or a user size of at most 1024x768.\n"
             "  export IMAGE [--settings FILE] [--mode NAME] [--direction KEY] [--corner N]\n"
             "         [--set KEY=VALUE]... [--output-width 8|16|32|bin|ihex]\n"
             "         [--threshold N | --dither METHOD] [--batch BATCH.SPP] [-o OUTPUT]\n"
             "      Export the picture as a data array, as \"Export Work Canvas to Data\" does.\n"
             "      The display takes the picture's size; --mode, --direction, --corner and\n"
             "      --set (in that order, with the checks above) and --output-width (words of\n"
             "      8, 16 or 32 bits, a binary file or Intel Hex) apply to this export only.\n"
             "      Without --settings the desktop program's active project is used. The\n"
             "      array is named after IMAGE and written to OUTPUT, or to the output\n"
             "      folder (OFP) under the output name; the path written is printed. The\n"
             "      export report (.rtf) goes beside OUTPUT, else to the project folder. In gray\n"
             "      and colour modes the picture is reduced to the mode's palette as loading\n"
             "      does. In monochrome a picture of other colours than black and white is\n"
             "      refused unless it is converted: --threshold N (0 to 255, the threshold\n"
             "      slider: a pixel turns black when its colour, grayed, lies below the\n"
             "      position) or --dither METHOD, one of:\n"
             "      %2.\n"
             "      --batch runs a text batch on the generated text before it is saved.\n"
             "  batch BATCH.SPP [--settings FILE] FILE (-o OUTPUT | --in-place)\n"
             "  batch BATCH.SPP [--settings FILE] FOLDER [--ext .h]\n"
             "      Run a text batch on one text file, written to OUTPUT or back to FILE\n"
             "      (the old one kept as FILE.bak), or on every file of FOLDER ending with\n"
             "      the extension (default: the setting mext), each written to\n"
             "      FOLDER/_Processed under its own name. The batch's report is printed. A\n"
             "      file that cannot be read is named and left; the others go on. A block\n"
             "      that would never end (its last condition does not test the lines) stops\n"
             "      the run after %3 visits past the end of the text, with status 1.\n"
             "\n"
             "A missing FILE is created with the factory settings. Messages go to standard\n"
             "error; a refused change exits with status 1 and leaves FILE as it was, a usage\n"
             "error with status 2. An export stopped by a message or an unreadable picture\n"
             "exits with status 1 and writes nothing.\n")
      .arg(modes, canvas::DitherMethodNames())
      .arg(app::kEndlessVisitLimit);
}

int RunCli(const QStringList& args, QTextStream& out, QTextStream& err, platform::Folders& folders,
           platform::FileUse& fileUse) {
  if (args.isEmpty() || args[0] == QStringLiteral("--help") || args[0] == QStringLiteral("-h") ||
      args[0] == QStringLiteral("help")) {
    out << HelpText();
    return args.isEmpty() ? kExitUsage : kExitOk;
  }
  ConsoleServices console(err, folders, fileUse);
  app::AppState state;
  try {
    if (args[0] == QStringLiteral("settings")) {
      app::SettingsJob job;
      if (const int status = ParseSettingsJob(args.mid(1), job, err); status != kExitOk) {
        return status;
      }
      return Report(job.Run(state, console.services), out, err);
    }
    if (args[0] == QStringLiteral("export")) {
      return RunExport(args.mid(1), state, console.services, out, err);
    }
    if (args[0] == QStringLiteral("batch")) {
      app::BatchJob job;
      if (const int status = ParseBatchJob(args.mid(1), job, err); status != kExitOk) {
        return status;
      }
      return Report(job.Run(state, console.services), out, err);
    }
  } catch (const Failure& failure) {
    // A rare failure deep down (I/O, an allocation limit): the run ends with its reason.
    err << "vantorelle-cli: " << failure.error().ToString() << '\n';
    return kExitRefused;
  }
  err << "vantorelle-cli: unknown command '" << args[0] << "'; try --help\n";
  return kExitUsage;
}

}  // namespace vt::cli
