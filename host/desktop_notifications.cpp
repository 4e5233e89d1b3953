#include "host/desktop_notifications.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QUuid>
#include <QVariantMap>
#include <QtConcurrent/QtConcurrentRun>

namespace tessaly::host {

namespace {

constexpr auto kService = "org.freedesktop.Notifications";
constexpr auto kPath = "/org/freedesktop/Notifications";
constexpr auto kInterface = "org.freedesktop.Notifications";
// The installed icon and desktop entry (tessaly-phone.desktop).
constexpr auto kAppId = "tessaly-phone";
constexpr int kCallTimeoutMs = 10'000;

QDBusMessage serviceCall(const char* method) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath),
                                       QLatin1String(kInterface), QLatin1String(method));
    // A notification service that is not running stays so: the call fails at once instead.
    call.setAutoStartService(false);
    return call;
}

} // namespace

QString escapeNotificationText(const QString& text) {
    return text.toHtmlEscaped();
}

QString DesktopNotifications::sessionBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return address;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = QDir(runtime).filePath(QStringLiteral("bus"));
    if (!runtime.isEmpty() && QFileInfo(socket).exists())
        return QStringLiteral("unix:path=") + socket;
    return {};
}

DesktopNotifications::DesktopNotifications(const QString& busAddress, QObject* parent)
    : QObject(parent)
    , connectionName_(QStringLiteral("tessaly-notifications-") +
                      QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    const QString address = busAddress.isEmpty() ? sessionBusAddress() : busAddress;
    if (address.isEmpty())
        return;
    // Connecting authenticates and says Hello, both waiting for the bus: off the UI thread.
    auto* watcher = new QFutureWatcher<QDBusConnection>(this);
    connect(watcher, &QFutureWatcher<QDBusConnection>::finished, this, [this, watcher] {
        connected(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run([address, name = connectionName_] {
        return QDBusConnection::connectToBus(address, name);
    }));
}

DesktopNotifications::~DesktopNotifications() {
    if (bus_) {
        for (auto it = ids_.cbegin(); it != ids_.cend(); ++it)
            close(it.key());
        bus_.reset();
    }
    QDBusConnection::disconnectFromBus(connectionName_);
}

void DesktopNotifications::connected(const QDBusConnection& bus) {
    if (!bus.isConnected()) {
        early_.clear();
        return;
    }
    bus_ = bus;
    // Any sender: naming the service would make Qt look its owner up, waiting for the reply.
    bus_->connect(QString(), QLatin1String(kPath), QLatin1String(kInterface),
                  QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
    bus_->connect(QString(), QLatin1String(kPath), QLatin1String(kInterface),
                  QStringLiteral("NotificationClosed"), this,
                  SLOT(onNotificationClosed(uint, uint)));
    const QList<Post> early = std::exchange(early_, {});
    for (const Post& post : early)
        notify(post.key, post.summary, post.body, 0);
}

void DesktopNotifications::post(qint64 key, const QString& summary, const QString& body) {
    if (!bus_) {
        early_.append({key, summary, body});
        return;
    }
    notify(key, summary, body, ids_.key(key, 0));
}

void DesktopNotifications::notify(qint64 key, const QString& summary, const QString& body,
                                  uint replaces) {
    QDBusMessage call = serviceCall("Notify");
    const QStringList actions{QStringLiteral("default"), tr("Open")};
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), QLatin1String(kAppId)},
        {QStringLiteral("category"), QStringLiteral("im.received")},
    };
    call << tr("Messages") << replaces << QLatin1String(kAppId) << summary
         << escapeNotificationText(body) << actions << hints << qint32(-1);
    pending_.insert(key, false);
    auto* watcher = new QDBusPendingCallWatcher(bus_->asyncCall(call, kCallTimeoutMs), this);
    connect(
        watcher, &QDBusPendingCallWatcher::finished, this, [this, key](QDBusPendingCallWatcher* w) {
            w->deleteLater();
            const bool withdrawn = pending_.take(key);
            const QDBusPendingReply<uint> reply = *w;
            if (reply.isError())
                return; // no service, or it refused: the phone's own window still shows the message
            const uint id = reply.value();
            if (withdrawn) {
                close(id);
                return;
            }
            ids_.remove(ids_.key(key, 0));
            ids_.insert(id, key);
        });
}

void DesktopNotifications::withdraw(qint64 key) {
    if (!early_.isEmpty())
        early_.removeIf([key](const Post& post) { return post.key == key; });
    if (pending_.contains(key))
        pending_[key] = true;
    if (const uint id = ids_.key(key, 0)) {
        ids_.remove(id);
        close(id);
    }
}

void DesktopNotifications::close(uint id) {
    QDBusMessage call = serviceCall("CloseNotification");
    call << id;
    bus_->asyncCall(call, kCallTimeoutMs);
}

void DesktopNotifications::onActionInvoked(uint id, const QString& action) {
    if (!ids_.contains(id))
        return; // another program's notification
    if (action == QLatin1String("default"))
        emit opened(ids_.value(id));
}

void DesktopNotifications::onNotificationClosed(uint id, uint) {
    ids_.remove(id);
}

} // namespace tessaly::host
