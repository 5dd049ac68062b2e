#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/run/tray_run_notices.h"

namespace zorvel {
namespace {

struct NoticeList final : Notifier {
  void notify(const std::string& summary, const std::string& body) override {
    told.push_back(summary + " | " + body);
  }
  std::vector<std::string> told;
};

// The first alert and the end are told once a run; a later run on the same window is told
// again. The set is named and the alerts point at the log.
TEST(TrayRunNotices, TellTheFirstAlertAndTheEndOfEachRun) {
  NoticeList desktop;
  TrayRunNotices notices(desktop, "LIVER.FIX");
  RunStatusBoard board;
  board.setListener([&](const RunStatus& now) { notices.seen(now); });

  board.settingUp(16, 12, 3600, {}, "/d/LIVER.LOG");
  board.tubeStarted(5, 1, "Sample", 1);
  board.alert("Tube 5\tS1\tInstrument error\tVALUE OUT OF RANGE");
  board.tubeDone(3660);
  board.tubeStarted(6, 2, "Sample", 2);
  board.alert("Tube 6\tS2\tInstrument error\tVALUE OUT OF RANGE");
  board.abortRequested();
  board.ended(RunEnd::Aborted);
  board.message("Run aborted.");

  board.settingUp(16, 12, 7200, {}, "/d/LIVER.LOG");
  board.tubeStarted(1, 0, "Control", 1);
  board.ended(RunEnd::InstrumentLost);

  EXPECT_EQ(
      (std::vector<std::string>{
          "Tray run alert | LIVER.FIX, tube 5: Tube 5\tS1\tInstrument error\tVALUE OUT OF RANGE "
          "The run goes on; later alerts are only logged, in /d/LIVER.LOG.",
          "Tray run aborted | LIVER.FIX: 1 of 16 tubes read, tube 2 of 12 of the range. 2 alerts "
          "logged in /d/LIVER.LOG.",
          "Tray run stopped by a fault | LIVER.FIX: 0 of 16 tubes read, before the first of the "
          "12 tubes of the range. An instrument stopped answering."}),
      desktop.told);
}

}  // namespace
}  // namespace zorvel
