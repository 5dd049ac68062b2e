#include "apps/zorvel-run/commands.h"

namespace zorvel::headless {

// Replaced by the analysis run.
int RunAnalysisCommand(Context& context) {
  return context.fail("analysis runs are not available in this build", 2);
}

}  // namespace zorvel::headless
