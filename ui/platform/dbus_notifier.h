#pragma once

#include <QDBusConnection>
#include <QObject>
#include <atomic>
#include <functional>
#include <string>

#include "core/platform/notifier.h"

namespace zorvel::ui {

// Desktop notifications over the session bus (org.freedesktop.Notifications). A notice asked
// for on any thread is sent from this object's thread without waiting for the answer. When
// none can be sent (no session bus, nothing serving notifications) `log` gets one line saying
// why, once, and the program carries on.
class DBusNotifier final : public QObject, public Notifier {
 public:
  DBusNotifier(QDBusConnection bus, std::function<void(const std::string&)> log,
               QObject* parent = nullptr);

  void notify(const std::string& summary, const std::string& body) override;

 private:
  void send(const QString& summary, const QString& body);
  void cannotSend(const QString& why);

  QDBusConnection bus_;
  std::function<void(const std::string&)> log_;
  std::atomic<bool> logged_{false};
};

}  // namespace zorvel::ui
