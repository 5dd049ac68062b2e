#include "core/run/run_instrument.h"

#include <utility>

namespace zorvel {

RunInstrument::RunInstrument(RunServices& services, RunView& view,
                             std::function<void(const std::string&)> status)
    : line_(services.fluorimeterLine),
      fluorimeter_(line_, services.clock, services.op, services.state.Links,
                   services.state.Prefs.Fluorimeter),
      acquisition_(fluorimeter_, line_, services.state.Method, services.state.Links, view, status) {
  fluorimeter_.setStatusText(std::move(status));
}

bool RunInstrument::setUp(const MethodSettings& method) {
  if (fluorimeter_.open() != LinkFailure::None) return false;
  using S = FluorimeterSetting;
  const std::pair<FluorimeterSetting, std::string> steps[] = {
      {S::FreeRun(), "Setting-up Instrument...Set Free Run Mode"},
      {S::Fluorescence(), "Setting-up Instrument...Set Fluorescence Mode"},
      {S::Lamp(), "Setting-up Instrument...Turn Lamp On"},
      {S::Filter(WheelPosition(method.FilterSetting)), "Setting-up Instrument...Set Filter"},
      {S::Voltage(static_cast<int>(method.PMTVoltage)), "Setting-up Instrument...Set PMT Voltage"},
      {S::Speed(method.ScanSpeed), "Setting-up Instrument...Set Scan Speed"},
  };
  // Two time-outs anywhere in the set-up end the program: the count is not cleared here.
  for (const auto& [setting, title] : steps) {
    if (fluorimeter_.set(setting, title) != LinkFailure::None) return false;
  }
  return true;
}

void RunInstrument::close() {
  if (line_.isOpen()) line_.close();
}

}  // namespace zorvel
