#pragma once

#include <string>

#include "core/app/app_state.h"

// The methods behind the golden data-set headers.
namespace zorvel::testing {

// Fixed and synchronous readings by cuvette, DOS/Windows line ends.
inline AppState LiverSetState() {
  AppState state;
  FillColourTables(state);
  MethodSettings& m = state.Method;
  m.Fixed = true;
  m.Synch = true;
  m.NoColors = 2;
  m.NoPures = 2;
  m.Operator = "JS";
  m.FilterSetting = 2;
  m.PMTVoltage = 820;
  m.StudyId = "Liver extracts";
  m.AmtSolvent = 2.5f;
  m.ScanSpeed = 480;
  m.ReadTime = 1;
  m.ReadTimePures = 10;
  m.FixedPairs[1] = {493, 515, 5, 5, 4};
  m.FixedPairs[2] = {617.5f, 640, 12.5f, 2.5f, 10};
  m.SynchScan = {4, 4, 360, 700, 15, 0.5f};
  state.LineEnding = "\r\n";
  state.DataSet.MethodFilePath = "/lab/METHODS/LIVER.MTH";
  return state;
}

// Fixed and synchronous readings by autosampler, Macintosh line ends.
inline AppState RackSetState() {
  AppState state;
  FillColourTables(state);
  MethodSettings& m = state.Method;
  m.Fixed = true;
  m.Synch = true;
  m.NoColors = 1;
  m.NoPures = 1;
  m.Operator = "AS";
  m.FilterSetting = 7;
  m.PMTVoltage = -1;
  m.StudyId = "Rack A";
  m.AmtSolvent = 2;
  m.ScanSpeed = -240;
  m.ReadTime = 0.5f;
  m.ReadTimePures = 10;
  m.DeliveryMethod = 2;
  m.FileType = 2;
  m.FixedPairs[1] = {340, 400, 10, 10, 0};
  m.SynchScan = {5, 5, 300, 500, 15, 1};
  state.LineEnding = "\r";
  state.DataSet.MethodFilePath = "/lab/METHODS/RACK.MTH";
  return state;
}

// A golden header with its data directory filled in.
inline std::string WithDirectory(std::string text, const std::string& directory) {
  for (std::size_t at = text.find("@DIR@"); at != std::string::npos; at = text.find("@DIR@", at))
    text.replace(at, 5, directory);
  return text;
}

}  // namespace zorvel::testing
