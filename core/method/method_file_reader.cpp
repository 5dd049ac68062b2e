#include <deque>
#include <initializer_list>
#include <utility>
#include <vector>

#include "core/files/key_value_reader.h"
#include "core/method/method_codes.h"
#include "core/method/method_file.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

// The method's lines in file order through the shared key/value reader. It remembers the last
// text value read, which is what the failure box names as the offending string.
class MethodLines {
 public:
  explicit MethodLines(KeyValueReader& in) : in_(in) {}

  // A text with a control character in it (a NUL, a stray CR) is no value this program wrote:
  // the file is refused rather than read with it.
  bool text(std::string& value) {
    value = in_.ReadTextValue();
    offending_ = value;
    if (value == KeyValueReader::kEofMarker) return false;
    for (const char c : value) {
      const auto byte = static_cast<unsigned char>(c);
      if ((byte < 0x20 && c != '\t') || byte == 0x7f) return false;
    }
    return true;
  }
  // A whole number that leaves 16 bits would be read as the field's old value, silently: the
  // field holds -1 instead and the text is noted, so the whole-method check names it.
  bool integer(std::int16_t& value, const char* key) {
    if (!in_.ReadIntValue(value)) return false;
    const auto number = text::parseNumber(in_.lastValueText());
    if (number && !text::toInt16(*number)) {
      value = -1;
      unfit_.push_back(UnfitNumber{key, in_.lastValueText()});
    }
    return true;
  }
  std::vector<UnfitNumber>& unfit() { return unfit_; }
  bool single(float& value) { return in_.ReadSingleValue(value); }
  bool atEnd() const { return in_.atEnd(); }
  const std::string& offending() const { return offending_; }

  // A section marker: one field of a line, leading blanks skipped, up to a comma or the line
  // end.
  bool marker(std::string& value) {
    if (!text(value)) return false;
    const std::size_t comma = value.find(',');
    if (comma != std::string::npos) value.resize(comma);
    const std::size_t first = value.find_first_not_of(" \t");
    const std::size_t last = value.find_last_not_of(" \t");
    value = first == std::string::npos ? std::string() : value.substr(first, last - first + 1);
    return true;
  }

  // The next number of free-format input: values separated by blanks, commas or line ends,
  // read across lines as needed. Text that is no number reads as 0.
  bool number(double& value) {
    while (pending_.empty()) {
      std::string line;
      if (!text(line)) return false;
      splitValues(line);
    }
    value = text::parseNumber(pending_.front()).value_or(0.0);
    pending_.pop_front();
    return true;
  }
  // What is left of a line once its numbers have been used is not read as a value.
  void dropRestOfLine() { pending_.clear(); }

 private:
  void splitValues(const std::string& line) {
    std::size_t i = 0;
    auto separator = [](char c) { return c == ' ' || c == '\t' || c == ','; };
    while (i < line.size()) {
      while (i < line.size() && separator(line[i])) ++i;
      const std::size_t start = i;
      while (i < line.size() && !separator(line[i])) ++i;
      if (i > start) pending_.push_back(line.substr(start, i - start));
    }
  }

  KeyValueReader& in_;
  std::string offending_;
  std::deque<std::string> pending_;
  std::vector<UnfitNumber> unfit_;
};

bool readFlag(MethodLines& in, bool& flag) {
  std::string t;
  if (!in.text(t)) return false;
  flag = t != "False";
  return true;
}

bool readHeader(MethodLines& in, MethodSettings& m) {
  using namespace method_codes;
  std::string t;
  if (!readFlag(in, m.Fixed) || !readFlag(in, m.Synch) || !readFlag(in, m.Spillover)) return false;
  if (!in.integer(m.NoColors, "No.Colors") || !in.integer(m.NoPures, "No.Pures")) return false;
  if (!in.single(m.ReadTime) || !in.single(m.ReadTimePures) || !in.single(m.ScanSpeed))
    return false;
  if (!in.text(t)) return false;
  ApplyFilterText(t, m.FilterSetting);
  if (!in.single(m.PMTVoltage)) return false;
  if (!in.text(t)) return false;
  m.DeliveryMethod = DeliveryFromText(t);
  if (!in.text(t)) return false;
  m.PrintResults = t == "True";
  if (!in.single(m.AmtSolvent) || !in.integer(m.Repetitions, "Repetitions")) return false;
  if (!in.text(t)) return false;
  m.FileType = FileTypeFromText(t);
  return in.text(m.Operator) && in.text(m.StudyId);
}

// Rows past the table's 30 are read and set aside, so that the whole-method check, not the
// reader, tells the operator how many colours a method may have.
bool readFixedRows(MethodLines& in, MethodSettings& m) {
  std::string headings;
  if (!in.text(headings)) return false;
  ColourDeclaration beyondTable;
  for (int row = 1; row <= m.NoColors; ++row) {
    ColourDeclaration& pair = row <= kMaxColours ? m.FixedPairs.colour(row) : beyondTable;
    double v[5];
    for (double& x : v) {
      if (!in.number(x)) return false;
    }
    pair.ExWl = static_cast<float>(v[0]);
    pair.EmWl = static_cast<float>(v[1]);
    pair.ExSl = static_cast<float>(v[2]);
    pair.EmSl = static_cast<float>(v[3]);
    pair.ColourIndex = text::toInt16(v[4]).value_or(0);
  }
  in.dropRestOfLine();
  return true;
}

