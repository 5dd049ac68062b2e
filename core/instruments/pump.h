#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/instruments/arm_pump_link.h"
#include "core/instruments/instrument_error.h"
#include "core/instruments/pump_reply_ledger.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"
#include "core/state/link_state.h"
#include "core/state/method_settings.h"

namespace zorvel {

// The dilutor: the syringe pump and the valve unit on one line. Each command is one framed
// exchange that lasts until the device reports ready; speeds and volumes come from the
// method's autosampler settings, the step size from LinkState.
class Pump {
 public:
  Pump(SerialLine& line, Clock& clock, Operator& person, const LinkState& links,
       const AutosamplerSettings& settings);

  // Opens the dilutor port and initialises the pump, then the valve unit.
  LinkFailure InitialisePump();
  void ClosePumpPort();
  bool isOpen() const { return link_.isOpen(); }

  // Sends one command to a device (1 pump, 3 valve unit) and polls until it is ready. A device
  // that reports an error is named with its error at once; Retry sends the command again.
  LinkFailure SendPumpCommand(std::int16_t address, std::string_view command);
  // Valve ports 1 to 4; any other number sends an empty command to the valve unit.
  LinkFailure SelectValvePort(std::int16_t port);
  // Mode 1 moves the plunger to an absolute position, mode 2 dispenses by a volume; other
  // modes only set the dispense speed.
  LinkFailure PumpDispense(std::int16_t mode, std::int16_t volumeSteps);
  // Draws by a volume in steps at the fill speed.
  LinkFailure PumpFill(std::int16_t volumeSteps);
  // Rinses the probe, the line and the flow cell with the flush volume from the solvent side.
  LinkFailure PumpFlush();
  // Blows air through the flow cell for a number of seconds.
  LinkFailure PumpAirDry(std::int16_t seconds);
  void WaitSeconds(std::int16_t seconds);

  // A burst of status replies ends when every reply owed is whole; failing that (a device that
  // frames no replies), when the line has been quiet this long: longer than a USB adapter holds
  // characters back, so that one reply is not read as two.
  static constexpr double kReplyGapS = 0.05;
  // No command keeps the dilutor busy longer: a full stroke at the slowest speed (code 40,
  // 600 seconds) and a minute's margin.
  static constexpr double kLongestCommandS = 660.0;

 private:
  LinkFailure openLine();
  LinkFailure sendFrame(const std::string& frame);
  LinkFailure pollUntilReady(std::int16_t address);
  LinkFailure awaitAnswer(const std::function<LinkFailure()>& ask);
  // The answers that have come, whole, that speak for the present command.
  std::vector<std::string> readAnswers();

  ArmPumpLine link_;
  Clock& clock_;
  Operator& operator_;
  const LinkState& links_;
  const AutosamplerSettings& settings_;
  PumpReplyLedger replies_;
  int lastError_ = 0;  // the error code of the last status read
};

}  // namespace zorvel
