// SPDX-License-Identifier: MIT
#include "app/projects.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/configuration.h"
#include "app/messages.h"
#include "platform/dialogs.h"
#include "platform/folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

namespace Buttons = platform::Buttons;
using platform::DialogType;

void Tell(AppState& state, Services& services, const QString& text, const QString& title,
          DialogType type) {
  MessageDlgA(state, services.dialogs, text, title, 0, Buttons::Ok, type);
}

QString BaseNameOf(const QString& fileName) { return QFileInfo(fileName).completeBaseName(); }

QString UpperExtension(const QString& path) {
  const QString suffix = QFileInfo(path).suffix();
  return suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix.toUpper();
}

bool IsDefaultProject(const QString& name) {
  return QFileInfo(name).fileName().compare(kDefaultSettingsName, Qt::CaseInsensitive) == 0;
}

QString ProjectPath(const AppState& state, const QString& name) {
  return QDir(DefaultsFolder(state)).filePath(QFileInfo(name).fileName());
}

/// The first bytes of a file, for the format checks of the loader.
QByteArray Head(const QString& path, int count) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return file.read(count);
}

}  // namespace

QString SavedPicturePath(const QString& settingsFile, const QString& graphicName, int n) {
  const QFileInfo settings(settingsFile);
  return QDir(settings.absolutePath())
      .filePath(settings.completeBaseName() + QLatin1Char('/') + BaseNameOf(graphicName) +
                QStringLiteral("/Image[%1].bmp").arg(n));
}

SavedPictures LoadSavedPictures(const QString& settingsFile, const QString& graphicName) {
  SavedPictures pictures;
  for (int n = 0; n < kSavedPictureCount; ++n) {
    const QString path = SavedPicturePath(settingsFile, graphicName, n);
    if (QFileInfo::exists(path)) pictures[n] = QImage(path, "BMP");
  }
  return pictures;
}

bool SaveSavedPicture(const QString& settingsFile, const QString& graphicName, int n,
                      const QImage& picture) {
  if (n < 0 || n >= kSavedPictureCount || picture.isNull()) return false;
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, "BMP")) return false;
  const QString path = SavedPicturePath(settingsFile, graphicName, n);
  if (!QDir().mkpath(QFileInfo(path).absolutePath())) return false;
  return WriteFileAtomically(path, data).ok();
}

ProjectList ListAllProjects(AppState& state) {
  state.log.Laction = QStringLiteral("List Projects Except ");
  ProjectList list;
  const QFileInfo active(CurrentSettingsFile(state));
  list.folder = active.absolutePath();
  list.names = QDir(list.folder)
                   .entryList({QStringLiteral("*.LCD"), QStringLiteral("*.lcd")}, QDir::Files,
                              QDir::Name | QDir::IgnoreCase);
  list.names.removeDuplicates();
  list.activeLabel = QStringLiteral("Active Project : ") + active.fileName();
  state.log.StatusBarAndLog(QStringLiteral("Projects Listed"));
  return list;
}

bool ActivateProject(AppState& state, Services& services, const QString& name) {
  if (name.isEmpty()) {
    Tell(state, services, QStringLiteral("Please select a project first "),
         QStringLiteral("Warning"), DialogType::Warning);
    return false;
  }
  SaveConfigurationX(state, services);
  SetCurrentSettingsFile(state, ProjectPath(state, name));
  state.log.StatusBarAndLog(QStringLiteral("Project ") + QFileInfo(name).fileName() +
                            QStringLiteral(" Activated"));
  const bool loaded = LoadConfigurationX(state, services);
  state.modes.VectorModeActive = false;  // loading a project leaves Vector Design
  state.text.Clear();
  return loaded;
}

