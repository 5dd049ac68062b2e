// zorvel-run --check-method and a run of the same method agree: what the check passes starts a
// run without a word of complaint, what it refuses the run refuses with the same first message.

#include <gtest/gtest.h>

#include <QProcess>
#include <functional>
#include <memory>

#include "core/method/demo_methods.h"
#include "core/method/method_file.h"
#include "e2e/run_helpers.h"

#if defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

MethodSettings Cuvette() {
  MethodSettings m;
  m.Fixed = true;
  m.NoColors = 3;
  m.NoPures = 3;
  m.ReadTime = 1;
  m.ReadTimePures = 1;
  m.ScanSpeed = 480;
  m.FilterSetting = EmissionFilter::Cutoff350;
  m.PMTVoltage = 820;
  m.Repetitions = 1;
  m.AmtSolvent = 2;
  m.Operator = "JS";
  m.StudyId = "Table";
  m.FixedPairs.colour(1) = {493, 515, 5, 5, 4};
  m.FixedPairs.colour(2) = {520, 540, 5, 5, 5};
  m.FixedPairs.colour(3) = {617.5f, 640, 10, 5, 10};
  return m;
}

MethodSettings Tray() {
  MethodSettings m = Cuvette();
  m.DeliveryMethod = Delivery::Autosampler;
  AutosamplerSettings& a = m.Autosampler;
  // clang-format off
  a = {300, 100, 30, 15, 10, 10, 10, 300, 0, 10, 5, 7, 1, 50, 2, 50, 70, 100, 105, 70, 30, 1,
       PumpResolution::Standard, Disposition::ThrowAway, true, true, ""};
  // clang-format on
  return m;
}

struct Case {
  const char* name;
  std::function<void(MethodSettings&)> change;
  // Lines of the written file replaced as they stand, for values the record cannot hold.
  std::vector<std::pair<std::string, std::string>> text = {};
  std::string appended = {};
};

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

void AllColours(MethodSettings& m, int colours) {
  m.NoColors = m.NoPures = static_cast<std::int16_t>(colours);
  for (int row = 1; row <= std::min(colours, kMaxColours); ++row)
    m.FixedPairs.colour(row) = {300.0f + row, 400.0f + row, 5, 5, 1};
}

std::vector<Case> Cases() {
  using M = MethodSettings&;
  std::string rows;
  for (int k = 4; k <= 31; ++k) rows += " 450 520 5 5 1\r\n";
  return {
      {"cuvette", [](M) {}},
      {"thirty colours", [](M m) { AllColours(m, 30); }},
      {"thirty-one colours",
       [](M) {},
       {{"No.Colors?=3", "No.Colors?=31"},
        {"No.Pures?=3", "No.Pures?=31"},
        {"10 \r\n", "10 \r\n" + rows}}},
      {"a stray line after the sections", [](M) {}, {}, "JUNK LINE\r\n"},
      {"No.Pures beyond 16 bits", [](M) {}, {{"No.Pures?=3", "No.Pures?=40000"}}},
      {"seven pures for three colours", [](M m) { m.Spillover = true, m.NoPures = 7; }},
      {"PMT beyond any voltage", [](M) {}, {{"PMTVoltage?=820", "PMTVoltage?=99999999999999"}}},
      {"PMT 900", [](M m) { m.PMTVoltage = 900; }},
      {"PMT 901", [](M m) { m.PMTVoltage = 901; }},
      {"PMT 0", [](M m) { m.PMTVoltage = 0; }},
      {"read time 0.1", [](M m) { m.ReadTime = 0.1f; }},
      {"read time 0.09", [](M m) { m.ReadTime = 0.09f; }},
      {"read time 100.5", [](M m) { m.ReadTime = 100.5f; }},
      {"scan speed -10", [](M m) { m.ScanSpeed = -10; }},
      {"scan speed 9", [](M m) { m.ScanSpeed = 9; }},
      {"scan speed 1501", [](M m) { m.ScanSpeed = 1501; }},
      {"excitation 200", [](M m) { m.FixedPairs.colour(1).ExWl = 200; }},
      {"excitation 199", [](M m) { m.FixedPairs.colour(1).ExWl = 199; }},
      {"emission 901", [](M m) { m.FixedPairs.colour(2).EmWl = 901; }},
      {"emission slit 20", [](M m) { m.FixedPairs.colour(3).EmSl = 20; }},
      {"excitation slit 15.5", [](M m) { m.FixedPairs.colour(3).ExSl = 15.5f; }},
      {"no repetitions", [](M m) { m.Repetitions = 0; }},
      {"no analyst", [](M m) { m.Operator.clear(); }},
      {"tray", [](M m) { m = Tray(); }},
      {"ending tube beyond 16 bits",
       [](M m) { m = Tray(); },
       {{"EndingTube?=7", "EndingTube?=99999"}}},
      {"starting tube -5", [](M m) { m = Tray(), m.Autosampler.StartingTube = -5; }},
      {"no syringe", [](M m) { m = Tray(), m.Autosampler.SyringeVolume = 0; }},
      {"ending at the last tube", [](M m) { m = Tray(), m.Autosampler.EndingTube = 96; }},
      {"ending past the tray", [](M m) { m = Tray(), m.Autosampler.EndingTube = 97; }},
      {"standard among the samples", [](M m) { m = Tray(), m.Autosampler.StartingTube = 1; }},
      {"the whole syringe",
       [](M m) { m = Tray(), m.Autosampler.SampleVolume = 9900, m.Autosampler.AirVolume = 100; }},
      {"a 5 ml syringe overfilled",
       [](M m) { m = Tray(), m.Autosampler.SyringeVolume = 5, m.Autosampler.SampleVolume = 5001; }},
      {"fill speed 40", [](M m) { m = Tray(), m.Autosampler.FillSpeed = 40; }},
      {"several faults",
       [](M m) {
         m = Tray();
         m.Autosampler.DispenseSpeed = 41;
         m.Autosampler.BackFlowVolume = 400;
         m.Autosampler.AirDryTime = -1;
       }},
      {"standard and blank in one tube", [](M m) { m = Tray(), m.Autosampler.BlankTube = 1; }},
      {"blank among the samples",
       [](M m) { m = Tray(), m.Autosampler.HasStandard = false, m.Autosampler.BlankTube = 6; }},
      {"negative standard frequency", [](M m) { m = Tray(), m.Autosampler.StandardFreq = -1; }},
      {"fewer tubes than colours", [](M m) { m = Tray(), m.Autosampler.EndingTube = 6; }},
      {"flush beyond the syringe", [](M m) { m = Tray(), m.Autosampler.FlushTime = 10001; }},
  };
}

