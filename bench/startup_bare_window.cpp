// The bare Qt Widgets window that bench_startup measures the program's start-up against: a main
// window with one label, linked against Qt Widgets (and fontconfig) alone. The benchmark ends it.
// It reads the font configuration on a second thread while the application connects to the
// display, as the program does: without that the program, which overlaps that work, could show
// its window sooner than this one and the window would be no lower bound. Given "--plain" it
// starts as such a window usually does, with no second thread: the window the program's start-up
// was first compared with.
#include <fontconfig/fontconfig.h>

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <cstring>
#include <thread>

int main(int argc, char** argv) {
  const bool plain = argc > 1 && std::strcmp(argv[1], "--plain") == 0;
  std::thread fonts;
  if (!plain) fonts = std::thread([] { FcInit(); });
  QApplication app(argc, argv);
  if (fonts.joinable()) fonts.join();
  QMainWindow window;
  window.setCentralWidget(new QLabel("bare"));
  window.resize(760, 520);
  window.show();
  return QApplication::exec();
}
