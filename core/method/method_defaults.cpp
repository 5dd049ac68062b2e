#include "core/method/method_defaults.h"

#include "core/method/method_codes.h"

namespace zorvel {

void SetAutosamplerDefaults(AutosamplerSettings& a, std::int16_t tubeCount) {
  a.SampleVolume = 750;
  a.BackFlowVolume = 0;
  a.AirVolume = 500;
  a.DispenseSpeed = 10;
  a.DispenseSpeedFlush = 10;
  a.FlushTime = 8000;
  a.FillSpeed = 15;
  a.FillSpeedFlush = 10;
  a.AirDryTime = 15;
  a.SyringeVolume = 10;
  a.PumpDirection = 1;
  a.Resolution = PumpResolution::Standard;
  a.HasStandard = true;
  a.StandardTube = 1;
  a.StandardFreq = 50;
  a.HasBlank = true;
  a.BlankTube = 2;
  a.BlankFreq = 50;
  a.StartingTube = 5;
  a.EndingTube = tubeCount;
  a.SampleDisposition = Disposition::ThrowAway;
  a.RinseHeight = 70;
  a.StandardHeight = 100;
  a.TubeHeight = 105;
  a.BackFillHeight = 70;
  a.StandardBFHeight = 30;
}

void SetAutosamplerDefaults(AppState& state) {
  SetAutosamplerDefaults(state.Method.Autosampler, state.Tray.TubeCount);
}

void SetMethodDefaults(AppState& state) {
  MethodSettings& m = state.Method;
  m.Fixed = true;
  m.Synch = false;
  m.Spillover = true;
  m.PMTVoltage = 820;
  m.FilterSetting = EmissionFilter::Cutoff350;
  m.NoColors = 1;
  m.NoPures = 1;
  m.ScanSpeed = 480;
  m.ReadTime = 1;
  m.ReadTimePures = 10;
  m.SynchScan = SynchScanSettings{4, 4, 360, 700, 15, 0.5f};
  m.FileType = DataFileType::DosWindows;
  m.DeliveryMethod = Delivery::Cuvette;
  m.PrintResults = false;
  m.AmtSolvent = 2;
  m.Repetitions = 1;
  m.Operator.clear();
  m.StudyId.clear();
  for (ColourDeclaration& pair : m.FixedPairs) pair = ColourDeclaration{0, 0, 0, 0, 0};
  state.LineEnding = LineEndingFor(m.FileType);
  SetAutosamplerDefaults(state);
}

}  // namespace zorvel
