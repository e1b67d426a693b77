// SPDX-License-Identifier: MIT
#include "app/canvas_commands.h"

#include "app/exceptions.h"
#include "app/messages.h"
#include "app/state.h"
#include "app/threshold_commands.h"
#include "canvas/canvas_texts.h"
#include "settings/pixel_modes.h"

namespace vt::app {

using namespace canvas;

namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogType;

QString Text(const char* text) { return QString::fromLatin1(text); }

void Status(AppState& state, const char* text) { state.log.StatusBarAndLog(Text(text)); }

/// Runs `body`; an exception is counted as handled and `errorText` goes to the status bar.
bool Guarded(AppState& state, const char* errorText, const std::function<void()>& body) {
  if (RunHandled(state.log, Text(errorText), body)) return true;
  Status(state, errorText);
  return false;
}

bool IsMonochrome(const AppState& state) {
  const auto mode = settings::CurrentPixelMode(state.settings);
  return !mode || settings::IsMonochromeMode(*mode);
}

/// DisableSelection: the layer goes, and the threshold tool with it.
void DropSelection(AppState& state) {
  ThresholdOFF(state);
  state.canvas.DisableSelection();
}

/// Draws the layer in, pushes, reports. False when nothing was pasted.
bool Paste(AppState& state, bool keepFloating) {
  PasteResult result = PasteResult::NotFloating;
  if (!Guarded(state, canvas::texts::kPasteError,
               [&] { result = state.canvas.PasteSelection(keepFloating, IsMonochrome(state)); })) {
    return false;
  }
  if (result != PasteResult::Pasted && result != PasteResult::PastedPushFailed) return false;
  if (!keepFloating) ThresholdOFF(state);
  state.modes.ArtworkFresh = false;
  if (result == PasteResult::PastedPushFailed) {
    state.log.HandledExcept(Text(canvas::texts::kPushError));
    Status(state, canvas::texts::kPushError);
  }
  Status(state, canvas::texts::kPasted);
  return true;
}

}  // namespace

bool PushUndo(AppState& state) {
  bool pushed = false;
  if (!Guarded(state, canvas::texts::kPushError,
               [&] { pushed = state.canvas.CopyCanvasToSaveTable(); }))
    return false;
  state.modes.ArtworkFresh = false;
  if (!pushed) {
    state.log.HandledExcept(Text(canvas::texts::kPushError));
    Status(state, canvas::texts::kPushError);
  }
  return pushed;
}

void UndoButtonClick(AppState& state) {
  Guarded(state, canvas::texts::kUndoError, [&] {
    DropSelection(state);
    Status(state, canvas::texts::kUndo);
    state.canvas.Undo();
  });
}

void RedoButtonClick(AppState& state) {
  Guarded(state, canvas::texts::kRedoError, [&] {
    if (state.canvas.SaveTable().UndoTop() == 0) {
      (void)state.canvas.Redo();  // only disables the redo button
      return;
    }
    Status(state, canvas::texts::kRedo);
    (void)state.canvas.Redo();
  });
}

void OriginalImagelButtonClick(AppState& state) {
  Guarded(state, canvas::texts::kOriginalError, [&] {
    DropSelection(state);
    state.canvas.ReloadOriginal();
    Status(state, canvas::texts::kOriginal);
  });
}

void OriginalImageButtonClick(AppState& state) {
  Guarded(state, canvas::texts::kOriginalError, [&] { state.canvas.FlashOriginal(); });
}

void EnableSelection(AppState& state) {
  if (!SelectionPending(state)) return;
  state.log.StatusBarAndLog(state.canvas.Selection().Rect().StatusText());
  Status(state, canvas::texts::kDragPaste);
}

