#include "core/datafiles/method_summary.h"

#include <algorithm>
#include <string>

#include "core/method/method_codes.h"
#include "core/method/method_commands.h"
#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

void printLine(Printer& printer, std::string_view text) {
  printer.print(text);
  printer.endLine();
}

std::string fileKinds(const MethodSettings& m) {
  std::string kinds = "(";
  if (m.Fixed) kinds += ".FIX";
  if (m.Fixed && m.Synch) kinds += "; ";
  if (m.Synch) kinds += ".SYN";
  return kinds + ", .CTL)";
}

void printSettings(Printer& p, const MethodSettings& m) {
  printLine(p, "GENERAL SETTINGS");
  printLine(p, "  Number of Wavelengths  " + text::plain(m.NoColors));
  printLine(p, "  Analyst                " + m.Operator);
  printLine(p, "  Sample Identification  " + m.StudyId);
  printLine(p, "  Cutoff Filter          " + text::plain(WheelPosition(m.FilterSetting)));
  printLine(p, "  PMT Voltage            " + text::plainSingle(m.PMTVoltage));
  printLine(p, "  Scan Speed             " + text::plainSingle(m.ScanSpeed));
  printLine(p, "  Amount of Solvent      " + text::plainSingle(m.AmtSolvent));
  printLine(p, "  Read Time (Samples)    " + text::plainSingle(m.ReadTime));
  printLine(p, "  Read Time (Pures)      " + text::plainSingle(m.ReadTimePures));
  printLine(
      p, "  Delivery method        " + std::string(method_codes::DeliveryText(m.DeliveryMethod)));
  if (!m.Synch) return;
  const SynchScanSettings& s = m.SynchScan;
  printLine(p, "SYNCHRONOUS SCAN SETTINGS");
  printLine(p, "  Scan Lower Limit (nm)  " + text::plainSingle(s.LowerLimit));
  printLine(p, "  Scan Upper Limit (nm)  " + text::plainSingle(s.UpperLimit));
  printLine(p, "  Scan Offset (nm)       " + text::plainSingle(s.MonochromatorOffset));
  printLine(p, "  Scan Data Interval (nm)" + text::plainSingle(s.ScanDataInterval));
  printLine(p, "  Excitation Slit Width  " + text::plainSingle(s.ExSl));
  printLine(p, "  Emission Slit Width    " + text::plainSingle(s.EmSl));
  p.endLine();
}

// A slit under 10 nm takes one blank more, so that "5.0" and "12.5" both fill 7 columns.
std::string slitColumn(float slitNm) {
  return std::string(slitNm < 10 ? 4 : 3, ' ') + text::fixed(slitNm, 1);
}

std::string wavelengthColumn(float wavelengthNm) {
  return "  " + text::fixed(wavelengthNm, 1);
}

void printColumnHeadings(Printer& p, const MethodSettings& m) {
  const int pairs = std::clamp<int>(m.NoColors, 0, kMaxColours);
  auto row = [&](float (*value)(const ColourDeclaration&), std::string (*column)(float)) {
    for (int i = 1; i <= pairs; ++i) p.print(column(value(m.FixedPairs.colour(i))));
    p.endLine();
  };
  p.tab(4);
  p.print("Ex Sl");
  p.tab(10);
  row([](const ColourDeclaration& c) { return c.ExSl; }, slitColumn);
  p.tab(4);
  p.print("Em Sl");
  p.tab(10);
  row([](const ColourDeclaration& c) { return c.EmSl; }, slitColumn);
  p.tab(10);
  row([](const ColourDeclaration& c) { return c.ExWl; }, wavelengthColumn);
  p.tab(3);
  p.print("Sample");
  p.tab(10);
  row([](const ColourDeclaration& c) { return c.EmWl; }, wavelengthColumn);
}

}  // namespace

void PrintMethodSummary(const AppState& state, Printer& printer, bool newSet,
                        const CalendarTime& printedAt) {
  const MethodSettings& m = state.Method;
  printer.newPage();
  std::string first =
      "Base Data Filename       " + UpperCasedForDisplay(state.DataSet.DataSetName) + fileKinds(m);
  if (!newSet) first += "  Appending Data";
  printLine(printer, first);
  printLine(printer, "Method Name              " + state.DataSet.MethodFilePath);
  printSettings(printer, m);
  printLine(printer, "  Date/Time              " + text::formatDate(printedAt) + " / " +
                         text::formatTime(printedAt));
  printer.endLine();
  printColumnHeadings(printer, m);
  printer.endLine();
}

}  // namespace zorvel
