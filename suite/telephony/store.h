#pragma once

// The library's objects and the store that owns them: messages in memory with every change
// written through to SQLite, the phone book, preferences, service centres, SIM, cell broadcast,
// the device and the simulated radio.

#include "gsm/gsm.h"
#include "suite/telephony/database.h"
#include "suite/telephony/events.h"
#include "suite/telephony/send_queue.h"
#include "suite/telephony/simulator.h"
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
#include <unordered_set>
#include <vector>

namespace tessaly::telephony {

class Store;
namespace archive {
struct ArchivedMessage;
}
class MessageRecord;
class RadioBackend;

std::u16string toU16(const WCHAR* text);
GSM::Result failure(long code, std::u16string_view text);

class NumberRecord final : public GSM::PhoneNumber {
public:
    NumberRecord(int id, Kind kind, std::u16string text)
        : id_(id)
        , kind_(kind)
        , text_(std::move(text)) {}
    int getId() const override { return id_; }
    const WCHAR* getText() const override { return text_.c_str(); }
    Kind getKind() const override { return kind_; }
    const std::u16string& text() const { return text_; }

private:
    int id_;
    Kind kind_;
    std::u16string text_;
};

class NumberListImpl final : public GSM::NumberList {
public:
    int size() const override { return int(items.size()); }
    bool isEmpty() const override { return items.empty(); }
    GSM::PhoneNumber* get(int position) const override;

    std::vector<std::unique_ptr<NumberRecord>> items;
};

// A phone-book entry.
class ContactRecord final : public GSM::Contact {
public:
    ContactRecord(Store& store, long id)
        : store_(store)
        , id_(id) {}

    long getId() const override { return id_; }
    const WCHAR* getText(int field, int form, int, int) const override;
    GSM::Result setText(int field, const WCHAR* text) override;
    int getSelectedNumber() const override { return selected_; }
    const GSM::NumberList* getNumbers() const override { return &numbers_; }
    GSM::Result selectNumber(int numberId) override;
    GSM::Result addNumber(const WCHAR* number, int kind) override;

    // The stored value of a name field (FieldCompany .. FieldEmail), or the computed one.
    std::u16string plainText(int field) const;
    const NumberRecord* selectedNumber() const;
    const NumberRecord* numberMatching(std::u16string_view number) const;
    // Case-insensitive order of the phone book.
    std::u16string sortKey() const;

    bool inPhoneBook = true;
    std::u16string firstName, lastName, company, email;

private:
    friend class Store;
    Store& store_;
    long id_;
    NumberListImpl numbers_;
    int selected_ = 0;
    mutable std::map<int, std::u16string> rendered_;
};

// A contact as reached at one number: a message's sender or recipient, or what lookup finds.
// Names come from the phone-book entry while it exists; a bare number has none.
class AddressRecord final : public GSM::Contact {
public:
    AddressRecord(Store& store, std::u16string number);

    long getId() const override;
    const WCHAR* getText(int field, int form, int, int) const override;
    GSM::Result setText(int field, const WCHAR* text) override;
    int getSelectedNumber() const override { return 1; }
    const GSM::NumberList* getNumbers() const override { return &numbers_; }
    GSM::Result selectNumber(int numberId) override;
    GSM::Result addNumber(const WCHAR*, int) override;

    const std::u16string& number() const { return numbers_.items.front()->text(); }
    // The phone-book entry holding this number now, or null.
    ContactRecord* person() const;

private:
    Store& store_;
    mutable ContactRecord* person_ = nullptr;
    mutable std::uint64_t resolvedAt_ = 0;
    NumberListImpl numbers_;
};

class FolderImpl final : public GSM::Folder {
public:
    enum class Kind { Contacts, Picker, Addresses };
    FolderImpl(Store& store, Kind kind, MessageRecord* message = nullptr)
        : store_(store)
        , kind_(kind)
        , message_(message) {}

