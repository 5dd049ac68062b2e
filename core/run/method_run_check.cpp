#include "core/run/method_run_check.h"

#include "core/autosampler/autosampler_check.h"
#include "core/method/instrument_ranges.h"
#include "core/method/method_checks.h"

namespace zorvel {

std::vector<std::string> MethodRunProblems(const MethodSettings& method,
                                           const FluorimeterModel& model, int firstSampleNumber,
                                           std::int16_t tubeCount) {
  if (auto problem = CheckMethodForRun(method, firstSampleNumber)) return {*problem};
  if (auto problem = InstrumentRangeProblem(method, model)) return {*problem};
  if (method.DeliveryMethod != Delivery::Autosampler) return {};
  return AutosamplerRunFaults(method.Autosampler, tubeCount);
}

}  // namespace zorvel
