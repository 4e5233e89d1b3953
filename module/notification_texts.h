#pragma once

// What the three notification windows show, worked out without any window: the line about
// further unread messages, the segment line, the completion text and the sender or recipient
// lines. Texts come from the string table in force.

#include "framework/win32types.h"
#include "gsm/gsm.h"

#include <QString>

namespace tessaly::sms {

// Unread Inbox messages, from the Inbox sorted by status (every Unread stands before every
// Read): the distance between the first Unread and the first Read position. 0 for no container.
int unreadInInbox(const GSM::MessageContainer* inboxByStatus);

// The line under the new-message text: empty below two unread messages (the one shown is not
// "another"), then "There is another new message." and "There are %d other new messages.".
QString otherNewMessagesText(int unread);

// Only a growing count gives the person a fresh five minutes before the notification closes.
constexpr bool restartsCloseTimer(int previousUnread, int unread) {
    return unread > previousUnread;
}

// "2 of 3" for a message of several segments, empty for a single one.
QString segmentText(int segment, int segments);

// The box that ends a sending run: the text and the icon (MB_ICON*). A rejection by the network
// (code 520) carries its own words for the person and shows them as they are.
struct CompletionMessage {
    QString text;
    UINT icon = 0;
};
CompletionMessage completionMessage(const GSM::Result& result, bool plural);

// The name and number lines of a sender or recipient. A contact without a name shows its number
// in the name line and leaves the number line empty; with neither the name reads "Unknown".
struct PersonLines {
    QString name;
    QString number;         // empty: the number line is hidden
    bool known = false;     // a name or a number was there
    bool hasNumber = false; // a number was there (it may stand in the name line)
};
PersonLines personLines(const QString& name, const QString& number);
// The lines of a contact of the library (null: "Unknown").
PersonLines personLines(const GSM::Contact* contact);

} // namespace tessaly::sms
