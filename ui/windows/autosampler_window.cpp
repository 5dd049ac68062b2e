#include "ui/windows/autosampler_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QThread>
#include <QToolButton>
#include <QVBoxLayout>
#include <tuple>
#include <vector>

#include "ui/windows/tray_picture.h"

namespace zorvel::ui {

namespace {

QPushButton* Button(const char* caption, const char* name) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

QToolButton* Arrow(Qt::ArrowType type, const char* name) {
  auto* button = new QToolButton;
  button->setArrowType(type);
  button->setObjectName(name);
  return button;
}

QLineEdit* TextBox(const char* name, int characters = 6) {
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setMaximumWidth(box->fontMetrics().averageCharWidth() * (characters + 3));
  return box;
}

}  // namespace

AutosamplerWindow::AutosamplerWindow(AppState& state, Operator& op, Clock& clock,
                                     std::unique_ptr<SerialLine> armLine,
                                     std::unique_ptr<SerialLine> pumpLine, AutosamplerHooks hooks,
                                     QWidget* parent)
    : QDialog(parent),
      state_(state),
      armLine_(std::move(armLine)),
      pumpLine_(std::move(pumpLine)),
      arm_(*armLine_, clock, op, state.Links, state.Tray),
      pump_(*pumpLine_, clock, op, state.Links, state.Method.Autosampler),
      presenter_(MaintenanceRig{arm_, pump_, state.Method.Autosampler, state.Tray, state.Links,
                                state.Steps, op},
                 state.MethodsDirectory, *this, std::move(hooks)) {
  setObjectName("ASDILUTOR");
  setWindowTitle("AS Setup");
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
  auto* right = new QVBoxLayout;
  right->addWidget(picture_, 1);
  right->addWidget(buildTray());

  auto* layout = new QHBoxLayout(this);
  layout->setMenuBar(menus);
  layout->addWidget(controls_);
  layout->addLayout(right, 1);
  state_.Flags.AutosamplerWindowOpened = true;
}

AutosamplerWindow::~AutosamplerWindow() {
  worker_.waitUntilIdle();
}

QLineEdit* AutosamplerWindow::field(AutosamplerField which) {
  QLineEdit* box = TextBox(ControlName(which));
  fields_[which] = box;
  connect(box, &QLineEdit::textEdited, this, [this, which](const QString& text) {
    presenter_.fieldEdited(which, text.toStdString());
  });
  return box;
}

QWidget* AutosamplerWindow::optionGroup(AutosamplerGroup group, const char* name,
                                        const char* caption,
                                        const std::vector<std::pair<int, const char*>>& options) {
  auto* frame = new QGroupBox(caption);
  frame->setObjectName(name);
  auto* buttons = new QButtonGroup(frame);
  auto* layout = new QVBoxLayout(frame);
  for (const auto& [index, text] : options) {
    auto* option = new QRadioButton(text);
    option->setObjectName(QString("%1_%2").arg(name).arg(index));
    buttons->addButton(option, index);
    layout->addWidget(option);
  }
  groups_[group] = buttons;
  connect(buttons, &QButtonGroup::idClicked, this, [this, group](int index) {
    if (group == AutosamplerGroup::Height) {
      runJob([this, index] { presenter_.heightChosen(index); });
    } else {
      presenter_.optionChosen(group, index);
    }
  });
  return frame;
}

void AutosamplerWindow::labelled(QGridLayout* grid, int row, AutosamplerField which) {
  grid->addWidget(new QLabel(FieldLabel(which)), row, 0);
  grid->addWidget(field(which), row, 1);
}

QWidget* AutosamplerWindow::buildDilutor() {
  auto* dilutor = new QGroupBox("Dilutor");
  dilutor->setObjectName("Dilutor_Frame");
  auto* grid = new QGridLayout(dilutor);
  int row = 0;
  for (AutosamplerField f :
       {AutosamplerField::SampleVolume, AutosamplerField::BackFlow, AutosamplerField::AirVolume}) {
    labelled(grid, row++, f);
  }
  for (const auto& [caption, fill, dispense] :
       {std::tuple{"Sample", AutosamplerField::FillSpeed, AutosamplerField::DispenseSpeed},
        std::tuple{"Flush", AutosamplerField::FillSpeedFlush,
                   AutosamplerField::DispenseSpeedFlush}}) {
    auto* speeds = new QGroupBox(caption);
    speeds->setObjectName(QString(caption) + "_Frame");
    auto* g = new QGridLayout(speeds);
    labelled(g, 0, fill);
    labelled(g, 1, dispense);
    grid->addWidget(speeds, row++, 0, 1, 2);
  }
  labelled(grid, row++, AutosamplerField::FlushTime);
  labelled(grid, row++, AutosamplerField::AirDryTime);
  auto* options = new QGridLayout;
  options->addWidget(optionGroup(AutosamplerGroup::SyringeVolume, "Syringe_volume_grp",
                                 "Syringe Volume", {{10, "10 ml"}, {5, "  5 ml"}}),
                     0, 0);
  options->addWidget(optionGroup(AutosamplerGroup::Resolution, "Resolution_Grp", "Resolution",
                                 {{1, "Standard"}, {2, "Fine"}}),
                     0, 1);
  options->addWidget(optionGroup(AutosamplerGroup::PumpDirection, "PumpDir", "Pump Direction",
                                 {{1, "Clockwise"}, {2, "CounterClockwise"}}),
                     1, 0);
  options->addWidget(optionGroup(AutosamplerGroup::SampleDisposition, "SampleDisposition",
                                 "Sample Disposition", {{1, "Throw Away"}, {2, "Save"}}),
                     1, 1);
  grid->addLayout(options, row++, 0, 1, 2);

  return dilutor;
}

QWidget* AutosamplerWindow::buildTray() {
  auto* tray = new QGroupBox("Tray");
  tray->setObjectName("Tray_Frame");
  auto* t = new QGridLayout(tray);
  labelled(t, 0, AutosamplerField::StartingTube);
  labelled(t, 1, AutosamplerField::EndingTube);
  standardBox_ = new QCheckBox("Standard");
  standardBox_->setObjectName("StandardBox");
  blankBox_ = new QCheckBox("Blank");
  blankBox_->setObjectName("BlankBox");
  freqCaption_ = new QLabel("Freq.");
  freqCaption_->setObjectName("Freq_Label");
  t->addWidget(new QLabel("Pos."), 2, 1);
  t->addWidget(freqCaption_, 2, 2);
  t->addWidget(standardBox_, 3, 0);
  t->addWidget(field(AutosamplerField::StandardTube), 3, 1);
  t->addWidget(field(AutosamplerField::StandardFreq), 3, 2);
  t->addWidget(blankBox_, 4, 0);
  t->addWidget(field(AutosamplerField::BlankTube), 4, 1);
  t->addWidget(field(AutosamplerField::BlankFreq), 4, 2);
  connect(standardBox_, &QCheckBox::clicked, this,
          [this](bool on) { presenter_.checkBoxChanged(AutosamplerCheckBox::Standard, on); });
  connect(blankBox_, &QCheckBox::clicked, this,
          [this](bool on) { presenter_.checkBoxChanged(AutosamplerCheckBox::Blank, on); });

  return tray;
}

QWidget* AutosamplerWindow::buildPositioning() {
  auto* frame = new QGroupBox("Positioning");
  frame->setObjectName("Position_Frame");
  auto* grid = new QGridLayout(frame);
  addArrowsAndPosition(grid);
  addHeightAndTube(grid);
  return frame;
}

// The four arrows, the X and Y boxes, and the step the arrows move by.
void AutosamplerWindow::addArrowsAndPosition(QGridLayout* grid) {
  auto* arrows = new QGridLayout;
  const std::pair<QToolButton*, ArmArrow> moves[] = {
      {Arrow(Qt::UpArrow, "UpArrow"), ArmArrow::Up},
      {Arrow(Qt::LeftArrow, "LeftArrow"), ArmArrow::Left},
      {Arrow(Qt::RightArrow, "RightArrow"), ArmArrow::Right},
      {Arrow(Qt::DownArrow, "DownArrow"), ArmArrow::Down}};
  const int cells[][2] = {{0, 1}, {1, 0}, {1, 2}, {2, 1}};
  for (int k = 0; k < 4; ++k) {
    arrows->addWidget(moves[k].first, cells[k][0], cells[k][1]);
    const ArmArrow which = moves[k].second;
    connect(moves[k].first, &QToolButton::clicked, this,
            [this, which] { runJob([this, which] { presenter_.arrow(which); }); });
  }
  grid->addLayout(arrows, 0, 0, 2, 1);
  xPos_ = TextBox("XPos");
  yPos_ = TextBox("YPos");
  grid->addWidget(new QLabel("X:"), 0, 1);
  grid->addWidget(xPos_, 0, 2);
  grid->addWidget(new QLabel("Y:"), 1, 1);
  grid->addWidget(yPos_, 1, 2);
  for (auto [box, axis] : {std::pair{xPos_, ArmAxis::X}, std::pair{yPos_, ArmAxis::Y}}) {
    // Taken when the entry is finished, so that typing "150" does not send 1 and 15 first.
    connect(box, &QLineEdit::editingFinished, this, [this, box = box, axis = axis] {
      if (!box->isModified()) return;
      box->setModified(false);
      const std::string typed = box->text().toStdString();
      runJob([this, typed, axis] { presenter_.positionTyped(axis, typed); });
    });
  }
  grid->addWidget(
      optionGroup(AutosamplerGroup::Increment, "Incr_grp", "Step", {{10, "10 mm"}, {1, "  1 mm"}}),
      7, 0);
}

// The heights the probe is lowered to, the tube to go to, and the buttons that act on them.
void AutosamplerWindow::addHeightAndTube(QGridLayout* grid) {
  grid->addWidget(optionGroup(AutosamplerGroup::Height, "Height_grp", "Height",
                              {{1, "Rinse"},
                               {2, "Standard"},
                               {3, "Samples"},
                               {4, "Rinse"},
                               {5, "Standard"},
                               {6, "Start Tube"},
                               {7, "End Tube"},
                               {8, "Other"},
                               {9, "Sample Air Fill"},
                               {10, "Stand. Air Fill"}}),
                  2, 0, 5, 1);
  height_ = TextBox("THeight");
  connect(height_, &QLineEdit::textEdited, this,
          [this](const QString& text) { presenter_.heightTyped(text.toStdString()); });
  auto* tube = TextBox("TubeToGoTo");
  connect(tube, &QLineEdit::textEdited, this,
          [this](const QString& text) { presenter_.tubeTyped(text.toStdString()); });
  grid->addWidget(new QLabel("Height:"), 2, 1);
  grid->addWidget(height_, 2, 2);
  QPushButton* lower = Button("Lower Probe", "LowerProbe");
  grid->addWidget(lower, 3, 1, 1, 2);
  grid->addWidget(new QLabel("Tube:"), 4, 1);
  grid->addWidget(tube, 4, 2);
  QPushButton* one = Button("Go To", "One");
  QPushButton* locate = Button("Locate", "Locate");
  QPushButton* save = Button("Save Position", "SavePos");
  savePos_ = save;
  grid->addWidget(one, 5, 1);
  grid->addWidget(locate, 5, 2);
  grid->addWidget(save, 6, 1, 1, 2);
  connect(lower, &QPushButton::clicked, this,
          [this] { runJob([this] { presenter_.lowerProbe(); }); });
  connect(one, &QPushButton::clicked, this, [this] { runJob([this] { presenter_.one(); }); });
  connect(locate, &QPushButton::clicked, this, [this] { runJob([this] { presenter_.locate(); }); });
  connect(save, &QPushButton::clicked, this, [this] { presenter_.savePosition(); });
}

QWidget* AutosamplerWindow::buildChecks() {
  auto* row = new QWidget;
  auto* layout = new QGridLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  const std::pair<QPushButton*, SequenceEnd (AutosamplerPresenter::*)()> sequences[] = {
      {Button("&Prime Pump", "PrimePump"), &AutosamplerPresenter::primePump},
      {Button("Check &Rinse", "CheckRinse"), &AutosamplerPresenter::checkRinse},
      {Button("Check &Volumes", "CheckVol"), &AutosamplerPresenter::checkVolumes},
      {Button("Testing", "Testing"), &AutosamplerPresenter::testing}};
  int place = 0;
  for (const auto& [button, run] : sequences) {
    layout->addWidget(button, place / 3, place % 3);
    ++place;
    connect(button, &QPushButton::clicked, this,
            [this, run = run] { runJob([this, run] { (presenter_.*run)(); }); });
  }
  QPushButton* done = Button("Done", "OKButton");
  layout->addWidget(done, 1, 2);
  connect(done, &QPushButton::clicked, this, [this] { finish(); });
  return row;
}

void AutosamplerWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (opened_) return;
  opened_ = true;
  presenter_.opened();
  runJob([this] { presenter_.moveToStartingTube(); });
}

void AutosamplerWindow::finish() {
  if (presenter_.sequenceRunning() || !presenter_.done()) return;
  // Leaving puts the arm back over the rinse station before the window goes.
  runJob([this] { presenter_.leave(); }, [this] { QDialog::accept(); });
}

void AutosamplerWindow::reject() {
  finish();
}

void AutosamplerWindow::runJob(std::function<void()> job, std::function<void()> after) {
  if (!presenter_.beginSequence()) return;
  worker_.start(std::move(job), [this, after = std::move(after)] {
    presenter_.endSequence();
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
    controls_->setEnabled(!running);
    if (running) {
      setCursor(Qt::BusyCursor);
    } else {
      unsetCursor();
    }
  });
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
