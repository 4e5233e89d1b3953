// The store's side of an archive import: adding staged messages in one transaction.

#include "suite/telephony/archive/archived_message.h"
#include "suite/telephony/store.h"

#include <QScopeGuard>

#include <algorithm>

namespace tessaly::telephony {
namespace {

// Whether the store already holds this message: same folder, date, numbers and text.
bool alreadyStored(Database& db, const archive::ArchivedMessage& message) {
    Statement& candidates =
        db.cached("SELECT id FROM messages WHERE folder = ? AND date = ? AND text = ?");
    candidates.bind(1, std::int64_t(message.folder))
        .bind(2, std::int64_t(message.dateTicks))
        .bind(3, message.text);
    std::vector<std::int64_t> ids;
    while (candidates.step())
        ids.push_back(candidates.integer(0));
    for (const std::int64_t id : ids) {
        Statement& numbers =
            db.cached("SELECT number FROM addresses WHERE message_id = ? ORDER BY position");
        numbers.bind(1, id);
        std::vector<std::u16string> stored;
        while (numbers.step())
            stored.push_back(numbers.text(0));
        if (stored == message.numbers)
            return true;
    }
    return false;
}

} // namespace

GSM::Result Store::importMessages(const std::function<bool(archive::ArchivedMessage&)>& next,
                                  qint64* imported, qint64* alreadyPresent) {
    *imported = 0;
    *alreadyPresent = 0;
    const long firstId = nextMessageId_;
    // Each message's statements journal a few pages in case one fails halfway; past 64 KiB
    // SQLite moves such a journal to a temporary file, and an import would then write it
    // through the file system a dozen times per message. In memory it is dropped after each.
    // The log is copied into the database by checkpointMessages(), a step of its own, not
    // by the commit.
    db_->exec("PRAGMA temp_store = MEMORY; PRAGMA cache_size = -32768; "
              "PRAGMA wal_autocheckpoint = 0");
    const auto settingsBack = qScopeGuard([this] {
        db_->exec("PRAGMA temp_store = DEFAULT; PRAGMA cache_size = -2000; "
                  "PRAGMA wal_autocheckpoint = 1000");
    });
    Database::Transaction transaction(*db_);
    archive::ArchivedMessage archived;
    while (next(archived)) {
        if (alreadyStored(*db_, archived)) {
            ++*alreadyPresent;
            continue;
        }
        // Rows, not objects: an import of a million messages holds one message at a time.
        MessageRow row;
        row.id = takeMessageId();
        row.folder = archived.folder;
        row.status = archived.status;
        row.text = archived.text;
        row.dateTicks = archived.dateTicks;
        row.serviceCentre = archived.serviceCentre;
        row.validity = settings_.validityPeriod;
        row.replyPath = settings_.useSameServiceCentre;
        row.numbers = &archived.numbers;
        if (!writeMessageRows(row)) {
            nextMessageId_ = firstId;
            return db_->failure(u"The imported messages cannot be stored");
        }
        ++*imported;
    }
    if (!transaction.commit()) {
        nextMessageId_ = firstId;
        *imported = 0;
        return db_->failure(u"The imported messages cannot be stored");
    }
    if (*imported > 0)
        touchMessages();
    return {};
}

void Store::checkpointMessages() {
    db_->exec("PRAGMA wal_checkpoint(PASSIVE)");
}

} // namespace tessaly::telephony
