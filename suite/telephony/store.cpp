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
    loadCellBroadcast();
    Statement last = db_->prepare("SELECT coalesce(max(id), 0) FROM messages");
    if (!last.step())
        return db_->failure(u"The telephony database is damaged");
    nextMessageId_ = long(last.integer(0)) + 1;
    last = Statement();
    Statement pending = db_->prepare("SELECT 1 FROM settings WHERE name = 'sort_names_pending'");
    const bool namesPending = pending.step();
    pending = Statement();
    if (namesPending && !refreshSortNames(true))
        return db_->failure(u"The telephony database cannot be updated");
    // Messages queued when the suite last stopped are sent now.
    queueSendNow();
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
    releaseOldReaders();
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

MessageRecord* Store::makeMessage() {
    auto message = std::make_shared<MessageRecord>(*this, takeMessageId());
    message->folder = GSM::Sms::FolderOutbox;
    message->status = GSM::Message::NotSent;
    message->dateTicks = nowTicks();
    message->validity = GSM::Message::ValidityPeriod(settings_.validityPeriod);
    message->replyPath = settings_.useSameServiceCentre;
    if (const GSM::ServiceCentreEntry* centre = serviceCentres_.get(serviceCentres_.preferred()))
        message->serviceCentre = centre->number();
    // Kept until it is stored or discarded: the composer holds it meanwhile.
    cache_.adopt(message);
    cache_.pin(message);
    return message.get();
}

void Store::pinForEdit(MessageRecord& message) {
    cache_.pin(message.shared_from_this());
}

GSM::Result Store::saveMessage(MessageRecord& message) {
    const std::vector<std::u16string> numbers = message.addressNumbers();
    MessageRow row;
    row.id = message.getId();
    row.folder = message.folder;
    row.status = message.status;
    row.text = message.text;
    row.dateTicks = message.dateTicks;
    row.serviceCentre = message.serviceCentre;
    row.validity = int(message.validity);
    row.replyPath = message.replyPath;
    row.replyTo = message.replyTo;
    row.numbers = &numbers;
    return writeMessage(row);
}

GSM::Result Store::writeMessage(const MessageRow& row) {
    Database::Transaction transaction(*db_);
    if (!writeMessageRows(row) || !transaction.commit())
        return db_->failure(u"The message cannot be stored");
    return {};
}

bool Store::writeMessageRows(const MessageRow& row) {
    static const std::vector<std::u16string> none;
    const std::vector<std::u16string>& numbers = row.numbers ? *row.numbers : none;
    const std::u16string firstNumber = numbers.empty() ? std::u16string() : numbers.front();
    Statement& upsert = db_->cached(
        "INSERT INTO messages(id, folder, status, text, date, service_centre, validity, "
        "reply_path, reply_to, search_text, first_number, sort_name) "
        "VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT(id) DO UPDATE SET "
        "folder = excluded.folder, status = excluded.status, text = excluded.text, "
        "date = excluded.date, service_centre = excluded.service_centre, "
        "validity = excluded.validity, reply_path = excluded.reply_path, "
        "reply_to = excluded.reply_to, search_text = excluded.search_text, "
        "first_number = excluded.first_number, sort_name = excluded.sort_name");
    upsert.bind(1, std::int64_t(row.id))
        .bind(2, std::int64_t(row.folder))
        .bind(3, std::int64_t(row.status))
        .bind(4, row.text)
        .bind(5, std::int64_t(row.dateTicks))
        .bind(6, row.serviceCentre)
        .bind(7, std::int64_t(row.validity))
        .bind(8, std::int64_t(row.replyPath))
        .bind(9, std::int64_t(row.replyTo));
    // The search index cannot read a text kept as UTF-16 bytes: it reads this copy instead.
    if (storedAsUtf16Bytes(row.text))
        upsert.bind(10, searchableText(row.text));
    upsert.bind(11, firstNumber).bind(12, sortNameOf(firstNumber));
    upsert.step();
    Statement& clear = db_->cached("DELETE FROM addresses WHERE message_id = ?");
    clear.bind(1, std::int64_t(row.id));
    clear.step();
    bool ok = upsert.ok() && clear.ok();
    Statement& insert =
        db_->cached("INSERT INTO addresses(message_id, position, number) VALUES(?, ?, ?)");
    for (std::size_t i = 0; ok && i < numbers.size(); ++i) {
        insert.reset();
        insert.bind(1, std::int64_t(row.id)).bind(2, std::int64_t(i)).bind(3, numbers[i]);
        insert.step();
        ok = insert.ok();
    }
    return ok;
}

