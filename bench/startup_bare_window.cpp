// The bare Qt Widgets window that bench_startup compares the program's start-up with: a main
// window with one label, linked against Qt Widgets alone. It ends once the window has been
// exposed and painted.
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <QWindow>
#include <cstdlib>

namespace {

class ExitOnExpose final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Expose && qobject_cast<QWindow*>(watched) != nullptr &&
        static_cast<QWindow*>(watched)->isExposed()) {
      QTimer::singleShot(0, [] { std::_Exit(0); });
    }
    return false;
  }
};

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  app.installEventFilter(new ExitOnExpose);
  QMainWindow window;
  window.setCentralWidget(new QLabel("bare"));
  window.resize(760, 520);
  window.show();
  return QApplication::exec();
}
