#include "suite/telephony/store.h"

#include <cstring>

namespace tessaly::telephony {

namespace {

constexpr unsigned long kLargestRecord = 1UL << 20;
const std::u16string kSimCentreName = u"SIM";

} // namespace

// ---- settings

void Store::loadSettings() {
    Statement rows = db_->prepare("SELECT name, value FROM settings");
    std::map<std::u16string, std::pair<std::int64_t, std::u16string>> values;
    while (rows.step())
        values[rows.text(0)] = {rows.integer(1), rows.text(1)};
    const auto integer = [&](const char16_t* name, auto& target) {
        const auto found = values.find(name);
        if (found != values.end())
            target = std::remove_reference_t<decltype(target)>(found->second.first);
    };
    const auto text = [&](const char16_t* name, std::u16string& target) {
        const auto found = values.find(name);
        if (found != values.end())
            target = found->second.second;
    };
    integer(u"validityPeriod", settings_.validityPeriod);
    integer(u"useSameServiceCentre", settings_.useSameServiceCentre);
    integer(u"statusReport", settings_.statusReport);
    integer(u"sendWhileRoaming", settings_.sendWhileRoaming);
    integer(u"playSound", settings_.playSound);
    text(u"soundName", settings_.soundName);
    integer(u"askToMoveSimMessages", settings_.askToMoveSimMessages);
    integer(u"tickerScrolls", settings_.tickerScrolls);
    integer(u"tickerHorizontal", settings_.tickerHorizontal);
    integer(u"showCbDialog", settings_.showCbDialog);
    integer(u"showEveryCbMessage", settings_.showEveryCbMessage);
    integer(u"preferredServiceCentre", settings_.preferredServiceCentre);
    text(u"simServiceCentre", settings_.simServiceCentre);
    integer(u"smsService", settings_.smsService);
    integer(u"simCapacity", settings_.simCapacity);

    Statement records = db_->prepare("SELECT service, data FROM preference_records");
    while (records.step())
        records_[int(records.integer(0))] = records.blob(1);

    Statement centres = db_->prepare("SELECT name, number FROM service_centres ORDER BY position");
    std::vector<std::pair<std::u16string, std::u16string>> rest;
    while (centres.step())
        rest.emplace_back(centres.text(0), centres.text(1));
    serviceCentres_.load(settings_.simServiceCentre, std::move(rest),
                         settings_.preferredServiceCentre);

    Statement sim =
        db_->prepare("SELECT id, sender, text, date, status, service_centre FROM sim_messages "
                     "ORDER BY id");
    while (sim.step()) {
        simMessageIds_.push_back(long(sim.integer(0)));
        simMessages_.push_back({sim.text(1), sim.text(2),
                                fileTimeFromUInt64(std::uint64_t(sim.integer(3))),
                                sim.integer(4) == GSM::Message::Read, sim.text(5)});
    }
}

GSM::Result Store::saveSetting(const char* name, std::int64_t value) {
    Statement upsert = db_->prepare("INSERT OR REPLACE INTO settings(name, value) VALUES(?, ?)");
    upsert.bind(1, QString::fromLatin1(name).toStdU16String()).bind(2, value);
    upsert.step();
    return upsert.ok() ? GSM::Result() : db_->failure(u"The setting cannot be stored");
}

GSM::Result Store::saveSetting(const char* name, const std::u16string& value) {
    Statement upsert = db_->prepare("INSERT OR REPLACE INTO settings(name, value) VALUES(?, ?)");
    upsert.bind(1, QString::fromLatin1(name).toStdU16String()).bind(2, value);
    upsert.step();
    return upsert.ok() ? GSM::Result() : db_->failure(u"The setting cannot be stored");
}

// ---- per-service records

unsigned long Store::recordSize(int service) const {
    const auto found = records_.find(service);
    return found == records_.end() ? 0 : static_cast<unsigned long>(found->second.size());
}

GSM::Result Store::readRecord(int service, void* buffer) const {
    const auto found = records_.find(service);
    if (found == records_.end())
        return failure(GSM::ErrorNotFound, u"The service has no stored preferences.");
    if (!buffer && !found->second.empty())
        return failure(GSM::ErrorInvalidArgument, u"No buffer was given.");
    if (!found->second.empty())
        std::memcpy(buffer, found->second.data(), found->second.size());
    return {};
}

GSM::Result Store::writeRecord(int service, const void* buffer, unsigned long size) {
    if (size > kLargestRecord)
        return failure(GSM::ErrorInvalidArgument, u"The preference record is too large.");
    if (!buffer && size > 0)
        return failure(GSM::ErrorInvalidArgument, u"No buffer was given.");
    const auto* bytes = static_cast<const std::uint8_t*>(buffer);
    std::vector<std::uint8_t> data(bytes, bytes + size);
    Statement upsert =
        db_->prepare("INSERT OR REPLACE INTO preference_records(service, data) VALUES(?, ?)");
    upsert.bind(1, std::int64_t(service)).bind(2, data);
    upsert.step();
    if (!upsert.ok())
        return db_->failure(u"The preferences cannot be stored");
    records_[service] = std::move(data);
    preferencesDirty_ = true;
    return {};
}

GSM::Result Store::announcePreferences() {
    if (!preferencesDirty_)
        return {};
    preferencesDirty_ = false;
    EventQueue::instance().broadcast<GSM::Preferences>(
        HandlerKind::Preferences,
        [](GSM::Preferences* handler) { handler->eventPreferencesChanged(); });
    return {};
}

// ---- main preferences

GSM::ServiceCentreList* MainPreferencesImpl::serviceCentres() {
    return &store_.serviceCentres();
}

int MainPreferencesImpl::validityPeriod() const {
    return store_.settings().validityPeriod;
}

bool MainPreferencesImpl::useSameServiceCentre() const {
    return store_.settings().useSameServiceCentre;
}

bool MainPreferencesImpl::statusReport() const {
    return store_.settings().statusReport;
}

bool MainPreferencesImpl::sendWhileRoaming() const {
    return store_.settings().sendWhileRoaming;
}

int MainPreferencesImpl::playSound() const {
    return store_.settings().playSound ? 1 : 0;
}

const WCHAR* MainPreferencesImpl::soundName() const {
    return store_.settings().soundName.c_str();
}

bool MainPreferencesImpl::askToMoveSimMessages() const {
    return store_.settings().askToMoveSimMessages;
}

bool MainPreferencesImpl::tickerScrolls() const {
    return store_.settings().tickerScrolls;
}

bool MainPreferencesImpl::tickerHorizontal() const {
    return store_.settings().tickerHorizontal;
}

bool MainPreferencesImpl::showCbDialog() const {
    return store_.settings().showCbDialog;
}

bool MainPreferencesImpl::showEveryCbMessage() const {
    return store_.settings().showEveryCbMessage;
}

namespace {

template <typename Value>
GSM::Result change(Store& store, const char* name, Value& field, Value value) {
    if (field == value)
        return {};
    GSM::Result result;
    if constexpr (std::is_same_v<Value, std::u16string>)
        result = store.saveSetting(name, value);
    else
        result = store.saveSetting(name, std::int64_t(value));
    if (result.isOk()) {
        field = value;
        store.preferencesChanged();
    }
    return result;
}

} // namespace

GSM::Result MainPreferencesImpl::setValidityPeriod(int code) {
    if (code < 0 || code > 255)
        return failure(GSM::ErrorInvalidArgument, u"The validity period must lie in 0 .. 255.");
    return change(store_, "validityPeriod", store_.settings().validityPeriod, code);
}

GSM::Result MainPreferencesImpl::setUseSameServiceCentre(bool on) {
    return change(store_, "useSameServiceCentre", store_.settings().useSameServiceCentre, on);
}

GSM::Result MainPreferencesImpl::setStatusReport(bool on) {
    return change(store_, "statusReport", store_.settings().statusReport, on);
}

GSM::Result MainPreferencesImpl::setSendWhileRoaming(bool on) {
    return change(store_, "sendWhileRoaming", store_.settings().sendWhileRoaming, on);
}

GSM::Result MainPreferencesImpl::setPlaySound(bool on) {
    return change(store_, "playSound", store_.settings().playSound, on);
}

GSM::Result MainPreferencesImpl::setSoundName(const WCHAR* name) {
    return change(store_, "soundName", store_.settings().soundName, toU16(name));
}

GSM::Result MainPreferencesImpl::setAskToMoveSimMessages(bool on) {
    return change(store_, "askToMoveSimMessages", store_.settings().askToMoveSimMessages, on);
}

GSM::Result MainPreferencesImpl::setTickerScrolls(bool on) {
    return change(store_, "tickerScrolls", store_.settings().tickerScrolls, on);
}

GSM::Result MainPreferencesImpl::setTickerHorizontal(bool on) {
    return change(store_, "tickerHorizontal", store_.settings().tickerHorizontal, on);
}

GSM::Result MainPreferencesImpl::setShowCbDialog(bool on) {
    return change(store_, "showCbDialog", store_.settings().showCbDialog, on);
}

GSM::Result MainPreferencesImpl::setShowEveryCbMessage(bool on) {
    return change(store_, "showEveryCbMessage", store_.settings().showEveryCbMessage, on);
}

// ---- service centres

void ServiceCentreListImpl::load(std::u16string simNumber,
                                 std::vector<std::pair<std::u16string, std::u16string>> rest,
                                 int preferred) {
    arena_.push_back(
        std::make_unique<ServiceCentreEntryImpl>(kSimCentreName, std::move(simNumber)));
    entries_.assign(1, arena_.back().get());
    for (auto& [name, number] : rest) {
        arena_.push_back(
            std::make_unique<ServiceCentreEntryImpl>(std::move(name), std::move(number)));
        entries_.push_back(arena_.back().get());
    }
    preferred_ = preferred >= 0 && preferred < int(entries_.size()) ? preferred : 0;
}

GSM::ServiceCentreEntry* ServiceCentreListImpl::get(int index) const {
    return index >= 0 && index < int(entries_.size()) ? entries_[index] : nullptr;
}

GSM::Result ServiceCentreListImpl::save() {
    Database& db = store_.db();
    Database::Transaction transaction(db);
    bool ok = db.exec("DELETE FROM service_centres");
    Statement insert =
        db.prepare("INSERT INTO service_centres(position, name, number) VALUES(?, ?, ?)");
    for (std::size_t i = 1; ok && i < entries_.size(); ++i) {
        insert.reset();
        insert.bind(1, std::int64_t(i))
            .bind(2, entries_[i]->nameText())
            .bind(3, entries_[i]->numberText());
        insert.step();
        ok = insert.ok();
    }
    ok = ok && store_.saveSetting("preferredServiceCentre", std::int64_t(preferred_)).isOk();
    if (!ok || !transaction.commit())
        return db.failure(u"The service centres cannot be stored");
    store_.settings().preferredServiceCentre = preferred_;
    store_.preferencesChanged();
    return {};
}

GSM::Result ServiceCentreListImpl::add(const WCHAR* name, const WCHAR* number) {
    std::u16string numberText = toU16(number);
    if (numberText.empty())
        return failure(GSM::ErrorInvalidArgument, u"A service centre needs a number.");
    std::u16string nameText = toU16(name);
    if (nameText.empty())
        nameText = numberText;
    const int position = int(entries_.size());
    Statement insert =
        store_.db().prepare("INSERT OR REPLACE INTO service_centres(position, name, number) "
                            "VALUES(?, ?, ?)");
    insert.bind(1, std::int64_t(position)).bind(2, nameText).bind(3, numberText);
    insert.step();
    if (!insert.ok())
        return store_.db().failure(u"The service centre cannot be stored");
    arena_.push_back(
        std::make_unique<ServiceCentreEntryImpl>(std::move(nameText), std::move(numberText)));
    entries_.push_back(arena_.back().get());
    store_.preferencesChanged();
    return {};
}

GSM::Result ServiceCentreListImpl::remove(int index) {
    if (index == 0)
        return failure(GSM::ErrorInvalidArgument,
                       u"The SIM's own service centre cannot be removed.");
    if (index < 0 || index >= int(entries_.size()))
        return failure(GSM::ErrorInvalidArgument, u"There is no service centre at that index.");
    const std::vector<ServiceCentreEntryImpl*> previousEntries = entries_;
    const int previousPreferred = preferred_;
    entries_.erase(entries_.begin() + index);
    // The preferred entry stays the same entry; when it goes, the SIM's own takes its place.
    if (preferred_ == index)
        preferred_ = 0;
    else if (preferred_ > index)
        --preferred_;
    GSM::Result result = save();
    if (!result.isOk()) {
        entries_ = previousEntries;
        preferred_ = previousPreferred;
    }
    return result;
}

GSM::Result ServiceCentreListImpl::removeAll() {
    const std::vector<ServiceCentreEntryImpl*> previousEntries = entries_;
    const int previousPreferred = preferred_;
    entries_.resize(1);
    preferred_ = 0;
    GSM::Result result = save();
    if (!result.isOk()) {
        entries_ = previousEntries;
        preferred_ = previousPreferred;
    }
    return result;
}

GSM::Result ServiceCentreListImpl::setPreferred(int index) {
    if (index < 0 || index >= int(entries_.size()))
        return failure(GSM::ErrorInvalidArgument, u"There is no service centre at that index.");
    if (index == preferred_)
        return {};
    GSM::Result result = store_.saveSetting("preferredServiceCentre", std::int64_t(index));
    if (result.isOk()) {
        preferred_ = index;
        store_.settings().preferredServiceCentre = index;
        store_.preferencesChanged();
    }
    return result;
}

GSM::Result ServiceCentreListImpl::commit(bool announce) {
    return announce ? store_.announcePreferences() : GSM::Result();
}

GSM::Result ServiceCentreListImpl::setSimNumber(const std::u16string& number) {
    GSM::Result result = store_.saveSetting("simServiceCentre", number);
    if (!result.isOk())
        return result;
    store_.settings().simServiceCentre = number;
    arena_.push_back(std::make_unique<ServiceCentreEntryImpl>(kSimCentreName, number));
    entries_[0] = arena_.back().get();
    store_.preferencesChanged();
    return {};
}

} // namespace tessaly::telephony
