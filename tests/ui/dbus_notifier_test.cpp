#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <string>
#include <vector>

#include "ui/platform/dbus_notifier.h"
#include "ui/qt_app.h"

namespace zorvel::ui {
namespace {

// What a desktop's notification service is asked, answered as one answers it.
class NotificationService final : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != "org.freedesktop.Notifications" || message.member() != "Notify") {
      return false;
    }
    received.push_back(message.arguments());
    connection.send(message.createReply(QVariant::fromValue(1u)));
    return true;
  }
  std::vector<QVariantList> received;
};

// A session bus of the test's own.
struct PrivateBus {
  PrivateBus() {
    daemon.start(QStandardPaths::findExecutable("dbus-daemon"),
                 {"--session", "--nofork", "--print-address=1"});
    if (daemon.waitForReadyRead(10000)) address = QString(daemon.readLine()).trimmed();
  }
  ~PrivateBus() {
    daemon.kill();
    daemon.waitForFinished();
  }
  QProcess daemon;
  QString address;
};

TEST(DBusNotifier, ANoticeReachesTheNotificationServiceAsPlainText) {
  testing::qtApp();
  if (QStandardPaths::findExecutable("dbus-daemon").isEmpty()) GTEST_SKIP() << "no dbus-daemon";
  PrivateBus bus;
  ASSERT_FALSE(bus.address.isEmpty());
  QDBusConnection desktop = QDBusConnection::connectToBus(bus.address, "desktop");
  NotificationService service;
  ASSERT_TRUE(desktop.registerService("org.freedesktop.Notifications"));
  ASSERT_TRUE(desktop.registerVirtualObject("/org/freedesktop/Notifications", &service));
  std::vector<std::string> log;
  DBusNotifier notifier(QDBusConnection::connectToBus(bus.address, "program"),
                        [&](const std::string& line) { log.push_back(line); });
  notifier.notify("Tray run completed", "LIVER.FIX: S&P <12>\tdone");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !service.received.empty(); }, 10000));
  const QVariantList& call = service.received[0];
  ASSERT_EQ(8, call.size());
  EXPECT_EQ("ZORVEL", call[0].toString());
  EXPECT_EQ("Tray run completed", call[3].toString());
  EXPECT_EQ("LIVER.FIX: S&amp;P &lt;12&gt; done", call[4].toString());
  EXPECT_EQ(-1, call[7].toInt());
  // Nothing serves notifications any more: said once in the log, however many are asked for.
  desktop.unregisterService("org.freedesktop.Notifications");
  notifier.notify("Tray run alert", "1");
  notifier.notify("Tray run aborted", "2");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log.empty(); }, 10000));
  // Served again: the next notice arrives after both refusals came back.
  ASSERT_TRUE(desktop.registerService("org.freedesktop.Notifications"));
  notifier.notify("Tray run completed", "3");
  ASSERT_TRUE(QTest::qWaitFor([&] { return service.received.size() == 2; }, 10000));
  QCoreApplication::processEvents();
  EXPECT_EQ("3", service.received[1][4].toString());
  ASSERT_EQ(1u, log.size());
  EXPECT_EQ(0u, log[0].find("Desktop notifications cannot be shown: ")) << log[0];
  QDBusConnection::disconnectFromBus("desktop");
  QDBusConnection::disconnectFromBus("program");
}

TEST(DBusNotifier, WithoutASessionBusOneLogLineAndNothingElse) {
  testing::qtApp();
  std::vector<std::string> log;
  DBusNotifier notifier(QDBusConnection::connectToBus("unix:path=/nonexistent/zorvel-bus", "none"),
                        [&](const std::string& line) { log.push_back(line); });
  notifier.notify("Tray run completed", "1");
  notifier.notify("Tray run aborted", "2");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log.empty(); }, 10000));
  QCoreApplication::processEvents();
  EXPECT_EQ((std::vector<std::string>{"Desktop notifications cannot be shown: no session bus"}),
            log);
}

}  // namespace
}  // namespace zorvel::ui
