#include "ui/platform/instrument_worker.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include "core/platform/operator.h"
#include "ui/platform/qt_operator.h"
#include "ui/qt_app.h"

namespace zorvel {
namespace {

TEST(InstrumentWorker, RunsJobsOffTheWindowThreadAndReportsBack) {
  testing::qtApp();
  ui::InstrumentWorker worker;
  QThread* jobThread = nullptr;
  bool done = false;
  std::atomic<bool> release{false};
  ASSERT_TRUE(worker.start(
      [&] {
        jobThread = QThread::currentThread();
        while (!release.load()) QThread::msleep(1);
      },
      [&] { done = true; }));
  EXPECT_FALSE(worker.start([] {}));  // one job at a time
  // The window thread keeps answering while the job works.
  bool answered = false;
  QTimer::singleShot(1, [&] { answered = true; });
  ZORVEL_TRY_VERIFY(answered, 2000);
  EXPECT_TRUE(worker.busy());
  release = true;
  ZORVEL_TRY_VERIFY(done, 2000);
  EXPECT_NE(jobThread, QThread::currentThread());
  EXPECT_FALSE(worker.busy());
}

TEST(InstrumentWorker, AQuestionFromTheWorkerIsAskedOnTheWindowThread) {
  testing::qtApp();
  ui::InstrumentWorker worker;
  ui::QtOperator op;
  testing::whenShown("MessageBox", [](QWidget* box) {
    QMetaObject::invokeMethod(box, "done", Qt::QueuedConnection, Q_ARG(int, 0x00004000));
  });
  std::atomic<int> answer{0};
  worker.start([&] { answer = op.message("Go on?", "Q", BoxIcon::Question, BoxButtons::YesNo); });
  ZORVEL_TRY_VERIFY(answer.load() != 0, 3000);
  EXPECT_EQ(answer.load(), zorvel::answer::kYes);
}

}  // namespace
}  // namespace zorvel
