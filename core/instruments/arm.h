#pragma once

#include <cstdint>
#include <string_view>

#include "core/instruments/arm_pump_link.h"
#include "core/instruments/instrument_error.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"
#include "core/state/link_state.h"
#include "core/state/tray_geometry.h"

namespace zorvel {

// The autosampler arm: moves the probe over the tray and lowers it into a tube. The arm
// answers a command once it is done; its probe height and tube are kept in LinkState so that
// a move to where the arm already is costs nothing.
class Arm {
 public:
  Arm(SerialLine& line, Clock& clock, Operator& person, LinkState& links, const TrayGeometry& tray);

  LinkFailure OpenArmPort();
  void CloseArmPort();

  // Sends the text and CR, and returns once the arm has said "OK", directly or when asked
  // for its status.
  LinkFailure SendArmCommand(std::string_view command);
  // Asks the arm for its state once and reads until it reports done.
  LinkFailure PollArmStatus();
  // Raises or lowers the probe to a height (larger numbers are lower).
  LinkFailure SetArmHeight(std::int16_t height);
  // Moves over a tray position (0 to 500), or home with -1.
  LinkFailure MoveArmToTube(std::int16_t tube);

  ArmPlacement& placement() { return links_.Placement; }
  const ArmPlacement& placement() const { return links_.Placement; }
  bool isOpen() const { return link_.isOpen(); }

  // A reply is taken as whole once the line has been quiet this long after a character.
  static constexpr double kReplyGapS = 0.05;
  // No move keeps the arm busy longer (the longest travel across the tray takes seconds).
  static constexpr double kLongestMoveS = 120.0;

 private:
  int currentHeight() const;
  // Waits for the arm's next reply and reads it.
  LinkFailure awaitReply(std::string& reply);

  ArmPumpLine link_;
  Clock& clock_;
  LinkState& links_;
  const TrayGeometry& tray_;
};

}  // namespace zorvel
