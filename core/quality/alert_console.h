#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "core/quality/quality_snapshot.h"
#include "core/state/answer_script.h"

namespace zorvel {

// The alert window of an unattended run: prints the out-of-range colours with their figures
// and answers from the answer script ("yes" 6, "no" 7, "cancel" 2). An answer that does not
// fit, or a script that ran out, is the script's failure and answers cancel.
class ConsoleAlertDialog final : public AlertDialog {
 public:
  ConsoleAlertDialog(AnswerScript& script, std::ostream& out) : script_(script), out_(out) {}
  int ask(const QcSnapshot& snapshot) override;

 private:
  AnswerScript& script_;
  std::ostream& out_;
};

// What the trend window would show as a run closes, without asking anything: the mean, SD and
// CV of every colour of the control database, and of the blank database when it has entries.
void PrintTrendFigures(std::ostream& out, const QcSnapshot& snapshot);

// The control medians of a reopened set, one "ex/em: median" per colour ("0.0").
void PrintMedians(std::ostream& out, const QcSnapshot& snapshot,
                  const std::vector<std::string>& medians);

}  // namespace zorvel
