#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <iostream>

#include "apps/zorvel-run/commands.h"
#include "core/files/paths.h"
#include "core/method/method_checks.h"
#include "core/method/method_file.h"
#include "core/platform/scripted_operator.h"

namespace zorvel::headless {

namespace {

// A box's lines are separated by CR; on the console each is a line of its own.
std::string consoleText(std::string text) {
  std::replace(text.begin(), text.end(), '\r', '\n');
  return text;
}

// The method as named, or else the one of that name in the start-up directory's METHODS.
std::string methodPath(const Options& options) {
  const QFileInfo named(QString::fromStdString(options.checkMethodPath));
  if (named.exists() || named.isAbsolute() || options.startDirectory.empty())
    return named.absoluteFilePath().toStdString();
  return QDir(QString::fromStdString(options.startDirectory))
      .filePath("METHODS/" + named.filePath())
      .toStdString();
}

}  // namespace

int RunCheckMethodCommand(const Options& options, std::ostream& out) {
  const std::string path = methodPath(options);
  if (!FileExists(path)) {
    out << "File does not exist.\n";
    return 2;
  }
  AppState state;
  // The boxes the method reader would show are kept and printed instead.
  ScriptedOperator boxes;
  if (!ReadMethodFile(state, boxes, path)) {
    for (const MessageBoxRequest& box : boxes.messages()) out << consoleText(box.text) << "\n";
    return 2;
  }
  if (const auto problem = CheckMethodForRun(state.Method, options.firstNumber)) {
    out << *problem << "\n";
    return 1;
  }
  out << "Method is valid.\n";
  return 0;
}

}  // namespace zorvel::headless
