#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "core/instruments/instrument_error.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"

namespace zorvel {

// The patience every instrument link shares over its serial line. The instruments answer when
// they are done, which may take a while, but never more than kSilenceBoundS without a single
// byte; past that the operator decides between waiting again and giving up. A line that has
// gone away is reported once and then simply fails, so nothing spins on it. What the operator
// is told is in each instrument's own words.
class PatientLine {
 public:
  static constexpr double kSilenceBoundS = 120.0;
  // Every instrument's port settings.
  static constexpr const char* kSettings = "9600,N,8,1";

  // What the operator is told: the line is gone (once), and the question after a silent bound
  // (Retry waits again).
  struct Words {
    std::function<std::string(const SerialLine&)> lost;
    std::function<std::string(const SerialLine&)> silent;
  };

  PatientLine(SerialLine& line, Clock& clock, Operator& person, Words words);

  SerialLine& line() { return line_; }
  const SerialLine& line() const { return line_; }
  // The line went away or is not open.
  bool down() const { return line_.lost() || !line_.isOpen(); }
  // Tells the operator the line is gone, the first time only, and returns LostPort.
  LinkFailure reportLost();
  // A port opened anew is a fresh connection: its next loss is news.
  void fresh() { lostTold_ = false; }

  // Blocks until n characters are waiting; each byte that arrives starts the bound afresh.
  // After kSilenceBoundS without one the operator is asked: Cancel gives Abandoned, Retry runs
  // `onRetry` (which may end the wait with its own failure) and waits again.
  LinkFailure awaitCharacters(std::size_t n, const std::function<LinkFailure()>& onRetry = {});

 private:
  SerialLine& line_;
  Clock& clock_;
  Operator& person_;
  Words words_;
  bool lostTold_ = false;
};

}  // namespace zorvel
