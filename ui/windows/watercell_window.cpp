#include "ui/windows/watercell_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "ui/platform/gui_thread.h"
#include "ui/windows/sequence_bar.h"

namespace zorvel::ui {

namespace {

QLabel* LinesArea(const char* name, int lineCount) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  label->setMinimumHeight(label->fontMetrics().lineSpacing() * lineCount + 8);
  label->setMinimumWidth(label->fontMetrics().averageCharWidth() * 78);
  label->setFrameShape(QFrame::StyledPanel);
  return label;
}

QPushButton* Button(const char* caption, const char* name) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

WaterCellWindow::WaterCellWindow(AppState& state, Operator& op, Clock& clock,
                                 std::unique_ptr<SerialLine> line, WaterCellResult& lastResult,
                                 QWidget* parent)
    : QDialog(parent),
      line_(std::move(line)),
      presenter_(state, op, clock, *line_, lastResult, *this) {
  setObjectName("WATERFORM");
  setWindowTitle("Watercell");
  messages_ = LinesArea("Messages", 3);
  status_ = LinesArea("Status", 7);
  progress_ = new QProgressBar;
  progress_->setObjectName("Perc_Panel");
  progress_->setRange(0, 100);
  progress_->setVisible(false);
  start_ = Button("Start", "Start");
  cancel_ = Button("Cancel", "Cancel");
  rerun_ = Button("Rerun Watercell", "Rerun");
  ok_ = Button("OK", "OK");
  // Stretches on both sides keep whichever buttons show centred, OK alone included.
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  for (QPushButton* b : {start_, cancel_, rerun_, ok_}) buttons->addWidget(b);
  buttons->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(messages_);
  layout->addWidget(status_, 1);
  layout->addWidget(progress_);
  layout->addLayout(buttons);
  // Stop is the one control while the check runs; it is taken on the window thread and the
  // drive sees it at its next point.
  steps_ = new SequenceBar([this] { presenter_.requestStop(); });
  layout->addWidget(steps_);

  connect(start_, &QPushButton::clicked, this, [this] { runOnWorker(presenter_.beginStart()); });
  connect(rerun_, &QPushButton::clicked, this, [this] { runOnWorker(presenter_.beginRerun()); });
  connect(ok_, &QPushButton::clicked, this, [this] { presenter_.ok(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { presenter_.cancel(); });
  presenter_.opened();
}

WaterCellWindow::~WaterCellWindow() {
  worker_.waitUntilIdle();
}

void WaterCellWindow::runOnWorker(bool begun) {
  if (begun) worker_.start([this] { presenter_.runCheck(); });
}

void WaterCellWindow::reject() {
  if (worker_.busy()) return;  // the time drive cannot be left half-way
  presenter_.closeRequested();
}

void WaterCellWindow::render(CheckArea which) {
  QStringList rows;
  for (const auto& [n, text] : lines_[which]) {
    while (rows.size() < n - 1) rows.append(QString());
    rows.append(text);
  }
  area(which)->setText(rows.join('\n'));
}

void WaterCellWindow::printLine(CheckArea which, int line, const std::string& text,
                                bool clearFirst) {
  onGuiThread([&] {
    if (clearFirst) lines_[which].clear();
    lines_[which][line] = QString::fromStdString(text);
    render(which);
  });
}

void WaterCellWindow::clearArea(CheckArea which) {
  onGuiThread([&] {
    lines_[which].clear();
    render(which);
  });
}

void WaterCellWindow::showButtons(const WaterCellButtons& b) {
  onGuiThread([&] {
    start_->setVisible(b.start);
    cancel_->setVisible(b.cancel);
    rerun_->setVisible(b.rerun);
    ok_->setVisible(b.ok);
    start_->setDefault(b.startIsDefault);
    ok_->setDefault(b.okIsDefault);
    setProperty("okIsCancel", b.okIsCancel);
    if (b.startIsDefault) start_->setFocus();
    if (b.okIsDefault) ok_->setFocus();
  });
}

void WaterCellWindow::setProgressVisible(bool visible) {
  onGuiThread([&] {
    progress_->setVisible(visible);
    // The drive's own bar counts its time; the steps' bar would only repeat it.
    if (visible) steps_->hideProgress();
  });
}

void WaterCellWindow::setProgress(int percent) {
  onGuiThread([&] { progress_->setValue(percent); });
}

void WaterCellWindow::showStep(const std::string& text) {
  onGuiThread([&] {
    steps_->showStep(text);
    // A step that wraps makes room for itself rather than run under the buttons.
    const int needed = minimumSizeHint().height();
    if (height() < needed) resize(width(), needed);
  });
}

void WaterCellWindow::showStepProgress(int done, int total) {
  onGuiThread([&] { steps_->showProgress(done, total); });
}

void WaterCellWindow::setStoppable(bool stoppable) {
  onGuiThread([&] { steps_->setRunning(stoppable); });
}

void WaterCellWindow::close() {
  onGuiThread([&] { QDialog::accept(); });
}

void RunWaterCellWindow(AppState& state, Operator& op, Clock& clock,
                        std::unique_ptr<SerialLine> line, WaterCellResult& lastResult,
                        QWidget* parent) {
  WaterCellWindow window(state, op, clock, std::move(line), lastResult, parent);
  window.adjustSize();
  if (const QScreen* screen = window.screen()) {
    window.move(screen->availableGeometry().center() - window.rect().center());
  }
  window.exec();
}

}  // namespace zorvel::ui