bool SaveAsNewProject(AppState& state, Services& services, const QString& name) {
  QString fileName = QFileInfo(name.trimmed()).fileName();
  if (fileName.isEmpty()) return false;
  if (!fileName.endsWith(QStringLiteral(".LCD"), Qt::CaseInsensitive)) {
    fileName += QStringLiteral(".LCD");
  }
  const QString path = ProjectPath(state, fileName);
  if (QFileInfo::exists(path)) {
    Tell(state, services, path + QStringLiteral(" already exists !"), QStringLiteral("Error"),
         DialogType::Error);
    return false;
  }
  const QString previous = CurrentSettingsFile(state);
  SetCurrentSettingsFile(state, path);
  const bool saved = SaveConfigurationX(state, services);
  SetCurrentSettingsFile(state, previous);
  if (saved) ListAllProjects(state);
  return saved;
}

bool MenuItem5Click(AppState& state, Services& services, const QString& name) {
  state.log.StatusBarAndLog(QStringLiteral("Rename Project in Popup Menu"));
  if (IsDefaultProject(name)) {
    Tell(state, services, QStringLiteral("This default project can not be renamed !"),
         QStringLiteral("Error"), DialogType::Error);
    return false;
  }
  if (name.isEmpty()) {
    Tell(state, services, QStringLiteral("Please select the project to rename in the list !"),
         QStringLiteral("Selection error"), DialogType::Error);
    return false;
  }
  const QString from = ProjectPath(state, name);
  if (services.fileUse.IsFileInUse(from)) {
    Tell(state, services,
         QStringLiteral("File is in use (or acess was denied) and can not be renamed !"),
         QStringLiteral("Error"), DialogType::Error);
    return false;
  }
  return true;
}

bool RenameProjectTo(AppState& state, const QString& name, const QString& newName) {
  const QString from = ProjectPath(state, name);
  QString target = QFileInfo(newName.trimmed()).fileName();
  if (target.isEmpty() || IsDefaultProject(target)) return false;
  if (!target.endsWith(QStringLiteral(".LCD"), Qt::CaseInsensitive)) {
    target += QStringLiteral(".LCD");
  }
  const QString to = ProjectPath(state, target);
  if (QFileInfo::exists(to) || !QFile::rename(from, to)) return false;
  if (QFileInfo(from) == QFileInfo(CurrentSettingsFile(state))) SetCurrentSettingsFile(state, to);
  ListAllProjects(state);
  return true;
}

bool RenameProject(AppState& state, Services& services, const QString& name,
                   const QString& newName) {
  return MenuItem5Click(state, services, name) && RenameProjectTo(state, name, newName);
}

bool DeleteProject(AppState& state, Services& services, const QString& name) {
  state.log.StatusBarAndLog(QStringLiteral("Delete Project"));
  const auto refuse = [&](const char* text) {
    Tell(state, services, QString::fromLatin1(text), QStringLiteral("Error"), DialogType::Error);
    return false;
  };
  if (name.isEmpty()) return refuse("Select a project to delete first!");
  if (IsDefaultProject(name)) return refuse("This project can not be deleted !");
  const QString path = ProjectPath(state, name);
  if (QFileInfo(path) == QFileInfo(CurrentSettingsFile(state))) {
    return refuse("Active project can not be deleted !");
  }
  if (!QFile::remove(path)) return false;
  Tell(state, services, QStringLiteral("Project has been deleted !"), QStringLiteral("Info"),
       DialogType::Information);
  state.log.StatusBarAndLog(QStringLiteral("Project Deleted"));
  ListAllProjects(state);
  return true;
}

const FolderRoleInfo& Info(FolderRole role) {
  static const FolderRoleInfo kInfo[] = {
      {"BFP", "GRAPHICS    : ", "Define Current Folder as Projects GRAPHICS Folder",
       "Define Graphics Folder ", "Graphics folder defined"},
      {"OFP", "OUTPUT FILES : ", "Define Current Folder as Projects DATA Files Folder",
       "Define Outputs Folder ", "Outputs folder defined"},
      {"PFP", "DOCUMENTS  : ", "Define Current Folder as Projects DOCUMENTS Files Folder",
       "Define Documents Folder ", "Documents folder defined"},
      {"FontFP", "FONTS FILES   : ", "Define Current Folder as Projects FONT FILES Folder",
       "Define Fonts Folder ", "Fonts folder defined"},
      {"tfp1", "TOUCH PANEL : ", "Define Current Folder as Projects TOUCH PANEL Files Folder",
       "Define Touch Folder ", "Touch Panel folder defined"},
      {"bfpa", "BATCH FILES : ", "Define Current Folder as Projects BATCH FILES Folder",
       "Define Batch Folder ", "Batch Processings folder defined"},
  };
  return kInfo[static_cast<int>(role)];
}

