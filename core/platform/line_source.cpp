#include "core/platform/line_source.h"

namespace zorvel {

std::string_view InstrumentName(InstrumentKind kind) {
  switch (kind) {
    case InstrumentKind::Arm:
      return "arm";
    case InstrumentKind::Pump:
      return "pump";
    case InstrumentKind::Fluorimeter:
      break;
  }
  return "fluorimeter";
}

}  // namespace zorvel
