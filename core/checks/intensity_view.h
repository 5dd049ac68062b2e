#pragma once

#include <string>

#include "core/checks/intensity_settings.h"

namespace zorvel {

// What the intensity window (INTENSE, "Intensity Check") shows. It may be called from the
// instrument worker; the Qt window hands every call to the window thread.
class IntensityView {
 public:
  virtual ~IntensityView() = default;

  virtual void showBoxText(IntensityBox box, const std::string& text) = 0;
  virtual void showFilter(int position) = 0;
  virtual void showVoltageOption(int option) = 0;
  virtual void setVoltageBoxVisible(bool visible) = 0;
  // Selects the box's whole text so that typing replaces it.
  virtual void selectBoxText(IntensityBox box) = 0;
  // Status line n, centred; line 1 always clears the area first.
  virtual void printStatus(int line, const std::string& text, bool clearFirst) = 0;
  virtual void clearStatus() = 0;
  virtual void close() = 0;
};

}  // namespace zorvel
