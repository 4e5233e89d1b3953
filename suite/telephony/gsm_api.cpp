// The GSM:: contract's entry points: each forwards to the open store, or answers "not
// available" when there is none.

#include "suite/telephony/host_hooks.h"
#include "suite/telephony/length_info.h"
#include "suite/telephony/store.h"

#include "framework/ui/useragent.h"

#include <QString>

namespace tessaly::telephony {

namespace {

HostHooks& installedHooks() {
    static HostHooks hooks;
    return hooks;
}

QString toQString(const WCHAR* text) {
    return text ? QString::fromUtf16(text) : QString();
}

class SmsService final : public GSM::Sms {
public:
    int messageCount(int folder) const override {
        Store* store = Store::current();
        return store ? store->messageCount(folder) : 0;
    }
    int unreadCount() const override {
        Store* store = Store::current();
        return store ? store->unreadCount() : 0;
    }
    GSM::Result newMessage(int) override {
        Store* store = Store::current();
        return store ? store->newMessage(0, false) : Store::unavailable();
    }
    GSM::Result replyMessage(long id) override {
        Store* store = Store::current();
        if (!store)
            return Store::unavailable();
        return id == 0 ? failure(GSM::ErrorNotFound, u"The message does not exist.")
                       : store->newMessage(id, false);
    }
    GSM::Result forwardMessage(long id) override {
        Store* store = Store::current();
        if (!store)
            return Store::unavailable();
        return id == 0 ? failure(GSM::ErrorNotFound, u"The message does not exist.")
                       : store->newMessage(id, true);
    }
    GSM::Result beginHandOver() override {
        Store* store = Store::current();
        return store ? store->beginHandOver() : Store::unavailable();
    }
    GSM::Result endHandOver() override {
        Store* store = Store::current();
        return store ? store->endHandOver() : Store::unavailable();
    }
    GSM::Result sendPending() override {
        Store* store = Store::current();
        if (!store)
            return Store::unavailable();
        store->queueSendNow();
        return {};
    }
    GSM::Result moveSimMessages() override {
        Store* store = Store::current();
        return store ? store->moveSimMessages() : Store::unavailable();
    }
    GSM::Result simStorage(int* used, int* capacity) const override {
        Store* store = Store::current();
        if (!store)
            return Store::unavailable();
        if (used)
            *used = store->simMessageCount();
        if (capacity)
            *capacity = store->settings().simCapacity;
        return {};
    }
    GSM::Result deleteMessages(int folder, int ageDays) override {
        Store* store = Store::current();
        return store ? store->deleteMessages(folder, ageDays) : Store::unavailable();
    }
    GSM::Result setMessageStatus(long id, GSM::Message::Status status) override {
        Store* store = Store::current();
        return store ? store->setStatus(id, status) : Store::unavailable();
    }
    GSM::MessageContainer* getMessages(int folder, int sortKey) override {
        Store* store = Store::current();
        return store ? store->container(folder, sortKey) : nullptr;
    }
    GSM::Message* getMessage(long id, int) override {
        Store* store = Store::current();
        return store ? store->findMessage(id) : nullptr;
    }
    void getLengthInfo(const WCHAR* text, int* characters, int* messages) const override {
        const LengthInfo info = measureText(text);
        if (characters)
            *characters = info.characters;
        if (messages)
            *messages = info.messages;
    }
};

class PhoneDevice final : public GSM::Device {
public:
    int signalStrength() const override {
        Store* store = Store::current();
        return store && inService() ? store->signalPercent() : 0;
    }
    Battery battery() const override { return BatteryHigh; }
    int batteryLevel() const override { return 90; }
    Net netStatus() const override {
        switch (getState()) {
        case StateRegisteredHome:
            return NetHome;
        case StateRegisteredRoaming:
            return NetRoaming;
        case StateSearching:
            return NetSearching;
        default:
            return NetUnknown;
        }
    }
    const WCHAR* information(Information which) const override {
        switch (which) {
        case InformationOperator:
            return operatorName();
        case InformationImei:
            return u"350000000000006";
        default:
            return u"";
        }
    }
    bool isDataConnected() const override { return false; }
    int bandMode() const override { return 0; }
    GSM::Result setBandMode(int) override { return notSupported(); }
    int getState() const override {
        Store* store = Store::current();
        return store ? store->deviceState() : StateOff;
    }
    int gprsClass() const override { return 10; }
    GSM::Result setGprsClass(int) override { return notSupported(); }
    const WCHAR* operatorName() const override {
        Store* store = Store::current();
        return store && inService() ? store->operatorName().c_str() : u"";
    }
    GSM::Result refresh() override { return {}; }
    int smsService() const override {
        Store* store = Store::current();
        if (!store || !store->smsServiceKnown)
            return SmsServiceUnknown;
        return store->settings().smsService;
    }
    GSM::Result setSmsService(int service) override {
        Store* store = Store::current();
        return store ? store->setSmsService(service) : Store::unavailable();
    }

private:
    bool inService() const {
        const int state = getState();
        return state == StateRegisteredHome || state == StateRegisteredRoaming;
    }
    static GSM::Result notSupported() {
        return failure(GSM::ErrorNotSupported, u"The simulated radio has no such setting.");
    }
};

SmsService smsService;
PhoneDevice phoneDevice;

} // namespace

void installHostHooks(HostHooks hooks) {
    installedHooks() = std::move(hooks);
}

const HostHooks& hostHooks() {
    return installedHooks();
}

GSM::Result open(const Options& options) {
    return Store::open(options);
}

void close() {
    Store::close();
}

bool isOpen() {
    return Store::isOpen();
}

GSM::Result lastOpenResult() {
    return Store::lastOpenResult();
}

namespace simulator {

GSM::Result receiveMessage(const std::u16string& from, const std::u16string& text,
                           std::optional<FILETIME> date, const std::u16string& serviceCentre,
                           long* id) {
    Store* store = Store::current();
    return store ? store->receive(from, text, date.value_or(FILETIME{}), serviceCentre, id)
                 : Store::unavailable();
}

GSM::Result receiveCellBroadcast(int channel, const std::u16string& text, int language,
                                 std::optional<FILETIME> date) {
    Store* store = Store::current();
    return store ? store->receiveBroadcast(channel, text, language, date.value_or(FILETIME{}))
                 : Store::unavailable();
}

GSM::Result setSimContents(const std::vector<SimMessage>& messages, int capacity) {
    Store* store = Store::current();
    return store ? store->setSimContents(messages, capacity) : Store::unavailable();
}

GSM::Result setSimServiceCentre(const std::u16string& number) {
    Store* store = Store::current();
    return store ? store->serviceCentres().setSimNumber(number) : Store::unavailable();
}

void setDeviceState(int state) {
    if (Store* store = Store::current())
        store->setDeviceState(state);
}

void setSmsServiceKnown(bool known) {
    if (Store* store = Store::current())
        store->smsServiceKnown = known;
}

void failNextSend(long code, const std::u16string& text) {
    if (Store* store = Store::current())
        store->sendQueue().failNext(code, text);
}

void watchTransmissions(std::function<void(long, int, int, int)> observer) {
    if (Store* store = Store::current())
        store->sendQueue().setTransmitObserver(std::move(observer));
}

void setDelays(int segmentDelayMs, int simTransferDelayMs) {
    if (Store* store = Store::current())
        store->setDelays(segmentDelayMs, simTransferDelayMs);
}

GSM::Result addContact(const std::u16string& firstName, const std::u16string& lastName,
                       const std::vector<std::u16string>& numbers, const std::u16string& company,
                       long* id) {
    Store* store = Store::current();
    return store ? store->addContact(firstName, lastName, numbers, company, id)
                 : Store::unavailable();
}

GSM::Result addStoredMessages(const std::vector<StoredMessage>& messages) {
    Store* store = Store::current();
    return store ? store->addStoredMessages(messages) : Store::unavailable();
}

} // namespace simulator

} // namespace tessaly::telephony

