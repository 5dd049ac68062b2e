#include "core/run/run_instrument.h"

#include <utility>

namespace zorvel {

RunInstrument::RunInstrument(RunServices& services, RunView& view,
                             std::function<void(const std::string&)> status)
    : line_(services.fluorimeterLine),
      link_(line_, services.clock, services.op, services.state.Links,
            services.state.Prefs.Fluorimeter),
      acquisition_(link_, line_, services.state.Method, services.state.Links, view, status) {
  link_.setStatusText(std::move(status));
}

bool RunInstrument::setUp(const MethodSettings& method) {
  if (link_.OpenFluorimeterPort() != LinkFailure::None) return false;
  const std::pair<std::string, std::string> steps[] = {
      {"$RE 0", "Setting-up Instrument...Set Free Run Mode"},
      {"$PH 0", "Setting-up Instrument...Set Fluorescence Mode"},
      {"$ES 0", "Setting-up Instrument...Turn Lamp On"},
      {fluor::FilterCommand(method.FilterSetting), "Setting-up Instrument...Set Filter"},
      {fluor::PmtVoltageCommand(static_cast<int>(method.PMTVoltage)),
       "Setting-up Instrument...Set PMT Voltage"},
      {fluor::ScanSpeedCommand(method.ScanSpeed), "Setting-up Instrument...Set Scan Speed"},
  };
  // Two time-outs anywhere in the set-up end the program: the count is not cleared here.
  for (const auto& [command, title] : steps) {
    if (link_.IssueCommand(command, StatusReader::Command, title) != LinkFailure::None) {
      return false;
    }
  }
  return true;
}

void RunInstrument::close() {
  if (line_.isOpen()) line_.close();
}

}  // namespace zorvel
