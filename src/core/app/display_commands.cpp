// SPDX-License-Identifier: MIT
#include "app/display_commands.h"

#include <exception>

#include "app/messages.h"
#include "app/state.h"
#include "settings/geometry.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogType;
using settings::ScanDirection;

/// The one answer to any fault of the user size confirmation.
void ReportUserSizeFault(AppState& state, Services& services) {
  state.log.StatusBarAndLog(QStringLiteral("User Size Define Error"));
  state.log.HandledExcept(QStringLiteral("User Size Define Error"));
  MessageDlgA(state, services.dialogs, QStringLiteral("User Size Define Error !"),
              QStringLiteral("Error"), 0, Buttons::Ok, DialogType::Error);
}

/// Offers to switch to the other orientation when the size does not fit the direction.
void OfferFittingDirection(AppState& state, Services& services, double p) {
  const settings::DisplaySettings& display = state.settings.display;
  if (settings::IsHorizontalScan(state.settings)) {
    if (settings::IsMultipleOf(display.GWI, p)) return;
    const int answer = MessageDlgA(
        state, services.dialogs,
        QStringLiteral("Dot matrix size not compatible with horizontal paging scheme !\rDo you "
                       "want to change paging scheme orientation to vertical ?"),
        QStringLiteral("Warning"), 0, Buttons::Yes | Buttons::No, DialogType::Warning);
    if (answer == Answer::Yes) {
      (void)SelectScanDirection(state, services, ScanDirection::td);
    }
    return;
  }
  if (settings::IsMultipleOf(display.GHI, p)) return;
  const int answer = MessageDlgA(
      state, services.dialogs,
      QStringLiteral("Dot matrix size not compatible with vertical paging scheme !\rDo you "
                     "want to change paging scheme orientation to horizontal ?"),
      QStringLiteral("Warning"), 0, Buttons::Yes | Buttons::No, DialogType::Warning);
  if (answer == Answer::Yes) {
    (void)SelectScanDirection(state, services, ScanDirection::tr);
  }
}

}  // namespace

bool SelectScanDirection(AppState& state, Services& services, ScanDirection direction,
                         settings::CornerRule cornerRule) {
  AppMessenger messenger(state, services.dialogs);
  return settings::SelectScanDirection(state.settings, messenger, direction, cornerRule);
}

void SelectOriginCorner(AppState& state, Services& services, settings::OriginCorner corner) {
  AppMessenger messenger(state, services.dialogs);
  settings::SelectOriginCorner(state.settings, messenger, corner);
}

void SelectBitOrder(AppState& state, Services& services, bool msbFirst) {
  AppMessenger messenger(state, services.dialogs);
  settings::SelectBitOrder(state.settings, messenger, msbFirst);
}

bool SelectByteWidth(AppState& state, Services& services, bool eightBits) {
  AppMessenger messenger(state, services.dialogs);
  return settings::SelectByteWidth(state.settings, messenger, eightBits);
}

void SelectConstantFormat(AppState& state, Services& services, convert::ConstantFormat format) {
  AppMessenger messenger(state, services.dialogs);
  convert::SelectConstantFormat(state.settings.format, messenger, format);
}

settings::TypedSize LCDmatrixWidthEditChange(AppState& state, Services& services,
                                             const QString& text) {
  AppMessenger messenger(state, services.dialogs);
  return settings::LCDmatrixWidthEditChange(state.settings, messenger, text);
}

settings::TypedSize LCDmatrixHeightEditChange(AppState& state, Services& services,
                                              const QString& text) {
  AppMessenger messenger(state, services.dialogs);
  return settings::LCDmatrixHeightEditChange(state.settings, messenger, text);
}

void SetDisplaySize(AppState& state, int width, int height) {
  width = qMax(width, 1);
  height = qMax(height, 1);
  state.settings.display.GWI = width;
  state.settings.display.GHI = height;
  if (state.canvas.Width() != width || state.canvas.Height() != height) {
    state.canvas.Resize(width, height);
  }
}

void SelectPresetSize(AppState& state, QSize size) {
  state.settings.display.USmat = false;
  state.settings.display.UMATB = false;
  SetDisplaySize(state, size.width(), size.height());
}

bool LCDmatrixSizeUserDefinedClick(AppState& state, Services& services) {
  state.log.Laction = QStringLiteral("User Size Define");
  settings::DisplaySettings& display = state.settings.display;
  const int width = display.MATW;
  const int height = display.MATH;
  if (width < 1 || height < 1) {
    ReportUserSizeFault(state, services);
    return false;
  }
  try {
    // The fit test uses this value, not the PixelsPerByte of the mode.
    const double p = settings::UserSizePixelsPerByte(state.settings);
    settings::AddCustomSize(state.settings, QSize(width, height));
    state.log.StatusBarAndLog(QStringLiteral("H:=%1 W:=%2").arg(height).arg(width));
    state.log.StatusBarAndLog(QStringLiteral("Dot matrix size = User defined"));
    MessageDlgA(state, services.dialogs,
                QStringLiteral(" User Dot Matrix Size has been defined ! "),
                QStringLiteral("Information"), 0, Buttons::Ok, DialogType::Information);
    SetDisplaySize(state, width, height);
    display.USmat = true;
    display.UMATB = true;
    OfferFittingDirection(state, services, p);
    return true;
  } catch (const std::exception&) {
    ReportUserSizeFault(state, services);
    return false;
  }
}

}  // namespace vt::app
