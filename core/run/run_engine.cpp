#include "core/run/run_engine.h"

#include "core/datafiles/empty_set.h"
#include "core/files/log_line.h"
#include "core/files/record_append.h"
#include "core/run/run_prompts.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string number(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

}  // namespace

RunEngine::RunEngine(RunServices services, const RunSetup& setup, RunView& view,
                     std::atomic<bool>& stopRequested, std::atomic<bool>& pauseRequested)
    : state_(services.state),
      op_(services.op),
      clock_(services.clock),
      printer_(services.printer),
      checks_(services.checks),
      display_(view),
      newDataSet_(setup.NewDataSet),
      numbering_(setup),
      instrument_(services, view, [this](const std::string& title) { display_.status(title); }),
      writer_(state_, op_, printer_, checks_),
      keys_(stopRequested, pauseRequested,
            [this](const std::string& text) { display_.legend(text); }) {
  if (!setup.simulated.empty()) writer_.markSimulated(clock_, setup.simulated);
}

void RunEngine::Form_Load() {
  instrument_.acquisition().forgetWavelengths();
  numbering_.keep(false);
  display_.layOut(state_.Method, checks_.medianRow(state_.Method.NoColors), state_.DataSet);
}

void RunEngine::log(const std::string& entry) {
  WriteLogEntry(state_.LogPath, clock_, entry);
}

bool RunEngine::confirmQuitDuringPures(bool puresPending) {
  if (!puresPending) return true;
  const int answer = op_.message(prompt::kQuitDuringPures, prompt::kQueryTitle, BoxIcon::Question,
                                 BoxButtons::YesNo);
  if (answer != answer::kYes) return false;
  // The removal is made as durable as the files' creation was, so a power cut cannot bring the
  // abandoned set back.
  std::vector<std::string> removed;
  if (state_.Method.Fixed) removed.push_back(state_.DataSet.FixPath);
  if (state_.Method.Synch) removed.push_back(state_.DataSet.SynPath);
  RemoveFilesDurably(removed);
  log("Run aborted");
  return true;
}

void RunEngine::initialise(RunPlan& plan) {
  if (!machine_.fire(RunEvent::Init)) return;
  display_.hideButtons();
  if (!setUpInstrument(plan)) {
    if (instrument_.halted()) {
      machine_.fire(RunEvent::Halted);
      view().closeWindow();
      return;
    }
    machine_.fire(RunEvent::LinkFailed);
    display_.offerButton(display_.screen().okCaption);
    return;
  }
  log(plan.lampOnEntry());
  plan.instrumentReady();
  machine_.fire(RunEvent::SetUpDone);
  display_.offerButton(prompt::kReadCaption);
}

bool RunEngine::setUpInstrument(const RunPlan& plan) {
  display_.status("Setting-up Instrument...Please Wait");
  if (!instrument_.setUp(state_.Method)) return false;
  display_.status("Analysis Configuration Complete");
  for (const std::string& line : plan.readyPrompt()) view().showStatus(line);
  view().showStatus(plan.readLine());
  return true;
}

void RunEngine::quit(RunPlan& plan) {
  const RunState now = machine_.state();
  if (now != RunState::AwaitingInit && now != RunState::AwaitingRead) return;
  if (!plan.confirmQuit()) return;
  // A new set that received no reading is not left behind empty.
  if (newDataSet_) RemoveSetWithoutRecords(state_.Method, state_.DataSet);
  machine_.fire(RunEvent::Quit);
  plan.closing();
  Form_Unload();
  view().closeWindow();
}

void RunEngine::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  instrument_.close();
  if (state_.Method.PrintResults) printer_.endDocument();
}

