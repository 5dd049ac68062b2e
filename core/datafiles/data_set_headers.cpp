#include "core/datafiles/data_set_headers.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "core/datafiles/data_set_naming.h"
#include "core/files/file_output.h"
#include "core/method/method_codes.h"
#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

class HeaderText {
 public:
  explicit HeaderText(std::string_view eol) : eol_(eol) {}
  void line(std::string_view text) {
    out_ += text;
    out_ += eol_;
  }
  void field(std::string_view label, std::string_view value) {
    out_ += label;
    out_ += '\t';
    line(value);
  }
  std::string take() { return std::move(out_); }

 private:
  std::string eol_;
  std::string out_;
};

int pairCount(const MethodSettings& m) {
  return std::clamp<int>(m.NoColors, 0, kMaxColours);
}

const ColourDeclaration& pair(const MethodSettings& m, int row) {
  return m.FixedPairs.colour(row);
}

std::string colourName(const AppState& state, std::int16_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= state.ColourNames.size()) return {};
  return state.ColourNames[static_cast<std::size_t>(index)];
}

std::string dateAndTime(const CalendarTime& t) {
  return text::formatDate(t) + "\t" + text::formatTime(t);
}

// One column-heading row of the ".FIX" header: the label, the reserved tube column in
// autosampler mode, then one value per pair.
std::string headingRow(const AppState& state, std::string_view label,
                       const std::function<std::string(const ColourDeclaration&)>& value) {
  const MethodSettings& m = state.Method;
  std::string row(label);
  if (m.DeliveryMethod == Delivery::Autosampler) row += '\t';
  for (int i = 1; i <= pairCount(m); ++i) row += "\t" + value(pair(m, i));
  return row;
}

// The lines the scan header and the scan databases share, from "Analyst" on.
void scanSettingLines(HeaderText& t, const MethodSettings& m, const CalendarTime& created) {
  t.field("Analyst", m.Operator);
  t.field("Cutoff Filter", text::plain(WheelPosition(m.FilterSetting)));
  t.field("PMT Voltage", text::plainSingle(m.PMTVoltage));
  t.field("Sample Identification", m.StudyId);
  t.field("Amount of solvent", text::plainSingle(m.AmtSolvent));
  t.field("Scan speed", text::signedPlain(m.ScanSpeed));
  t.field("Scan lower limit", text::signedPlain(m.SynchScan.LowerLimit));
  t.field("Scan upper limit", text::signedPlain(m.SynchScan.UpperLimit));
  t.field("Scan offset", text::signedPlain(m.SynchScan.MonochromatorOffset));
  t.field("Scan data interval", text::signedPlain(m.SynchScan.ScanDataInterval));
  t.field("Excitation slit width", text::signedPlain(m.SynchScan.ExSl));
  t.field("Emission slit width", text::signedPlain(m.SynchScan.EmSl));
  t.field("Delivery method", method_codes::DeliveryText(m.DeliveryMethod));
  t.field("Initial Date/Time", dateAndTime(created));
}

}  // namespace

std::string FixedHeaderText(const AppState& state, const CalendarTime& created) {
  const MethodSettings& m = state.Method;
  HeaderText t(state.LineEnding);
  t.field("Data File", state.DataSet.FixPath);
  t.field("Method name", state.DataSet.MethodFilePath);
  t.field("Number of Wavelengths", text::plain(m.NoColors));
  t.field("Number of Pures", text::plain(m.NoPures));
  t.field("Analyst", m.Operator);
  t.field("Cutoff Filter", text::plain(WheelPosition(m.FilterSetting)));
  t.field("PMT Voltage", text::plainSingle(m.PMTVoltage));
  t.field("Sample Identification", m.StudyId);
  t.field("Amount of solvent", text::plainSingle(m.AmtSolvent));
  t.field("Scan speed", text::signedPlain(m.ScanSpeed));
  t.field("Read time (Samples)", text::signedPlain(m.ReadTime));
  t.field("Read time (Pures)", text::signedPlain(m.ReadTimePures));
  t.field("Delivery method", method_codes::DeliveryText(m.DeliveryMethod));
  t.field("Initial Date/Time", dateAndTime(created));
  t.line(headingRow(state, "ex sl", [](const auto& p) { return text::plainSingle(p.ExSl); }));
  t.line(headingRow(state, "em sl", [](const auto& p) { return text::plainSingle(p.EmSl); }));
  t.line(headingRow(state, "ex wl", [](const auto& p) { return text::plainSingle(p.ExWl); }));
  t.line(headingRow(state, "em wl", [](const auto& p) { return text::plainSingle(p.EmWl); }));
  const bool autosampler = m.DeliveryMethod == Delivery::Autosampler;
  std::string colours = autosampler ? "Color\tTube" : "Color";
  for (int i = 1; i <= pairCount(m); ++i)
    colours += "\t" + colourName(state, pair(m, i).ColourIndex);
  if (!autosampler) colours += "\tComment";
  t.line(colours);
  return t.take();
}