    int size() const override { return int(entries.size()); }
    bool isEmpty() const override { return entries.empty(); }
    GSM::Contact* get(int position) const override;
    int getId() const override;
    const WCHAR* getName() const override;
    GSM::Result pick(GSM::WindowHandle owner) override;
    int indexOf(const GSM::Contact* contact) const override;
    GSM::Result add(GSM::Contact* contact) override;
    GSM::Result add(const WCHAR* number, int kind) override;
    bool containsNumber(const WCHAR* number) const override;
    GSM::Result remove(int position) override;
    GSM::Result removeAll() override;

    std::vector<GSM::Contact*> entries;

private:
    GSM::Result checkEditable();

    Store& store_;
    Kind kind_;
    MessageRecord* message_;
};

class MessageRecord final : public GSM::Message {
public:
    MessageRecord(Store& store, long id)
        : store_(store)
        , id_(id) {}

    long getId() const override { return id_; }
    Status getStatus() const override { return status; }
    const WCHAR* getText() const override { return text.c_str(); }
    FILETIME date() const override { return fileTimeFromUInt64(dateTicks); }
    const WCHAR* getDate() const override;
    const WCHAR* getServiceCentre() const override { return serviceCentre.c_str(); }
    ValidityPeriod getValidityPeriod() const override { return validity; }
    bool useSameServiceCentre() const override { return replyPath; }
    GSM::Folder* getContacts() override;
    GSM::Result setText(const WCHAR* text) override;
    GSM::Result setServiceCentre(const WCHAR* number) override;
    GSM::Result setUseSameServiceCentre(bool replyPath) override;
    GSM::Result setValidityPeriod(ValidityPeriod period) override;
    GSM::Result endEdit(bool discard) override;

    // Takes a snapshot for endEdit(true) before the first change of a stored message.
    GSM::Result beginChange();
    std::vector<std::u16string> addressNumbers() const;
    // The name (or number) of the first address, for sorting by contact.
    std::u16string contactKey() const;

    int folder = GSM::Sms::FolderOutbox;
    Status status = NotSent;
    std::u16string text;
    std::uint64_t dateTicks = 0;
    std::u16string serviceCentre;
    ValidityPeriod validity = Maximum;
    bool replyPath = false;
    long replyTo = 0;
    std::vector<std::u16string> storedAddresses; // until the folder is first asked for
    bool stored = false;
    bool removed = false;
    bool discarded = false;

private:
    friend class Store;
    struct Snapshot {
        std::u16string text;
        std::u16string serviceCentre;
        ValidityPeriod validity;
        bool replyPath;
        std::vector<std::u16string> addresses;
    };
    Store& store_;
    long id_;
    std::unique_ptr<FolderImpl> addresses_;
    std::optional<Snapshot> snapshot_;
    mutable std::u16string dateText_;
};

class ContainerImpl final : public GSM::MessageContainer {
public:
    explicit ContainerImpl(int sortKey)
        : sortKey_(sortKey) {}
    int size() const override { return int(items.size()); }
    bool isEmpty() const override { return items.empty(); }
    GSM::Message* get(int position) const override;
    int getFirst(GSM::Message::Status status) const override;

    std::vector<MessageRecord*> items;

private:
    int sortKey_;
};

class ServiceCentreEntryImpl final : public GSM::ServiceCentreEntry {
public:
    ServiceCentreEntryImpl(std::u16string name, std::u16string number)
        : name_(std::move(name))
        , number_(std::move(number)) {}
    const WCHAR* name() const override { return name_.c_str(); }
    const WCHAR* number() const override { return number_.c_str(); }
    const std::u16string& nameText() const { return name_; }
    const std::u16string& numberText() const { return number_; }

private:
    std::u16string name_;
    std::u16string number_;
};

class ServiceCentreListImpl final : public GSM::ServiceCentreList {
public:
    explicit ServiceCentreListImpl(Store& store)
        : store_(store) {}

    GSM::Result add(const WCHAR* name, const WCHAR* number) override;
    GSM::Result remove(int index) override;
    GSM::Result removeAll() override;
    int preferred() const override { return preferred_; }
    GSM::Result setPreferred(int index) override;
    bool isEmpty() const override { return entries_.size() <= 1; }
    GSM::Result commit(bool announce) override;
    int count() const override { return int(entries_.size()); }
    GSM::ServiceCentreEntry* get(int index) const override;

