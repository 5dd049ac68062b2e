// Feeds arbitrary bytes to the fluorimeter's reply readers as if the instrument had sent them,
// and checks that every reader ends (by a record, a time-out, the halt or the operator giving
// up) without touching memory it does not own.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/instruments/fluorimeter_link.h"
#include "core/platform/virtual_clock.h"
#include "sim/simulated_line.h"

namespace {

using namespace zorvel;

// Sends the whole input once, in answer to the first bytes the program writes.
class OneShotPeer final : public sim::LinePeer {
 public:
  explicit OneShotPeer(std::string_view reply) : reply_(reply) {}
  void onReceive(std::string_view, double arrivedS, sim::LineEnd& end) override {
    if (sent_) return;
    sent_ = true;
    end.transmit(reply_, arrivedS);
  }

 private:
  std::string reply_;
  bool sent_ = false;
};

// Gives up at the first long silence, so that a reader waiting on an exhausted input ends.
class GivingUpOperator final : public Operator {
 public:
  int messageBox(const MessageBoxRequest& box) override {
    return box.buttons == BoxButtons::RetryCancel ? answer::kCancel : answer::kOk;
  }
  std::string inputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  std::string fileDialog(const FileDialogRequest&) override { return {}; }
  void beep() override {}
  void setBusy(bool) override {}
  void endProgram(int) override {}
};

void Exercise(FluorimeterLink& link, int which) {
  switch (which) {
    case 0:
      link.TakeReading(350.0, 397.5, 1.0f, fluor::AcceptanceRule::WithinTolerance);
      break;
    case 1:
      link.TakeReading(350.0, 398.0, 1.0f, fluor::AcceptanceRule::Exact);
      break;
    case 2:
      if (link.IssueCommand("$SC 1", StatusReader::Scan) == LinkFailure::None) {
        link.ReadStatusRecord();
        for (int i = 0; i < 64; ++i) {
          if (link.ReadNumberToken().failure != LinkFailure::None) break;
        }
      }
      break;
    case 3:
      if (link.IssueCommand("$TD 240", StatusReader::Water) == LinkFailure::None) {
        link.ReadTimeDriveHeader();
        for (int i = 0; i < 64; ++i) {
          if (link.ReadNumberToken().failure != LinkFailure::None) break;
        }
      }
      break;
    default:
      link.IssueCommand("$RE 0", StatusReader::Command);
      link.ReadReadingRecord();
      link.ReadToTerminator('\r');
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int which = data[0] % 5;
  const int model = (data[0] / 5) % 2 + 1;
  const std::string_view reply(reinterpret_cast<const char*>(data + 1), size - 1);
  VirtualClock clock;
  OneShotPeer peer(reply);
  sim::SimulatedLine line(clock, peer, "COM1 (fuzz)");
  line.setInputBufferSize(4096);
  line.open("9600,N,8,1");
  GivingUpOperator person;
  LinkState links;
  FluorimeterLink link(line, clock, person, links, model);
  // The input goes out in answer to the first command of the conversation.
  Exercise(link, which);
  return 0;
}
