#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/method/method_controls.h"
#include "core/state/method_settings.h"

// The whole-method checks that need no window: the range check of the fixed-wavelength table
// and the checks a method must pass before it is saved and run. The editor adds the colour
// window and the save dialog around them; zorvel-run uses them as they are.
namespace zorvel {

// The fixed table's lowest excitation and highest emission, as far as the last range check
// got; a scan of type "Both" must cover them.
struct FixedTableExtremes {
  double LowestFixedExcitation = 1000;
  double HighestFixedEmission = 0;
};

// The four numbers of a fixed pair, as the range check names them.
enum class PairField { ExWl = 1, EmWl = 2, ExSl = 3, EmSl = 4 };

struct WavelengthFault {
  PairField field = PairField::ExWl;
  int row = 0;  // table row, 1..30
};

// Rows 1..No.Colors in order, per row ExWl 200..800, EmWl 200..900, ExSl 2.5..15, EmSl 2.5..20;
// the first value out of range is the fault. The extremes are taken from the rows checked.
std::optional<WavelengthFault> FindWavelengthFault(const MethodSettings& method,
                                                   FixedTableExtremes& extremes);
// "Answer must be between 200 and 800." and its neighbours.
std::string WavelengthFaultMessage(PairField field);

// A failed check: its message, as its box shows it, and the control that gets the focus.
struct MethodProblem {
  std::string message;
  MethodControl focus = MethodControl::Other;
  bool wavelengths = false;  // the fixed table failed its range check
};

inline constexpr const char* kWavelengthDeclarationError =
    "Error in wavelength declarations.  Please correct.";

// The checks from the number of colours to the starting number, in their order; the fixed
// table's range check is asked through `wavelengthsValid` at its place, only for fixed reads.
// Nothing when the method passes.
std::optional<MethodProblem> FirstMethodProblem(const MethodSettings& method, int firstSampleNumber,
                                                const FixedTableExtremes& extremes,
                                                const std::function<bool()>& wavelengthsValid);

// The 16-bit field a method file's key fills (No.Colors, No.Pures, Repetitions and the
// autosampler section's whole numbers); null for any other key.
const std::int16_t* IntegerField(const MethodSettings& method, std::string_view key);
// A whole number of the method file that did not fit its field, named with its key and text,
// while the field still holds the -1 the reader left there.
std::optional<std::string> UnfitNumberProblem(const MethodSettings& method);
// The pures read are one per colour: when the method reads pures, No.Pures must equal
// No.Colors.
std::optional<std::string> PuresProblem(const MethodSettings& method);

// The same over a method as read from its file, after its unfit numbers: the colours count as
// declared and the table's extremes are taken from it first. The wavelength fault's row and range
// follow the message on a second line. The pures are checked last.
std::optional<std::string> CheckMethodForRun(const MethodSettings& method, int firstSampleNumber);

}  // namespace zorvel
