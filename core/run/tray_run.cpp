#include "core/run/tray_run.h"

#include <algorithm>
#include <cmath>

#include "core/datafiles/record_lines.h"
#include "core/run/run_prompts.h"
#include "core/run/run_times.h"
#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr std::int16_t kHome = -1;
constexpr const char* kTubeRangeTitle = "Tube Range Reset";

std::string whole(double value) {
  return text::fixed(value, 0);
}

char letterOf(SampleType type) {
  switch (type) {
    case SampleType::Pure:
      return record_letter::kPure;
    case SampleType::Control:
      return record_letter::kControl;
    case SampleType::Blank:
      return record_letter::kBlank;
    default:
      return record_letter::kSample;
  }
}

bool filed(SampleType type) {
  return type == SampleType::Control || type == SampleType::Blank;
}

}  // namespace

TrayRun::TrayRun(RunEngine& engine, const RunSetup& setup, Arm& arm, Pump& pump,
                 UnattendedOperator& unattended, TrayHooks hooks)
    : engine_(engine),
      method_(engine.method()),
      arm_(arm),
      pump_(pump),
      unattended_(unattended),
      hooks_(std::move(hooks)),
      cycle_(
          arm, pump, engine.method().Autosampler, [this](const std::string& text) { status(text); },
          hooks_.yield),
      log_(engine.state(), engine.clock()),
      PuresPending(setup.PuresPending),
      BuildingDatabases(setup.BuildingDatabases),
      PureStartPending(setup.PureStartPending),
      resume_(setup.resume) {}

std::string TrayRun::readLine() const {
  return PuresPending ? "[R]ead Sample or [Q]uit" : "[R]ead Tray or [Q]uit";
}

void TrayRun::formLoaded() {
  pump_.InitialisePump();
}

void TrayRun::closing() {
  pump_.ClosePumpPort();
  arm_.CloseArmPort();
}

bool TrayRun::confirmQuit() {
  return engine_.confirmQuitDuringPures(PuresPending);
}

void TrayRun::status(const std::string& text) {
  engine_.display().status(text);
  engine_.runStatus().step(text);
}

void TrayRun::note(const std::string& text) {
  if (hooks_.note) hooks_.note(text);
}

void TrayRun::noteRecord(const TrayVisit& visit, char letter, bool scan) {
  if (!hooks_.note) return;
  const DataSetPaths& p = engine_.state().DataSet;
  const std::string* file = scan ? &p.SynPath : &p.FixPath;
  if (visit.type == SampleType::Control) file = scan ? &p.StlPath : &p.CtlPath;
  if (visit.type == SampleType::Blank) file = scan ? &p.SlkPath : &p.BlkPath;
  note("Record " + std::string(1, letter) + number() + " of tube " + whole(visit.tube) +
       " written to " + *file);
}

std::string TrayRun::number() const {
  return whole(engine_.numbering().current());
}

bool TrayRun::checkpoint() {
  return engine_.checkpoint(hooks_.yield);
}

void TrayRun::read() {
  if (!engine_.machine().fire(RunEvent::ReadTray)) return;
  engine_.display().hideButtons();
  // A resumed run follows the plan its journal was made from, from the first visit not done.
  AutosamplerSettings planned;
  const TrayPlanInput input = resume_ ? JournalPlanInput(resume_->journal, method_, planned)
                                      : TrayPlanInput{method_.Autosampler, method_.NoPures,
                                                      PuresPending, BuildingDatabases};
  const std::vector<TrayVisit> plan = PlanTray(input);
  const std::size_t from = resume_ ? resume_->visit : 0;
  skipRecords_ = resume_ ? resume_->recordsDone : 0;
  if (resume_) {
    journal_ = resume_->journal;
  } else {
    startJournal(input);
  }
  resume_.reset();
  total_ = PlannedTotal(input) - static_cast<int>(from);
  completed_ = 0;
  startS_ = static_cast<long>(std::floor(engine_.clock().secondsSinceMidnight()));
  const AutosamplerSettings& a = method_.Autosampler;
  engine_.runStatus().settingUp(total_, std::max(a.EndingTube - a.StartingTube + 1, 0), startS_,
                                engine_.clock().now(), log_.path());
  log_.setListener([this](const std::string& line) { engine_.runStatus().alert(line); });
  // The arm's position is not trusted from before: the first move is always sent.
  engine_.state().Links.CurrentArmTube = kHome;
  engine_.display().legend(prompt::kKeyLegend);
  engine_.log("AS Run Started");
  engine_.writer().setUnattended(&log_);
  unattended_.divertTo(&log_);
  const Walk walked = walk(plan, from);
  if (walked == Walk::Completed) completeJournal();
  engine_.writer().setUnattended(nullptr);
  unattended_.divertTo(nullptr);
  if (walked == Walk::Halted) {
    engine_.runStatus().ended(RunEnd::InstrumentLost);
    engine_.machine().fire(RunEvent::Halted);
    engine_.view().closeWindow();
    return;
  }
  finish(walked);
  if (log_.logged()) {
    engine_.op().message("Error/Maxima exceeded/Alert messages have been logged.  Please check " +
                             log_.path() + " for details.",
                         prompt::kQueryTitle, BoxIcon::None, BoxButtons::Ok);
  }
  engine_.log("AS Run Complete");
  engine_.machine().fire(walked == Walk::Lost ? RunEvent::LinkFailed : RunEvent::TrayDone);
  engine_.view().showStatus(readLine());
  engine_.display().screen().resetEnabled = true;
  engine_.display().offerButton(prompt::kReadCaption);
}

