// SPDX-License-Identifier: MIT
#include "gui/main_window.h"

#include <QAbstractItemView>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QBuffer>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/artwork.h"
#include "app/canvas_commands.h"
#include "app/graphic_import.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/shell_commands.h"
#include "app/startup.h"
#include "app/threshold_commands.h"
#include "gui/batch_panel.h"
#include "gui/canvas_view.h"
#include "gui/escape_poll.h"
#include "gui/exception_boundary.h"
#include "gui/explorer.h"
#include "gui/export_dialog.h"
#include "gui/log_window.h"
#include "gui/preview_dialog.h"
#include "gui/qt_dialogs.h"
#include "gui/qt_file_picker.h"
#include "gui/qt_text_prompt.h"
#include "gui/settings_panel.h"
#include "gui/source_editor.h"
#include "gui/threshold_tool.h"
#include "platform/clock.h"
#include "platform/file_picker.h"
#include "platform/posix/process_file_use.h"
#include "platform/qt/qt_folders.h"
#include "platform/text_prompt.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "util/atomic_write.h"

namespace vt::gui {
namespace {

const QString kHideLogWindow = QStringLiteral("Hide Log Window");
const QString kShowLogWindow = QStringLiteral("Show Log Window");
constexpr int kLogPollMs = 250;

/// Ribbon pages lay their commands out in two rows, column after column, so that the longest
/// page still fits a 1280 pixel screen.
constexpr int kRibbonRows = 2;

void AddToRibbonPage(QWidget* page, QAction* action) {
  auto* grid = static_cast<QGridLayout*>(page->layout());
  const int index = page->property("commands").toInt();
  page->setProperty("commands", index + 1);
  auto* button = new QToolButton;
  button->setDefaultAction(action);
  button->setAutoRaise(true);
  button->setToolButtonStyle(Qt::ToolButtonTextOnly);
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  grid->addWidget(button, index % kRibbonRows, index / kRibbonRows);
  grid->setColumnStretch(index / kRibbonRows + 1, 0);
}

}  // namespace

/// The platform of a desktop run. `services` refers to the members above it.
struct MainWindow::DesktopServices {
  QtDialogs dialogs;
  platform::QtFolders folders;
  platform::ProcessFileUse fileUse;
  EscapePoll escape;
  platform::SystemClock clock;
  QtFilePicker filePicker;
  QtTextPrompt textPrompt;
  app::Services services{dialogs, folders, fileUse, escape, clock, filePicker, textPrompt};
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
  if (desktop_) {
    desktop_->dialogs.SetParent(this);
    desktop_->filePicker.SetParent(this);
    desktop_->textPrompt.SetParent(this);
  }
  setWindowTitle(Title());
  setObjectName(QStringLiteral("MainForm"));

  // One run per user: the lock lies in the user's documents, where the init folder is too.
  instance_ = std::make_unique<app::SingleInstance>(services_.folders.Documents(),
                                                    QStringLiteral("Vantorelle"));
  bool started = false;
  if (RunAtTop(state_, services_.dialogs,
               [this, &started] { started = app::StartUp(state_, services_, instance_.get()); }) ==
          app::ExceptionOutcome::Terminate ||
      !started) {
    terminated_ = true;
    shutDown_ = true;
  }
  InstallShellHooks();

