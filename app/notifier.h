// Desktop notifications: the freedesktop Notifications service over the
// D-Bus session bus. Without a session bus (a terminal, a CI job) nothing is
// shown and `available()` says so.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QString>

namespace roamwise::app {

struct Notification {
    std::string title;
    std::string body;
    std::string identifier;            // "watch-<id>-<day>", "passport-<code>-<day>"
    std::optional<std::string> watchID;  // the watch it is about
};

class Notifier {
public:
    // Called on the main thread when the user activates a notification.
    using Activated = std::function<void(const Notification& notification)>;

    virtual ~Notifier() = default;
    virtual bool available() const = 0;
    // Shows it now; false when it could not be handed over (ignored by callers).
    virtual bool post(const Notification& notification) = 0;
    virtual void setActivated(Activated handler) = 0;
};

// org.freedesktop.Notifications with the "default" action, so that a click
// on the notification comes back as ActionInvoked.
class DBusNotifier : public QObject, public Notifier {
    Q_OBJECT

public:
    static constexpr const char* service = "org.freedesktop.Notifications";
    static constexpr const char* path = "/org/freedesktop/Notifications";
    static constexpr const char* appName = "Roamwise";
    static constexpr int timeoutDefault = -1;  // the server's own

    explicit DBusNotifier(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    bool available() const override;
    bool post(const Notification& notification) override;
    void setActivated(Activated handler) override;

private slots:
    void onActionInvoked(uint id, const QString& action);
    void onClosed(uint id, uint reason);

private:
    QDBusConnection m_bus;
    Activated m_activated;
    QHash<uint, Notification> m_shown;  // server's id -> what it shows
    QHash<QString, uint> m_byIdentifier;  // so a newer one replaces the older
};

}  // namespace roamwise::app
