#pragma once

#include <string>
#include <string_view>

#include "core/state/tray_geometry.h"
#include "sim/bench.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {

// The autosampler arm at the far end of its line. It takes CR-ended commands, moves in real
// time (the probe rises before any travel), answers "OK" when a command is done, and keeps
// the bench told which tube it stands over and how deep the probe is.
class ArmSim final : public LinePeer {
 public:
  static constexpr double kTravelMmPerS = 100.0;
  static constexpr double kProbeUnitsPerS = 50.0;
  static constexpr double kAnswerDelayS = 0.002;
  static constexpr float kLimitXMm = 302.0f;
  static constexpr float kLimitYMm = 181.0f;
  static constexpr float kDeepestProbe = 146.0f;
  // How close to a tray position the arm must stand to be over that tube.
  static constexpr float kOverTubeMm = 2.0f;

  explicit ArmSim(Bench& bench, const TrayGeometry* tray = nullptr);
  // The tray the arm works over; without one it is never over a tube.
  void setTray(const TrayGeometry* tray);

  void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) override;

  // Faults: the next `commands` commands answer at once without "OK" and report done only
  // when asked for their status; a silent arm answers nothing; a slow one answers late.
  void answerWithoutOk(int commands) { withoutOk_ = commands; }
  void setSilent(bool silent) { silent_ = silent; }
  void setExtraDelayS(double seconds) { extraDelayS_ = seconds; }

  float xMm() const { return x_; }
  float yMm() const { return y_; }
  float probeHeight() const { return height_; }
  // When the current motion ends (monotonic seconds).
  double busyUntilS() const { return busyUntilS_; }
  int commandsReceived() const { return commands_; }

 private:
  void handle(std::string_view command, double arrivedS, LineEnd& reply);
  // Carries a command out from startS; returns how long it takes, or a negative number for a
  // command the arm does not know.
  double perform(std::string_view command);
  double raiseProbe();
  double travelTo(float x, float y);
  double lowerBy(float units);
  void answer(std::string_view text, double atS, LineEnd& reply);
  void tellBench();

  Bench& bench_;
  const TrayGeometry* tray_ = nullptr;
  std::string pending_;
  float x_ = 0;
  float y_ = 0;
  float height_ = 0;
  double busyUntilS_ = 0;
  int withoutOk_ = 0;
  bool silent_ = false;
  double extraDelayS_ = 0;
  int commands_ = 0;
};

}  // namespace zorvel::sim
