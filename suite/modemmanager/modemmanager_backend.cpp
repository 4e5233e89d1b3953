#include "suite/modemmanager/modemmanager_backend.h"

#include "suite/modemmanager/dbus_names.h"
#include "suite/modemmanager/modem_state.h"

#include "suite/telephony/pdu/pdu.h"

#include "framework/time/clock.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace tessaly::telephony {

namespace {

using namespace modemmanager;

// ModemManager's enumerations, as its API documents them.
constexpr int kModemStateDisabled = 3;
constexpr uint kSmsStateReceiving = 2;
constexpr uint kSmsStateReceived = 3;
constexpr uint kSmsPduDeliver = 1;
constexpr uint kSmsPduStatusReport = 3;
constexpr uint kSmsStorageSim = 1;
constexpr uint kValidityRelative = 1;
constexpr int kSendTimeoutMs = 120'000;
constexpr int kDeleteAttempts = 10;
constexpr int kDeleteRetryMs = 1000;

QString qt(const std::u16string& text) {
    return QString::fromStdU16String(text);
}

std::u16string u16(const QVariant& value) {
    return value.toString().toStdU16String();
}

GSM::Result modemFailure(const QDBusError& error) {
    const QString text = error.message().isEmpty() ? error.name() : error.message();
    return GSM::Result(sendFailureCode(error.name()), text.toStdU16String());
}

// ModemManager stamps "2026-11-23T18:37:38Z" or "…+01" / "…+01:00"; the store keeps local time.
FILETIME localFileTime(const QString& stamp) {
    QString normalized = stamp;
    if (QRegularExpression(QStringLiteral("[+-]\\d\\d$")).match(normalized).hasMatch())
        normalized += QStringLiteral(":00");
    const QDateTime parsed = QDateTime::fromString(normalized, Qt::ISODate);
    FILETIME fileTime{};
    if (!parsed.isValid())
        return fileTime;
    SYSTEMTIME system = systemTimeFromDateTime(parsed.toLocalTime());
    system.wMilliseconds = 0; // the network stamps whole seconds
    SystemTimeToFileTime(&system, &fileTime);
    return fileTime;
}

IncomingSms incomingFrom(const QVariantMap& properties) {
    return {u16(properties.value(QStringLiteral("Number"))),
            u16(properties.value(QStringLiteral("Text"))),
            localFileTime(properties.value(QStringLiteral("Timestamp")).toString()),
            u16(properties.value(QStringLiteral("SMSC")))};
}

bool sameMessage(const IncomingSms& a, const IncomingSms& b) {
    return a.from == b.from && a.text == b.text &&
           fileTimeToUInt64(a.date) == fileTimeToUInt64(b.date);
}

// Calls `then` with the reply of an asynchronous call once it arrives.
template <class Then> void whenAnswered(const QDBusPendingCall& call, QObject* context, Then then) {
    auto* watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [then](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         then(*finished);
                     });
}

} // namespace

QDBusConnection ModemManagerBackend::defaultBus() {
    const QString address = qEnvironmentVariable("TESSALY_MODEMMANAGER_BUS");
    if (address.isEmpty())
        return QDBusConnection::systemBus();
    return QDBusConnection::connectToBus(address, QStringLiteral("tessaly-modemmanager"));
}

std::shared_ptr<ModemManagerBackend> ModemManagerBackend::find(const QDBusConnection& bus,
                                                               int timeoutMs, bool startService) {
    if (!bus.isConnected())
        return nullptr;
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kRoot, QString::fromLatin1(kObjectManager), QStringLiteral("GetManagedObjects"));
    call.setAutoStartService(startService);
    const QDBusMessage reply = bus.call(call, QDBus::Block, timeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return nullptr;
    // a{oa{sa{sv}}}: object path → interface → properties
    const QDBusArgument objects = reply.arguments().at(0).value<QDBusArgument>();
    // Every beginMap needs its endMap, also when the walk stops early: the map's reader is freed
    // there.
    std::shared_ptr<ModemManagerBackend> found;
    objects.beginMap();
    while (!found && !objects.atEnd()) {
        QDBusObjectPath path;
        QMap<QString, QVariantMap> interfaces;
        objects.beginMapEntry();
        objects >> path >> interfaces;
        objects.endMapEntry();
        if (!interfaces.contains(kMessaging))
            continue;
        const QVariantMap modem = interfaces.value(kModem);
        const QString name = QStringList{modem.value(QStringLiteral("Manufacturer")).toString(),
                                         modem.value(QStringLiteral("Model")).toString()}
                                 .join(u' ')
                                 .trimmed();
        found.reset(new ModemManagerBackend(bus, path.path(), name));
    }
    objects.endMap();
    return found;
}

