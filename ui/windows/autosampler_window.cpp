#include "ui/windows/autosampler_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>

#include "ui/windows/field_commits.h"
#include "ui/windows/option_tab_stops.h"
#include "ui/windows/sequence_bar.h"
#include "ui/windows/tray_picture.h"

namespace zorvel::ui {

AutosamplerWindow::AutosamplerWindow(AppState& state, Operator& op, Clock& clock,
                                     std::unique_ptr<SerialLine> armLine,
                                     std::unique_ptr<SerialLine> pumpLine, AutosamplerHooks hooks,
                                     QWidget* parent)
    : QDialog(parent),
      state_(state),
      naming_(op),
      armLine_(std::move(armLine)),
      pumpLine_(std::move(pumpLine)),
      arm_(*armLine_, clock, naming_, state.Links, state.Tray),
      pump_(*pumpLine_, clock, naming_, state.Links, state.Method.Autosampler),
      presenter_(MaintenanceRig{arm_, pump_, state.Method.Autosampler, state.Tray, state.Links,
                                state.Steps, naming_},
                 state.MethodsDirectory, *this, std::move(hooks)) {
  setObjectName("ASDILUTOR");
  setWindowTitle("AS Setup");
  commits_ = new FieldCommits(this, &naming_);
  auto* menus = new QMenuBar;
  QMenu* file = menus->addMenu("&File");
  QAction* open = file->addAction("&Open Tray Geometry FIle");
  open->setObjectName("OpenTrayGeometryFile");
  connect(open, &QAction::triggered, this, [this] {
    if (!presenter_.sequenceRunning()) presenter_.openTrayGeometryFile();
  });

  // Three columns: the dilutor, the arm's positioning with the maintenance sequences, and the
  // tray drawn over its settings, so that the window fits a 1024 x 768 screen.
  controls_ = new QWidget;
  auto* columns = new QHBoxLayout(controls_);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->addWidget(buildDilutor(), 0, Qt::AlignTop);
  auto* middle = new QVBoxLayout;
  middle->addWidget(buildPositioning());
  middle->addWidget(buildChecks());
  middle->addStretch();
  columns->addLayout(middle);
  picture_ = new TrayPicture(state.Tray, state.Method.Autosampler);
  picture_->setPureCount(state.Method.NoPures);
  auto* right = new QVBoxLayout;
  right->addWidget(picture_, 1);
  trayGroup_ = buildTray();
  right->addWidget(trayGroup_);

  auto* upper = new QHBoxLayout;
  upper->addWidget(controls_);
  upper->addLayout(right, 1);
  // Stop reaches the worker directly: the window's own jobs are what it stops.
  sequenceBar_ = new SequenceBar([this] { presenter_.stopSequence(); });
  auto* layout = new QVBoxLayout(this);
  layout->setMenuBar(menus);
  layout->addLayout(upper, 1);
  layout->addWidget(sequenceBar_);
  findChild<QPushButton*>("OKButton")->setDefault(true);
  KeepTabOnCheckedOptions(this);
  state_.Flags.AutosamplerWindowOpened = true;
}

AutosamplerWindow::~AutosamplerWindow() {
  worker_.waitUntilIdle();
}

void AutosamplerWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (opened_) return;
  opened_ = true;
  presenter_.opened();
  tube_->setText(QString::number(presenter_.targetTube()));
  runJob([this] { presenter_.moveToStartingTube(); });
}

void AutosamplerWindow::finish() {
  if (presenter_.sequenceRunning() || !commits_->settle() || !presenter_.done()) return;
  // Leaving puts the arm back over the rinse station before the window goes.
  runJob([this] { presenter_.leave(); }, [this] { QDialog::accept(); });
}

void AutosamplerWindow::reject() {
  finish();
}

void AutosamplerWindow::act(QAbstractButton* button, std::function<void()> action) {
  commits_->onClick(button, std::move(action));
}

