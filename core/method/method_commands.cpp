#include "core/method/method_commands.h"

#include "core/files/paths.h"
#include "core/method/method_codes.h"
#include "core/method/method_defaults.h"
#include "core/method/method_file.h"
#include "core/state/file_dialogs.h"

namespace zorvel {

std::string LowerCasedForDisplay(std::string path) {
  for (char& c : path) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return path;
}

std::string UpperCasedForDisplay(std::string path) {
  for (char& c : path) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return path;
}

MethodCommandResult NewMethodFile(AppState& state, Operator& op) {
  MethodCommandResult result;
  // A method saved as "default" is written DEFAULT.MTH or default.MTH by the save dialog; it is
  // the template whatever the case of its name.
  const std::string templatePath =
      FindFileIgnoringCase(state.MethodsDirectory, kTemplateMethodName);
  if (!templatePath.empty()) {
    if (!ReadMethodFile(state, op, templatePath)) return result;
    result.methodPath = templatePath;
  } else {
    SetMethodDefaults(state);
  }
  state.LineEnding = LineEndingFor(state.Method.FileType);
  state.DataSet.MethodFilePath.clear();
  result.methodLoaded = true;
  result.window.methodFileLabel = "None open.";
  result.window.showMethod = true;
  result.window.newDataSet = true;
  result.window.coloursDeclared = false;
  result.window.colourBackupPending = true;
  result.window.firstSampleNumber = 1;
  return result;
}

MethodCommandResult EditMethodFile(AppState& state, Operator& op) {
  MethodCommandResult result;
  const std::string path = file_dialogs::OpenMethod(op, state);
  if (path.empty()) return result;
  if (!FileExists(path)) {
    op.message("File does not exist.", "ZORVEL ERROR", BoxIcon::Exclamation);
    return result;
  }
  if (!ReadMethodFile(state, op, path)) return result;
  state.LineEnding = LineEndingFor(state.Method.FileType);
  state.DataSet.MethodFilePath = path;
  result.methodLoaded = true;
  result.methodPath = path;
  result.window.methodFileLabel = path;  // as it is spelt on disk
  result.window.showMethod = true;
  result.window.newDataSet = false;
  return result;
}

}  // namespace zorvel
