#pragma once

#include "core/run/sample_type.h"

namespace zorvel {

// The numbers a tray run gives its readings, held by the run.
struct TrayNumbering {
  int SampleNumber = 0;
  int FirstSampleNumber = 1;
  bool FirstRead = true;
  bool KeepNumber = false;
  // The run starts with the pure tubes: the first pure is number 1.
  bool PureStartPending = false;
};

// Numbers the next tube of a tray run: pures count 1, 2, 3 ...; samples count on from
// FirstSampleNumber; a control or blank after the first sample carries the number of the
// sample before it. Returns true when this is the run's first reading (the slits are unknown).
bool NumberTube(TrayNumbering& n, SampleType type);

}  // namespace zorvel
