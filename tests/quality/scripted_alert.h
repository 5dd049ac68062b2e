// The out-of-range alert answered with the next scripted verdict; keeps what it was shown.
#pragma once

#include <vector>

#include "core/quality/quality_checks.h"

namespace zorvel::testing {

struct ScriptedAlert final : AlertDialog {
  std::vector<int> answers;
  std::vector<QcSnapshot> shown;
  int ask(const QcSnapshot& snapshot) override {
    shown.push_back(snapshot);
    const int answer = answers.front();
    answers.erase(answers.begin());
    return answer;
  }
  int asked() const { return static_cast<int>(shown.size()); }
};

}  // namespace zorvel::testing
