#pragma once

// A radio backend over ModemManager's D-Bus API (QtDBus): the first modem that offers
// messaging sends the store's messages, and what it receives goes into the store. Messages the
// modem already holds when the backend starts are imported (those on the SIM are offered for
// the SIM transfer); the modem's copy of a message is deleted only once the store holds it.

#include "suite/telephony/radio_backend.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <map>
#include <memory>

namespace tessaly::telephony {

// The store's code for a ModemManager error a send ended with: ErrorNoNetwork and ErrorBusy
// are tried again later, anything else fails the message.
long sendFailureCode(const QString& errorName);

class ModemManagerBackend final : public QObject, public RadioBackend {
    Q_OBJECT
public:
    // The first modem with messaging that ModemManager on `bus` reports, or null (no daemon, no
    // such modem, or no answer within `timeoutMs`). Without `startService` a ModemManager that
    // is not running is not started through the bus's activation: the question only looks.
    static std::shared_ptr<ModemManagerBackend>
    find(const QDBusConnection& bus, int timeoutMs = 2000, bool startService = true);
    // The system bus, or the bus at TESSALY_MODEMMANAGER_BUS when that is set.
    static QDBusConnection defaultBus();

    std::u16string description() const override;
    void send(const OutgoingSms& message, Progress progress, Finished finished) override;
    void simMessageStored(const IncomingSms& message) override;

    // Enables the modem when it is disabled, imports what it holds and follows new messages.
    void start();
    QString modemPath() const { return modem_; }

private Q_SLOTS:
    void onAdded(const QDBusObjectPath& path, bool received);
    void onSmsPropertiesChanged(const QDBusMessage& message);
    void onModemPropertiesChanged(const QString& interface, const QVariantMap& changed,
                                  const QStringList& invalidated);

private:
    ModemManagerBackend(const QDBusConnection& bus, QString modemPath, QString description);
    void importExisting();
    // A message the modem held before: one on the SIM is kept for the SIM transfer (answers
    // whether it was new), any other is imported.
    // Reads a stored message; `done` hears whether it joined the SIM's copies.
    void takeStored(const QString& path, std::function<void(bool)> done);
    void offerSim();
    // Imports a received message once it is complete, then deletes the modem's copy.
    void importWhenComplete(const QString& path);
    void deleteSms(const QString& path, int attempt = 1);
    // The message's properties, empty when ModemManager gives none.
    void readSms(const QString& path, std::function<void(const QVariantMap&)> then);

    QDBusConnection bus_;
    QString modem_;
    QString description_;
    std::map<QString, IncomingSms> simCopies_; // modem path → message offered for the transfer
    // Expires with the backend, so that a retry timer that fires later does nothing.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    bool listed_ = false; // the messages held at start have been listed

    // Sent messages whose delivery report is awaited: their message reference -> (message id,
    // recipient). Kept in memory: after a restart a report that comes is not matched.
    void awaitDelivery(const QString& path, long messageId, int recipient);
    void takeStatusReport(const QString& path, const QVariantMap& properties);
    // Applies a report to the message awaiting it; false when none does (yet).
    bool applyReport(uint reference, const QVariantMap& properties);
    std::map<uint, std::pair<long, int>> awaited_;
    std::map<uint, QVariantMap> earlyReports_;

    // The network as the modem reports it, told to the store as it changes.
    void watchDeviceState();
    void takeModemProperties(const QVariantMap& properties);
    void reportDeviceState();
    int modemState_ = 0;
    int failedReason_ = 0;
    unsigned registration_ = 0;
    int signalPercent_ = 0;
    QString operatorName_;
};

} // namespace tessaly::telephony
