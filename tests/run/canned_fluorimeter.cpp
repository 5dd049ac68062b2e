#include "run/canned_fluorimeter.h"

#include "core/instruments/fluorimeter_protocol.h"
#include "core/text/number_format.h"

namespace zorvel::testing {

namespace {

constexpr const char* kStatus = "0000\r\n";
constexpr double kReplyDelayS = 0.001;

std::string tenths(double value) {
  return text::fixed(value, 1);
}

}  // namespace

void CannedFluorimeter::onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) {
  pending_ += bytes;
  for (std::size_t cr = pending_.find('\r'); cr != std::string::npos; cr = pending_.find('\r')) {
    const std::string command = pending_.substr(0, cr);
    pending_.erase(0, cr + 1);
    commands.push_back(command);
    handle(command, arrivedS + kReplyDelayS, reply);
  }
}

void CannedFluorimeter::handle(const std::string& command, double atS, sim::LineEnd& reply) {
  const std::string name = command.substr(0, 3);
  const std::string parameter = command.size() > 4 ? command.substr(4) : "";
  std::string answer = kStatus;
  if (name == "$GM") {
    exNm_ = fluor::FieldValue(parameter);
    emNm_ = fluor::FieldValue(parameter.substr(parameter.find(',') + 1));
  } else if (name == "$MX") {
    monochromator_ = static_cast<int>(fluor::FieldValue(parameter));
  } else if (name == "$AL" && monochromator_ == 0) {
    lowerNm_ = fluor::FieldValue(parameter);
  } else if (name == "$AH" && monochromator_ == 0) {
    upperNm_ = fluor::FieldValue(parameter);
  } else if (name == "$RD") {
    ++readsInCuvette;
    const double value = 100.0 * cuvette + readsInCuvette;
    answer += "\x7f" + tenths(exNm_) + "," + tenths(emNm_) + "," + parameter + "," +
              text::fixed(value * 1000.0, 0) + "\r\n" + kStatus;
  } else if (name == "$SC") {
    answer += "\x7f" + tenths(upperNm_) + ",0,5.0,5.0,7,820,240,2,1\r\n" + kStatus;
    int k = 0;
    for (double x = lowerNm_; x <= upperNm_ + 1e-9; x += scanIntervalNm) {
      ++k;
      if (k == noPointBefore) answer += "-9999000,";
      answer += k == lowPointAt ? std::string("-9999,")
                                : text::fixed((10.0 * cuvette + k) * 1000.0, 0) + ",";
    }
  }
  reply.transmit(answer, atS);
}

}  // namespace zorvel::testing
