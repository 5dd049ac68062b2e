#pragma once

#include "apps/zorvel-run/headless_context.h"

// The commands of zorvel-run. Each returns the program's exit code: 0 when it completed, and
// non-zero with a message on the error stream when the answer file ran out, an answer did not
// fit the question, or anything failed.
namespace zorvel::headless {

// Each takes its instruments' lines from `lines`.
// --method with --data or --append: an analysis run answered from the answer file.
int RunAnalysisCommand(Context& context, LineSource& lines);
// --watercell: the water-cell check; 0 within range, 3 outside.
int RunWatercellCommand(Context& context, LineSource& lines);
// --intensity: one intensity reading printed as "0.000".
int RunIntensityCommand(Context& context, LineSource& lines);
// --method with --autosampler prime|rinse|volumes|test: one of the autosampler window's
// maintenance sequences on the arm and dilutor of the preferences.
int RunAutosamplerCommand(Context& context, LineSource& lines);
// --check-method: the whole-method checks over a method file, without instruments or answers;
// 0 valid, 1 a check failed (its message printed), 2 the file cannot be read.
int RunCheckMethodCommand(const Options& options, std::ostream& out);

}  // namespace zorvel::headless
