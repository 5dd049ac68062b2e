#include "core/run/acquisition.h"

#include <algorithm>
#include <cmath>

#include "core/instruments/gap_marker.h"
#include "core/run/wavelength_band.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

// The scan's stream has ended once the line has been quiet this long.
constexpr double kScanQuietS = 0.5;
// Scan positions are sums of the interval; this much below the upper limit still counts as
// below it, and no more, so that rounding never adds or drops a point.
constexpr double kPositionSlackNm = 1e-6;

}  // namespace

Acquisition::Acquisition(Fluorimeter& fluorimeter, SerialLine& line, const MethodSettings& method,
                         LinkState& links, RunView& view,
                         std::function<void(const std::string&)> showStep)
    : fluorimeter_(fluorimeter),
      link_(fluorimeter.link()),
      line_(line),
      method_(method),
      links_(links),
      view_(view),
      showStep_(std::move(showStep)) {}

void Acquisition::forgetWavelengths() {
  exWl_ = emWl_ = -1;
}
void Acquisition::forgetSlits() {
  exSlit_ = emSlit_ = -1;
}

void Acquisition::setVerticalScale(double yMin, double yMax) {
  yMin_.store(yMin);
  yMax_.store(yMax);
}

std::span<const float> Acquisition::readings() const {
  const int n = std::clamp<int>(method_.NoColors, 0, kMaxColours);
  return std::span<const float>(readings_).subspan(1, static_cast<std::size_t>(n));
}

bool Acquisition::done(LinkFailure failure) {
  failure_ = failure;
  return failure_ == LinkFailure::None;
}

bool Acquisition::send(const FluorimeterSetting& setting, const std::string& title) {
  links_.LinkTimeoutCount = 0;
  return done(fluorimeter_.set(setting, title));
}

bool Acquisition::setSlits(float exSlitNm, float emSlitNm, const char* exTitle,
                           const char* emTitle) {
  if (exSlitNm != exSlit_) {
    if (!send(FluorimeterSetting::ExSlit(exSlitNm), exTitle)) return false;
    exSlit_ = exSlitNm;
  }
  if (emSlitNm != emSlit_) {
    if (!send(FluorimeterSetting::EmSlit(emSlitNm), emTitle)) return false;
    emSlit_ = emSlitNm;
  }
  return true;
}

bool Acquisition::ReadFixed(float readTimeS, int gridRow) {
  if (method_.Synch && !done(fluorimeter_.restoreFullRange())) return false;
  for (int i = 1; i <= method_.NoColors && i <= kMaxColours; ++i) {
    const ColourDeclaration& pair = method_.FixedPairs.colour(i);
    if (!setSlits(pair.ExSl, pair.EmSl, "Setting Excitation Slit", "Setting Emission Slit")) {
      return false;
    }
    if (pair.ExWl != exWl_ || pair.EmWl != emWl_) {
      if (!send(FluorimeterSetting::Wavelengths(pair.ExWl, pair.EmWl), "Setting Monochromators")) {
        return false;
      }
      exWl_ = pair.ExWl;
      emWl_ = pair.EmWl;
    }
    if (!ReadIntensity(i, readTimeS, gridRow)) return false;
  }
  return true;
}

bool Acquisition::ReadIntensity(int colour, float readTimeS, int gridRow) {
  const ColourDeclaration& pair = method_.FixedPairs.colour(colour);
  if (showStep_) showStep_("Reading Sample");
  links_.LinkTimeoutCount = 0;
  const Reading reading =
      fluorimeter_.read(pair.ExWl, pair.EmWl, readTimeS, fluor::AcceptanceRule::WithinTolerance);
  failure_ = reading.failure;
  if (failure_ != LinkFailure::None) return false;
  const float value = static_cast<float>(reading.intensity);
  readings_[static_cast<std::size_t>(colour)] = value;
  view_.setCell(gridRow, colour, text::fixed(value, 1));
  return true;
}

bool Acquisition::configureScan() {
  const SynchScanSettings& scan = method_.SynchScan;
  return setSlits(scan.ExSl, scan.EmSl, "Resetting Excitation slit", "Resetting Emission slit") &&
         done(fluorimeter_.setUpSynchronousScan(scan.LowerLimit, scan.UpperLimit,
                                                scan.MonochromatorOffset));
}

