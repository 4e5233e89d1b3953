// The store's side of a radio backend: sending through it, and importing what it received.

#include "suite/telephony/radio_backend.h"

#include "suite/telephony/host_hooks.h"
#include "suite/telephony/store.h"

#include <algorithm>

namespace tessaly::telephony {

namespace {

std::shared_ptr<RadioBackend>& installedBackend() {
    static std::shared_ptr<RadioBackend> backend;
    return backend;
}

} // namespace

void setRadioBackend(std::shared_ptr<RadioBackend> backend) {
    installedBackend() = std::move(backend);
}

RadioBackend* radioBackend() {
    return installedBackend().get();
}

std::u16string radioDescription() {
    return radioBackend() ? radioBackend()->description() : u"simulator";
}

bool Store::hasReceived(const std::u16string& from, const std::u16string& text,
                        std::uint64_t ticks) const {
    const auto& inbox = byDate_[GSM::Sms::FolderInbox];
    return std::any_of(inbox.begin(), inbox.end(), [&](const MessageRecord* message) {
        if (message->dateTicks != ticks || message->text != text)
            return false;
        const std::vector<std::u16string> numbers = message->addressNumbers();
        return !numbers.empty() && numbers.front() == from;
    });
}

// One recipient of the current job per call; the backend's answer schedules the next step.
void Store::backendStep(RadioBackend& backend) {
    if (backendBusy_)
        return;
    Job& job = *job_;
    MessageRecord* message = findMessage(job.id);
    if (!message || job.recipient >= job.recipients) {
        finishJob({});
        startOneShot(0, &Store::radioStep);
        return;
    }
    OutgoingSms sms;
    sms.messageId = job.id;
    sms.recipient = job.recipient;
    sms.number = message->addressNumbers()[std::size_t(job.recipient)];
    sms.text = message->text;
    sms.serviceCentre = message->serviceCentre;
    sms.validityCode = int(message->validity);
    sms.statusReport = settings_.statusReport;
    sms.segments = job.segments;
    backendBusy_ = true;
    const std::weak_ptr<bool> alive = alive_;
    const long id = job.id;
    const int recipient = job.recipient;
    backend.send(
        sms,
        [alive, id, recipient](int segment, int segments) {
            if (alive.expired())
                return;
            EventQueue::instance().post([id, recipient, segment, segments] {
                if (hostHooks().openSendingNotification)
                    hostHooks().openSendingNotification(id, recipient, segment, segments, 0, 0);
            });
        },
        [this, alive](const GSM::Result& result) {
            if (alive.expired() || !job_)
                return;
            backendBusy_ = false;
            if (result.isOk())
                ++job_->recipient;
            else
                finishJob(result);
            startOneShot(0, &Store::radioStep);
        });
}

GSM::Result importReceived(const IncomingSms& message) {
    Store* store = Store::current();
    if (!store)
        return Store::unavailable();
    const std::uint64_t ticks = fileTimeToUInt64(message.date);
    if (ticks != 0 && store->hasReceived(message.from, message.text, ticks))
        return {};
    return store->receive(message.from, message.text, message.date, message.serviceCentre, nullptr);
}

GSM::Result offerSimMessages(const std::vector<IncomingSms>& messages, int capacity) {
    Store* store = Store::current();
    if (!store)
        return Store::unavailable();
    std::vector<simulator::SimMessage> fresh;
    for (const IncomingSms& message : messages) {
        const std::uint64_t ticks = fileTimeToUInt64(message.date);
        if (ticks != 0 && store->hasReceived(message.from, message.text, ticks)) {
            if (radioBackend())
                radioBackend()->simMessageStored(message);
        } else {
            fresh.push_back({message.from, message.text, message.date, true});
        }
    }
    if (fresh.empty())
        return {};
    return store->setSimContents(fresh, std::max(capacity, int(fresh.size())));
}

} // namespace tessaly::telephony
