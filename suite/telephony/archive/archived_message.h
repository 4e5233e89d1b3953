#pragma once

// A message as it travels in and out of an archive file (the XML of Android's "SMS Backup &
// Restore" app, or CSV): what the store keeps of it, and nothing of the store itself.

#include "gsm/message.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::telephony::archive {

struct ArchivedMessage {
    int folder = 0; // GSM::Sms::FolderInbox or FolderOutbox
    GSM::Message::Status status = GSM::Message::Read;
    std::uint64_t dateTicks = 0; // local wall-clock FILETIME ticks, as the store keeps dates
    std::vector<std::u16string> numbers; // the sender (Inbox) or the recipients (Outbox)
    std::u16string serviceCentre;
    std::u16string text;

    bool operator==(const ArchivedMessage&) const = default;
};

// Where reading stopped in a damaged, truncated or foreign file, and why.
struct ReadError {
    qint64 line = 0;
    qint64 column = 0;
    QString reason;

    QString describe() const;
};

// Archive files count time in milliseconds since 1970 UTC; the store in local wall-clock ticks.
// A wall-clock time that occurs twice (the hour a summer time ends) takes its first occurrence.
// False for a time outside the years 1601 to 9999, which the store cannot keep.
bool localTicksFromUtcMilliseconds(qint64 milliseconds, std::uint64_t* ticks);
qint64 utcMillisecondsFromLocalTicks(std::uint64_t ticks);

} // namespace tessaly::telephony::archive
