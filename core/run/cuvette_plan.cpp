#include "core/run/cuvette_plan.h"

#include <algorithm>

#include "core/datafiles/record_lines.h"
#include "core/run/run_prompts.h"
#include "core/text/number_format.h"

// Reading a cuvette, and what the window asks for next.
namespace zorvel {

namespace {

std::string number(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

}  // namespace

CuvettePlan::CuvettePlan(RunEngine& engine, const RunSetup& setup)
    : engine_(engine),
      view_(engine.view()),
      method_(engine.method()),
      PuresPending(setup.PuresPending),
      PureIndex(setup.PureIndex),
      BuildingDatabases(setup.BuildingDatabases) {}

std::vector<std::string> CuvettePlan::readyPrompt() const {
  if (BuildingDatabases) {
    return {prompt::Databases(engine_.checks().ControlCount(), engine_.checks().BlankCount())};
  }
  if (PuresPending) return {"Sample needed: Pure solvent blank."};
  return {"Sample needed: Sample " + number(engine_.numbering().next(SampleType::Sample))};
}

void CuvettePlan::instrumentReady() {
  if (BuildingDatabases || PuresPending) {
    BlankPending = true;
    PureIndex = 0;
  }
}

bool CuvettePlan::confirmQuit() {
  return engine_.confirmQuitDuringPures(PuresPending);
}

SampleType CuvettePlan::typeToRead() const {
  if (BuildingDatabases) return SampleType::Blank;
  if (PuresPending) return BlankPending ? SampleType::Blank : SampleType::Pure;
  return SampleType::Sample;
}

void CuvettePlan::read() {
  if (!engine_.numberWithinRange(typeToRead())) return;
  if (!engine_.machine().fire(RunEvent::Read)) return;
  engine_.beginReading(!sameCuvette_);
  sameCuvette_ = false;
  bool ok = true;
  if (BuildingDatabases) {
    ok = ReadSample(SampleType::Blank);
    BlankPending = false;
    engine_.numbering().keep(true);
    if (databasesFull()) BuildingDatabases = false;
  } else if (PuresPending && !BlankPending) {
    ok = ReadSample(SampleType::Pure);
  } else if (PuresPending && BlankPending) {
    ok = ReadSample(SampleType::Blank);
    engine_.numbering().keep(true);
  } else {
    ok = ReadSample(SampleType::Sample);
  }
  readingEnded(ok);
}

void CuvettePlan::readingEnded(bool ok) {
  if (!engine_.readingLost(ok)) return;
  // The link is gone: nothing was filed for this cuvette, so the same item is asked for again
  // under the same number once the operator has seen to the instrument.
  hideDecision();
  engine_.numbering().keep(!engine_.numbering().firstRead());
  RepromptSample(true);
}

bool CuvettePlan::ReadSample(SampleType type) {
  engine_.numberReading(type);
  const int repetitions = std::max<int>(method_.Repetitions, 1);
  for (int r = 1; r <= repetitions; ++r) {
    const bool ok = method_.Fixed ? readFixedReplicate(r == repetitions) : scanStage(type);
    if (!ok) return false;
  }
  engine_.numbering().counted();
  return true;
}

bool CuvettePlan::readFixedReplicate(bool lastReplicate) {
  if (!engine_.readFixedRow(readTime())) return false;
  if (purePhase()) {
    engine_.display().labelRow(BlankPending ? "Blank"
                                            : number(engine_.numbering().current()) + "P");
  }
  if (!lastReplicate) {
    engine_.writer().WriteFixedRecord(SampleType::Sample, record_letter::kReplicate,
                                      engine_.content(), false);
    return true;
  }
  presentFixedDecision();
  return true;
}

bool CuvettePlan::scanStage(SampleType type) {
  stage_ = Stage::Synch;
  std::string scanning = "Scanning validation sample";
  if (!BuildingDatabases) {
    scanning = "Scanning:  " + SampleTypeName(type);
    if (type == SampleType::Sample || type == SampleType::Pure || type == SampleType::Blank) {
      scanning += " " + number(engine_.numbering().current());
    }
  }
  if (!engine_.scan(scanning)) return false;
  presentSynchDecision();
  return true;
}

void CuvettePlan::presentFixedDecision() {
  stage_ = Stage::Fixed;
  view_.clearStatus();
  if (purePhase()) {
    ShowChoices(prompt::kAcceptReject.choices);
    view_.showStatus(prompt::kAcceptReject.line);
    return;
  }
  ShowComment(true);
  view_.showStatus(prompt::kComments);
  const prompt::Decision& decision =
      BuildingDatabases ? prompt::kDatabaseChoice : prompt::kAllChoices;
  ShowChoices(decision.choices);
  view_.showStatus(decision.line);
}

void CuvettePlan::presentSynchDecision() {
  const prompt::Decision& decision = purePhase() || method_.Fixed ? prompt::kAcceptReject
                                     : BuildingDatabases          ? prompt::kDatabaseChoice
                                                                  : prompt::kAllChoices;
  ShowChoices(decision.choices);
  view_.showStatus(decision.line);
}

bool CuvettePlan::databasesFull() const {
  return engine_.checks().ControlCount() >= 3 && engine_.checks().BlankCount() >= 3;
}

void CuvettePlan::endBuildingWhenFull() {
  if (BuildingDatabases && databasesFull()) {
    BuildingDatabases = false;
    PureIndex = 0;  // advanced to colour 1 by the prompt that follows
  }
}

void CuvettePlan::endPuresWhenDone() {
  if (!puresFinished_) return;
  puresFinished_ = false;
  PuresPending = false;
  BlankPending = false;
  engine_.numbering().restart();
  PureIndex = 0;
  engine_.display().setResetEnabled(true);
}

void CuvettePlan::promptNextItem(bool advancePures) {
  if (PuresPending && !BuildingDatabases) {
    if (advancePures) {
      ++PureIndex;
      BlankPending = false;
    }
    if (PureIndex > method_.NoPures) {
      PuresPending = false;
      BlankPending = false;
      puresFinished_ = true;
      view_.showStatus(prompt::kNewCuvette);
    } else {
      promptPure();
    }
  } else if (BuildingDatabases) {
    view_.showStatus(
        prompt::Databases(engine_.checks().ControlCount(), engine_.checks().BlankCount()));
    view_.showStatus(prompt::kNewCuvette);
  } else {
    view_.showStatus(prompt::kNewCuvette);
  }
  view_.showStatus(prompt::kReadOrQuit);
}

void CuvettePlan::promptPure() {
  if (BlankPending) {
    view_.showStatus("Insert a cuvette with pure solvent (blank) sample.");
    return;
  }
  view_.showStatus(prompt::PureColour(PureIndex));
  if (method_.Fixed && PureIndex >= 1 && PureIndex <= kMaxColours) {
    const ColourDeclaration& pair = method_.FixedPairs.colour(PureIndex);
    view_.showStatus(prompt::FixedWavelength(pair.ExWl, pair.EmWl));
  }
}

SampleType CuvettePlan::CurrentSampleType() const {
  if (BlankPending) return SampleType::Blank;
  if (PuresPending) return SampleType::Pure;
  return SampleType::Sample;
}

void CuvettePlan::ShowChoices(const RunChoices& choices) {
  engine_.display().screen().choices = choices;
  engine_.display().show();
}

void CuvettePlan::ShowComment(bool show) {
  engine_.display().screen().commentVisible = show;
  engine_.display().show();
}

void CuvettePlan::hideDecision() {
  engine_.display().screen().choices = {};
  engine_.display().screen().commentVisible = false;
  engine_.display().show();
}

void CuvettePlan::showReadButton() {
  engine_.display().screen().okCaption = prompt::kReadCaption;
  engine_.display().screen().okVisible = true;
  engine_.display().show();
}

float CuvettePlan::readTime() const {
  return PuresPending ? method_.ReadTimePures : method_.ReadTime;
}

}  // namespace zorvel
