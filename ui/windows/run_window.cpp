#include "ui/windows/run_window.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cctype>

#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/quality/quality_checks.h"
#include "core/run/qc_row_tracker.h"
#include "core/run/tray_run.h"
#include "core/text/number_format.h"
#include "ui/platform/instrument_worker.h"
#include "ui/windows/run_grid.h"
#include "ui/windows/run_spectra.h"
#include "ui/windows/run_view_relay.h"

namespace zorvel::ui {

namespace {

// Run texts are single-byte, as the data files are.
QString latin1(const std::string& text) {
  return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

// The scale entries: the run keeps its scale in single precision, and shows it so.
QString asNumber(double value) {
  return QString::fromStdString(text::plainSingle(static_cast<float>(value)));
}

}  // namespace

RunWindow::RunWindow(const RunWindowServices& services, const RunSetup& setup,
                     std::unique_ptr<SerialLine> fluorimeterLine, QWidget* parent,
                     TrayLines trayLines)
    : QWidget(parent, Qt::Window),
      line_(std::move(fluorimeterLine)),
      trayLines_(std::move(trayLines)),
      qualityChecks_(services.qualityChecks) {
  setObjectName("SAMPLING");
  setWindowTitle("ZORVEL Sampling");
  auto* layout = new QVBoxLayout(this);
  buildMenus();
  layout->setMenuBar(menuBar_);
  grid_ = new ResultsGrid;
  layout->addWidget(grid_, 1);
  layout->addWidget(buildScanFrame(), 1);
  layout->addWidget(buildStatusArea());
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(buildDecisionFrame(), 1);
  bottom->addWidget(buildOkFrame());
  layout->addLayout(bottom);
  keepPlacesWhenHidden();
  resize(820, 640);

  relay_ = std::make_unique<RunViewRelay>(*this, *this);
  // The checks run on the worker and paint through the relay, so their colours arrive queued
  // behind the reading's own cells.
  tracker_ = std::make_unique<QcRowTracker>(*relay_);
  if (qualityChecks_ != nullptr) qualityChecks_->attachGrid(tracker_.get());
  controller_ =
      std::make_unique<RunController>(RunServices{services.state, services.op, services.clock,
                                                  services.printer, *line_, services.checks},
                                      setup, *tracker_);
  worker_ = std::make_unique<InstrumentWorker>();
  if (trayLines_.arm && trayLines_.pump) {
    // The run drives the arm and the dilutor for as long as the window is open; the tray run
    // itself works on the worker, the keys reach it from here.
    AppState& state = services.state;
    arm_ = std::make_unique<Arm>(*trayLines_.arm, services.clock, services.op, state.Links,
                                 state.Tray);
    pump_ = std::make_unique<Pump>(*trayLines_.pump, services.clock, services.op, state.Links,
                                   state.Method.Autosampler);
    controller_->attachAutosampler(*arm_, *pump_, TrayHooks{});
    tubeRange_->setVisible(true);
  }
  connectControls();
  controller_->LayOut();
  // The dilutor's initialisation takes seconds: it runs on the worker, and the run's buttons
  // wait for it while the window answers.
  if (arm_) startWork([](RunController& c) { c.InitialiseAutosampler(); });
  controller_->SetAutoHeight(autoHeight_->isChecked());
  yMin_->setText(asNumber(plot_->yMin()));
  yMax_->setText(asNumber(plot_->yMax()));
  controller_->SetVerticalScale(plot_->yMin(), plot_->yMax());
}

RunWindow::~RunWindow() {
  worker_->waitUntilIdle();
  worker_.reset();
  detachChecks();
  if (!unloaded_) controller_->Form_Unload();
  controller_.reset();
  pump_.reset();
  arm_.reset();
  tracker_.reset();
  relay_.reset();
  line_.reset();
}

void RunWindow::buildMenus() {
  menuBar_ = new QMenuBar(this);
  options_ = menuBar_->addMenu("&Options");
  options_->setObjectName("Options");
  resetSamp_ = options_->addAction("&Reset Sample Number");
  resetSamp_->setObjectName("ResetSamp");
  tubeRange_ = options_->addAction("&Tube Range");
  tubeRange_->setObjectName("TubeRange");
  // The tube range belongs to tray runs; a cuvette run never offers it.
  tubeRange_->setVisible(false);
  filename_ = menuBar_->addAction(QString());
  filename_->setObjectName("MenuFilename");
}

QWidget* RunWindow::buildStatusArea() {
  auto* area = new QWidget;
  auto* layout = new QVBoxLayout(area);
  layout->setContentsMargins(0, 0, 0, 0);
  status_ = new QLabel;
  status_->setObjectName("Status");
  status_->setFrameShape(QFrame::Panel);
  status_->setFrameShadow(QFrame::Sunken);
  status_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  status_->setMinimumHeight(4 * status_->fontMetrics().lineSpacing() + 8);
  status_->setWordWrap(true);
  layout->addWidget(status_);
  auto* legends = new QHBoxLayout;
  abortMsg_ = new QLabel;
  abortMsg_->setObjectName("AbortMsg");
  abortMsg_->setVisible(false);
  timeInfo_ = new QLabel;
  timeInfo_->setObjectName("TimeInfo");
  legends->addWidget(timeInfo_, 1);
  legends->addWidget(abortMsg_);
  layout->addLayout(legends);
  return area;
}

QGroupBox* RunWindow::buildScanFrame() {
  syncFrame_ = new QGroupBox("Synchronous Scan");
  syncFrame_->setObjectName("SyncFrame");
  plot_ = new SpectraPlot;
  yMax_ = new QLineEdit;
  yMax_->setObjectName("YMax");
  yMin_ = new QLineEdit;
  yMin_->setObjectName("YMin");
  for (QLineEdit* entry : {yMin_, yMax_}) entry->setMaximumWidth(72);
  minVal_ = new QLabel;
  minVal_->setObjectName("MinVal_Label");
  maxVal_ = new QLabel;
  maxVal_->setObjectName("MaxVal_Label");
  maxVal_->setAlignment(Qt::AlignRight);
  autoHeight_ = new QCheckBox("Auto Height");
  autoHeight_->setObjectName("AutoHeight");
  autoHeight_->setChecked(true);
  progress_ = new QProgressBar;
  progress_->setObjectName("Perc_Panel");
  progress_->setRange(0, 100);
  progress_->setValue(0);

  auto* layout = new QGridLayout(syncFrame_);
  layout->addWidget(yMax_, 0, 0, Qt::AlignTop);
  layout->addWidget(yMin_, 1, 0, Qt::AlignBottom);
  layout->addWidget(plot_, 0, 1, 2, 2);
  layout->addWidget(minVal_, 2, 1);
  layout->addWidget(maxVal_, 2, 2);
  layout->addWidget(autoHeight_, 3, 0);
  layout->addWidget(progress_, 3, 1, 1, 2);
  layout->setColumnStretch(1, 1);
  layout->setColumnStretch(2, 1);
  layout->setRowStretch(0, 1);
  layout->setRowStretch(1, 1);
  return syncFrame_;
}

QGroupBox* RunWindow::buildDecisionFrame() {
  arFrame_ = new QGroupBox;
  arFrame_->setObjectName("AR_Frame");
  auto* layout = new QGridLayout(arFrame_);
  const char* captions[] = {"&Accept", "&Reject", "&Control", "&Blank"};
  for (int i = 0; i < 4; ++i) {
    auto* button = new QPushButton(captions[i]);
    button->setObjectName(QString("AcceptReject_%1").arg(i + 1));
    button->installEventFilter(this);
    layout->addWidget(button, 0, i);
    acceptReject_.push_back(button);
  }
  commentLabel_ = new QLabel("Comment:");
  commentLabel_->setObjectName("Comment_Label");
  commentBox_ = new QLineEdit;
  commentBox_->setObjectName("Comment_Box");
  layout->addWidget(commentLabel_, 1, 0);
  layout->addWidget(commentBox_, 1, 1, 1, 3);
  arFrame_->setVisible(false);
  commentLabel_->setVisible(false);
  commentBox_->setVisible(false);
  return arFrame_;
}

void RunWindow::keepPlacesWhenHidden() {
  // The choices, the comment box and the read buttons keep their places while hidden: nothing
  // moves under the operator's pointer from one prompt to the next, and the grid keeps its
  // height, so the reading waiting for a decision stays where it was seen.
  std::vector<QWidget*> kept{arFrame_, commentLabel_, commentBox_, okFrame_};
  kept.insert(kept.end(), acceptReject_.begin(), acceptReject_.end());
  for (QWidget* widget : kept) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
  }
}

QGroupBox* RunWindow::buildOkFrame() {
  okFrame_ = new QGroupBox;
  okFrame_->setObjectName("OK_Frame");
  ok1_ = new QPushButton("&Init");
  ok1_->setObjectName("OK_1");
  ok2_ = new QPushButton("&Quit");
  ok2_->setObjectName("OK_2");
  auto* layout = new QVBoxLayout(okFrame_);
  for (QPushButton* button : {ok1_, ok2_}) {
    button->installEventFilter(this);
    layout->addWidget(button);
  }
  return okFrame_;
}

void RunWindow::connectControls() {
  connect(ok1_, &QPushButton::clicked, this,
          [this] { startWork([](auto& c) { c.press(RunButton::InitRead); }); });
  connect(ok2_, &QPushButton::clicked, this, [this] {
    if (!working_) controller_->act(RunAction::Quit);
  });
  const RunButton decisions[] = {RunButton::Accept, RunButton::Reject, RunButton::Control,
                                 RunButton::Blank};
  for (std::size_t i = 0; i < acceptReject_.size(); ++i) {
    connect(acceptReject_[i], &QPushButton::clicked, this,
            [this, button = decisions[i]] { startWork([button](auto& c) { c.press(button); }); });
  }
  connect(resetSamp_, &QAction::triggered, this, [this] {
    if (!working_) controller_->ResetSamp_Click();
  });
  connect(tubeRange_, &QAction::triggered, this, [this] {
    if (!working_) controller_->TubeRange_Click();
  });
  // The comment, AutoHeight and the scale entries go in at once: the run takes them from the
  // window's thread even while the worker reads or scans.
  connect(commentBox_, &QLineEdit::textChanged, this, [this](const QString& text) {
    controller_->Comment_Change(text.toLatin1().toStdString());
  });
  connect(autoHeight_, &QCheckBox::toggled, this,
          [this](bool on) { controller_->SetAutoHeight(on); });
  connect(yMin_, &QLineEdit::editingFinished, this, [this] { pushVerticalScale(); });
  connect(yMax_, &QLineEdit::editingFinished, this, [this] { pushVerticalScale(); });
  // The abort and pause keys act whatever has the focus, and while the instrument works.
  const std::pair<Qt::Key, Key> stopKeys[] = {{Qt::Key_F5, Key::F5}, {Qt::Key_F11, Key::F11}};
  for (const auto& [qtKey, key] : stopKeys) {
    auto* shortcut = new QShortcut(QKeySequence(qtKey), this);
    shortcut->setContext(Qt::WindowShortcut);
    connect(shortcut, &QShortcut::activated, this,
            [this, key = key] { controller_->keyDown(key); });
  }
}

bool RunWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  const QString text = key->text();
  // Space, Enter and Tab keep their usual work on a button; letters are the run's keys.
  if (text.size() != 1 || !text.at(0).isPrint() || text.at(0).isSpace() ||
      (key->modifiers() & (Qt::AltModifier | Qt::ControlModifier))) {
    return QWidget::eventFilter(watched, event);
  }
  const char typed = text.at(0).toLatin1();
  if (watched == ok1_ || watched == ok2_) {
    const char lower = static_cast<char>(std::tolower(static_cast<unsigned char>(typed)));
    if (lower == 'q') {
      if (!working_) controller_->OK_KeyPress(typed);
    } else if (lower == 'i' || lower == 'r') {
      startWork([typed](auto& c) { c.OK_KeyPress(typed); });
    }
    return true;
  }
  startWork([typed](auto& c) { c.AcceptReject_KeyPress(typed); });
  return true;
}

