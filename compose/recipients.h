#pragma once

// The To: field's text as numbers: which characters it may hold, how many recipients it names,
// and how it is cut into numbers. Pure text functions; the composer binds them to its edit.

#include <QString>
#include <QStringList>

namespace tessaly::sms {

// Digits, blank, plus, minus, hash, star, slash, both parentheses and the comma.
inline constexpr QStringView kRecipientCharacters = u"0123456789 +-#*/(),";

bool isRecipientCharacter(QChar character);
// Every character is allowed; an empty text is valid.
bool isValidRecipientText(QStringView text);

// Blanks do not split: "0171 555, 0172" names two. Empty pieces (",,", a leading or trailing
// comma) are not counted.
int countRecipients(QStringView toText);

// The numbers at send time, from the last to the first: cut at every comma, every blank removed,
// empty pieces dropped.
QStringList recipientTokensLastFirst(QStringView toText);

// The provisional recipients while the field is left: cut after each comma in turn (the piece
// keeps its blanks and leading comma-free remainder), the last remainder added once more.
QStringList provisionalRecipients(const QString& toText);

// The first recipient: the text up to its first comma (all of it without one).
QString firstRecipient(const QString& toText);

} // namespace tessaly::sms
