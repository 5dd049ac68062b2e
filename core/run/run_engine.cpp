#include "core/run/run_engine.h"

#include <cctype>
#include <cmath>
#include <cstdio>

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
      line_(services.fluorimeterLine),
      checks_(services.checks),
      view_(view),
      StopRequested(stopRequested),
      PauseRequested(pauseRequested),
      link_(line_, clock_, op_, state_.Links, state_.Prefs.Fluorimeter),
      acquisition_(link_, line_, state_.Method, state_.Links, view_,
                   [this](const std::string& title) {
                     view_.clearStatus();
                     view_.showStatus(title);
                   }),
      writer_(state_, op_, printer_, checks_),
      NewDataSet(setup.NewDataSet),
      SampleNumber(setup.SampleNumber),
      FirstSampleNumber(setup.FirstSampleNumber) {
  if (!setup.simulated.empty()) {
    writer_.setBeforeFiling([this, marking = setup.simulated] { logSimulatedFiling(marking); });
  }
  link_.setStatusText([this](const std::string& title) {
    view_.clearStatus();
    view_.showStatus(title);
  });
}

// A data set that holds simulated readings is named in the program log once per run, so they
// can be told from real ones afterwards.
void RunEngine::logSimulatedFiling(const std::string& marking) {
  if (simulatedLogged_) return;
  simulatedLogged_ = true;
  WriteLogEntry(state_.LogPath, clock_,
                marking + " readings in data set " + state_.DataSet.FixPath);
}

void RunEngine::Form_Load() {
  const MethodSettings& method = state_.Method;
  RunLayout layout{method.Fixed, method.Synch, {}};
  for (int i = 1; i <= method.NoColors && i <= kMaxColours; ++i) {
    const ColourDeclaration& pair = method.FixedPairs[static_cast<std::size_t>(i)];
    layout.heads.push_back(text::plainSingle(pair.ExWl) + "/" + text::plainSingle(pair.EmWl));
  }
  view_.layOut(layout);
  view_.setMedianRow(checks_.medianRow(method.NoColors));
  GridRow = 1;
  acquisition_.forgetWavelengths();
  KeepNumber = false;
  view_.clearStatus();
  view_.showStatus(prompt::kInitialise);
  std::string base = state_.DataSet.DataSetName;
  for (char& c : base) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  std::string& caption = screen_.filenameCaption;
  if (method.Fixed) caption = base + ".FIX";
  if (method.Synch) caption += (caption.empty() ? "" : "/") + base + ".SYN";
  screen_.okCaption = prompt::kInitCaption;
  screen_.okVisible = true;
  screen_.focus = RunButton::InitRead;
  show();
}

void RunEngine::show() {
  view_.showScreen(screen_);
  screen_.focus.reset();
}

void RunEngine::setResetEnabled(bool enabled) {
  screen_.resetEnabled = enabled;
  show();
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
  screen_.resetEnabled = false;
  screen_.okVisible = false;
  show();
  if (!SetUpInstrument(plan)) {
    if (link_.halted()) {
      machine_.fire(RunEvent::Halted);
      view_.closeWindow();
      return;
    }
    machine_.fire(RunEvent::LinkFailed);
    screen_.okVisible = true;
    screen_.focus = RunButton::InitRead;
    show();
    return;
  }
  log(plan.lampOnEntry());
  plan.instrumentReady();
  machine_.fire(RunEvent::SetUpDone);
  screen_.okCaption = prompt::kReadCaption;
  screen_.okVisible = true;
  screen_.focus = RunButton::InitRead;
  show();
}

bool RunEngine::SetUpInstrument(const RunPlan& plan) {
  view_.clearStatus();
  if (!runStartRecorded_) {
    runStartRecorded_ = true;
    runStartS_ = std::floor(clock_.secondsSinceMidnight());
  }
  view_.showStatus("Setting-up Instrument...Please Wait");
  if (link_.OpenFluorimeterPort() != LinkFailure::None) return false;
  const MethodSettings& method = state_.Method;
  const std::pair<std::string, std::string> steps[] = {
      {"$RE 0", "Setting-up Instrument...Set Free Run Mode"},
      {"$PH 0", "Setting-up Instrument...Set Fluorescence Mode"},
      {"$ES 0", "Setting-up Instrument...Turn Lamp On"},
      {fluor::FilterCommand(method.FilterSetting), "Setting-up Instrument...Set Filter"},
      {fluor::PmtVoltageCommand(static_cast<int>(method.PMTVoltage)),
       "Setting-up Instrument...Set PMT Voltage"},
      {fluor::ScanSpeedCommand(method.ScanSpeed), "Setting-up Instrument...Set Scan Speed"},
  };
  // Two time-outs anywhere in the set-up end the program: the count is not cleared here.
  for (const auto& [command, title] : steps) {
    if (link_.IssueCommand(command, StatusReader::Command, title) != LinkFailure::None) {
      return false;
    }
  }
  view_.clearStatus();
  view_.showStatus("Analysis Configuration Complete");
  for (const std::string& line : plan.readyPrompt()) view_.showStatus(line);
  view_.showStatus(plan.readLine());
  return true;
}

