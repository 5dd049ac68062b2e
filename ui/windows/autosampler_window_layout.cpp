#include "ui/windows/autosampler_window.h"

// The autosampler window's controls: the dilutor and tray settings, the arm's positioning and
// the maintenance buttons, each wired to the presenter.

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <tuple>
#include <vector>

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

}  // namespace zorvel::ui
