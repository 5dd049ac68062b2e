#include "ui/windows/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "core/app/simulated_marking.h"
#include "core/autosampler/autosampler_check.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/log_line.h"
#include "ui/platform/instrument_worker.h"
#include "ui/windows/autosampler_window.h"
#include "ui/windows/disclaimer_dialog.h"
#include "ui/windows/field_commits.h"
#include "ui/windows/intensity_window.h"
#include "ui/windows/method_form.h"
#include "ui/windows/run_window.h"
#include "ui/windows/setup_window.h"
#include "ui/windows/trend_window.h"
#include "ui/windows/watercell_window.h"

namespace zorvel::ui {

MainWindow::MainWindow(AppState& state, Operator& op, Clock& clock, Printer& printer,
                       QWidget* parent)
    : QMainWindow(parent),
      state_(state),
      op_(op),
      naming_(op),
      presenter_(state, naming_, clock, printer, *this),
      clock_(clock),
      printer_(printer) {
  setObjectName("MAIN");
  setWindowTitle("ZORVEL");
  buildMenus();
  setCentralWidget(buildMethodForm());
}

void MainWindow::buildMenus() {
  struct Item {
    MainMenu id;
    const char* caption;
    const char* name;
  };
  const auto add = [this](QMenu* menu, const Item& item) {
    QAction* action = menu->addAction(item.caption);
    action->setObjectName(item.name);
    actions_[item.id] = action;
    return action;
  };
  QMenu* file = menuBar()->addMenu("&File");
  file->setObjectName("FileMenu");
  add(file, {MainMenu::NewMethodFile, "&New Method File", "NewMethodFile"});
  add(file, {MainMenu::EditMethodFile, "&Edit Method File", "EditMethodFile"});
  add(file, {MainMenu::AppendDataFile, "&Append Data File", "AppendDataFile"});
  file->addSeparator();
  QAction* exit = add(file, {MainMenu::Exit, "E&xit", "Exit"});
  QMenu* machine = menuBar()->addMenu("&Machine");
  machine->setObjectName("MachineMenu");
  add(machine, {MainMenu::RunWatercell, "Run &Watercell", "RunWatercell"});
  add(machine, {MainMenu::IntensityCheck, "&Intensity Check", "IntensityCheck"});
  QAction* setup =
      add(machine, {MainMenu::SetupFluorimeter, "Setup &Fluorimeter", "SetupFluorimeter"});
  QMenu* controls = menuBar()->addMenu("&Controls");
  add(controls, {MainMenu::ShowExistingControls, "Show Existing Controls", "ShowExistControl"});
  add(controls, {MainMenu::QXMods, "QX Mods", "QXMods"});
  QMenu* help = menuBar()->addMenu("&Help");
  QAction* about = add(help, {MainMenu::About, "&About ZORVEL...", "About"});
  for (auto& [id, action] : actions_) action->setEnabled(presenter_.available(id));

  connect(exit, &QAction::triggered, this, [this] {
    stopping_ = true;
    presenter_.stopProgram();
  });
  connect(setup, &QAction::triggered, this, [this] { presenter_.setupFluorimeter(); });
  connect(actions_[MainMenu::NewMethodFile], &QAction::triggered, this,
          [this] { presenter_.newMethodFile(); });
  connect(actions_[MainMenu::EditMethodFile], &QAction::triggered, this,
          [this] { presenter_.editMethodFile(); });
  connect(actions_[MainMenu::AppendDataFile], &QAction::triggered, this,
          [this] { presenter_.appendDataFile(); });
  connect(actions_[MainMenu::RunWatercell], &QAction::triggered, this, [this] { openWaterCell(); });
  connect(actions_[MainMenu::ShowExistingControls], &QAction::triggered, this, [this] {
    if (checks_ != nullptr) ShowTrendWindow(checks_->snapshot(), op_, this);
  });
  connect(actions_[MainMenu::IntensityCheck], &QAction::triggered, this,
          [this] { openIntensityCheck(); });
  connect(about, &QAction::triggered, this, [this] { showAbout(); });
  presenter_.setAvailable(MainMenu::QXMods, true);
  actions_[MainMenu::QXMods]->setEnabled(true);
  connect(actions_[MainMenu::QXMods], &QAction::triggered, this,
          [this] { presenter_.methodEditor().toggleQXPanel(); });
}

QWidget* MainWindow::buildMethodForm() {
  auto* form = new QWidget;
  form->setObjectName("METHODFORM");
  currentFiles_ = new QGroupBox("Current Files");
  currentFiles_->setObjectName("CurrentFiles_Frame");
  methodLabel_ = new QLabel;
  methodLabel_->setObjectName("MethodFile_Label");
  dataLabel_ = new QLabel;
  dataLabel_->setObjectName("DataFile_Label");
  trayCaption_ = new QLabel("Autosampler Geometry File:");
  trayCaption_->setObjectName("TrayFile_Caption");
  trayLabel_ = new QLabel;
  trayLabel_->setObjectName("TrayFile_Label");
  auto* files = new QGridLayout(currentFiles_);
  files->addWidget(new QLabel("Method File:"), 0, 0);
  files->addWidget(methodLabel_, 0, 1);
  files->addWidget(new QLabel("Data File:"), 1, 0);
  files->addWidget(dataLabel_, 1, 1);
  files->addWidget(trayCaption_, 2, 0);
  files->addWidget(trayLabel_, 2, 1);
  medians_ = new QLabel;
  medians_->setObjectName("Medians_Label");
  medians_->setWordWrap(true);  // thirty colours' medians wrap rather than widen the window
  files->addWidget(new QLabel("Control Medians:"), 3, 0);
  files->addWidget(medians_, 3, 1);
  files->setColumnStretch(1, 1);

  form_ = new MethodForm(presenter_.methodEditor(), &naming_);
  cancel_ = new QPushButton("Ca&ncel");
  cancel_->setObjectName("CancelButton");
  connect(cancel_, &QPushButton::clicked, this, [this] { presenter_.cancelMethod(); });
  save_ = new QPushButton("&Save As");
  save_->setObjectName("Save");
  save_->setEnabled(false);
  // Both lead into a run with what the boxes show: an entry still being typed is committed
  // first, and a refused one stops them.
  form_->commits().onClick(save_, [this] { presenter_.save(); });
  ok_ = new QPushButton("&OK");
  ok_->setObjectName("OKButton");
  ok_->setEnabled(false);
  form_->commits().onClick(ok_, [this] { presenter_.okButton(); });

  auto* layout = new QVBoxLayout(form);
  layout->addWidget(currentFiles_);
  layout->addWidget(form_, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(save_);
  buttons->addWidget(ok_);
  buttons->addWidget(cancel_);
  layout->addLayout(buttons);
  form_->attachWindowControls(save_, ok_, methodLabel_, trayCaption_, trayLabel_);
  form_->watchKeys(form);
  presenter_.methodEditor().setView(form_);
  return form;
}

void MainWindow::setMethodFileLabel(const std::string& text) {
  methodLabel_->setText(QString::fromStdString(text));
}

void MainWindow::setDataFileLabel(const std::string& text) {
  dataLabel_->setText(QString::fromStdString(text));
}

void MainWindow::setTrayFile(const std::string& path, bool visible) {
  trayLabel_->setText(QString::fromStdString(path));
  trayLabel_->setVisible(visible);
  trayCaption_->setVisible(visible);
}

void MainWindow::trayLoaded(const std::string& path, bool visible) {
  setTrayFile(path, visible);
  // Positions past the arm's reach are sent clamped; the log says so once per loading. Before
  // start-up has made the log, start-up itself writes the note.
  const std::string note = TrayReachNote(state_.Tray, path);
  if (!note.empty() && !state_.LogPath.empty()) WriteLogEntry(state_.LogPath, clock_, note);
}

void MainWindow::setMenuEnabled(MainMenu item, bool enabled) {
  actions_.at(item)->setEnabled(enabled);
}

void MainWindow::setCurrentFilesVisible(bool visible) {
  currentFiles_->setVisible(visible);
}

void MainWindow::setMethodControlsEnabled(bool enabled) {
  cancel_->setEnabled(enabled);
}

void MainWindow::showDisclaimer() {
  if (!disclaimerEnabled_) return;
  DisclaimerDialog dialog(this);
  dialog.exec();
}

bool MainWindow::runSetupWindow() {
  SetupWindow window(
      state_, op_, [this](const std::string& path) { trayLoaded(path, state_.Prefs.AutoSampler); },
      this);
  window.exec();
  showSimulatedMarking();  // the ports of the instruments may have changed
  return !window.presenter().endRequested();
}

void MainWindow::closeAllWindows() {
  for (QWidget* w : QApplication::topLevelWidgets()) {
    if (w != this && w->isVisible()) w->close();
  }
  stopping_ = true;
  QMainWindow::close();
}

void MainWindow::showAbout() {
  QMessageBox box(QMessageBox::Information, "About ZORVEL",
                  QString("ZORVEL\nVersion %1.%2.%3\n\nControls the fluorimeter, the autosampler "
                          "arm and the dilutor, and records every kept reading.")
                      .arg(ZORVEL_VERSION_MAJOR)
                      .arg(ZORVEL_VERSION_MINOR)
                      .arg(ZORVEL_VERSION_PATCH),
                  QMessageBox::Ok, this);
  box.setObjectName("ABOUT");
  box.exec();
}

bool MainWindow::event(QEvent* event) {
  // The disclaimer is modal: show it once the activation itself has been handled. A desktop
  // without a window manager never activates a window, so being shown counts as well.
  const bool activation = event->type() == QEvent::WindowActivate || event->type() == QEvent::Show;
  if (activation && state_.FirstActivation && !activationQueued_) {
    activationQueued_ = true;
    QTimer::singleShot(0, this, [this] { presenter_.activated(); });
  }
  return QMainWindow::event(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!stopping_) {
    stopping_ = true;
    presenter_.closeBox();
  }
  event->accept();
}

void MainWindow::setInstruments(LineSource* lines) {
  lines_ = lines;
  // The method editor's "AS Setup" opens the autosampler window once there are lines for it.
  MethodEditor& editor = presenter_.methodEditor();
  editor.setAutosamplerWindowOpener(lines_ != nullptr
                                        ? std::function<void()>([this] { openAutosampler(); })
                                        : std::function<void()>());
  for (MainMenu item : {MainMenu::RunWatercell, MainMenu::IntensityCheck}) {
    presenter_.setAvailable(item, lines_ != nullptr);
    actions_.at(item)->setEnabled(presenter_.available(item));
  }
  // A run by autosampler starts once its settings pass the whole check; the run window then
  // opens the arm's and the dilutor's ports for its tray runs.
  presenter_.setAutosamplerLinkOpener([this] {
    return ValidateAutosamplerSettings(state_.Method.Autosampler, state_.Tray.TubeCount,
                                       state_.Links.StepsPerMicrolitre, state_.Steps, op_);
  });
  showSimulatedMarking();
}

void MainWindow::showSimulatedMarking() {
  const std::string marking = lines_ != nullptr ? lines_->simulatedMarking() : "";
  setWindowTitle(QString::fromStdString(MarkedTitle("ZORVEL", marking)));
}

void MainWindow::runBusy(std::function<void()> work, std::function<void()> done) {
  if (worker_ == nullptr) worker_ = new InstrumentWorker(this);
  const auto setBusy = [this](bool busy) {
    menuBar()->setEnabled(!busy);
    centralWidget()->setEnabled(!busy);
    if (busy) {
      QApplication::setOverrideCursor(Qt::BusyCursor);
    } else {
      QApplication::restoreOverrideCursor();
    }
  };
  setBusy(true);
  const bool started = worker_->start(std::move(work), [setBusy, done = std::move(done)] {
    setBusy(false);
    done();
  });
  if (!started) setBusy(false);
}

void MainWindow::showMedians(const std::vector<std::string>& medians) {
  QStringList shown;
  for (const auto& m : medians) shown << (m.empty() ? QString("-") : QString::fromStdString(m));
  medians_->setText(shown.join("  "));
}

void MainWindow::setQualityChecks(QualityChecks& checks) {
  checks_ = &checks;
  presenter_.setQualityChecks(checks, checks);
  presenter_.setAvailable(MainMenu::ShowExistingControls, true);
}

void MainWindow::setLaunchButtons(bool saveEnabled, bool okEnabled) {
  const bool canRun = lines_ != nullptr && presenter_.qualityChecks() != nullptr;
  save_->setEnabled(saveEnabled && canRun);
  ok_->setEnabled(okEnabled && canRun);
}

void MainWindow::openRunWindow(const RunSetup& setup) {
  if (lines_ == nullptr || presenter_.qualityChecks() == nullptr) return;
  const RunWindowServices services{state_,  op_,      clock_, printer_, *presenter_.qualityChecks(),
                                   checks_, notifier_};
  RunWindow* window = OpenRunWindow(this, services, setup, *lines_);
  if (window != nullptr) {
    connect(window, &RunWindow::runClosed, this, [this](bool) {
      // Shown once the run window has gone, so the trend does not sit on top of it.
      QTimer::singleShot(0, this, [this] {
        if (presenter_.runClosed() && checks_ != nullptr)
          ShowTrendWindow(checks_->snapshot(), op_, this);
      });
    });
  } else {
    op_.message(
        "The fluorimeter's port COM" + std::to_string(state_.Prefs.FlComPort) + " cannot be used.",
        "ZORVEL COMMUNICATION ERROR", BoxIcon::Exclamation);
  }
}

// The fluorimeter's line for a check window.
std::unique_ptr<SerialLine> MainWindow::fluorimeterLine() {
  if (lines_ == nullptr) return nullptr;
  auto line = lines_->lineFor(InstrumentKind::Fluorimeter, state_.Prefs.FlComPort);
  if (!line) {
    op_.message(
        "The fluorimeter's port COM" + std::to_string(state_.Prefs.FlComPort) + " cannot be used.",
        "ZORVEL COMMUNICATION ERROR", BoxIcon::Exclamation);
  }
  return line;
}

void MainWindow::openWaterCell() {
  auto line = fluorimeterLine();
  if (!line) return;
  // The current-files frame is hidden while the water cell is checked.
  currentFiles_->setVisible(false);
  RunWaterCellWindow(state_, op_, clock_, std::move(line), lastWaterCell_, this);
  currentFiles_->setVisible(true);
}

void MainWindow::openIntensityCheck() {
  if (auto line = fluorimeterLine()) RunIntensityWindow(state_, op_, clock_, std::move(line), this);
}

void MainWindow::openAutosampler() {
  if (lines_ == nullptr) return;
  auto armLine = lines_->lineFor(InstrumentKind::Arm, state_.Prefs.AutoSampComPort);
  auto pumpLine = lines_->lineFor(InstrumentKind::Pump, state_.Prefs.DilComPort);
  if (!armLine || !pumpLine) {
    op_.message("The autosampler's ports COM" + std::to_string(state_.Prefs.AutoSampComPort) +
                    " and COM" + std::to_string(state_.Prefs.DilComPort) + " cannot be used.",
                "ZORVEL COMMUNICATION ERROR", BoxIcon::Exclamation);
    return;
  }
  AutosamplerHooks hooks;
  hooks.trayFileShown = [this](const std::string& path) { trayLoaded(path, true); };
  hooks.startingTubeCopied = [this](int tube) { presenter_.setFirstSampleNumber(tube); };
  RunAutosamplerWindow(state_, op_, clock_, std::move(armLine), std::move(pumpLine),
                       std::move(hooks), this);
}

}  // namespace zorvel::ui
