#include "suite/telephony/message_cache.h"

#include "suite/telephony/message_records.h"

#include <algorithm>

namespace tessaly::telephony {

std::shared_ptr<MessageRecord> MessageCache::find(long id) const {
    const auto found = live_.find(id);
    return found == live_.end() ? nullptr : found->second.lock();
}

void MessageCache::adopt(const std::shared_ptr<MessageRecord>& record) {
    live_[record->getId()] = record;
    touch(record);
    // Entries of objects that went are dropped now and then, never one by one.
    if (live_.size() > 2 * (recent_.size() + pinned_.size()) + 1024)
        sweep();
}

void MessageCache::touch(const std::shared_ptr<MessageRecord>& record) {
    const long id = record->getId();
    if (const auto found = recentIndex_.find(id); found != recentIndex_.end()) {
        recent_.splice(recent_.begin(), recent_, found->second);
        return;
    }
    recent_.push_front(record);
    recentIndex_[id] = recent_.begin();
    while (recent_.size() > budget_) {
        recentIndex_.erase(recent_.back()->getId());
        recent_.pop_back();
    }
}

void MessageCache::pin(const std::shared_ptr<MessageRecord>& record) {
    pinned_[record->getId()] = record;
}

void MessageCache::unpin(long id) {
    const auto found = pinned_.find(id);
    if (found == pinned_.end())
        return;
    // Let go of as the most recently handed out, so that the caller's object outlives the call.
    touch(found->second);
    pinned_.erase(found);
}

std::size_t MessageCache::liveCount() const {
    return std::size_t(std::count_if(live_.begin(), live_.end(),
                                     [](const auto& entry) { return !entry.second.expired(); }));
}

void MessageCache::sweep() {
    std::erase_if(live_, [](const auto& entry) { return entry.second.expired(); });
}

} // namespace tessaly::telephony
