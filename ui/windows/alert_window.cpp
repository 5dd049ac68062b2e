#include "ui/windows/alert_window.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QVBoxLayout>
#include <string_view>

#include "ui/platform/gui_thread.h"
#include "ui/windows/option_tab_stops.h"
#include "ui/windows/trend_canvas.h"
#include "ui/windows/trend_window.h"

namespace zorvel::ui {

namespace {

QLabel* named(const char* name) {
  auto* label = new QLabel;
  label->setObjectName(name);
  return label;
}

QPushButton* button(const char* name, const char* caption) {
  auto* b = new QPushButton(caption);
  b->setObjectName(name);
  b->setAutoDefault(false);
  return b;
}

}  // namespace

AlertWindow::AlertWindow(const QcSnapshot& snapshot, Operator& op, QWidget* parent)
    : QDialog(parent), op_(op), presenter_(snapshot, *this) {
  setObjectName("ERRFORM");
  setWindowTitle(alert_text::kCaption);
  setModal(true);
  auto* question = new QLabel(alert_text::kQuestion);
  question->setObjectName("Question");
  question->setWordWrap(true);
  QStringList legend;
  for (const char* line : alert_text::kLegend) legend << line;
  auto* legendLabel = new QLabel(legend.join("\n"));
  legendLabel->setObjectName("Legend");

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(question);
  layout->addWidget(legendLabel);
  layout->addWidget(buildOptions());
  layout->addWidget(buildDetails());
  layout->addWidget(buildButtons());
  KeepTabOnCheckedOptions(this);
  presenter_.Form_Load();
}

QWidget* AlertWindow::buildOptions() {
  auto* group = new QGroupBox;
  group->setObjectName("ColorOutOfRange");
  auto* grid = new QGridLayout(group);
  options_ = new QButtonGroup(group);
  for (int k = 1; k <= kMaxColours; ++k) {
    auto* radio = new QRadioButton;
    radio->setObjectName(QString("ColorOutOfRange%1").arg(k));
    radio->setVisible(false);
    options_->addButton(radio, k);
    grid->addWidget(radio, (k - 1) / 6, (k - 1) % 6);
    optionButtons_[static_cast<std::size_t>(k)] = radio;
  }
  connect(options_, &QButtonGroup::idClicked, this,
          [this](int k) { presenter_.ColorOutOfRange_Click(k); });
  return group;
}

QGroupBox* AlertWindow::buildDetails() {
  details_ = new QGroupBox;
  details_->setObjectName("ColorInfo");
  boxPlot_ = new QcCanvas("BoxPlot");
  boxPlot_->setMinimumSize(160, 160);
  min_ = named("MinBox");
  median_ = named("MeanBox");
  max_ = named("MaxBox");
  value_ = named("ValueBox");
  cv_ = named("CVLabel");
  auto* figures = new QFormLayout;
  figures->addRow("Lower Quartile:", min_);
  figures->addRow("Median:", median_);
  figures->addRow("Upper Quartile:", max_);
  figures->addRow("Value:", value_);
  figures->addRow("CV:", cv_);
  auto* less = button("LessInfo", "Less Info");
  connect(less, &QPushButton::clicked, this, [this] { presenter_.LessInfo_Click(); });
  figures->addRow(less);
  auto* row = new QHBoxLayout(details_);
  row->addWidget(boxPlot_, 1);
  row->addLayout(figures);
  return details_;
}

QWidget* AlertWindow::buildButtons() {
  auto* panel = new QWidget;
  auto* row = new QHBoxLayout(panel);
  row->setContentsMargins(0, 0, 0, 0);
  const std::pair<const char*, const char*> buttons[] = {{"Yes", "Yes"},
                                                         {"No", "No"},
                                                         {"Cancel", "Cancel"},
                                                         {"MoreInfo", "More Info"},
                                                         {"TrendCheck", "Check Trend"}};
  for (auto [name, caption] : buttons) {
    QPushButton* b = button(name, caption);
    // Return rereads: a control outside its limits is accepted only by a deliberate Yes.
    b->setDefault(std::string_view(name) == "No");
    row->addWidget(b);
    const std::string which = name;
    connect(b, &QPushButton::clicked, this, [this, which] {
      if (which == "Yes") presenter_.Yes_Click();
      if (which == "No") presenter_.No_Click();
      if (which == "Cancel") presenter_.Cancel_Click();
      if (which == "MoreInfo") presenter_.MoreInfo_Click();
      if (which == "TrendCheck") presenter_.TrendCheck_Click();
    });
  }
  return panel;
}

void AlertWindow::setOptions(const std::vector<std::string>& captions) {
  for (int k = 1; k <= kMaxColours; ++k) {
    QRadioButton* radio = optionButtons_[static_cast<std::size_t>(k)];
    const bool shown = k <= static_cast<int>(captions.size());
    radio->setText(shown ? QString::fromStdString(captions[static_cast<std::size_t>(k - 1)])
                         : QString());
    radio->setVisible(shown);
  }
}

void AlertWindow::selectOption(int option) {
  if (QAbstractButton* radio = options_->button(option)) radio->setChecked(true);
}

void AlertWindow::showFigures(const AlertFigures& figures) {
  cv_->setText(QString::fromStdString(figures.cv));
  min_->setText(QString::fromStdString(figures.lower));
  median_->setText(QString::fromStdString(figures.median));
  max_->setText(QString::fromStdString(figures.upper));
  value_->setText(QString::fromStdString(figures.value));
}

void AlertWindow::drawBoxPlot(const QcPlot& plot) {
  boxPlot_->setPlot(plot);
}

void AlertWindow::showDetails(bool visible) {
  details_->setVisible(visible);
  adjustSize();
}

void AlertWindow::openTrend(const QcSnapshot& snapshot, int colour) {
  TrendWindow trend(snapshot, op_, true, colour, this);
  trend.exec();
}

int QtAlertDialog::ask(const QcSnapshot& snapshot) {
  return onGuiThread([this, &snapshot] {
    AlertWindow window(snapshot, op_, parent_);
    if (QScreen* screen = window.screen()) {
      window.adjustSize();
      window.move(screen->availableGeometry().center() - window.rect().center());
    }
    return window.exec();
  });
}

}  // namespace zorvel::ui