    void load(std::u16string simNumber, std::vector<std::pair<std::u16string, std::u16string>> rest,
              int preferred);
    GSM::Result setSimNumber(const std::u16string& number);

private:
    GSM::Result save();

    Store& store_;
    std::vector<ServiceCentreEntryImpl*> entries_;
    std::vector<std::unique_ptr<ServiceCentreEntryImpl>> arena_; // entries live until close
    int preferred_ = 0;
};

// The settings that main preferences and the device keep, with their factory values.
struct Settings {
    int validityPeriod = GSM::Message::Maximum;
    bool useSameServiceCentre = false;
    bool statusReport = false;
    bool sendWhileRoaming = true;
    bool playSound = true;
    std::u16string soundName = u"Notify";
    bool askToMoveSimMessages = true;
    bool tickerScrolls = true;
    bool tickerHorizontal = true;
    bool showCbDialog = false;
    bool showEveryCbMessage = false;
    int preferredServiceCentre = 0;
    std::u16string simServiceCentre;
    int smsService = GSM::Device::SmsServiceGprs;
    int simCapacity = 20;
};

class MainPreferencesImpl final : public GSM::MainPreferences {
public:
    explicit MainPreferencesImpl(Store& store)
        : store_(store) {}

    int reserved01() const override { return 0; }
    int reserved02() const override { return 0; }
    int reserved03() const override { return 0; }
    int reserved04() const override { return 0; }
    int reserved05() const override { return 0; }
    int reserved06() const override { return 0; }
    int reserved07() const override { return 0; }
    int reserved08() const override { return 0; }
    int reserved09() const override { return 0; }
    int reserved10() const override { return 0; }
    int reserved11() const override { return 0; }
    int reserved12() const override { return 0; }
    GSM::ServiceCentreList* serviceCentres() override;
    int validityPeriod() const override;
    bool useSameServiceCentre() const override;
    bool statusReport() const override;
    bool sendWhileRoaming() const override;
    int playSound() const override;
    const WCHAR* soundName() const override;
    bool askToMoveSimMessages() const override;
    bool tickerScrolls() const override;
    bool tickerHorizontal() const override;
    bool showCbDialog() const override;
    bool showEveryCbMessage() const override;
    GSM::Result reserved25(int) override { return {}; }
    GSM::Result reserved26(int) override { return {}; }
    GSM::Result reserved27(int) override { return {}; }
    GSM::Result reserved28(int) override { return {}; }
    GSM::Result reserved29(int) override { return {}; }
    GSM::Result reserved30(int) override { return {}; }
    GSM::Result reserved31(int) override { return {}; }
    GSM::Result reserved32(int) override { return {}; }
    GSM::Result reserved33(int) override { return {}; }
    GSM::Result reserved34(int) override { return {}; }
    GSM::Result reserved35(int) override { return {}; }
    GSM::Result reserved36(int) override { return {}; }
    GSM::Result setValidityPeriod(int code) override;
    GSM::Result setUseSameServiceCentre(bool on) override;
    GSM::Result setStatusReport(bool on) override;
    GSM::Result setSendWhileRoaming(bool on) override;
    GSM::Result setPlaySound(bool on) override;
    GSM::Result setSoundName(const WCHAR* name) override;
    GSM::Result setAskToMoveSimMessages(bool on) override;
    GSM::Result setTickerScrolls(bool on) override;
    GSM::Result setTickerHorizontal(bool on) override;
    GSM::Result setShowCbDialog(bool on) override;
    GSM::Result setShowEveryCbMessage(bool on) override;

private:
    Store& store_;
};

struct CbRecord {
    int language = -1;
    std::u16string text;
    std::uint64_t dateTicks = 0;
    int count = 0;
};

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
    void loadMessages();
    void loadContacts();
    void loadSettings();
    void loadCellBroadcast();
    void sortPhoneBook();
    GSM::Result saveSubscription();
    // SendQueueStorage: what the queue sends, and where its outcome goes.
    std::optional<MessageToSend> messageToSend(long id) override;
    void recordOutcome(long id, const GSM::Result& result) override;
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
