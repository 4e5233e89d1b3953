#pragma once

// TEST AND SIMULATOR ONLY. What the radio, the network and the SIM would do on a real phone:
// the host's simulator panel, its demo data and the tests call these; the module never does.

#include "gsm/gsm.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::telephony::simulator {

// An SMS arrives from `from`: stored in the Inbox as Unread, handlers and the host are told.
// Returns the new message's id through `id` when given.
GSM::Result receiveMessage(const std::u16string& from, const std::u16string& text,
                           std::optional<FILETIME> date = std::nullopt,
                           const std::u16string& serviceCentre = u"", long* id = nullptr);
// A cell broadcast arrives; dropped with ErrorNotFound when the channel (or a given language,
// -1 = none) is not subscribed.
GSM::Result receiveCellBroadcast(int channel, const std::u16string& text, int language = -1,
                                 std::optional<FILETIME> date = std::nullopt);

struct SimMessage {
    std::u16string from;
    std::u16string text;
    FILETIME date{};
    bool read = false;
    std::u16string serviceCentre; // the one its PDU carried; empty: the SIM's own
};
// Replaces the SIM's messages; the host hears (count, capacity) when there are any and the
// person has not declined the move.
GSM::Result setSimContents(const std::vector<SimMessage>& messages, int capacity);
GSM::Result setSimServiceCentre(const std::u16string& number);
// Device state (GSM::Device::State); handlers hear eventStatusChanged.
void setDeviceState(int state);
// Whether the device can tell its SMS bearer preference (smsService answers -1 when not).
void setSmsServiceKnown(bool known);
// The next message sent fails with this code and text (520: the network's own words).
void failNextSend(long code, const std::u16string& text);
// Called as the radio puts each segment on the air, before the store records that it did: a
// crash test sees exactly what went out. Empty stops watching.
void watchTransmissions(std::function<void(long id, int recipient, int segment, int segments)>);
// The radio's pace (milliseconds; 0 sends on the next timer turn).
void setDelays(int segmentDelayMs, int simTransferDelayMs);

// Seeding (demo data, tests, benchmarks).
GSM::Result addContact(const std::u16string& firstName, const std::u16string& lastName,
                       const std::vector<std::u16string>& numbers,
                       const std::u16string& company = u"", long* id = nullptr);
struct StoredMessage {
    int folder = 0; // 0 Inbox, 1 Outbox
    GSM::Message::Status status = GSM::Message::Read;
    std::vector<std::u16string> addresses; // sender (Inbox) or recipients (Outbox)
    std::u16string text;
    FILETIME date{};
};
// Stores messages as they are, in one transaction, without events or sending.
GSM::Result addStoredMessages(const std::vector<StoredMessage>& messages);

} // namespace tessaly::telephony::simulator
