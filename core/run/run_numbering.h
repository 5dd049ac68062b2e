#pragma once

#include "core/run/run_types.h"
#include "core/run/sample_type.h"

namespace zorvel {

// The sample numbers a run files its readings under. A run's first reading starts the count: a
// matrix at 0, anything but a sample of an appended set just below the starting number. Every
// reading then counts on unless the number is kept (a reading read again, a database entry, a
// blank before its pures).
class RunNumbering {
 public:
  explicit RunNumbering(const RunSetup& setup)
      : newDataSet_(setup.NewDataSet),
        sampleNumber_(setup.SampleNumber),
        firstSampleNumber_(setup.FirstSampleNumber),
        firstRead_(setup.FirstRead) {}

  // Sample numbers are 16-bit: a set goes no further than this.
  static constexpr int kLargestSampleNumber = 32767;

  // Numbers a cuvette's reading. True when it is the run's first (the slits are unknown).
  bool numberReading(SampleType type);
  // Numbers a tray's tube: pures count from 1, controls and blanks after the first sample carry
  // the number of the sample before them. True when it is the run's first.
  bool numberTube(SampleType type, bool& pureStartPending);
  // The number a reading of the type would be filed under if it were taken now.
  int next(SampleType type) const;
  // The operator's "Sample Number Reset": the next reading is filed under `entered`.
  void restartAt(int entered);

  int current() const { return sampleNumber_; }
  int first() const { return firstSampleNumber_; }
  bool firstRead() const { return firstRead_; }
  bool kept() const { return keepNumber_; }
  // A sample is in: the run has begun counting.
  void counted() { firstRead_ = false; }
  // The next reading keeps the current number (true) or counts on.
  void keep(bool keep) { keepNumber_ = keep; }
  // A record that was refused gives its number back.
  void stepBack() { --sampleNumber_; }
  // The pures are done: samples count again from 1.
  void restart() { sampleNumber_ = 0; }

 private:
  bool newDataSet_;
  int sampleNumber_;
  int firstSampleNumber_;
  bool firstRead_;
  bool keepNumber_ = false;
};

}  // namespace zorvel
