#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

inline constexpr const char* kDemoFixedMethod = "demo-fixed.mth";
inline constexpr const char* kDemoFixedSynchMethod = "demo-fixed-synch.mth";
inline constexpr const char* kDemoTrayMethod = "demo-tray.mth";
inline constexpr const char* kDemoTrayGeometry = "tray96.tgf";

// The tray geometry text of the demonstration rack: position 0 the rinse station, then 96 tubes
// in 8 rows of 12 on an 18 mm pitch, numbered row by row. One "X,Y,Number" record a line.
std::string DemoTrayGeometryText();

// Writes the demonstration methods into the methods directory, each through WriteMethodFile:
// fixed wavelengths by cuvette, fixed wavelengths with a synchronous scan by cuvette, and fixed
// wavelengths by autosampler on the 96-tube rack, whose geometry file it writes beside them.
// The current method and tray are not changed. A file that cannot be written is reported in
// an error box; returns whether all were written.
bool WriteDemoMethods(AppState& state, Operator& op, const std::string& methodsDir);

}  // namespace zorvel
