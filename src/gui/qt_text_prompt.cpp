// SPDX-License-Identifier: MIT
#include "gui/qt_text_prompt.h"

#include <QApplication>
#include <QInputDialog>

namespace vt::gui {

std::unique_ptr<QInputDialog> QtTextPrompt::MakeDialog(const platform::TextRequest& request,
                                                       QWidget* parent) {
  auto dialog = std::make_unique<QInputDialog>(parent);
  dialog->setInputMode(QInputDialog::TextInput);
  dialog->setWindowTitle(request.caption);
  dialog->setLabelText(request.label);
  dialog->setTextValue(request.defaultText);
  return dialog;
}

std::optional<QString> QtTextPrompt::Ask(const platform::TextRequest& request) {
  QWidget* parent = QApplication::activeModalWidget();
  if (!parent) parent = QApplication::activeWindow();
  if (!parent) parent = parent_.data();
  const std::unique_ptr<QInputDialog> dialog = MakeDialog(request, parent);
  if (dialog->exec() != QDialog::Accepted) return std::nullopt;
  return dialog->textValue();
}

}  // namespace vt::gui
