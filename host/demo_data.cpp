#include "host/demo_data.h"

#include "framework/time/clock.h"
#include "gsm/gsm.h"
#include "suite/telephony/simulator.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::host {

namespace {

namespace sim = tessaly::telephony::simulator;

constexpr std::uint64_t kTicksPerMinute = 600000000ULL;

struct DemoContact {
    const char16_t* firstName;
    const char16_t* lastName;
    const char16_t* number;
    const char16_t* company;
};

// Numbers from ranges set aside for drama and examples, so none of them reaches a real person.
constexpr std::array kContacts = {
    DemoContact{u"Anna", u"Berger", u"+447700900101", u""},
    DemoContact{u"Jonas", u"Keller", u"+447700900102", u""},
    DemoContact{u"Mia", u"Hoffmann", u"+447700900103", u""},
    DemoContact{u"Lukas", u"Schmidt", u"+447700900104", u""},
    DemoContact{u"Sophie", u"Wagner", u"+447700900105", u""},
    DemoContact{u"Elias", u"Brandt", u"+447700900106", u""},
    DemoContact{u"Clara", u"Neumann", u"+447700900107", u""},
    DemoContact{u"Paul", u"Richter", u"+447700900108", u""},
    DemoContact{u"Lena", u"Fischer", u"+447700900109", u""},
    DemoContact{u"", u"", u"+447700900110", u"Halvern Taxi"},
    DemoContact{u"", u"", u"+447700900111", u"Dr. Vogt Dental Practice"},
    DemoContact{u"Max", u"Lehmann", u"+447700900112", u""},
};

// Incoming texts; each is paired with a sender in turn (some from numbers nobody saved).
constexpr std::array kIncoming = {
    u"Are we still on for lunch tomorrow?",
    u"Running 10 minutes late, sorry!",
    u"Can you pick up some bread on the way home?",
    u"Happy birthday! Have a great day :-)",
    u"The meeting moved to room 4.12.",
    u"Thanks for yesterday, it was lovely.",
    u"Your taxi is waiting outside.",
    u"Reminder: dental appointment on Thursday at 9:30.",
    u"Did you see the match last night?",
    u"Call me when you get this.",
    u"I left the keys with the neighbours.",
    u"Train delayed, arriving 18:40.",
    u"Can I borrow your ladder this weekend?",
    u"See you at the cinema at 8.",
    u"Got the tickets! Row 7, seats 12 and 13.",
    u"Please send me the address again.",
    u"Dinner is at our place on Saturday - bring dessert?",
    u"The parcel arrived, thank you!",
    u"Weather looks great for Sunday, shall we go hiking?",
    u"Don't forget to water the plants.",
    u"I'm at the station, where are you?",
    u"Good luck with the exam tomorrow!",
    u"Just landed, will call later.",
    u"Could you forward me Jonas' number?",
    u"Our offer: 20% off all menus this week. Reply STOP to opt out.",
    u"Meeting notes are in the shared folder.",
    u"Coffee at 3?",
    u"The kids loved the present, thank you so much!",
    u"Running low on battery, text me instead.",
    u"Congratulations on the new job!",
    u"Can we move our call to Friday?",
    u"Sounds good. Let's do it.",
};

constexpr std::array kUnknownSenders = {u"+447700900901", u"+447700900902"};

constexpr std::array kOutgoing = {
    u"Yes, 12:30 at the usual place.",
    u"No problem, see you soon.",
    u"Sure, white or brown?",
    u"Thank you! :-)",
    u"On my way.",
    u"I'll be there in 15 minutes.",
    u"Could you send me the documents by tonight?",
    u"Great news, congratulations!",
    u"Yes, Saturday works for me.",
    u"Sorry, I missed your call. Call you back at 6.",
    u"The address is 12 Mill Lane, second floor.",
    u"Friday is fine.",
    u"I'll bring a chocolate cake.",
    u"Enjoy your holiday!",
    u"Let me know when you arrive.",
    u"Happy to help.",
};

FILETIME minutesBefore(const FILETIME& now, std::uint64_t minutes) {
    return fileTimeFromUInt64(fileTimeToUInt64(now) - minutes * kTicksPerMinute);
}

} // namespace

