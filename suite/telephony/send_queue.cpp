#include "suite/telephony/send_queue.h"

#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/length_info.h"
#include "suite/telephony/radio_backend.h"
#include "suite/telephony/send_checks.h"

#include <algorithm>

namespace tessaly::telephony {

namespace {

// How long after a recipient was reached the simulated network reports the delivery.
constexpr int kSimulatedDeliveryMs = 2000;

} // namespace

std::vector<std::u16string> MessageToSend::numbers() const {
    std::vector<std::u16string> numbers;
    numbers.reserve(recipients.size());
    for (const RecipientToSend& recipient : recipients)
        numbers.push_back(recipient.number);
    return numbers;
}

SendQueue::SendQueue(SendQueueStorage& storage, int segmentDelayMs)
    : storage_(storage)
    , segmentDelayMs_(std::max(0, segmentDelayMs)) {}

SendQueue::~SendQueue() {
    stopTimer();
    for (const TimerHandle timer : deliveryTimers_)
        Clock::current().stopTimer(timer);
    for (const auto& [id, retry] : retries_)
        if (retry.timer != 0)
            Clock::current().stopTimer(retry.timer);
}

void SendQueue::queue(long id) {
    // Asked again while waiting for a retry: now, and counted afresh.
    if (const auto waiting = retries_.find(id);
        waiting != retries_.end() && waiting->second.timer != 0)
        stopRetry(id);
    if (isSending(id) || !queued_.insert(id).second)
        return;
    queue_.push_back(id);
    if (timer_ == 0)
        schedule(segmentDelayMs_);
}

void SendQueue::unqueue(long id) {
    stopRetry(id);
    if (queued_.erase(id))
        std::erase(queue_, id);
}

void SendQueue::backendChanged() {
    if (!backendBusy_ || !job_)
        return;
    const long id = job_->id;
    job_.reset();
    backendBusy_ = false;
    alive_ = std::make_shared<bool>(true);
    if (queued_.insert(id).second)
        queue_.push_front(id);
    schedule(0);
}

void SendQueue::reportDeliveryLater(long id, int recipient) {
    auto handle = std::make_shared<TimerHandle>(0);
    *handle = Clock::current().startTimer(kSimulatedDeliveryMs, [this, id, recipient, handle] {
        Clock::current().stopTimer(*handle);
        deliveryTimers_.erase(*handle);
        storage_.recordDelivered(id, recipient);
    });
    deliveryTimers_.insert(*handle);
}

void SendQueue::stopRetry(long id) {
    const auto found = retries_.find(id);
    if (found == retries_.end())
        return;
    if (found->second.timer != 0)
        Clock::current().stopTimer(found->second.timer);
    retries_.erase(found);
}

bool SendQueue::retryLater(long id) {
    Retry& retry = retries_[id];
    const int delayMs = retryDelayMs(retry.done + 1);
    if (delayMs < 0) {
        retries_.erase(id);
        return false;
    }
    ++retry.done;
    retry.timer = Clock::current().startTimer(delayMs, [this, id] {
        const auto found = retries_.find(id);
        if (found == retries_.end())
            return;
        Clock::current().stopTimer(found->second.timer);
        found->second.timer = 0;
        if (!isSending(id) && queued_.insert(id).second)
            queue_.push_back(id);
        if (timer_ == 0)
            schedule(0);
    });
    return true;
}

void SendQueue::failNext(long code, const std::u16string& text) {
    injectedFailure_ = GSM::Result(code == GSM::ErrorNone ? GSM::ErrorNetworkRejected : code, text);
}

void SendQueue::setTransmitObserver(TransmitObserver observer) {
    transmitObserver_ = std::move(observer);
}

void SendQueue::setSegmentDelay(int delayMs) {
    segmentDelayMs_ = std::max(0, delayMs);
}

void SendQueue::stopTimer() {
    if (timer_ != 0)
        Clock::current().stopTimer(timer_);
    timer_ = 0;
}

void SendQueue::schedule(int delayMs) {
    stopTimer();
    timer_ = Clock::current().startTimer(std::max(0, delayMs), [this] {
        stopTimer();
        step();
    });
}

void SendQueue::announceCompletion() {
    // Only messages waiting for a retry went through the radio: nothing has ended yet.
    if (runSent_ == 0 && !runFailure_)
        return;
    const GSM::Result outcome = runFailure_.value_or(GSM::Result());
    const bool plural = runSent_ > 1;
    runFailure_.reset();
    runSent_ = 0;
    EventQueue::instance().post([outcome, plural] {
        if (hostHooks().openSendingCompletion)
            hostHooks().openSendingCompletion(outcome, plural);
    });
}

bool SendQueue::takeNextJob() {
    while (!job_) {
        if (queue_.empty())
            return false;
        const long id = queue_.front();
        queue_.pop_front();
        queued_.erase(id);
        std::optional<MessageToSend> message = storage_.messageToSend(id);
        if (!message)
            continue;
        Job job;
        job.id = id;
        job.recipients = int(message->recipients.size());
        job.segments = std::max(1, measureText(message->text.c_str()).messages);
        job.message = std::move(*message);
        job_ = std::move(job);
        if (const auto refusal = refusalBeforeSending(job_->message.numbers(), job_->segments))
            finish(*refusal);
    }
    return true;
}

bool SendQueue::nextRecipient(Job& job) {
    do {
        ++job.recipient;
    } while (job.recipient < job.recipients &&
             job.message.recipients[std::size_t(job.recipient)].sent);
    if (job.recipient >= job.recipients)
        return false;
    // A segment the network took before a restart is not sent again (TS 23.040 9.2.3.24.1:
    // the receiver joins the parts by reference and sequence number).
    job.segment = std::clamp(job.message.recipients[std::size_t(job.recipient)].sentSegments, 0,
                             job.segments - 1);
    return true;
}

void SendQueue::step() {
    if (!takeNextJob()) {
        announceCompletion();
        return;
    }
    if (RadioBackend* backend = radioBackend()) {
        backendStep(*backend);
        return;
    }
    simulatedStep();
}

void SendQueue::simulatedStep() {
    Job& job = *job_;
    if ((job.recipient < 0 || job.segment >= job.segments) && !nextRecipient(job)) {
        finish({});
    } else if (injectedFailure_) {
        const GSM::Result result = *injectedFailure_;
        injectedFailure_.reset();
        finish(result, job.recipient);
    } else if (const auto refusal =
                   refusalOfTheNetwork(storage_.deviceState(), storage_.sendWhileRoaming())) {
        finish(*refusal, job.recipient);
    } else {
        ++job.segment;
        if (transmitObserver_)
            transmitObserver_(job.id, job.recipient, job.segment, job.segments);
        storage_.recordProgress(job.id, job.recipient, job.segment, job.segments);
        if (job.segment == job.segments && storage_.statusReport())
            reportDeliveryLater(job.id, job.recipient);
        const long id = job.id;
        const int recipient = job.recipient;
        const int segment = job.segment;
        const int segments = job.segments;
        EventQueue::instance().post([id, recipient, segment, segments] {
            if (hostHooks().openSendingNotification)
                hostHooks().openSendingNotification(id, recipient, segment, segments, 0, 0);
        });
    }
    schedule(segmentDelayMs_);
}

void SendQueue::backendStep(RadioBackend& backend) {
    if (backendBusy_)
        return;
    Job& job = *job_;
    // A backend sends a recipient's message whole: a restart in the middle sends it again.
    if (!nextRecipient(job)) {
        finish({});
        schedule(0);
        return;
    }
    const RecipientToSend& recipient = job.message.recipients[std::size_t(job.recipient)];
    OutgoingSms sms;
    sms.messageId = job.id;
    sms.recipient = job.recipient;
    sms.number = recipient.number;
    sms.text = job.message.text;
    sms.serviceCentre = job.message.serviceCentre;
    sms.validityCode = job.message.validityCode;
    sms.statusReport = storage_.statusReport();
    sms.segments = job.segments;
    backendBusy_ = true;
    const std::weak_ptr<bool> alive = alive_;
    const long id = job.id;
    const int position = job.recipient;
    backend.send(
        sms,
        [alive, id, position](int segment, int segments) {
            if (alive.expired())
                return;
            EventQueue::instance().post([id, position, segment, segments] {
                if (hostHooks().openSendingNotification)
                    hostHooks().openSendingNotification(id, position, segment, segments, 0, 0);
            });
        },
        [this, alive, id, position](const GSM::Result& result) {
            if (alive.expired() || !job_ || job_->id != id)
                return;
            backendBusy_ = false;
            if (result.isOk()) {
                job_->segment = job_->segments;
                storage_.recordProgress(id, position, job_->segments, job_->segments);
            } else {
                finish(result, position);
            }
            schedule(0);
        });
}

void SendQueue::finish(const GSM::Result& result, int failedRecipient) {
    const Job job = std::move(*job_);
    job_.reset();
    // The recipients and segments the radio reached are kept: the retry goes on after them.
    if (!result.isOk() && isTemporaryFailure(result) && retryLater(job.id))
        return;
    retries_.erase(job.id);
    runSent_ += std::max(1, job.recipients);
    const GSM::Result told = storage_.recordOutcome(job.id, failedRecipient, result);
    if (!result.isOk() && !runFailure_)
        runFailure_ = told;
}

} // namespace tessaly::telephony
