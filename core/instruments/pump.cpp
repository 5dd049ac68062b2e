#include "core/instruments/pump.h"

#include <string>
#include <vector>

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
  if (const auto opened = openLine(); opened != LinkFailure::None) return opened;
  if (const auto pump = SendPumpCommand(kPumpAddress, "ZR"); pump != LinkFailure::None) {
    return pump;
  }
  return SendPumpCommand(kValveAddress, "Z4R");
}

void Pump::ClosePumpPort() {
  link_.close();
  replies_.writeOff();
}

LinkFailure Pump::openLine() {
  if (link_.isOpen()) return LinkFailure::None;
  replies_.writeOff();
  return link_.ensureOpen();
}

LinkFailure Pump::sendFrame(const std::string& frame) {
  const LinkFailure sent = link_.send(frame);
  if (sent == LinkFailure::None) replies_.frameSent(clock_.monotonicS());
  return sent;
}

LinkFailure Pump::SendPumpCommand(std::int16_t address, std::string_view command) {
  BusyCursor busy(operator_);
  for (;;) {
    if (const auto opened = openLine(); opened != LinkFailure::None) return opened;
    replies_.passOver(link_.readWaiting());
    replies_.beginCommand(clock_.monotonicS());
    if (const auto sent = sendFrame(PumpFrame(address, command)); sent != LinkFailure::None) {
      return sent;
    }
    replies_.passOver(link_.readWaiting());
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
  const auto ask = [&] { return sendFrame(query); };
  if (const auto sent = ask(); sent != LinkFailure::None) return sent;
  double sinceS = clock_.monotonicS();
  std::string lastReply;
  for (;;) {
    if (const auto heard = awaitAnswer(ask); heard != LinkFailure::None) return heard;
    for (const std::string& reply : readAnswers()) {
      lastReply = reply;
      lastError_ = PumpReplyError(reply);
      if (lastError_ != 0) return LinkFailure::DeviceFault;
      if (PumpReplyShowsReady(reply)) return LinkFailure::None;
      // Every answer without the ready byte sends the next question at once. The command's own
      // answer comes while the first question is still going out, so two are always on their
      // way and the device is asked as often as the line can carry it.
      if (const auto sent = ask(); sent != LinkFailure::None) return sent;
    }
    if (clock_.monotonicS() - sinceS < kLongestCommandS) continue;
    if (!link_.busyTooLongRetries(kLongestCommandS, lastReply)) return LinkFailure::Abandoned;
    sinceS = clock_.monotonicS();
  }
}

LinkFailure Pump::awaitAnswer(const std::function<LinkFailure()>& ask) {
  // The answers due have all come by now or never will (a device that dropped a question, or the
  // answer to one before the command passed over, which asks nothing further): the device is
  // asked again rather than waited on.
  if (!link_.waitForCharacter(replies_.allDueByS())) {
    replies_.writeOff();
    if (const auto sent = ask(); sent != LinkFailure::None) return sent;
  }
  // On Retry the device is asked again: a question it never heard would wait for ever.
  return link_.awaitCharacter(ask);
}

std::vector<std::string> Pump::readAnswers() {
  return replies_.take(link_.readBurst(kReplyGapS, &PumpReplyLedger::endsWhole));
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
