// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QMainWindow>
#include <functional>
#include <memory>
#include <vector>

#include "app/export_driver.h"
#include "app/state.h"
#include "gui/commands.h"

class QAction;
class QActionGroup;
class QDockWidget;
class QLabel;
class QMenu;
class QProgressBar;
class QScrollArea;
class QStackedWidget;
class QTabWidget;
class QTimer;
class QToolBar;

namespace vt::app {
class SingleInstance;
}

namespace vt::gui {

class BatchPanel;
class CanvasView;
class Explorer;
class EditorTabs;
class ExportDialog;
class GraphicPreviewDialog;
class LogWindow;
class SettingsPanel;
class ThresholdTool;

/// The main window: the ribbon of ten pages and the main menu (both built from the command
/// table, CommandTable()), the Work Canvas, the text and hex editors, the output settings panel,
/// the log docked below and the status bar. It owns the
/// application state of its run and starts and ends the run. Commands live in the core; the
/// window only calls them and refreshes its views afterwards.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  struct Options {
    /// Start with the log window hidden (a non-empty first command-line argument).
    bool hideLogWindow = false;
  };

  /// Runs on the desktop: Qt message boxes over this window, the user's own folders, the system
  /// clock, the Escape key.
  explicit MainWindow(Options options, QWidget* parent = nullptr);
  /// Runs on services the caller provides and keeps alive longer than the window.
  MainWindow(app::Services& services, Options options, QWidget* parent = nullptr);
  ~MainWindow() override;

  /// "Vantorelle" and the version, as the title bar shows it.
  static QString Title();
  /// The text of a command whose work is not in this version.
  static QString NotAvailableText() { return QStringLiteral("Not available yet"); }

  app::AppState& State() { return state_; }
  app::Services& Services() { return services_; }
  LogWindow* LogWindowForm() const { return logWindow_; }
  CanvasView* Canvas() const { return canvasView_; }
  EditorTabs* Editors() const { return editors_; }
  SettingsPanel* Settings() const { return settingsPanel_; }
  Explorer* ProjectsExplorer() const { return explorer_; }
  /// The dock holding the projects explorer.
  QDockWidget* ExplorerDock() const { return explorerDock_; }
  BatchPanel* Batches() const { return batchPanel_; }
  QTabWidget* Ribbon() const { return ribbon_; }
  /// Windows > Hide Log Window / Show Log Window.
  QAction* HideLogWindowAction() const { return hideLogWindowAction_; }
  /// The action of the command `id` of the command table, as the ribbon, the menus and the
  /// canvas tool bar show it; null when there is none.
  QAction* Command(const QString& id) const;
  /// Triggers the command `id` as a click on its menu item or button does. False when there is
  /// no such command or it is greyed.
  bool Trigger(const QString& id);
  /// The status bar text: the last status the log was given.
  QString StatusText() const;
  /// True once the run has ended: ShutDown ran (only ever once), or a failure terminated it.
  bool IsShutDown() const { return shutDown_; }
  /// True when a failure or a second instance ended the run; nothing was saved.
  bool IsTerminated() const { return terminated_; }

  /// Loads a picture file onto the Work Canvas as the floating layer (the core's load: mode
  /// gate, size question, colour check; in monochrome the threshold tool opens when needed).
  void LoadPicture(const QString& path);
  /// The threshold tool over the canvas; shown in place of the canvas tool bar while a layer
  /// waits for its conversion.
  ThresholdTool* Threshold() const { return thresholdTool_; }
  /// The canvas tool bar: paste, undo, redo and the Dithering menu.
  QToolBar* CanvasToolBar() const { return canvasToolBar_; }
  /// True when the threshold tool stands in place of the canvas tool bar.
  bool ThresholdToolShown() const;
  /// "Load Graphic with Preview": the preview dialog, then its import. `dialogShown` lets a
  /// caller look at or drive the dialog while it is up.
  void LoadGraphicPreviewGlowButtonClick();
  /// "Load Graphic Dialog": a picture file chosen by the user, loaded.
  void LoadGraphicToolButtonClick();
  /// "Define Artwork Name": the name of the artwork and of the output, asked of the user.
  void DefineArtworkToolbuttonClick();
  /// "Export Work Canvas to Data": the export dialog, then the export.
  void ConvertToDataToolButtonClick();
  /// Windows > Hide Log Window / Show Log Window.
  void HideLogWindow1Click();
  /// File > Exit: the stop sequence; the window closes when it lets the run end.
  void FileExit1Click();
  /// File > Recent Files, as it opens: one item per recent file, each opening its file.
  void FillRecentFilesMenu(QMenu& menu);
  std::function<void(GraphicPreviewDialog&)> dialogShown;
  /// The export dialog as the next export would open it.
  std::unique_ptr<ExportDialog> MakeExportDialog();
  /// Lets a caller look at or drive the export dialog while it is up.
  std::function<void(ExportDialog&)> exportDialogShown;

  /// The export after its dialog: the driver with `request`, progress and Escape while it
  /// walks, then the text in the source editor under the output name.
  app::ExportResult RunExport(const app::ExportRequest& request, bool confirmed);

  /// Brings the views up to date with the state. Every command ends with it.
  void Refresh();

 Q_SIGNALS:
  /// Refresh has brought the views up to date.
  void refreshed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  struct DesktopServices;
  MainWindow(std::unique_ptr<DesktopServices> desktop, app::Services* services, Options options,
             QWidget* parent);

  /// A command of the table and its action.
  struct BuiltCommand {
    CommandRow row;
    QAction* action = nullptr;
  };

  void BuildRibbonAndMenus();
  /// The action of `row`, ready but not yet placed.
  QAction* MakeAction(const CommandRow& row, QHash<QString, QActionGroup*>& groups);
  /// The menu at `path` ("&File", "&Output+Settings/Pixel Mode"), made on first use.
  QMenu* MenuAt(const QString& path);
  void InstallShellHooks();
  void RestorePositions();
  /// Runs a command: its caption goes to the log first, what it throws goes to the exception
  /// handler, and the views follow the state afterwards.
  void RunCommand(const QString& caption, const std::function<void()>& command);

  void Terminate();
  void UpdateLogWindowCaption();
  void RefreshText();
  /// A recent file ("&1 path"): pictures load into the canvas.
  void MRUFClick(const QString& item);

  std::unique_ptr<DesktopServices> desktop_;
  app::Services& services_;
  app::AppState state_;
  std::unique_ptr<app::SingleInstance> instance_;
  bool shutDown_ = false;
  bool terminated_ = false;
  app::ExportRequest lastExport_;
  bool showingText_ = false;  ///< the editor is being given the document, not edited

  QTabWidget* ribbon_ = nullptr;
  CanvasView* canvasView_ = nullptr;
  QScrollArea* canvasArea_ = nullptr;
  QStackedWidget* canvasTools_ = nullptr;
  QToolBar* canvasToolBar_ = nullptr;
  ThresholdTool* thresholdTool_ = nullptr;
  EditorTabs* editors_ = nullptr;
  SettingsPanel* settingsPanel_ = nullptr;
  Explorer* explorer_ = nullptr;
  QDockWidget* explorerDock_ = nullptr;
  QHash<QString, QMenu*> menus_;
  BatchPanel* batchPanel_ = nullptr;
  LogWindow* logWindow_ = nullptr;
  QAction* hideLogWindowAction_ = nullptr;
  std::vector<BuiltCommand> commands_;
  QLabel* statusLabel_ = nullptr;
  QLabel* modeLabel_ = nullptr;
  QLabel* sizeLabel_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QTimer* logTimer_ = nullptr;
};

}  // namespace vt::gui
