#pragma once

#include "core/method/method_settings.h"

// The methods behind the golden method files, built field by field.
namespace zorvel::testing {

inline MethodSettings FixedCuvetteMethod() {
  MethodSettings m;
  m.Fixed = true;
  m.Spillover = true;
  m.NoColors = 3;
  m.NoPures = 3;
  m.ReadTime = 1;
  m.ReadTimePures = 10;
  m.ScanSpeed = 480;
  m.FilterSetting = 2;
  m.PMTVoltage = 820;
  m.AmtSolvent = 2.5f;
  m.Repetitions = 1;
  m.Operator = "JS";
  m.StudyId = "Liver extracts, batch 7";
  m.FixedPairs[1] = {380, 440, 5, 5, 1};
  m.FixedPairs[2] = {493, 515, 5, 5, 4};
  m.FixedPairs[3] = {617.5f, 640, 12.5f, 2.5f, 10};
  return m;
}

inline MethodSettings FixedSynchCuvetteMethod() {
  MethodSettings m;
  m.Fixed = true;
  m.Synch = true;
  m.Spillover = true;
  m.NoColors = 2;
  m.NoPures = 2;
  m.ReadTime = 0.5f;
  m.ReadTimePures = 10;
  m.ScanSpeed = -240;
  m.FilterSetting = 8;
  m.PMTVoltage = -1;
  m.PrintResults = true;
  m.AmtSolvent = 2;
  m.Repetitions = 3;
  m.FileType = 2;
  m.Operator = " M. Dupr\xe9 ";
  m.StudyId = "Gill tissue";
  m.FixedPairs[1] = {340, 400, 10, -1, 0};
  m.FixedPairs[2] = {682, 705.25f, 15, 20, 13};
  m.SynchScan = {4, 4, 330, 720, 15, 0.5f};
  return m;
}

inline MethodSettings SynchAutosamplerMethod() {
  MethodSettings m;
  m.Synch = true;
  m.Spillover = true;
  m.NoColors = 1;
  m.NoPures = 1;
  m.ReadTime = 1;
  m.ReadTimePures = 10;
  m.ScanSpeed = 1500;
  m.FilterSetting = 7;
  m.PMTVoltage = 775;
  m.DeliveryMethod = 2;
  m.AmtSolvent = 2;
  m.Repetitions = 1;
  m.Operator = "robot";
  m.StudyId = "Plate 12";
  m.SynchScan = {2.5f, 20, 250, 600, 30, 0.1f};
  AutosamplerSettings& a = m.Autosampler;
  a.SampleVolume = 750;
  a.AirVolume = 500;
  a.BackFlowVolume = 25;
  a.FillSpeed = 15;
  a.DispenseSpeed = 10;
  a.FillSpeedFlush = 10;
  a.DispenseSpeedFlush = 10;
  a.FlushTime = 8000;
  a.AirDryTime = 15;
  a.SyringeVolume = 5;
  a.Resolution = 2;
  a.StartingTube = 5;
  a.EndingTube = 96;
  a.HasStandard = true;
  a.StandardTube = 1;
  a.StandardFreq = 50;
  a.HasBlank = false;
  a.BlankTube = 2;
  a.BlankFreq = 50;
  a.SampleDisposition = 2;
  a.RinseHeight = 70;
  a.StandardHeight = 100;
  a.TubeHeight = 105;
  a.BackFillHeight = 70;
  a.StandardBFHeight = 30;
  a.TrayDescriptorFile = "/lab/METHODS/tray96.tgf";
  a.PumpDirection = 2;
  return m;
}

}  // namespace zorvel::testing
