#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <utility>

namespace zorvel::ui {

// Runs f on the GUI thread and waits for it: an instrument worker asking the operator a
// question blocks until the window thread has the answer.
template <typename F>
auto onGuiThread(F&& f) -> decltype(f()) {
  QCoreApplication* app = QCoreApplication::instance();
  if (app == nullptr || QThread::currentThread() == app->thread()) return f();
  using Result = decltype(f());
  if constexpr (std::is_void_v<Result>) {
    QMetaObject::invokeMethod(app, std::forward<F>(f), Qt::BlockingQueuedConnection);
  } else {
    Result result{};
    QMetaObject::invokeMethod(
        app, [&result, &f] { result = f(); }, Qt::BlockingQueuedConnection);
    return result;
  }
}

}  // namespace zorvel::ui
