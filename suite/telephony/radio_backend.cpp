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
    if (backend == installedBackend())
        return;
    const bool simulated = !backend;
    installedBackend() = std::move(backend);
    if (Store* store = Store::current()) {
        store->sendQueue().backendChanged();
        if (simulated)
            store->useSimulatedRadioState();
    }
}

RadioBackend* radioBackend() {
    return installedBackend().get();
}

std::u16string radioDescription() {
    return radioBackend() ? radioBackend()->description() : u"simulator";
}

// One recipient of the current job per call; the backend's answer schedules the next step.
GSM::Result importReceived(const IncomingSms& message) {
    Store* store = Store::current();
    if (!store)
        return Store::unavailable();
    const std::uint64_t ticks = fileTimeToUInt64(message.date);
    if (ticks != 0 && store->hasReceived(message.from, message.text, ticks))
        return {};
    return store->receive(message.from, message.text, message.date, message.serviceCentre, nullptr);
}

GSM::Result reportDelivery(long messageId, int recipient, const DeliveryReport& report) {
    Store* store = Store::current();
    return store ? store->recordDelivery(messageId, recipient, report) : Store::unavailable();
}

void reportRadioState(const RadioState& state) {
    if (Store* store = Store::current())
        store->setRadioState(state);
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
            fresh.push_back(
                {message.from, message.text, message.date, true, message.serviceCentre});
        }
    }
    if (fresh.empty())
        return {};
    if (capacity == kSimCapacityUnknown)
        return store->setSimContents(fresh, kSimCapacityUnknown);
    return store->setSimContents(fresh, std::max(capacity, int(fresh.size())));
}

} // namespace tessaly::telephony
