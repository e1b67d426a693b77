// SPDX-License-Identifier: MIT
#include "cli/cli.h"

#include <QFileInfo>
#include <QRegularExpression>

#include "app/configuration.h"
#include "app/state.h"
#include "canvas/color_reduction.h"
#include "canvas/graphic_loading.h"
#include "canvas/threshold.h"
#include "convert/data_text.h"
#include "convert/export_driver.h"
#include "convert/output_width.h"
#include "platform/clock.h"
#include "platform/console/console_dialogs.h"
#include "platform/folders.h"
#include "platform/key_poll.h"
#include "settings/geometry.h"
#include "settings/ini_document.h"
#include "settings/key_table.h"
#include "settings/pixel_modes.h"
#include "settings/settings_file.h"
#include "util/atomic_write.h"
#include "util/fast_paths.h"

namespace vt::cli {
namespace {

/// A key named on the command line: "KEY" or "SECTION.KEY".
struct KeyName {
  QString section;  ///< empty when not given
  QString key;
};

KeyName SplitKeyName(const QString& text) {
  const qsizetype dot = text.indexOf(QLatin1Char('.'));
  if (dot <= 0) return {{}, text.trimmed()};
  return {text.left(dot).trimmed(), text.mid(dot + 1).trimmed()};
}

bool SameName(const QString& a, const QString& b) {
  return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

/// The table row a name designates: by the name written in the file, else by the name a load
/// reads (vew1, vecin, EndstF). The first row in file order wins when a key stands in two
/// sections and no section is given.
const settings::KeyRow* FindRow(const KeyName& name) {
  for (bool byReadName : {false, true}) {
    for (const settings::KeyRow& row : settings::KeyTable()) {
      const QString key = byReadName ? row.ReadKey() : row.WriteKey();
      const QString section = byReadName ? row.ReadSection() : row.WriteSection();
      if (SameName(key, name.key) && (name.section.isEmpty() || SameName(section, name.section))) {
        return &row;
      }
    }
  }
  return nullptr;
}

/// Where a dynamic list key lives (mru<n>, fmru<n>, ext<n>, cs<n>w, cs<n>h), or empty.
QString DynamicSection(const QString& key) {
  static const QRegularExpression mru(QStringLiteral("^mru(\\d+)$"),
                                      QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression fmru(QStringLiteral("^fmru(\\d+)$"),
                                       QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression ext(QStringLiteral("^ext(\\d+)$"),
                                      QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression size(QStringLiteral("^cs(\\d+)[wh]$"),
                                       QRegularExpression::CaseInsensitiveOption);
  auto slot = [&](const QRegularExpression& re, int slots) {
    const auto m = re.match(key.trimmed());
    return m.hasMatch() && m.captured(1).toInt() < slots;
  };
  if (slot(mru, settings::kMruSlots)) return QStringLiteral("S18");
  if (slot(fmru, settings::kFontMruSlots)) return QStringLiteral("S19");
  if (slot(ext, settings::kExtensionSlots)) return QStringLiteral("FS0");
  if (slot(size, settings::kCustomSizeSlots)) return QStringLiteral("I2");
  return {};
}

/// What a load holds for a dynamic list key that DynamicSection knows: a recent file or font
/// ("_" when the slot is free), an explorer extension (empty when free), a user size number
/// (0 when free).
QString DynamicValue(const settings::Settings& s, const QString& key) {
  static const QRegularExpression form(QStringLiteral("^(f?mru|ext|cs)(\\d+)([wh]?)$"),
                                       QRegularExpression::CaseInsensitiveOption);
  const auto m = form.match(key.trimmed());
  const QString list = m.captured(1).toLower();
  const int n = m.captured(2).toInt();
  if (list == QStringLiteral("mru")) return s.mru.value(n);
  if (list == QStringLiteral("fmru")) return s.fmru.value(n);
  if (list == QStringLiteral("ext")) return s.ext.value(n);
  const QSize size = s.customSizes.at(std::size_t(n));
  return QString::number(m.captured(3).toLower() == QStringLiteral("w") ? size.width()
                                                                        : size.height());
}

/// The settings file as a document; empty when it cannot be read or parsed.
settings::IniDocument ReadDocument(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  auto parsed = settings::IniDocument::Parse(file.read(settings::IniDocument::kMaxBytes + 1));
  return parsed ? parsed.value() : settings::IniDocument();
}

/// Writes KEY=VALUE assignments into `doc` as the file would hold them. kExitUsage, after
/// telling why, when one cannot be placed; a number key given a non-number only warns.
int ApplyAssignments(const QStringList& assignments, settings::IniDocument& doc, QTextStream& err) {
  for (const QString& text : assignments) {
    const qsizetype eq = text.indexOf(QLatin1Char('='));
    if (eq <= 0) {
      err << "vantorelle-cli: expected KEY=VALUE, got '" << text << "'\n";
      return kExitUsage;
    }
    const KeyName name = SplitKeyName(text.left(eq));
    const QString value = text.mid(eq + 1);
    if (const settings::KeyRow* row = FindRow(name)) {
      if (row->type != settings::ValueType::String && !settings::ParseIniInteger(value)) {
        err << "vantorelle-cli: warning: " << row->WriteKey().trimmed() << " holds a number; '"
            << value << "' will read as its default\n";
      }
      doc.SetValue(row->WriteSection(), row->WriteKey(), value);
    } else if (const QString dynamic = DynamicSection(name.key); !dynamic.isEmpty()) {
      doc.SetValue(dynamic, name.key, value);
    } else if (!name.section.isEmpty()) {
      doc.SetValue(name.section, name.key, value);
    } else {
      err << "vantorelle-cli: unknown key " << name.key
          << "; name its section (SECTION.KEY) to add a key of your own\n";
      return kExitUsage;
    }
  }
  return kExitOk;
}

/// Selects the pixel mode called `name` with all its checks; a mode already active stays.
int ApplyMode(app::AppState& state, app::Services& services, const QString& name,
              QTextStream& err) {
  const auto mode = settings::PixelModeFromName(name);
  if (!mode) {
    err << "vantorelle-cli: unknown mode '" << name << "'; see --help for the names\n";
    return kExitUsage;
  }
  if (settings::CurrentPixelMode(state.settings) == mode) return kExitOk;
  return settings::SelectPixelMode(state, services, *mode) ? kExitOk : kExitRefused;
}

/// Selects the data direction of key `key` with its size check.
int ApplyDirection(app::AppState& state, app::Services& services, const QString& key,
                   QTextStream& err) {
  for (const settings::ScanDirectionInfo& info : settings::ScanDirectionTable()) {
    if (SameName(info.key, key)) {
      return settings::SelectScanDirection(state, services, info.direction) ? kExitOk
                                                                            : kExitRefused;
    }
  }
  err << "vantorelle-cli: unknown direction '" << key
      << "'; one of tr, tl, tra, tla, td, tda, tu, tua\n";
  return kExitUsage;
}

/// Selects the origin corner numbered `number` (1 to 4).
int ApplyCorner(app::AppState& state, const QString& number, QTextStream& err) {
  bool ok = false;
  const int n = number.toInt(&ok);
  if (!ok || n < 1 || n > 4) {
    err << "vantorelle-cli: corner is 1 (top left), 2 (top right), 3 (bottom right) or 4 "
           "(bottom left), not '"
        << number << "'\n";
    return kExitUsage;
  }
  settings::SelectOriginCorner(state, static_cast<settings::OriginCorner>(n - 1));
  return kExitOk;
}

/// One run of the tool: the state, the headless services, and the streams.
class Session {
 public:
  Session(QTextStream& out, QTextStream& err, platform::Folders& folders,
          platform::FileUse& fileUse)
      : out_(out),
        err_(err),
        dialogs_(err),
        services_{dialogs_, folders, fileUse, escape_, clock_} {}

  /// Makes `path` the settings file and loads it; a missing file is created with the factory
  /// settings. False when it could not be loaded.
  bool Load(const QString& path) {
    state_.files.SettingsFile = QFileInfo(path).absoluteFilePath();
    state_.files.InitFolder = QFileInfo(path).absolutePath() + QLatin1Char('/');
    return app::LoadConfigurationX(state_, services_);
  }
  bool Save() { return app::SaveConfigurationX(state_, services_); }

  int Get(const QStringList& names);
  int Set(const QStringList& assignments);
  int Mode(const QString& name) { return SavedIfOk(ApplyMode(state_, services_, name, err_)); }
  int Direction(const QString& key) {
    return SavedIfOk(ApplyDirection(state_, services_, key, err_));
  }
  int Corner(const QString& number) { return SavedIfOk(ApplyCorner(state_, number, err_)); }
  int Size(const QString& text);

  app::AppState& state() { return state_; }
  app::Services& services() { return services_; }

 private:
  int SaveOrFail() { return Save() ? kExitOk : kExitRefused; }
  int SavedIfOk(int status) { return status == kExitOk ? SaveOrFail() : status; }

  QTextStream& out_;
  QTextStream& err_;
  platform::ConsoleDialogs dialogs_;
  platform::NoKeyPoll escape_;
  platform::SystemClock clock_;
  app::Services services_;
  app::AppState state_;
};

int Session::Get(const QStringList& names) {
  int status = kExitOk;
  const settings::IniDocument doc = ReadDocument(state_.files.SettingsFile);
  for (const QString& text : names) {
    const KeyName name = SplitKeyName(text);
    const QString shown = name.section.isEmpty() ? QString() : name.section + QLatin1Char('.');
    if (const settings::KeyRow* row = FindRow(name)) {
      out_ << shown << row->WriteKey().trimmed() << '='
           << settings::FieldText(row->field(state_.settings)) << '\n';
      continue;
    }
    if (!DynamicSection(name.key).isEmpty()) {
      out_ << shown << name.key << '=' << DynamicValue(state_.settings, name.key) << '\n';
      continue;
    }
    // A key the program does not use: as the file holds it.
    std::optional<QString> raw;
    for (const QString& section : doc.Sections()) {
      if (!name.section.isEmpty() && !SameName(section, name.section)) continue;
      raw = doc.Value(section, name.key);
      if (raw) break;
    }
    if (raw) {
      out_ << shown << name.key << '=' << *raw << '\n';
    } else {
      err_ << "vantorelle-cli: no key " << text << " in " << state_.files.SettingsFile << '\n';
      status = kExitRefused;
    }
  }
  return status;
}

int Session::Set(const QStringList& assignments) {
  settings::IniDocument doc = ReadDocument(state_.files.SettingsFile);
  if (const int status = ApplyAssignments(assignments, doc, err_); status != kExitOk) {
    return status;
  }
  // Write the raw keys, then load and save so the file holds what a load of it sees.
  if (auto written = WriteFileAtomically(state_.files.SettingsFile, doc.Serialize()); !written) {
    err_ << "vantorelle-cli: " << written.error().ToString() << '\n';
    return kExitRefused;
  }
  if (!Load(state_.files.SettingsFile)) return kExitRefused;
  return SaveOrFail();
}

int Session::Size(const QString& text) {
  static const QRegularExpression form(QStringLiteral("^(\\d{1,9})[xX](\\d{1,9})$"));
  const auto m = form.match(text.trimmed());
  if (!m.hasMatch()) {
    err_ << "vantorelle-cli: size is WIDTHxHEIGHT, such as 128x64, not '" << text << "'\n";
    return kExitUsage;
  }
  const QSize size(m.captured(1).toInt(), m.captured(2).toInt());
  for (const QSize& preset : settings::PresetSizes()) {
    if (preset == size) {
      settings::SelectPresetSize(state_, size);
      return SaveOrFail();
    }
  }
  // Any other size goes through the user-size edits and their confirmation.
  const auto width = settings::LCDmatrixWidthEditChange(state_, services_, m.captured(1));
  const auto height = settings::LCDmatrixHeightEditChange(state_, services_, m.captured(2));
  if (width.beep || height.beep || size.width() < 1 || size.height() < 1) {
    err_ << "vantorelle-cli: a display size is 1x1 to " << settings::kMaxUserWidth << 'x'
         << settings::kMaxUserHeight << ", not " << text << '\n';
    return kExitRefused;
  }
  if (!settings::LCDmatrixSizeUserDefinedClick(state_, services_)) return kExitRefused;
  return SaveOrFail();
}

int RunSettings(QStringList args, Session& session, QTextStream& err) {
  QString file;
  if (args.size() >= 2 && args[0] == QStringLiteral("--settings")) {
    file = args[1];
    args = args.mid(2);
  }
  if (file.isEmpty() || args.isEmpty()) {
    err << "vantorelle-cli: usage: vantorelle-cli settings --settings FILE "
           "get|set|mode|direction|corner|size ...\n";
    return kExitUsage;
  }
  const QString command = args.takeFirst();
  static const QStringList known = {QStringLiteral("get"),    QStringLiteral("set"),
                                    QStringLiteral("mode"),   QStringLiteral("direction"),
                                    QStringLiteral("corner"), QStringLiteral("size")};
  if (!known.contains(command)) {
    err << "vantorelle-cli: unknown settings command '" << command << "'\n";
    return kExitUsage;
  }
  const bool single = command != QStringLiteral("get") && command != QStringLiteral("set");
  if (args.isEmpty() || (single && args.size() != 1)) {
    err << "vantorelle-cli: settings " << command
        << (single ? " takes exactly one value\n" : " needs at least one key\n");
    return kExitUsage;
  }
  if (!session.Load(file)) return kExitRefused;
  if (command == QStringLiteral("get")) return session.Get(args);
  if (command == QStringLiteral("set")) return session.Set(args);
  if (command == QStringLiteral("mode")) return session.Mode(args[0]);
  if (command == QStringLiteral("direction")) return session.Direction(args[0]);
  if (command == QStringLiteral("corner")) return session.Corner(args[0]);
  return session.Size(args[0]);
}

/// The options of the export command.
struct ExportOptions {
  QString image;
  QString settingsFile;  ///< empty: the active project of the desktop program
  QString mode;
  QString direction;
  QString corner;
  QStringList assignments;
  QString output;       ///< empty: OFP under the output name
  QString outputWidth;  ///< 8, 16, 32, bin or ihex; empty: as the settings say
  QString threshold;    ///< monochrome: the threshold slider position, 0..255
  QString dither;       ///< monochrome: the dithering method's command-line name
};

/// Parses the export command's arguments; kExitUsage after telling why.
int ParseExportOptions(const QStringList& args, ExportOptions& options, QTextStream& err) {
  for (qsizetype i = 0; i < args.size(); ++i) {
    const QString& arg = args[i];
    QString* slot = nullptr;
    if (arg == QStringLiteral("--settings"))
      slot = &options.settingsFile;
    else if (arg == QStringLiteral("--mode"))
      slot = &options.mode;
    else if (arg == QStringLiteral("--direction"))
      slot = &options.direction;
    else if (arg == QStringLiteral("--corner"))
      slot = &options.corner;
    else if (arg == QStringLiteral("-o") || arg == QStringLiteral("--output"))
      slot = &options.output;
    else if (arg == QStringLiteral("--output-width"))
      slot = &options.outputWidth;
    else if (arg == QStringLiteral("--threshold"))
      slot = &options.threshold;
    else if (arg == QStringLiteral("--dither"))
      slot = &options.dither;
    if (slot != nullptr || arg == QStringLiteral("--set")) {
      if (i + 1 >= args.size()) {
        err << "vantorelle-cli: " << arg << " needs a value\n";
        return kExitUsage;
      }
      if (slot != nullptr) {
        *slot = args[++i];
      } else {
        options.assignments << args[++i];
      }
    } else if (arg.startsWith(QLatin1Char('-')) || !options.image.isEmpty()) {
      err << "vantorelle-cli: unexpected argument '" << arg << "' for export\n";
      return kExitUsage;
    } else {
      options.image = arg;
    }
  }
  if (options.image.isEmpty()) {
    err << "vantorelle-cli: usage: vantorelle-cli export IMAGE [--settings FILE] [--mode NAME] "
           "[--direction KEY] [--corner N] [--set KEY=VALUE]... [--output-width 8|16|32|bin|ihex] "
           "[--threshold N | --dither METHOD] [-o OUTPUT]\n";
    return kExitUsage;
  }
  if (!options.outputWidth.isEmpty() && !convert::WordWidthFromName(options.outputWidth)) {
    err << "vantorelle-cli: --output-width is 8, 16, 32, bin or ihex, not '" << options.outputWidth
        << "'\n";
    return kExitUsage;
  }
  if (!options.threshold.isEmpty() && !options.dither.isEmpty()) {
    err << "vantorelle-cli: give either --threshold or --dither, not both\n";
    return kExitUsage;
  }
  if (!options.threshold.isEmpty()) {
    bool ok = false;
    const int position = options.threshold.toInt(&ok);
    if (!ok || position < 0 || position > canvas::BlackWhiteTools::kMaxPosition) {
      err << "vantorelle-cli: --threshold is a slider position from 0 to 255, not '"
          << options.threshold << "'\n";
      return kExitUsage;
    }
  }
  if (!options.dither.isEmpty() && !canvas::DitherMethodFromName(options.dither)) {
    err << "vantorelle-cli: unknown dithering method '" << options.dither << "'; one of "
        << canvas::DitherMethodNames() << '\n';
    return kExitUsage;
  }
  return kExitOk;
}

/// The picture of `path` in 32-bit form, or an error naming the file. The size is checked
/// from the file's header before any pixel is decoded.
Result<QImage> ReadPicture(const QString& path) {
  auto failed = [&path](Error::Kind kind, const QString& message) {
    return Error{kind, path, 0, 0, message};
  };
  if (!QFileInfo(path).isFile()) return failed(Error::Kind::Io, QStringLiteral("no such file"));
  const QString tooLarge =
      QStringLiteral("the picture is %1x%2 pixels; a display is at most %3x%4");
  // The loader of the desktop program: the same formats, and a size checked on the header
  // before any pixel is decoded. An SVG is drawn at its own size.
  const Result<canvas::DecodedGraphic> decoded = canvas::DecodeGraphic(path, {});
  if (!decoded) {
    return decoded.error().kind == Error::Kind::Refused
               ? failed(Error::Kind::Parse, QStringLiteral("not a graphic file the loader takes"))
               : decoded.error();
  }
  QImage image = decoded.value().frames.first();
  if (image.width() > settings::kMaxUserWidth || image.height() > settings::kMaxUserHeight) {
    return failed(Error::Kind::Limit, tooLarge.arg(image.width())
                                          .arg(image.height())
                                          .arg(settings::kMaxUserWidth)
                                          .arg(settings::kMaxUserHeight));
  }
  return image.convertToFormat(QImage::Format_RGB32);
}

/// Puts a picture on the monochrome canvas as an import does: it floats over the white canvas,
/// a threshold or a dithering makes it black and white, and it is pasted. Without either, a
/// picture of other colours stays floating unconverted, for the export to refuse. Returns
/// whether it still floats.
bool PlaceMonochromePicture(app::AppState& state, app::Services& services, const QImage& image,
                            const ExportOptions& options) {
  const bool converted = !options.threshold.isEmpty() || !options.dither.isEmpty();
  const bool blackAndWhite = canvas::IsBlackAndWhite(image);
  if (!converted && !blackAndWhite) {
    canvas::Draw(state.canvas.EditBitmap(), image, {0, 0}, canvas::Blend::Copy);
    return true;
  }
  // The display has the picture's size: the import asks nothing and floats it at 0,0.
  canvas::AssignInPutBitmap(state, services, image, true);
  if (!options.threshold.isEmpty()) {
    canvas::BWTrackBarChange(state, options.threshold.toInt());
  } else if (!options.dither.isEmpty()) {
    state.blackWhite.Dither = {*canvas::DitherMethodFromName(options.dither),
                               canvas::DitherReduction::Monochrome};
    canvas::PerformDithering(state, services);
  }
  canvas::DoPaste(state, services, canvas::BlackWhiteConversions(state));
  return false;
}

}  // namespace

int RunExport(const QStringList& args, app::AppState& state, app::Services& services,
              QTextStream& out, QTextStream& err) {
  ExportOptions options;
  if (const int status = ParseExportOptions(args, options, err); status != kExitOk) return status;

  if (options.settingsFile.isEmpty()) {
    app::LoadFolders(state, services);
  } else {
    state.files.SettingsFile = QFileInfo(options.settingsFile).absoluteFilePath();
    state.files.InitFolder = QFileInfo(options.settingsFile).absolutePath() + QLatin1Char('/');
  }
  if (!app::LoadConfigurationX(state, services)) return kExitRefused;

  const Result<QImage> picture = ReadPicture(options.image);
  if (!picture) {
    err << "vantorelle-cli: " << picture.error().ToString() << '\n';
    return kExitRefused;
  }
  const QImage& image = picture.value();
  // The display takes the picture's size first, so that the direction checks measure it.
  settings::SetDisplaySize(state, image.width(), image.height());

  int status = kExitOk;
  if (!options.mode.isEmpty()) status = ApplyMode(state, services, options.mode, err);
  if (status == kExitOk && !options.direction.isEmpty()) {
    status = ApplyDirection(state, services, options.direction, err);
  }
  if (status == kExitOk && !options.corner.isEmpty()) {
    status = ApplyCorner(state, options.corner, err);
  }
  if (status == kExitOk && !options.assignments.isEmpty()) {
    // As the settings command does, but on a copy of the file that is never written back.
    settings::IniDocument doc = ReadDocument(state.files.SettingsFile);
    settings::WriteSettings(state.settings, doc);
    status = ApplyAssignments(options.assignments, doc, err);
    if (status == kExitOk) {
      settings::ReadSettings(doc, state.settings, app::FirstRunFolders(services.folders));
      settings::ReselectStoredPixelMode(state, services);
      settings::SetDisplaySize(state, image.width(), image.height());
    }
  }
  if (status != kExitOk) return status;
  if (!options.outputWidth.isEmpty()) {
    convert::SelectOutputWidth(state, *convert::WordWidthFromName(options.outputWidth));
  }

  const settings::PixelMode mode = canvas::ModeOf(state.settings);
  bool floating = false;
  if (settings::IsMonochromeMode(mode)) {
    floating = PlaceMonochromePicture(state, services, image, options);
  } else {
    if (!options.threshold.isEmpty() || !options.dither.isEmpty()) {
      err << "vantorelle-cli: --threshold and --dither apply to the monochrome modes only\n";
      return kExitUsage;
    }
    // Gray and colour modes take any picture, reduced to the mode's palette as loading does.
    canvas::LoadModePalette(state, services);
    QImage reduced = image.copy();
    canvas::ReduceLikeLoading(reduced, state.palettes, mode, services.escape,
                              ReferencePathsRequested());
    state.canvas.Restore(reduced);
  }
  state.settings.output.nbmfn = QFileInfo(options.image).fileName();

  convert::ExportRequest request = convert::FillExportDialog(state).request;
  // An unconverted picture is an import still floating: the export refuses it with its message.
  if (floating) request.selection = {0, 0, image.width(), image.height(), true, false, false};
  request.saveAlways = true;
  if (!options.output.isEmpty()) request.savePath = QFileInfo(options.output).absoluteFilePath();
  const convert::ExportResult result =
      convert::EncodeButtonClick(state, services, request, /*confirmed=*/true);
  if (result.status != convert::ExportStatus::Written || result.savedPath.isEmpty()) {
    return kExitRefused;
  }
  out << result.savedPath << '\n';
  return kExitOk;
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
             "         [--threshold N | --dither METHOD] [-o OUTPUT]\n"
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
             "\n"
             "A missing FILE is created with the factory settings. Messages go to standard\n"
             "error; a refused change exits with status 1 and leaves FILE as it was, a usage\n"
             "error with status 2. An export stopped by a message or an unreadable picture\n"
             "exits with status 1 and writes nothing.\n")
      .arg(modes, canvas::DitherMethodNames());
}

int RunCli(const QStringList& args, QTextStream& out, QTextStream& err, platform::Folders& folders,
           platform::FileUse& fileUse) {
  if (args.isEmpty() || args[0] == QStringLiteral("--help") || args[0] == QStringLiteral("-h") ||
      args[0] == QStringLiteral("help")) {
    out << HelpText();
    return args.isEmpty() ? kExitUsage : kExitOk;
  }
  Session session(out, err, folders, fileUse);
  if (args[0] == QStringLiteral("settings")) return RunSettings(args.mid(1), session, err);
  if (args[0] == QStringLiteral("export")) {
    return RunExport(args.mid(1), session.state(), session.services(), out, err);
  }
  err << "vantorelle-cli: unknown command '" << args[0] << "'; try --help\n";
  return kExitUsage;
}

}  // namespace vt::cli
