#include "ui/qt_app.h"

#include <QElapsedTimer>
#include <QTest>
#include <memory>

namespace zorvel::testing {

QApplication& qtApp() {
  static int argc = 1;
  static char name[] = "zorvel-tests";
  static char* argv[] = {name, nullptr};
  // Windows are drawn off screen, with or without a display.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  static auto* app = new QApplication(argc, argv);
  return *app;
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs) {
  QElapsedTimer waited;
  waited.start();
  while (!done()) {
    if (waited.elapsed() > timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QTest::qWait(5);
  }
  return true;
}

void whenShown(const QString& objectName, std::function<void(QWidget*)> act) {
  auto* timer = new QTimer(&qtApp());
  timer->setInterval(10);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, objectName, act] {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (w->objectName() == objectName && w->isVisible()) {
        timer->stop();
        timer->deleteLater();
        act(w);
        return;
      }
    }
  });
  timer->start();
}

}  // namespace zorvel::testing
