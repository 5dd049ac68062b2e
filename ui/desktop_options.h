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

// Parses the arguments; needs no application object. Nothing, with the exit status set, when the
// program ends at once: --help and --version (0) or bad use, said on standard error (2).
std::optional<DesktopOptions> ParseDesktopOptions(const QStringList& arguments, int* exitStatus);

// Where --demo without a folder puts its workspace: ~/zorvel-demo.
std::string DefaultDemoDirectory();

}  // namespace zorvel::ui
