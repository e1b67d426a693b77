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
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QInputDialog>
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

#include "app/canvas_commands.h"
#include "app/display_commands.h"
#include "app/graphic_import.h"
#include "app/messages.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/palette_commands.h"
#include "app/pixel_mode_commands.h"
#include "app/shell_commands.h"
#include "app/startup.h"
#include "app/threshold_commands.h"
#include "canvas/color_reduction.h"
#include "canvas/graphic_loading.h"
#include "canvas/graphic_preview.h"
#include "canvas/threshold.h"
#include "gui/batch_panel.h"
#include "gui/canvas_view.h"
#include "gui/escape_poll.h"
#include "gui/exception_boundary.h"
#include "gui/explorer.h"
#include "gui/export_dialog.h"
#include "gui/log_window.h"
#include "gui/preview_dialog.h"
#include "gui/qt_dialogs.h"
#include "gui/settings_panel.h"
#include "gui/source_editor.h"
#include "gui/threshold_tool.h"
#include "platform/clock.h"
#include "platform/qt/qt_folders.h"
#include "settings/geometry.h"
#include "settings/pixel_modes.h"
#include "util/atomic_write.h"

namespace vt::gui {
namespace {

const QString kHideLogWindow = QStringLiteral("Hide Log Window");
const QString kShowLogWindow = QStringLiteral("Show Log Window");
constexpr int kLogPollMs = 250;

const char* const kRibbonPages[] = {
    "Windows",    "GLCD Graphic",     "Text+Hex Editors", "GLCD Vectors", "GLCD Fonts",
    "GLCD Touch", "Batch Processing", "Animation",        "Connectivity", "Color Palette"};

/// A command whose work is not in this version: shown, greyed, and saying so.
struct Planned {
  int page;
  const char* caption;
  const char* handler;
};
constexpr Planned kPlanned[] = {
    {1, "Export Work Canvas to Hex", "ConvertdataTOHExButton"},
    {1, "Export Selected Area to Data", "ExportanAreaoftheWorkCanvas1"},
    {1, "Text Field Editor", "extField1"},
    {1, "Rotated Text", "Rotatedtext1"},
    {2, "Load Source Into Editor", "LoadSourceToolButton"},
    {3, "Vectors to script", "AddvectorToolButton"},
    {3, "Run Vector Script", "RunVectorsButton"},
    {3, "Reload Last Vector Script", "ReloadRecentVecScriptButton"},
    {3, "Export Canvas to Text Editor", "ExportToVectorsButton"},
    {4, "Open Editable Font", "OpenEditableMenuButton"},
    {4, "Font Script to Editable Font", "TranslateFontMenuButton"},
    {4, "Reload Editable Font", "ReloadEFFMenuButton"},
    {4, "Editable From Scratch", "FromScratchMenuButton"},
    {4, "Export Font Script To Data", "ConvertFontMenuToolButton"},
    {5, "Current Canvas As Background", "WorkCanvasAsBackground1"},
    {5, "Export Regions To Data", "ConvertTouchToolButton"},
    {7, "Reload Recent Animation", "ReloadlastOpenedAnimationToolButton"},
    {8, "Connectivity Settings", "SerialSetup1"},
    {9, "Convert File to 256 colors", "Convertagraphicto256Colors1"},
    {9, "Convert File to 4096 colors", "ConvertaGraphicasfileto4096colors1"},
    {9, "Convert File to 65536 colors", "ConvertaGraphicFileto65536Colors1"},
    {9, "Convert File to 262144 colors", "ConvertaGraphictothe262144ColorsPalette"},
    {9, "Export RGB Palette to text file", "ExportPalettecolors3"},
    {9, "Load A Custom Color Palette", "LoadColorPalette"},
    {9, "Export RGB to Color Look Up table", "ExportColorPaletteAsArray3"},
};

/// Mode commands of the ribbon: page, caption, handler, the mode, and whether it enters.
struct ModeCommand {
  int page;
  const char* caption;
  const char* handler;
  app::SpecialMode mode;
  bool enters;
};
constexpr ModeCommand kModeCommands[] = {
    {3, "Enter Vector Design Mode", "VectorDesignToolButton", app::SpecialMode::VectorDesign, true},
    {3, "Exit Vector Mode", "ExitmenuButton", app::SpecialMode::VectorDesign, false},
    {4, "Enter Font Script Mode", "EnterFontToolButton", app::SpecialMode::FontScript, true},
    {4, "Exit Font Script Mode", "ExitmenuButton", app::SpecialMode::FontScript, false},
    {5, "Enter Touch Panel Mode", "Createtouchpanelscript1", app::SpecialMode::TouchPanel, true},
    {5, "Exit Touch Panel Mode", "ExitmenuButton", app::SpecialMode::TouchPanel, false},
    {6, "Exit Batch Edition", "ExitmenuButton", app::SpecialMode::BatchEdition, false},
    {7, "Enter Animation", "AnimationButton", app::SpecialMode::Animation, true},
    {7, "Exit Animation Mode", "ExitmenuButton", app::SpecialMode::Animation, false},
};

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
  platform::NoFileUse fileUse;
  EscapePoll escape;
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
  if (desktop_) desktop_->dialogs.SetParent(this);
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
  auto* explorerDock = new QDockWidget(QStringLiteral("Projects Explorer"), this);
  explorerDock->setObjectName(QStringLiteral("ExploForm"));
  explorer_ = new Explorer(state_, services_, explorerDock);
  explorerDock->setWidget(explorer_);
  addDockWidget(Qt::RightDockWidgetArea, explorerDock);
  tabifyDockWidget(settingsPanel_, explorerDock);
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
  tabifyDockWidget(explorerDock, batchPanel_);
  settingsPanel_->raise();
  connect(explorer_, &Explorer::projectActivated, this, [this] {
    settingsPanel_->Sync();
    Refresh();
  });