bool hasStoredData() {
    if (GSM::sms.messageCount(GSM::Sms::FolderInbox) > 0 ||
        GSM::sms.messageCount(GSM::Sms::FolderOutbox) > 0)
        return true;
    const GSM::Folder* contacts = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts);
    return contacts && contacts->size() > 0;
}

DemoSeeding seedDemoData(const SYSTEMTIME& now, GSM::Result* result) {
    auto fail = [result](const GSM::Result& failure) {
        if (result)
            *result = failure;
        return DemoSeeding::Failed;
    };
    if (hasStoredData())
        return DemoSeeding::AlreadyHadData;

    FILETIME nowFileTime{};
    if (!SystemTimeToFileTime(&now, &nowFileTime))
        return fail(GSM::Result(GSM::ErrorInvalidArgument, u"The clock gives no valid date."));

    for (const DemoContact& contact : kContacts) {
        const GSM::Result added =
            sim::addContact(contact.firstName, contact.lastName, {contact.number}, contact.company);
        if (!added.isOk())
            return fail(added);
    }

    // Spread over the last seven days, newest last; the three newest Inbox messages are unread.
    std::vector<sim::StoredMessage> messages;
    const std::uint64_t inboxStep = 7 * 24 * 60 / kIncoming.size();
    for (std::size_t i = 0; i < kIncoming.size(); ++i) {
        sim::StoredMessage message;
        message.folder = GSM::Sms::FolderInbox;
        const bool fromStranger = i % 11 == 5;
        message.addresses = {fromStranger ? kUnknownSenders[i % kUnknownSenders.size()]
                                          : kContacts[(i * 5) % kContacts.size()].number};
        message.text = kIncoming[i];
        message.date = minutesBefore(nowFileTime, (kIncoming.size() - i) * inboxStep + i % 7);
        message.status = i + 3 >= kIncoming.size() ? GSM::Message::Unread
                         : i % 4 == 1              ? GSM::Message::Replied
                                                   : GSM::Message::Read;
        messages.push_back(std::move(message));
    }
    const std::uint64_t outboxStep = 6 * 24 * 60 / kOutgoing.size();
    for (std::size_t i = 0; i < kOutgoing.size(); ++i) {
        sim::StoredMessage message;
        message.folder = GSM::Sms::FolderOutbox;
        message.addresses = {kContacts[(i * 7 + 1) % kContacts.size()].number};
        if (i % 6 == 2) // a few went to two people
            message.addresses.push_back(kContacts[(i * 3 + 4) % kContacts.size()].number);
        message.text = kOutgoing[i];
        message.date = minutesBefore(nowFileTime, (kOutgoing.size() - i) * outboxStep + 20);
        message.status = i == kOutgoing.size() - 1 ? GSM::Message::NotSent
                         : i == 9                  ? GSM::Message::Failed
                                                   : GSM::Message::Sent;
        messages.push_back(std::move(message));
    }
    if (const GSM::Result stored = sim::addStoredMessages(messages); !stored.isOk())
        return fail(stored);

    // Channel 50 carries the cell's area name, 221 a weather service.
    const Utilities::Range channels[] = {{50, 51}, {221, 222}};
    if (const GSM::Result subscribed = GSM::CellBroadcast::setMessageTypes(2, channels, 0, nullptr);
        !subscribed.isOk())
        return fail(subscribed);
    sim::receiveCellBroadcast(50, u"Halvern Centre", -1, minutesBefore(nowFileTime, 90));
    sim::receiveCellBroadcast(221, u"Sunny spells, 18\u00b0C, light wind from the west.", -1,
                              minutesBefore(nowFileTime, 35));
    return DemoSeeding::Seeded;
}

} // namespace tessaly::host
