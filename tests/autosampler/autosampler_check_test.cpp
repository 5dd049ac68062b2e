#include "core/autosampler/autosampler_check.h"

#include <gtest/gtest.h>

#include "core/method/method_defaults.h"
#include "core/platform/scripted_operator.h"

namespace zorvel {
namespace {

class WholeCheck : public ::testing::Test {
 protected:
  WholeCheck() {
    SetAutosamplerDefaults(s, 96);
    s.EndingTube = 24;
  }

  std::vector<AutosamplerFault> check(std::int16_t tubeCount = 96) {
    return CheckAutosamplerSettings(s, tubeCount, spm, steps);
  }

  AutosamplerSettings s;
  float spm = 0;
  PumpSteps steps;
};

TEST(PumpStepsTest, StepSizeIsSinglePrecisionAndCountsRoundDown) {
  EXPECT_EQ(StepsForVolume(750, 0.3f), 225);
  EXPECT_EQ(StepsForVolume(8000, 0.3f), 2400);
  EXPECT_EQ(StepsForVolume(5000, 0.6f), 3000);
  EXPECT_EQ(StepsForVolume(1, 0.3f), 0);
  EXPECT_EQ(StepsForVolume(-1, 0.3f), -1);
  AutosamplerSettings s;
  s.SyringeVolume = 5;
  s.SampleVolume = 751;
  s.BackFlowVolume = 3;
  s.AirVolume = 500;
  EXPECT_EQ(StepsPerMicrolitreFor(s), 0.6f);
  EXPECT_EQ(ComputePumpSteps(s, StepsPerMicrolitreFor(s)), (PumpSteps{450, 1, 300}));
}

TEST_F(WholeCheck, DefaultsPassAndTheStepsAreRecomputed) {
  EXPECT_TRUE(check().empty());
  EXPECT_EQ(spm, 0.3f);
  EXPECT_EQ(steps, (PumpSteps{225, 0, 150}));
}

TEST_F(WholeCheck, EveryFaultIsReportedInOnePassAndCorrected) {
  s.SyringeVolume = 5;
  s.SampleVolume = 5001;  // reported, not corrected
  s.BackFlowVolume = -1;  // non-numeric text left -1
  s.AirVolume = 10;       // with 5001 above the syringe
  s.FillSpeed = 41;
  s.DispenseSpeedFlush = -1;
  s.FlushTime = 5001;
  s.AirDryTime = -1;
  const auto faults = check();
  const std::vector<AutosamplerFault> expected{
      {AutosamplerField::SampleVolume, "Sample volume must be between 0 and 5000."},
      {AutosamplerField::BackFlow, "Back Flow Volume must be greater than or equal to 0 ul."},
      {AutosamplerField::AirVolume,
       "Air Volume must be a positive and when added to the sample volume be less than 5000."},
      {AutosamplerField::FillSpeed, "Fill Speed (Sample) must be in the range of 0-40."},
      {AutosamplerField::DispenseSpeedFlush,
       "Dispense Speed (Flush) must be in the range of 0-40."},
      {AutosamplerField::FlushTime, "Flush volume must be between 0 and 5000."},
      {AutosamplerField::AirDryTime, "Air Dry Time must be greater than or equal to 0."},
  };
  EXPECT_EQ(faults, expected);
  EXPECT_EQ(s.SampleVolume, 5001);
  EXPECT_EQ(s.BackFlowVolume, 0);
  EXPECT_EQ(s.AirVolume, 0);
  EXPECT_EQ(s.FillSpeed, 0);
  EXPECT_EQ(s.DispenseSpeedFlush, 0);
  EXPECT_EQ(s.FlushTime, 0);
  EXPECT_EQ(s.AirDryTime, 0);
  EXPECT_EQ(steps, (PumpSteps{3000, 0, 0}));
  // The sample volume is not corrected, so a second pass finds it, and the air with it, again.
  EXPECT_EQ(check().size(), 2u);
}

TEST_F(WholeCheck, BackfillAboveTheSampleVolumeBecomesTheSampleVolume) {
  s.BackFlowVolume = 800;
  const auto faults = check();
  ASSERT_EQ(faults.size(), 1u);
  EXPECT_EQ(faults[0].message, "Back Flow Volume must be less than or equal to Sample Volume.");
  EXPECT_EQ(s.BackFlowVolume, 750);
  EXPECT_EQ(steps.BackFlowSteps, 225);
}

TEST_F(WholeCheck, StandardRulesRunOnlyWithAStandard) {
  // Standard 10 inside 5..24 moves to the tube before the blank (2): tube 1.
  s.StandardTube = 10;
  auto faults = check();
  ASSERT_EQ(faults.size(), 1u);
  EXPECT_EQ(faults[0].message, "You have the Standard located in the Sample section.");
  EXPECT_EQ(s.StandardTube, 1);

  // Out of the tray, then on the blank's tube (plain box): each rule corrects in turn.
  s.StandardTube = 97;
  s.BlankTube = 1;
  s.EndingTube = 3;
  faults = check();
  ASSERT_EQ(faults.size(), 3u);
  EXPECT_EQ(faults[0].message, "Answer must be between 1 and 96.");
  EXPECT_EQ(faults[1].message, "You have the Standards and Blanks coming from the same tube.");
  EXPECT_EQ(faults[1].icon, BoxIcon::None);
  EXPECT_EQ(faults[2].message, "The Ending Tube number is less than the Starting Tube number.");
  EXPECT_EQ(s.StandardTube, 0);
  EXPECT_EQ(s.EndingTube, 5);

  // Without a standard an ending tube below the starting tube passes.
  s.HasStandard = false;
  s.EndingTube = 3;
  EXPECT_TRUE(check().empty());
}

TEST_F(WholeCheck, ValidateShowsEachFaultThenTellsTheBox) {
  ScriptedOperator person;
  std::vector<AutosamplerField> told;
  s.FillSpeed = 50;
  s.AirDryTime = -3;
  EXPECT_FALSE(ValidateAutosamplerSettings(s, 96, spm, steps, person,
                                           [&](AutosamplerField f) { told.push_back(f); }));
  ASSERT_EQ(person.messages().size(), 2u);
  EXPECT_EQ(person.messages()[1].title, "ZORVEL ERROR");
  EXPECT_EQ(person.messages()[1].icon, BoxIcon::Exclamation);
  EXPECT_EQ(told, (std::vector{AutosamplerField::FillSpeed, AutosamplerField::AirDryTime}));
  EXPECT_TRUE(ValidateAutosamplerSettings(s, 96, spm, steps, person));
}

TEST_F(WholeCheck, AFailedCheckOpensTheWindowOnlyWhenItWasNeverOpen) {
  ScriptedOperator person;
  bool everOpened = false;
  int opened = 0;
  const AutosamplerWindowOffer offer{everOpened, [&] {
                                       ++opened;
                                       everOpened = true;
                                     }};
  s.FillSpeed = 50;
  EXPECT_FALSE(ValidateAutosamplerSettings(s, 96, spm, steps, person, offer));
  s.FillSpeed = 50;
  EXPECT_FALSE(ValidateAutosamplerSettings(s, 96, spm, steps, person, offer));
  EXPECT_EQ(opened, 1);
}

}  // namespace
}  // namespace zorvel