  const auto step = [this](int index) {
    state_.log.Laction = QString::fromLatin1(app::kFormCreationSteps[index]);
  };
  step(2);  // the Work Canvas
  canvasView_ = new CanvasView(state_.canvas);
  canvasArea_ = new QScrollArea;
  canvasArea_->setObjectName(QStringLiteral("ImageForm"));
  canvasArea_->setWidget(canvasView_);
  canvasArea_->setAlignment(Qt::AlignCenter);
  canvasArea_->setBackgroundRole(QPalette::Dark);
  connect(canvasView_, &CanvasView::layerMoved, this, [this] {
    state_.log.StatusBarAndLog(state_.canvas.Selection().Rect().StatusText());
    Refresh();
  });
  // Above the canvas: its tool bar, or the threshold tool while a layer waits for conversion.
  canvasToolBar_ = new QToolBar(QStringLiteral("Canvas"));
  canvasToolBar_->setObjectName(QStringLiteral("CanvasToolBar"));
  thresholdTool_ = new ThresholdTool(
      state_, services_, [this](const QString& caption, const std::function<void()>& work) {
        if (!caption.isEmpty()) return RunCommand(caption, work);
        if (RunAtTop(state_, services_.dialogs, work) == app::ExceptionOutcome::Terminate) {
          Terminate();
        }
        Refresh();
      });
  canvasTools_ = new QStackedWidget;
  canvasTools_->addWidget(canvasToolBar_);
  canvasTools_->addWidget(thresholdTool_);
  canvasTools_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  auto* canvasPanel = new QWidget;
  auto* canvasLayout = new QVBoxLayout(canvasPanel);
  canvasLayout->setContentsMargins(0, 0, 0, 0);
  canvasLayout->setSpacing(0);
  canvasLayout->addWidget(canvasTools_);
  canvasLayout->addWidget(canvasArea_, 1);
  step(1);  // the grids form: the output settings
  settingsPanel_ = new SettingsPanel(
      state_, services_,
      [this](const QString& caption, const std::function<void()>& work) {
        RunCommand(caption, work);
      },
      this);
  addDockWidget(Qt::RightDockWidgetArea, settingsPanel_);
  step(6);
  logWindow_ = new LogWindow(state_, services_, this);
  addDockWidget(Qt::BottomDockWidgetArea, logWindow_);
  resizeDocks({logWindow_}, {150}, Qt::Vertical);
  if (options.hideLogWindow) logWindow_->hide();
  step(7);
  editors_ = new EditorTabs;
  // What the user types is the document the export and the batches see.
  connect(editors_->Source(), &QPlainTextEdit::textChanged, this, [this] {
    if (!showingText_) state_.text.SetText(editors_->Source()->toPlainText());
  });
  auto* splitter = new QSplitter(Qt::Horizontal);
  splitter->addWidget(canvasPanel);
  splitter->addWidget(editors_);
  splitter->setStretchFactor(0, 2);  // the editor's lines are the wider
  splitter->setStretchFactor(1, 3);
  setCentralWidget(splitter);

  statusLabel_ = new QLabel(this);
  modeLabel_ = new QLabel(this);
  sizeLabel_ = new QLabel(this);
  progress_ = new QProgressBar(this);
  progress_->setMaximumWidth(220);
  progress_->setFormat(QStringLiteral("%p%  (Esc stops)"));
  progress_->hide();
  statusBar()->addWidget(statusLabel_, 1);
  statusBar()->addPermanentWidget(progress_);
  statusBar()->addPermanentWidget(modeLabel_);
  statusBar()->addPermanentWidget(sizeLabel_);
  if (desktop_) {
    desktop_->escape.onPoll = [this] {
      if (progress_->isVisible())
        progress_->setValue(qMin(progress_->maximum(), progress_->value() + 1));
    };
  }

  // The projects explorer shares the right side with the output settings.
  explorerDock_ = new QDockWidget(QStringLiteral("Projects Explorer"), this);
  explorerDock_->setObjectName(QStringLiteral("ExploForm"));
  explorer_ = new Explorer(state_, services_, explorerDock_);
  explorerDock_->setWidget(explorer_);
  addDockWidget(Qt::RightDockWidgetArea, explorerDock_);
  tabifyDockWidget(settingsPanel_, explorerDock_);
  settingsPanel_->raise();
  connect(explorer_, &Explorer::loadRequested, this,
          [this](const QString& path, app::LoadDispatch dispatch) {
            if (!dispatch.logLine.isEmpty()) state_.log.StatusBarAndLog(dispatch.logLine);
            switch (dispatch.target) {
              case app::LoadTarget::Bitmap:
              case app::LoadTarget::Png:
              case app::LoadTarget::Jpeg:
              case app::LoadTarget::Tiff:
              case app::LoadTarget::Gif:
              case app::LoadTarget::Svg:
                RunCommand(QStringLiteral("Load Graphic"), [this, path] { LoadPicture(path); });
                break;
              default:  // scripts and batches open once their tools exist
                state_.log.StatusBarAndLog(NotAvailableText());
                Refresh();
            }
          });
  // The batch panel beside them.
  batchPanel_ = new BatchPanel(
      state_, services_,
      [this](const QString& caption, const std::function<void()>& work) {
        RunCommand(caption, work);
      },
      this);
  addDockWidget(Qt::RightDockWidgetArea, batchPanel_);
  tabifyDockWidget(explorerDock_, batchPanel_);
  settingsPanel_->raise();
  connect(explorer_, &Explorer::projectActivated, this, [this] {
    settingsPanel_->Sync();
    Refresh();
  });

