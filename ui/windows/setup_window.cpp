#include "ui/windows/setup_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStorageInfo>
#include <QVBoxLayout>

#include "ui/platform/serial_devices.h"
#include "ui/windows/option_tab_stops.h"
#include "ui/windows/serial_devices_frame.h"

namespace zorvel::ui {

SetupWindow::SetupWindow(AppState& state, Operator& op,
                         std::function<void(const std::string&)> trayShown, QWidget* parent)
    : QDialog(parent), presenter_(state, op, *this, std::move(trayShown)) {
  setObjectName("SETUPFORM");
  setWindowTitle("ZORVEL Setup");
  setModal(true);
  listPath_ = QString::fromStdString(state.BaseDirectoryPath.empty() ? state.StartDirectory
                                                                     : state.BaseDirectoryPath);
  auto* layout = new QHBoxLayout(this);
  layout->addLayout(buildInstrumentColumn());
  layout->addLayout(buildFilesColumn(), 1);
  connectInstrumentControls();
  buildDrives();
  refreshDirectoryList();
  KeepTabOnCheckedOptions(this);
}

QLayout* SetupWindow::buildInstrumentColumn() {
  auto* modelBox = new QGroupBox("Fluorimeter");
  modelBox->setObjectName("Model_Frame");
  model_ = new QButtonGroup(this);
  auto* modelLayout = new QVBoxLayout(modelBox);
  const char* models[] = {"Perkin Elmer LS50", "Perkin Elmer LS50B"};
  for (int i = 0; i < 2; ++i) {
    auto* option = new QRadioButton(models[i]);
    option->setObjectName(QString("Model%1").arg(i + 1));
    model_->addButton(option, i + 1);
    modelLayout->addWidget(option);
  }
  auto* flFrame = portGroup("Fluorimeter COM Port", "FlCom", &flPort_);
  dilFrame_ = portGroup("Diluter COM Port", "DilCom", &dilPort_);
  asFrame_ = portGroup("Autosampler COM Port", "ASCom", &asPort_);

  printer_ = new QCheckBox("Printer Available");
  printer_->setObjectName("Printer_Box");
  autosampler_ = new QCheckBox("Autosampler Available");
  autosampler_->setObjectName("AutoSampler_Box");

  auto* left = new QVBoxLayout;
  left->addWidget(modelBox);
  left->addWidget(flFrame);
  left->addWidget(dilFrame_);
  left->addWidget(asFrame_);
  left->addWidget(new SerialDevicesFrame(PresentSerialDevices()));
  left->addWidget(printer_);
  left->addWidget(autosampler_);
  left->addStretch();
  return left;
}

QLayout* SetupWindow::buildFilesColumn() {
  auto* right = new QVBoxLayout;
  right->addWidget(buildDirectoryFrame());
  right->addWidget(buildPlateFrame());
  auto* ok = new QPushButton("OK");
  ok->setObjectName("OK");
  ok->setDefault(true);
  cancel_ = new QPushButton("Cancel");
  cancel_->setObjectName("Cancel");
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel_);
  right->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, [this] { presenter_.ok(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { presenter_.cancel(); });
  return right;
}

QGroupBox* SetupWindow::buildDirectoryFrame() {
  auto* dirFrame = new QGroupBox("Base Directory");
  dirFrame->setObjectName("Dir_Frame");
  drives_ = new QComboBox;
  drives_->setObjectName("Drive1");
  directories_ = new QListWidget;
  directories_->setObjectName("Dir1");
  baseLabel_ = new QLabel;
  baseLabel_->setObjectName("BaseDir_Label");
  auto* setFolder = new QPushButton("Set Folder");
  setFolder->setObjectName("SetFolder");
  auto* createFolder = new QPushButton("Create Folder");
  createFolder->setObjectName("CreateFolder");
  auto* dirLayout = new QGridLayout(dirFrame);
  dirLayout->addWidget(drives_, 0, 0, 1, 2);
  dirLayout->addWidget(directories_, 1, 0, 1, 2);
  dirLayout->addWidget(baseLabel_, 2, 0, 1, 2);
  dirLayout->addWidget(setFolder, 3, 0);
  dirLayout->addWidget(createFolder, 3, 1);

  connect(drives_, &QComboBox::activated, this, [this](int index) {
    presenter_.driveChosen(drives_->itemData(index).toString().toStdString());
  });
  connect(directories_, &QListWidget::itemActivated, this,
          [this](QListWidgetItem* item) { enterDirectory(item); });
  connect(setFolder, &QPushButton::clicked, this, [this] { presenter_.setFolder(); });
  connect(createFolder, &QPushButton::clicked, this, [this] { presenter_.createFolder(); });
  return dirFrame;
}

QGroupBox* SetupWindow::buildPlateFrame() {
  plateFrame_ = new QGroupBox("Plate Description File");
  plateFrame_->setObjectName("Plate_Frame");
  plateLabel_ = new QLabel(SetupPresenter::kNoPlateFile);
  plateLabel_->setObjectName("PlateFile_Label");
  auto* choose = new QPushButton("Choose File");
  choose->setObjectName("ChooseFile");
  auto* plateLayout = new QHBoxLayout(plateFrame_);
  plateLayout->addWidget(plateLabel_, 1);
  plateLayout->addWidget(choose);
  connect(choose, &QPushButton::clicked, this, [this] { presenter_.chooseFile(); });
  return plateFrame_;
}

void SetupWindow::connectInstrumentControls() {
  connect(model_, &QButtonGroup::idClicked, this, [this](int id) { presenter_.modelChosen(id); });
  connect(flPort_, &QButtonGroup::idClicked, this,
          [this](int id) { presenter_.fluorimeterPortChosen(id); });
  connect(dilPort_, &QButtonGroup::idClicked, this,
          [this](int id) { presenter_.dilutorPortChosen(id); });
  connect(asPort_, &QButtonGroup::idClicked, this,
          [this](int id) { presenter_.autosamplerPortChosen(id); });
  connect(printer_, &QCheckBox::toggled, this, [this](bool on) {
    if (!updating_) presenter_.printerToggled(on);
  });
  connect(autosampler_, &QCheckBox::toggled, this, [this](bool on) {
    if (!updating_) presenter_.autosamplerToggled(on);
  });
}

QGroupBox* SetupWindow::portGroup(const QString& title, const QString& name, QButtonGroup** group) {
  auto* box = new QGroupBox(title);
  box->setObjectName(name + "_Frame");
  *group = new QButtonGroup(this);
  auto* layout = new QHBoxLayout(box);
  for (int i = 1; i <= 4; ++i) {
    auto* option = new QRadioButton(QString("COM%1").arg(i));
    option->setObjectName(QString("%1%2").arg(name).arg(i));
    (*group)->addButton(option, i);
    layout->addWidget(option);
  }
  return box;
}

// The file-system root, the home folder and mounted volumes stand for the drives of the list.
void SetupWindow::buildDrives() {
  drives_->addItem("/", "/");
  drives_->addItem(QDir::homePath(), QDir::homePath());
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    const QString root = volume.rootPath();
    if (root == "/" || !volume.isValid()) continue;
    if (root.startsWith("/media") || root.startsWith("/mnt") || root.startsWith("/run/media"))
      drives_->addItem(root, root);
  }
}

