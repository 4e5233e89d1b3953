#pragma once

// The seam between the store and a real radio. The store owns every message: it decides what
// is sent when, and keeps what arrives. A backend only transmits what the store hands it,
// reporting progress and the outcome back, and hands received messages to the store. Without
// a backend the store's simulated radio does the sending.

#include "gsm/result.h"

#include "framework/win32types.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessaly::telephony {

// One message to one recipient.
struct OutgoingSms {
    long messageId = 0;
    int recipient = 0; // position among the message's recipients
    std::u16string number;
    std::u16string text;
    std::u16string serviceCentre; // empty: the SIM's own
    int validityCode = 255;       // relative validity code; 255: the longest there is
    bool statusReport = false;
    int segments = 1; // as the length count gives it
};

struct IncomingSms {
    std::u16string from;
    std::u16string text;
    FILETIME date{}; // local wall-clock time the network stamped; zero: now
    std::u16string serviceCentre;
};

class RadioBackend {
public:
    using Progress = std::function<void(int segment, int segments)>;
    using Finished = std::function<void(const GSM::Result& result)>;

    virtual ~RadioBackend() = default;
    // What the phone tells the person it uses, e.g. "ModemManager: Quectel EG25".
    virtual std::u16string description() const = 0;
    // Transmits one message. `progress` reports each segment handed to the network, `finished`
    // the outcome exactly once (a failure carries the modem's or the network's words). Both
    // may be called later from the event loop; the store ignores calls after it closed.
    virtual void send(const OutgoingSms& message, Progress progress, Finished finished) = 0;
    // The SIM message at this position of the last offer is safely in the store now: the
    // backend may delete the modem's copy.
    virtual void simMessageStored(const IncomingSms& message) {}
};

// Installs the backend the store's radio sends through; null returns to the simulator. The
// library keeps it until it is replaced.
void setRadioBackend(std::shared_ptr<RadioBackend> backend);
RadioBackend* radioBackend();
// "simulator", or the backend's description.
std::u16string radioDescription();

// A backend received a message. Idempotent: a message with the same sender, time and text
// already in the Inbox is not stored again and the call succeeds, so a backend deletes its copy
// only after success and a crash in between neither loses nor doubles a message.
GSM::Result importReceived(const IncomingSms& message);
// The network as the backend's modem sees it.
struct RadioState {
    int state = 0;         // GSM::Device::State
    int signalPercent = 0; // 0 .. 100
    std::u16string operatorName;
};
// The device answers from this from now on (until the backend is replaced), and its handlers
// hear what changed: the status, the signal strength, the network and the operator's name.
void reportRadioState(const RadioState& state);

// What the network reported of a message sent with a status report asked for
// (TS 23.040 9.2.2.3): delivered at `time`, or given up on for `reason`.
struct DeliveryReport {
    bool delivered = true;
    FILETIME time{}; // local time of the delivery; zero: now
    std::u16string reason;
};
// The report for the recipient at this position of a sent message: the time is kept (the
// message view shows it, the host hears of it); a failure ends the message Failed with the
// reason. A report for a message or recipient not sent is refused.
GSM::Result reportDelivery(long messageId, int recipient, const DeliveryReport& report);

// A SIM whose number of message slots the backend cannot learn (ModemManager does not say).
constexpr int kSimCapacityUnknown = 0;
// Messages found on the SIM: offered to the person for the SIM transfer (those already in the
// Inbox are left out, and reported to the backend as stored). With kSimCapacityUnknown the
// SIM is not said to be full, and Sms::simStorage reports a capacity of 0.
GSM::Result offerSimMessages(const std::vector<IncomingSms>& messages, int capacity);

} // namespace tessaly::telephony
