#include "core/datafiles/data_set_commands.h"

#include "core/datafiles/data_file_repair.h"
#include "core/datafiles/data_set_headers.h"
#include "core/datafiles/data_set_naming.h"
#include "core/datafiles/last_sample_number.h"
#include "core/files/file_ends.h"
#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/method/method_codes.h"
#include "core/method/method_commands.h"
#include "core/method/method_file.h"
#include "core/state/file_dialogs.h"

namespace zorvel {

namespace {

constexpr const char* kErrorTitle = "ZORVEL ERROR";
constexpr const char* kNotificationTitle = "ZORVEL NOTIFICATION";
constexpr const char* kQuestionTitle = "ZORVEL QUESTION";

// The first header lines of a data file, read as fields: leading blanks skipped, up to a comma
// or the line end (the comma, or the line end, is used up).
class HeaderFields {
 public:
  explicit HeaderFields(std::string text) : text_(std::move(text)) {}
  std::string next() {
    while (pos_ < text_.size() && text_[pos_] == ' ') ++pos_;
    const std::size_t start = pos_;
    while (pos_ < text_.size() && text_[pos_] != ',' && text_[pos_] != '\r' && text_[pos_] != '\n')
      ++pos_;
    std::string field = text_.substr(start, pos_ - start);
    if (pos_ < text_.size() && text_[pos_] == ',') {
      ++pos_;
    } else {
      if (pos_ < text_.size() && text_[pos_] == '\r') ++pos_;
      if (pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
    }
    return field;
  }

 private:
  std::string text_;
  std::size_t pos_ = 0;
};

std::string afterTab(const std::string& field) {
  return field.substr(field.find('\t') + 1);
}

// The save dialog asked before its own file is overwritten; the set's other files (".CTL",
// ".SYN", ...) are asked about here. No answer but Yes keeps them.
bool mayReplaceExistingFiles(const MethodSettings& method, const std::string& chosen,
                             Operator& op) {
  std::string existing;
  const DataSetPaths paths = DataSetPathsFor(method, BasePathOf(chosen));
  for (const DataFileEntry& file : FilesOfSet(paths)) {
    if (file.path == chosen || !FileExists(file.path)) continue;
    existing += (existing.empty() ? "" : ", ") + file.path;
  }
  if (existing.empty()) return true;
  return op.message("The data set " + DataSetNameOf(chosen) + " already has these files: " +
                        existing + ".  Replace them with a new, empty data set?",
                    kQuestionTitle, BoxIcon::Question, BoxButtons::YesNo) == answer::kYes;
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Checks and repairs every file of the set; false (with the operator told) when one is refused.
// The line ending is the one the chosen set's first file uses.
bool repairSet(const MethodSettings& method, const DataSetPaths& paths, Operator& op,
               std::vector<std::string>& logEntries, std::string& lineEnding) {
  for (const DataFileEntry& file : FilesOfSet(paths)) {
    const DataFileRepair repair = RepairDataFile(file.path, ShapeOf(file.kind, method));
    if (!repair.ok) {
      op.message(repair.refusal, kErrorTitle, BoxIcon::Exclamation);
      return false;
    }
    if (!repair.logEntry.empty()) logEntries.push_back(repair.logEntry);
    if (lineEnding.empty()) lineEnding = repair.lineEnding;
  }
  return true;
}

}  // namespace

CreateDataSetResult CreateDataFileSet(AppState& state, Operator& op, Clock& clock,
                                      QualityDatabases& databases) {
  CreateDataSetResult result;
  const std::string path = file_dialogs::SaveDataSet(op, state);
  if (path.empty()) {
    result.reason = "no data set was chosen";
    return result;
  }
  if (!mayReplaceExistingFiles(state.Method, path, op)) {
    result.reason = "the data set's files exist and were not to be replaced";
    return result;
  }
  state.DataSet.DataSetName = DataSetNameOf(path);
  const HeadersResult headers = WriteDataSetHeaders(state, path, clock.now(), databases);
  result.created = true;
  result.written = headers.written;
  if (!headers.written) {
    result.reason = "the data set cannot be created in " + FolderOf(path) + ": " + headers.reason;
    op.message("The data set cannot be created in " + FolderOf(path) + ": " + headers.reason + ".",
               kErrorTitle, BoxIcon::Exclamation);
  }
  result.window.dataFileLabel = headers.dataFileLabel;
  result.window.newDataSet = true;
  return result;
}

ReopenResult ReopenDataFileSet(AppState& state, Operator& op, const std::string& path,
                               QualityDatabases& databases) {
  ReopenResult result;
  if (IsFolder(path)) {
    op.message(
        "The data file " + path + " is a folder; a data set's .FIX or .SYN file is expected.",
        kErrorTitle, BoxIcon::Exclamation);
    return result;
  }
  const std::string base = BasePathOf(path);
  // Only the two header lines are read here; a long set's records are not.
  std::string bytes;
  ReadFileHead(path, kFileEndBytes, bytes);
  HeaderFields header(std::move(bytes));
  const std::string line1 = header.next();
  if (line1.find('\t') == std::string::npos) {
    op.message("Invalid data file format. Line 1.", kErrorTitle, BoxIcon::Exclamation);
    return result;
  }
  // The paths recorded in line 1 are replaced below by those of the set as chosen, so a set
  // that was moved or renamed is still read where it lies now.
  const std::string line2 = header.next();
  if (line2.find('\t') == std::string::npos) {
    op.message("Invalid file format. Line 2.", kErrorTitle, BoxIcon::Exclamation);
    return result;
  }
  const std::string methodPath = afterTab(line2);
  if (!ReadMethodFile(state, op, methodPath)) return result;

  DataSetPaths paths = DataSetPathsFor(state.Method, base);
  paths.MethodFilePath = methodPath;
  paths.DataSetName = DataSetNameOf(path);
  // What a crash left half-written is made whole before the set's last number is looked up; a
  // file that is not of this set, or lacks its header, keeps the set closed.
  std::string lineEnding;
  if (!repairSet(state.Method, paths, op, result.logEntries, lineEnding)) return result;
  state.DataSet = paths;
  // Records go on in the line ending the files already use, so a copied set stays uniform.
  state.LineEnding = lineEnding.empty() ? LineEndingFor(state.Method.FileType) : lineEnding;

  const LastSample last = FindLastSample(state.Method, state.DataSet);
  for (const std::string* note : {&last.unreadableMessage, &last.mismatch}) {
    if (note->empty()) continue;
    op.message(*note, kNotificationTitle, BoxIcon::Exclamation);
    result.logEntries.push_back(*note);
  }
  if (state.Method.Fixed) databases.load(state.DataSet.CtlPath, state.DataSet.BlkPath);
  result.ok = true;
  result.lastSampleNumber = last.number;
  result.samplesPresent = last.samplesPresent;
  result.nextSampleNumber = last.number + 1;
  result.window.methodFileLabel = methodPath;
  result.window.dataFileLabel = DataFileLabel(state.Method, base);
  return result;
}

ReopenResult AppendDataFile(AppState& state, Operator& op, QualityDatabases& databases) {
  const std::string path = ChooseDataFileToAppend(state, op);
  if (path.empty()) return {};
  return ReopenForAppend(state, op, path, databases);
}

std::string ChooseDataFileToAppend(AppState& state, Operator& op) {
  const std::string path = file_dialogs::AppendDataFile(op, state);
  if (path.empty()) return {};
  if (!FileExists(path)) {
    op.message("File does not exist.", kErrorTitle, BoxIcon::Exclamation);
    return {};
  }
  return path;
}

ReopenResult ReopenForAppend(AppState& state, Operator& op, const std::string& path,
                             QualityDatabases& databases) {
  ReopenResult result = ReopenDataFileSet(state, op, path, databases);
  if (!result.ok) return result;
  result.window.fileAndInstrumentMenusEnabled = false;
  result.window.showMethod = true;
  result.window.newDataSet = false;
  result.window.firstSampleNumber = result.nextSampleNumber;
  return result;
}

}  // namespace zorvel
