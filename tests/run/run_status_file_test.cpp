#include <gtest/gtest.h>

#include "core/run/run_status_file.h"
#include "run/tray_fixture.h"

namespace zorvel {
namespace {

using testing::TrayFixture;
using testing::TrayMethod;

TEST(RunStatusFile, SaysNothingStartedBeforeReadAndEscapesTextAsJson) {
  TrayStatus status;
  status.lastMessage = "Tube \"7\"\tdone \xB5l";
  const std::string json = RunStatusJson(status, {"1.2.3", true, "M.MTH", "D.FIX"});
  EXPECT_NE(std::string::npos, json.find("\"version\": \"1.2.3\",\n  \"simulated\": true,"));
  EXPECT_NE(std::string::npos, json.find("\"state\": \"idle\",\n  \"ended\": null,"));
  EXPECT_NE(std::string::npos, json.find("\"started\": null,\n  \"estimatedEnd\": null,"));
  EXPECT_NE(std::string::npos,
            json.find("\"lastMessage\": \"Tube \\\"7\\\"\\u0009done \xC2\xB5l\"\n}\n"));
}

// The file at every change of a tray run: always whole, through every state to the end.
TEST(RunStatusFile, FollowsATrayRunThroughItsStatesAndKeepsTheEnd) {
  TrayFixture fx(TrayMethod());
  const std::string path = RunStatusPath(fx.state.DataSet);
  std::vector<std::string> states;
  fx.controller->trayStatus().setListener([&](const TrayStatus& now) {
    ASSERT_TRUE(WriteRunStatus(path, RunStatusJson(now, {"1.0.0", true, "T.MTH", "T.FIX"})));
    const std::string json = testing::readFile(path);
    ASSERT_EQ("{\n", json.substr(0, 2));
    ASSERT_EQ("}\n", json.substr(json.size() - 2));
    const std::size_t at = json.find("\"state\": \"") + 10;
    const std::string state = json.substr(at, json.find('"', at) - at);
    if (states.empty() || states.back() != state) states.push_back(state);
  });
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_EQ((std::vector<std::string>{"setting up", "reading", "ended"}), states);
  const std::string last = testing::readFile(path);
  EXPECT_NE(std::string::npos, last.find("\"ended\": \"completed\"")) << last;
  fx.controller->trayStatus().setListener({});
}

}  // namespace
}  // namespace zorvel
