#pragma once

#include <vector>

#include "core/quality/quality_database.h"
#include "core/state/colour_declaration.h"

namespace zorvel {

// What the alert and trend windows are given: the method's wavelength pairs, the reading
// being checked with its flags, and both databases with their statistics. The windows compute
// nothing; they show this. Vectors are indexed by colour from 1 (entry 0 unused).
struct QcSnapshot {
  int colours = 0;
  std::vector<ColourDeclaration> pairs;
  std::vector<float> values;  // the reading being checked
  std::vector<bool> flags;    // outside the 3-SD band
  QcDatabase controls;
  QcDatabase blanks;

  const ColourDeclaration& pair(int colour) const {
    return pairs[static_cast<std::size_t>(colour)];
  }
  float value(int colour) const { return values[static_cast<std::size_t>(colour)]; }
  bool flagged(int colour) const { return flags[static_cast<std::size_t>(colour)]; }
};

// The alert window ERRFORM, as the control check asks it: shown modally when a control raised
// an alert; returns 6 (keep the reading), 7 (read it again) or 2 (abort it). The Qt window, the
// headless runner and the tests each answer it their own way.
class AlertDialog {
 public:
  virtual ~AlertDialog() = default;
  virtual int ask(const QcSnapshot& snapshot) = 0;
};

}  // namespace zorvel
