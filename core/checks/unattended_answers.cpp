#include "core/checks/unattended_answers.h"

#include <string>

namespace zorvel {

WaterCellAnswer NextWaterCellAnswer(AnswerScript& script, bool rerunOffered) {
  const auto next = script.peek();
  if (!next) return WaterCellAnswer::Ok;
  if (!rerunOffered) {
    if (next->word == "ok") script.next();
    return WaterCellAnswer::Ok;
  }
  script.next();
  if (next->word == "ok") return WaterCellAnswer::Ok;
  if (next->word == "rerun") return WaterCellAnswer::Rerun;
  script.fail("line " + std::to_string(next->lineNumber) + " \"" + next->text +
              "\" does not answer the water-cell result (ok/rerun)");
  return WaterCellAnswer::Misfit;
}

}  // namespace zorvel