void AutosamplerWindow::runJob(std::function<void()> job, std::function<void()> after) {
  if (!presenter_.beginSequence()) return;
  QPointer<QWidget> before = focusWidget();
  worker_.start(std::move(job), [this, before, after = std::move(after)] {
    presenter_.endSequence();
    commits_->restoreFocus(before);
    if (after) after();
  });
}

void AutosamplerWindow::onWindow(std::function<void()> update) {
  if (QThread::currentThread() == thread()) {
    update();
  } else {
    QMetaObject::invokeMethod(this, std::move(update), Qt::QueuedConnection);
  }
}

void AutosamplerWindow::setFieldText(AutosamplerField which, const std::string& text) {
  onWindow([this, which, text] { fields_.at(which)->setText(QString::fromStdString(text)); });
}

void AutosamplerWindow::selectFieldText(AutosamplerField which) {
  onWindow([this, which] {
    fields_.at(which)->setFocus();
    fields_.at(which)->selectAll();
  });
}

void AutosamplerWindow::setOption(AutosamplerGroup group, int index) {
  onWindow([this, group, index] {
    if (QAbstractButton* option = groups_.at(group)->button(index)) option->setChecked(true);
  });
}

void AutosamplerWindow::setChecked(AutosamplerCheckBox box, bool checked) {
  onWindow([this, box, checked] {
    (box == AutosamplerCheckBox::Standard ? standardBox_ : blankBox_)->setChecked(checked);
  });
}

void AutosamplerWindow::setStandardBoxesVisible(bool visible) {
  onWindow([this, visible] {
    fields_.at(AutosamplerField::StandardTube)->setVisible(visible);
    fields_.at(AutosamplerField::StandardFreq)->setVisible(visible);
  });
}

void AutosamplerWindow::setBlankBoxesVisible(bool visible) {
  onWindow([this, visible] {
    fields_.at(AutosamplerField::BlankTube)->setVisible(visible);
    fields_.at(AutosamplerField::BlankFreq)->setVisible(visible);
  });
}

void AutosamplerWindow::setFreqCaptionVisible(bool visible) {
  onWindow([this, visible] { freqCaption_->setVisible(visible); });
}

void AutosamplerWindow::showArmPosition(float xMm, float yMm) {
  onWindow([this, xMm, yMm] {
    xPos_->setText(QString::number(static_cast<double>(xMm)));
    yPos_->setText(QString::number(static_cast<double>(yMm)));
    picture_->setArmPosition(xMm, yMm);
  });
}

void AutosamplerWindow::setHeightText(const std::string& text) {
  onWindow([this, text] { height_->setText(QString::fromStdString(text)); });
}

void AutosamplerWindow::setSavePositionEnabled(bool enabled) {
  onWindow([this, enabled] { savePos_->setEnabled(enabled); });
}

void AutosamplerWindow::setSequenceRunning(bool running) {
  onWindow([this, running] {
    // Everything that would change the running work waits; the tray picture, the status and
    // Stop stay.
    controls_->setEnabled(!running);
    trayGroup_->setEnabled(!running);
    sequenceBar_->setRunning(running);
    if (running) {
      setCursor(Qt::BusyCursor);
    } else {
      unsetCursor();
    }
  });
}

void AutosamplerWindow::showSequenceStep(const std::string& text) {
  onWindow([this, text] { sequenceBar_->showStep(text); });
}

void AutosamplerWindow::showSequenceProgress(int done, int total) {
  onWindow([this, done, total] { sequenceBar_->showProgress(done, total); });
}

void AutosamplerWindow::trayChanged() {
  onWindow([this] { picture_->update(); });
}

void AutosamplerWindow::close() {
  onWindow([this] { QDialog::accept(); });
}

void RunAutosamplerWindow(AppState& state, Operator& op, Clock& clock,
                          std::unique_ptr<SerialLine> armLine, std::unique_ptr<SerialLine> pumpLine,
                          AutosamplerHooks hooks, QWidget* parent) {
  AutosamplerWindow window(state, op, clock, std::move(armLine), std::move(pumpLine),
                           std::move(hooks), parent);
  window.exec();
}

}  // namespace zorvel::ui
