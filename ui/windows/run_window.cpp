#include "ui/windows/run_window.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <cctype>

#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/quality/quality_checks.h"
#include "core/run/qc_row_tracker.h"
#include "core/run/tray_run.h"
#include "core/run/tray_run_notices.h"
#include "core/run/tray_status_lines.h"
#include "core/text/number_format.h"
#include "ui/platform/instrument_worker.h"
#include "ui/windows/run_grid.h"
#include "ui/windows/run_spectra.h"
#include "ui/windows/run_view_relay.h"
#include "ui/windows/run_window_text.h"
#include "ui/windows/tray_status_panel.h"

// The run window's life: building it around its controller, the operator's clicks and keys,
// the worker that carries the instrument work, and closing.
namespace zorvel::ui {

using run_text::asNumber;

RunWindow::RunWindow(const RunWindowServices& services, const RunSetup& setup,
                     std::unique_ptr<SerialLine> fluorimeterLine, QWidget* parent,
                     TrayLines trayLines)
    : QWidget(parent, Qt::Window),
      clock_(services.clock),
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
  trayPanel_ = new TrayStatusPanel;
  layout->addWidget(trayPanel_);
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
  const auto& v = services.state.AppVersion;
  const DataSetPaths& set = services.state.DataSet;
  watchStatus(RunStatusContext{std::to_string(v[0]) + "." + std::to_string(v[1]) + "." +
                                   std::to_string(v[2]),
                               !setup.simulated.empty(), set.MethodFilePath,
                               set.FixPath.empty() ? set.SynPath : set.FixPath},
              RunStatusPath(set), services.notifier);
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
  controller_->runStatus().setListener({});
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
    connect(shortcut, &QShortcut::activated, this, [this, key = key] {
      controller_->keyDown(key);
      if (arm_) refreshTrayStatus();
    });
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

void RunWindow::watchStatus(const RunStatusContext& file, const std::string& path,
                            Notifier* notifier) {
  // Every change replaces the status file beside the set. A tray run's also shows at once
  // (before the file's write waits for the disk), its times ticking every second between, and
  // its end and first alert are told to whoever left it running.
  std::function<void(const RunStatus&)> told;
  if (arm_) {
    if (notifier != nullptr) {
      // The set by its file's name, as the main window shows it.
      notices_ = std::make_unique<TrayRunNotices>(*notifier,
                                                  file.dataSet.substr(file.dataSet.rfind('/') + 1));
    }
    QPointer<RunWindow> self(this);
    told = [self, notices = notices_.get()](const RunStatus& now) {
      if (self) {
        QMetaObject::invokeMethod(
            self,
            [self] {
              if (self) self->refreshTrayStatus();
            },
            Qt::QueuedConnection);
      }
      if (notices != nullptr) notices->seen(now);
    };
    tick_ = new QTimer(this);
    tick_->setInterval(1000);
    connect(tick_, &QTimer::timeout, this, [this] { refreshTrayStatus(); });
    tick_->start();
  }
  KeepRunStatusFile(controller_->runStatus(), file, path, std::move(told));
}

void RunWindow::refreshTrayStatus() {
  const auto nowS = static_cast<long>(clock_.secondsSinceMidnight());
  const TrayStatusLines lines = DescribeTrayStatus(controller_->runStatus().snapshot(), nowS);
  trayPanel_->show(lines);
  if (!lines.shown) return;
  QStringList times;
  for (const std::string& line : lines.timeInfo) times << QString::fromStdString(line);
  timeInfo_->setText(times.join('\n'));
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

}  // namespace zorvel::ui
