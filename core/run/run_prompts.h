#pragma once

#include <string>

#include "core/run/run_types.h"

// The run window's own texts: captions, prompts and questions.
namespace zorvel::prompt {

inline constexpr const char* kInitCaption = "&Init";
inline constexpr const char* kReadCaption = "&Read Sample";
inline constexpr const char* kInitialise = "[I]nitialize Fluorimeter, [Q]uit Analysis.";
inline constexpr const char* kReadOrQuit = "[R]ead Sample or [Q]uit.";
inline constexpr const char* kNewCuvette = "Waiting For New Cuvette.";
inline constexpr const char* kComments = "Enter Comments NOW if needed";
inline constexpr const char* kKeyLegend = "F5 - Abort      F11 - Pause";
inline constexpr const char* kQueryTitle = "ZORVEL QUERY";
inline constexpr const char* kQuestionTitle = "ZORVEL QUESTION";
inline constexpr const char* kRejectFixed =
    "Do you wish to abort or reread the sample?  RETRY rereads, CANCEL aborts.";
inline constexpr const char* kQuitDuringPures =
    "You are trying to quit prior to reading all pure samples.  If you quit the data file will "
    "be deleted and you will need to recreate it and reread the solvent blank and ALL pure "
    "samples.  Do you wish to quit now?";

// "Building Control [n] and Blank [m] Databases".
std::string Databases(int controls, int blanks);
// "Insert a cuvette with pure sample for color n."
std::string PureColour(int colour);
// "Fixed wavelength (ex/em)" of a colour, whole nanometres.
std::string FixedWavelength(float excitationNm, float emissionNm);
// The question after rejecting a scan: by whether the fixed reading is on and what the scan
// was filed as (nothing, "control" or "blank").
std::string RejectSynch(bool fixed, const std::string& classifiedAs);

// The choices and their prompt line.
struct Decision {
  RunChoices choices;
  const char* line;
};
inline constexpr Decision kAcceptReject{{true, true, false, false}, "[A]ccept/[R]eject"};
inline constexpr Decision kDatabaseChoice{{false, true, true, true}, "[R]eject/[C]ontrol/[B]lank"};
inline constexpr Decision kAllChoices{{true, true, true, true},
                                      "[A]ccept/[R]eject/[C]ontrol/[B]lank"};

}  // namespace zorvel::prompt
