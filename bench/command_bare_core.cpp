// The bare Qt Core program bench_commands measures zorvel-run's commands against: it links Qt
// Core alone, makes its application object and prints one line.
#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  std::puts("bare 0.1.0");
  return 0;
}