bool Acquisition::ScanSynch(bool configure, const std::string& scanningText) {
  const SynchScanSettings& scan = method_.SynchScan;
  view_.clearStatus();
  if (configure && !configureScan()) return false;
  view_.clearSpectra();
  view_.setSpectraScale(scan.LowerLimit, scan.UpperLimit, yMin_.load(), yMax_.load());
  failure_ = link_.PrepareScanBuffer();
  if (failure_ != LinkFailure::None) return false;
  if (!done(fluorimeter_.startSynchronousScan())) return false;
  view_.clearStatus();
  view_.showStatus(scanningText);
  if (!AcquireScan()) return false;
  // The excitation side ends the scan at the upper limit and the emission side the offset
  // above it; the cache holds where they really are, so the next fixed reading sends its
  // first pair unless it happens to be exactly there.
  exWl_ = scan.UpperLimit;
  emWl_ = scan.UpperLimit + scan.MonochromatorOffset;
  return true;
}

bool Acquisition::AcquireScan() {
  const SynchScanSettings& scan = method_.SynchScan;
  const double lower = scan.LowerLimit;
  const double upper = scan.UpperLimit;
  const double interval = scan.ScanDataInterval;
  points_.clear();
  maximum_ = 0;
  double x = lower - interval;
  // Every point the instrument sends is kept, however many the range holds, so that the stream
  // is read to its end and the next command meets only its own status.
  std::size_t strays = 0;
  while (x < upper - kPositionSlackNm) {
    const TerminatedText token = link_.ReadNumberToken();
    failure_ = token.failure;
    if (failure_ != LinkFailure::None) return false;
    const bool empty = token.text.empty();
    const double value = empty ? 0.0 : fluor::FieldValue(token.text) / 1000.0;
    // Stray characters and gap markers are passed over, but not without end.
    if (empty || IsGapMarker(value)) {
      if (++strays < FluorimeterLink::kLongestReply) continue;
      strays = 0;
      if (link_.RetryAfterRepeats("sent " + std::to_string(FluorimeterLink::kLongestReply) +
                                  " characters during the scan that are no scan point")) {
        continue;
      }
      failure_ = LinkFailure::Abandoned;
      return false;
    }
    strays = 0;
    x = lower + static_cast<double>(points_.size()) * interval;
    points_.push_back(static_cast<float>(value));
    maximum_ = std::max(maximum_, static_cast<float>(value));
    view_.plotPoint(x, value, BandPaletteIndex(WavelengthBand(x)));
    view_.setProgress(static_cast<int>((x - lower) / (upper - lower) * 100.0));
  }
  if (autoHeight_.load()) {
    yMin_.store(0);
    yMax_.store(maximum_ > 0 ? maximum_ : 1);
    plotAll();
  }
  view_.clearStatus();
  view_.showStatus("Maximum Synch Value: " + text::fixed(maximum_, 3));
  drainInput();
  return true;
}

void Acquisition::plotAll() {
  const SynchScanSettings& scan = method_.SynchScan;
  view_.clearSpectra();
  view_.setSpectraScale(scan.LowerLimit, scan.UpperLimit, yMin_.load(), yMax_.load());
  for (std::size_t k = 0; k < points_.size(); ++k) {
    const double x = scan.LowerLimit + static_cast<double>(k) * scan.ScanDataInterval;
    view_.plotPoint(x, points_[k], BandPaletteIndex(WavelengthBand(x)));
  }
}

void Acquisition::drainInput() {
  // What follows the last point (its separator, a closing status, points past the range) is
  // not part of the scan; the next command must not take it for its status.
  // Points past the method's range come at the scan's pace and last no longer than the scan
  // itself would (the instrument may space them more finely than the method's interval).
  const SynchScanSettings& scan = method_.SynchScan;
  const double nmPerS = std::max(std::fabs(static_cast<double>(method_.ScanSpeed)) / 60.0, 0.1);
  const double scanS = std::fabs(scan.UpperLimit - scan.LowerLimit) / nmPerS;
  link_.DrainUntilQuiet(kScanQuietS, scanS + 2 * kScanQuietS);
}

}  // namespace zorvel
