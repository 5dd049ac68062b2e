#include "core/run/tube_numbering.h"

namespace zorvel {

bool NumberTube(TrayNumbering& n, SampleType type) {
  const bool first = n.FirstRead;
  if (first) {
    if (type != SampleType::Pure) {
      n.SampleNumber = n.FirstSampleNumber - 1;
    } else if (n.PureStartPending) {
      n.SampleNumber = 0;
      n.PureStartPending = false;
    }
  } else if (type != SampleType::Sample) {
    --n.SampleNumber;
  }
  if (!n.KeepNumber) ++n.SampleNumber;
  n.KeepNumber = false;
  return first;
}

}  // namespace zorvel
