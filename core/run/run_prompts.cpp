#include "core/run/run_prompts.h"

#include "core/text/number_format.h"

namespace zorvel::prompt {

namespace {

std::string whole(double value) {
  return text::fixed(value, 0);
}

}  // namespace

std::string Databases(int controls, int blanks) {
  return "Building Control [" + whole(controls) + "] and Blank [" + whole(blanks) + "] Databases";
}

std::string PureColour(int colour) {
  return "Insert a cuvette with pure sample for color " + whole(colour) + ".";
}

std::string FixedWavelength(float excitationNm, float emissionNm) {
  return "Fixed wavelength (" + text::fixed(excitationNm, 0) + "/" + text::fixed(emissionNm, 0) +
         ")";
}

std::string RejectSynch(bool fixed, const std::string& classifiedAs) {
  if (classifiedAs.empty()) {
    return std::string("Reread synchronous sample or abort the ") +
           (fixed ? "entire sample including the fixed wavelength read?  RETRY rereads, CANCEL "
                    "aborts."
                  : "sample?  RETRY rereads, CANCEL aborts.");
  }
  return "[R]eread synchronous sample or abort the " +
         (fixed ? "entire " + classifiedAs + " including the fixed wavelength read?"
                : classifiedAs + "?") +
         "  RETRY rereads, CANCEL aborts.";
}

}  // namespace zorvel::prompt