  BuildRibbonAndMenus();
  connect(logWindow_, &QDockWidget::visibilityChanged, this, [this] { UpdateLogWindowCaption(); });
  UpdateLogWindowCaption();
  RestorePositions();
  app::StartFinished(state_);

  logTimer_ = new QTimer(this);
  connect(logTimer_, &QTimer::timeout, this, [this] { RefreshText(); });
  logTimer_->start(kLogPollMs);
  Refresh();
}

MainWindow::~MainWindow() = default;

QString MainWindow::Title() { return QStringLiteral("Vantorelle" VT_VERSION_SUFFIX); }

QString MainWindow::StatusText() const { return statusLabel_->text(); }

QAction* MainWindow::Command(const QString& id) const {
  for (const BuiltCommand& command : commands_) {
    if (command.row.id == id) return command.action;
  }
  return nullptr;
}

bool MainWindow::Trigger(const QString& id) {
  QAction* action = Command(id);
  if (!action || !action->isEnabled()) return false;
  action->trigger();
  return true;
}

QMenu* MainWindow::MenuAt(const QString& path) {
  if (QMenu* menu = menus_.value(path)) return menu;
  const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
  QMenu* menu =
      slash < 0 ? menuBar()->addMenu(path) : MenuAt(path.left(slash))->addMenu(path.mid(slash + 1));
  menus_.insert(path, menu);
  return menu;
}

QAction* MainWindow::MakeAction(const CommandRow& row, QHash<QString, QActionGroup*>& groups) {
  if (row.opensMenu) {
    const QString path =
        row.menu.isEmpty() ? row.caption : row.menu + QLatin1Char('/') + row.caption;
    if (row.separatorBefore && !menus_.contains(path)) MenuAt(row.menu)->addSeparator();
    QMenu* menu = MenuAt(path);
    if (row.fill) {
      connect(menu, &QMenu::aboutToShow, this, [this, menu, fill = row.fill] {
        menu->clear();
        fill(*this, *menu);
      });
    }
    return menu->menuAction();
  }
  QAction* action = row.action ? row.action(*this) : new QAction(row.caption, this);
  action->setText(row.caption);
  if (!row.handler.isEmpty()) action->setObjectName(row.handler);
  if (!row.shortcut.isEmpty()) action->setShortcut(row.shortcut);
  if (!row.group.isEmpty()) {
    QActionGroup*& group = groups[row.group];
    if (!group) group = new QActionGroup(this);
    action->setCheckable(true);
    group->addAction(action);
  }
  if (row.checked) action->setChecked(row.checked(state_));
  if (row.availability == Availability::NotYet) {
    action->setEnabled(false);
    action->setToolTip(row.caption + QStringLiteral(" - ") + NotAvailableText());
  }
  if (row.run && row.runsAlone) {
    connect(action, &QAction::triggered, this, [this, run = row.run] { run(*this); });
  } else if (row.run) {
    // The caption the command has when it runs: the log window's changes with the window.
    connect(action, &QAction::triggered, this, [this, action, run = row.run] {
      RunCommand(action->text(), [this, &run] { run(*this); });
    });
  }
  return action;
}

void MainWindow::BuildRibbonAndMenus() {
  ribbon_ = new QTabWidget;
  ribbon_->setObjectName(QStringLiteral("ToolBarPager"));
  ribbon_->setDocumentMode(true);
  for (const QString& page : RibbonPageCaptions()) {
    auto* widget = new QWidget;
    auto* grid = new QGridLayout(widget);
    grid->setContentsMargins(4, 2, 4, 2);
    grid->setSpacing(0);
    grid->setColumnStretch(64, 1);  // the commands keep to the left
    ribbon_->addTab(widget, page);
  }
  // The shared file list: recent files, or the files of the page's own kind once those tools
  // exist. Its caption follows the page (ToolBarPagerChange).
  auto* files = new QComboBox;
  files->setObjectName(QStringLiteral("FilesCombo"));
  files->setMinimumContentsLength(24);
  files->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  ribbon_->setCornerWidget(files, Qt::TopRightCorner);
  const auto fillFiles = [this, files](int page) {
    files->clear();
    const QStringList captions = app::FileListCaptions(static_cast<app::RibbonPage>(page));
    files->addItem(captions.join(QStringLiteral("  ")));
    if (captions.first() == QStringLiteral("Recent Files >")) {
      for (const QString& item : app::UpdateMRUFs(state_))
        files->addItem(app::MRUFPath(item), item);
    }
  };
  connect(ribbon_, &QTabWidget::currentChanged, this, fillFiles);
  connect(files, &QComboBox::activated, this, [this, files](int index) {
    const QString item = files->itemData(index).toString();
    files->setCurrentIndex(0);
    if (!item.isEmpty()) {
      RunCommand(QStringLiteral("Recent combo click"), [this, item] { MRUFClick(item); });
    }
  });
  fillFiles(0);
  connect(this, &MainWindow::refreshed, files, [files, fillFiles, this] {
    if (!files->view()->isVisible()) fillFiles(ribbon_->currentIndex());
  });
  auto* ribbonBar = new QToolBar(QStringLiteral("Ribbon"), this);
  ribbonBar->setObjectName(QStringLiteral("Ribbon"));
  ribbonBar->setMovable(false);
  ribbonBar->addWidget(ribbon_);
  addToolBar(Qt::TopToolBarArea, ribbonBar);

  // The commands, each into its menu, onto its ribbon page and its tool bar.
  QHash<QString, QActionGroup*> groups;
  std::vector<QList<QAction*>> pages(ribbon_->count());
  std::vector<qsizetype> leaders(ribbon_->count(), 0);
  for (const CommandRow& row : CommandTable()) {
    QAction* action = MakeAction(row, groups);
    commands_.push_back({row, action});
    if (!row.menu.isEmpty() && !row.opensMenu) {
      QMenu* menu = MenuAt(row.menu);
      if (row.separatorBefore) menu->addSeparator();
      menu->addAction(action);
    }
    if (row.page) {
      const auto page = static_cast<std::size_t>(*row.page);
      pages[page].insert(row.leadsPage ? leaders[page]++ : pages[page].size(), action);
    }
    if (row.toolBar) {
      canvasToolBar_->addAction(action);
      if (row.opensMenu) {
        if (auto* button = qobject_cast<QToolButton*>(canvasToolBar_->widgetForAction(action))) {
          button->setPopupMode(QToolButton::InstantPopup);
        }
      } else {
        addAction(action);  // its shortcut works while the threshold tool hides the tool bar
      }
    }
  }
  for (std::size_t page = 0; page < pages.size(); ++page) {
    for (QAction* action : pages[page]) AddToRibbonPage(ribbon_->widget(int(page)), action);
  }
  hideLogWindowAction_ = Command(QStringLiteral("windows.logWindow"));
  connect(logWindow_->SaveLogAction(), &QAction::triggered, Command(QStringLiteral("file.saveLog")),
          &QAction::trigger);

  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] {
    RunAtTop(state_, services_.dialogs, [this] { app::EscapeSelection(state_); });
    Refresh();
  });
}

