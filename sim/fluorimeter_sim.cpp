#include "sim/fluorimeter_sim.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/instruments/fluorimeter_model.h"
#include "core/text/number_format.h"

namespace zorvel::sim {

namespace {

constexpr char kDelete = '\x7f';
constexpr const char* kAccepted = "0000";
constexpr const char* kInvalidParameter = "0003";
constexpr const char* kIllegalCharacter = "0006";
constexpr const char* kOutOfRange = "0009";
constexpr const char* kUnrecognised = "0002";

std::optional<double> Number(const std::string& text) {
  return text::parseNumber(text);
}

bool Between(double value, double low, double high) {
  return value >= low && value <= high;
}

std::string Tenths(double value) {
  return text::fixed(value, 1);
}

}  // namespace

struct FluorimeterSim::Reply {
  std::string bytes;
  double offsetS;  // after the status line starts
};

FluorimeterSim::FluorimeterSim(Bench& bench, int model, std::uint32_t seed)
    : bench_(bench), model_(FluorimeterModelFor(model)), random_(seed) {}

void FluorimeterSim::failNextCommands(std::string status, int count) {
  for (int i = 0; i < count; ++i) failNext_.push_back(status);
}

void FluorimeterSim::interimBeforeNextCommands(int count, double holdS) {
  interimNext_ += count;
  interimHoldS_ = holdS;
}

void FluorimeterSim::misreportNextReadings(double offsetNm, int count) {
  for (int i = 0; i < count; ++i) misreportNext_.push_back(offsetNm);
}

void FluorimeterSim::failNextRecords(std::string status, int count) {
  for (int i = 0; i < count; ++i) recordStatusNext_.push_back(status);
}

void FluorimeterSim::onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) {
  pending_.append(bytes);
  for (std::size_t at = pending_.find('\r'); at != std::string::npos; at = pending_.find('\r')) {
    std::string command = pending_.substr(0, at);
    pending_.erase(0, at + 1);
    command.erase(std::remove(command.begin(), command.end(), '\n'), command.end());
    handle(command, arrivedS, reply);
  }
}

void FluorimeterSim::handle(const std::string& command, double arrivedS, LineEnd& reply) {
  commands_.push_back(command);
  if (silent_) return;
  if (silenceNext_ > 0) {
    --silenceNext_;
    return;
  }
  const double startS = std::max(arrivedS, busyUntilS_);
  double busyS = timing_.commandS;
  std::vector<Reply> after;
  std::string status;
  if (!failNext_.empty()) {
    status = failNext_.front();
    failNext_.pop_front();
  } else if (command.size() < 3 || command[0] != '$') {
    status = kIllegalCharacter;
  } else {
    const std::string name = command.substr(0, 3);
    const std::string parameter = command.size() > 4 ? command.substr(4) : std::string();
    status = execute(name, parameter, busyS, after);
  }
  double statusAtS = startS + busyS;
  if (interimNext_ > 0) {
    --interimNext_;
    send(reply, "0110\r\n", startS + timing_.commandS);
    statusAtS = std::max(statusAtS, startS + timing_.commandS + interimHoldS_);
  }
  send(reply, status + "\r\n", statusAtS);
  double lastS = 0.0;
  for (const Reply& r : after) {
    send(reply, r.bytes, statusAtS + r.offsetS);
    lastS = std::max(lastS, r.offsetS);
  }
  deliberateS_ += (statusAtS - startS) + lastS;
  busyUntilS_ = statusAtS + lastS;
}

