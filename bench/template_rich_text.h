#pragma once

// A message text of about 1,600 characters with every kind of placeholder, several times over:
// the recipient's, the sender's, a contact, a date, a time and list values.

#include <QString>

inline QString templateRichText() {
    const QString chunk = QStringLiteral(
        "<Hello> [Recipient:First Name], can we meet [Date:tomorrow] at [Time:Now] "
        "<for lunch>? Call [Sender:Name and Phone] or [Contact:Bob Marsh,+111]. "
        "[Ending:Regards], [Sender:Full Name] ([Sender:Initials]) to [Recipient:Full Name]. ");
    QString text;
    while (text.size() + chunk.size() <= 1600)
        text += chunk;
    return text;
}
