#include "core/instruments/pump.h"

#include <algorithm>
#include <string>

#include "core/instruments/pump_protocol.h"
#include "core/instruments/pump_wait.h"

namespace zorvel {

namespace {

// The hourglass shows for as long as one exchange lasts, however it ends.
class BusyCursor {
 public:
  explicit BusyCursor(Operator& person) : operator_(person) { operator_.setBusy(true); }
  ~BusyCursor() { operator_.setBusy(false); }
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;

 private:
  Operator& operator_;
};

}  // namespace

Pump::Pump(SerialLine& line, Clock& clock, Operator& person, const LinkState& links,
           const AutosamplerSettings& settings)
    : link_(line, clock, person, "dilutor"),
      clock_(clock),
      operator_(person),
      links_(links),
      settings_(settings) {}

LinkFailure Pump::InitialisePump() {
  if (const auto opened = link_.ensureOpen(); opened != LinkFailure::None) return opened;
  if (const auto pump = SendPumpCommand(kPumpAddress, "ZR"); pump != LinkFailure::None) {
    return pump;
  }
  return SendPumpCommand(kValveAddress, "Z4R");
}

void Pump::ClosePumpPort() {
  link_.close();
}

LinkFailure Pump::SendPumpCommand(std::int16_t address, std::string_view command) {
  BusyCursor busy(operator_);
  for (;;) {
    if (const auto opened = link_.ensureOpen(); opened != LinkFailure::None) return opened;
    link_.discardInput();
    if (const auto sent = link_.send(PumpFrame(address, command)); sent != LinkFailure::None) {
      return sent;
    }
    link_.discardInput();
    const LinkFailure done = pollUntilReady(address);
    if (done != LinkFailure::DeviceFault) return done;
    // A device in error stays so until it is given a command: Retry sends this one again.
    if (!link_.errorRetries(
            address == kValveAddress ? "valve unit" : "pump", command,
            PumpErrorName(lastError_) + " (error " + std::to_string(lastError_) + ")")) {
      return LinkFailure::Abandoned;
    }
  }
}

LinkFailure Pump::pollUntilReady(std::int16_t address) {
  const std::string query = PumpQueryFrame(address);
  // The replies still to come: the command's own, then one for each query. A burst ends as
  // soon as they are all in, so a reply that comes late is read as its own question's and never
  // taken for the answer to a later one (a "ready" left over would let the next command go to a
  // device still moving).
  int owed = 1;
  const auto ask = [&] {
    ++owed;
    return link_.send(query);
  };
  const auto allIn = [&owed](std::string_view text) { return PumpWholeReplies(text) >= owed; };
  double sinceS = clock_.monotonicS();
  for (;;) {
    if (const auto sent = ask(); sent != LinkFailure::None) return sent;
    // On Retry the device is asked again: a query it never heard would wait for ever.
    const auto heard = link_.awaitCharacter(ask);
    if (heard != LinkFailure::None) return heard;
    const std::string reply = link_.readBurst(kReplyGapS, allIn);
    owed = std::max(0, owed - PumpWholeReplies(reply));
    lastError_ = PumpReplyError(reply);
    if (lastError_ != 0) return LinkFailure::DeviceFault;
    if (PumpReplyShowsReady(reply)) return LinkFailure::None;
    if (clock_.monotonicS() - sinceS < kLongestCommandS) continue;
    if (!link_.busyTooLongRetries(kLongestCommandS, reply)) return LinkFailure::Abandoned;
    sinceS = clock_.monotonicS();
  }
}

LinkFailure Pump::SelectValvePort(std::int16_t port) {
  return SendPumpCommand(kValveAddress, ValvePortCommand(port));
}

LinkFailure Pump::PumpDispense(std::int16_t mode, std::int16_t volumeSteps) {
  return SendPumpCommand(kPumpAddress,
                         PumpDispenseCommand(mode, settings_.DispenseSpeed, volumeSteps));
}

LinkFailure Pump::PumpFill(std::int16_t volumeSteps) {
  return SendPumpCommand(kPumpAddress, PumpFillCommand(settings_.FillSpeed, volumeSteps));
}

LinkFailure Pump::PumpFlush() {
  LinkFailure result = SelectValvePort(1);
  if (result != LinkFailure::None) return result;
  WaitSeconds(1);
  result = SelectValvePort(3);
  if (result != LinkFailure::None) return result;
  result = SendPumpCommand(kPumpAddress,
                           PumpFlushDrawCommand(settings_.FillSpeedFlush, settings_.FlushTime,
                                                links_.StepsPerMicrolitre));
  if (result != LinkFailure::None) return result;
  return SendPumpCommand(kPumpAddress, PumpFlushEmptyCommand(settings_.DispenseSpeedFlush));
}

LinkFailure Pump::PumpAirDry(std::int16_t seconds) {
  LinkFailure result = SendPumpCommand(kPumpAddress, "BR");
  if (result != LinkFailure::None) return result;
  result = SelectValvePort(2);
  if (result != LinkFailure::None) return result;
  WaitSeconds(seconds);
  return SelectValvePort(1);
}

void Pump::WaitSeconds(std::int16_t seconds) {
  zorvel::WaitSeconds(clock_, seconds);
}

}  // namespace zorvel
