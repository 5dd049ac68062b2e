#include "apps/zorvel-run/commands.h"

namespace zorvel::headless {

// Replaced by the instrument checks.
int RunWatercellCommand(Context& context) {
  return context.fail("the water-cell check is not available in this build", 2);
}

int RunIntensityCommand(Context& context) {
  return context.fail("the intensity check is not available in this build", 2);
}

}  // namespace zorvel::headless
