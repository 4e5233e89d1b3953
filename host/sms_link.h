#pragma once

// sms: links (RFC 5724) as a browser or another program hands them to the phone:
//   sms:+4917012345,0301234?body=See%20you%20at%208

#include <QString>
#include <QStringList>

#include <optional>

namespace tessaly::host {

struct SmsLink {
    QStringList numbers; // in the link's order, visual separators removed; may be empty
    QString body;        // decoded from UTF-8; empty when the link has none
};

// Whether the argument is meant as an sms: link (the scheme, in any case).
bool looksLikeSmsLink(const QString& argument);

// Reads an sms: link. Returns nothing and sets `error` to a sentence for the person when it is
// not one: another scheme, a malformed percent escape, text that is not UTF-8, an empty
// recipient or one with letters in it.
std::optional<SmsLink> parseSmsLink(const QString& link, QString* error);

// The link written out, numbers and text percent-encoded: reads back as `link`.
QString toSmsLink(const SmsLink& link);

} // namespace tessaly::host
