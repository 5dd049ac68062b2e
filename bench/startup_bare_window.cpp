// The bare Qt Widgets window that bench_startup compares the program's start-up with: a main
// window with one label, linked against Qt Widgets alone. It ends once the window has been
// painted.
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <QWidget>
#include <cstdlib>

namespace {

class ExitOnPaint final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The window's own paint comes first in a pass that paints all its children; the exit
    // waits for the event loop, so the whole pass, text and all, is done.
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
      QTimer::singleShot(0, [] { std::_Exit(0); });
    }
    return false;
  }
};

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  app.installEventFilter(new ExitOnPaint);
  QMainWindow window;
  window.setCentralWidget(new QLabel("bare"));
  window.resize(760, 520);
  window.show();
  return QApplication::exec();
}
