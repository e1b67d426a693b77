// SPDX-License-Identifier: MIT
#include "canvas/canvas_commands.h"

#include "app/exceptions.h"
#include "app/messages.h"
#include "app/state.h"
#include "canvas/canvas_texts.h"
#include "settings/pixel_modes.h"

namespace vt::canvas {
namespace {

namespace Answer = platform::Answer;
namespace Buttons = platform::Buttons;
using platform::DialogType;

QString Text(const char* text) { return QString::fromLatin1(text); }

void Status(app::AppState& state, const char* text) { state.log.StatusBarAndLog(Text(text)); }

/// Runs `body`; an exception is counted as handled and `errorText` goes to the status bar.
bool Guarded(app::AppState& state, const char* errorText, const std::function<void()>& body) {
  if (app::RunHandled(state.log, Text(errorText), body)) return true;
  Status(state, errorText);
  return false;
}

bool IsMonochrome(const app::AppState& state) {
  const auto mode = settings::CurrentPixelMode(state.settings);
  return !mode || settings::IsMonochromeMode(*mode);
}

void DropSelection(app::AppState& state) { state.canvas.DisableSelection(); }

/// Draws the layer in, pushes, reports. False when nothing was pasted.
bool Paste(app::AppState& state, bool keepFloating) {
  PasteResult result = PasteResult::NotFloating;
  if (!Guarded(state, texts::kPasteError,
               [&] { result = state.canvas.PasteSelection(keepFloating, IsMonochrome(state)); })) {
    return false;
  }
  if (result != PasteResult::Pasted && result != PasteResult::PastedPushFailed) return false;
  state.modes.ArtworkFresh = false;
  if (result == PasteResult::PastedPushFailed) {
    state.log.HandledExcept(Text(texts::kPushError));
    Status(state, texts::kPushError);
  }
  Status(state, texts::kPasted);
  return true;
}

}  // namespace

bool PushUndo(app::AppState& state) {
  bool pushed = false;
  if (!Guarded(state, texts::kPushError, [&] { pushed = state.canvas.CopyCanvasToSaveTable(); }))
    return false;
  state.modes.ArtworkFresh = false;
  if (!pushed) {
    state.log.HandledExcept(Text(texts::kPushError));
    Status(state, texts::kPushError);
  }
  return pushed;
}

void UndoButtonClick(app::AppState& state) {
  Guarded(state, texts::kUndoError, [&] {
    DropSelection(state);
    Status(state, texts::kUndo);
    state.canvas.Undo();
  });
}

void RedoButtonClick(app::AppState& state) {
  Guarded(state, texts::kRedoError, [&] {
    if (state.canvas.SaveTable().UndoTop() == 0) {
      (void)state.canvas.Redo();  // only disables the redo button
      return;
    }
    Status(state, texts::kRedo);
    (void)state.canvas.Redo();
  });
}

void OriginalImagelButtonClick(app::AppState& state) {
  Guarded(state, texts::kOriginalError, [&] {
    DropSelection(state);
    state.canvas.ReloadOriginal();
    Status(state, texts::kOriginal);
  });
}

void OriginalImageButtonClick(app::AppState& state) {
  Guarded(state, texts::kOriginalError, [&] { state.canvas.FlashOriginal(); });
}

void EnableSelection(app::AppState& state) {
  if (!app::SelectionPending(state)) return;
  state.log.StatusBarAndLog(state.canvas.Selection().Rect().StatusText());
  Status(state, texts::kDragPaste);
}

bool DoPaste(app::AppState& state, app::Services& services, const LayerConversion& conversion) {
  FloatingSelection& selection = state.canvas.Selection();
  if (!selection.IsFloating()) return false;
  if (IsMonochrome(state) && selection.ConversionPending()) {
    const int answer = app::MyMessageDialog(
        state, services.dialogs, Text(texts::kPasteConversion), DialogType::Warning, 2,
        {QStringLiteral("Ok"), QStringLiteral("Cancel"), QStringLiteral("Dithering")},
        Buttons::Ok | Buttons::Cancel | Buttons::Retry);
    const auto& convert = answer == Answer::Retry ? conversion.dither
                          : answer == Answer::Ok  ? conversion.thresholdMiddle
                                                  : std::function<void(QImage&)>();
    if (!convert) {
      Status(state, texts::kCanceled);
      selection.ThresholdOn = true;
      state.canvas.CopyBitmapToCanvas();
      return false;
    }
    convert(selection.Layer());
    selection.MarkConverted();
  }
  return Paste(state, false);
}

bool PasteMultiple(app::AppState& state, app::Services& services) {
  const FloatingSelection& selection = state.canvas.Selection();
  if (selection.IsFloating() && IsMonochrome(state) && selection.ConversionPending()) {
    app::MessageDlgA(state, services.dialogs, Text(texts::kPendingConversion),
                     Text(texts::kPendingConversionTitle), 0, Buttons::Ok, DialogType::Warning);
    return false;
  }
  return Paste(state, true);
}

bool ResolveFloatingSelection(app::AppState& state, app::Services& services,
                              const LayerConversion& conversion) {
  if (!state.canvas.Selection().IsFloating()) return true;
  const int answer = app::MyMessageDialog(
      state, services.dialogs, Text(texts::kFloatingNotPasted), DialogType::Confirmation, 2,
      {QStringLiteral("Paste now"), QStringLiteral("Discard"), QStringLiteral("Cancel")},
      Buttons::Ok | Buttons::Cancel | Buttons::Retry);
  if (answer == Answer::Ok) return DoPaste(state, services, conversion);
  if (answer == Answer::Cancel) {
    DropSelection(state);
    return true;
  }
  return false;
}

void EscapeSelection(app::AppState& state) {
  Guarded(state, texts::kEscapeError, [&] {
    if (state.canvas.Selection().State() == SelectionState::None) return;
    DropSelection(state);
    Status(state, texts::kSelectionAborted);
  });
}

void DeleteSelectionLayer(app::AppState& state) {
  if (!state.canvas.Selection().IsFloating()) return;
  DropSelection(state);
  Status(state, texts::kSelectionDeleted);
}

void CalqueButtonClick(app::AppState& state) {
  state.canvas.CreateTransferLayer();
  Status(state, texts::kTransferCreated);
  Status(state, texts::kTransferVisible);
}

void ToggleTransferLayer(app::AppState& state) {
  TransferLayer& layer = state.canvas.Transfer();
  if (!layer.Exists()) return;
  layer.Visible = !layer.Visible;
  state.canvas.CopyBitmapToCanvas();
  Status(state, layer.Visible ? texts::kTransferVisible : texts::kTransferHidden);
}

bool ClearTransferLayer(app::AppState& state, app::Services& services) {
  TransferLayer& layer = state.canvas.Transfer();
  if (!layer.Exists()) return false;
  if (app::MessageDlgA(state, services.dialogs, Text(texts::kClearTransfer),
                       Text(texts::kClearTransferTitle), 0, Buttons::Yes | Buttons::No,
                       DialogType::Confirmation) != Answer::Yes) {
    return false;
  }
  layer.Image().fill(ToQRgb(kWhite));
  state.canvas.CopyBitmapToCanvas();
  return true;
}

bool ClearWorkCanvas(app::AppState& state, app::Services& services) {
  if (app::MessageDlgA(state, services.dialogs, Text(texts::kClearCanvas),
                       Text(texts::kClearCanvasTitle), 0, Buttons::Yes | Buttons::No,
                       DialogType::Confirmation) != Answer::Yes) {
    return false;
  }
  state.canvas.Clear();
  PushUndo(state);
  Status(state, texts::kCanvasCleared);
  return true;
}

}  // namespace vt::canvas