void MainWindow::InstallShellHooks() {
  state_.shellHooks.saveArtwork = [](app::AppState& state, app::Services& services) {
    return app::SaveArtworkButtonClick(state, services);
  };
  state_.shellHooks.formPositions = [this](app::AppState& state) {
    settings::WindowLayoutSettings& layout = state.settings.layout;
    layout.mft = QString::number(y());
    layout.mfl = QString::number(x());
    layout.mfw = width();
    layout.mfh = height();
    layout.MainWs = !isMinimized() && !isMaximized();  // normal state: restored as it stands
  };
  state_.shellHooks.closeForms = [this](app::AppState&) {
    settingsPanel_->close();
    canvasArea_->hide();
  };
}

void MainWindow::RestorePositions() {
  const settings::WindowLayoutSettings& layout = state_.settings.layout;
  bool topOk = false, leftOk = false;
  const int top = layout.mft.toInt(&topOk);
  const int left = layout.mfl.toInt(&leftOk);
  if (!topOk || !leftOk) return;  // never saved: the platform places the window
  move(left, qMax(0, top));
  resize(qMax(640, layout.mfw), qMax(90, layout.mfh));
}

void MainWindow::RunCommand(const QString& caption, const std::function<void()>& command) {
  state_.log.StatusBarAndLog(caption);
  if (RunAtTop(state_, services_.dialogs, command) == app::ExceptionOutcome::Terminate) {
    Terminate();
  }
  Refresh();
}

