#pragma once

#include <string>
#include <vector>

#include "core/run/run_types.h"

namespace zorvel {

// The order of a run's items and what the operator's decisions do with them: which item is
// due, how it is read, filed and prompted for. The engine owns the machinery the plans share;
// the cuvette plan is one plan, a tray plan joins it as a peer.
class RunPlan {
 public:
  virtual ~RunPlan() = default;

  // The status lines that ask for the first item once the instrument is set up.
  virtual std::vector<std::string> readyPrompt() const = 0;
  // The instrument is set up: the plan's first item is due.
  virtual void instrumentReady() = 0;
  // Read: the item that is due (long; the run is awaiting a read).
  virtual void read() = 0;
  // A decision the open decision offers (long; the run is awaiting a decision).
  virtual void decide(RunAction decision) = 0;
  // Quit: asks whatever quitting now needs; false keeps the run open.
  virtual bool confirmQuit() = 0;

  // The last line of the ready prompt, and the log entry of the lamp being lit.
  virtual std::string readLine() const { return "[R]ead Sample or [Q]uit"; }
  virtual std::string lampOnEntry() const { return "Lamp On"; }
  // The window is closing: the plan lets go of what it holds (may come more than once).
  virtual void closing() {}
};

}  // namespace zorvel
