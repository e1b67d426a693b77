// SPDX-License-Identifier: MIT
#include "app/threshold_commands.h"

#include <algorithm>

#include "app/messages.h"
#include "app/pixel_mode_commands.h"
#include "app/state.h"
#include "settings/pixel_modes.h"

namespace vt::app {
namespace {

using namespace canvas;

bool IsMonochrome(const AppState& state) {
  const auto mode = settings::CurrentPixelMode(state.settings);
  return !mode || settings::IsMonochromeMode(*mode);
}

}  // namespace

using namespace canvas;

void SelectWholeCanvas(AppState& state) {
  WorkCanvas& canvas = state.canvas;
  canvas.Selection().SetArea(0, 0, canvas.Width(), canvas.Height(), canvas.Bitmap().size());
  canvas.UpdateTable();
  canvas.SelectionToBitmap();
  EnableSelection(state);
}

void BWTrackBarChange(AppState& state, int position, bool mouseDown) {
  BlackWhiteTools& tools = state.blackWhite;
  if (tools.DitheringDone) {
    tools.DitheringDone = false;
    return;
  }
  FloatingSelection& selection = state.canvas.Selection();
  if (!selection.IsFloating()) SelectWholeCanvas(state);
  // The backup is made once; a fresh import replaces it.
  if (tools.Backup.isNull() || (selection.ColorImport() && selection.ConversionPending())) {
    tools.Backup = selection.Layer().copy();
  }

  tools.Position = std::clamp(position, 0, BlackWhiteTools::kMaxPosition);
  tools.Visible = true;
  selection.ThresholdOn = true;
  if (mouseDown) return;

  tools.ThresholdValue = ThresholdValueOf(tools.Position);
  selection.MarkConverted();
  BalanceGreyScale(state);
  state.canvas.CopyBitmapToCanvas();
  state.log.StatusBarAndLog(QString::fromLatin1(texts::kBalanceChanged));
}

void BalanceGreyScale(AppState& state) {
  FloatingSelection& selection = state.canvas.Selection();
  QImage& master = selection.Master();
  QImage& layer = selection.Layer();
  if (selection.ColorImport() && !selection.MasterGrayed) {
    GrayscaleRaster(master);
    selection.MasterGrayed = true;
  }
  layer.fill(ToQRgb(kWhite));
  if (!IsMonochrome(state)) {
    Draw(layer, master, {0, 0}, Blend::Copy);
    return;
  }
  // The master and the layer share their top-left corner; a layer resized past the master
  // stays white where the master has no pixel.
  const double threshold = state.blackWhite.ThresholdValue;
  const QRgb black = ToQRgb(kBlack);
  const int width = std::min(master.width(), layer.width());
  const int height = std::min(master.height(), layer.height());
  for (int y = 0; y < height; ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(master.constScanLine(y));
    auto* to = reinterpret_cast<QRgb*>(layer.scanLine(y));
    for (int x = 0; x < width; ++x) {
      if (double(FromQRgb(from[x])) < threshold) to[x] = black;
    }
  }
}

void ThresholdMiddle(AppState& state) {
  state.blackWhite.DitheringDone = false;  // a deliberate setting, not the echo of a dithering
  BWTrackBarChange(state, BlackWhiteTools::kMaxPosition / 2);
}

void ThresholdON(AppState& state) {
  state.blackWhite.Visible = true;
  state.canvas.Selection().ThresholdOn = true;
  state.log.StatusBarAndLog(QString::fromLatin1(texts::kUseTrackbar));
}

void ThresholdOFF(AppState& state) {
  state.blackWhite.Visible = false;
  state.canvas.Selection().ThresholdOn = false;
}

bool PerformDithering(AppState& state, Services& services) {
  if (state.modes.AnimationActive) return false;
  if (!state.canvas.Selection().IsFloating()) {
    const int answer = MessageDlgA(
        state, services.dialogs, QString::fromLatin1(texts::kDitherWholeCanvas),
        QString::fromLatin1(texts::kDitheringTitle), 0,
        platform::Buttons::Yes | platform::Buttons::No, platform::DialogType::Confirmation);
    if (answer != platform::Answer::Yes) return false;
    SelectWholeCanvas(state);
    if (!IsMonochrome(state)) {
      (void)SelectPixelMode(state, services, settings::PixelMode::Monochrome);
    }
  }
  FloatingSelection& selection = state.canvas.Selection();
  const DitherParameters& parameters = state.blackWhite.Dither;
  DitherRaster(selection.Layer(), parameters);
  if (parameters.reduction == DitherReduction::Monochrome) selection.MarkConverted();
  state.blackWhite.DitheringDone = true;
  state.canvas.CopyBitmapToCanvas();
  state.log.StatusBarAndLog(selection.Rect().StatusText());
  return true;
}

bool DitherWorkCanvas(AppState& state, Services& services) {
  if (state.modes.AnimationActive) return false;
  SelectWholeCanvas(state);
  if (!IsMonochrome(state)) {
    (void)SelectPixelMode(state, services, settings::PixelMode::Monochrome);
  }
  DitherParameters parameters = state.blackWhite.Dither;
  parameters.reduction = DitherReduction::Monochrome;
  DitherRaster(state.canvas.Selection().Layer(), parameters);
  state.canvas.Selection().MarkConverted();
  state.blackWhite.DitheringDone = true;
  return DoPaste(state, services, BlackWhiteConversions(state));
}

LayerConversion BlackWhiteConversions(AppState& state) {
  return {[&state](QImage& layer) {
            DitherParameters parameters = state.blackWhite.Dither;
            parameters.reduction = DitherReduction::Monochrome;
            DitherRaster(layer, parameters);
            state.blackWhite.DitheringDone = true;
          },
          [&state](QImage&) { ThresholdMiddle(state); }};
}

}  // namespace vt::app
