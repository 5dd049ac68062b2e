#include "core/run/run_launch.h"

#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/empty_set.h"
#include "core/datafiles/last_sample_number.h"
#include "core/datafiles/method_summary.h"
#include "core/run/tray_resume.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

// Step shared by both ways in: false when autosampler delivery cannot go on.
bool readyAutosampler(LaunchServices& s) {
  if (s.state.Method.DeliveryMethod != Delivery::Autosampler || s.state.Flags.AutosamplerPortOpen)
    return true;
  if (!s.openAutosamplerLink || !s.openAutosamplerLink()) return false;
  s.state.Flags.AutosamplerPortOpen = true;
  return true;
}

// The method and the run as the unfinished tray run had them, at the first tube not done.
void carryOn(const TrayResume& r, MethodSettings& method, RunSetup& setup) {
  AutosamplerSettings planned;
  JournalPlanInput(r.journal, method, planned);
  method.Autosampler = planned;
  setup.NewDataSet = false;
  setup.SampleNumber = r.numbering.SampleNumber;
  setup.FirstSampleNumber = r.numbering.FirstSampleNumber;
  setup.FirstRead = r.numbering.FirstRead;
  setup.PureStartPending = r.numbering.PureStartPending;
  setup.PuresPending = r.puresPending;
  setup.BuildingDatabases = r.journal.buildingDatabases;
  setup.resume = r;
}

}  // namespace

std::optional<TrayResume> OfferTrayResume(const AppState& state, Operator& op, bool ask) {
  if (state.Method.DeliveryMethod != Delivery::Autosampler) return std::nullopt;
  std::optional<TrayResume> resume = FindTrayResume(state.Method, state.DataSet);
  if (!resume || !ask) return resume;
  const int answer =
      op.message(ResumeQuestion(*resume), "ZORVEL QUESTION", BoxIcon::Question, BoxButtons::YesNo);
  if (answer != answer::kYes) return std::nullopt;
  return resume;
}

std::string PureBlankNotice(const MethodSettings& method) {
  const std::string press = "Press:  Yes-Continue; No-Stop; Cancel-Continue without pures";
  if (method.DeliveryMethod != Delivery::Autosampler) {
    return "The requested analysis requires a solvent blank be read first followed by " +
           whole(method.NoPures) + " pure samples (one for each color present)." + "\r" + press;
  }
  const AutosamplerSettings& a = method.Autosampler;
  std::string text =
      "The requested analysis requires reading a pure sample for each color to be quantified.  "
      "The method calls for reading " +
      whole(method.NoPures) + " wavelengths so tubes " + whole(a.StartingTube) + " - " +
      whole(a.StartingTube + method.NoPures - 1) + " must contain pure samples.";
  if (a.HasStandard)
    text += "\rStandard is required in tube position " + whole(a.StandardTube) + ".";
  if (a.HasBlank) {
    text += "\rBlank (pure solvent) is required in tube position " + whole(a.BlankTube) + ".";
  }
  return text + "\r" + press;
}

RunLaunch LaunchNewDataSet(LaunchServices s, int firstSampleNumber) {
  RunLaunch launch;
  const CreateDataSetResult created = CreateDataFileSet(s.state, s.op, s.clock, s.databases);
  launch.window = created.window;
  if (!created.created || !created.written) {
    launch.notStartedReason = created.reason;
    return launch;
  }
  if (s.showCreatedSet) s.showCreatedSet(created.window);
  MethodSettings& method = s.state.Method;
  if (method.PrintResults) PrintMethodSummary(s.state, s.printer, true, s.clock.now());
  if (!readyAutosampler(s)) {
    launch.notStartedReason = "the autosampler could not be made ready";
    RemoveSetWithoutRecords(method, s.state.DataSet);
    return launch;
  }
  if (method.Synch) method.Spillover = true;
  RunSetup& setup = launch.setup;
  setup.NewDataSet = true;
  setup.FirstSampleNumber = firstSampleNumber;
  setup.PuresPending = method.Spillover;
  if (s.checks.ControlCount() < 3) {
    const int answer = s.op.message(
        "There are insufficient control and/or blank samples to perform median checks.  "
        "Build a database before proceeding?",
        "Database Build?", BoxIcon::Question, BoxButtons::YesNo);
    setup.BuildingDatabases = answer == answer::kYes;
  }
  s.databases.setBuilding(setup.BuildingDatabases);
  if (setup.PuresPending) {
    launch.autosamplerPures = method.DeliveryMethod == Delivery::Autosampler;
    setup.PureStartPending = launch.autosamplerPures;
    const int answer = s.op.message(PureBlankNotice(method), "Pure Blank Notification",
                                    BoxIcon::Question, BoxButtons::YesNoCancel);
    if (answer == answer::kNo) {
      launch.backToNoMethod = true;
      launch.notStartedReason = "the pure-blank notice was answered No";
      RemoveSetWithoutRecords(method, s.state.DataSet);
      launch.window.methodFileLabel = "Not Loaded";
      launch.window.dataFileLabel = "Not Loaded";
      return launch;
    }
    if (answer == answer::kCancel) {
      setup.PuresPending = false;
      launch.autosamplerPures = false;
      setup.PureStartPending = false;
      setup.PureIndex = 0;
      setup.SampleNumber = method.DeliveryMethod == Delivery::Autosampler ? 0 : 1;
    }
  }
  launch.startRun = true;
  return launch;
}

RunLaunch LaunchAppend(LaunchServices s, bool newDataSet, int firstSampleNumber,
                       int lastSampleNumber, std::optional<TrayResume> resume) {
  RunLaunch launch;
  if (s.state.Method.PrintResults) {
    PrintMethodSummary(s.state, s.printer, newDataSet, s.clock.now());
  }
  if (!readyAutosampler(s)) {
    launch.notStartedReason = "the autosampler could not be made ready";
    return launch;
  }
  launch.setup.NewDataSet = newDataSet;
  launch.setup.FirstSampleNumber = firstSampleNumber;
  launch.setup.SampleNumber = lastSampleNumber;
  if (!newDataSet) {
    // Whatever the window remembers, the set's own files say where numbering goes on: an
    // earlier run on the same set may have added records since it was reopened.
    const LastSample onDisk = FindLastSample(s.state.Method, s.state.DataSet);
    launch.setup.SampleNumber = onDisk.number;
    launch.setup.FirstSampleNumber = onDisk.number + 1;
  }
  launch.setup.BuildingDatabases = false;
  // The set's records decide again where the run goes on: they may have grown since the question.
  if (resume && !newDataSet) resume = FindTrayResume(s.state.Method, s.state.DataSet);
  if (resume && !newDataSet) carryOn(*resume, s.state.Method, launch.setup);
  // A resumed run that was building its databases goes on building them in batch 1.
  s.databases.setBuilding(launch.setup.BuildingDatabases);
  launch.startRun = true;
  return launch;
}

}  // namespace zorvel
