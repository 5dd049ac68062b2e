#include "ui/windows/sequence_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>

namespace zorvel::ui {

SequenceBar::SequenceBar(std::function<void()> stop, QWidget* parent) : QWidget(parent) {
  setObjectName("SequenceBar");
  step_ = new QLabel;
  step_->setObjectName("SequenceStatus");
  step_->setWordWrap(true);
  step_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  progress_ = new QProgressBar;
  progress_->setObjectName("SequenceProgress");
  progress_->setFormat("step %v of %m");
  progress_->setMaximumWidth(180);
  progress_->setVisible(false);
  stop_ = new QPushButton("&Stop");
  stop_->setObjectName("SequenceStop");
  // Focus on Stop must not make it the dialog's default: Return keeps its own button.
  stop_->setAutoDefault(false);
  stop_->setEnabled(false);
  connect(stop_, &QPushButton::clicked, this, [this, stop = std::move(stop)] {
    stop();
    // Said at once; the work ends at its next step.
    step_->setText(step_->text() + "  (stopping after this step)");
    stop_->setEnabled(false);
  });
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(step_, 1);
  layout->addWidget(progress_);
  layout->addWidget(stop_);
}

void SequenceBar::setRunning(bool running) {
  stop_->setEnabled(running);
  if (running) {
    progress_->setValue(0);
    progress_->setVisible(false);
  }
}

void SequenceBar::showStep(const std::string& text) {
  step_->setText(QString::fromStdString(text));
}

void SequenceBar::showProgress(int done, int total) {
  progress_->setRange(0, std::max(total, 1));
  progress_->setValue(done);
  progress_->setVisible(true);
}

void SequenceBar::hideProgress() {
  progress_->setVisible(false);
}

}  // namespace zorvel::ui
