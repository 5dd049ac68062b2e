#include <algorithm>

#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/method/method_codes.h"
#include "core/method/method_file.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr std::size_t kPrintZoneWidth = 14;

class MethodText {
 public:
  void line(std::string_view text) {
    out_ += text;
    out_ += "\r\n";
  }
  void value(std::string_view key, std::string_view text) {
    out_ += key;
    out_ += "?=";
    out_ += text;
    out_ += "\r\n";
  }
  void integer(std::string_view key, std::int16_t v) { value(key, text::plain(v)); }
  void single(std::string_view key, float v) { value(key, text::plainSingle(v)); }
  void flag(std::string_view key, bool v) { value(key, method_codes::FlagText(v)); }
  void raw(std::string_view text) { out_ += text; }
  std::string take() { return std::move(out_); }

 private:
  std::string out_;
};

void writeHeader(MethodText& t, const MethodSettings& m) {
  using namespace method_codes;
  t.value("Version", kMethodFileVersion);
  t.flag("Fixed", m.Fixed);
  t.flag("Synch", m.Synch);
  t.flag("Spillover", m.Spillover);
  t.integer("No.Colors", m.NoColors);
  t.integer("No.Pures", m.NoPures);
  t.single("ReadTime", m.ReadTime);
  t.single("ReadTimePures", m.ReadTimePures);
  t.single("ScanSpeed", m.ScanSpeed);
  t.value("FilterSetting", FilterText(m.FilterSetting));
  t.single("PMTVoltage", m.PMTVoltage);
  t.value("DeliveryMethod", DeliveryText(m.DeliveryMethod));
  t.flag("PrintResults", m.PrintResults);
  t.single("AmtSolvent", m.AmtSolvent);
  t.integer("Repetitions", m.Repetitions);
  t.value("FileType", FileTypeText(m.FileType));
  t.value("Operator", m.Operator);
  t.value("StudyId", m.StudyId);
}

void writeFixedSection(MethodText& t, const MethodSettings& m) {
  t.line(kFixedSectionMarker);
  t.line(kFixedSectionHeadings);
  const int rows = std::clamp<int>(m.NoColors, 0, kMaxColours);
  for (int row = 1; row <= rows; ++row) t.raw(FixedPairLine(m.FixedPairs.colour(row)));
}

void writeSynchSection(MethodText& t, const SynchScanSettings& s) {
  t.line(kSynchSectionMarker);
  t.single("ExSl", s.ExSl);
  t.single("EmSl", s.EmSl);
  t.single("LowerLimit", s.LowerLimit);
  t.single("UpperLimit", s.UpperLimit);
  t.single("MonochromatorOffset", s.MonochromatorOffset);
  t.single("ScanDataInterval", s.ScanDataInterval);
}

void writeAutosamplerSection(MethodText& t, const AutosamplerSettings& a) {
  using namespace method_codes;
  t.line(kAutosamplerSectionMarker);
  t.integer("SampleVolume", a.SampleVolume);
  t.integer("AirVolume", a.AirVolume);
  t.integer("BackFlowVolume", a.BackFlowVolume);
  t.integer("FillSpeed", a.FillSpeed);
  t.integer("DispenseSpeed", a.DispenseSpeed);
  t.integer("FillSpeedFlush", a.FillSpeedFlush);
  t.integer("DispenseSpeedFlush", a.DispenseSpeedFlush);
  t.integer("FlushTime", a.FlushTime);
  t.integer("AirDryTime", a.AirDryTime);
  t.integer("SyringeVolume", a.SyringeVolume);
  t.value("Resolution", ResolutionText(a.Resolution));
  t.integer("StartingTube", a.StartingTube);
  t.integer("EndingTube", a.EndingTube);
  t.flag("HasStandard", a.HasStandard);
  t.integer("StandardTube", a.StandardTube);
  t.integer("StandardFreq", a.StandardFreq);
  t.flag("HasBlank", a.HasBlank);
  t.integer("BlankTube", a.BlankTube);
  t.integer("BlankFreq", a.BlankFreq);
  t.value("SampleDisposition", DispositionText(a.SampleDisposition));
  t.integer("RinseHeight", a.RinseHeight);
  t.integer("StandardHeight", a.StandardHeight);
  t.integer("TubeHeight", a.TubeHeight);
  t.integer("BackFillHeight", a.BackFillHeight);
  t.integer("StandardBFHeight", a.StandardBFHeight);
  t.value("TrayDescriptorFile", a.TrayDescriptorFile);
  t.integer("PumpDirection", a.PumpDirection);
}

void padToNextZone(std::string& line) {
  const std::size_t zones = (line.size() + kPrintZoneWidth - 1) / kPrintZoneWidth;
  line.resize(zones * kPrintZoneWidth, ' ');
}

}  // namespace

std::string FixedPairLine(const ColourDeclaration& pair) {
  std::string line;
  for (float v : {pair.ExWl, pair.EmWl, pair.ExSl, pair.EmSl}) {
    line += text::printForm(v);
    padToNextZone(line);
  }
  line += text::printForm(static_cast<float>(pair.ColourIndex));
  line += "\r\n";
  return line;
}

std::string MethodFileText(const MethodSettings& method) {
  MethodText t;
  writeHeader(t, method);
  if (method.Fixed) writeFixedSection(t, method);
  if (method.Synch) writeSynchSection(t, method.SynchScan);
  if (method.DeliveryMethod == Delivery::Autosampler)
    writeAutosamplerSection(t, method.Autosampler);
  return t.take();
}

bool WriteMethodFile(const MethodSettings& method, const std::string& path) {
  return WriteWholeFile(path, MethodFileText(method));
}

bool WriteMethodFile(const AppState& state, const std::string& path) {
  const bool relative = !path.empty() && path.front() != '/';
  return WriteMethodFile(state.Method, relative ? JoinPath(state.MethodsDirectory, path) : path);
}

}  // namespace zorvel
