// SPDX-License-Identifier: MIT
// Prints, for each pixel mode and picture size, the time one "Export Work Canvas to Data" to
// text takes in-process and the peak memory of a process that does it, beside a minimal
// hand-written C converter of the same picture to RGB565 text (the floor) and the ratio to it.
// Each measurement runs in a child process of its own, so that its peak memory is its own.
// `--smoke` uses small pictures and one round; `--only NAME` measures one mode;
// `--write-pictures DIR` writes the pictures as PNG files (the colour picture of each size and
// its black-and-white form) for timing the command line, and measures nothing. With
// VT_REFERENCE_PATHS set, every stage takes its plain reference path.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/display_commands.h"
#include "app/export_driver.h"
#include "app/messages.h"
#include "app/palette_commands.h"
#include "app/state.h"
#include "canvas/color_reduction.h"
#include "convert/array_writer.h"
#include "convert/color_packers.h"
#include "convert/header_template.h"
#include "convert/pixel_source.h"
#include "platform/clock.h"
#include "platform/console/console_dialogs.h"
#include "platform/file_picker.h"
#include "platform/qt/qt_folders.h"
#include "platform/text_prompt.h"
#include "rgb565_floor.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "util/fast_paths.h"

namespace {

using namespace vt;

/// A picture with smooth and busy parts: red across, green down, blue in a fine pattern.
QImage Picture(int w, int h) {
  QImage image(w, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < w; ++x) row[x] = qRgb(x * 255 / w, y * 255 / h, (x * 7 + y * 3) & 255);
  }
  return image;
}

/// The picture as loading leaves it for monochrome: black where its gray is below 128.
QImage BlackAndWhite(const QImage& picture) {
  QImage bw = picture.copy();
  for (int y = 0; y < bw.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(bw.scanLine(y));
    for (int x = 0; x < bw.width(); ++x) row[x] = qGray(row[x]) < 128 ? 0xFF000000 : 0xFFFFFFFF;
  }
  return bw;
}

/// Repeats `run` until `budgetMs` has passed (at least once, at most `maxRounds`); the fastest
/// round in milliseconds.
template <typename Run>
double Fastest(Run run, double budgetMs, int maxRounds) {
  double best = 1e300, spent = 0;
  for (int i = 0; i < maxRounds && (i == 0 || spent < budgetMs); ++i) {
    QElapsedTimer t;
    t.start();
    run();
    const double ms = t.nsecsElapsed() / 1e6;
    best = std::min(best, ms);
    spent += ms;
  }
  return best;
}

struct Measure {
  double ms = -1;      ///< the whole command
  double textMs = -1;  ///< the array text alone
  double peakMb = 0;
};

/// Milliseconds of one round: the whole command, and the array text alone (negative: failed,
/// or not measured).
struct Times {
  double ms = -1;
  double textMs = -1;
};

/// Runs `work` (which returns Times) in a child process; its times and peak memory.
template <typename Work>
Measure InChild(Work work) {
  int fds[2];
  if (pipe(fds) != 0) return {};
  const pid_t pid = fork();
  if (pid == 0) {
    close(fds[0]);
    const Times times = work();
    (void)!write(fds[1], &times, sizeof times);
    _exit(0);
  }
  close(fds[1]);
  Measure m;
  Times times;
  if (read(fds[0], &times, sizeof times) == sizeof times) {
    m.ms = times.ms;
    m.textMs = times.textMs;
  }
  close(fds[0]);
  int status = 0;
  rusage usage{};
  wait4(pid, &status, 0, &usage);
  m.peakMb = usage.ru_maxrss / 1024.0;
  return m;
}

Times FloorMs(const QImage& picture, double budget, int rounds) {
  std::vector<unsigned> pixels;
  pixels.reserve(size_t(picture.width()) * picture.height());
  for (int y = 0; y < picture.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    for (int x = 0; x < picture.width(); ++x) pixels.push_back(canvas::FromQRgb(row[x]));
  }
  std::string text(pixels.size() * 11 + 16, '\0');
  size_t length = 0;
  const double ms = Fastest(
      [&] { length = Rgb565FloorText(pixels.data(), pixels.size(), text.data()); }, budget, rounds);
  return {length > 0 ? ms : -1, -1};
}

