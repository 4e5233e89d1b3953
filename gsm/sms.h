#pragma once

// The message service, reached as GSM::sms, and the base of message-store event handlers.

#include "gsm/message.h"
#include "gsm/result.h"

namespace GSM {

class Sms {
public:
    enum FolderNumber { FolderInbox = 0, FolderOutbox = 1 };
    enum SortKey { SortByDate = 0, SortByContact = 1, SortByStatus = 2 };

    Sms() = default;
    Sms(const Sms&) = delete;
    Sms& operator=(const Sms&) = delete;

    virtual int messageCount(int folder) const = 0;
    virtual int unreadCount() const = 0;
    // Starts a new message; the host's editMessage receives it. `reserved` is 0.
    virtual Result newMessage(int reserved) = 0;
    // A new message addressed to the original's sender, handed to the host's editMessage.
    virtual Result replyMessage(long id) = 0;
    // A new message of status Forwarded carrying the original's text, handed to editMessage.
    virtual Result forwardMessage(long id) = 0;
    // Holds back what endEdit(false) hands over until endHandOver, which stores and queues all
    // of it in one go: a failure or a crash in between leaves none of it. Not nested.
    virtual Result beginHandOver() = 0;
    virtual Result endHandOver() = 0;
    // Queues every Outbox message whose status is SendNow.
    virtual Result sendPending() = 0;
    // Moves the SIM's messages into the Inbox; progress and end reach the host.
    virtual Result moveSimMessages() = 0;
    virtual Result simStorage(int* used, int* capacity) const = 0;
    // Deletes the folder's messages older than `ageDays` days; 0 deletes them all. Messages
    // waiting for or being sent by the radio are kept.
    virtual Result deleteMessages(int folder, int ageDays) = 0;
    // Deleted (0) removes the message; SendNow (7) queues an Outbox message for sending.
    virtual Result setMessageStatus(long id, Message::Status status) = 0;
    // The folder's messages in the order of the sort key; null when not available.
    virtual MessageContainer* getMessages(int folder, int sortKey) = 0;
    // Null when the id is unknown.
    virtual Message* getMessage(long id, int reserved = 0) = 0;
    // Characters the text counts (septets for the 7-bit alphabet, UTF-16 units otherwise) and
    // the number of messages it is sent as. Null outputs are skipped.
    virtual void getLengthInfo(const WCHAR* text, int* characters, int* messages) const = 0;

protected:
    virtual ~Sms() = default;
};

extern Sms& sms;

// Receives message-store changes exactly while it exists.
class SmsEventHandler {
public:
    SmsEventHandler();
    SmsEventHandler(const SmsEventHandler&) = delete;
    SmsEventHandler& operator=(const SmsEventHandler&) = delete;
    virtual ~SmsEventHandler();

    // A message arrived, was sent, deleted or changed state.
    virtual void eventMessagesChanged();
};

} // namespace GSM
