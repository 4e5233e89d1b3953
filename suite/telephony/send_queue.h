#pragma once

// The radio's side of the telephony library: one class owns the queue of messages to send,
// the job in flight, its timer and the outcome. It sends through the simulated radio (one
// segment per timer turn, recipient by recipient) or through the installed RadioBackend, and
// tells the host of each segment and of the end of the run. The messages themselves stay in
// the store: the queue reads what it sends from its storage and writes the outcome back there.

#include "gsm/result.h"

#include "framework/time/clock.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessaly::telephony {

class RadioBackend;

struct RecipientToSend {
    std::u16string number;
    // Segments the radio handed to the network before a restart; the whole count once sent.
    int sentSegments = 0;
    bool sent = false;
};

struct MessageToSend {
    std::vector<RecipientToSend> recipients;
    std::u16string text;
    std::u16string serviceCentre;
    int validityCode = 255;

    std::vector<std::u16string> numbers() const;
};

class SendQueueStorage {
public:
    virtual ~SendQueueStorage() = default;
    // The message as it stands, while it is still to be sent (stored, status Send now), with
    // how far the radio got with each recipient.
    virtual std::optional<MessageToSend> messageToSend(long id) = 0;
    // The radio handed `sentSegments` of `segments` to the network for this recipient: kept
    // before the call returns, so that a restart goes on from there.
    virtual void recordProgress(long id, int recipient, int sentSegments, int segments) = 0;
    // The message's run ended: sent (a success), or failed at `failedRecipient` (-1: before
    // any recipient). Returns what the person is told of it.
    virtual GSM::Result recordOutcome(long id, int failedRecipient, const GSM::Result& result) = 0;
    virtual int deviceState() const = 0;
    virtual bool sendWhileRoaming() const = 0;
    virtual bool statusReport() const = 0;
    // The simulated network's report: the message reached this recipient now.
    virtual void recordDelivered(long id, int recipient) = 0;
};

class SendQueue {
public:
    SendQueue(SendQueueStorage& storage, int segmentDelayMs);
    ~SendQueue();
    SendQueue(const SendQueue&) = delete;
    SendQueue& operator=(const SendQueue&) = delete;

    // Appends the message unless it is queued or being sent already; the radio starts.
    void queue(long id);
    // The message leaves the queue (deleted, or no longer to be sent); the one in flight goes on.
    void unqueue(long id);
    // The radio backend was replaced or removed: a message it was sending and never answered
    // for goes back to the front of the queue (what the radio confirmed is kept), and the old
    // backend's late answer is ignored.
    void backendChanged();
    // Whether the message failed for a while and waits for its next attempt.
    bool isWaitingToRetry(long id) const { return retries_.count(id) && retries_.at(id).timer; }
    bool isSending(long id) const { return job_ && job_->id == id; }
    // TEST AND SIMULATOR ONLY: the next message sent fails with this code and text.
    void failNext(long code, const std::u16string& text);
    // TEST ONLY: called as the simulated radio puts each segment on the air, before the store
    // records it, so that a crash test sees exactly what went out.
    using TransmitObserver = std::function<void(long id, int recipient, int segment, int segments)>;
    void setTransmitObserver(TransmitObserver observer);
    void setSegmentDelay(int delayMs);

private:
    struct Job {
        long id = 0;
        MessageToSend message;
        int recipient = -1; // before the first
        int segment = 0;    // segments of this recipient on the air
        int segments = 1;
        int recipients = 0;
    };

    void schedule(int delayMs);
    void stopTimer();
    void step();
    // Takes the next message that can go out; false when the queue is empty.
    bool takeNextJob();
    // Moves to the next recipient the radio has not reached; false past the last.
    static bool nextRecipient(Job& job);
    void simulatedStep();
    void backendStep(RadioBackend& backend);
    void finish(const GSM::Result& result, int failedRecipient = -1);
    // Puts a message that failed for a while aside for its next attempt; false when it has
    // had them all.
    bool retryLater(long id);
    void stopRetry(long id);
    void announceCompletion();

    SendQueueStorage& storage_;
    int segmentDelayMs_;
    std::deque<long> queue_;
    // The ids in queue_, so that queueing stays O(1) however long the queue grows.
    std::unordered_set<long> queued_;
    std::optional<Job> job_;
    TimerHandle timer_ = 0;
    std::optional<GSM::Result> injectedFailure_;
    TransmitObserver transmitObserver_;
    // The first failure of the run and how many message and recipient pairs it sent.
    std::optional<GSM::Result> runFailure_;
    int runSent_ = 0;
    bool backendBusy_ = false;
    // Messages that failed for a while: the retries they had and the timer of the next one.
    // Kept in memory: a restart sends every waiting message at once and counts afresh.
    struct Retry {
        int done = 0;
        TimerHandle timer = 0;
    };
    std::unordered_map<long, Retry> retries_;
    // The simulated network reports delivery a moment after a recipient was reached, when a
    // status report was asked for.
    void reportDeliveryLater(long id, int recipient);
    std::unordered_set<TimerHandle> deliveryTimers_;
    // Expires with the queue, so that a radio backend's late answer is ignored.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace tessaly::telephony
