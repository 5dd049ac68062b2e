#include "core/method/demo_methods.h"

#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/method/method_defaults.h"
#include "core/method/method_file.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr int kRackRows = 8;
constexpr int kRackColumns = 12;
constexpr float kTubePitchMm = 18.0f;
constexpr float kFirstTubeXMm = 20.0f;
constexpr float kFirstTubeYMm = 20.0f;
constexpr float kRinseXMm = 245.0f;
constexpr float kRinseYMm = 20.0f;

// Five dye colours spread over the spectrum: colour index, excitation and emission (nm).
struct DemoPair {
  std::int16_t colour;
  float exNm;
  float emNm;
};
constexpr DemoPair kDemoPairs[] = {
    {1, 380, 440}, {4, 493, 515}, {6, 537, 560}, {8, 578, 600}, {10, 617, 640}};

MethodSettings baseMethod(const AppState& state) {
  AppState scratch;
  scratch.Tray = state.Tray;
  SetMethodDefaults(scratch);
  MethodSettings m = scratch.Method;
  m.Operator = "demo";
  m.NoColors = static_cast<std::int16_t>(std::size(kDemoPairs));
  m.NoPures = m.NoColors;
  // Short reads keep a demonstration run brisk on the simulated instrument.
  m.ReadTime = 1;
  m.ReadTimePures = 2;
  int row = 1;
  for (const DemoPair& p : kDemoPairs) {
    m.FixedPairs.colour(row++) = ColourDeclaration{p.exNm, p.emNm, 5, 5, p.colour};
  }
  return m;
}

bool writeOne(Operator& op, const std::string& path, const MethodSettings& m) {
  if (WriteMethodFile(m, path)) return true;
  op.message("Cannot write " + path + ".", "ZORVEL ERROR", BoxIcon::Exclamation);
  return false;
}

}  // namespace

std::string DemoTrayGeometryText() {
  auto record = [](float x, float y, int number) {
    return text::plainSingle(x) + "," + text::plainSingle(y) + "," + text::plain(number) + "\r\n";
  };
  std::string out = record(kRinseXMm, kRinseYMm, 0);
  for (int row = 0; row < kRackRows; ++row) {
    for (int column = 0; column < kRackColumns; ++column) {
      out += record(kFirstTubeXMm + kTubePitchMm * static_cast<float>(column),
                    kFirstTubeYMm + kTubePitchMm * static_cast<float>(row),
                    row * kRackColumns + column + 1);
    }
  }
  return out;
}

bool WriteDemoMethods(AppState& state, Operator& op, const std::string& methodsDir) {
  bool ok = true;

  MethodSettings fixed = baseMethod(state);
  fixed.StudyId = "Demonstration: five colours by cuvette";
  ok = writeOne(op, JoinPath(methodsDir, kDemoFixedMethod), fixed) && ok;

  MethodSettings both = baseMethod(state);
  both.Synch = true;
  both.StudyId = "Demonstration: five colours and a synchronous scan by cuvette";
  both.SynchScan = SynchScanSettings{4, 4, 360, 700, 15, 0.5f};
  ok = writeOne(op, JoinPath(methodsDir, kDemoFixedSynchMethod), both) && ok;

  const std::string trayPath = JoinPath(methodsDir, kDemoTrayGeometry);
  if (!WriteWholeFile(trayPath, DemoTrayGeometryText())) {
    op.message("Cannot write " + trayPath + ".", "ZORVEL ERROR", BoxIcon::Exclamation);
    ok = false;
  }
  MethodSettings tray = baseMethod(state);
  tray.DeliveryMethod = Delivery::Autosampler;
  tray.StudyId = "Demonstration: five colours from the 96-tube rack";
  SetAutosamplerDefaults(tray.Autosampler, static_cast<std::int16_t>(kRackRows * kRackColumns));
  tray.Autosampler.EndingTube = 24;
  tray.Autosampler.TrayDescriptorFile = trayPath;
  ok = writeOne(op, JoinPath(methodsDir, kDemoTrayMethod), tray) && ok;
  return ok;
}

}  // namespace zorvel
