// SPDX-License-Identifier: MIT
#include "gui/main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMenuBar>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>

#include "app/startup.h"
#include "gui/canvas_view.h"
#include "gui/exception_boundary.h"
#include "gui/log_window.h"
#include "gui/qt_dialogs.h"
#include "platform/clock.h"
#include "platform/key_poll.h"
#include "platform/qt/qt_folders.h"

namespace vt::gui {
namespace {

const QString kHideLogWindow = QStringLiteral("Hide Log Window");
const QString kShowLogWindow = QStringLiteral("Show Log Window");

/// Lines logged while no command runs (inside a modal box, by a timer) reach the view this
/// often.
constexpr int kLogPollMs = 250;

}  // namespace

/// The platform of a desktop run. `services` refers to the members above it.
struct MainWindow::DesktopServices {
  QtDialogs dialogs;
  platform::QtFolders folders;
  platform::NoFileUse fileUse;
  platform::NoKeyPoll escape;
  platform::SystemClock clock;
  app::Services services{dialogs, folders, fileUse, escape, clock};
};

MainWindow::MainWindow(Options options, QWidget* parent)
    : MainWindow(std::make_unique<DesktopServices>(), nullptr, options, parent) {}

MainWindow::MainWindow(app::Services& services, Options options, QWidget* parent)
    : MainWindow(nullptr, &services, options, parent) {}

MainWindow::MainWindow(std::unique_ptr<DesktopServices> desktop, app::Services* services,
                       Options options, QWidget* parent)
    : QMainWindow(parent),
      desktop_(std::move(desktop)),
      services_(services ? *services : desktop_->services) {
  // The message boxes can only take the window as parent once it exists.
  if (desktop_) desktop_->dialogs.SetParent(this);
  setWindowTitle(Title());
  setObjectName(QStringLiteral("MainWindow"));

  if (RunAtTop(state_, services_.dialogs, [this] { app::StartUp(state_, services_); }) ==
      app::ExceptionOutcome::Terminate) {
    terminated_ = true;
    shutDown_ = true;
  }

  canvasView_ = new CanvasView(state_.canvas);
  canvasArea_ = new QScrollArea(this);
  canvasArea_->setObjectName(QStringLiteral("WorkCanvasArea"));
  canvasArea_->setWidget(canvasView_);
  canvasArea_->setAlignment(Qt::AlignCenter);
  canvasArea_->setBackgroundRole(QPalette::Dark);
  setCentralWidget(canvasArea_);

  logWindow_ = new LogWindow(state_, services_, this);
  addDockWidget(Qt::BottomDockWidgetArea, logWindow_);
  resizeDocks({logWindow_}, {200}, Qt::Vertical);
  if (options.hideLogWindow) logWindow_->hide();

  statusLabel_ = new QLabel(this);
  sizeLabel_ = new QLabel(this);
  statusBar()->addWidget(statusLabel_, 1);
  statusBar()->addPermanentWidget(sizeLabel_);

  BuildMenus();
  // The dock's own close box hides it too: the toggle follows whatever hid or showed it.
  connect(logWindow_, &QDockWidget::visibilityChanged, this, [this] { UpdateLogWindowCaption(); });
  UpdateLogWindowCaption();

  logTimer_ = new QTimer(this);
  connect(logTimer_, &QTimer::timeout, this, [this] { RefreshText(); });
  logTimer_->start(kLogPollMs);
  Refresh();
}

MainWindow::~MainWindow() = default;

QString MainWindow::Title() { return QStringLiteral("Vantorelle" VT_VERSION_SUFFIX); }

QString MainWindow::StatusText() const { return statusLabel_->text(); }

void MainWindow::BuildMenus() {
  QMenu* fileMenu = menuBar()->addMenu(QStringLiteral("&File"));
  QAction* exitAction = fileMenu->addAction(QStringLiteral("E&xit"));
  connect(exitAction, &QAction::triggered, this, [this] { FileExit1Execute(); });

  QMenu* windowsMenu = menuBar()->addMenu(QStringLiteral("&Windows"));
  hideLogWindowAction_ = windowsMenu->addAction(kHideLogWindow);
  hideLogWindowAction_->setObjectName(QStringLiteral("HideLogWindow1"));
  connect(hideLogWindowAction_, &QAction::triggered, this, [this] { HideLogWindow1Click(); });

  connect(logWindow_->SaveLogAction(), &QAction::triggered, this, [this] {
    RunCommand(QStringLiteral("Save Log to File"), [this] { logWindow_->SaveLogtoFile1Click(); });
  });
}

template <typename Command>
void MainWindow::RunCommand(const QString& caption, Command&& command) {
  state_.log.StatusBarAndLog(caption);
  const auto outcome = RunAtTop(state_, services_.dialogs, std::forward<Command>(command));
  if (outcome == app::ExceptionOutcome::Terminate) Terminate();
  Refresh();
}

void MainWindow::Terminate() {
  // The run ends at once: nothing is saved, as after a failure that leaves nothing to trust.
  terminated_ = true;
  shutDown_ = true;
  logTimer_->stop();
  close();
  QCoreApplication::exit(1);
}

void MainWindow::FileExit1Execute() {
  RunCommand(QStringLiteral("Quit Vantorelle Main Menu Item"), [] {});
  close();
}

void MainWindow::HideLogWindow1Click() {
  RunCommand(hideLogWindowAction_->text(), [this] {
    logWindow_->setVisible(logWindow_->isHidden());
    UpdateLogWindowCaption();
  });
}

void MainWindow::UpdateLogWindowCaption() {
  // isHidden() is true only when the dock itself was hidden, not while the window is minimised.
  hideLogWindowAction_->setText(logWindow_->isHidden() ? kShowLogWindow : kHideLogWindow);
}

void MainWindow::Refresh() {
  canvasView_->Refresh();
  sizeLabel_->setText(
      QStringLiteral("%1 x %2").arg(state_.canvas.Width()).arg(state_.canvas.Height()));
  RefreshText();
}

void MainWindow::RefreshText() {
  const QString status = state_.log.StatusText();
  if (statusLabel_->text() != status) statusLabel_->setText(status);
  logWindow_->Refresh();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!shutDown_) {
    shutDown_ = true;
    logTimer_->stop();
    // A failure while closing is the handler's to sort; the window closes all the same.
    RunAtTop(state_, services_.dialogs, [this] { app::ShutDown(state_, services_); });
  }
  event->accept();
}

}  // namespace vt::gui