TrayRun::Walk TrayRun::walk(const std::vector<TrayVisit>& plan, std::size_t from) {
  runEndMessage_ = "Run aborted.";
  for (std::size_t k = from; k < plan.size(); ++k) {
    const TrayVisit& visit = plan[k];
    if (visit.phase != TrayPhase::Opening && BuildingDatabases &&
        engine_.checks().ControlCount() >= 3 && engine_.checks().BlankCount() >= 3) {
      BuildingDatabases = false;
    }
    if (visit.endsPures) PuresPending = false;
    const Cycle cycle = ProcessTube(visit);
    if (cycle == Cycle::Aborted) return Walk::AbortedInCycle;
    if (cycle == Cycle::Failed || !afterTube(visit)) {
      return engine_.halted() ? Walk::Halted : Walk::Lost;
    }
    if (checkpoint()) return Walk::AbortedAtCheck;
  }
  runEndMessage_ = "Run completed.";
  return Walk::Completed;
}

TrayRun::Cycle TrayRun::ProcessTube(const TrayVisit& visit) {
  engine_.numberTube(visit.type, PureStartPending);
  const bool rangeTube = visit.phase == TrayPhase::Tubes &&
                         (visit.type == SampleType::Sample || visit.type == SampleType::Pure);
  engine_.runStatus().tubeStarted(visit.tube,
                                  rangeTube ? visit.tube - method_.Autosampler.StartingTube + 1 : 0,
                                  SampleTypeName(visit.type), engine_.numbering().current());
  note("Tube " + whole(visit.tube) + ": " + SampleTypeName(visit.type) + " " + number());
  Operator& op = engine_.op();
  op.setBusy(true);
  const auto done = [&op](Cycle result) {
    op.setBusy(false);
    return result;
  };
  status(tube_status::kRinsing);
  if (cycle_.RinseAndDry() != LinkFailure::None) return done(Cycle::Failed);
  // The one place inside the cycle where the keys count: the tube is still untouched.
  if (checkpoint()) return done(Cycle::Aborted);
  if (cycle_.DrawIntoFlowCell(visit.tube, visit.extractionHeight, visit.flushHeight,
                              engine_.state().Steps) != LinkFailure::None) {
    return done(Cycle::Failed);
  }
  if (!readTube(visit)) return done(Cycle::Failed);
  if (visit.type == SampleType::Sample) engine_.numbering().counted();
  return done(Cycle::Done);
}

bool TrayRun::readTube(const TrayVisit& visit) {
  const char letter = letterOf(visit.type);
  log_.setTube(visit.tube, std::string(1, letter) + number());
  const int repetitions = std::max<int>(method_.Repetitions, 1);
  // A resumed tube cut between its records reads only those it lacks.
  const auto due = [this] { return skipRecords_ > 0 ? (--skipRecords_, false) : true; };
  for (int r = 1; r <= repetitions; ++r) {
    if (method_.Fixed && due() && !readFixedReplicate(visit, letter)) return false;
    if (method_.Synch && due() && !scanReplicate(visit, letter)) return false;
  }
  return true;
}

void TrayRun::startJournal(const TrayPlanInput& input) {
  const AutosamplerSettings& a = input.tray;
  const CalendarTime now = engine_.clock().now();
  journal_ = TrayJournal{text::formatDate(now),
                         text::formatTime(now),
                         a.StartingTube,
                         a.EndingTube,
                         a.HasStandard,
                         a.StandardTube,
                         a.StandardFreq,
                         a.HasBlank,
                         a.BlankTube,
                         a.BlankFreq,
                         input.puresPending,
                         input.buildingDatabases,
                         engine_.numbering().current(),
                         engine_.numbering().first(),
                         engine_.numbering().firstRead(),
                         PureStartPending,
                         CountSetRecords(method_, engine_.state().DataSet),
                         false};
  writeJournal();
}

void TrayRun::completeJournal() {
  journal_.completed = true;
  writeJournal();
}

void TrayRun::writeJournal() {
  const std::string path = TrayJournalPath(engine_.state().DataSet);
  // Without its journal the run is only not offered for resuming: the records stay whole.
  if (!path.empty() && !WriteTrayJournal(path, journal_)) {
    note("The tray run's journal " + path + " could not be written");
  }
}