ModemManagerBackend::ModemManagerBackend(const QDBusConnection& bus, QString modemPath,
                                         QString description)
    : bus_(bus)
    , modem_(std::move(modemPath))
    , description_(std::move(description)) {}

std::u16string ModemManagerBackend::description() const {
    return (QStringLiteral("ModemManager") +
            (description_.isEmpty() ? QString() : QStringLiteral(": ") + description_))
        .toStdU16String();
}

void ModemManagerBackend::start() {
    bus_.connect(kService, modem_, kMessaging, QStringLiteral("Added"), this,
                 SLOT(onAdded(QDBusObjectPath, bool)));
    watchDeviceState();
    QDBusMessage state =
        QDBusMessage::createMethodCall(kService, modem_, kProperties, QStringLiteral("Get"));
    state << QString::fromLatin1(kModem) << QStringLiteral("State");
    whenAnswered(bus_.asyncCall(state, 5000), this, [this](const QDBusPendingCall& call) {
        const QDBusMessage reply = call.reply();
        const int value = reply.arguments().isEmpty()
                              ? 0
                              : reply.arguments().at(0).value<QDBusVariant>().variant().toInt();
        if (value != kModemStateDisabled) {
            importExisting();
            return;
        }
        // Messages are listed only once the modem is enabled.
        QDBusMessage enable =
            QDBusMessage::createMethodCall(kService, modem_, kModem, QStringLiteral("Enable"));
        enable << true;
        whenAnswered(bus_.asyncCall(enable, kSendTimeoutMs), this,
                     [this](const QDBusPendingCall&) { importExisting(); });
    });
}

void ModemManagerBackend::watchDeviceState() {
    bus_.connect(kService, modem_, kProperties, QStringLiteral("PropertiesChanged"), this,
                 SLOT(onModemPropertiesChanged(QString, QVariantMap, QStringList)));
    for (const char* interface : {kModem, kModem3gpp}) {
        QDBusMessage all =
            QDBusMessage::createMethodCall(kService, modem_, kProperties, QStringLiteral("GetAll"));
        all << QString::fromLatin1(interface);
        whenAnswered(bus_.asyncCall(all, 5000), this, [this](const QDBusPendingCall& call) {
            const QDBusMessage reply = call.reply();
            if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
                return;
            takeModemProperties(qdbus_cast<QVariantMap>(reply.arguments().at(0)));
            reportDeviceState();
        });
    }
}

void ModemManagerBackend::onModemPropertiesChanged(const QString& interface,
                                                   const QVariantMap& changed, const QStringList&) {
    if (interface != QLatin1String(kModem) && interface != QLatin1String(kModem3gpp))
        return;
    takeModemProperties(changed);
    reportDeviceState();
}

void ModemManagerBackend::takeModemProperties(const QVariantMap& properties) {
    if (const auto state = properties.find(QStringLiteral("State")); state != properties.end())
        modemState_ = state->toInt();
    if (const auto reason = properties.find(QStringLiteral("StateFailedReason"));
        reason != properties.end())
        failedReason_ = reason->toInt();
    if (const auto registration = properties.find(QStringLiteral("RegistrationState"));
        registration != properties.end())
        registration_ = registration->toUInt();
    if (const auto name = properties.find(QStringLiteral("OperatorName")); name != properties.end())
        operatorName_ = name->toString();
    // (ub): the quality in percent, and whether it is recent.
    if (const auto quality = properties.find(QStringLiteral("SignalQuality"));
        quality != properties.end()) {
        const QDBusArgument argument = quality->value<QDBusArgument>();
        uint percent = 0;
        bool recent = false;
        argument.beginStructure();
        argument >> percent >> recent;
        argument.endStructure();
        signalPercent_ = int(std::min(percent, 100u));
    }
}

