#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "sim/bench.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {

// The dilutor at the far end of its line: the syringe pump (address "1") and the valve unit
// (address "3"). Each takes framed commands, checks the frame's checksum (a damaged frame is
// ignored, as if never heard), answers every frame with a status frame whose status byte is
// 96 when the device is ready and 64 while it is busy, and is busy until its plunger stroke or
// valve turn ends.
//
// The plumbing on the bench: the pump's input side ("I") leads to the valve unit, whose ports
// 1 and 3 run through the flow cell to the probe, port 2 to the drying air and port 4 to
// waste; its output side ("O") draws clean solvent. Liquid drawn through the probe, with the
// probe down in a tube's liquid, is that tube's sample; it passes the flow cell on its way into the
// syringe, and passes it again when pushed back out. Turning the valve unit to the air port
// blows the flow cell dry.
class PumpSim final : public LinePeer {
 public:
  static constexpr unsigned char kReady = 96;
  static constexpr unsigned char kBusy = 64;
  static constexpr double kAnswerDelayS = 0.001;
  static constexpr double kPumpValveTurnS = 0.15;
  static constexpr double kValvePortTurnS = 0.25;
  static constexpr double kInitialiseS = 1.0;
  // Between the usual back-fill height (70) and tube height (105).
  static constexpr float kLiquidSurface = 85.0f;

  explicit PumpSim(Bench& bench);

  void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) override;

  // How deep the probe must be (arm height units, larger is lower) to reach the liquid in a
  // tube; above that it draws air.
  void setLiquidSurface(float height) { liquidSurface_ = height; }
  // Faults: a silent dilutor answers nothing; a slow one answers late.
  void setSilent(bool silent) { silent_ = silent; }
  void setExtraDelayS(double seconds) { extraDelayS_ = seconds; }

  // Plunger speed in steps per second for a speed code (0 fastest, 40 slowest).
  static double StepsPerSecond(int speedCode);

  int plungerSteps() const { return plunger_; }
  char pumpValve() const { return pumpValve_; }  // 'I', 'O' or 'B'
  int valvePort() const { return valvePort_; }
  int speedCode() const { return speed_; }
  // Commands held without a run letter, waiting for "R".
  const std::string& heldCommand() const { return held_; }
  int framesAccepted() const { return accepted_; }
  int framesRejected() const { return rejected_; }
  // When the pump ("1") or the valve unit ("3") finishes what it was last told to do.
  double busyUntilS(char address) const {
    return address == '1' ? pumpBusyUntilS_ : valveBusyUntilS_;
  }

 private:
  struct Frame {
    char address = 0;
    std::string text;
  };
  // Takes the next whole frame from the received bytes; false when none is complete yet.
  bool nextFrame(Frame& frame);
  void handle(const Frame& frame, double arrivedS, LineEnd& reply);
  void answer(bool ready, double atS, LineEnd& reply);
  // Carry out a command text; each returns how long the device is busy.
  double runPump(std::string_view text);
  double runValve(std::string_view text);
  double movePlungerTo(int steps);
  double turnPort(int port);
  void draw(double volumeUl);
  void dispense(double volumeUl);
  double microlitres(int steps) const;

  Bench& bench_;
  std::string received_;
  // The syringe fitted, in mL; it turns plunger steps into microlitres.
  static constexpr int kSyringeMl = 10;
  float liquidSurface_ = kLiquidSurface;
  bool silent_ = false;
  double extraDelayS_ = 0;
  int plunger_ = 0;
  char pumpValve_ = 'I';
  int speed_ = 10;
  std::string held_;
  double pumpBusyUntilS_ = 0;
  int valvePort_ = 1;
  double valveBusyUntilS_ = 0;
  int accepted_ = 0;
  int rejected_ = 0;
};

}  // namespace zorvel::sim
