#pragma once

// The message objects the store has made: at most one live object per message, the most
// recently handed out kept within a fixed budget, and pinned ones (not stored yet, or being
// edited) kept until they are unpinned. An object nothing keeps any more goes.

#include <cstddef>
#include <list>
#include <memory>
#include <unordered_map>

namespace tessaly::telephony {

class MessageRecord;

class MessageCache {
public:
    explicit MessageCache(std::size_t budget)
        : budget_(budget) {}

    // The live object of this message, or null.
    std::shared_ptr<MessageRecord> find(long id) const;
    // Makes `record` the live object of its message and the most recently handed out.
    void adopt(const std::shared_ptr<MessageRecord>& record);
    // The object was handed out again: it is kept as the most recent.
    void touch(const std::shared_ptr<MessageRecord>& record);
    void pin(const std::shared_ptr<MessageRecord>& record);
    void unpin(long id);
    bool isPinned(long id) const { return pinned_.count(id) != 0; }
    // Calls `visit` with every live object.
    template <typename Visit> void forEachLive(Visit visit) const {
        for (const auto& [id, weak] : live_)
            if (const std::shared_ptr<MessageRecord> record = weak.lock())
                visit(*record);
    }
    std::size_t budget() const { return budget_; }
    // Objects alive now, whoever keeps them.
    std::size_t liveCount() const;

private:
    void sweep();

    std::size_t budget_;
    std::unordered_map<long, std::weak_ptr<MessageRecord>> live_;
    std::list<std::shared_ptr<MessageRecord>> recent_; // newest first
    std::unordered_map<long, std::list<std::shared_ptr<MessageRecord>>::iterator> recentIndex_;
    std::unordered_map<long, std::shared_ptr<MessageRecord>> pinned_;
};

} // namespace tessaly::telephony
