#include "core/run/cuvette_plan.h"

#include "core/datafiles/record_lines.h"
#include "core/run/run_prompts.h"

// The operator's decisions on a cuvette's reading: what each files, and what is read again.
namespace zorvel {

namespace {

char letterOf(SampleType kind) {
  return kind == SampleType::Control ? record_letter::kControl : record_letter::kBlank;
}

std::string lowerName(SampleType kind) {
  return kind == SampleType::Control ? "control" : "blank";
}

}  // namespace

void CuvettePlan::decide(RunAction decision) {
  if (stage_ == Stage::Fixed) {
    fixedDecision(decision);
  } else {
    synchDecision(decision);
  }
}

void CuvettePlan::fixedDecision(RunAction decision) {
  if (decision == RunAction::Accept) {
    view_.clearSpectra();
    hideDecision();
    if (method_.Synch) {
      engine_.machine().fire(RunEvent::Reread);
      readingEnded(scanStage(CurrentSampleType()));
      return;
    }
    FinishSample(true);
    endPuresWhenDone();
  } else if (decision == RunAction::Reject) {
    rejectFixed();
  } else {
    fileFixedAsDatabase(decision == RunAction::Control ? SampleType::Control : SampleType::Blank);
  }
}

void CuvettePlan::rejectFixed() {
  const int answer = engine_.op().message(prompt::kRejectFixed, prompt::kQuestionTitle,
                                          BoxIcon::Question, BoxButtons::RetryCancel);
  engine_.display().labelRow("NS");
  hideDecision();
  engine_.numbering().keep(true);
  if (answer == answer::kRetry) {
    rereadAs(CurrentSampleType());
  } else {
    // The reading the comment was typed for is given up; the next cuvette starts without it.
    engine_.clearComment();
    RepromptSample(true);
  }
}

void CuvettePlan::fileFixedAsDatabase(SampleType kind) {
  engine_.display().labelRow(SampleTypeName(kind));
  if (method_.Synch) {
    classified_ = kind;
    engine_.numbering().keep(true);
    ShowChoices({});
    engine_.machine().fire(RunEvent::Reread);
    readingEnded(scanStage(kind));
    return;
  }
  const Verdict verdict =
      engine_.writer().WriteFixedRecord(kind, letterOf(kind), engine_.content(), true);
  engine_.numbering().keep(true);
  if (verdict == Verdict::ReadAgain) {
    rereadAs(SampleType::Sample);
    return;
  }
  // The comment went into the control or blank record; the next reading starts without it.
  engine_.clearComment();
  hideDecision();  // no reading waits: the comment box goes with the choices
  RepromptSample(false);
}

void CuvettePlan::synchDecision(RunAction decision) {
  if (decision == RunAction::Accept) {
    view_.clearSpectra();
    if (classified_) {
      acceptClassifiedScan();
      return;
    }
    FinishSample(true);
    endPuresWhenDone();
  } else if (decision == RunAction::Reject) {
    rejectSynch();
  } else {
    classifyScanOnly(decision == RunAction::Control ? SampleType::Control : SampleType::Blank);
  }
}

void CuvettePlan::acceptClassifiedScan() {
  const SampleType kind = *classified_;
  Verdict verdict = Verdict::Keep;
  if (method_.Fixed) {
    verdict = engine_.writer().WriteFixedRecord(kind, letterOf(kind), engine_.content(), true);
  }
  engine_.writer().WriteSynchRecord(kind, letterOf(kind), engine_.content(), true);
  FinishSample(false);
  classified_.reset();
  if (verdict == Verdict::ReadAgain) {
    engine_.numbering().keep(true);
    rereadAs(SampleType::Sample);
  }
}

void CuvettePlan::classifyScanOnly(SampleType kind) {
  if (method_.Fixed) {
    const Verdict verdict =
        engine_.writer().WriteFixedRecord(kind, letterOf(kind), engine_.content(), true);
    if (verdict == Verdict::ReadAgain) {
      engine_.numbering().keep(true);
      rereadAs(SampleType::Sample);
      return;
    }
  }
  engine_.writer().WriteSynchRecord(kind, letterOf(kind), engine_.content(), true);
  FinishSample(false);
  if (PureIndex == method_.NoPures) PuresPending = false;
  engine_.numbering().keep(true);
}

void CuvettePlan::rejectSynch() {
  const std::string question =
      prompt::RejectSynch(method_.Fixed, classified_ ? lowerName(*classified_) : "");
  const int answer = engine_.op().message(question, prompt::kQueryTitle, BoxIcon::Question,
                                          BoxButtons::RetryCancel);
  if (answer == answer::kRetry) {
    ShowChoices({});
    engine_.machine().fire(RunEvent::Reread);
    readingEnded(scanStage(CurrentSampleType()));
    return;
  }
  engine_.display().labelRow("NS");
  engine_.numbering().keep(true);
  classified_.reset();
  engine_.clearComment();
  hideDecision();
  RepromptSample(true);
}

void CuvettePlan::rereadAs(SampleType type) {
  engine_.machine().fire(RunEvent::Reread);
  engine_.display().screen().okVisible = false;
  engine_.display().show();
  readingEnded(ReadSample(type));
}

void CuvettePlan::FinishSample(bool accepted) {
  engine_.machine().fire(RunEvent::Decided);
  if (accepted) {
    const char letter = BlankPending   ? record_letter::kBlank
                        : PuresPending ? record_letter::kPure
                                       : record_letter::kSample;
    const SampleType type = CurrentSampleType();
    const Verdict verdict =
        method_.Fixed ? engine_.writer().WriteFixedRecord(type, letter, engine_.content(), false)
                      : Verdict::Keep;
    if (verdict == Verdict::ReadAgain) {
      engine_.numbering().stepBack();
      rereadAs(type);
      return;
    }
    if (verdict == Verdict::NotRecorded) {
      readingNotRecorded();
      return;
    }
    // A scan that cannot be written after its fixed record was: the number stays used, as the
    // ".FIX" holds it; the reading counts as not recorded and reopening reports the gap.
    if (method_.Synch &&
        !engine_.writer().WriteSynchRecord(type, letter, engine_.content(), false) &&
        !method_.Fixed) {
      readingNotRecorded();
      return;
    }
  }
  engine_.clearComment();
  hideDecision();
  showReadButton();
  engine_.display().setResetEnabled(true);
  view_.clearStatus();
  endBuildingWhenFull();
  promptNextItem(true);
  engine_.display().screen().focus = RunButton::InitRead;
  engine_.display().show();
}

void CuvettePlan::readingNotRecorded() {
  engine_.display().labelRow("NS");
  engine_.numbering().keep(true);
  hideDecision();
  RepromptSample(true);
}

void CuvettePlan::RepromptSample(bool aborted) {
  sameCuvette_ = aborted;
  engine_.machine().fire(RunEvent::Decided);
  showReadButton();
  view_.clearStatus();
  if (BuildingDatabases && databasesFull()) {
    BuildingDatabases = false;
    PureIndex = 1;
  }
  promptNextItem(false);
  engine_.display().screen().focus = RunButton::InitRead;
  engine_.display().show();
}

}  // namespace zorvel