/// The whole command (TranslateCanvas: checks, palette check, header template read from its
/// file, the array, the report written to the project folder), and the array text alone (the
/// array writer on the same canvas with the template already read: the header, the preamble,
/// the walk and the end of the array, the job the floor does).
Times ExportMs(const QImage& picture, settings::PixelMode mode, const QString& folder,
               double budget, int rounds) {
  QString sink;
  QTextStream quiet(&sink);
  platform::ConsoleDialogs dialogs(quiet);
  platform::QtFolders folders;
  platform::NoFileUse fileUse;
  platform::NoKeyPoll escape;
  platform::SystemClock clock;
  platform::NoFilePicker filePicker;
  platform::NoTextPrompt textPrompt;
  app::Services services{dialogs, folders, fileUse, escape, clock, filePicker, textPrompt};
  app::AppState state;
  state.files.SettingsFile = folder + QStringLiteral("/bench.LCD");
  // The export report goes to the project folder, as in a project.
  state.settings.folder.PFP = folder;
  state.settings.folder.OFP = folder;
  state.settings.output.Dnask = false;
  state.settings.output.nbmfn = QStringLiteral("bench.png");
  settings::ApplyModeFlags(state.settings.pixel, settings::Info(mode).flags);
  app::SetDisplaySize(state, picture.width(), picture.height());
  const bool referencePaths = ReferencePathsRequested();
  // The canvas as loading leaves it: reduced to the palette, or black and white.
  QImage loaded = settings::IsMonochromeMode(mode) ? BlackAndWhite(picture) : picture.copy();
  if (!settings::IsMonochromeMode(mode)) {
    app::LoadModePalette(state, services);
    canvas::ReduceLikeLoading(loaded, state.palettes, mode, escape, referencePaths);
  }
  state.canvas.Restore(loaded);
  bool ok = true;
  const double ms = Fastest(
      [&] {
        state.text.Clear();
        state.text.SetModified(false);
        const auto result = app::TranslateCanvas(state, services, app::ExportRequest{});
        ok = ok && result.status == app::ExportStatus::Written;
      },
      budget, rounds);
  if (!ok) return {};

  // The array text needs every colour in the palette, as the command's reduction leaves it.
  if (!settings::IsMonochromeMode(mode)) {
    canvas::ReduceForExport(loaded, state.palettes, mode, escape, referencePaths);
    state.canvas.Restore(loaded);
  }
  const settings::Settings& s = state.settings;
  const convert::ImagePixelSource source(state.canvas.Bitmap());
  const std::unique_ptr<convert::ColorSearch> colors =
      convert::ModeColorSearch(state.palettes, canvas::ModeOf(s), referencePaths);
  const QString templateFile =
      convert::HeaderFileName(state.files.SettingsFile, convert::HeaderKind::Graphics);
  convert::ArrayRequest request{s,
                                source,
                                {0, 0, picture.width(), picture.height()},
                                escape,
                                QStringLiteral("bench.h"),
                                convert::LoadHeaderTemplate(templateFile),
                                templateFile,
                                QStringLiteral("24.11.2026 10:00:00")};
  request.colors = colors.get();
  request.reorderGrid = &state.reorder;
  request.referencePaths = referencePaths;
  const double textMs = Fastest(
      [&] {
        state.text.Clear();
        ok = ok && convert::WriteArray(request, state.text).completed;
      },
      budget, rounds);
  return {ms, ok ? textMs : -1};
}

}  // namespace

