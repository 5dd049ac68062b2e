// Arbitrary replies from the autosampler arm and the dilutor, in arbitrary slices and at
// arbitrary moments: the conversations must end (the virtual clock makes every wait finite)
// without a crash, whatever the devices say.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/platform/operator.h"
#include "core/platform/virtual_clock.h"
#include "core/state/link_state.h"
#include "core/state/method_settings.h"
#include "core/state/tray_geometry.h"
#include "sim/simulated_line.h"

namespace {

using namespace zorvel;

// Answers every write with the next slice of the input, after a delay the input also chooses
// (up to about four minutes, so the 120-second bound is reached too).
class ReplyFeed final : public sim::LinePeer {
 public:
  explicit ReplyFeed(std::string_view data) : data_(data) {}
  void onReceive(std::string_view, double arrivedS, sim::LineEnd& reply) override {
    if (pos_ + 2 > data_.size()) return;
    const auto length = static_cast<std::size_t>(static_cast<std::uint8_t>(data_[pos_++]) % 24);
    const double delayS = static_cast<std::uint8_t>(data_[pos_++]) * 1.0;
    const std::string_view slice = data_.substr(pos_, length);
    pos_ += slice.size();
    reply.transmit(slice, arrivedS + delayS);
  }

 private:
  std::string_view data_;
  std::size_t pos_ = 0;
};

// Waits again twice, then gives up.
class PatientOperator final : public Operator {
 public:
  int messageBox(const MessageBoxRequest& box) override {
    if (box.buttons != BoxButtons::RetryCancel) return answer::kOk;
    return ++retries_ <= 2 ? answer::kRetry : answer::kCancel;
  }
  std::string inputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  std::string fileDialog(const FileDialogRequest&) override { return {}; }
  void beep() override {}
  void setBusy(bool) override {}
  void endProgram(int) override {}

 private:
  int retries_ = 0;
};

void talkToArm(Clock& clock, SerialLine& line, Operator& person, std::uint8_t choice) {
  LinkState links;
  TrayGeometry tray;
  tray.positions[1] = TrayPosition{150.0f, 87.5f, 1};
  Arm arm(line, clock, person, links, tray);
  (void)arm.MoveArmToTube(static_cast<std::int16_t>(choice % 2));
  (void)arm.SetArmHeight(static_cast<std::int16_t>(choice));
  (void)arm.MoveArmToTube(-1);
}

void talkToPump(Clock& clock, SerialLine& line, Operator& person) {
  LinkState links;
  links.StepsPerMicrolitre = 0.3f;
  AutosamplerSettings settings;
  settings.FlushTime = 250;
  Pump pump(line, clock, person, links, settings);
  (void)pump.InitialisePump();
  (void)pump.PumpFlush();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  VirtualClock clock;
  ReplyFeed feed(input.substr(1));
  sim::SimulatedLine line(clock, feed, "COM9 (fuzz)");
  PatientOperator person;
  const auto choice = static_cast<std::uint8_t>(input[0]);
  if (choice & 1) {
    talkToArm(clock, line, person, choice);
  } else {
    talkToPump(clock, line, person);
  }
  return 0;
}
