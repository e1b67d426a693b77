// SPDX-License-Identifier: MIT
// Whole exports with the plain reference paths against the fast ones: the same text, bytes,
// messages and canvas, over every mode, direction and a few keys that change the
// bytes or the text, on small pictures of any colours (which the export reduces first).
#include <gtest/gtest.h>

#include <QFile>
#include <random>
#include <string>

#include "app/state.h"
#include "app/display_commands.h"
#include "app/export_driver.h"
#include "convert/header_template.h"
#include "convert/convert_test_util.h"
#include "recording_messenger.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "temp_folders.h"

namespace vt::app {
namespace {

using namespace convert;

/// A picture of colours anywhere, black and white among them, with runs.
QImage Colourful(int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const unsigned pick = random() % 8;
      const QRgb c = pick == 0 ? qRgb(0, 0, 0) : pick == 1 ? qRgb(255, 255, 255) : random();
      image.setPixel(x, y, c | 0xFF000000u);
      if (x > 0 && random() % 3 == 0) image.setPixel(x, y, image.pixel(x - 1, y));
    }
  }
  return image;
}

/// Everything an export leaves that a user sees.
struct Outcome {
  ExportStatus status = ExportStatus::Stopped;
  QString text;
  QByteArray bytes;  // the hex editor's (binary output)
  QStringList messages;
  QImage canvas;
};

bool operator==(const Outcome& a, const Outcome& b) {
  return a.status == b.status && a.text == b.text && a.bytes == b.bytes &&
         a.messages == b.messages && a.canvas == b.canvas;
}

void PrintTo(const Outcome& o, std::ostream* out) {
  *out << "status " << int(o.status) << " messages "
       << o.messages.join(QLatin1Char('|')).toStdString() << "\n"
       << o.text.left(400).toStdString();
}

class ReferencePaths : public ::testing::TestWithParam<settings::PixelMode> {
 protected:
  ReferencePaths() {
    vt::test::RecordingMessenger log;
    EXPECT_TRUE(WriteDefaultHeaderFile(SettingsFile(), HeaderKind::Graphics, true, log).ok());
  }
  QString SettingsFile() const { return t.folders.Path(QStringLiteral("p.LCD")); }

  /// One export of `picture` in `mode` with `keys` set, by the reference paths or the fast
  /// ones, from a state of its own (so that no palette index or search is shared).
  Outcome Exported(const QImage& picture, settings::PixelMode mode, const std::string& keys,
                   bool referencePaths);

  vt::test::TestServices t;
};

Outcome ReferencePaths::Exported(const QImage& picture, settings::PixelMode mode,
                                 const std::string& keys, bool referencePaths) {
  t.dialogs.shown.clear();
  app::AppState state;
  state.files.SettingsFile = SettingsFile();
  settings::ApplyModeFlags(state.settings.pixel, settings::Info(mode).flags);
  state.settings = convert::test::With(keys.c_str(), state.settings);
  state.settings.folder.OFP = t.folders.Path(QStringLiteral("out"));
  state.settings.output.nbmfn = QStringLiteral("Pic.png");
  // The text is compared; saving it would only wait for the disk.
  state.settings.output.Dnask = false;
  app::SetDisplaySize(state, picture.width(), picture.height());
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb v = picture.pixel(x, y);
      state.canvas.SetPixel(x, y, qRed(v) | (qGreen(v) << 8) | (qBlue(v) << 16));
    }
  }
  ExportRequest request;
  request.referencePaths = referencePaths;
  Outcome o;
  const ExportResult result = EncodeButtonClick(state, t.services, request, true);
  o.status = result.status;
  o.text = state.text.Text();
  o.bytes = state.hex.Bytes();
  for (const auto& shown : t.dialogs.shown) {
    o.messages << platform::CaptionOf(shown) + QLatin1String(": ") + shown.text;
  }
  o.canvas = state.canvas.Bitmap();
  return o;
}

TEST_P(ReferencePaths, ExportsGiveWhatTheFastPathsGive) {
  const settings::PixelMode mode = GetParam();
  const std::string name = std::to_string(int(mode)) + " " + settings::Info(mode).cliName;
  const char* const directions[] = {"tr", "tl", "tra", "tla", "td", "tda", "tu", "tua"};
  const char* const keySets[] = {"", "MSBF=0|Neg=1|ORGC=3|CORN2=1|CORN1=0",
                                 "FXHB=+D+|ORGC=5|ColRx=1|fpar11={|fpar12=}|dellas=1",
                                 "D8bc=0|DIHec=1"};
  const QImage pictures[] = {Colourful(16, 8, 3 + unsigned(mode)),
                             Colourful(13, 7, 11 + unsigned(mode))};
  int written = 0;
  for (const QImage& picture : pictures) {
    for (const char* direction : directions) {
      for (const char* extra : keySets) {
        const std::string keys =
            std::string("tr=0|") + direction + "=1" + (*extra ? "|" : "") + extra;
        SCOPED_TRACE(name + " " + keys + " " + std::to_string(picture.width()) + "x" +
                     std::to_string(picture.height()));
        const Outcome fast = Exported(picture, mode, keys, false);
        EXPECT_EQ(Exported(picture, mode, keys, true), fast);
        written += fast.status == ExportStatus::Written;
      }
    }
  }
  // Most of them are arrays, not refusals.
  EXPECT_GT(written, 16) << name;
}

std::vector<settings::PixelMode> EveryMode() {
  std::vector<settings::PixelMode> modes;
  for (const auto& info : settings::PixelModeTable()) modes.push_back(info.mode);
  return modes;
}

std::string ModeName(const ::testing::TestParamInfo<settings::PixelMode>& info) {
  std::string name = "Mode" + std::to_string(int(info.param));
  for (const char c : std::string(settings::Info(info.param).cliName)) {
    if (std::isalnum(static_cast<unsigned char>(c))) name += c;
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(EveryMode, ReferencePaths, ::testing::ValuesIn(EveryMode()), ModeName);

}  // namespace
}  // namespace vt::app
