#include <QDir>
#include <QFileInfo>
#include <optional>

#include "apps/zorvel-run/commands.h"
#include "apps/zorvel-run/console_run_view.h"
#include "core/datafiles/data_set_commands.h"
#include "core/method/method_checks.h"
#include "core/method/method_codes.h"
#include "core/method/method_file.h"
#include "core/quality/alert_console.h"
#include "core/quality/quality_checks.h"
#include "core/run/qc_row_tracker.h"
#include "core/run/run_controller.h"
#include "core/run/run_launch.h"
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

// The way into the run: a new data set as "&Save As" makes it, or a reopened one with OK.
std::optional<RunLaunch> launch(Context& context, RunOperator& op, QualityChecks& checks) {
  LaunchServices services{context.state, op, context.clock, context.printer, checks, checks, {}};
  if (!context.options.newDataPath.empty()) {
    op.answerNextFileDialog(absolute(context.options.newDataPath));
    return LaunchNewDataSet(services, context.options.firstNumber);
  }
  const std::string path = absolute(context.options.appendDataPath);
  const ReopenResult reopened = ReopenDataFileSet(context.state, op, path, checks);
  if (!reopened.ok) return std::nullopt;
  context.state.LineEnding = LineEndingFor(context.state.Method.FileType);
  // What the main window's median display would show for the reloaded control database.
  PrintMedians(context.out, checks.snapshot(), checks.medianRow(context.state.Method.NoColors));
  return LaunchAppend(services, false, reopened.nextSampleNumber, reopened.lastSampleNumber);
}

// What the run window waits for, for messages about answers that do not fit.
std::string waitingFor(const RunController& run, const ConsoleRunView& view) {
  switch (run.state()) {
    case RunState::AwaitingInit:
      return "init or quit";
    case RunState::AwaitingRead:
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

}  // namespace

int RunAnalysisCommand(Context& context, LineSource& lines) {
  const Options& o = context.options;
  if (o.newDataPath.empty() == o.appendDataPath.empty()) {
    return context.fail("give exactly one of --data NEW.fix and --append EXISTING.fix", 2);
  }
  RunOperator op(context.op, context.out);
  if (!loadMethod(context, op))
    return context.fail("the method " + o.methodPath + " cannot be read");
  // The checks "&Save As" makes before a run; a reopened set numbers on from its own records.
  const int firstNumber = o.newDataPath.empty() ? 1 : o.firstNumber;
  if (const auto problem = CheckMethodForRun(context.state.Method, firstNumber))
    return context.fail("the method " + o.methodPath + " is refused: " + *problem, 2);
  ConsoleAlertDialog alert(context.script, context.out);
  QualityChecks checks(context.state, context.clock, op, alert);
  const std::optional<RunLaunch> start = launch(context, op, checks);
  if (context.script.failed()) return context.fail(context.script.failure());
  if (!start) return context.fail("the data set " + o.appendDataPath + " cannot be reopened");
  if (!start->startRun) {
    context.out << "No run started.\n";
    return 0;
  }
  const int comPort = context.state.Prefs.FlComPort;
  std::unique_ptr<SerialLine> line = lines.lineFor(InstrumentKind::Fluorimeter, comPort);
  if (!line) return context.fail("the fluorimeter's port cannot be reached");

  ConsoleRunView view(context.out);
  // The checks mark the row of the reading they judge; the tracker knows which row that is.
  QcRowTracker tracker(view);
  checks.attachGrid(&tracker);
  RunController run(RunServices{context.state, op, context.clock, context.printer, *line, checks},
                    start->setup, tracker);
  // On the simulated bench, each new cuvette the run asks for is the next one in the queue.
  if (auto changer = lines.cuvetteChanger(comPort)) run.setCuvetteChanger(std::move(changer));
  run.Form_Load();
  while (!run.closed()) {
    if (context.op.ended()) return context.op.exitCode();
    if (context.script.failed()) return context.fail(context.script.failure());
    const std::optional<ScriptLine> next = context.script.next();
    if (!next) {
      return context.fail("the answer file ran out while the run waited for " +
                          waitingFor(run, view));
    }
    context.out << "> " << next->text << "\n";
    if (!act(*next, run, view, op)) {
      return context.fail("line " + std::to_string(next->lineNumber) + " \"" + next->text +
                          "\" does not fit: the run waits for " + waitingFor(run, view));
    }
  }
  run.Form_Unload();
  checks.attachGrid(nullptr);
  if (context.op.ended()) return context.op.exitCode();
  if (context.script.failed()) return context.fail(context.script.failure());
  // Where the desktop shows the control trend as the run window closes.
  if (checks.ControlCount() > 0) PrintTrendFigures(context.out, checks.snapshot());
  return 0;
}

}  // namespace zorvel::headless
