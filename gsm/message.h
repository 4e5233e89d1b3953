#pragma once

// Short messages and the containers that list them.

#include "gsm/contacts.h"
#include "gsm/lists.h"
#include "gsm/result.h"

namespace GSM {

class Message {
public:
    enum Status {
        Deleted = 0,
        Incomplete = 1,
        Unread = 2,
        Read = 3,
        Forwarded = 4,
        Replied = 5,
        NotSent = 6,
        SendNow = 7,
        Sent = 8,
        Failed = 9,
    };

    // Relative validity period octet (175 stands for one week in this system).
    enum ValidityPeriod {
        OneHour = 11,
        SixHours = 71,
        OneDay = 167,
        OneWeek = 175,
        Maximum = 255,
    };

    Message() = default;
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    // A new outgoing message owned by the library; null when the store is not available.
    static Message* make();

    virtual long getId() const = 0;
    virtual Status getStatus() const = 0;
    // Never null. Strings stay valid until the message is changed.
    virtual const WCHAR* getText() const = 0;
    virtual FILETIME date() const = 0;
    virtual const WCHAR* getDate() const = 0;
    virtual const WCHAR* getServiceCentre() const = 0;
    virtual ValidityPeriod getValidityPeriod() const = 0;
    virtual bool useSameServiceCentre() const = 0;
    // The sender (Inbox) or the recipients (Outbox).
    virtual Folder* getContacts() = 0;
    // Whether the radio reached the recipient at this position of getContacts(); false for
    // one not reached yet, one it failed to reach, and any message never sent.
    virtual bool wasSentTo(int position) const = 0;
    // When the network reported the message delivered to the recipient at this position (local
    // time); zero when no report has come.
    virtual FILETIME deliveredTo(int position) const = 0;

    virtual Result setText(const WCHAR* text) = 0;
    virtual Result setServiceCentre(const WCHAR* number) = 0;
    virtual Result setUseSameServiceCentre(bool replyPath) = 0;
    virtual Result setValidityPeriod(ValidityPeriod period) = 0;
    // false: store the edit and queue the message for sending; true: discard the edit.
    virtual Result endEdit(bool discard) = 0;

protected:
    virtual ~Message() = default;
};

// One folder of messages in the order of the sort key it was obtained with.
class MessageContainer : public List<Message> {
public:
    // In a container sorted by status: the position of the first message with that status, or
    // where it would stand.
    virtual int getFirst(Message::Status status) const = 0;

protected:
    ~MessageContainer() override = default;
};

} // namespace GSM
