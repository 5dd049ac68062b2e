#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <optional>

namespace zorvel::ui {

// The command-line manners the three programs share, those of GNU programs: --help and
// --version print to standard output and end with status 0; an unknown option or a missing
// value prints one line saying so and the usage to standard error, and ends with status 2.
// Needs no application object, so it works on a machine without a display.
//
// Adds the help and version options to `parser` and parses `arguments` (the program's name
// first). Returns the exit status when the program should end now; nothing when it goes on.
std::optional<int> ParseCommandLine(QCommandLineParser& parser, const QStringList& arguments);

// argv as Qt strings, for parsing before the application object exists.
QStringList ArgumentList(int argc, char** argv);

// The program's name and version ("zorvel", "0.1.0"), set before anything is parsed.
void NameProgram(const char* name);

}  // namespace zorvel::ui
