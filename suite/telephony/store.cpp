#include "suite/telephony/store.h"

#include "suite/telephony/host_hooks.h"
#include "suite/telephony/length_info.h"

#include "framework/datadir.h"
#include "framework/ui/shell.h"

#include <QDir>

#include <algorithm>

namespace tessaly::telephony {

namespace {

constexpr std::uint64_t kTicksPerDay = 864000000000ULL;

std::unique_ptr<Store> openStore;
GSM::Result openResult(GSM::ErrorNotAvailable, u"The telephony store has not been opened.");
bool defaultOpenTried = false;

std::u16string lowered(const std::u16string& text) {
    const QString folded = QString::fromUtf16(text.data(), qsizetype(text.size())).toCaseFolded();
    return std::u16string(reinterpret_cast<const char16_t*>(folded.utf16()), folded.size());
}

} // namespace

std::u16string toU16(const WCHAR* text) {
    return text ? std::u16string(text) : std::u16string();
}

GSM::Result failure(long code, std::u16string_view text) {
    return GSM::Result(code, text);
}

// ---- opening and closing

Store* Store::current() {
    if (!openStore && !defaultOpenTried) {
        defaultOpenTried = true;
        open(Options{});
    }
    return openStore.get();
}

GSM::Result Store::open(const Options& options) {
    close();
    defaultOpenTried = true;
    QString path = options.databasePath;
    if (path.isEmpty())
        path = QDir(tessaly::dataDirectory()).filePath(QStringLiteral("telephony.db"));
    GSM::Result result;
    std::unique_ptr<Database> db = Database::open(path, &result);
    if (!db) {
        openResult = result;
        return result;
    }
    auto store = std::make_unique<Store>(std::move(db), options);
    result = store->load();
    if (!result.isOk()) {
        openResult = result;
        return result;
    }
    openStore = std::move(store);
    openResult = GSM::Result();
    return openResult;
}

void Store::close() {
    EventQueue::instance().clear();
    openStore.reset();
    openResult = GSM::Result(GSM::ErrorNotAvailable, u"The telephony store is closed.");
}

bool Store::isOpen() {
    return openStore != nullptr;
}

GSM::Result Store::lastOpenResult() {
    return openResult;
}

GSM::Result Store::unavailable() {
    return openResult.isOk()
               ? GSM::Result(GSM::ErrorNotAvailable, u"The telephony store is not available.")
               : openResult;
}

Store::Store(std::unique_ptr<Database> db, const Options& options)
    : db_(std::move(db))
    , options_(options) {}

Store::~Store() {
    stopTimer(simTimer_);
}

GSM::Result Store::load() {
    loadSettings();
    loadContacts();
    loadMessages();
    loadCellBroadcast();
    // Reading every table once surfaces a damaged file now rather than at the first click.
    Statement check = db_->prepare("PRAGMA quick_check(1)");
    if (!check.step() || check.text(0) != u"ok")
        return db_->failure(u"The telephony database is damaged");
    // Messages queued when the suite last stopped are sent now.
    for (MessageRecord* message : byDate_[GSM::Sms::FolderOutbox]) {
        if (message->status == GSM::Message::SendNow)
            sendQueue_.queue(message->getId());
    }
    return {};
}

std::uint64_t Store::nowTicks() const {
    const SYSTEMTIME now = Clock::current().localNow();
    FILETIME fileTime;
    if (!SystemTimeToFileTime(&now, &fileTime))
        return 0;
    return fileTimeToUInt64(fileTime);
}

void Store::touchMessages() {
    ++generation_;
    // One event for every change made before the handlers get to run.
    if (messagesEventQueued_)
        return;
    messagesEventQueued_ = true;
    EventQueue::instance().post([this] {
        messagesEventQueued_ = false;
        EventQueue::instance().broadcast<GSM::SmsEventHandler>(
            HandlerKind::Sms,
            [](GSM::SmsEventHandler* handler) { handler->eventMessagesChanged(); });
    });
}

// ---- messages

void Store::loadMessages() {
    Statement rows = db_->prepare(
        "SELECT id, folder, status, text, date, service_centre, validity, reply_path, reply_to "
        "FROM messages ORDER BY date, id");
    while (rows.step()) {
        const int folder = int(rows.integer(1));
        if (folder != GSM::Sms::FolderInbox && folder != GSM::Sms::FolderOutbox)
            continue;
        auto message = std::make_unique<MessageRecord>(*this, long(rows.integer(0)));
        message->folder = folder;
        message->status = GSM::Message::Status(std::clamp<std::int64_t>(rows.integer(2), 0, 9));
        message->text = rows.text(3);
        message->dateTicks = std::uint64_t(rows.integer(4));
        message->serviceCentre = rows.text(5);
        message->validity = GSM::Message::ValidityPeriod(rows.integer(6));
        message->replyPath = rows.integer(7) != 0;
        message->replyTo = long(rows.integer(8));
        message->stored = true;
        nextMessageId_ = std::max(nextMessageId_, message->getId() + 1);
        byDate_[folder].push_back(message.get());
        messages_.emplace(message->getId(), std::move(message));
    }
    Statement addresses =
        db_->prepare("SELECT message_id, number FROM addresses ORDER BY message_id, position");
    MessageRecord* last = nullptr;
    while (addresses.step()) {
        const long id = long(addresses.integer(0));
        if (!last || last->getId() != id) {
            const auto found = messages_.find(id);
            last = found == messages_.end() ? nullptr : found->second.get();
        }
        if (last)
            last->storedAddresses.push_back(addresses.text(1));
    }
}

MessageRecord* Store::makeMessage() {
    auto message = std::make_unique<MessageRecord>(*this, nextMessageId_++);
    message->folder = GSM::Sms::FolderOutbox;
    message->status = GSM::Message::NotSent;
    message->dateTicks = nowTicks();
    message->validity = GSM::Message::ValidityPeriod(settings_.validityPeriod);
    message->replyPath = settings_.useSameServiceCentre;
    if (const GSM::ServiceCentreEntry* centre = serviceCentres_.get(serviceCentres_.preferred()))
        message->serviceCentre = centre->number();
    MessageRecord* result = message.get();
    messages_.emplace(result->getId(), std::move(message));
    return result;
}

MessageRecord* Store::findMessage(long id) const {
    const auto found = messages_.find(id);
    if (found == messages_.end() || !found->second->stored || found->second->removed)
        return nullptr;
    return found->second.get();
}

void Store::insertByDate(MessageRecord* message) {
    auto& list = byDate_[message->folder];
    const auto position = std::upper_bound(
        list.begin(), list.end(), message, [](const MessageRecord* a, const MessageRecord* b) {
            return a->dateTicks != b->dateTicks ? a->dateTicks < b->dateTicks
                                                : a->getId() < b->getId();
        });
    list.insert(position, message);
}

void Store::eraseByDate(MessageRecord* message) {
    std::erase(byDate_[message->folder], message);
}

GSM::Result Store::saveMessage(MessageRecord& message) {
    Database::Transaction transaction(*db_);
    Statement& upsert = db_->cached(
        "INSERT INTO messages(id, folder, status, text, date, service_centre, validity, "
        "reply_path, reply_to, search_text) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT(id) DO UPDATE SET "
        "folder = excluded.folder, status = excluded.status, text = excluded.text, "
        "date = excluded.date, service_centre = excluded.service_centre, "
        "validity = excluded.validity, reply_path = excluded.reply_path, "
        "reply_to = excluded.reply_to, search_text = excluded.search_text");
    upsert.bind(1, std::int64_t(message.getId()))
        .bind(2, std::int64_t(message.folder))
        .bind(3, std::int64_t(message.status))
        .bind(4, message.text)
        .bind(5, std::int64_t(message.dateTicks))
        .bind(6, message.serviceCentre)
        .bind(7, std::int64_t(message.validity))
        .bind(8, std::int64_t(message.replyPath))
        .bind(9, std::int64_t(message.replyTo));
    // The search index cannot read a text kept as UTF-16 bytes: it reads this copy instead.
    if (storedAsUtf16Bytes(message.text))
        upsert.bind(10, searchableText(message.text));
    upsert.step();
    Statement& clear = db_->cached("DELETE FROM addresses WHERE message_id = ?");
    clear.bind(1, std::int64_t(message.getId()));
    clear.step();
    bool ok = upsert.ok() && clear.ok();
    Statement& insert =
        db_->cached("INSERT INTO addresses(message_id, position, number) VALUES(?, ?, ?)");
    const std::vector<std::u16string> numbers = message.addressNumbers();
    for (std::size_t i = 0; ok && i < numbers.size(); ++i) {
        insert.reset();
        insert.bind(1, std::int64_t(message.getId())).bind(2, std::int64_t(i)).bind(3, numbers[i]);
        insert.step();
        ok = insert.ok();
    }
    if (!ok || !transaction.commit())
        return db_->failure(u"The message cannot be stored");
    return {};
}

GSM::Result Store::endEdit(MessageRecord& message, bool discard) {
    if (message.discarded || message.removed)
        return failure(GSM::ErrorNotAvailable, u"The message no longer exists.");
    if (discard) {
        if (handOver_)
            std::erase(*handOver_, &message);
        if (!message.stored) {
            message.discarded = true;
        } else if (message.snapshot_) {
            message.text = message.snapshot_->text;
            message.serviceCentre = message.snapshot_->serviceCentre;
            message.validity = message.snapshot_->validity;
            message.replyPath = message.snapshot_->replyPath;
            // The folder object stays the one handed out; only its entries go back.
            if (message.addresses_)
                message.addresses_->entries =
                    materializeAddresses(message, message.snapshot_->addresses)->entries;
        }
        message.snapshot_.reset();
        return {};
    }
    if (handOver_) {
        if (std::find(handOver_->begin(), handOver_->end(), &message) == handOver_->end())
            handOver_->push_back(&message);
        return {};
    }
    return storeHandedOver({&message});
}

GSM::Result Store::beginHandOver() {
    if (handOver_)
        return failure(GSM::ErrorBusy, u"A hand-over is already open.");
    handOver_.emplace();
    return {};
}

GSM::Result Store::endHandOver() {
    if (!handOver_)
        return failure(GSM::ErrorInvalidArgument, u"No hand-over is open.");
    std::vector<MessageRecord*> messages = std::move(*handOver_);
    handOver_.reset();
    std::erase_if(messages, [](const MessageRecord* m) { return m->discarded || m->removed; });
    return messages.empty() ? GSM::Result() : storeHandedOver(messages);
}

GSM::Result Store::storeHandedOver(const std::vector<MessageRecord*>& messages) {
    struct Before {
        GSM::Message::Status status;
        std::uint64_t dateTicks;
    };
    std::vector<Before> before;
    std::vector<std::pair<MessageRecord*, GSM::Message::Status>> replied;
    const std::uint64_t now = nowTicks();
    Database::Transaction transaction(*db_);
    bool ok = true;
    for (MessageRecord* message : messages) {
        before.push_back({message->status, message->dateTicks});
        if (message->stored)
            eraseByDate(message);
        if (message->folder == GSM::Sms::FolderOutbox) {
            message->status = GSM::Message::SendNow;
            message->dateTicks = now;
        }
        ok = saveMessage(*message).isOk();
        if (!ok)
            break;
        if (MessageRecord* original = findMessage(message->replyTo);
            original && original->folder == GSM::Sms::FolderInbox &&
            original->status != GSM::Message::Replied) {
            replied.emplace_back(original, original->status);
            original->status = GSM::Message::Replied;
            ok = saveMessage(*original).isOk();
            if (!ok)
                break;
        }
    }
    if (!ok || !transaction.commit()) {
        const GSM::Result result = db_->failure(u"The message cannot be stored");
        for (auto& [original, status] : replied)
            original->status = status;
        for (std::size_t i = 0; i < before.size(); ++i) {
            messages[i]->status = before[i].status;
            messages[i]->dateTicks = before[i].dateTicks;
            if (messages[i]->stored)
                insertByDate(messages[i]);
        }
        return result;
    }
    for (MessageRecord* message : messages) {
        message->stored = true;
        message->snapshot_.reset();
        insertByDate(message);
        if (message->folder == GSM::Sms::FolderOutbox)
            sendQueue_.queue(message->getId());
    }
    touchMessages();
    return {};
}

bool Store::recipientSent(long id, int position) {
    Statement& row =
        db_->cached("SELECT outcome FROM addresses WHERE message_id = ? AND position = ?");
    row.bind(1, std::int64_t(id)).bind(2, std::int64_t(position));
    const bool sent = row.step() && row.integer(0) == kRecipientSent;
    row.reset(); // a statement left open would hold a read transaction
    return sent;
}

GSM::Result Store::removeMessage(MessageRecord& message) {
    Statement remove = db_->prepare("DELETE FROM messages WHERE id = ?");
    remove.bind(1, std::int64_t(message.getId()));
    remove.step();
    if (!remove.ok())
        return db_->failure(u"The message cannot be deleted");
    message.removed = true;
    eraseByDate(&message);
    sendQueue_.unqueue(message.getId());
    return {};
}

GSM::Result Store::setStatus(long id, GSM::Message::Status status) {
    MessageRecord* message = findMessage(id);
    if (!message)
        return failure(GSM::ErrorNotFound, u"The message does not exist.");
    if (status < GSM::Message::Deleted || status > GSM::Message::Failed)
        return failure(GSM::ErrorInvalidArgument, u"Unknown message status.");
    if (sendQueue_.isSending(id) && status != GSM::Message::SendNow)
        return failure(GSM::ErrorBusy, u"The message is being sent.");
    if (status == GSM::Message::Deleted) {
        GSM::Result result = removeMessage(*message);
        if (result.isOk())
            touchMessages();
        return result;
    }
    if (status == GSM::Message::SendNow && message->folder != GSM::Sms::FolderOutbox)
        return failure(GSM::ErrorInvalidArgument, u"Only messages in the Outbox can be sent.");
    if (message->status == status)
        return {};
    const GSM::Message::Status previous = message->status;
    Database::Transaction transaction(*db_);
    Statement& update = db_->cached("UPDATE messages SET status = ? WHERE id = ?");
    update.bind(1, std::int64_t(status)).bind(2, std::int64_t(id));
    update.step();
    bool ok = update.ok();
    if (ok && status == GSM::Message::SendNow) {
        // Sending a failed message again goes to those the last run did not reach, never to
        // those it did; any other message goes to everyone again, as the person asked.
        Statement& retry =
            db_->cached("UPDATE addresses SET outcome = ?1, sent_segments = 0, failure = '' "
                        "WHERE message_id = ?2 AND (?3 OR outcome != ?4)");
        retry.bind(1, std::int64_t(kRecipientNotSent))
            .bind(2, std::int64_t(id))
            .bind(3, std::int64_t(previous != GSM::Message::Failed))
            .bind(4, std::int64_t(kRecipientSent));
        retry.step();
        ok = retry.ok();
    }
    if (!ok || !transaction.commit()) {
        message->status = previous;
        return db_->failure(u"The message cannot be changed");
    }
    message->status = status;
    if (status == GSM::Message::SendNow)
        sendQueue_.queue(id);
    else
        sendQueue_.unqueue(id);
    touchMessages();
    return {};
}

GSM::Result Store::deleteMessages(int folder, int ageDays) {
    if (folder != GSM::Sms::FolderInbox && folder != GSM::Sms::FolderOutbox)
        return failure(GSM::ErrorInvalidArgument, u"Unknown message folder.");
    if (ageDays < 0)
        return failure(GSM::ErrorInvalidArgument, u"The age cannot be negative.");
    const std::uint64_t now = nowTicks();
    const std::uint64_t age = std::uint64_t(ageDays) * kTicksPerDay;
    const std::uint64_t limit = ageDays == 0 ? UINT64_MAX : (now > age ? now - age : 0);
    std::vector<MessageRecord*> doomed;
    for (MessageRecord* message : byDate_[folder]) {
        if (message->dateTicks >= limit)
            break;
        // The radio keeps what it has been given.
        if (message->status != GSM::Message::SendNow)
            doomed.push_back(message);
    }
    if (doomed.empty())
        return {};
    Database::Transaction transaction(*db_);
    Statement remove = db_->prepare("DELETE FROM messages WHERE id = ?");
    bool ok = remove.valid();
    for (std::size_t i = 0; ok && i < doomed.size(); ++i) {
        remove.reset();
        remove.bind(1, std::int64_t(doomed[i]->getId()));
        remove.step();
        ok = remove.ok();
    }
    if (!ok || !transaction.commit())
        return db_->failure(u"The messages cannot be deleted");
    for (MessageRecord* message : doomed)
        message->removed = true;
    std::erase_if(byDate_[folder], [](const MessageRecord* message) { return message->removed; });
    touchMessages();
    return {};
}

std::unique_ptr<ContainerImpl> Store::buildContainer(int folder, int sortKey) const {
    auto container = std::make_unique<ContainerImpl>(sortKey);
    const std::vector<MessageRecord*>& source = byDate_[folder];
    if (sortKey == GSM::Sms::SortByDate) {
        container->items = source;
    } else if (sortKey == GSM::Sms::SortByStatus) {
        // A counting sort by status keeps the date order within each status.
        std::array<int, 11> counts{};
        for (const MessageRecord* message : source)
            ++counts[std::min<int>(message->status, 10)];
        std::array<int, 11> starts{};
        for (int status = 1; status < 11; ++status)
            starts[status] = starts[status - 1] + counts[status - 1];
        container->items.resize(source.size());
        for (MessageRecord* message : source)
            container->items[starts[std::min<int>(message->status, 10)]++] = message;
    } else {
        std::unordered_map<std::u16string, std::u16string> keys;
        std::vector<std::pair<const std::u16string*, MessageRecord*>> keyed;
        keyed.reserve(source.size());
        for (MessageRecord* message : source) {
            const std::vector<std::u16string> numbers = message->addressNumbers();
            const std::u16string number = numbers.empty() ? std::u16string() : numbers.front();
            auto found = keys.find(number);
            if (found == keys.end())
                found = keys.emplace(number, lowered(message->contactKey())).first;
            keyed.emplace_back(&found->second, message);
        }
        std::stable_sort(keyed.begin(), keyed.end(),
                         [](const auto& a, const auto& b) { return *a.first < *b.first; });
        container->items.reserve(keyed.size());
        for (const auto& entry : keyed)
            container->items.push_back(entry.second);
    }
    return container;
}

GSM::MessageContainer* Store::container(int folder, int sortKey) {
    if (folder != GSM::Sms::FolderInbox && folder != GSM::Sms::FolderOutbox)
        return nullptr;
    if (sortKey < GSM::Sms::SortByDate || sortKey > GSM::Sms::SortByStatus)
        return nullptr;
    ContainerCache& cache = containers_[folder * 3 + sortKey];
    if (!cache.snapshots.empty() && cache.generation == generation_)
        return cache.snapshots.back().get();
    cache.snapshots.push_back(buildContainer(folder, sortKey));
    cache.generation = generation_;
    while (cache.snapshots.size() > kKeptSnapshots)
        cache.snapshots.pop_front();
    return cache.snapshots.back().get();
}

int Store::messageCount(int folder) const {
    if (folder != GSM::Sms::FolderInbox && folder != GSM::Sms::FolderOutbox)
        return 0;
    return int(byDate_[folder].size());
}

int Store::unreadCount() const {
    return int(std::count_if(
        byDate_[GSM::Sms::FolderInbox].begin(), byDate_[GSM::Sms::FolderInbox].end(),
        [](const MessageRecord* message) { return message->status == GSM::Message::Unread; }));
}

GSM::Result Store::newMessage(long originalId, bool forward) {
    if (!hostHooks().editMessage)
        return failure(GSM::ErrorNotAvailable, u"No message editor is available.");
    MessageRecord* original = nullptr;
    if (originalId != 0) {
        original = findMessage(originalId);
        if (!original)
            return failure(GSM::ErrorNotFound, u"The message does not exist.");
    }
    MessageRecord* message = makeMessage();
    if (original && forward) {
        message->status = GSM::Message::Forwarded;
        message->text = original->text;
    } else if (original) {
        message->replyTo = original->getId();
        std::vector<std::u16string> numbers = original->addressNumbers();
        if (original->folder == GSM::Sms::FolderInbox) {
            numbers.resize(std::min<std::size_t>(numbers.size(), 1));
            if (original->replyPath && !original->serviceCentre.empty())
                message->serviceCentre = original->serviceCentre;
        }
        message->storedAddresses = numbers;
    }
    EventQueue::instance().post([message] {
        if (hostHooks().editMessage)
            hostHooks().editMessage(message);
    });
    return {};
}

GSM::Result Store::receive(const std::u16string& from, const std::u16string& text, FILETIME date,
                           const std::u16string& serviceCentre, long* id) {
    if (from.empty())
        return failure(GSM::ErrorInvalidArgument, u"A message needs a sender.");
    MessageRecord* message = makeMessage();
    message->folder = GSM::Sms::FolderInbox;
    message->status = GSM::Message::Unread;
    message->text = text;
    const std::uint64_t ticks = fileTimeToUInt64(date);
    message->dateTicks = ticks ? ticks : nowTicks();
    message->serviceCentre = serviceCentre.empty() ? settings_.simServiceCentre : serviceCentre;
    message->storedAddresses = {from};
    GSM::Result result = saveMessage(*message);
    if (!result.isOk()) {
        message->discarded = true;
        return result;
    }
    message->stored = true;
    insertByDate(message);
    if (id)
        *id = message->getId();
    touchMessages();
    const long newId = message->getId();
    // The sound chosen now, played when the person hears of the message.
    const std::u16string sound = settings_.playSound ? settings_.soundName : std::u16string();
    EventQueue::instance().post([newId, sound] {
        if (!sound.empty())
            tessaly::Shell::current().playSound(QString::fromStdU16String(sound) +
                                                QStringLiteral(".wav"));
        if (hostHooks().openMessageNotification)
            hostHooks().openMessageNotification(newId);
    });
    return {};
}

GSM::Result Store::addStoredMessages(const std::vector<simulator::StoredMessage>& messages) {
    Database::Transaction transaction(*db_);
    std::vector<MessageRecord*> added;
    for (const simulator::StoredMessage& stored : messages) {
        if ((stored.folder != GSM::Sms::FolderInbox && stored.folder != GSM::Sms::FolderOutbox) ||
            stored.status < GSM::Message::Deleted || stored.status > GSM::Message::Failed)
            return failure(GSM::ErrorInvalidArgument, u"A seeded message is malformed.");
        MessageRecord* message = makeMessage();
        message->folder = stored.folder;
        message->status = stored.status;
        message->text = stored.text;
        message->dateTicks = fileTimeToUInt64(stored.date);
        message->storedAddresses = stored.addresses;
        GSM::Result result = saveMessage(*message);
        if (!result.isOk()) {
            for (MessageRecord* done : added)
                done->discarded = true;
            message->discarded = true;
            return result;
        }
        added.push_back(message);
    }
    if (!transaction.commit()) {
        for (MessageRecord* message : added)
            message->discarded = true;
        return db_->failure(u"The messages cannot be stored");
    }
    for (MessageRecord* message : added) {
        message->stored = true;
        insertByDate(message);
    }
    touchMessages();
    return {};
}

// ---- message objects

const WCHAR* MessageRecord::getDate() const {
    SYSTEMTIME time;
    const FILETIME fileTime = date();
    if (!FileTimeToSystemTime(&fileTime, &time)) {
        dateText_.clear();
        return dateText_.c_str();
    }
    const QString text = QString::asprintf("%04d-%02d-%02d %02d:%02d", time.wYear, time.wMonth,
                                           time.wDay, time.wHour, time.wMinute);
    dateText_.assign(reinterpret_cast<const char16_t*>(text.utf16()), text.size());
    return dateText_.c_str();
}

GSM::Folder* MessageRecord::getContacts() {
    if (!addresses_)
        addresses_ = store_.materializeAddresses(*this, storedAddresses);
    return addresses_.get();
}

bool MessageRecord::wasSentTo(int position) const {
    return stored && !removed && store_.recipientSent(id_, position);
}

std::vector<std::u16string> MessageRecord::addressNumbers() const {
    if (!addresses_)
        return storedAddresses;
    std::vector<std::u16string> numbers;
    for (GSM::Contact* contact : addresses_->entries)
        numbers.push_back(static_cast<AddressRecord*>(contact)->number());
    return numbers;
}

std::u16string MessageRecord::contactKey() const {
    const std::vector<std::u16string> numbers = addressNumbers();
    if (numbers.empty())
        return {};
    AddressRecord* address = store_.bareAddress(numbers.front());
    const std::u16string name = address->getText(GSM::Contact::FieldDisplayName, 0, 0, 0);
    return name.empty() ? numbers.front() : name;
}

GSM::Result MessageRecord::beginChange() {
    if (discarded || removed)
        return failure(GSM::ErrorNotAvailable, u"The message no longer exists.");
    if (stored && status == SendNow)
        return failure(GSM::ErrorBusy, u"The message is waiting to be sent.");
    if (stored && !snapshot_)
        snapshot_ = Snapshot{text, serviceCentre, validity, replyPath, addressNumbers()};
    return {};
}

GSM::Result MessageRecord::setText(const WCHAR* newText) {
    GSM::Result result = beginChange();
    if (result.isOk())
        text = toU16(newText);
    return result;
}

GSM::Result MessageRecord::setServiceCentre(const WCHAR* number) {
    GSM::Result result = beginChange();
    if (result.isOk())
        serviceCentre = toU16(number);
    return result;
}

GSM::Result MessageRecord::setUseSameServiceCentre(bool on) {
    GSM::Result result = beginChange();
    if (result.isOk())
        replyPath = on;
    return result;
}

GSM::Result MessageRecord::setValidityPeriod(ValidityPeriod period) {
    if (period < 0 || period > 255)
        return failure(GSM::ErrorInvalidArgument, u"The validity period must lie in 0 .. 255.");
    GSM::Result result = beginChange();
    if (result.isOk())
        validity = period;
    return result;
}

GSM::Result MessageRecord::endEdit(bool discard) {
    return store_.endEdit(*this, discard);
}

GSM::Message* ContainerImpl::get(int position) const {
    return position >= 0 && position < int(items.size()) ? items[position] : nullptr;
}

int ContainerImpl::getFirst(GSM::Message::Status status) const {
    if (sortKey_ == GSM::Sms::SortByStatus) {
        return int(std::lower_bound(items.begin(), items.end(), status,
                                    [](const MessageRecord* message, GSM::Message::Status wanted) {
                                        return message->status < wanted;
                                    }) -
                   items.begin());
    }
    const auto found = std::find_if(items.begin(), items.end(), [status](const MessageRecord* m) {
        return m->status == status;
    });
    return int(found - items.begin());
}

} // namespace tessaly::telephony
