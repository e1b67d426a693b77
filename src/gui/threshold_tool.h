// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>

#include "app/state.h"

class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

namespace vt::gui {

/// The threshold tool (BWAdjustementTool) shown over the canvas while a floating layer waits
/// for its conversion to black and white. Manual: the slider BWTrackBar (0 to 255) with its
/// number BlackWhiteEdit and ">MID"; the layer is redone when the slider is let go (or moved by
/// the keyboard or the number). Auto: "Dithering" with the Dithering menu's method. A toggle
/// with the captions "<< Auto" and "Manual >> " switches between the two; "OK Paste Layer"
/// pastes. The work is the core's; the tool only reads and calls it.
class ThresholdTool final : public QWidget {
  Q_OBJECT

 public:
  /// Runs a piece of work as a command of the window: `caption` is logged first when not empty,
  /// failures are handled, and the views follow the state afterwards.
  using Runner = std::function<void(const QString& caption, const std::function<void()>& work)>;

  ThresholdTool(app::AppState& state, app::Services& services, Runner run,
                QWidget* parent = nullptr);

  /// Follows the state: the slider and the number show the threshold position.
  void Sync();

  QSlider* TrackBar() const { return trackBar_; }
  QSpinBox* Edit() const { return edit_; }
  QPushButton* MidButton() const { return mid_; }
  QPushButton* PasteButton() const { return paste_; }
  QPushButton* DitheringButton() const { return dithering_; }
  QPushButton* ModeToggle() const { return toggle_; }
  /// True while the manual part (slider, number, ">MID") is shown.
  bool ManualShown() const { return manual_; }

 private:
  void SliderMoved(int position, bool released);
  void ShowManual(bool manual);

  app::AppState& state_;
  app::Services& services_;
  Runner run_;
  QWidget* manualPart_ = nullptr;
  QWidget* autoPart_ = nullptr;
  QSlider* trackBar_ = nullptr;
  QSpinBox* edit_ = nullptr;
  QPushButton* mid_ = nullptr;
  QPushButton* paste_ = nullptr;
  QPushButton* dithering_ = nullptr;
  QPushButton* toggle_ = nullptr;
  bool manual_ = true;
  bool syncing_ = false;
};

}  // namespace vt::gui