void RunEngine::quit(RunPlan& plan) {
  const RunState now = machine_.state();
  if (now != RunState::AwaitingInit && now != RunState::AwaitingRead) return;
  if (!plan.confirmQuit()) return;
  // A new set that received no reading is not left behind empty.
  if (NewDataSet) RemoveSetWithoutRecords(state_.Method, state_.DataSet);
  machine_.fire(RunEvent::Quit);
  plan.closing();
  Form_Unload();
  view_.closeWindow();
}

void RunEngine::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  if (line_.isOpen()) line_.close();
  if (state_.Method.PrintResults) printer_.endDocument();
}

void RunEngine::ResetSamp_Click() {
  const RunState now = machine_.state();
  if (!screen_.resetEnabled || (now != RunState::AwaitingInit && now != RunState::AwaitingRead)) {
    return;
  }
  // The box offers the number the next reading would get anyway, so that OK on it changes
  // nothing: offering the current number would file the next reading under it a second time.
  const std::string answer = op_.inputBox(
      "Current sample number is " + number(SampleNumber) + ".  Please enter new sample number.",
      "Sample Number Reset", number(NextSampleNumber(SampleType::Sample)));
  if (answer.empty()) return;
  const auto value = text::parseNumber(answer);
  if (!value) return;
  const auto entered = text::toInt16(*value);
  if (!entered) return;
  SampleNumber = *entered;
  FirstSampleNumber = *entered;
  if (!KeepNumber) --SampleNumber;
}

void RunEngine::keyDown(Key key) {
  // Abort and pause act between tubes; a cuvette run has none, so the keys do nothing there.
  if (state_.Method.DeliveryMethod != 2) return;
  if (key == Key::F5 && !PauseRequested.load()) {
    StopRequested = true;
    PauseRequested = false;
    screen_.keyLegend = "Aborting.  Please Wait.";
  } else if (key == Key::F11 && PauseRequested.load() && !StopRequested.load()) {
    StopRequested = true;
    PauseRequested = false;
    screen_.keyLegend = prompt::kKeyLegend;
  } else if (key == Key::F11) {
    StopRequested = true;
    PauseRequested = true;
    screen_.keyLegend = "Pausing.  Please Wait.";
  } else {
    return;
  }
  show();
}

void RunEngine::Comment_Change(const std::string& text) {
  std::lock_guard<std::mutex> lock(typedMutex_);
  comment_ = text;
}

std::string RunEngine::comment() const {
  std::lock_guard<std::mutex> lock(typedMutex_);
  return comment_;
}

void RunEngine::clearComment() {
  view_.clearComment();
  Comment_Change("");
}

void RunEngine::beginReading() {
  screen_.resetEnabled = false;
  screen_.okVisible = false;
  show();
  view_.clearSpectra();
  if (insertNext_) insertNext_();
}

void RunEngine::numberTube(SampleType type, bool& pureStartPending) {
  TrayNumbering n{SampleNumber, FirstSampleNumber, FirstRead, KeepNumber, pureStartPending};
  if (NumberTube(n, type)) acquisition_.forgetSlits();
  SampleNumber = n.SampleNumber;
  KeepNumber = n.KeepNumber;
  pureStartPending = n.PureStartPending;
}

int RunEngine::NextSampleNumber(SampleType type) const {
  int next = SampleNumber;
  if (FirstRead && type == SampleType::Matrix) next = 0;
  if (FirstRead && type != SampleType::Matrix && (type != SampleType::Sample || NewDataSet)) {
    next = FirstSampleNumber - 1;
  }
  return KeepNumber ? next : next + 1;
}

bool RunEngine::numberWithinRange(SampleType type) {
  const int next = NextSampleNumber(type);
  if (next <= kLargestSampleNumber) return true;
  op_.message("The next reading would be sample " + number(next) + ", beyond " +
                  number(kLargestSampleNumber) +
                  ", the last number a data set can hold.  Start a new data set to go on.",
              "ZORVEL ERROR", BoxIcon::Exclamation);
  return false;
}

void RunEngine::numberReading(SampleType type) {
  if (FirstRead) {
    acquisition_.forgetSlits();
    if (type == SampleType::Matrix) {
      SampleNumber = 0;
    } else if (type != SampleType::Sample || NewDataSet) {
      SampleNumber = FirstSampleNumber - 1;
    }
  }
  if (!KeepNumber) ++SampleNumber;
  KeepNumber = false;
}

bool RunEngine::readFixedRow(float readTimeS) {
  ++GridRow;
  view_.showRow(viewRow());
  view_.setCell(viewRow(), 0, number(SampleNumber));
  view_.clearStatus();
  return acquisition_.ReadFixed(readTimeS, viewRow());
}

bool RunEngine::scan(const std::string& title) {
  return acquisition_.ScanSynch(state_.Method.Fixed || FirstRead, title);
}

void RunEngine::labelRow(const std::string& label) {
  view_.setCell(viewRow(), 0, label);
}

RecordContent RunEngine::content() const {
  RecordContent c;
  c.sampleNumber = SampleNumber;
  c.readings = acquisition_.readings();
  c.points = acquisition_.scanPoints();
  c.comment = comment();
  return c;
}

bool RunEngine::readingLost(bool ok) {
  if (ok) {
    machine_.fire(RunEvent::ReadingDone);
    return false;
  }
  if (link_.halted()) {
    machine_.fire(RunEvent::Halted);
    view_.closeWindow();
    return false;
  }
  machine_.fire(RunEvent::LinkFailed);
  return true;
}

}  // namespace zorvel
