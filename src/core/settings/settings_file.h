// SPDX-License-Identifier: MIT
#pragma once

#include "settings/ini_document.h"
#include "settings/settings.h"

namespace vt::settings {

/// Defaults of the six folder keys: the folders a first run creates.
struct FolderDefaults {
  QString PFP, BFP, OFP, FontFP, tfp1, bfpa;
};

/// Factory settings with the folder keys set to `folders`.
Settings DefaultSettings(const FolderDefaults& folders);

/// Reads every key of the table in order, then the dynamic lists, into `settings`. Every key the
/// document lacks, or whose number does not parse, takes its default, so an empty document
/// gives the factory settings. The touch resolution `tfp3` is forced to 8 unless it is 8, 10,
/// 12, 16 or 24.
void ReadSettings(const IniDocument& doc, Settings& settings, const FolderDefaults& folders);

/// Writes every key of the table in order, then the recent files and fonts with every slot,
/// then the explorer extensions and user sizes that are set. Keys the table does not know stay
/// in `doc` untouched.
void WriteSettings(const Settings& settings, IniDocument& doc);

/// The settings file at `path` as a document; an empty document when it cannot be read or
/// parsed (the load of the configuration reports such a file; this is for reading keys).
IniDocument ReadSettingsDocument(const QString& path);

}  // namespace vt::settings
