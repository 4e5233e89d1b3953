#pragma once

// The store that owns the library's objects: messages in memory with every change written
// through to SQLite, the phone book, preferences, service centres, SIM, cell broadcast and the
// device. Its records have headers of their own (contact_records.h, message_records.h,
// preference_records.h); what the radio sends goes through its SendQueue (send_queue.h).

#include "gsm/gsm.h"
#include "suite/telephony/contact_records.h"
#include "suite/telephony/database.h"
#include "suite/telephony/events.h"
#include "suite/telephony/message_records.h"
#include "suite/telephony/preference_records.h"
#include "suite/telephony/send_queue.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/store_support.h"
#include "suite/telephony/telephony.h"

#include "framework/time/clock.h"

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessaly::telephony {

namespace archive {
struct ArchivedMessage;
}
class RadioBackend;

struct CbRecord {
    int language = -1;
    std::u16string text;
    std::uint64_t dateTicks = 0;
    int count = 0;
};

// The outcome column of a message's addresses.
constexpr int kRecipientNotSent = 0;
constexpr int kRecipientSent = 1;
constexpr int kRecipientFailed = 2;

class Store final : private SendQueueStorage {
public:
    static constexpr int kCbCapacity = 15;
    static constexpr std::size_t kKeptSnapshots = 16;

    // The open store, opening the default one on first use; null when it cannot be opened.
    static Store* current();
    static GSM::Result open(const Options& options);
    static void close();
    static bool isOpen();
    static GSM::Result lastOpenResult();
    // A failure naming why the store is not available.
    static GSM::Result unavailable();

    Store(std::unique_ptr<Database> db, const Options& options);
    ~Store();
    GSM::Result load();
    Database& db() { return *db_; }
    std::uint64_t nowTicks() const;
    void touchMessages(); // the message store changed: snapshots rebuild, handlers hear it

    // Messages.
    MessageRecord* makeMessage();
    MessageRecord* findMessage(long id) const; // stored and not deleted
    GSM::Result endEdit(MessageRecord& message, bool discard);
    // Between these, what endEdit(false) hands over is held back, then stored and queued in
    // one transaction: a crash in between leaves none of it.
    GSM::Result beginHandOver();
    GSM::Result endHandOver();
    GSM::Result setStatus(long id, GSM::Message::Status status);
    GSM::Result deleteMessages(int folder, int ageDays);
    GSM::MessageContainer* container(int folder, int sortKey);
    std::unique_ptr<ContainerImpl> buildContainer(int folder, int sortKey) const;
    int messageCount(int folder) const;
    int unreadCount() const;
    GSM::Result newMessage(long replyTo, bool forward);
    GSM::Result receive(const std::u16string& from, const std::u16string& text, FILETIME date,
                        const std::u16string& serviceCentre, long* id);
    GSM::Result addStoredMessages(const std::vector<simulator::StoredMessage>& messages);
    // An archive import: each message `next` gives that the store does not hold yet (same
    // folder, date, numbers and text) is stored, all in one transaction, without sending.
    GSM::Result importMessages(const std::function<bool(archive::ArchivedMessage&)>& next,
                               qint64* imported, qint64* alreadyPresent);
    GSM::Result saveMessage(MessageRecord& message);
    // Whether the radio reached the recipient at this position of a stored message.
    bool recipientSent(long id, int position);
    std::unique_ptr<FolderImpl> materializeAddresses(MessageRecord& message,
                                                     const std::vector<std::u16string>& numbers);

    // Contacts.
    GSM::Result addContact(const std::u16string& first, const std::u16string& last,
                           const std::vector<std::u16string>& numbers,
                           const std::u16string& company, long* id);
    GSM::Result saveContact(ContactRecord& contact);
    GSM::Result removeContact(ContactRecord* contact);
    GSM::Result removeAllContacts();
    AddressRecord* lookup(std::u16string_view number);
    AddressRecord* addressFor(GSM::Contact* contact);
    AddressRecord* bareAddress(const std::u16string& number);
    ContactRecord* findPerson(std::u16string_view number) const;
    // The phone book's entries (sorted as the picker shows them).
    const std::vector<GSM::Contact*>& phoneBook() const { return contactsFolder_.entries; }
    std::uint64_t phoneBookGeneration() const { return phoneBookGeneration_; }
    FolderImpl* folder(int specialFolder);
    GSM::Result runPicker(GSM::WindowHandle owner, const std::u16string& title,
                          ContactRecord** chosen);
    void phoneBookChanged();

    // Preferences.
    unsigned long recordSize(int service) const;
    GSM::Result readRecord(int service, void* buffer) const;
    GSM::Result writeRecord(int service, const void* buffer, unsigned long size);
    GSM::Result announcePreferences();
    GSM::Result saveSetting(const char* name, std::int64_t value);
    GSM::Result saveSetting(const char* name, const std::u16string& value);
    void preferencesChanged() { preferencesDirty_ = true; }
    Settings& settings() { return settings_; }
    MainPreferencesImpl& mainPreferences() { return mainPreferences_; }
    ServiceCentreListImpl& serviceCentres() { return serviceCentres_; }

    // Cell broadcast.
    GSM::Result setSubscription(int channelCount, const Utilities::Range* channels,
                                int languageCount, const Utilities::Range* languages);
    GSM::Result querySubscription();
    GSM::Result receiveBroadcast(int channel, const std::u16string& text, int language,
                                 FILETIME date);
    const std::map<int, CbRecord>& broadcasts() const { return broadcasts_; }

    // SIM and device.
    GSM::Result setSimContents(const std::vector<simulator::SimMessage>& messages, int capacity);
    GSM::Result moveSimMessages();
    int simMessageCount() const { return int(simMessages_.size()); }
    int deviceState() const override { return deviceState_; }
    void setDeviceState(int state);
    bool smsServiceKnown = true;
    GSM::Result setSmsService(int service);

    // Whether the Inbox holds a message from `from` with this text and date (radio_backend.cpp).
    bool hasReceived(const std::u16string& from, const std::u16string& text,
                     std::uint64_t ticks) const;

    // What the radio sends, and how fast the simulated radio and the SIM transfer go.
    SendQueue& sendQueue() { return sendQueue_; }
    void setDelays(int segmentDelayMs, int simTransferDelayMs);

private:
    struct ContainerCache {
        std::uint64_t generation = 0;
        std::deque<std::unique_ptr<ContainerImpl>> snapshots; // newest last
    };
    void insertByDate(MessageRecord* message);
    void eraseByDate(MessageRecord* message);
    GSM::Result removeMessage(MessageRecord& message);
    // Stores the edits and queues the Outbox messages, all or none.
    GSM::Result storeHandedOver(const std::vector<MessageRecord*>& messages);
    void loadMessages();
    void loadContacts();
    void loadSettings();
    void loadCellBroadcast();
    void sortPhoneBook();
    GSM::Result saveSubscription();
    // SendQueueStorage: what the queue sends, and where its outcome goes.
    std::optional<MessageToSend> messageToSend(long id) override;
    void recordProgress(long id, int recipient, int sentSegments, int segments) override;
    GSM::Result recordOutcome(long id, int failedRecipient, const GSM::Result& result) override;
    // Who a message to several recipients did not reach, and why, for the completion.
    std::u16string unreachedText(long id, const GSM::Result& reason);
    bool sendWhileRoaming() const override { return settings_.sendWhileRoaming; }
    bool statusReport() const override { return settings_.statusReport; }
    void simStep();
    void stopTimer(TimerHandle& handle);
    TimerHandle startOneShot(int delayMs, void (Store::*step)());

    std::unique_ptr<Database> db_;
    Options options_;
    long nextMessageId_ = 1;
    std::unordered_map<long, std::unique_ptr<MessageRecord>> messages_;
    std::array<std::vector<MessageRecord*>, 2> byDate_;
    std::uint64_t generation_ = 1;
    bool messagesEventQueued_ = false;
    std::uint64_t phoneBookGeneration_ = 1;
    std::map<int, ContainerCache> containers_;
    std::optional<std::vector<MessageRecord*>> handOver_;

    std::vector<std::unique_ptr<ContactRecord>> contacts_;
    std::vector<std::unique_ptr<AddressRecord>> addresses_;
    std::unordered_map<std::u16string, AddressRecord*> bareAddresses_;
    FolderImpl contactsFolder_{*this, FolderImpl::Kind::Contacts};
    FolderImpl pickerFolder_{*this, FolderImpl::Kind::Picker};

    std::map<int, std::vector<std::uint8_t>> records_;
    bool preferencesDirty_ = false;
    Settings settings_;
    MainPreferencesImpl mainPreferences_{*this};
    ServiceCentreListImpl serviceCentres_{*this};

    std::vector<Utilities::Range> channels_;
    std::vector<Utilities::Range> languages_;
    std::map<int, CbRecord> broadcasts_;

    std::vector<simulator::SimMessage> simMessages_;
    std::vector<long> simMessageIds_;
    TimerHandle simTimer_ = 0;
    int deviceState_ = GSM::Device::StateRegisteredHome;

    // Last, so that it goes first: its timer and a backend's late answers end before the
    // messages it reads.
    SendQueue sendQueue_{*this, options_.segmentDelayMs};
};

} // namespace tessaly::telephony