QString& FolderOf(settings::Settings& settings, FolderRole role) {
  settings::FolderSettings& f = settings.folder;
  switch (role) {
    case FolderRole::Graphics:
      return f.BFP;
    case FolderRole::Output:
      return f.OFP;
    case FolderRole::Documents:
      return f.PFP;
    case FolderRole::Fonts:
      return f.FontFP;
    case FolderRole::TouchPanel:
      return f.tfp1;
    case FolderRole::Batch:
      break;
  }
  return f.bfpa;
}

bool IsDirectoryWriteable(const QString& folder) {
  const QString probe = QDir(folder).filePath(QStringLiteral("chk.tmp"));
  QFile file(probe);
  if (!QFileInfo(folder).isDir() || !file.open(QIODevice::WriteOnly)) return false;
  file.close();
  return QFile::remove(probe);
}

bool DefineProjectFolder(AppState& state, Services& services, FolderRole role,
                         const QString& folder) {
  const FolderRoleInfo& info = Info(role);
  state.log.Laction = QString::fromLatin1(info.breadcrumb);
  if (!IsDirectoryWriteable(folder)) {
    Tell(state, services, folder + QStringLiteral(" cannot be defined : Access denied ! "),
         QStringLiteral("Error"), DialogType::Error);
    return false;
  }
  FolderOf(state.settings, role) = QDir::cleanPath(folder);
  state.log.StatusBarAndLog(QString::fromLatin1(info.logLine));
  return true;
}

QString FileTypeDescription(const QString& path, bool isFolder) {
  if (isFolder) return QStringLiteral("DIRECTORY");
  static const struct {
    const char* extension;
    const char* description;
  } kTypes[] = {
      {".GVS", "Vantorelle Vectors"},   {".BAK", "Source File Backup"},
      {".BIN", "Binary File"},          {".HEX", "HEX File"},
      {".TIF", "TIF Graphic"},          {".TIFF", "TIFF Graphic"},
      {".TSC", "Touch Panel Script"},   {".FSC", "Font Script"},
      {".EFF", "Editable Font Script"}, {".SPP", "Batch Processing File"},
      {".RTF", "RTF Document"},         {".LCD", "Vantorelle Project"},
      {".PAL", "Color Palette"},
  };
  const QString extension = UpperExtension(path);
  for (const auto& t : kTypes) {
    if (extension == QLatin1String(t.extension)) return QString::fromLatin1(t.description);
  }
  return QStringLiteral("Fichier ") + extension;
}

