#include "suite/telephony/events.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <algorithm>

namespace tessaly::telephony {

EventQueue& EventQueue::instance() {
    // Never destroyed: handler objects of the host may outlive static destruction order.
    static EventQueue* queue = new EventQueue;
    return *queue;
}

void EventQueue::registerHandler(HandlerKind kind, void* handler) {
    handlers_.push_back({kind, handler, nextSerial_++});
}

void EventQueue::unregisterHandler(HandlerKind kind, void* handler) {
    std::erase_if(handlers_, [&](const Registration& registration) {
        return registration.kind == kind && registration.handler == handler;
    });
}

bool EventQueue::isRegistered(HandlerKind kind, const void* handler) const {
    return std::any_of(handlers_.begin(), handlers_.end(), [&](const Registration& registration) {
        return registration.kind == kind && registration.handler == handler;
    });
}

std::vector<EventQueue::Registration> EventQueue::snapshot(HandlerKind kind) const {
    std::vector<Registration> result;
    for (const Registration& registration : handlers_) {
        if (registration.kind == kind)
            result.push_back(registration);
    }
    return result;
}

bool EventQueue::isAlive(const Registration& wanted) const {
    // The serial tells a destroyed handler from a new one built at the same address.
    return std::any_of(handlers_.begin(), handlers_.end(), [&](const Registration& registration) {
        return registration.serial == wanted.serial;
    });
}

void EventQueue::post(std::function<void()> task) {
    tasks_.push_back(std::move(task));
    schedule();
}

void EventQueue::schedule() {
    QCoreApplication* application = QCoreApplication::instance();
    if (scheduled_ || tasks_.empty() || !application)
        return;
    scheduled_ = true;
    QMetaObject::invokeMethod(
        application,
        [this] {
            scheduled_ = false;
            deliverBatch();
        },
        Qt::QueuedConnection);
}

void EventQueue::deliverBatch() {
    // Tasks queued while this batch runs wait for the next loop turn.
    std::deque<std::function<void()>> batch;
    batch.swap(tasks_);
    while (!batch.empty()) {
        std::function<void()> task = std::move(batch.front());
        batch.pop_front();
        task();
    }
    schedule();
}

void EventQueue::deliverAll() {
    while (!tasks_.empty())
        deliverBatch();
}

} // namespace tessaly::telephony