int main(int argc, char* argv[]) {
  const bool smoke = argc > 1 && std::strcmp(argv[1], "--smoke") == 0;
  // --only NAME measures one mode.
  // --size WxH measures one picture size; --rounds N repeats each export N times (for a
  // profiler).
  QString only;
  int forcedRounds = 0;
  std::vector<QSize> sizes = smoke ? std::vector<QSize>{{16, 8}, {32, 24}}
                                   : std::vector<QSize>{{128, 64}, {320, 240}, {800, 480}};
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--only") == 0) only = QString::fromLatin1(argv[i + 1]);
    if (std::strcmp(argv[i], "--rounds") == 0) forcedRounds = std::max(1, std::atoi(argv[i + 1]));
    if (std::strcmp(argv[i], "--size") == 0) {
      const QStringList wh = QString::fromLatin1(argv[i + 1]).split(QLatin1Char('x'));
      if (wh.size() == 2 && wh[0].toInt() > 0 && wh[1].toInt() > 0) {
        sizes = {QSize(wh[0].toInt(), wh[1].toInt())};
      }
    }
  }
  if (argc > 2 && std::strcmp(argv[1], "--write-pictures") == 0) {
    for (const QSize size : sizes) {
      const QImage picture = Picture(size.width(), size.height());
      const QString base = QStringLiteral("%1/picture%2x%3")
                               .arg(QString::fromLocal8Bit(argv[2]))
                               .arg(size.width())
                               .arg(size.height());
      if (!picture.save(base + QStringLiteral(".png")) ||
          !BlackAndWhite(picture).save(base + QStringLiteral("-bw.png"))) {
        return 1;
      }
    }
    return 0;
  }
  const double budget = smoke ? 0 : forcedRounds > 0 ? 1e300 : 300;
  const int rounds = smoke ? 1 : forcedRounds > 0 ? forcedRounds : 20;
  QTextStream out(stdout);
  QTemporaryDir folder;
  QString headerMessages;
  QTextStream headerSink(&headerMessages);
  vt::platform::ConsoleDialogs headerDialogs(headerSink);
  vt::app::AppState headerState;
  vt::app::AppMessenger messenger(headerState, headerDialogs);
  vt::convert::WriteDefaultHeaderFile(folder.path() + QStringLiteral("/bench.LCD"),
                                      vt::convert::HeaderKind::Graphics, true, messenger);
  bool anyFailed = false;  // an export that did not complete fails the run (and the smoke test)
  for (const QSize size : sizes) {
    const QImage picture = Picture(size.width(), size.height());
    const Measure floor = InChild([&] { return FloorMs(picture, budget, rounds); });
    out << "\n"
        << size.width() << "x" << size.height() << ": floor (C, RGB565 text) "
        << QString::number(floor.ms, 'f', 3) << " ms, peak "
        << QString::number(floor.peakMb, 'f', 1) << " MB\n";
    out << QStringLiteral("  %1 %2 %3 %4 %5 %6\n")
               .arg(QStringLiteral("mode"), -20)
               .arg(QStringLiteral("text ms"), 10)
               .arg(QStringLiteral("x floor"), 9)
               .arg(QStringLiteral("export ms"), 10)
               .arg(QStringLiteral("x floor"), 9)
               .arg(QStringLiteral("peak MB"), 9);
    out.flush();
    for (const vt::settings::PixelModeInfo& info : vt::settings::PixelModeTable()) {
      const QString name = vt::settings::PixelModeName(info.mode);
      if (name.isEmpty() || (!only.isEmpty() && name != only)) continue;
      const Measure m =
          InChild([&] { return ExportMs(picture, info.mode, folder.path(), budget, rounds); });
      anyFailed = anyFailed || m.ms < 0 || m.textMs < 0;
      auto figure = [](double ms) {
        return ms < 0 ? QStringLiteral("failed") : QString::number(ms, 'f', 3);
      };
      auto ratio = [&](double ms) {
        return ms < 0 || floor.ms <= 0 ? QStringLiteral("-")
                                       : QString::number(ms / floor.ms, 'f', 1);
      };
      out << QStringLiteral("  %1 %2 %3 %4 %5 %6\n")
                 .arg(name, -20)
                 .arg(figure(m.textMs), 10)
                 .arg(ratio(m.textMs), 9)
                 .arg(figure(m.ms), 10)
                 .arg(ratio(m.ms), 9)
                 .arg(QString::number(m.peakMb, 'f', 1), 9);
      out.flush();
    }
  }
  return anyFailed ? 1 : 0;
}
