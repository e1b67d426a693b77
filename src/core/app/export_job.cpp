// SPDX-License-Identifier: MIT
#include "app/export_job.h"

#include <QFile>
#include <QFileInfo>

#include "app/canvas_commands.h"
#include "app/configuration.h"
#include "app/display_commands.h"
#include "app/export_driver.h"
#include "app/graphic_import.h"
#include "app/palette_commands.h"
#include "app/pixel_mode_commands.h"
#include "app/shell_commands.h"
#include "app/state.h"
#include "app/threshold_commands.h"
#include "canvas/color_reduction.h"
#include "canvas/graphic_loading.h"
#include "convert/data_text.h"
#include "settings/ini_document.h"
#include "settings/key_names.h"
#include "settings/settings_file.h"
#include "util/fast_paths.h"

namespace vt::app {
namespace {

JobOutcome Refused(QStringList errors = {}) {
  JobOutcome outcome;
  outcome.status = JobOutcome::Status::Refused;
  outcome.errors = std::move(errors);
  return outcome;
}

/// The picture of `path` in 32-bit form, or an error naming the file. The size is checked
/// from the file's header before any pixel is decoded.
Result<QImage> ReadPicture(const QString& path) {
  auto failed = [&path](Error::Kind kind, const QString& message) {
    return Error{kind, path, 0, 0, message};
  };
  if (!QFileInfo(path).isFile()) return failed(Error::Kind::Io, QStringLiteral("no such file"));
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
    return failed(Error::Kind::Limit,
                  QStringLiteral("the picture is %1x%2 pixels; a display is at most %3x%4")
                      .arg(image.width())
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
bool PlaceMonochromePicture(AppState& state, Services& services, const QImage& image,
                            const ExportJob& job) {
  const bool converted = job.threshold || job.dither;
  if (!converted && !canvas::IsBlackAndWhite(image)) {
    canvas::Draw(state.canvas.EditBitmap(), image, {0, 0}, canvas::Blend::Copy);
    return true;
  }
  // The display has the picture's size: the import asks nothing and floats it at 0,0.
  AssignInPutBitmap(state, services, image, true);
  if (job.threshold) {
    BWTrackBarChange(state, *job.threshold);
  } else if (job.dither) {
    state.blackWhite.Dither = {*job.dither, canvas::DitherReduction::Monochrome};
    PerformDithering(state, services);
  }
  DoPaste(state, services, BlackWhiteConversions(state));
  return false;
}

/// The job's choices on the loaded settings, in their order, each with its checks. Empty
/// outcome error and status Done when all applied.
JobOutcome ApplyChoices(AppState& state, Services& services, const ExportJob& job, QSize size) {
  JobOutcome outcome;
  if (job.mode && settings::CurrentPixelMode(state.settings) != job.mode &&
      !SelectPixelMode(state, services, *job.mode)) {
    return Refused();
  }
  if (job.direction && !SelectScanDirection(state, services, *job.direction)) return Refused();
  if (job.corner) SelectOriginCorner(state, services, *job.corner);
  if (!job.assignments.isEmpty()) {
    // As the settings command does, but on a copy of the file that is never written back.
    settings::IniDocument doc = settings::ReadSettingsDocument(state.files.SettingsFile);
    settings::WriteSettings(state.settings, doc);
    const Result<QStringList> applied = settings::ApplyKeyAssignments(job.assignments, doc);
    if (!applied) {
      outcome.status = JobOutcome::Status::Usage;
      outcome.errors << applied.error().message;
      return outcome;
    }
    outcome.warnings = applied.value();
    settings::ReadSettings(doc, state.settings, FirstRunFolders(services.folders));
    ReselectStoredPixelMode(state, services);
    SetDisplaySize(state, size.width(), size.height());
  }
  if (job.outputWidth) SetOutputWidth(state, *job.outputWidth);
  return outcome;
}

}  // namespace

JobOutcome ExportJob::Run(AppState& state, Services& services) const {
  if (settingsFile.isEmpty()) {
    LoadFolders(state, services);
  } else {
    state.files.SettingsFile = QFileInfo(settingsFile).absoluteFilePath();
    state.files.InitFolder = QFileInfo(settingsFile).absolutePath() + QLatin1Char('/');
  }
  if (!LoadConfigurationX(state, services)) return Refused();

  const Result<QImage> picture = ReadPicture(image);
  if (!picture) return Refused({picture.error().ToString()});
  const QImage& pixels = picture.value();
  // The display takes the picture's size first, so that the direction checks measure it.
  SetDisplaySize(state, pixels.width(), pixels.height());

  JobOutcome outcome = ApplyChoices(state, services, *this, pixels.size());
  if (outcome.status != JobOutcome::Status::Done) return outcome;

  const settings::PixelMode pixelMode = canvas::ModeOf(state.settings);
  bool floating = false;
  if (settings::IsMonochromeMode(pixelMode)) {
    floating = PlaceMonochromePicture(state, services, pixels, *this);
  } else {
    if (threshold || dither) {
      outcome.status = JobOutcome::Status::Usage;
      outcome.errors << QStringLiteral(
          "--threshold and --dither apply to the monochrome modes only");
      return outcome;
    }
    // Gray and colour modes take any picture, reduced to the mode's palette as loading does.
    LoadModePalette(state, services);
    QImage reduced = pixels.copy();
    canvas::ReduceLikeLoading(reduced, state.palettes, pixelMode, services.escape,
                              ReferencePathsRequested());
    state.canvas.Restore(reduced);
  }
  state.settings.output.nbmfn = QFileInfo(image).fileName();

  ExportRequest request = FillExportDialog(state).request;
  // An unconverted picture is an import still floating: the export refuses it with its message.
  if (floating) request.selection = {0, 0, pixels.width(), pixels.height(), true, false, false};
  request.saveAlways = true;
  if (!output.isEmpty()) request.savePath = QFileInfo(output).absoluteFilePath();
  if (!batch.isEmpty()) {
    if (convert::DataTargetOf(state.settings.width) != convert::DataTarget::Text) {
      outcome.status = JobOutcome::Status::Usage;
      outcome.errors << QStringLiteral("--batch edits text output only, not binary or Intel Hex");
      return outcome;
    }
    request.RunPostProcess = true;
    request.postProcessBatch = QFileInfo(batch).absoluteFilePath();
  }
  const ExportResult result = EncodeButtonClick(state, services, request, /*confirmed=*/true);
  if (result.status != ExportStatus::Written || result.savedPath.isEmpty()) {
    outcome.status = JobOutcome::Status::Refused;
    if (result.batchError) outcome.errors << result.batchError->ToString();
    return outcome;
  }
  outcome.writtenPath = result.savedPath;
  return outcome;
}

}  // namespace vt::app
