// The store's messages as objects and lists: loading a message when it is asked for, the
// windows containers hand out, the counts kept by the database, and the sort names that follow
// the phone book.

#include "suite/telephony/store.h"

#include <QElapsedTimer>
#include <QString>

#include <algorithm>
#include <cstdio>

namespace tessaly::telephony {

namespace {

constexpr const char* kMessageColumns =
    "id, folder, status, text, date, service_centre, validity, reply_path, reply_to";

std::u16string lowered(const std::u16string& text) {
    const QString folded = QString::fromUtf16(text.data(), qsizetype(text.size())).toCaseFolded();
    return std::u16string(reinterpret_cast<const char16_t*>(folded.utf16()), folded.size());
}

bool isFolder(int folder) {
    return folder == GSM::Sms::FolderInbox || folder == GSM::Sms::FolderOutbox;
}

} // namespace

// ---- message objects made from rows

std::shared_ptr<MessageRecord> Store::recordFromRow(const Statement& row) {
    const long id = long(row.integer(0));
    // The live object, if there is one, knows better than the row (edits not stored yet).
    if (std::shared_ptr<MessageRecord> live = cache_.find(id)) {
        cache_.touch(live);
        return live;
    }
    auto message = std::make_shared<MessageRecord>(*this, id);
    message->folder = int(row.integer(1));
    message->status = GSM::Message::Status(std::clamp<std::int64_t>(row.integer(2), 0, 9));
    message->text = row.text(3);
    message->dateTicks = std::uint64_t(row.integer(4));
    message->serviceCentre = row.text(5);
    message->validity = GSM::Message::ValidityPeriod(row.integer(6));
    message->replyPath = row.integer(7) != 0;
    message->replyTo = long(row.integer(8));
    message->stored = true;
    message->addressesUnread = true;
    cache_.adopt(message);
    return message;
}

std::shared_ptr<MessageRecord> Store::loadMessage(long id) {
    if (std::shared_ptr<MessageRecord> live = cache_.find(id)) {
        cache_.touch(live);
        return live;
    }
    static const std::string sql =
        std::string("SELECT ") + kMessageColumns + " FROM messages WHERE id = ?";
    Statement& row = db_->cached(sql.c_str());
    row.bind(1, std::int64_t(id));
    std::shared_ptr<MessageRecord> message;
    if (row.step() && isFolder(int(row.integer(1))))
        message = recordFromRow(row);
    row.reset(); // a statement left open would hold a read transaction
    return message;
}

MessageRecord* Store::findMessage(long id) {
    const std::shared_ptr<MessageRecord> message = loadMessage(id);
    return message && message->stored && !message->removed ? message.get() : nullptr;
}

MessageRecord* Store::messageForWindow(long id) {
    return findMessage(id);
}

std::vector<std::shared_ptr<MessageRecord>> Store::loadFolder(int folder, const char* orderBy) {
    std::vector<std::shared_ptr<MessageRecord>> messages;
    if (!isFolder(folder))
        return messages;
    const std::string sql = std::string("SELECT ") + kMessageColumns +
                            " FROM messages WHERE folder = ? ORDER BY " + orderBy;
    Statement rows = db_->prepare(sql.c_str());
    rows.bind(1, std::int64_t(folder));
    while (rows.step())
        messages.push_back(recordFromRow(rows));
    return messages;
}

std::vector<std::u16string> Store::readAddresses(long id) {
    Statement& rows =
        db_->cached("SELECT number FROM addresses WHERE message_id = ? ORDER BY position");
    rows.bind(1, std::int64_t(id));
    std::vector<std::u16string> numbers;
    while (rows.step())
        numbers.push_back(rows.text(0));
    return numbers;
}

void Store::queueSendNow() {
    Statement& rows =
        db_->cached("SELECT id FROM messages WHERE folder = ? AND status = ? ORDER BY date, id");
    rows.bind(1, std::int64_t(GSM::Sms::FolderOutbox)).bind(2, std::int64_t(GSM::Message::SendNow));
    std::vector<long> ids;
    while (rows.step())
        ids.push_back(long(rows.integer(0)));
    for (const long id : ids)
        sendQueue_.queue(id);
}

bool Store::hasReceived(const std::u16string& from, const std::u16string& text,
                        std::uint64_t ticks) {
    Statement& rows = db_->cached("SELECT 1 FROM messages WHERE folder = ? AND date = ? AND "
                                  "first_number = ? AND text = ? LIMIT 1");
    rows.bind(1, std::int64_t(GSM::Sms::FolderInbox))
        .bind(2, std::int64_t(ticks))
        .bind(3, from)
        .bind(4, text);
    const bool found = rows.step();
    rows.reset();
    return found;
}

// ---- windows and counts

std::unique_ptr<MessageWindow> Store::makeWindow(int folder, int sortKey) {
    if (sortKey == GSM::Sms::SortByContact && sortNamesStale_)
        refreshSortNames(false);
    if (messageCount(folder) > options_.readWholeUpTo) {
        if (std::unique_ptr<MessageWindow> window =
                MessageWindow::readByPage(*this, db_->openReader(), folder, sortKey))
            return window;
    }
    return MessageWindow::readWhole(*this, *db_, folder, sortKey);
}

GSM::MessageContainer* Store::container(int folder, int sortKey) {
    if (!isFolder(folder))
        return nullptr;
    if (sortKey < GSM::Sms::SortByDate || sortKey > GSM::Sms::SortByStatus)
        return nullptr;
    ContainerCache& cache = containers_[folder * 3 + sortKey];
    if (!cache.snapshots.empty() && cache.generation == generation_)
        return cache.snapshots.back().get();
    cache.snapshots.push_back(makeWindow(folder, sortKey));
    cache.generation = generation_;
    while (cache.snapshots.size() > kKeptSnapshots)
        cache.snapshots.pop_front();
    // Only the newest read pages on demand: each reader holds a read transaction.
    for (std::size_t i = 0; i + kWindowsReading < cache.snapshots.size(); ++i)
        cache.snapshots[i]->releaseReader();
    return cache.snapshots.back().get();
}

void Store::releaseOldReaders() {
    for (auto& [slot, cache] : containers_) {
        if (cache.generation + 1 < generation_) {
            for (const std::unique_ptr<MessageWindow>& window : cache.snapshots)
                window->releaseReader();
        }
    }
}

int Store::messageCount(int folder) {
    if (!isFolder(folder))
        return 0;
    if (countsGeneration_ != generation_) {
        counts_ = {};
        Statement& rows = db_->cached("SELECT folder, status, count FROM message_counts");
        while (rows.step()) {
            const int rowFolder = int(rows.integer(0));
            if (isFolder(rowFolder))
                counts_[std::size_t(rowFolder)][std::size_t(
                    std::clamp<std::int64_t>(rows.integer(1), 0, MessageWindow::kStatuses - 1))] +=
                    int(std::max<std::int64_t>(0, rows.integer(2)));
        }
        countsGeneration_ = generation_;
    }
    int total = 0;
    for (const int count : counts_[std::size_t(folder)])
        total += count;
    return total;
}

int Store::unreadCount() {
    messageCount(GSM::Sms::FolderInbox);
    return counts_[GSM::Sms::FolderInbox][GSM::Message::Unread];
}

// ---- sort names

std::u16string Store::sortNameOf(const std::u16string& number) {
    if (number.empty())
        return {};
    if (const auto known = sortNames_.find(number); known != sortNames_.end())
        return known->second;
    const std::u16string shown =
        bareAddress(number)->getText(GSM::Contact::FieldDisplayName, 0, 0, 0);
    std::u16string name = lowered(shown.empty() ? number : shown);
    Statement& remember =
        db_->cached("INSERT OR REPLACE INTO sort_names(number, name) VALUES(?, ?)");
    remember.bind(1, number).bind(2, name);
    remember.step();
    return sortNames_.emplace(number, std::move(name)).first->second;
}

bool Store::refreshSortNames(bool reportProgress) {
    sortNames_.clear();
    sortNamesStale_ = false;
    std::vector<std::pair<std::u16string, std::u16string>> given;
    {
        Statement rows = db_->prepare("SELECT number, name FROM sort_names");
        while (rows.step())
            given.emplace_back(rows.text(0), rows.text(1));
        if (!rows.ok())
            return false;
    }
    Database::Transaction transaction(*db_);
    Statement update = db_->prepare("UPDATE messages SET sort_name = ? WHERE first_number = ?");
    QElapsedTimer sinceReport;
    sinceReport.start();
    std::size_t done = 0;
    for (const auto& [number, name] : given) {
        const std::u16string now = sortNameOf(number);
        if (now != name) {
            update.reset();
            update.bind(1, now).bind(2, number);
            update.step();
            if (!update.ok())
                return false;
        }
        // A big store brought over from an older version says how far it is.
        if (reportProgress && sinceReport.elapsed() >= 1000) {
            sinceReport.restart();
            std::fprintf(stderr, "tessaly: sorting messages by name: %d %%\n",
                         int(done * 100 / given.size()));
        }
        ++done;
    }
    return db_->exec("DELETE FROM settings WHERE name = 'sort_names_pending'") &&
           transaction.commit();
}

} // namespace tessaly::telephony
