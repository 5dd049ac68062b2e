#include <deque>

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
  bool integer(std::int16_t& value) { return in_.ReadIntValue(value); }
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
  if (!in.integer(m.NoColors) || !in.integer(m.NoPures)) return false;
  if (!in.single(m.ReadTime) || !in.single(m.ReadTimePures) || !in.single(m.ScanSpeed))
    return false;
  if (!in.text(t)) return false;
  ApplyFilterText(t, m.FilterSetting);
  if (!in.single(m.PMTVoltage)) return false;
  if (!in.text(t)) return false;
  m.DeliveryMethod = DeliveryFromText(t);
  if (!in.text(t)) return false;
  m.PrintResults = t == "True";
  if (!in.single(m.AmtSolvent) || !in.integer(m.Repetitions)) return false;
  if (!in.text(t)) return false;
  m.FileType = FileTypeFromText(t);
  return in.text(m.Operator) && in.text(m.StudyId);
}

bool readFixedRows(MethodLines& in, MethodSettings& m) {
  std::string headings;
  if (!in.text(headings)) return false;
  // The table holds 30 rows; a count beyond it cannot come from a method this program wrote.
  if (m.NoColors > kMaxColours) return false;
  for (int row = 1; row <= m.NoColors; ++row) {
    ColourDeclaration& pair = m.FixedPairs[static_cast<std::size_t>(row)];
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

bool readAutosamplerSection(MethodLines& in, AutosamplerSettings& a) {
  using namespace method_codes;
  std::string t;
  for (std::int16_t* v :
       {&a.SampleVolume, &a.AirVolume, &a.BackFlowVolume, &a.FillSpeed, &a.DispenseSpeed,
        &a.FillSpeedFlush, &a.DispenseSpeedFlush, &a.FlushTime, &a.AirDryTime, &a.SyringeVolume}) {
    if (!in.integer(*v)) return false;
  }
  if (!in.text(t)) return false;
  a.Resolution = ResolutionFromText(t);
  if (!in.integer(a.StartingTube) || !in.integer(a.EndingTube)) return false;
  if (!in.text(t)) return false;
  a.HasStandard = t == "True";
  if (!in.integer(a.StandardTube) || !in.integer(a.StandardFreq)) return false;
  if (!in.text(t)) return false;
  a.HasBlank = t == "True";
  if (!in.integer(a.BlankTube) || !in.integer(a.BlankFreq)) return false;
  if (!in.text(t)) return false;
  a.SampleDisposition = DispositionFromText(t);
  for (std::int16_t* v :
       {&a.RinseHeight, &a.StandardHeight, &a.TubeHeight, &a.BackFillHeight, &a.StandardBFHeight}) {
    if (!in.integer(*v)) return false;
  }
  return in.text(a.TrayDescriptorFile) && in.integer(a.PumpDirection);
}

bool isKnownMarker(const std::string& marker) {
  return marker.empty() || marker == kFixedSectionMarker || marker == kSynchSectionMarker ||
         marker == kAutosamplerSectionMarker;
}

// The sections follow the header in a fixed order, each optional. A marker that does not open
// the section looked for stays pending and is tested against the next one. A line where a
// marker belongs that is none (a marker glued to the value before it shifts every line after)
// refuses the file, so no section is read with another's values.
bool readSections(MethodLines& in, MethodSettings& m) {
  std::string marker;
  bool usedUp = false;
  if (!in.atEnd()) {
    if (!in.marker(marker) || !isKnownMarker(marker)) return false;
    if (marker == kFixedSectionMarker) {
      if (!readFixedRows(in, m)) return false;
      usedUp = true;
    }
  }
  if (usedUp) {
    if (in.atEnd()) return true;
    if (!in.marker(marker) || !isKnownMarker(marker)) return false;
  }
  usedUp = false;
  if (marker == kSynchSectionMarker) {
    if (!readSynchSection(in, m.SynchScan)) return false;
    usedUp = true;
  }
  if (usedUp) {
    if (in.atEnd()) return true;
    if (!in.marker(marker) || !isKnownMarker(marker)) return false;
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
  if (!readHeader(in, m) || !readSections(in, m)) {
    reader.close();
    showFailure(op, in.offending());
    return false;
  }
  reader.close();
  return true;
}

}  // namespace zorvel
