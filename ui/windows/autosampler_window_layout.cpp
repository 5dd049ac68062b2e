#include "ui/windows/autosampler_window.h"

// The autosampler window's controls: the dilutor and tray settings, the arm's positioning and
// the maintenance buttons, each wired to the presenter through the window's field commits.

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
#include <optional>
#include <tuple>
#include <vector>

#include "ui/windows/field_commits.h"

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
  commits_->add(
      box, FieldLabel(which),
      [this, which](const std::string& text) { return presenter_.fieldEdited(which, text); },
      [this, which] { return QString::fromStdString(presenter_.fieldText(which)); });
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
    // "Other" goes to the typed tube: the boxes are committed before anything moves.
    if (!commits_->settle()) return;
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
    act(moves[k].first, [this, which] { runJob([this, which] { presenter_.arrow(which); }); });
  }
  grid->addLayout(arrows, 0, 0, 2, 1);
  xPos_ = TextBox("XPos");
  yPos_ = TextBox("YPos");
  grid->addWidget(new QLabel("X:"), 0, 1);
  grid->addWidget(xPos_, 0, 2);
  grid->addWidget(new QLabel("Y:"), 1, 1);
  grid->addWidget(yPos_, 1, 2);
  for (auto [box, axis] : {std::pair{xPos_, ArmAxis::X}, std::pair{yPos_, ArmAxis::Y}}) {
    // Checked when the entry is committed, so that typing "150" does not send 1 and 15 first;
    // the move itself runs on the worker.
    const ArmAxis along = axis;
    commits_->add(
        box, along == ArmAxis::X ? "X" : "Y",
        [this, along](const std::string& typed) {
          const std::optional<float> mm = presenter_.positionChecked(along, typed);
          if (mm) runJob([this, along, to = *mm] { presenter_.moveAlong(along, to); });
          return mm.has_value();
        },
        [this, along] {
          const ArmPlacement& at = presenter_.placement();
          return QString::number(static_cast<double>(along == ArmAxis::X ? at.ArmX : at.ArmY));
        });
  }
  grid->addWidget(
      optionGroup(AutosamplerGroup::Increment, "Incr_grp", "Step", {{10, "10 mm"}, {1, "  1 mm"}}),
      7, 0);
}

// The heights the probe is lowered to, the tube to go to, and the buttons that act on them.
void AutosamplerWindow::addHeightAndTube(QGridLayout* grid) {
  // Each choice is captioned by the height it sets and where the arm goes for it. The second
  // "Rinse" and "Standard" do exactly what the first do, so they are kept out of sight.
  QWidget* heights = optionGroup(AutosamplerGroup::Height, "Height_grp", "Height",
                                 {{1, "Rinse height"},
                                  {2, "Standard height"},
                                  {3, "Samples: tube ht."},
                                  {4, "Rinse"},
                                  {5, "Standard"},
                                  {6, "Start Tube: tube ht."},
                                  {7, "End Tube: tube ht."},
                                  {8, "Other: tube ht."},
                                  {9, "Sample backfill ht."},
                                  {10, "Std. backfill ht."}});
  QButtonGroup* choices = groups_.at(AutosamplerGroup::Height);
  for (int hidden : {4, 5}) choices->button(hidden)->hide();
  const std::pair<int, const char*> where[] = {
      {1, "The rinse height, over the rinse station"},
      {2, "The standard height, over the standard tube"},
      {3, "The tube height, over the starting tube"},
      {6, "The tube height, over the starting tube"},
      {7, "The tube height, over the ending tube"},
      {8, "The tube height, over the tube typed in \"Tube:\""},
      {9, "The sample backfill height, over the starting tube"},
      {10, "The standard backfill height, over the standard tube"}};
  for (const auto& [index, tip] : where) choices->button(index)->setToolTip(tip);
  grid->addWidget(heights, 2, 0, 5, 1);
  height_ = TextBox("THeight");
  commits_->add(
      height_, "Height", [this](const std::string& text) { return presenter_.heightTyped(text); },
      [this] { return QString::number(presenter_.selectedHeight()); });
  tube_ = TextBox("TubeToGoTo");
  commits_->add(
      tube_, "Tube", [this](const std::string& text) { return presenter_.tubeTyped(text); },
      [this] { return QString::number(presenter_.targetTube()); });
  grid->addWidget(new QLabel("Height:"), 2, 1);
  grid->addWidget(height_, 2, 2);
  QPushButton* lower = Button("&Lower Probe", "LowerProbe");
  grid->addWidget(lower, 3, 1, 1, 2);
  grid->addWidget(new QLabel("Tube:"), 4, 1);
  grid->addWidget(tube_, 4, 2);
  QPushButton* one = Button("&Go To", "One");
  QPushButton* locate = Button("Lo&cate", "Locate");
  QPushButton* save = Button("&Save Position", "SavePos");
  savePos_ = save;
  grid->addWidget(one, 5, 1);
  grid->addWidget(locate, 5, 2);
  grid->addWidget(save, 6, 1, 1, 2);
  act(lower, [this] { runJob([this] { presenter_.lowerProbe(); }); });
  act(one, [this] { runJob([this] { presenter_.one(); }); });
  act(locate, [this] { runJob([this] { presenter_.locate(); }); });
  act(save, [this] { presenter_.savePosition(); });
}

QWidget* AutosamplerWindow::buildChecks() {
  auto* row = new QWidget;
  auto* layout = new QGridLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  const std::pair<QPushButton*, SequenceEnd (AutosamplerPresenter::*)()> sequences[] = {
      {Button("&Prime Pump", "PrimePump"), &AutosamplerPresenter::primePump},
      {Button("Check &Rinse", "CheckRinse"), &AutosamplerPresenter::checkRinse},
      {Button("Check &Volumes", "CheckVol"), &AutosamplerPresenter::checkVolumes},
      {Button("&Testing", "Testing"), &AutosamplerPresenter::testing}};
  int place = 0;
  for (const auto& [button, run] : sequences) {
    layout->addWidget(button, place / 3, place % 3);
    ++place;
    act(button, [this, run = run] { runJob([this, run] { (presenter_.*run)(); }); });
  }
  QPushButton* done = Button("&Done", "OKButton");
  // Return presses Done from a button (made the default once it sits in the window); in a box
  // it only takes the entry, since Done would send the arm to the rinse station on the Return
  // meant for a tube or a volume.
  commits_->setReturnStaysInBox(true);
  layout->addWidget(done, 1, 2);
  act(done, [this] { finish(); });
  return row;
}

}  // namespace zorvel::ui