namespace GSM {

using tessaly::telephony::EventQueue;
using tessaly::telephony::HandlerKind;
using tessaly::telephony::hostHooks;
using tessaly::telephony::Store;

Sms& sms = tessaly::telephony::smsService;
Device& device = tessaly::telephony::phoneDevice;

Result::Result(long code, std::u16string_view message)
    : code_(code)
    , message_(message) {}

// ---- services and the host

void setActiveService(ServiceId service) {
    EventQueue::instance().post([service] {
        if (hostHooks().setActiveService)
            hostHooks().setActiveService(service);
    });
}

void moduleIdle(void* hostIdle) {
    EventQueue::instance().post([hostIdle] {
        if (hostHooks().moduleIdle)
            hostHooks().moduleIdle(hostIdle);
    });
}

bool isServiceAvailable(ServiceId service) {
    if (hostHooks().isServiceAvailable)
        return hostHooks().isServiceAvailable(service);
    return service == ServiceSms || service == ServicePhoneBook;
}

Result executeService(ServiceId service) {
    if (!hostHooks().executeService)
        return Result(ErrorNotAvailable, u"The suite cannot start that service.");
    EventQueue::instance().post([service] {
        if (hostHooks().executeService)
            hostHooks().executeService(service);
    });
    return {};
}

void Io::showErrorMessage(const Result& result) {
    if (hostHooks().showErrorMessage) {
        hostHooks().showErrorMessage(result);
        return;
    }
    tessaly::UserAgent::current().messageBox(
        nullptr, tessaly::telephony::toQString(result.getErrorMessage()), QStringLiteral("Error"),
        MB_OK | MB_ICONSTOP);
}

Result Phone::makeCall(const WCHAR* number) {
    if (!number || !*number)
        return Result(ErrorInvalidArgument, u"There is no number to call.");
    if (!isServiceAvailable(ServiceVoice) || !hostHooks().makeCall)
        return Result(ErrorNotAvailable, u"Voice calls are not available.");
    return hostHooks().makeCall(number);
}

Result Phone::makeCall(Contact* contact) {
    if (!contact)
        return Result(ErrorInvalidArgument, u"There is no contact to call.");
    return makeCall(contact->getText(Contact::FieldNumber, 1, 0, 0));
}

// ---- messages

Message* Message::make() {
    Store* store = Store::current();
    return store ? store->makeMessage() : nullptr;
}

// ---- event handler bases

SmsEventHandler::SmsEventHandler() {
    EventQueue::instance().registerHandler(HandlerKind::Sms, this);
}

SmsEventHandler::~SmsEventHandler() {
    EventQueue::instance().unregisterHandler(HandlerKind::Sms, this);
}

void SmsEventHandler::eventMessagesChanged() {}

DeviceEventHandler::DeviceEventHandler() {
    EventQueue::instance().registerHandler(HandlerKind::Device, this);
}

DeviceEventHandler::~DeviceEventHandler() {
    EventQueue::instance().unregisterHandler(HandlerKind::Device, this);
}

void DeviceEventHandler::eventSignalStrengthChanged() {}
void DeviceEventHandler::eventBatteryStatusChanged(Device::Battery) {}
void DeviceEventHandler::eventStatusChanged() {}
void DeviceEventHandler::eventNetStatusChanged(Device::Net) {}
void DeviceEventHandler::eventInformationUpdated(Device::Information) {}
void DeviceEventHandler::eventFailure(const Result&) {}
void DeviceEventHandler::eventDataConnectionChanged(bool) {}
void DeviceEventHandler::eventBandModeChanged() {}
void DeviceEventHandler::eventBandModeFailure(const Result&) {}
void DeviceEventHandler::eventGprsClassChanged() {}
void DeviceEventHandler::eventGprsClassFailure(const Result&) {}
void DeviceEventHandler::eventSmsServiceChanged() {}
void DeviceEventHandler::eventSmsServiceFailure(const Result&) {}

CellBroadcast::EventHandler::EventHandler() {
    EventQueue::instance().registerHandler(HandlerKind::CellBroadcast, this);
}

CellBroadcast::EventHandler::~EventHandler() {
    EventQueue::instance().unregisterHandler(HandlerKind::CellBroadcast, this);
}

void CellBroadcast::EventHandler::eventMessage(int) {}
void CellBroadcast::EventHandler::eventSubscription(int, const Utilities::Range*, int,
                                                    const Utilities::Range*) {}
void CellBroadcast::EventHandler::eventCbFailure(const Result&) {}

PhoneBook::PhoneBook() {
    EventQueue::instance().registerHandler(HandlerKind::PhoneBook, this);
}

PhoneBook::~PhoneBook() {
    EventQueue::instance().unregisterHandler(HandlerKind::PhoneBook, this);
}

void PhoneBook::eventSpecialFolderChanged(SpecialFolderId) {}
void PhoneBook::eventFolderChanged(Folder*) {}
void PhoneBook::eventSimCompletion(Result&) {}
void PhoneBook::eventSimEntryProcessed(int, int) {}

Preferences::Preferences() {
    EventQueue::instance().registerHandler(HandlerKind::Preferences, this);
}

Preferences::~Preferences() {
    EventQueue::instance().unregisterHandler(HandlerKind::Preferences, this);
}

void Preferences::eventPreferencesChanged() {}

// ---- phone book

Result PhoneBook::pickContact(WindowHandle owner, const WCHAR* title) {
    Store* store = Store::current();
    if (!store)
        return Store::unavailable();
    if (!isServiceAvailable(ServicePhoneBook))
        return Result(ErrorNotAvailable, u"The phone book is not available.");
    tessaly::telephony::ContactRecord* chosen = nullptr;
    Result result = store->runPicker(owner, tessaly::telephony::toU16(title), &chosen);
    if (!result.isOk())
        return result;
    EventQueue::instance().post([this, chosen] {
        if (EventQueue::instance().isRegistered(HandlerKind::PhoneBook, this))
            eventContactPicked(chosen);
    });
    return {};
}

Contact* PhoneBook::lookup(const WCHAR* number) {
    Store* store = Store::current();
    if (!store || !number || !*number)
        return nullptr;
    return store->lookup(number);
}

Folder* PhoneBook::getFolder(SpecialFolderId folder) {
    Store* store = Store::current();
    return store ? store->folder(folder) : nullptr;
}

// ---- preferences

unsigned long Preferences::getSizeOfPreferences(ServiceId service) {
    Store* store = Store::current();
    return store ? store->recordSize(service) : 0;
}

Result Preferences::getPreferences(ServiceId service, void* buffer) {
    Store* store = Store::current();
    return store ? store->readRecord(service, buffer) : Store::unavailable();
}

Result Preferences::setPreferences(ServiceId service, const void* buffer, unsigned long size) {
    Store* store = Store::current();
    return store ? store->writeRecord(service, buffer, size) : Store::unavailable();
}

Result Preferences::endEdit() {
    Store* store = Store::current();
    return store ? store->announcePreferences() : Store::unavailable();
}

MainPreferences* Preferences::getMainPreferences() {
    Store* store = Store::current();
    return store ? &store->mainPreferences() : nullptr;
}

// ---- cell broadcast

Result CellBroadcast::setMessageTypes(int channelCount, const Utilities::Range* channels,
                                      int languageCount, const Utilities::Range* languages) {
    Store* store = Store::current();
    return store ? store->setSubscription(channelCount, channels, languageCount, languages)
                 : Store::unavailable();
}

Result CellBroadcast::getMessageTypes() {
    Store* store = Store::current();
    return store ? store->querySubscription() : Store::unavailable();
}

CbMessage::CbMessage(int channel, int language, std::u16string text, FILETIME time, int count)
    : channel_(channel)
    , language_(language)
    , text_(std::move(text))
    , time_(time)
    , count_(count) {}

int CbFolder::size() const {
    Store* store = Store::current();
    return store ? int(store->broadcasts().size()) : 0;
}

int CbFolder::capacity() const {
    return Store::kCbCapacity;
}

int CbFolder::firstChannel() const {
    Store* store = Store::current();
    return store && !store->broadcasts().empty() ? store->broadcasts().begin()->first : 0;
}

int CbFolder::lastChannel() const {
    Store* store = Store::current();
    return store && !store->broadcasts().empty() ? store->broadcasts().rbegin()->first : -1;
}

CbMessage* CbFolder::get(int channel) const {
    Store* store = Store::current();
    if (!store)
        return nullptr;
    const auto found = store->broadcasts().find(channel);
    if (found == store->broadcasts().end())
        return nullptr;
    const tessaly::telephony::CbRecord& record = found->second;
    return new CbMessage(channel, record.language, record.text,
                         fileTimeFromUInt64(record.dateTicks), record.count);
}

} // namespace GSM
