#include <QDir>
#include <QFileInfo>
#include <csignal>
#include <optional>

#include "apps/zorvel-run/commands.h"
#include "apps/zorvel-run/console_run_view.h"
#include "apps/zorvel-run/run_signals.h"
#include "core/autosampler/autosampler_check.h"
#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/empty_set.h"
#include "core/files/log_line.h"
#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/method/method_codes.h"
#include "core/method/method_file.h"
#include "core/quality/alert_console.h"
#include "core/quality/quality_checks.h"
#include "core/run/method_run_check.h"
#include "core/run/qc_row_tracker.h"
#include "core/run/run_controller.h"
#include "core/run/run_launch.h"
#include "core/run/run_status_file.h"
#include "core/run/tray_run.h"
#include "core/text/number_format.h"

namespace zorvel::headless {

namespace {

std::string absolute(const std::string& path) {
  return QFileInfo(QString::fromStdString(path)).absoluteFilePath().toStdString();
}

// Loads the method as "&Edit Method File" does, without its dialog.
bool loadMethod(Context& context, Operator& op) {
  const std::string path = absolute(context.options.methodPath);
  if (!ReadMethodFile(context.state, op, path)) return false;
  context.state.LineEnding = LineEndingFor(context.state.Method.FileType);
  context.state.DataSet.MethodFilePath = path;
  return true;
}

// Why --resume starts no run on a set whose tray runs all completed: not a failure.
constexpr const char* kNothingToResume = "the data set has no tray run left unfinished";

// The shells' code for a program ended by a signal.
int signalExitCode(int number) {
  return 128 + number;
}

// The arm and the dilutor of a tray run, on their COM ports.
struct TrayInstruments {
  std::unique_ptr<SerialLine> armLine;
  std::unique_ptr<SerialLine> pumpLine;
  std::unique_ptr<Arm> arm;
  std::unique_ptr<Pump> pump;
};

std::unique_ptr<TrayInstruments> trayInstruments(Context& context, LineSource& lines,
                                                 Operator& op) {
  AppState& state = context.state;
  auto t = std::make_unique<TrayInstruments>();
  t->armLine = lines.lineFor(InstrumentKind::Arm, state.Prefs.AutoSampComPort);
  t->pumpLine = lines.lineFor(InstrumentKind::Pump, state.Prefs.DilComPort);
  if (!t->armLine || !t->pumpLine) return nullptr;
  t->arm = std::make_unique<Arm>(*t->armLine, context.clock, op, state.Links, state.Tray);
  t->pump = std::make_unique<Pump>(*t->pumpLine, context.clock, op, state.Links,
                                   state.Method.Autosampler);
  return t;
}

// The way into the run: a new data set as "&Save As" makes it, or a reopened one with OK.
std::optional<RunLaunch> launch(Context& context, RunOperator& op, QualityChecks& checks,
                                TrayInstruments* tray) {
  LaunchServices services{
      context.state, op, context.clock, context.printer, checks, checks, {}, {}};
  if (tray != nullptr) {
    // Autosampler delivery: the whole check of the settings, then the arm's port.
    services.openAutosamplerLink = [&context, &op, tray] {
      AppState& s = context.state;
      return ValidateAutosamplerSettings(s.Method.Autosampler, s.Tray.TubeCount,
                                         s.Links.StepsPerMicrolitre, s.Steps, op) &&
             tray->arm->OpenArmPort() == LinkFailure::None;
    };
  }
  if (!context.options.newDataPath.empty()) {
    op.answerNextFileDialog(absolute(context.options.newDataPath));
    return LaunchNewDataSet(services, context.options.firstNumber);
  }
  const std::string path = absolute(context.options.appendDataPath);
  const ReopenResult reopened = ReopenDataFileSet(context.state, op, path, checks);
  for (const std::string& entry : reopened.logEntries) {
    WriteLogEntry(context.state.LogPath, context.clock, entry);
    context.out << entry << "\n";
  }
  if (!reopened.ok) return std::nullopt;
  // What the main window's median display would show for the reloaded control database.
  PrintMedians(context.out, checks.snapshot(), checks.medianRow(context.state.Method.NoColors));
  // --resume answers the question before it is asked; otherwise the answer file answers it.
  std::optional<TrayResume> resume = OfferTrayResume(context.state, op, !context.options.resume);
  if (context.options.resume && !resume) {
    RunLaunch nothing;
    nothing.notStartedReason = kNothingToResume;
    return nothing;
  }
  return LaunchAppend(services, false, reopened.nextSampleNumber, reopened.lastSampleNumber,
                      std::move(resume));
}

// What the run window waits for, for messages about answers that do not fit.
std::string waitingFor(const RunController& run, const ConsoleRunView& view, bool tray) {
  switch (run.state()) {
    case RunState::AwaitingInit:
      return "init or quit";
    case RunState::AwaitingRead:
      if (tray) return "read, quit, reset-number N or tube-range";
      return view.resetEnabled() ? "read, quit or reset-number N" : "read or quit";
    case RunState::AwaitingDecision: {
      const RunChoices& c = view.choices();
      std::string words;
      const std::pair<bool, const char*> offered[] = {
          {c.accept, "accept"}, {c.reject, "reject"}, {c.control, "control"}, {c.blank, "blank"}};
      for (const auto& [on, word] : offered) {
        if (on) words += std::string(words.empty() ? "" : ", ") + word;
      }
      return words + " or comment TEXT";
    }
    default:
      return "nothing";
  }
}

// Carries out one line of the answer file; false when it does not fit what the run waits for.
bool act(const ScriptLine& line, RunController& run, const ConsoleRunView& view, RunOperator& op) {
  const RunState state = run.state();
  const bool idle = state == RunState::AwaitingInit || state == RunState::AwaitingRead;
  const RunChoices& c = view.choices();
  const bool deciding = state == RunState::AwaitingDecision;
  const std::pair<const char*, std::pair<bool, RunAction>> decisions[] = {
      {"accept", {c.accept, RunAction::Accept}},
      {"reject", {c.reject, RunAction::Reject}},
      {"control", {c.control, RunAction::Control}},
      {"blank", {c.blank, RunAction::Blank}}};
  if (line.word == "init" && state == RunState::AwaitingInit) {
    run.act(RunAction::Init);
  } else if (line.word == "read" && state == RunState::AwaitingRead) {
    run.act(RunAction::Read);
  } else if (line.word == "quit" && idle) {
    run.act(RunAction::Quit);
  } else if (line.word == "tube-range" && idle) {
    // Its two input boxes take the "text" lines that follow.
    run.TubeRange_Click();
  } else if (line.word == "comment") {
    run.Comment_Change(line.argument);
  } else if (line.word == "reset-number" && idle && view.resetEnabled() &&
             text::parseNumber(line.argument)) {
    op.answerNextInputBox(line.argument);
    run.ResetSamp_Click();
  } else {
    for (const auto& [word, choice] : decisions) {
      if (line.word == word && deciding && choice.first) {
        run.act(choice.second);
        return true;
      }
    }
    return false;
  }
  return true;
}

// However the run ends, a new data set that received no reading is not left behind.
class EmptySetGuard {
 public:
  explicit EmptySetGuard(const AppState& state) : state_(state) {}
  ~EmptySetGuard() { RemoveSetWithoutRecords(state_.Method, state_.DataSet); }
  EmptySetGuard(const EmptySetGuard&) = delete;
  EmptySetGuard& operator=(const EmptySetGuard&) = delete;

