#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "core/instruments/instrument_error.h"
#include "core/instruments/patient_line.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"

namespace zorvel {

// The arm's and the dilutor's line: the patient line every instrument shares, opened on
// demand, with the replies read as bursts. Arm and dilutor exchanges end in LinkFailure::None,
// Abandoned (the operator cancelled a silent wait) or LostPort (the port went away or could not
// be opened); the operator has been told by then, and callers stop their sequence.
class ArmPumpLine {
 public:
  static constexpr std::size_t kLongestBurst = 4096;

  // instrument names the device in messages: "autosampler arm", "dilutor".
  ArmPumpLine(SerialLine& line, Clock& clock, Operator& person, std::string instrument);

  // Opens the port when it is closed; tells the operator when it cannot.
  LinkFailure ensureOpen();
  void close();
  bool isOpen() const { return line_.line().isOpen(); }

  void discardInput() { line_.line().discardInput(); }
  // What is waiting now, read without waiting for more.
  std::string readWaiting();
  // Waits until a character is waiting or the deadline passes; false at the deadline.
  bool waitForCharacter(double deadlineS) { return line_.line().waitForCharacters(1, deadlineS); }
  // Sends bytes on an open line; a refused write means the line is gone.
  LinkFailure send(std::string_view bytes);
  // Blocks until at least one character is waiting. After the patient line's bound of silence
  // the operator is asked; on Retry `onRetry` runs (when given) and the wait starts afresh.
  LinkFailure awaitCharacter(const std::function<LinkFailure()>& onRetry = {}) {
    return line_.awaitCharacters(1, onRetry);
  }
  // Reads what is waiting and keeps reading while more follows within quietGapS, so that a
  // reply delivered in pieces is seen whole; it ends at once when `whole` says the text read so
  // far is a whole answer. Empty when nothing is waiting.
  std::string readBurst(double quietGapS, const std::function<bool(std::string_view)>& whole = {});

  // The device has answered for boundS without saying it is done: the operator is told its last
  // answer and chooses Retry (true: keep waiting) or Cancel.
  bool busyTooLongRetries(double boundS, std::string_view lastReply);

  // The device (the dilutor's "pump" or "valve unit") reported an error after `command`: the
  // operator is told which and chooses Retry (true: send the command again) or Cancel.
  bool errorRetries(std::string_view device, std::string_view command, std::string_view error);

  // Reports the lost line (once) and returns LostPort.
  LinkFailure lostLine() { return line_.reportLost(); }
  const SerialLine& line() const { return line_.line(); }

 private:
  Clock& clock_;
  Operator& operator_;
  std::string instrument_;
  PatientLine line_;
};

}  // namespace zorvel
