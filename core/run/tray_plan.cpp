#include "core/run/tray_plan.h"

namespace zorvel {

namespace {

// Three opening rounds build the databases; otherwise one control and one blank open the run.
constexpr int kBuildingRounds = 3;
constexpr int kExtraWhileBuilding = 4;

TrayVisit reference(const AutosamplerSettings& a, std::int16_t tube, SampleType type,
                    TrayPhase phase) {
  return TrayVisit{tube, type, phase, a.StandardHeight, a.StandardBFHeight, false};
}

void addReferences(const AutosamplerSettings& a, TrayPhase phase, std::vector<TrayVisit>& plan) {
  if (a.HasStandard) plan.push_back(reference(a, a.StandardTube, SampleType::Control, phase));
  if (a.HasBlank) plan.push_back(reference(a, a.BlankTube, SampleType::Blank, phase));
}

// Every freq-th tube counted from the first sample tube, the first sample itself excluded.
bool dueBefore(int tube, int firstSampleTube, int freq) {
  return freq != 0 && tube > firstSampleTube && (tube - firstSampleTube) % freq == 0;
}

}  // namespace

int FirstSampleTube(const TrayPlanInput& input) {
  return input.tray.StartingTube + (input.puresPending ? input.pures : 0);
}

int PlannedTotal(const TrayPlanInput& input) {
  const AutosamplerSettings& a = input.tray;
  const int n = a.EndingTube - a.StartingTube + 1;
  int total = n;
  if (a.HasStandard) total += 2;
  if (a.HasBlank) total += 2;
  if (a.StandardFreq != 0) total += n / a.StandardFreq;
  if (a.BlankFreq != 0) total += n / a.BlankFreq;
  if (input.buildingDatabases) total += 2 * kExtraWhileBuilding;
  return total;
}

std::vector<TrayVisit> PlanTray(const TrayPlanInput& input) {
  const AutosamplerSettings& a = input.tray;
  std::vector<TrayVisit> plan;
  const int rounds = input.buildingDatabases ? kBuildingRounds : 1;
  for (int round = 0; round < rounds; ++round) addReferences(a, TrayPhase::Opening, plan);
  const int first = FirstSampleTube(input);
  for (int tube = a.StartingTube; tube <= a.EndingTube; ++tube) {
    const auto t = static_cast<std::int16_t>(tube);
    if (a.HasStandard && dueBefore(tube, first, a.StandardFreq)) {
      plan.push_back(reference(a, a.StandardTube, SampleType::Control, TrayPhase::Tubes));
    }
    if (a.HasBlank && dueBefore(tube, first, a.BlankFreq)) {
      plan.push_back(reference(a, a.BlankTube, SampleType::Blank, TrayPhase::Tubes));
    }
    const bool pure = input.puresPending && tube < first;
    TrayVisit visit{t,
                    pure ? SampleType::Pure : SampleType::Sample,
                    TrayPhase::Tubes,
                    a.TubeHeight,
                    a.BackFillHeight,
                    false};
    visit.endsPures = input.puresPending && tube == first;
    plan.push_back(visit);
  }
  addReferences(a, TrayPhase::Closing, plan);
  return plan;
}

}  // namespace zorvel