void RunWindow::startWork(std::function<void(RunController&)> call) {
  if (working_ || unloaded_) return;
  working_ = true;
  RunController* controller = controller_.get();
  QPointer<RunWindow> self(this);
  const bool started = worker_->start([controller, call = std::move(call)] { call(*controller); },
                                      [self] {
                                        if (self) self->workFinished();
                                      });
  if (!started) working_ = false;
}

void RunWindow::workFinished() {
  // The view calls the work made were queued before this notice, so they are shown by now.
  working_ = false;
}

void RunWindow::detachChecks() {
  if (qualityChecks_ != nullptr) qualityChecks_->attachGrid(nullptr);
  qualityChecks_ = nullptr;
}

void RunWindow::pushVerticalScale() {
  const auto low = text::parseNumber(yMin_->text().toStdString());
  const auto high = text::parseNumber(yMax_->text().toStdString());
  if (!low || !high || *high <= *low) {
    yMin_->setText(asNumber(plot_->yMin()));
    yMax_->setText(asNumber(plot_->yMax()));
    return;
  }
  plot_->setVerticalScale(*low, *high);
  controller_->SetVerticalScale(*low, *high);
}

void RunWindow::closeEvent(QCloseEvent* event) {
  if (controller_->closed()) {
    if (!unloaded_) {
      unloaded_ = true;
      worker_->waitUntilIdle();
      detachChecks();
      controller_->Form_Unload();
      emit runClosed(controller_->controlDataExist());
    }
    event->accept();
    return;
  }
  // The close box asks to quit, as OK(2) does; the run decides, and closes the window itself.
  event->ignore();
  if (!working_) controller_->act(RunAction::Quit);
}

// --- RunView -----------------------------------------------------------------------------

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
