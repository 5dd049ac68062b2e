#include "core/autosampler/maintenance_sequences.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "autosampler/bench_rig.h"

namespace zorvel {
namespace {

using Lines = std::vector<std::string>;

class Maintenance : public ::testing::Test, public testing::BenchRig {
 protected:
  MaintenanceSequences sequences{parts()};
};

TEST_F(Maintenance, PrimeFillsFromTheSolventSideOverTheRinseStationAndClosesTheDilutor) {
  EXPECT_EQ(sequences.PrimePump(), SequenceEnd::Done);
  EXPECT_EQ(sent(), (Lines{
                        "dilutor 1 ZR",
                        "dilutor 3 Z4R",
                        "arm SETM ABSPOS=245,20<CR>",
                        "arm SET DOWN=70<CR>",
                        "dilutor 3 Y2A3R",
                        "dilutor 1 OS18A3000R",
                        "dilutor 1 IS13A0R",
                        "dilutor 3 Y2A1R",
                        "arm RESET<CR>",
                        "arm SET DOWN=70<CR>",
                        "dilutor 1 BR",
                        "dilutor 3 Y2A2R",
                        "dilutor 3 Y2A1R",
                    }));
  EXPECT_EQ(links.CurrentArmTube, -1);
  EXPECT_EQ(links.CurrentArmHeight, 70);
  EXPECT_FALSE(pump.isOpen());
  EXPECT_TRUE(person.messages().empty());
}

TEST_F(Maintenance, PrimingWithTheDilutorAlreadyOpenLeavesItOpen) {
  ASSERT_EQ(pump.InitialisePump(), LinkFailure::None);
  sent().clear();
  EXPECT_EQ(sequences.PrimePump(), SequenceEnd::Done);
  EXPECT_EQ(sent().front(), "arm SETM ABSPOS=245,20<CR>");
  EXPECT_TRUE(pump.isOpen());
}

// At program start the arm counts as standing at tube 0, the rinse station: priming and the
// rinse check lower the probe there without a move first.
TEST_F(Maintenance, AFreshProgramPrimesAndRinsesWithoutAMoveToTheRinseStation) {
  for (auto sequence : {&MaintenanceSequences::PrimePump, &MaintenanceSequences::CheckRinse}) {
    links.CurrentArmTube = 0;
    links.CurrentArmHeight = 0;
    sent().clear();
    EXPECT_EQ((sequences.*sequence)(), SequenceEnd::Done);
    EXPECT_EQ(sent().at(2), "arm SET DOWN=70<CR>");
    EXPECT_EQ(std::count(sent().begin(), sent().end(), "arm SETM ABSPOS=245,20<CR>"), 0);
  }
}

TEST_F(Maintenance, RinseCheckAndTestingFlushTheFlushVolume) {
  EXPECT_EQ(sequences.CheckRinse(), SequenceEnd::Done);
  EXPECT_EQ(sent(), (Lines{
                        "dilutor 1 ZR",
                        "dilutor 3 Z4R",
                        "arm SETM ABSPOS=245,20<CR>",
                        "arm SET DOWN=70<CR>",
                        "dilutor 3 Y2A1R",
                        "dilutor 3 Y2A3R",
                        "dilutor 1 OS10P2400R",
                        "dilutor 1 IS10A0R",
                        "arm RESET<CR>",
                        "arm SET DOWN=70<CR>",
                        "dilutor 1 BR",
                        "dilutor 3 Y2A2R",
                        "dilutor 3 Y2A1R",
                    }));
  sent().clear();
  settings.SyringeVolume = 5;  // the flush is counted in the steps of the syringe now fitted
  EXPECT_EQ(sequences.Testing(), SequenceEnd::Done);
  EXPECT_EQ(sent(), (Lines{"dilutor 1 ZR", "dilutor 3 Z4R", "dilutor 3 Y2A1R", "dilutor 3 Y2A3R",
                           "dilutor 1 OS10P4800R", "dilutor 1 IS10A0R"}));
  EXPECT_FALSE(pump.isOpen());
}

TEST_F(Maintenance, VolumeCheckRunsOneSampleCycleAndWaitsForTheFlowCellLook) {
  EXPECT_EQ(sequences.CheckVolumes(), SequenceEnd::Done);
  EXPECT_EQ(sent(), (Lines{
                        "dilutor 1 ZR",         "dilutor 3 Z4R",       "arm SETM ABSPOS=56,20<CR>",
                        "arm SET DOWN=105<CR>", "dilutor 1 IS15P225R", "arm SET UP=35<CR>",
                        "dilutor 1 IS15P150R",  "dilutor 1 IS10D 0R",  "arm SET DOWN=35<CR>",
                        "dilutor 1 IS10A 0R",   "arm SET UP=35<CR>",   "arm SETM ABSPOS=245,20<CR>",
                        "arm SET DOWN=70<CR>",  "dilutor 3 Y2A1R",     "dilutor 3 Y2A3R",
                        "dilutor 1 OS10P2400R", "dilutor 1 IS10A0R",   "arm RESET<CR>",
                        "arm SET DOWN=70<CR>",  "dilutor 1 BR",        "dilutor 3 Y2A2R",
                        "dilutor 3 Y2A1R",
                    }));
  ASSERT_EQ(person.messages().size(), 1u);
  EXPECT_EQ(person.messages()[0].text, "Check Flow Cell");
  EXPECT_EQ(person.messages()[0].title, "ZORVEL REQUEST");
  EXPECT_EQ(person.messages()[0].icon, BoxIcon::Exclamation);
  EXPECT_EQ(steps, (PumpSteps{225, 0, 150}));
}

TEST_F(Maintenance, AVolumeCheckOnBadSettingsBeepsAndMovesNothing) {
  settings.FillSpeed = 41;
  settings.BackFlowVolume = 900;
  EXPECT_EQ(sequences.CheckVolumes(), SequenceEnd::SettingsRefused);
  EXPECT_EQ(sent(), (Lines{"dilutor 1 ZR", "dilutor 3 Z4R"}));
  EXPECT_EQ(person.messages().size(), 2u);
  EXPECT_EQ(person.beeps, 1);
  EXPECT_FALSE(pump.isOpen());
}

TEST_F(Maintenance, ASilentArmEndsInTheBoundedWaitNamingItsPort) {
  armModel.setSilent(true);
  person.answerNext(answer::kCancel);
  EXPECT_EQ(sequences.CheckRinse(), SequenceEnd::LinkFailed);
  ASSERT_FALSE(person.messages().empty());
  EXPECT_NE(person.messages()[0].text.find("autosampler arm on COM3 (sim)"), std::string::npos);
  EXPECT_FALSE(pump.isOpen());
}

TEST_F(Maintenance, StopEndsAtTheNextStepWithTheValveAtPortOneAndTheArmHome) {
  std::vector<std::pair<int, int>> progress;
  MaintenanceSequences stoppable{parts(), SequenceHooks{{}, {}, {}, [&](int done, int total) {
                                                          progress.emplace_back(done, total);
                                                          // Pressed while the sample is drawn.
                                                          if (done == 2) stoppable.requestStop();
                                                        }}};
  EXPECT_EQ(stoppable.CheckVolumes(), SequenceEnd::Stopped);
  EXPECT_EQ(sent(), (Lines{"dilutor 1 ZR", "dilutor 3 Z4R", "arm SETM ABSPOS=56,20<CR>",
                           "arm SET DOWN=105<CR>", "dilutor 1 IS15P225R", "dilutor 3 Y2A1R",
                           "arm RESET<CR>"}));
  EXPECT_EQ(progress, (std::vector<std::pair<int, int>>{{0, 16}, {1, 16}, {2, 16}, {3, 16}}));
  EXPECT_EQ(stoppable.stoppedState(),
            "Stopped after step 3 of 16 (Draw 750 ul of sample). The valve is at port 1, the arm "
            "is home with the probe raised; the syringe still holds liquid: run Check Rinse "
            "before a run.");
  EXPECT_FALSE(pump.isOpen());
  // The next sequence starts afresh.
  sent().clear();
  EXPECT_EQ(stoppable.Testing(), SequenceEnd::Done);
}

}  // namespace
}  // namespace zorvel