void MainWindow::Terminate() {
  terminated_ = true;
  shutDown_ = true;
  logTimer_->stop();
  close();
  QCoreApplication::exit(1);
}

void MainWindow::FileExit1Click() {
  bool ends = false;
  RunAtTop(state_, services_.dialogs,
           [this, &ends] { ends = app::FileExit1Execute(state_, services_); });
  Refresh();
  if (ends) {
    shutDown_ = true;
    close();
  }
}

void MainWindow::FillRecentFilesMenu(QMenu& menu) {
  for (const QString& item : app::UpdateMRUFs(state_)) {
    connect(menu.addAction(item), &QAction::triggered, this, [this, item] {
      RunCommand(QStringLiteral("Recent combo click"), [this, item] { MRUFClick(item); });
    });
  }
}

void MainWindow::HideLogWindow1Click() {
  logWindow_->setVisible(logWindow_->isHidden());
  UpdateLogWindowCaption();
}

void MainWindow::UpdateLogWindowCaption() {
  hideLogWindowAction_->setText(logWindow_->isHidden() ? kShowLogWindow : kHideLogWindow);
}

void MainWindow::LoadGraphicToolButtonClick() {
  const std::optional<QString> path = services_.filePicker.OpenFile(
      QStringLiteral("Load Graphic"), services_.folders.Pictures(),
      {QStringLiteral("Pictures (*.bmp *.png *.jpg *.jpeg *.gif *.tif *.tiff *.ico *.svg)")});
  if (path) LoadPicture(*path);
}

void MainWindow::LoadPicture(const QString& path) {
  app::LoadGraphicFile(state_, services_, path);
  Refresh();
}

void MainWindow::LoadGraphicPreviewGlowButtonClick() {
  GraphicPreviewDialog dialog(state_, services_, this);
  QTimer::singleShot(0, &dialog, [this, &dialog] {
    if (dialogShown) dialogShown(dialog);
  });
  if (dialog.exec() != QDialog::Accepted) return;
  app::ImportGraphicPreview(state_, services_, dialog.Preview());
}

bool MainWindow::ThresholdToolShown() const {
  return canvasTools_->currentWidget() == thresholdTool_;
}

void MainWindow::MRUFClick(const QString& item) {
  const QString path = app::MRUFPath(item);
  const app::RecentFileAction action = app::RecentFileActionFor(path, state_.settings.output.fexts);
  // A picture's load runs the mode gate itself; asking twice would ask the user twice.
  if (action != app::RecentFileAction::OpenPicture && app::CheckMode(state_, services_, 0)) return;
  state_.log.StatusBarAndLog(QStringLiteral("Recent Files:") + path);
  if (action == app::RecentFileAction::OpenPicture) {
    LoadPicture(path);
  } else {  // sources, hex files, fonts and scripts open once their tools exist
    state_.log.StatusBarAndLog(NotAvailableText());
  }
}

void MainWindow::DefineArtworkToolbuttonClick() {
  const std::optional<QString> name =
      services_.textPrompt.Ask({QStringLiteral("Define Artwork Name"),
                                QStringLiteral("Artwork name"), state_.settings.output.nbmfn});
  if (!name || name->trimmed().isEmpty()) return;
  state_.settings.output.nbmfn = name->trimmed();
  app::defineOutputFileName(state_);  // UpdateOutputFilename
}

std::unique_ptr<ExportDialog> MainWindow::MakeExportDialog() {
  settings::WindowLayoutSettings& layout = state_.settings.layout;
  if (layout.EXLE == 0) {
    layout.EXLE = 100;
    layout.EXTO = 50;
  }
  auto dialog = std::make_unique<ExportDialog>(app::FillExportDialog(state_, lastExport_), this);
  dialog->move(layout.EXLE, layout.EXTO);
  return dialog;
}

