#pragma once

// The composer's status line: "%d %s, %d %s" characters and messages as the telephony library
// counts them, the recipients label (blank for none and for one), and whether SEND may be
// pressed. The counting itself is the library's (getLengthInfo); nothing here second-guesses it.

#include <QString>

namespace tessaly::sms {

// "1 character, 1 message", "0 characters, 0 messages"; counts are shown as they come.
QString counterText(int characters, int messages);
// Asks GSM::sms.getLengthInfo for the text and formats its answer.
QString counterTextFor(const QString& messageText);
// "" for 0 and 1, else "%d Recipients".
QString recipientText(int recipientCount);
bool sendAllowed(const QString& messageText, int recipientCount);

} // namespace tessaly::sms
