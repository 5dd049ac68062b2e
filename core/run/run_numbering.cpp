#include "core/run/run_numbering.h"

#include "core/run/tube_numbering.h"

namespace zorvel {

bool RunNumbering::numberReading(SampleType type) {
  const bool first = firstRead_;
  if (first) {
    if (type == SampleType::Matrix) {
      sampleNumber_ = 0;
    } else if (type != SampleType::Sample || newDataSet_) {
      sampleNumber_ = firstSampleNumber_ - 1;
    }
  }
  if (!keepNumber_) ++sampleNumber_;
  keepNumber_ = false;
  return first;
}

bool RunNumbering::numberTube(SampleType type, bool& pureStartPending) {
  TrayNumbering n{sampleNumber_, firstSampleNumber_, firstRead_, keepNumber_, pureStartPending};
  const bool first = NumberTube(n, type);
  sampleNumber_ = n.SampleNumber;
  keepNumber_ = n.KeepNumber;
  pureStartPending = n.PureStartPending;
  return first;
}

int RunNumbering::next(SampleType type) const {
  int next = sampleNumber_;
  if (firstRead_ && type == SampleType::Matrix) next = 0;
  if (firstRead_ && type != SampleType::Matrix && (type != SampleType::Sample || newDataSet_)) {
    next = firstSampleNumber_ - 1;
  }
  return keepNumber_ ? next : next + 1;
}

void RunNumbering::restartAt(int entered) {
  sampleNumber_ = entered;
  firstSampleNumber_ = entered;
  if (!keepNumber_) --sampleNumber_;
}

}  // namespace zorvel
