#include "ui/windows/tray_status_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

namespace zorvel::ui {

namespace {

QLabel* Line(const char* name) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

void SetLine(QLabel* label, const std::string& text) {
  label->setText(QString::fromStdString(text));
  label->setVisible(!text.empty());
}

}  // namespace

TrayStatusPanel::TrayStatusPanel(QWidget* parent) : QGroupBox("Tray Run", parent) {
  setObjectName("RunStatus");
  tube_ = Line("TrayTube");
  step_ = Line("TrayStep");
  request_ = Line("TrayRequest");
  QFont bold = request_->font();
  bold.setBold(true);
  request_->setFont(bold);
  alerts_ = Line("TrayAlerts");
  alerts_->setWordWrap(true);
  progress_ = new QProgressBar;
  progress_->setObjectName("TrayProgress");
  progress_->setFormat("%v of %m tubes done");
  auto* layout = new QGridLayout(this);
  layout->addWidget(tube_, 0, 0);
  layout->addWidget(progress_, 0, 1);
  layout->addWidget(step_, 1, 0);
  layout->addWidget(request_, 1, 1);
  layout->addWidget(alerts_, 2, 0, 1, 2);
  layout->setColumnStretch(0, 1);
  layout->setColumnStretch(1, 1);
  setVisible(false);
}

void TrayStatusPanel::show(const TrayStatusLines& lines) {
  setVisible(lines.shown);
  if (!lines.shown) return;
  SetLine(tube_, lines.tube);
  SetLine(step_, lines.step);
  SetLine(request_, lines.request);
  SetLine(alerts_, lines.alerts);
  progress_->setRange(0, std::max(lines.progressOf, 1));
  progress_->setValue(lines.progressDone);
}

}  // namespace zorvel::ui
