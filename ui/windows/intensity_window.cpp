#include "ui/windows/intensity_window.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/platform/gui_thread.h"
#include "ui/windows/field_commits.h"
#include "ui/windows/option_tab_stops.h"

namespace zorvel::ui {

namespace {

struct BoxSpec {
  IntensityBox box;
  const char* name;
  const char* caption;
};

constexpr BoxSpec kBoxes[] = {
    {IntensityBox::ExWl, "ExWl_Box", "Excitation Wavelength (nm):"},
    {IntensityBox::EmWl, "EmWl_Box", "Emission Wavelength (nm):"},
    {IntensityBox::ExSl, "ExSl_Box", "Excitation Slit (nm):"},
    {IntensityBox::EmSl, "EmSl_Box", "Emission Slit (nm):"},
    {IntensityBox::RdTime, "RdTime_Box", "Read Time (0.1-100 sec):"},
    {IntensityBox::ScnSpd, "ScnSpd_Box", "Scan Speed (nm/min.):"},
};

}  // namespace

IntensityWindow::IntensityWindow(AppState& state, Operator& op, Clock& clock,
                                 std::unique_ptr<SerialLine> line, QWidget* parent)
    : QDialog(parent),
      naming_(op),
      line_(std::move(line)),
      presenter_(state, naming_, clock, *line_, *this),
      commits_(new FieldCommits(this, &naming_)) {
  setObjectName("INTENSE");
  setWindowTitle("Intensity Check");
  settingsPanel_ = new QWidget;
  auto* settings = new QHBoxLayout(settingsPanel_);
  settings->setContentsMargins(0, 0, 0, 0);
  settings->addWidget(buildBoxes());
  auto* groups = new QVBoxLayout;
  groups->addWidget(buildFilterGroup());
  groups->addWidget(buildVoltageGroup());
  settings->addLayout(groups);

  status_ = new QLabel;
  status_->setObjectName("Status");
  status_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  status_->setFrameShape(QFrame::StyledPanel);
  status_->setMinimumHeight(status_->fontMetrics().lineSpacing() * 2 + 8);
  start_ = new QPushButton("&Read Sample");
  start_->setObjectName("Start");
  auto* cancel = new QPushButton("&Cancel");
  cancel->setObjectName("Cancel");
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(start_);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(settingsPanel_);
  layout->addWidget(status_);
  layout->addLayout(buttons);

  commits_->onClick(start_, [this] { readSample(); });
  connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
  KeepTabOnCheckedOptions(this);
  updating_ = true;
  presenter_.opened();
  updating_ = false;
}

IntensityWindow::~IntensityWindow() {
  worker_.waitUntilIdle();
}

QWidget* IntensityWindow::buildBoxes() {
  auto* panel = new QWidget;
  auto* form = new QFormLayout(panel);
  for (const BoxSpec& spec : kBoxes) {
    auto* edit = new QLineEdit;
    edit->setObjectName(spec.name);
    form->addRow(spec.caption, edit);
    boxes_[spec.box] = edit;
    commits_->add(edit, spec.caption, [this, box = spec.box](const std::string& text) {
      return updating_ || presenter_.boxChanged(box, text);
    });
  }
  return panel;
}

QGroupBox* IntensityWindow::buildFilterGroup() {
  auto* group = new QGroupBox("Emission Filter");
  group->setObjectName("Filter_grp");
  filter_ = new QButtonGroup(group);
  auto* column = new QVBoxLayout(group);
  for (const FilterOption& option : FilterOptions()) {
    auto* radio = new QRadioButton(option.caption);
    radio->setObjectName(QString("Filter%1").arg(option.position));
    filter_->addButton(radio, option.position);
    column->addWidget(radio);
  }
  connect(filter_, &QButtonGroup::idClicked, this,
          [this](int position) { presenter_.filterClicked(position); });
  return group;
}

QGroupBox* IntensityWindow::buildVoltageGroup() {
  auto* group = new QGroupBox("PMT Voltage");
  group->setObjectName("Voltage_grp");
  voltage_ = new QButtonGroup(group);
  auto* row = new QHBoxLayout(group);
  for (auto [option, caption] :
       {std::pair{kVoltageSelected, "Selected"}, std::pair{kVoltageDefault, "Default"}}) {
    auto* radio = new QRadioButton(caption);
    radio->setObjectName(QString("Voltage%1").arg(option));
    voltage_->addButton(radio, option);
    row->addWidget(radio);
  }
  auto* pmt = new QLineEdit;
  pmt->setObjectName("PMTVoltage");
  boxes_[IntensityBox::PMTVoltage] = pmt;
  row->addWidget(pmt);
  connect(voltage_, &QButtonGroup::idClicked, this, [this, pmt](int option) {
    presenter_.voltageClicked(option, pmt->text().toStdString());
  });
  return group;
}

void IntensityWindow::readSample() {
  settingsPanel_->setEnabled(false);
  start_->setEnabled(false);
  // The end of the job is told after it has returned; the window may be gone by then.
  QPointer<IntensityWindow> self(this);
  const auto enable = [self] {
    if (!self) return;
    self->settingsPanel_->setEnabled(true);
    self->start_->setEnabled(true);
  };
  if (!worker_.start([this] { presenter_.readSample(); }, enable)) enable();
}

void IntensityWindow::reject() {
  if (worker_.busy()) return;  // a reading in progress ends by itself
  presenter_.cancel();
}

void IntensityWindow::showBoxText(IntensityBox box, const std::string& text) {
  onGuiThread([&] {
    const bool was = updating_;
    updating_ = true;
    boxes_.at(box)->setText(QString::fromStdString(text));
    updating_ = was;
  });
}

void IntensityWindow::showFilter(int position) {
  onGuiThread([&] {
    if (QAbstractButton* b = filter_->button(position)) b->setChecked(true);
  });
}

void IntensityWindow::showVoltageOption(int option) {
  onGuiThread([&] {
    if (QAbstractButton* b = voltage_->button(option)) b->setChecked(true);
  });
}

void IntensityWindow::setVoltageBoxVisible(bool visible) {
  onGuiThread([&] { boxes_.at(IntensityBox::PMTVoltage)->setVisible(visible); });
}

void IntensityWindow::selectBoxText(IntensityBox box) {
  onGuiThread([&] {
    QLineEdit* edit = boxes_.at(box);
    edit->setFocus();
    edit->selectAll();
  });
}

void IntensityWindow::renderStatus() {
  QStringList rows;
  for (const auto& [n, text] : statusLines_) {
    while (rows.size() < n - 1) rows.append(QString());
    rows.append(text);
  }
  status_->setText(rows.join('\n'));
}

void IntensityWindow::printStatus(int line, const std::string& text, bool clearFirst) {
  onGuiThread([&] {
    if (clearFirst) statusLines_.clear();
    statusLines_[line] = QString::fromStdString(text);
    renderStatus();
  });
}

void IntensityWindow::clearStatus() {
  onGuiThread([&] {
    statusLines_.clear();
    renderStatus();
  });
}

void IntensityWindow::close() {
  onGuiThread([&] { QDialog::reject(); });
}

void RunIntensityWindow(AppState& state, Operator& op, Clock& clock,
                        std::unique_ptr<SerialLine> line, QWidget* parent) {
  IntensityWindow window(state, op, clock, std::move(line), parent);
  window.exec();
}

}  // namespace zorvel::ui
