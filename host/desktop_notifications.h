#pragma once

// A client of the desktop's notification service (org.freedesktop.Notifications, Desktop
// Notifications Specification 1.2) on the session bus. Everything is asynchronous: connecting
// happens on a worker thread, calls never wait for their replies, and a service that is not
// running is never started (NoAutoStart), so without a bus or a service nothing happens.

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QString>

#include <optional>

namespace tessaly::host {

class DesktopNotifications final : public QObject {
    Q_OBJECT
public:
    // `busAddress` empty: the session bus's address (sessionBusAddress()).
    explicit DesktopNotifications(const QString& busAddress = QString(), QObject* parent = nullptr);
    ~DesktopNotifications() override;

    // DBUS_SESSION_BUS_ADDRESS, else $XDG_RUNTIME_DIR/bus when that socket exists, else empty.
    // libdbus would otherwise launch a bus of its own (X11 autolaunch).
    static QString sessionBusAddress();

    // Posts a notification for `key` (the caller's id for what it is about), replacing one
    // already posted for it. Dropped when there is no bus or no service.
    void post(qint64 key, const QString& summary, const QString& body);
    // Closes the notification of `key`, if one is up.
    void withdraw(qint64 key);

signals:
    // The person chose the notification (its default action or "Open").
    void opened(qint64 key);

private slots:
    void onActionInvoked(uint id, const QString& action);
    void onNotificationClosed(uint id, uint reason);

private:
    void connected(const QDBusConnection& bus);
    void notify(qint64 key, const QString& summary, const QString& body, uint replaces);
    void close(uint id);

    QString connectionName_;
    std::optional<QDBusConnection> bus_;
    // Posts made before the connection was up.
    struct Post {
        qint64 key;
        QString summary;
        QString body;
    };
    QList<Post> early_;
    QHash<uint, qint64> ids_;     // the service's id -> key
    QHash<qint64, bool> pending_; // keys whose Notify has no reply yet -> withdrawn meanwhile
};

// The body text as the service shows it: servers that read markup (most do) would take '<'
// and '&' for tags and entities.
QString escapeNotificationText(const QString& text);

} // namespace tessaly::host