bool DoPaste(AppState& state, Services& services, const LayerConversion& conversion) {
  FloatingSelection& selection = state.canvas.Selection();
  if (!selection.IsFloating()) return false;
  if (IsMonochrome(state) && selection.ConversionPending()) {
    const int answer = MyMessageDialog(
        state, services.dialogs, Text(canvas::texts::kPasteConversion), DialogType::Warning, 2,
        {QStringLiteral("Ok"), QStringLiteral("Cancel"), QStringLiteral("Dithering")},
        Buttons::Ok | Buttons::Cancel | Buttons::Retry);
    const auto& convert = answer == Answer::Retry ? conversion.dither
                          : answer == Answer::Ok  ? conversion.thresholdMiddle
                                                  : std::function<void(QImage&)>();
    if (!convert) {
      Status(state, canvas::texts::kCanceled);
      selection.ThresholdOn = true;
      state.canvas.CopyBitmapToCanvas();
      return false;
    }
    convert(selection.Layer());
    selection.MarkConverted();
  }
  return Paste(state, false);
}

bool PasteMultiple(AppState& state, Services& services) {
  const FloatingSelection& selection = state.canvas.Selection();
  if (selection.IsFloating() && IsMonochrome(state) && selection.ConversionPending()) {
    MessageDlgA(state, services.dialogs, Text(canvas::texts::kPendingConversion),
                Text(canvas::texts::kPendingConversionTitle), 0, Buttons::Ok, DialogType::Warning);
    return false;
  }
  return Paste(state, true);
}

bool ResolveFloatingSelection(AppState& state, Services& services,
                              const LayerConversion& conversion) {
  if (!state.canvas.Selection().IsFloating()) return true;
  const int answer = MyMessageDialog(
      state, services.dialogs, Text(canvas::texts::kFloatingNotPasted), DialogType::Confirmation, 2,
      {QStringLiteral("Paste now"), QStringLiteral("Discard"), QStringLiteral("Cancel")},
      Buttons::Ok | Buttons::Cancel | Buttons::Retry);
  if (answer == Answer::Ok) return DoPaste(state, services, conversion);
  if (answer == Answer::Cancel) {
    DropSelection(state);
    return true;
  }
  return false;
}

void EscapeSelection(AppState& state) {
  Guarded(state, canvas::texts::kEscapeError, [&] {
    if (state.canvas.Selection().State() == SelectionState::None) return;
    DropSelection(state);
    Status(state, canvas::texts::kSelectionAborted);
  });
}

void DeleteSelectionLayer(AppState& state) {
  if (!state.canvas.Selection().IsFloating()) return;
  DropSelection(state);
  Status(state, canvas::texts::kSelectionDeleted);
}

void CalqueButtonClick(AppState& state) {
  state.canvas.CreateTransferLayer();
  Status(state, canvas::texts::kTransferCreated);
  Status(state, canvas::texts::kTransferVisible);
}

void ToggleTransferLayer(AppState& state) {
  TransferLayer& layer = state.canvas.Transfer();
  if (!layer.Exists()) return;
  layer.Visible = !layer.Visible;
  state.canvas.CopyBitmapToCanvas();
  Status(state, layer.Visible ? canvas::texts::kTransferVisible : canvas::texts::kTransferHidden);
}

bool ClearTransferLayer(AppState& state, Services& services) {
  TransferLayer& layer = state.canvas.Transfer();
  if (!layer.Exists()) return false;
  if (MessageDlgA(state, services.dialogs, Text(canvas::texts::kClearTransfer),
                  Text(canvas::texts::kClearTransferTitle), 0, Buttons::Yes | Buttons::No,
                  DialogType::Confirmation) != Answer::Yes) {
    return false;
  }
  layer.Image().fill(ToQRgb(kWhite));
  state.canvas.CopyBitmapToCanvas();
  return true;
}

bool ClearWorkCanvas(AppState& state, Services& services) {
  if (MessageDlgA(state, services.dialogs, Text(canvas::texts::kClearCanvas),
                  Text(canvas::texts::kClearCanvasTitle), 0, Buttons::Yes | Buttons::No,
                  DialogType::Confirmation) != Answer::Yes) {
    return false;
  }
  state.canvas.Clear();
  PushUndo(state);
  Status(state, canvas::texts::kCanvasCleared);
  return true;
}

}  // namespace vt::app
