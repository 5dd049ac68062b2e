#include "core/state/file_dialogs.h"

namespace zorvel {

std::string ShowFileDialog(Operator& op, const std::string& initialDirectory,
                           const std::string& extension, FileDialogAction action, int flags,
                           const std::string& title) {
  FileDialogRequest request;
  request.initialDirectory = initialDirectory;
  request.defaultExtension = extension;
  request.filter = "Selected Files (*." + extension + ")|*." + extension + "|All files (*.*)|*.*";
  request.fileName = "*." + extension;
  request.action = action;
  request.flags = flags;
  request.title = title;
  return op.fileDialog(request);
}

namespace file_dialogs {

std::string OpenMethod(Operator& op, const AppState& state) {
  return ShowFileDialog(op, state.MethodsDirectory, "MTH", FileDialogAction::Open, kFileMustExist);
}

std::string AppendDataFile(Operator& op, const AppState& state) {
  return ShowFileDialog(op, state.DataDirectory, "FIX;*.SYN", FileDialogAction::Open,
                        kFileMustExist);
}

std::string SaveDataSet(Operator& op, const AppState& state) {
  return ShowFileDialog(op, state.DataDirectory, state.Method.Fixed ? "FIX" : "SYN",
                        FileDialogAction::SaveAs, kAskBeforeOverwrite, "New Data Set");
}

std::string SaveMethod(Operator& op, const AppState& state) {
  return ShowFileDialog(op, state.MethodsDirectory, "MTH", FileDialogAction::SaveAs,
                        kAskBeforeOverwrite, "Save Method As");
}

std::string ChoosePlateFile(Operator& op, const AppState& state) {
  return ShowFileDialog(op, state.MethodsDirectory, "TGF", FileDialogAction::Open, kFileMustExist);
}

}  // namespace file_dialogs

}  // namespace zorvel