void ModemManagerBackend::reportDeviceState() {
    reportRadioState({deviceStateFrom(modemState_, failedReason_, registration_), signalPercent_,
                      operatorName_.toStdU16String()});
}

void ModemManagerBackend::readSms(const QString& path,
                                  std::function<void(const QVariantMap&)> then) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(kService, path, kProperties, QStringLiteral("GetAll"));
    call << QString::fromLatin1(kSms);
    whenAnswered(bus_.asyncCall(call, 5000), this,
                 [then = std::move(then)](const QDBusPendingCall& answered) {
                     const QDBusMessage reply = answered.reply();
                     if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
                         then({});
                     else
                         then(qdbus_cast<QVariantMap>(reply.arguments().at(0)));
                 });
}

void ModemManagerBackend::importExisting() {
    QDBusMessage list =
        QDBusMessage::createMethodCall(kService, modem_, kMessaging, QStringLiteral("List"));
    whenAnswered(bus_.asyncCall(list), this, [this](const QDBusPendingCall& call) {
        QDBusPendingReply<QList<QDBusObjectPath>> reply(call);
        listed_ = true;
        if (reply.isError() || reply.value().isEmpty())
            return;
        // The SIM is offered once, when every message of the listing has been read.
        auto unread = std::make_shared<int>(int(reply.value().size()));
        auto simChanged = std::make_shared<bool>(false);
        for (const QDBusObjectPath& path : reply.value()) {
            takeStored(path.path(), [this, unread, simChanged](bool changed) {
                *simChanged = *simChanged || changed;
                if (--*unread == 0 && *simChanged)
                    offerSim();
            });
        }
    });
}

void ModemManagerBackend::takeStored(const QString& path, std::function<void(bool)> done) {
    readSms(path, [this, path, done = std::move(done)](const QVariantMap& properties) {
        if (properties.value(QStringLiteral("PduType")).toUInt() != kSmsPduDeliver)
            return done(false);
        if (properties.value(QStringLiteral("Storage")).toUInt() != kSmsStorageSim) {
            importWhenComplete(path);
            return done(false);
        }
        if (properties.value(QStringLiteral("State")).toUInt() != kSmsStateReceived ||
            simCopies_.count(path))
            return done(false);
        simCopies_[path] = incomingFrom(properties);
        done(true);
    });
}

void ModemManagerBackend::offerSim() {
    std::vector<IncomingSms> messages;
    for (const auto& [path, message] : simCopies_)
        messages.push_back(message);
    // ModemManager 1.20 tells neither the SIM's slots nor how many are taken.
    offerSimMessages(messages, kSimCapacityUnknown);
}

void ModemManagerBackend::onAdded(const QDBusObjectPath& path, bool received) {
    // While the modem is being enabled, ModemManager announces what it reads from the modem's
    // storage as received too: until the first listing, a message on the SIM is one that was
    // there before.
    if (received && listed_)
        importWhenComplete(path.path());
    else
        takeStored(path.path(), [this](bool changed) {
            if (changed)
                offerSim();
        });
}

