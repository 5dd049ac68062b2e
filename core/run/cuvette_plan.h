#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/run/run_engine.h"
#include "core/run/run_plan.h"
#include "core/run/sample_type.h"

namespace zorvel {

// The run of one data set in cuvette mode: the solvent blank and the pures a new set needs,
// the control and blank databases, then samples, one cuvette at a time; what each of the
// operator's decisions files, and what the window asks for next.
class CuvettePlan final : public RunPlan {
 public:
  CuvettePlan(RunEngine& engine, const RunSetup& setup);

  std::vector<std::string> readyPrompt() const override;
  void instrumentReady() override;
  void read() override;
  void decide(RunAction decision) override;
  bool confirmQuit() override;

 private:
  // Which reading the open decision is about.
  enum class Stage { Fixed, Synch };

  // Numbering, then the replicates; false when the instrument link ended.
  bool ReadSample(SampleType type);
  bool readFixedReplicate(bool lastReplicate);
  bool scanStage(SampleType type);
  void presentFixedDecision();
  void presentSynchDecision();
  // The reading is in: wait for the operator, or ask again for the item on a lost link.
  void readingEnded(bool ok);

  // The decisions.
  void fixedDecision(RunAction decision);
  void synchDecision(RunAction decision);
  void rejectFixed();
  void rejectSynch();
  void fileFixedAsDatabase(SampleType kind);
  void acceptClassifiedScan();
  void classifyScanOnly(SampleType kind);
  void FinishSample(bool accepted);
  // The accepted reading could not be written: nothing of it is filed, the same item is asked
  // for again under the same number.
  void readingNotRecorded();
  void RepromptSample(bool aborted);
  void endPuresWhenDone();
  void rereadAs(SampleType type);

  // Prompts.
  SampleType CurrentSampleType() const;
  // What Read takes next: a blank while building databases or before the pures, a pure, or a
  // sample.
  SampleType typeToRead() const;
  bool purePhase() const { return PuresPending && !BuildingDatabases; }
  bool databasesFull() const;
  void endBuildingWhenFull();
  void promptNextItem(bool advancePures);
  void promptPure();
  void ShowChoices(const RunChoices& choices);
  void ShowComment(bool show);
  void hideDecision();
  void showReadButton();
  float readTime() const;

  RunEngine& engine_;
  RunView& view_;
  const MethodSettings& method_;

  // The plan's own variables, named as the operator's procedures know them.
  bool PuresPending;
  bool BlankPending = false;
  int PureIndex;
  bool BuildingDatabases;

  Stage stage_ = Stage::Fixed;
  std::optional<SampleType> classified_;
  // Nothing was filed from the cuvette in the holder (rejected, not recorded, or the link was
  // lost): the item is asked for again and the next Read reads the same cuvette.
  bool sameCuvette_ = false;
  bool puresFinished_ = false;
};

}  // namespace zorvel
