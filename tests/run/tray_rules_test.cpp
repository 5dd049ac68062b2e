#include <gtest/gtest.h>

#include "core/run/run_times.h"
#include "core/run/tray_plan.h"
#include "core/run/tube_numbering.h"
#include "run/tray_fixture.h"

namespace zorvel {
namespace {

using testing::TrayMethod;

// The plan as "C1 B2 P5 S6 ..." (type letter and tube).
std::string planText(const std::vector<TrayVisit>& plan) {
  std::string text;
  for (const TrayVisit& v : plan) {
    const char letter = v.type == SampleType::Control ? 'C'
                        : v.type == SampleType::Blank ? 'B'
                        : v.type == SampleType::Pure  ? 'P'
                                                      : 'S';
    text += (text.empty() ? "" : " ") + std::string(1, letter) + std::to_string(v.tube);
  }
  return text;
}

TEST(TrayPlan, PuresFirstThenControlsAndBlanksAtTheirFrequenciesFromTheFirstSampleTube) {
  MethodSettings m = TrayMethod();
  AutosamplerSettings& a = m.Autosampler;
  a.EndingTube = 12;
  a.BlankFreq = 3;
  const TrayPlanInput withPures{a, 2, true, false};
  EXPECT_EQ(7, FirstSampleTube(withPures));
  const std::vector<TrayVisit> plan = PlanTray(withPures);
  EXPECT_EQ("C1 B2 P5 P6 S7 S8 C1 S9 B2 S10 C1 S11 S12 C1 B2", planText(plan));
  EXPECT_TRUE(plan[4].endsPures);
  EXPECT_EQ(TrayPhase::Closing, plan.back().phase);
  // Controls and blanks are drawn at the standard's heights, tubes at the tubes' heights.
  EXPECT_EQ(100, plan[0].extractionHeight);
  EXPECT_EQ(30, plan[0].flushHeight);
  EXPECT_EQ(105, plan[2].extractionHeight);
  EXPECT_EQ(70, plan[2].flushHeight);
  // 8 tubes + 2 + 2 + 8/2 + 8/3.
  EXPECT_EQ(8 + 4 + 4 + 2, PlannedTotal(withPures));

  // A frequency of 0 interleaves nothing; database building opens with three rounds.
  a.StandardFreq = 0;
  a.BlankFreq = 0;
  a.EndingTube = 8;
  const TrayPlanInput building{a, 2, false, true};
  EXPECT_EQ("C1 B2 C1 B2 C1 B2 S5 S6 S7 S8 C1 B2", planText(PlanTray(building)));
  EXPECT_EQ(4 + 4 + 8, PlannedTotal(building));
  a.HasBlank = false;
  EXPECT_EQ("C1 S5 S6 S7 S8 C1", planText(PlanTray({a, 2, false, false})));
}

TEST(TubeNumbering, PuresCountFromOneSamplesFromTheFirstNumberReferencesTakeTheSampleBefore) {
  TrayNumbering n;
  n.FirstSampleNumber = 40;
  n.PureStartPending = true;
  std::vector<int> numbers;
  const auto tube = [&](SampleType type) {
    NumberTube(n, type);
    numbers.push_back(n.SampleNumber);
    if (type == SampleType::Sample) n.FirstRead = false;
  };
  for (SampleType t : {SampleType::Control, SampleType::Blank, SampleType::Pure, SampleType::Pure,
                       SampleType::Pure, SampleType::Sample, SampleType::Sample,
                       SampleType::Control, SampleType::Blank, SampleType::Sample}) {
    tube(t);
  }
  EXPECT_EQ((std::vector<int>{40, 40, 1, 2, 3, 40, 41, 41, 41, 42}), numbers);
  EXPECT_FALSE(n.PureStartPending);
}

TEST(RunTimes, ElapsedAcrossMidnightAndTheEstimateWrapsTheClock) {
  // Started at 23:50:00, now 00:10:00: 20 minutes for 4 of 10 tubes.
  EXPECT_EQ((std::vector<std::string>{"Elapsed Time: 00:20:00    Completed (4 / 10)",
                                      "Time Per Sample: 00:05:00", "Estimated Completion: 00:40:00",
                                      "Current Time: 00:10:00"}),
            RunTimeLines(85800, 600, 4, 10));
  // The estimate passes midnight.
  EXPECT_EQ("Estimated Completion: 00:20:00", RunTimeLines(84000, 85800, 1, 2)[2]);
}

}  // namespace
}  // namespace zorvel
