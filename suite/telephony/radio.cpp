#include "suite/telephony/store.h"

#include "suite/telephony/host_hooks.h"
#include "suite/telephony/length_info.h"
#include "suite/telephony/radio_backend.h"
#include "suite/telephony/ranges.h"

#include <QString>

#include <algorithm>

namespace tessaly::telephony {

// ---- timers

void Store::stopTimer(TimerHandle& handle) {
    if (handle != 0)
        Clock::current().stopTimer(handle);
    handle = 0;
}

TimerHandle Store::startOneShot(int delayMs, void (Store::*step)()) {
    stopTimer(simTimer_);
    simTimer_ = Clock::current().startTimer(std::max(0, delayMs), [this, step] {
        stopTimer(simTimer_);
        (this->*step)();
    });
    return simTimer_;
}

void Store::setDelays(int segmentDelayMs, int simTransferDelayMs) {
    options_.segmentDelayMs = std::max(0, segmentDelayMs);
    options_.simTransferDelayMs = std::max(0, simTransferDelayMs);
    sendQueue_.setSegmentDelay(options_.segmentDelayMs);
}

// ---- what the send queue reads and writes

std::optional<MessageToSend> Store::messageToSend(long id) {
    MessageRecord* message = findMessage(id);
    if (!message || message->status != GSM::Message::SendNow)
        return std::nullopt;
    MessageToSend toSend{{}, message->text, message->serviceCentre, int(message->validity)};
    Statement& rows = db_->cached("SELECT number, sent_segments, outcome FROM addresses "
                                  "WHERE message_id = ? ORDER BY position");
    rows.bind(1, std::int64_t(id));
    while (rows.step())
        toSend.recipients.push_back(
            {rows.text(0), int(rows.integer(1)), rows.integer(2) == kRecipientSent});
    if (!rows.ok())
        return std::nullopt;
    return toSend;
}

void Store::recordProgress(long id, int recipient, int sentSegments, int segments) {
    Statement& update =
        db_->cached("UPDATE addresses SET sent_segments = ?1, outcome = CASE WHEN ?1 >= ?2 THEN ?3 "
                    "ELSE outcome END, failure = '' WHERE message_id = ?4 AND position = ?5");
    update.bind(1, std::int64_t(sentSegments))
        .bind(2, std::int64_t(segments))
        .bind(3, std::int64_t(kRecipientSent))
        .bind(4, std::int64_t(id))
        .bind(5, std::int64_t(recipient));
    update.step();
}

GSM::Result Store::recordOutcome(long id, int failedRecipient, const GSM::Result& result) {
    MessageRecord* message = findMessage(id);
    if (!message)
        return result;
    Database::Transaction transaction(*db_);
    if (!result.isOk() && failedRecipient >= 0) {
        // A failed recipient is sent whole again: the network may have dropped its parts.
        Statement& failed = db_->cached("UPDATE addresses SET outcome = ?, sent_segments = 0, "
                                        "failure = ? WHERE message_id = ? AND position = ?");
        failed.bind(1, std::int64_t(kRecipientFailed))
            .bind(2, std::u16string_view(result.getErrorMessage()))
            .bind(3, std::int64_t(id))
            .bind(4, std::int64_t(failedRecipient));
        failed.step();
    }
    message->status = result.isOk() ? GSM::Message::Sent : GSM::Message::Failed;
    Statement& update = db_->cached("UPDATE messages SET status = ? WHERE id = ?");
    update.bind(1, std::int64_t(message->status)).bind(2, std::int64_t(id));
    update.step();
    transaction.commit();
    touchMessages();
    // A refusal before the first recipient concerns the message, not whom it reached.
    if (result.isOk() || failedRecipient < 0 || message->addressNumbers().size() < 2)
        return result;
    return GSM::Result(GSM::ErrorNetworkRejected, unreachedText(id, result));
}

std::u16string Store::unreachedText(long id, const GSM::Result& reason) {
    constexpr int kNamesShown = 5;
    Statement& rows = db_->cached(
        "SELECT number FROM addresses WHERE message_id = ? AND outcome != ? ORDER BY position");
    rows.bind(1, std::int64_t(id)).bind(2, std::int64_t(kRecipientSent));
    std::u16string names;
    int count = 0;
    while (rows.step()) {
        if (++count > kNamesShown)
            continue;
        const std::u16string number = rows.text(0);
        const std::u16string name =
            bareAddress(number)->getText(GSM::Contact::FieldDisplayName, 0, 0, 0);
        names += (names.empty() ? u"" : u", ") + (name.empty() ? number : name);
    }
    if (count > kNamesShown)
        names += u" and " + QString::number(count - kNamesShown).toStdU16String() + u" more";
    std::u16string text(reason.getErrorMessage());
    if (!text.empty())
        text += text.back() == u'.' ? u" " : u". ";
    text += u"Not sent to " + names + u".";
    return text;
}

// ---- SIM

GSM::Result Store::setSimContents(const std::vector<simulator::SimMessage>& messages,
                                  int capacity) {
    // A capacity of 0 is one the radio cannot tell (kSimCapacityUnknown).
    if (capacity < 0 || (capacity > 0 && int(messages.size()) > capacity))
        return failure(GSM::ErrorInvalidArgument, u"The SIM cannot hold that many messages.");
    if (simTimer_ != 0)
        return failure(GSM::ErrorBusy, u"Messages are being moved off the SIM.");
    Database::Transaction transaction(*db_);
    bool ok = db_->exec("DELETE FROM sim_messages");
    Statement insert =
        db_->prepare("INSERT INTO sim_messages(sender, text, date, status, service_centre) "
                     "VALUES(?, ?, ?, ?, ?) RETURNING id");
    std::vector<long> ids;
    for (std::size_t i = 0; ok && i < messages.size(); ++i) {
        insert.reset();
        insert.bind(1, messages[i].from)
            .bind(2, messages[i].text)
            .bind(3, std::int64_t(fileTimeToUInt64(messages[i].date)))
            .bind(4, std::int64_t(messages[i].read ? GSM::Message::Read : GSM::Message::Unread))
            .bind(5, messages[i].serviceCentre);
        ok = insert.step();
        if (ok)
            ids.push_back(long(insert.integer(0)));
        insert.step();
        ok = ok && insert.ok();
    }
    ok = ok && saveSetting("simCapacity", std::int64_t(capacity)).isOk();
    if (!ok || !transaction.commit())
        return db_->failure(u"The SIM contents cannot be stored");
    simMessages_ = messages;
    simMessageIds_ = ids;
    settings_.simCapacity = capacity;
    if (!messages.empty() && settings_.askToMoveSimMessages) {
        const int count = int(messages.size());
        EventQueue::instance().post([count, capacity] {
            if (hostHooks().openSimNotification)
                hostHooks().openSimNotification(count, capacity);
        });
    }
    return {};
}

GSM::Result Store::moveSimMessages() {
    if (simTimer_ != 0)
        return failure(GSM::ErrorBusy, u"Messages are already being moved off the SIM.");
    if (simMessages_.empty())
        return failure(GSM::ErrorSimEmpty, u"There are no messages on the SIM.");
    startOneShot(options_.simTransferDelayMs, &Store::simStep);
    return {};
}

void Store::simStep() {
    if (simMessages_.empty())
        return;
    const simulator::SimMessage sim = simMessages_.front();
    MessageRecord* message = makeMessage();
    message->folder = GSM::Sms::FolderInbox;
    message->status = sim.read ? GSM::Message::Read : GSM::Message::Unread;
    message->text = sim.text;
    const std::uint64_t ticks = fileTimeToUInt64(sim.date);
    message->dateTicks = ticks ? ticks : nowTicks();
    message->serviceCentre =
        sim.serviceCentre.empty() ? settings_.simServiceCentre : sim.serviceCentre;
    message->storedAddresses = {sim.from};
    Database::Transaction transaction(*db_);
    Statement remove = db_->prepare("DELETE FROM sim_messages WHERE id = ?");
    remove.bind(1, std::int64_t(simMessageIds_.front()));
    remove.step();
    const bool ok = remove.ok() && saveMessage(*message).isOk() && transaction.commit();
    if (!ok) {
        // The message stays on the SIM; the host hears that the move has ended.
        message->discarded = true;
        cache_.unpin(message->getId());
        EventQueue::instance().post([] {
            if (hostHooks().openSimNotification)
                hostHooks().openSimNotification(-1, -1);
        });
        return;
    }
    message->stored = true;
    cache_.unpin(message->getId());
    if (RadioBackend* backend = radioBackend())
        backend->simMessageStored({sim.from, sim.text, sim.date, sim.serviceCentre});
    simMessages_.erase(simMessages_.begin());
    simMessageIds_.erase(simMessageIds_.begin());
    touchMessages();
    const bool finished = simMessages_.empty();
    EventQueue::instance().post([finished] {
        if (!hostHooks().openSimNotification)
            return;
        hostHooks().openSimNotification(0, 0);
        if (finished)
            hostHooks().openSimNotification(-1, -1);
    });
    if (!finished)
        startOneShot(options_.simTransferDelayMs, &Store::simStep);
}

// ---- device

void Store::setDeviceState(int state) {
    deviceState_ = state;
    EventQueue::instance().broadcast<GSM::DeviceEventHandler>(
        HandlerKind::Device,
        [](GSM::DeviceEventHandler* handler) { handler->eventStatusChanged(); });
}

void Store::setRadioState(const RadioState& state) {
    const bool statusChanged = state.state != deviceState_;
    const bool signalChanged = state.signalPercent != signalPercent_;
    const bool operatorChanged = state.operatorName != operatorName_;
    deviceState_ = state.state;
    signalPercent_ = std::clamp(state.signalPercent, 0, 100);
    operatorName_ = state.operatorName;
    auto& events = EventQueue::instance();
    if (statusChanged) {
        const GSM::Device::Net net = GSM::device.netStatus();
        events.broadcast<GSM::DeviceEventHandler>(HandlerKind::Device,
                                                  [net](GSM::DeviceEventHandler* handler) {
                                                      handler->eventStatusChanged();
                                                      handler->eventNetStatusChanged(net);
                                                  });
    }
    if (signalChanged)
        events.broadcast<GSM::DeviceEventHandler>(
            HandlerKind::Device,
            [](GSM::DeviceEventHandler* handler) { handler->eventSignalStrengthChanged(); });
    if (operatorChanged)
        events.broadcast<GSM::DeviceEventHandler>(
            HandlerKind::Device, [](GSM::DeviceEventHandler* handler) {
                handler->eventInformationUpdated(GSM::Device::InformationOperator);
            });
}

void Store::useSimulatedRadioState() {
    setRadioState({deviceState_, kSimulatedSignal, kSimulatedOperator});
}

GSM::Result Store::setSmsService(int service) {
    if (!smsServiceKnown)
        return failure(GSM::ErrorNotSupported, u"The device cannot choose the SMS bearer.");
    if (service != GSM::Device::SmsServiceGprs && service != GSM::Device::SmsServiceCircuit)
        return failure(GSM::ErrorInvalidArgument, u"Unknown SMS bearer.");
    GSM::Result result = saveSetting("smsService", std::int64_t(service));
    if (!result.isOk())
        return result;
    settings_.smsService = service;
    EventQueue::instance().broadcast<GSM::DeviceEventHandler>(
        HandlerKind::Device,
        [](GSM::DeviceEventHandler* handler) { handler->eventSmsServiceChanged(); });
    return {};
}

// ---- cell broadcast

void Store::loadCellBroadcast() {
    Statement ranges =
        db_->prepare("SELECT kind, first, last FROM cb_subscription ORDER BY kind, first");
    while (ranges.step()) {
        const Utilities::Range range{std::int32_t(ranges.integer(1)),
                                     std::int32_t(ranges.integer(2))};
        (ranges.integer(0) == 0 ? channels_ : languages_).push_back(range);
    }
    Statement rows = db_->prepare("SELECT channel, language, text, date, count FROM cb_messages");
    while (rows.step()) {
        broadcasts_[int(rows.integer(0))] = {int(rows.integer(1)), rows.text(2),
                                             std::uint64_t(rows.integer(3)), int(rows.integer(4))};
    }
}

GSM::Result Store::setSubscription(int channelCount, const Utilities::Range* channels,
                                   int languageCount, const Utilities::Range* languages) {
    auto normalChannels = normalizeRanges(channels, channelCount, kChannelLimit);
    auto normalLanguages = normalizeRanges(languages, languageCount, kLanguageLimit);
    if (!normalChannels || !normalLanguages) {
        GSM::Result result = failure(GSM::ErrorInvalidArgument,
                                     u"The subscription holds an empty or out-of-range range.");
        EventQueue::instance().broadcast<GSM::CellBroadcast::EventHandler>(
            HandlerKind::CellBroadcast, [result](GSM::CellBroadcast::EventHandler* handler) {
                handler->eventCbFailure(result);
            });
        return result;
    }
    Database::Transaction transaction(*db_);
    bool ok = db_->exec("DELETE FROM cb_subscription");
    Statement insert =
        db_->prepare("INSERT INTO cb_subscription(kind, first, last) VALUES(?, ?, ?)");
    for (int kind = 0; kind < 2; ++kind) {
        for (const Utilities::Range& range : kind == 0 ? *normalChannels : *normalLanguages) {
            if (!ok)
                break;
            insert.reset();
            insert.bind(1, std::int64_t(kind))
                .bind(2, std::int64_t(range.first))
                .bind(3, std::int64_t(range.last));
            insert.step();
            ok = insert.ok();
        }
    }
    if (!ok || !transaction.commit())
        return db_->failure(u"The subscription cannot be stored");
    channels_ = std::move(*normalChannels);
    languages_ = std::move(*normalLanguages);
    return {};
}

GSM::Result Store::querySubscription() {
    EventQueue::instance().broadcast<GSM::CellBroadcast::EventHandler>(
        HandlerKind::CellBroadcast,
        [channels = channels_, languages = languages_](GSM::CellBroadcast::EventHandler* handler) {
            handler->eventSubscription(int(channels.size()), channels.data(), int(languages.size()),
                                       languages.data());
        });
    return {};
}

GSM::Result Store::receiveBroadcast(int channel, const std::u16string& text, int language,
                                    FILETIME date) {
    if (channel < 0 || channel >= kChannelLimit)
        return failure(GSM::ErrorInvalidArgument, u"Channels lie in 0 .. 65535.");
    if (!rangesContain(channels_, channel))
        return failure(GSM::ErrorNotFound, u"The channel is not subscribed.");
    // An empty language set accepts every language.
    if (language >= 0 && !languages_.empty() && !rangesContain(languages_, language))
        return failure(GSM::ErrorNotFound, u"The language is not subscribed.");
    CbRecord record;
    const auto existing = broadcasts_.find(channel);
    record.count = existing == broadcasts_.end() ? 1 : existing->second.count + 1;
    record.language = language;
    record.text = text;
    const std::uint64_t ticks = fileTimeToUInt64(date);
    record.dateTicks = ticks ? ticks : nowTicks();
    Database::Transaction transaction(*db_);
    bool ok = true;
    std::optional<int> evicted;
    if (existing == broadcasts_.end() && int(broadcasts_.size()) >= kCbCapacity) {
        // A full store gives up its oldest message.
        evicted = std::min_element(broadcasts_.begin(), broadcasts_.end(),
                                   [](const auto& a, const auto& b) {
                                       return a.second.dateTicks < b.second.dateTicks;
                                   })
                      ->first;
        Statement remove = db_->prepare("DELETE FROM cb_messages WHERE channel = ?");
        remove.bind(1, std::int64_t(*evicted));
        remove.step();
        ok = remove.ok();
    }
    Statement upsert =
        db_->prepare("INSERT OR REPLACE INTO cb_messages(channel, language, text, date, count) "
                     "VALUES(?, ?, ?, ?, ?)");
    upsert.bind(1, std::int64_t(channel))
        .bind(2, std::int64_t(language))
        .bind(3, text)
        .bind(4, std::int64_t(record.dateTicks))
        .bind(5, std::int64_t(record.count));
    if (ok)
        upsert.step();
    if (!ok || !upsert.ok() || !transaction.commit())
        return db_->failure(u"The cell broadcast cannot be stored");
    if (evicted)
        broadcasts_.erase(*evicted);
    broadcasts_[channel] = std::move(record);
    EventQueue::instance().broadcast<GSM::CellBroadcast::EventHandler>(
        HandlerKind::CellBroadcast,
        [channel](GSM::CellBroadcast::EventHandler* handler) { handler->eventMessage(channel); });
    return {};
}

} // namespace tessaly::telephony
