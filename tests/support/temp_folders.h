// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QTemporaryDir>

#include "app/state.h"
#include "platform/clock.h"
#include "platform/folders.h"
#include "platform/key_poll.h"
#include "scripted_dialogs.h"
#include "scripted_file_picker.h"
#include "scripted_text_prompt.h"

namespace vt::test {

/// Documents, Pictures and program folders inside one temporary folder.
class TempFolders final : public platform::Folders {
 public:
  TempFolders();
  QString Documents() const override;
  QString Pictures() const override;
  QString ProgramData() const override;
  /// Path of `relative` inside the temporary root.
  QString Path(const QString& relative) const;

 private:
  QTemporaryDir root_;
};

/// A FileUse whose answer the test sets per path.
class FakeFileUse final : public platform::FileUse {
 public:
  bool IsFileInUse(const QString& path) const override { return busy.contains(path); }
  QSet<QString> busy;
};

/// A complete set of fake services for one test, with a fixed clock (2026-03-14 15:09:26). File
/// pickers and text prompts are cancelled unless the test queues an answer.
struct TestServices {
  ScriptedDialogs dialogs;
  TempFolders folders;
  FakeFileUse fileUse;
  platform::NoKeyPoll escape;
  platform::FixedClock clock{QDateTime(QDate(2026, 3, 14), QTime(15, 9, 26))};
  ScriptedFilePicker filePicker;
  ScriptedTextPrompt textPrompt;
  app::Services services{dialogs, folders, fileUse, escape, clock, filePicker, textPrompt};
};

/// Reads a whole file as bytes; empty when it cannot be read.
QByteArray ReadAll(const QString& path);

}  // namespace vt::test
