#include "suite/telephony/send_queue.h"

#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/length_info.h"
#include "suite/telephony/radio_backend.h"
#include "suite/telephony/send_checks.h"

#include <algorithm>

namespace tessaly::telephony {

SendQueue::SendQueue(SendQueueStorage& storage, int segmentDelayMs)
    : storage_(storage)
    , segmentDelayMs_(std::max(0, segmentDelayMs)) {}

SendQueue::~SendQueue() {
    stopTimer();
}

void SendQueue::queue(long id) {
    if (isSending(id) || !queued_.insert(id).second)
        return;
    queue_.push_back(id);
    if (timer_ == 0)
        schedule(segmentDelayMs_);
}

void SendQueue::unqueue(long id) {
    if (queued_.erase(id))
        std::erase(queue_, id);
}

void SendQueue::failNext(long code, const std::u16string& text) {
    injectedFailure_ = GSM::Result(code == GSM::ErrorNone ? GSM::ErrorNetworkRejected : code, text);
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
        const std::optional<MessageToSend> message = storage_.messageToSend(id);
        if (!message)
            continue;
        Job job;
        job.id = id;
        job.recipients = int(message->numbers.size());
        job.segments = std::max(1, measureText(message->text.c_str()).messages);
        job_ = job;
        if (const auto refusal = refusalBeforeSending(message->numbers, job.segments))
            finish(*refusal);
    }
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
    if (++job.segment > job.segments) {
        job.segment = 1;
        ++job.recipient;
    }
    if (job.recipient >= job.recipients) {
        finish({});
    } else if (injectedFailure_) {
        const GSM::Result result = *injectedFailure_;
        injectedFailure_.reset();
        finish(result);
    } else if (const auto refusal =
                   refusalOfTheNetwork(storage_.deviceState(), storage_.sendWhileRoaming())) {
        finish(*refusal);
    } else {
        const Job progress = job;
        EventQueue::instance().post([progress] {
            if (hostHooks().openSendingNotification)
                hostHooks().openSendingNotification(progress.id, progress.recipient,
                                                    progress.segment, progress.segments, 0, 0);
        });
    }
    schedule(segmentDelayMs_);
}

void SendQueue::backendStep(RadioBackend& backend) {
    if (backendBusy_)
        return;
    const Job& job = *job_;
    const std::optional<MessageToSend> message = storage_.messageToSend(job.id);
    if (!message || job.recipient >= job.recipients ||
        job.recipient >= int(message->numbers.size())) {
        finish({});
        schedule(0);
        return;
    }
    OutgoingSms sms;
    sms.messageId = job.id;
    sms.recipient = job.recipient;
    sms.number = message->numbers[std::size_t(job.recipient)];
    sms.text = message->text;
    sms.serviceCentre = message->serviceCentre;
    sms.validityCode = message->validityCode;
    sms.statusReport = storage_.statusReport();
    sms.segments = job.segments;
    backendBusy_ = true;
    const std::weak_ptr<bool> alive = alive_;
    const long id = job.id;
    const int recipient = job.recipient;
    backend.send(
        sms,
        [alive, id, recipient](int segment, int segments) {
            if (alive.expired())
                return;
            EventQueue::instance().post([id, recipient, segment, segments] {
                if (hostHooks().openSendingNotification)
                    hostHooks().openSendingNotification(id, recipient, segment, segments, 0, 0);
            });
        },
        [this, alive](const GSM::Result& result) {
            if (alive.expired() || !job_)
                return;
            backendBusy_ = false;
            if (result.isOk())
                ++job_->recipient;
            else
                finish(result);
            schedule(0);
        });
}

void SendQueue::finish(const GSM::Result& result) {
    const Job job = *job_;
    job_.reset();
    runSent_ += std::max(1, job.recipients);
    if (!result.isOk() && !runFailure_)
        runFailure_ = result;
    storage_.recordOutcome(job.id, result);
}

} // namespace tessaly::telephony
