// SPDX-License-Identifier: MIT
#pragma once

// Projects: a project is one settings file (.LCD) beside a folder that holds its saved pictures.
// The projects of a folder are listed, activated, renamed, deleted and saved under a new name;
// the six role folders of a project are defined from the explorer; the explorer's file types
// and the dispatch of a file to the loader that takes it.

#include <QImage>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

#include "app/state.h"

namespace vt::app {

/// The eight pictures a project keeps: `<settings file without extension>/<nbmfn without
/// extension>/Image[<n>].bmp`.
inline constexpr int kSavedPictureCount = 8;
using SavedPictures = std::array<QImage, kSavedPictureCount>;

QString SavedPicturePath(const QString& settingsFile, const QString& graphicName, int n);
/// Reads the pictures that exist; a missing or unreadable one leaves its slot null.
SavedPictures LoadSavedPictures(const QString& settingsFile, const QString& graphicName);
/// Writes picture `n` as BMP (atomically, creating the folders). False on failure.
bool SaveSavedPicture(const QString& settingsFile, const QString& graphicName, int n,
                      const QImage& picture);

/// The listing of the explorer: the .LCD files beside the active one, sorted, and the label.
struct ProjectList {
  QString folder;       ///< folder of the active settings file
  QStringList names;    ///< file names of the projects there
  QString activeLabel;  ///< "Active Project : " and the active file's name
};
/// ListAllProjects: logs "Projects Listed".
ProjectList ListAllProjects(AppState& state);

/// ActivateProject: saves the current project, makes `name` (a file of the active project's
/// folder) the active one, logs "Project <name> Activated", loads it and clears both editors.
/// An empty name says "Please select a project first ". False when nothing changed.
bool ActivateProject(AppState& state, Services& services, const QString& name);

/// "Save As New Project": the current settings saved as `name` (".LCD" added when missing) in
/// the active project's folder. An existing file is not overwritten. False after telling why.
bool SaveAsNewProject(AppState& state, Services& services, const QString& name);

/// MenuItem5Click, rename from the project list: logs "Rename Project in Popup Menu", then
/// refuses "default.LCD" ("This default project can not be renamed !"), no selection ("Please
/// select the project to rename in the list !" under "Selection error") and a file in use.
/// True when the list item may go into edit mode.
bool MenuItem5Click(AppState& state, Services& services, const QString& name);
/// The end of the edit: `name` becomes `newName` (".LCD" added when missing). An empty name,
/// "default.LCD", an existing file or a failed rename leave it. The active project follows.
bool RenameProjectTo(AppState& state, const QString& name, const QString& newName);
/// Both in one: the checks, then the rename.
bool RenameProject(AppState& state, Services& services, const QString& name,
                   const QString& newName);

/// Delete from the project list: nothing selected, the default project and the active one
/// refuse; else the file goes, "Project has been deleted !" is told and the list refreshed.
bool DeleteProject(AppState& state, Services& services, const QString& name);

/// The six folder roles of a project.
enum class FolderRole { Graphics, Output, Documents, Fonts, TouchPanel, Batch };
inline constexpr std::array kFolderRoles = {FolderRole::Graphics,   FolderRole::Output,
                                            FolderRole::Documents,  FolderRole::Fonts,
                                            FolderRole::TouchPanel, FolderRole::Batch};

struct FolderRoleInfo {
  const char* key;         ///< the settings key holding the folder
  const char* treeLabel;   ///< label of the role's node in the explorer's tree
  const char* command;     ///< caption of the Define command
  const char* breadcrumb;  ///< Laction while the folder is defined
  const char* logLine;     ///< logged once defined
};
const FolderRoleInfo& Info(FolderRole role);
QString& FolderOf(settings::Settings& settings, FolderRole role);

/// Tries to write and remove "chk.tmp" in `folder`.
bool IsDirectoryWriteable(const QString& folder);

/// Defines `folder` as the project's folder of `role`: a folder that cannot be written refuses
/// with its path and "cannot be defined : Access denied ! " and leaves the key.
bool DefineProjectFolder(AppState& state, Services& services, FolderRole role,
                         const QString& folder);

/// What the explorer's details view says of a file: its type by upper-case extension,
/// "Fichier " and the extension for others, "DIRECTORY" for a folder.
QString FileTypeDescription(const QString& path, bool isFolder);

/// Where the explorer sends a file it loads.
enum class LoadTarget {
  None,  ///< nothing takes this file
  Batch,
  FontScript,
  TouchScript,
  Folder,
  Bitmap,
  Svg,
  Jpeg,
  Gif,
  Png,
  VectorScript,
  Tiff,
};
struct LoadDispatch {
  LoadTarget target = LoadTarget::None;
  QString logLine;  ///< "Load BMP" and the like; empty where the target logs itself
};
/// The dispatch by upper-case extension. A .BMP or .JPG whose first bytes are not of its
/// format is refused with the loader's message ("This is not a valid bitmap file !\r" ...).
LoadDispatch Loadfile(AppState& state, Services& services, const QString& path, bool isFolder);

/// The save panel's extension check for the text editor: one of the text, binary and script
/// extensions, else "File Ext can only be one of these : H,C,BAS,ASM,TXT or RTF ! ".
bool CheckTextSaveExtension(AppState& state, Services& services, const QString& extension);
/// The same for the graphic tab: ".BMP", ".PNG" or ".JPG".
bool CheckGraphicSaveExtension(AppState& state, Services& services, const QString& extension);
/// The role folder a saved file of `extension` goes to.
QString SaveFolderFor(const settings::Settings& settings, const QString& extension);

}  // namespace vt::app
