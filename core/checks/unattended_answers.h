#pragma once

#include "core/state/answer_script.h"

namespace zorvel {

// How an unattended water-cell check goes on once a result is shown.
enum class WaterCellAnswer { Ok, Rerun, Misfit };

// The answer file decides: "ok" presses OK and "rerun" Rerun where it is offered; a used-up
// file means OK. A result within range offers only OK: an "ok" next in the file is taken for
// it, anything else is left for a later question, so one answer file serves every morning
// whether the first check passes or not. Any other word is a misfit, recorded in the script.
WaterCellAnswer NextWaterCellAnswer(AnswerScript& script, bool rerunOffered);

}  // namespace zorvel
