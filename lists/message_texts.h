#pragma once

// The texts the message lists and the message view build from the telephony library's data:
// one-line message texts, the contact column, the recipients line, status and validity names.
// Pure functions over the GSM:: objects and the string table in force.

#include "framework/win32types.h"
#include "gsm/gsm.h"
#include "util/box_caption.h"
#include "util/wide_text.h"

#include <QString>

namespace tessaly::sms {

constexpr int kInboxFolder = 0;
constexpr int kOutboxFolder = 1;
constexpr int kCellBroadcastFolder = 2;

// Every "\r\n", then every remaining "\r", then every remaining "\n" becomes a bullet (U+2022),
// so that a message always takes one list line.
QString oneLineText(QString text);

// The list's status image: 2 for Incomplete, 1 for Read and Sent, 3 for Failed, 0 otherwise.
int statusImageIndex(int status);

// The contact column: the "First Last" filing name when the contact has a filing name,
// otherwise its number. Empty for no contact.
QString contactColumnText(const GSM::Contact* contact);
// The first contact of the message (sender or first recipient), or null.
GSM::Contact* firstContact(GSM::Message& message);
// A contact's number as it would be dialled (empty for no contact).
QString contactNumber(const GSM::Contact* contact);
// "First Last" (empty for a bare number or no contact).
QString contactName(const GSM::Contact* contact);

// The recipients of an Outbox message on as few lines as reads well: the first recipient, then
// ",\r\n" before each further named one ("Carl (3)") and ", " before each bare number.
struct RecipientsText {
    QString text;
    int count = 0;
};
RecipientsText recipientsText(const GSM::Folder* contacts);

// String-table ids.
int statusTextId(int status);
int validityTextId(int validityPeriod);
int folderNameId(int folder);
int sortKeyNameId(int sortKey);

// A label word with its colon: "Date:".
QString labelText(int wordId);
// A failed message to several recipients: those it did not reach, by name or number, one
// after the other. Empty for any other message.
QString notSentText(const GSM::Message& message, const GSM::Folder* contacts);
// A sent message the network reported delivered: the time of the last report, after "2/3"
// when some recipients have none yet. Empty without any report.
QString deliveredText(const GSM::Message& message, const GSM::Folder* contacts);
// The warning for a folder of more than 1,000 messages, naming the Outbox for folder 1.
QString sizeWarningText(int folder);

} // namespace tessaly::sms
