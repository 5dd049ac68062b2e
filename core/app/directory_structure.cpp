#include "core/app/directory_structure.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "core/files/paths.h"

namespace zorvel {

namespace fs = std::filesystem;

namespace {

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

bool makeDirectory(const std::string& path, Operator& op) {
  std::error_code ec;
  fs::create_directories(path, ec);
  if (!ec) return true;
  op.message("The folder " + path + " could not be created: " + ec.message() + ".", "ZORVEL ERROR",
             BoxIcon::Exclamation);
  return false;
}

}  // namespace

Subdirectories FindSubdirectories(const std::string& base) {
  Subdirectories found;
  std::error_code ec;
  for (fs::directory_iterator it(base.empty() ? "." : base, ec), end; !ec && it != end;
       it.increment(ec)) {
    std::error_code typeError;
    if (!it->is_directory(typeError)) continue;
    const std::string name = it->path().filename().string();
    const std::string upperName = upper(name);
    if (upperName == "DATA" && !found.dataExists) {
      found.dataPath = JoinPath(base, name);
      found.dataExists = true;
    } else if (upperName == "METHODS" && !found.methodsExists) {
      found.methodsPath = JoinPath(base, name);
      found.methodsExists = true;
    }
  }
  if (!found.dataExists) found.dataPath = JoinPath(base, "DATA");
  if (!found.methodsExists) found.methodsPath = JoinPath(base, "METHODS");
  return found;
}

void SetSubdirectoryPaths(AppState& state, const Subdirectories& found) {
  state.DataDirectory = found.dataPath;
  state.MethodsDirectory = found.methodsPath;
}

bool CheckDirectoryStructure(AppState& state, Operator& op) {
  state.BaseDirectoryPath = state.StartDirectory;
  const Subdirectories found = FindSubdirectories(state.BaseDirectoryPath);
  SetSubdirectoryPaths(state, found);
  const bool hasData = found.dataExists;
  const bool hasMethods = found.methodsExists;
  if (hasData && hasMethods) return true;

  std::string question;
  if (!hasData && !hasMethods) {
    question = "The DATA and METHODS subdirectories are missing.  Create them?";
  } else if (!hasData) {
    question = "The DATA subdirectory is missing.  Create it?";
  } else {
    question = "The METHODS subdirectory is missing.  Create it?";
  }
  const int answer =
      op.message("Base address: " + state.BaseDirectoryPath + "\r" + question,
                 "Directory Structure Construction", BoxIcon::Exclamation, BoxButtons::YesNo);
  if (answer == answer::kNo) return false;
  return EnsureDataAndMethods(state, op);
}

bool EnsureDataAndMethods(AppState& state, Operator& op) {
  SetSubdirectoryPaths(state, FindSubdirectories(state.BaseDirectoryPath));
  const bool data = fs::is_directory(state.DataDirectory) || makeDirectory(state.DataDirectory, op);
  const bool methods =
      fs::is_directory(state.MethodsDirectory) || makeDirectory(state.MethodsDirectory, op);
  return data && methods;
}

}  // namespace zorvel
