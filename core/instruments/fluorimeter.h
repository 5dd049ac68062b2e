#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/instruments/fluorimeter_link.h"
#include "core/instruments/fluorimeter_model.h"

namespace zorvel {

// One setting of the fluorimeter in its own terms. The windows keep their set-up sequences as
// lists of these; only the driver knows the command each one is on the line.
struct FluorimeterSetting {
  enum class Kind {
    FreeRunMode,
    FluorescenceMode,
    LampOn,
    Filter,          // value: the filter wheel position
    PmtVoltage,      // value: volts, -1 the instrument's own default
    ScanSpeed,       // value: nm/min
    ExcitationSlit,  // value: nm
    EmissionSlit,    // value: nm
    Monochromators,  // value: excitation nm, second: emission nm
    TimeInterval,    // value: seconds between time-drive points
    ResponseTime,    // value: seconds
  };
  Kind kind;
  double value = 0;
  double second = 0;

  static FluorimeterSetting FreeRun() { return {Kind::FreeRunMode}; }
  static FluorimeterSetting Fluorescence() { return {Kind::FluorescenceMode}; }
  static FluorimeterSetting Lamp() { return {Kind::LampOn}; }
  static FluorimeterSetting Filter(int position) { return {Kind::Filter, double(position)}; }
  static FluorimeterSetting Voltage(int volts) { return {Kind::PmtVoltage, double(volts)}; }
  static FluorimeterSetting Speed(float nmPerMin) { return {Kind::ScanSpeed, nmPerMin}; }
  static FluorimeterSetting ExSlit(float nm) { return {Kind::ExcitationSlit, nm}; }
  static FluorimeterSetting EmSlit(float nm) { return {Kind::EmissionSlit, nm}; }
  static FluorimeterSetting Wavelengths(float exNm, float emNm) {
    return {Kind::Monochromators, exNm, emNm};
  }
  static FluorimeterSetting Interval(float s) { return {Kind::TimeInterval, s}; }
  static FluorimeterSetting Response(float s) { return {Kind::ResponseTime, s}; }
};

// The command that makes the setting, as it goes on the line without its CR.
std::string SettingCommand(const FluorimeterSetting& setting);

// The fluorimeter as the windows drive it: settings, the monochromators' ranges, the
// synchronous scan's set-up and status, readings and the time drive, on the model the
// preferences name. Every operation sends its command until the status reader accepts it and
// returns None, or the failure that ended the conversation; the status text given is what the
// window shows meanwhile. The link below it is there for the streams (scan points, time-drive
// numbers) the caller reads itself.
class Fluorimeter {
 public:
  Fluorimeter(SerialLine& line, Clock& clock, Operator& person, LinkState& links, int preference,
              StatusReader reader = StatusReader::Command);

  const FluorimeterModel& model() const { return model_; }
  FluorimeterLink& link() { return link_; }
  bool halted() const { return link_.halted(); }
  void setStatusText(std::function<void(const std::string&)> show) {
    link_.setStatusText(std::move(show));
  }

  LinkFailure open() { return link_.OpenFluorimeterPort(); }
  LinkFailure set(const FluorimeterSetting& setting, std::string_view statusText);

  // The monochromators' full ranges for fixed readings, after a scan narrowed them; the link's
  // time-out count is cleared before each command.
  LinkFailure restoreFullRange();
  // Both monochromators limited to the scan's range (the emission side `offsetNm` above) and
  // coupled for a synchronous scan; the count is cleared before each command.
  LinkFailure setUpSynchronousScan(float lowerNm, float upperNm, float offsetNm);
  // Starts the scan: asks for the scan status record until it ends in "0000". The points
  // follow on the line.
  LinkFailure startSynchronousScan();
  // One reading at the wavelengths; the slits and monochromators are already set.
  Reading read(double excitationNm, double emissionNm, float readTimeS, fluor::AcceptanceRule rule);
  // Starts a time drive of `points` points and reads its header.
  TimeDriveHeaderReply startTimeDrive(int points, std::string_view statusText);

 private:
  LinkFailure send(std::string_view command, std::string_view statusText);
  LinkFailure selectMonochromator(int which, std::string_view statusText);
  LinkFailure limits(std::string_view lower, std::string_view upper);

  const FluorimeterModel& model_;
  FluorimeterLink link_;
  LinkState& links_;
  StatusReader reader_;
};

}  // namespace zorvel
