#pragma once

#include <mutex>
#include <string>

#include "core/platform/notifier.h"
#include "core/run/run_status.h"

namespace zorvel {

// What a tray run tells whoever left it running: its first alert, and its end (completed,
// aborted, stopped, or stopped by a fault), each once a run, naming the data set.
class TrayRunNotices {
 public:
  // `dataSet`: the set as the operator knows it ("LIVER.FIX").
  TrayRunNotices(Notifier& notifier, std::string dataSet);

  // Every change of the run's status, as it happens (any thread).
  void seen(const RunStatus& now);

 private:
  std::string progress(const RunStatus& s) const;
  std::string alertLog(const RunStatus& s) const;

  Notifier& notifier_;
  const std::string dataSet_;
  std::mutex mutex_;
  bool alertTold_ = false;
  bool endTold_ = false;
};

}  // namespace zorvel
