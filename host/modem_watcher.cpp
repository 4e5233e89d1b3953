#include "host/modem_watcher.h"

#include "host/radio_choice.h"

#include "suite/modemmanager/dbus_names.h"
#include "suite/modemmanager/modemmanager_backend.h"
#include "suite/telephony/radio_backend.h"

#include <QDBusObjectPath>
#include <QStringList>
#include <QTimer>

namespace tessaly::host {
namespace {

using namespace telephony::modemmanager;

constexpr int kLookAttempts = 10;
constexpr int kLookIntervalMs = 500;

telephony::ModemManagerBackend* modemInUse() {
    return dynamic_cast<telephony::ModemManagerBackend*>(telephony::radioBackend());
}

} // namespace

ModemWatcher::ModemWatcher(const QDBusConnection& bus, QObject* parent)
    : QObject(parent)
    , bus_(bus) {
    bus_.connect(kService, kRoot, kObjectManager, QStringLiteral("InterfacesAdded"), this,
                 SLOT(onInterfacesAdded(QDBusMessage)));
    bus_.connect(kService, kRoot, kObjectManager, QStringLiteral("InterfacesRemoved"), this,
                 SLOT(onInterfacesRemoved(QDBusMessage)));
    bus_.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"), this,
                 SLOT(onOwnerChanged(QString, QString, QString)));
}

bool ModemWatcher::lookForModem() {
    if (modemInUse())
        return true;
    chooseRadio(RadioKind::Auto, bus_);
    return modemInUse() != nullptr;
}

void ModemWatcher::modemGone(const QString& modemPath) {
    telephony::ModemManagerBackend* modem = modemInUse();
    if (!modem || (!modemPath.isEmpty() && modem->modemPath() != modemPath))
        return;
    telephony::setRadioBackend(nullptr);
}

void ModemWatcher::lookSoon(int attemptsLeft) {
    QTimer::singleShot(kLookIntervalMs, this, [this, attemptsLeft] {
        if (!lookForModem() && attemptsLeft > 1)
            lookSoon(attemptsLeft - 1);
    });
}

void ModemWatcher::onInterfacesAdded(const QDBusMessage&) {
    if (!modemInUse())
        lookSoon(kLookAttempts);
}

void ModemWatcher::onInterfacesRemoved(const QDBusMessage& message) {
    if (message.arguments().size() < 2)
        return;
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    if (message.arguments().at(1).toStringList().contains(QLatin1String(kModem)))
        modemGone(path);
}

void ModemWatcher::onOwnerChanged(const QString& name, const QString&, const QString& newOwner) {
    if (name != QLatin1String(kService))
        return;
    if (newOwner.isEmpty())
        modemGone(QString());
    else
        lookSoon(kLookAttempts);
}

} // namespace tessaly::host
