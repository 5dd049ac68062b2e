#include "core/checks/intensity_presenter.h"

#include "core/instruments/patient_line.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr IntensityBox kBoxes[] = {
    IntensityBox::ExWl,   IntensityBox::EmWl,   IntensityBox::ExSl,      IntensityBox::EmSl,
    IntensityBox::RdTime, IntensityBox::ScnSpd, IntensityBox::PMTVoltage};

}  // namespace

IntensityPresenter::IntensityPresenter(AppState& state, Operator& op, Clock& clock,
                                       SerialLine& line, IntensityView& view)
    : state_(state), op_(op), clock_(clock), line_(line), view_(view) {}

void IntensityPresenter::opened() {
  settings_ = IntensitySettings{};
  for (IntensityBox box : kBoxes) view_.showBoxText(box, InitialBoxText(box));
  view_.showFilter(settings_.filter);
  view_.showVoltageOption(settings_.voltageOption);
  view_.setVoltageBoxVisible(true);
  view_.clearStatus();
}

bool IntensityPresenter::boxChanged(IntensityBox box, const std::string& text) {
  const IntensitySettings inForce = settings_;
  const BoxRuleOutcome outcome = ApplyBoxText(settings_, box, text);
  if (!outcome.message) return true;
  settings_ = inForce;
  op_.message(*outcome.message, "ZORVEL ERROR", BoxIcon::Exclamation);
  view_.selectBoxText(box);
  return false;
}

void IntensityPresenter::filterClicked(int position) {
  settings_.filter = static_cast<std::int16_t>(position);
  settings_.settingsChanged = true;
  settings_.filterChanged = true;
}

void IntensityPresenter::voltageClicked(int option, const std::string& pmtText) {
  settings_.voltageOption = option;
  settings_.settingsChanged = true;
  const bool selected = option == kVoltageSelected;
  settings_.pmtVolts = selected ? SelectedVoltage(pmtText) : std::int16_t{-1};
  view_.setVoltageBoxVisible(selected);
}

std::optional<double> IntensityPresenter::readSample() {
  // Settings the instrument would refuse are not sent: its error would only repeat with every
  // resend of the command.
  if (const auto refusal =
          RefuseReading(settings_, FluorimeterModelFor(state_.Prefs.Fluorimeter))) {
    op_.message(refusal->message + "  Please correct it before reading.", "ZORVEL ERROR",
                BoxIcon::Exclamation);
    view_.selectBoxText(refusal->box);
    return std::nullopt;
  }
  op_.setBusy(true);
  view_.clearStatus();
  Fluorimeter fluorimeter(line_, clock_, op_, state_.Links, state_.Prefs.Fluorimeter);
  LinkFailure failure = LinkFailure::None;
  if (settings_.settingsChanged) failure = setUpInstrument(fluorimeter);
  Reading reading;
  if (failure == LinkFailure::None) {
    // The port was closed after the last reading; what waits on it is left alone.
    if (!line_.isOpen()) line_.open(PatientLine::kSettings);
    status("Reading Sample");
    state_.Links.LinkTimeoutCount = 0;
    reading = fluorimeter.read(settings_.excitationNm, settings_.emissionNm, settings_.readTimeS,
                               fluor::AcceptanceRule::Exact);
    failure = reading.failure;
  }
  if (failure == LinkFailure::None) {
    status(text::fixed(reading.intensity, 3));
  } else {
    status("No reading: " + std::string(DescribeFailure(failure)));
  }
  op_.setBusy(false);
  line_.close();
  if (failure != LinkFailure::None) return std::nullopt;
  return reading.intensity;
}

LinkFailure IntensityPresenter::setUpInstrument(Fluorimeter& fluorimeter) {
  status("Setting-up Instrument...Please Wait");
  const LinkFailure opened = fluorimeter.open();
  if (opened != LinkFailure::None) return opened;
  fluorimeter.setStatusText([this](const std::string& text) { status(text); });
  for (const IntensitySetUpStep& step : IntensitySetUpSteps(settings_)) {
    state_.Links.LinkTimeoutCount = 0;
    const LinkFailure failure = fluorimeter.set(step.setting, step.statusText);
    if (failure != LinkFailure::None) return failure;
    if (step.setting.kind == FluorimeterSetting::Kind::Filter) settings_.filterChanged = false;
  }
  settings_.settingsChanged = false;
  return LinkFailure::None;
}

}  // namespace zorvel
