#pragma once

#include <QObject>
#include <QThread>
#include <atomic>
#include <functional>

namespace zorvel::ui {

// The one thread on which a window's instrument work runs (set-up, readings, scans, tray runs,
// the time drive), so that the window repaints and answers keys meanwhile. Jobs run one after
// another; `done` is called on the window thread when a job has returned, and the worker counts
// as busy until it has run.
class InstrumentWorker final : public QObject {
  Q_OBJECT
 public:
  explicit InstrumentWorker(QObject* parent = nullptr);
  ~InstrumentWorker() override;

  // False (and nothing started) while a job is still running.
  bool start(std::function<void()> job, std::function<void()> done = {});
  bool busy() const { return busy_.load(); }
  // Blocks the window thread until the current job has returned (closing a window).
  void waitUntilIdle();

 private:
  QThread thread_;
  QObject* context_ = nullptr;  // lives in the worker thread; jobs are queued to it
  std::atomic<bool> busy_{false};
};

// Runs f on the window thread without waiting: view updates from instrument work.
void postToGui(std::function<void()> f);

}  // namespace zorvel::ui
