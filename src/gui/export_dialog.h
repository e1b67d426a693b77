// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "app/export_driver.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace vt::gui {

/// "Export Work Canvas To Data": shows what FillExportDialog prepared and hands back the
/// request as the user leaves it. It decides nothing: the driver checks the answers.
class ExportDialog final : public QDialog {
  Q_OBJECT
 public:
  explicit ExportDialog(const app::ExportDialogSetup& setup, QWidget* parent = nullptr);
  /// The request with the dialog's choices.
  app::ExportRequest Request() const;
  /// "Export To Editor now".
  QPushButton* ExportButton() const { return exportButton_; }

 private:
  void Load(const app::ExportRequest& request);
  void FollowWordWidth();

  app::ExportRequest base_;
  QButtonGroup* area_ = nullptr;
  QComboBox* subdivision_ = nullptr;
  QCheckBox* autoFraming_ = nullptr;
  QCheckBox* compression_ = nullptr;
  QCheckBox* rearrange_ = nullptr;
  QCheckBox* interleaved_ = nullptr;
  QCheckBox* searchReplace_ = nullptr;
  QCheckBox* postProcess_ = nullptr;
  QButtonGroup* wordWidth_ = nullptr;
  QGroupBox* intelHex_ = nullptr;
  QSpinBox* bytesPerLine_ = nullptr;
  QComboBox* addressDigits_ = nullptr;
  QLineEdit* addressOffset_ = nullptr;
  QPushButton* exportButton_ = nullptr;
  bool intelHexEnabled_ = false;
};

}  // namespace vt::gui