bool readSynchSection(MethodLines& in, SynchScanSettings& s) {
  return in.single(s.ExSl) && in.single(s.EmSl) && in.single(s.LowerLimit) &&
         in.single(s.UpperLimit) && in.single(s.MonochromatorOffset) &&
         in.single(s.ScanDataInterval);
}

bool readIntegers(MethodLines& in,
                  std::initializer_list<std::pair<std::int16_t*, const char*>> fields) {
  for (const auto& [value, key] : fields) {
    if (!in.integer(*value, key)) return false;
  }
  return true;
}

bool readAutosamplerSection(MethodLines& in, AutosamplerSettings& a) {
  using namespace method_codes;
  std::string t;
  if (!readIntegers(in, {{&a.SampleVolume, "SampleVolume"},
                         {&a.AirVolume, "AirVolume"},
                         {&a.BackFlowVolume, "BackFlowVolume"},
                         {&a.FillSpeed, "FillSpeed"},
                         {&a.DispenseSpeed, "DispenseSpeed"},
                         {&a.FillSpeedFlush, "FillSpeedFlush"},
                         {&a.DispenseSpeedFlush, "DispenseSpeedFlush"},
                         {&a.FlushTime, "FlushTime"},
                         {&a.AirDryTime, "AirDryTime"},
                         {&a.SyringeVolume, "SyringeVolume"}}))
    return false;
  if (!in.text(t)) return false;
  a.Resolution = ResolutionFromText(t);
  if (!readIntegers(in, {{&a.StartingTube, "StartingTube"}, {&a.EndingTube, "EndingTube"}}))
    return false;
  if (!in.text(t)) return false;
  a.HasStandard = t == "True";
  if (!readIntegers(in, {{&a.StandardTube, "StandardTube"}, {&a.StandardFreq, "StandardFreq"}}))
    return false;
  if (!in.text(t)) return false;
  a.HasBlank = t == "True";
  if (!readIntegers(in, {{&a.BlankTube, "BlankTube"}, {&a.BlankFreq, "BlankFreq"}})) return false;
  if (!in.text(t)) return false;
  a.SampleDisposition = DispositionFromText(t);
  if (!readIntegers(in, {{&a.RinseHeight, "RinseHeight"},
                         {&a.StandardHeight, "StandardHeight"},
                         {&a.TubeHeight, "TubeHeight"},
                         {&a.BackFillHeight, "BackFillHeight"},
                         {&a.StandardBFHeight, "StandardBFHeight"}}))
    return false;
  return in.text(a.TrayDescriptorFile) && in.integer(a.PumpDirection, "PumpDirection");
}

// The sections follow the header in a fixed order, each optional. A marker that does not open
// the section looked for stays pending and is tested against the next one; one that opens none
// is left unread, and the file ends there.
bool readSections(MethodLines& in, MethodSettings& m) {
  std::string marker;
  bool usedUp = false;
  if (!in.atEnd()) {
    if (!in.marker(marker)) return false;
    if (marker == kFixedSectionMarker) {
      if (!readFixedRows(in, m)) return false;
      usedUp = true;
    }
  }
  if (usedUp) {
    if (in.atEnd()) return true;
    if (!in.marker(marker)) return false;
  }
  usedUp = false;
  if (marker == kSynchSectionMarker) {
    if (!readSynchSection(in, m.SynchScan)) return false;
    usedUp = true;
  }
  if (usedUp) {
    if (in.atEnd()) return true;
    if (!in.marker(marker)) return false;
  }
  if (marker == kAutosamplerSectionMarker) return readAutosamplerSection(in, m.Autosampler);
  return true;
}

void showFailure(Operator& op, std::string_view offending) {
  op.beep();
  op.message(InvalidMethodFileMessage(offending), "ZORVEL ERROR", BoxIcon::Exclamation);
}

}  // namespace

std::string InvalidMethodFileMessage(std::string_view offending) {
  return "Invalid Methods File.  RUN ABORTED.\rOffending string : " + std::string(offending) +
         "\rPlease rebuild or try a different methods file.";
}

bool ReadMethodFile(AppState& state, Operator& op, const std::string& path) {
  KeyValueReader reader;
  if (!reader.open(path)) {
    showFailure(op, path);
    return false;
  }
  MethodLines in(reader);
  std::string version;
  in.text(version);
  if (version != kMethodFileVersion) {
    reader.close();
    showFailure(op, "Method file version mismatch.  Expected " + std::string(kMethodFileVersion) +
                        " but found " + version + ".");
    return false;
  }
  MethodSettings& m = state.Method;
  const bool read = readHeader(in, m) && readSections(in, m);
  reader.close();
  m.UnfitNumbers = std::move(in.unfit());
  if (!read) {
    showFailure(op, in.offending());
    return false;
  }
  return true;
}

}  // namespace zorvel
