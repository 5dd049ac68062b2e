#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/instruments/fluorimeter.h"
#include "core/run/run_view.h"
#include "core/state/method_settings.h"

namespace zorvel {

// The measurements of one cuvette: a fixed-wavelength reading of every declared colour and the
// synchronous scan. It remembers the slits and wavelengths last sent so that only changes go
// to the instrument, checks each reading was taken where it was asked for, fills the grid
// row's cells and plots the scan. Every call returns false when the conversation with the
// instrument is over (lost port, gave up, halted); failure() says which.
class Acquisition {
 public:
  Acquisition(Fluorimeter& fluorimeter, SerialLine& line, const MethodSettings& method,
              LinkState& links, RunView& view, std::function<void(const std::string&)> showStep);

  // Unknown wavelengths (window load) and slits (first reading of a run): the next reading
  // sends them whatever they are.
  void forgetWavelengths();
  void forgetSlits();

  // Every colour 1..No.Colors into the grid row; the monochromator limits are restored first
  // when the method also scans.
  bool ReadFixed(float readTimeS, int gridRow);
  bool ReadIntensity(int colour, float readTimeS, int gridRow);
  // Sets the instrument up for the scan (when `configure`), asks for its status record, shows
  // `scanningText` and collects the points.
  bool ScanSynch(bool configure, const std::string& scanningText);
  bool AcquireScan();

  // The YMin/YMax entries and AutoHeight of the plot.
  // Safe from the window's thread while a scan is under way.
  void setVerticalScale(double yMin, double yMax);
  void setAutoHeight(bool on) { autoHeight_.store(on); }

  // Colours 1..No.Colors of the latest reading.
  std::span<const float> readings() const;
  const std::vector<float>& scanPoints() const { return points_; }
  LinkFailure failure() const { return failure_; }

 private:
  // One setting, LinkTimeoutCount cleared first; false when the conversation is over.
  bool send(const FluorimeterSetting& setting, const std::string& title);
  // Keeps the failure of an instrument step; false when it ended the conversation.
  bool done(LinkFailure failure);
  bool setSlits(float exSlitNm, float emSlitNm, const char* exTitle, const char* emTitle);
  bool configureScan();
  void plotAll();
  void drainInput();

  Fluorimeter& fluorimeter_;
  FluorimeterLink& link_;
  SerialLine& line_;
  const MethodSettings& method_;
  LinkState& links_;
  RunView& view_;
  std::function<void(const std::string&)> showStep_;

  std::array<float, kMaxColours + 1> readings_{};
  std::vector<float> points_;
  float maximum_ = 0;
  float exWl_ = -1, emWl_ = -1, exSlit_ = -1, emSlit_ = -1;
  std::atomic<double> yMin_{0}, yMax_{100};
  std::atomic<bool> autoHeight_{true};
  LinkFailure failure_ = LinkFailure::None;
};

}  // namespace zorvel
