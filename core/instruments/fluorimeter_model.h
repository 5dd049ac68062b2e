#pragma once

#include <span>
#include <string_view>

namespace zorvel {

// A closed range of values an instrument takes.
struct ValueRange {
  double low;
  double high;
  bool holds(double value) const { return value >= low && value <= high; }
};

// What one fluorimeter model is, as far as the program cares: the number and name the
// preferences give it, the reading record it sends and the values it takes. The driver, the
// method's instrument checks, the intensity check and the simulator all read it from here, so
// a model is one record (one file of its own) and the transcript tests of its conversation.
struct FluorimeterModel {
  int preference;         // its number in the preferences file and the setup window
  std::string_view name;  // as the preferences file spells it
  // Fields of a reading record before the intensity: the excitation and emission wavelengths,
  // and any the model adds after them (read and passed over).
  int recordFieldsBeforeIntensity;
  ValueRange excitationNm;
  ValueRange emissionNm;
  ValueRange excitationSlitNm;
  ValueRange emissionSlitNm;
  ValueRange pmtVoltageV;  // -1, the instrument's own default voltage, is taken besides
  ValueRange readTimeS;
  ValueRange scanSpeedNmPerMin;  // either direction: a negative speed scans downwards
};

// The models, one file each.
extern const FluorimeterModel kLs50;
extern const FluorimeterModel kLs50B;

// Every model the program knows, in the order the setup window offers them.
std::span<const FluorimeterModel* const> FluorimeterModels();
// The model the preferences number names; the LS-50B, the default, for a number none has.
const FluorimeterModel& FluorimeterModelFor(int preference);
// The model the preferences file names exactly, or none.
const FluorimeterModel* FluorimeterModelNamed(std::string_view name);
// The model a preferences file's model line selects: the one it names exactly, else the LS-50B.
const FluorimeterModel& FluorimeterModelSelectedBy(std::string_view name);

}  // namespace zorvel
