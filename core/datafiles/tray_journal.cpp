#include "core/datafiles/tray_journal.h"

#include <array>
#include <utility>

#include "core/datafiles/data_file_shape.h"
#include "core/datafiles/data_set_naming.h"
#include "core/files/file_output.h"
#include "core/files/key_value_reader.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr int kJournalLines = 23;

std::string flag(bool on) {
  return on ? "1" : "0";
}

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

// The journal's lines in their fixed order: key and value.
std::array<std::pair<const char*, std::string>, kJournalLines> linesOf(const TrayJournal& j) {
  const SetRecordCounts& c = j.recordsAtStart;
  return {{{"Tray run started", j.startDate},
           {"Start time", j.startTime},
           {"Starting tube", whole(j.startingTube)},
           {"Ending tube", whole(j.endingTube)},
           {"Has standard", flag(j.hasStandard)},
           {"Standard tube", whole(j.standardTube)},
           {"Standard frequency", whole(j.standardFreq)},
           {"Has blank", flag(j.hasBlank)},
           {"Blank tube", whole(j.blankTube)},
           {"Blank frequency", whole(j.blankFreq)},
           {"Pures pending", flag(j.puresPending)},
           {"Building databases", flag(j.buildingDatabases)},
           {"Sample number", whole(j.sampleNumber)},
           {"First sample number", whole(j.firstSampleNumber)},
           {"First read", flag(j.firstRead)},
           {"Pure start pending", flag(j.pureStartPending)},
           {"FIX records", whole(c.fix)},
           {"SYN records", whole(c.syn)},
           {"CTL records", whole(c.ctl)},
           {"BLK records", whole(c.blk)},
           {"STL records", whole(c.stl)},
           {"SLK records", whole(c.slk)},
           {"Completed", flag(j.completed)}}};
}

// Walks the values in the order linesOf writes them.
class ValueCursor {
 public:
  explicit ValueCursor(KeyValueReader& reader) : reader_(reader) {}
  void text(std::string& out) { out = next(); }
  void number(int& out) {
    const auto value = text::parseNumber(next());
    if (value) {
      out = static_cast<int>(*value);
    } else {
      ok_ = false;
    }
  }
  void flag(bool& out) {
    int value = 0;
    number(value);
    out = value != 0;
  }
  bool ok() const { return ok_; }

 private:
  std::string next() {
    const std::string value = reader_.ReadTextValue();
    if (value == KeyValueReader::kEofMarker) ok_ = false;
    return value;
  }
  KeyValueReader& reader_;
  bool ok_ = true;
};

// Whole lines after the header that carry a record label.
int recordsIn(const std::string& path, int headerLines) {
  std::string bytes;
  if (!ReadWholeFile(path, bytes)) return 0;
  int line = 0;
  int records = 0;
  std::size_t start = 0;
  for (std::size_t k = 0; k < bytes.size(); ++k) {
    if (bytes[k] != '\r' && bytes[k] != '\n') continue;
    RecordLabel label;
    const std::string_view text(bytes.data() + start, k - start);
    if (++line > headerLines && ParseRecordLabel(text, label)) ++records;
    if (bytes[k] == '\r' && k + 1 < bytes.size() && bytes[k + 1] == '\n') ++k;
    start = k + 1;
  }
  return records;
}

}  // namespace

std::string TrayJournalPath(const DataSetPaths& paths) {
  const std::string& named = paths.FixPath.empty() ? paths.SynPath : paths.FixPath;
  if (named.empty()) return {};
  return BasePathOf(named) + ".TRAY";
}

bool WriteTrayJournal(const std::string& path, const TrayJournal& journal) {
  std::string bytes;
  for (const auto& [key, value] : linesOf(journal)) bytes += key + ("?=" + value) + kLineEnd;
  return WriteWholeFile(path, bytes);
}

std::optional<TrayJournal> ReadTrayJournal(const std::string& path) {
  KeyValueReader reader;
  if (!reader.open(path)) return std::nullopt;
  TrayJournal j;
  SetRecordCounts& c = j.recordsAtStart;
  ValueCursor v(reader);
  v.text(j.startDate);
  v.text(j.startTime);
  v.number(j.startingTube);
  v.number(j.endingTube);
  v.flag(j.hasStandard);
  v.number(j.standardTube);
  v.number(j.standardFreq);
  v.flag(j.hasBlank);
  v.number(j.blankTube);
  v.number(j.blankFreq);
  v.flag(j.puresPending);
  v.flag(j.buildingDatabases);
  v.number(j.sampleNumber);
  v.number(j.firstSampleNumber);
  v.flag(j.firstRead);
  v.flag(j.pureStartPending);
  for (int* count : {&c.fix, &c.syn, &c.ctl, &c.blk, &c.stl, &c.slk}) v.number(*count);
  v.flag(j.completed);
  if (!v.ok()) return std::nullopt;
  return j;
}

SetRecordCounts CountSetRecords(const MethodSettings& method, const DataSetPaths& paths) {
  SetRecordCounts c;
  for (const DataFileEntry& file : FilesOfSet(paths)) {
    const int n = recordsIn(file.path, ShapeOf(file.kind, method).headerLines);
    switch (file.kind) {
      case DataFileKind::Fixed:
        c.fix = n;
        break;
      case DataFileKind::Synch:
        c.syn = n;
        break;
      case DataFileKind::Control:
        c.ctl = n;
        break;
      case DataFileKind::Blank:
        c.blk = n;
        break;
      case DataFileKind::ScanControl:
        c.stl = n;
        break;
      case DataFileKind::ScanBlank:
        c.slk = n;
        break;
      case DataFileKind::RunLog:
        break;
    }
  }
  return c;
}

}  // namespace zorvel
