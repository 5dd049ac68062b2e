#pragma once

#include <cstdint>
#include <deque>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/instruments/fluorimeter_model.h"
#include "sim/bench.h"
#include "sim/dye_model.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {

// The fluorimeter at the far end of a line: it answers every command with its status line,
// sends reading records of either model, status records, synchronous-scan number streams and
// time drives, and takes the time a real one takes (command handling, slit and filter
// changes, monochromator moves by distance, read times, scan speed). Intensities come from
// the dye model for whatever is in the light path of the bench, with seeded noise.
class FluorimeterSim final : public LinePeer {
 public:
  // Deliberate delays of the instrument; the line adds its own character time.
  struct Timing {
    double commandS = 0.02;           // handling of any command before its status
    double slitS = 0.25;              // one slit change
    double filterS = 0.4;             // the filter wheel
    double monochromatorS = 0.05;     // settling after a move
    double slewNmPerS = 1500.0;       // monochromator speed while moving
    double recordAfterReadS = 0.005;  // from the end of a read to its record
  };
  // A timing with no delays at all, so that only the line and the read times remain.
  static Timing InstantTiming() { return Timing{0, 0, 0, 0, 1e12, 0}; }

  // What the instrument is set to.
  struct Settings {
    double excitationNm = 350.0;
    double emissionNm = 397.5;
    double excitationSlitNm = 5.0;
    double emissionSlitNm = 5.0;
    int filter = 7;
    int pmtVolts = 820;
    double scanSpeedNmPerMin = 240.0;
    bool lampOn = true;
    int monochromator = 0;  // 0 excitation, 1 emission, 2 synchronous
    double lowerNm[2] = {200.0, 200.0};
    double upperNm[2] = {800.0, 900.0};
    double timeIntervalS = 0.5;
    double responseTimeS = 0.0;
  };

  // `model` is the preferences' number of the model (FluorimeterModelFor).
  FluorimeterSim(Bench& bench, int model, std::uint32_t seed);

  void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) override;

  const Settings& settings() const { return settings_; }
  void setTiming(const Timing& timing) { timing_ = timing; }
  // Spacing of the points of a synchronous scan on the excitation axis.
  void setScanDataIntervalNm(double intervalNm) { scanIntervalNm_ = intervalNm; }

  // Fault injection.
  void setSilent(bool silent) { silent_ = silent; }
  void silenceNextCommands(int count = 1) { silenceNext_ += count; }
  // The next commands are refused with this status and not carried out.
  void failNextCommands(std::string status, int count = 1);
  // The next commands first answer "0110" and then their real status after holdS.
  void interimBeforeNextCommands(int count = 1, double holdS = 0.5);
  // The next reading records report an excitation this far from where the instrument is.
  void misreportNextReadings(double offsetNm, int count = 1);
  // The next reading records end with this status instead of "0000".
  void failNextRecords(std::string status, int count = 1);
  // Characters sent ahead of every record's DEL.
  void setJunkBeforeRecords(std::string junk) { junk_ = std::move(junk); }
  // Every reply goes out in two halves with this pause between them.
  void setSplitReplies(double gapS) { splitGapS_ = gapS; }
  // A failing lamp gives this fraction of its light.
  void setLampPower(double fraction) { lampPower_ = fraction; }

  // Every command received, without its CR, in order.
  const std::vector<std::string>& commands() const { return commands_; }
  // Sum of the instrument's own delays so far (handling, moves, read times, scan and time
  // drive durations): with the bytes on the wire, the least time a conversation can take.
  double deliberateDelayS() const { return deliberateS_; }

 private:
  struct Reply;
  void handle(const std::string& command, double arrivedS, LineEnd& reply);
  std::string execute(const std::string& name, const std::string& parameter, double& busyS,
                      std::vector<Reply>& after);
  std::string setMonochromators(const std::string& parameter, double& busyS);
  std::string setLimit(bool upper, const std::string& parameter);
  void scheduleReading(double readTimeS, std::vector<Reply>& after);
  void scheduleStatusRecord(std::vector<Reply>& after);
  void scheduleScan(std::vector<Reply>& after);
  void scheduleTimeDrive(int points, std::vector<Reply>& after);
  double measure(double excitationNm, double emissionNm, double readTimeS);
  // The same of a given sample, whatever the light path holds.
  double measureSample(const Sample& sample, double excitationNm, double emissionNm,
                       double readTimeS);
  void send(LineEnd& reply, const std::string& bytes, double atS);

  Bench& bench_;
  const FluorimeterModel& model_;
  std::mt19937 random_;
  Settings settings_;
  Timing timing_;
  std::string pending_;
  double busyUntilS_ = 0.0;
  double scanIntervalNm_ = 0.5;
  // Relative noise of a one-second reading (it falls with the square root of the read time).
  static constexpr double kNoise = 0.004;
  double deliberateS_ = 0.0;
  std::vector<std::string> commands_;

  bool silent_ = false;
  int silenceNext_ = 0;
  std::deque<std::string> failNext_;
  int interimNext_ = 0;
  double interimHoldS_ = 0.5;
  std::deque<double> misreportNext_;
  std::deque<std::string> recordStatusNext_;
  std::string junk_;
  double splitGapS_ = 0.0;
  double lampPower_ = 1.0;
};

}  // namespace zorvel::sim