struct Outcome {
  int exitCode = -1;
  std::string out;
};

Outcome Finish(QProcess& p) {
  EXPECT_TRUE(p.waitForFinished(60000));
  return {p.exitCode(), p.readAllStandardOutput().toStdString()};
}

TEST(MethodAgreement, TheCheckAndTheRunAgreeOnEveryMethod) {
  e2e::ensureApplication();
  const std::string dir = e2e::makeWorkspace("e2e-agree");
  e2e::WriteTrayPreferences(dir);
  testing::writeFile(dir + "answers.txt", "no\nquit\n");
  const std::vector<Case> cases = Cases();
  std::vector<std::string> paths;
  for (const Case& c : cases) {
    MethodSettings method = Cuvette();
    c.change(method);
    paths.push_back(dir + "METHODS/M" + std::to_string(paths.size() + 1) + ".MTH");
    ASSERT_TRUE(WriteMethodFile(method, paths.back()));
    std::string text = testing::readFile(paths.back());
    for (const auto& [from, to] : c.text) text = Replaced(text, from, to);
    testing::writeFile(paths.back(), text + c.appended);
  }
  const QStringList start{"--start-dir", QString::fromStdString(dir)};
  int passed = 0;
  int refused = 0;
  // A few methods at a time: each is checked and run side by side.
  constexpr std::size_t kTogether = 6;
  for (std::size_t first = 0; first < cases.size(); first += kTogether) {
    const std::size_t end = std::min(cases.size(), first + kTogether);
    std::vector<std::unique_ptr<QProcess>> checks, runs;
    for (std::size_t k = first; k < end; ++k) {
      const QString method = QString::fromStdString(paths[k]);
      const QString data = QString::fromStdString(dir + "DATA/M" + std::to_string(k) + ".FIX");
      checks.push_back(std::make_unique<QProcess>());
      checks.back()->start(ZORVEL_RUN_EXECUTABLE, start + QStringList{"--check-method", method});
      runs.push_back(std::make_unique<QProcess>());
      runs.back()->start(
          ZORVEL_RUN_EXECUTABLE,
          start + QStringList{"--method", method, "--data", data, "--answers",
                              QString::fromStdString(dir + "answers.txt"), "--port", "COM1=sim",
                              "--port", "COM2=sim", "--port", "COM3=sim"});
    }
    for (std::size_t k = first; k < end; ++k) {
      SCOPED_TRACE(cases[k].name);
      const Outcome checked = Finish(*checks[k - first]);
      const Outcome ran = Finish(*runs[k - first]);
      if (checked.exitCode == 0) {
        ++passed;
        EXPECT_EQ(checked.out, "Method is valid.\n");
        EXPECT_EQ(ran.exitCode, 0) << ran.out;
        EXPECT_EQ(ran.out.find("No run started."), std::string::npos) << ran.out;
        continue;
      }
      ++refused;
      EXPECT_EQ(checked.exitCode, 1) << checked.out;
      EXPECT_EQ(ran.exitCode, 2) << ran.out;
      const std::string firstLine = checked.out.substr(0, checked.out.find('\n'));
      EXPECT_NE(ran.out.find("No run started.  " + firstLine), std::string::npos)
          << checked.out << "\n--\n"
          << ran.out;
    }
  }
  // The table holds both kinds, and each range end on both sides.
  EXPECT_GE(passed, 12);
  EXPECT_GE(refused, 20);
}

}  // namespace
}  // namespace zorvel

#endif
