// The bare Qt Widgets window that bench_startup measures the program's start-up against: a main
// window with one label, linked against Qt Widgets alone. The benchmark ends it.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QMainWindow window;
  window.setCentralWidget(new QLabel("bare"));
  window.resize(760, 520);
  window.show();
  return QApplication::exec();
}