std::string FluorimeterSim::execute(const std::string& name, const std::string& parameter,
                                    double& busyS, std::vector<Reply>& after) {
  const std::optional<double> value = Number(parameter);
  if (name == "$RE" || name == "$PH" || name == "$MQ") return kAccepted;
  if (name == "$ES") {
    settings_.lampOn = true;
    return kAccepted;
  }
  if (name == "$GM") return setMonochromators(parameter, busyS);
  if (name == "$AL" || name == "$AH") return setLimit(name == "$AH", parameter);
  if (name == "$SC") {
    scheduleStatusRecord(after);
    if (settings_.monochromator == 2) scheduleScan(after);
    return kAccepted;
  }
  const bool known = name == "$FW" || name == "$PV" || name == "$SS" || name == "$SX" ||
                     name == "$SM" || name == "$RD" || name == "$MX" || name == "$TI" ||
                     name == "$RT" || name == "$TD";
  if (!known) return kUnrecognised;
  if (!value) return kInvalidParameter;
  const double v = *value;
  if (name == "$FW") {
    const int position = static_cast<int>(v);
    if (position != v || position < 1 || position > 8 || position == 6) return kInvalidParameter;
    if (position != settings_.filter) busyS += timing_.filterS;
    settings_.filter = position;
  } else if (name == "$PV") {
    if (v != -1 && !model_.pmtVoltageV.holds(v)) return kOutOfRange;
    settings_.pmtVolts = static_cast<int>(v);
  } else if (name == "$SS") {
    if (!model_.scanSpeedNmPerMin.holds(std::fabs(v))) return kOutOfRange;
    settings_.scanSpeedNmPerMin = v;
  } else if (name == "$SX" || name == "$SM") {
    double& slit = name == "$SX" ? settings_.excitationSlitNm : settings_.emissionSlitNm;
    if (!(name == "$SX" ? model_.excitationSlitNm : model_.emissionSlitNm).holds(v)) {
      return kOutOfRange;
    }
    if (v != slit) busyS += timing_.slitS;
    slit = v;
  } else if (name == "$RD") {
    if (!model_.readTimeS.holds(v)) return kOutOfRange;
    scheduleReading(v, after);
  } else if (name == "$MX") {
    if (v != 0 && v != 1 && v != 2) return kInvalidParameter;
    settings_.monochromator = static_cast<int>(v);
  } else if (name == "$TI") {
    if (!Between(v, 0.01, 1000)) return kOutOfRange;
    settings_.timeIntervalS = v;
  } else if (name == "$RT") {
    if (!Between(v, 0, 10)) return kOutOfRange;
    settings_.responseTimeS = v;
  } else if (name == "$TD") {
    if (!Between(v, 1, 10000) || std::floor(v) != v) return kOutOfRange;
    scheduleTimeDrive(static_cast<int>(v), after);
  }
  return kAccepted;
}

std::string FluorimeterSim::setMonochromators(const std::string& parameter, double& busyS) {
  const std::size_t comma = parameter.find(',');
  if (comma == std::string::npos) return kInvalidParameter;
  const auto ex = Number(parameter.substr(0, comma));
  const auto em = Number(parameter.substr(comma + 1));
  if (!ex || !em) return kInvalidParameter;
  if (!Between(*ex, settings_.lowerNm[0], settings_.upperNm[0]) ||
      !Between(*em, settings_.lowerNm[1], settings_.upperNm[1])) {
    return kOutOfRange;
  }
  const double distanceNm =
      std::max(std::fabs(*ex - settings_.excitationNm), std::fabs(*em - settings_.emissionNm));
  if (distanceNm > 0) busyS += timing_.monochromatorS + distanceNm / timing_.slewNmPerS;
  settings_.excitationNm = *ex;
  settings_.emissionNm = *em;
  return kAccepted;
}

std::string FluorimeterSim::setLimit(bool upper, const std::string& parameter) {
  const auto v = Number(parameter);
  if (!v) return kInvalidParameter;
  const double lowest = std::min(model_.excitationNm.low, model_.emissionNm.low);
  const double highest = std::max(model_.excitationNm.high, model_.emissionNm.high);
  if (!Between(*v, lowest, highest)) return kOutOfRange;
  const int side = settings_.monochromator == 1 ? 1 : 0;
  (upper ? settings_.upperNm : settings_.lowerNm)[side] = *v;
  return kAccepted;
}

void FluorimeterSim::scheduleReading(double readTimeS, std::vector<Reply>& after) {
  double reportedEx = settings_.excitationNm;
  if (!misreportNext_.empty()) {
    reportedEx += misreportNext_.front();
    misreportNext_.pop_front();
  }
  std::string status = kAccepted;
  if (!recordStatusNext_.empty()) {
    status = recordStatusNext_.front();
    recordStatusNext_.pop_front();
  }
  const double intensity = measure(settings_.excitationNm, settings_.emissionNm, readTimeS);
  std::string record =
      junk_ + kDelete + Tenths(reportedEx) + "," + Tenths(settings_.emissionNm) + ",";
  // Fields the model adds after the wavelengths: the LS-50B reports the read time.
  for (int f = 2; f < model_.recordFieldsBeforeIntensity; ++f) record += Tenths(readTimeS) + ",";
  record += text::fixed(intensity * 1000.0, 0) + "\r\n" + status + "\r\n";
  after.push_back({record, readTimeS + timing_.recordAfterReadS});
}

