#include "ui/windows/trend_window.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/windows/option_tab_stops.h"
#include "ui/windows/trend_canvas.h"

namespace zorvel::ui {

namespace {

QLabel* named(const char* name, const QString& text = {}) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  return label;
}

}  // namespace

TrendWindow::TrendWindow(const QcSnapshot& snapshot, Operator& op, bool fromAlert, int colour,
                         QWidget* parent)
    : QDialog(parent), presenter_(snapshot, op, *this, fromAlert, colour) {
  setObjectName("TREND");
  setWindowTitle(trend_text::kCaption);
  setModal(true);

  auto* kindGroup = new QGroupBox;
  kindGroup->setObjectName("CtlOrBlank");
  kinds_ = new QButtonGroup(kindGroup);
  auto* kindRow = new QHBoxLayout(kindGroup);
  for (auto [id, caption] : {std::pair{kTrendControls, "Controls"}, {kTrendBlanks, "Blanks"}}) {
    auto* radio = new QRadioButton(caption);
    radio->setObjectName(QString("CtlOrBlank%1").arg(id));
    kinds_->addButton(radio, id);
    kindRow->addWidget(radio);
  }
  connect(kinds_, &QButtonGroup::idClicked, this,
          [this](int id) { presenter_.CtlOrBlank_Click(id); });

  colourPanel_ = new QGroupBox;
  colourPanel_->setObjectName("ColorOutOfRange");
  new QGridLayout(colourPanel_);
  colours_ = new QButtonGroup(colourPanel_);
  connect(colours_, &QButtonGroup::idClicked, this,
          [this](int id) { presenter_.ColorOutOfRange_Click(id); });

  auto* ok = new QPushButton("OK");
  ok->setObjectName("OK");
  connect(ok, &QPushButton::clicked, this, [this] { presenter_.OK_Click(); });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(kindGroup);
  layout->addWidget(colourPanel_);
  layout->addWidget(buildPlot(), 1);
  layout->addWidget(buildFigures());
  layout->addWidget(ok, 0, Qt::AlignRight);
  KeepTabOnCheckedOptions(this);
  presenter_.Form_Load();
}

QWidget* TrendWindow::buildPlot() {
  auto* panel = new QWidget;
  auto* row = new QHBoxLayout(panel);
  row->setContentsMargins(0, 0, 0, 0);
  auto* axis = new QVBoxLayout;
  for (int k = 5; k >= 0; --k) {
    QLabel* label = named("", "");
    label->setObjectName(QString("YLabel%1").arg(k));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    axis_[static_cast<std::size_t>(k)] = label;
    axis->addWidget(label);
    if (k > 0) axis->addStretch();
  }
  spectra_ = new QcCanvas("Spectra");
  spectra_->setMinimumSize(360, 200);
  row->addLayout(axis);
  row->addWidget(spectra_, 1);
  return panel;
}

QWidget* TrendWindow::buildFigures() {
  auto* panel = new QWidget;
  auto* row = new QHBoxLayout(panel);
  row->setContentsMargins(0, 0, 0, 0);
  mean_ = named("MeanLabel");
  sd_ = named("SDLabel");
  cv_ = named("CVLabel");
  current_ = named("CurValue");
  row->addWidget(new QLabel("Mean:"));
  row->addWidget(mean_);
  row->addWidget(new QLabel("SD:"));
  row->addWidget(sd_);
  row->addWidget(new QLabel("CV:"));
  row->addWidget(cv_);
  row->addStretch();
  row->addWidget(current_);
  return panel;
}

void TrendWindow::setCaption(const std::string& caption) {
  setWindowTitle(QString::fromStdString(caption));
}

void TrendWindow::setColourOptions(const std::vector<std::string>& captions) {
  auto* grid = static_cast<QGridLayout*>(colourPanel_->layout());
  for (std::size_t i = 0; i < captions.size(); ++i) {
    auto* radio = new QRadioButton(QString::fromStdString(captions[i]));
    const int option = static_cast<int>(i) + 1;
    radio->setObjectName(QString("ColorOutOfRange%1").arg(option));
    colours_->addButton(radio, option);
    grid->addWidget(radio, static_cast<int>(i) / 5, static_cast<int>(i) % 5);
  }
}

void TrendWindow::selectKind(int kind) {
  if (QAbstractButton* button = kinds_->button(kind)) button->setChecked(true);
}

void TrendWindow::selectColour(int option) {
  if (QAbstractButton* button = colours_->button(option)) button->setChecked(true);
}

void TrendWindow::setFigures(const std::string& mean, const std::string& sd,
                             const std::string& cv) {
  mean_->setText(QString::fromStdString(mean));
  sd_->setText(QString::fromStdString(sd));
  cv_->setText(QString::fromStdString(cv));
}

void TrendWindow::setCurrentValue(const std::string& text, bool visible) {
  current_->setText(QString::fromStdString(text));
  current_->setVisible(visible);
}

void TrendWindow::setAxisLabels(const std::array<std::string, 6>& labels) {
  for (std::size_t k = 0; k < labels.size(); ++k)
    axis_[k]->setText(QString::fromStdString(labels[k]));
}

void TrendWindow::drawTrend(const QcPlot& plot) {
  spectra_->setPlot(plot);
}

void ShowTrendWindow(const QcSnapshot& snapshot, Operator& op, QWidget* parent) {
  TrendWindow window(snapshot, op, false, 1, parent);
  window.exec();
}

}  // namespace zorvel::ui
