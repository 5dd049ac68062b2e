#pragma once

#include <string_view>

namespace zorvel {

// The controls of the method editor (METHODFORM). Their names are the windows' object names.
enum class MethodControl {
  // Text boxes.
  Op_Box,
  sampid_box,
  AmtSolv_Box,
  swell_box,
  NumReps_Box,
  nColors_Box,
  RdTime_Box,
  RdTimePures_Box,
  ScnSpd_Box,
  PMTVoltage,
  ExSlSync_Box,
  EmSlSync_Box,
  ScanLL_Box,
  ScanUL_Box,
  ScanOff_Box,
  ScanDInt_Box,
  // Option groups (by option index) and check boxes (0 or 1).
  ScanType,
  Filter_grp,
  Voltage_grp,
  Delivery,
  FileType,
  Spillover_Box,
  UsePrn_Box,
  // Frames.
  STFrame,
  Synch_Box,
  PMTFrame,
  EFFrame,
  OFFrame,
  DMFrame,
  // Buttons.
  Colors_Button,
  ASSetup,
  Save,
  OKButton,
  // The tray-file label with its caption "Autosampler Geometry File:".
  TrayFile,
  // Anything else that can hold the focus.
  Other,
};

// The object name of a control ("nColors_Box"); "TrayFile_Label" for the tray file.
std::string_view ControlName(MethodControl control);

}  // namespace zorvel
