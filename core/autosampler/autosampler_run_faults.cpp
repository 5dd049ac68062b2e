#include <algorithm>

#include "core/autosampler/autosampler_check.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

bool dependsOnSyringe(AutosamplerField field) {
  return field == AutosamplerField::SampleVolume || field == AutosamplerField::AirVolume ||
         field == AutosamplerField::FlushTime;
}

// The tube range the tray run walks, within the tray.
void tubeRange(const AutosamplerSettings& s, int tubes, bool endingReported,
               std::vector<std::string>& faults) {
  const bool startFits = s.StartingTube >= 1 && s.StartingTube <= tubes;
  if (!startFits) {
    faults.push_back("Starting Tube " + whole(s.StartingTube) + " must be between 1 and " +
                     whole(tubes) + " (the tubes of the tray).");
  }
  const int lowest = startFits ? s.StartingTube : 1;
  if (endingReported || (s.EndingTube >= lowest && s.EndingTube <= tubes)) return;
  faults.push_back("Ending Tube " + whole(s.EndingTube) + " must be between " + whole(lowest) +
                   (startFits ? " (the Starting Tube)" : "") + " and " + whole(tubes) +
                   " (the tubes of the tray).");
}

// The blank obeys the standard's placing rules; the whole check above covers the standard.
void blank(const AutosamplerSettings& s, int tubes, std::vector<std::string>& faults) {
  if (s.BlankTube < 1 || s.BlankTube > tubes) {
    faults.push_back("Blank tube " + whole(s.BlankTube) + " must be between 1 and " + whole(tubes) +
                     ".");
  }
  if (s.BlankTube >= s.StartingTube && s.BlankTube <= s.EndingTube)
    faults.push_back("You have the Blank located in the Sample section.");
}

}  // namespace

std::vector<std::string> AutosamplerRunFaults(const AutosamplerSettings& settings,
                                              std::int16_t tubeCount) {
  if (tubeCount < 1) {
    return {
        "No tray geometry is loaded: the preferences name no tray geometry file, or it "
        "was refused.  A run by autosampler needs one."};
  }
  std::vector<std::string> faults;
  const bool syringeFits = settings.SyringeVolume == 5 || settings.SyringeVolume == 10;
  if (!syringeFits) {
    faults.push_back("Syringe Volume " + whole(settings.SyringeVolume) +
                     " must be 5 or 10 (ml); every volume is checked against it.");
  }
  AutosamplerSettings copy = settings;
  float stepsPerMicrolitre = 0;
  PumpSteps steps;
  bool endingReported = false;
  for (const AutosamplerFault& f :
       CheckAutosamplerSettings(copy, tubeCount, stepsPerMicrolitre, steps)) {
    if (!syringeFits && dependsOnSyringe(f.field)) continue;
    endingReported = endingReported || f.field == AutosamplerField::EndingTube;
    faults.push_back(f.message);
  }
  tubeRange(settings, tubeCount, endingReported, faults);
  if (settings.HasBlank) blank(settings, tubeCount, faults);
  const std::pair<bool, std::int16_t> freqs[] = {{settings.HasStandard, settings.StandardFreq},
                                                 {settings.HasBlank, settings.BlankFreq}};
  const char* names[] = {"Standard", "Blank"};
  for (int k = 0; k < 2; ++k) {
    if (freqs[k].first && freqs[k].second < 0) {
      faults.push_back(std::string(names[k]) + " frequency " + whole(freqs[k].second) +
                       " must be 0 or more.");
    }
  }
  return faults;
}

}  // namespace zorvel
