#pragma once

#include <functional>
#include <string>

#include "core/instruments/fluorimeter.h"
#include "core/run/acquisition.h"
#include "core/run/run_services.h"
#include "core/run/run_view.h"

namespace zorvel {

// The run's fluorimeter: the instrument over the run's line, the set-up that Init sends, and
// the acquisition of each reading. Every step shows its title through `status`.
class RunInstrument {
 public:
  RunInstrument(RunServices& services, RunView& view,
                std::function<void(const std::string&)> status);

  // Opens the port and sends the method's set-up: free run, fluorescence, the lamp, the
  // filter, the photomultiplier voltage and the scan speed. False when the link ended.
  bool setUp(const MethodSettings& method);
  Acquisition& acquisition() { return acquisition_; }
  const Acquisition& acquisition() const { return acquisition_; }
  // The link failed for good: the program is ending.
  bool halted() const { return fluorimeter_.halted(); }
  void close();

 private:
  SerialLine& line_;
  Fluorimeter fluorimeter_;
  Acquisition acquisition_;
};

}  // namespace zorvel
