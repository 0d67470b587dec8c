#include "app/notifier.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QVariantMap>

namespace roamwise::app {

namespace {
constexpr const char* kInterface = "org.freedesktop.Notifications";
// How long an answer from the notification server is waited for.
constexpr int kCallTimeoutMs = 3000;
}  // namespace

DBusNotifier::DBusNotifier(QDBusConnection bus, QObject* parent) : QObject(parent), m_bus(std::move(bus)) {
    if (!m_bus.isConnected()) return;
    m_bus.connect(service, path, kInterface, "ActionInvoked", this, SLOT(onActionInvoked(uint, QString)));
    m_bus.connect(service, path, kInterface, "NotificationClosed", this, SLOT(onClosed(uint, uint)));
}

bool DBusNotifier::available() const {
    if (!m_bus.isConnected() || !m_bus.interface()) return false;
    // Activatable services count: the desktop starts them on the first call.
    const QDBusReply<bool> registered = m_bus.interface()->isServiceRegistered(service);
    if (registered.isValid() && registered.value()) return true;
    const QDBusReply<QStringList> activatable = m_bus.interface()->activatableServiceNames();
    return activatable.isValid() && activatable.value().contains(service);
}

bool DBusNotifier::post(const Notification& notification) {
    if (!m_bus.isConnected()) return false;
    const QString identifier = QString::fromStdString(notification.identifier);
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, kInterface, "Notify");
    QVariantMap hints;
    hints.insert("desktop-entry", QString("roamwise"));
    hints.insert("category", QString("presence"));
    // The default sound, where the server plays one.
    hints.insert("suppress-sound", false);
    call << QString(appName) << m_byIdentifier.value(identifier, 0u) << QString("roamwise")
         << QString::fromStdString(notification.title) << QString::fromStdString(notification.body)
         << QStringList{"default", "Show alerts"} << hints << timeoutDefault;
    // Asynchronous: the window never waits on the desktop's notification server.
    QDBusPendingCallWatcher* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, kCallTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, notification, identifier](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<uint> reply = *finished;
                if (reply.isError()) return;  // not shown; the alerts list still has it
                m_shown.insert(reply.value(), notification);
                m_byIdentifier.insert(identifier, reply.value());
            });
    return true;
}

void DBusNotifier::setActivated(Activated handler) { m_activated = std::move(handler); }

void DBusNotifier::onActionInvoked(uint id, const QString& action) {
    // Every notification of the bus's server arrives here; only ours count.
    const auto shown = m_shown.constFind(id);
    if (shown == m_shown.constEnd() || action != "default") return;
    if (m_activated) m_activated(*shown);
}

void DBusNotifier::onClosed(uint id, uint) {
    const auto shown = m_shown.constFind(id);
    if (shown == m_shown.constEnd()) return;
    m_byIdentifier.remove(QString::fromStdString(shown->identifier));
    m_shown.erase(shown);
}

}  // namespace roamwise::app
