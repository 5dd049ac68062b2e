#include "core/checks/intensity_presenter.h"

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "fake_check_views.h"
#include "sim/scripted_peer.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

constexpr const char* kOk = "0000\r\n";

// A reading's status and record as an LS-50B sends them.
std::string Record(const std::string& ex, const std::string& em, const std::string& raw) {
  return std::string(kOk) + "\x7f" + ex + "," + em + ",1.0," + raw + "\r\n0000\r\n";
}

class IntensityTest : public ::testing::Test {
 protected:
  IntensityTest() { presenter.opened(); }
  void acceptSetUp() {
    for (int k = 0; k < 9; ++k) peer.on("\r", kOk);
  }
  std::vector<std::string> texts() const {
    std::vector<std::string> out;
    for (const auto& box : op.messages()) out.push_back(box.text);
    return out;
  }

  AppState state;
  VirtualClock clock;
  sim::ScriptedPeer peer;
  sim::SimulatedLine line{clock, peer};
  ScriptedOperator op;
  testing::FakeIntensityView view;
  IntensityPresenter presenter{state, op, clock, line, view};
};

TEST_F(IntensityTest, FirstReadingSetsUpInFullTheNextOnlyReads) {
  EXPECT_EQ("397.5", view.boxes[IntensityBox::EmWl]);
  EXPECT_EQ(2, view.filter);
  EXPECT_EQ(kVoltageSelected, view.voltageOption);
  acceptSetUp();
  peer.on("$RD 1.0\r", Record("350.0", "397.5", "999"));  // not at 398: read again
  peer.on("$RD 1.0\r", Record("350.0", "398.0", "123456"));
  EXPECT_DOUBLE_EQ(123.456, *presenter.readSample());
  EXPECT_SAME_BYTES(
      "$RE 0\r$PH 0\r$ES 0\r$FW 2\r$PV 820\r$SS 480\r$SX 5.0\r$SM 5.0\r$GM 350.0,398.0\r"
      "$RD 1.0\r$RD 1.0\r",
      peer.sent);
  EXPECT_EQ("123.456", view.lines.at(CheckArea::Status, 1));
  EXPECT_FALSE(line.isOpen());
  EXPECT_FALSE(presenter.settings().settingsChanged || presenter.settings().filterChanged);

  peer.sent.clear();
  peer.on("$RD 1.0\r", Record("350.0", "398.0", "5"));
  EXPECT_DOUBLE_EQ(0.005, *presenter.readSample());
  EXPECT_SAME_BYTES("$RD 1.0\r", peer.sent);
  EXPECT_EQ("0.005", view.lines.at(CheckArea::Status, 1));
  EXPECT_FALSE(line.isOpen());
  EXPECT_TRUE(op.shown.empty());
}

TEST_F(IntensityTest, DefaultVoltageFilterAndBoxChangesGoOutWithTheNextSetUp) {
  presenter.voltageClicked(kVoltageDefault, "820");
  EXPECT_FALSE(view.voltageBoxVisible);
  presenter.filterClicked(7);
  presenter.boxChanged(IntensityBox::ExWl, "275.5");
  presenter.boxChanged(IntensityBox::EmSl, "10");
  presenter.boxChanged(IntensityBox::RdTime, "0.5");
  acceptSetUp();
  peer.on("$RD 0.5\r", Record("276.0", "398.0", "1000"));
  ASSERT_TRUE(presenter.readSample());
  EXPECT_SAME_BYTES(
      "$RE 0\r$PH 0\r$ES 0\r$FW 7\r$PV -1\r$SS 480\r$SX 5.0\r$SM 10.0\r$GM 276.0,398.0\r$RD 0.5\r",
      peer.sent);
  // "Selected" takes the box's text at the click.
  presenter.voltageClicked(kVoltageSelected, "650");
  EXPECT_TRUE(view.voltageBoxVisible);
  EXPECT_EQ(650, presenter.settings().pmtVolts);
  EXPECT_TRUE(presenter.settings().settingsChanged);
}

