#pragma once

#include <optional>
#include <string>

#include "core/checks/intensity_settings.h"
#include "core/checks/intensity_view.h"
#include "core/instruments/fluorimeter.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"
#include "core/state/app_state.h"

namespace zorvel {

// The rules of the intensity check: single fixed-wavelength readings at settings typed in,
// with the full instrument set-up only when a setting changed since the last one. Nothing is
// stored. The port is open only during a reading.
class IntensityPresenter {
 public:
  IntensityPresenter(AppState& state, Operator& op, Clock& clock, SerialLine& line,
                     IntensityView& view);

  // Every setting back to its initial value; the first reading sends the full set-up.
  void opened();
  // A box's entry, taken when committed; false when refused, the settings kept as they were.
  bool boxChanged(IntensityBox box, const std::string& text);
  void filterClicked(int position);
  // The voltage is taken at the click: "Selected" reads the PMTVoltage box's text then.
  void voltageClicked(int option, const std::string& pmtText);
  // "Read Sample": refuses settings the instrument cannot take (with a message), otherwise
  // takes one reading and shows it. Returns the intensity when one was read.
  std::optional<double> readSample();
  void cancel() { view_.close(); }

  const IntensitySettings& settings() const { return settings_; }

 private:
  LinkFailure setUpInstrument(Fluorimeter& fluorimeter);
  void status(const std::string& text) { view_.printStatus(1, text, true); }

  AppState& state_;
  Operator& op_;
  Clock& clock_;
  SerialLine& line_;
  IntensityView& view_;
  IntensitySettings settings_;
};

}  // namespace zorvel
