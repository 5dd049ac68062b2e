#include "core/datafiles/data_set_commands.h"

#include "core/datafiles/data_set_headers.h"
#include "core/datafiles/data_set_naming.h"
#include "core/datafiles/last_sample_number.h"
#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/files/record_append.h"
#include "core/method/method_codes.h"
#include "core/method/method_commands.h"
#include "core/method/method_file.h"
#include "core/state/file_dialogs.h"

namespace zorvel {

namespace {

constexpr const char* kErrorTitle = "ZORVEL ERROR";

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

}  // namespace

CreateDataSetResult CreateDataFileSet(AppState& state, Operator& op, Clock& clock,
                                      QualityDatabases& databases) {
  CreateDataSetResult result;
  const std::string path = file_dialogs::SaveDataSet(op, state);
  if (path.empty()) return result;
  state.DataSet.DataSetName = DataSetNameOf(path);
  const HeadersResult headers = WriteDataSetHeaders(state, path, clock.now(), databases);
  result.created = true;
  result.written = headers.written;
  result.window.dataFileLabel = headers.dataFileLabel;
  result.window.newDataSet = true;
  return result;
}

ReopenResult ReopenDataFileSet(AppState& state, Operator& op, const std::string& path,
                               QualityDatabases& databases) {
  ReopenResult result;
  const std::string base = BasePathOf(path);
  std::string bytes;
  ReadWholeFile(path, bytes);
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
  state.DataSet = paths;
  state.LineEnding = LineEndingFor(state.Method.FileType);
  // What a crash left half-written is cut off before the set's last number is looked up.
  for (const std::string* file : {&paths.FixPath, &paths.SynPath, &paths.CtlPath, &paths.BlkPath,
                                  &paths.StlPath, &paths.SlkPath}) {
    if (!file->empty()) RepairDataFile(*file);
  }

  const LastSample last = FindLastSample(state.Method, state.DataSet);
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
  const std::string path = file_dialogs::AppendDataFile(op, state);
  if (path.empty()) return {};
  if (!FileExists(path)) {
    op.message("File does not exist.", kErrorTitle, BoxIcon::Exclamation);
    return {};
  }
  ReopenResult result = ReopenDataFileSet(state, op, path, databases);
  if (!result.ok) return result;
  result.window.fileAndInstrumentMenusEnabled = false;
  result.window.showMethod = true;
  result.window.newDataSet = false;
  result.window.firstSampleNumber = result.nextSampleNumber;
  return result;
}

}  // namespace zorvel
