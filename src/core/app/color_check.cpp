// SPDX-License-Identifier: MIT
#include "app/color_check.h"

#include "app/messages.h"
#include "app/palette_commands.h"
#include "app/state.h"
#include "canvas/color_reduction.h"
#include "util/fast_paths.h"

namespace vt::app {

using namespace canvas;

namespace {

using platform::DialogType;
using settings::PixelMode;
namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;

void Tell(AppState& state, Services& services, const QString& text) {
  MessageDlgA(state, services.dialogs, text, QString::fromLatin1(texts::kInfoTitle), 0, Buttons::Ok,
              DialogType::Information);
}

/// Reduce, Convert, Cancel: the three captions answer 1, 2 and 4.
int AskConvertOrReduce(AppState& state, Services& services, bool gray, int levels) {
  const QString text = gray ? QStringLiteral("Convert or Reduce to Grayscale Palette \r") +
                                  QString::number(levels) + QStringLiteral(" gray levels")
                            : QStringLiteral("Convert or Reduce to Color Palette \r") +
                                  QString::number(levels) + QStringLiteral(" colors");
  return MyMessageDialog(
      state, services.dialogs, text, DialogType::Confirmation, 2,
      {QStringLiteral("Reduce"), QStringLiteral("Convert"), QStringLiteral("Cancel")},
      Buttons::Ok | Buttons::Cancel | Buttons::Retry,
      gray ? QString::fromLatin1(texts::kConvertToGrayscaleTitle) : QString());
}

}  // namespace

int CheckGray256(AppState& state, const QImage& picture) {
  const int found = CountPictureColors(picture, 1 << 24, ReferencePathsRequested());
  state.log.StatusBarAndLog(QStringLiteral("Found = ") + QString::number(found));
  return found;
}

ColorCheck CheckColorsSelection(AppState& state, Services& services, QImage& picture) {
  const PixelMode mode = ModeOf(state.settings);
  if (settings::IsMonochromeMode(mode)) {
    return IsBlackAndWhite(picture) ? ColorCheck::Kept : ColorCheck::ThresholdPending;
  }
  const int levels = PaletteInfoOf(mode).entries;
  if (levels == 0) return ColorCheck::Kept;  // 16M colours take any picture

  const bool gray = settings::IsGrayMode(mode);
  const bool referencePaths = ReferencePathsRequested();
  const int colors =
      gray ? CheckGray256(state, picture) : CountPictureColors(picture, 1 << 24, referencePaths);
  if (colors <= levels) {
    if (gray) DoGrayscale(picture);
    return ColorCheck::Kept;
  }
  const int answer = AskConvertOrReduce(state, services, gray, levels);
  if (answer != Answer::Ok && answer != Answer::Cancel) {
    if (!gray) Tell(state, services, QStringLiteral(" Picture has %1 colors").arg(colors));
    return ColorCheck::Cancelled;
  }

  LoadModePalette(state, services);
  if (gray) DoGrayscale(picture);
  const bool reduce = answer == Answer::Ok;
  (void)services.escape.EscapePressed();  // clears a press from before: only a new one stops
  if (reduce) {
    ReduceToPalette(picture, state.palettes, mode, state.blackWhite.Dither.method, referencePaths);
  } else if (ConvertToMyColor(picture, state.palettes, mode, services.escape, referencePaths) ==
             ConversionStatus::Interrupted) {
    MessageDlgA(state, services.dialogs, QStringLiteral(" Processing interrupted by escape !"),
                QStringLiteral("Information"), 0, Buttons::Ok, DialogType::Information);
    return ColorCheck::Converted;
  }
  if (gray) {
    state.log.StatusBarAndLog(QString::fromLatin1(texts::kConvertedToGrayscale));
    Tell(state, services,
         QStringLiteral(" Picture has been converted to %1 grey levels").arg(levels));
  } else if (reduce) {
    Tell(state, services,
         QStringLiteral(" Picture has been converted from %1 to %2 colors")
             .arg(colors)
             .arg(CountPictureColors(picture, 1 << 24, referencePaths)));
  } else {
    Tell(state, services, QStringLiteral(" Picture has been converted to %1 colors").arg(levels));
  }
  return reduce ? ColorCheck::Reduced : ColorCheck::Converted;
}

}  // namespace vt::app
