#pragma once

// The radio's side of the telephony library: one class owns the queue of messages to send,
// the job in flight, its timer and the outcome. It sends through the simulated radio (one
// segment per timer turn, recipient by recipient) or through the installed RadioBackend, and
// tells the host of each segment and of the end of the run. The messages themselves stay in
// the store: the queue reads what it sends from its storage and writes the outcome back there.

#include "gsm/result.h"

#include "framework/time/clock.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tessaly::telephony {

class RadioBackend;

struct MessageToSend {
    std::vector<std::u16string> numbers;
    std::u16string text;
    std::u16string serviceCentre;
    int validityCode = 255;
};

class SendQueueStorage {
public:
    virtual ~SendQueueStorage() = default;
    // The message as it stands, while it is still to be sent (stored, status Send now).
    virtual std::optional<MessageToSend> messageToSend(long id) = 0;
    // The message was sent (a success) or failed.
    virtual void recordOutcome(long id, const GSM::Result& result) = 0;
    virtual int deviceState() const = 0;
    virtual bool sendWhileRoaming() const = 0;
    virtual bool statusReport() const = 0;
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
    bool isSending(long id) const { return job_ && job_->id == id; }
    // TEST AND SIMULATOR ONLY: the next message sent fails with this code and text.
    void failNext(long code, const std::u16string& text);
    void setSegmentDelay(int delayMs);

private:
    struct Job {
        long id = 0;
        int recipient = 0;
        int segment = 0;
        int segments = 1;
        int recipients = 0;
    };

    void schedule(int delayMs);
    void stopTimer();
    void step();
    // Takes the next message that can go out; false when the queue is empty.
    bool takeNextJob();
    void simulatedStep();
    void backendStep(RadioBackend& backend);
    void finish(const GSM::Result& result);
    void announceCompletion();

    SendQueueStorage& storage_;
    int segmentDelayMs_;
    std::deque<long> queue_;
    // The ids in queue_, so that queueing stays O(1) however long the queue grows.
    std::unordered_set<long> queued_;
    std::optional<Job> job_;
    TimerHandle timer_ = 0;
    std::optional<GSM::Result> injectedFailure_;
    // The first failure of the run and how many message and recipient pairs it sent.
    std::optional<GSM::Result> runFailure_;
    int runSent_ = 0;
    bool backendBusy_ = false;
    // Expires with the queue, so that a radio backend's late answer is ignored.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace tessaly::telephony
