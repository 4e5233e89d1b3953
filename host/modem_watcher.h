#pragma once

// Under `--modem auto`, follows ModemManager while the phone runs: a modem that appears is used
// from then on, and when the modem in use vanishes (or ModemManager ends) the simulator takes
// over again. The send queue is kept either way: a message the modem was sending goes back
// to the queue.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

namespace tessaly::host {

class ModemWatcher final : public QObject {
    Q_OBJECT
public:
    explicit ModemWatcher(const QDBusConnection& bus, QObject* parent = nullptr);

    // Uses the first modem ModemManager offers when none is in use; true when one is.
    bool lookForModem();
    // Back to the simulator when the modem in use is `modemPath` (empty: whichever it is).
    void modemGone(const QString& modemPath);

private Q_SLOTS:
    void onInterfacesAdded(const QDBusMessage& message);
    void onInterfacesRemoved(const QDBusMessage& message);
    void onOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    // A modem object comes before its messaging interface is ready: looked for again a few
    // times after it appears.
    void lookSoon(int attemptsLeft);

    QDBusConnection bus_;
};

} // namespace tessaly::host
