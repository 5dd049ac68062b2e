#include "core/state/file_dialogs.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "core/text/date_format.h"

namespace zorvel {

bool FileExists(const std::string& path) {
  if (path.empty()) return false;
  // A folder opens for reading on this system, but it is no file to read.
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) return false;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

bool WriteLogEntry(const AppState& state, Clock& clock, const std::string& text) {
  const CalendarTime now = clock.now();
  std::ofstream log(state.LogPath, std::ios::binary | std::ios::app);
  if (!log) return false;
  log << text << '\t' << text::formatDate(now) << '\t' << text::formatTime(now) << "\r\n";
  log.flush();
  return static_cast<bool>(log);
}

std::string ShowFileDialog(Operator& op, const std::string& initialDirectory,
                           const std::string& extension, FileDialogAction action, int flags) {
  FileDialogRequest request;
  request.initialDirectory = initialDirectory;
  request.defaultExtension = extension;
  request.filter = "Selected Files (*." + extension + ")|*." + extension + "|All files (*.*)|*.*";
  request.fileName = "*." + extension;
  request.action = action;
  request.flags = flags;
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
                        FileDialogAction::SaveAs, kAskBeforeOverwrite);
}

std::string ChoosePlateFile(Operator& op, const AppState& state) {
  return ShowFileDialog(op, state.MethodsDirectory, "TGF", FileDialogAction::Open, kFileMustExist);
}

}  // namespace file_dialogs

std::string JoinPath(const std::string& directory, const std::string& name) {
  if (directory.empty()) return name;
  if (directory.back() == '/') return directory + name;
  return directory + "/" + name;
}

}  // namespace zorvel
