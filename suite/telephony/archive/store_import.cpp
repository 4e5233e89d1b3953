// The store's side of an archive import: adding staged messages in one transaction.

#include "suite/telephony/archive/archived_message.h"
#include "suite/telephony/store.h"

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
    Database::Transaction transaction(*db_);
    std::vector<MessageRecord*> added;
    const auto abandon = [&added](MessageRecord* last) {
        for (MessageRecord* message : added)
            message->discarded = true;
        if (last)
            last->discarded = true;
    };
    archive::ArchivedMessage archived;
    while (next(archived)) {
        if (alreadyStored(*db_, archived)) {
            ++*alreadyPresent;
            continue;
        }
        MessageRecord* message = makeMessage();
        message->folder = archived.folder;
        message->status = archived.status;
        message->text = std::move(archived.text);
        message->dateTicks = archived.dateTicks;
        message->serviceCentre = std::move(archived.serviceCentre);
        message->storedAddresses = std::move(archived.numbers);
        if (GSM::Result result = saveMessage(*message); !result.isOk()) {
            abandon(message);
            return result;
        }
        added.push_back(message);
    }
    if (!transaction.commit()) {
        abandon(nullptr);
        return db_->failure(u"The imported messages cannot be stored");
    }
    // Appended, then ordered once: inserting each in date order would move the folder's list
    // once per message.
    for (MessageRecord* message : added) {
        message->stored = true;
        byDate_[message->folder].push_back(message);
    }
    for (auto& folder : byDate_) {
        std::stable_sort(folder.begin(), folder.end(),
                         [](const MessageRecord* a, const MessageRecord* b) {
                             return a->dateTicks != b->dateTicks ? a->dateTicks < b->dateTicks
                                                                 : a->getId() < b->getId();
                         });
    }
    *imported = qint64(added.size());
    if (!added.empty())
        touchMessages();
    return {};
}

} // namespace tessaly::telephony