 private:
  const AppState& state_;
};

// The method read and checked before anything is created: the exit status when it is refused.
std::optional<int> refuseMethod(Context& context, RunOperator& op) {
  const Options& o = context.options;
  if (!loadMethod(context, op)) {
    context.out << "No run started.  The method " << o.methodPath << " cannot be read.\n";
    return context.fail("the method " + o.methodPath + " cannot be read", 2);
  }
  // The checks "&Save As" makes before a run come first; a reopened set numbers on from its
  // own records. Then nothing is created for a method the fluorimeter would refuse.
  const int firstNumber = o.newDataPath.empty() ? 1 : o.firstNumber;
  const std::vector<std::string> problems =
      MethodRunProblems(context.state.Method, FluorimeterModelFor(context.state.Prefs.Fluorimeter),
                        firstNumber, context.state.Tray.TubeCount);
  if (problems.empty()) return std::nullopt;
  context.out << "No run started.";
  for (const std::string& problem : problems) context.out << "  " << problem << "\n";
  return context.fail("the method " + o.methodPath + " is refused: " + problems.front(), 2);
}

// Answers the run's questions from the answer file until its window closes: the exit status
// when the run has to end before that. Between two lines no step is under way: a signal that
// stops the program is acted on there (a tray run has already stopped at its checkpoint).
std::optional<int> answerUntilClosed(Context& context, RunController& run, ConsoleRunView& view,
                                     RunOperator& op, RunSignals& runSignals, bool tray) {
  while (!run.closed()) {
    runSignals.deliver(run);
    if (const int number = runSignals.stoppedBy()) {
      context.out << "Stopped on " << (number == SIGINT ? "SIGINT" : "SIGTERM") << "." << std::endl;
      run.Form_Unload();
      return signalExitCode(number);
    }
    if (context.op.ended()) return context.op.exitCode();
    if (context.script.failed()) return context.fail(context.script.failure());
    const std::optional<ScriptLine> next = context.script.next();
    if (!next) {
      return context.fail("the answer file ran out while the run waited for " +
                          waitingFor(run, view, tray));
    }
    context.out << "> " << next->text << "\n";
    if (!act(*next, run, view, op)) {
      return context.fail("line " + std::to_string(next->lineNumber) + " \"" + next->text +
                          "\" does not fit: the run waits for " + waitingFor(run, view, tray));
    }
  }
  return std::nullopt;
}

// Why the run does not start, once the launch is done: its exit code, or nothing.
std::optional<int> notStarted(Context& context, const std::optional<RunLaunch>& start) {
  // Nothing has been read yet: a question the answer file cannot answer refuses the run.
  if (context.script.failed()) {
    context.out << "No run started.  The answer file could not answer a question.\n";
    return context.fail(context.script.failure(), 2);
  }
  if (!start) {
    return context.fail("the data set " + context.options.appendDataPath + " cannot be reopened",
                        2);
  }
  if (!start->startRun && start->notStartedReason == kNothingToResume) {
    context.out << "Nothing to resume: " << start->notStartedReason << ".\n";
    return 0;
  }
  if (!start->startRun) {
    context.out << "No run started.  " << start->notStartedReason << "\n";
    return context.fail("no run started: " + start->notStartedReason, 2);
  }
  return std::nullopt;
}

// The status file beside the set follows every change of the run.
void keepStatusFile(const DataSetPaths& set, RunController& run, bool simulated) {
  KeepRunStatusFile(
      run.runStatus(),
      RunStatusContext{
          std::to_string(ZORVEL_VERSION_MAJOR) + "." + std::to_string(ZORVEL_VERSION_MINOR) + "." +
              std::to_string(ZORVEL_VERSION_PATCH),
          simulated, set.MethodFilePath, set.FixPath.empty() ? set.SynPath : set.FixPath},
      RunStatusPath(set));
}

}  // namespace

int RunAnalysisCommand(Context& context, LineSource& lines) {
  const Options& o = context.options;
  if (o.newDataPath.empty() == o.appendDataPath.empty()) {
    return context.fail("give exactly one of --data NEW.fix and --append EXISTING.fix", 2);
  }
  RunOperator op(context.op, context.out);
  if (const auto refused = refuseMethod(context, op)) return *refused;
  ConsoleAlertDialog alert(context.script, context.out);
  QualityChecks checks(context.state, context.clock, op, alert);
  std::unique_ptr<TrayInstruments> tray;
  if (context.state.Method.DeliveryMethod == Delivery::Autosampler) {
    tray = trayInstruments(context, lines, op);
    if (!tray) {
      context.out
          << "No run started.  The autosampler's or the dilutor's port cannot be reached.\n";
      return context.fail("the autosampler's or the dilutor's port cannot be reached", 2);
    }
  }
  std::optional<RunLaunch> start = launch(context, op, checks, tray.get());
  // state.DataSet names a new set only once its files were made here.
  std::optional<EmptySetGuard> newSet;
  if (!o.newDataPath.empty()) newSet.emplace(context.state);
  if (const auto refused = notStarted(context, start)) return *refused;
  const int comPort = context.state.Prefs.FlComPort;
  std::unique_ptr<SerialLine> line = lines.lineFor(InstrumentKind::Fluorimeter, comPort);
  if (!line) return context.fail("the fluorimeter's port cannot be reached");

  start->setup.simulated = lines.simulatedMarking();
  ConsoleRunView view(context.out);
  // The checks mark the row of the reading they judge; the tracker knows which row that is.
  QcRowTracker tracker(view);
  checks.attachGrid(&tracker);
  RunController run(RunServices{context.state, op, context.clock, context.printer, *line, checks},
                    start->setup, tracker);
  // On the simulated bench, each new cuvette the run asks for is the next one in the queue.
  if (auto changer = lines.cuvetteChanger(comPort)) run.setCuvetteChanger(std::move(changer));
  RunSignals runSignals(tray != nullptr);
  if (tray) {
    TrayHooks hooks;
    hooks.yield = [&run, &runSignals] { runSignals.deliver(run); };
    hooks.note = [&context](const std::string& note) { context.out << note << std::endl; };
    run.attachAutosampler(*tray->arm, *tray->pump, hooks);
  }
  keepStatusFile(context.state.DataSet, run, !start->setup.simulated.empty());
  run.Form_Load();
  if (const auto ended = answerUntilClosed(context, run, view, op, runSignals, tray != nullptr))
    return *ended;
  run.Form_Unload();
  checks.attachGrid(nullptr);
  if (context.op.ended()) return context.op.exitCode();
  if (context.script.failed()) return context.fail(context.script.failure());
  if (run.readingsNotRecorded() > 0) {
    return context.fail(std::to_string(run.readingsNotRecorded()) +
                        " reading(s) could not be written and are not recorded");
  }
  // Where the desktop shows the control trend as the run window closes.
  if (checks.ControlCount() > 0) PrintTrendFigures(context.out, checks.snapshot());
  return 0;
}

}  // namespace zorvel::headless
