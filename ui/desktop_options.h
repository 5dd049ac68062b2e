#pragma once

#include <QStringList>
#include <optional>
#include <string>
#include <vector>

namespace zorvel::ui {

// The desktop program's command line.
struct DesktopOptions {
  std::string startDirectory;                // --start-dir, else the current directory
  std::vector<std::string> portEntries;      // --port COMn=DEVICE, in order
  bool simulate = false;                     // --simulate: every port on the simulator
  std::optional<std::string> demoDirectory;  // --demo [DIR]
  std::string printTo;                       // --print-to FILE.pdf
  std::string traceDirectory;                // --trace DIR
  bool showDisclaimer = true;                // --no-disclaimer skips it (unattended starts)
};

// Parses the arguments (QCommandLineParser; --help and --version print and exit). An error
// message is returned in `error` for bad use.
std::optional<DesktopOptions> ParseDesktopOptions(const QStringList& arguments, std::string* error);

// Where --demo without a folder puts its workspace: ~/zorvel-demo.
std::string DefaultDemoDirectory();

}  // namespace zorvel::ui