void ModemManagerBackend::importWhenComplete(const QString& path) {
    readSms(path, [this, path](const QVariantMap& properties) {
        if (properties.value(QStringLiteral("PduType")).toUInt() == kSmsPduStatusReport)
            return takeStatusReport(path, properties);
        if (properties.value(QStringLiteral("PduType")).toUInt() != kSmsPduDeliver)
            return;
        const uint state = properties.value(QStringLiteral("State")).toUInt();
        if (state == kSmsStateReceiving) {
            bus_.connect(kService, path, kProperties, QStringLiteral("PropertiesChanged"), this,
                         SLOT(onSmsPropertiesChanged(QDBusMessage)));
            return;
        }
        if (state != kSmsStateReceived)
            return;
        bus_.disconnect(kService, path, kProperties, QStringLiteral("PropertiesChanged"), this,
                        SLOT(onSmsPropertiesChanged(QDBusMessage)));
        if (importReceived(incomingFrom(properties)).isOk())
            deleteSms(path);
    });
}

void ModemManagerBackend::awaitDelivery(const QString& path, long messageId, int recipient) {
    // ModemManager 1.20 hands a status report over as an SMS object of its own, with the
    // message reference of the message it reports on (TS 23.040 9.2.3.6).
    readSms(path, [this, path, messageId, recipient](const QVariantMap& properties) {
        deleteSms(path);
        if (!properties.contains(QStringLiteral("MessageReference")))
            return;
        const uint reference = properties.value(QStringLiteral("MessageReference")).toUInt();
        awaited_[reference] = {messageId, recipient};
        // The report may have come before this answer did.
        if (const auto early = earlyReports_.find(reference); early != earlyReports_.end()) {
            const QVariantMap report = early->second;
            earlyReports_.erase(early);
            applyReport(reference, report);
        }
    });
}

void ModemManagerBackend::takeStatusReport(const QString& path, const QVariantMap& properties) {
    deleteSms(path);
    const uint reference = properties.value(QStringLiteral("MessageReference")).toUInt();
    if (applyReport(reference, properties))
        return;
    // A reference is one octet: the few latest unmatched reports are enough to keep.
    if (earlyReports_.size() >= 16)
        earlyReports_.erase(earlyReports_.begin());
    earlyReports_[reference] = properties;
}

bool ModemManagerBackend::applyReport(uint reference, const QVariantMap& properties) {
    const auto awaited = awaited_.find(reference);
    if (awaited == awaited_.end())
        return false;
    // MMSmsDeliveryState: below 0x20 delivered, 0x20-0x3f still trying, 0x40-0x7f given up
    // (TS 23.040 9.2.3.15).
    const uint state = properties.value(QStringLiteral("DeliveryState")).toUInt();
    if (state >= 0x20 && !(state >= 0x40 && state < 0x80))
        return true;
    DeliveryReport report;
    if (state < 0x20) {
        report.time =
            localFileTime(properties.value(QStringLiteral("DischargeTimestamp")).toString());
    } else {
        report.delivered = false;
        report.reason = QStringLiteral("The network could not deliver the message (status %1).")
                            .arg(state)
                            .toStdU16String();
    }
    const auto [messageId, recipient] = awaited->second;
    awaited_.erase(awaited);
    reportDelivery(messageId, recipient, report);
    return true;
}

void ModemManagerBackend::onSmsPropertiesChanged(const QDBusMessage& message) {
    importWhenComplete(message.path());
}

void ModemManagerBackend::deleteSms(const QString& path, int attempt) {
    QDBusMessage remove =
        QDBusMessage::createMethodCall(kService, modem_, kMessaging, QStringLiteral("Delete"));
    remove << QVariant::fromValue(QDBusObjectPath(path));
    // ModemManager refuses while it is reading another message (its storages are locked); the
    // copy is tried again a little later, and left for the next start after that.
    whenAnswered(bus_.asyncCall(remove), this, [this, path, attempt](const QDBusPendingCall& call) {
        if (call.isError() && attempt < kDeleteAttempts) {
            // Through the Clock seam, as every timer of the library; stopped as it fires.
            auto timer = std::make_shared<TimerHandle>(0);
            const std::weak_ptr<bool> alive = alive_;
            *timer =
                Clock::current().startTimer(kDeleteRetryMs, [this, path, attempt, timer, alive] {
                    Clock::current().stopTimer(*timer);
                    if (!alive.expired())
                        deleteSms(path, attempt + 1);
                });
        }
    });
}

