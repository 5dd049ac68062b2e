#include "ui/platform/dbus_notifier.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QVariantMap>
#include <utility>

namespace zorvel::ui {

namespace {

const char* const kService = "org.freedesktop.Notifications";
const char* const kPath = "/org/freedesktop/Notifications";

// Desktops that show markup in a notice's body take "&" and "<" as its start.
QString plainBody(const std::string& text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()))
      .toHtmlEscaped()
      .replace('\t', ' ');
}

}  // namespace

DBusNotifier::DBusNotifier(QDBusConnection bus, std::function<void(const std::string&)> log,
                           QObject* parent)
    : QObject(parent), bus_(std::move(bus)), log_(std::move(log)) {}

void DBusNotifier::notify(const std::string& summary, const std::string& body) {
  const QString title = QString::fromLatin1(summary.data(), static_cast<qsizetype>(summary.size()));
  QMetaObject::invokeMethod(
      this, [this, title, text = plainBody(body)] { send(title, text); }, Qt::QueuedConnection);
}

void DBusNotifier::send(const QString& summary, const QString& body) {
  if (!bus_.isConnected()) {
    cannotSend("no session bus");
    return;
  }
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, "Notify");
  // Application, no notice to replace, no icon, the texts, no actions, no hints, the desktop's
  // own time on screen.
  call << QString("ZORVEL") << 0u << QString() << summary << body << QStringList() << QVariantMap()
       << -1;
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
    if (done->isError()) cannotSend(done->error().message());
    done->deleteLater();
  });
}

void DBusNotifier::cannotSend(const QString& why) {
  if (logged_.exchange(true) || !log_) return;
  log_("Desktop notifications cannot be shown: " + why.toStdString());
}

}  // namespace zorvel::ui