void RunEngine::ResetSamp_Click() {
  const RunState now = machine_.state();
  if (!display_.screen().resetEnabled ||
      (now != RunState::AwaitingInit && now != RunState::AwaitingRead)) {
    return;
  }
  // The box offers the number the next reading would get anyway, so that OK on it changes
  // nothing: offering the current number would file the next reading under it a second time.
  const std::string next = number(numbering_.next(SampleType::Sample));
  const std::string answer =
      op_.inputBox("Current sample number is " + number(numbering_.current()) +
                       ".  Please enter new sample number.  The number offered, " + next +
                       ", is the one the next sample would take.",
                   "Sample Number Reset", next);
  if (answer.empty()) return;
  const auto value = text::parseNumber(answer);
  if (!value) return;
  const auto entered = text::toInt16(*value);
  if (!entered) return;
  numbering_.restartAt(*entered);
}

void RunEngine::keyDown(Key key) {
  // Abort and pause act between tubes; a cuvette run has none, so the keys do nothing there.
  if (state_.Method.DeliveryMethod != Delivery::Autosampler) return;
  switch (keys_.keyDown(key)) {
    case StopKeys::Request::Abort:
      runStatus_.abortRequested();
      break;
    case StopKeys::Request::Pause:
      runStatus_.pauseRequested();
      break;
    case StopKeys::Request::Resume:
      runStatus_.resumed();
      break;
    case StopKeys::Request::None:
      break;
  }
}

bool RunEngine::checkpoint(const std::function<void()>& yield) {
  const bool abortAsked = runStatus_.snapshot().state == RunStatusState::AbortRequested;
  // The question is asked under its own status, not under the step before it.
  if (abortAsked && !keys_.terminating()) display_.status("Abort requested");
  const bool ends =
      keys_.CheckStopKeys({op_, clock_, yield, [this](bool paused) {
                             machine_.fire(paused ? RunEvent::Pause : RunEvent::Resume);
                             if (paused) {
                               runStatus_.paused();
                               display_.status("Paused");
                             } else {
                               runStatus_.resumed();
                             }
                           }});
  if (abortAsked && !ends) runStatus_.resumed();
  return ends;
}

void RunEngine::clearComment() {
  view().clearComment();
  comment_.set("");
}

void RunEngine::beginReading(bool newCuvette) {
  display_.hideButtons();
  view().clearSpectra();
  if (newCuvette && insertNext_) insertNext_();
}

void RunEngine::numberTube(SampleType type, bool& pureStartPending) {
  if (numbering_.numberTube(type, pureStartPending)) instrument_.acquisition().forgetSlits();
}

void RunEngine::numberReading(SampleType type) {
  if (numbering_.numberReading(type)) instrument_.acquisition().forgetSlits();
  runStatus_.tubeStarted(0, 0, SampleTypeName(type), numbering_.current());
}

bool RunEngine::numberWithinRange(SampleType type) {
  const int next = numbering_.next(type);
  if (next <= RunNumbering::kLargestSampleNumber) return true;
  op_.message("The next reading would be sample " + number(next) + ", beyond " +
                  number(RunNumbering::kLargestSampleNumber) +
                  ", the last number a data set can hold.  Start a new data set to go on.",
              "ZORVEL ERROR", BoxIcon::Exclamation);
  return false;
}

bool RunEngine::readFixedRow(float readTimeS) {
  const int row = display_.nextRow(numbering_.current());
  return instrument_.acquisition().ReadFixed(readTimeS, row);
}

bool RunEngine::scan(const std::string& title) {
  return instrument_.acquisition().ScanSynch(state_.Method.Fixed || numbering_.firstRead(), title);
}

RecordContent RunEngine::content() const {
  RecordContent c;
  c.sampleNumber = numbering_.current();
  c.readings = instrument_.acquisition().readings();
  c.points = instrument_.acquisition().scanPoints();
  c.comment = comment_.get();
  return c;
}

bool RunEngine::readingLost(bool ok) {
  if (ok) {
    machine_.fire(RunEvent::ReadingDone);
    return false;
  }
  if (instrument_.halted()) {
    machine_.fire(RunEvent::Halted);
    view().closeWindow();
    return false;
  }
  machine_.fire(RunEvent::LinkFailed);
  return true;
}

}  // namespace zorvel