namespace zorvel {
namespace {

// What a tray run needs beyond the whole check: every fault named, in order, and nothing
// changed, so a passing set of settings is run exactly as it stands.
TEST_F(WholeCheck, RunFaultsNameEveryFaultWithoutChangingTheSettings) {
  EXPECT_TRUE(AutosamplerRunFaults(s, 96).empty());
  EXPECT_EQ(AutosamplerRunFaults(s, 0),
            std::vector<std::string>{
                "No tray geometry is loaded: the preferences name no tray geometry file, or it "
                "was refused.  A run by autosampler needs one."});
  s.SyringeVolume = 0;
  s.StartingTube = -5;
  s.BlankFreq = -2;
  const AutosamplerSettings before = s;
  EXPECT_EQ(AutosamplerRunFaults(s, 96),
            (std::vector<std::string>{
                "Syringe Volume 0 must be 5 or 10 (ml); every volume is checked against it.",
                "You have the Standard located in the Sample section.",
                "Starting Tube -5 must be between 1 and 96 (the tubes of the tray).",
                "You have the Blank located in the Sample section.",
                "Blank frequency -2 must be 0 or more."}));
  EXPECT_EQ(s, before);
  s = AutosamplerSettings{};
  SetAutosamplerDefaults(s, 96);
  s.EndingTube = 97;
  s.HasStandard = false;
  s.BlankTube = 3;
  s.StartingTube = 4;
  EXPECT_EQ(AutosamplerRunFaults(s, 96),
            std::vector<std::string>{
                "Ending Tube 97 must be between 4 (the Starting Tube) and 96 (the tubes of the "
                "tray)."});
}

}  // namespace
}  // namespace zorvel
