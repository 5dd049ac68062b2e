#include "core/run/tube_cycle.h"

#include <initializer_list>

namespace zorvel {

namespace {

constexpr std::int16_t kRinseStation = 0;
constexpr std::int16_t kHome = -1;
constexpr std::int16_t kAbsolute = 1;
constexpr std::int16_t kRelative = 2;

// Runs the steps in order, stopping at the first that fails.
LinkFailure inOrder(std::initializer_list<std::function<LinkFailure()>> steps,
                    const std::function<void()>& between) {
  for (const auto& step : steps) {
    if (const LinkFailure failed = step(); failed != LinkFailure::None) return failed;
    if (between) between();
  }
  return LinkFailure::None;
}

}  // namespace

TubeCycle::TubeCycle(Arm& arm, Pump& pump, const AutosamplerSettings& settings,
                     std::function<void(const std::string&)> showStatus,
                     std::function<void()> yield)
    : arm_(arm),
      pump_(pump),
      settings_(settings),
      showStatus_(std::move(showStatus)),
      yield_(std::move(yield)) {}

void TubeCycle::status(const char* text) {
  if (showStatus_) showStatus_(text);
}

void TubeCycle::yield() {
  if (yield_) yield_();
}

LinkFailure TubeCycle::RinseAndDry() {
  const std::int16_t rinse = settings_.RinseHeight;
  return inOrder({
                     [&] { return arm_.MoveArmToTube(kRinseStation); },
                     [&] { return arm_.SetArmHeight(rinse); },
                     [&] { return pump_.PumpFlush(); },
                     [&] { return arm_.SetArmHeight(0); },
                     [&] { return arm_.MoveArmToTube(kHome); },
                     [&] { return arm_.SetArmHeight(rinse); },
                     [&] { return pump_.SelectValvePort(1); },
                     [&] { return pump_.PumpAirDry(settings_.AirDryTime); },
                 },
                 yield_);
}

LinkFailure TubeCycle::DrawIntoFlowCell(std::int16_t tube, std::int16_t extractionHeight,
                                        std::int16_t flushHeight, const PumpSteps& steps) {
  status(tube_status::kLocating);
  if (const auto failed = arm_.MoveArmToTube(tube); failed != LinkFailure::None) return failed;
  yield();
  status(tube_status::kExtracting);
  const LinkFailure drawn = inOrder({[&] { return arm_.SetArmHeight(extractionHeight); },
                                     [&] { return pump_.PumpFill(steps.SampleSteps); }},
                                    yield_);
  if (drawn != LinkFailure::None) return drawn;
  status(tube_status::kFlushing);
  const LinkFailure flushed = inOrder({[&] { return arm_.SetArmHeight(flushHeight); },
                                       [&] { return pump_.PumpFill(steps.AirSteps); }},
                                      yield_);
  if (flushed != LinkFailure::None) return flushed;
  status(tube_status::kBackFlushing);
  return pump_.PumpDispense(kRelative, steps.BackFlowSteps);
}

LinkFailure TubeCycle::DisposeSample(Disposition disposition, SampleType type) {
  if (type == SampleType::Sample && disposition == Disposition::Save) {
    // The probe is still in the tube: the syringe empties back into it.
    return inOrder({[&] { return pump_.PumpDispense(kAbsolute, 0); },
                    [&] { return arm_.SetArmHeight(settings_.TubeHeight); }},
                   yield_);
  }
  return inOrder({[&] { return arm_.MoveArmToTube(kRinseStation); },
                  [&] { return arm_.SetArmHeight(settings_.RinseHeight); },
                  [&] { return pump_.PumpDispense(kAbsolute, 0); }},
                 yield_);
}

}  // namespace zorvel
