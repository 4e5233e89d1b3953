#pragma once

// The event queue: everything the library tells handlers or the host is queued and delivered on
// the UI thread's next loop turn, never inside a call the module is still making. A delivery
// reaches the handlers registered when it runs, and skips one that an earlier handler of the
// same delivery destroyed.

#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

namespace tessaly::telephony {

enum class HandlerKind { Sms, Device, CellBroadcast, PhoneBook, Preferences };

class EventQueue {
public:
    static EventQueue& instance();

    void registerHandler(HandlerKind kind, void* handler);
    void unregisterHandler(HandlerKind kind, void* handler);
    bool isRegistered(HandlerKind kind, const void* handler) const;

    // Queues a task for the next loop turn.
    void post(std::function<void()> task);
    // Queues a call of `deliver` for every handler of `kind` alive at delivery time.
    template <typename Handler>
    void broadcast(HandlerKind kind, std::function<void(Handler*)> deliver) {
        post([this, kind, deliver = std::move(deliver)] {
            for (const Registration& registration : snapshot(kind)) {
                if (isAlive(registration))
                    deliver(static_cast<Handler*>(registration.handler));
            }
        });
    }

    // Runs every queued task (and those they queue) now; for tests and shutdown.
    void deliverAll();
    bool hasPending() const { return !tasks_.empty(); }
    // Forgets queued tasks (the store they refer to is closing).
    void clear() { tasks_.clear(); }

private:
    struct Registration {
        HandlerKind kind;
        void* handler;
        std::uint64_t serial;
    };

    std::vector<Registration> snapshot(HandlerKind kind) const;
    bool isAlive(const Registration& registration) const;
    void deliverBatch();
    void schedule();

    std::vector<Registration> handlers_;
    std::uint64_t nextSerial_ = 1;
    std::deque<std::function<void()>> tasks_;
    bool scheduled_ = false;
};

} // namespace tessaly::telephony
