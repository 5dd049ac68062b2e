#include "core/instruments/fluorimeter.h"

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string tenths(double value) {
  return text::fixed(static_cast<float>(value), 1);
}

}  // namespace

std::string SettingCommand(const FluorimeterSetting& s) {
  using Kind = FluorimeterSetting::Kind;
  switch (s.kind) {
    case Kind::FreeRunMode:
      return "$RE 0";
    case Kind::FluorescenceMode:
      return "$PH 0";
    case Kind::LampOn:
      return "$ES 0";
    case Kind::Filter:
      return fluor::FilterCommand(static_cast<int>(s.value));
    case Kind::PmtVoltage:
      return fluor::PmtVoltageCommand(static_cast<int>(s.value));
    case Kind::ScanSpeed:
      return fluor::ScanSpeedCommand(static_cast<float>(s.value));
    case Kind::ExcitationSlit:
      return fluor::ExcitationSlitCommand(static_cast<float>(s.value));
    case Kind::EmissionSlit:
      return fluor::EmissionSlitCommand(static_cast<float>(s.value));
    case Kind::Monochromators:
      return fluor::MonochromatorCommand(static_cast<float>(s.value), static_cast<float>(s.second));
    case Kind::TimeInterval:
      return "$TI " + text::plainSingle(static_cast<float>(s.value));
    case Kind::ResponseTime:
      return "$RT " + tenths(s.value);
  }
  return {};
}

Fluorimeter::Fluorimeter(SerialLine& line, Clock& clock, Operator& person, LinkState& links,
                         int preference, StatusReader reader)
    : model_(FluorimeterModelFor(preference)),
      link_(line, clock, person, links, preference),
      links_(links),
      reader_(reader) {}

LinkFailure Fluorimeter::send(std::string_view command, std::string_view statusText) {
  return link_.IssueCommand(command, reader_, statusText);
}

LinkFailure Fluorimeter::set(const FluorimeterSetting& setting, std::string_view statusText) {
  return send(SettingCommand(setting), statusText);
}

LinkFailure Fluorimeter::selectMonochromator(int which, std::string_view statusText) {
  links_.LinkTimeoutCount = 0;
  return send("$MX " + text::plain(which), statusText);
}

LinkFailure Fluorimeter::limits(std::string_view lower, std::string_view upper) {
  links_.LinkTimeoutCount = 0;
  LinkFailure failure = send(lower, "Set Lower Limit");
  if (failure != LinkFailure::None) return failure;
  links_.LinkTimeoutCount = 0;
  return send(upper, "Set Upper Limit");
}

LinkFailure Fluorimeter::restoreFullRange() {
  LinkFailure failure = selectMonochromator(0, "Set Monochromators");
  if (failure == LinkFailure::None) failure = limits("$AL 200", "$AH 800");
  if (failure == LinkFailure::None) failure = selectMonochromator(1, "Set Monochromator");
  if (failure == LinkFailure::None) failure = limits("$AL 200", "$AH 900");
  if (failure == LinkFailure::None) failure = selectMonochromator(0, "Set Monochromators");
  return failure;
}

LinkFailure Fluorimeter::setUpSynchronousScan(float lowerNm, float upperNm, float offsetNm) {
  LinkFailure failure = selectMonochromator(0, "Set Monochromators");
  if (failure == LinkFailure::None) {
    failure = limits(fluor::LowerLimitCommand(lowerNm), fluor::UpperLimitCommand(upperNm));
  }
  if (failure == LinkFailure::None) failure = selectMonochromator(1, "Set Monochromator");
  if (failure == LinkFailure::None) {
    failure = limits(fluor::LowerLimitCommand(lowerNm + offsetNm),
                     fluor::UpperLimitCommand(upperNm + offsetNm));
  }
  if (failure == LinkFailure::None) {
    links_.LinkTimeoutCount = 0;
    failure = send("$MQ 0", "Set Monohcromator Qualifier");
  }
  if (failure == LinkFailure::None) failure = selectMonochromator(2, "Set Monochromators");
  return failure;
}

LinkFailure Fluorimeter::startSynchronousScan() {
  int failed = 0;
  for (;;) {
    links_.LinkTimeoutCount = 0;
    LinkFailure failure =
        link_.IssueCommand("$SC 1", StatusReader::Scan, "Retrieving Scan Status Record");
    if (failure != LinkFailure::None) return failure;
    const StatusRecord record = link_.ReadStatusRecord();
    if (OutcomeOf(record.failure) == LinkOutcome::Stop) return record.failure;
    if (!record.failed()) return LinkFailure::None;
    if (++failed < FluorimeterLink::kRefusalBound) continue;
    failed = 0;
    if (!link_.RetryAfterRepeats("answered \"$SC 1\" " +
                                 std::to_string(FluorimeterLink::kRefusalBound) +
                                 " times with a status record that did not end in \"0000\"")) {
      return LinkFailure::Abandoned;
    }
  }
}

Reading Fluorimeter::read(double excitationNm, double emissionNm, float readTimeS,
                          fluor::AcceptanceRule rule) {
  return link_.TakeReading(excitationNm, emissionNm, readTimeS, rule);
}

TimeDriveHeaderReply Fluorimeter::startTimeDrive(int points, std::string_view statusText) {
  const LinkFailure failure = send(fluor::TimeDriveCommand(points), statusText);
  if (failure != LinkFailure::None) return {{}, failure};
  return link_.ReadTimeDriveHeader();
}

}  // namespace zorvel
