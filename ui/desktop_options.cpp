#include "ui/desktop_options.h"

#include <QCommandLineParser>
#include <QDir>
#include <cstdio>

#include "ui/command_line.h"

namespace zorvel::ui {

std::string DefaultDemoDirectory() {
  return (QDir::homePath() + "/zorvel-demo").toStdString();
}

std::optional<DesktopOptions> ParseDesktopOptions(const QStringList& arguments, int* exitStatus) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "ZORVEL drives the fluorimeter, the autosampler arm and the dilutor, and records every "
      "kept reading in plain-text data files.");
  const QCommandLineOption startDir("start-dir",
                                    "Start-up directory: preferences, logs, DATA, METHODS.", "DIR");
  const QCommandLineOption port("port", "Puts COMn on DEVICE (a serial device or \"sim\").",
                                "COMn=DEVICE");
  const QCommandLineOption simulate("simulate", "Puts every instrument on the simulator.");
  const QCommandLineOption demo(
      "demo",
      "Starts in a demo workspace on simulated instruments (DIR after the options, "
      "default ~/zorvel-demo); made on first use.");
  const QCommandLineOption printTo("print-to", "Prints to a PDF file instead of the printer.",
                                   "FILE.pdf");
  const QCommandLineOption trace("trace", "Writes every byte of every port to DIR.", "DIR");
  const QCommandLineOption noDisclaimer("no-disclaimer", "Skips the disclaimer at start-up.");
  parser.addOptions({startDir, port, simulate, demo, printTo, trace, noDisclaimer});
  parser.addPositionalArgument("DIR", "The demo workspace, with --demo.", "[DIR]");
  if (const auto status = ParseCommandLine(parser, arguments)) {
    *exitStatus = *status;
    return std::nullopt;
  }
  const auto refuse = [&](const char* problem) {
    std::fprintf(stderr, "zorvel: %s\n", problem);
    *exitStatus = 2;
    return std::nullopt;
  };

  DesktopOptions options;
  options.startDirectory = parser.value(startDir).toStdString();
  for (const QString& entry : parser.values(port))
    options.portEntries.push_back(entry.toStdString());
  options.simulate = parser.isSet(simulate);
  options.printTo = parser.value(printTo).toStdString();
  options.traceDirectory = parser.value(trace).toStdString();
  options.showDisclaimer = !parser.isSet(noDisclaimer);
  const QStringList positional = parser.positionalArguments();
  if (parser.isSet(demo)) {
    options.demoDirectory =
        positional.isEmpty() ? DefaultDemoDirectory() : positional.front().toStdString();
  } else if (!positional.isEmpty()) {
    return refuse("a folder is given only after --demo");
  }
  if (options.demoDirectory && !options.startDirectory.empty()) {
    return refuse("--demo and --start-dir name two different start-up directories");
  }
  return options;
}

}  // namespace zorvel::ui
