#include "ui/windows/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "ui/windows/disclaimer_dialog.h"
#include "ui/windows/setup_window.h"

namespace zorvel::ui {

MainWindow::MainWindow(AppState& state, Operator& op, Clock& clock, Printer& printer,
                       QWidget* parent)
    : QMainWindow(parent), state_(state), op_(op), presenter_(state, op, clock, printer, *this) {
  setObjectName("MAIN");
  setWindowTitle("ZORVEL");
  buildMenus();
  setCentralWidget(buildMethodForm());
  resize(760, 520);
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
  connect(about, &QAction::triggered, this, [this] { showAbout(); });
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
  files->setColumnStretch(1, 1);

  methodView_ = new QPlainTextEdit;
  methodView_->setObjectName("MethodSettings_View");
  methodView_->setReadOnly(true);
  methodView_->setFont(QFont("Monospace"));
  cancel_ = new QPushButton("Cancel");
  cancel_->setObjectName("CancelButton");
  connect(cancel_, &QPushButton::clicked, this, [this] { presenter_.cancelMethod(); });

  auto* layout = new QVBoxLayout(form);
  layout->addWidget(currentFiles_);
  layout->addWidget(methodView_, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cancel_);
  layout->addLayout(buttons);
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

void MainWindow::setMenuEnabled(MainMenu item, bool enabled) {
  actions_.at(item)->setEnabled(enabled);
}

void MainWindow::setCurrentFilesVisible(bool visible) {
  currentFiles_->setVisible(visible);
}

void MainWindow::setMethodControlsEnabled(bool enabled) {
  methodView_->setEnabled(enabled);
  cancel_->setEnabled(enabled);
}

void MainWindow::showMethodSettings(const std::string& text) {
  methodView_->setPlainText(QString::fromLatin1(text.data(), static_cast<int>(text.size())));
}

void MainWindow::showDisclaimer() {
  if (!disclaimerEnabled_) return;
  DisclaimerDialog dialog(this);
  dialog.exec();
}

bool MainWindow::runSetupWindow() {
  SetupWindow window(
      state_, op_, [this](const std::string& path) { setTrayFile(path, state_.Prefs.AutoSampler); },
      this);
  window.exec();
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

}  // namespace zorvel::ui
