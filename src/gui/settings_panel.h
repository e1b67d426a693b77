// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>
#include <functional>

#include "app/state.h"

class QComboBox;
class QSpinBox;
class QLabel;

namespace vt::gui {

class ReorderPreviewView;

/// The output settings at a glance: pixel mode, data direction, origin corner, bit order,
/// display size, output width and constant format. Each choice is a command of the core
/// selectors, run through `run` (caption first, the exception boundary, the refresh); a
/// refusal, said through the dialogs, shows as the control falling back to the settings.
class SettingsPanel final : public QDockWidget {
  Q_OBJECT
 public:
  using RunCommand = std::function<void(const QString& caption, const std::function<void()>&)>;
  SettingsPanel(app::AppState& state, app::Services& services, RunCommand run,
                QWidget* parent = nullptr);

  /// Shows what the settings hold, without running any command.
  void Sync();

  QComboBox* PixelModeBox() const { return mode_; }
  QComboBox* DirectionBox() const { return direction_; }
  QComboBox* CornerBox() const { return corner_; }
  QComboBox* BitOrderBox() const { return bitOrder_; }
  QComboBox* SizeBox() const { return size_; }
  QComboBox* WidthBox() const { return width_; }
  QComboBox* FormatBox() const { return format_; }
  ReorderPreviewView* Preview() const { return preview_; }

 private:
  void Choose(QComboBox* box, const std::function<void(int index)>& apply);

  app::AppState& state_;
  app::Services& services_;
  RunCommand run_;
  QComboBox* mode_ = nullptr;
  QComboBox* direction_ = nullptr;
  QComboBox* corner_ = nullptr;
  QComboBox* bitOrder_ = nullptr;
  QComboBox* size_ = nullptr;
  QSpinBox* width_px_ = nullptr;
  QSpinBox* height_px_ = nullptr;
  QComboBox* width_ = nullptr;
  QComboBox* format_ = nullptr;
  QLabel* hint_ = nullptr;
  ReorderPreviewView* preview_ = nullptr;
  bool syncing_ = false;
};

}  // namespace vt::gui
