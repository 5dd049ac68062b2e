#include <algorithm>

#include "core/datafiles/record_lines.h"
#include "core/run/run_engine.h"
#include "core/run/run_prompts.h"
#include "core/text/number_format.h"

// Reading a cuvette and the operator's decision on it.
namespace zorvel {

namespace {

std::string number(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

char letterOf(SampleType kind) {
  return kind == SampleType::Control ? record_letter::kControl : record_letter::kBlank;
}

std::string lowerName(SampleType kind) {
  return kind == SampleType::Control ? "control" : "blank";
}

}  // namespace

bool RunSession::ReadSample(SampleType type) {
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
  const int repetitions = std::max<int>(state_.Method.Repetitions, 1);
  for (int r = 1; r <= repetitions; ++r) {
    const bool ok = state_.Method.Fixed ? readFixedReplicate(r == repetitions) : scanStage(type);
    if (!ok) return false;
  }
  FirstRead = false;
  return true;
}

bool RunSession::readFixedReplicate(bool lastReplicate) {
  ++GridRow;
  view_.showRow(viewRow());
  view_.setRowLabel(viewRow(), number(SampleNumber));
  view_.clearStatus();
  if (!acquisition_.ReadFixed(readTime(), viewRow())) return false;
  if (purePhase()) labelRow(BlankPending ? "Blank" : number(SampleNumber) + "P");
  if (!lastReplicate) {
    writer_.WriteFixedRecord(SampleType::Sample, record_letter::kReplicate, content(), false);
    return true;
  }
  presentFixedDecision();
  return true;
}

bool RunSession::scanStage(SampleType type) {
  stage_ = DecisionStage::Synch;
  std::string scanning = "Scanning validation sample";
  if (!BuildingDatabases) {
    scanning = "Scanning:  " + SampleTypeName(type);
    if (type == SampleType::Sample || type == SampleType::Pure || type == SampleType::Blank) {
      scanning += " " + number(SampleNumber);
    }
  }
  if (!acquisition_.ScanSynch(state_.Method.Fixed || FirstRead, scanning)) return false;
  presentSynchDecision();
  return true;
}

void RunSession::presentFixedDecision() {
  stage_ = DecisionStage::Fixed;
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

void RunSession::presentSynchDecision() {
  const prompt::Decision& decision = purePhase() || state_.Method.Fixed ? prompt::kAcceptReject
                                     : BuildingDatabases                ? prompt::kDatabaseChoice
                                                                        : prompt::kAllChoices;
  ShowChoices(decision.choices);
  view_.showStatus(decision.line);
}

void RunSession::AcceptReject_Click(int index) {
  if (machine_.state() != RunState::AwaitingDecision) return;
  const bool offered[] = {offered_.accept, offered_.reject, offered_.control, offered_.blank};
  if (index < 1 || index > 4 || !offered[index - 1]) return;
  if (stage_ == DecisionStage::Fixed) {
    fixedDecision(index);
  } else {
    synchDecision(index);
  }
}

void RunSession::fixedDecision(int index) {
  if (index == 1) {
    view_.clearSpectra();
    hideDecision();
    if (state_.Method.Synch) {
      machine_.fire(RunEvent::Reread);
      readingEnded(scanStage(CurrentSampleType()));
      return;
    }
    FinishSample(true);
    endPuresWhenDone();
  } else if (index == 2) {
    rejectFixed();
  } else {
    fileFixedAsDatabase(index == 3 ? SampleType::Control : SampleType::Blank);
  }
}

void RunSession::rejectFixed() {
  const int answer = op_.message(prompt::kRejectFixed, prompt::kQuestionTitle, BoxIcon::Question,
                                 BoxButtons::RetryCancel);
  labelRow("NS");
  hideDecision();
  KeepNumber = true;
  if (answer == answer::kRetry) {
    rereadAs(CurrentSampleType());
  } else {
    RepromptSample(true);
  }
}

void RunSession::fileFixedAsDatabase(SampleType kind) {
  labelRow(SampleTypeName(kind));
  if (state_.Method.Synch) {
    classified_ = kind;
    KeepNumber = true;
    ShowChoices({});
    machine_.fire(RunEvent::Reread);
    readingEnded(scanStage(kind));
    return;
  }
  const int verdict = writer_.WriteFixedRecord(kind, letterOf(kind), content(), true);
  KeepNumber = true;
  if (verdict == verdict::kReadAgain) {
    rereadAs(SampleType::Sample);
    return;
  }
  ShowChoices({});
  RepromptSample(false);
}

void RunSession::synchDecision(int index) {
  if (index == 1) {
    view_.clearSpectra();
    if (classified_) {
      acceptClassifiedScan();
      return;
    }
    FinishSample(true);
    endPuresWhenDone();
  } else if (index == 2) {
    rejectSynch();
  } else {
    classifyScanOnly(index == 3 ? SampleType::Control : SampleType::Blank);
  }
}

void RunSession::acceptClassifiedScan() {
  const SampleType kind = *classified_;
  int verdict = 0;
  if (state_.Method.Fixed)
    verdict = writer_.WriteFixedRecord(kind, letterOf(kind), content(), true);
  writer_.WriteSynchRecord(kind, letterOf(kind), content(), true);
  FinishSample(false);
  classified_.reset();
  if (verdict == verdict::kReadAgain) {
    KeepNumber = true;
    rereadAs(SampleType::Sample);
  }
}

void RunSession::classifyScanOnly(SampleType kind) {
  if (state_.Method.Fixed) {
    const int verdict = writer_.WriteFixedRecord(kind, letterOf(kind), content(), true);
    if (verdict == verdict::kReadAgain) {
      KeepNumber = true;
      rereadAs(SampleType::Sample);
      return;
    }
  }
  writer_.WriteSynchRecord(kind, letterOf(kind), content(), true);
  FinishSample(false);
  if (PureIndex == state_.Method.NoPures) PuresPending = false;
  KeepNumber = true;
}

void RunSession::rejectSynch() {
  const std::string question =
      prompt::RejectSynch(state_.Method.Fixed, classified_ ? lowerName(*classified_) : "");
  const int answer =
      op_.message(question, prompt::kQueryTitle, BoxIcon::Question, BoxButtons::RetryCancel);
  if (answer == answer::kRetry) {
    ShowChoices({});
    machine_.fire(RunEvent::Reread);
    readingEnded(scanStage(CurrentSampleType()));
    return;
  }
  labelRow("NS");
  KeepNumber = true;
  classified_.reset();
  hideDecision();
  RepromptSample(true);
}

void RunSession::rereadAs(SampleType type) {
  machine_.fire(RunEvent::Reread);
  view_.showOkFrame(false);
  readingEnded(ReadSample(type));
}

void RunSession::FinishSample(bool accepted) {
  machine_.fire(RunEvent::Decided);
  if (accepted) {
    const char letter = BlankPending   ? record_letter::kBlank
                        : PuresPending ? record_letter::kPure
                                       : record_letter::kSample;
    const SampleType type = CurrentSampleType();
    if (state_.Method.Fixed &&
        writer_.WriteFixedRecord(type, letter, content(), false) == verdict::kReadAgain) {
      --SampleNumber;
      rereadAs(type);
      return;
    }
    if (state_.Method.Synch) writer_.WriteSynchRecord(type, letter, content(), false);
  }
  view_.clearComment();
  Comment_Change("");
  hideDecision();
  showReadButton();
  resetEnabled_ = true;
  view_.setResetSampEnabled(true);
  view_.clearStatus();
  endBuildingWhenFull();
  promptNextItem(true);
  view_.setFocus(RunButton::InitRead);
}

void RunSession::RepromptSample(bool /*aborted*/) {
  machine_.fire(RunEvent::Decided);
  showReadButton();
  view_.clearStatus();
  if (BuildingDatabases && checks_.ControlCount() >= 3 && checks_.BlankCount() >= 3) {
    BuildingDatabases = false;
    PureIndex = 1;
  }
  promptNextItem(false);
  view_.setFocus(RunButton::InitRead);
}

void RunSession::endBuildingWhenFull() {
  if (BuildingDatabases && checks_.ControlCount() >= 3 && checks_.BlankCount() >= 3) {
    BuildingDatabases = false;
    PureIndex = 0;  // advanced to colour 1 by the prompt that follows
  }
}

void RunSession::endPuresWhenDone() {
  if (!puresFinished_) return;
  puresFinished_ = false;
  PuresPending = false;
  BlankPending = false;
  SampleNumber = 0;
  PureIndex = 0;
  resetEnabled_ = true;
  view_.setResetSampEnabled(true);
}

void RunSession::promptNextItem(bool advancePures) {
  if (PuresPending && !BuildingDatabases) {
    if (advancePures) {
      ++PureIndex;
      BlankPending = false;
    }
    if (PureIndex > state_.Method.NoPures) {
      PuresPending = false;
      BlankPending = false;
      puresFinished_ = true;
      view_.showStatus(prompt::kNewCuvette);
    } else {
      promptPure();
    }
  } else if (BuildingDatabases) {
    view_.showStatus(prompt::Databases(checks_.ControlCount(), checks_.BlankCount()));
    view_.showStatus(prompt::kNewCuvette);
  } else {
    view_.showStatus(prompt::kNewCuvette);
  }
  view_.showStatus(prompt::kReadOrQuit);
}

void RunSession::promptPure() {
  if (BlankPending) {
    view_.showStatus("Insert a cuvette with pure solvent (blank) sample.");
    return;
  }
  view_.showStatus(prompt::PureColour(PureIndex));
  if (state_.Method.Fixed && PureIndex >= 1 && PureIndex <= kMaxColours) {
    const ColourDeclaration& pair = state_.Method.FixedPairs[static_cast<std::size_t>(PureIndex)];
    view_.showStatus(prompt::FixedWavelength(pair.ExWl, pair.EmWl));
  }
}

SampleType RunSession::CurrentSampleType() const {
  if (BlankPending) return SampleType::Blank;
  if (PuresPending) return SampleType::Pure;
  return SampleType::Sample;
}

void RunSession::ShowChoices(const RunChoices& choices) {
  offered_ = choices;
  view_.showChoices(choices);
}

void RunSession::ShowComment(bool show) {
  view_.showComment(show);
}

void RunSession::hideDecision() {
  ShowChoices({});
  ShowComment(false);
}

void RunSession::showReadButton() {
  okCaption_ = prompt::kReadCaption;
  view_.setOkCaption(okCaption_);
  view_.showOkFrame(true);
}

void RunSession::labelRow(const std::string& label) {
  view_.setRowLabel(viewRow(), label);
}

RecordContent RunSession::content() const {
  RecordContent c;
  c.sampleNumber = SampleNumber;
  c.readings = acquisition_.readings();
  c.points = acquisition_.scanPoints();
  c.comment = comment();
  return c;
}

float RunSession::readTime() const {
  return PuresPending ? state_.Method.ReadTimePures : state_.Method.ReadTime;
}

}  // namespace zorvel
