#include "core/run/run_engine.h"

#include <cctype>
#include <cmath>
#include <cstdio>

#include "core/files/log_line.h"
#include "core/run/run_prompts.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr int kKeyF5 = 116;
constexpr int kKeyF11 = 122;

std::string number(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

}  // namespace

RunSession::RunSession(RunServices services, const RunSetup& setup, RunView& view,
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
      FirstSampleNumber(setup.FirstSampleNumber),
      PuresPending(setup.PuresPending),
      PureIndex(setup.PureIndex),
      BuildingDatabases(setup.BuildingDatabases) {
  link_.setStatusText([this](const std::string& title) {
    view_.clearStatus();
    view_.showStatus(title);
  });
}

void RunSession::Form_Load() {
  const MethodSettings& method = state_.Method;
  view_.layOut(method.Fixed, method.Synch);
  std::vector<std::string> heads;
  for (int i = 1; i <= method.NoColors && i <= kMaxColours; ++i) {
    const ColourDeclaration& pair = method.FixedPairs[static_cast<std::size_t>(i)];
    heads.push_back(text::fixed(pair.ExWl, 0) + "/" + text::fixed(pair.EmWl, 0));
  }
  view_.setGridColumns(heads);
  view_.setMedianRow(checks_.medianRow(method.NoColors));
  GridRow = 1;
  acquisition_.forgetWavelengths();
  KeepNumber = false;
  okCaption_ = prompt::kInitCaption;
  view_.setOkCaption(okCaption_);
  view_.showOkFrame(true);
  view_.setResetSampEnabled(resetEnabled_);
  view_.clearStatus();
  view_.showStatus(prompt::kInitialise);
  std::string caption;
  std::string base = state_.DataSet.DataSetName;
  for (char& c : base) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  if (method.Fixed) caption = base + ".FIX";
  if (method.Synch) caption += (caption.empty() ? "" : "/") + base + ".SYN";
  view_.setFilenameCaption(caption);
  view_.setFocus(RunButton::InitRead);
}

void RunSession::OK_Click(int index) {
  if (index == 2) {
    quit();
  } else if (index == 1 && okCaption_ == prompt::kInitCaption) {
    initialise();
  } else if (index == 1) {
    readCuvette();
  }
}

void RunSession::OK_KeyPress(char key) {
  const char k = static_cast<char>(std::tolower(static_cast<unsigned char>(key)));
  if (k == 'r' && okCaption_ == prompt::kReadCaption) OK_Click(1);
  if (k == 'i' && okCaption_ == prompt::kInitCaption) OK_Click(1);
  if (k == 'q') OK_Click(2);
}

void RunSession::AcceptReject_KeyPress(char key) {
  const char k = static_cast<char>(std::tolower(static_cast<unsigned char>(key)));
  const struct {
    char key;
    bool offered;
    int index;
  } keys[] = {{'a', offered_.accept, 1},
              {'r', offered_.reject, 2},
              {'c', offered_.control, 3},
              {'b', offered_.blank, 4}};
  for (const auto& entry : keys) {
    if (entry.key == k && entry.offered) {
      AcceptReject_Click(entry.index);
      return;
    }
  }
  op_.beep();
}

void RunSession::initialise() {
  if (!machine_.fire(RunEvent::Init)) return;
  resetEnabled_ = false;
  view_.setResetSampEnabled(false);
  view_.showOkFrame(false);
  if (!SetUpInstrument()) {
    if (link_.halted()) {
      machine_.fire(RunEvent::Halted);
      view_.closeWindow();
      return;
    }
    machine_.fire(RunEvent::LinkFailed);
    view_.showOkFrame(true);
    view_.setFocus(RunButton::InitRead);
    return;
  }
  WriteLogEntry(state_.LogPath, clock_, "Lamp On");
  if (BuildingDatabases || PuresPending) {
    BlankPending = true;
    PureIndex = 0;
  }
  machine_.fire(RunEvent::SetUpDone);
  okCaption_ = prompt::kReadCaption;
  view_.setOkCaption(okCaption_);
  view_.showOkFrame(true);
  view_.setFocus(RunButton::InitRead);
}

bool RunSession::SetUpInstrument() {
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
  if (BuildingDatabases) {
    view_.showStatus(prompt::Databases(checks_.ControlCount(), checks_.BlankCount()));
  } else if (PuresPending) {
    view_.showStatus("Sample needed: Pure solvent blank.");
  } else {
    view_.showStatus("Sample needed: Sample " + number(SampleNumber));
  }
  view_.showStatus("[R]ead Sample or [Q]uit");
  return true;
}

void RunSession::readCuvette() {
  if (!machine_.fire(RunEvent::Read)) return;
  resetEnabled_ = false;
  view_.setResetSampEnabled(false);
  view_.showOkFrame(false);
  view_.clearSpectra();
  if (insertNext_) insertNext_();
  bool ok = true;
  if (BuildingDatabases) {
    ok = ReadSample(SampleType::Blank);
    BlankPending = false;
    KeepNumber = true;
    if (checks_.ControlCount() >= 3 && checks_.BlankCount() >= 3) BuildingDatabases = false;
  } else if (PuresPending && !BlankPending) {
    ok = ReadSample(SampleType::Pure);
  } else if (PuresPending && BlankPending) {
    ok = ReadSample(SampleType::Blank);
    KeepNumber = true;
  } else {
    ok = ReadSample(SampleType::Sample);
  }
  readingEnded(ok);
}

void RunSession::readingEnded(bool ok) {
  if (ok) {
    machine_.fire(RunEvent::ReadingDone);
    return;
  }
  if (link_.halted()) {
    machine_.fire(RunEvent::Halted);
    view_.closeWindow();
    return;
  }
  // The link is gone: nothing was filed for this cuvette, so the same item is asked for again
  // under the same number once the operator has seen to the instrument.
  machine_.fire(RunEvent::LinkFailed);
  hideDecision();
  KeepNumber = !FirstRead;
  RepromptSample(true);
}

void RunSession::quit() {
  const RunState now = machine_.state();
  if (now != RunState::AwaitingInit && now != RunState::AwaitingRead) return;
  if (PuresPending) {
    const int answer = op_.message(prompt::kQuitDuringPures, prompt::kQueryTitle, BoxIcon::Question,
                                   BoxButtons::YesNo);
    if (answer != answer::kYes) return;
    if (state_.Method.Fixed) std::remove(state_.DataSet.FixPath.c_str());
    if (state_.Method.Synch) std::remove(state_.DataSet.SynPath.c_str());
    WriteLogEntry(state_.LogPath, clock_, "Run aborted");
  }
  machine_.fire(RunEvent::Quit);
  Form_Unload();
  view_.closeWindow();
}

void RunSession::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  if (line_.isOpen()) line_.close();
  if (state_.Method.PrintResults) printer_.endDocument();
}

