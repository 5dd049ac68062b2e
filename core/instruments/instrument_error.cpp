#include "core/instruments/instrument_error.h"

#include <array>
#include <utility>

namespace zorvel {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kErrorTable{{
    {"0002", "UNRECOGNIZED COMMAND"},
    {"0003", "INVALID PARAMETER"},
    {"0006", "ILLEGAL CHARACTER"},
    {"0009", "VALUE OUT OF RANGE"},
    {"0013", "ORDINATE OVERFLOW"},
    {"0023", "OUTPUT BUFFER OVERFLOW"},
}};

}  // namespace

LinkOutcome OutcomeOf(LinkFailure failure) {
  switch (failure) {
    case LinkFailure::None:
      return LinkOutcome::Continue;
    case LinkFailure::ReplyTimeout:
    case LinkFailure::ReadTimeout:
    case LinkFailure::Mismatch:
    case LinkFailure::DeviceFault:
      return LinkOutcome::Resend;
    case LinkFailure::LostPort:
    case LinkFailure::Abandoned:
    case LinkFailure::Halted:
      return LinkOutcome::Stop;
  }
  return LinkOutcome::Stop;
}

std::string_view DescribeFailure(LinkFailure failure) {
  switch (failure) {
    case LinkFailure::None:
      return "none";
    case LinkFailure::ReplyTimeout:
      return "reply time-out";
    case LinkFailure::ReadTimeout:
      return "record time-out";
    case LinkFailure::Mismatch:
      return "wavelength mismatch";
    case LinkFailure::DeviceFault:
      return "instrument error status";
    case LinkFailure::LostPort:
      return "port lost";
    case LinkFailure::Abandoned:
      return "abandoned by the operator";
    case LinkFailure::Halted:
      return "program halted";
  }
  return "unknown";
}

std::optional<std::string> InstrumentErrorMessage(std::string_view status, bool waterCell) {
  if (status == "0002" && !waterCell) return std::nullopt;
  for (const auto& [code, message] : kErrorTable) {
    if (code == status) return std::string(message);
  }
  return std::nullopt;
}

void ShowInstrumentError(Operator& person, std::string_view status, bool waterCell) {
  if (auto message = InstrumentErrorMessage(status, waterCell)) {
    person.message(*message, kLs50ErrorTitle, BoxIcon::Exclamation, BoxButtons::Ok);
  }
}

}  // namespace zorvel
