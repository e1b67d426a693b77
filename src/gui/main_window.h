// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>
#include <memory>

#include "app/state.h"

class QAction;
class QLabel;
class QScrollArea;
class QTimer;

namespace vt::gui {

class CanvasView;
class LogWindow;

/// The main window: menus, the Work Canvas in the middle, the log docked below and the status
/// bar. It owns the application state of its run and starts and ends the run: StartUp while it is
/// built, ShutDown when it closes. Commands live in the core; the window only calls them and
/// refreshes its views afterwards.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  struct Options {
    /// Start with the log window hidden (a non-empty first command-line argument).
    bool hideLogWindow = false;
  };

  /// Runs on the desktop: Qt message boxes over this window, the user's own folders, the system
  /// clock.
  explicit MainWindow(Options options, QWidget* parent = nullptr);
  /// Runs on services the caller provides and keeps alive longer than the window.
  MainWindow(app::Services& services, Options options, QWidget* parent = nullptr);
  ~MainWindow() override;

  /// "Vantorelle" and the version, as the title bar shows it.
  static QString Title();

  app::AppState& State() { return state_; }
  LogWindow* LogWindowForm() const { return logWindow_; }
  CanvasView* Canvas() const { return canvasView_; }
  /// Windows > Hide Log Window / Show Log Window.
  QAction* HideLogWindowAction() const { return hideLogWindowAction_; }
  /// The status bar text: the last status the log was given.
  QString StatusText() const;
  /// True once the run has ended: ShutDown ran (only ever once), or a failure terminated it.
  bool IsShutDown() const { return shutDown_; }
  /// True when a failure ended the run (the exception handler said so); the window is closed
  /// and nothing was saved.
  bool IsTerminated() const { return terminated_; }

  /// Brings the canvas, the status bar and the log window up to date with the state. Every
  /// command ends with it.
  void Refresh();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  struct DesktopServices;
  MainWindow(std::unique_ptr<DesktopServices> desktop, app::Services* services, Options options,
             QWidget* parent);

  void BuildMenus();
  /// Runs a menu command: its caption goes to the log first, what it throws goes to the
  /// exception handler, and the views follow the state afterwards.
  template <typename Command>
  void RunCommand(const QString& caption, Command&& command);

  /// Ends the run at once, without ShutDown.
  void Terminate();
  void FileExit1Execute();
  void HideLogWindow1Click();
  /// The toggle says what it will do: hide a visible log window, show a hidden one.
  void UpdateLogWindowCaption();
  /// Status and log only; the canvas repaints on commands.
  void RefreshText();

  std::unique_ptr<DesktopServices> desktop_;
  app::Services& services_;
  app::AppState state_;
  bool shutDown_ = false;
  bool terminated_ = false;

  CanvasView* canvasView_ = nullptr;
  QScrollArea* canvasArea_ = nullptr;
  LogWindow* logWindow_ = nullptr;
  QAction* hideLogWindowAction_ = nullptr;
  QLabel* statusLabel_ = nullptr;
  QLabel* sizeLabel_ = nullptr;
  QTimer* logTimer_ = nullptr;
};

}  // namespace vt::gui
