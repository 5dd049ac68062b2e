#include "core/run/run_controller.h"

#include <cctype>

#include "core/run/cuvette_plan.h"
#include "core/run/cuvette_status.h"
#include "core/run/run_alert_log.h"
#include "core/run/run_engine.h"
#include "core/run/run_view_tap.h"
#include "core/run/tray_run.h"

namespace zorvel {

namespace {

bool offers(const RunChoices& choices, RunAction decision) {
  switch (decision) {
    case RunAction::Accept:
      return choices.accept;
    case RunAction::Reject:
      return choices.reject;
    case RunAction::Control:
      return choices.control;
    case RunAction::Blank:
      return choices.blank;
    default:
      return false;
  }
}

char lowered(char key) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(key)));
}

// The run talks to the operator through a stand-in that a tray run can divert.
RunServices through(const RunServices& s, Operator& op) {
  return RunServices{s.state, op, s.clock, s.printer, s.fluorimeterLine, s.checks};
}

}  // namespace

RunController::RunController(RunServices services, const RunSetup& setup, RunView& view)
    : unattended_(std::make_unique<UnattendedOperator>(services.op)),
      viewTap_(std::make_unique<RunViewTap>(view)),
      engine_(std::make_unique<RunEngine>(through(services, *unattended_), setup, *viewTap_,
                                          StopRequested, PauseRequested)),
      plan_(std::make_unique<CuvettePlan>(*engine_, setup)),
      cuvetteStatus_(std::make_unique<CuvetteStatusFeed>(*engine_, *viewTap_)),
      setup_(setup) {}

void RunController::attachAutosampler(Arm& arm, Pump& pump, const TrayHooks& hooks) {
  cuvetteStatus_.reset();
  // No tray run has started yet.
  engine_->runStatus().moved(RunStatusState::Idle);
  auto tray = std::make_unique<TrayRun>(*engine_, setup_, arm, pump, *unattended_, hooks);
  tray_ = tray.get();
  plan_ = std::move(tray);
}

void RunController::TubeRange_Click() {
  if (tray_ != nullptr) tray_->TubeRange_Click();
}

void RunController::Terminate() {
  engine_->terminate();
}

RunController::~RunController() = default;

void RunController::setCuvetteChanger(std::function<void()> insertNext) {
  engine_->setCuvetteChanger(std::move(insertNext));
}

void RunController::Form_Load() {
  LayOut();
  InitialiseAutosampler();
}

void RunController::LayOut() {
  engine_->Form_Load();
}

void RunController::InitialiseAutosampler() {
  if (tray_ != nullptr) tray_->formLoaded();
}

void RunController::act(RunAction action) {
  switch (action) {
    case RunAction::Init:
      engine_->initialise(*plan_);
      return;
    case RunAction::Read:
      plan_->read();
      return;
    case RunAction::Quit:
      engine_->quit(*plan_);
      return;
    default:
      if (state() != RunState::AwaitingDecision) return;
      if (offers(engine_->display().screen().choices, action)) plan_->decide(action);
  }
}

void RunController::press(RunButton button) {
  switch (button) {
    case RunButton::InitRead:
      act(state() == RunState::AwaitingInit ? RunAction::Init : RunAction::Read);
      return;
    case RunButton::Quit:
      act(RunAction::Quit);
      return;
    case RunButton::Accept:
      act(RunAction::Accept);
      return;
    case RunButton::Reject:
      act(RunAction::Reject);
      return;
    case RunButton::Control:
      act(RunAction::Control);
      return;
    case RunButton::Blank:
      act(RunAction::Blank);
      return;
  }
}

void RunController::OK_KeyPress(char key) {
  const char k = lowered(key);
  if (k == 'i') act(RunAction::Init);
  if (k == 'r') act(RunAction::Read);
  if (k == 'q') act(RunAction::Quit);
}

void RunController::AcceptReject_KeyPress(char key) {
  const struct {
    char key;
    RunAction decision;
  } keys[] = {{'a', RunAction::Accept},
              {'r', RunAction::Reject},
              {'c', RunAction::Control},
              {'b', RunAction::Blank}};
  const char k = lowered(key);
  for (const auto& entry : keys) {
    if (entry.key == k && offers(engine_->display().screen().choices, entry.decision)) {
      act(entry.decision);
      return;
    }
  }
  engine_->op().beep();
}

void RunController::ResetSamp_Click() {
  engine_->ResetSamp_Click();
}
void RunController::keyDown(Key key) {
  engine_->keyDown(key);
}
void RunController::Comment_Change(const std::string& text) {
  engine_->Comment_Change(text);
}
void RunController::SetAutoHeight(bool on) {
  engine_->SetAutoHeight(on);
}
void RunController::SetVerticalScale(double yMin, double yMax) {
  engine_->SetVerticalScale(yMin, yMax);
}
void RunController::Form_Unload() {
  engine_->Form_Unload();
  plan_->closing();
  if (cuvetteStatus_ && engine_->terminating() && !closed()) {
    engine_->runStatus().ended(RunEnd::Terminated);
  }
}

RunState RunController::state() const {
  return engine_->runState();
}
bool RunController::controlDataExist() const {
  return engine_->checks().ControlCount() > 0;
}
RunStatusBoard& RunController::runStatus() {
  return engine_->runStatus();
}
int RunController::sampleNumber() const {
  return engine_->numbering().current();
}

int RunController::readingsNotRecorded() const {
  return engine_->readingsNotRecorded();
}

}  // namespace zorvel
