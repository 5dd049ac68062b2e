// The three programs' command lines behave as GNU programs do, on a machine without a display.

#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>

#include "e2e/run_helpers.h"

#if defined(ZORVEL_EXECUTABLE) && defined(ZORVEL_RUN_EXECUTABLE) && defined(ZORVEL_SIM_EXECUTABLE)

namespace zorvel {
namespace {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

Outcome RunProgram(const char* program, const QStringList& arguments) {
  QProcess process;
  QProcessEnvironment noDisplay = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) noDisplay.remove(name);
  process.setProcessEnvironment(noDisplay);
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(10000)) << program;
  return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
          process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

TEST(CommandLine, HelpVersionAndUnknownOptionsWithoutADisplay) {
  e2e::ensureApplication();
  const std::pair<const char*, std::string> programs[] = {{ZORVEL_EXECUTABLE, "zorvel"},
                                                          {ZORVEL_RUN_EXECUTABLE, "zorvel-run"},
                                                          {ZORVEL_SIM_EXECUTABLE, "zorvel-sim"}};
  for (const auto& [path, name] : programs) {
    const Outcome help = RunProgram(path, {"--help"});
    EXPECT_EQ(help.status, 0) << name << help.err;
    EXPECT_EQ(help.out.rfind("Usage: " + name + " [options]", 0), 0u) << help.out;
    EXPECT_NE(help.out.find("--version"), std::string::npos) << help.out;

    const Outcome version = RunProgram(path, {"--version"});
    EXPECT_EQ(version.status, 0) << name;
    EXPECT_EQ(version.out, name + " " + std::to_string(ZORVEL_VERSION_MAJOR) + "." +
                               std::to_string(ZORVEL_VERSION_MINOR) + "." +
                               std::to_string(ZORVEL_VERSION_PATCH) + "\n");

    const Outcome unknown = RunProgram(path, {"--no-such-option"});
    EXPECT_EQ(unknown.status, 2) << name;
    EXPECT_TRUE(unknown.out.empty()) << unknown.out;
    EXPECT_EQ(unknown.err, name + ": Unknown option 'no-such-option'.\nUsage: " + name +
                               " [options]" + (name == "zorvel" ? " [DIR]" : "") + "\nTry '" +
                               name + " --help' for more information.\n");
  }
}

}  // namespace
}  // namespace zorvel

#endif
