#include "ui/platform/instrument_worker.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaObject>

namespace zorvel::ui {

InstrumentWorker::InstrumentWorker(QObject* parent) : QObject(parent) {
  context_ = new QObject;
  context_->moveToThread(&thread_);
  connect(&thread_, &QThread::finished, context_, &QObject::deleteLater);
  thread_.setObjectName("instrument-worker");
  thread_.start();
}

InstrumentWorker::~InstrumentWorker() {
  thread_.quit();
  thread_.wait();
}

bool InstrumentWorker::start(std::function<void()> job, std::function<void()> done) {
  bool expected = false;
  if (!busy_.compare_exchange_strong(expected, true)) return false;
  QMetaObject::invokeMethod(context_, [this, job = std::move(job), done = std::move(done)] {
    job();
    if (!done) {
      busy_.store(false);
      return;
    }
    // Still busy until the window has taken the result in, so nothing it re-enables in `done`
    // can be found disabled by a caller that saw the worker idle.
    QMetaObject::invokeMethod(
        this,
        [this, done] {
          done();
          busy_.store(false);
        },
        Qt::QueuedConnection);
  });
  return true;
}

void InstrumentWorker::waitUntilIdle() {
  while (busy_.load()) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QThread::msleep(5);
  }
}

void postToGui(std::function<void()> f) {
  QCoreApplication* app = QCoreApplication::instance();
  if (app == nullptr) return;
  QMetaObject::invokeMethod(app, std::move(f), Qt::QueuedConnection);
}

}  // namespace zorvel::ui