void RunSession::ResetSamp_Click() {
  const RunState now = machine_.state();
  if (!resetEnabled_ || (now != RunState::AwaitingInit && now != RunState::AwaitingRead)) return;
  const std::string answer = op_.inputBox(
      "Current sample number is " + number(SampleNumber) + ".  Please enter new sample number.",
      "Sample Number Reset", number(SampleNumber));
  if (answer.empty()) return;
  const auto value = text::parseNumber(answer);
  if (!value) return;
  const auto entered = text::toInt16(*value);
  if (!entered) return;
  SampleNumber = *entered;
  FirstSampleNumber = *entered;
  if (!KeepNumber) --SampleNumber;
}

void RunSession::Form_KeyDown(int keyCode) {
  if (keyCode == kKeyF5 && !PauseRequested.load()) {
    StopRequested = true;
    PauseRequested = false;
    view_.setKeyLegend("Aborting.  Please Wait.");
  } else if (keyCode == kKeyF11 && PauseRequested.load() && !StopRequested.load()) {
    StopRequested = true;
    PauseRequested = false;
    view_.setKeyLegend(prompt::kKeyLegend);
  } else if (keyCode == kKeyF11) {
    StopRequested = true;
    PauseRequested = true;
    view_.setKeyLegend("Pausing.  Please Wait.");
  }
}

void RunSession::Comment_Change(const std::string& text) {
  std::lock_guard<std::mutex> lock(typedMutex_);
  comment_ = text;
}

std::string RunSession::comment() const {
  std::lock_guard<std::mutex> lock(typedMutex_);
  return comment_;
}

void RunSession::SetAutoHeight(bool on) {
  acquisition_.setAutoHeight(on);
}

void RunSession::SetVerticalScale(double yMin, double yMax) {
  acquisition_.setVerticalScale(yMin, yMax);
}

}  // namespace zorvel