TEST_F(IntensityTest, BoxRulesRefuseNonNumbersAndEmptyBoxesRefuseTheReading) {
  // A refused entry keeps the setting in force; an empty wavelength box is taken as no value.
  EXPECT_FALSE(presenter.boxChanged(IntensityBox::ExWl, "abc"));
  EXPECT_TRUE(presenter.boxChanged(IntensityBox::EmWl, ""));
  EXPECT_FALSE(presenter.boxChanged(IntensityBox::RdTime, ""));
  EXPECT_EQ((std::vector<std::string>{"Non-numeric entry.  Please try again.",
                                      "Answer must be numeric.  Please try again."}),
            texts());
  EXPECT_EQ("ZORVEL ERROR", op.messages()[0].title);
  EXPECT_EQ((std::vector<IntensityBox>{IntensityBox::ExWl, IntensityBox::RdTime}), view.selected);
  EXPECT_EQ(350, presenter.settings().excitationNm);
  EXPECT_EQ(-1, presenter.settings().emissionNm);
  EXPECT_EQ(1.0f, presenter.settings().readTimeS);

  EXPECT_FALSE(presenter.readSample());
  EXPECT_EQ(
      "The emission wavelength must be from 200 to 900 nm.  Please correct it before "
      "reading.",
      op.messages().back().text);
  EXPECT_EQ(IntensityBox::EmWl, view.selected.back());
  presenter.boxChanged(IntensityBox::EmWl, "397.5");
  EXPECT_EQ(398, presenter.settings().emissionNm);
  EXPECT_TRUE(peer.sent.empty());
  EXPECT_FALSE(line.isOpen());
}

TEST(IntensitySettings, RangesRefuseWhatTheInstrumentWouldReject) {
  const auto refusedBox = [](auto change) {
    IntensitySettings s;
    change(s);
    const auto refusal = RefuseReading(s, kLs50B);
    return refusal ? static_cast<int>(refusal->box) : -1;
  };
  EXPECT_EQ(-1, refusedBox([](IntensitySettings&) {}));
  EXPECT_EQ(-1, refusedBox([](IntensitySettings& s) { s.pmtVolts = -1, s.voltageOption = 1; }));
  EXPECT_EQ(static_cast<int>(IntensityBox::EmWl),
            refusedBox([](IntensitySettings& s) { s.emissionNm = 901; }));
  EXPECT_EQ(static_cast<int>(IntensityBox::ExSl),
            refusedBox([](IntensitySettings& s) { s.excitationSlitNm = 2.4f; }));
  EXPECT_EQ(-1, refusedBox([](IntensitySettings& s) { s.scanSpeed = -240; }));  // downwards
  EXPECT_EQ(static_cast<int>(IntensityBox::ScnSpd),
            refusedBox([](IntensitySettings& s) { s.scanSpeed = -5; }));
  EXPECT_EQ(static_cast<int>(IntensityBox::PMTVoltage),
            refusedBox([](IntensitySettings& s) { s.pmtVolts = SelectedVoltage("abc"); }));
  IntensitySettings s;
  // A slit keeps its tenths, so a typed 2.5 is taken and sent as typed.
  EXPECT_FALSE(ApplyBoxText(s, IntensityBox::ExSl, "2.5").message);
  EXPECT_FALSE(RefuseReading(s, kLs50B));
  EXPECT_EQ("$SX 2.5", SettingCommand(IntensitySetUpSteps(s)[6].setting));
  EXPECT_TRUE(ApplyBoxText(s, IntensityBox::ExWl, "99999").message);  // beyond 16 bits
  // Each refusal states the range it checks.
  s = {};
  s.scanSpeed = 5;
  EXPECT_EQ("The scan speed must be from -1500 to -10 or from 10 to 1500 nm/min.",
            RefuseReading(s, kLs50B)->message);
  s = {};
  s.emissionSlitNm = 2.4f;
  EXPECT_EQ("The emission slit must be from 2.5 to 20 nm.", RefuseReading(s, kLs50B)->message);
}

}  // namespace
}  // namespace zorvel
