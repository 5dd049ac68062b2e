#include "core/autosampler/autosampler_check.h"

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

class WholeCheck {
 public:
  WholeCheck(AutosamplerSettings& s, std::int16_t tubeCount)
      : s_(s), tubeCount_(tubeCount), maxUl_(s.SyringeVolume * 1000) {}

  std::vector<AutosamplerFault> run(float& stepsPerMicrolitre, PumpSteps& steps) {
    stepsPerMicrolitre = StepsPerMicrolitreFor(s_);
    volumes();
    steps = ComputePumpSteps(s_, stepsPerMicrolitre);
    speedsAndTimes();
    if (s_.HasStandard) standard();
    return std::move(faults_);
  }

 private:
  void fault(AutosamplerField field, std::string message, BoxIcon icon = BoxIcon::Exclamation) {
    faults_.push_back(AutosamplerFault{field, std::move(message), icon});
  }

  void volumes() {
    if (s_.SampleVolume < 0 || s_.SampleVolume > maxUl_) {
      fault(AutosamplerField::SampleVolume,
            "Sample volume must be between 0 and " + whole(maxUl_) + ".");
    }
    if (s_.BackFlowVolume < 0) {
      fault(AutosamplerField::BackFlow, "Back Flow Volume must be greater than or equal to 0 ul.");
      s_.BackFlowVolume = 0;
    }
    if (s_.BackFlowVolume > s_.SampleVolume) {
      fault(AutosamplerField::BackFlow,
            "Back Flow Volume must be less than or equal to Sample Volume.");
      s_.BackFlowVolume = s_.SampleVolume;
    }
    if (s_.AirVolume < 0 || s_.AirVolume + s_.SampleVolume > maxUl_) {
      fault(AutosamplerField::AirVolume,
            "Air Volume must be a positive and when added to the sample volume be less than " +
                whole(maxUl_) + ".");
      s_.AirVolume = 0;
    }
  }

  void speed(AutosamplerField field, const char* name) {
    std::int16_t& v = FieldValue(s_, field);
    if (v >= 0 && v <= 40) return;
    fault(field, std::string(name) + " must be in the range of 0-40.");
    v = 0;
  }

  void speedsAndTimes() {
    speed(AutosamplerField::FillSpeed, "Fill Speed (Sample)");
    speed(AutosamplerField::DispenseSpeed, "Dispense Speed (Sample)");
    speed(AutosamplerField::FillSpeedFlush, "Fill Speed (Flush)");
    speed(AutosamplerField::DispenseSpeedFlush, "Dispense Speed (Flush)");
    if (s_.FlushTime < 0 || s_.FlushTime > maxUl_) {
      fault(AutosamplerField::FlushTime,
            "Flush volume must be between 0 and " + whole(maxUl_) + ".");
      s_.FlushTime = 0;
    }
    if (s_.AirDryTime < 0) {
      fault(AutosamplerField::AirDryTime, "Air Dry Time must be greater than or equal to 0.");
      s_.AirDryTime = 0;
    }
  }

  void standard() {
    if (s_.StandardTube < 1 || s_.StandardTube > tubeCount_) {
      fault(AutosamplerField::StandardTube,
            "Answer must be between 1 and " + whole(tubeCount_) + ".");
      s_.StandardTube = 1;
    }
    if (s_.StandardTube == s_.BlankTube) {
      fault(AutosamplerField::StandardTube,
            "You have the Standards and Blanks coming from the same tube.", BoxIcon::None);
      s_.StandardTube = static_cast<std::int16_t>(s_.StandardTube - 1);
    }
    if (s_.StandardTube >= s_.StartingTube && s_.StandardTube <= s_.EndingTube) {
      fault(AutosamplerField::StandardTube, "You have the Standard located in the Sample section.");
      s_.StandardTube = static_cast<std::int16_t>(s_.BlankTube - 1);
    }
    if (s_.EndingTube < s_.StartingTube) {
      fault(AutosamplerField::EndingTube,
            "The Ending Tube number is less than the Starting Tube number.");
      s_.EndingTube = s_.StartingTube;
    }
  }

  AutosamplerSettings& s_;
  std::int16_t tubeCount_;
  int maxUl_;
  std::vector<AutosamplerFault> faults_;
};

}  // namespace

std::vector<AutosamplerFault> CheckAutosamplerSettings(AutosamplerSettings& settings,
                                                       std::int16_t tubeCount,
                                                       float& stepsPerMicrolitre,
                                                       PumpSteps& steps) {
  return WholeCheck(settings, tubeCount).run(stepsPerMicrolitre, steps);
}

bool ValidateAutosamplerSettings(AutosamplerSettings& settings, std::int16_t tubeCount,
                                 float& stepsPerMicrolitre, PumpSteps& steps, Operator& person,
                                 const std::function<void(AutosamplerField)>& corrected) {
  const auto faults = CheckAutosamplerSettings(settings, tubeCount, stepsPerMicrolitre, steps);
  for (const AutosamplerFault& f : faults) {
    person.message(f.message, kZorvelErrorTitle, f.icon);
    if (corrected) corrected(f.field);
  }
  return faults.empty();
}

bool ValidateAutosamplerSettings(AutosamplerSettings& settings, std::int16_t tubeCount,
                                 float& stepsPerMicrolitre, PumpSteps& steps, Operator& person,
                                 const AutosamplerWindowOffer& offer) {
  if (ValidateAutosamplerSettings(settings, tubeCount, stepsPerMicrolitre, steps, person)) {
    return true;
  }
  if (!offer.everOpened && offer.openWindow) offer.openWindow();
  return false;
}

}  // namespace zorvel
