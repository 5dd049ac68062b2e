#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "core/text/number_format.h"
#include "ui/windows/run_grid.h"
#include "ui/windows/run_spectra.h"
#include "ui/windows/run_window.h"
#include "ui/windows/run_window_text.h"

// What the run shows: the window's side of RunView, always on the window's thread.
namespace zorvel::ui {

using run_text::asNumber;
using run_text::latin1;

void RunWindow::layOut(const RunLayout& layout) {
  grid_->setVisible(layout.fixed);
  syncFrame_->setVisible(layout.synch);
  grid_->setColumns(layout.heads);
}

void RunWindow::showScreen(const RunScreen& screen) {
  filename_->setText(latin1(screen.filenameCaption));
  resetSamp_->setEnabled(screen.resetEnabled);
  tubeRange_->setEnabled(screen.resetEnabled);
  abortMsg_->setText(latin1(screen.keyLegend));
  abortMsg_->setVisible(!screen.keyLegend.empty());
  QStringList times;
  for (const auto& line : screen.timeInfo) times << latin1(line);
  timeInfo_->setText(times.join('\n'));
  okFrame_->setVisible(screen.okVisible);
  ok1_->setText(latin1(screen.okCaption));
  if (screen.commentVisible != shown_.commentVisible) showComment(screen.commentVisible);
  if (screen.choices != shown_.choices) showChoices(screen.choices);
  if (screen.focus) {
    if (QPushButton* target = buttonFor(*screen.focus)) target->setFocus();
  }
  shown_ = screen;
}

void RunWindow::clearStatus() {
  statusLines_.clear();
  status_->clear();
}

void RunWindow::showStatus(const std::string& line) {
  statusLines_.push_back(latin1(line));
  status_->setText(QStringList(statusLines_.begin(), statusLines_.end()).join('\n'));
}

void RunWindow::setMedianRow(const std::vector<std::string>& medians) {
  grid_->setMedianRow(medians);
}

void RunWindow::setCell(int row, int column, const std::string& text) {
  if (column == 0) {
    grid_->setRowLabel(row, text);
  } else {
    grid_->setCell(row, column, text);
  }
}

void RunWindow::setCellColour(int row, int column, int paletteIndex) {
  grid_->setCellColour(row, column, paletteIndex);
}

void RunWindow::showRow(int row) {
  grid_->showRow(row);
}

void RunWindow::showChoices(const RunChoices& choices) {
  const bool shown[] = {choices.accept, choices.reject, choices.control, choices.blank};
  QPushButton* first = nullptr;
  for (std::size_t i = 0; i < acceptReject_.size(); ++i) {
    acceptReject_[i]->setVisible(shown[i]);
    if (shown[i] && first == nullptr) first = acceptReject_[i];
  }
  updateDecisionFrame();
  if (first != nullptr) first->setFocus();
}

void RunWindow::showComment(bool visible) {
  commentLabel_->setVisible(visible);
  commentBox_->setVisible(visible);
  updateDecisionFrame();
}

void RunWindow::updateDecisionFrame() {
  // AR_Frame holds the choices and the comment box: it shows while either is offered.
  bool offered = commentBox_->isVisibleTo(arFrame_);
  for (QPushButton* button : acceptReject_) offered = offered || button->isVisibleTo(arFrame_);
  arFrame_->setVisible(offered);
}

void RunWindow::clearComment() {
  // The run cleared its own copy: no echo back.
  const QSignalBlocker quiet(commentBox_);
  commentBox_->clear();
}

QPushButton* RunWindow::buttonFor(RunButton button) const {
  switch (button) {
    case RunButton::InitRead:
      return ok1_;
    case RunButton::Quit:
      return ok2_;
    case RunButton::Accept:
      return acceptReject_[0];
    case RunButton::Reject:
      return acceptReject_[1];
    case RunButton::Control:
      return acceptReject_[2];
    case RunButton::Blank:
      return acceptReject_[3];
  }
  return nullptr;
}

void RunWindow::clearSpectra() {
  plot_->clear();
}

void RunWindow::setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) {
  plot_->setScale(lowerNm, upperNm, yMin, yMax);
  minVal_->setText(QString::fromStdString(text::fixed(lowerNm, 1)));
  maxVal_->setText(QString::fromStdString(text::fixed(upperNm, 1)));
  yMin_->setText(asNumber(yMin));
  yMax_->setText(asNumber(yMax));
}

void RunWindow::plotPoint(double wavelengthNm, double value, int paletteIndex) {
  plot_->addPoint(wavelengthNm, value, paletteIndex);
}

void RunWindow::setProgress(int percent) {
  progress_->setValue(std::clamp(percent, 0, 100));
}

void RunWindow::closeWindow() {
  // Posted: the run's own handler (Quit) is still on the stack.
  QTimer::singleShot(0, this, [this] { close(); });
}

}  // namespace zorvel::ui
