#include "core/run/run_controller.h"

#include "core/run/run_engine.h"

namespace zorvel {

RunController::RunController(RunServices services, const RunSetup& setup, RunView& view)
    : session_(std::make_unique<RunSession>(services, setup, view, StopRequested, PauseRequested)) {
}

RunController::~RunController() = default;

void RunController::setCuvetteChanger(std::function<void()> insertNext) {
  session_->setCuvetteChanger(std::move(insertNext));
}

void RunController::Form_Load() {
  session_->Form_Load();
}
void RunController::OK_Click(int index) {
  session_->OK_Click(index);
}
void RunController::OK_KeyPress(char key) {
  session_->OK_KeyPress(key);
}
void RunController::AcceptReject_Click(int index) {
  session_->AcceptReject_Click(index);
}
void RunController::AcceptReject_KeyPress(char key) {
  session_->AcceptReject_KeyPress(key);
}
void RunController::ResetSamp_Click() {
  session_->ResetSamp_Click();
}
void RunController::Form_KeyDown(int keyCode) {
  session_->Form_KeyDown(keyCode);
}
void RunController::Comment_Change(const std::string& text) {
  session_->Comment_Change(text);
}
void RunController::SetAutoHeight(bool on) {
  session_->SetAutoHeight(on);
}
void RunController::SetVerticalScale(double yMin, double yMax) {
  session_->SetVerticalScale(yMin, yMax);
}
void RunController::Form_Unload() {
  session_->Form_Unload();
}

RunState RunController::state() const {
  return session_->state();
}
bool RunController::controlDataExist() const {
  return session_->controlDataExist();
}
int RunController::sampleNumber() const {
  return session_->sampleNumber();
}

}  // namespace zorvel
