#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/instruments/instrument_error.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"

namespace zorvel {

// The patience rules the arm and the dilutor share over their serial lines: they answer when
// they are done, which may take a while, but never more than kSilenceBoundS without a single
// byte. Past that the operator decides between waiting again and abandoning the command. A
// line that has gone away is reported once and then simply fails, so nothing spins on it.
// Arm and dilutor exchanges end in LinkFailure::None, Abandoned (the operator cancelled a
// silent wait) or LostPort (the port went away or could not be opened); the operator has been
// told by then, and callers stop their sequence.
class ArmPumpLine {
 public:
  static constexpr double kSilenceBoundS = 120.0;
  static constexpr const char* kSettings = "9600,N,8,1";
  static constexpr std::size_t kLongestBurst = 4096;

  // instrument names the device in messages: "autosampler arm", "dilutor".
  ArmPumpLine(SerialLine& line, Clock& clock, Operator& person, std::string instrument);

  // Opens the port when it is closed; tells the operator when it cannot.
  LinkFailure ensureOpen();
  void close();
  bool isOpen() const { return line_.isOpen(); }

  void discardInput() { line_.discardInput(); }
  // Sends bytes on an open line; a refused write means the line is gone.
  LinkFailure send(std::string_view bytes);
  // Blocks until at least one character is waiting. After kSilenceBoundS of silence the
  // operator is asked; on Retry `onRetry` runs (when given) and the wait starts afresh.
  template <typename OnRetry>
  LinkFailure awaitCharacter(OnRetry onRetry);
  LinkFailure awaitCharacter() {
    return awaitCharacter([] { return LinkFailure::None; });
  }
  // Reads what is waiting and keeps reading while more follows within quietGapS, so that a
  // reply delivered in pieces is seen whole. Empty when nothing is waiting.
  std::string readBurst(double quietGapS);

  // Reports the lost line (once) and returns LostPort.
  LinkFailure lostLine();
  const SerialLine& line() const { return line_; }

 private:
  // One bounded wait: None, Abandoned when the bound passed in silence, or LostPort.
  LinkFailure waitOnce();
  // Asks the operator what to do after a silent bound; true for Retry.
  bool operatorRetries();

  SerialLine& line_;
  Clock& clock_;
  Operator& operator_;
  std::string instrument_;
  bool lostTold_ = false;
};

template <typename OnRetry>
LinkFailure ArmPumpLine::awaitCharacter(OnRetry onRetry) {
  for (;;) {
    const LinkFailure result = waitOnce();
    if (result != LinkFailure::Abandoned) return result;
    if (!operatorRetries()) return LinkFailure::Abandoned;
    const LinkFailure again = onRetry();
    if (again != LinkFailure::None) return again;
  }
}

}  // namespace zorvel
