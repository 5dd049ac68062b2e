#include "ui/command_line.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <cstdio>

namespace zorvel::ui {

namespace {

void print(std::FILE* stream, const QString& text) {
  std::fputs(text.toLocal8Bit().constData(), stream);
}

// Named as the user knows the program, not by the path it was started from. Made only when it
// is shown: composing it and its regular expression took a quarter of a millisecond of every
// start.
QString helpText(const QCommandLineParser& parser, const QString& name) {
  return parser.helpText().replace(QRegularExpression("^Usage: \\S+"), "Usage: " + name);
}

}  // namespace

std::optional<int> ParseCommandLine(QCommandLineParser& parser, const QStringList& arguments) {
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  const QString name = QCoreApplication::applicationName();
  if (!parser.parse(arguments)) {
    const QString usage = helpText(parser, name).section('\n', 0, 0);
    print(stderr, name + ": " + parser.errorText() + "\n" + usage + "\nTry '" + name +
                      " --help' for more information.\n");
    return 2;
  }
  if (parser.isSet(help) || parser.isSet("help-all")) {
    print(stdout, helpText(parser, name));
    return 0;
  }
  if (parser.isSet(version)) {
    print(stdout, name + " " + QCoreApplication::applicationVersion() + "\n");
    return 0;
  }
  return std::nullopt;
}

QStringList ArgumentList(int argc, char** argv) {
  QStringList list;
  for (int i = 0; i < argc; ++i) list << QString::fromLocal8Bit(argv[i]);
  return list;
}

void NameProgram(const char* name) {
  QCoreApplication::setApplicationName(name);
  QCoreApplication::setApplicationVersion(QString("%1.%2.%3")
                                              .arg(ZORVEL_VERSION_MAJOR)
                                              .arg(ZORVEL_VERSION_MINOR)
                                              .arg(ZORVEL_VERSION_PATCH));
}

}  // namespace zorvel::ui
