#include "core/method/method_controls.h"

#include <array>

namespace zorvel {

std::string_view ControlName(MethodControl control) {
  static constexpr std::array<std::string_view, 35> kNames = {
      "Op_Box",       "sampid_box",    "AmtSolv_Box",     "swell_box",      "NumReps_Box",
      "nColors_Box",  "RdTime_Box",    "RdTimePures_Box", "ScnSpd_Box",     "PMTVoltage",
      "ExSlSync_Box", "EmSlSync_Box",  "ScanLL_Box",      "ScanUL_Box",     "ScanOff_Box",
      "ScanDInt_Box", "ScanType",      "Filter_grp",      "Voltage_grp",    "Delivery",
      "FileType",     "Spillover_Box", "UsePrn_Box",      "STFrame",        "Synch_Box",
      "PMTFrame",     "EFFrame",       "OFFrame",         "DMFrame",        "Colors_Button",
      "ASSetup",      "Save",          "OKButton",        "TrayFile_Label", ""};
  return kNames.at(static_cast<std::size_t>(control));
}

}  // namespace zorvel