LoadDispatch Loadfile(AppState& state, Services& services, const QString& path, bool isFolder) {
  state.log.StatusBarAndLog(QStringLiteral("File : ") + path);
  if (isFolder) return {LoadTarget::Folder, {}};
  const QString extension = UpperExtension(path);
  if (extension == QLatin1String(".BMP")) {
    if (!Head(path, 2).startsWith("BM")) {
      Tell(state, services, QStringLiteral("This is not a valid bitmap file !\r"),
           QStringLiteral("Bitmap file format check failed"), DialogType::Error);
      return {};
    }
    return {LoadTarget::Bitmap, QStringLiteral("Load BMP")};
  }
  if (extension == QLatin1String(".JPG") || extension == QLatin1String(".JPEG")) {
    if (!Head(path, 3).startsWith("\xFF\xD8\xFF")) {
      Tell(state, services, QStringLiteral("This is not a valid Jpeg file !\r"),
           QStringLiteral("JPG file format check failed"), DialogType::Error);
      return {};
    }
    return {LoadTarget::Jpeg, QStringLiteral("Load JPG")};
  }
  if (extension == QLatin1String(".GIF")) {
    if (state.modes.AnimationActive) {
      const int answer = MessageDlgA(
          state, services.dialogs,
          QStringLiteral(" An animation is already open ! Close current animation before to "
                         "load another GIF ? "),
          QStringLiteral("Loading another GIF"), 0, Buttons::Yes | Buttons::No,
          DialogType::Confirmation);
      if (answer != platform::Answer::Yes) return {};
    }
    return {LoadTarget::Gif, {}};
  }
  static const struct {
    const char* extension;
    LoadTarget target;
    const char* log;
  } kPlain[] = {
      {".SPP", LoadTarget::Batch, ""},        {".FSC", LoadTarget::FontScript, ""},
      {".TSC", LoadTarget::TouchScript, ""},  {".SVG", LoadTarget::Svg, ""},
      {".PNG", LoadTarget::Png, "Load PNG"},  {".GVS", LoadTarget::VectorScript, ""},
      {".TIF", LoadTarget::Tiff, "Load TIF"}, {".TIFF", LoadTarget::Tiff, "Load TIF"},
  };
  for (const auto& p : kPlain) {
    if (extension == QLatin1String(p.extension)) {
      return {p.target, QString::fromLatin1(p.log)};
    }
  }
  return {};
}

bool CheckTextSaveExtension(AppState& state, Services& services, const QString& extension) {
  static const QStringList kAllowed = {
      QStringLiteral(".H"),   QStringLiteral(".C"),   QStringLiteral(".BAS"),
      QStringLiteral(".ASM"), QStringLiteral(".PAS"), QStringLiteral(".TXT"),
      QStringLiteral(".RTF"), QStringLiteral(".HEX"), QStringLiteral(".BIN"),
      QStringLiteral(".EFF"), QStringLiteral(".SPP"), QStringLiteral(".GIF"),
      QStringLiteral(".FIE"), QStringLiteral(".GVS")};
  QString e = extension.trimmed().toUpper();
  if (!e.startsWith(QLatin1Char('.'))) e.prepend(QLatin1Char('.'));
  if (kAllowed.contains(e)) return true;
  Tell(state, services,
       QStringLiteral("File Ext can only be one of these : H,C,BAS,ASM,TXT or RTF ! "),
       QStringLiteral("Error"), DialogType::Error);
  return false;
}

bool CheckGraphicSaveExtension(AppState& state, Services& services, const QString& extension) {
  QString e = extension.trimmed().toUpper();
  if (!e.startsWith(QLatin1Char('.'))) e.prepend(QLatin1Char('.'));
  if (e == QLatin1String(".BMP") || e == QLatin1String(".PNG") || e == QLatin1String(".JPG")) {
    return true;
  }
  Tell(state, services, QStringLiteral("File Ext can only be one of these : .BMP .PNG or .JPG"),
       QStringLiteral("Error"), DialogType::Error);
  return false;
}

QString SaveFolderFor(const settings::Settings& settings, const QString& extension) {
  QString e = extension.trimmed().toUpper();
  if (!e.startsWith(QLatin1Char('.'))) e.prepend(QLatin1Char('.'));
  const settings::FolderSettings& f = settings.folder;
  if (e == QLatin1String(".BMP") || e == QLatin1String(".PNG") || e == QLatin1String(".JPG") ||
      e == QLatin1String(".GIF")) {
    return f.BFP;
  }
  if (e == QLatin1String(".RTF") || e == QLatin1String(".GVS")) return f.PFP;
  if (e == QLatin1String(".EFF") || e == QLatin1String(".FSC")) return f.FontFP;
  if (e == QLatin1String(".TSC")) return f.tfp1;
  if (e == QLatin1String(".SPP")) return f.bfpa;
  return f.OFP;
}

}  // namespace vt::app