void SetupWindow::enterDirectory(QListWidgetItem* item) {
  QDir dir(listPath_);
  if (!dir.cd(item->data(Qt::UserRole).toString())) return;
  setDirectoryListPath(dir.absolutePath().toStdString());
  presenter_.directoryChosen(listPath_.toStdString());
}

void SetupWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (opened_) return;
  opened_ = true;
  presenter_.opened();
  if (const QScreen* screen = this->screen()) {
    const QRect area = screen->geometry();
    move((area.width() - width()) / 2, (area.height() - height()) / 2);
  }
}

void SetupWindow::reject() {
  presenter_.cancel();
}

void SetupWindow::setCancelCaption(const std::string& caption) {
  cancel_->setText(QString::fromStdString(caption));
}

void SetupWindow::showModel(int fluorimeter) {
  if (auto* b = model_->button(fluorimeter)) b->setChecked(true);
}

void SetupWindow::showPorts(int fluorimeter, int dilutor, int autosampler) {
  if (auto* b = flPort_->button(fluorimeter)) b->setChecked(true);
  if (auto* b = dilPort_->button(dilutor)) b->setChecked(true);
  if (auto* b = asPort_->button(autosampler)) b->setChecked(true);
}

void SetupWindow::showPrinter(bool available) {
  updating_ = true;
  printer_->setChecked(available);
  updating_ = false;
}

void SetupWindow::showAutosampler(bool available) {
  updating_ = true;
  autosampler_->setChecked(available);
  updating_ = false;
}

void SetupWindow::setAutosamplerFramesVisible(bool visible, int heightTwips) {
  dilFrame_->setVisible(visible);
  asFrame_->setVisible(visible);
  plateFrame_->setVisible(visible);
  setProperty("heightTwips", heightTwips);
  adjustSize();
}

void SetupWindow::setBaseDirectoryLabel(const std::string& path) {
  baseLabel_->setText(QString::fromStdString(path));
}

void SetupWindow::setPlateFileLabel(const std::string& path) {
  plateLabel_->setText(QString::fromStdString(path));
}

std::string SetupWindow::directoryListPath() const {
  return listPath_.toStdString();
}

void SetupWindow::setDirectoryListPath(const std::string& path) {
  listPath_ = QString::fromStdString(path);
  refreshDirectoryList();
}

void SetupWindow::refreshDirectoryList() {
  directories_->clear();
  QDir dir(listPath_);
  if (!dir.isRoot()) {
    auto* up = new QListWidgetItem("..", directories_);
    up->setData(Qt::UserRole, "..");
  }
  for (const QString& name : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
    auto* item = new QListWidgetItem(name, directories_);
    item->setData(Qt::UserRole, name);
  }
}

void SetupWindow::close() {
  done(presenter_.endRequested() ? QDialog::Rejected : QDialog::Accepted);
}

}  // namespace zorvel::ui
