#pragma once

// The store that owns the library's objects: messages in SQLite, made into objects when they
// are asked for (message_cache.h) and listed through windows over the database
// (message_window.h), the phone book, preferences, service centres, SIM, cell broadcast and the
// device in memory with every change written through. Its records have headers of their own
// (contact_records.h, message_records.h, preference_records.h); what the radio sends goes through
// its SendQueue (send_queue.h).

#include "gsm/gsm.h"
#include "suite/telephony/contact_records.h"
#include "suite/telephony/database.h"
#include "suite/telephony/events.h"
#include "suite/telephony/message_cache.h"
#include "suite/telephony/message_records.h"
#include "suite/telephony/message_window.h"
#include "suite/telephony/preference_records.h"
#include "suite/telephony/radio_backend.h"
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
    // Windows kept per folder and order; only the newest hold a read transaction.
    static constexpr std::size_t kKeptSnapshots = 16;
    static constexpr std::size_t kWindowsReading = 2;

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
    MessageRecord* findMessage(long id); // stored and not deleted
    // A message a window lists (loaded when it is not an object yet); null once deleted.
    MessageRecord* messageForWindow(long id);
    // Every message of the folder in this SQL order, as objects.
    std::vector<std::shared_ptr<MessageRecord>> loadFolder(int folder, const char* orderBy);
    // The numbers of a stored message's addresses, in order.
    std::vector<std::u16string> readAddresses(long id);
    // Message objects alive now (the budget, those pinned, those small windows hold).
    std::size_t cachedMessageObjects() const { return cache_.liveCount(); }
    // Pins a stored message while it is being edited; endEdit lets go.
    void pinForEdit(MessageRecord& message);
    GSM::Result endEdit(MessageRecord& message, bool discard);
    // Between these, what endEdit(false) hands over is held back, then stored and queued in
    // one transaction: a crash in between leaves none of it.
    GSM::Result beginHandOver();
    GSM::Result endHandOver();
    GSM::Result setStatus(long id, GSM::Message::Status status);
    GSM::Result deleteMessages(int folder, int ageDays);
    GSM::MessageContainer* container(int folder, int sortKey);
    // A window made now, not kept: what container() hands out, without the cache.
    std::unique_ptr<MessageWindow> makeWindow(int folder, int sortKey);
    int messageCount(int folder);
    int unreadCount();
    // Queues every stored Outbox message of status Send now.
    void queueSendNow();
    GSM::Result newMessage(long replyTo, bool forward);
    GSM::Result receive(const std::u16string& from, const std::u16string& text, FILETIME date,
                        const std::u16string& serviceCentre, long* id);
    GSM::Result addStoredMessages(const std::vector<simulator::StoredMessage>& messages);
    // An archive import: each message `next` gives that the store does not hold yet (same
    // folder, date, numbers and text) is stored, all in one transaction, without sending.
    GSM::Result importMessages(const std::function<bool(archive::ArchivedMessage&)>& next,
                               qint64* imported, qint64* alreadyPresent);
    // Copies what an import wrote to the write-ahead log into the database file; the import
    // leaves that to this call so that the caller can report progress between the two.
    void checkpointMessages();
    GSM::Result saveMessage(MessageRecord& message);
    // One message's row and addresses, as saveMessage and the imports write them.
    struct MessageRow {
        long id = 0;
        int folder = GSM::Sms::FolderOutbox;
        GSM::Message::Status status = GSM::Message::NotSent;
        std::u16string_view text;
        std::uint64_t dateTicks = 0;
        std::u16string_view serviceCentre;
        int validity = GSM::Message::Maximum;
        bool replyPath = false;
        long replyTo = 0;
        const std::vector<std::u16string>* numbers = nullptr;
    };
    GSM::Result writeMessage(const MessageRow& row);
    // The same without a transaction of its own, for callers that write many rows in one and
    // roll all of them back on a failure.
    bool writeMessageRows(const MessageRow& row);
    long takeMessageId() { return nextMessageId_++; }
    // The case-folded name (or the number) messages from or to this number sort by.
    std::u16string sortNameOf(const std::u16string& number);
    // Whether the radio reached the recipient at this position of a stored message.
    bool recipientSent(long id, int position);
    // When the network reported the message delivered to this recipient; 0 without a report.
    std::uint64_t deliveryTicks(long id, int position);
    GSM::Result recordDelivery(long id, int recipient, const DeliveryReport& report);
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
    // The signal and operator the device reports; the simulator's until a backend says.
    int signalPercent() const { return signalPercent_; }
    const std::u16string& operatorName() const { return operatorName_; }
    void setRadioState(const RadioState& state);
    // Back to the simulator's signal and operator (the state stays as it was).
    void useSimulatedRadioState();
    bool smsServiceKnown = true;
    GSM::Result setSmsService(int service);

    // Whether the Inbox holds a message from `from` with this text and date (radio_backend.cpp).
    bool hasReceived(const std::u16string& from, const std::u16string& text, std::uint64_t ticks);

    // What the radio sends, and how fast the simulated radio and the SIM transfer go.
    SendQueue& sendQueue() { return sendQueue_; }
    void setDelays(int segmentDelayMs, int simTransferDelayMs);

private:
    struct ContainerCache {
        std::uint64_t generation = 0;
        std::deque<std::unique_ptr<MessageWindow>> snapshots; // newest last
    };
    GSM::Result removeMessage(MessageRecord& message);
    std::shared_ptr<MessageRecord> recordFromRow(const Statement& row);
    std::shared_ptr<MessageRecord> loadMessage(long id);
    // Gives every number's messages the sort name the phone book gives it now.
    bool refreshSortNames(bool reportProgress);
    // Windows two changes old let go of their read transactions, so that the log can be reset.
    void releaseOldReaders();
    // Stores the edits and queues the Outbox messages, all or none.
    GSM::Result storeHandedOver(const std::vector<MessageRecord*>& messages);
    void loadContacts();
    void loadSettings();
    void loadCellBroadcast();
    void sortPhoneBook();
    GSM::Result saveSubscription();
    // SendQueueStorage: what the queue sends, and where its outcome goes.
    std::optional<MessageToSend> messageToSend(long id) override;
    void recordProgress(long id, int recipient, int sentSegments, int segments) override;
    GSM::Result recordOutcome(long id, int failedRecipient, const GSM::Result& result) override;
    void recordDelivered(long id, int recipient) override;
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
    MessageCache cache_{std::size_t(options_.messageObjectsKept)};
    std::uint64_t generation_ = 1;
    std::uint64_t countsGeneration_ = 0;
    std::array<std::array<int, MessageWindow::kStatuses>, 2> counts_{};
    std::unordered_map<std::u16string, std::u16string> sortNames_;
    bool sortNamesStale_ = false;
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
    static constexpr int kSimulatedSignal = 80;
    static constexpr const char16_t* kSimulatedOperator = u"Tessaly Mobile";
    int signalPercent_ = kSimulatedSignal;
    std::u16string operatorName_ = kSimulatedOperator;

    // Last, so that it goes first: its timer and a backend's late answers end before the
    // messages it reads.
    SendQueue sendQueue_{*this, options_.segmentDelayMs};
};

} // namespace tessaly::telephony