GSM::Result Store::endEdit(MessageRecord& message, bool discard) {
    if (message.discarded || message.removed)
        return failure(GSM::ErrorNotAvailable, u"The message no longer exists.");
    if (discard) {
        if (handOver_)
            std::erase(*handOver_, &message);
        cache_.unpin(message.getId());
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
        }
        return result;
    }
    for (MessageRecord* message : messages) {
        message->stored = true;
        message->snapshot_.reset();
        cache_.unpin(message->getId());
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

void Store::recordDelivered(long id, int recipient) {
    // A message deleted in the meantime has nobody left to tell.
    recordDelivery(id, recipient, {});
}

std::uint64_t Store::deliveryTicks(long id, int position) {
    Statement& row =
        db_->cached("SELECT delivered FROM addresses WHERE message_id = ? AND position = ?");
    row.bind(1, std::int64_t(id)).bind(2, std::int64_t(position));
    const std::uint64_t ticks = row.step() ? std::uint64_t(row.integer(0)) : 0;
    row.reset();
    return ticks;
}

GSM::Result Store::recordDelivery(long id, int recipient, const DeliveryReport& report) {
    MessageRecord* message = findMessage(id);
    if (!message || !message->stored || message->folder != GSM::Sms::FolderOutbox)
        return failure(GSM::ErrorNotFound, u"The message does not exist.");
    if (!recipientSent(id, recipient))
        return failure(GSM::ErrorInvalidArgument, u"The message was not sent to this recipient.");
    Database::Transaction transaction(*db_);
    bool ok = true;
    if (report.delivered) {
        const std::uint64_t ticks = fileTimeToUInt64(report.time);
        Statement& delivered =
            db_->cached("UPDATE addresses SET delivered = ? WHERE message_id = ? AND position = ?");
        delivered.bind(1, std::int64_t(ticks ? ticks : nowTicks()))
            .bind(2, std::int64_t(id))
            .bind(3, std::int64_t(recipient));
        delivered.step();
        ok = delivered.ok();
    } else {
        // The network gave up on it: the message failed for this recipient, with its reason.
        Statement& failed = db_->cached(
            "UPDATE addresses SET outcome = ?, failure = ? WHERE message_id = ? AND position = ?");
        failed.bind(1, std::int64_t(kRecipientFailed))
            .bind(2, report.reason)
            .bind(3, std::int64_t(id))
            .bind(4, std::int64_t(recipient));
        failed.step();
        Statement& status = db_->cached("UPDATE messages SET status = ? WHERE id = ?");
        status.bind(1, std::int64_t(GSM::Message::Failed)).bind(2, std::int64_t(id));
        status.step();
        ok = failed.ok() && status.ok();
    }
    if (!ok || !transaction.commit())
        return db_->failure(u"The delivery report cannot be stored");
    if (!report.delivered)
        message->status = GSM::Message::Failed;
    touchMessages();
    const bool delivered = report.delivered;
    EventQueue::instance().post([id, recipient, delivered] {
        if (hostHooks().openDeliveryReport)
            hostHooks().openDeliveryReport(id, recipient, delivered);
    });
    return {};
}

GSM::Result Store::removeMessage(MessageRecord& message) {
    Statement remove = db_->prepare("DELETE FROM messages WHERE id = ?");
    remove.bind(1, std::int64_t(message.getId()));
    remove.step();
    if (!remove.ok())
        return db_->failure(u"The message cannot be deleted");
    message.removed = true;
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
    if (message->status == status) {
        // Send now on a message waiting to be tried again tries it now.
        if (status == GSM::Message::SendNow && sendQueue_.isWaitingToRetry(id))
            sendQueue_.queue(id);
        return {};
    }
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
    // The radio keeps what it has been given.
    const auto doomed = [folder, limit](const MessageRecord& message) {
        return message.stored && !message.removed && message.folder == folder &&
               message.dateTicks < limit && message.status != GSM::Message::SendNow;
    };
    // Deleting half of a big store touches most pages of every index: a larger page cache for
    // the while saves reading them again (3.9 s instead of 6.7 s for 500,000 messages).
    db_->exec("PRAGMA cache_size = -16384");
    Statement remove =
        db_->prepare("DELETE FROM messages WHERE folder = ? AND date < ? AND status != ?");
    remove.bind(1, std::int64_t(folder))
        .bind(2, std::int64_t(std::min<std::uint64_t>(limit, INT64_MAX)))
        .bind(3, std::int64_t(GSM::Message::SendNow));
    remove.step();
    const int deleted = db_->changes();
    const bool removed = remove.ok();
    remove = Statement();
    db_->exec("PRAGMA cache_size = -2000");
    if (!removed)
        return db_->failure(u"The messages cannot be deleted");
    if (deleted == 0)
        return {};
    cache_.forEachLive([&doomed](MessageRecord& message) {
        if (doomed(message))
            message.removed = true;
    });
    touchMessages();
    return {};
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
        cache_.unpin(message->getId());
        return result;
    }
    message->stored = true;
    cache_.unpin(message->getId());
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
    for (const simulator::StoredMessage& stored : messages) {
        if ((stored.folder != GSM::Sms::FolderInbox && stored.folder != GSM::Sms::FolderOutbox) ||
            stored.status < GSM::Message::Deleted || stored.status > GSM::Message::Failed)
            return failure(GSM::ErrorInvalidArgument, u"A seeded message is malformed.");
    }
    const GSM::ServiceCentreEntry* centre = serviceCentres_.get(serviceCentres_.preferred());
    const std::u16string centreNumber = centre ? std::u16string(centre->number()) : u"";
    Database::Transaction transaction(*db_);
    const long firstId = nextMessageId_;
    for (const simulator::StoredMessage& stored : messages) {
        MessageRow row;
        row.id = takeMessageId();
        row.folder = stored.folder;
        row.status = stored.status;
        row.text = stored.text;
        row.dateTicks = fileTimeToUInt64(stored.date);
        row.serviceCentre = centreNumber;
        row.validity = settings_.validityPeriod;
        row.replyPath = settings_.useSameServiceCentre;
        row.numbers = &stored.addresses;
        if (!writeMessageRows(row)) {
            nextMessageId_ = firstId;
            return db_->failure(u"The messages cannot be stored");
        }
    }
    if (!transaction.commit()) {
        nextMessageId_ = firstId;
        return db_->failure(u"The messages cannot be stored");
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
        addresses_ = store_.materializeAddresses(*this, addressNumbers());
    return addresses_.get();
}

bool MessageRecord::wasSentTo(int position) const {
    return stored && !removed && store_.recipientSent(id_, position);
}

FILETIME MessageRecord::deliveredTo(int position) const {
    return fileTimeFromUInt64(stored && !removed ? store_.deliveryTicks(id_, position) : 0);
}

std::vector<std::u16string> MessageRecord::addressNumbers() const {
    if (addressesUnread) {
        addressesUnread = false;
        storedAddresses = store_.readAddresses(id_);
    }
    if (!addresses_)
        return storedAddresses;
    std::vector<std::u16string> numbers;
    for (GSM::Contact* contact : addresses_->entries)
        numbers.push_back(static_cast<AddressRecord*>(contact)->number());
    return numbers;
}

GSM::Result MessageRecord::beginChange() {
    if (discarded || removed)
        return failure(GSM::ErrorNotAvailable, u"The message no longer exists.");
    if (stored && status == SendNow)
        return failure(GSM::ErrorBusy, u"The message is waiting to be sent.");
    if (stored && !snapshot_) {
        snapshot_ = Snapshot{text, serviceCentre, validity, replyPath, addressNumbers()};
        store_.pinForEdit(*this);
    }
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

} // namespace tessaly::telephony
