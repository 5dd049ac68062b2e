#include "core/checks/unattended_answers.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(UnattendedWaterCell, AnswersOkOrRerunAndLeaveRerunForAFailedCheck) {
  AnswerScript script;
  script.loadText("rerun\nok\n");
  // Within range only OK is offered: the "rerun" meant for a failed check stays.
  EXPECT_EQ(WaterCellAnswer::Ok, NextWaterCellAnswer(script, false));
  EXPECT_EQ(WaterCellAnswer::Rerun, NextWaterCellAnswer(script, true));
  EXPECT_EQ(WaterCellAnswer::Ok, NextWaterCellAnswer(script, false));  // takes the "ok"
  EXPECT_TRUE(script.usedUp());
  EXPECT_EQ(WaterCellAnswer::Ok, NextWaterCellAnswer(script, true));  // used up: OK
  EXPECT_FALSE(script.failed());

  AnswerScript wrong;
  wrong.loadText("yes\n");
  EXPECT_EQ(WaterCellAnswer::Misfit, NextWaterCellAnswer(wrong, true));
  EXPECT_EQ("line 1 \"yes\" does not answer the water-cell result (ok/rerun)", wrong.failure());
}

}  // namespace
}  // namespace zorvel