void MainWindow::ConvertToDataToolButtonClick() {
  // No mode gate here: the driver turns the command into a font or touch conversion itself.
  std::unique_ptr<ExportDialog> dialog = MakeExportDialog();
  if (exportDialogShown) {
    QTimer::singleShot(0, dialog.get(), [this, shown = dialog.get()] {
      if (exportDialogShown) exportDialogShown(*shown);
    });
  }
  const bool confirmed = dialog->exec() == QDialog::Accepted;
  state_.settings.layout.EXLE = dialog->x();
  state_.settings.layout.EXTO = dialog->y();
  const app::ExportRequest request = dialog->Request();
  dialog.reset();
  RunExport(request, confirmed);
}

app::ExportResult MainWindow::RunExport(const app::ExportRequest& request, bool confirmed) {
  lastExport_ = request;

  // The walk polls Escape and pumps events: nothing else may start meanwhile.
  menuBar()->setEnabled(false);
  ribbon_->setEnabled(false);
  progress_->setRange(
      0, qMax(1, static_cast<int>(state_.settings.display.GWI * state_.settings.display.GHI /
                                  settings::PixelsPerByte(state_.settings)) +
                     1));
  progress_->setValue(0);
  progress_->setVisible(confirmed);
  QApplication::setOverrideCursor(Qt::WaitCursor);
  state_.modes.ExportRunning = true;
  const app::ExportResult result = [&] {
    struct Restore {
      MainWindow* w;
      ~Restore() {
        w->state_.modes.ExportRunning = false;
        QApplication::restoreOverrideCursor();
        w->progress_->hide();
        w->menuBar()->setEnabled(true);
        w->ribbon_->setEnabled(true);
      }
    } restore{this};
    return app::EncodeButtonClick(state_, services_, request, confirmed);
  }();
  if (result.status == app::ExportStatus::Cancelled && confirmed) {
    state_.log.StatusBarAndLog(QStringLiteral("Export stopped (escape)"));
  }
  if (!result.OutputFileName.isEmpty()) {
    showingText_ = true;
    editors_->ShowSource(result.OutputFileName, state_.text.Text());
    showingText_ = false;
  }
  return result;
}

void MainWindow::Refresh() {
  canvasView_->Refresh();
  batchPanel_->Refresh();
  // A resize or a mode change may have dropped the layer under the tool: it goes with it.
  const bool threshold = state_.blackWhite.Visible && state_.canvas.Selection().IsFloating();
  canvasTools_->setCurrentWidget(threshold ? static_cast<QWidget*>(thresholdTool_)
                                           : canvasToolBar_);
  thresholdTool_->Sync();
  sizeLabel_->setText(
      QStringLiteral("%1 x %2").arg(state_.canvas.Width()).arg(state_.canvas.Height()));
  const auto mode = app::ActiveMode(state_.modes);
  modeLabel_->setText(mode ? QString::fromLatin1(app::Info(*mode).name) + QStringLiteral(" Mode")
                           : app::kNormalModeText);
  for (const BuiltCommand& command : commands_) {
    if (command.row.availability == Availability::WhilePixelModeMayChange) {
      command.action->setEnabled(!state_.modes.ModeChangeDisabled);
    }
    if (command.row.checked && command.action->isChecked() != command.row.checked(state_)) {
      command.action->setChecked(!command.action->isChecked());
    }
  }
  editors_->SetScriptTabName(state_.ThirdEditorTabName);
  if (!state_.modes.ExportRunning && editors_->Source()->document()->isEmpty()) {
    editors_->setTabText(0, state_.files.SourceFileName);
  }
  settingsPanel_->Sync();
  Q_EMIT refreshed();
  RefreshText();
}

void MainWindow::RefreshText() {
  const QString status = state_.log.StatusText();
  if (statusLabel_->text() != status) statusLabel_->setText(status);
  logWindow_->Refresh();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (shutDown_) {
    logTimer_->stop();
    event->accept();
    return;
  }
  bool allowed = false;
  RunAtTop(state_, services_.dialogs,
           [this, &allowed] { allowed = app::FormCloseQuery(state_, services_); });
  Refresh();
  if (!allowed && !state_.modes.QuitInProgress) {
    event->ignore();
    return;
  }
  shutDown_ = true;
  logTimer_->stop();
  event->accept();
}

}  // namespace vt::gui
