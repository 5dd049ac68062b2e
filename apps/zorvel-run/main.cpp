// zorvel-run: unattended analysis runs and instrument checks, answered from an answer file.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <iostream>

#include "apps/zorvel-run/commands.h"
#include "core/text/number_format.h"
#include "ui/command_line.h"

namespace {

using zorvel::headless::Options;

std::optional<double> numberOption(const QCommandLineParser& parser, const QString& name,
                                   bool* ok) {
  if (!parser.isSet(name)) return std::nullopt;
  const auto value = zorvel::text::parseNumber(parser.value(name).toStdString());
  if (!value) {
    std::cerr << "zorvel-run: --" << name.toStdString() << " needs a number\n";
    *ok = false;
  }
  return value;
}

void describe(QCommandLineParser& parser) {
  parser.setApplicationDescription(
      "Runs a method, the water-cell check or an intensity reading without windows; every "
      "question is answered from the answer file (one answer a line: ok, yes, no, cancel, "
      "retry, text VALUE, and the run's actions init, read, quit, accept, reject, control, "
      "blank, comment TEXT, reset-number N, rerun; # starts a comment).");
  parser.addOptions({
      {"start-dir", "Start-up directory (preferences, logs, DATA, METHODS).", "DIR"},
      {"port", "Puts COMn on DEVICE (a serial device or \"sim\"); may repeat.", "COMn=DEVICE"},
      {"answers", "The answer file.", "FILE"},
      {"print-to", "Printouts go to this PDF file.", "FILE.pdf"},
      {"trace", "Writes every byte of every port to DIR.", "DIR"},
      {"bench",
       "What the simulated bench holds, for ports on \"sim\" (cuvettes in order, "
       "tubes).",
       "FILE"},
      {"method", "The method to run.", "FILE.mth"},
      {"data", "A new data set, named by its .FIX (or .SYN) file.", "NEW.fix"},
      {"append", "An existing data set to append to.", "EXISTING.fix"},
      {"resume",
       "With --append: carries on the set's tray run that did not complete, from the first "
       "tube not done, without asking; with nothing to resume it says so and exits 0."},
      {"first-number", "The first sample number (default 1).", "N"},
      {"autosampler",
       "With --method: primes the pump, checks the rinse or the volumes, or flushes once "
       "(the \"Check Flow Cell\" box is answered from the answer file).",
       "prime|rinse|volumes|test"},
      {"check-method",
       "Checks a method as \"&Save As\" does before a run: prints \"Method is valid.\" (exit 0) "
       "or the first failing check's message (exit 1); a file that cannot be read exits 2.",
       "FILE.mth"},
      {"watercell", "Runs the water-cell check."},
      {"intensity", "Takes one intensity reading."},
      {"ex", "Excitation wavelength, nm.", "N"},
      {"em", "Emission wavelength, nm.", "N"},
      {"exsl", "Excitation slit, nm.", "N"},
      {"emsl", "Emission slit, nm.", "N"},
      {"read-time", "Read time, s.", "S"},
      {"filter", "Filter code.", "N"},
      {"pmt", "PMT voltage, or \"default\".", "V|default"},
  });
}

// The exit status when the program ends at once (help, version, bad use); nothing to go on.
std::optional<int> parse(const QStringList& arguments, Options& options) {
  QCommandLineParser parser;
  describe(parser);
  if (const auto status = zorvel::ui::ParseCommandLine(parser, arguments)) return status;
  options.startDirectory = parser.value("start-dir").toStdString();
  for (const QString& p : parser.values("port")) options.portEntries.push_back(p.toStdString());
  options.answersPath = parser.value("answers").toStdString();
  options.printTo = parser.value("print-to").toStdString();
  options.traceDirectory = parser.value("trace").toStdString();
  options.benchPath = parser.value("bench").toStdString();
  options.methodPath = parser.value("method").toStdString();
  options.newDataPath = parser.value("data").toStdString();
  options.appendDataPath = parser.value("append").toStdString();
  options.resume = parser.isSet("resume");
  options.autosampler = parser.value("autosampler").toStdString();
  options.checkMethodPath = parser.value("check-method").toStdString();
  options.watercell = parser.isSet("watercell");
  options.intensity = parser.isSet("intensity");
  options.pmt = parser.value("pmt").toStdString();
  bool ok = true;
  if (const auto n = numberOption(parser, "first-number", &ok))
    options.firstNumber = static_cast<int>(*n);
  options.exWl = numberOption(parser, "ex", &ok);
  options.emWl = numberOption(parser, "em", &ok);
  options.exSl = numberOption(parser, "exsl", &ok);
  options.emSl = numberOption(parser, "emsl", &ok);
  options.readTimeS = numberOption(parser, "read-time", &ok);
  if (const auto f = numberOption(parser, "filter", &ok)) options.filter = static_cast<int>(*f);
  if (!ok) return 2;
  return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  zorvel::ui::NameProgram("zorvel-run");
  Options options;
  if (const auto status = parse(zorvel::ui::ArgumentList(argc, argv), options)) return *status;
  QCoreApplication app(argc, argv);
  const int modes = (options.watercell ? 1 : 0) + (options.intensity ? 1 : 0) +
                    (options.methodPath.empty() ? 0 : 1) +
                    (options.checkMethodPath.empty() ? 0 : 1);
  if (!options.autosampler.empty() && (options.methodPath.empty() || !options.newDataPath.empty() ||
                                       !options.appendDataPath.empty())) {
    std::cerr << "zorvel-run: --autosampler needs --method and no data set\n";
    return 2;
  }
  if (options.resume && options.appendDataPath.empty()) {
    std::cerr << "zorvel-run: --resume needs --append\n";
    return 2;
  }
  if (modes != 1) {
    std::cerr
        << "zorvel-run: give exactly one of --method, --watercell, --intensity, --check-method\n";
    return 2;
  }
  if (!options.checkMethodPath.empty())
    return zorvel::headless::RunCheckMethodCommand(options, std::cout);
  zorvel::headless::Context context(options);
  if (!zorvel::headless::StartHeadless(context))
    return context.op.ended() ? context.op.exitCode() : 1;
  if (options.watercell) return zorvel::headless::RunWatercellCommand(context, context.lines);
  if (options.intensity) return zorvel::headless::RunIntensityCommand(context, context.lines);
  if (!options.autosampler.empty()) {
    return zorvel::headless::RunAutosamplerCommand(context, context.lines);
  }
  return zorvel::headless::RunAnalysisCommand(context, context.lines);
}
