#pragma once

#include <string>

#include "core/checks/check_area.h"

namespace zorvel {

// Which of the water-cell window's buttons show, and their roles.
struct WaterCellButtons {
  bool start = false;
  bool cancel = false;
  bool rerun = false;
  bool ok = false;
  bool startIsDefault = false;
  bool okIsDefault = false;
  bool okIsCancel = false;  // Escape presses OK, and OK then stores nothing
  bool okCentred = false;   // OK alone, centred horizontally in the window

  friend bool operator==(const WaterCellButtons&, const WaterCellButtons&) = default;
};

// What the water-cell window (WATERFORM, "Watercell") shows. It may be called from the
// instrument worker; the Qt window hands every call to the window thread.
class WaterCellView {
 public:
  virtual ~WaterCellView() = default;

  virtual void printLine(CheckArea area, int line, const std::string& text, bool clearFirst) = 0;
  virtual void clearArea(CheckArea area) = 0;
  virtual void showButtons(const WaterCellButtons& buttons) = 0;
  virtual void setProgressVisible(bool visible) = 0;
  virtual void setProgress(int percent) = 0;
  virtual void close() = 0;
  // The step under way (and at the end how the check ended), set-up steps done of steps, and
  // whether Stop is offered. A view without such a line ignores them.
  virtual void showStep(const std::string& /*text*/) {}
  virtual void showStepProgress(int /*done*/, int /*total*/) {}
  virtual void setStoppable(bool /*stoppable*/) {}
};

}  // namespace zorvel