void FluorimeterSim::scheduleStatusRecord(std::vector<Reply>& after) {
  const Settings& s = settings_;
  const std::string record = junk_ + kDelete + Tenths(s.excitationNm) + "," + Tenths(s.emissionNm) +
                             "," + Tenths(s.excitationSlitNm) + "," + Tenths(s.emissionSlitNm) +
                             "," + text::plain(s.filter) + "," + text::plain(s.pmtVolts) + "," +
                             text::plain(s.scanSpeedNmPerMin) + "," + text::plain(s.monochromator) +
                             "," + (s.lampOn ? "1" : "0") + "\r\n" + kAccepted + "\r\n";
  after.push_back({record, 0.0});
}

void FluorimeterSim::scheduleScan(std::vector<Reply>& after) {
  const double lowerNm = settings_.lowerNm[0];
  const double upperNm = settings_.upperNm[0];
  const double offsetNm = settings_.lowerNm[1] - settings_.lowerNm[0];
  const double nmPerS = std::max(std::fabs(settings_.scanSpeedNmPerMin) / 60.0, 1e-6);
  const double intervalNm = std::max(scanIntervalNm_, 1e-3);
  const int points = static_cast<int>(std::floor((upperNm - lowerNm) / intervalNm + 1e-9)) + 1;
  // The points follow the status record, which takes about 60 characters on the line.
  const double firstS = 60 * SimulatedLine::kCharacterTimeS;
  for (int k = 0; k < points; ++k) {
    const double x = lowerNm + k * intervalNm;
    const double value = measure(x, x + offsetNm, intervalNm / nmPerS);
    after.push_back({text::fixed(value * 1000.0, 0) + ",", firstS + k * intervalNm / nmPerS});
  }
  settings_.excitationNm = upperNm;
  settings_.emissionNm = upperNm + offsetNm;
}

void FluorimeterSim::scheduleTimeDrive(int points, std::vector<Reply>& after) {
  const Settings& s = settings_;
  const std::string header = std::string(1, kDelete) + "V3.1,1," + Tenths(s.excitationNm) + "," +
                             Tenths(s.emissionNm) + "," + text::plain(s.scanSpeedNmPerMin) + "." +
                             text::plain(s.responseTimeS) + "," + Tenths(s.excitationSlitNm) + "," +
                             Tenths(s.emissionSlitNm) + "," + text::plain(points) + "," +
                             text::fixed(s.timeIntervalS, 2) + "\r\n" + kAccepted;
  after.push_back({header, 0.0});
  Sample waterCell;
  waterCell.label = "water cell";
  for (int k = 1; k <= points; ++k) {
    const double value =
        bench_.waterCellPlaced
            ? measureSample(waterCell, s.excitationNm, s.emissionNm, s.timeIntervalS)
            : measure(s.excitationNm, s.emissionNm, s.timeIntervalS);
    after.push_back({text::fixed(value * 1000.0, 0) + ",", k * s.timeIntervalS});
  }
}

double FluorimeterSim::measure(double excitationNm, double emissionNm, double readTimeS) {
  const bool empty = bench_.readFromFlowCell ? !bench_.flowCellFilled : !bench_.cuvetteInHolder;
  // Nothing in the light path reads as dark: a sample with no solvent and no dye.
  Sample dark;
  dark.water = false;
  return measureSample(empty ? dark : bench_.inLightPath(), excitationNm, emissionNm, readTimeS);
}

double FluorimeterSim::measureSample(const Sample& sample, double excitationNm, double emissionNm,
                                     double readTimeS) {
  Optics optics;
  optics.excitationNm = excitationNm;
  optics.emissionNm = emissionNm;
  optics.excitationSlitNm = settings_.excitationSlitNm;
  optics.emissionSlitNm = settings_.emissionSlitNm;
  optics.filter = settings_.filter;
  optics.pmtVolts = settings_.pmtVolts;
  optics.lampPower = settings_.lampOn ? lampPower_ : 0.0;
  const double ideal = ModelIntensity(sample, optics);
  std::normal_distribution<double> unit(0.0, 1.0);
  const double spread = kNoise / std::sqrt(std::max(readTimeS, 0.01));
  return ideal * (1.0 + spread * unit(random_)) + 0.01 * unit(random_);
}

void FluorimeterSim::send(LineEnd& reply, const std::string& bytes, double atS) {
  if (splitGapS_ <= 0 || bytes.size() < 2) {
    reply.transmit(bytes, atS);
    return;
  }
  const std::size_t half = bytes.size() / 2;
  reply.transmit(std::string_view(bytes).substr(0, half), atS);
  reply.transmit(std::string_view(bytes).substr(half),
                 atS + static_cast<double>(half) * SimulatedLine::kCharacterTimeS + splitGapS_);
}

}  // namespace zorvel::sim