std::string DatabaseHeaderText(const AppState& state, bool control) {
  const MethodSettings& m = state.Method;
  HeaderText t(state.LineEnding);
  t.line(control ? "CONTROL FILE: " + state.DataSet.CtlPath
                 : "BLANK FILE: " + state.DataSet.BlkPath);
  std::string excitation = "exwl/exsl";
  std::string emission = "emwl/emsl";
  for (int i = 1; i <= pairCount(m); ++i) {
    const ColourDeclaration& p = pair(m, i);
    excitation += "\t" + text::plainSingle(p.ExWl) + "/" + text::plainSingle(p.ExSl);
    emission += "\t" + text::plainSingle(p.EmWl) + "/" + text::plainSingle(p.EmSl);
  }
  t.line(excitation);
  t.line(emission + "\tDate\tTime\tComment");
  return t.take();
}

std::string SynchHeaderText(const AppState& state, const CalendarTime& created) {
  HeaderText t(state.LineEnding);
  t.field("Data File", state.DataSet.SynPath);
  t.field("Method name", state.DataSet.MethodFilePath);
  t.field("Number of Pures", text::plain(state.Method.NoPures));
  scanSettingLines(t, state.Method, created);
  return t.take();
}

std::string ScanDatabaseHeaderText(const AppState& state, bool control,
                                   const CalendarTime& created) {
  HeaderText t(state.LineEnding);
  if (control) {
    t.field("CONTROL FILE:", state.DataSet.StlPath);
  } else {
    t.field("BLANK FILE:", state.DataSet.SlkPath);
  }
  t.field("Method name", state.DataSet.MethodFilePath);
  scanSettingLines(t, state.Method, created);
  return t.take();
}

std::string RunLogHeaderText(const AppState& state) {
  HeaderText t(state.LineEnding);
  t.field("LOG FILE:", state.DataSet.LogFilePath);
  return t.take();
}

HeadersResult WriteDataSetHeaders(AppState& state, const std::string& chosenPath,
                                  const CalendarTime& created, QualityDatabases& databases) {
  const MethodSettings& m = state.Method;
  const std::string base = BasePathOf(chosenPath);
  state.DataSet = DataSetPathsFor(m, base, state.DataSet);
  const DataSetPaths& p = state.DataSet;
  HeadersResult result;
  // A new set starts its databases empty; scans filed as controls or blanks count there too.
  databases.resetCounts();
  // The files a set is reopened by (".FIX", ".SYN") come into place last, so a set cut short
  // by a crash while it is created cannot be chosen for appending.
  std::vector<NewFile> files;
  if (m.Fixed) {
    files.push_back({p.CtlPath, DatabaseHeaderText(state, true)});
    files.push_back({p.BlkPath, DatabaseHeaderText(state, false)});
  }
  if (m.Synch) {
    files.push_back({p.StlPath, ScanDatabaseHeaderText(state, true, created)});
    files.push_back({p.SlkPath, ScanDatabaseHeaderText(state, false, created)});
  }
  if (m.DeliveryMethod == Delivery::Autosampler)
    files.push_back({p.LogFilePath, RunLogHeaderText(state)});
  if (m.Synch) files.push_back({p.SynPath, SynchHeaderText(state, created)});
  if (m.Fixed) files.push_back({p.FixPath, FixedHeaderText(state, created)});
  result.written = CreateFilesTogether(files, &result.reason);
  result.dataFileLabel = DataFileLabel(m, base);
  return result;
}

}  // namespace zorvel