  BuildRibbonAndMenus();
  windowsMenu_->addAction(explorerDock->toggleViewAction());
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

QAction* MainWindow::Command(const QString& caption) const {
  for (QAction* action : commands_) {
    if (action->text() == caption) return action;
  }
  return nullptr;
}

QAction* MainWindow::AddCommand(const QString& caption, const char* handler,
                                std::function<void()> work) {
  auto* action = new QAction(caption, this);
  action->setObjectName(QString::fromLatin1(handler));
  if (work) {
    connect(action, &QAction::triggered, this,
            [this, caption, work = std::move(work)] { RunCommand(caption, work); });
  } else {
    action->setEnabled(false);
    action->setToolTip(caption + QStringLiteral(" - ") + NotAvailableText());
  }
  commands_ << action;
  return action;
}

void MainWindow::BuildRibbonAndMenus() {
  ribbon_ = new QTabWidget;
  ribbon_->setObjectName(QStringLiteral("ToolBarPager"));
  ribbon_->setDocumentMode(true);
  for (const char* page : kRibbonPages) {
    auto* widget = new QWidget;
    auto* grid = new QGridLayout(widget);
    grid->setContentsMargins(4, 2, 4, 2);
    grid->setSpacing(0);
    grid->setColumnStretch(64, 1);  // the commands keep to the left
    ribbon_->addTab(widget, QString::fromLatin1(page));
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
  const auto onPage = [this](int page, QAction* action) {
    AddToRibbonPage(ribbon_->widget(page), action);
    return action;
  };

  // Windows
  hideLogWindowAction_ = AddCommand(kHideLogWindow, "HideLogWindow1", nullptr);
  hideLogWindowAction_->setEnabled(true);
  hideLogWindowAction_->setToolTip(QString());
  connect(hideLogWindowAction_, &QAction::triggered, this, [this] { HideLogWindow1Click(); });
  onPage(0, hideLogWindowAction_);
  QAction* zoomIn = onPage(0, AddCommand(QStringLiteral("Zoom In"), "ZoomIn", [this] {
                             canvasView_->SetZoom(canvasView_->Zoom() * 2);
                           }));
  QAction* zoomOut = onPage(0, AddCommand(QStringLiteral("Zoom Out"), "ZoomOut", [this] {
                              canvasView_->SetZoom(canvasView_->Zoom() / 2);
                            }));
  QAction* grid = onPage(0, AddCommand(QStringLiteral("Pixel Grid"), "PixelGrid", [this] {
                           canvasView_->SetGridVisible(!canvasView_->GridVisible());
                         }));
  zoomIn->setShortcut(QKeySequence::ZoomIn);
  zoomOut->setShortcut(QKeySequence::ZoomOut);
  QAction* panel = onPage(0, settingsPanel_->toggleViewAction());
  panel->setText(QStringLiteral("Output Settings"));
  QAction* saveLog = onPage(0, AddCommand(QStringLiteral("Save Log to File"), "SaveLogtoFile1",
                                          [this] { logWindow_->SaveLogtoFile1Click(); }));
  connect(logWindow_->SaveLogAction(), &QAction::triggered, saveLog, &QAction::trigger);

  // GLCD Graphic
  QAction* exportData =
      onPage(1, AddCommand(QStringLiteral("Export Work Canvas to Data"), "ConvertToDataToolButton",
                           [this] { ConvertToDataToolButtonClick(); }));
  QAction* load =
      onPage(1, AddCommand(QStringLiteral("Load Graphic Dialog"), "LoadGraphicToolButton",
                           [this] { LoadGraphicToolButtonClick(); }));
  QAction* reload =
      onPage(1, AddCommand(QStringLiteral("Reload Last Canvas File"), "ReloadLastCanvasButton",
                           [this] { app::ReloadLastCanvasButtonClick(state_, services_); }));
  QAction* preview = onPage(
      1, AddCommand(QStringLiteral("Load Graphic with Preview"), "LoadGraphicPreviewGlowButton",
                    [this] { LoadGraphicPreviewGlowButtonClick(); }));
  QAction* artwork =
      onPage(1, AddCommand(QStringLiteral("Define Artwork Name"), "DefineArtworkToolbutton",
                           [this] { DefineArtworkToolbuttonClick(); }));
  for (const ModeCommand& m : kModeCommands) {
    const app::SpecialMode mode = m.mode;
    onPage(m.page, AddCommand(QString::fromLatin1(m.caption), m.handler,
                              m.enters ? std::function<void()>([this, mode] {
                                if (app::Info(mode).toggle) {
                                  app::ToggleMode(state_, services_, mode);
                                } else {
                                  app::EnterMode(state_, services_, mode);
                                }
                              })
                                       : std::function<void()>([this] {
                                           app::ExitmenuButtonClick(state_, services_);
                                         })));
  }
  // Batch Processing: the panel's commands, each run as a command by the panel.
  const struct {
    const char* caption;
    const char* handler;
    void (BatchPanel::*command)();
  } batchCommands[] = {
      {"Run Batch", "RunBatchToolButton", &BatchPanel::ApplyPostProButtonClick},
      {"Run Batch Multiple", "RunBatchonalldefinedfilesindefinedfolder1",
       &BatchPanel::RunMultipleButtonClick},
      {"Activate Current Batch", "ActivateBatchGlowButton",
       &BatchPanel::SelectActiveBatchButtonClick},
      {"Create New Batch", "CreateNewBarchGlowButton", &BatchPanel::CreateNewPPButtonClick},
      {"Edit Current Batch", "EditCurrentBatchGlowButton", &BatchPanel::EditPPButtonClick},
  };
  for (const auto& b : batchCommands) {
    auto* action = new QAction(QString::fromLatin1(b.caption), this);
    action->setObjectName(QString::fromLatin1(b.handler));
    connect(action, &QAction::triggered, this, [this, command = b.command] {
      batchPanel_->show();
      batchPanel_->raise();
      (batchPanel_->*command)();
    });
    commands_ << action;
    onPage(6, action);
  }
  QAction* listBatches = onPage(6, batchPanel_->toggleViewAction());
  listBatches->setText(QStringLiteral("List of all Batches"));
  listBatches->setObjectName(QStringLiteral("ListAllBatchesGlowButton"));
  for (const Planned& p : kPlanned) {
    onPage(p.page, AddCommand(QString::fromLatin1(p.caption), p.handler, nullptr));
  }

  // The main menu.
  QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
  file->addAction(load);
  file->addAction(reload);
  file->addAction(preview);
  file->addAction(artwork);
  file->addAction(exportData);
  QMenu* recent = file->addMenu(QStringLiteral("Recent Files"));
  connect(recent, &QMenu::aboutToShow, this, [this, recent] {
    recent->clear();
    for (const QString& item : app::UpdateMRUFs(state_)) {
      connect(recent->addAction(item), &QAction::triggered, this, [this, item] {
        RunCommand(QStringLiteral("Recent combo click"), [this, item] { MRUFClick(item); });
      });
    }
  });
  file->addSeparator();
  file->addAction(saveLog);
  file->addSeparator();
  QAction* exit = file->addAction(QStringLiteral("E&xit"));
  exit->setObjectName(QStringLiteral("FileExit1"));
  connect(exit, &QAction::triggered, this, [this] {
    bool ends = false;
    RunAtTop(state_, services_.dialogs,
             [this, &ends] { ends = app::FileExit1Execute(state_, services_); });
    Refresh();
    if (ends) {
      shutDown_ = true;
      close();
    }
  });

  QMenu* output = menuBar()->addMenu(QStringLiteral("&Output+Settings"));
  QMenu* modes = output->addMenu(QStringLiteral("Pixel Mode"));
  for (const settings::PixelModeInfo& info : settings::PixelModeTable()) {
    const settings::PixelMode mode = info.mode;
    QAction* action =
        AddCommand(QString::fromLatin1(info.menuCaption), "PixelModeMenu",
                   [this, mode] { app::PixelModeMenuClick(state_, services_, mode); });
    modes->addAction(action);
    pixelModeActions_ << action;
  }
  QMenu* widths = output->addMenu(QStringLiteral("Output Format"));
  const struct {
    const char* caption;
    const char* handler;
    convert::WordWidthChoice width;
  } widthCommands[] = {{"8 bits format", "N8bitformat", convert::WordWidthChoice::Bits8},
                       {"16 bits format", "N16bitformat", convert::WordWidthChoice::Bits16},
                       {"32 bits format", "N32bitformat", convert::WordWidthChoice::Bits32},
                       {"Binary file output", "HexOutput1", convert::WordWidthChoice::Binary},
                       {"Intel Hex output", "IntelHexOutput", convert::WordWidthChoice::IntelHex}};
  for (const auto& w : widthCommands) {
    const convert::WordWidthChoice width = w.width;
    widths->addAction(AddCommand(QString::fromLatin1(w.caption), w.handler, [this, width] {
      app::SelectOutputWidth(state_, services_, width);
    }));
  }
  for (const bool msbFirst : {true, false}) {
    output->addAction(
        AddCommand(settings::BitOrderCaption(msbFirst),
                   msbFirst ? "MostSignificantBitLeft" : "MostSignificantBitRight",
                   [this, msbFirst] { app::SelectBitOrder(state_, services_, msbFirst); }));
  }
  output->addSeparator();
  output->addAction(panel);
  output->addAction(AddCommand(QStringLiteral("Exit Special Mode"), "ExitSpecialMode1",
                               [this] { app::ExitSpecialMode1Click(state_, services_); }));

  // The canvas tool bar; its shortcuts work while the threshold tool stands in its place.
  QAction* paste = AddCommand(QStringLiteral("Paste Selection"), "PasteButton", [this] {
    app::DoPaste(state_, services_, app::BlackWhiteConversions(state_));
  });
  paste->setShortcut(QKeySequence::Paste);
  QAction* undo =
      AddCommand(QStringLiteral("Undo"), "UndoButton", [this] { app::UndoButtonClick(state_); });
  undo->setShortcut(QKeySequence::Undo);
  QAction* redo =
      AddCommand(QStringLiteral("Redo"), "RedoButton", [this] { app::RedoButtonClick(state_); });
  redo->setShortcut(QKeySequence::Redo);
  canvasToolBar_->addActions({paste, undo, redo});
  addActions({paste, undo, redo});
  QMenu* dithering = BuildDitheringMenu();
  menuBar()->addMenu(dithering);
  canvasToolBar_->addAction(dithering->menuAction());
  if (auto* button =
          qobject_cast<QToolButton*>(canvasToolBar_->widgetForAction(dithering->menuAction()))) {
    button->setPopupMode(QToolButton::InstantPopup);
  }
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] {
    RunAtTop(state_, services_.dialogs, [this] { app::EscapeSelection(state_); });
    Refresh();
  });

