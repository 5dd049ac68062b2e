#include <gtest/gtest.h>

#include <memory>

#include "core/run/run_status_file.h"
#include "run/run_fixture.h"
#include "run/tray_fixture.h"

namespace zorvel {
namespace {

using testing::RunFixture;
using testing::ThreeColourMethod;
using testing::TrayFixture;
using testing::TrayMethod;

TEST(RunStatusFile, SaysNothingStartedBeforeReadAndEscapesTextAsJson) {
  RunStatus status;
  status.lastMessage = "Tube \"7\"\tdone \xB5l";
  const std::string json = RunStatusJson(status, {"1.2.3", true, "M.MTH", "D.FIX"});
  EXPECT_NE(std::string::npos, json.find("\"version\": \"1.2.3\",\n  \"simulated\": true,"));
  EXPECT_NE(std::string::npos, json.find("\"state\": \"idle\",\n  \"ended\": null,"));
  EXPECT_NE(std::string::npos, json.find("\"started\": null,\n  \"estimatedEnd\": null,"));
  EXPECT_NE(std::string::npos,
            json.find("\"lastMessage\": \"Tube \\\"7\\\"\\u0009done \xC2\xB5l\"\n}\n"));
}

std::string field(const std::string& json, const std::string& name) {
  const std::size_t at = json.find("\"" + name + "\": ") + name.size() + 4;
  std::string value = json.substr(at, json.find('\n', at) - at);
  if (value.back() == ',') value.pop_back();
  return value;
}

// Writes the file at every change of the board and reads it straight back: it must be whole
// each time. Returns the states it passed through, each once in a row.
std::shared_ptr<std::vector<std::string>> followStates(RunStatusBoard& board,
                                                       const std::string& path) {
  auto states = std::make_shared<std::vector<std::string>>();
  board.setListener([path, states](const RunStatus& now) {
    ASSERT_TRUE(WriteRunStatus(path, RunStatusJson(now, {"1.0.0", true, "T.MTH", "T.FIX"})));
    const std::string json = testing::readFile(path);
    ASSERT_EQ("{\n", json.substr(0, 2));
    ASSERT_EQ("}\n", json.substr(json.size() - 2));
    const std::string state = field(json, "state");
    if (states->empty() || states->back() != state) states->push_back(state);
  });
  return states;
}

TEST(RunStatusFile, FollowsATrayRunThroughItsStatesAndKeepsTheEnd) {
  TrayFixture fx(TrayMethod());
  const std::string path = RunStatusPath(fx.state.DataSet);
  const auto states = followStates(fx.controller->runStatus(), path);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_EQ((std::vector<std::string>{"\"setting up\"", "\"reading\"", "\"ended\""}), *states);
  EXPECT_EQ("\"completed\"", field(testing::readFile(path), "ended"));
  fx.controller->runStatus().setListener({});
}

// A cuvette run waits for the operator between its readings: the file says for what, and which
// reading is on hand.
TEST(RunStatusFile, FollowsACuvetteRunThroughItsWaitsToTheQuit) {
  RunFixture run(ThreeColourMethod(true, false));
  const std::string path = RunStatusPath(run.state.DataSet);
  const auto states = followStates(run.controller->runStatus(), path);
  run.controller->press(RunButton::InitRead);
  run.controller->press(RunButton::InitRead);
  const std::string decision = testing::readFile(path);
  EXPECT_EQ("\"Sample\"", field(decision, "sampleType"));
  EXPECT_EQ("1", field(decision, "sampleNumber"));
  EXPECT_EQ("\"[A]ccept/[R]eject/[C]ontrol/[B]lank\"", field(decision, "lastMessage"));
  EXPECT_NE("null", field(decision, "started"));
  EXPECT_EQ("0", field(decision, "completed"));
  run.controller->press(RunButton::Accept);
  // A reading rejected and given up is decided too, but files nothing: it is not counted.
  run.controller->press(RunButton::InitRead);
  run.op.answerNext(answer::kCancel);
  run.controller->act(RunAction::Reject);
  run.controller->press(RunButton::Quit);
  const std::vector<std::string> reading{"\"awaiting read\"", "\"reading\"",
                                         "\"awaiting decision\""};
  std::vector<std::string> expected{"\"setting up\""};
  for (int i = 0; i < 2; ++i) expected.insert(expected.end(), reading.begin(), reading.end());
  expected.insert(expected.end(), {"\"awaiting read\"", "\"ended\""});
  EXPECT_EQ(expected, *states);
  const std::string end = testing::readFile(path);
  EXPECT_EQ("\"quit\"", field(end, "ended"));
  EXPECT_EQ("1", field(end, "completed"));
  run.controller->runStatus().setListener({});
}

}  // namespace
}  // namespace zorvel