bool TrayRun::readFixedReplicate(const TrayVisit& visit, char letter) {
  const float readTimeS = PuresPending ? method_.ReadTimePures : method_.ReadTime;
  if (!engine_.readFixedRow(readTimeS)) return false;
  if (visit.type != SampleType::Sample) engine_.display().labelRow(number() + letter);
  engine_.writer().WriteFixedRecord(visit.type, letter, content(visit), filed(visit.type));
  noteRecord(visit, letter, false);
  return true;
}

bool TrayRun::scanReplicate(const TrayVisit& visit, char letter) {
  std::string scanning = "Scanning validation sample";
  if (!BuildingDatabases) {
    scanning = "Scanning:  " + SampleTypeName(visit.type);
    if (visit.type == SampleType::Sample || visit.type == SampleType::Pure ||
        visit.type == SampleType::Blank) {
      scanning += " " + number();
    }
  }
  if (!engine_.scan(scanning)) return false;
  engine_.writer().WriteSynchRecord(visit.type, letter, content(visit), filed(visit.type));
  noteRecord(visit, letter, true);
  return true;
}

RecordContent TrayRun::content(const TrayVisit& visit) const {
  RecordContent c = engine_.content();
  c.comment.clear();
  c.tube = visit.tube;
  return c;
}

bool TrayRun::afterTube(const TrayVisit& visit) {
  const AutosamplerSettings& a = method_.Autosampler;
  ++completed_;
  engine_.runStatus().tubeDone(
      static_cast<long>(std::floor(engine_.clock().secondsSinceMidnight())));
  const bool trayTube = visit.type == SampleType::Sample || visit.type == SampleType::Pure;
  if (trayTube) showTimes();
  if (cycle_.DisposeSample(a.SampleDisposition, visit.type) != LinkFailure::None) return false;
  if (visit.type == SampleType::Sample) {
    if (arm_.SetArmHeight(a.BackFillHeight) != LinkFailure::None) return false;
    pump_.WaitSeconds(1);
  }
  if (!trayTube) {
    if (BuildingDatabases) {
      status(visit.type == SampleType::Control ? "Building Control Database"
                                               : "Building Blank Database");
    } else {
      showTimes();
    }
  }
  return arm_.MoveArmToTube(kHome) == LinkFailure::None;
}

void TrayRun::showTimes() {
  const long nowS = static_cast<long>(std::floor(engine_.clock().secondsSinceMidnight()));
  engine_.display().screen().timeInfo = RunTimeLines(startS_, nowS, completed_, total_);
  engine_.display().show();
}

void TrayRun::finish(Walk walked) {
  // An abort inside a tube's cycle comes right after a rinse: the arm only goes home. A run
  // that lost an instrument does not rinse with it either.
  if (walked == Walk::Completed || walked == Walk::AbortedAtCheck) {
    status("Finishing up run.");
    engine_.display().legend("");
    cycle_.RinseAndDry();
  }
  arm_.MoveArmToTube(kHome);
  engine_.releaseKeys();
  // The run is over: no key legend and no running times are left to mislead.
  engine_.display().legend("");
  engine_.display().screen().timeInfo.clear();
  engine_.display().show();
  status(runEndMessage_);
  RunEnd end = RunEnd::Aborted;
  if (walked == Walk::Completed) end = RunEnd::Completed;
  if (walked == Walk::Lost) end = RunEnd::InstrumentLost;
  if (engine_.terminating()) end = RunEnd::Terminated;
  engine_.runStatus().ended(end);
}

void TrayRun::TubeRange_Click() {
  const RunState now = engine_.runState();
  if (now != RunState::AwaitingInit && now != RunState::AwaitingRead) return;
  AutosamplerSettings& a = engine_.state().Method.Autosampler;
  Operator& op = engine_.op();
  const auto tubeOf = [](const std::string& answer) -> std::optional<std::int16_t> {
    const auto value = text::parseNumber(answer);
    return value ? text::toInt16(*value) : std::nullopt;
  };
  const std::string first =
      op.inputBox("Enter starting tube number ", kTubeRangeTitle, whole(a.StartingTube));
  if (const auto tube = tubeOf(first); !first.empty() && tube) a.StartingTube = *tube;
  // A new range makes a new run: the one left unfinished is not carried on.
  resume_.reset();
  for (;;) {
    const std::string last =
        op.inputBox("Enter ending tube number ", kTubeRangeTitle, whole(a.EndingTube));
    if (last.empty()) return;
    const auto tube = tubeOf(last);
    if (tube && *tube >= a.StartingTube && *tube <= engine_.state().Tray.TubeCount) {
      a.EndingTube = *tube;
      return;
    }
    op.message(
        "Ending tube must be greater than or equal to the beginning tube and less then the total "
        "tube locations on the tray.",
        prompt::kQueryTitle, BoxIcon::None, BoxButtons::Ok);
  }
}

}  // namespace zorvel