  QMenu* windows = menuBar()->addMenu(QStringLiteral("&Windows"));
  windowsMenu_ = windows;
  for (QAction* a : {hideLogWindowAction_, zoomIn, zoomOut, grid}) windows->addAction(a);
}

QMenu* MainWindow::BuildDitheringMenu() {
  auto* menu = new QMenu(QStringLiteral("&Dithering"), this);
  const struct {
    canvas::DitherMethod method;
    const char* handler;
  } methods[] = {{canvas::DitherMethod::FloydSteinberg, "FloydSteinberg"},
                 {canvas::DitherMethod::Nearest, "Nearest"},
                 {canvas::DitherMethod::Stucki, "Stucki"},
                 {canvas::DitherMethod::Sierra, "Sierra"},
                 {canvas::DitherMethod::JaJuNi, "JaJuNi"},
                 {canvas::DitherMethod::SteveArche, "SteveArche"},
                 {canvas::DitherMethod::Burkes, "Burkes"}};
  auto* methodGroup = new QActionGroup(menu);
  for (const auto& m : methods) {
    const canvas::DitherMethod method = m.method;
    QAction* action = AddCommand(canvas::DitherMethodCaption(method), m.handler,
                                 [this, method] { state_.blackWhite.Dither.method = method; });
    action->setCheckable(true);
    action->setChecked(state_.blackWhite.Dither.method == method);
    methodGroup->addAction(action);
    menu->addAction(action);
  }
  menu->addSeparator();
  auto* reductionGroup = new QActionGroup(menu);
  for (const auto& [reduction, handler] :
       {std::pair{canvas::DitherReduction::Monochrome, "MonochromeColorReduction"},
        std::pair{canvas::DitherReduction::GrayScale, "GrayscaleColorReduction"}}) {
    const canvas::DitherReduction chosen = reduction;
    QAction* action = AddCommand(canvas::DitherReductionCaption(chosen), handler,
                                 [this, chosen] { state_.blackWhite.Dither.reduction = chosen; });
    action->setCheckable(true);
    action->setChecked(state_.blackWhite.Dither.reduction == chosen);
    reductionGroup->addAction(action);
    menu->addAction(action);
  }
  menu->addSeparator();
  menu->addAction(AddCommand(QStringLiteral("Perform Dithering"),
                             "PerformDitheringParametersbelow1",
                             [this] { app::PerformDithering(state_, services_); }));
  menu->addAction(AddCommand(QStringLiteral("Convert Work Canvas to Black and White by Dithering"),
                             "ConvertWorkCanvastoBlackandWhitebyDithering1",
                             [this] { app::DitherWorkCanvas(state_, services_); }));
  return menu;
}

void MainWindow::InstallShellHooks() {
  state_.shellHooks.saveArtwork = [this](app::AppState&, app::Services&) { return SaveArtwork(); };
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

void MainWindow::HideLogWindow1Click() {
  RunCommand(hideLogWindowAction_->text(), [this] {
    logWindow_->setVisible(logWindow_->isHidden());
    UpdateLogWindowCaption();
  });
}

void MainWindow::UpdateLogWindowCaption() {
  hideLogWindowAction_->setText(logWindow_->isHidden() ? kShowLogWindow : kHideLogWindow);
}

void MainWindow::LoadGraphicToolButtonClick() {
  const QString path = QFileDialog::getOpenFileName(
      this, QStringLiteral("Load Graphic"), services_.folders.Pictures(),
      QStringLiteral("Pictures (*.bmp *.png *.jpg *.jpeg *.gif *.tif *.tiff *.ico *.svg)"));
  if (!path.isEmpty()) LoadPicture(path);
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
  bool ok = false;
  const QString name = QInputDialog::getText(this, QStringLiteral("Define Artwork Name"),
                                             QStringLiteral("Artwork name"), QLineEdit::Normal,
                                             state_.settings.output.nbmfn, &ok);
  if (!ok || name.trimmed().isEmpty()) return;
  state_.settings.output.nbmfn = name.trimmed();
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

bool MainWindow::SaveArtwork() {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  const QString name = state_.settings.output.nbmfn;
  const QString suffix =
      QFileInfo(name).suffix().isEmpty() ? QStringLiteral("bmp") : QFileInfo(name).suffix();
  if (!state_.canvas.Bitmap().save(&buffer, suffix.toLatin1().constData())) return false;
  const QString path = services_.folders.Pictures() + QLatin1Char('/') + name;
  if (!WriteFileAtomically(path, bytes).ok()) return false;
  state_.modes.ArtworkSaved = true;
  return true;
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
  for (QAction* action : pixelModeActions_) action->setEnabled(!state_.modes.ModeChangeDisabled);
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
