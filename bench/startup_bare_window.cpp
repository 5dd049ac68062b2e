// The bare Qt Widgets window that bench_startup measures the program's start-up against: a main
// window with one label, linked against Qt Widgets (and fontconfig) alone. The benchmark ends it.
// It reads the font configuration on a second thread while the application connects to the
// display, as the program does: without that the program, which overlaps that work, could show
// its window sooner than this one and the window would be no lower bound.
#include <fontconfig/fontconfig.h>

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <thread>

int main(int argc, char** argv) {
  std::thread fonts([] { FcInit(); });
  QApplication app(argc, argv);
  fonts.join();
  QMainWindow window;
  window.setCentralWidget(new QLabel("bare"));
  window.resize(760, 520);
  window.show();
  return QApplication::exec();
}