void ModemManagerBackend::simMessageStored(const IncomingSms& message) {
    for (auto it = simCopies_.begin(); it != simCopies_.end(); ++it) {
        if (sameMessage(it->second, message)) {
            deleteSms(it->first);
            simCopies_.erase(it);
            return;
        }
    }
}

long sendFailureCode(const QString& errorName) {
    // ModemManager names the modem's +CMS ERROR (TS 27.005 3.2.5) after the last dot.
    static const QString messageError =
        QStringLiteral("org.freedesktop.ModemManager1.Error.Message.");
    static const QString coreError = QStringLiteral("org.freedesktop.ModemManager1.Error.Core.");
    if (errorName == messageError + QStringLiteral("NoNetwork") ||
        errorName == coreError + QStringLiteral("WrongState"))
        return GSM::ErrorNoNetwork; // 331, or a modem not registered: nothing went out
    if (errorName == messageError + QStringLiteral("NetworkTimeout") ||
        errorName == messageError + QStringLiteral("SimBusy") ||
        errorName == coreError + QStringLiteral("InProgress") ||
        errorName == coreError + QStringLiteral("Retry"))
        return GSM::ErrorBusy; // 332, 314, or the modem busy with another command
    // Everything else is final, a D-Bus timeout included: the modem may have sent the message.
    return GSM::ErrorNetworkRejected;
}

void ModemManagerBackend::send(const OutgoingSms& message, Progress progress, Finished finished) {
    QVariantMap properties{{QStringLiteral("number"), qt(message.number)},
                           {QStringLiteral("text"), qt(message.text)}};
    if (!message.serviceCentre.empty())
        properties.insert(QStringLiteral("smsc"), qt(message.serviceCentre));
    if (message.validityCode >= 0 && message.validityCode < 255) {
        // (uv): the validity type and, for a relative one, its minutes.
        QDBusArgument validity;
        validity.beginStructure();
        validity << kValidityRelative
                 << QDBusVariant(
                        uint(pdu::relativeValidityMinutes(std::uint8_t(message.validityCode))));
        validity.endStructure();
        properties.insert(QStringLiteral("validity"), QVariant::fromValue(validity));
    }
    if (message.statusReport)
        properties.insert(QStringLiteral("delivery-report-request"), true);

    QDBusMessage create =
        QDBusMessage::createMethodCall(kService, modem_, kMessaging, QStringLiteral("Create"));
    create << properties;
    const int segments = std::max(1, message.segments);
    const bool followDelivery = message.statusReport;
    const long messageId = message.messageId;
    const int recipient = message.recipient;
    whenAnswered(bus_.asyncCall(create), this,
                 [this, progress, finished, segments, followDelivery, messageId,
                  recipient](const QDBusPendingCall& call) {
                     QDBusPendingReply<QDBusObjectPath> created(call);
                     if (created.isError()) {
                         finished(modemFailure(created.error()));
                         return;
                     }
                     const QString path = created.value().path();
                     // ModemManager reports no progress per part: the first is announced when the
                     // message goes to the modem, the last when the modem has sent it.
                     progress(1, segments);
                     QDBusMessage sendCall = QDBusMessage::createMethodCall(kService, path, kSms,
                                                                            QStringLiteral("Send"));
                     whenAnswered(bus_.asyncCall(sendCall, kSendTimeoutMs), this,
                                  [this, progress, finished, segments, path, followDelivery,
                                   messageId, recipient](const QDBusPendingCall& call) {
                                      const QDBusPendingReply<> sent(call);
                                      // The store keeps the message; the modem's copy goes, once
                                      // its delivery report has come when one was asked for.
                                      if (followDelivery && !sent.isError())
                                          awaitDelivery(path, messageId, recipient);
                                      else
                                          deleteSms(path);
                                      if (sent.isError()) {
                                          finished(modemFailure(sent.error()));
                                          return;
                                      }
                                      if (segments > 1)
                                          progress(segments, segments);
                                      finished({});
                                  });
                 });
}

} // namespace tessaly::telephony
