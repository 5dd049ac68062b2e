// Preloaded into both programs bench_startup times, so that each ends at the same mark without
// being built for the benchmark: ZORVEL_BENCH_END=mapped ends a program when its first window
// is exposed on the screen, ZORVEL_BENCH_END=painted once that window's first paint pass, every
// child and every text in it, is done.
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <cstdlib>
#include <cstring>

namespace {

class EndAtMark final : public QObject {
 public:
  explicit EndAtMark(bool painted) : painted_(painted) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!painted_) {
      const auto* window = qobject_cast<QWindow*>(watched);
      if (event->type() == QEvent::Expose && window != nullptr && window->isExposed())
        std::_Exit(0);
      return false;
    }
    // The window's own paint comes first in a pass that paints all its children; the end
    // waits for the event loop, so the whole pass is done.
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow())
      QTimer::singleShot(0, [] { std::_Exit(0); });
    return false;
  }

 private:
  bool painted_;
};

void WatchForMark() {
  const char* mark = std::getenv("ZORVEL_BENCH_END");
  if (mark == nullptr) return;
  QCoreApplication::instance()->installEventFilter(
      new EndAtMark(std::strcmp(mark, "painted") == 0));
}

// Runs once the program has made its application object.
const bool kWatching = (qAddPreRoutine(WatchForMark), true);

}  // namespace
