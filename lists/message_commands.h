#pragma once

// Commands on one stored message that both the lists and the message view offer.

#include "gsm/gsm.h"

#include <QString>

class QWidget;

namespace tessaly::sms {

// Shows a failed result the library's way; a success shows nothing.
void reportFailure(const GSM::Result& result);

// Asks the question (Yes/No, question icon) and on Yes deletes the message. True when deleted.
bool confirmAndDeleteMessage(QWidget* owner, long messageId, int questionId);

// Calls the number when voice calls are available; an empty number or no voice service does
// nothing, a refused call is reported.
void callNumber(const QString& number);

// Adds the number to the phone book as a new contact. When a contact already holds it, the
// person is asked first. Tells the person when it was added.
void copyToPhonebook(QWidget* owner, const QString& number);

} // namespace tessaly::sms
